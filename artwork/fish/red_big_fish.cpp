// The red big fish: a snapper with a steep forehead, rosy scales and a pale belly.
#include "fish/skin.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f;
    f.body.top = {{0, -0.016f},    {0.02f, 0.022f}, {0.05f, 0.066f}, {0.11f, 0.134f},
                  {0.20f, 0.196f}, {0.32f, 0.226f}, {0.48f, 0.212f}, {0.70f, 0.128f},
                  {0.89f, 0.062f}, {1.0f, 0.054f}};
    f.body.bottom = {{0, -0.066f},     {0.02f, -0.084f}, {0.05f, -0.100f}, {0.11f, -0.124f},
                     {0.20f, -0.152f}, {0.32f, -0.172f}, {0.48f, -0.164f}, {0.70f, -0.104f},
                     {0.89f, -0.056f}, {1.0f, -0.050f}};
    f.body.width = {{0, 0.022f},     {0.03f, 0.050f}, {0.12f, 0.084f}, {0.28f, 0.106f},
                    {0.50f, 0.090f}, {0.76f, 0.048f}, {0.94f, 0.021f}, {1.03f, 0}};
    f.body.widest = 0.48f;
    f.body.keel = 1.08f;
    f.body.stations = {0,     0.015f, 0.045f, 0.09f, 0.15f, 0.22f, 0.30f, 0.39f,
                       0.49f, 0.59f,  0.69f,  0.79f, 0.89f, 0.96f, 1.03f};
    f.body.half_sides = 9;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.955f, 0.052f}, {0.970f, 0}, {0.955f, -0.048f}};
    tail.margin = {
        {1.270f, 0.220f}, {1.205f, 0.105f}, {1.165f, 0}, {1.205f, -0.102f}, {1.270f, -0.215f}};
    tail.columns = 12;
    tail.rows = 3;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {
        {0.23f, 0.190f}, {0.40f, 0.205f}, {0.58f, 0.160f}, {0.74f, 0.095f}, {0.88f, 0.052f}};
    dorsal.margin = {{0.255f, 0.262f}, {0.33f, 0.318f}, {0.45f, 0.302f},  {0.58f, 0.252f},
                     {0.70f, 0.232f},  {0.81f, 0.212f}, {0.885f, 0.170f}, {0.915f, 0.100f}};
    dorsal.columns = 16;
    dorsal.rows = 2;
    dorsal.ripple = 0.010f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.60f, -0.132f}, {0.73f, -0.090f}, {0.87f, -0.050f}};
    anal.margin = {{0.630f, -0.205f},
                   {0.70f, -0.252f},
                   {0.82f, -0.212f},
                   {0.890f, -0.150f},
                   {0.910f, -0.090f}};
    anal.columns = 8;
    anal.rows = 2;
    anal.ripple = 0.010f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.29f, -0.150f}, {0.36f, -0.160f}};
    pelvic.margin = {{0.435f, -0.305f}, {0.475f, -0.280f}, {0.460f, -0.205f}};
    pelvic.columns = 5;
    pelvic.rows = 2;
    pelvic.paired = true;
    pelvic.splay = 24;
    pelvic.paddle = 6;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.290f, -0.035f}, {0.302f, -0.092f}};
    pectoral.margin = {{0.520f, 0.000f}, {0.545f, -0.055f}, {0.480f, -0.115f}, {0.395f, -0.150f}};
    pectoral.columns = 6;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 32;
    pectoral.paddle = 18;

    f.fins = {tail, dorsal, anal, pelvic, pectoral};
    f.eye = {{0.132f, 0.060f}, 0.030f, 0.30f};
    f.swim = {19, 0.75f, 0.08f};
    f.length = 47;
    f.centre = 0.56f;
    return f;
}

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = mix(rgb(255, 222, 206), rgb(236, 104, 88), smoothstep(-0.95f, -0.05f, p.rise));
    c = mix(c, rgb(204, 58, 52), smoothstep(0.05f, 0.75f, p.rise));
    c = mix(c, rgb(142, 34, 38), smoothstep(0.70f, 1.0f, p.rise));
    // Each row of scales has a pale middle, which draws thin lines along the flank.
    const float row = 0.5f + 0.5f * std::sin(p.girth / 0.029f * 2 * kPi);
    c = mix(c, rgb(255, 196, 180),
            0.20f * row * smoothstep(0.30f, 0.40f, p.along) * smoothstep(0.8f, 0.3f, p.rise));
    c = mix(c, rgb(150, 40, 46),
            0.35f * smoothstep(0.13f, 0.0f, p.along) * smoothstep(-0.3f, 0.5f, p.rise));
    return mix(c, rgb(206, 62, 56), smoothstep(0.84f, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL: {
            Pixel tail =
                finPixel(p, {rgb(206, 62, 56), rgb(236, 110, 90), 22, 0.97f, 0.84f, 0.10f, 0.03f});
            tail.colour = mix(tail.colour, rgb(110, 26, 38), 0.6f * band(p.v, 0.86f, 1.0f, 0.05f));
            return tail;
        }
        case Part::DORSAL:
            return finPixel(
                p, {rgb(200, 56, 50), rgb(240, 150, 96), 24, 0.97f, 0.80f, 0.10f, 0.05f, 0.55f});
        case Part::PECTORAL:
            return finPixel(p, {rgb(240, 130, 110), rgb(250, 170, 140), 13, 0.86f, 0.54f, 0.2f});
        default:
            return finPixel(p,
                            {rgb(222, 84, 70), rgb(250, 190, 160), 15, 0.97f, 0.80f, 0.12f, 0.04f});
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(255, 150, 70), rgb(190, 40, 30), 0.52f}};
    skin.detail.scale = 0.029f;
    skin.detail.scale_depth = 0.17f;
    skin.detail.scale_tint = 0.07f;
    skin.detail.gill = {0.270f, -0.01f};
    skin.detail.gill_height = 0.140f;
    skin.detail.mouth_front = {-0.02f, -0.036f};
    skin.detail.mouth_corner = {0.080f, -0.068f};
    skin.detail.gloss = 0.14f;
    const Fish fish = anatomy();
    saveFish(fish, 20, folder + "rbig.nlm");
    saveSkin(fish, skin, 512, folder + "rbig.nlt");
}
