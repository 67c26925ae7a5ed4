// Runs the tests on a fixed platform, style, font and resolution, whatever the machine has.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QStyleFactory>

// The offscreen platform never deletes its screen and a context made on it, KConfig loses its lock
// when it cannot take it. What our own code allocates is still reported.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libqoffscreen.so\nleak:libQt5Gui.so\nleak:libQt5Core.so\nleak:libQt5OpenGL.so\n"
           "leak:libKF5ConfigCore.so\n";
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    return RUN_ALL_TESTS();
}
