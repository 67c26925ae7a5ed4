#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/Monitors.h"

namespace test {

/// A private X server without a screen, on a display number that nobody else has; ends with the
/// object.
class VirtualDisplay {
public:
    explicit VirtualDisplay(std::vector<std::string> options = {"-screen", "0", "800x600x24"});
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// ":7"; empty when the server did not start.
    const std::string& name() const { return display_name; }
    /// Kills the server the hard way.
    void kill();

private:
    pid_t pid;
    std::string display_name;
};

/// How a process ended.
struct END {
    bool ended = false;  ///< false: still running when patience ran out
    int status = -1;     ///< exit status, when it exited
    int signal = 0;      ///< the signal it died by, when it did
};

/// A child process whose standard output and error the test reads.
class Process {
public:
    /// `environment` are assignments "A=b", and "A" alone for variables to take away, on top of
    /// what the test has. Signals in `blocked` are blocked when the program starts.
    Process(const std::vector<std::string>& words, const std::vector<std::string>& environment,
            const std::vector<int>& blocked = {});
    /// Kills what is still running.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t id() const { return pid; }
    /// Nothing happens when the process was found ended.
    void signal(int number) const;
    /// Reads the standard output until a line begins with the text; false when the process ends or
    /// the patience of 60 seconds does first.
    bool waitForLine(const std::string& beginning);
    /// Waits for the end, at most so long, and reads what is left of the output.
    END wait(int milliseconds = 60000);

    const std::string& output() const { return out; }
    const std::string& errors() const { return err; }

private:
    bool read(int milliseconds);

    pid_t pid;
    int out_pipe;
    int err_pipe;
    std::string out;
    std::string err;
};

struct PIXEL {
    int red;
    int green;
    int blue;
    bool operator==(const PIXEL& other) const {
        return red == other.red && green == other.green && blue == other.blue;
    }
};

/// A piece of the screen, as it was at one moment.
struct PICTURE {
    int width = 0;
    int height = 0;
    std::vector<PIXEL> pixels;  ///< row by row from the top; empty when there was nothing to see

    const PIXEL& at(int x, int y) const { return pixels[std::size_t(y) * width + x]; }
};

/// What another program does that owns windows: a host, seen from the X server.
class Client {
public:
    explicit Client(const std::string& display);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    xcb_connection_t* connection() const { return xcb; }
    xcb_window_t root() const;

    /// Maps a window at (x, y) of the first screen that gets every input event. Depth 0 is the
    /// screen's own. Override-redirect, so that no window manager is missed.
    xcb_window_t window(int x, int y, int width, int height, int depth = 0, int screen = 0);
    void resize(xcb_window_t window, int width, int height);
    void destroy(xcb_window_t window);
    void unmap(xcb_window_t window);
    void map(xcb_window_t window);
    /// Sets a property of type WINDOW on the window to its own id.
    void mark(xcb_window_t window, const char* property);
    /// Sends what a window manager sends when its close button is pressed.
    void askToClose(xcb_window_t window);
    /// The first child of the window, 0 without one.
    xcb_window_t child(xcb_window_t window);
    /// First window below the root that is as large as this and is mapped; 0 without one.
    xcb_window_t find(int width, int height);
    /// First window below the root that is large enough for something to be seen in it and is
    /// mapped; 0 without one.
    xcb_window_t findAny();
    bool exists(xcb_window_t window);

    /// Gives the first screen, from its upper left corner on, this mode, which is not larger than
    /// it.
    void setMode(int width, int height, double refresh_rate);
    /// Makes these, in pixels of the first screen, its only monitors.
    void setMonitors(const std::vector<AREA>& areas);

    /// Paints a window black, now and whenever it is uncovered.
    void blacken(xcb_window_t window);
    /// What this part of the screen shows.
    PICTURE picture(int x, int y, int width, int height, int screen = 0);
    /// Colour on the screen at this place.
    PIXEL pixel(int x, int y, int screen = 0);
    /// Waits until the place shows this colour; false when patience (60 seconds) runs out.
    bool waitForPixel(int x, int y, PIXEL colour, int screen = 0);
    /// Waits for an event of this type (XCB_BUTTON_PRESS ...) and drops those before it.
    bool waitForEvent(int type);

private:
    xcb_atom_t atom(const std::string& name);
    /// First mapped window below the root whose size is wanted; 0 without one.
    xcb_window_t find(const std::function<bool(int width, int height)>& wanted);

    xcb_connection_t* xcb;
    const xcb_screen_t* screenAt(int number) const;
};

std::string hex(xcb_window_t window);

}  // namespace test
