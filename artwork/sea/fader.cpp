// The slope at the far end of the lagoon that hides where the floor ends: 60 x 14 units, its lower
// edge at z 34 in the fog, its upper edge at z 46 on the surface.
#include "common/image.h"
#include "sea/colours.h"

using namespace art;

/// From here up it hides everything: the floor ends just below, and nothing lies behind.
constexpr float kOpaque = 0.17f;

int main(int argc, char** argv) {
    if (argc != 2)
        fail("usage: fader DATA_DIR");
    // Tall, since the texture repeats and the opaque top bleeds half a texel into the lower edge.
    Image image(8, 512);
    for (int y = 0; y < image.height(); ++y) {
        const float up = 1 - (static_cast<float>(y) + 0.5f) / static_cast<float>(image.height());
        const Pixel pixel{mix(sea::kFog, sea::kFarSea, smoothstep(0.1f, 0.95f, up)),
                          smoothstep(0.003f, kOpaque, up)};
        for (int x = 0; x < image.width(); ++x)
            image.at(x, y) = pixel;
    }
    saveBmp32(image, std::string(argv[1]) + "/gwfader.nlt");
}
