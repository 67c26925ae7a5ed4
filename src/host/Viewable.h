// Whether a window is on the screen.
#pragma once

#include <cstdint>

struct xcb_connection_t;

/// It and all its ancestors are mapped, and it can show something. False for one that is no more.
/// Waits for the server.
bool isViewable(xcb_connection_t* connection, std::uint32_t window);
