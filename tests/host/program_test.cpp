// The program in its hosts' windows, on X servers of its own. The scene is a stand-in that paints
// one colour and says what happens to it; everything else is what people run.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "host/virtual_display.h"
#include "support/sdl.h"

namespace {

using test::Client;
using test::END;
using test::hex;
using test::PIXEL;
using test::Process;
using test::VirtualDisplay;
using testing::IsEmpty;
using testing::StartsWith;

constexpr PIXEL scene_colour = {0, 128, 255};

int count(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

/// What a clean end looks like from outside.
void expectCleanEnd(const Process& saver, const END& end) {
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.signal, 0);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(count(saver.output(), "constructed"), 1);
    EXPECT_EQ(count(saver.output(), "releaseGL current\ncleanup\n"), 1) << saver.output();
    EXPECT_EQ(count(saver.output(), "destroyed"), 1);
    EXPECT_LT(saver.output().find("cleanup"), saver.output().find("destroyed"));
    EXPECT_EQ(saver.errors(), "");
}

class Program : public testing::Test {
protected:
    void SetUp() override { begin({"-screen", "0", "800x600x24"}); }

    void begin(const std::vector<std::string>& options) {
        display.emplace(options);
        ASSERT_NE(display->name(), "") << "no X server";
        client.emplace(display->name());
    }

    std::vector<std::string> environment(std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"DISPLAY=" + display->name(), "XSCREENSAVER_WINDOW",
                                   "LIBGL_ALWAYS_SOFTWARE=1"});
        return more;
    }

    Process start(std::vector<std::string> words, std::vector<std::string> more = {},
                  const std::vector<int>& blocked = {}) const {
        words.insert(words.begin(), STANDIN_SAVER);
        return Process(words, environment(std::move(more)), blocked);
    }

    std::optional<VirtualDisplay> display;
    std::optional<Client> client;
};

TEST_F(Program, FillsFollowsAndLeavesTheWindowOfAnotherClient) {
    // No client of this server has used GL when the window is made.
    const xcb_window_t host = client->window(50, 40, 320, 200);
    Process saver = start({"-window-id", std::to_string(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    EXPECT_THAT(saver.output(), testing::HasSubstr("initScene 320 x 200\n"));
    EXPECT_TRUE(client->waitForPixel(50, 40, scene_colour));
    EXPECT_TRUE(client->waitForPixel(369, 239, scene_colour));
    EXPECT_FALSE(client->pixel(370, 240) == scene_colour);

    client->resize(host, 400, 300);
    EXPECT_TRUE(client->waitForPixel(449, 339, scene_colour));
    client->resize(host, 100, 80);
    EXPECT_TRUE(client->waitForPixel(150, 120, {0, 0, 0}));
    EXPECT_TRUE(client->waitForPixel(149, 119, scene_colour));
    EXPECT_EQ(count(saver.output(), "initScene"), 1);

    client->destroy(host);
    expectCleanEnd(saver, saver.wait());
}

// ---- The whole window
// -----------------------------------------------------------------------------

/// The corners, the middles of the edges and points between, of a picture of the whole window.
bool everywhere(const test::PICTURE& picture, PIXEL colour) {
    for (int i = 0; i < 9; ++i)
        for (int j = 0; j < 9; ++j)
            if (!(picture.at((picture.width - 1) * i / 8, (picture.height - 1) * j / 8) == colour))
                return false;
    return !picture.pixels.empty();
}

struct WINDOW_CASE {
    const char* mode;
    int width;
    int height;
};

void PrintTo(const WINDOW_CASE& c, std::ostream* out) {
    *out << c.mode << " " << c.width << " x " << c.height;
}

class FirstPicture : public Program, public testing::WithParamInterface<WINDOW_CASE> {};

TEST_P(FirstPicture, IsWhole) {
    const WINDOW_CASE& c = GetParam();
    const std::string size = std::to_string(c.width) + "x" + std::to_string(c.height);
    begin({"-screen", "0", size + "x24"});
    std::vector<std::string> words = {c.mode, "-geometry", size + "+0+0", "-maxfps", "1"};
    if (words[0] == "-window-id") {
        const xcb_window_t host = client->window(0, 0, c.width, c.height);
        client->blacken(host);
        words.insert(words.begin() + 1, hex(host));
    }
    Process saver = start(words);
    test::PICTURE picture;
    for (int i = 0; i < 3000; ++i) {
        picture = client->picture(0, 0, c.width, c.height);
        ASSERT_FALSE(picture.pixels.empty());
        if (!everywhere(picture, {0, 0, 0}))
            break;
        saver.wait(10);
    }
    EXPECT_TRUE(everywhere(picture, scene_colour)) << saver.output() << saver.errors();
}

INSTANTIATE_TEST_SUITE_P(
    Windows, FirstPicture,
    testing::Values(WINDOW_CASE{"-demo", 1280, 720}, WINDOW_CASE{"-root", 1280, 720},
                    WINDOW_CASE{"-window-id", 1280, 720}, WINDOW_CASE{"-demo", 1920, 1080},
                    WINDOW_CASE{"-root", 1920, 1080}, WINDOW_CASE{"-window-id", 1920, 1080},
                    WINDOW_CASE{"-demo", 3840, 2160}, WINDOW_CASE{"-root", 3840, 2160},
                    WINDOW_CASE{"-window-id", 3840, 2160}));

struct SCALE_CASE {
    const char* scale;
    std::vector<std::string> server;  ///< options
};

void PrintTo(const SCALE_CASE& c, std::ostream* out) {
    *out << c.scale;
    for (const std::string& option : c.server)
        *out << " " << option;
}

class Scales : public Program, public testing::WithParamInterface<SCALE_CASE> {};

TEST_P(Scales, EveryPictureAfterAResizeIsWhole) {
    std::vector<std::string> options = {"-screen", "0", "800x600x24"};
    options.insert(options.end(), GetParam().server.begin(), GetParam().server.end());
    begin(options);
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host), "-scale", GetParam().scale});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    ASSERT_TRUE(client->waitForPixel(299, 199, scene_colour));
    client->resize(host, 780, 560);
    ASSERT_TRUE(saver.waitForLine("setViewSize 780 x 560")) << saver.output();
    ASSERT_TRUE(client->waitForPixel(779, 559, scene_colour));
    EXPECT_TRUE(everywhere(client->picture(0, 0, 780, 560), scene_colour));
    client->resize(host, 100, 500);
    ASSERT_TRUE(saver.waitForLine("setViewSize 100 x 500")) << saver.output();
    ASSERT_TRUE(client->waitForPixel(99, 499, scene_colour));
    EXPECT_TRUE(everywhere(client->picture(0, 0, 100, 500), scene_colour));
    EXPECT_EQ(count(saver.output(), "initScene"), 1) << "nothing is loaded again";
    client->destroy(host);
    expectCleanEnd(saver, saver.wait());
}

