#include "corals/growth.h"

#include <algorithm>
#include <array>

#include "common/noise.h"

namespace art {
namespace {

/// Adds a tube; texture x runs round it, y from v0 to v1.
void addTube(Growth& growth, const std::vector<Vec3>& points, const std::vector<float>& radii,
             int sides, float v0, float v1) {
    growth.mesh.append(tube(points, radii, sides, v0, v1), [](Vec3 p) { return p; });
}

/// Bends a growth more the farther a vertex is from the ground.
void bendByHeight(Growth& growth, float height, float flex) {
    growth.bend.clear();
    for (const Vertex& v : growth.mesh.vertices) {
        const float h = clamp01(v.position.y / height);
        growth.bend.push_back(flex * h * h);
    }
}

/// Three noises as a bump.
Vec3 rough(Vec3 p, int octaves, uint32_t seed) {
    return {fractalNoise(p, octaves, seed), fractalNoise(p + Vec3{31, 0, 0}, octaves, seed + 1),
            fractalNoise(p + Vec3{0, 47, 0}, octaves, seed + 2)};
}

void branch(Growth& growth, Random& random, Vec3 from, Vec3 along, float length, float thickness,
            int forks, float spread, float v0) {
    constexpr int kSteps = 5;
    const float whole = length * random.range(0.8f, 1.2f);
    const float v1 = forks == 0 ? 1.0f : v0 + (1 - v0) * 0.45f;
    std::vector<Vec3> points;
    std::vector<float> radii;
    Vec3 p = from, direction = along;
    for (int i = 0; i <= kSteps; ++i) {
        const float t = static_cast<float>(i) / kSteps;
        points.push_back(p);
        // The last twigs end blunt and wide enough for a screen's pixels, or only crumbs show.
        radii.push_back(thickness * mix(1.0f, forks > 0 ? 0.80f : t < 0.9f ? 0.84f : 0.62f, t));
        const Vec3 wander{random.range(-1, 1), random.range(-1, 1) + 0.22f, random.range(-1, 1)};
        direction = normalize(direction + wander * 0.13f);
        p += direction * (whole / kSteps);
    }
    addTube(growth, points, radii, forks > 1 ? 7 : 6, v0, v1);
    if (forks == 0)
        return;
    const int arms = random.unit() < 0.45f ? 3 : 2;
    for (int i = 0; i < arms; ++i) {
        const Vec3 aside =
            normalize({random.range(-1, 1), random.range(-0.3f, 1), random.range(-1, 1)});
        const Vec3 next = normalize(direction + aside * spread + Vec3{0, 0.12f, 0});
        branch(growth, random, points[size_t(i == 2 ? kSteps - 2 : kSteps)], next,
               length * random.range(0.68f, 0.9f), thickness * 0.78f, forks - 1, spread, v1);
    }
}

void twig(Growth& growth, Random& random, Vec3 from, float angle, float length, float thickness,
          int forks, float v) {
    constexpr int kSteps = 3;
    std::vector<Vec3> points;
    std::vector<float> radii;
    Vec3 p = from;
    for (int i = 0; i <= kSteps; ++i) {
        points.push_back(p);
        radii.push_back(thickness * mix(1.0f, 0.78f, static_cast<float>(i) / kSteps));
        angle += random.range(-0.13f, 0.13f);
        p +=
            Vec3{std::sin(angle), std::cos(angle), random.range(-0.12f, 0.12f)} * (length / kSteps);
    }
    const float next = std::min(1.0f, v + 0.15f);
    addTube(growth, points, radii, 4, v, next);
    if (forks == 0)
        return;
    const int arms = random.unit() < 0.30f ? 3 : 2;
    for (int i = 0; i < arms; ++i) {
        const float turn = arms == 2 ? (i ? 1.0f : -1.0f) * random.range(0.18f, 0.42f)
                                     : static_cast<float>(i - 1) * random.range(0.3f, 0.5f);
        twig(growth, random, points[size_t(i == 2 ? kSteps - 1 : kSteps)],
             std::min(1.45f, std::max(-1.45f, angle + turn)), length * random.range(0.80f, 0.94f),
             thickness * 0.80f, forks - 1, next);
    }
}

/// A periodic labyrinth, 0 in its grooves to 1 on its ridges, and its slope.
class Labyrinth {
public:
    Labyrinth() : values_(size_t(kSize) * size_t(kSize)) {
        Random random(5);
        for (float& v : values_)
            v = random.unit() - 0.5f;
        // Growth that is helped from near and hindered from farther away settles into a maze.
        for (int pass = 0; pass < 24; ++pass) {
            const std::vector<float> near = blurred(values_, 2.6f), far = blurred(values_, 4.3f);
            for (size_t i = 0; i < values_.size(); ++i)
                values_[i] = std::tanh(values_[i] * 0.4f + (near[i] - far[i]) * 20);
        }
        values_ = blurred(values_, 1.0f);
    }
    /// x and y repeat every 1.
    float operator()(float x, float y) const {
        x = (x - std::floor(x)) * kSize;
        y = (y - std::floor(y)) * kSize;
        const int ix = static_cast<int>(x), iy = static_cast<int>(y);
        const float fx = x - static_cast<float>(ix), fy = y - static_cast<float>(iy);
        return 0.5f + 0.5f * mix(mix(at(ix, iy), at(ix + 1, iy), fx),
                                 mix(at(ix, iy + 1), at(ix + 1, iy + 1), fx), fy);
    }

private:
    static constexpr int kSize = 256;
    float at(int x, int y) const {
        return values_[size_t(y & (kSize - 1)) * size_t(kSize) + size_t(x & (kSize - 1))];
    }
    static std::vector<float> blurred(const std::vector<float>& from, float sigma) {
        const int reach = static_cast<int>(std::ceil(sigma * 2.6f));
        std::vector<float> weights;
        float sum = 0;
        for (int k = -reach; k <= reach; ++k) {
            const float d = static_cast<float>(k);
            weights.push_back(std::exp(-d * d / (2 * sigma * sigma)));
            sum += weights.back();
        }
        std::vector<float> across(from.size()), to(from.size());
        const auto pass = [&](const std::vector<float>& in, std::vector<float>& out, int dx,
                              int dy) {
            for (int y = 0; y < kSize; ++y)
                for (int x = 0; x < kSize; ++x) {
                    float v = 0;
                    for (int k = -reach; k <= reach; ++k)
                        v += weights[size_t(k + reach)] *
                             in[size_t((y + k * dy) & (kSize - 1)) * size_t(kSize) +
                                size_t((x + k * dx) & (kSize - 1))];
                    out[size_t(y) * size_t(kSize) + size_t(x)] = v / sum;
                }
        };
        pass(from, across, 1, 0);
        pass(across, to, 0, 1);
        return to;
    }
    std::vector<float> values_;
};

const Labyrinth& labyrinth() {
    static const Labyrinth maze;
    return maze;
}

}  // namespace

void skin(Mesh& mesh, int first, int rows, int columns) {
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) {
            const int a = first + j * (columns + 1) + i;
            mesh.quad(a, a + 1, a + columns + 2, a + columns + 1);
        }
}

