// The cloudy sky seen from below: the centre of the picture is the zenith.
#include <string>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "sky/air.h"
#include "sky/clouds.h"
#include "sky/dome.h"

using namespace art;

namespace {

/// The camera never sees higher than 34 degrees.
constexpr float kHighest = 37 * kPi / 180;
/// The bases of the farthest clouds, up to here, are thin lines.
constexpr float kFlatClouds = 3.5f * kPi / 180;
/// The sea's streaks, down to here, are thin lines too.
constexpr float kStreakedSea = 4.5f * kPi / 180;
/// The distant clouds up to here are finer than a texel.
constexpr float kFarClouds = 7 * kPi / 180;
/// Turns the clouds so that the saver starts with a great one beside the island.
constexpr float kFirstView = -228;

Vec3 overhead(Vec3 direction, float elevation, const sky::Clouds& clouds, float texel,
              float chance) {
    Vec3 colour = mix(sky::air(elevation), rgb(242, 247, 251), 0.6f * sky::wisps(direction));
    if (elevation < kHighest) {
        const sky::Clouds::Sight sight = clouds.look(rotateY(direction, kFirstView), texel, chance);
        colour = colour * (1 - sight.opacity) + sight.colour;
    }
    return colour;
}

/// Mean colour of a texel. Near the horizon it is made of many samples, so that the line is exact.
Vec3 texel(int x, int y, int size, const sky::Clouds& clouds) {
    const auto place = [&](float dx, float dy) {
        return sky::point((static_cast<float>(x) + dx) / static_cast<float>(size),
                          (static_cast<float>(y) + dy) / static_cast<float>(size));
    };
    const Vec3 middle = place(0.5f, 0.5f);
    const float elevation = std::asin(normalize(middle).y);
    const float angle = sky::kWidth / static_cast<float>(size) / length(middle);
    const int grid = std::fabs(elevation) < 2 * angle                       ? 8
                     : elevation > -kStreakedSea && elevation < kFlatClouds ? 4
                     : elevation > 0 && elevation < kFarClouds              ? 2
                                                                            : 1;
    // Lines that run aslant over the texels, as flat bases and streaks on the sea do, would be a
    // comb: where they are thin, samples reach into the neighbours.
    const float reach = grid > 2 ? (elevation < 2 * angle ? 2.0f : 1.7f) : 1;
    Vec3 sum;
    for (int j = 0; j < grid; ++j)
        for (int i = 0; i < grid; ++i) {
            const auto within = [&](int k) {
                return 0.5f +
                       reach * ((static_cast<float>(k) + 0.5f) / static_cast<float>(grid) - 0.5f);
            };
            const Vec3 direction = normalize(place(within(i), within(j)));
            const float e = std::asin(direction.y);
            sum += e < 0 ? sky::ruffledSea(direction)
                         : overhead(direction, e, clouds, angle, hashUnit(x, y, j * grid + i, 77));
        }
    return sum / static_cast<float>(grid * grid);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3)
        fail("usage: cloudy DATA_DIR [SIZE]");
    const int size = argc == 3 ? std::atoi(argv[2]) : 2048;
    const sky::Clouds clouds;
    Image image(size, size);
    parallelFor(size, [&](int y) {
        for (int x = 0; x < size; ++x)
            image.at(x, y).colour = sky::grained(texel(x, y, size, clouds), x, y);
    });
    saveBmp24(image, std::string(argv[1]) + "/sky_cloudy.nlt");
}