INSTANTIATE_TEST_SUITE_P(Servers, Scales,
                         testing::Values(SCALE_CASE{"1", {}}, SCALE_CASE{"0.5", {}},
                                         SCALE_CASE{"0.5", {"-extension", "MIT-SHM"}},
                                         SCALE_CASE{"0.5", {"-extension", "RENDER"}}));

TEST_F(Program, EndsWhenItsHostDies) {
    std::optional<Client> other(std::in_place, display->name());
    const xcb_window_t host = other->window(0, 0, 320, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    other.reset();
    expectCleanEnd(saver, saver.wait());
}

TEST_F(Program, EndsWhenTheWindowGoesWhileItStarts) {
    for (int i = 0; i < 5; ++i) {
        const xcb_window_t host = client->window(0, 0, 320, 200);
        Process saver = start({"-window-id", hex(host)});
        if (i > 0)
            saver.waitForLine("constructed");
        client->destroy(host);
        const END end = saver.wait();
        EXPECT_TRUE(end.ended);
        EXPECT_EQ(end.signal, 0);
        EXPECT_EQ(count(saver.output(), "constructed"), count(saver.output(), "destroyed"));
    }
}

TEST_F(Program, EndsWhenItsOwnWindowIsDestroyed) {
    const xcb_window_t host = client->window(0, 0, 320, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    ASSERT_NE(client->child(host), 0U);
    client->destroy(client->child(host));
    expectCleanEnd(saver, saver.wait());
}

TEST_F(Program, TwoSaversInTwoWindows) {
    const xcb_window_t left = client->window(0, 0, 300, 300);
    const xcb_window_t right = client->window(400, 0, 300, 300);
    Process one = start({"-window-id", hex(left)});
    Process two = start({"--root"}, {"XSCREENSAVER_WINDOW=" + hex(right)});
    ASSERT_TRUE(one.waitForLine("drawing")) << one.errors();
    ASSERT_TRUE(two.waitForLine("drawing")) << two.errors();
    EXPECT_TRUE(client->waitForPixel(150, 150, scene_colour));
    EXPECT_TRUE(client->waitForPixel(550, 150, scene_colour));
    client->destroy(left);
    expectCleanEnd(one, one.wait());
    EXPECT_TRUE(client->waitForPixel(550, 150, scene_colour));
    EXPECT_FALSE(two.wait(0).ended);
    client->destroy(right);
    expectCleanEnd(two, two.wait());
}

TEST_F(Program, WindowOfAnotherDepth) {
    const xcb_window_t host = client->window(0, 0, 300, 200, 32);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(299, 199, scene_colour));
    client->destroy(host);
    expectCleanEnd(saver, saver.wait());
}

TEST_F(Program, PreviewSize) {
    const xcb_window_t host = client->window(10, 10, 151, 115);
    Process saver = start({"-window-id", std::to_string(host)});
    ASSERT_TRUE(saver.waitForLine("initScene 151 x 115")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(160, 124, scene_colour));
}

TEST_F(Program, InputReachesTheHost) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    ASSERT_TRUE(client->waitForPixel(150, 100, scene_colour));
    xcb_connection_t* x = client->connection();
    xcb_test_fake_input(x, XCB_MOTION_NOTIFY, 0, 0, client->root(), 100, 100, 0);
    xcb_test_fake_input(x, XCB_MOTION_NOTIFY, 0, 0, client->root(), 150, 110, 0);
    xcb_flush(x);
    EXPECT_TRUE(client->waitForEvent(XCB_MOTION_NOTIFY));
    xcb_test_fake_input(x, XCB_BUTTON_PRESS, 1, 0, client->root(), 0, 0, 0);
    xcb_flush(x);
    EXPECT_TRUE(client->waitForEvent(XCB_BUTTON_PRESS));
    xcb_test_fake_input(x, XCB_KEY_PRESS, 38, 0, client->root(), 0, 0, 0);
    xcb_flush(x);
    EXPECT_TRUE(client->waitForEvent(XCB_KEY_PRESS));
}

