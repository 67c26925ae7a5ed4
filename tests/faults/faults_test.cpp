// The real program while things go wrong around it, on X servers of its own. With FAULTS_THOROUGH
// in the environment, every data file by itself, minutes and hundreds instead of samples of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
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
const bool thorough = std::getenv("FAULTS_THOROUGH");

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
        client.blacken(host);
        return host;
    }

    /// `more` are further variables, `options` of the program's.
    Process start(xcb_window_t host, const std::vector<std::string>& more = {},
                  const std::vector<std::string>& options = {}) const {
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
        std::vector<std::string> words = {FAULTY_SAVER, "-window-id", std::to_string(host)};
        words.insert(words.end(), options.begin(), options.end());
        return Process(words, environment);
    }

    /// Some of the window's pixels.
    using Picture = std::vector<test::PIXEL>;
    Picture picture() {
        Picture pixels;
        for (int y = 5; y < HEIGHT; y += 20)
            for (int x = 5; x < WIDTH; x += 20)
                pixels.push_back(client.pixel(x, y));
        return pixels;
    }

    /// Waits until the window shows something else than before; false when the program ends.
    bool waitForChange(Process& saver, const Picture& before) {
        for (int tries = 0; tries < 1200; ++tries) {
            if (!(picture() == before))
                return true;
            if (saver.wait(50).ended)
                return false;
        }
        return false;
    }

    /// Waits until something is drawn in the window; false when the program ends before.
    bool waitForPicture(Process& saver) {
        return waitForChange(saver, Picture(picture().size(), test::PIXEL{0, 0, 0}));
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
    void expectToRun(const std::string& what, const std::vector<std::string>& options = {}) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host, {"DATA_PLACE=" + (folder / "data").string() + "/"}, options);
        EXPECT_TRUE(waitForPicture(saver)) << what;
        expectToEnd(saver, what);
        said = saver.output();
        client.destroy(host);
    }

    /// Waits until the X server, too, has let go of the System V shared memory that the process of
    /// this id made; the number of segments left.
    static int sharedMemory(pid_t creator) {
        for (int tries = 0; tries < 100 && countSharedMemory(creator) > 0; ++tries)
            usleep(100000);
        return countSharedMemory(creator);
    }

    static int countSharedMemory(pid_t creator) {
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

    /// Files in shared memory that the process has mapped.
    static std::set<std::string> sharedFiles(pid_t process) {
        std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
        std::set<std::string> files;
        std::string line;
        while (std::getline(maps, line)) {
            const std::size_t at = line.find("/dev/shm/");
            if (at != std::string::npos)
                files.insert(line.substr(at));
        }
        return files;
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

/// Every data file, by its path in the data folder.
std::vector<std::string> dataFiles() {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(DATA_DIR))
        if (entry.is_regular_file())
            names.push_back(fs::relative(entry.path(), DATA_DIR).string());
    std::sort(names.begin(), names.end());
    return names;
}

/// The files to spoil one by one: all, or the first of each folder's files with the same ending,
/// and the height map, which nothing tells from a picture.
std::vector<std::string> filesToSpoil() {
    if (thorough)
        return dataFiles();
    std::vector<std::string> names = {"terrain_map.nlt"};
    std::set<std::pair<fs::path, fs::path>> kinds;
    for (const std::string& name : dataFiles())
        if (kinds.emplace(fs::path(name).parent_path(), fs::path(name).extension()).second)
            names.push_back(name);
    return names;
}

/// What makes the program read a file that it otherwise leaves alone.
struct NEED {
    const char* file;
    const char* setting;
};
const NEED needs[] = {{"sky_clear_16.nlt", "SkyType=1\n"},
                      {"models/reeffishes/anglefish.nlt", "BoidModel=1\n"},
                      {"hours/evening_clear.nlt", "SkyType=1\nDayTime=1\n"},
                      {"hours/night_clear.nlt", "SkyType=1\nDayTime=1\n"},
                      {"hours/evening_cloudy.nlt", "DayTime=1\n"},
                      {"hours/night_cloudy.nlt", "DayTime=1\n"},
                      {"hours/path.nlt", "DayTime=1\n"},
                      {"hours/island_evening.nlt", "DayTime=1\n"},
                      {"hours/island_night.nlt", "DayTime=1\n"},
                      {"hours/rock2_evening.nlt", "DayTime=1\n"},
                      {"hours/rock2_night.nlt", "DayTime=1\n"}};
/// Only for frames that know a depth of 32 bits, which the program's does not.
const char* const never_read = "sky_clear_32.nlt";

/// A fault of a file: what becomes of its bytes.
using Bytes = std::string;
struct FAULT {
    const char* name;
    bool present;
    Bytes (*change)(Bytes bytes, std::mt19937& chance);
};

class FileFaults : public Faults, public testing::WithParamInterface<FAULT> {
protected:
    /// Puts the fault in place of the file's link.
    void spoil(const std::string& name) {
        std::ifstream file(DATA_DIR + name, std::ios::binary);
        const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
        ASSERT_FALSE(bytes.empty()) << name;
        fs::remove(folder / "data" / name);
        if (GetParam().present)
            std::ofstream(folder / "data" / name, std::ios::binary)
                << GetParam().change(bytes, chance);
    }

    void set(const std::string& settings) {
        fs::create_directories(folder / "home/.config");
        std::ofstream(folder / "home/.config/Orvo Atollia") << settings;
    }

    /// Whether a fault of this file is told by its name: those of sounds and texts are not.
    static bool isNamed(const fs::path& name) {
        return name != never_read && (name.extension() == ".nlt" || name.extension() == ".nlm");
    }
};

TEST_P(FileFaults, TheProgramRunsOnWithoutTheFile) {
    for (const std::string& name : filesToSpoil()) {
        linkData();
        spoil(name);
        std::string settings;
        for (const NEED& need : needs)
            if (name == need.file)
                settings = need.setting;
        set(settings);
        expectToRun(name);
        if (isNamed(name)) {
            EXPECT_THAT(said, testing::HasSubstr(fs::path(name).filename().string()));
        }
        // One line for each reading of the file: some models are read for two species, the water
        // is missed when it is loaded and when it is played.
        EXPECT_LE(std::count(said.begin(), said.end(), '\n'), 2) << name << "\n" << said;
    }
    expectNothingLeft();
}

TEST_P(FileFaults, TheProgramRunsOnWithoutAnyFile) {
    linkData();
    for (const std::string& name : dataFiles())
        spoil(name);
    expectToRun("all files");
    std::string missed = said;
    std::set<std::string> all_settings;
    for (const NEED& need : needs)
        all_settings.insert(need.setting);
    for (const std::string& settings : all_settings) {
        set(settings);
        expectToRun(settings);
        missed += said;
    }
    for (const std::string& name : dataFiles())
        if (isNamed(name)) {
            EXPECT_THAT(missed, testing::HasSubstr(fs::path(name).filename().string()));
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
    // Newer Mesa says itself what it misses there.
    Process saver = start(host, {"HOME=/dev/null/none", "MESA_SHADER_CACHE_DISABLE=true"});
    EXPECT_TRUE(waitForPicture(saver));
    expectToEnd(saver, "home");
    expectNothingLeft();
}

/// How a machine can be without sound, other than by the settings.
const std::vector<std::string> silences[] = {
    {"SDL_AUDIODRIVER", "PULSE_SERVER=unix:/dev/null/none", "ALSA_CONFIG_PATH=/dev/null",
     "SDL_PATH_DSP=/dev/null/none", "AUDIODEV=/dev/null/none"},
    {"SDL_AUDIODRIVER=pulse", "PULSE_SERVER=unix:/dev/null/none"},
    {"SDL_AUDIODRIVER=alsa", "AUDIODEV=none"},
    {"SDL_AUDIODRIVER=dsp", "SDL_PATH_DSP=/dev/null/none"},
    {"SDL_AUDIODRIVER=none"}};

TEST_F(Faults, RunsWithoutAnAudioDeviceAndSaysSoInOneLine) {
    for (const auto& silence : silences) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host, silence);
        EXPECT_TRUE(waitForPicture(saver));
        saver.signal(SIGTERM);
        EXPECT_EQ(saver.wait().signal, SIGTERM);
        // The library's words behind the colon differ.
        EXPECT_THAT(saver.output(), testing::MatchesRegex("no sound: [^\n]+\n")) << silence[0];
        EXPECT_EQ(saver.errors(), "") << silence[0];
        client.destroy(host);
    }
    expectNothingLeft();
}