Growth stand(Growth growth, const Stand& where) {
    for (Vertex& v : growth.mesh.vertices)
        v.position = rotateZ(rotateY(rotateX(v.position * where.scale, where.turn.x), where.turn.y),
                             where.turn.z) +
                     where.foot;
    return growth;
}

Shades violet() { return {rgb(160, 106, 188), rgb(196, 120, 228), rgb(250, 228, 255)}; }
Shades pink() { return {rgb(168, 70, 92), rgb(255, 116, 150), rgb(255, 236, 230)}; }
Shades blue() { return {rgb(52, 78, 156), rgb(84, 136, 246), rgb(222, 240, 255)}; }
Shades green() { return {rgb(72, 108, 48), rgb(150, 212, 84), rgb(246, 255, 190)}; }
Shades cream() { return {rgb(146, 108, 60), rgb(236, 186, 108), rgb(255, 250, 224)}; }

Growth staghorn(uint32_t seed, float height, int stems, float thickness, const Shades& shades,
                int forks, float spread) {
    Growth growth;
    Random random(seed);
    for (int i = 0; i < stems; ++i) {
        const float angle = 2 * kPi * (static_cast<float>(i) + random.range(-0.3f, 0.3f)) /
                            static_cast<float>(stems);
        const float tilt = i == 0 ? 0.1f : random.range(0.25f, 1.0f);
        const Vec3 out{std::cos(angle), 0, std::sin(angle)};
        const Vec3 from = out * (height * 0.25f * random.unit()) + Vec3{0, -0.1f * height, 0};
        branch(growth, random, from, normalize(out * tilt + Vec3{0, 1, 0}), height * 0.42f,
               thickness, forks, spread, 0);
    }
    bendByHeight(growth, height, 0.05f * height);
    growth.material = [shades, seed](Vec2 t, Vec3 p) {
        const Cell cup = cellNoise(Vec2{t.x * 12, t.y * 26}, seed, {12, 0, 0});
        const float v = t.y;
        Vec3 c = mix(shades.foot, shades.middle, smoothstep(0, 0.42f, v));
        c = mix(c, shades.tip, 0.50f * smoothstep(0.62f, 1.0f, v));
        c = c * (0.88f + 0.22f * (1 - smoothstep(0.1f, 0.5f, cup.nearest)));
        c = c * (1 + 0.16f * fractalNoise(p * 5, 2, seed + 9));
        return Paint{c, {}};
    };
    return growth;
}

