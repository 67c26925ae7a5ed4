// The picture on the sea floor: sand with ripples, rubble, weed, and the shadows of corals,
// starfish and stones.
//
// Everything is seen from one eye only. Things that stand up from the sand (stones, shells) are
// painted as the eye sees them, drawn out away from it over the floor; those close up are part of
// the gardens' pictures, which show them better.
#include <memory>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "corals/gardens.h"
#include "corals/portrait.h"
#include "floor/ground.h"
#include "floor/litter.h"
#include "floor/placement.h"

namespace art {
namespace {

constexpr int kTexels = 2048;  // along each side, while painting
constexpr float kTexelX = Ground::kWidth / kTexels, kTexelZ = Ground::kDepth / kTexels;

float worldX(float column) { return -Ground::kWidth / 2 + column * kTexelX; }
float worldZ(float row) { return Ground::kDepth - row * kTexelZ; }
float columnOf(float x) { return (x + Ground::kWidth / 2) / kTexelX; }
float rowOf(float z) { return (Ground::kDepth - z) / kTexelZ; }

/// Ripples are strongest before the eye and gone where they would glitter.
float rippleStrength(float x, float z) {
    const float near = 1 - smoothstep(20, 33, z);
    const float patch = fractalNoise({x * 0.13f + 5, z * 0.13f, 0.5f}, 2, 516);
    const float least = mix(0.62f, 0.40f, smoothstep(10, 18, z));
    return near * mix(least, 1.0f, smoothstep(-0.3f, 0.3f, patch));
}

/// How many ripples lie nearer than z; before the eye they are broad.
float ripplesBefore(float z) {
    constexpr float kNear = 6, kFar = 14, kBroad = 1.10f, kUsual = 1.75f;  // per world unit
    const float t = clamp01((z - kNear) / (kFar - kNear));
    const float beyond = std::max(0.0f, z - kFar);
    return kBroad * z +
           (kUsual - kBroad) * ((kFar - kNear) * (t * t * t - 0.5f * t * t * t * t) + beyond);
}

/// Relief of the sand, world units, above the smooth floor.
float relief(float x, float z) {
    // Crests run mostly across the view, bend, and fork where the warp folds them.
    const float warp = 2.3f * fractalNoise({x * 0.20f + 9, z * 0.20f, 0.5f}, 2, 512) +
                       0.10f * fractalNoise({x * 1.3f, z * 1.3f, 0.5f}, 2, 515);
    const float slant = 0.30f * gradientNoise({x * 0.05f, z * 0.05f, 4}, 514);
    const float phase = ripplesBefore(z * std::cos(slant) + x * std::sin(slant) + warp);
    const float turn = phase - std::floor(phase);
    // Round troughs, sharp crests, and the longer side towards the eye.
    const float crest = std::pow(turn < 0.55f ? turn / 0.55f : (1 - turn) / 0.45f, 1.6f);
    return 0.10f * rippleStrength(x, z) * crest +
           0.060f * fractalNoise({x * 0.75f, z * 0.75f, 0.5f}, 3, 517) +
           0.006f * gradientNoise({x * 7, z * 7, 0.5f}, 518);
}

/// Light that falls on a slope, 1 on level sand.
float lit(float slope_x, float slope_z) {
    const Vec3 sun = towardsSun();
    const Vec3 n = normalize({-slope_x, 1, -slope_z});
    return 0.50f + 0.50f * std::max(0.0f, dot(n, sun)) / sun.y;
}

float weed(float x, float z) {
    const float side = smoothstep(11, 20, std::fabs(x + 0.5f)) * smoothstep(4, 12, z);
    const float back = smoothstep(23, 30, z) * 0.55f;
    const float patch = fractalNoise({x * 0.21f, z * 0.16f, 0.5f}, 4, 532);
    const float keep_clear = smoothstep(1.0f, 2.2f, distanceFromRoute(x, z));
    return std::max(side, back) * smoothstep(-0.02f, 0.30f, patch) * keep_clear;
}

Vec3 sand(float x, float z) {
    constexpr float kDelta = 0.03f;
    const float r0 = relief(x, z);
    const float dx = (relief(x + kDelta, z) - r0) / kDelta,
                dz = (relief(x, z + kDelta) - r0) / kDelta;
    constexpr float kWide = 0.4f;
    const float h0 = smoothHeight(x, z);
    const float mx = (smoothHeight(x + kWide, z) - h0) / kWide,
                mz = (smoothHeight(x, z + kWide) - h0) / kWide;

    const float broad = fractalNoise({x * 0.15f, z * 0.15f, 0.5f}, 4, 501);
    const float middle = fractalNoise({x * 0.9f, z * 0.9f, 0.5f}, 3, 502);
    const float fine = gradientNoise({x * 14, z * 14, 0.5f}, 503);
    // Its yellow is a green one: through the water any red in it would turn to mauve.
    Vec3 c = mix(rgb(254, 255, 242), rgb(252, 253, 227), clamp01(0.45f + 1.0f * broad));
    // Bleached channels where the water runs between the mounds.
    const float channel =
        1 -
        smoothstep(0.0f, 0.11f, std::fabs(fractalNoise({x * 0.11f + 40, z * 0.07f, 0.5f}, 3, 509)));
    c = mix(c, rgb(254, 255, 246), 0.5f * channel);
    c = c * (1.03f + 0.05f * middle);

    const float ripple = lit(dx, dz) - 1, mound = lit(0.4f * mx, 0.4f * mz) - 1;
    // The sides away from the sun take a little of the water's colour; the sand around lights them
    // up. Level sand leaves room for sides that are brighter.
    c = c * mix(rgb(184, 196, 186), {1, 1, 1},
                clamp01(mix(0.985f, 0.92f, smoothstep(9, 15, z)) + 1.15f * mound +
                        mix(3.6f, 4.9f, smoothstep(8.5f, 13, z)) * ripple));
    // Where the sun would burn it, it keeps its hue.
    c = c * (1 / std::max({1.0f, c.x, c.y, c.z}));

    // Grains, light and dark alike: last, since burnt sand would keep only the dark ones, and those
    // look like hair.
    const int column = static_cast<int>(std::lround(x / kTexelX)),
              row = static_cast<int>(std::lround(z / kTexelZ));
    const float grain = hashUnit(column, row, 0, 504) - 0.5f;
    const float coarse = 0.55f + 0.9f * clamp01(0.5f + 1.3f * middle);
    // Each is largest before the eye, where less of it is enough.
    const float contrast = mix(0.046f, 0.065f, smoothstep(9, 12, z));
    c = c *
        (mix(0.995f, 0.988f, smoothstep(9, 15, z)) + coarse * (0.025f * fine + contrast * grain));

    const float w = weed(x, z);
    if (w > 0) {
        const float tuft = 0.5f + 0.5f * fractalNoise({x * 2.6f, z * 1.4f, 0.5f}, 3, 545);
        const Vec3 green = mix(rgb(92, 118, 84), rgb(138, 142, 98), tuft);
        c = mix(c, green * (0.85f + 0.3f * tuft),
                0.62f * w * smoothstep(0.15f, 0.65f, tuft + 0.4f * w));
    }

    // Old coral sand, darker and browner, lies round the gardens.
    const float near = nearness(x, z);
    const float dirt =
        (1 - smoothstep(0.8f, 1.9f, near + 0.5f * middle)) * (1 - smoothstep(24, 34, z) * 0.5f);
    c = mix(c, c * mix(rgb(238, 220, 188), rgb(216, 198, 172), clamp01(0.5f + middle)),
            0.24f * dirt);
    return c;
}

/// The light that the corals leave to the floor.
class Shade {
public:
    Shade() {
        for (const std::vector<Mesh>& corals : standingCorals()) {
            std::vector<const Mesh*> meshes;
            Group group;
            for (const Mesh& mesh : corals) {
                meshes.push_back(&mesh);
                for (const Vertex& v : mesh.vertices) {
                    group.low = {std::min(group.low.x, v.position.x - kReach),
                                 std::min(group.low.y, v.position.z - kReach)};
                    group.high = {std::max(group.high.x, v.position.x + kReach),
                                  std::max(group.high.y, v.position.z + kReach)};
                }
            }
            group.light = std::make_unique<Light>(meshes);
            groups_.push_back(std::move(group));
        }
    }

