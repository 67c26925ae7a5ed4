// The pink thickets in front. The model stands three times, turned and tilted, so it cannot be a
// picture of one side: every branch is a strip that faces between the three directions from which
// the eye sees it, and carries the picture of a branch. Its outline is soft, since many a screen
// has one sample per pixel.
#include <algorithm>
#include <cstdio>
#include <numeric>

#include "common/image.h"
#include "common/noise.h"
#include "corals/gardens.h"
#include "floor/ground.h"

namespace art {
namespace {

constexpr int kFrames = 20;
// A branch is some ten pixels wide on the screen; more texels would only glitter.
constexpr int kSize = 256;  ///< of the texture
constexpr int kStrip = 24;  ///< width of a branch's picture; as high as the texture
constexpr float kHalf = 7;  ///< texels from the middle of a branch to its outline
/// Where a branch's picture ends, texels from the top. A screen with several samples reads a little
/// beyond the last of a strip, and above the top it would find the foot.
constexpr float kTip = 4.5f;
constexpr int kKinds = 2;               ///< branches that differ; each in sun and in shade
constexpr float kHeight = 40;           ///< of the thicket, file units
constexpr float kBranchLength = 12.8f;  ///< of the pictured branch, in its own units
constexpr float kBranchRadius = 0.33f;  ///< without its cups

/// A branch thins out towards its tip: half its width where the picture's t is, file units.
float halfWidth(float t) {
    constexpr float kTwig = 0.64f;  // where the last twigs begin
    return t < kTwig ? mix(2.6f, 1.45f, t / kTwig) : mix(1.45f, 0.74f, (t - kTwig) / (1 - kTwig));
}

/// Width of the soft outline in texels: a good pixel of the screen.
float rim(float t) { return kHalf * 0.62f / halfWidth(t); }

/// How much a texel of a branch covers, x texels beside its middle and y below the picture's top.
float cover(float x, float y) {
    // A twig is drawn shorter than its picture, so that a tip that is round there has to be long
    // here.
    constexpr float kLong = 2.6f;
    const float soft = rim(1 - y / kSize), round = kTip + (kHalf + 0.5f * soft) * kLong;
    const float d = y < round ? std::hypot(x, (round - y) / kLong) : std::fabs(x);
    return clamp01((kHalf - d) / soft + 0.5f);
}

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
        Vec3 c = mix(rgb(116, 60, 80), shades.foot * 0.92f, smoothstep(0.03f, 0.26f, t));
        c = mix(c, shades.middle, smoothstep(0.26f, 0.70f, t));
        c = mix(c, shades.tip, 0.46f * smoothstep(0.66f, 1.0f, t));
        return Paint{c * 1.18f * (1 + 0.18f * fractalNoise(p * 3, 2, seed)), {}};
    };
    return growth;
}

/// The stone's picture goes on a little beyond what the stone shows of it, or seams would be clear.
float onPicture(float share) { return 0.02f + 0.96f * share; }
float offPicture(float share) { return (share - 0.02f) / 0.96f; }

/// How the eye sees the three that stand, in file axes and in pixels of a screen 948 high.
std::vector<Camera> views() {
    std::vector<Camera> all;
    for (const Placement& placement : kCorals)
        if (placement.model == std::string("coral_b")) {
            all.emplace_back(placement.toFile(kEye), Vec3{});
            all.back().setScale(1144);
        }
    return all;
}

/// The direction of the sun in file axes, the mean over the three that stand.
Vec3 meanSun() {
    Vec3 sum;
    for (const Placement& placement : kCorals)
        if (placement.model == std::string("coral_b"))
            sum += normalize(placement.toFile(placement.foot + towardsSun()));
    return normalize(sum);
}

