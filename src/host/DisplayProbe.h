#pragma once

#include <cstdint>
#include <optional>
#include <string>

struct xcb_connection_t;

/// A short look at the X display before the toolkit opens it, so that whatever is missing can be
/// told in one line instead of ending inside the toolkit.
class DisplayProbe {
public:
    /// Connects to the display that the environment names.
    DisplayProbe();
    ~DisplayProbe();
    DisplayProbe(const DisplayProbe&) = delete;
    DisplayProbe& operator=(const DisplayProbe&) = delete;

    bool connected() const;
    bool hasGlx() const;

    /// Number of the X screen that the window is on; empty when there is no such window.
    std::optional<int> screenOf(std::uint32_t window) const;
    /// Number of the X screen that the environment names.
    int screen() const { return screen_number; }

    /// The window that stands for the root of the environment's screen: the root's child that
    /// carries __SWM_VROOT, else the root itself.
    std::uint32_t rootWindow() const;

private:
    xcb_connection_t* connection;
    int screen_number;
};

/// The display name with another screen: "host:1.0" and 2 give "host:1.2".
std::string displayOnScreen(const std::string& display, int screen);
