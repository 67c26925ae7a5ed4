#include "TwoPictures.h"

#include <GL/gl.h>

#include "system/Texture.h"

namespace {

/// Of the second unit, between its picture and the first one's colour.
void interpolate(GLenum source, GLenum operand) {
    const struct {
        GLenum name, value;
    } settings[] = {
        {GL_TEXTURE_ENV_MODE, GL_COMBINE},  {GL_COMBINE_RGB, GL_INTERPOLATE},
        {GL_SOURCE0_RGB, GL_TEXTURE},       {GL_OPERAND0_RGB, GL_SRC_COLOR},
        {GL_SOURCE1_RGB, GL_PREVIOUS},      {GL_OPERAND1_RGB, GL_SRC_COLOR},
        {GL_SOURCE2_RGB, source},           {GL_OPERAND2_RGB, operand},
        {GL_COMBINE_ALPHA, GL_INTERPOLATE}, {GL_SOURCE0_ALPHA, GL_TEXTURE},
        {GL_SOURCE1_ALPHA, GL_PREVIOUS},    {GL_SOURCE2_ALPHA, source},
    };
    for (const auto& setting : settings)
        glTexEnvi(GL_TEXTURE_ENV, setting.name, static_cast<GLint>(setting.value));
}

/// The second picture covers by its tint's share, which is less than the share: this makes up for
/// it in the first one's tint, and is never more than 1.
float madeUp(float first, float second, float share) {
    return first * (1 - share) / (1 - second * share);
}

}  // namespace

void coverByVertices() {
    multitexturing.active_texture(GL_TEXTURE1_ARB);
    interpolate(GL_PRIMARY_COLOR, GL_SRC_ALPHA);
    multitexturing.active_texture(GL_TEXTURE0_ARB);
}

TINT coverByShare(TINT first, TINT second, float share) {
    const GLfloat cover[] = {second.r * share, second.g * share, second.b * share, share};
    multitexturing.active_texture(GL_TEXTURE1_ARB);
    interpolate(GL_CONSTANT, GL_SRC_COLOR);
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, cover);
    multitexturing.active_texture(GL_TEXTURE0_ARB);
    return {madeUp(first.r, second.r, share), madeUp(first.g, second.g, share),
            madeUp(first.b, second.b, share)};
}
