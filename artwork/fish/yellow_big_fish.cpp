// The grey big fish: a heavy-lipped grouper shape, golden lines along grey flanks, yellow fins.
#include "fish/skin.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f;
    f.body.top = {{0, 0.004f},     {0.02f, 0.032f}, {0.06f, 0.072f}, {0.13f, 0.128f},
                  {0.24f, 0.184f}, {0.38f, 0.208f}, {0.54f, 0.190f}, {0.74f, 0.114f},
                  {0.91f, 0.058f}, {1.0f, 0.054f}};
    f.body.bottom = {{0, -0.056f},     {0.02f, -0.078f}, {0.06f, -0.104f}, {0.13f, -0.134f},
                     {0.24f, -0.166f}, {0.38f, -0.182f}, {0.54f, -0.168f}, {0.74f, -0.098f},
                     {0.91f, -0.054f}, {1.0f, -0.050f}};
    f.body.width = {{0, 0.026f},     {0.03f, 0.052f}, {0.12f, 0.088f}, {0.28f, 0.112f},
                    {0.50f, 0.096f}, {0.76f, 0.050f}, {0.94f, 0.022f}, {1.03f, 0}};
    f.body.widest = 0.5f;
    f.body.keel = 1.02f;
    f.body.stations = {0,     0.015f, 0.045f, 0.09f, 0.15f, 0.22f, 0.30f, 0.39f,
                       0.49f, 0.59f,  0.69f,  0.79f, 0.89f, 0.96f, 1.03f};
    f.body.half_sides = 9;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.955f, 0.052f}, {0.970f, 0}, {0.955f, -0.048f}};
    tail.margin = {
        {1.275f, 0.195f}, {1.245f, 0.095f}, {1.215f, 0}, {1.245f, -0.092f}, {1.275f, -0.190f}};
    tail.columns = 12;
    tail.rows = 3;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {
        {0.25f, 0.165f}, {0.42f, 0.192f}, {0.60f, 0.155f}, {0.76f, 0.090f}, {0.89f, 0.052f}};
    dorsal.margin = {{0.275f, 0.235f}, {0.34f, 0.292f}, {0.46f, 0.288f},  {0.58f, 0.252f},
                     {0.70f, 0.258f},  {0.82f, 0.238f}, {0.900f, 0.180f}, {0.925f, 0.105f}};
    dorsal.columns = 16;
    dorsal.rows = 2;
    dorsal.ripple = 0.010f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.60f, -0.138f}, {0.74f, -0.090f}, {0.88f, -0.050f}};
    anal.margin = {{0.630f, -0.215f},
                   {0.72f, -0.258f},
                   {0.83f, -0.230f},
                   {0.900f, -0.165f},
                   {0.920f, -0.095f}};
    anal.columns = 9;
    anal.rows = 2;
    anal.ripple = 0.010f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.30f, -0.155f}, {0.37f, -0.168f}};
    pelvic.margin = {{0.445f, -0.315f}, {0.485f, -0.285f}, {0.470f, -0.210f}};
    pelvic.columns = 5;
    pelvic.rows = 2;
    pelvic.paired = true;
    pelvic.splay = 24;
    pelvic.paddle = 6;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.300f, -0.025f}, {0.312f, -0.090f}};
    pectoral.margin = {{0.470f, 0.020f}, {0.520f, -0.050f}, {0.490f, -0.125f}, {0.410f, -0.170f}};
    pectoral.columns = 6;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 34;
    pectoral.paddle = 20;

    f.fins = {tail, dorsal, anal, pelvic, pectoral};
    f.eye = {{0.130f, 0.062f}, 0.024f, 0.35f};
    f.swim = {19, 0.75f, 0.08f};
    f.length = 62;
    f.centre = 0.56f;
    return f;
}

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = mix(rgb(244, 244, 232), rgb(186, 202, 206), smoothstep(-0.9f, -0.1f, p.rise));
    c = mix(c, rgb(108, 128, 142), smoothstep(0.1f, 0.8f, p.rise));
    c = mix(c, rgb(70, 88, 102), smoothstep(0.75f, 1.0f, p.rise));
    // Golden lines follow the scale rows, rising a little towards the back.
    const float row =
        0.5f + 0.5f * std::sin((p.girth - 0.05f * (p.along - 0.5f)) / 0.036f * 2 * kPi);
    const float lined = band(p.along, 0.33f, 0.90f, 0.05f) * smoothstep(-0.8f, -0.2f, p.rise);
    c = mix(c, rgb(226, 186, 78), 0.50f * row * row * lined);
    // Head: wavering blue-grey lines over a golden flush, and yellow lips.
    const float head = smoothstep(0.28f, 0.22f, p.along);
    const float worm = std::sin(p.girth * 210 + 2.2f * std::sin(p.along * 60 + p.girth * 30));
    c = mix(c, rgb(214, 190, 120), 0.45f * head);
    c = mix(c, rgb(110, 140, 168),
            0.40f * head * smoothstep(0.2f, 0.8f, worm) * smoothstep(-0.5f, 0.0f, p.rise) *
                smoothstep(0.05f, 0.08f, p.along));
    c = mix(c, rgb(236, 200, 90), 0.75f * smoothstep(0.055f, 0.025f, p.along));
    return mix(c, rgb(232, 186, 52), smoothstep(0.86f + 0.5f * p.height * p.height, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL: {
            Pixel tail =
                finPixel(p, {rgb(232, 184, 44), rgb(255, 222, 96), 22, 0.97f, 0.84f, 0.10f, 0.03f});
            tail.colour =
                mix(tail.colour, rgb(120, 96, 40), 0.45f * band(p.v, 0.80f, 0.90f, 0.05f));
            return tail;
        }
        case Part::DORSAL: {
            Pixel fin = finPixel(
                p, {rgb(232, 188, 54), rgb(255, 226, 110), 26, 0.97f, 0.84f, 0.10f, 0.05f, 0.55f});
            // Rows of grey dashes between the rays.
            const float dash = smoothstep(0.5f, 0.9f, std::sin(p.v * 16)) *
                               smoothstep(0.0f, -0.6f, std::cos(p.u * 26 * 2 * kPi));
            fin.colour = mix(fin.colour, rgb(150, 140, 110), 0.5f * dash);
            return fin;
        }
        case Part::PECTORAL:
            return finPixel(p, {rgb(240, 204, 84), rgb(255, 228, 130), 13, 0.88f, 0.58f, 0.2f});
        default:
            return finPixel(
                p, {rgb(236, 188, 44), rgb(255, 224, 110), 15, 0.97f, 0.84f, 0.12f, 0.04f});
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(252, 220, 100), rgb(150, 120, 50), 0.50f}};
    skin.detail.scale = 0.025f;
    skin.detail.scale_depth = 0.15f;
    skin.detail.scale_tint = 0.06f;
    skin.detail.gill = {0.282f, -0.01f};
    skin.detail.gill_height = 0.135f;
    skin.detail.mouth_front = {-0.02f, -0.024f};
    skin.detail.mouth_corner = {0.088f, -0.060f};
    skin.detail.gloss = 0.15f;
    const Fish fish = anatomy();
    saveFish(fish, 20, folder + "ybig.nlm");
    saveSkin(fish, skin, 512, folder + "ybig.nlt");
}
