// The pink thickets in front. The model stands three times, turned and tilted, so it cannot be a
// picture of one side: every branch is a ridged strip that faces between the three directions from
// which the eye sees it, and carries the picture of a branch.
#include <cstdio>

#include "common/image.h"
#include "common/noise.h"
#include "corals/gardens.h"
#include "floor/ground.h"

namespace art {
namespace {

constexpr int kFrames = 20;
// A branch is some ten pixels wide on the screen; more texels would only glitter.
constexpr int kSize = 256;  ///< of the texture
constexpr int kStrip = 20;  ///< width of a branch's picture; as high as the texture
/// What a strip leaves out of the picture on either side: clear texels hide branches behind them.
constexpr float kRim = 0.15f;
constexpr int kKinds = 2;               ///< branches that differ; each in sun and in shade
constexpr float kHeight = 40;           ///< of the thicket, file units
constexpr float kBranchLength = 12.8f;  ///< of the pictured branch, in its own units
constexpr float kBranchRadius = 0.33f;  ///< without its cups
/// Half the width of a strip for a branch of radius 1.
constexpr float kStripPerRadius = kBranchLength * kStrip / (2.0f * kSize) * 1.02f / kBranchRadius;

/// One branch with its cups, upright, from 0 to kBranchLength.
Growth pictured(uint32_t seed) {
    Growth growth;
    Random random(seed);
    std::vector<Vec3> points;
    std::vector<float> radii;
    constexpr int kSteps = 90;
    float x = 0, z = 0;
    for (int i = 0; i <= kSteps; ++i) {
        const float t = static_cast<float>(i) / kSteps, left = (1 - t) * kBranchLength;
        points.push_back({x, t * (kBranchLength - 0.15f), z});
        const float blunt = left < 0.5f ? std::sqrt(1 - (1 - left / 0.5f) * (1 - left / 0.5f)) : 1;
        radii.push_back(std::max(0.03f, kBranchRadius * blunt * random.range(0.94f, 1.06f)));
    }
    growth.mesh = tube(points, radii, 20, 0, 1);
    // Cups spiral upwards and stand off the branch.
    constexpr int kCups = 340;
    for (int i = 0; i < kCups; ++i) {
        const float t = (static_cast<float>(i) + random.unit()) / kCups;
        const float angle = static_cast<float>(i) * 2.39996f + random.range(-0.4f, 0.4f);
        const float y = 0.05f + t * (kBranchLength - 0.5f);
        const Vec3 out{std::cos(angle), 0, std::sin(angle)};
        // Those before the branch would be mere specks.
        if (out.z < 0 && std::fabs(out.x) < 0.8f)
            continue;
        const Vec3 along = normalize(out + Vec3{0, random.range(0.9f, 1.6f), 0});
        const Vec3 from = out * (kBranchRadius * 0.85f) + Vec3{0, y, 0};
        const float l = random.range(0.06f, 0.10f), w = random.range(0.075f, 0.10f);
        growth.mesh.append(tube({from, from + along * (0.6f * l), from + along * l},
                                {w, w * 0.95f, w * 0.7f}, 6, t, std::min(1.0f, t + 0.10f)),
                           [](Vec3 p) { return p; });
    }
    growth.bend.assign(growth.mesh.vertices.size(), 0);
    const Shades shades = pink();
    growth.material = [=](Vec2 texture, Vec3 p) {
        const float t = texture.y;
        // Dead and overgrown where it comes out of the stone. It is dark there on the sand, and a
        // fish's shadow, drawn before the thicket, may hide a foot.
        Vec3 c = mix(rgb(84, 66, 66), shades.foot, smoothstep(0.06f, 0.26f, t));
        c = mix(c, shades.middle, smoothstep(0.16f, 0.45f, t));
        c = mix(c, shades.tip,
                0.32f * smoothstep(0.45f, 0.88f, t) + 0.16f * smoothstep(0.86f, 1.0f, t));
        return Paint{c * 1.18f * (1 + 0.18f * fractalNoise(p * 3, 2, seed)), {}};
    };
    return growth;
}

/// Where a direction of the world lies in the model, the mean over the three that stand.
Vec3 meanDirection(Vec3 (*world)(const Placement&)) {
    Vec3 sum;
    for (const Placement& placement : kCorals)
        if (placement.model == std::string("coral_b"))
            sum += normalize(placement.toFile(placement.foot + world(placement)));
    return normalize(sum);
}

class Thicket {
public:
    Thicket()
        : eye_(meanDirection([](const Placement& p) { return normalize(kEye - p.foot); })),
          sun_(meanDirection([](const Placement&) { return towardsSun(); })) {
        Random random(81);
        constexpr int kStems = 17;
        for (int i = 0; i < kStems; ++i) {
            const float angle = i * 2.39996f + random.range(-0.2f, 0.2f);
            const float tilt = std::sqrt((static_cast<float>(i) + 0.3f) / kStems);
            const Vec3 out{std::cos(angle), std::sin(angle), 0};
            const Vec3 along =
                upright({}, normalize(out * std::sin(tilt) + Vec3{0, 0, std::cos(tilt)}));
            grow(random, out * (4.5f * tilt) + Vec3{0, 0, -2.5f}, along,
                 kHeight * 0.45f * mix(1.0f, 0.74f, tilt), 1.9f, 2, 0);
        }
        // Far strips first, so that the soft edges of near ones lie over them.
        std::stable_sort(pieces_.begin(), pieces_.end(),
                         [](const Piece& a, const Piece& b) { return a.near < b.near; });
        stone();
        for (const Piece& piece : pieces_)
            for (const auto& t : piece.triangles)
                mesh_.triangles.push_back(t);
    }