    /// What is left of the light at a point of the floor: 1 in the open.
    Vec3 operator()(Vec3 point) const {
        float sun = 1, sky = 1;
        for (const Group& group : groups_) {
            const float inside = std::min({point.x - group.low.x, group.high.x - point.x,
                                           point.z - group.low.y, group.high.y - point.z});
            if (inside <= 0)
                continue;
            // The floor is coarse; a group must not end at a visible line.
            const float fade = smoothstep(0, 1, inside);
            const Vec3 up{0, 1, 0};
            sun = std::min(sun, mix(1, group.light->sun(point, up, 0.045f), fade));
            sky = std::min(sky, mix(1, group.light->sky(point, up), fade));
        }
        // Bright sand all round gives back most of what the corals take.
        sky = std::min(1.0f, 1.15f * sky);
        const float dim = 0.35f + 0.65f * sky;
        return Vec3{0.56f, 0.53f, 0.50f} * (sun * mix(0.6f, 1.0f, sky)) +
               Vec3{0.44f, 0.47f, 0.50f} * dim;
    }

private:
    /// How far from a coral its shade is felt.
    static constexpr float kReach = 2.5f;
    struct Group {
        Vec2 low{1e9f, 1e9f}, high{-1e9f, -1e9f};
        std::unique_ptr<Light> light;
    };
    std::vector<Group> groups_;
};

void blend(Pixel& pixel, Vec3 colour, float amount) {
    pixel.colour = mix(pixel.colour, colour, clamp01(amount));
}

void paintStone(Image& image, const Ground& ground, const Stone& stone) {
    const float y = ground.height(stone.x, stone.z);
    const float eye_high = kEye.y - y;
    const float reach = stone.radius * 1.5f;
    const float small = 1 - smoothstep(0.08f, 0.16f, stone.radius);
    // The eye sees the top of the stone against the sand this far behind it.
    const float behind = stone.height * (stone.z - kEye.z) / eye_high + reach;
    const float shadow = stone.height * 1.1f + reach;
    const int x0 = static_cast<int>(columnOf(stone.x - reach * 1.6f)),
              x1 = static_cast<int>(columnOf(stone.x + std::max(reach, shadow) * 1.3f));
    const int y0 = static_cast<int>(rowOf(stone.z + std::max(behind, shadow))),
              y1 = static_cast<int>(rowOf(stone.z - reach));
    const Vec3 sun = towardsSun();
    for (int row = std::max(0, y0); row <= std::min(kTexels - 1, y1); ++row)
        for (int column = std::max(0, x0); column <= std::min(kTexels - 1, x1); ++column) {
            const float x = worldX(static_cast<float>(column) + 0.5f),
                        z = worldZ(static_cast<float>(row) + 0.5f);
            Pixel& pixel = image.at(column, row);
            // Its shadow: the stone seen along the sun, softened.
            {
                // That of a small one falls well aside: all round, it would be a black ring.
                const float slide = stone.height * 0.5f + 0.40f * small * stone.radius;
                const float px = (x - stone.x + sun.x / sun.y * slide) / stone.radius,
                            pz = (z - stone.z + sun.z / sun.y * slide) / stone.radius;
                const float d = std::sqrt(px * px * 0.8f + pz * pz);
                blend(pixel, pixel.colour * Vec3{0.52f, 0.58f, 0.60f},
                      (closeUp(stone) ? 0.7f : 1.0f) * mix(0.85f, 0.65f, small) *
                          (1 - smoothstep(0.75f, mix(1.45f, 1.25f, small), d)));
            }
            if (closeUp(stone))
                continue;
            // The stone itself: the ray from the eye against an uneven half ellipsoid.
            const Vec3 scale{1 / stone.radius, 1 / stone.height, 1 / stone.radius};
            const Vec3 origin = Vec3{kEye.x - stone.x, eye_high, kEye.z - stone.z} * scale;
            const Vec3 target = Vec3{x - stone.x, ground.height(x, z) - y, z - stone.z} * scale;
            const Vec3 ray = normalize(target - origin);
            const float nearest = -dot(origin, ray);
            const Vec3 closest = origin + ray * nearest;
            const float miss = length(closest);
            if (miss > 1.3f)
                continue;
            const Vec3 around =
                normalize(closest + ray * -std::sqrt(std::max(0.0f, 1 - miss * miss)));
            const float lump = fractalNoise(
                around * 1.5f + Vec3{static_cast<float>(stone.seed % 997), 0, 0}, 3, stone.seed);
            const float edge = 1 + mix(0.30f, 0.12f, small) * lump;
            const float inside = 1 - smoothstep(edge - 0.12f, edge + 0.02f, miss);
            if (inside <= 0)
                continue;
            const Vec3 wrinkle{fractalNoise(around * 3.1f + Vec3{7, 0, 0}, 2, stone.seed + 1),
                               fractalNoise(around * 3.1f + Vec3{0, 9, 0}, 2, stone.seed + 2),
                               fractalNoise(around * 3.1f + Vec3{0, 0, 5}, 2, stone.seed + 3)};
            const Vec3 n =
                normalize(normalize(around * scale) + wrinkle * mix(0.55f, 0.25f, small));
            const float light = 0.62f + 0.14f * n.y + 0.72f * std::max(0.0f, dot(n, sun));
            const float foot = smoothstep(-0.25f, 0.45f, around.y);
            const Vec3 c =
                stone.colour * (1 + stone.mottle * wrinkle.x) * light * mix(0.62f, 1.0f, foot);
            blend(pixel, c, inside);
        }
}

void paintStones(Image& image) {
    const Ground ground;
    for (const Stone& stone : stones())
        paintStone(image, ground, stone);
}

/// Where something breathes under the sand, or a bubble has burst.
void paintPits(Image& image) {
    Random random(1902);
    for (int i = 0; i < 1100; ++i) {
        const float x = random.range(-22, 22), z = random.range(1.3f, 27);
        const float close = 1 - smoothstep(9, 15, z);
        const float radius = mix(0.035f, 0.060f, close) + 0.06f * std::pow(random.unit(), 2.0f);
        const float depth = random.range(0.35f, 0.9f) * mix(1.0f, 0.6f, close);
        if (random.unit() < 0.6f * close)
            continue;
        for (int row = static_cast<int>(rowOf(z + radius));
             row <= static_cast<int>(rowOf(z - radius)); ++row)
            for (int column = static_cast<int>(columnOf(x - radius));
                 column <= static_cast<int>(columnOf(x + radius)); ++column) {
                const float dx = (worldX(static_cast<float>(column) + 0.5f) - x) / radius,
                            dz = (worldZ(static_cast<float>(row) + 0.5f) - z) / radius;
                Pixel& pixel = image.at(column, row);
                blend(pixel, pixel.colour * Vec3{0.68f, 0.74f, 0.70f},
                      depth * (1 - smoothstep(mix(0.35f, 0.60f, close), 1.0f,
                                              std::sqrt(dx * dx + dz * dz))));
            }
    }
}

void paintShadow(Image& image, const Star& star) {
    constexpr int kAcross = 3;  // samples per texel side
    const float reach = star.radius * 1.5f;
    for (int row = static_cast<int>(rowOf(star.z + reach));
         row <= static_cast<int>(rowOf(star.z - reach)); ++row)
        for (int column = static_cast<int>(columnOf(star.x - reach));
             column <= static_cast<int>(columnOf(star.x + reach)); ++column) {
            float shade = 0;
            for (int s = 0; s < kAcross * kAcross; ++s) {
                const float x = worldX(static_cast<float>(column) +
                                       (static_cast<float>(s % kAcross) + 0.5f) / kAcross);
                const float z = worldZ(static_cast<float>(row) +
                                       (static_cast<float>(s / kAcross) + 0.5f) / kAcross);
                const Vec2 fallen{(x - star.x) / star.radius - 0.10f,
                                  (z - star.z) / star.radius - 0.09f};
                shade += smoothstep(-1.5f, 0.5f, onArm(star, fallen).inside);
            }
            Pixel& pixel = image.at(column, row);
            blend(pixel, pixel.colour * Vec3{0.55f, 0.60f, 0.62f},
                  0.8f * shade / (kAcross * kAcross));
        }
}

/// What the eye sees of a thicket, painted on the sand behind it. The shadow of a fish that lies
/// before its foot is drawn first and keeps the foot from being drawn; what shows then is the sand.
class ThicketSeen {
public:
    ThicketSeen(const Mesh& mesh, const Image& skin, const Placement& placement)
        : camera_(kEye, placement.toWorld({0, 0, 0})) {
        camera_.setScale(kScale);
        std::vector<Vec3> seen;
        Vec2 high{-1e9f, -1e9f};
        for (const Vertex& v : mesh.vertices) {
            seen.push_back(camera_.project(placement.toWorld(v.position)));
            low_ = {std::min(low_.x, seen.back().x), std::min(low_.y, seen.back().y)};
            high = {std::max(high.x, seen.back().x), std::max(high.y, seen.back().y)};
        }
        width_ = static_cast<int>(high.x - low_.x) + 1;
        height_ = static_cast<int>(high.y - low_.y) + 1;
        pixels_.resize(size_t(width_) * size_t(height_));
        depth_.resize(pixels_.size(), 1e9f);
        for (const std::array<int, 3>& t : mesh.triangles)
            draw(skin, {seen[size_t(t[0])], mesh.vertices[size_t(t[0])].texture},
                 {seen[size_t(t[1])], mesh.vertices[size_t(t[1])].texture},
                 {seen[size_t(t[2])], mesh.vertices[size_t(t[2])].texture});
    }