class Thicket {
public:
    Thicket() : views_(views()), sun_(meanSun()) {
        Random random(14);
        constexpr int kStems = 13;
        for (int i = 0; i < kStems; ++i) {
            const float tilt = std::sqrt((static_cast<float>(i) + 0.3f) / kStems);
            Vec3 out, along;
            // One that comes straight towards an eye would look flat.
            for (int attempt = 0; attempt < 6; ++attempt) {
                const float angle = i * 2.39996f + random.range(-0.4f, 0.4f);
                const Vec3 aside{std::cos(angle), std::sin(angle), 0};
                const Vec3 there =
                    upright({}, normalize(aside * std::sin(tilt) + Vec3{0, 0, std::cos(tilt)}));
                if (attempt == 0 || seenLength(there) > seenLength(along)) {
                    out = aside;
                    along = there;
                }
            }
            const Vec3 from = out * (4.5f * tilt) + Vec3{0, 0, -2.5f};
            grow(random, from, along, kHeight * 0.45f * mix(1.0f, 0.74f, tilt), 2, 0);
        }
        stone();
        for (const size_t i : drawingOrder())
            for (const auto& t : pieces_[i])
                mesh_.triangles.push_back(t);
    }

    const Mesh& mesh() const { return mesh_; }

private:
    static constexpr float kGoodEnough = 0.75f;  ///< for a direction, and no better one is sought
    using Piece = std::array<std::array<int, 3>, 2>;

