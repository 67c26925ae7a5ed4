// Turns a ray-traced picture into a card of the scene: half the size, blue below the waterline,
// foam along it, an empty rim and colour under the transparency.
//
// cutout DATA_DIR FILE PICTURE.png WATERLINE DEPTH HAZE
//   WATERLINE  as a share of the height, from the top
//   DEPTH      how far down the water lets things be seen, as a share of the height
//   HAZE       how much of the air's colour lies over it, 0..1
#include <cstdlib>
#include <string>

#include "common/image.h"
#include "common/noise.h"
#include "sea/colours.h"

using namespace art;

namespace {

constexpr int kRim = 4;

void sink(Image& image, float waterline, float depth) {
    const float w = static_cast<float>(image.width()), h = static_cast<float>(image.height());
    const Vec3 shallow = rgb(128, 219, 214);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            Pixel& p = image.at(x, y);
            const float u = (static_cast<float>(x) + 0.5f) / w;
            const float ripple = fractalNoise({u * 40, 0.5f, 0.5f}, 3, 5);
            const float down = (static_cast<float>(y) + 0.5f) / h - waterline - 0.0008f * ripple;
            if (p.alpha <= 0)
                continue;
            if (down > 0) {
                const float k = clamp01(down / depth);
                p.colour = mix(p.colour, mix(shallow, sea::kFarSea, k), clamp01(0.45f + 0.75f * k));
                p.alpha *= (1 - k) * (1 - 0.5f * k) * 0.92f;
            }
            const float off = down * h / 1.6f;
            const float broken = 0.6f + 0.8f * valueNoise({u * 51, 0.5f, 0.5f}, 3);
            const float foam = clamp01(0.85f * std::exp(-off * off) * broken);
            p.colour = mix(p.colour, Vec3{1, 1, 1}, foam * clamp01(p.alpha * 3));
        }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 7)
        fail("usage: cutout DATA_DIR FILE PICTURE.png WATERLINE DEPTH HAZE");
    Image image = halved(loadPng(argv[3]));
    const float haze = static_cast<float>(std::atof(argv[6]));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.at(x, y).colour = mix(image.at(x, y).colour, rgb(172, 212, 232), haze);
    sink(image, static_cast<float>(std::atof(argv[4])), static_cast<float>(std::atof(argv[5])));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (std::min(std::min(x, y), std::min(image.width() - 1 - x, image.height() - 1 - y)) <
                kRim)
                image.at(x, y).alpha = 0;
    bleed(image, 24);
    saveBmp32(image, std::string(argv[1]) + "/" + argv[2]);
}