std::vector<Growth> table(uint32_t seed, float radius, float height) {
    Random random(seed);
    const float where = static_cast<float>(seed % 101);
    const auto edge = [&](float angle) {
        return radius *
               (0.86f +
                0.13f * fractalNoise({std::cos(angle) * 1.7f + where, std::sin(angle) * 1.7f, 0.5f},
                                     3, seed) +
                0.05f * std::sin(angle * 3 + where));
    };
    const auto lift = [&](float angle, float r) {
        return height + 0.12f * radius * r * r +
               0.03f * radius *
                   gradientNoise({std::cos(angle) * r * 3 + where, std::sin(angle) * r * 3, 1},
                                 seed);
    };

    Growth plate;
    constexpr int kRings = 9, kAround = 44;
    for (int side = 0; side < 2; ++side) {
        const int first = static_cast<int>(plate.mesh.vertices.size());
        for (int j = 0; j <= kRings; ++j)
            for (int i = 0; i <= kAround; ++i) {
                const float angle = 2 * kPi * static_cast<float>(i) / kAround;
                const float r = static_cast<float>(j) / kRings, out = edge(angle) * r;
                const float thick = side ? radius * (0.068f - 0.04f * r) : 0;
                plate.mesh.add(
                    {std::cos(angle) * out, lift(angle, r) - thick, std::sin(angle) * out},
                    {std::cos(angle) * r, std::sin(angle) * r});
            }
        skin(plate.mesh, first, kRings, kAround);
    }
    std::vector<Vec3> stalk;
    std::vector<float> widths;
    for (int i = 0; i <= 6; ++i) {
        const float t = static_cast<float>(i) / 6;
        stalk.push_back({0.1f * radius * std::sin(t * 2), mix(-0.1f, height - 0.22f * radius, t),
                         0.05f * radius * t});
        widths.push_back(radius * (mix(0.20f, 0.13f, std::sin(t * kPi)) + 0.04f * t * t));
    }
    plate.mesh.append(tube(stalk, widths, 12, 0.1f, 0.5f), [](Vec3 p) { return p; });
    plate.bend.assign(plate.mesh.vertices.size(), 0);
    plate.material = [seed](Vec2 t, Vec3 p) {
        const float r = std::min(1.0f, length(t));
        const float mottle = fractalNoise(p * 7, 3, seed + 4);
        return Paint{mix(rgb(132, 96, 62), rgb(196, 148, 86), r) * (1 + 0.35f * mottle),
                     rough(p * 9, 2, seed + 5) * 0.5f};
    };

    Growth top;
    const int count = static_cast<int>(1000 * radius);
    for (int i = 0; i < count; ++i) {
        const float angle = random.range(0, 2 * kPi), r = std::sqrt(random.unit());
        const float out = edge(angle) * r;
        const Vec3 from{std::cos(angle) * out, lift(angle, r) - 0.01f, std::sin(angle) * out};
        const Vec3 along = normalize({std::cos(angle) * r * 1.1f + random.range(-0.35f, 0.35f), 1,
                                      std::sin(angle) * r * 1.1f + random.range(-0.35f, 0.35f)});
        const float length = radius * random.range(0.05f, 0.10f) * (r > 0.9f ? 1.25f : 1);
        const float w = radius * random.range(0.014f, 0.022f);
        addTube(top, {from, from + along * (length * 0.6f), from + along * length},
                {w, w * 0.9f, w * 0.7f}, 5, 0.15f + 0.3f * r, 0.75f + 0.25f * r);
    }
    top.bend.assign(top.mesh.vertices.size(), 0.004f);
    top.material = [seed](Vec2 t, Vec3 p) {
        Vec3 c = mix(rgb(146, 104, 54), rgb(230, 184, 96), smoothstep(0.1f, 0.55f, t.y));
        c = mix(c, rgb(255, 242, 192), 0.55f * smoothstep(0.78f, 1.0f, t.y));
        return Paint{c * (1 + 0.14f * gradientNoise(p * 3, seed + 7)), {}};
    };
    return {plate, top};
}