    const Mesh& mesh() const { return mesh_; }

private:
    struct Piece {
        float near;
        std::array<std::array<int, 3>, 4> triangles;
    };

    void grow(Random& random, Vec3 from, Vec3 along, float length, float radius, int forks,
              float t0) {
        const int steps = forks == 2 ? 3 : 2;
        const float whole = length * random.range(0.8f, 1.2f);
        const float t1 = forks == 0 ? 1.0f : t0 + (1 - t0) * 0.40f;
        std::vector<Vec3> points;
        Vec3 p = from, direction = along;
        for (int i = 0; i <= steps; ++i) {
            points.push_back(p);
            const Vec3 wander{random.range(-1, 1), random.range(-1, 1), random.range(-0.7f, 1)};
            direction = normalize(direction + wander * 0.20f);
            p += direction * (whole / static_cast<float>(steps));
        }
        // The last twigs are too short to show a bend.
        if (forks == 0)
            points.erase(points.begin() + 1);
        const float thin = forks == 0 ? 0.50f : 0.82f;
        strip(random, points, radius, radius * thin, t0, t1);
        if (forks == 0)
            return;
        const int arms = random.unit() < 0.45f ? 3 : 2;
        for (int i = 0; i < arms; ++i) {
            const Vec3 aside =
                normalize({random.range(-1, 1), random.range(-1, 1), random.range(-0.3f, 1)});
            const Vec3 next =
                upright(points.back(), normalize(direction + aside * 0.75f + Vec3{0, 0, 0.14f}));
            grow(random, points[size_t(i == 2 ? steps - 1 : steps)], next,
                 length * random.range(0.68f, 0.92f), radius * 0.82f, forks - 1, t1);
        }
    }

    /// Turns a branch up until it rises from the sand wherever the model stands.
    Vec3 upright(Vec3 from, Vec3 along) const {
        constexpr float kLong = 12;
        for (int turn = 0; turn < 12; ++turn) {
            bool rises = true;
            for (const Placement& placement : kCorals)
                if (placement.model == std::string("coral_b")) {
                    const Vec3 end = placement.toWorld(from + along * kLong);
                    rises = rises && end.y > ground_.height(end.x, end.z) + 0.20f;
                }
            if (rises)
                break;
            along = normalize(along + Vec3{0, 0, 0.2f});
        }
        return along;
    }

