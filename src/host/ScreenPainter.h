#pragma once

#include <QSize>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "host/AdaptiveScale.h"
#include "host/Monitors.h"
#include "host/ScaledDrawing.h"
#include "host/ServerScaling.h"

class KDEFrame;

/// What a ScreenPainter has of the scene. The context is current in all of it.
struct SCENE_PICTURE {
    std::function<void()> draw;                                ///< without the frame-rate line
    std::function<void()> draw_text;                           ///< the frame-rate line, if it is on
    std::function<int()> text_height;                          ///< its rows, 0 if it is off
    std::function<bool()> travelling;                          ///< the camera is on its way
    std::function<void(int width, int height)> set_view_size;  ///< pixels
    std::function<void()> sharpen;  ///< better filters, once, for graphics hardware
};

/// Draws a frame's scene into its window in the place of the frame itself: at a fraction of the
/// resolution, with the text at the whole of it, and in a window that covers several monitors once
/// for each of them. At the whole resolution and on one monitor it draws what the frame would.
/// What a software renderer has drawn smaller is enlarged by the X server, if it can, and else by
/// the renderer.
class ScreenPainter {
public:
    /// Without a fraction the one that the renderer can afford. `samples`: per pixel of a picture
    /// that is not drawn straight into the window.
    ScreenPainter(KDEFrame& frame, SCENE_PICTURE picture, std::optional<double> fraction,
                  int samples);
    ~ScreenPainter();
    ScreenPainter(const ScreenPainter&) = delete;
    ScreenPainter& operator=(const ScreenPainter&) = delete;

private:
    std::uint32_t window() const;
    void begin();
    void paint();
    void paintMonitors(double fraction);
    void paintArea(double fraction, const AREA& area);
    void setShownByServer(bool is);

    KDEFrame& painted;
    SCENE_PICTURE scene;
    std::optional<double> wanted_fraction;
    bool begun = false;  ///< the first picture has been drawn
    AdaptiveScale scale;
    ScaledDrawing drawing;
    std::optional<ServerScaling> server;  ///< for software renderers
    bool by_server = false;               ///< this frame is the server's to show
    bool shown = false;                   ///< the server has something of it
    QSize buffer_size;  ///< that the renderer's own buffers have, while the server shows all
    std::vector<AREA> monitors;      ///< under the window, if several
    std::int64_t next_question = 0;  ///< when to look for monitors again, milliseconds
};