TEST_F(Program, VirtualRootWindow) {
    client->window(0, 0, 10, 10);
    const xcb_window_t locker = client->window(0, 0, 700, 500);
    client->mark(locker, "__SWM_VROOT");
    Process saver = start({"-root"});
    ASSERT_TRUE(saver.waitForLine("initScene 700 x 500")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(699, 499, scene_colour));
    EXPECT_NE(client->child(locker), 0U);

    // The locker stops its saver while the screen is off, and ends it with a signal.
    saver.signal(SIGSTOP);
    saver.signal(SIGCONT);
    client->resize(locker, 720, 520);
    EXPECT_TRUE(client->waitForPixel(719, 519, scene_colour));
    saver.signal(SIGTERM);
    EXPECT_EQ(saver.wait().signal, SIGTERM);
}

TEST_F(Program, RealRootWindowLiesBelowEverything) {
    const xcb_window_t window = client->window(100, 100, 50, 50);
    Process saver = start({"-root"});
    ASSERT_TRUE(saver.waitForLine("initScene 800 x 600")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(0, 0, scene_colour));
    EXPECT_TRUE(client->waitForPixel(799, 599, scene_colour));
    EXPECT_TRUE(client->waitForPixel(125, 125, {255, 255, 255}));
    EXPECT_TRUE(client->exists(window));
}

TEST_F(Program, RealRootWindowFollowsTheScreensSize) {
    Process saver = start({"-root"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    client->setMode(640, 480, 60);
    EXPECT_TRUE(saver.waitForLine("setViewSize 640 x 480")) << saver.output();
    EXPECT_TRUE(client->waitForPixel(639, 479, scene_colour));
}

TEST_F(Program, WindowOnAnotherScreen) {
    begin({"-screen", "0", "640x480x24", "-screen", "1", "400x300x24"});
    const xcb_window_t host = client->window(0, 0, 200, 100, 0, 1);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("initScene 200 x 100")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(199, 99, scene_colour, 1));
    Process second = start({"-root", "-display", display->name() + ".1"});
    ASSERT_TRUE(second.waitForLine("initScene 400 x 300")) << second.errors();
    EXPECT_TRUE(client->waitForPixel(399, 299, scene_colour, 1));
}

TEST_F(Program, TheDesktopsSettingsForApplicationsDoNotReachASaver) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start(
        {"-window-id", hex(host)},
        {"QT_SCALE_FACTOR=2", "QT_SCREEN_SCALE_FACTORS=2", "QT_FONT_DPI=192",
         "QT_AUTO_SCREEN_SCALE_FACTOR=1", "QT_QPA_PLATFORM=wayland", "QT_XCB_GL_INTEGRATION=none",
         "QT_QPA_PLATFORMTHEME=gtk3", "SESSION_MANAGER=local/nowhere:/tmp/none"});
    ASSERT_TRUE(saver.waitForLine("initScene 300 x 200")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(299, 199, scene_colour));
    client->destroy(host);
    expectCleanEnd(saver, saver.wait());
}

// ---- Frames that nobody sees --------------------------------------------------------------------

class Unseen : public Program {
protected:
    /// True when the program stops drawing: no frame for 1.5 seconds, or so many, within the
    /// patience.
    static bool fallsSilent(Process& saver, int most = 0) {
        for (int i = 0; i < 40; ++i) {
            const int before = count(saver.output(), "frame\n");
            saver.wait(1500);
            if (count(saver.output(), "frame\n") <= before + most)
                return true;
        }
        return false;
    }
    static bool drawsAgain(Process& saver) {
        const int before = count(saver.output(), "frame\n");
        for (int i = 0; i < 600; ++i) {
            saver.wait(100);
            if (count(saver.output(), "frame\n") > before + 3)
                return true;
        }
        return false;
    }
    /// How often the scene was told of time that nobody saw, each time before a frame.
    static int told(const Process& saver) {
        const int times = count(saver.output(), "unseen time\n");
        EXPECT_EQ(count(saver.output(), "unseen time\nframe\n"), times);
        return times;
    }
};

