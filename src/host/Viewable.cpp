#include "host/Viewable.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

bool isViewable(xcb_connection_t* connection, std::uint32_t window) {
    const std::unique_ptr<xcb_get_window_attributes_reply_t, void (*)(void*)> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                        nullptr),
        std::free);
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}
