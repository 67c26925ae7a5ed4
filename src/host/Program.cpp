#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QDialog>
#include <QGLFormat>
#include <QLoggingCategory>
#include <QScreen>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/KDEFrame.h"
#include "host/Arguments.h"
#include "host/DisplayProbe.h"
#include "host/Ending.h"
#include "host/FramePacer.h"
#include "host/KDEScreensaverFrame.h"
#include "host/Renderer.h"
#include "main.h"

namespace {

constexpr QSize demo_size(600, 420);

int fail(const std::string& reason) {
    std::fprintf(stderr, "atollia.kss: %s\n", reason.c_str());
    return 1;
}

/// The host's window has the size it has, on X: what the desktop tells its own applications about
/// platforms, scaling, themes and sessions must not reach a saver.
void settleEnvironment() {
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    for (const char* name :
         {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
          "QT_ENABLE_HIGHDPI_SCALING", "QT_DEVICE_PIXEL_RATIO", "QT_XCB_GL_INTEGRATION",
          "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "SESSION_MANAGER"})
        unsetenv(name);
    // The toolkit would start a message bus where there is none, and leave it behind.
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling);
    // A window that goes while we draw makes X errors that mean nothing.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.xcb*=false"));
}

/// Some hosts pass no runtime directory. Sound servers listen in it, and without it the toolkit
/// would make a directory in /tmp. While this object lives there is always a value.
class RuntimeDirectory {
public:
    RuntimeDirectory() : missing(false) {
        const std::string usual = "/run/user/" + std::to_string(getuid());
        missing = !std::getenv(variable) && access(usual.c_str(), X_OK) != 0;
        setenv(variable, missing ? "/dev/null/none" : usual.c_str(), 0);
        if (!missing)
            return;
        // What the toolkit then makes instead goes here, that is, nowhere.
        if (const char* place = std::getenv(temporary))
            temporary_place = place;
        setenv(temporary, "/dev/null", 1);
    }
    ~RuntimeDirectory() {
        if (!missing)
            return;
        unsetenv(variable);
        if (temporary_place)
            setenv(temporary, temporary_place->c_str(), 1);
        else
            unsetenv(temporary);
    }

private:
    static constexpr const char* variable = "XDG_RUNTIME_DIR";
    static constexpr const char* temporary = "TMPDIR";
    bool missing;
    std::optional<std::string> temporary_place;
};

bool cannotOpen(const char* display) {
    fail(display ? "cannot open display \"" + std::string(display) + "\""
                 : "no display: DISPLAY is not set");
    return false;
}

/// The dialog, unlike the saver, also runs where the toolkit has another platform than X.
bool canShowDialog() {
    if (std::getenv("QT_QPA_PLATFORM") || std::getenv("WAYLAND_DISPLAY"))
        return true;
    return DisplayProbe().connected() || cannotOpen(std::getenv("DISPLAY"));
}

/// Finds the window to draw into and makes sure that drawing is possible. Returns false after
/// telling why not.
bool findWindow(ARGUMENTS& arguments) {
    const char* name = std::getenv("DISPLAY");
    const DisplayProbe display;
    if (!display.connected())
        return cannotOpen(name);
    if (!display.hasGlx()) {
        fail("the display has no GLX, nothing can be drawn");
        return false;
    }
    if (arguments.mode == SAVER_MODE::ROOT)
        arguments.window = display.rootWindow();
    if (arguments.mode == SAVER_MODE::DEMO)
        return true;
    const auto screen = display.screenOf(arguments.window);
    if (!screen) {
        char text[64];
        std::snprintf(text, sizeof text, "there is no window 0x%x", arguments.window);
        fail(text);
        return false;
    }
    // A window can only have children that were made on its own screen.
    if (name && *screen != display.screen())
        setenv("DISPLAY", displayOnScreen(name, *screen).c_str(), 1);
    return true;
}

void showDemo(KScreenSaver& window, const GEOMETRY& wanted) {
    QSize size = demo_size;
    if (wanted.width)
        size = QSize(wanted.width, wanted.height);
    window.setWindowTitle(QString::fromLatin1(kss_description));
    window.resize(size);
    if (wanted.placed) {
        const QSize screen = window.screen()->size();
        window.move(wanted.from_right ? screen.width() - size.width() - wanted.x : wanted.x,
                    wanted.from_bottom ? screen.height() - size.height() - wanted.y : wanted.y);
    }
    window.show();
}

int runSetup(const ARGUMENTS& arguments) {
    const std::unique_ptr<QDialog> dialog(createSetup(arguments.language));
    dialog->exec();
    return 0;
}

int runSaver(QApplication& application, const ARGUMENTS& arguments) {
    const bool demo = arguments.mode == SAVER_MODE::DEMO;
    application.setQuitOnLastWindowClosed(demo);
    QGLFormat format;
    format.setSwapInterval(1);
    if (const int samples = samplesPerPixel(arguments.samples, isAccelerated())) {
        format.setSampleBuffers(true);
        format.setSamples(samples);
    }
    QGLFormat::setDefaultFormat(format);

    const std::unique_ptr<KScreenSaver> saver(kss_create(demo ? 0 : arguments.window));
    if (arguments.fps)
        showFrameRate(*saver);
    KDEFrame& frame = *static_cast<KDEScreensaverFrame&>(*saver).saver;
    const FramePacer pacer(frame, arguments.maxfps);
    const Ending ending([&] {
        saver->setUpdatesEnabled(false);
        frame.releaseScene();
    });
    if (demo)
        showDemo(*saver, arguments.geometry);
    return application.exec();
}

}  // namespace

int main(int argc, char* argv[]) {
    // A signal that ends us would take with it what waits to be written to a log.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    // The driver's vertex buffers, half a mebibyte and more, come and go with every frame. Among
    // smaller things they would leave holes, and memory would grow for hours.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    ARGUMENTS arguments = parseArguments(std::vector<std::string>(argv + (argc > 0), argv + argc),
                                         std::getenv("XSCREENSAVER_WINDOW"));
    for (const std::string& line : arguments.complaints)
        fail(line);
    switch (arguments.mode) {
        case SAVER_MODE::REFUSED:
            return arguments.status;
        case SAVER_MODE::HELP:
            std::fputs(usage().c_str(), stdout);
            return 0;
        case SAVER_MODE::VERSION:
            std::printf("%s %s\n", kss_description, kss_version);
            return 0;
        default:
            break;
    }

    if (!arguments.display.empty())
        setenv("DISPLAY", arguments.display.c_str(), 1);
    const bool setup = arguments.mode == SAVER_MODE::SETUP;
    if (!setup) {
        prepareEnding();
        settleEnvironment();
    }
    if (setup ? !canShowDialog() : !findWindow(arguments))
        return 1;

    // The toolkit must not see the options: it takes several of them for itself.
    int ownArgc = 1;
    char* ownArgv[] = {argv[0], nullptr};
    std::optional<RuntimeDirectory> runtime;
    if (setup)
        QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    else
        runtime.emplace();
    QApplication application(ownArgc, ownArgv);
    runtime.reset();
    QCoreApplication::setApplicationName(QStringLiteral("atollia"));
    return setup ? runSetup(arguments) : runSaver(application, arguments);
}
