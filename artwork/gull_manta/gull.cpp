// The gull: white body, grey mantle, black wing tips with white spots, yellow bill. Opaque, so
// every outline is geometry. Drawn with a span of 30, written kSize times as large.
#include <string>

#include "common/image.h"
#include "common/mesh.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "fish/curve.h"
#include "gull_manta/wing.h"

using namespace art;

namespace {

/// File units per unit of the drawing: the eye finds the gull first, wherever on its way it is.
constexpr float kSize = 3.0f;
constexpr int kGlide = 20, kBetween = 3, kFly = 20, kFrames = kGlide + kBetween + kFly;

// Body: 0 at the bill's tip, 1 at the root of the tail; heights and widths in file units.
constexpr float kBodyLength = 10.6f, kBillTip = 6.4f;  // y of the tip
constexpr int kHalfSides = 8;
const Curve kTop = {{0, 0.47f},      {0.012f, 0.61f}, {0.035f, 0.72f}, {0.09f, 0.81f},
                    {0.118f, 0.90f}, {0.14f, 1.16f},  {0.165f, 1.37f}, {0.20f, 1.47f},
                    {0.26f, 1.38f},  {0.34f, 1.20f},  {0.50f, 1.10f},  {0.70f, 0.86f},
                    {0.88f, 0.46f},  {1.0f, 0.22f}};
const Curve kBottom = {{0, 0.41f},      {0.020f, 0.42f}, {0.045f, 0.385f}, {0.09f, 0.45f},
                       {0.118f, 0.38f}, {0.145f, 0.20f}, {0.18f, 0.02f},   {0.24f, -0.22f},
                       {0.34f, -0.86f}, {0.48f, -1.22f}, {0.64f, -1.10f},  {0.82f, -0.52f},
                       {1.0f, 0.02f}};
const Curve kWidth = {{0, 0.03f},      {0.015f, 0.08f}, {0.05f, 0.125f}, {0.105f, 0.175f},
                      {0.122f, 0.30f}, {0.145f, 0.50f}, {0.19f, 0.66f},  {0.25f, 0.70f},
                      {0.34f, 0.96f},  {0.48f, 1.16f},  {0.64f, 1.02f},  {0.84f, 0.62f},
                      {1.0f, 0.42f}};
const float kStations[] = {0,     0.012f, 0.035f, 0.07f, 0.105f, 0.116f, 0.128f, 0.145f,
                           0.17f, 0.195f, 0.22f,  0.25f, 0.28f,  0.32f,  0.36f,  0.41f,
                           0.46f, 0.52f,  0.58f,  0.65f, 0.73f,  0.81f,  0.90f,  1.0f};

// Wing: 0 at the shoulder, 1 at the tip. Edges are y, relative to the shoulder line.
constexpr float kShoulderX = 0.55f, kShoulderY = 1.9f, kShoulderZ = 0.62f;
constexpr float kWingSpan = 15.0f - kShoulderX;
constexpr float kWrist = 0.43f;
const Curve kLeading = {{0, 1.60f},      {0.05f, 1.30f}, {0.11f, 1.28f}, {0.25f, 1.85f},
                        {0.38f, 2.35f},  {0.46f, 2.30f}, {0.60f, 1.45f}, {0.78f, 0.05f},
                        {0.92f, -1.35f}, {1.0f, -2.35f}};
const Curve kTrailing = {{0, -3.05f},     {0.12f, -2.55f}, {0.28f, -1.75f}, {0.42f, -1.55f},
                         {0.55f, -1.85f}, {0.72f, -2.30f}, {0.88f, -2.62f}, {1.0f, -2.60f}};
constexpr int kFeathers = 18;  // along the trailing edge of one wing
constexpr int kTailFeathers = 10;
constexpr float kFeatherTip = 0.68f;  // where across a feather its tip lies
constexpr float kChordsTop[] = {0, 0.06f, 0.22f, 0.52f, 1};
constexpr float kChordsBottom[] = {0, 0.09f, 0.45f, 1};

// The sheet: strips over its whole width, and the tail. From afar one pixel is as high as several
// texels, and at an outline its middle may lie outside: so body and tail, white both, lie together,
// the body away from the black of the wing tips, and the wings away from the bill.
struct Strip {
    float s0, s1, t0, t1;
};
constexpr Strip kBodyStrip{0, 1, 0.03125f, 0.3125f}, kTailStrip{0, 0.5f, 0.3125f, 0.4375f},
    kWingTop{0, 1, 0.4375f, 0.734375f}, kWingBottom{0, 1, 0.734375f, 1};
constexpr int kSheet = 512;
constexpr float kRim = 3.0f / kSheet, kRimBetween = 8.0f / kSheet;

Vec2 onStrip(const Strip& strip, float u, float v) {
    return {mix(strip.s0 + kRim, strip.s1 - kRim, u),
            mix(strip.t0 + kRimBetween, strip.t1 - kRimBetween, v)};
}

/// Where the body's picture shows a place along it: bill and head get more than their share.
float bodyColumn(float along) { return std::sqrt(0.25f + 2 * along) - 0.5f; }
float alongBody(float column) { return 0.5f * column * (1 + column); }

Vec3 bodySurface(float along, float round) {
    const float top = kTop.at(along), bottom = kBottom.at(along), middle = mix(bottom, top, 0.5f);
    const float angle = round * kPi;
    return {kWidth.at(along) * std::sin(angle), kBillTip - along * kBodyLength,
            middle + (top - middle) * std::cos(angle)};
}

/// How far the trailing edge is cut back between two feathers, in file units: deeper towards the
/// tip.
float notch(float along) { return mix(0.10f, 0.30f, smoothstep(0.40f, 0.80f, along)); }

// ---- Mesh ----

enum class Limb { BODY, WING, TAIL };
struct Rig {
    Limb limb = Limb::BODY;
    float side = 1;   ///< Of a wing: 1 right, -1 left.
    float along = 0;  ///< Of a wing: 0 shoulder, 1 tip; of the tail: 0 root, 1 end.
};

struct Gull {
    Mesh mesh;
    std::vector<Rig> rigs;

