#include "floor/ground.h"

#include <array>
#include <cstddef>

#include "common/noise.h"
#include "floor/placement.h"

namespace art {
namespace {

/// Radius of the mound under each coral, in the order of kCorals.
constexpr std::array<float, kCorals.size()> kMound{2.5f, 1.6f, 1.6f, 1.6f, 2.1f, 1.8f,
                                                   2.8f, 2.1f, 2.4f, 2.4f, 2.3f};
using Mounds = std::array<float, kCorals.size()>;

/// The floor without mounds, above kBottom: gently uneven, falling away to the sides and the back.
float plain(float x, float z) {
    const float uneven = 0.20f * gradientNoise({x * 0.10f + 3, z * 0.10f, 2.2f}, 71) +
                         0.09f * gradientNoise({x * 0.27f, z * 0.27f, 1.2f}, 72);
    const float edge = (1 - smoothstep(13, 25, std::fabs(x))) * (1 - smoothstep(27, 42, z));
    return (0.44f + uneven) * edge;
}

/// Above kBottom, with the given mounds.
float shape(float x, float z, const Mounds& mounds) {
    float h = plain(x, z);
    for (size_t i = 0; i < mounds.size(); ++i) {
        const float dx = x - kCorals[i].foot.x, dz = z - kCorals[i].foot.z;
        h += mounds[i] * std::exp(-(dx * dx + dz * dz) / (2 * kMound[i] * kMound[i]));
    }
    // The big fish wants a unit of water under its middle line.
    const float away = std::max(0.0f, distanceFromRoute(x, z) - 0.8f);
    return std::min(std::max(h, 0.0f), 0.85f + 0.9f * away);
}

float step() {
    return static_cast<float>(Ground::kSize - 1) / static_cast<float>(Ground::kSegments);
}

/// The position, in samples, of the mesh vertex that reads this sample; the sample's own where
/// none does.
float vertexOf(int sample) {
    for (int i = 0; i <= Ground::kSegments; ++i)
        if (static_cast<int>(static_cast<float>(i) * step()) == sample)
            return static_cast<float>(i) * step();
    return static_cast<float>(sample);
}

std::vector<uint8_t> paintSamples(const Mounds& mounds) {
    std::array<float, Ground::kSize> at;
    for (int i = 0; i < Ground::kSize; ++i)
        at[size_t(i)] = vertexOf(i) / static_cast<float>(Ground::kSize);
    std::vector<uint8_t> samples;
    samples.reserve(size_t(Ground::kSize) * size_t(Ground::kSize));
    for (const float row : at)
        for (const float column : at) {
            const float x = -Ground::kWidth / 2 + Ground::kWidth * column;
            const float z = Ground::kDepth - Ground::kDepth * row;
            const float h = shape(x, z, mounds) / Ground::kStep;
            samples.push_back(static_cast<uint8_t>(std::min(255.0f, h + 0.5f)));
        }
    return samples;
}

/// Height above kBottom of the drawn mesh: vertex(column, row) gives that of its corners.
template <class VertexHeight>
float meshHeight(float x, float z, VertexHeight vertex) {
    const float last_column = static_cast<float>(Ground::kSegments) - 1e-4f;
    const float last_row = static_cast<float>(Ground::kSegments - 1) - 1e-4f;
    const float size = static_cast<float>(Ground::kSize);
    const float column = (x + Ground::kWidth / 2) / Ground::kWidth * size / step();
    const float row = (Ground::kDepth - z) / Ground::kDepth * size / step();
    const float c = std::min(std::max(column, 0.0f), last_column);
    const float r = std::min(std::max(row, 0.0f), last_row);
    const int i = static_cast<int>(c), j = static_cast<int>(r);
    const float u = c - static_cast<float>(i), v = r - static_cast<float>(j);
    // Every cell of the strip is cut from its left end of the far row to its right end of the near
    // row.
    const float a = vertex(i, j), d = vertex(i + 1, j + 1);
    if (u > v) {
        const float b = vertex(i + 1, j);
        return a + (b - a) * u + (d - b) * v;
    }
    const float b = vertex(i, j + 1);
    return a + (b - a) * v + (d - b) * u;
}

/// Mounds that lift the drawn surface to every foot: found by correcting each, in turn, by what is
/// missing there.
Mounds fitMounds() {
    Mounds mounds{};
    const auto vertex = [&](int i, int j) {
        const float size = static_cast<float>(Ground::kSize);
        return shape(-Ground::kWidth / 2 + Ground::kWidth * static_cast<float>(i) * step() / size,
                     Ground::kDepth - Ground::kDepth * static_cast<float>(j) * step() / size,
                     mounds);
    };
    for (int pass = 0; pass < 200; ++pass)
        for (size_t i = 0; i < mounds.size(); ++i) {
            const Vec3& foot = kCorals[i].foot;
            mounds[i] += foot.y - Ground::kBottom - meshHeight(foot.x, foot.z, vertex);
        }
    return mounds;
}

const Mounds& fittedMounds() {
    static const Mounds mounds = fitMounds();
    return mounds;
}

}  // namespace

Ground::Ground() : samples_(paintSamples(fittedMounds())) {}

Ground::Ground(std::vector<uint8_t> samples) : samples_(std::move(samples)) {}

float Ground::height(float x, float z) const {
    return kBottom + meshHeight(x, z, [&](int i, int j) {
               const int column = static_cast<int>(static_cast<float>(i) * step());
               const int row = static_cast<int>(static_cast<float>(j) * step());
               return static_cast<float>(samples_[size_t(row) * size_t(kSize) + size_t(column)]) *
                      kStep;
           });
}

float smoothHeight(float x, float z) { return Ground::kBottom + shape(x, z, fittedMounds()); }

float distanceFromRoute(float x, float z) {
    float best = 1e9f;
    for (size_t i = 0; i + 1 < kBigFishRoute.size(); ++i) {
        const Vec2 a = kBigFishRoute[i], along = kBigFishRoute[i + 1] - a, p = Vec2{x, z} - a;
        const float t = clamp01(dot(p, along) / dot(along, along));
        best = std::min(best, length(p - along * t));
    }
    return best;
}

}  // namespace art
