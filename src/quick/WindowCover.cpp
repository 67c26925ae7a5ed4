#include "quick/WindowCover.h"

#include <xcb/xcb.h>

#include <QSocketNotifier>
#include <cstdlib>
#include <memory>

WindowCover::WindowCover(std::uint32_t window)
    : watched(window), server(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(server))
        return;
    const std::uint32_t wanted = XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(server, watched, XCB_CW_EVENT_MASK, &wanted);
    xcb_flush(server);
    news = new QSocketNotifier(xcb_get_file_descriptor(server), QSocketNotifier::Read, this);
    connect(news, &QSocketNotifier::activated, this, &WindowCover::listen);
}

WindowCover::~WindowCover() {
    delete news;  // before what it listens to
    xcb_disconnect(server);
}

void WindowCover::listen() {
    bool now_covered = is_covered;
    while (const std::unique_ptr<xcb_generic_event_t, void (*)(void*)> event{
        xcb_poll_for_event(server), std::free}) {
        if ((event->response_type & 0x7f) == XCB_VISIBILITY_NOTIFY)
            now_covered =
                reinterpret_cast<const xcb_visibility_notify_event_t*>(event.get())->state ==
                XCB_VISIBILITY_FULLY_OBSCURED;
    }
    if (xcb_connection_has_error(server)) {
        news->setEnabled(false);
        now_covered = false;
    }
    if (now_covered == is_covered)
        return;
    is_covered = now_covered;
    emit coveredChanged();
}
