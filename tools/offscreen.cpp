#include "offscreen.h"

#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <png.h>

#include <cstdlib>
#include <cstring>

bool Picture::savePng(const std::string& path) const {
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(height);
    png.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&png, path.c_str(), 0, rgb.data(), 0, nullptr) != 0;
}

Picture Picture::loadPng(const std::string& path) {
    png_image png;
    std::memset(&png, 0, sizeof png);
    png.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png, path.c_str()))
        return {};
    png.format = PNG_FORMAT_RGB;
    Picture picture;
    picture.rgb.resize(PNG_IMAGE_SIZE(png));
    if (!png_image_finish_read(&png, nullptr, picture.rgb.data(), 0, nullptr))
        return {};
    picture.width = static_cast<int>(png.width);
    picture.height = static_cast<int>(png.height);
    return picture;
}

OffscreenContext::OffscreenContext(int width, int height, int samples)
    : width_(width), height_(height) {
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    display_ = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (!display_ || !eglInitialize(display_, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API))
        return;
    const EGLint wanted[] = {EGL_SURFACE_TYPE,
                             EGL_PBUFFER_BIT,
                             EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,
                             EGL_RED_SIZE,
                             8,
                             EGL_GREEN_SIZE,
                             8,
                             EGL_BLUE_SIZE,
                             8,
                             EGL_DEPTH_SIZE,
                             24,
                             EGL_SAMPLE_BUFFERS,
                             samples > 0,
                             EGL_SAMPLES,
                             samples,
                             EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    if (!eglChooseConfig(display_, wanted, &config, 1, &count) || count < 1)
        return;
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    surface_ = eglCreatePbufferSurface(display_, config, size);
    EGLContext context = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
    if (surface_ && context && eglMakeCurrent(display_, surface_, surface_, context))
        context_ = context;
}

OffscreenContext::~OffscreenContext() {
    if (!display_)
        return;
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context_)
        eglDestroyContext(display_, context_);
    if (surface_)
        eglDestroySurface(display_, surface_);
    // The display stays: the next context finds the driver loaded, and a leak checker what it owns.
}

Picture OffscreenContext::read() const {
    Picture picture;
    picture.width = width_;
    picture.height = height_;
    const size_t stride = static_cast<size_t>(width_) * 3;
    std::vector<uint8_t> rows(stride * static_cast<size_t>(height_));
    glFinish();
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width_, height_, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    picture.rgb.reserve(rows.size());
    for (int y = height_ - 1; y >= 0; --y) {
        const auto row = rows.begin() + static_cast<std::ptrdiff_t>(stride) * y;
        picture.rgb.insert(picture.rgb.end(), row, row + static_cast<std::ptrdiff_t>(stride));
    }
    return picture;
}