// A sound server that takes the connection and then says nothing.
TEST_F(Faults, EndsWhileTheSoundServerKeepsSilent) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = folder / "sound";
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 5), 0);

    const xcb_window_t host = hostWindow();
    Process saver = start(host, {"SDL_AUDIODRIVER=pulse", "PULSE_SERVER=unix:" + path});
    const int connection = accept(server, nullptr, nullptr);
    EXPECT_GE(connection, 0);
    expectToEnd(saver, "silent server");
    close(connection);
    close(server);
    expectNothingLeft();
}

TEST_F(Faults, DrawsOnAfterItWasStopped) {
    const xcb_window_t host = hostWindow();
    Process saver = start(host);
    ASSERT_TRUE(waitForPicture(saver));
    saver.signal(SIGSTOP);
    ASSERT_FALSE(saver.wait(500).ended);
    const Picture stopped = picture();
    ASSERT_FALSE(saver.wait(thorough ? 60000 : 2000).ended);
    EXPECT_EQ(picture(), stopped) << "it was not stopped at all";

    saver.signal(SIGCONT);
    Picture now = stopped;
    for (int frame = 0; frame < 10; ++frame) {
        ASSERT_TRUE(waitForChange(saver, now)) << frame;
        now = picture();
    }
    // Still a picture, not a single colour.
    EXPECT_LT(std::count(now.begin(), now.end(), now[0]), static_cast<int>(now.size()) / 2);
    expectToEnd(saver, "continued");
    EXPECT_EQ(saver.output(), "");
    expectNothingLeft();
}

