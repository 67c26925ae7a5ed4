// Where the texels of the cloudy sky lie: the saver hangs its picture on a coarse mesh.
#pragma once

#include <cmath>

#include "common/vec.h"

namespace sky {

constexpr int kCells = 16;            ///< Mesh cells along each side.
constexpr float kWidth = 1496.6629f;  ///< Of the whole mesh, in units.
constexpr float kCentreHeight = 200;  ///< Above the eye.
constexpr float kAtmosphere = 900;    ///< A corner sinks by (x^2 + z^2) / this.

/// The point of the mesh, seen from the eye, that shows the picture at (s, t), each 0..1. Between
/// the corners the mesh is flat, so that this differs from the ideal bowl by up to 2.4 units, and
/// the horizon would wave by a dozen pixels.
inline art::Vec3 point(float s, float t) {
    const auto corner = [](int i, int j) {
        const float x = kWidth * (static_cast<float>(j) / kCells - 0.5f);
        const float z = kWidth * (static_cast<float>(i) / kCells - 0.5f);
        return kCentreHeight - (x * x + z * z) / kAtmosphere;
    };
    const auto cell = [](float g) {
        return std::min(kCells - 1, std::max(0, static_cast<int>(std::floor(g))));
    };
    // Columns count from the left of the picture, rows from its bottom.
    const float column = s * kCells, row = (1 - t) * kCells;
    const int j = cell(column), i = cell(row);
    const float a = column - static_cast<float>(j), b = row - static_cast<float>(i);
    const float next_column = corner(i, j + 1), next_row = corner(i + 1, j);
    float height;
    if (a + b <= 1) {
        const float here = corner(i, j);
        height = here + a * (next_column - here) + b * (next_row - here);
    } else {
        const float there = corner(i + 1, j + 1);
        height = there + (1 - a) * (next_row - there) + (1 - b) * (next_column - there);
    }
    return {kWidth * (s - 0.5f), height, kWidth * (0.5f - t)};
}

}  // namespace sky
