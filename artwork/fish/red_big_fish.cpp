// The red big fish: a snapper with a steep forehead, rosy scales and a pale belly.
#include "fish/big_fish.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f = bigFish();
    f.body.top = {{0, -0.016f},    {0.02f, 0.022f}, {0.05f, 0.066f}, {0.11f, 0.134f},
                  {0.20f, 0.196f}, {0.32f, 0.226f}, {0.48f, 0.212f}, {0.70f, 0.128f},
                  {0.89f, 0.062f}, {1.0f, 0.054f}};
    f.body.bottom = {{0, -0.066f},     {0.02f, -0.084f}, {0.05f, -0.100f}, {0.11f, -0.124f},
                     {0.20f, -0.152f}, {0.32f, -0.172f}, {0.48f, -0.164f}, {0.70f, -0.104f},
                     {0.89f, -0.056f}, {1.0f, -0.050f}};
    f.body.widest = 0.48f;
    f.body.keel = 1.08f;
    Fin& tail = finOf(f, Part::TAIL);
    tail.front = tail.rear = {0.16f, 0.20f};
    tail.margin = {{1.275f, 0.225f},  {1.235f, 0.140f},  {1.188f, 0.066f}, {1.168f, 0},
                   {1.188f, -0.064f}, {1.235f, -0.137f}, {1.275f, -0.220f}};
    Fin& dorsal = finOf(f, Part::DORSAL);
    dorsal.root = {
        {0.23f, 0.190f}, {0.40f, 0.205f}, {0.58f, 0.160f}, {0.74f, 0.095f}, {0.88f, 0.052f}};
    dorsal.margin = {{0.255f, 0.262f}, {0.33f, 0.318f}, {0.45f, 0.302f},  {0.58f, 0.252f},
                     {0.70f, 0.232f},  {0.81f, 0.212f}, {0.885f, 0.170f}, {0.915f, 0.100f}};
    // Long and pointed.
    finOf(f, Part::PECTORAL).margin = {
        {0.520f, 0.000f}, {0.545f, -0.055f}, {0.480f, -0.115f}, {0.395f, -0.150f}};
    f.eye = {{0.132f, 0.060f}, 0.036f, 0.30f};
    f.length = 47;
    f.shadow.depth = 16.4f;
    return f;
}

Vec3 bodyColour(const BodyPoint& p) {
    // Hardly any green and blue in it: the far water adds them, until a rosy fish is grey.
    // Its red is as dark as that water: a pale belly and a dark back keep it round.
    Vec3 c = mix(rgb(255, 250, 240), rgb(255, 214, 190), smoothstep(-0.70f, -0.28f, p.rise));
    c = mix(c, rgb(255, 112, 78), smoothstep(-0.36f, 0.08f, p.rise));
    c = mix(c, rgb(240, 34, 18), smoothstep(0.0f, 0.30f, p.rise));
    c = mix(c, rgb(172, 8, 10), smoothstep(0.28f, 0.56f, p.rise));
    c = mix(c, rgb(84, 2, 8), smoothstep(0.46f, 0.86f, p.rise));
    // Broad saddles, barely there, break up the flank; golden on the cheek.
    const float saddles = smoothstep(0.0f, 0.9f, std::sin(p.along * 25 + 1.2f + 3 * p.height));
    c = mix(c, rgb(160, 4, 10),
            0.24f * saddles * smoothstep(-0.5f, 0.4f, p.rise) * smoothstep(0.24f, 0.34f, p.along));
    c = mix(c, rgb(255, 150, 56),
            0.36f * smoothstep(0.27f, 0.16f, p.along) * band(p.rise, -0.40f, 0.25f, 0.15f));
    // Each row of scales has a pale middle, which draws thin lines along the flank.
    const float row = 0.5f + 0.5f * std::sin(p.girth / 0.029f * 2 * kPi);
    c = mix(c, rgb(255, 150, 104),
            0.18f * row * smoothstep(0.30f, 0.40f, p.along) * smoothstep(0.8f, 0.3f, p.rise));
    c = mix(c, rgb(172, 10, 14),
            0.35f * smoothstep(0.13f, 0.0f, p.along) * smoothstep(-0.3f, 0.5f, p.rise));
    return mix(c, rgb(246, 36, 20), smoothstep(0.84f, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL: {
            Pixel tail =
                finPixel(p, {rgb(242, 40, 22), rgb(255, 146, 98), 16, 0.97f, 0.86f, 0.16f, 0.03f});
            tail.colour = mix(tail.colour, rgb(112, 10, 18), 0.4f * band(p.v, 0.78f, 0.94f, 0.12f));
            return tail;
        }
        case Part::DORSAL:
            return finPixel(
                p, {rgb(238, 36, 20), rgb(255, 110, 70), 16, 0.97f, 0.86f, 0.20f, 0.03f, 0.55f});
        case Part::PECTORAL:
            return finPixel(p, {rgb(255, 128, 78), rgb(255, 190, 140), 10, 0.90f, 0.66f, 0.4f});
        default:
            return finPixel(p,
                            {rgb(246, 52, 28), rgb(255, 176, 128), 15, 0.97f, 0.82f, 0.12f, 0.04f});
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{
        bodyColour, finColour, bigFishDetail(), {rgb(255, 226, 130), rgb(255, 170, 70), 0.56f}};
    skin.detail.scale = 0.029f;
    skin.detail.scale_depth = 0.20f;
    skin.detail.scale_tint = 0.07f;
    skin.detail.pearl = 0.12f;
    skin.detail.gill = {0.270f, -0.01f};
    skin.detail.gill_height = 0.140f;
    skin.detail.mouth_front = {-0.02f, -0.036f};
    skin.detail.mouth_corner = {0.080f, -0.068f};
    skin.detail.lips = 0.014f;
    skin.detail.lip_colour = rgb(240, 150, 130);
    skin.detail.lip_flush = 0.5f;
    skin.detail.gloss = 0.15f;
    const Fish fish = anatomy();
    saveFish(fish, 20, folder + "rbig.nlm");
    skin.shade = 0.64f;  // It swims just above the sand.
    saveSkin(fish, skin, 512, folder + "rbig.nlt");
}
