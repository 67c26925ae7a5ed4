#include "SkyBand.h"

#include <GL/gl.h>

#include <cmath>

namespace {

constexpr float HALF_TURN = 3.1415927f;  // radians
constexpr float RADIUS = 90;             // in front of the sky, behind everything else
constexpr int COLUMN = 4;                // degrees
constexpr int WIDEST = 76;               // degrees to each side

float radians(float degrees) { return degrees * HALF_TURN / 180; }

/// The share at a height, between those of the horizon and of high up.
float shareAt(const SkyBand& band, float elevation) {
    const float t = std::fmin(1.0f, std::fmax(0.0f, elevation / 24));
    return band.low + (band.high - band.low) * t;
}

/// One vertex. Elevation in degrees; texture rows go evenly with it.
void issue(SkyBand& band, int azimuth, float elevation, TINT tint, float share) {
    const float width = SKY_AHEAD::RIGHT - SKY_AHEAD::LEFT;
    // Mirrored beyond its sides.
    float u = std::fabs((static_cast<float>(azimuth) - SKY_AHEAD::LEFT) / width);
    if (u > 1)
        u = 2 - u;
    const float v = (SKY_AHEAD::TOP - elevation) / (SKY_AHEAD::TOP - SKY_AHEAD::BOTTOM);
    const float angle = radians(static_cast<float>(azimuth));
    glColor4f(tint.r, tint.g, tint.b, share);
    band.textureCoord(u, v);
    glVertex3f(RADIUS * std::sin(angle), RADIUS * std::tan(radians(elevation)),
               -RADIUS * std::cos(angle));
}

void strip(SkyBand& band, const float (&elevations)[2], TINT tint, const float (&shares)[2]) {
    glBegin(GL_QUAD_STRIP);
    for (int azimuth = -WIDEST; azimuth <= WIDEST; azimuth += COLUMN)
        for (int i = 0; i < 2; ++i)
            issue(band, azimuth, elevations[i], tint, shares[i]);
    glEnd();
}

}  // namespace

void SkyBand::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void SkyBand::renderMesh() {
    const float steps[] = {SKY_AHEAD::TOP, 32, 24, 16, 10, 5, 2, 0};
    for (int i = 0; steps[i] > 0; ++i)
        strip(*this, {steps[i], steps[i + 1]}, sky,
              {shareAt(*this, steps[i]), shareAt(*this, steps[i + 1])});
    strip(*this, {0, -3}, sea, {surface, surface});
    strip(*this, {-3, SKY_AHEAD::BOTTOM}, sea, {surface, surface});
}

void SkyBand::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
