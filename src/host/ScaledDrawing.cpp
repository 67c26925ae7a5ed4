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

}  // namespace

bool ScaledDrawing::make(TARGET& target, int width, int height, int samples, bool with_depth) {
    glGenFramebuffers(1, &target.frame);
    glBindFramebuffer(GL_FRAMEBUFFER, target.frame);
    target.colour = renderbuffer(GL_RGBA8, width, height, samples);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, target.colour);
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
    target = {};
}

void ScaledDrawing::release() {
    free(drawn_);
    free(resolved_);
    width_ = height_ = 0;
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

void ScaledDrawing::draw(double fraction, const std::function<void()>& picture) {
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
    GLuint source = drawn_.frame;
    if (resolved_.frame) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved_.frame);
        glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        source = resolved_.frame;
    }
    if (cut)
        glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, source);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(target));
    glBlitFramebuffer(0, 0, width, height, area[0], area[1], area[0] + area[2], area[1] + area[3],
                      GL_COLOR_BUFFER_BIT, GL_LINEAR);
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(target));
    glViewport(area[0], area[1], area[2], area[3]);
}
