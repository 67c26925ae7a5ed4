// Moorish idol: a white and yellow disc with two black bands, a tube of a snout and a long
// streamer.
#include "fish/skin.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f;
    f.body.top = {{0, 0.006f},     {0.05f, 0.024f}, {0.10f, 0.052f}, {0.15f, 0.100f},
                  {0.22f, 0.195f}, {0.32f, 0.302f}, {0.44f, 0.358f}, {0.58f, 0.342f},
                  {0.74f, 0.225f}, {0.88f, 0.098f}, {1.0f, 0.052f}};
    f.body.bottom = {{0, -0.022f},     {0.05f, -0.034f}, {0.10f, -0.050f}, {0.15f, -0.086f},
                     {0.22f, -0.152f}, {0.32f, -0.245f}, {0.44f, -0.315f}, {0.58f, -0.322f},
                     {0.74f, -0.225f}, {0.88f, -0.100f}, {1.0f, -0.050f}};
    f.body.width = {{0, 0.010f},     {0.06f, 0.022f}, {0.12f, 0.045f},
                    {0.24f, 0.078f}, {0.40f, 0.088f}, {0.60f, 0.068f},
                    {0.82f, 0.034f}, {0.95f, 0.016f}, {1.03f, 0}};
    f.body.widest = 0.5f;
    f.body.keel = 1.25f;
    f.body.stations = {0,     0.05f, 0.10f, 0.15f, 0.21f, 0.28f, 0.36f,
                       0.45f, 0.55f, 0.65f, 0.75f, 0.85f, 0.94f, 1.03f};
    f.body.half_sides = 7;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.086f}, {0.905f, 0}, {0.895f, -0.086f}};
    tail.flare = 1.8f;
    tail.margin = {
        {1.235f, 0.180f}, {1.195f, 0.090f}, {1.180f, 0}, {1.195f, -0.090f}, {1.235f, -0.180f}};
    tail.front = tail.rear = {0.18f, 0.18f};
    tail.columns = 16;
    tail.rows = 4;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {{0.40f, 0.300f}, {0.56f, 0.310f}, {0.72f, 0.205f}, {0.90f, 0.070f}};
    dorsal.margin = {
        {0.56f, 0.620f}, {0.68f, 0.560f}, {0.79f, 0.430f}, {0.88f, 0.280f}, {0.945f, 0.110f}};
    dorsal.rear = {0.25f, 0.70f};
    dorsal.columns = 14;
    dorsal.rows = 3;
    dorsal.ripple = 0.010f;

    Fin streamer;
    streamer.part = Part::EXTRA;
    // Nowhere narrower than two pixels of a screen 948 high. It grows out of the pale tip of the
    // dorsal fin, before the black band: both lie in one plane.
    streamer.root = {{0.485f, 0.475f}, {0.600f, 0.500f}};
    streamer.margin = {{1.080f, 0.810f}, {1.115f, 0.750f}};
    streamer.bow = {-0.080f, 0.100f};
    streamer.columns = 2;
    streamer.rows = 10;
    streamer.ripple = 0.035f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.52f, -0.285f}, {0.66f, -0.250f}, {0.78f, -0.165f}, {0.90f, -0.070f}};
    anal.margin = {
        {0.66f, -0.520f}, {0.75f, -0.475f}, {0.84f, -0.345f}, {0.91f, -0.205f}, {0.945f, -0.110f}};
    anal.front = {0.18f, 0.25f};
    anal.rear = {0.25f, 0.70f};
    anal.columns = 14;
    anal.rows = 2;
    anal.ripple = 0.010f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.33f, -0.220f}, {0.38f, -0.250f}};
    pelvic.margin = {{0.50f, -0.470f}, {0.52f, -0.430f}, {0.49f, -0.350f}};
    pelvic.front = {0.50f, 0.40f};
    pelvic.rear = {0.50f, 0.60f};
    pelvic.columns = 7;
    pelvic.rows = 2;
    pelvic.paired = true;
    pelvic.splay = 12;
    pelvic.paddle = 3;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.345f, -0.030f}, {0.323f, -0.056f}, {0.353f, -0.082f}};
    pectoral.margin = {{0.475f, 0.015f}, {0.500f, -0.045f}, {0.475f, -0.100f}, {0.430f, -0.135f}};
    pectoral.front = {0.50f, 0.50f};
    pectoral.rear = {0.50f, 0.55f};
    pectoral.columns = 10;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 34;
    pectoral.paddle = 9;

    f.fins = {tail, dorsal, anal, pelvic, pectoral, streamer};
    f.eye = {{0.212f, 0.072f}, 0.027f, 0.28f};
    // Seen from the front a head that swings along would waggle: only the rear third sways.
    f.swim = {14, 0.65f, 0.015f, 3.4f};
    f.shadow.depth = 194;
    f.length = 43;
    f.centre = 0.60f;
    return f;
}