    /// Its colour before a point of the floor; alpha 0 where it is not before it, or only its edge,
    /// which would show beside it as soon as floor or branches sway.
    Pixel before(Vec3 point) const {
        const Vec3 p = camera_.project(point);
        const auto x = static_cast<int>(std::floor(p.x - low_.x)),
                   y = static_cast<int>(std::floor(p.y - low_.y));
        for (const int dx : {-kEdge, 0, kEdge})
            for (const int dy : {-kEdge, 0, kEdge})
                if (x + dx < 0 || y + dy < 0 || x + dx >= width_ || y + dy >= height_ ||
                    depth_[index(x + dx, y + dy)] > p.z)
                    return {{}, 0};
        return {pixels_[index(x, y)], 1};
    }

private:
    static constexpr float kScale = 2600;  // twice a screen 1080 high
    static constexpr int kEdge = 3;
    struct Corner {
        Vec3 seen;
        Vec2 texture;
    };

    size_t index(int x, int y) const { return size_t(y) * size_t(width_) + size_t(x); }

    void draw(const Image& skin, const Corner& a, const Corner& b, const Corner& c) {
        const auto area = [](Vec3 p, Vec3 q, float x, float y) {
            return (q.x - p.x) * (y - p.y) - (q.y - p.y) * (x - p.x);
        };
        const float whole = area(a.seen, b.seen, c.seen.x, c.seen.y);
        if (whole == 0)
            return;
        const auto [x0, x1] = std::minmax({a.seen.x, b.seen.x, c.seen.x});
        const auto [y0, y1] = std::minmax({a.seen.y, b.seen.y, c.seen.y});
        for (auto y = static_cast<int>(y0 - low_.y); y <= static_cast<int>(y1 - low_.y); ++y)
            for (auto x = static_cast<int>(x0 - low_.x); x <= static_cast<int>(x1 - low_.x); ++x) {
                const float px = low_.x + static_cast<float>(x) + 0.5f,
                            py = low_.y + static_cast<float>(y) + 0.5f;
                const float u = area(b.seen, c.seen, px, py) / whole,
                            v = area(c.seen, a.seen, px, py) / whole, w = 1 - u - v;
                if (u < 0 || v < 0 || w < 0)
                    continue;
                const float depth = u * a.seen.z + v * b.seen.z + w * c.seen.z;
                const Vec2 t = a.texture * u + b.texture * v + c.texture * w;
                const Pixel pixel = skin.sample(t.x * static_cast<float>(skin.width()),
                                                t.y * static_cast<float>(skin.height()));
                if (pixel.alpha < 0.5f || depth >= depth_[index(x, y)])
                    continue;
                depth_[index(x, y)] = depth;
                pixels_[index(x, y)] = pixel.colour;
            }
    }

