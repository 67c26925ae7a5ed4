// Runs tests of widgets: on an X server of their own, with an empty home for settings.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "host/virtual_display.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    const test::VirtualDisplay display;
    if (display.name().empty()) {
        std::puts("no X server");
        return 1;
    }
    const QTemporaryDir home;
    setenv("DISPLAY", display.name().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    setenv("XDG_RUNTIME_DIR", qPrintable(home.path()), 1);
    setenv("XDG_CONFIG_HOME", qPrintable(home.filePath("config")), 1);
    setenv("XDG_CONFIG_DIRS", qPrintable(home.filePath("none")), 1);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
