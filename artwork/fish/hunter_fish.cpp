// The hunter: a long red-brown grouper under blue spots, with a big mouth and a round tail.
#include "fish/skin.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f;
    f.body.top = {{0, -0.004f},    {0.02f, 0.018f}, {0.07f, 0.054f}, {0.15f, 0.096f},
                  {0.26f, 0.142f}, {0.40f, 0.164f}, {0.56f, 0.152f}, {0.76f, 0.100f},
                  {0.92f, 0.068f}, {1.0f, 0.066f}};
    f.body.bottom = {{0, -0.060f},     {0.02f, -0.076f}, {0.07f, -0.100f}, {0.15f, -0.126f},
                     {0.26f, -0.148f}, {0.40f, -0.154f}, {0.56f, -0.136f}, {0.76f, -0.086f},
                     {0.92f, -0.060f}, {1.0f, -0.060f}};
    f.body.width = {{0, 0.022f},     {0.03f, 0.050f}, {0.12f, 0.086f}, {0.28f, 0.108f},
                    {0.50f, 0.094f}, {0.76f, 0.052f}, {0.94f, 0.024f}, {1.03f, 0}};
    f.body.widest = 0.52f;
    f.body.keel = 1.0f;
    f.body.stations = {0,     0.02f, 0.06f, 0.12f, 0.19f, 0.27f, 0.36f,
                       0.46f, 0.56f, 0.66f, 0.76f, 0.86f, 0.95f, 1.03f};
    f.body.half_sides = 7;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.070f}, {0.905f, 0}, {0.895f, -0.060f}};
    tail.flare = 1.3f;
    tail.margin = {
        {1.130f, 0.150f}, {1.205f, 0.115f}, {1.240f, 0.0f}, {1.205f, -0.112f}, {1.130f, -0.145f}};
    tail.front = tail.rear = {0.20f, 0.20f};
    tail.columns = 15;
    tail.rows = 3;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {
        {0.25f, 0.125f}, {0.44f, 0.150f}, {0.62f, 0.125f}, {0.78f, 0.085f}, {0.89f, 0.062f}};
    dorsal.margin = {{0.280f, 0.190f}, {0.36f, 0.235f}, {0.48f, 0.238f},  {0.60f, 0.222f},
                     {0.72f, 0.235f},  {0.84f, 0.228f}, {0.915f, 0.180f}, {0.930f, 0.110f}};
    dorsal.front = {0.22f, 0.85f};
    dorsal.rear = {0.26f, 0.75f};
    dorsal.columns = 19;
    dorsal.rows = 2;
    dorsal.ripple = 0.010f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.62f, -0.108f}, {0.74f, -0.080f}, {0.88f, -0.056f}};
    anal.margin = {{0.655f, -0.165f},
                   {0.74f, -0.215f},
                   {0.86f, -0.205f},
                   {0.920f, -0.160f},
                   {0.925f, -0.100f}};
    anal.front = {0.32f, 0.80f};
    anal.rear = {0.32f, 0.75f};
    anal.columns = 13;
    anal.rows = 2;
    anal.ripple = 0.010f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.30f, -0.130f}, {0.36f, -0.138f}};
    pelvic.margin = {{0.425f, -0.262f}, {0.465f, -0.240f}, {0.455f, -0.180f}};
    pelvic.front = {0.50f, 0.45f};
    pelvic.rear = {0.50f, 0.60f};
    pelvic.columns = 9;
    pelvic.paired = true;
    pelvic.splay = 26;
    pelvic.paddle = 4;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.305f, -0.020f}, {0.280f, -0.052f}, {0.313f, -0.082f}};
    pectoral.margin = {{0.440f, 0.040f}, {0.490f, -0.020f}, {0.482f, -0.085f}, {0.412f, -0.122f}};
    pectoral.front = {0.45f, 0.45f};
    pectoral.rear = {0.50f, 0.50f};
    pectoral.columns = 13;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 38;
    pectoral.paddle = 9;

    f.fins = {tail, dorsal, anal, pelvic, pectoral};
    f.eye = {{0.140f, 0.056f}, 0.024f, 0.4f};
    f.swim = {21, 0.85f, 0.05f, 2.2f};
    f.shadow.depth = 159;
    f.length = 50;
    f.centre = 0.56f;
    return f;
}

