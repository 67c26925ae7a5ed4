#define GL_GLEXT_PROTOTYPES  // for glSecondaryColor3f

#include "SkyBand.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>

#include "TwoPictures.h"

namespace {

constexpr float HALF_TURN = 3.1415927f;  // radians
constexpr float RADIUS = 90;             // in front of the sky, behind everything else

constexpr TINT MIST{0.88f, 0.91f, 0.95f};

/// Where a change is seen, degrees: no view looks higher, and of the sea no more is to be seen.
constexpr float HIGHEST = 32, LOWEST = -3;

float mix(float a, float b, float t) { return a + (b - a) * t; }
float radians(float degrees) { return degrees * HALF_TURN / 180; }
float unit(float value) { return std::clamp(value, 0.0f, 1.0f); }

/// How a vertex is drawn.
struct PAINT {
    TINT tint;
    float share;
    float mist;
};

SKY_ROWS rowsWith(float share) {
    return share <= 0 ? ROWS_BEFORE : share >= 1 ? ROWS_AFTER : ROWS_SHARED;
}

PAINT paintAt(const SkyBand& band, float elevation, bool is_sea) {
    // Where only one of the pictures shows, all of it does.
    const float share = band.rows & ROWS_SHARED ? band.change.shareAt(elevation) : 1;
    if (is_sea)
        return {band.sea, share, 0};
    return {band.sky, share, band.mist * share * (1 - 0.2f * unit(elevation / 24))};
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
    const GLVector3 corner = SkyBand::corner(static_cast<float>(azimuth), elevation);
    colour(paint);
    band.textureCoord(u, v);
    glVertex3f(corner.x, corner.y, corner.z);
}

bool isPlain(const PAINT& paint) {
    return paint.tint.r == 1 && paint.tint.g == 1 && paint.tint.b == 1 && paint.mist == 0;
}

void strip(SkyBand& band, const float (&elevations)[2], const PAINT (&paints)[2]) {
    // Colours that change nothing cost a fifth more on a software renderer.
    const bool plain =
        !band.multiTexturing && !band.isAlphaBlending && isPlain(paints[0]) && isPlain(paints[1]);
    if (plain)
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glBegin(GL_QUAD_STRIP);
    for (int azimuth = -SkyBand::WIDEST; azimuth <= SkyBand::WIDEST; azimuth += SkyBand::COLUMN)
        for (int i = 0; i < 2; ++i)
            issue(band, azimuth, elevations[i], paints[i]);
    glEnd();
    if (plain)
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
}

}  // namespace

float SKY_CHANGE::upper() const {
    return rises ? mix(LOWEST, SKY_AHEAD::TOP + belt, come) : mix(HIGHEST + belt, LOWEST, come);
}

float SKY_CHANGE::shareAt(float elevation) const {
    const float share = (rises ? upper() - elevation : elevation - lower()) / belt;
    // What is as good as nothing or all is it: the belt ends where it is meant to.
    return share < 1e-4f ? 0 : share > 1 - 1e-4f ? 1 : share;
}

GLVector3 SkyBand::corner(float azimuth, float elevation) {
    const float angle = radians(azimuth);
    return {RADIUS * std::sin(angle), RADIUS * std::tan(radians(elevation)),
            -RADIUS * std::cos(angle)};
}

void SkyBand::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void SkyBand::renderMesh() {
    if (multiTexturing)
        coverByVertices();
    if (mist > 0)
        glEnable(GL_COLOR_SUM);
    float steps[] = {
        SKY_AHEAD::TOP, 32, 24, 16, 10, 5, 2, 0, LOWEST, SKY_AHEAD::BOTTOM, change.upper(),
        change.lower()};
    for (float& step : steps)
        step = std::clamp(step, SKY_AHEAD::BOTTOM, SKY_AHEAD::TOP);
    std::sort(std::begin(steps), std::end(steps), std::greater<>());
    float upper = steps[0];
    for (const float lower : steps) {
        if (upper - lower < 1e-4f)
            continue;
        const bool is_sea = upper <= 0;
        if (rows & rowsWith(change.shareAt((upper + lower) / 2)))
            strip(*this, {upper, lower},
                  {paintAt(*this, upper, is_sea), paintAt(*this, lower, is_sea)});
        upper = lower;
    }
    if (mist > 0)
        glDisable(GL_COLOR_SUM);
}

void SkyBand::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