TEST_F(Faults, EndsWhenToldToWhileItWasStopped) {
    const xcb_window_t host = hostWindow();
    Process saver = start(host);
    ASSERT_TRUE(waitForPicture(saver));
    saver.signal(SIGSTOP);
    saver.signal(SIGTERM);
    EXPECT_FALSE(saver.wait(500).ended);
    saver.signal(SIGCONT);
    const END end = saver.wait();
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.signal, SIGTERM);
    expectNothingLeft();
}

TEST_F(Faults, LeavesNothingBehindHoweverOftenItStarts) {
    const int starts = thorough ? 200 : 5;
    for (int i = 0; i < starts; ++i) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host);
        ASSERT_TRUE(waitForPicture(saver)) << i;
        const pid_t id = saver.id();
        const std::set<std::string> shared = sharedFiles(id);
        // Half of them lose their window.
        if (i % 2) {
            client.destroy(host);
            const END end = saver.wait();
            EXPECT_EQ(end.signal, 0) << i;
            EXPECT_EQ(end.status, 0) << i;
            EXPECT_EQ(saver.errors(), "") << i;
        } else {
            expectToEnd(saver, std::to_string(i));
            client.destroy(host);
        }
        EXPECT_EQ(sharedMemory(id), 0) << i;
        for (const std::string& file : shared)
            EXPECT_FALSE(fs::exists(file)) << file;
    }
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

TEST_F(Faults, ASettingsFileThatIsAPipeIsNotWaitedFor) {
    fs::create_directories(folder / "home/.config");
    const fs::path file = folder / "home/.config/Orvo Atollia";
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    const xcb_window_t host = hostWindow();
    Process saver = start(host);
    ASSERT_TRUE(waitForPicture(saver));
    EXPECT_EQ(saver.output(),
              file.string() + " is no plain file, running with the default settings\n");
}

// The window goes after the program has seen it and before the driver asks how large it is.
TEST_F(Faults, EndsWhenTheHostsWindowGoesInTheMiddleOfAFrame) {
    // The loader's list is separated by blanks: the library's own path may have some.
    const fs::path library = folder / "late_answer.so";
    fs::create_symlink(LATE_ANSWER, library);
    for (int i = 0; i < 5; ++i) {
        const xcb_window_t host = hostWindow();
        Process saver = start(host, {"LATE_ANSWER=200", "LD_PRELOAD=" + library.string(),
                                     "ASAN_OPTIONS=verify_asan_link_order=0"});
        ASSERT_TRUE(waitForPicture(saver));
        saver.wait(static_cast<int>(chance() % 300));
        client.destroy(host);
        const END end = saver.wait();
        EXPECT_TRUE(end.ended);
        EXPECT_EQ(end.signal, 0);
        EXPECT_EQ(end.status, 0);
        EXPECT_EQ(saver.errors(), "");
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

// Between making shared memory and marking it to go with its last user, at the start and later.
TEST_F(Faults, LeavesNoSharedMemoryWhenToldToEndWhileItIsMade) {
    const fs::path library = folder / "late_answer.so";
    fs::create_symlink(LATE_ANSWER, library);
    const fs::path moment = folder / "moment";
    const xcb_window_t host = hostWindow();
    Process saver =
        start(host, {"LATE_REMOVAL=60000", "LATE_MOMENT=" + moment.string(),
                     "LD_PRELOAD=" + library.string(), "ASAN_OPTIONS=verify_asan_link_order=0"});
    for (int tries = 0; tries < 1000 && !fs::exists(moment); ++tries)
        ASSERT_FALSE(saver.wait(10).ended);
    const pid_t id = saver.id();
    ASSERT_EQ(countSharedMemory(id), 1);
    expectToEnd(saver, "made");
    EXPECT_EQ(sharedMemory(id), 0);
    expectNothingLeft();
}

}  // namespace