/// Blue spots with dark rims; gentler makes them smaller.
Vec3 spotted(Vec3 c, Vec2 side, float gentler) {
    const float d = spots(side, 0.052f, 0.0125f - gentler, 77);
    c = mix(c, rgb(72, 26, 40), 0.75f * smoothstep(1.75f, 1.15f, d));
    return mix(c, mix(rgb(96, 176, 250), rgb(170, 222, 255), smoothstep(0.6f, 0.1f, d)),
               smoothstep(1.10f, 0.85f, d));
}

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = mix(rgb(246, 158, 108), rgb(222, 88, 44), smoothstep(-0.95f, -0.15f, p.rise));
    c = mix(c, rgb(150, 48, 32), smoothstep(0.2f, 0.98f, p.rise));
    // Faint broad bars, as in fish at rest.
    c *= 1 - 0.16f * smoothstep(0.2f, 0.9f, std::sin(p.along * 34 + 0.6f)) *
                 smoothstep(-0.6f, 0.4f, p.rise);
    c *= 0.90f + 0.20f * mottle(p, 0.06f, 12);
    c = mix(c, rgb(186, 64, 38), smoothstep(0.86f, 1.0f, p.along));
    return spotted(c, {p.along, p.girth}, 0.0025f * smoothstep(0.25f, 0.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    if (p.part == Part::PECTORAL)
        return finPixel(p, {rgb(190, 84, 44), rgb(226, 130, 60), 8, 0.90f, 0.66f, 0.2f});
    const float hard = p.part == Part::DORSAL ? 0.5f : 0.0f;
    Pixel fin =
        finPixel(p, {rgb(186, 64, 38), rgb(96, 36, 60), 22, 0.97f, 0.88f, 0.12f, 0.04f, hard});
    fin.colour = spotted(fin.colour, p.side, 0.003f);
    fin.colour = mix(fin.colour, rgb(96, 150, 226), 0.8f * band(p.v, 0.93f, 0.96f, 0.02f));
    return fin;
}

}  // namespace

int main(int, char** arguments) {
    constexpr int kTurn = 20, kSwim = 20;  // frames: a sharp turn, then swimming
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(255, 170, 70), rgb(150, 60, 30), 0.50f}};
    skin.detail.scale = 0.020f;
    skin.detail.scale_depth = 0.08f;
    skin.detail.gill = {0.290f, -0.015f};
    skin.detail.gill_height = 0.115f;
    skin.detail.mouth_front = {-0.02f, -0.030f};
    skin.detail.mouth_corner = {0.105f, -0.052f};
    skin.detail.lips = 0.013f;
    const Fish fish = anatomy();

    const Bend swim = swimming(fish.swim, kSwim);
    const Bend bend = [&](float along, int frame) {
        if (frame >= kTurn)
            return swim(along, frame - kTurn);
        // Head and tail swing to the same side; the bend runs down the body and is let go again.
        const float time = static_cast<float>(frame) / kTurn;
        const float lag = clamp01(1.12f * time - 0.12f * clamp01(along));
        const float pulse = std::pow(std::sin(kPi * lag), 2.0f);
        return swim(along, frame) * (1 - 0.5f * pulse) + (0.42f - along) * 95 * pulse;
    };
    const auto paddle = [](int frame) { return static_cast<float>(frame % kSwim) / kSwim; };
    saveFish(fish, kTurn + kSwim, bend, paddle, folder + "swpfish.nlm");
    saveSkin(fish, skin, 256, folder + "swpfish.nlt");
}