    /// A strip with a raised middle along the points, its brighter edge towards the sun.
    void strip(Random& random, const std::vector<Vec3>& points, float r0, float r1, float t0,
               float t1) {
        const Vec3 middle = points[points.size() / 2];
        const float sunny = dot(normalize(middle), sun_) + 0.25f * (length(middle) / kHeight);
        const int column = random.index(kKinds) + (sunny > 0.30f ? 0 : kKinds);
        const float s0 = static_cast<float>(column) * kStrip / kSize, ds = float(kStrip) / kSize;
        int before[3] = {};
        for (size_t i = 0; i < points.size(); ++i) {
            const float u = static_cast<float>(i) / static_cast<float>(points.size() - 1);
            const Vec3 along =
                normalize(points[std::min(i + 1, points.size() - 1)] - points[i == 0 ? 0 : i - 1]);
            Vec3 side = normalize(cross(along, eye_));
            if (dot(side, sun_) < 0)
                side = -side;
            const Vec3 front = normalize(eye_ - along * dot(eye_, along));
            const float w = mix(r0, r1, u) * kStripPerRadius * (1 - 2 * kRim);
            const float t = 1 - mix(t0, t1, u);
            const int now[3] = {mesh_.add(points[i] + side * w, {s0 + kRim * ds, t}),
                                mesh_.add(points[i] + front * (w * 0.6f), {s0 + ds / 2, t}),
                                mesh_.add(points[i] - side * w, {s0 + (1 - kRim) * ds, t})};
            if (i > 0) {
                const float near = dot((points[i] + points[i - 1]) * 0.5f, eye_);
                pieces_.push_back({near,
                                   {{{before[0], before[1], now[1]},
                                     {before[0], now[1], now[0]},
                                     {before[1], before[2], now[2]},
                                     {before[1], now[2], now[1]}}}});
            }
            std::copy(now, now + 3, before);
        }
    }

