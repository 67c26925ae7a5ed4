// The sun's glitter on the water, 50 x 40 units from 2 behind to 42 before the eye: "blendmap.nlt"
// says where it may glitter, 32 frames of small glints repeat 12 times over it. The saver
// multiplies both, and takes the nearest texel of a frame. "hours/path.nlt" is the map under a low
// light.
#include <string>
#include <vector>

#include "DayLight.h"
#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"

using namespace art;

namespace {

// Along the line of sight a texel is no longer than what a pixel sees where the glints begin.
constexpr int kColumns = 256, kRows = 32;
constexpr int kFrames = 32, kFirstFile = 44;
constexpr float kTileWidth = 50.0f / 12, kTileDepth = 40.0f / 12;  // units
const Vec3 kGlint = rgb(255, 255, 250);

/// A short flat dash of light that grows, drifts and dies; lengths in units, times in frames.
struct Glint {
    float x, z, length, depth, drift;
    float birth, life, strength;
};

/// Clusters of them: a wave that turns one face to the sun turns several.
std::vector<Glint> chooseGlints() {
    Random random(7);
    std::vector<Glint> glints;
    for (int cluster = 0; cluster < 34; ++cluster) {
        const float x = random.range(0, kTileWidth), z = random.range(0, kTileDepth);
        const float birth = random.range(0, kFrames);
        for (int i = 0; i < 4; ++i) {
            const float size = std::pow(random.unit(), 2.0f);
            glints.push_back({x + random.range(-0.45f, 0.45f), z + random.range(-0.22f, 0.22f),
                              mix(0.07f, 0.34f, size), mix(0.06f, 0.17f, size),
                              random.range(-0.004f, 0.004f), birth + random.range(-6, 6),
                              random.range(6, 13), random.range(0.6f, 1.0f)});
        }
    }
    return glints;
}

/// The distance from zero to value on a circle of the given length, signed.
float around(float value, float length) { return value - length * std::round(value / length); }

void draw(const Glint& glint, int frame, Image& image) {
    const float age = around(static_cast<float>(frame) - glint.birth, kFrames) / glint.life;
    if (std::fabs(age) >= 0.5f)
        return;
    const float grown = std::cos(kPi * age);
    const float centre_x = glint.x + glint.drift * age * glint.life;
    const float length = glint.length * (0.35f + 0.65f * grown);
    for (int y = 0; y < kRows; ++y) {
        const float z =
            around((static_cast<float>(y) + 0.5f) * kTileDepth / kRows - glint.z, kTileDepth);
        if (std::fabs(z) > glint.depth)
            continue;
        for (int x = 0; x < kColumns; ++x) {
            const float along =
                around((static_cast<float>(x) + 0.5f) * kTileWidth / kColumns - centre_x,
                       kTileWidth) /
                length;
            // A lens shape: one that bends would end a row lower, as a squiggle.
            const float across = z / glint.depth;
            const float inside = 1 - along * along - across * across;
            // A texel is as high as the glint: only its light can taper.
            const float taper = 1 - std::fabs(along);
            float& alpha = image.at(x, y).alpha;
            alpha = std::max(alpha, glint.strength * grown * smoothstep(0, 0.45f, inside) *
                                        std::min(1.0f, 2.2f * taper * taper));
        }
    }
}

/// How much glitter the place shows; away is the distance before the eye.
float glitter(float x, float away) {
    const float near = smoothstep(10.5f, 15, away);
    const float far = 1 - 0.55f * smoothstep(22, 40, away);
    const float path = std::exp(-std::pow((x + 2) / (7 + 0.28f * away), 2.0f));
    // Gusts: glints come in drifts that hide the repetition of the frames.
    const float drifts = fractalNoise({x * 0.16f, away * 0.20f, 0.5f}, 3, 77);
    const float patches = fractalNoise({x * 0.62f, away * 0.80f, 3.5f}, 2, 78);
    const float gusts = smoothstep(-0.06f, 0.32f, drifts + 1.1f * patches);
    // And each tile shows other ones of its glints than its neighbours.
    const float chosen = gradientNoise({x * 0.95f, away * 1.5f, 7.5f}, 79) +
                         0.6f * gradientNoise({x * 1.9f, away * 3.1f, 1.5f}, 80);
    const float some = smoothstep(0.02f, 0.16f, chosen);
    const float border = smoothstep(24.4f, 20, std::fabs(x)) * smoothstep(41.6f, 38, away);
    return near * far * mix(0.35f, 1.0f, path) * gusts * some * border;
}

/// The same under a low sun or moon: one path towards it, which ripples break up at its sides.
float glitterPath(float x, float away) {
    const float aside = std::atan2(x, away) * 180 / kPi - SKY_AHEAD::LIGHT;
    const float near = smoothstep(6, 13, away);
    const float width = mix(6.5f, 3.2f, smoothstep(8, 40, away));
    const float path = std::exp(-std::pow(aside / width, 2.0f));
    const float ripples = fractalNoise({x * 0.30f, away * 1.1f, 9.5f}, 3, 78);
    const float broken = smoothstep(0.05f, 0.45f, path + 0.55f * ripples - 0.12f);
    const float border = smoothstep(24.4f, 20, std::fabs(x)) * smoothstep(42, 40, away);
    return near * border * path * broken;
}

using Glitter = float (*)(float x, float away);

void saveMap(Glitter glitter, float strength, const std::string& file) {
    Image map(256, 256, {kGlint, 0});
    for (int y = 0; y < map.height(); ++y)
        for (int x = 0; x < map.width(); ++x) {
            const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(map.width());
            const float v = (static_cast<float>(y) + 0.5f) / static_cast<float>(map.height());
            map.at(x, y).alpha = strength * glitter(50 * u - 25, 42 - 40 * v);
        }
    saveBmp32(map, file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: highlight DATA_DIR");
    const std::string folder = argv[1];

    saveMap(glitter, 0.9f, folder + "/blendmap.nlt");
    saveMap(glitterPath, 1, folder + "/hours/path.nlt");

    const std::vector<Glint> glints = chooseGlints();
    parallelFor(kFrames, [&](int frame) {
        Image image(kColumns, kRows, {kGlint, 0});
        for (const Glint& glint : glints)
            draw(glint, frame, image);
        char name[40];
        std::snprintf(name, sizeof name, "/highlight/highlight%.5d.nlt", kFirstFile + frame);
        saveBmp32(image, folder + name);
    });
}
