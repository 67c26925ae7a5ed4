#include "WaterSurface.h"

#include <GL/gl.h>

#include <cmath>
#include <vector>

#include "system/SceneClock.h"

namespace {

constexpr double RADIANS_PER_MS = 0.005;
constexpr double AMPLITUDE = 0.035;

void issue(WaterSurface& surface, const WATERPOINT& point) {
    surface.textureCoord(point.tex.x, point.tex.y);
    glVertex3f(point.pos.x, point.pos.y, point.pos.z);
}

}  // namespace

WaterSurface::WaterSurface() : timer(sceneTicks()) {}

void WaterSurface::initialize(float width, float depth, int segments_x, int segments_y) {
    // Before the counts change: they tell how much there is to free.
    cleanup();
    if (segments_x < 1 || segments_y < 1)
        return;
    numSqares_x = segments_x;
    numSqares_y = segments_y;
    numPoints_x = segments_x + 1;
    numPoints_y = segments_y + 1;
    const float stepx = width / segments_x;
    const float stepy = depth / segments_y;
    const float texstepx = texturefactor / segments_x;
    const float texstepy = texturefactor / segments_y;

    points_x = new POINT_COL[numPoints_x];
    for (int i = 0; i < numPoints_x; ++i) {
        points_x[i].points_y = new WATERPOINT[numPoints_y];
        for (int j = 0; j < numPoints_y; ++j) {
            WATERPOINT& point = points_x[i].points_y[j];
            point.pos.set(static_cast<float>(i * stepx - width / 2.0),
                          static_cast<float>(j * stepy - depth / 2.0), 0);
            point.tex.set(i * texstepx, (numPoints_y - j - 1) * texstepy);
        }
    }
}

void WaterSurface::update() {
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - timer;
    timer = now;
    advancePhase(curoffset1, elapsed, RADIANS_PER_MS);
    advancePhase(curoffset2, elapsed, RADIANS_PER_MS);
    if (!points_x)
        return;

    // The wave along y is the same in every column.
    std::vector<float> rows(numPoints_y);
    for (int j = 0; j < numPoints_y; ++j)
        rows[j] = static_cast<float>(std::sin(j * 3.1415927 * 0.15 + curoffset2));
    for (int i = 0; i < numPoints_x; ++i) {
        const float a = static_cast<float>(std::sin(i * 3.1415927 * 0.18 + curoffset1));
        WATERPOINT* points = points_x[i].points_y;
        for (int j = 0; j < numPoints_y; ++j)
            points[j].pos.z = static_cast<float>(rows[j] * AMPLITUDE + a * AMPLITUDE);
    }
}

void WaterSurface::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void WaterSurface::renderMesh() {
    glBegin(GL_QUADS);
    for (int i = 0; points_x && i < numSqares_x; ++i) {
        const WATERPOINT* left = points_x[i].points_y;
        const WATERPOINT* right = points_x[i + 1].points_y;
        for (int j = 0; j < numSqares_y; ++j) {
            issue(*this, left[j + 1]);
            issue(*this, left[j]);
            issue(*this, right[j]);
            issue(*this, right[j + 1]);
        }
    }
    glEnd();
}

void WaterSurface::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}

void WaterSurface::cleanup() {
    if (!points_x)
        return;
    for (int i = 0; i < numPoints_x; ++i)
        delete[] points_x[i].points_y;
    delete[] points_x;
    points_x = nullptr;
}
