// The manta: dark above with pale shoulder patches, white below, wings that beat in a wave. Opaque,
// so every outline is geometry. Drawn with a span of 60, written kSize times as large.
#include <string>

#include "common/image.h"
#include "common/mesh.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "fish/curve.h"
#include "gull_manta/wing.h"

using namespace art;

namespace {

constexpr int kFrames = 20;
/// File units per unit of the drawing.
constexpr float kSize = 1.3f;
constexpr float kHalfSpan = 30;

// The disc from above: 0 at the middle, 1 at a wing's tip; edges are y.
const Curve kLeading = {{0, 10.6f},    {0.10f, 11.0f}, {0.15f, 11.2f}, {0.22f, 9.9f}, {0.34f, 7.9f},
                        {0.52f, 4.6f}, {0.70f, 0.9f},  {0.86f, -3.6f}, {1.0f, -9.6f}};
const Curve kTrailing = {{0, -13.5f},    {0.06f, -12.8f}, {0.14f, -10.8f}, {0.26f, -8.2f},
                         {0.42f, -6.6f}, {0.60f, -6.4f},  {0.80f, -7.6f},  {1.0f, -10.2f}};
/// Half the thickness at the thickest place of the chord.
const Curve kThickness = {{0, 2.6f},      {0.12f, 2.35f}, {0.24f, 1.5f},
                          {0.40f, 0.75f}, {0.70f, 0.32f}, {1.0f, 0.06f}};
constexpr int kColumns = 15;  // from the middle to a tip
constexpr float kChords[] = {0, 0.04f, 0.12f, 0.26f, 0.44f, 0.64f, 0.83f, 1};

// The sheet: the right half of the disc seen from above and from below, and a strip for the rest.
constexpr int kSheet = 256;
constexpr float kTopEnd = 0.45f, kBottomEnd = 0.90f, kRim = 1.5f / kSheet;
/// Between the middle and the tip, which meet where the sheet repeats: at the ridge of the back a
/// pixel's middle may lie beyond it.
constexpr float kSeam = 6.0f / kSheet;
constexpr float kFront = 12.0f, kBack = -15.0f;

Vec2 onTop(float x, float y) {
    return {mix(kSeam, 1 - kSeam, std::fabs(x) / kHalfSpan),
            mix(kRim, kTopEnd - kRim, (kFront - y) / (kFront - kBack))};
}
Vec2 onBottom(float x, float y) { return onTop(x, y) + Vec2{0, kTopEnd}; }
/// Dark (0) to white (1) strip for tail and head fins.
Vec2 onStrip(float lightness) { return {mix(0.05f, 0.95f, lightness), (kBottomEnd + 1) / 2}; }

struct Manta {
    Mesh mesh;
    std::vector<float> tail;  ///< Per vertex: 0 on the disc, up to 1 along the tail.

