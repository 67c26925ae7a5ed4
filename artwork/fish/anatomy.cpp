#include "fish/anatomy.h"

#include <algorithm>

namespace art {
namespace {

constexpr Chart kPlots[kParts] = {
    {0.00f, 0.00f, 1.00f, 0.50f},  // body
    {0.00f, 0.50f, 0.34f, 1.00f},  // tail
    {0.34f, 0.50f, 1.00f, 0.72f},  // dorsal
    {0.34f, 0.72f, 0.72f, 0.88f},  // anal
    {0.34f, 0.88f, 0.72f, 1.00f},  // pelvic
    {0.72f, 0.72f, 0.86f, 0.90f},  // pectoral
    {0.86f, 0.72f, 1.00f, 0.86f},  // eye
    {0.72f, 0.90f, 1.00f, 1.00f},  // extra
    {0.86f, 0.86f, 1.00f, 0.90f},  // shadow
};
/// One and a half texels of the smallest sheet, 256.
constexpr float kRim = 3.0f / 512;
/// Above and below the body more, which is filled with the edge's colours, too: where its far side
/// is seen edge on, smoothed edges take their colour from far beyond it, and clear texels would be
/// holes.
constexpr float kRidge = 0.035f;
/// Part of its plot that a streamer leaves free on each side, filled with the edge's colours: it is
/// a few pixels wide, and smoothed edges take their colour up to half a pixel beyond it.
constexpr float kStrip = 0.40f;

/// How a vertex follows its fin.
struct Rig {
    float u = 0, reach = 0;  ///< Place on the fin; reach 0 at its root, 1 at its margin.
    float ripple = 0;        ///< Of a middle fin.
    const Fin* paired = nullptr;
    Vec3 seat;        ///< Paired: the nearest place on the hinge line, in file units,
    Vec3 away;        ///< the way from there to the vertex with the fin laid against the body,
    Vec3 out;         ///< and with the fin spread at a right angle to it.
    float ahead = 0;  ///< Turns of the stroke before the tail: one fin opens while the other
                      ///< closes, and neither beats with the tail.
};

float degreesToRadians(float degrees) { return degrees * kPi / 180; }

class Builder {
public:
    explicit Builder(const Fish& fish) : fish_(fish) {}

    void body();
    void eyes();
    void middleFin(const Fin& fin);
    void pairedFin(const Fin& fin, float side);
    void shadow();

    Mesh mesh;
    std::vector<Rig> rigs;

private:
    Vec3 place(Vec3 p) const {
        return {p.x * fish_.length, (fish_.centre - p.y) * fish_.length, p.z * fish_.length};
    }
    int add(Vec3 p, Vec2 texture, Rig rig = {}) {
        rigs.push_back(rig);
        return mesh.add(place(p), texture);
    }
    /// The place on the skin of the right side that a side view shows there.
    BodyPoint skinAt(Vec2 side_view) const {
        float low = 0, high = 1;
        for (int i = 0; i < 24; ++i) {
            const float middle = (low + high) / 2;
            const bool above = bodyPoint(fish_.body, side_view.x, middle).height > side_view.y;
            (above ? low : high) = middle;
        }
        return bodyPoint(fish_.body, side_view.x, low);
    }
    void grid(int first, int columns, int rows) {
        for (int i = 0; i < columns; ++i)
            for (int j = 0; j < rows; ++j) {
                const int a = first + i * (rows + 1) + j;
                mesh.quad(a, a + 1, a + rows + 2, a + rows + 1);
            }
    }

