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
constexpr int kHalfSides = 6;
const Curve kTop = {{0, 0.62f},     {0.035f, 0.80f}, {0.10f, 0.90f}, {0.125f, 1.02f},
                    {0.16f, 1.36f}, {0.20f, 1.48f},  {0.26f, 1.36f}, {0.34f, 1.16f},
                    {0.50f, 1.10f}, {0.70f, 0.86f},  {0.88f, 0.46f}, {1.0f, 0.22f}};
const Curve kBottom = {{0, 0.50f},      {0.03f, 0.48f},  {0.10f, 0.44f},  {0.125f, 0.36f},
                       {0.17f, 0.10f},  {0.24f, -0.22f}, {0.34f, -0.86f}, {0.48f, -1.22f},
                       {0.64f, -1.10f}, {0.82f, -0.52f}, {1.0f, 0.02f}};
const Curve kWidth = {{0, 0.05f},     {0.04f, 0.14f}, {0.11f, 0.22f}, {0.14f, 0.46f},
                      {0.19f, 0.66f}, {0.25f, 0.70f}, {0.34f, 0.96f}, {0.48f, 1.16f},
                      {0.64f, 1.02f}, {0.84f, 0.62f}, {1.0f, 0.42f}};
const float kStations[] = {0,     0.03f, 0.07f, 0.11f, 0.13f, 0.155f, 0.18f, 0.21f, 0.25f,
                           0.30f, 0.36f, 0.44f, 0.52f, 0.60f, 0.70f,  0.80f, 0.90f, 1.0f};

// Wing: 0 at the shoulder, 1 at the tip. Edges are y, relative to the shoulder line.
constexpr float kShoulderX = 0.55f, kShoulderY = 1.9f, kShoulderZ = 0.62f;
constexpr float kWingSpan = 15.0f - kShoulderX;
constexpr float kWrist = 0.43f;
const Curve kLeading = {{0, 1.05f},     {0.10f, 1.20f},  {0.25f, 1.85f},
                        {0.38f, 2.35f}, {0.46f, 2.30f},  {0.60f, 1.45f},
                        {0.78f, 0.05f}, {0.92f, -1.35f}, {1.0f, -2.35f}};
const Curve kTrailing = {{0, -3.05f},     {0.12f, -2.55f}, {0.28f, -1.75f}, {0.42f, -1.55f},
                         {0.55f, -1.85f}, {0.72f, -2.30f}, {0.88f, -2.62f}, {1.0f, -2.60f}};
constexpr int kFeathers = 13;  // along the trailing edge of one wing
constexpr float kChordsTop[] = {0, 0.08f, 0.30f, 0.70f, 1};
constexpr float kChordsBottom[] = {0, 0.12f, 0.60f, 1};

// The sheet: strips over its whole width, and the tail. From afar one pixel is as high as several
// texels, and at an outline its middle may lie outside: so body and tail, white both, lie together,
// away from the black of the wing tips.
struct Strip {
    float s0, s1, t0, t1;
};
constexpr Strip kTailStrip{0, 0.5f, 0, 0.16f}, kBodyStrip{0, 1, 0.16f, 0.48f},
    kWingTop{0, 1, 0.52f, 0.80f}, kWingBottom{0, 1, 0.80f, 1};
constexpr int kSheet = 256;
constexpr float kRim = 1.5f / kSheet, kRimBetween = 4.0f / kSheet;

Vec2 onStrip(const Strip& strip, float u, float v) {
    return {mix(strip.s0 + kRim, strip.s1 - kRim, u),
            mix(strip.t0 + kRimBetween, strip.t1 - kRimBetween, v)};
}

Vec3 bodySurface(float along, float round) {
    const float top = kTop.at(along), bottom = kBottom.at(along), middle = mix(bottom, top, 0.5f);
    const float angle = round * kPi;
    return {kWidth.at(along) * std::sin(angle), kBillTip - along * kBodyLength,
            middle + (top - middle) * std::cos(angle)};
}

/// How far the trailing edge is cut back at a place of the span: feathers end in points, deeper
/// ones towards the tip.
float notch(float along) { return mix(0.05f, 0.16f, smoothstep(0.45f, 1.0f, along)); }

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
            add(p, onStrip(kBodyStrip, along, round), {});
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
        constexpr int kColumns = 2 * kFeathers;
        const int first = static_cast<int>(mesh.vertices.size());
        for (int i = 0; i <= kColumns; ++i) {
            const float along = static_cast<float>(i) / kColumns;
            const float front = kLeading.at(along);
            const float cut = i % 2 == 0 && i > 0 && i < kColumns ? notch(along) : 0.0f;
            for (int j = 0; j < count; ++j) {
                // Every second column is a gap between two feathers.
                const float chord = chords[j] * (j + 1 == count ? 1 - cut : 1);
                const float y = mix(front, kTrailing.at(along), chord);
                const float thick = mix(0.50f, 0.05f, smoothstep(0, 0.75f, along));
                const float profile = std::sqrt(chord) * (1 - chord) * 2.2f;
                const float camber = 0.30f * (1 - along * 0.6f) * std::sin(kPi * clamp01(chord));
                add({side * (kShoulderX + along * kWingSpan), kShoulderY + y,
                     kShoulderZ + camber + bulge * thick * profile},
                    onStrip(strip, along, chord), {Limb::WING, side, along});
            }
        }
        for (int i = 0; i < kColumns; ++i)
            for (int j = 0; j + 1 < count; ++j) {
                const int a = first + i * count + j;
                mesh.quad(a, a + 1, a + count + 1, a + count);
            }
    };
    surface(kWingTop, kChordsTop, static_cast<int>(std::size(kChordsTop)), 0.55f);
    surface(kWingBottom, kChordsBottom, static_cast<int>(std::size(kChordsBottom)), -0.55f);
}

