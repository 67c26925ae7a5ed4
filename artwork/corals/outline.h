// The outline of a flat mesh that carries a picture.
#pragma once

#include <array>
#include <vector>

#include "common/image.h"

namespace art {

/// A mesh point in a picture: texels, x right, y down.
struct MeshPoint {
    int x, y;
};
/// Three indices of mesh points, either way round.
using MeshTriangle = std::array<int, 3>;

/// Draws the points along the edge of a mesh in, up to `reach` texels at a time, as far as what is
/// shown allows: clear texels, too, hide what is drawn after them and lies behind. What they showed
/// together they still show. Triangles that show nothing are left out, and a few are halved.
void tightenOutline(std::vector<MeshPoint>& points, std::vector<MeshTriangle>& triangles,
                    const Image& picture, int reach);

}  // namespace art
