// The GL context of a page, lent to a scene that believes that it has a context of its own.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

#include <array>

/// While it lives, the current context is in the state of a new one, but for the framebuffer and
/// the viewport, and may be left in any state; then it is as it was: every attribute and client
/// attribute, the current matrices, programs, buffers, vertex arrays, samplers and what the texture
/// units have bound. The context must be one of the compatibility profile, 3.3 or later, and stay
/// current.
class LentContext {
public:
    LentContext();
    ~LentContext();
    LentContext(const LentContext&) = delete;
    LentContext& operator=(const LentContext&) = delete;

private:
    /// Texture units whose samplers and matrices are kept; the scene uses the first two.
    static constexpr int UNITS = 4;
    /// Vertex attributes that a shader of the page may have left switched on.
    static constexpr int ATTRIBUTES = 16;

    GLint program, vertex_array, array_buffer, element_buffer, pack_buffer, unpack_buffer;
    std::array<GLint, UNITS> samplers;
    std::array<GLint, ATTRIBUTES> enabled;
};