const Vec3 kWhite = rgb(250, 247, 236), kBlack = rgb(24, 25, 34), kYellow = rgb(252, 208, 48);

/// Body and fins share one drawing in side view, so that the bands run through.
Vec3 drawing(Vec2 side) {
    const float x = side.x + 0.10f * side.y * side.y;
    Vec3 c = mix(kWhite, kYellow, 0.55f * band(x, 0.50f, 0.62f, 0.06f));
    c = mix(c, kYellow, band(x, 0.775f, 0.90f, 0.02f));
    c = mix(c, kBlack, band(x, 0.205f, 0.365f, 0.009f));
    c = mix(c, kBlack, band(x, 0.645f, 0.765f, 0.009f));
    c = mix(c, rgb(228, 236, 244), band(x, 0.768f, 0.778f, 0.003f));
    return mix(c, kBlack, smoothstep(0.925f, 0.945f, x));
}

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = drawing({p.along, p.height});
    // Snout: dark lips, an orange saddle framed in black above, white below. The black joins that
    // of the face, and behind the lips the orange goes all round: over bright sand the white is
    // not seen, and what lies before it would seem to float.
    const float rim = mix(-0.9f, 0.10f, smoothstep(0.055f, 0.110f, p.along));
    const float saddle =
        band(p.along, 0.040f, 0.165f, 0.010f) * smoothstep(rim, rim + 0.25f, p.rise);
    const float frame = band(p.along, 0.045f, 0.210f, 0.008f) * smoothstep(0.0f, 0.15f, p.rise);
    c = mix(c, kBlack, 0.85f * frame);
    c = mix(c, rgb(246, 160, 44), saddle);
    c = mix(kBlack, c, smoothstep(0.022f, 0.038f, p.along));
    // Fine pale lines run down the dark chest.
    const float line = std::fabs(p.along - 0.275f + 0.25f * p.height * p.height);
    c = mix(c, rgb(120, 150, 190),
            0.35f * smoothstep(0.006f, 0.002f, line) * smoothstep(0.2f, -0.2f, p.height));
    return c * mix(Vec3{0.86f, 0.88f, 0.92f}, Vec3{1, 1, 1}, smoothstep(1.0f, 0.6f, p.rise));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::EXTRA: {
            const Vec3 c = mix(drawing(p.side), kWhite, smoothstep(0.02f, 0.14f, p.v));
            const float edge = 1 - 0.55f * smoothstep(0.55f, 1.0f, std::fabs(2 * p.u - 1)),
                        end = 1 - 0.75f * smoothstep(0.55f, 1.0f, p.v);
            return {c, edge * end};
        }
        case Part::TAIL:
            return finPixel(p,
                            {rgb(28, 29, 38), rgb(236, 240, 244), 11, 0.98f, 0.92f, 0.10f, 0.02f});
        case Part::PECTORAL:
            return finPixel(p, {rgb(250, 240, 214), rgb(255, 250, 236), 7, 0.75f, 0.42f});
        case Part::PELVIC:
            return finPixel(p, {rgb(30, 30, 36), rgb(60, 64, 76), 8, 0.97f, 0.90f});
        default: {
            const Vec3 c = drawing(p.side);
            Pixel fin =
                finPixel(p, {c, mix(c, rgb(255, 255, 248), p.part == Part::DORSAL ? 0.75f : 0.2f),
                             16, 0.97f, 0.88f, 0.05f, 0.03f});
            return fin;
        }
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{bodyColour, finColour, {}, {rgb(240, 214, 130), rgb(120, 90, 40), 0.55f}};
    skin.detail.scale = 0.020f;
    skin.detail.scale_depth = 0.05f;
    skin.detail.scale_tint = 0.035f;
    skin.detail.gill = {0.355f, -0.04f};
    skin.detail.gill_height = 0.14f;
    skin.detail.mouth_front = {-0.01f, -0.010f};
    skin.detail.mouth_corner = {0.018f, -0.016f};
    const Fish fish = anatomy();
    saveFish(fish, 20, folder + "moorishidol.nlm");
    saveSkin(fish, skin, 256, folder + "moorishidol.nlt");
}
