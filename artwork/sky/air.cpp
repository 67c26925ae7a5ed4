#include "sky/air.h"

#include <iterator>

#include "common/noise.h"
#include "sea/colours.h"

using namespace art;

namespace sky {

Vec3 air(float elevation) {
    struct Step {
        float degrees;
        Vec3 colour;
    };
    static const Step kSteps[] = {
        {0, rgb(209, 233, 241)},  {3, rgb(186, 224, 238)}, {7, rgb(152, 208, 230)},
        {15, rgb(100, 172, 226)}, {30, rgb(62, 136, 212)}, {55, rgb(36, 98, 188)},
        {90, rgb(23, 77, 168)},
    };
    const float degrees = std::max(0.0f, elevation) * 180 / kPi;
    const Step* above = kSteps + 1;
    while (above->degrees < degrees && above + 1 < std::end(kSteps))
        ++above;
    const Step& below = above[-1];
    return mix(below.colour, above->colour,
               clamp01((degrees - below.degrees) / (above->degrees - below.degrees)));
}

Vec3 haze() { return rgb(205, 230, 240); }

Vec3 sea(float elevation) {
    const float down = -elevation * 180 / kPi;
    const Vec3 far = mix(rgb(176, 218, 236), ::sea::kHorizonSea, smoothstep(-0.05f, 0.16f, down));
    const Vec3 open = mix(far, ::sea::kFarSea, smoothstep(0.2f, 2.0f, down));
    return mix(open, ::sea::kFog, smoothstep(3, 9.5f, down));
}

Vec3 ruffledSea(Vec3 direction) {
    const float elevation = std::asin(direction.y), down = -elevation * 180 / kPi;
    const Vec3 plain = sea(elevation);
    // Long streaks where the wind ruffles it, the thinner the farther.
    const Vec3 ahead = normalize({direction.x, 0, direction.z});
    const float streak =
        fractalNoise({ahead.x * 7, ahead.z * 7, 5.5f * std::sqrt(std::max(0.0f, down))}, 2, 340);
    const float here = smoothstep(0.25f, 0.6f, down) * (1 - smoothstep(2.2f, 4, down));
    const Vec3 ruffled = mix(plain, rgb(150, 206, 228), 0.30f);
    const Vec3 smooth = plain * Vec3{0.86f, 0.93f, 0.95f};
    return mix(plain, streak > 0 ? ruffled : smooth,
               here * smoothstep(0.04f, 0.42f, std::fabs(streak)));
}

float wisps(Vec3 direction) {
    const float reach = 9 / std::max(direction.y, 0.02f);
    const float x = direction.x * reach, z = direction.z * reach;
    const float bend = fractalNoise({x * 0.05f, z * 0.05f, 0.5f}, 3, 300) * 4;
    const float strands =
        fractalNoise({x * 0.055f + bend * 0.2f, (z + bend) * 0.16f, 0.5f}, 5, 310);
    const float fields = fractalNoise({x * 0.02f, z * 0.02f, 0.5f}, 2, 333);
    return smoothstep(0.02f, 0.55f, strands) * smoothstep(-0.15f, 0.4f, fields) *
           smoothstep(0.03f, 0.2f, direction.y);
}

Vec3 grained(Vec3 colour, int x, int y) {
    const float grain = (hashUnit(x, y, 0, 5) - 0.5f) / 255;
    return colour + Vec3{grain, grain, grain};
}

}  // namespace sky
