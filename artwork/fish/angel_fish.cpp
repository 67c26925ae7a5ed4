// The school's angel fish, a skin of the reef fish: yellow before, deep blue behind, a yellow tail.
#include "fish/reef_fish.h"

using namespace art;

namespace {

const Vec3 kYellow = rgb(255, 206, 34), kBlue = rgb(26, 52, 168);

/// 1 in the blue rear half; the border bows forward in the middle.
float rear(Vec2 side) {
    return smoothstep(-0.012f, 0.012f, side.x - 0.445f - 0.7f * side.y * side.y);
}

Vec3 bodyColour(const BodyPoint& p) {
    const Vec2 side{p.along, p.height};
    Vec3 yellow = mix(rgb(255, 226, 120), kYellow, smoothstep(-0.9f, -0.2f, p.rise));
    yellow = mix(yellow, rgb(226, 156, 16), smoothstep(0.35f, 1.0f, p.rise));
    Vec3 blue = mix(kBlue, rgb(14, 26, 104), smoothstep(0.2f, 1.0f, p.rise));
    blue = mix(blue, rgb(56, 96, 220), 0.6f * smoothstep(0.1f, -0.9f, p.rise));
    Vec3 c = mix(yellow, blue, rear(side));
    // A blue saddle over the forehead down to the eye.
    const float saddle = length(Vec2{(p.along - 0.135f) / 0.040f, (p.height - 0.105f) / 0.058f});
    c = mix(c, kBlue, 0.9f * smoothstep(1.1f, 0.85f, saddle));
    c = mix(c, rgb(60, 90, 200), 0.7f * smoothstep(0.035f, 0.015f, p.along));  // blue lips
    return mix(c, kYellow, smoothstep(-0.01f, 0.01f, p.along - 0.925f));
}

Pixel finColour(const FinPoint& p) {
    if (p.part == Part::TAIL)
        return finPixel(p, {rgb(255, 208, 40), rgb(255, 236, 140), 12, 0.96f, 0.82f, 0.15f, 0.02f});
    if (p.part == Part::PECTORAL || p.part == Part::PELVIC)
        return finPixel(p, {rgb(255, 206, 50), rgb(255, 236, 150), 8, 0.90f, 0.66f});
    const float blue = rear(p.side);
    const Vec3 base = mix(kYellow, rgb(20, 40, 150), blue);
    return finPixel(
        p, {base, mix(rgb(255, 232, 120), rgb(80, 150, 255), blue), 18, 0.96f, 0.88f, 0.08f});
}

}  // namespace

int main(int, char** arguments) {
    Skin skin{
        bodyColour, finColour, reefFishDetail(), {rgb(255, 190, 60), rgb(120, 80, 30), 0.55f}};
    skin.detail.scale_depth = 0.10f;
    saveSkin(reefFish(), skin, 256, std::string(arguments[1]) + "/models/reeffishes/anglefish.nlt");
}