    const Fish& fish_;
};

void Builder::body() {
    const Body& b = fish_.body;
    const int half = b.half_sides, ring = 2 * half;
    const int first = static_cast<int>(mesh.vertices.size());
    for (const float along : b.stations)
        for (int k = 0; k < ring; ++k) {
            const float round = static_cast<float>(k <= half ? k : ring - k) / half;
            BodyPoint p = bodyPoint(b, along, round);
            if (k > half)
                p.position.x = -p.position.x;
            add(p.position, onSheet(Part::BODY, clamp01(along), round));
        }
    const int rings = static_cast<int>(b.stations.size());
    for (int i = 0; i + 1 < rings; ++i)
        for (int k = 0; k < ring; ++k) {
            const int a = first + i * ring, c = (k + 1) % ring;
            mesh.quad(a + k, a + c, a + ring + c, a + ring + k);
        }
    for (int k = 1; k + 1 < ring; ++k)  // the lips close the front
        mesh.triangle(first, first + k, first + k + 1);
}

void Builder::eyes() {
    constexpr int kSides = 10;
    const Eye& eye = fish_.eye;
    const BodyPoint seat = skinAt(eye.place);
    for (const float side : {1.0f, -1.0f}) {
        const Vec3 centre{side * seat.position.x, seat.position.y, seat.position.z};
        const Vec3 out{side * seat.normal.x, seat.normal.y, seat.normal.z};
        const Vec3 back = normalize(Vec3{0, 1, 0} - out * out.y);
        const Vec3 up = normalize(Vec3{0, 0, 1} - out * out.z - back * back.z);
        const auto point = [&](float radius, float turn) {
            const float x = radius * std::cos(turn * 2 * kPi),
                        y = radius * std::sin(turn * 2 * kPi);
            const float lift = eye.bulge * (1 - radius * radius) + 0.12f * eye.bulge;
            return add(centre + (back * x + up * y + out * lift) * eye.radius,
                       onSheet(Part::EYE, 0.5f + 0.5f * x, 0.5f - 0.5f * y));
        };
        const int middle = point(0, 0);
        for (int k = 0; k < kSides; ++k)
            point(0.55f, static_cast<float>(k) / kSides);
        for (int k = 0; k < kSides; ++k)
            point(1, static_cast<float>(k) / kSides);
        for (int k = 0; k < kSides; ++k) {
            const int a = middle + 1 + k, b = middle + 1 + (k + 1) % kSides;
            mesh.triangle(middle, a, b);
            mesh.quad(a, a + kSides, b + kSides, b);
        }
    }
}

void Builder::middleFin(const Fin& fin) {
    const int first = static_cast<int>(mesh.vertices.size());
    for (const float u : finColumns(fin))
        for (int j = 0; j <= fin.rows; ++j) {
            const float v = static_cast<float>(j) / fin.rows;
            const Vec2 p = finPoint(fin, u, v).side;
            Rig rig;
            rig.u = u;
            rig.reach = v;
            rig.ripple = fin.ripple;
            add({0, p.x, p.y}, onSheet(fin.part, u, v), rig);
        }
    grid(first, fin.columns, fin.rows);
}

void Builder::pairedFin(const Fin& fin, float side) {
    const Vec2 seat_place = fin.root.at(0);
    const BodyPoint seat = skinAt(seat_place);
    // Under the skin, which is flat between the sides of the mesh.
    constexpr float kDeep = 0.020f;
    const Vec3 sunk = seat.position - seat.normal * kDeep;
    const Vec3 hinge{side * std::max(sunk.x, 0.0f), sunk.y, sunk.z};
    const Vec2 line = fin.root.at(1) - seat_place;
    const Vec2 axis = line * (1 / length(line));
    const int first = static_cast<int>(mesh.vertices.size());
    for (const float u : finColumns(fin))
        for (int j = 0; j <= fin.rows; ++j) {
            const float v = static_cast<float>(j) / fin.rows;
            const Vec2 flat = finPoint(fin, u, v).side - seat_place;
            const Vec2 on = axis * dot(flat, axis), away = flat - on;
            Rig rig;
            rig.u = u;
            rig.reach = v;
            rig.paired = &fin;
            rig.seat = place(hinge + Vec3{0, on.x, on.y});
            rig.away = Vec3{0, -away.x, away.y} * fish_.length;
            rig.out = Vec3{side * length(away) * fish_.length, 0, 0};
            rig.ahead = side > 0 ? 0.25f : 0.75f;
            add(hinge, onSheet(fin.part, u, v), rig);
        }
    grid(first, fin.columns, fin.rows);
}

// Body and tail as the sun sees them from high above: a strip along the fish, its sheet dark from
// the middle (u 0) to the rim (u 1). It ends where nothing more is seen of it, since all of it
// hides what is drawn later. Fish swim equally high: the middle is raised a little, so that two
// shadows that meet are not in one plane.
void Builder::shadow() {
    constexpr float kRimmed = 0.80f;
    constexpr float kRaised = 0.6f;  // file units: from the flat angle of the eye no ridge
    /// Where along the shadow, how wide there, and how dark in the middle.
    struct Station {
        float along, width, u;
    };
    constexpr Station kStations[] = {{0.08f, 0.58f, 0.30f}, {0.24f, 0.92f, 0.08f},
                                     {0.42f, 1.00f, 0},     {0.58f, 0.84f, 0.14f},
                                     {0.74f, 0.56f, 0.36f}, {0.88f, 0.60f, 0.46f}};
    const Shadow& s = fish_.shadow;
    if (s.depth <= 0)
        return;
    const auto point = [&](float x, float along, float u) {
        const float down = s.depth - kRaised * (1 - u / kRimmed);
        return add({x, mix(s.front, s.back, along), -down / fish_.length},
                   onSheet(Part::SHADOW, u, 0.5f));
    };
    const int nose = point(0, 0, kRimmed);
    int last = -1;
    for (const Station& station : kStations) {
        const int right = point(s.width * station.width, station.along, kRimmed);
        const int middle = point(0, station.along, station.u);
        const int left = point(-s.width * station.width, station.along, kRimmed);
        if (last < 0) {
            mesh.triangle(nose, middle, right);
            mesh.triangle(nose, left, middle);
        } else {
            mesh.quad(last, last + 1, middle, right);
            mesh.quad(last + 1, last + 2, left, middle);
        }
        last = right;
    }
    // The tail is forked.
    const int fork = point(0, 0.94f, kRimmed);
    for (const float side : {1.0f, -1.0f}) {
        const int tip = point(side * 0.50f * s.width, 1, kRimmed);
        mesh.quad(last + 1, fork, tip, side > 0 ? last : last + 2);
    }
}

/// The bent axis of one frame, sampled from before the snout to beyond the longest streamer.
class Spine {
public:
    Spine(const Fish& fish, const Bend& bend, int frame) : fish_(fish) {
        constexpr int kPivot = 64;  // the length that stays in place: a third down the body
        heading_.resize(kSamples);
        points_.resize(kSamples);
        for (int i = 0; i < kSamples; ++i)
            heading_[size_t(i)] = degreesToRadians(bend(along(i), frame));
        points_[kPivot] = {0, (fish.centre - along(kPivot)) * fish.length};
        for (int i = kPivot + 1; i < kSamples; ++i)
            points_[size_t(i)] = points_[size_t(i - 1)] - step(i - 1, i);
        for (int i = kPivot - 1; i >= 0; --i)
            points_[size_t(i)] = points_[size_t(i + 1)] + step(i, i + 1);
    }
    /// Carries a point of the straight fish along.
    Vec3 carry(Vec3 p) const {
        const float place = ((fish_.centre - p.y / fish_.length) - kFirst) / kStep;
        const int i = std::max(0, std::min(kSamples - 2, static_cast<int>(place)));
        const float k = place - static_cast<float>(i);
        const Vec2 m = points_[size_t(i)] + (points_[size_t(i + 1)] - points_[size_t(i)]) * k;
        const float h = mix(heading_[size_t(i)], heading_[size_t(i + 1)], k);
        return {m.x + p.x * std::cos(h), m.y - p.x * std::sin(h), p.z};
    }

private:
    static constexpr int kSamples = 241;
    static constexpr float kFirst = -0.30f, kStep = 0.01f;
    static float along(int i) { return kFirst + kStep * static_cast<float>(i); }
    Vec2 step(int a, int b) const {
        const float h = (heading_[size_t(a)] + heading_[size_t(b)]) / 2;
        return Vec2{std::sin(h), std::cos(h)} * (kStep * fish_.length);
    }

