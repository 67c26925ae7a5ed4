// Runs the tests on a fixed platform, style, font and resolution, whatever the machine has.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QStyleFactory>

// For the sanitizers, where they are built in: KConfig loses its lock when it cannot take it, the
// offscreen platform never deletes its screen. Their names are found only where every call is
// followed back.
extern "C" const char* __asan_default_options() { return "fast_unwind_on_malloc=0"; }
extern "C" const char* __lsan_default_suppressions() {
    return "leak:KConfig::sync\nleak:QGuiApplicationPrivate::createPlatformIntegration\n";
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
