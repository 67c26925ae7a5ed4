// The clear sky: a picture 140 x 100 units wide, 107 before the eye. One file for full colour, one
// dithered for screens of 16 bit.
#include <string>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "sky/air.h"
#include "sky/clouds.h"

using namespace art;

namespace {

constexpr int kSize = 1024;
constexpr float kWidth = 140, kTop = 93, kBottom = -7, kDistance = 107;  // from the eye

/// A few clouds stand low over the horizon: those so far away, in kilometres, up to here.
constexpr sky::Clouds::Range kClouds{17, 33};
constexpr float kHighest = 10 * kPi / 180;
/// Turns to a part of the sky where they are few.
constexpr float kView = 140;

Vec3 look(float x, float y, const sky::Clouds& clouds, float chance) {
    const Vec3 direction =
        normalize({kWidth * (x / kSize - 0.5f), mix(kTop, kBottom, y / kSize), -kDistance});
    const float elevation = std::asin(direction.y);
    if (elevation < 0)
        return sky::ruffledSea(direction);
    const Vec3 colour = mix(sky::air(elevation), rgb(242, 247, 251), 0.75f * sky::wisps(direction));
    if (elevation > kHighest)
        return colour;
    const sky::Clouds::Sight sight =
        clouds.look(rotateY(direction, kView), kWidth / kSize / kDistance, chance, kClouds);
    return colour * (1 - sight.opacity) + sight.colour;
}

/// Rounds to the steps of a screen with so many bits, up or down by a fixed pattern, so that the
/// mean stays true.
float dithered(float value, int bits, float threshold) {
    const float steps = static_cast<float>((1 << bits) - 1);
    return std::min(1.0f, std::floor(value * steps + threshold) / steps);
}

/// 0..1, each of 64 values once in every square of 8 x 8.
float bayer(int x, int y) {
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int a = (x >> bit) & 1, b = (y >> bit) & 1;
        rank = rank * 4 + ((a ^ b) * 2 + b);
    }
    return (static_cast<float>(rank) + 0.5f) / 64;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: clear DATA_DIR");
    const std::string folder = argv[1];
    const sky::Clouds clouds;
    Image full(kSize, kSize);
    parallelFor(kSize, [&](int y) {
        constexpr int kGrid = 3;
        for (int x = 0; x < kSize; ++x) {
            Vec3 sum;
            for (int i = 0; i < kGrid * kGrid; ++i)
                sum += look(static_cast<float>(x) + (static_cast<float>(i % kGrid) + 0.5f) / kGrid,
                            static_cast<float>(y) + (static_cast<float>(i / kGrid) + 0.5f) / kGrid,
                            clouds, hashUnit(x, y, i, 78));
            full.at(x, y).colour = sky::grained(sum / (kGrid * kGrid), x, y);
        }
    });
    saveBmp32(full, folder + "/sky_clear_32.nlt");

    Image coarse = full;
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            Vec3& c = coarse.at(x, y).colour;
            const float t = bayer(x, y);
            c = {dithered(c.x, 5, t), dithered(c.y, 6, t), dithered(c.z, 5, t)};
        }
    saveBmp24(coarse, folder + "/sky_clear_16.nlt");
}