TEST_F(Unseen, NothingIsDrawnWhileTheHostIsUnmapped) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)}, {"STANDIN_COUNTS=1"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    const int before = told(saver);  // also while it waited for its window
    client->unmap(host);
    EXPECT_TRUE(fallsSilent(saver));
    EXPECT_EQ(told(saver), before);
    client->map(host);
    EXPECT_TRUE(drawsAgain(saver));
    EXPECT_EQ(told(saver), before + 1);
    client->unmap(host);
    EXPECT_TRUE(fallsSilent(saver));
    client->map(host);
    EXPECT_TRUE(drawsAgain(saver));
    EXPECT_EQ(told(saver), before + 2);
    client->destroy(host);
    expectCleanEnd(saver, saver.wait());
}

TEST_F(Unseen, NothingIsDrawnWhileTheHostIsCovered) {
    const xcb_window_t host = client->window(50, 50, 300, 200);
    Process saver = start({"-window-id", hex(host)}, {"STANDIN_COUNTS=1"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    const int before = told(saver);
    const xcb_window_t cover = client->window(0, 0, 400, 300);
    EXPECT_TRUE(fallsSilent(saver));
    client->destroy(cover);
    EXPECT_TRUE(drawsAgain(saver));
    EXPECT_EQ(told(saver), before + 1);
}

TEST_F(Unseen, NothingIsDrawnInAWindowThatWasCoveredFromTheStart) {
    const xcb_window_t host = client->window(50, 50, 300, 200);
    const xcb_window_t cover = client->window(0, 0, 400, 300);
    Process saver = start({"-window-id", hex(host)}, {"STANDIN_COUNTS=1"});
    ASSERT_TRUE(saver.waitForLine("initScene") || saver.waitForLine("constructed"))
        << saver.errors();
    EXPECT_TRUE(fallsSilent(saver));
    client->destroy(cover);
    EXPECT_TRUE(drawsAgain(saver));
    EXPECT_GE(told(saver), 1);
}

TEST_F(Unseen, NothingIsDrawnWhileTheMonitorSleeps) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    const std::string file =
        testing::TempDir() + "atollia-asleep-" + std::to_string(getpid()) + ".txt";
    std::remove(file.c_str());
    Process saver =
        start({"-window-id", hex(host)}, {"STANDIN_COUNTS=1", "STANDIN_ASLEEP=" + file});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    const int before = told(saver);
    std::ofstream{file};
    EXPECT_TRUE(fallsSilent(saver));
    std::remove(file.c_str());
    EXPECT_TRUE(drawsAgain(saver));
    EXPECT_EQ(told(saver), before + 1);
}

TEST_F(Unseen, TheMonitorsNewRefreshRateIsTheLimit) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)}, {"STANDIN_COUNTS=1"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    client->setMode(800, 600, 1);
    EXPECT_TRUE(fallsSilent(saver, 3));
    client->setMode(800, 600, 60);
    EXPECT_TRUE(drawsAgain(saver));
}

// ---- Sounds -------------------------------------------------------------------------------------

/// Savers that sound without end, each into a file.
class Sounds : public Program {
protected:
    Sounds() {
        char name[] = "/tmp/atollia-sounds-XXXXXX";
        folder = mkdtemp(name);
    }
    ~Sounds() override { std::filesystem::remove_all(folder); }

    /// The mixer's turn comes every so many milliseconds.
    Process startSounding(const std::string& file, const std::vector<std::string>& words,
                          int turn = 10, const std::string& more = "STANDIN_COUNTS=1") const {
        return start(words, {"STANDIN_SOUNDS=1", more, "SDL_AUDIODRIVER=disk",
                             "SDL_DISKAUDIODELAY=" + std::to_string(turn),
                             "SDL_DISKAUDIOFILE=" + folder + "/" + file});
    }
    /// What was played so far, left and right in turn.
    std::vector<std::int16_t> heard(const std::string& file) const {
        std::ifstream in(folder + "/" + file, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), {});
        std::vector<std::int16_t> samples(bytes.size() / 2);
        if (!samples.empty())
            std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
        return samples;
    }
    /// Waits until the last tenth of a second was loud all through, or silent.
    bool becomes(const std::string& file, bool loud) const {
        for (int i = 0; i < 6000; ++i) {
            const auto samples = heard(file);
            if (samples.size() > 4410 &&
                std::all_of(samples.end() - 4410, samples.end(),
                            [&](int s) { return loud ? s > 31000 : s == 0; }))
                return true;
            usleep(10000);
        }
        return false;
    }
    /// The largest difference between two samples of the same side.
    static int largestStep(const std::vector<std::int16_t>& samples) {
        int largest = 0;
        for (std::size_t i = 2; i < samples.size(); ++i)
            largest = std::max(largest, std::abs(samples[i] - samples[i - 2]));
        return largest;
    }

    void expectFaded(const std::string& file) const {
        const auto samples = heard(file);
        EXPECT_LT(largestStep(samples), NO_CLICK);
        // A layer drops what its device has not played yet.
        if (!test::sdlIsALayer()) {
            EXPECT_EQ(samples.back(), 0) << "not faded at the end";
        }
    }

    static constexpr int NO_CLICK = 2500;  ///< a cut would be a step of 32000
    std::string folder;
};

