// The school's slim silver fish: steel-blue back, a yellow line, mirror flanks, a forked tail.
#include "fish/skin.h"

using namespace art;

namespace {

/// The fork, and the end of the body that runs into it.
const Vec3 kFork = rgb(26, 72, 118);

Fish anatomy() {
    Fish f;
    f.body.top = {{0, 0.002f},     {0.03f, 0.028f}, {0.10f, 0.070f},
                  {0.22f, 0.112f}, {0.38f, 0.130f}, {0.55f, 0.114f},
                  {0.75f, 0.060f}, {0.90f, 0.024f}, {1.0f, 0.022f}};
    f.body.bottom = {{0, -0.014f},     {0.03f, -0.040f}, {0.10f, -0.082f},
                     {0.22f, -0.122f}, {0.38f, -0.140f}, {0.55f, -0.120f},
                     {0.75f, -0.060f}, {0.90f, -0.024f}, {1.0f, -0.022f}};
    f.body.width = {{0, 0.008f},     {0.04f, 0.028f}, {0.14f, 0.058f}, {0.32f, 0.076f},
                    {0.55f, 0.064f}, {0.80f, 0.029f}, {0.95f, 0.012f}, {1.02f, 0.0f}};
    f.body.widest = 0.52f;
    f.body.keel = 1.1f;
    f.body.stations = {0, 0.035f, 0.10f, 0.20f, 0.34f, 0.50f, 0.68f, 0.85f, 1.02f};
    f.body.half_sides = 5;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.034f}, {0.905f, 0}, {0.895f, -0.032f}};
    tail.flare = 1.7f;
    tail.margin = {
        {1.21f, 0.165f}, {1.125f, 0.072f}, {1.06f, 0}, {1.125f, -0.072f}, {1.21f, -0.165f}};
    tail.columns = 6;
    tail.rows = 2;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {{0.36f, 0.100f}, {0.56f, 0.087f}, {0.84f, 0.033f}};
    dorsal.margin = {{0.45f, 0.172f}, {0.52f, 0.142f}, {0.64f, 0.108f}, {0.89f, 0.048f}};
    dorsal.columns = 5;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.56f, -0.092f}, {0.70f, -0.064f}, {0.84f, -0.033f}};
    anal.margin = {{0.64f, -0.156f}, {0.70f, -0.122f}, {0.78f, -0.086f}, {0.89f, -0.048f}};
    anal.columns = 4;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.235f, -0.015f}, {0.240f, -0.050f}};
    pectoral.margin = {{0.37f, -0.030f}, {0.385f, -0.062f}, {0.335f, -0.090f}};
    pectoral.columns = 3;
    pectoral.paired = true;
    pectoral.splay = 26;
    pectoral.paddle = 4;

    f.fins = {tail, dorsal, anal, pectoral};
    f.eye = {{0.092f, 0.014f}, 0.042f, 0.3f};
    f.swim = {10.5f, 0.72f, 0.02f, 3.0f};
    f.length = 59;
    f.centre = 0.56f;
    return f;
}

Vec3 bodyColour(const BodyPoint& p) {
    // A dark stripe between a pale ridge and a bright flank outlines each fish before sand, sea and
    // corals, and before its neighbours, from above and behind too.
    const Vec3 back = rgb(8, 46, 100), side = rgb(240, 249, 252), belly = rgb(255, 255, 255);
    const Vec3 yellow = rgb(255, 214, 44);
    Vec3 c = mix(belly, side, smoothstep(-0.75f, 0.05f, p.rise));
    c = mix(c, rgb(64, 176, 224), 0.80f * smoothstep(0.40f, 0.54f, p.rise));
    c = mix(c, back, smoothstep(0.46f, 0.60f, p.rise));
    const Vec3 ridge = rgb(134, 216, 242);
    const float from = mix(0.84f, 0.78f, smoothstep(0.45f, 0.95f, p.along));
    c = mix(c, ridge,
            smoothstep(from - 0.08f, from + 0.08f, p.rise) * smoothstep(0.07f, 0.19f, p.along));
    const float line = (p.rise - 0.42f) / 0.095f;
    c = mix(c, yellow, 0.92f * std::exp(-line * line / 2) * smoothstep(0.10f, 0.24f, p.along));
    // A white cheek before a dark shoulder, and a grey keel: where one fish swims behind the next,
    // both have an end.
    const float face = smoothstep(0.215f, 0.185f, p.along);
    c = mix(c, rgb(112, 172, 208), 0.85f * face * smoothstep(0.40f, 0.60f, p.rise));
    c = mix(c, rgb(255, 255, 255), 0.95f * face * smoothstep(0.62f, 0.46f, p.rise));
    const float shoulder = (p.along - (0.232f - 0.035f * p.rise * p.rise)) / 0.016f;
    c = mix(c, rgb(30, 72, 116),
            0.75f * std::exp(-shoulder * shoulder / 2) * smoothstep(-0.75f, -0.35f, p.rise));
    c = mix(c, rgb(126, 156, 172),
            0.6f * smoothstep(-0.84f, -0.98f, p.rise) * smoothstep(0.16f, 0.30f, p.along));
    // A pale stalk before a dark fork: the body ends, and the next one's white face stands clear.
    c = mix(c, rgb(214, 232, 240), 0.9f * smoothstep(0.70f, 0.84f, p.along));
    return mix(c, kFork, smoothstep(0.90f, 0.98f, p.along));
}

Pixel finColour(const FinPoint& p) {
    if (p.part == Part::TAIL) {
        Pixel tail = finPixel(p, {kFork, rgb(52, 106, 152), 8, 0.97f, 0.94f, 0.40f, 0.04f});
        // Dark where the body ends, pale and thin at the tips: they hide no head behind them.
        tail.alpha *= mix(1.0f, 0.84f, smoothstep(0.35f, 0.95f, p.v));
        return tail;
    }
    if (p.part == Part::PECTORAL)
        return finPixel(p, {rgb(220, 228, 220), rgb(240, 244, 236), 9, 0.70f, 0.40f});
    // Hardly clear: what swims behind the fin may be drawn later, and would be missing there.
    return finPixel(p, {rgb(196, 206, 180), rgb(238, 226, 150), 14, 0.96f, 0.84f, 0.25f, 0.08f});
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(236, 236, 214), rgb(214, 222, 222), 0.58f}};
    skin.detail.scale = 0.034f;
    skin.detail.scale_depth = 0.10f;
    skin.detail.scale_tint = 0.06f;
    skin.detail.gill = {0.215f, -0.01f};
    skin.detail.gill_height = 0.085f;
    skin.detail.mouth_front = {0.0f, -0.006f};
    skin.detail.mouth_corner = {0.035f, -0.026f};
    skin.detail.gloss = 0.16f;
    const Fish fish = anatomy();
    saveFish(fish, 10, folder + "silverfish.nlm");
    saveSkin(fish, skin, 256, folder + "silverfish.nlt");
}