Growth fan(uint32_t seed, float height, Vec3 low, Vec3 high) {
    Growth growth;
    Random random(seed);
    twig(growth, random, {0, -0.1f * height, 0}, 0, height * 0.17f, height * 0.030f, 0, 0);
    for (int i = 0; i < 4; ++i)
        twig(growth, random, {0, 0.03f * height, 0},
             -0.75f + 0.5f * static_cast<float>(i) + random.range(-0.1f, 0.1f), height * 0.185f,
             height * 0.020f, 6, 0.1f);
    bendByHeight(growth, height, 0.10f * height);
    growth.material = [=](Vec2 t, Vec3 p) {
        const Vec3 c = mix(low * 0.92f, high, smoothstep(0, 0.8f, t.y));
        return Paint{c * (0.94f + 0.28f * gradientNoise(p * 9, seed)), {}};
    };
    return growth;
}

constexpr int kSpongeSteps = 12;  // from its foot to its rim
/// From the rim into the mouth: how far above the rim and how wide, in radii.
constexpr std::array<Vec2, 5> kSpongeLip{
    {{0.26f, 1.08f}, {0.38f, 0.94f}, {0.28f, 0.80f}, {-0.1f, 0.70f}, {-2.5f, 0.50f}}};
/// Where along a sponge's picture its rim lies.
constexpr float kSpongeRim =
    static_cast<float>(kSpongeSteps) / static_cast<float>(kSpongeSteps + kSpongeLip.size());

