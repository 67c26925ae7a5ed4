// The real program while things go wrong around it, on X servers of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <sstream>
#include <string>

#include "host/virtual_display.h"

namespace {

namespace fs = std::filesystem;
using test::Client;
using test::END;
using test::Process;
using test::VirtualDisplay;

constexpr int WIDTH = 160, HEIGHT = 120;

class Faults : public testing::Test {
protected:
    Faults()
        : folder(fs::path(testing::TempDir()) / ("atollia-faults-" + std::to_string(getpid()))),
          client(display.name()) {
        fs::remove_all(folder);
        for (const char* name : {"home", "temporary", "data"})
            fs::create_directories(folder / name);
    }
    ~Faults() override { fs::remove_all(folder); }

    /// A black window of the host's.
    xcb_window_t hostWindow() {
        const xcb_window_t host = client.window(0, 0, WIDTH, HEIGHT);
        const uint32_t black = 0;
        xcb_change_window_attributes(client.connection(), host, XCB_CW_BACK_PIXEL, &black);
        xcb_clear_area(client.connection(), 0, host, 0, 0, 0, 0);
        xcb_flush(client.connection());
        return host;
    }

    Process start(xcb_window_t host, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> environment = {"DISPLAY=" + display.name(),
                                                "XSCREENSAVER_WINDOW",
                                                "LIBGL_ALWAYS_SOFTWARE=1",
                                                "SDL_AUDIODRIVER=dummy",
                                                "DATA_PLACE=" DATA_DIR,
                                                "FAULTS_RUN=" + folder.string(),
                                                "TMPDIR=" + (folder / "temporary").string(),
                                                "HOME=" + (folder / "home").string(),
                                                "XDG_CONFIG_HOME",
                                                "XDG_CACHE_HOME"};
        environment.insert(environment.end(), more.begin(), more.end());
        return Process({FAULTY_SAVER, "-window-id", std::to_string(host)}, environment);
    }

    /// Waits until something is drawn in the window; false when the program ends before.
    bool waitForPicture(Process& saver) {
        for (int tries = 0; tries < 1200; ++tries) {
            for (int y = 5; y < HEIGHT; y += 20)
                for (int x = 5; x < WIDTH; x += 20)
                    if (!(client.pixel(x, y) == test::PIXEL{0, 0, 0}))
                        return true;
            if (saver.wait(50).ended)
                return false;
        }
        return false;
    }

    /// Fills the data folder with links to the real files.
    void linkData() {
        fs::remove_all(folder / "data");
        for (const auto& entry : fs::recursive_directory_iterator(DATA_DIR)) {
            const fs::path place = folder / "data" / fs::relative(entry.path(), DATA_DIR);
            if (entry.is_directory()) {
                fs::create_directories(place);
            } else {
                fs::create_directories(place.parent_path());
                fs::create_symlink(entry.path(), place);
            }
        }
    }

    /// Told to end, the program dies by the signal that told it.
    static void expectToEnd(Process& saver, const std::string& what) {
        saver.signal(SIGTERM);
        const END end = saver.wait();
        EXPECT_TRUE(end.ended) << what;
        EXPECT_EQ(end.signal, SIGTERM) << what;
        EXPECT_EQ(saver.errors(), "") << what;
    }

    /// The program on the data folder: draws, and ends when it is told to.
    void expectToRun(const std::string& what) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host, {"DATA_PLACE=" + (folder / "data").string() + "/"});
        EXPECT_TRUE(waitForPicture(saver)) << what;
        expectToEnd(saver, what);
        said = saver.output();
        client.destroy(host);
    }

    /// System V shared memory segments that the process of this id has made and not released.
    static int sharedMemory(pid_t creator) {
        std::ifstream segments("/proc/sysvipc/shm");
        std::string line;
        std::getline(segments, line);
        int count = 0;
        while (std::getline(segments, line)) {
            std::istringstream fields(line);
            long key, id, permissions, size, made_by = 0;
            fields >> key >> id >> permissions >> size >> made_by;
            count += made_by == creator;
        }
        return count;
    }

    /// Processes that this test's savers left behind.
    int processesLeft() const {
        int left = 0;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            std::ifstream file(entry.path() / "environ");
            const std::string environment{std::istreambuf_iterator<char>(file), {}};
            left += environment.find("FAULTS_RUN=" + folder.string()) != std::string::npos;
        }
        return left;
    }

    void expectNothingLeft() const {
        EXPECT_EQ(processesLeft(), 0);
        EXPECT_TRUE(fs::is_empty(folder / "temporary"));
    }

    const fs::path folder;
    VirtualDisplay display;
    Client client;
    std::mt19937 chance{1};
    std::string said;  ///< what the last program printed
};

