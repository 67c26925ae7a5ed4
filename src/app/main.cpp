// atollia: the reef in a window, as an idle picture or as the background of the desktop.
#include <malloc.h>

#include <QApplication>
#include <QDialog>
#include <QLoggingCategory>
#include <QScreen>
#include <cstdio>
#include <memory>

#include "app/EndOnSignals.h"
#include "app/Options.h"
#include "app/Platform.h"
#include "app/ReefWindow.h"
#include "app/SavedSettings.h"
#include "quick/Types.h"
#ifdef ATOLLIA_LAYER_SHELL
#include "app/Backgrounds.h"
#endif

// Outside every namespace, as the macro demands.
static void loadPage() { Q_INIT_RESOURCE(page); }

namespace {

int fail(const QString& reason) {
    std::fprintf(stderr, "atollia: %s\n", qPrintable(reason));
    return 1;
}

int failToDraw(const QString& reason) {
    return fail(QStringLiteral("nothing can be drawn: ") + reason);
}

/// Why there can be no background here; empty when there can.
QString whyNoBackground(const QString& platform) {
#ifdef ATOLLIA_LAYER_SHELL
    if (platform != QLatin1String("wayland"))
        return QStringLiteral("--wallpaper needs a Wayland compositor, here is \"%1\"")
            .arg(platform);
    if (!hasLayerShell())
        return QStringLiteral("--wallpaper needs layer-shell, which this compositor does not have");
    return {};
#else
    Q_UNUSED(platform)
    return QStringLiteral("--wallpaper was left out of this build: it needs LayerShellQt");
#endif
}

QScreen* findScreen(const QString& name) {
    for (QScreen* screen : QGuiApplication::screens())
        if (screen->name() == name)
            return screen;
    return nullptr;
}

QString unknownScreen(const QString& name) {
    QStringList names;
    for (const QScreen* screen : QGuiApplication::screens())
        names += screen->name();
    return QStringLiteral("there is no screen \"%1\", only %2").arg(name, names.join(", "));
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // The driver's vertex buffers come and go with every frame; among smaller things they would
    // leave holes, and memory would grow for hours.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    QCoreApplication::setApplicationName(QStringLiteral("atollia"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ATOLLIA_VERSION));
    const OPTIONS options = [&] {
        // Only to read the words: which toolkit there will be depends on them.
        const QCoreApplication words(argc, argv);
        return parseOptions(QCoreApplication::arguments());
    }();
    if (options.status > 0) {
        fail(options.text);
        return options.status;
    }
    if (options.status == 0) {
        std::puts(qPrintable(options.text));
        return 0;
    }

    QString problem;
    const QString platform = choosePlatform(problem);
    if (platform.isEmpty())
        return fail(problem);
    if (options.wallpaper) {
        problem = whyNoBackground(platform);
        if (!problem.isEmpty())
            return fail(problem);
    }
    qputenv("QT_QPA_PLATFORM", platform.toLocal8Bit());
    if (!qEnvironmentVariableIsSet("EGL_LOG_LEVEL"))
        qputenv("EGL_LOG_LEVEL", "fatal");  // what there is to say is said in one line of our own
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // What the toolkit has to say about its platforms is nothing that people can do about.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.xcb*=false\nqt.qpa.wayland*=false"));
    QGuiApplication::setDesktopFileName(QStringLiteral("atollia"));
#ifdef ATOLLIA_LAYER_SHELL
    if (options.wallpaper)
        Backgrounds::prepare();
#endif
    QApplication application(argc, argv);
    application.setWindowIcon(QIcon::fromTheme(QStringLiteral("atollia")));
    application.setQuitOnLastWindowClosed(false);
    if (options.settings) {
        makeSettingsDialog()->exec();
        return 0;
    }
    if (!hasOpenGL())
        return failToDraw(QStringLiteral("there is no OpenGL here"));
    loadPage();
    registerReefTypes("org.atollia.reef");

    QScreen* screen = options.screen.isEmpty() ? nullptr : findScreen(options.screen);
    if (!options.screen.isEmpty() && !screen)
        return fail(unknownScreen(options.screen));
#ifdef ATOLLIA_LAYER_SHELL
    if (options.wallpaper) {
        const Backgrounds backgrounds(options.screen);
        const EndOnSignals ending([] { QCoreApplication::quit(); });
        return application.exec();
    }
#endif
    ReefWindow window(options.until_input ? PURPOSE::UNTIL_INPUT : PURPOSE::LOOKING);
    QObject::connect(&window, &ReefWindow::failed,
                     [](const QString& reason) { std::_Exit(failToDraw(reason)); });
    if (screen) {
        window.setScreen(screen);
        window.setPosition(screen->geometry().topLeft());
    }
    if (options.fullscreen || options.until_input)
        window.showFullScreen();
    else
        window.showRemembered();
    const EndOnSignals ending([&] { window.end(); });
    return application.exec();
}
