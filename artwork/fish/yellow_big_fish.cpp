// The grey big fish: a sweetlips with slate bands and golden lines on grey flanks, thick yellow
// lips and yellow fins.
#include "fish/big_fish.h"

using namespace art;

namespace {

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = mix(rgb(255, 254, 248), rgb(240, 242, 234), smoothstep(-0.8f, 0.0f, p.rise));
    c = mix(c, rgb(104, 124, 140), smoothstep(0.15f, 0.70f, p.rise));
    c = mix(c, rgb(34, 46, 60), smoothstep(0.55f, 0.90f, p.rise));
    // Slate bands rise from the head to the back, with golden lines between them; both end in
    // rows of dots towards the belly.
    const float turns = (p.girth - 0.075f * (p.along - 0.3f)) / 0.072f;
    const float wave = std::sin(turns * 2 * kPi + 0.5f * std::sin(p.along * 17));
    const float dots = 0.5f + 0.5f * std::sin(p.along * 104 + std::floor(turns) * 2.4f);
    const float round = mix(1.0f, dots, smoothstep(0.35f, -0.10f, p.rise));
    const float lined = band(p.along, 0.285f, 0.93f, 0.04f) * smoothstep(-0.60f, -0.10f, p.rise);
    c = mix(c, rgb(34, 48, 68),
            0.80f * lined * smoothstep(0.15f, 0.55f, std::max(0.0f, wave) * round));
    c = mix(c, rgb(240, 196, 74),
            0.75f * lined * smoothstep(0.35f, 0.75f, std::max(0.0f, -wave) * round));
    // A dark back over a pale flank: at a distance grey alone would be the colour of the water.
    c = mix(c, rgb(18, 28, 40), 0.87f * smoothstep(0.10f, 0.60f, p.rise));
    // Head: a golden flush with fine blue-grey lines.
    const float head = smoothstep(0.29f, 0.22f, p.along);
    const float worm = std::sin(p.girth * 190 + 2.2f * std::sin(p.along * 60 + p.girth * 30));
    c = mix(c, rgb(232, 204, 118), 0.50f * head * smoothstep(0.9f, 0.2f, p.rise));
    c = mix(c, rgb(96, 128, 160),
            0.50f * head * smoothstep(0.2f, 0.8f, worm) * smoothstep(-0.5f, 0.0f, p.rise) *
                smoothstep(0.06f, 0.10f, p.along));
    return mix(c, rgb(238, 190, 40), smoothstep(0.86f + 0.5f * p.height * p.height, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL: {
            Pixel tail =
                finPixel(p, {rgb(232, 184, 44), rgb(255, 222, 96), 16, 0.97f, 0.84f, 0.10f, 0.03f});
            tail.colour = mix(tail.colour, rgb(84, 74, 52), 0.40f * band(p.v, 0.74f, 0.91f, 0.12f));
            return tail;
        }
        case Part::DORSAL: {
            constexpr float kRays = 16;
            Pixel fin = finPixel(p, {rgb(232, 188, 54), rgb(255, 236, 150), kRays, 0.97f, 0.88f,
                                     0.20f, 0.03f, 0.55f});
            // Rows of grey dashes between the rays.
            const float dash = smoothstep(0.5f, 0.9f, std::sin(p.v * 16)) *
                               smoothstep(0.0f, -0.6f, std::cos(p.u * kRays * 2 * kPi));
            fin.colour = mix(fin.colour, rgb(150, 140, 110), 0.5f * dash);
            return fin;
        }
        case Part::PECTORAL:
            return finPixel(p, {rgb(240, 204, 84), rgb(255, 228, 130), 10, 0.88f, 0.58f, 0.2f});
        default:
            return finPixel(
                p, {rgb(236, 188, 44), rgb(255, 224, 110), 15, 0.97f, 0.84f, 0.12f, 0.04f});
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{
        bodyColour, finColour, bigFishDetail(), {rgb(255, 236, 130), rgb(246, 200, 80), 0.56f}};
    skin.detail.scale = 0.025f;
    skin.detail.scale_depth = 0.16f;
    skin.detail.scale_tint = 0.06f;
    skin.detail.lip_colour = rgb(248, 204, 86);
    skin.detail.lip_flush = 0.85f;
    skin.detail.gloss = 0.20f;
    const Fish fish = bigFish();
    saveFish(fish, 20, folder + "ybig.nlm");
    skin.shade = 0.64f;  // It swims just above the sand.
    saveSkin(fish, skin, 512, folder + "ybig.nlt");
}