    void grow(Random& random, Vec3 from, Vec3 along, float length, int forks, float t0) {
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
        if (forks == 2)
            points.front() = from - along * buried(from, along);
        // The last twigs are too short to show a bend.
        if (forks == 0)
            points.erase(points.begin() + 1);
        strip(random, points, t0, t1);
        if (forks == 0)
            return;
        const int arms = random.unit() < 0.45f ? 3 : 2;
        std::vector<Vec3> taken;
        for (int i = 0; i < arms; ++i) {
            // Of a few directions the one that keeps away from the other arms and whose strip looks
            // narrow to none of the three.
            Vec3 next;
            float best = -1;
            for (int attempt = 0; attempt < 14 && best < kGoodEnough; ++attempt) {
                const Vec3 aside =
                    normalize({random.range(-1, 1), random.range(-1, 1), random.range(-0.3f, 1)});
                const Vec3 there = upright(
                    points.back(), normalize(direction + aside * 0.75f + Vec3{0, 0, 0.14f}));
                float good = std::min(seenWidth(there, facing(there)), 1.2f * seenLength(there));
                for (const Vec3& other : taken)
                    good = std::min(good, art::length(there - other));
                if (good > best) {
                    best = good;
                    next = there;
                }
            }
            taken.push_back(next);
            grow(random, points[size_t(i == 2 ? steps - 1 : steps)], next,
                 length * random.range(0.68f, 0.92f), forks - 1, t1);
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

    /// How far back from a place a stem has to begin to come out of the sand wherever the model
    /// stands.
    float buried(Vec3 from, Vec3 along) const {
        constexpr float kStep = 0.5f, kFarthest = 6;
        float back = 0;
        for (; back < kFarthest; back += kStep) {
            bool below = true;
            for (const Placement& placement : kCorals)
                if (placement.model == std::string("coral_b")) {
                    const Vec3 at = placement.toWorld(from - along * back);
                    below = below && at.y < ground_.height(at.x, at.z) - 0.04f;
                }
            if (below)
                break;
        }
        return back;
    }

    /// The narrowest that one of the three shows a strip, as a share of its width.
    float seenWidth(const Vec3& along, const Vec3& front) const {
        float least = 1;
        for (const Camera& view : views_) {
            const Vec3 eye = view.towardsEye({});
            const Vec3 across = eye - along * dot(along, eye);
            least = std::min(least, std::fabs(dot(front, normalize(across))));
        }
        return least;
    }

    /// The shortest that one of the three shows a strip, as a share of its length.
    float seenLength(const Vec3& along) const {
        float least = 1;
        for (const Camera& view : views_)
            least = std::min(least, art::length(cross(along, view.towardsEye({}))));
        return least;
    }

    /// Where a strip's front has to turn so that all three show it as wide as can be.
    Vec3 facing(const Vec3& along) const {
        const Vec3 right = normalize(cross(along, views_[0].towardsEye({})));
        const Vec3 up = cross(right, along);
        Vec3 front;
        float best = -1;
        constexpr int kTurns = 36;  // in half a circle: both sides show
        for (int i = 0; i < kTurns; ++i) {
            const float angle = kPi * static_cast<float>(i) / kTurns;
            const Vec3 there = right * std::cos(angle) + up * std::sin(angle);
            const float width = seenWidth(along, there);
            if (width > best) {
                best = width;
                front = there;
            }
        }
        return front;
    }

    /// A strip along the points, its brighter edge towards the sun.
    void strip(Random& random, const std::vector<Vec3>& points, float t0, float t1) {
        const Vec3 middle = points[points.size() / 2];
        const float sunny = dot(normalize(middle), sun_) + 0.25f * (length(middle) / kHeight);
        const int column = random.index(kKinds) + (sunny > 0.30f ? 0 : kKinds);
        const float middle_s = (static_cast<float>(column) + 0.5f) * kStrip / kSize;
        const Vec3 front = facing(normalize(points.back() - points.front()));
        const size_t last = points.size() - 1;
        // Branches begin and end narrow within each other, like round joints; tips are pictured.
        struct Section {
            float u, wide;
            float beyond = 0;  ///< of half a width, along the branch
        };
        static const std::vector<Section> kTwig{{0, 0.84f, -0.6f}, {0.76f, 1}, {1, 1}},
            kArm{{0, 0.70f, -0.7f}, {0.30f, 1}, {1, 1}, {1.74f, 1}, {2, 0.45f, 0.7f}},
            kStem{{0, 1}, {0.6f, 1}, {1, 1}, {1.5f, 1}, {2, 1}, {2.78f, 1}, {3, 0.45f, 0.7f}};
        int before[2] = {};
        for (const Section& section : last == 1 ? kTwig : last == 2 ? kArm : kStem) {
            const size_t j = std::min(static_cast<size_t>(section.u), last - 1);
            const float u = section.u - static_cast<float>(j);
            const float t = mix(t0, t1, section.u / static_cast<float>(last));
            const Vec3 along = normalize(points[j + 1] - points[u > 0 || j == 0 ? j : j - 1]);
            const Vec3 p =
                mix(points[j], points[j + 1], u) + along * (section.beyond * halfWidth(t));
            Vec3 side = normalize(cross(along, front));
            if (dot(side, sun_) < 0)
                side = -side;
            // To where the soft outline ends, and no farther: clear texels hide what is behind.
            const float pictured = darker(p, t);
            // Within another branch there is none.
            const float texels =
                section.wide < 1 ? section.wide * kHalf : kHalf + 0.5f * rim(pictured);
            const float w = halfWidth(t) * texels / kHalf;
            const float ds = texels / kSize;
            // Not over the picture's ends, which touch each other.
            const float down = std::clamp(1 - pictured, kTip / kSize, 1 - 0.5f / kSize);
            const int now[2] = {mesh_.add(p + side * w, {middle_s - ds, down}),
                                mesh_.add(p - side * w, {middle_s + ds, down})};
            if (section.u > 0)
                pieces_.push_back({{{before[0], before[1], now[1]}, {before[0], now[1], now[0]}}});
            std::copy(now, now + 2, before);
        }
    }

    /// A place low on the sand, anywhere that the model stands, shows what is farther down in the
    /// picture, which is darker; tips stay tips.
    float darker(Vec3 p, float t) const {
        float above = 1e9f;
        for (const Placement& placement : kCorals)
            if (placement.model == std::string("coral_b")) {
                const Vec3 at = placement.toWorld(p);
                above = std::min(above, at.y - ground_.height(at.x, at.z));
            }
        const float share = clamp01(0.04f + 0.96f * above / 0.56f);
        return t * mix(share, 1.0f, smoothstep(0.76f, 0.98f, t));
    }

    /// What is behind must be drawn first, or soft outlines hide it: for each pair of pieces, how
    /// much of the second the outlines of the first would hide, summed over the three.
    std::vector<float> hidden() const {
        constexpr int kFiner = 2, kSide = 2 * 110 * kFiner;  // the thicket fits in
        struct Seen {
            size_t piece;
            float depth, cover;
        };
        const size_t n = pieces_.size();
        std::vector<float> amounts(n * n);
        for (const Camera& view : views_) {
            std::vector<std::vector<Seen>> pixels(size_t{kSide} * kSide);
            for (size_t piece = 0; piece < n; ++piece)
                for (const auto& triangle : pieces_[piece]) {
                    Vec3 p[3];
                    Vec2 texture[3];
                    for (size_t k = 0; k < 3; ++k) {
                        const Vertex& v = mesh_.vertices[size_t(triangle[k])];
                        p[k] = view.project(v.position);
                        p[k].x = p[k].x * kFiner + kSide / 2;
                        p[k].y = p[k].y * kFiner + kSide / 2;
                        texture[k] = v.texture;
                    }
                    const auto [x0, x1] = std::minmax({p[0].x, p[1].x, p[2].x});
                    const auto [y0, y1] = std::minmax({p[0].y, p[1].y, p[2].y});
                    const float area = cross2(p[0], p[1], p[2]);
                    if (std::fabs(area) < 1e-6f)
                        continue;
                    for (int y = std::max(0, int(y0)); y <= std::min(kSide - 1, int(y1)); ++y)
                        for (int x = std::max(0, int(x0)); x <= std::min(kSide - 1, int(x1)); ++x) {
                            const Vec3 at{static_cast<float>(x) + 0.5f,
                                          static_cast<float>(y) + 0.5f, 0};
                            const float a = cross2(at, p[1], p[2]) / area,
                                        b = cross2(p[0], at, p[2]) / area, c = 1 - a - b;
                            if (a < 0 || b < 0 || c < 0)
                                continue;
                            const Vec2 t = texture[0] * a + texture[1] * b + texture[2] * c;
                            const float across = std::fmod(t.x * kSize, float(kStrip)) - kStrip / 2;
                            pixels[size_t(y * kSide + x)].push_back(
                                {piece, a * p[0].z + b * p[1].z + c * p[2].z,
                                 cover(across, t.y * kSize)});
                        }
                }
            for (auto& pixel : pixels) {
                std::stable_sort(pixel.begin(), pixel.end(),
                                 [](const Seen& a, const Seen& b) { return a.depth < b.depth; });
                float before = 1;  // what the nearer ones let through
                for (size_t i = 0; i < pixel.size(); before *= 1 - pixel[i++].cover) {
                    float through = before * (1 - pixel[i].cover);
                    for (size_t j = i + 1; j < pixel.size(); through *= 1 - pixel[j++].cover)
                        if (pixel[i].piece != pixel[j].piece)
                            amounts[pixel[i].piece * n + pixel[j].piece] +=
                                through * pixel[j].cover;
                }
            }
        }
        return amounts;
    }

    static float cross2(const Vec3& a, const Vec3& b, const Vec3& c) {
        return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    }

    /// The order of the pieces in which soft outlines hide least: each piece moves to its best
    /// place, until none has a better one.
    std::vector<size_t> drawingOrder() const {
        const std::vector<float> cost = hidden();
        const size_t n = pieces_.size();
        std::vector<size_t> order(n);
        std::iota(order.begin(), order.end(), size_t{0});
        bool moved = true;
        for (int pass = 0; pass < 100 && moved; ++pass) {
            moved = false;
            for (size_t piece = 0; piece < n; ++piece) {
                const auto found = std::find(order.begin(), order.end(), piece);
                const auto was = static_cast<size_t>(found - order.begin());
                order.erase(found);
                // What each place costs, against that of the first.
                std::vector<float> costs{0};
                for (const size_t other : order)
                    costs.push_back(costs.back() + cost[other * n + piece] -
                                    cost[piece * n + other]);
                const auto best = static_cast<size_t>(std::min_element(costs.begin(), costs.end()) -
                                                      costs.begin());
                const bool better = costs[best] < costs[was] - 1e-3f;
                moved = moved || better;
                order.insert(order.begin() + static_cast<long>(better ? best : was), piece);
            }
        }
        return order;
    }

    /// The lump that the stems grow from, in the right half of the texture.
    void stone() {
        constexpr int kDown = 6, kAround = 11;
        int first = 0;
        for (int j = 0; j <= kDown; ++j)
            for (int i = 0; i <= kAround; ++i) {
                const float down = static_cast<float>(j) / kDown;
                const float around = static_cast<float>(i) / kAround;
                const int v = mesh_.add(stonePoint(around, down),
                                        {0.5f + 0.5f * onPicture(around), 0.5f * onPicture(down)});
                if (i == 0 && j == 0)
                    first = v;
            }
        for (int j = 0; j < kDown; ++j)
            for (int i = 0; i < kAround; ++i) {
                const int a = first + j * (kAround + 1) + i, b = a + kAround + 1;
                if (j > 0)
                    mesh_.triangles.push_back({a, a + 1, b + 1});
                mesh_.triangles.push_back({a, b + 1, b});
            }
    }

public:
    /// around and down from 0 to 1; down 0 is the top, 1 deep in the sand. Nearly as high as it is
    /// wide, so that it rises from the sand however the model is tilted.
    static Vec3 stonePoint(float around, float down) {
        const float angle = 2 * kPi * around, polar = 0.75f * kPi * down;
        const Vec3 d{std::sin(polar) * std::cos(angle), std::sin(polar) * std::sin(angle),
                     std::cos(polar)};
        const float lump = 1 + 0.35f * fractalNoise(d * 1.6f, 3, 83);
        return Vec3{d.x * 8, d.y * 8, d.z * 6.5f} * lump;
    }

private:
    Ground ground_;
    std::vector<Camera> views_;
    Vec3 sun_;  ///< unit direction in file axes
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
                float weights = 0;
                for (int k = -kReach; k <= kReach; ++k) {
                    const int i = x + k * dx, j = y + k * dy;
                    if (i < 0 || j < 0 || i >= image.width() || j >= image.height())
                        continue;
                    const float w = std::exp(-static_cast<float>(k * k) / (2 * sigma * sigma));
                    weights += w;
                    colour += before.at(i, j).colour * w;
                }
                image.at(x, y).colour = colour / weights;
            }
        }
    };
    pass(1, 0, [](float down) { return mix(2.6f, 1.2f, smoothstep(0.15f, 0.65f, down)); });
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
        draw(layer, camera, light, nullptr, {}, picture);
        bleed(picture.image, kStrip);
        soften(picture.image);
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kStrip; ++x) {
                Pixel pixel = picture.image.at(x, y);
                const float across = static_cast<float>(x) / kStrip;
                pixel.colour = pixel.colour * mix(Vec3{1, 1, 1}, {0.74f, 0.64f, 0.72f},
                                                  smoothstep(0.45f, 0.95f, across));
                pixel.alpha =
                    cover(static_cast<float>(x) + 0.5f - kStrip / 2, static_cast<float>(y) + 0.5f);
                texture.at(kind * kStrip + x, y) = pixel;
                pixel.colour = pixel.colour * Vec3{0.84f, 0.77f, 0.83f};
                texture.at((kind + kKinds) * kStrip + x, y) = pixel;
            }
    }
}