    const Fish& fish_;
    std::vector<float> heading_;
    std::vector<Vec2> points_;
};

/// What a ray that far from an end of its fin has of its full length.
float grown(const Corner& corner, float away) {
    if (away >= corner.share)
        return 1;
    const float missing = 1 - away / corner.share;
    return 1 - corner.depth * (1 - std::sqrt(std::max(0.0f, 1 - missing * missing)));
}

}  // namespace

Chart plotOf(Part part) { return kPlots[static_cast<int>(part)]; }

Chart chartOf(Part part) {
    const Chart c = plotOf(part);
    const float side = part == Part::EXTRA ? kStrip * (c.s1 - c.s0) : kRim;
    const float rim = part == Part::BODY ? kRidge : kRim;
    return {c.s0 + side, c.t0 + rim, c.s1 - side, c.t1 - rim};
}

BodyPoint bodyPoint(const Body& body, float along, float round) {
    const auto surface = [&](float l, float r) {
        const float top = body.top.at(l), bottom = body.bottom.at(l);
        const float middle = mix(bottom, top, body.widest);
        const float c = std::cos(r * kPi), s = std::sin(r * kPi);
        const float z = c > 0 ? middle + (top - middle) * c : middle + (middle - bottom) * c;
        return Vec3{body.width.at(l) * std::pow(std::max(s, 0.0f), body.keel), l, z};
    };
    BodyPoint p;
    p.along = along;
    p.round = round;
    p.position = surface(along, round);
    p.height = p.position.z;
    const float top = body.top.at(along), bottom = body.bottom.at(along);
    p.rise = (p.height - (top + bottom) / 2) / std::max((top - bottom) / 2, 1e-4f);
    constexpr int kSteps = 12;
    Vec3 last = surface(along, 0);
    for (int i = 1; i <= kSteps; ++i) {
        const Vec3 next = surface(along, round * static_cast<float>(i) / kSteps);
        p.girth += art::length(next - last);
        last = next;
    }
    constexpr float kE = 0.004f;
    const float r = std::min(0.98f, std::max(0.02f, round)), l = std::max(along, 0.01f);
    const Vec3 forward = surface(l + kE, r) - surface(l - kE, r);
    const Vec3 down = surface(l, r + kE) - surface(l, r - kE);
    p.normal = normalize(cross(down, forward));
    if (p.normal.x < 0)
        p.normal = -p.normal;
    return p;
}

FinPoint finPoint(const Fin& fin, float u, float v) {
    const Vec2 root = fin.root.at(u), margin = fin.margin.at(u);
    const Vec2 way = margin - root;
    const float reach = v * grown(fin.front, u) * grown(fin.rear, 1 - u);
    const Vec2 straight{root.x + way.x * reach, root.y + way.y * std::pow(reach, fin.flare)};
    return {fin.part, u, v, straight + fin.bow * (4 * v * (1 - v))};
}

std::vector<float> finColumns(const Fin& fin) {
    std::vector<float> columns{0};
    if (fin.front.depth <= 0 && fin.rear.depth <= 0) {
        for (int column = 1; column <= fin.columns; ++column)
            columns.push_back(static_cast<float>(column) / fin.columns);
        return columns;
    }
    constexpr int kSteps = 400;
    const auto margin = [&](int i) {
        return finPoint(fin, static_cast<float>(i) / kSteps, 1).side;
    };
    std::vector<float> walked{0}, turned{0};
    Vec2 before;
    for (int i = 1; i <= kSteps; ++i) {
        const Vec2 way = margin(i) - margin(i - 1);
        const float step = length(way);
        float turn = 0;
        if (i > 1 && step > 0)
            turn = std::fabs(std::atan2(before.x * way.y - before.y * way.x, dot(before, way)));
        if (step > 0)
            before = way;
        walked.push_back(walked.back() + step);
        turned.push_back(turned.back() + turn);
    }
    // The root bends, too: some of them keep to even shares.
    const auto share = [&](int i) {
        return 0.3f * static_cast<float>(i) / kSteps +
               0.3f * walked[size_t(i)] / std::max(walked.back(), 1e-6f) +
               0.4f * turned[size_t(i)] / std::max(turned.back(), 1e-6f);
    };
    int i = 0;
    for (int column = 1; column < fin.columns; ++column) {
        const float wanted = share(kSteps) * static_cast<float>(column) / fin.columns;
        while (i + 1 < kSteps && share(i + 1) < wanted)
            ++i;
        const float low = share(i), high = share(i + 1);
        const float k = clamp01((wanted - low) / std::max(high - low, 1e-6f));
        columns.push_back((static_cast<float>(i) + k) / kSteps);
    }
    columns.push_back(1);
    return columns;
}

Fin& finOf(Fish& fish, Part part) {
    return *std::find_if(fish.fins.begin(), fish.fins.end(),
                         [part](const Fin& fin) { return fin.part == part; });
}

Bend swimming(const Swim& swim, int frames) {
    return [swim, frames](float along, int frame) {
        const float reach = std::min(1.15f, std::max(0.0f, along));
        const float share = swim.head + (1 - swim.head) * std::pow(reach, swim.rear);
        const float turn =
            static_cast<float>(frame) / static_cast<float>(frames) - swim.waves * along;
        return swim.sway * share * std::cos(2 * kPi * turn);
    };
}

void saveFish(const Fish& fish, int frames, const Bend& bend,
              const std::function<float(int frame)>& paddle, const std::string& path) {
    Builder build(fish);
    // The body's end is painted thinner and thinner over the root of the tail.
    for (const Fin& fin : fish.fins)
        if (!fin.paired)
            build.middleFin(fin);
    build.body();
    build.eyes();
    for (const Fin& fin : fish.fins)
        if (fin.paired) {
            build.pairedFin(fin, 1);
            build.pairedFin(fin, -1);
        }
    const int animal = static_cast<int>(build.mesh.vertices.size());
    build.shadow();

    std::vector<Spine> spines;
    for (int frame = 0; frame < frames; ++frame)
        spines.emplace_back(fish, bend, frame);
    const Pose pose = [&](int vertex, const Vec3& rest, int frame) {
        const Rig& rig = build.rigs[size_t(vertex)];
        const float turns = paddle(frame);
        Vec3 p = rest;
        if (rig.paired) {
            // The outer part of a soft fin follows late.
            const float phase = turns + rig.ahead - 0.18f * rig.reach;
            const float angle = degreesToRadians(rig.paired->splay +
                                                 rig.paired->paddle * std::sin(2 * kPi * phase));
            p = rig.seat + rig.away * std::cos(angle) + rig.out * std::sin(angle);
        }
        p.x += rig.ripple * fish.length * rig.reach * std::sin(2 * kPi * (turns - 1.3f * rig.u));
        return spines[size_t(frame)].carry(p);
    };
    saveModel(build.mesh, frames, pose, path, animal);
}

void saveFish(const Fish& fish, int frames, const std::string& path) {
    saveFish(
        fish, frames, swimming(fish.swim, frames),
        [frames](int frame) { return static_cast<float>(frame) / static_cast<float>(frames); },
        path);
}

}  // namespace art