TEST_F(Sounds, AreHeardOnlyWhileSomethingIsDrawn) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = startSounding("one", {"-window-id", hex(host)});
    ASSERT_TRUE(becomes("one", true)) << saver.output() << saver.errors();
    client->unmap(host);
    EXPECT_TRUE(becomes("one", false));
    client->map(host);
    EXPECT_TRUE(becomes("one", true));
    client->destroy(host);
    EXPECT_EQ(saver.wait().status, 0);
    expectFaded("one");
}

TEST_F(Sounds, FadeAtASignalInAWindowOfTheirOwn) {
    for (const int number : {SIGTERM, SIGINT}) {
        const std::string file = std::to_string(number);
        Process saver = startSounding(file, {"-demo"});
        ASSERT_TRUE(becomes(file, true)) << saver.output() << saver.errors();
        saver.signal(number);
        EXPECT_EQ(saver.wait().signal, number);
        EXPECT_EQ(client->find(533, 400), 0U);
        expectFaded(file);
    }
}

// No host has locked the screen there, so there is time for a picture that takes long.
TEST_F(Sounds, FadeAtASignalInAWindowOfTheirOwnThatIsSlow) {
    Process saver = startSounding("one", {"-demo"}, 10, "STANDIN_TOILS=1");
    ASSERT_TRUE(becomes("one", true)) << saver.output() << saver.errors();
    saver.signal(SIGTERM);
    EXPECT_EQ(saver.wait().signal, SIGTERM);
    expectFaded("one");
}

TEST_F(Sounds, FadeAtASignalWhenTheHostHasTakenItsWindowAway) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = startSounding("one", {"-window-id", hex(host)});
    ASSERT_TRUE(becomes("one", true)) << saver.output() << saver.errors();
    client->destroy(host);
    ASSERT_FALSE(client->exists(host));
    saver.signal(SIGTERM);
    // Whichever of the two it hears of first.
    const END end = saver.wait();
    EXPECT_TRUE(end.signal == SIGTERM || end.status == 0) << end.signal << " " << end.status;
    expectFaded("one");
}

TEST_F(Sounds, FadeAtASignalWhileTheHostWaitsForTheEnd) {
    const xcb_window_t host = client->window(50, 50, 300, 200);
    Process saver = startSounding("one", {"-window-id", hex(host)});
    ASSERT_TRUE(becomes("one", true)) << saver.output() << saver.errors();
    saver.signal(SIGTERM);
    EXPECT_EQ(saver.wait().signal, SIGTERM);
    EXPECT_TRUE(client->exists(host));
    expectFaded("one");
}

TEST_F(Sounds, AreFadedByTheDeviceWhenTheProgramHasEnded) {
    const xcb_window_t host = client->window(50, 50, 300, 200);
    // The device is a pipe, open for as long as somebody may play. A test that is late finds it
    // closed, however long it was open, and tries again.
    bool played_on = false;
    for (int i = 0; i < 10 && !played_on; ++i) {
        const std::string name = "pipe" + std::to_string(i);
        ASSERT_EQ(mkfifo((folder + "/" + name).c_str(), 0600), 0);
        const int device = open((folder + "/" + name).c_str(), O_RDONLY | O_NONBLOCK);
        ASSERT_GE(device, 0);
        Process saver = startSounding(name, {"-window-id", hex(host)});
        std::vector<std::int16_t> samples(1 << 15);
        const auto play = [&] { return read(device, samples.data(), samples.size() * 2); };
        while (play() <= 0 || samples[0] < 31000)
            usleep(1000);
        saver.signal(SIGTERM);
        END end;
        while (!end.ended) {
            play();
            end = saver.wait(0);
        }
        EXPECT_EQ(end.signal, SIGTERM);
        while (play() > 0)
            ;
        // The screen is free, and the device still open.
        pollfd writers = {device, POLLIN, 0};
        while (!played_on && poll(&writers, 1, 0) == 0)
            played_on = client->child(host) == 0;
        // Not for ever.
        EXPECT_EQ(poll(&writers, 1, -1), 1);
        EXPECT_EQ(play(), 0);
        close(device);
    }
    EXPECT_TRUE(played_on);
}