void Gull::tail() {
    constexpr int kColumns = 12;
    const float root_y = kBillTip - 0.90f * kBodyLength;
    const int first = static_cast<int>(mesh.vertices.size());
    for (int i = 0; i <= kColumns; ++i) {
        const float u = static_cast<float>(i) / kColumns, turn = (u - 0.5f) * 0.86f;
        for (int j = 0; j <= 2; ++j) {
            const float v = static_cast<float>(j) / 2;
            const float reach = 3.5f * v * (j == 2 && i % 2 == 0 ? 0.955f : 1.0f) *
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

/// Light on a surface that faces up by that much: warm sun above, darkest where it turns away from
/// the sky, and the bright sea below.
Vec3 lit(Vec3 c, float up) {
    const Vec3 below =
        mix(Vec3{0.70f, 0.745f, 0.765f}, {0.79f, 0.825f, 0.82f}, smoothstep(-0.55f, -1.0f, up));
    return c * mix(below, Vec3{1.0f, 1.0f, 0.975f}, smoothstep(-0.60f, 0.40f, up));
}

Vec3 bodyColour(float along, float round) {
    const Vec3 p = bodySurface(along, round);
    const float angle = round * kPi;
    const float up = std::cos(angle);
    Vec3 c = kWhite;
    // The mantle between the wings.
    const float mantle = smoothstep(0.52f, 0.40f, round) * band(along, 0.36f, 0.80f, 0.05f);
    c = mix(c, kGrey, mantle);
    // Feathers: fine scallops, clearer on the mantle.
    const float tuft = fractalNoise({along * 70, round * 26, 0}, 3, 5);
    c *= 1 + (0.030f + 0.025f * mantle) * tuft;
    c = lit(c, up);
    // The head shades neck and breast: seen from the front they would be one ball with it.
    const float below = smoothstep(0.10f, 0.50f, round);
    c = c * mix(Vec3{1, 1, 1}, {0.78f, 0.815f, 0.85f},
                below * band(along, 0.235f, 0.31f, 0.05f) * mix(1.0f, 0.8f, up * up));
    c = c * mix(Vec3{1, 1, 1}, {0.92f, 0.935f, 0.95f}, below * band(along, 0.31f, 0.44f, 0.08f));

    // Bill: yellow, paler at the cutting edge, red spot below near the tip.
    const float bill = smoothstep(0.128f, 0.118f, along + 0.012f * std::cos(2 * angle));
    Vec3 horn = mix(rgb(238, 178, 34), rgb(255, 214, 90), smoothstep(-0.2f, 0.8f, up));
    const float gape = std::fabs(p.z - (0.62f - 0.35f * std::max(0.0f, along - 0.03f)));
    horn *= 1 - 0.32f * smoothstep(0.035f, 0.012f, gape) * smoothstep(0.015f, 0.03f, along);
    horn = mix(
        horn, rgb(214, 60, 30),
        smoothstep(1.0f, 0.7f, length(Vec2{(along - 0.040f) / 0.014f, (round - 0.78f) / 0.16f})));
    c = mix(c, horn, bill);

    // Eye: pale iris, yellow lid ring, soft shade before it.
    const Vec2 eye{(along - 0.176f) * kBodyLength, p.z - 1.02f};
    const float r = length(eye);
    c *= 1 - 0.16f * smoothstep(0.42f, 0.18f, length(eye - Vec2{-0.12f, 0}));
    c = mix(c, rgb(190, 138, 72), smoothstep(0.20f, 0.175f, r));
    c = mix(c, rgb(222, 210, 158), smoothstep(0.165f, 0.15f, r));
    c = mix(c, rgb(12, 12, 14), smoothstep(0.13f, 0.11f, r));
    c = mix(c, kWhite, smoothstep(0.05f, 0.03f, length(eye - Vec2{-0.05f, 0.06f})));
    return c;
}

/// Where one feather lies on the next, 0 to 1: a shade that grows across it and ends soon after its
/// edge. Both slopes are wider than a texel, so that no hard line is left.
float overlap(float phase) {
    const float f = phase - std::floor(phase);
    return smoothstep(0.20f, 0.86f, f) * smoothstep(1.0f, 0.86f, f);
}

/// Both sides of the wing; along the span, chord from the leading edge back. Without mipmaps its
/// feathers are hints only: seen from afar, anything bolder becomes bars across it.
Vec3 wingColour(float along, float chord, bool above) {
    // The outermost feathers, which make the hand's leading edge, are black furthest inwards.
    const float feathered = 0.012f * std::sin(2 * kPi * along * kFeathers);
    const float black = smoothstep(0.0f, 0.055f, along - mix(0.645f, 0.715f, chord) + feathered);
    Vec3 c = kWhite;
    if (above) {
        c = mix(c, kGrey, smoothstep(0.0f, 0.10f, chord));
        c = mix(c, rgb(206, 213, 220), 0.4f * smoothstep(0.40f, 0.75f, along));
    }

    // Rows of coverts overlap like tiles in front of the flight feathers.
    const float arm = 1 - smoothstep(0.58f, 0.80f, along);
    for (int row = 0; row < 3; ++row) {
        const float count = 22.0f - 3.0f * static_cast<float>(row);
        const float phase = along * count + 0.5f * static_cast<float>(row);
        const float edge =
            0.19f + 0.125f * static_cast<float>(row) + 0.020f * std::sin(2 * kPi * phase);
        const float behind = chord - edge;
        c *= 1 -
             0.030f * arm * smoothstep(-0.02f, 0.025f, behind) * smoothstep(0.12f, 0.025f, behind);
    }
    // Flight feathers; those of the hand lean outwards. They come out from below the coverts bit by
    // bit.
    const float lean = 0.09f * smoothstep(0.35f, 0.9f, along) * (1 - chord);
    const float phase = (along + lean) * kFeathers;
    const float f = phase - std::floor(phase);
    const float flight = smoothstep(0.30f, 0.85f, chord + 0.30f * smoothstep(0.5f, 0.8f, along));
    c *= 1 - 0.034f * flight * overlap(phase);
    // No part is quite as light as the next.
    c *= 0.99f + 0.02f * fractalNoise({along * 14, chord * 5, 0}, 3, above ? 9 : 31);
    if (above) {
        // A white hem behind the arm, the arm arched: its rear turns away from the sun, the body
        // shades the shoulder.
        c = c * (1.03f - 0.12f * smoothstep(0.10f, 0.80f, chord) * (1 - along)) *
            (1 - 0.08f * smoothstep(0.16f, 0.0f, along));
        const float hem = 0.86f + 0.06f * smoothstep(0.30f, 0.66f, along);
        c = mix(c, kWhite * 0.98f,
                smoothstep(hem - 0.05f, hem + 0.05f, chord) * smoothstep(0.02f, 0.20f, along));
    } else {
        // The coverts are white, the flight feathers greyer towards their ends, where the sun
        // shines through the last of them. Sea and sand light the whole; the leading edge rounds
        // into the light, the hollow behind it and the armpit lie in shade.
        const Vec3 light = mix(Vec3{0.895f, 0.91f, 0.905f}, {0.69f, 0.73f, 0.755f},
                               smoothstep(0.28f, 0.86f, chord) * mix(0.85f, 1.0f, along));
        const float hollow = 0.045f * band(chord, 0.10f, 0.30f, 0.10f) * arm;
        c = c * light *
            (1 + 0.06f * smoothstep(0.10f, 0.0f, chord) + 0.05f * smoothstep(0.86f, 0.97f, chord) -
             hollow) *
            (1 - 0.15f * smoothstep(0.22f, 0.0f, along));
    }

    // The black tip with its row of white spots.
    Vec3 dark = kBlack * (1 + 0.25f * flight * overlap(phase + 0.5f));
    dark *= 0.95f + 0.10f * valueNoise({along * 40, chord * 8, 0}, 3);
    c = mix(c, above ? dark : mix(dark, rgb(96, 102, 112), 0.25f), black);
    const Vec3 pale = above ? kWhite : kWhite * 0.84f;
    const float spot = length(Vec2{(f - 0.45f) / 0.30f, (chord - 0.92f) / 0.050f});
    c = mix(c, pale, 0.7f * smoothstep(1.3f, 0.5f, spot) * smoothstep(0.76f, 0.80f, along));
    const float mirror = length(Vec2{(along - 0.905f) / 0.024f, (chord - 0.50f) / 0.20f});
    return mix(c, pale, 0.75f * smoothstep(1.2f, 0.5f, mirror));
}

Vec3 tailColour(float u, float v) {
    Vec3 c = kWhite * (1 - 0.035f * overlap(u * 6) * smoothstep(0.1f, 0.5f, v));
    c *= 1 - 0.07f * smoothstep(0.25f, 0.5f, std::fabs(u - 0.5f));
    // In the shade of the rump, and the sky shines through the end of the fan.
    c *= 1 - 0.16f * smoothstep(0.45f, 0.0f, v);
    return c * mix(Vec3{0.94f, 0.945f, 0.94f}, {0.88f, 0.90f, 0.91f}, v);
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
    paint(sheet, kBodyStrip, bodyColour);
    paint(sheet, kWingTop, [](float u, float v) { return wingColour(u, v, true); });
    paint(sheet, kWingBottom, [](float u, float v) { return wingColour(u, v, false); });
    paint(sheet, kTailStrip, tailColour);
    saveBmp24(sheet, folder + "gull.nlt");
}
