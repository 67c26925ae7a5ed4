// The monitors that a window covers.
#pragma once

#include <cstdint>
#include <vector>

struct xcb_connection_t;

/// Pixels, from the left and upper edge of whatever it lies in.
struct AREA {
    int x, y, width, height;

    bool operator==(const AREA& other) const {
        return x == other.x && y == other.y && width == other.width && height == other.height;
    }
};

/// The monitors that lie whole within a window, in the window's own coordinates; of several that
/// show the same, the largest. Empty unless there are at least two: then the window is one picture.
std::vector<AREA> monitorsInside(const AREA& window, const std::vector<AREA>& monitors);

/// What monitorsInside says of a window of the server; one without monitors has none.
std::vector<AREA> monitorsUnder(xcb_connection_t* connection, std::uint32_t window);