// One file of every kind that the program reads.
const char* const FILES[] = {"sky_cloudy.nlt",
                             "terrain_map.nlt",
                             "water.nlt",
                             "font.nlf",
                             "Language.dat",
                             "models/coral_a.nlm",
                             "models/gull.nlm",
                             "models/reeffishes/silverfish.nlm",
                             "models/reeffishes/silverfish.nlt",
                             "highlight/highlight00044.nlt",
                             "caustics64/caust00.nlt",
                             "sound/water.wav",
                             "sound/seagull1.wav"};

/// A fault of a file: what becomes of its bytes.
using Bytes = std::string;
struct FAULT {
    const char* name;
    bool present;
    Bytes (*change)(Bytes bytes, std::mt19937& chance);
};

class FileFaults : public Faults, public testing::WithParamInterface<FAULT> {};

TEST_P(FileFaults, TheProgramRunsOnWithoutTheFile) {
    for (const char* name : FILES) {
        linkData();
        std::ifstream file(DATA_DIR + std::string(name), std::ios::binary);
        const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
        ASSERT_FALSE(bytes.empty()) << name;
        fs::remove(folder / "data" / name);
        if (GetParam().present) {
            const Bytes changed = GetParam().change(bytes, chance);
            std::ofstream(folder / "data" / name, std::ios::binary) << changed;
        }
        expectToRun(name);
        const fs::path path(name);
        if (path.extension() == ".nlt" || path.extension() == ".nlm") {
            EXPECT_THAT(said, testing::HasSubstr(path.filename().string()));
        }
        // One line for each file; the water is missed twice, when it is loaded and when it is
        // played.
        EXPECT_LE(std::count(said.begin(), said.end(), '\n'), 2) << name << "\n" << said;
    }
    expectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(All, FileFaults,
                         testing::Values(FAULT{"missing", false, nullptr},
                                         FAULT{"empty", true,
                                               [](Bytes, std::mt19937&) { return Bytes(); }},
                                         FAULT{"truncated", true,
                                               [](Bytes bytes, std::mt19937& chance) {
                                                   return bytes.substr(0, chance() % bytes.size());
                                               }},
                                         FAULT{"random", true,
                                               [](Bytes bytes, std::mt19937& chance) {
                                                   std::generate(bytes.begin(), bytes.end(), [&] {
                                                       return static_cast<char>(chance());
                                                   });
                                                   return bytes;
                                               }}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Faults, RunsWithoutAnyData) {
    expectToRun("no data");
    EXPECT_NE(said.find("sky_cloudy.nlt"), std::string::npos) << said;
    fs::remove(folder / "data");
    expectToRun("no folder");
    expectNothingLeft();
}

TEST_F(Faults, RunsWithAHomeThatTakesNothing) {
    const xcb_window_t host = hostWindow();
    Process saver = start(host, {"HOME=/dev/null/none"});
    EXPECT_TRUE(waitForPicture(saver));
    expectToEnd(saver, "home");
    expectNothingLeft();
}

TEST_F(Faults, EndsWithTheXServer) {
    const xcb_window_t host = hostWindow();
    Process saver = start(host);
    ASSERT_TRUE(waitForPicture(saver));
    display.kill();
    const END end = saver.wait();
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.signal, 0);
    expectNothingLeft();
}

TEST_F(Faults, EndsWithTheHostsWindowWheneverItGoes) {
    for (int i = 0; i < 10; ++i) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host);
        ASSERT_TRUE(waitForPicture(saver));
        const int moment = static_cast<int>(chance() % 300);
        saver.wait(moment);
        client.destroy(host);
        const END end = saver.wait();
        EXPECT_TRUE(end.ended) << moment;
        EXPECT_EQ(end.signal, 0) << moment;
        EXPECT_EQ(end.status, 0) << moment;
        EXPECT_EQ(saver.errors(), "") << moment;
    }
    expectNothingLeft();
}

TEST_F(Faults, EndsWhenTheHostsWindowGoesWhileItStarts) {
    for (int i = 0; i < 20; ++i) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host);
        const int moment = static_cast<int>(chance() % 800);
        saver.wait(moment);
        client.destroy(host);
        const END end = saver.wait();
        EXPECT_TRUE(end.ended) << moment;
        EXPECT_EQ(end.signal, 0) << moment;
        // 1 where the window was gone before it was looked at.
        EXPECT_LE(end.status, 1) << moment;
    }
    expectNothingLeft();
}

TEST_F(Faults, EndsWhenToldToAtAnyMoment) {
    const xcb_window_t host = hostWindow();
    for (int i = 0; i < 50; ++i) {
        Process saver = start(host);
        const int moment = static_cast<int>(chance() % 800);
        saver.wait(moment);
        const pid_t id = saver.id();
        expectToEnd(saver, std::to_string(moment));
        EXPECT_EQ(sharedMemory(id), 0) << moment;
    }
    expectNothingLeft();
}

}  // namespace