    Camera camera_;
    Vec2 low_{1e9f, 1e9f};
    int width_ = 0, height_ = 0;
    std::vector<Vec3> pixels_;
    std::vector<float> depth_;
};

void paintThickets(Image& image) {
    constexpr float kLight = 0.86f;  // what the waves leave of the light, which corals have whole
    const Mesh mesh = thicket();
    const Image skin = thicketSkin();
    const Ground ground;
    for (const Placement& placement : kCorals) {
        if (placement.model != std::string("coral_b"))
            continue;
        const ThicketSeen seen(mesh, skin, placement);
        parallelFor(kTexels, [&](int row) {
            const float z = worldZ(static_cast<float>(row) + 0.5f);
            for (int column = 0; column < kTexels; ++column) {
                const float x = worldX(static_cast<float>(column) + 0.5f);
                const Pixel pixel = seen.before({x, ground.height(x, z), z});
                blend(image.at(column, row), pixel.colour / kLight, pixel.alpha);
            }
        });
    }
}

/// Smooths along each row, and across rows by what one pixel of the screen covers there: the
/// texture has no mipmaps, and what is finer than a pixel would glitter as the camera tilts.
Image soften(const Image& image) {
    constexpr float kFocal = 1300;  // pixels, for a picture 1080 high
    const auto blurred = [&](const Image& from, bool along_row) {
        Image to(kTexels, kTexels);
        parallelFor(kTexels, [&](int row) {
            const float z = worldZ(static_cast<float>(row) + 0.5f);
            const float high = kEye.y + 7.5f, far = z - kEye.z;
            const float distance = std::sqrt(high * high + far * far);
            const float pixel = along_row ? distance / kFocal / kTexelX
                                          : distance * distance / (kFocal * high) / kTexelZ;
            const float sigma = std::max(0.0f, 0.55f * pixel - 0.25f);
            const int reach = static_cast<int>(std::ceil(2.5f * sigma));
            std::vector<float> weights;
            float sum = 0;
            for (int k = -reach; k <= reach; ++k) {
                const float d = static_cast<float>(k);
                weights.push_back(sigma > 0 ? std::exp(-d * d / (2 * sigma * sigma)) : 1.0f);
                sum += weights.back();
            }
            for (int column = 0; column < kTexels; ++column) {
                Vec3 c;
                for (int k = -reach; k <= reach; ++k) {
                    const int x =
                        along_row ? std::min(kTexels - 1, std::max(0, column + k)) : column;
                    const int y = along_row ? row : std::min(kTexels - 1, std::max(0, row + k));
                    c += from.at(x, y).colour * weights[size_t(k + reach)];
                }
                to.at(column, row).colour = c / sum;
            }
        });
        return to;
    };
    return blurred(blurred(image, true), false);
}

Image paintFloor() {
    Image image(kTexels, kTexels);
    parallelFor(kTexels, [&](int row) {
        const float z = worldZ(static_cast<float>(row) + 0.5f);
        for (int column = 0; column < kTexels; ++column) {
            const float x = worldX(static_cast<float>(column) + 0.5f);
            image.at(column, row).colour = sand(x, z);
        }
    });
    paintPits(image);
    paintStones(image);
    for (const Star& star : stars())
        paintShadow(image, star);
    const Ground ground;
    const Shade shade;
    parallelFor(kTexels, [&](int row) {
        const float z = worldZ(static_cast<float>(row) + 0.5f);
        // Warm before the eye; the water's colour grows with distance, and the fog takes over
        // behind.
        const Vec3 near = mix({1, 1, 0.974f}, {0.99f, 1, 0.964f}, smoothstep(5, 21, z));
        const Vec3 water = mix(near, {0.80f, 1.0f, 0.955f}, smoothstep(14, 33, z));
        for (int column = 0; column < kTexels; ++column) {
            const float x = worldX(static_cast<float>(column) + 0.5f);
            Vec3& c = image.at(column, row).colour;
            c = c * water * shade({x, ground.height(x, z), z});
        }
    });
    paintThickets(image);
    // The floor is never seen less slanting than by half: half as many rows do. Near the eye they
    // are enlarged, and a little sharpened for that.
    Image floor = shrunk(soften(image), 1, 2);
    const Image sharp = sharpened(floor, 0.62f, 0.75f);
    for (int row = 0; row < floor.height(); ++row) {
        const float near = 1 - smoothstep(12, 22, worldZ(2 * static_cast<float>(row) + 1));
        for (int column = 0; column < floor.width(); ++column)
            blend(floor.at(column, row), sharp.at(column, row).colour, near);
    }
    return floor;
}

}  // namespace
}  // namespace art

int main(int, char** argv) {
    art::saveBmp24(art::paintFloor(), argv[1] + std::string("/terrain.nlt"));
}