Growth sponges(uint32_t seed, float height, int count, Vec3 low, Vec3 high) {
    Growth growth;
    Random random(seed);
    for (int i = 0; i < count; ++i) {
        const float angle =
            2 * kPi * static_cast<float>(i) / static_cast<float>(count) + random.range(-0.4f, 0.4f);
        const float away = i == 0 ? 0 : height * random.range(0.12f, 0.34f);
        // One stands out among its lower neighbours.
        const float share = random.range(0.5f, 1.0f),
                    tall = height * (i == 0 ? 1.0f : 0.85f * share);
        const float r = height * random.range(0.070f, 0.105f);
        const Vec3 out{std::cos(angle), 0, std::sin(angle)};
        const Vec3 from = out * away + Vec3{0, -0.08f * height, 0};
        const Vec3 along =
            normalize(out * 0.28f + Vec3{random.range(-0.1f, 0.1f), 1, random.range(-0.1f, 0.1f)});
        std::vector<Vec3> points;
        std::vector<float> radii;
        for (int j = 0; j <= kSpongeSteps; ++j) {
            const float t = static_cast<float>(j) / kSpongeSteps;
            const float foot = 1 - smoothstep(0, 0.28f, t);
            points.push_back(from + along * (tall * t) +
                             Vec3{random.range(-1, 1), 0, random.range(-1, 1)} * (0.012f * height));
            radii.push_back(r *
                            (0.66f + 0.44f * t + 0.06f * std::sin(t * 14 + static_cast<float>(i)) +
                             0.55f * foot * foot));
        }
        // Over the rim and down inside.
        const Vec3 rim = points.back();
        for (const Vec2 lip : kSpongeLip) {
            points.push_back(rim + along * (lip.x * r));
            radii.push_back(r * lip.y);
        }
        addTube(growth, points, radii, 16, 0, 1);
    }
    bendByHeight(growth, height, 0.025f * height);
    growth.material = [=](Vec2 t, Vec3 p) {
        const Cell pore = cellNoise(Vec2{t.x * 20, t.y * 22}, seed, {20, 0, 0});
        Vec3 c = mix(low * 0.8f, high, smoothstep(0, 0.7f, t.y));
        c = c * (0.70f + 0.36f * smoothstep(0.08f, 0.38f, pore.nearest));
        // Grown over at its foot; a pale lip round the dark mouth.
        c = mix(rgb(58, 54, 52), c, smoothstep(0.02f, 0.22f, t.y));
        const float lip = (t.y - kSpongeRim) / (1 - kSpongeRim);
        c = mix(c, mix(high, {1, 1, 1}, 0.35f), band(lip, 0.02f, 0.55f, 0.08f));
        c = c * mix(1.0f, 0.16f, smoothstep(0.58f, 0.78f, lip));
        return Paint{c * (1 + 0.15f * fractalNoise(p * 4, 2, seed + 2)),
                     rough(p * 14, 2, seed + 3) * 0.4f};
    };
    return growth;
}

Growth plates(uint32_t seed, float radius, int count, Vec3 low, Vec3 high) {
    Growth growth;
    Random random(seed);
    for (int k = 0; k < count; ++k) {
        const float share = static_cast<float>(k) / static_cast<float>(count);
        const float order = static_cast<float>(k);
        const float yaw = order * 137.5f + random.range(-15, 15);
        const float tilt = mix(18, 68, share) + random.range(-6, 6);
        const float size = radius * mix(1.05f, 0.5f, share);
        Mesh leaf;
        constexpr int kOut = 10, kAcross = 26;
        for (int side = 0; side < 2; ++side) {
            const int first = static_cast<int>(leaf.vertices.size());
            for (int j = 0; j <= kOut; ++j)
                for (int i = 0; i <= kAcross; ++i) {
                    const float t = static_cast<float>(j) / kOut;
                    const float angle = mix(-1.05f, 1.05f, static_cast<float>(i) / kAcross);
                    const float edge =
                        1 + 0.14f * fractalNoise({angle * 2.2f + order * 5, order, 0.5f}, 3, seed) +
                        0.05f * std::sin(angle * 9 + order);
                    const float r = size * t * edge;
                    const float y = 0.17f * size * std::sin(angle * 5 + order * 1.7f) * t * t +
                                    0.22f * size * t * t;
                    leaf.add({std::sin(angle) * r, y - (side ? 0.022f * radius : 0),
                              std::cos(angle) * r},
                             {static_cast<float>(i) / kAcross, t});
                }
            skin(leaf, first, kOut, kAcross);
        }
        growth.mesh.append(leaf, [&](Vec3 p) {
            return rotateY(rotateX(p, -tilt), yaw) + Vec3{0, -0.02f * radius, 0};
        });
    }
    bendByHeight(growth, radius, 0.015f * radius);
    growth.material = [=](Vec2 t, Vec3 p) {
        Vec3 c = mix(low, high, smoothstep(0.05f, 0.8f, t.y));
        c = mix(c, rgb(255, 238, 176), 0.75f * smoothstep(0.91f, 0.985f, t.y));
        const float ribs = std::sin(t.x * 120 + 3 * std::sin(t.y * 9));
        const Cell cup = cellNoise(Vec2{t.x * 26, t.y * 22}, seed + 1);
        c = c * (0.94f + 0.08f * ribs) *
            (0.84f + 0.26f * (1 - smoothstep(0.1f, 0.42f, cup.nearest)));
        return Paint{c, rough(p * 12, 2, seed + 3) * 0.3f};
    };
    return growth;
}

