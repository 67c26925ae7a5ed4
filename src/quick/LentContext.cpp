#define GL_GLEXT_PROTOTYPES
#include "quick/LentContext.h"

#include <cstddef>

namespace {

constexpr GLenum MATRICES[] = {GL_PROJECTION, GL_MODELVIEW};
constexpr GLenum TARGETS[] = {GL_TEXTURE_1D, GL_TEXTURE_2D, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP};

constexpr GLenum OFF_AT_FIRST[] = {
    GL_ALPHA_TEST,          GL_BLEND,
    GL_COLOR_LOGIC_OP,      GL_COLOR_MATERIAL,
    GL_CULL_FACE,           GL_DEPTH_CLAMP,
    GL_DEPTH_TEST,          GL_FOG,
    GL_FRAMEBUFFER_SRGB,    GL_LIGHTING,
    GL_LINE_SMOOTH,         GL_LINE_STIPPLE,
    GL_NORMALIZE,           GL_POINT_SMOOTH,
    GL_POLYGON_OFFSET_FILL, GL_POLYGON_SMOOTH,
    GL_POLYGON_STIPPLE,     GL_PRIMITIVE_RESTART,
    GL_RASTERIZER_DISCARD,  GL_SAMPLE_ALPHA_TO_COVERAGE,
    GL_SAMPLE_COVERAGE,     GL_SCISSOR_TEST,
    GL_STENCIL_TEST,        GL_CLIP_PLANE0,
    GL_CLIP_PLANE1,         GL_CLIP_PLANE2,
    GL_CLIP_PLANE3,         GL_CLIP_PLANE4,
    GL_CLIP_PLANE5,
};

GLint current(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

void storeAtFirst() {
    for (const auto pixels : {GL_PACK_ALIGNMENT, GL_UNPACK_ALIGNMENT})
        glPixelStorei(pixels, 4);
    for (const auto pixels :
         {GL_PACK_SWAP_BYTES, GL_PACK_LSB_FIRST, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS,
          GL_PACK_SKIP_PIXELS, GL_UNPACK_SWAP_BYTES, GL_UNPACK_LSB_FIRST, GL_UNPACK_ROW_LENGTH,
          GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS})
        glPixelStorei(pixels, 0);
}

void drawAtFirst() {
    for (const GLenum state : OFF_AT_FIRST)
        glDisable(state);
    glEnable(GL_DITHER);
    glEnable(GL_MULTISAMPLE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glDepthRange(0, 1);
    glFrontFace(GL_CCW);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glBlendFunc(GL_ONE, GL_ZERO);
    glBlendEquation(GL_FUNC_ADD);
    glAlphaFunc(GL_ALWAYS, 0);
    glLineWidth(1);
    glPointSize(1);
    glColor4f(1, 1, 1, 1);
    glNormal3f(0, 0, 1);
}

void textureAtFirst(int unit) {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    for (const GLenum target : TARGETS) {
        glDisable(target);
        glBindTexture(target, 0);
    }
    for (const GLenum coordinate :
         {GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_T, GL_TEXTURE_GEN_R, GL_TEXTURE_GEN_Q})
        glDisable(coordinate);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glMatrixMode(GL_TEXTURE);
    glPushMatrix();
    glLoadIdentity();
}

}  // namespace

LentContext::LentContext()
    : program(current(GL_CURRENT_PROGRAM)),
      vertex_array(current(GL_VERTEX_ARRAY_BINDING)),
      array_buffer(current(GL_ARRAY_BUFFER_BINDING)),
      element_buffer(0),
      pack_buffer(current(GL_PIXEL_PACK_BUFFER_BINDING)),
      unpack_buffer(current(GL_PIXEL_UNPACK_BUFFER_BINDING)),
      samplers(),
      enabled() {
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glUseProgram(0);
    glBindVertexArray(0);
    element_buffer = current(GL_ELEMENT_ARRAY_BUFFER_BINDING);
    glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
    for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        glDisableClientState(array);
    for (GLuint i = 0; i < ATTRIBUTES; ++i) {
        glGetVertexAttribiv(i, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled[i]);
        glDisableVertexAttribArray(i);
    }
    for (const GLenum buffer :
         {GL_ARRAY_BUFFER, GL_ELEMENT_ARRAY_BUFFER, GL_PIXEL_PACK_BUFFER, GL_PIXEL_UNPACK_BUFFER})
        glBindBuffer(buffer, 0);
    for (const GLenum matrix : MATRICES) {
        glMatrixMode(matrix);
        glPushMatrix();
        glLoadIdentity();
    }
    storeAtFirst();
    drawAtFirst();
    for (int i = UNITS - 1; i >= 0; --i) {
        textureAtFirst(i);
        glGetIntegerv(GL_SAMPLER_BINDING, &samplers[static_cast<std::size_t>(i)]);
        glBindSampler(static_cast<GLuint>(i), 0);
    }
    glMatrixMode(GL_MODELVIEW);
}

LentContext::~LentContext() {
    // What the borrower asked for in vain is none of the lender's business. A lost context tells of
    // errors for ever.
    for (int i = 0; i < 8 && glGetError() != GL_NO_ERROR; ++i) {
    }
    for (GLuint i = 0; i < UNITS; ++i) {
        glBindSampler(i, static_cast<GLuint>(samplers[i]));
        glActiveTexture(GL_TEXTURE0 + i);
        glMatrixMode(GL_TEXTURE);
        glPopMatrix();
    }
    for (const GLenum matrix : MATRICES) {
        glMatrixMode(matrix);
        glPopMatrix();
    }
    glUseProgram(0);
    glBindVertexArray(0);
    glPopClientAttrib();
    for (GLuint i = 0; i < ATTRIBUTES; ++i)
        (enabled[i] ? glEnableVertexAttribArray : glDisableVertexAttribArray)(i);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLuint>(element_buffer));
    glBindVertexArray(static_cast<GLuint>(vertex_array));
    glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(array_buffer));
    glBindBuffer(GL_PIXEL_PACK_BUFFER, static_cast<GLuint>(pack_buffer));
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, static_cast<GLuint>(unpack_buffer));
    glPopAttrib();
    glUseProgram(static_cast<GLuint>(program));
}
