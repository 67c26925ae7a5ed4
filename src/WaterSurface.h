// The sea's surface: a grid of points that two waves lift and lower.
#pragma once

#include <SDL_stdinc.h>

#include "system/RenderObject.h"

struct WATERPOINT {
    GLVector3 pos;  ///< z is the height
    GLVector2 tex{0, 0};
};

/// A column of the grid, one point per row.
struct POINT_COL {
    WATERPOINT* points_y = nullptr;
};

/// Built in its own x-y plane around its origin, with the heights along z. Owns the grid, which
/// only cleanup() frees.
class WaterSurface : public RenderObject {
public:
    WaterSurface();

    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    void cleanup() override;

    /// Builds the grid of width x depth world units; at least one segment each way.
    void initialize(float width, float depth, int segments_x, int segments_y);
    /// How often the texture repeats; for the next initialize().
    void setTexFactor(float f) { texturefactor = f; }
    /// Moves the waves to the current time; heights stay within 0.07 units.
    void update();

    int numSqares_x = 0;
    int numSqares_y = 0;
    int numPoints_x = 0;
    int numPoints_y = 0;
    Uint32 timer;  ///< tick of the last update
    float texturefactor = 1;
    float curoffset1 = 0;           ///< phase of the wave along x, radians
    float curoffset2 = 0;           ///< phase of the wave along y, radians
    POINT_COL* points_x = nullptr;  ///< numPoints_x columns of numPoints_y points
};