Growth leather(uint32_t seed, float radius) {
    Growth cap;
    constexpr int kAround = 120, kTop = 20, kFoot = 10;
    const float where = static_cast<float>(seed % 37);
    // Round lobes with narrow clefts between them: 1 on a lobe, -1 in a cleft.
    const auto folds = [where](float angle) {
        const float wave = angle * 6 + 1.1f * std::sin(angle * 2 + where) + where;
        const float fine = angle * 11 + 0.6f * std::sin(angle * 3 + where);
        return 1.45f * std::sqrt(std::fabs(std::sin(wave))) - 0.85f +
               0.30f * std::sqrt(std::fabs(std::sin(fine))) - 0.10f;
    };
    const auto point = [&](float angle, float t) {
        // The cap rolls over its rim, which swells into lobes; below it narrows to the foot.
        const float fold = folds(angle);
        if (t <= 1) {
            const float r =
                radius * t * (1 + (0.07f * std::sin(angle * 3 + where) + 0.15f * fold) * t * t);
            const float y =
                radius * (0.50f + 0.24f * t * t - 0.24f * t * t * t * t + 0.26f * fold * t * t * t);
            return Vec3{std::cos(angle) * r, y, std::sin(angle) * r};
        }
        const float u = t - 1;
        const float r = radius * mix(1.0f + 0.15f * fold, 0.36f, std::sqrt(u));
        const float y = radius * (mix(0.46f, -0.15f, u) - 0.16f * std::sin(kPi * std::sqrt(u)) +
                                  0.26f * fold * (1 - u) + 0.04f * (1 - u));
        return Vec3{std::cos(angle) * r, y, std::sin(angle) * r};
    };
    for (int j = 0; j <= kTop + kFoot; ++j)
        for (int i = 0; i <= kAround; ++i) {
            const float angle = 2 * kPi * static_cast<float>(i) / kAround;
            const float t =
                j <= kTop ? static_cast<float>(j) / kTop : 1 + static_cast<float>(j - kTop) / kFoot;
            cap.mesh.add(point(angle, t), {angle, t});
        }
    skin(cap.mesh, 0, kTop + kFoot, kAround);
    bendByHeight(cap, radius * 0.7f, 0.03f * radius);
    cap.material = [seed, folds](Vec2 t, Vec3 p) {
        Vec3 c = mix(rgb(236, 156, 118), rgb(255, 200, 150),
                     clamp01(0.5f + 0.8f * fractalNoise(p * 3, 3, seed + 1)));
        c = c * mix(1.0f, 0.80f, smoothstep(1.1f, 2.0f, t.y));
        // The clefts keep their shade, the lobes are worn pale.
        const float fold =
            0.75f * folds(t.x) * smoothstep(0.35f, 1.0f, t.y) * (1 - smoothstep(1.0f, 1.6f, t.y));
        c = mix(c * (1 + 0.45f * std::min(fold, 0.0f)), rgb(255, 226, 190), 0.55f * clamp01(fold));
        // A lawn of fine polyps on all of the top.
        const Cell polyp = cellNoise(p * 26, seed + 3);
        const float top = 1 - smoothstep(1.05f, 1.25f, t.y);
        c = c * (1 - 0.22f * top * smoothstep(0.30f, 0.55f, polyp.nearest));
        c = mix(c, rgb(255, 244, 222), 0.55f * top * (1 - smoothstep(0.10f, 0.34f, polyp.nearest)));
        const Vec3 away = p * 26 - polyp.point;
        return Paint{c, away * (0.6f * top) + rough(p * 16, 1, seed + 2) * 0.3f};
    };

    return cap;
}

