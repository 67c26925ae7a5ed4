#define GL_GLEXT_PROTOTYPES  // for glSecondaryColor3f

#include "SkyBand.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <cmath>

namespace {

constexpr float HALF_TURN = 3.1415927f;  // radians
constexpr float RADIUS = 90;             // in front of the sky, behind everything else
constexpr int COLUMN = 4;                // degrees
constexpr int WIDEST = 76;               // degrees to each side

constexpr TINT MIST{0.88f, 0.91f, 0.95f};

float radians(float degrees) { return degrees * HALF_TURN / 180; }

/// How a vertex is drawn.
struct PAINT {
    TINT tint;
    float share;
    float mist;
};

/// That at a height, between those of the horizon and of high up.
PAINT skyAt(const SkyBand& band, float elevation) {
    const float t = std::fmin(1.0f, std::fmax(0.0f, elevation / 24));
    return {band.sky, band.low + (band.high - band.low) * t, band.mist * (1 - 0.2f * t)};
}

/// The picture and the mist over it in one: what covers as much as both do one after the other.
void colour(const PAINT& paint) {
    const float cover = 1 - (1 - paint.mist) * (1 - paint.share);
    const float picture = cover > 0 ? (1 - paint.mist) * paint.share / cover : 1;
    const float mist = cover > 0 ? paint.mist / cover : 0;
    glColor4f(paint.tint.r * picture, paint.tint.g * picture, paint.tint.b * picture, cover);
    glSecondaryColor3f(MIST.r * mist, MIST.g * mist, MIST.b * mist);
}

/// One vertex. Elevation in degrees; texture rows go evenly with it.
void issue(SkyBand& band, int azimuth, float elevation, const PAINT& paint) {
    const float width = SKY_AHEAD::RIGHT - SKY_AHEAD::LEFT;
    // Mirrored beyond its sides.
    float u = std::fabs((static_cast<float>(azimuth) - SKY_AHEAD::LEFT) / width);
    if (u > 1)
        u = 2 - u;
    const float v = (SKY_AHEAD::TOP - elevation) / (SKY_AHEAD::TOP - SKY_AHEAD::BOTTOM);
    const float angle = radians(static_cast<float>(azimuth));
    colour(paint);
    band.textureCoord(u, v);
    glVertex3f(RADIUS * std::sin(angle), RADIUS * std::tan(radians(elevation)),
               -RADIUS * std::cos(angle));
}

void strip(SkyBand& band, const float (&elevations)[2], const PAINT (&paints)[2]) {
    glBegin(GL_QUAD_STRIP);
    for (int azimuth = -WIDEST; azimuth <= WIDEST; azimuth += COLUMN)
        for (int i = 0; i < 2; ++i)
            issue(band, azimuth, elevations[i], paints[i]);
    glEnd();
}

/// Makes the second unit cover the first's colour by the share that comes with the vertices.
void blendPictures() {
    multitexturing.active_texture(GL_TEXTURE1_ARB);
    const struct {
        GLenum name;
        int value;
    } settings[] = {
        {GL_TEXTURE_ENV_MODE, GL_COMBINE},  {GL_COMBINE_RGB, GL_INTERPOLATE},
        {GL_SOURCE0_RGB, GL_TEXTURE},       {GL_OPERAND0_RGB, GL_SRC_COLOR},
        {GL_SOURCE1_RGB, GL_PREVIOUS},      {GL_OPERAND1_RGB, GL_SRC_COLOR},
        {GL_SOURCE2_RGB, GL_PRIMARY_COLOR}, {GL_OPERAND2_RGB, GL_SRC_ALPHA},
    };
    for (const auto& setting : settings)
        glTexEnvi(GL_TEXTURE_ENV, setting.name, setting.value);
    multitexturing.active_texture(GL_TEXTURE0_ARB);
}

}  // namespace

void SkyBand::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void SkyBand::renderMesh() {
    if (multiTexturing)
        blendPictures();
    glEnable(GL_COLOR_SUM);
    const float steps[] = {SKY_AHEAD::TOP, 32, 24, 16, 10, 5, 2, 0};
    for (int i = 0; steps[i] > 0; ++i)
        strip(*this, {steps[i], steps[i + 1]},
              {skyAt(*this, steps[i]), skyAt(*this, steps[i + 1])});
    const PAINT on_sea{sea, surface, 0};
    strip(*this, {0, -3}, {on_sea, on_sea});
    strip(*this, {-3, SKY_AHEAD::BOTTOM}, {on_sea, on_sea});
    glDisable(GL_COLOR_SUM);
}

void SkyBand::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
