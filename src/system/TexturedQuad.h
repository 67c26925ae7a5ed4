// A flat rectangle with a repeating texture.
#pragma once

#include "system/RenderObject.h"

/// Lies in the x-y plane around its origin, counter-clockwise seen from +z; u = 0 at the left edge,
/// v = 0 at the top edge. A negative size mirrors it.
class TexturedQuad : public RenderObject {
public:
    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    void cleanup() override {}

    void setSize(float x, float y);
    /// How often the texture repeats.
    void setTextureFactor(float f) { texturefactor_x = texturefactor_y = f; }
    void setTextureFactorX(float f) { texturefactor_x = f; }
    void setTextureFactorY(float f) { texturefactor_y = f; }

    /// Draws only the piece between two parts of the width, from the left edge: 0 to 1 is all.
    void setPart(float from, float to) { setTaperedPart(from, to, from, to); }

    /// The same with sides that slant from the top edge to the bottom edge.
    void setTaperedPart(float top_from, float top_to, float bottom_from, float bottom_to) {
        part_left[0] = top_from;
        part_left[1] = bottom_from;
        part_right[0] = top_to;
        part_right[1] = bottom_to;
    }

    /// The same of its height, from the top edge.
    void setRows(float from, float to) {
        part_top = from;
        part_bottom = to;
    }

    float size_x = 1;
    float size_y = 1;
    float halfsize_x = 0.5f;
    float halfsize_y = 0.5f;
    float texturefactor_x = 1;
    float texturefactor_y = 1;
    float part_left[2] = {0, 0};  ///< at the top and at the bottom edge
    float part_right[2] = {1, 1};
    float part_top = 0;
    float part_bottom = 1;
};
