#include "host/KScreenSaver.h"

#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <QX11Info>
#include <cstdlib>
#include <memory>
#include <optional>

namespace {

constexpr Qt::WindowFlags host_flags = Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                                       Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus;

/// In its own coordinates; empty when there is no such window.
std::optional<QRect> geometryOf(WId window) {
    xcb_connection_t* connection = QX11Info::connection();
    const std::unique_ptr<xcb_get_geometry_reply_t, void (*)(void*)> reply(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr),
        std::free);
    if (!reply)
        return {};
    return QRect(0, 0, reply->width, reply->height);
}

/// The area of the screen whose root window this is; empty for any other window.
std::optional<QRect> screenWithRoot(WId window) {
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(QX11Info::connection())); it.rem;
         xcb_screen_next(&it))
        if (it.data->root == window)
            return QRect(0, 0, it.data->width_in_pixels, it.data->height_in_pixels);
    return {};
}

/// Asks for more events of a window. The event mask is this client's own; the toolkit may have
/// asked for events, too.
void addEvents(WId window, std::uint32_t mask) {
    xcb_connection_t* connection = QX11Info::connection();
    std::unique_ptr<xcb_get_window_attributes_reply_t, void (*)(void*)> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                        nullptr),
        std::free);
    if (!attributes)
        return;
    mask |= attributes->your_event_mask;
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
}

/// Asks for the end of the program; works before the event loop runs, too.
void endProgram() {
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
}

}  // namespace

KScreenSaver::KScreenSaver(WId id)
    : QWidget(nullptr, id ? host_flags : Qt::Window),
      host(id),
      foreign(nullptr),
      embedded(nullptr) {
    setAutoFillBackground(true);
    qApp->installNativeEventFilter(this);
    if (!host)
        return;
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    if (const auto screen = screenWithRoot(host))
        coverRoot(*screen);
    else
        enterWindow(host);
}

KScreenSaver::~KScreenSaver() {
    qApp->removeNativeEventFilter(this);
    // Our window has to leave the foreign one before that object goes, else it would go with it.
    if (foreign && windowHandle())
        windowHandle()->setParent(nullptr);
    delete foreign;
}

void KScreenSaver::coverRoot(const QRect& screen) {
    addEvents(host, XCB_EVENT_MASK_STRUCTURE_NOTIFY);  // the screen may change its size
    setGeometry(screen);
    show();
    lower();
}

void KScreenSaver::enterWindow(WId id) {
    // Button presses are left alone: only one client can have them, and that is the host.
    addEvents(id, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    // Asked only now, so that a change of size in between arrives as an event.
    const auto area = geometryOf(id);
    if (!area) {
        hostGone();
        return;
    }
    foreign = QWindow::fromWinId(id);
    winId();  // makes the window
    windowHandle()->setParent(foreign);
    setGeometry(*area);
    show();
}

void KScreenSaver::setBackgroundColor(const QColor& colour) {
    QPalette colours = palette();
    colours.setColor(QPalette::Window, colour);
    setPalette(colours);
}

void KScreenSaver::erase() { update(); }

void KScreenSaver::embed(QWidget* widget) {
    embedded = widget;
    widget->setParent(this);
    widget->setGeometry(rect());
    // Before it is shown, so that the first news is not missed.
    addEvents(widget->winId(), XCB_EVENT_MASK_VISIBILITY_CHANGE);
}

void KScreenSaver::resizeEvent(QResizeEvent* event) {
    if (embedded && embedded->parentWidget() == this)
        embedded->setGeometry(rect());
    QWidget::resizeEvent(event);
}

void KScreenSaver::keyPressEvent(QKeyEvent* event) {
    if (!host && (event->key() == Qt::Key_Q || event->key() == Qt::Key_Escape))
        close();
    else if (!host && event->key() == Qt::Key_F11)
        setFullScreen(!fillsScreen());
    else
        QWidget::keyPressEvent(event);
}

void KScreenSaver::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!host && event->button() == Qt::LeftButton)
        setFullScreen(!fillsScreen());
    else
        QWidget::mouseDoubleClickEvent(event);
}

bool KScreenSaver::fillsScreen() const {
    return isFullScreen() || geometry() == screen()->geometry();
}

void KScreenSaver::setFullScreen(bool full) {
    if (full)
        normal = geometry();
    setCursor(full ? Qt::BlankCursor : Qt::ArrowCursor);
    setWindowState(full ? Qt::WindowFullScreen : Qt::WindowNoState);
    // Where there is no window manager nobody else does it, nor follows a changed resolution.
    setGeometry(full ? screen()->geometry() : normal);
    disconnect(following);
    if (full)
        following = connect(screen(), &QScreen::geometryChanged, this, [this](const QRect& whole) {
            if (isFullScreen())
                setGeometry(whole);
        });
}

void KScreenSaver::leaveScreen() {
    if (host)
        return;
    hide();
    xcb_flush(QX11Info::connection());
}

bool KScreenSaver::nativeEventFilter(const QByteArray& type, void* message, long*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto* configured = reinterpret_cast<const xcb_configure_notify_event_t*>(event);
            if (host && configured->window == host)
                setGeometry(0, 0, configured->width, configured->height);
            break;
        }
        case XCB_DESTROY_NOTIFY: {
            const auto* destroyed = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
            if (destroyed->window &&
                (destroyed->window == host || destroyed->window == internalWinId()))
                hostGone();
            break;
        }
        default:
            break;
    }
    return false;
}

void KScreenSaver::hostGone() {
    setUpdatesEnabled(false);  // nothing is drawn into a window that is gone
    endProgram();
}
