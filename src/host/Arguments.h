#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ExtraSettings.h"

/// What the program is asked to do.
enum class SAVER_MODE {
    EMBED,    ///< draw in the window of another client
    ROOT,     ///< draw in the virtual root window, else in the real one
    DEMO,     ///< draw in a window of our own
    SETUP,    ///< show the setup dialog
    HELP,     ///< print the options
    VERSION,  ///< print name and version
    REFUSED,  ///< print the complaints and end with `status`
};

/// A geometry in X's notation, WxH+X+Y. Positions count from the right or lower edge of the screen
/// when `from_right` or `from_bottom` is set. Pixels; 0 x 0 when no size was given.
struct GEOMETRY {
    int width = 0;
    int height = 0;
    bool placed = false;
    int x = 0;
    int y = 0;
    bool from_right = false;
    bool from_bottom = false;
};

/// A setting beside the saver's own that counts more than the settings file.
struct EXTRA_VALUE {
    int EXTRA_SETTINGS::*field;
    int value;
};

/// The command line, understood.
struct ARGUMENTS {
    SAVER_MODE mode = SAVER_MODE::DEMO;
    std::uint32_t window = 0;  ///< EMBED: the host's window
    std::string display;       ///< empty: as the environment says
    std::string language;      ///< of the setup dialog; empty: the locale's
    GEOMETRY geometry;
    bool fullscreen = false;      ///< DEMO: fill the screen
    bool fps = false;             ///< show the frame-rate line
    int maxfps = 0;               ///< frames drawn per second at most; 0: as the renderer suggests
    std::optional<int> samples;   ///< per pixel, for smooth edges; empty: as the renderer suggests
    std::optional<double> scale;  ///< fraction of the resolution; empty: as the renderer needs it
    std::optional<int> minute;    ///< of the scene's day, for ever; empty: as the clock says
    std::vector<EXTRA_VALUE> extras;      ///< in their order
    int status = 0;                       ///< REFUSED: exit status
    std::vector<std::string> complaints;  ///< one line each, without the program's name
};

/// A window id as hosts write it: decimal or 0x and hexadecimal, 32 bits, nothing before or after.
/// Empty for anything else and for 0.
std::optional<std::uint32_t> parseWindowId(const std::string& text);

/// WxH, +X+Y or both, offsets also with a minus sign. Empty for anything else and for sizes that
/// nobody can draw.
std::optional<GEOMETRY> parseGeometry(const std::string& text);

/// Reads the words after the program's name. `hostWindow` is the environment's
/// XSCREENSAVER_WINDOW, null when it is not set.
ARGUMENTS parseArguments(const std::vector<std::string>& words, const char* hostWindow);

/// The text of -help.
std::string usage();
