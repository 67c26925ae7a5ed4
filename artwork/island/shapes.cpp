#include "island/shapes.h"

#include "common/noise.h"

using namespace art;

namespace island {
namespace {

Vec3 inBall(Random& random) {
    for (;;) {
        const Vec3 p{random.range(-1, 1), random.range(-1, 1), random.range(-1, 1)};
        if (dot(p, p) < 1)
            return p;
    }
}

/// A pointed strip from root to tip, widest at its middle.
void leaflet(Mesh& mesh, Vec3 root, Vec3 middle, Vec3 tip, Vec3 half_width, float light,
             float shade) {
    const Vec2 from{shade, light}, to{shade, clamp01(light + 0.1f)};
    const int a = mesh.add(root - half_width * 0.6f, from),
              b = mesh.add(root + half_width * 0.6f, from), c = mesh.add(middle + half_width, to),
              d = mesh.add(middle - half_width, to), e = mesh.add(tip, to);
    mesh.quad(a, b, c, d);
    mesh.triangle(d, c, e);
}

}  // namespace

Mesh frond(uint32_t seed, float droop) {
    constexpr int kSteps = 40;
    Random random(seed);
    std::vector<Vec3> spine, headings;
    std::vector<float> radii;
    Vec3 p;
    float angle = 0.95f;
    for (int i = 0; i <= kSteps; ++i) {
        const float t = static_cast<float>(i) / kSteps;
        const Vec3 heading{std::cos(angle), std::sin(angle), 0};
        spine.push_back(p);
        headings.push_back(heading);
        radii.push_back(0.011f * (1 - 0.85f * t));
        p += heading / kSteps;
        angle -= droop * (0.55f + 1.3f * t) / kSteps;
    }
    Mesh mesh = tube(spine, radii, 5, 0.95f, 0.95f);
    for (int i = 2; i <= kSteps; ++i) {
        const float t = static_cast<float>(i) / kSteps;
        const float length =
            0.27f *
            std::pow(std::sin(kPi * std::min(1.0f, 0.12f + 0.86f * std::pow(t, 0.85f))), 0.75f);
        for (int k = 0; k < 4; ++k) {
            const Vec3 heading = headings[size_t(i)];
            const Vec3 side{0, 0, k % 2 ? 1.0f : -1.0f};
            const Vec3 root = spine[size_t(i)] - heading * (k < 2 ? 0.0f : 0.5f / kSteps);
            const Vec3 out = normalize(heading * (0.62f + 0.7f * t) + side +
                                       Vec3{0, -0.30f + 0.22f * (1 - t), 0} +
                                       Vec3{random.range(-0.1f, 0.1f), random.range(-0.12f, 0.12f),
                                            random.range(-0.1f, 0.1f)});
            leaflet(mesh, root, root + out * (length * 0.55f) - Vec3{0, length * 0.06f, 0},
                    root + out * length - Vec3{0, length * 0.30f, 0}, heading * 0.0135f,
                    0.1f + 0.75f * t, random.unit());
        }
    }
    return mesh;
}

Mesh clump(uint32_t seed) {
    constexpr int kLeaves = 1500;
    Random random(seed);
    Mesh mesh;
    for (int i = 0; i < kLeaves; ++i) {
        Vec3 d = normalize(inBall(random));
        if (d.y < -0.45f)
            d.y *= -0.6f;
        const float offset = static_cast<float>(seed);
        const float radius = 1 + 0.42f * fractalNoise(d * 1.9f + Vec3{offset, 0, 0}, 3, seed) +
                             random.range(-0.14f, 0.08f);
        const Vec3 p = Vec3{d.x * 1.1f, d.y * 0.82f, d.z * 1.1f} * radius;
        const Vec3 normal = normalize(d + Vec3{random.range(-0.6f, 0.6f), random.range(-0.2f, 0.8f),
                                               random.range(-0.6f, 0.6f)});
        const Vec3 along = normalize(
            cross(normal, {random.range(-1, 1), random.range(-1, 1), random.range(-1, 1)}));
        const Vec3 across = cross(normal, along);
        const float size = 0.10f * random.range(0.7f, 1.35f);
        const Vec2 uv{random.unit(), clamp01(0.35f + 0.45f * d.y + random.range(-0.15f, 0.15f))};
        const Vec3 lift = normal * (size * 0.12f);
        const int a = mesh.add(p - along * size, uv),
                  b = mesh.add(p - across * (size * 0.45f) + lift, uv),
                  c = mesh.add(p + along * size, uv),
                  e = mesh.add(p + across * (size * 0.45f) + lift, uv);
        mesh.quad(a, b, c, e);
    }
    return mesh;
}

Mesh rosette(uint32_t seed) {
    Random random(seed);
    Mesh mesh;
    for (int i = 0; i < 34; ++i) {
        const float turn = static_cast<float>(i) * 2.39996f;  // golden angle
        const float rise = mix(1.35f, 0.1f, static_cast<float>(i) / 34) + random.range(-0.1f, 0.1f);
        const Vec3 flat{std::cos(turn), 0, std::sin(turn)};
        const Vec3 out = flat * std::cos(rise) + Vec3{0, std::sin(rise), 0};
        const float length = random.range(0.75f, 1.0f);
        leaflet(mesh, {0, 0, 0}, out * (0.6f * length),
                out * length - Vec3{0, random.range(0.1f, 0.35f) * length, 0},
                Vec3{-flat.z, 0, flat.x} * 0.05f, 0.25f + 0.5f * std::sin(rise), random.unit());
    }
    return mesh;
}

Mesh boulder(uint32_t seed, Vec3 size) {
    constexpr int kRound = 56, kRings = 36;
    Mesh mesh;
    const float offset = static_cast<float>(seed % 97) * 3.7f;
    for (int j = 0; j <= kRings; ++j)
        for (int i = 0; i <= kRound; ++i) {
            const float polar = kPi * static_cast<float>(j) / kRings;
            const float turn = 2 * kPi * static_cast<float>(i % kRound) / kRound;
            const Vec3 d{std::sin(polar) * std::cos(turn), std::cos(polar),
                         std::sin(polar) * std::sin(turn)};
            const Vec3 q = d * 1.5f + Vec3{offset, 0, -offset};
            const Cell cell = cellNoise(q * 1.3f, seed);
            const float bumps =
                0.6f * fractalNoise(q, 5, seed) + 0.9f * (cell.second - cell.nearest - 0.25f);
            mesh.add(d * (1 + 0.28f * bumps) * size,
                     {static_cast<float>(i) / kRound, static_cast<float>(j) / kRings});
        }
    for (int j = 0; j < kRings; ++j)
        for (int i = 0; i < kRound; ++i) {
            const int a = j * (kRound + 1) + i;
            mesh.quad(a, a + 1, a + kRound + 2, a + kRound + 1);
        }
    return mesh;
}

Mesh stack(uint32_t seed, float radius, float height) {
    constexpr int kRound = 180, kRings = 200;
    const float offset = static_cast<float>(seed) * 5.3f;
    Mesh mesh;
    for (int j = 0; j <= kRings; ++j)
        for (int i = 0; i <= kRound; ++i) {
            const float turn = 2 * kPi * static_cast<float>(i % kRound) / kRound;
            const Vec3 out{std::cos(turn), 0, std::sin(turn)};
            // The last rings close the top.
            const float up = std::min(1.0f, static_cast<float>(j) / (0.86f * kRings));
            const float y = mix(-1, height, up);
            const float lid = clamp01((static_cast<float>(j) / kRings - 0.86f) / 0.14f);
            const Vec3 q = out * radius + Vec3{offset, y * 0.55f, offset};
            const Cell block = cellNoise(Vec3{q.x * 0.9f, y * 0.75f, q.z * 0.9f}, seed);
            const Cell flute = cellNoise(Vec3{q.x * 2.4f, y * 0.8f, q.z * 2.4f}, seed + 1);
            const float relief = 0.50f * fractalNoise(q * 0.8f, 2, seed) +
                                 0.42f * (block.second - block.nearest - 0.3f) +
                                 0.16f * (flute.second - flute.nearest - 0.3f) +
                                 0.14f * fractalNoise(q * 4, 4, seed + 2);
            const float bite = std::pow((y - 0.30f) / 0.34f, 2.0f);
            const float r = radius * (1 - 0.36f * std::pow(up, 1.7f)) + relief * std::sqrt(radius) -
                            0.22f * std::exp(-bite);
            const Vec3 bump{0, 0.25f * fractalNoise(q * 1.3f, 4, seed + 3) * up, 0};
            mesh.add(out * (r * std::sqrt(1 - lid * lid)) + Vec3{0, y + 0.3f * lid, 0} + bump,
                     {static_cast<float>(i) / kRound, up});
        }
    for (int j = 0; j < kRings; ++j)
        for (int i = 0; i < kRound; ++i) {
            const int a = j * (kRound + 1) + i;
            mesh.quad(a, a + kRound + 1, a + kRound + 2, a + 1);
        }
    return mesh;
}

}  // namespace island
