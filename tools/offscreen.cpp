#include "offscreen.h"

#define EGL_NO_X11
#define GL_GLEXT_PROTOTYPES
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
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
                             EGL_NONE};
    EGLConfig config;
    EGLint count = 0;
    if (!eglChooseConfig(display_, wanted, &config, 1, &count) || count < 1)
        return;
    const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
    surface_ = eglCreatePbufferSurface(display_, config, size);
    EGLContext context = eglCreateContext(display_, config, EGL_NO_CONTEXT, nullptr);
    if (!surface_ || !context || !eglMakeCurrent(display_, surface_, surface_, context))
        return;
    context_ = context;
    if (samples > 0 && !smooth(samples)) {
        eglDestroyContext(display_, context_);
        context_ = nullptr;
    }
}

// A surface that is no window is never resolved; what is drawn goes into buffers of our own.
bool OffscreenContext::smooth(int samples) {
    const auto buffer = [&](GLenum attachment, GLenum format) {
        GLuint name = 0;
        glGenRenderbuffers(1, &name);
        glBindRenderbuffer(GL_RENDERBUFFER, name);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width_, height_);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, name);
    };
    glGenFramebuffers(1, &smoothed_);
    glBindFramebuffer(GL_FRAMEBUFFER, smoothed_);
    buffer(GL_COLOR_ATTACHMENT0, GL_RGBA8);
    buffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24);
    glViewport(0, 0, width_, height_);
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
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
    if (smoothed_) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
        glBlitFramebuffer(0, 0, width_, height_, 0, 0, width_, height_, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width_, height_, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    if (smoothed_)
        glBindFramebuffer(GL_FRAMEBUFFER, smoothed_);
    picture.rgb.reserve(rows.size());
    for (int y = height_ - 1; y >= 0; --y) {
        const auto row = rows.begin() + static_cast<std::ptrdiff_t>(stride) * y;
        picture.rgb.insert(picture.rgb.end(), row, row + static_cast<std::ptrdiff_t>(stride));
    }
    return picture;
}