    int add(Vec3 p, Vec2 texture, Rig rig) {
        rigs.push_back(rig);
        return mesh.add(p, texture);
    }
    void body();
    void wing(float side);
    void tail();
};

void Gull::body() {
    constexpr int kRing = 2 * kHalfSides;
    const int first = static_cast<int>(mesh.vertices.size());
    int rings = 0;
    for (const float along : kStations) {
        for (int k = 0; k < kRing; ++k) {
            const float round = static_cast<float>(k <= kHalfSides ? k : kRing - k) / kHalfSides;
            Vec3 p = bodySurface(along, round);
            if (k > kHalfSides)
                p.x = -p.x;
            add(p, onStrip(kBodyStrip, bodyColumn(along), round), {});
        }
        ++rings;
    }
    for (int i = 0; i + 1 < rings; ++i)
        for (int k = 0; k < kRing; ++k) {
            const int a = first + i * kRing, c = (k + 1) % kRing;
            mesh.quad(a + k, a + c, a + kRing + c, a + kRing + k);
        }
    for (const int cap : {first, first + (rings - 1) * kRing})
        for (int k = 1; k + 1 < kRing; ++k)
            mesh.triangle(cap, cap + k, cap + k + 1);
}

void Gull::wing(float side) {
    const auto surface = [&](const Strip& strip, const float* chords, int count, float bulge) {
        // A point at the given share of one feather's width; cut back by so much at its end.
        const auto point = [&](int feather, float across, float chord, float cut) {
            const float along = (static_cast<float>(feather) + across) / kFeathers;
            const float front = kLeading.at(along), deep = front - kTrailing.at(along);
            chord *= 1 - std::min(0.5f, cut * notch(along) / deep);
            // Flesh and bone lie in the front. Thicker than they are, and the feathers behind them
            // too: edge-on, the far bird's wing is still a line, up to its tip.
            const float thick = mix(0.66f, 0.46f, smoothstep(0, 0.75f, along)) *
                                std::sqrt(std::min(1.0f, (1 - along) / 0.06f));
            const float profile =
                std::sqrt(std::min(1.0f, chord / 0.14f)) * smoothstep(1.0f, 0.10f, chord);
            const float camber = 0.17f * (1 - along * 0.6f) * std::sin(kPi * std::pow(chord, 0.6f));
            // Each feather lies with one edge upon the next: seen edge-on, they are blades.
            const float middle = 1 - std::fabs(across - kFeatherTip) / kFeatherTip;
            const float blade = mix(0.028f, 0.012f, smoothstep(0.5f, 0.8f, along)) *
                                (1 - 2 * middle) * smoothstep(0.45f, 1.0f, chord);
            return add({side * (kShoulderX + along * kWingSpan), kShoulderY + front - deep * chord,
                        kShoulderZ + camber + blade + bulge * thick * profile},
                       onStrip(strip, along, chord), {Limb::WING, side, along});
        };
        const int last = count - 1;
        // Columns: the gaps between two feathers, and their tips.
        std::vector<int> columns;
        for (int i = 0; i <= 2 * kFeathers; ++i) {
            const bool gap = i % 2 == 0, inner = gap && i > 0 && i < 2 * kFeathers;
            for (int j = 0; j < count; ++j)
                columns.push_back(point(i / 2, gap ? 0.0f : kFeatherTip, chords[j],
                                        inner && j == last ? 1.0f : 0.0f));
        }
        for (int i = 0; i < 2 * kFeathers; ++i) {
            const int* a = &columns[size_t(i * count)];
            const int* b = a + count;
            for (int j = 0; j < last - 1; ++j)
                mesh.quad(a[j], a[j + 1], b[j + 1], b[j]);
            // Either side of the tip is rounded.
            const bool before = i % 2 == 0;
            const int round = before ? point(i / 2, 0.26f, 1, i > 0 ? 0.36f : 0.0f)
                                     : point(i / 2, 0.91f, 1, i + 1 < 2 * kFeathers ? 0.24f : 0.0f);
            const int from = before ? a[last - 1] : b[last - 1];
            mesh.triangle(from, a[last], round);
            mesh.triangle(from, round, b[last]);
            mesh.triangle(a[last - 1], before ? b[last] : a[last], b[last - 1]);
        }
    };
    surface(kWingTop, kChordsTop, static_cast<int>(std::size(kChordsTop)), 0.6f);
    surface(kWingBottom, kChordsBottom, static_cast<int>(std::size(kChordsBottom)), -0.6f);
}

void Gull::tail() {
    constexpr int kColumns = 2 * kTailFeathers;
    const float root_y = kBillTip - 0.90f * kBodyLength;
    const int first = static_cast<int>(mesh.vertices.size());
    for (int i = 0; i <= kColumns; ++i) {
        const float u = static_cast<float>(i) / kColumns, turn = (u - 0.5f) * 0.86f;
        for (int j = 0; j <= 2; ++j) {
            const float v = static_cast<float>(j) / 2;
            const float reach = 3.5f * v * (j == 2 && i % 2 == 0 ? 0.965f : 1.0f) *
                                (1 - 0.10f * std::fabs(u - 0.5f));
            const float x = 0.30f * (2 * u - 1) + std::sin(turn) * reach;
            add({x, root_y - std::cos(turn) * reach, 0.20f - 0.05f * x * x},
                onStrip(kTailStrip, u, v), {Limb::TAIL, 1, v});
        }
    }
    for (int i = 0; i < kColumns; ++i)
        for (int j = 0; j < 2; ++j) {
            const int a = first + i * 3 + j;
            mesh.quad(a, a + 1, a + 4, a + 3);
        }
}

// ---- Flight ----

/// Everything that moves in one frame. Gliding and the start of the beat share their pose, so that
/// changing from one to the other does not jump.
struct Posture {
    float arm[2], hand[2];  ///< Degrees above level of inner and outer wing, right and left.
    float sweep = 0;        ///< Degrees the hand is turned back.
    float twist = 0;        ///< Degrees the leading edge is turned down.
    float heave = 0;        ///< Of the body.
    float tail = 0;         ///< Degrees the tail is bent down.
    float tail_roll = 0;
    float lean = 0;  ///< Degrees the whole bird banks to its right.
};

// It is mostly seen from the side and from little below: a level wing would show nothing but its
// edge, its tip a black spot on the body. Banked, one wing stands above the body and one hangs
// below it.
constexpr float kLean = 28, kGlideArm = 9, kGlideHand = -16, kGlideSweep = 18;
// The beat. The hand follows the arm late: bent up on the way down, hanging on the way up. So one
// of them always shows its face.
constexpr float kBeatArm = 13, kArmReach = 29, kHandReach = 33, kLate = 1.3f;

Posture posture(int frame) {
    Posture p;
    if (frame < kGlide) {
        const float t = 2 * kPi * static_cast<float>(frame) / kGlide;
        const float rock = 1.8f * std::sin(t);
        const float trim = 1.2f * std::sin(2 * t);
        for (const int i : {0, 1}) {
            const float way = i == 0 ? 1.0f : -1.0f;
            p.arm[i] = kGlideArm + way * rock;
            p.hand[i] = kGlideHand + way * (1.6f * rock + trim);
        }
        p.sweep = kGlideSweep;
        p.tail_roll = -4 * std::sin(t);
        p.heave = 0.04f * std::sin(t);
        p.lean = kLean + 3 * std::sin(t);
        return p;
    }
    const float t =
        frame < kGlide + kBetween ? 0.0f : static_cast<float>(frame - kGlide - kBetween) / kFly;
    const float start = std::asin((kGlideArm - kBeatArm) / kArmReach);
    const float beat = 2 * kPi * t + start;
    for (const int i : {0, 1}) {
        p.arm[i] = kBeatArm + kArmReach * std::sin(beat);
        p.hand[i] = kGlideHand + kHandReach * (std::sin(beat - kLate) - std::sin(start - kLate));
    }
    const float up = std::cos(beat) - std::cos(start), high = std::sin(beat) - std::sin(start);
    p.sweep = kGlideSweep + 8 * up;
    p.twist = -4.5f * up;
    p.heave = -0.32f * high;
    p.tail = 3 * high;
    p.lean = kLean - 8 * high;
    return p;
}

Vec3 pose(const Rig& rig, Vec3 p, const Posture& now) {
    if (rig.limb == Limb::WING) {
        const int i = rig.side > 0 ? 0 : 1;
        const BentWing wing(
            [&](float distance) {
                const float bent = smoothstep(kWrist - 0.14f, kWrist + 0.14f, distance / kWingSpan);
                return mix(now.arm[i], now.hand[i], bent);
            },
            kWingSpan);
        float out = rig.along * kWingSpan, y = p.y - kShoulderY;
        // The hand turns back about the wrist.
        const float wrist = kWrist * kWingSpan;
        if (out > wrist) {
            const float soft = smoothstep(wrist, wrist + 3.0f, out);
            const float a = now.sweep * soft * kPi / 180;
            const float x = out - wrist, wrist_y = 1.2f, dy = y - wrist_y;
            out = wrist + x * std::cos(a) + dy * std::sin(a);
            y = wrist_y - x * std::sin(a) + dy * std::cos(a);
        }
        const float twist = now.twist * (0.3f + 0.7f * rig.along) * kPi / 180;
        const Vec2 q = wing.carry(out, p.z - kShoulderZ - std::sin(twist) * y);
        p = {rig.side * (kShoulderX + q.x), kShoulderY + y, kShoulderZ + q.y};
    } else if (rig.limb == Limb::TAIL) {
        const float roll = now.tail_roll * rig.along * kPi / 180;
        p.z += p.x * std::sin(roll) - std::sin(now.tail * kPi / 180) * 3.5f * rig.along;
    }
    // The head keeps still while the body heaves.
    const float head = rig.limb == Limb::BODY ? smoothstep(1.5f, 5.0f, p.y) : 0.0f;
    p.z += now.heave * (1 - 0.8f * head);
    return rotateY(p, now.lean);
}

// ---- Painting ----

const Vec3 kWhite = rgb(252, 253, 254), kGrey = rgb(172, 182, 191), kBlack = rgb(38, 40, 46);

/// Light on a surface that faces up by that much: warm sun above, a cool shade where it turns away
/// from the sky, and the bright sea below.
Vec3 lit(Vec3 c, float up) {
    const Vec3 below =
        mix(Vec3{0.685f, 0.745f, 0.79f}, {0.815f, 0.85f, 0.835f}, smoothstep(-0.45f, -1.0f, up));
    const Vec3 light = mix(below, Vec3{1.0f, 0.997f, 0.972f}, smoothstep(-0.70f, 0.60f, up));
    // Where sun and shade meet, the feathers let the light through.
    return c * (light + Vec3{0.040f, 0.016f, -0.012f} * band(up, -0.22f, 0.12f, 0.22f));
}

/// A row of rounded feather tips that lies on what is behind it.
struct Tips {
    float edge;   ///< Where the tips end.
    float count;  ///< So many beside each other.
    float depth;  ///< Of the bights between them.
};

/// A place among such rows.
struct Tile {
    int row = 0;
    float across = 0;  ///< The feather, 0 to 1.
    float behind = 1;  ///< From the edge of the row before.
    float before = 1;  ///< To the feather's own edge.
};

/// The first row that covers the place; the last has no end.
Tile tileAt(const Tips* rows, int count, float beside, float along, float reach) {
    Tile tile;
    for (tile.row = 0; tile.row <= count; ++tile.row) {
        if (tile.row == count) {
            tile.before = 1;
            break;
        }
        const Tips& tips = rows[tile.row];
        const float place = beside * tips.count + 0.5f * static_cast<float>(tile.row % 2);
        tile.across = place - std::floor(place);
        const float off = 2 * tile.across - 1;
        const float end = reach * (tips.edge - tips.depth * off * off);
        tile.before = end - along;
        if (tile.before > 0)
            break;
        tile.behind = -tile.before;
    }
    return tile;
}

Vec3 bodyColour(float along, float round) {
    const Vec3 p = bodySurface(along, round);
    const float angle = round * kPi;
    const float e = 0.004f;
    const Vec3 normal =
        normalize(cross(bodySurface(along + e, round) - bodySurface(along - e, round),
                        bodySurface(along, std::min(1.0f, round + e)) -
                            bodySurface(along, std::max(0.0f, round - e))));
    // At the ridge and at the keel the curves leave no width to measure by.
    const float up = mix(normal.z, std::cos(angle), 0.4f);
    Vec3 c = kWhite;
    // The mantle between the wings.
    const float mantle = smoothstep(0.37f, 0.29f, round) * band(along, 0.37f, 0.78f, 0.04f);
    c = mix(c, rgb(165, 177, 190), mantle);
    // Feathers: rows of small tips, larger and clearer on the mantle, down on breast and belly.
    const float size = mix(1.0f, 0.62f, smoothstep(0.34f, 0.20f, along));
    const float place = along * 26 / size, row = std::floor(place), f = place - row;
    const float beside = round * 11 / size + 0.5f * (row - 2 * std::floor(row / 2));
    const float off = 2 * (beside - std::floor(beside)) - 1;
    const float tip = f - 0.55f + 0.55f * off * off;
    const float tips = smoothstep(0.30f, 0.02f, std::fabs(tip - 0.02f)) * (tip > 0 ? 1.0f : 0.35f);
    c *= 1 - (0.024f + 0.045f * mantle) * tips * smoothstep(0.12f, 0.17f, along);
    const float down = fractalNoise({along * 30, round * 18, 0}, 3, 5);
    c *= 1 + 0.020f * down;
    c = lit(c, up + 0.10f * down * (1 - mantle));
    // Below, the flanks turn away from the sea, and so does the vent.
    const float low = smoothstep(0.55f, 0.80f, round);
    c = c * mix(Vec3{1, 1, 1}, {0.90f, 0.915f, 0.93f},
                low * std::max(0.8f * band(round, 0.56f, 0.74f, 0.08f) *
                                   band(along, 0.32f, 0.80f, 0.10f),
                               smoothstep(0.72f, 0.95f, along)));
    // The wings keep the light from the flanks.
    c = c * mix(Vec3{1, 1, 1}, {0.85f, 0.88f, 0.90f},
                0.8f * band(round, 0.44f, 0.60f, 0.10f) * band(along, 0.40f, 0.72f, 0.08f));
    // The head shades neck and breast: seen from the front they would be one ball with it.
    const float below = smoothstep(0.10f, 0.50f, round);
    c = c * mix(Vec3{1, 1, 1}, {0.80f, 0.835f, 0.86f},
                below * band(along, 0.235f, 0.30f, 0.05f) * mix(1.0f, 0.8f, up * up));
    c = c * mix(Vec3{1, 1, 1}, {0.93f, 0.945f, 0.95f}, below * band(along, 0.31f, 0.44f, 0.08f));

    // Eye: dark, in a narrow lid ring, with a glint; a soft shade before and over it.
    const Vec2 eye{(along - 0.178f) * kBodyLength, p.z - 1.02f};
    const float r = 1.16f * length(eye);
    c *= 1 - 0.13f * smoothstep(0.46f, 0.16f, length(eye - Vec2{-0.10f, 0.03f}));
    c = mix(c, rgb(196, 128, 58), smoothstep(0.190f, 0.170f, r));
    const Vec3 iris = mix(rgb(30, 22, 18), rgb(104, 70, 40),
                          smoothstep(0.02f, -0.14f, eye.y) * smoothstep(0.09f, 0.12f, r));
    c = mix(c, iris, smoothstep(0.166f, 0.146f, r));
    c = mix(c, kWhite, smoothstep(0.062f, 0.040f, length(eye - Vec2{-0.055f, 0.065f})));

    // Bill: yellow, light on its ridge, shaded below; the gape, the nostril, the red spot.
    const float bill = smoothstep(0.115f, 0.110f, along + 0.006f * std::cos(2 * angle));
    if (bill > 0) {
        const float gape_z = 0.575f - 1.2f * std::max(0.0f, 0.03f - along);
        const float over = p.z - gape_z;
        Vec3 horn = mix(rgb(214, 140, 22), rgb(255, 206, 62), smoothstep(-0.75f, 0.55f, up));
        horn = mix(horn, rgb(255, 233, 150), 0.75f * band(round, 0.0f, 0.20f, 0.10f));
        horn = mix(horn, rgb(236, 168, 40), 0.6f * smoothstep(0.085f, 0.12f, along));
        horn = mix(horn, rgb(212, 52, 26),
                   smoothstep(1.15f, 0.80f,
                              length(Vec2{(along - 0.041f) / 0.013f, (round - 0.80f) / 0.15f})));
        horn *= 1 - 0.20f * smoothstep(-0.10f, 0.0f, over) * smoothstep(0.02f, 0.0f, over);
        horn *= 1 - 0.58f * smoothstep(0.028f, 0.010f, std::fabs(over)) *
                        smoothstep(0.006f, 0.020f, along);
        horn *= 1 - 0.55f * smoothstep(
                                1.2f, 0.7f,
                                length(Vec2{(along - 0.078f) / 0.011f, (round - 0.36f) / 0.045f}));
        c = mix(c, horn, bill);
    }
    return c;
}

/// The flight feather that covers a place of the wing, by where along the span it ends: those of
/// the arm lie across it, those of the hand fan out from the wrist.
float featherEnd(float along, float chord) {
    float low = along, high = along + 0.6f;
    for (int i = 0; i < 18; ++i) {
        const float end = (low + high) / 2;
        const float reach = 0.045f + 0.40f * smoothstep(0.42f, 1.05f, end);
        (end - reach * (1 - chord) < along ? low : high) = end;
    }
    return (low + high) / 2;
}

constexpr Tips kCovertsAbove[] = {{0.050f, 36, 0.010f},
                                  {0.115f, 32, 0.018f},
                                  {0.205f, 28, 0.034f},
                                  {0.335f, 25, 0.045f},
                                  {0.545f, kFeathers, 0.060f}};
constexpr Tips kCovertsBelow[] = {
    {0.075f, 34, 0.020f}, {0.17f, 30, 0.034f}, {0.34f, 26, 0.046f}, {0.55f, kFeathers, 0.060f}};

/// Both sides of the wing; along the span, chord from the leading edge back. There are no smaller
/// copies of the picture for the far bird: lines are soft, and their contrast is low.
Vec3 wingColour(float along, float chord, bool above) {
    // The outermost feathers, which make the leading edge of the hand, are the broadest to be seen.
    const float end = featherEnd(along, chord);
    const float feather = kFeathers * (std::min(end, 1.0f) + 0.25f * std::max(0.0f, end - 1));
    const float number = std::floor(feather), f = feather - number;
    const float own = hashUnit(static_cast<int>(number), above ? 1 : 0, 0, 77);

    // The coverts overlap like tiles. They are shorter on the hand.
    const float reach = 1 - 0.86f * smoothstep(0.48f, 0.80f, along);
    const float arm = 1 - smoothstep(0.60f, 0.78f, along);
    const int rows = static_cast<int>(above ? std::size(kCovertsAbove) : std::size(kCovertsBelow));
    const Tile tile = tileAt(above ? kCovertsAbove : kCovertsBelow, rows, end, chord, reach);
    const bool flight = tile.row == rows;
    const float hand = smoothstep(0.42f, 0.70f, along);

    // The shade of one feather on the next, soft on one side; the shaft; fine barbs.
    float shade = 0, shaft = 0, rim = 0;
    if (flight) {
        shade = above ? smoothstep(0.36f, 0.02f, f) : smoothstep(0.62f, 0.98f, f);
        shade *= above ? smoothstep(0.0f, 0.07f, f) : smoothstep(1.0f, 0.93f, f);
        rim = above ? smoothstep(0.86f, 0.97f, f) : smoothstep(0.14f, 0.03f, f);
        const float middle = above ? kFeatherTip : 0.40f;
        shaft = smoothstep(0.075f, 0.015f, std::fabs(f - middle));
    } else {
        // Small ones are hardly set off from each other: all in rows, they would look like scales.
        const float large = smoothstep(0.08f, 0.34f, chord);
        shade = mix(0.3f, 0.6f, large) * smoothstep(0.40f, 0.0f, tile.across);
        rim = mix(0.35f, 1.0f, large) * smoothstep(0.022f, 0.004f, tile.before);
        if (tile.row == rows - 1)
            shaft = 0.5f * smoothstep(0.08f, 0.02f, std::fabs(tile.across - 0.5f));
    }
    const float barbs = fractalNoise({feather * 5, chord * 2.5f, 0}, 2, above ? 9 : 31);
    const float cast = smoothstep(0.045f, 0.0f, tile.behind) * arm *
                       (flight ? 1.0f : mix(0.35f, 0.8f, smoothstep(0.10f, 0.35f, chord)));

    Vec3 c = kWhite;
    if (above) {
        c = mix(kGrey, rgb(206, 213, 220), 0.40f * smoothstep(0.40f, 0.75f, along));
        c *= 1 + 0.05f * (own - 0.5f) * (flight ? 1.0f : 0.0f) + 0.022f * barbs;
        c *= 1 - (flight ? 0.13f : 0.10f) * shade;
        c *= 1 - 0.10f * shaft + (flight ? 0.06f : 0.065f) * rim;
        c = c * mix(Vec3{1, 1, 1}, {0.80f, 0.82f, 0.85f}, cast);
        // The front rounds into the warm sun; the arm is arched, its rear turns away.
        c = c * mix(Vec3{0.945f, 0.965f, 0.985f}, {1.0f, 0.99f, 0.97f},
                    smoothstep(0.75f, 0.10f, chord) * mix(1.0f, 0.6f, along));
        c *= 1 - 0.12f * smoothstep(0.16f, 0.0f, along);
        c = mix(c, rgb(208, 214, 221), 0.9f * smoothstep(0.034f, 0.018f, chord));
        // White ends of the feathers make a hem behind the arm.
        const float off = (f - kFeatherTip) * 1.3f;
        const float hem = 0.86f + 0.05f * smoothstep(0.30f, 0.66f, along) - 0.06f * off * off;
        c = mix(c, kWhite * (1 - 0.10f * shade - 0.05f * shaft),
                smoothstep(hem - 0.025f, hem + 0.025f, chord) * smoothstep(0.02f, 0.12f, along) *
                    (1 - smoothstep(0.66f, 0.74f, along)));
    } else {
        // White coverts in the cool shade of the wing; the sun shines warm through the ends of the
        // flight feathers where only one of them lies.
        const Vec3 covert = mix(Vec3{0.785f, 0.835f, 0.86f}, {0.885f, 0.908f, 0.905f},
                                smoothstep(0.0f, 0.5f, chord));
        Vec3 through = mix(Vec3{0.70f, 0.745f, 0.77f}, {0.905f, 0.885f, 0.84f},
                           smoothstep(0.50f, 0.98f, chord) * mix(1.0f, 0.75f, hand));
        through = mix(through, {0.655f, 0.70f, 0.735f}, 0.55f * shade);
        c = c * (flight ? through : covert);
        c *= 1 + 0.03f * (own - 0.5f) * (flight ? 1.0f : 0.0f) + 0.018f * barbs;
        c *= 1 - 0.07f * shade + (flight ? 0.06f : 0.035f) * rim;
        c = mix(c, kWhite * (flight ? 0.95f : 0.84f), 0.45f * shaft);
        c = c * mix(Vec3{1, 1, 1}, {0.85f, 0.872f, 0.89f}, cast * (flight ? 1.0f : 0.75f));
        // The leading edge is greyer than the clouds that the bird is seen against, or an arm seen
        // edge-on would be lost in them. The armpit lies in shade.
        c = mix(c, Vec3{0.66f, 0.70f, 0.735f}, 0.85f * smoothstep(0.060f, 0.018f, chord));
        c = c * mix(Vec3{1, 1, 1}, {0.80f, 0.835f, 0.865f}, smoothstep(0.20f, 0.0f, along));
    }

    // Where it grows from the shoulder, the wing is as white as the body.
    c = mix(c, above ? kWhite : Vec3{0.86f, 0.89f, 0.905f},
            smoothstep(0.055f, 0.015f, along) * smoothstep(0.34f, 0.10f, chord));

    // The black begins further in on the outer feathers.
    const float from = mix(0.700f, 0.655f, smoothstep(0.70f, 1.0f, end)) + 0.030f * (own - 0.5f) +
                       0.022f * (f - 0.5f);
    const float black = smoothstep(0.0f, 0.016f, along - from) * (flight ? 1.0f : 0.9f);
    Vec3 dark = kBlack * (0.96f + 0.10f * own + 0.08f * barbs);
    dark = dark * (1 - 0.30f * shade) + Vec3{0.10f, 0.105f, 0.115f} * (0.4f * rim + 0.4f * shaft);
    c = mix(c, above ? dark : mix(dark, rgb(96, 102, 112), 0.28f), black);
    // White ends, and the mirrors of the two outermost.
    const Vec3 pale = above ? kWhite : Vec3{0.86f, 0.88f, 0.88f};
    const float spot = length(Vec2{(f - 0.55f) / 0.50f, std::min(0.0f, chord - 0.94f) / 0.060f});
    c = mix(c, pale, 0.92f * smoothstep(1.15f, 0.75f, spot) * smoothstep(0.70f, 0.74f, along));
    const bool outermost = number > kFeathers;
    const float mirror = band(along - (outermost ? 0.912f : 0.893f) - 0.02f * (f - 0.5f),
                              outermost ? -0.024f : -0.019f, outermost ? 0.024f : 0.019f, 0.006f);
    // Framed in black: seen edge-on against a bright sky, they must not cut the tip off.
    const float framed = band(chord, 0.30f, 0.80f, 0.10f);
    return mix(c, pale * (1 - 0.25f * shade), number >= kFeathers ? 0.94f * mirror * framed : 0.0f);
}

/// The middle feathers of the tail lie on top.
Vec3 tailColour(float u, float v) {
    const float out = std::fabs(2 * u - 1) * kTailFeathers / 2, f = out - std::floor(out);
    const float spread = smoothstep(0.18f, 0.45f, v);
    const float shade = smoothstep(0.45f, 0.0f, f) * smoothstep(0.0f, 0.08f, f);
    const float shaft = smoothstep(0.09f, 0.03f, std::fabs(f - 0.5f));
    Vec3 c = kWhite * (1 - spread * (0.09f * shade + 0.05f * shaft));
    c *= 1 + 0.020f * fractalNoise({out * 5, v * 3, 0}, 2, 51);
    c *= 1 - 0.06f * smoothstep(0.25f, 0.5f, std::fabs(u - 0.5f));
    // Coverts and the shade of the rump over its root; the sky shines through the end of the fan.
    const float off = 2 * (u * 5 - std::floor(u * 5)) - 1;
    const float coverts = 0.30f - 0.05f * off * off;
    c *= 1 - 0.13f * smoothstep(0.10f, 0.0f, v - coverts) * smoothstep(-0.015f, 0.0f, v - coverts);
    c = c * mix(Vec3{0.84f, 0.865f, 0.885f}, {1, 1, 1}, smoothstep(0.0f, 0.28f, v));
    return c * mix(Vec3{0.955f, 0.955f, 0.945f}, {0.90f, 0.92f, 0.925f}, v);
}

void paint(Image& sheet, const Strip& strip, const std::function<Vec3(float u, float v)>& colour) {
    constexpr int kSamples = 3;
    const int x0 = static_cast<int>(std::lround(strip.s0 * kSheet)),
              x1 = static_cast<int>(std::lround(strip.s1 * kSheet));
    const int y0 = static_cast<int>(std::lround(strip.t0 * kSheet)),
              y1 = static_cast<int>(std::lround(strip.t1 * kSheet));
    const Vec2 low = onStrip(strip, 0, 0), high = onStrip(strip, 1, 1);
    parallelFor(y1 - y0, [&](int row) {
        for (int x = x0; x < x1; ++x) {
            Vec3 sum;
            for (int i = 0; i < kSamples * kSamples; ++i) {
                const float s =
                    (static_cast<float>(x) + (static_cast<float>(i % kSamples) + 0.5f) / kSamples) /
                    kSheet;
                const float t = (static_cast<float>(y0 + row) +
                                 (static_cast<float>(i / kSamples) + 0.5f) / kSamples) /
                                kSheet;
                sum += colour(clamp01((s - low.x) / (high.x - low.x)),
                              clamp01((t - low.y) / (high.y - low.y)));
            }
            sheet.at(x, y0 + row).colour = sum / (kSamples * kSamples);
        }
    });
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/";
    Gull gull;
    gull.body();
    gull.tail();
    gull.wing(1);
    gull.wing(-1);
    std::vector<Posture> postures;
    for (int frame = 0; frame < kFrames; ++frame)
        postures.push_back(posture(frame));
    saveModel(
        gull.mesh, kFrames,
        [&](int vertex, const Vec3& rest, int frame) {
            return pose(gull.rigs[size_t(vertex)], rest, postures[size_t(frame)]) * kSize;
        },
        folder + "gull.nlm");

    Image sheet(kSheet, kSheet, {kWhite, 1});
    paint(sheet, kBodyStrip, [](float u, float v) { return bodyColour(alongBody(u), v); });
    paint(sheet, kWingTop, [](float u, float v) { return wingColour(u, v, true); });
    paint(sheet, kWingBottom, [](float u, float v) { return wingColour(u, v, false); });
    paint(sheet, kTailStrip, tailColour);
    saveBmp24(sheet, folder + "gull.nlt");
}
