#include <GL/gl.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
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
#include "host/ScreenPainter.h"
#include "host/SoundGate.h"
#include "main.h"

namespace {

/// How long to wait until the sounds have faded, milliseconds: the mixer's turn comes every 185.
constexpr int FADE = 250;

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
    // The sound library must leave the signals that end us to us, from its first moment on.
    setenv("SDL_NO_SIGNAL_HANDLERS", "1", 1);
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

/// Messages that nobody takes out of a pipe must not stop the drawing. The pipe is opened anew, for
/// others who write to it may want to wait.
void neverWaitForReaders() {
    struct stat output;
    if (fstat(STDOUT_FILENO, &output) != 0 || !S_ISFIFO(output.st_mode))
        return;
    const int pipe = open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (pipe < 0)
        return;
    dup2(pipe, STDOUT_FILENO);
    close(pipe);
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

void showDemo(KScreenSaver& window, const ARGUMENTS& arguments) {
    const GEOMETRY& wanted = arguments.geometry;
    QSize size = window.screen()->size() * 2 / 3;
    if (wanted.width)
        size = QSize(wanted.width, wanted.height);
    window.setWindowTitle(QString::fromLatin1(kss_description));
    window.resize(size);
    if (wanted.placed) {
        const QSize screen = window.screen()->size();
        window.move(wanted.from_right ? screen.width() - size.width() - wanted.x : wanted.x,
                    wanted.from_bottom ? screen.height() - size.height() - wanted.y : wanted.y);
    }
    if (arguments.fullscreen)
        window.setFullScreen(true);
    window.show();
}

/// While it lives, nothing is written to standard error by this process: a GL library without a
/// driver says there what we say in one line. Whoever looks for the fault sets LIBGL_DEBUG and sees
/// it all.
class Hush {
public:
    Hush() : errors(std::getenv("LIBGL_DEBUG") ? -1 : fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (errors >= 0 && nowhere >= 0)
            dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~Hush() {
        if (errors < 0)
            return;
        dup2(errors, STDERR_FILENO);
        close(errors);
    }
    Hush(const Hush&) = delete;
    Hush& operator=(const Hush&) = delete;

private:
    int errors;  ///< the real one; negative when there is none
};

/// Whether graphics hardware draws; loads the driver.
bool findDriver() {
    const Hush hush;
    return isAccelerated();
}

bool canDraw(KDEFrame& frame) {
    frame.makeCurrent();
    return frame.isValid() && glGetString(GL_RENDERER);
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
    const bool accelerated = findDriver();
    const int samples = samplesPerPixel(arguments.samples, accelerated);
    // Nothing can be enlarged into a window that has samples: then the smaller picture has them.
    // Who asks a software renderer for samples, and for no fraction, wants to see them whole.
    const bool scaled = arguments.scale ? *arguments.scale < 1 : !accelerated && samples == 0;
    if (samples && !scaled) {
        format.setSampleBuffers(true);
        format.setSamples(samples);
    }
    QGLFormat::setDefaultFormat(format);

    for (const EXTRA_VALUE& wanted : arguments.extras)
        presetSetting(wanted);
    SoundGate sounds;
    const std::unique_ptr<KScreenSaver> saver(kss_create(demo ? 0 : arguments.window));
    KDEFrame& frame = *static_cast<KDEScreensaverFrame&>(*saver).saver;
    if (!canDraw(frame))
        return fail("the display's GL driver gives no context, nothing can be drawn");
    if (arguments.fps)
        showFrameRate(*saver);
    if (arguments.minute)
        setDayTime(*saver, *arguments.minute);
    // Some drivers have no windows with samples, but pictures.
    GLint window_samples = 0;
    glGetIntegerv(GL_SAMPLES, &window_samples);
    const ScreenPainter painter(frame, pictureOf(*saver),
                                scaled ? arguments.scale : std::optional<double>(1),
                                window_samples ? 0 : samples);
    const FramePacer pacer(
        frame, arguments.maxfps,
        {[&](int width, int height) { setViewSize(*saver, width, height); },
         [&] { skipUnseenTime(*saver); }, [&](bool drawing) { sounds.setDrawing(drawing); }});
    const Ending ending([&] {
        saver->setUpdatesEnabled(false);
        saver->leaveScreen();
        if (sounds.silent()) {
            frame.releaseScene();
            return;
        }
        // The scene would close the device, and wait until all is played.
        Ending::soundsFade();
        sounds.leaveToDevice();
    });
    if (demo) {
        // No host has locked the screen: a picture that takes long cuts off no sound.
        Ending::nobodyWaits();
        showDemo(*saver, arguments);
    }
    const int status = application.exec();
    Ending::nobodyWaits();
    sounds.fadeOut();
    sounds.waitForSilence(FADE);
    return status;
}

}  // namespace

int main(int argc, char* argv[]) {
    // A signal that ends us would take with it what waits to be written to a log.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    neverWaitForReaders();
    // The driver's vertex buffers, half a mebibyte and more, come and go with every frame. Among
    // smaller things they would leave holes, and memory would grow for hours.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    // Small ones do, too; given back each time, they would be asked for again eighty times a frame.
    mallopt(M_TRIM_THRESHOLD, 16 * 1024 * 1024);
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
        quietSoundLibrary();
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