void paintStone(Image& texture) {
    const Material material = rock(83, {1, 1, 1}).material;
    const Ground ground;
    const Vec3 sun = meanSun();
    for (int y = 0; y < kSize / 2; ++y)
        for (int x = 0; x < kSize / 2; ++x) {
            const float around = offPicture(static_cast<float>(x) / (kSize / 2));
            const float down = clamp01(offPicture(static_cast<float>(y) / (kSize / 2)));
            const Vec3 at = Thicket::stonePoint(around, down), p = at * 0.04f;
            const Paint paint = material({around, down}, {p.x, p.z, p.y});
            float above = 0;
            for (const Placement& placement : kCorals)
                if (placement.model == std::string("coral_b")) {
                    const Vec3 world = placement.toWorld(at);
                    above += (world.y - ground.height(world.x, world.z)) / 3;
                }
            // Grown over by what stands on it; in its shade, and darkest where the sand begins.
            const Vec3 c = mix(paint.colour, rgb(190, 82, 112), 0.7f);
            const float sunny = dot(normalize(at), sun) + 0.3f * paint.bump.y;
            const float shade = mix(0.46f, 0.68f, smoothstep(-0.1f, 0.9f, sunny)) *
                                mix(0.7f, 1.0f, smoothstep(0.0f, 0.2f, above));
            texture.at(kSize / 2 + x, y) = {c * shade, 1};
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

Image thicketSkin() {
    Image texture(kSize, kSize, {{}, 0});
    paintBranches(texture);
    paintStone(texture);
    bleed(texture, 12);
    return texture;
}

void paintThicket(const std::string& folder) {
    const std::string path = folder + "/models/coral_b";
    saveBmp32(thicketSkin(), path + ".nlt");
    const Thicket thicket;
    const auto pose = [](int, const Vec3& rest, int frame) { return rest + swell(rest, frame); };
    saveModel(thicket.mesh(), kFrames, pose, path + ".nlm");
    std::printf("coral_b: %zu triangles\n", thicket.mesh().triangles.size());
}

}  // namespace art
