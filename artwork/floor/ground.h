// The shape of the sea floor: the samples of the height map and the surface drawn from them.
#pragma once

#include <cstdint>
#include <vector>

#include "common/vec.h"

namespace art {

/// World points are in public axes (x right, y up, z away from the eye). The floor spans x from
/// -30 to 30 and z from 50 (row 0 of map and texture) to 0.
class Ground {
public:
    static constexpr int kSize = 256;                     ///< Samples per row, and rows.
    static constexpr int kSegments = 50;                  ///< Mesh columns, and rows.
    static constexpr float kWidth = 60, kDepth = 50;      ///< World units.
    static constexpr float kBottom = -8, kStep = 0.015f;  ///< World height of a sample.

    /// The floor as it is designed: every coral's foot stands on the drawn surface.
    Ground();
    /// The floor of a height map; kSize * kSize samples, row 0 the far edge.
    explicit Ground(std::vector<uint8_t> samples);

    const std::vector<uint8_t>& samples() const { return samples_; }
    /// World height of the drawn mesh, which takes its samples at truncated positions and joins
    /// them by triangles; points off the mesh count as on its edge. The sway (up to 0.03) is left
    /// out.
    float height(float x, float z) const;

private:
    std::vector<uint8_t> samples_;
};

/// World height of the smooth surface that the mesh follows, for shading.
float smoothHeight(float x, float z);

/// Distance on the ground from the big fish's way.
float distanceFromRoute(float x, float z);

}  // namespace art