    /// The lump that the stems grow from, in the right half of the texture.
    void stone() {
        constexpr int kDown = 5, kAround = 12;
        int first = 0;
        for (int j = 0; j <= kDown; ++j)
            for (int i = 0; i <= kAround; ++i) {
                const float down = static_cast<float>(j) / kDown;
                const float around = static_cast<float>(i) / kAround;
                const int v = mesh_.add(stonePoint(around, down),
                                        {0.5f + 0.5f * around, 0.5f * (0.02f + 0.96f * down)});
                if (i == 0 && j == 0)
                    first = v;
            }
        for (int j = 0; j < kDown; ++j)
            for (int i = 0; i < kAround; ++i) {
                const int a = first + j * (kAround + 1) + i;
                mesh_.quad(a, a + 1, a + kAround + 2, a + kAround + 1);
            }
    }

public:
    /// around and down from 0 to 1; down 0 is the top, 1 deep in the sand.
    static Vec3 stonePoint(float around, float down) {
        const float angle = 2 * kPi * around, polar = 0.75f * kPi * down;
        const float round = polar < kPi / 2 ? std::sin(polar) : 1.0f;
        const Vec3 d{round * std::cos(angle), round * std::sin(angle), std::cos(polar)};
        const float lump = 1 + 0.22f * fractalNoise(Vec3{d.x, d.y, d.z} * 1.6f, 3, 83);
        return Vec3{d.x * 11, d.y * 11, d.z * 8.5f - 3.5f} * lump;
    }

private:
    Ground ground_;
    Vec3 eye_, sun_;  ///< unit directions in file axes, means over the three
    Mesh mesh_;
    std::vector<Piece> pieces_;
};

/// What is finer than a pixel of the screen would only glitter: a branch is seen at a third of its
/// length in texels, and at half its width, a twig at a fifth.
void soften(Image& image) {
    constexpr int kReach = 6;
    const auto pass = [&](int dx, int dy, auto width) {
        const Image before = image;
        for (int y = 0; y < image.height(); ++y) {
            // The tip is at the top.
            const float sigma = width(static_cast<float>(y) / static_cast<float>(image.height()));
            for (int x = 0; x < image.width(); ++x) {
                Vec3 colour;
                float alpha = 0, weights = 0;
                for (int k = -kReach; k <= kReach; ++k) {
                    const float w = std::exp(-static_cast<float>(k * k) / (2 * sigma * sigma));
                    weights += w;
                    const int i = x + k * dx, j = y + k * dy;
                    if (i < 0 || j < 0 || i >= image.width() || j >= image.height())
                        continue;
                    const Pixel& p = before.at(i, j);
                    colour += p.colour * (p.alpha * w);
                    alpha += p.alpha * w;
                }
                if (alpha > 0)
                    image.at(x, y) = {colour / alpha, alpha / weights};
            }
        }
    };
    pass(1, 0, [](float down) { return mix(1.9f, 1.0f, smoothstep(0.15f, 0.65f, down)); });
    pass(0, 1, [](float) { return 2.2f; });
}

void paintBranches(Image& texture) {
    for (int kind = 0; kind < kKinds; ++kind) {
        Layer layer;
        layer.add(pictured(85 + static_cast<uint32_t>(kind)), {{0, 0, 0}});
        const Light light({&layer.growths[0].mesh});
        Camera camera({0, kBranchLength / 2, -400}, {0, kBranchLength / 2, 0});
        camera.setScale(400 * kSize / kBranchLength);
        Picture picture;
        picture.x = -kStrip / 2;
        picture.y = -kSize / 2;
        picture.width = kStrip;
        picture.height = kSize;
        draw(layer, camera, light, nullptr, picture);
        soften(picture.image);
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kStrip; ++x) {
                Pixel pixel = picture.image.at(x, y);
                const float across = static_cast<float>(x) / kStrip;
                pixel.colour = pixel.colour * mix(Vec3{1, 1, 1}, {0.62f, 0.58f, 0.70f},
                                                  smoothstep(0.45f, 0.95f, across));
                // Strips touch each other in the texture.
                if (x < 2 || x >= kStrip - 2)
                    pixel.alpha = 0;
                texture.at(kind * kStrip + x, y) = pixel;
                pixel.colour = pixel.colour * Vec3{0.68f, 0.68f, 0.76f};
                texture.at((kind + kKinds) * kStrip + x, y) = pixel;
            }
    }
}

void paintStone(Image& texture) {
    const Material material = rock(83, {1, 1, 1}).material;
    for (int y = 0; y < kSize / 2; ++y)
        for (int x = 0; x < kSize / 2; ++x) {
            const float around = static_cast<float>(x) / (kSize / 2);
            const float down = clamp01((static_cast<float>(y) / (kSize / 2) - 0.02f) / 0.96f);
            const Vec3 p = Thicket::stonePoint(around, down) * 0.04f;
            const Paint paint = material({around, down}, {p.x, p.z, p.y});
            const float shade = mix(0.85f, 0.50f, down) + 0.16f * paint.bump.y;
            texture.at(kSize / 2 + x, y) = {paint.colour * shade, 1};
        }
}

Vec3 swell(Vec3 rest, int frame) {
    const float h = length(rest) / kHeight, bend = 0.67f * h * h * h;
    const float turn = 2 * kPi * static_cast<float>(frame) / kFrames - 0.05f * (rest.x + rest.y);
    return {bend * std::sin(turn), 0.6f * bend * std::sin(turn + 1.2f),
            0.2f * bend * std::cos(2 * turn)};
}

}  // namespace

Mesh thicket() { return Thicket().mesh(); }

void paintThicket(const std::string& folder) {
    Image texture(kSize, kSize, {{}, 0});
    paintBranches(texture);
    paintStone(texture);
    bleed(texture, 12);
    const std::string path = folder + "/models/coral_b";
    saveBmp32(texture, path + ".nlt");
    const Thicket thicket;
    const auto pose = [](int, const Vec3& rest, int frame) { return rest + swell(rest, frame); };
    saveModel(thicket.mesh(), kFrames, pose, path + ".nlm");
    std::printf("coral_b: %zu triangles\n", thicket.mesh().triangles.size());
}

}  // namespace art