Growth anemone(uint32_t seed, float radius, int arms) {
    Growth growth;
    Random random(seed);
    for (int i = 0; i < arms; ++i) {
        const float r = std::sqrt((static_cast<float>(i) + 0.5f) / static_cast<float>(arms));
        const float angle = static_cast<float>(i) * 2.39996f;
        const Vec3 out{std::cos(angle) * r, 0, std::sin(angle) * r};
        Vec3 p = out * (radius * 0.55f) + Vec3{0, radius * (0.11f - 0.16f * r * r), 0};
        Vec3 along =
            normalize(out * 1.2f + Vec3{random.range(-0.4f, 0.4f), 1, random.range(-0.4f, 0.4f)});
        const float whole = radius * random.range(0.42f, 0.62f);
        std::vector<Vec3> points;
        std::vector<float> radii;
        constexpr int kSteps = 5;
        for (int j = 0; j <= kSteps; ++j) {
            const float t = static_cast<float>(j) / kSteps;
            points.push_back(p);
            radii.push_back(radius * (0.040f - 0.012f * t + (t > 0.9f ? 0.014f : 0)));
            along = normalize(along + Vec3{random.range(-0.20f, 0.30f), random.range(-0.2f, 0.1f),
                                           random.range(-0.25f, 0.25f)});
            p += along * (whole / kSteps);
        }
        addTube(growth, points, radii, 6, 0, 1);
    }
    bendByHeight(growth, radius * 0.7f, 0.13f * radius);
    growth.material = [](Vec2 t, Vec3) {
        Vec3 c = mix(rgb(66, 92, 54), rgb(128, 178, 104), smoothstep(0, 0.5f, t.y));
        c = mix(c, rgb(204, 230, 156), smoothstep(0.5f, 0.82f, t.y));
        return Paint{mix(c, rgb(232, 128, 214), smoothstep(0.86f, 0.95f, t.y)), {}};
    };
    return growth;
}

Growth brain(uint32_t seed, Vec3 radii, Vec3 ridge, Vec3 groove) {
    Growth growth;
    constexpr int kDown = 34, kAround = 64;
    const float where = static_cast<float>(seed % 89);
    for (int j = 0; j <= kDown; ++j)
        for (int i = 0; i <= kAround; ++i) {
            const float polar = kPi * 0.72f * static_cast<float>(j) / kDown;
            const float angle = 2 * kPi * static_cast<float>(i) / kAround;
            // Below its middle it draws in only slowly, on its way into the sand.
            const float below = std::max(0.0f, polar - kPi / 2);
            const float round = below > 0 ? std::cos(0.75f * below) : std::sin(polar);
            const float down = below > 0 ? -1.2f * below : std::cos(polar);
            const Vec3 d{round * std::cos(angle), down, round * std::sin(angle)};
            const float lump = fractalNoise(d * 1.7f + Vec3{where, 0, 0}, 3, seed);
            growth.mesh.add(d * radii * (1 + 0.07f * lump),
                            {std::cos(angle) * polar, std::sin(angle) * polar});
        }
    skin(growth.mesh, 0, kDown, kAround);
    growth.bend.assign(growth.mesh.vertices.size(), 0);
    // As many windings to the unit on a large dome as on a small one.
    const float windings = 0.92f * radii.x;
    growth.material = [=](Vec2 t, Vec3 p) {
        const Labyrinth& maze = labyrinth();
        const float x = t.x * windings + where * 0.37f, y = t.y * windings;
        const float v = maze(x, y), e = 1.5f / 256;
        const float dx = maze(x + e, y) - v, dy = maze(x, y + e) - v;
        // Narrow grooves, not quite dark, and a pale crest; older parts of the dome are darker.
        Vec3 c = mix(mix(groove, ridge, 0.40f), ridge, smoothstep(0.05f, 0.50f, v));
        c = mix(c, c * 0.6f + Vec3{0.40f, 0.39f, 0.34f}, 0.45f * smoothstep(0.72f, 0.95f, v));
        c = c * (1 + 0.30f * fractalNoise(p * 2.2f, 3, seed + 3)) *
            (1 + 0.22f * fractalNoise(p * 21, 2, seed + 4));
        // The picture's axes lie along x and z near the top, which is where the sun shows relief.
        return Paint{c * mix(0.80f, 1.05f, smoothstep(0, 0.5f, v)), Vec3{-dx, 0, -dy} * 0.8f};
    };
    return growth;
}

