// A GL context without a window or a display server, for tests and tools that read pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// RGB bytes, row 0 at the top.
struct Picture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;

    /// Writes a PNG; false when the file cannot be written.
    bool savePng(const std::string& path) const;
    /// Reads a PNG, without its alpha; an empty picture when that fails.
    static Picture loadPng(const std::string& path);
};

/// A drawing area in memory with a 24-bit depth buffer and an OpenGL
/// compatibility context, current on the constructing thread from construction to destruction.
/// Drawn by Mesa's software renderer, so that pictures do not depend on the machine's graphics.
class OffscreenContext {
public:
    /// With samples, edges are smoothed by so many per pixel; the renderer knows 4.
    OffscreenContext(int width, int height, int samples = 0);
    ~OffscreenContext();
    OffscreenContext(const OffscreenContext&) = delete;
    OffscreenContext& operator=(const OffscreenContext&) = delete;

    /// False when no context could be made; nothing may be drawn then.
    bool ok() const { return context_ != nullptr; }
    /// What has been drawn so far.
    Picture read() const;

private:
    bool smooth(int samples);

    int width_, height_;
    unsigned smoothed_ = 0;  ///< The framebuffer with several samples per pixel; 0 without.
    void* display_ = nullptr;
    void* surface_ = nullptr;
    void* context_ = nullptr;
};