TEST_F(Sounds, DoNotKeepItAliveWhenTheMixersTurnDoesNotCome) {
    constexpr int NEVER = 3600 * 1000;
    const xcb_window_t host = client->window(0, 0, 300, 200);
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"-window-id", hex(host)}, {"-demo"}}) {
        Process saver = startSounding("one", words, NEVER);
        ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
        saver.signal(SIGTERM);
        EXPECT_EQ(saver.wait().signal, SIGTERM);
    }
    EXPECT_TRUE(client->exists(host));
}

TEST_F(Sounds, OfOneSaverAtATime) {
    const xcb_window_t left = client->window(0, 0, 300, 200);
    const xcb_window_t right = client->window(400, 0, 300, 200);
    Process one = startSounding("one", {"-window-id", hex(left)});
    ASSERT_TRUE(becomes("one", true)) << one.errors();
    Process two = startSounding("two", {"-window-id", hex(right)});
    ASSERT_TRUE(becomes("two", false)) << two.errors();
    ASSERT_TRUE(becomes("one", true));
    EXPECT_EQ(largestStep(heard("two")), 0) << "never heard so far";

    // A saver that nobody sees leaves it to another one, and does not take it back.
    client->unmap(left);
    EXPECT_TRUE(becomes("one", false));
    EXPECT_TRUE(becomes("two", true));
    client->map(left);
    EXPECT_TRUE(becomes("one", false));
    two.signal(SIGTERM);
    EXPECT_EQ(two.wait().signal, SIGTERM);
    EXPECT_TRUE(becomes("one", true)) << "not taken over";

    // Another one asked at the same moment, and later: it is left alone, and watched.
    xcb_connection_t* x = client->connection();
    const std::string name = "_ATOLLIA_SOUND_" + std::to_string(getuid());
    xcb_intern_atom_reply_t* atom = xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr);
    ASSERT_NE(atom, nullptr);
    xcb_set_selection_owner(x, right, atom->atom, XCB_CURRENT_TIME);
    std::free(atom);
    xcb_flush(x);
    EXPECT_TRUE(becomes("one", false));
    client->destroy(right);
    EXPECT_TRUE(becomes("one", true));
}

class Signals : public Program, public testing::WithParamInterface<int> {};

TEST_P(Signals, DieByTheSameSignal) {
    const int number = GetParam();
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    saver.signal(number);
    const END end = saver.wait();
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.signal, number);
    EXPECT_EQ(saver.errors(), "");
    EXPECT_EQ(count(saver.output(), "cleanup"), 1);
    EXPECT_TRUE(client->exists(host));
}

TEST_P(Signals, EvenWhenTheyWereBlockedAtTheStart) {
    const int number = GetParam();
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)}, {}, {SIGTERM, SIGINT, SIGHUP, SIGALRM});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    saver.signal(number);
    EXPECT_EQ(saver.wait().signal, number);
}

TEST_P(Signals, EvenWhenTheSceneHangs) {
    const int number = GetParam();
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)}, {"STANDIN_HANGS=1"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    saver.signal(number);
    EXPECT_EQ(saver.wait().signal, number);
}

INSTANTIATE_TEST_SUITE_P(Each, Signals, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(Program, SignalsThatWereIgnoredAtTheStartStayIgnored) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver(
        {"sh", "-c", "trap '' HUP INT; exec \"$@\"", "sh", STANDIN_SAVER, "-window-id", hex(host)},
        environment());
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    saver.signal(SIGHUP);
    saver.signal(SIGINT);
    client->resize(host, 310, 210);
    EXPECT_TRUE(client->waitForPixel(309, 209, scene_colour));
    saver.signal(SIGTERM);
    EXPECT_EQ(saver.wait().signal, SIGTERM);
}

TEST_F(Program, MessagesFromLockersDoNotKill) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    saver.signal(SIGUSR1);
    client->resize(host, 310, 210);
    EXPECT_TRUE(client->waitForPixel(309, 209, scene_colour));
}

TEST_F(Program, LostConnectionEndsItQuietly) {
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver = start({"-window-id", hex(host)});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    display->kill();
    const END end = saver.wait();
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.signal, 0);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(saver.errors(), "");
}

TEST_F(Program, DemoWindowHasItsSizeAndEndsWhenClosed) {
    Process saver = start({"-demo"});
    ASSERT_TRUE(saver.waitForLine("initScene 533 x 400")) << saver.errors();
    ASSERT_TRUE(saver.waitForLine("drawing"));
    const xcb_window_t window = client->find(533, 400);
    ASSERT_NE(window, 0U);

    client->askToClose(window);
    expectCleanEnd(saver, saver.wait());
}

