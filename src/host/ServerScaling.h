// Has the X server enlarge pictures.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/Monitors.h"

struct xcb_connection_t;

/// Shows what a software renderer has drawn in a window, enlarged there by the server's RENDER
/// extension with its bilinear filter: a quarter of what the renderer itself takes to fill so many
/// pixels, and the smaller picture is all that has to reach the server. It passes through shared
/// memory. A window that has gone, or a connection, is no error: nothing is shown.
class ServerScaling {
public:
    /// The connection must outlive the object.
    ServerScaling(xcb_connection_t* connection, std::uint32_t window);
    ~ServerScaling();
    ServerScaling(const ServerScaling&) = delete;
    ServerScaling& operator=(const ServerScaling&) = delete;

    /// Whether server and window can; not without the extensions, on another machine, and where a
    /// pixel is not 8 bits each of blue, green, red and nothing. Asks the server once.
    bool possible();
    /// To be called before what is first shown of a frame, and late: waits until the server is done
    /// with the frame before. False when nothing can be shown.
    bool begin();
    /// Shows the lower left `width` x `height` pixels of the frame buffer bound for reading,
    /// enlarged, in an area of the window, without the area's uppermost `omitted` rows. False when
    /// nothing could be shown. The GL context is current.
    bool show(int width, int height, const AREA& area, int omitted = 0);

private:
    struct MEMORY {
        unsigned char* pixels = nullptr;
        std::size_t size = 0;  ///< bytes
        std::uint32_t segment = 0;
    };
    bool findFormat();
    bool provide(std::size_t size);
    void forget();
    bool read(int width, int height);
    void setPixmap(int width, int height);

    xcb_connection_t* connection_;
    std::uint32_t window_;
    bool asked_ = false;
    bool possible_ = false;
    std::uint8_t depth_ = 0;
    std::uint32_t format_ = 0;   ///< RENDER's name for the window's pixels
    std::uint32_t picture_ = 0;  ///< the window as RENDER knows it
    std::uint32_t context_ = 0;
    MEMORY memory_;
    std::size_t used_ = 0;                   ///< by this frame, bytes
    std::size_t place_ = 0;                  ///< in the memory, of what was read last
    std::uint32_t pixmap_ = 0, source_ = 0;  ///< the smaller picture, and the same for RENDER
    int width_ = 0, height_ = 0;             ///< of the pixmap
};
