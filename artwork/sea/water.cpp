// The water's surface, 50 x 50 units seen from 2 above it: clear near the viewer, denser and more
// mirroring towards the horizon. It repeats along x, where the saver lets it drift.
#include <vector>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "sea/colours.h"

using namespace art;

namespace {

constexpr int kColumns = 1024, kRows = 512;
constexpr float kWidth = 50;
constexpr float kFarEdge = 45;
constexpr int kGusts = 5, kReaches = 8;  // along the width
constexpr float kEyeHeight = 2, kEyeZ = -7;
/// Screen rows of the largest usual window see about this angle.
constexpr float kPixelAngle = 0.00088f;

/// One of the long-crested waves that make up the surface.
struct Wave {
    float kx, kz;  ///< radians per unit; kx fits the width a whole number of times
    float slope, phase;
};

std::vector<Wave> chooseWaves() {
    Random random(17);
    std::vector<Wave> waves;
    for (int i = 0; i < 150; ++i) {
        const float length = 0.42f * std::pow(2.0f, random.range(0, 3.6f));
        const float heading = kPi / 2 + random.range(-1.05f, 1.05f);
        const float k = 2 * kPi / length;
        const float turn = 2 * kPi / kWidth;
        const float slope = 0.10f * std::pow(length, -0.15f) * random.range(0.5f, 1.2f);
        waves.push_back({std::round(k * std::cos(heading) / turn) * turn, k * std::sin(heading),
                         slope, random.range(0, 2 * kPi)});
    }
    return waves;
}

/// The slopes at a point, without the waves that are too short to be seen from the eye.
Vec2 slopes(const std::vector<Wave>& waves, float x, float z, float distance) {
    const float blur_x = 0.06f;
    const float blur_z = std::max(0.06f, 0.9f * distance * distance * kPixelAngle / kEyeHeight);
    Vec2 sum;
    for (const Wave& w : waves) {
        const float seen =
            std::exp(-0.175f * (w.kx * w.kx * blur_x * blur_x + w.kz * w.kz * blur_z * blur_z));
        if (seen < 0.01f)
            continue;
        const float k = std::sqrt(w.kx * w.kx + w.kz * w.kz);
        const float slope = std::cos(w.kx * x + w.kz * z + w.phase) * w.slope * seen / k;
        sum = sum + Vec2{w.kx, w.kz} * slope;
    }
    return sum;
}

Vec3 mirroredSky(float height) {
    const Vec3 low = rgb(209, 236, 243), middle = rgb(128, 196, 240), high = rgb(56, 133, 219);
    return mix(low, mix(middle, high, smoothstep(0.12f, 0.6f, height)),
               smoothstep(0, 0.22f, height));
}

Pixel surface(const std::vector<Wave>& waves, float x, float z) {
    const float away = z - kEyeZ;
    const float distance = std::sqrt(away * away + kEyeHeight * kEyeHeight);
    // Gusts ruffle some fields more than others.
    const float gust = fractalNoise({x * kGusts / kWidth, z * 0.13f, 0.5f}, 3, 61, {kGusts, 0, 0});
    const Vec2 slope =
        slopes(waves, x, z, distance) * mix(0.55f, 1.35f, clamp01(0.5f + 1.1f * gust));

    const Vec3 normal = normalize({-slope.x * 0.20f, 1, -slope.y * 0.20f});
    const Vec3 view = normalize({0, -kEyeHeight, away});
    const float facing = std::max(0.02f, std::min(1.0f, -dot(view, normal)));
    const float mirror = std::min(0.02f + 0.50f * std::pow(1 - facing, 5.0f),
                                  mix(0.045f, 0.42f, smoothstep(20, 44, distance)));
    const Vec3 reflected = view - normal * (2 * dot(view, normal));

    const float depth = smoothstep(4, 46, distance);
    // Through its nearest strip the sand is seen.
    const float strip = 1 - smoothstep(0, 6, z);
    const float body = mix(0.10f - 0.04f * strip, 0.64f, std::pow(depth, 1.3f));
    const Vec3 turquoise = mix({0.20f, 0.77f, 0.85f}, {0.42f, 0.84f, 0.80f}, strip);
    const Vec3 deep{0.075f, 0.585f, 0.715f};
    // Faces turned to the viewer gather light.
    const float gathered = 1 + 1.1f * std::max(-0.12f, std::min(0.16f, -slope.y * 0.30f));
    const float hue = clamp01(smoothstep(0.1f, 0.95f, depth) - 0.22f * gust);
    const Vec3 colour = mix(turquoise, deep, hue) * gathered;

    const float alpha = 1 - (1 - mirror) * (1 - body);
    const Vec3 mixed =
        (mirroredSky(clamp01(reflected.y)) * mirror + colour * (body * (1 - mirror))) / alpha;
    // The far edge takes the colour of the open sea behind it: sooner here and later there, since
    // waves that all begin together would draw a line.
    const float reach =
        kFarEdge - 7 +
        26 * fractalNoise({x * kReaches / kWidth, 0.5f, 0.5f}, 3, 62, {kReaches, 0, 0});
    const float edge = smoothstep(reach - 19, std::min(reach, kFarEdge - 0.5f), z);
    return {mix(mixed, sea::kFarSea, edge), mix(alpha, 0.70f, edge)};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: water DATA_DIR");
    const std::vector<Wave> waves = chooseWaves();
    Image image(kColumns, kRows);
    parallelFor(kRows, [&](int y) {
        const float z = kFarEdge - kWidth * (static_cast<float>(y) + 0.5f) / kRows;
        for (int x = 0; x < kColumns; ++x)
            image.at(x, y) = surface(waves, kWidth * (static_cast<float>(x) + 0.5f) / kColumns, z);
    });
    saveBmp32(image, std::string(argv[1]) + "/water.nlt");
}