TEST_F(Program, DemoWindowThatAnotherClientDestroysEndsIt) {
    Process saver = start({"-demo"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    client->destroy(client->find(533, 400));
    expectCleanEnd(saver, saver.wait());
}

class FullScreen : public Program {
protected:
    void press(int key) {
        xcb_connection_t* x = client->connection();
        xcb_test_fake_input(x, XCB_KEY_PRESS, key, 0, client->root(), 0, 0, 0);
        xcb_test_fake_input(x, XCB_KEY_RELEASE, key, 0, client->root(), 0, 0, 0);
        xcb_flush(x);
    }
    void focus(xcb_window_t window) {
        xcb_set_input_focus(client->connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    }
    void doubleClick() {
        xcb_connection_t* x = client->connection();
        for (int i = 0; i < 2; ++i) {
            xcb_test_fake_input(x, XCB_BUTTON_PRESS, 1, 0, client->root(), 0, 0, 0);
            xcb_test_fake_input(x, XCB_BUTTON_RELEASE, 1, 0, client->root(), 0, 0, 0);
        }
        xcb_flush(x);
    }
    bool isWhole(int width, int height) {
        return client->waitForPixel(width - 1, height - 1, scene_colour) &&
               everywhere(client->picture(0, 0, width, height), scene_colour);
    }
};

TEST_F(FullScreen, FromTheStart) {
    Process saver = start({"-demo", "-fullscreen"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    EXPECT_TRUE(isWhole(800, 600));
}

TEST_F(FullScreen, FollowsTheScreensSize) {
    Process saver = start({"-demo", "-fullscreen"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    client->setMode(640, 480, 60);
    ASSERT_TRUE(saver.waitForLine("setViewSize 640 x 480")) << saver.output();
    EXPECT_TRUE(isWhole(640, 480));
}

TEST_F(FullScreen, ByKeyAndDoubleClickAndBack) {
    constexpr int F11 = 95;  // key code on every PC keyboard
    Process saver = start({"-demo", "-geometry", "300x200+0+0"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    const xcb_window_t window = client->find(300, 200);
    ASSERT_NE(window, 0U);
    focus(window);
    press(F11);
    ASSERT_TRUE(saver.waitForLine("setViewSize 800 x 600")) << saver.output();
    EXPECT_TRUE(isWhole(800, 600));
    press(F11);
    ASSERT_TRUE(saver.waitForLine("setViewSize 300 x 200")) << saver.output();
    ASSERT_TRUE(client->waitForPixel(400, 300, {0, 0, 0}));
    xcb_test_fake_input(client->connection(), XCB_MOTION_NOTIFY, 0, 0, client->root(), 100, 100, 0);
    doubleClick();
    EXPECT_TRUE(isWhole(800, 600));
    EXPECT_EQ(count(saver.output(), "initScene"), 1);
}

class DemoKeys : public Program, public testing::WithParamInterface<int> {};

TEST_P(DemoKeys, EndIt) {
    Process saver = start({});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    const xcb_window_t window = client->find(533, 400);
    ASSERT_NE(window, 0U);
    xcb_connection_t* x = client->connection();
    xcb_set_input_focus(x, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    xcb_test_fake_input(x, XCB_KEY_PRESS, GetParam(), 0, client->root(), 0, 0, 0);
    xcb_test_fake_input(x, XCB_KEY_RELEASE, GetParam(), 0, client->root(), 0, 0, 0);
    xcb_flush(x);
    expectCleanEnd(saver, saver.wait());
}

// Key codes of q and Escape on every PC keyboard.
INSTANTIATE_TEST_SUITE_P(Each, DemoKeys, testing::Values(24, 9));

TEST_F(Program, GeometryOfTheDemoWindow) {
    Process saver = start({"-window", "-geometry", "300x200-0-0", "-fps"});
    ASSERT_TRUE(saver.waitForLine("initScene 300 x 200")) << saver.errors();
    EXPECT_TRUE(client->waitForPixel(799, 599, scene_colour));
    EXPECT_TRUE(client->waitForPixel(500, 400, scene_colour));
    EXPECT_FALSE(client->pixel(499, 399) == scene_colour);
    EXPECT_THAT(saver.output(), testing::HasSubstr("frame rate\n"));
}

TEST_F(Program, SettingsOfTheCommandLineReachTheScene) {
    Process saver = start({"-demo", "-proportions", "true", "-volume", "30", "-maxfps", "0"});
    ASSERT_TRUE(saver.waitForLine("drawing")) << saver.errors();
    EXPECT_THAT(saver.output(), testing::HasSubstr("setting Proportions 1\nsetting Volume 30\n"));
    EXPECT_EQ(saver.errors(), "");
}

TEST_F(Program, AFullPipeDoesNotStopTheDrawing) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    const std::string page(4096, '.');
    while (write(ends[1], page.data(), page.size()) > 0)
        ;
    fcntl(ends[1], F_SETFL, 0);
    const std::string command = "exec \"$@\" >&" + std::to_string(ends[1]);
    const xcb_window_t host = client->window(0, 0, 300, 200);
    Process saver({"sh", "-c", command, "sh", STANDIN_SAVER, "-window-id", hex(host)},
                  environment({"STANDIN_COUNTS=1"}));
    EXPECT_TRUE(client->waitForPixel(299, 199, scene_colour));
    EXPECT_EQ(fcntl(ends[1], F_GETFL) & O_NONBLOCK, 0) << "others may want to wait";
    client->destroy(host);
    EXPECT_EQ(saver.wait().status, 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(Program, SmoothsEdgesAsItIsTold) {
    struct {
        std::vector<std::string> options;
        const char* line;
    } cases[] = {{{}, "samples 0"},  // not by default where the processor draws
                 {{"-samples", "0"}, "samples 0"},
                 {{"-samples", "4"}, "samples 4"},
                 {{"-samples", "32"}, "samples 4"}};  // what the renderer has
    for (auto& c : cases) {
        c.options.push_back("-demo");
        Process saver = start(c.options);
        ASSERT_TRUE(saver.waitForLine(c.line)) << saver.output() << saver.errors();
        ASSERT_TRUE(saver.waitForLine("drawing")) << c.line;
        const xcb_window_t window = client->find(533, 400);
        ASSERT_NE(window, 0U) << c.line;
        client->askToClose(window);
        expectCleanEnd(saver, saver.wait());
    }
}

// ---- What cannot work says so in one line -------------------------------------------------------

void expectRefusal(Process& saver, int status, const std::string& line) {
    const END end = saver.wait();
    EXPECT_EQ(end.status, status);
    EXPECT_EQ(saver.errors(), line + "\n");
    EXPECT_EQ(saver.output(), "");
}

TEST_F(Program, NoSuchWindow) {
    Process saver = start({"-window-id", "0x7654321"});
    expectRefusal(saver, 1, "atollia.kss: there is no window 0x7654321");
}

TEST_F(Program, HostVariableThatIsNoNumber) {
    Process saver = start({"--root"}, {"XSCREENSAVER_WINDOW=wayland-0"});
    expectRefusal(saver, 1, "atollia.kss: XSCREENSAVER_WINDOW: \"wayland-0\" is not a window id");
}

TEST_F(Program, NoGlx) {
    begin({"-screen", "0", "640x480x24", "-extension", "GLX"});
    Process saver = start({"-demo"});
    expectRefusal(saver, 1, "atollia.kss: the display has no GLX, nothing can be drawn");
}

TEST_F(Program, NoContext) {
    for (const char* trouble : {"GALLIUM_DRIVER=none", "LIBGL_ALWAYS_INDIRECT=1"}) {
        // The toolkit loses the context that came to nothing, and the driver what it began with it.
        Process saver = start({"-demo"}, {trouble, "ASAN_OPTIONS=detect_leaks=0"});
        const END end = saver.wait();
        EXPECT_EQ(end.status, 1) << trouble;
        EXPECT_EQ(saver.errors(),
                  "atollia.kss: the display's GL driver gives no context, nothing can be drawn\n");
        EXPECT_EQ(count(saver.output(), "initScene"), 0) << trouble;
    }
}

TEST(WithoutADisplay, OneLine) {
    Process unset({STANDIN_SAVER, "-demo"}, {"DISPLAY"});
    expectRefusal(unset, 1, "atollia.kss: no display: DISPLAY is not set");
    Process wrong({STANDIN_SAVER, "-root"}, {"DISPLAY=:54321", "XSCREENSAVER_WINDOW"});
    expectRefusal(wrong, 1, "atollia.kss: cannot open display \":54321\"");
    Process option({STANDIN_SAVER, "-display", "nowhere:5"}, {"DISPLAY=:0", "XSCREENSAVER_WINDOW"});
    expectRefusal(option, 1, "atollia.kss: cannot open display \"nowhere:5\"");
}

TEST(WithoutADisplay, HelpAndVersionWork) {
    Process help({STANDIN_SAVER, "--help"}, {"DISPLAY"});
    EXPECT_EQ(help.wait().status, 0);
    EXPECT_THAT(help.output(), StartsWith("Usage: atollia.kss"));
    EXPECT_THAT(help.errors(), IsEmpty());
    Process version({STANDIN_SAVER, "-version"}, {"DISPLAY"});
    EXPECT_EQ(version.wait().status, 0);
    EXPECT_EQ(version.output(), "Stand-in 1\n");
    Process unknown({STANDIN_SAVER, "-sparkle"}, {"DISPLAY", "XSCREENSAVER_WINDOW"});
    expectRefusal(unknown, 254, "atollia.kss: unknown option -sparkle");
}

}  // namespace
