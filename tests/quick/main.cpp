// Runs tests of Qt Quick on an X server of their own, with the render loop of two threads.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "host/virtual_display.h"
#include "quick/Types.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    const test::VirtualDisplay display(
        {"-screen", "0", "800x600x24", "+extension", "GLX", "-noreset"});
    if (display.name().empty()) {
        std::puts("no X server");
        return 1;
    }
    const QTemporaryDir home;
    setenv("DISPLAY", display.name().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("QSG_RENDER_LOOP", "threaded", 1);
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    setenv("XDG_RUNTIME_DIR", qPrintable(home.path()), 1);
    QGuiApplication application(argc, argv);
    registerReefTypes("org.atollia.reef");
    return RUN_ALL_TESTS();
}
