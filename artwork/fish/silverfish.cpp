// The school's slim silver fish: steel-blue back, a yellow line, mirror flanks, a forked tail.
#include "fish/skin.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f;
    f.body.top = {{0, 0.004f},     {0.03f, 0.030f}, {0.10f, 0.068f},
                  {0.22f, 0.108f}, {0.38f, 0.130f}, {0.55f, 0.122f},
                  {0.75f, 0.078f}, {0.92f, 0.036f}, {1.0f, 0.032f}};
    f.body.bottom = {{0, -0.016f},     {0.03f, -0.040f}, {0.10f, -0.078f},
                     {0.22f, -0.112f}, {0.38f, -0.132f}, {0.55f, -0.122f},
                     {0.75f, -0.074f}, {0.92f, -0.034f}, {1.0f, -0.032f}};
    f.body.width = {{0, 0.008f},     {0.04f, 0.026f}, {0.14f, 0.052f}, {0.32f, 0.068f},
                    {0.55f, 0.058f}, {0.80f, 0.028f}, {0.95f, 0.012f}, {1.02f, 0.0f}};
    f.body.widest = 0.52f;
    f.body.keel = 1.1f;
    f.body.stations = {0, 0.035f, 0.10f, 0.20f, 0.34f, 0.50f, 0.68f, 0.85f, 1.02f};
    f.body.half_sides = 5;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.040f}, {0.905f, 0}, {0.895f, -0.038f}};
    tail.flare = 1.7f;
    tail.margin = {
        {1.23f, 0.205f}, {1.150f, 0.085f}, {1.09f, 0}, {1.150f, -0.085f}, {1.23f, -0.205f}};
    tail.columns = 8;
    tail.rows = 3;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {{0.36f, 0.115f}, {0.56f, 0.105f}, {0.84f, 0.040f}};
    dorsal.margin = {{0.45f, 0.215f}, {0.52f, 0.175f}, {0.64f, 0.135f}, {0.89f, 0.062f}};
    dorsal.columns = 6;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.56f, -0.108f}, {0.70f, -0.075f}, {0.84f, -0.040f}};
    anal.margin = {{0.64f, -0.190f}, {0.70f, -0.150f}, {0.78f, -0.108f}, {0.89f, -0.062f}};
    anal.columns = 5;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.235f, -0.015f}, {0.240f, -0.050f}};
    pectoral.margin = {{0.37f, -0.030f}, {0.385f, -0.062f}, {0.335f, -0.090f}};
    pectoral.columns = 3;
    pectoral.paired = true;
    pectoral.splay = 26;
    pectoral.paddle = 16;

    f.fins = {tail, dorsal, anal, pectoral};
    f.eye = {{0.088f, 0.016f}, 0.032f, 0.3f};
    f.swim = {11.0f, 0.72f, 0.05f, 2.4f};
    f.length = 55;
    f.centre = 0.56f;
    return f;
}

Vec3 bodyColour(const BodyPoint& p) {
    // A dark stripe between a pale ridge and a bright flank outlines each fish before sand, sea and
    // corals, and before its neighbours, from above and behind too; there the ridge turns yellow.
    const Vec3 back = rgb(12, 58, 116), side = rgb(240, 249, 252), belly = rgb(255, 255, 255);
    const Vec3 yellow = rgb(255, 214, 44);
    Vec3 c = mix(belly, side, smoothstep(-0.75f, 0.05f, p.rise));
    c = mix(c, rgb(64, 176, 224), 0.80f * smoothstep(0.30f, 0.46f, p.rise));
    c = mix(c, back, smoothstep(0.40f, 0.56f, p.rise));
    const Vec3 ridge = mix(rgb(112, 204, 236), yellow, smoothstep(0.52f, 0.80f, p.along));
    const float from = mix(0.82f, 0.52f, smoothstep(0.45f, 0.95f, p.along));
    c = mix(c, ridge,
            smoothstep(from - 0.08f, from + 0.08f, p.rise) * smoothstep(0.07f, 0.19f, p.along));
    const float line = (p.rise - 0.34f) / 0.105f;
    c = mix(c, yellow, 0.92f * std::exp(-line * line / 2) * smoothstep(0.10f, 0.24f, p.along));
    // The face is darker above, and a shoulder smudge sits behind the gill.
    c = mix(c, rgb(70, 104, 124),
            0.5f * smoothstep(0.12f, 0.0f, p.along) * smoothstep(-0.4f, 0.6f, p.rise));
    return mix(c, rgb(244, 206, 64), smoothstep(0.90f, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    if (p.part == Part::TAIL) {
        Pixel tail =
            finPixel(p, {rgb(246, 204, 52), rgb(255, 226, 96), 12, 0.95f, 0.80f, 0.2f, 0.04f});
        const float lobe = std::fabs(p.u - 0.5f) * 2;
        tail.colour = mix(tail.colour, rgb(120, 120, 80), 0.35f * smoothstep(0.8f, 1.0f, lobe));
        return tail;
    }
    if (p.part == Part::PECTORAL)
        return finPixel(p, {rgb(220, 228, 220), rgb(240, 244, 236), 9, 0.70f, 0.40f});
    return finPixel(p, {rgb(196, 206, 180), rgb(238, 226, 150), 14, 0.85f, 0.50f, 0.25f, 0.08f});
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(236, 236, 214), rgb(196, 206, 206), 0.50f}};
    skin.detail.scale = 0.034f;
    skin.detail.scale_depth = 0.10f;
    skin.detail.scale_tint = 0.06f;
    skin.detail.gill = {0.215f, -0.01f};
    skin.detail.gill_height = 0.085f;
    skin.detail.mouth_front = {0.0f, -0.006f};
    skin.detail.mouth_corner = {0.035f, -0.026f};
    skin.detail.gloss = 0.20f;
    const Fish fish = anatomy();
    saveFish(fish, 10, folder + "silverfish.nlm");
    saveSkin(fish, skin, 256, folder + "silverfish.nlt");
}
