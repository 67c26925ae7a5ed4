// The slope at the far end of the lagoon that hides where the floor ends: 60 x 14 units, its lower
// edge at z 34 in the fog, its upper edge at z 46 on the surface. What lies out there, weed and
// sand, it shows as patches: far water of one colour looks like paper.
#include "common/image.h"
#include "common/noise.h"
#include "sea/colours.h"

using namespace art;

/// From here up it hides everything: the floor ends just below, and nothing lies behind.
constexpr float kOpaque = 0.17f;
/// From here up the open sea lies behind it, and the lagoon may end where it likes.
constexpr float kOpenSea = 0.93f;
/// The picture repeats: at the lower edge a sample that lies outside shows the uppermost rows.
constexpr int kEmptyRows = 2;

/// Weed and sand far out, as they show through deep water: long patches, lower ones the nearer.
Vec3 lagoon(float x, float up) {
    constexpr int kAcross = 6;
    const Vec3 open = mix(sea::kFog, sea::kFarSea, smoothstep(0.1f, 0.95f, up));
    // Seen at a flat angle: the farther, the narrower.
    const float away = 5.0f / (1.15f - up);
    const float patch = fractalNoise({x * kAcross, away, 0.5f}, 3, 71, {kAcross, 0, 0});
    const float here = smoothstep(0.10f, 0.30f, up) * (1 - smoothstep(0.70f, 0.95f, up));
    const Vec3 weed{0.075f, 0.47f, 0.63f}, sand{0.27f, 0.74f, 0.79f};
    return mix(open, mix(open, patch < 0 ? weed : sand, 0.75f),
               here * smoothstep(0.03f, 0.40f, std::fabs(patch)));
}

float opacity(float x, float up) {
    constexpr int kAcross = 9;
    const float bay = fractalNoise({x * kAcross, 0.5f, 0.5f}, 3, 72, {kAcross, 0, 0});
    const float end = 0.975f + 0.03f * bay;
    return smoothstep(0.003f, kOpaque, up) *
           (1 - smoothstep(std::max(kOpenSea, end - 0.03f), end, up));
}

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: fader DATA_DIR");
    // Tall: what stands for half a texel at its edges must be thin.
    Image image(64, 512);
    for (int y = 0; y < image.height(); ++y) {
        const float up = 1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(image.height());
        for (int x = 0; x < image.width(); ++x) {
            const float along = (static_cast<float>(x) + 0.5f) / static_cast<float>(image.width());
            image.at(x, y) = {lagoon(along, up), y < kEmptyRows ? 0 : opacity(along, up)};
        }
    }
    saveBmp32(image, std::string(argv[1]) + "/gwfader.nlt");
}
