#include "host/Monitors.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

template <class REPLY>
using Owned = std::unique_ptr<REPLY, void (*)(void*)>;

bool contains(const AREA& outer, const AREA& inner) {
    return inner.x >= outer.x && inner.y >= outer.y &&
           inner.x + inner.width <= outer.x + outer.width &&
           inner.y + inner.height <= outer.y + outer.height;
}

}  // namespace

std::vector<AREA> monitorsInside(const AREA& window, const std::vector<AREA>& monitors) {
    std::vector<AREA> inside;
    for (const AREA& monitor : monitors) {
        const auto shows = [&](const AREA& other) { return contains(other, monitor); };
        if (monitor.width <= 0 || monitor.height <= 0 || !contains(window, monitor) ||
            std::any_of(inside.begin(), inside.end(), shows))
            continue;
        inside.erase(std::remove_if(inside.begin(), inside.end(),
                                    [&](const AREA& other) { return contains(monitor, other); }),
                     inside.end());
        inside.push_back(monitor);
    }
    if (inside.size() < 2)
        return {};
    for (AREA& area : inside) {
        area.x -= window.x;
        area.y -= window.y;
    }
    return inside;
}

std::vector<AREA> monitorsUnder(xcb_connection_t* connection, std::uint32_t window) {
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(connection, &xcb_randr_id);
    if (!extension || !extension->present)
        return {};
    const Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr),
        std::free);
    if (!geometry)
        return {};
    const Owned<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, window, geometry->root, 0, 0),
            nullptr),
        std::free);
    const Owned<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(
            connection, xcb_randr_get_monitors(connection, geometry->root, 1), nullptr),
        std::free);
    if (!place || !reply)
        return {};
    std::vector<AREA> monitors;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem;
         xcb_randr_monitor_info_next(&it))
        monitors.push_back({it.data->x, it.data->y, it.data->width, it.data->height});
    return monitorsInside({place->dst_x, place->dst_y, geometry->width, geometry->height},
                          monitors);
}
