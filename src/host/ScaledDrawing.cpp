#define GL_GLEXT_PROTOTYPES
#include "host/ScaledDrawing.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

bool hasFramebuffers() {
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return (version && std::atoi(version) >= 3) ||
           (extensions && std::strstr(extensions, "GL_ARB_framebuffer_object"));
}

unsigned renderbuffer(GLenum format, int width, int height, int samples) {
    GLuint name = 0;
    glGenRenderbuffers(1, &name);
    glBindRenderbuffer(GL_RENDERBUFFER, name);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    return name;
}

unsigned picture(int width, int height) {
    GLuint name = 0;
    glGenTextures(1, &name);
    glPushAttrib(GL_TEXTURE_BIT);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    glPopAttrib();
    return name;
}

/// Fills the viewport with a picture.
void fill(unsigned picture) {
    glPushAttrib(GL_ENABLE_BIT | GL_TEXTURE_BIT | GL_TRANSFORM_BIT);
    for (const GLenum step : {GL_ALPHA_TEST, GL_BLEND, GL_CULL_FACE, GL_DEPTH_TEST, GL_FOG,
                              GL_LIGHTING, GL_STENCIL_TEST})
        glDisable(step);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, picture);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    for (const GLenum matrix : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(matrix);
        glPushMatrix();
        glLoadIdentity();
    }
    constexpr GLfloat corners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    glBegin(GL_QUADS);
    for (const GLfloat* corner : corners) {
        glTexCoord2fv(corner);
        glVertex2f(2 * corner[0] - 1, 2 * corner[1] - 1);
    }
    glEnd();
    for (const GLenum matrix : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(matrix);
        glPopMatrix();
    }
    glPopAttrib();
}

}  // namespace

bool ScaledDrawing::make(TARGET& target, int width, int height, int samples, bool with_depth) {
    glGenFramebuffers(1, &target.frame);
    glBindFramebuffer(GL_FRAMEBUFFER, target.frame);
    if (samples) {
        target.colour = renderbuffer(GL_RGBA8, width, height, samples);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  target.colour);
    } else {
        target.picture = picture(width, height);
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, target.picture,
                               0);
    }
    if (with_depth) {
        target.depth = renderbuffer(GL_DEPTH_COMPONENT24, width, height, samples);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  target.depth);
    }
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void ScaledDrawing::free(TARGET& target) {
    if (!target.frame)
        return;
    glDeleteFramebuffers(1, &target.frame);
    for (const GLuint name : {target.colour, target.depth})
        if (name)
            glDeleteRenderbuffers(1, &name);
    if (target.picture)
        glDeleteTextures(1, &target.picture);
    target = {};
}

void ScaledDrawing::release() {
    free(drawn_);
    free(resolved_);
    free(top_);
    width_ = height_ = top_width_ = top_height_ = 0;
}

bool ScaledDrawing::prepare(int width, int height) {
    if (width == width_ && height == height_)
        return true;
    release();
    int most = 0;
    glGetIntegerv(GL_MAX_SAMPLES, &most);
    const int samples = std::min(samples_, most);
    if (!make(drawn_, width, height, samples, true) ||
        (samples && !make(resolved_, width, height, 0, false))) {
        release();
        return false;
    }
    width_ = width;
    height_ = height;
    return true;
}

void ScaledDrawing::draw(double fraction, const std::function<void()>& picture,
                         const std::function<bool(int, int)>& shown) {
    if ((fraction >= 1 && samples_ == 0) || impossible_ || !hasFramebuffers()) {
        picture();
        return;
    }
    GLint area[4], target = 0, target_samples = 0;
    glGetIntegerv(GL_VIEWPORT, area);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    glGetIntegerv(GL_SAMPLES, &target_samples);
    if (target_samples > 0) {
        // Nothing can be enlarged into these.
        picture();
        return;
    }
    const int width = std::max(1, static_cast<int>(std::lround(area[2] * fraction)));
    const int height = std::max(1, static_cast<int>(std::lround(area[3] * fraction)));
    if (!prepare(width, height)) {
        impossible_ = true;
        glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
        picture();
        return;
    }

    const GLboolean cut = glIsEnabled(GL_SCISSOR_TEST);
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_FRAMEBUFFER, drawn_.frame);
    glViewport(0, 0, width, height);
    picture();
    if (resolved_.frame) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved_.frame);
        glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, resolved_.frame);
    }
    const bool done = shown && shown(width, height);
    if (cut)
        glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
    glViewport(area[0], area[1], area[2], area[3]);
    // A fifth cheaper on a software renderer than to have the frame buffer itself copied.
    if (!done)
        fill(smallerPicture());
}

void ScaledDrawing::drawTop(int rows, const std::function<void()>& over,
                            const std::function<void()>& shown) {
    GLint area[4], target = 0;
    glGetIntegerv(GL_VIEWPORT, area);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    if (area[2] != top_width_ || rows != top_height_) {
        free(top_);
        make(top_, area[2], rows, 0, true);
        top_width_ = area[2];
        top_height_ = rows;
    }
    const GLboolean cut = glIsEnabled(GL_SCISSOR_TEST);
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_FRAMEBUFFER, top_.frame);
    glViewport(0, rows - area[3], area[2], area[3]);
    fill(smallerPicture());
    over();
    shown();
    if (cut)
        glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
    glViewport(area[0], area[1], area[2], area[3]);
}
