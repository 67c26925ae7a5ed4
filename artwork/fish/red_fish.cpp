// The reef fish itself and its red skin: orange-red, pale belly, a violet stripe over the cheek.
#include "fish/reef_fish.h"

using namespace art;

namespace {

Vec3 bodyColour(const BodyPoint& p) {
    const Vec3 back = rgb(178, 30, 20), side = rgb(246, 92, 36), belly = rgb(255, 200, 150);
    Vec3 c = mix(belly, side, smoothstep(-1.0f, -0.10f, p.rise));
    c = mix(c, back, smoothstep(0.30f, 0.98f, p.rise));
    // Every row of scales carries a golden dash.
    const float row = 0.5f + 0.5f * std::sin(p.girth / 0.030f * 2 * kPi);
    c = mix(c, rgb(255, 206, 120),
            0.22f * row * smoothstep(0.26f, 0.40f, p.along) * smoothstep(-0.9f, -0.4f, p.rise) *
                smoothstep(0.85f, 0.4f, p.rise));
    const float stripe = p.height - (0.030f - 0.20f * (p.along - 0.13f));
    c = mix(c, rgb(204, 96, 206),
            0.80f * std::exp(-stripe * stripe / (2 * 0.011f * 0.011f)) *
                band(p.along, 0.15f, 0.34f, 0.03f));
    const float second = stripe + 0.034f;
    c = mix(c, rgb(255, 190, 90),
            0.5f * std::exp(-second * second / (2 * 0.009f * 0.009f)) *
                band(p.along, 0.12f, 0.30f, 0.03f));
    return mix(c, rgb(228, 64, 40), smoothstep(0.84f, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL: {
            Pixel tail =
                finPixel(p, {rgb(232, 66, 40), rgb(255, 150, 130), 12, 0.96f, 0.80f, 0.10f, 0.03f});
            const float lobe = std::fabs(p.u - 0.5f) * 2;
            tail.colour =
                mix(tail.colour, rgb(186, 40, 96), 0.75f * smoothstep(0.86f, 0.97f, lobe));
            return tail;
        }
        case Part::DORSAL:
            return finPixel(
                p, {rgb(238, 84, 36), rgb(255, 186, 120), 18, 0.95f, 0.78f, 0.10f, 0.02f, 0.52f});
        case Part::ANAL:
            return finPixel(p,
                            {rgb(240, 90, 44), rgb(206, 84, 160), 12, 0.95f, 0.78f, 0.12f, 0.04f});
        case Part::PECTORAL:
            return finPixel(p, {rgb(255, 150, 90), rgb(255, 196, 140), 8, 0.82f, 0.52f});
        default:
            return finPixel(p, {rgb(248, 128, 70), rgb(255, 214, 170), 9, 0.95f, 0.80f});
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{
        bodyColour, finColour, reefFishDetail(), {rgb(255, 206, 90), rgb(206, 90, 40), 0.52f}};
    skin.detail.scale_depth = 0.16f;
    const Fish fish = reefFish();
    saveFish(fish, 10, folder + "rfish.nlm");
    saveSkin(fish, skin, 256, folder + "rotfish.nlt");
}
