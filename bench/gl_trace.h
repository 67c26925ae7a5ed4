// The GL calls of a frame as numbers, to be made again without the program that made them first.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <vector>

#include "system/Texture.h"

// Every function that a frame calls, by what it takes: plain numbers, or something of its own.
#define TRACED_CALLS(CALL)                                                                    \
    CALL(glBegin, (GLenum a), (a))                                                            \
    CALL(glBindTexture, (GLenum a, GLuint b), (a, b))                                         \
    CALL(glBlendFunc, (GLenum a, GLenum b), (a, b))                                           \
    CALL(glClear, (GLbitfield a), (a))                                                        \
    CALL(glColor4f, (GLfloat a, GLfloat b, GLfloat c, GLfloat d), (a, b, c, d))               \
    CALL(glDisable, (GLenum a), (a))                                                          \
    CALL(glEnable, (GLenum a), (a))                                                           \
    CALL(glEnd, (), ())                                                                       \
    CALL(glLoadIdentity, (), ())                                                              \
    CALL(glNormal3f, (GLfloat a, GLfloat b, GLfloat c), (a, b, c))                            \
    CALL(glPopMatrix, (), ())                                                                 \
    CALL(glPushMatrix, (), ())                                                                \
    CALL(glRotatef, (GLfloat a, GLfloat b, GLfloat c, GLfloat d), (a, b, c, d))               \
    CALL(glScalef, (GLfloat a, GLfloat b, GLfloat c), (a, b, c))                              \
    CALL(glTexCoord2f, (GLfloat a, GLfloat b), (a, b))                                        \
    CALL(glTexEnvi, (GLenum a, GLenum b, GLint c), (a, b, c))                                 \
    CALL(glTranslatef, (GLfloat a, GLfloat b, GLfloat c), (a, b, c))                          \
    CALL(glVertex3f, (GLfloat a, GLfloat b, GLfloat c), (a, b, c))                            \
    CALL(gluLookAt,                                                                           \
         (GLdouble a, GLdouble b, GLdouble c, GLdouble d, GLdouble e, GLdouble f, GLdouble g, \
          GLdouble h, GLdouble i),                                                            \
         (a, b, c, d, e, f, g, h, i))

namespace bench {

/// The first word of a call; its arguments follow as they lie in memory.
enum TRACE_OP : uint32_t {
#define CALL(name, parameters, arguments) OP_##name,
    TRACED_CALLS(CALL)
#undef CALL
        OP_glActiveTextureARB,
    OP_glMultiTexCoord2fARB,
    OP_glMultMatrixf,  ///< 16 floats
    OP_glGetBooleanv,  ///< the name only
};

struct TRACE {
    uint32_t calls = 0, vertices = 0;
    std::vector<uint32_t> words;
};

template <class Value>
Value take(const uint32_t*& word) {
    Value value;
    std::memcpy(&value, word, sizeof value);
    word += sizeof value / sizeof *word;
    return value;
}

template <class... Arguments>
inline void play(void (*call)(Arguments...), const uint32_t*& word) {
    // Braces, because in them the arguments are taken in their order.
    const std::tuple<Arguments...> arguments{take<Arguments>(word)...};
    std::apply(call, arguments);
}

/// Makes the calls.
inline void play(const TRACE& trace) {
    const uint32_t* word = trace.words.data();
    for (const uint32_t* const end = word + trace.words.size(); word != end;) {
        switch (*word++) {
#define CALL(name, parameters, arguments) \
    case OP_##name:                       \
        play(&name, word);                \
        break;
            TRACED_CALLS(CALL)
#undef CALL
            case OP_glActiveTextureARB:
                play(multitexturing.active_texture, word);
                break;
            case OP_glMultiTexCoord2fARB:
                play(multitexturing.multi_tex_coord, word);
                break;
            case OP_glMultMatrixf: {
                const auto matrix = take<std::array<GLfloat, 16>>(word);
                glMultMatrixf(matrix.data());
                break;
            }
            case OP_glGetBooleanv: {
                GLboolean answer[16];
                glGetBooleanv(take<GLenum>(word), answer);
                break;
            }
        }
    }
}

}  // namespace bench
