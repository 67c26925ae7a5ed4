// A session in the style of KDE 3: a control module that shows a preview and the setup dialog, and
// a locker that covers the screen. Both read our desktop file for the commands, as the real ones
// do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "host/virtual_display.h"

namespace {

using test::Client;
using test::PIXEL;
using test::Process;
using test::VirtualDisplay;

/// Keys of the desktop file as "Group/Key".
std::map<std::string, std::string> readDesktopFile() {
    std::ifstream file(DESKTOP_FILE);
    std::map<std::string, std::string> entries;
    std::string group;
    for (std::string line; std::getline(file, line);) {
        const std::size_t equals = line.find('=');
        if (!line.empty() && line[0] == '[')
            group = line.substr(1, line.size() - 2);
        else if (equals != std::string::npos)
            entries[group + "/" + line.substr(0, equals)] = line.substr(equals + 1);
    }
    return entries;
}

class KdeSession : public testing::Test {
protected:
    void SetUp() override {
        display.emplace(std::vector<std::string>{"-screen", "0", "640x480x24"});
        ASSERT_NE(display->name(), "") << "no X server";
        client.emplace(display->name());
        char folder[] = "/tmp/atollia-session-XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        home = folder;
    }
    void TearDown() override {
        const std::string remove = "rm -rf '" + home + "'";
        EXPECT_EQ(std::system(remove.c_str()), 0);
    }

    /// The command of one of the desktop file's actions, with the window's number for %w.
    Process run(const std::string& action, xcb_window_t window = 0,
                const std::vector<std::string>& more = {}) const {
        const auto entries = readDesktopFile();
        const auto command = entries.find("Desktop Action " + action + "/Exec");
        std::vector<std::string> words;
        if (command != entries.end()) {
            std::istringstream in(command->second);
            for (std::string word; in >> word;)
                words.push_back(word == "%w" ? std::to_string(window) : word);
        }
        EXPECT_FALSE(words.empty()) << "no action " << action;
        if (!words.empty() && words[0] == entries.at("Desktop Entry/Exec"))
            words[0] = SAVER;
        words.insert(words.end(), more.begin(), more.end());
        return Process(
            words, {"DISPLAY=" + display->name(), "HOME=" + home, "XDG_CONFIG_HOME=" + home,
                    "XDG_RUNTIME_DIR=" + home, "SDL_AUDIODRIVER=dummy", "LIBGL_ALWAYS_SOFTWARE=1",
                    "QT_QPA_PLATFORM", "XSCREENSAVER_WINDOW"});
    }

    /// Waits for blue sky at this place of the screen.
    bool waitForSky(int x, int y) {
        for (int i = 0; i < 1200; ++i) {
            const PIXEL colour = client->pixel(x, y);
            if (colour.blue > 150 && colour.blue > colour.red + 20 && colour.red < 230)
                return true;
            usleep(50000);
        }
        return false;
    }

    /// Waits until a part of the screen shows something else than now.
    bool waitForMotion(int x, int y, int width, int height) {
        const auto look = [&] {
            std::vector<int> sum;
            for (int row = y; row < y + height; row += 4)
                for (int column = x; column < x + width; column += 4) {
                    const PIXEL colour = client->pixel(column, row);
                    sum.push_back(colour.red * 65536 + colour.green * 256 + colour.blue);
                }
            return sum;
        };
        const auto before = look();
        for (int i = 0; i < 600; ++i) {
            if (look() != before)
                return true;
            usleep(50000);
        }
        return false;
    }

    std::optional<VirtualDisplay> display;
    std::optional<Client> client;
    std::string home;
};

TEST_F(KdeSession, TheDesktopFileOffersTheThreeActions) {
    const auto entries = readDesktopFile();
    EXPECT_EQ(entries.at("Desktop Entry/Exec"), "atollia.kss");
    EXPECT_EQ(entries.at("Desktop Entry/Actions"), "Setup;InWindow;Root;");
    EXPECT_EQ(entries.at("Desktop Entry/X-KDE-Type"), "OpenGL");
    EXPECT_EQ(entries.at("Desktop Entry/X-TDE-Type"), "OpenGL");
    EXPECT_EQ(entries.at("Desktop Action InWindow/NoDisplay"), "true");
    EXPECT_EQ(entries.at("Desktop Action Root/NoDisplay"), "true");
}

TEST_F(KdeSession, Preview) {
    const xcb_window_t preview = client->window(100, 100, 151, 115);
    {
        Process saver = run("InWindow", preview);
        EXPECT_TRUE(waitForSky(110, 104)) << saver.errors();
        EXPECT_TRUE(waitForMotion(100, 160, 151, 55));
        // The control module's window is enlarged.
        client->resize(preview, 440, 330);
        EXPECT_TRUE(waitForSky(530, 104));
        EXPECT_TRUE(waitForMotion(300, 320, 240, 110));
        client->resize(preview, 151, 115);
        saver.signal(SIGTERM);
        EXPECT_EQ(saver.wait().signal, SIGTERM);
    }
    // Another saver is chosen and then ours again, in the same window.
    Process again = run("InWindow", preview);
    EXPECT_TRUE(waitForSky(110, 104)) << again.errors();
    client->destroy(preview);
    const test::END end = again.wait();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.signal, 0);
}

TEST_F(KdeSession, LockedForAMinuteWithTheScreenOff) {
    const xcb_window_t locker = client->window(0, 0, 640, 480);
    client->mark(locker, "__SWM_VROOT");
    Process saver = run("Root");
    EXPECT_TRUE(waitForSky(20, 5)) << saver.errors();
    saver.signal(SIGSTOP);
    EXPECT_FALSE(saver.wait(60000).ended);
    saver.signal(SIGCONT);
    EXPECT_TRUE(waitForMotion(0, 300, 640, 100));
    EXPECT_TRUE(waitForSky(20, 5));
    saver.signal(SIGTERM);
    EXPECT_EQ(saver.wait().signal, SIGTERM);
    EXPECT_EQ(client->child(locker), 0U);
}

TEST_F(KdeSession, Setup) {
    Process dialog = run("Setup", 0, {"-caption", "Screen Saver", "-icon", "kscreensaver"});
    xcb_window_t window = 0;
    for (int i = 0; i < 1200 && !window; ++i) {
        usleep(50000);
        window = client->findAny();
    }
    ASSERT_NE(window, 0U) << dialog.errors();
    client->askToClose(window);
    const test::END end = dialog.wait();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.signal, 0);
}

}  // namespace
