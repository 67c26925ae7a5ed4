#include "host/FramePacer.h"

#include <GL/gl.h>
#include <xcb/dpms.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QEvent>
#include <QResizeEvent>
#include <QScreen>
#include <QWindow>
#include <QX11Info>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include "framework/KDEFrame.h"
#include "host/Renderer.h"
#include "host/Viewable.h"

namespace {

/// An ancestor's unmapping and the monitor's sleep send no event; they are asked for this often.
constexpr std::int64_t QUESTION_PERIOD = 500;  // milliseconds
constexpr std::chrono::milliseconds UNSEEN_PAUSE(30);

template <class REPLY>
using Owned = std::unique_ptr<REPLY, void (*)(void*)>;

std::int64_t now() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

bool monitorSleeps(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_dpms_id);
    if (!extension || !extension->present)
        return false;
    const Owned<xcb_dpms_info_reply_t> info(
        xcb_dpms_info_reply(connection, xcb_dpms_info(connection), nullptr), std::free);
    return info && info->state && info->power_level != XCB_DPMS_DPMS_MODE_ON;
}

}  // namespace

FrameLimit::FrameLimit(double framesPerSecond)
    : frames_per_second(framesPerSecond), period(1000.0 / framesPerSecond), next(0) {}

bool FrameLimit::due(std::int64_t now) {
    const auto time = static_cast<double>(now);
    if (time < next)
        return false;
    next = std::max(next + period, time);
    return true;
}

FramePacer::FramePacer(KDEFrame& frame, int wanted, SCENE_CALLS calls)
    : paced(frame),
      scene(std::move(calls)),
      wanted_rate(wanted),
      started(false),
      software(false),
      held(false),
      limit(1),
      next_question(0) {
    paced.installEventFilter(this);
    qApp->installNativeEventFilter(this);
}

FramePacer::~FramePacer() { qApp->removeNativeEventFilter(this); }

bool FramePacer::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &paced)
        return false;
    if (event->type() == QEvent::Timer)
        return !mayDraw();
    return event->type() == QEvent::Paint && !readyToPaint();
}

bool FramePacer::windowIsViewable() const {
    return isViewable(QX11Info::connection(), static_cast<std::uint32_t>(paced.internalWinId()));
}

bool FramePacer::readyToPaint() {
    // Where the frame does not touch its window there is no need to wait for the server, which is
    // at work on the last picture.
    if (paced.autoBufferSwap() && !windowIsViewable())
        return false;
    if (!paced.initdone) {
        // Left to itself the toolkit paints right after the loading, in which the window may go.
        QResizeEvent loading(paced.size(), QSize());
        QCoreApplication::sendEvent(&paced, &loading);
        if (!paced.initdone || !windowIsViewable())
            return false;
    }
    if (!paced.windowHandle()->isExposed())
        return false;  // the toolkit has not heard yet that it is on the screen
    if (!std::exchange(started, true))
        start();
    followSize();
    if (std::exchange(held, false)) {
        scene.skip_unseen_time();
        scene.drawing(true);
    }
    return true;
}

void FramePacer::start() {
    paced.makeCurrent();
    software = isSoftwareRenderer(reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    followRefreshRate();
    // Buffers are as large as the window was when its context was made, and are made anew when they
    // are swapped: without this the first picture would be a piece of one.
    glClear(GL_COLOR_BUFFER_BIT);
    paced.swapBuffers();
}

void FramePacer::followSize() {
    if (paced.width() == paced.resolution_x && paced.height() == paced.resolution_y)
        return;
    paced.makeCurrent();
    // Software renderers find the new size out only when they swap. What is shown meanwhile is the
    // last picture, in its place.
    if (software && paced.autoBufferSwap())
        paced.swapBuffers();
    scene.set_view_size(paced.width(), paced.height());
}

void FramePacer::followRefreshRate() {
    const double rate = frameLimit(wanted_rate, paced.screen()->refreshRate(), software);
    if (rate != limit.rate())
        limit = FrameLimit(rate);
}

bool FramePacer::mayDraw() {
    const std::int64_t time = now();
    if (time >= next_question)
        askServer();
    if (!state.seen()) {
        if (!std::exchange(held, true))
            scene.drawing(false);
        // A hundred ticks a second cost more than all else that an unseen saver does. Short enough
        // for a signal to end us in time.
        std::this_thread::sleep_for(UNSEEN_PAUSE);
        return false;
    }
    if (started && !limit.due(time))
        return false;
    // News of a destroyed window comes late, and Mesa's software renderer crashes drawing into one.
    if (readyToPaint())
        return true;
    next_question = 0;  // the next tick finds out whether that lasts
    return false;
}

void FramePacer::askServer() {
    xcb_connection_t* connection = QX11Info::connection();
    state.viewable = windowIsViewable();
    state.asleep = monitorSleeps(connection);
    if (started)
        followRefreshRate();
    next_question = now() + QUESTION_PERIOD;
}

bool FramePacer::nativeEventFilter(const QByteArray& type, void* message, long*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_VISIBILITY_NOTIFY)
        return false;
    const auto* visibility = reinterpret_cast<const xcb_visibility_notify_event_t*>(event);
    if (visibility->window == paced.internalWinId()) {
        state.obscured = visibility->state == XCB_VISIBILITY_FULLY_OBSCURED;
        next_question = 0;  // it may also have become viewable again
    }
    return false;
}
