// A textured cube.
#pragma once

#include "system/RenderObject.h"

/// Spans -1..1 on every axis, one normal per face, counter-clockwise seen from outside.
class Quad : public RenderObject {
public:
    void preRender() override;
    void renderMesh() override;
    void postRender() override;
};