Growth rock(uint32_t seed, Vec3 radii, float roughness) {
    Growth growth;
    constexpr int kDown = 44, kAround = 72;
    const float where = static_cast<float>(seed % 97) * 1.7f;
    for (int j = 0; j <= kDown; ++j)
        for (int i = 0; i <= kAround; ++i) {
            const float polar = kPi * 0.80f * static_cast<float>(j) / kDown;
            const float angle = 2 * kPi * static_cast<float>(i) / kAround;
            // Below its middle it goes straight down into the sand.
            const float round = polar < kPi / 2 ? std::sin(polar) : 1.0f;
            const Vec3 d{round * std::cos(angle), std::cos(polar), round * std::sin(angle)};
            const Vec3 at = d * 1.7f + Vec3{where, where * 0.3f, -where};
            const Cell facet = cellNoise(at * 1.3f, seed);
            const float lump =
                0.6f * fractalNoise(at, 5, seed) + 0.9f * (facet.second - facet.nearest - 0.25f);
            growth.mesh.add(d * radii * (1 + roughness * lump),
                            {static_cast<float>(i) / kAround, static_cast<float>(j) / kDown});
        }
    skin(growth.mesh, 0, kDown, kAround);
    growth.bend.assign(growth.mesh.vertices.size(), 0);
    // On a small stone crusts are smaller, too, or one covers all that is seen.
    const float crusts = std::clamp(0.55f / radii.x, 1.0f, 2.6f);
    growth.material = [seed, crusts](Vec2, Vec3 p) {
        const Vec3 q = p * crusts;
        const float n = fractalNoise(q * 1.6f, 4, seed % 7 + 91),
                    n2 = fractalNoise(q * 2.3f, 3, 92);
        const float n3 = fractalNoise(q * 1.1f, 3, 93), grain = fractalNoise(p * 13, 2, 95);
        const Vec3 warped = p + rough(p * 2.5f, 2, 96) * 0.35f;
        const Cell knob = cellNoise(warped * 4.2f, 94), hole = cellNoise(warped * 9.5f, 98);
        Vec3 c = mix(rgb(146, 126, 108), rgb(198, 178, 150), clamp01(0.5f + 1.1f * n));
        c = mix(c, rgb(204, 120, 150), 0.80f * smoothstep(0.05f, 0.28f, n2));
        c = mix(c, rgb(136, 142, 78), 0.65f * smoothstep(0.08f, 0.28f, n3 + 0.3f * n));
        c = mix(c, rgb(228, 164, 92), 0.75f * smoothstep(0.22f, 0.34f, -n2 + 0.3f * n3));
        c = mix(c, rgb(150, 108, 176), 0.60f * smoothstep(0.26f, 0.36f, -n3 - 0.2f * n2));
        c = c * (0.74f + 0.36f * smoothstep(0, 0.40f, knob.second - knob.nearest)) *
            (0.68f + 0.36f * smoothstep(0.08f, 0.32f, hole.nearest)) * (1 + 0.40f * grain);
        const Vec3 away = normalize(warped * 4.2f - knob.point);
        return Paint{
            c, away * (0.40f * smoothstep(0.1f, 0.6f, knob.nearest)) + rough(p * 9, 3, 97) * 0.95f};
    };
    return growth;
}

}  // namespace art
