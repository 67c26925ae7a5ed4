#include "app/Platform.h"

#include <fcntl.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xcb/xcb.h>

#include <QOpenGLContext>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using Compositor = std::unique_ptr<wl_display, void (*)(wl_display*)>;

Compositor connectCompositor() {
    // What the library has to say about a missing compositor is said in one line of our own.
    wl_log_set_handler_client([](const char*, va_list) {});
    return {wl_display_connect(nullptr), wl_display_disconnect};
}

bool xServerAnswers() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

QString quoted(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? QStringLiteral("%1 is \"%2\"").arg(variable, QString::fromLocal8Bit(value))
                 : QStringLiteral("%1 is not set").arg(variable);
}

void onGlobal(void* found, wl_registry*, uint32_t, const char* interface, uint32_t) {
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
        *static_cast<bool*>(found) = true;
}
void onGlobalRemoved(void*, wl_registry*, uint32_t) {}

/// While it lives, nothing arrives at standard error. Of a driver that cannot be loaded libGL tells
/// even when it is to be quiet.
class Hush {
public:
    Hush() : standard_error(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~Hush() {
        dup2(standard_error, STDERR_FILENO);
        close(standard_error);
    }
    Hush(const Hush&) = delete;
    Hush& operator=(const Hush&) = delete;

private:
    int standard_error;
};

}  // namespace

QString choosePlatform(QString& problem) {
    QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM").section(';', 0, 0);
    if (!wanted.isEmpty() && wanted != QLatin1String("wayland") && wanted != QLatin1String("xcb"))
        return wanted;
    if (wanted != QLatin1String("xcb") && connectCompositor())
        return QStringLiteral("wayland");
    if (wanted != QLatin1String("wayland") && xServerAnswers())
        return QStringLiteral("xcb");
    problem = QStringLiteral("no display to show anything on: %1, %2")
                  .arg(quoted("WAYLAND_DISPLAY"), quoted("DISPLAY"));
    return {};
}

bool hasOpenGL() {
    const auto hush = qEnvironmentVariableIsSet("LIBGL_DEBUG") ? nullptr : std::make_unique<Hush>();
    return QOpenGLContext().create();
}

bool hasLayerShell() {
    const Compositor compositor = connectCompositor();
    if (!compositor)
        return false;
    static const wl_registry_listener listener = {onGlobal, onGlobalRemoved};
    bool found = false;
    wl_registry* registry = wl_display_get_registry(compositor.get());
    wl_registry_add_listener(registry, &listener, &found);
    wl_display_roundtrip(compositor.get());
    wl_registry_destroy(registry);
    return found;
}