    int add(Vec3 p, Vec2 texture, float along_tail = 0) {
        tail.push_back(along_tail);
        return mesh.add(p, texture);
    }
    void disc();
    void headFin(float side);
    void whip();
};

void Manta::disc() {
    for (const float face : {1.0f, -1.0f}) {
        constexpr int kCount = static_cast<int>(std::size(kChords));
        const int first = static_cast<int>(mesh.vertices.size());
        for (int i = -kColumns; i <= kColumns; ++i) {
            // Columns crowd towards the body, where the shape turns most.
            const float even = static_cast<float>(std::abs(i)) / kColumns;
            const float along = mix(even * even, even, 0.55f);
            const float x = (i < 0 ? -1.0f : 1.0f) * along * kHalfSpan;
            for (const float chord : kChords) {
                const float y = mix(kLeading.at(along), kTrailing.at(along), chord);
                const float profile =
                    2.05f * std::sqrt(chord) * (1 - chord) * (1.25f - 0.35f * chord);
                // The back is domed higher than the belly.
                const float z = face * kThickness.at(along) * profile * (face > 0 ? 1.15f : 0.75f);
                add({x, y, z}, face > 0 ? onTop(x, y) : onBottom(x, y));
            }
        }
        for (int i = 0; i < 2 * kColumns; ++i)
            for (int j = 0; j + 1 < kCount; ++j) {
                const int a = first + i * kCount + j;
                mesh.quad(a, a + 1, a + kCount + 1, a + kCount);
            }
    }
    // A small fin where the tail begins.
    const float lean = 2.4f;
    const int a = add({0, -10.2f, 0.5f}, onStrip(0.05f)),
              b = add({0, -12.8f, 0.3f}, onStrip(0.05f)),
              c = add({0, -12.2f - lean * 0.4f, 1.9f}, onStrip(0.0f));
    mesh.triangle(a, b, c);
}

void Manta::headFin(float side) {
    // A paddle that leaves the head's corner, reaches forward and curls inwards and down.
    constexpr int kRows = 5;
    const int first = static_cast<int>(mesh.vertices.size());
    for (int i = 0; i <= kRows; ++i) {
        const float v = static_cast<float>(i) / kRows;
        const float width = 2.3f * (1 - 0.55f * v * v);
        const Vec3 middle{side * (4.6f - 0.2f * v - 1.2f * v * v), 9.4f + 5.8f * v,
                          -0.1f - 1.5f * v * v};
        const float turn = mix(20, 62, v) * kPi / 180;
        const Vec3 across{side * std::cos(turn), 0, std::sin(turn)};
        add(middle - across * (width / 2), onStrip(0.45f - 0.3f * v));
        add(middle + across * (width / 2), onStrip(0.05f));
        add(middle + Vec3{side * 0.3f, 0, 0.25f}, onStrip(0.0f));
    }
    for (int i = 0; i < kRows; ++i) {
        const int a = first + i * 3;
        mesh.quad(a, a + 2, a + 5, a + 3);
        mesh.quad(a + 2, a + 1, a + 4, a + 5);
        mesh.quad(a, a + 1, a + 4, a + 3);
    }
}

void Manta::whip() {
    constexpr int kRows = 8, kSides = 5;
    const int first = static_cast<int>(mesh.vertices.size());
    for (int i = 0; i <= kRows; ++i) {
        const float v = static_cast<float>(i) / kRows;
        const float radius = mix(0.65f, 0.20f, std::sqrt(v));
        for (int k = 0; k < kSides; ++k) {
            const float a = 2 * kPi * static_cast<float>(k) / kSides;
            add({radius * std::cos(a), -12.4f - 21 * v, radius * std::sin(a)},
                onStrip(0.12f - 0.12f * std::sin(a)), v);
        }
    }
    for (int i = 0; i < kRows; ++i)
        for (int k = 0; k < kSides; ++k) {
            const int a = first + i * kSides, b = (k + 1) % kSides;
            mesh.quad(a + k, a + b, a + kSides + b, a + kSides + k);
        }
}

/// Degrees the disc slopes upwards at a distance from the middle. The beat starts at the body and
/// runs outwards, its tips come late. Higher up the two wings, seen from the side, would be one.
float slope(float along, float turns) {
    const float reach = smoothstep(0.05f, 0.75f, along);
    const float late = 0.16f * along + 0.06f * along * along;
    const float beat = std::sin(2 * kPi * (turns - late));
    return reach * (28 * beat - 1) + 4 * smoothstep(0.6f, 1.0f, along);
}

/// Degrees the whole animal leans to its right: it rocks a little with the beat.
float lean(float turns) { return 7.5f * std::sin(2 * kPi * (turns + 0.1f)); }

Vec3 pose(Vec3 p, float along_tail, float turns) {
    const float heave = -1.5f * std::sin(2 * kPi * (turns - 0.08f));
    if (along_tail > 0) {
        const float swing = std::sin(2 * kPi * (turns - 0.55f * along_tail));
        p.z += along_tail * (1.0f + 1.9f * swing);
        p.x += 1.6f * along_tail * std::sin(2 * kPi * (turns - 0.4f * along_tail) + 1.0f);
    } else {
        const float out = std::fabs(p.x), along = out / kHalfSpan;
        // The trailing edge follows the leading edge late.
        const float late = 0.0075f * (kLeading.at(along) - p.y) * smoothstep(0.1f, 0.5f, along);
        const BentWing wing(
            [&](float distance) { return slope(distance / kHalfSpan, turns - late); }, kHalfSpan);
        const Vec2 q = wing.carry(out, p.z);
        p.x = p.x < 0 ? -q.x : q.x;
        p.z = q.y;
    }
    p.z += heave;
    return rotateY(p, lean(turns));
}

// ---- Painting; x from the middle outwards ----

const Vec3 kDark = rgb(40, 48, 64), kPale = rgb(206, 216, 222);

/// Where back and belly meet both have one colour: seen edge-on, a row of pixels shows now the one,
/// now the other.
Vec3 hemmed(Vec3 c, float along, float chord) {
    const float front = smoothstep(0.13f, 0.03f, chord) * smoothstep(0.15f, 0.22f, along);
    return mix(c, rgb(72, 88, 108), 0.9f * std::max(front, smoothstep(0.80f, 0.96f, chord)));
}

Vec3 topColour(float x, float y) {
    const float along = x / kHalfSpan;
    const float chord = (kLeading.at(along) - y) / (kLeading.at(along) - kTrailing.at(along));
    const float cloudy = fractalNoise({x * 0.35f, y * 0.35f, 0}, 4, 7);
    Vec3 c = kDark * (1.12f + 0.22f * cloudy);
    c = mix(c, rgb(74, 90, 112), 0.55f * smoothstep(0.35f, 1.0f, along));
    // The sun lies on the dome of the back and on the front of the wings.
    c = mix(c, rgb(92, 112, 136),
            0.45f * std::exp(-std::pow((x - 3.4f) / 2.6f, 2.0f)) * band(y, -7, 7, 4));
    c = mix(c, rgb(96, 114, 138),
            0.40f * band(chord, 0.06f, 0.16f, 0.06f) * smoothstep(0.15f, 0.4f, along));
    // Shoulder patches: pale hooks that run from behind the eye outwards, frayed at the rear.
    const float fray = 0.9f * fractalNoise({x * 0.5f, y * 0.5f, 3}, 3, 21);
    const float front = y - (6.6f - 0.055f * (x - 3) * (x - 3)) + 0.5f * fray;
    const float width = mix(1.3f, 3.6f, band(x, 4.2f, 7.4f, 2.4f)) + fray;
    const float patch = smoothstep(0.5f, -0.7f, front) *
                        smoothstep(-width - 1.2f, -width + 0.6f, front) *
                        smoothstep(2.6f, 4.4f, x + 0.4f * fray) * smoothstep(12.8f, 7.0f, x - fray);
    c = mix(c, kPale, 0.74f * patch);
    // Pale hem behind and light wing tips.
    c = mix(c, rgb(134, 150, 166),
            0.5f * smoothstep(0.93f, 1.0f, chord) * smoothstep(0.1f, 0.3f, along));
    c = mix(c, rgb(150, 164, 176), 0.45f * smoothstep(0.90f, 1.0f, along));
    c = mix(c, rgb(60, 72, 90), 0.6f * band(y, -12, 8, 2) * smoothstep(0.7f, 0.2f, x));
    return hemmed(c, along, chord);
}

Vec3 bottomColour(float x, float y) {
    const float along = x / kHalfSpan;
    const float chord = (kLeading.at(along) - y) / (kLeading.at(along) - kTrailing.at(along));
    // Pale along the belly only; out to the wings it grades into the colour of the back.
    const float cloud = fractalNoise({x * 0.3f, y * 0.3f, 0}, 3, 9);
    const float reach = along + 0.05f * cloud;
    Vec3 c = mix(rgb(204, 214, 220), rgb(132, 148, 166), smoothstep(0.04f, 0.36f, reach));
    c = mix(c, rgb(84, 98, 118), smoothstep(0.30f, 0.80f, reach));
    c = mix(c, rgb(128, 144, 162), 0.7f * smoothstep(5.0f, 9.5f, y));
    c *= 0.97f + 0.05f * cloud;
    // Dark hem behind and at the tip, soft shade along the front.
    c = mix(
        c, rgb(96, 108, 124),
        0.85f *
            smoothstep(0.80f, 0.97f, chord + 0.05f * fractalNoise({x * 0.6f, y * 0.6f, 5}, 3, 4)) *
            smoothstep(0.16f, 0.35f, along));
    c = mix(c, rgb(84, 96, 112), 0.8f * smoothstep(0.86f, 0.98f, along));
    c = mix(c, rgb(120, 136, 152), 0.7f * smoothstep(0.16f, 0.0f, chord));
    // Towards the tail too, or a sliver of white shows below the back.
    c = mix(c, rgb(84, 98, 118), 0.85f * smoothstep(-6.5f, -11.5f, y));
    // Five gill slits, curved, on each side; the mouth is a dark band in front.
    for (int i = 0; i < 5; ++i) {
        const float middle = 5.2f - 1.75f * static_cast<float>(i);
        const float slit = y - middle - 0.10f * (x - 3.2f) * (x - 3.2f) + 0.18f * x;
        const float half = 1.9f - 0.18f * static_cast<float>(i);
        // Soft and pale: from afar, one pixel is as high as the way from one slit to the next, and
        // edge-on they would notch the belly's outline.
        c = mix(c, rgb(112, 122, 134),
                0.24f * std::exp(-slit * slit / 0.24f) *
                    smoothstep(half + 0.3f, half - 0.3f, std::fabs(x - 3.4f)));
    }
    c = mix(c, rgb(46, 52, 64), smoothstep(9.2f, 9.9f, y) * smoothstep(4.6f, 4.0f, x));
    // A few dark belly spots, every manta's own.
    c = mix(c, rgb(92, 102, 116),
            0.6f * smoothstep(0.85f, 0.35f, length(Vec2{x - 2.1f, y + 5.2f})));
    c = mix(c, rgb(92, 102, 116),
            0.5f * smoothstep(0.75f, 0.25f, length(Vec2{x - 4.6f, y + 3.4f})));
    c = mix(c, rgb(92, 102, 116),
            0.5f * smoothstep(0.80f, 0.25f, length(Vec2{x - 0.9f, y + 7.6f})));
    // In its own shade: the light comes from the water all round, from the sand a little.
    c = c * Vec3{0.64f, 0.76f, 0.86f};
    // Towards the rims the tone is already that of the back, or it would flash as the wings turn.
    const float rim = std::max(smoothstep(0.30f, 0.06f, chord), smoothstep(0.55f, 0.90f, chord));
    c = mix(c, rgb(68, 83, 104), 0.75f * rim);
    return hemmed(c, along, chord);
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/";
    Manta manta;
    manta.disc();
    manta.headFin(1);
    manta.headFin(-1);
    manta.whip();
    saveModel(
        manta.mesh, kFrames,
        [&](int vertex, const Vec3& rest, int frame) {
            return pose(rest, manta.tail[size_t(vertex)], static_cast<float>(frame) / kFrames) *
                   kSize;
        },
        folder + "manta.nlm");

    Image sheet(kSheet, kSheet);
    parallelFor(kSheet, [&](int row) {
        constexpr int kSamples = 2;
        for (int column = 0; column < kSheet; ++column) {
            Vec3 sum;
            for (int i = 0; i < kSamples * kSamples; ++i) {
                const float s = (static_cast<float>(column) +
                                 (static_cast<float>(i % kSamples) + 0.5f) / kSamples) /
                                kSheet;
                const float t = (static_cast<float>(row) +
                                 (static_cast<float>(i / kSamples) + 0.5f) / kSamples) /
                                kSheet;
                const bool below = t >= kTopEnd;
                const float x = clamp01((s - kSeam) / (1 - 2 * kSeam)) * kHalfSpan;
                const float y =
                    mix(kFront, kBack,
                        clamp01(((below ? t - kTopEnd : t) - kRim) / (kTopEnd - 2 * kRim)));
                sum += t >= kBottomEnd ? mix(kDark, rgb(216, 224, 230), clamp01((s - 0.05f) / 0.9f))
                       : below         ? bottomColour(x, y)
                                       : topColour(x, y);
            }
            sheet.at(column, row).colour = sum / (kSamples * kSamples);
        }
    });
    saveBmp24(sheet, folder + "manta.nlt");
}
