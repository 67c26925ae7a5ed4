#include "host/DisplayProbe.h"

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

/// Replies of xcb are malloc'ed and belong to the caller.
struct FREE {
    void operator()(void* memory) const { std::free(memory); }
};
template <class REPLY>
using Owned = std::unique_ptr<REPLY, FREE>;

xcb_screen_t* screenAt(xcb_connection_t* connection, int number) {
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (it.rem > 1 && number-- > 0)
        xcb_screen_next(&it);
    return it.data;
}

xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 1, name.size(), name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

}  // namespace

DisplayProbe::DisplayProbe() : connection(nullptr), screen_number(0) {
    connection = xcb_connect(nullptr, &screen_number);
}

DisplayProbe::~DisplayProbe() { xcb_disconnect(connection); }

bool DisplayProbe::connected() const { return !xcb_connection_has_error(connection); }

bool DisplayProbe::hasGlx() const {
    const std::string name = "GLX";
    const Owned<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection, xcb_query_extension(connection, name.size(), name.data()), nullptr));
    return reply && reply->present;
}

std::optional<int> DisplayProbe::screenOf(std::uint32_t window) const {
    const Owned<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    if (!reply)
        return {};
    int number = 0;
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(connection)); it.rem;
         xcb_screen_next(&it), ++number)
        if (it.data->root == reply->root)
            return number;
    return {};
}

std::uint32_t DisplayProbe::rootWindow() const {
    const xcb_window_t root = screenAt(connection, screen_number)->root;
    const xcb_atom_t mark = atom(connection, "__SWM_VROOT");
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, root), nullptr));
    if (!tree || mark == XCB_ATOM_NONE)
        return root;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const Owned<xcb_get_property_reply_t> property(xcb_get_property_reply(
            connection,
            xcb_get_property(connection, 0, children[i], mark, XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
            nullptr));
        if (property && property->type != XCB_ATOM_NONE)
            return children[i];
    }
    return root;
}

std::string displayOnScreen(const std::string& display, int screen) {
    const std::size_t colon = display.rfind(':');
    const std::size_t dot = colon == std::string::npos ? colon : display.find('.', colon);
    return display.substr(0, dot) + "." + std::to_string(screen);
}
