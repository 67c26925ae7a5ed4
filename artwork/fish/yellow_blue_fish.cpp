// A deep yellow angelfish with wavy blue lines that run on into its fins.
#include "fish/reef_fish.h"

using namespace art;

namespace {

Fish anatomy() {
    Fish f = reefFish();
    f.body.top = {{0, 0.002f},     {0.03f, 0.030f}, {0.08f, 0.074f}, {0.15f, 0.140f},
                  {0.25f, 0.216f}, {0.38f, 0.264f}, {0.52f, 0.258f}, {0.70f, 0.186f},
                  {0.88f, 0.090f}, {1.0f, 0.064f}};
    f.body.bottom = {{0, -0.026f},     {0.03f, -0.044f}, {0.08f, -0.072f}, {0.15f, -0.116f},
                     {0.25f, -0.176f}, {0.38f, -0.224f}, {0.52f, -0.228f}, {0.70f, -0.168f},
                     {0.88f, -0.082f}, {1.0f, -0.060f}};
    f.body.keel = 1.18f;
    // High fins with round corners, and a round tail.
    Fin& tail = finOf(f, Part::TAIL);
    tail.root = {{0.895f, 0.082f}, {0.905f, 0}, {0.895f, -0.076f}};
    tail.margin = {
        {1.190f, 0.165f}, {1.232f, 0.100f}, {1.245f, 0}, {1.232f, -0.100f}, {1.190f, -0.165f}};
    tail.columns = 10;
    tail.rows = 3;
    Fin& dorsal = finOf(f, Part::DORSAL);
    dorsal.root = {
        {0.22f, 0.180f}, {0.40f, 0.240f}, {0.60f, 0.210f}, {0.78f, 0.120f}, {0.90f, 0.066f}};
    dorsal.margin = {{0.260f, 0.270f}, {0.40f, 0.350f},  {0.56f, 0.385f}, {0.74f, 0.400f},
                     {0.88f, 0.345f},  {0.955f, 0.230f}, {0.955f, 0.130f}};
    Fin& anal = finOf(f, Part::ANAL);
    anal.root = {{0.47f, -0.205f}, {0.62f, -0.180f}, {0.78f, -0.110f}, {0.90f, -0.062f}};
    anal.margin = {
        {0.520f, -0.290f}, {0.63f, -0.345f}, {0.78f, -0.350f}, {0.90f, -0.280f}, {0.955f, -0.130f}};
    Fin& pelvic = finOf(f, Part::PELVIC);
    pelvic.root = {{0.31f, -0.180f}, {0.365f, -0.200f}};
    pelvic.margin = {{0.43f, -0.375f}, {0.46f, -0.345f}, {0.45f, -0.265f}};
    f.eye = {{0.132f, 0.050f}, 0.031f, 0.28f};
    finOf(f, Part::PECTORAL).paddle = 9;
    f.swim = {16, 0.72f, 0.03f, 2.6f};
    return f;
}

const Vec3 kYellow = rgb(255, 212, 36), kBlue = rgb(40, 104, 226);

/// How much of the blue lines lies at a place of the side view: they fan out from the gill, wander
/// and now and then break or join.
float lines(Vec2 side, float& outline) {
    const float spread = 1 + 0.45f * (side.x - 0.55f);
    const float wave = 0.010f * std::sin(side.x * 27 + side.y * 9) +
                       0.006f * std::sin(side.x * 51 - side.y * 31 + 1.3f);
    const float k = (side.y + wave) / (0.100f * spread) + 0.25f;
    const float f = std::fabs(k - std::floor(k) - 0.5f);
    const float width = 0.17f + 0.03f * std::sin(side.x * 13 + std::floor(k) * 2.1f);
    outline = smoothstep(width + 0.20f, width + 0.03f, f);
    // Soft enough for a fish of sixty pixels: finer than those, an edge would shimmer.
    return smoothstep(width + 0.11f, width - 0.11f, f);
}

Vec3 bodyColour(const BodyPoint& p) {
    Vec3 c = mix(rgb(255, 230, 124), kYellow, smoothstep(-0.95f, -0.15f, p.rise));
    c = mix(c, rgb(240, 164, 18), smoothstep(0.35f, 1.0f, p.rise));
    float outline = 0;
    const float blue = lines({p.along, p.height}, outline);
    const float on = band(p.along, 0.255f, 0.90f, 0.02f) * smoothstep(-0.97f, -0.82f, p.rise);
    c = mix(c, rgb(196, 128, 20), 0.45f * outline * on);
    c = mix(c, mix(kBlue, rgb(24, 62, 160), smoothstep(0.4f, 1.0f, p.rise)), blue * on);
    // A dark bar through the eye, edged blue.
    const float bar = p.along - 0.134f - 0.05f * std::sin(p.height * 8);
    const float tall = smoothstep(-0.85f, -0.6f, p.rise);
    c = mix(c, rgb(90, 150, 244),
            0.6f * tall * std::exp(-std::pow((std::fabs(bar) - 0.032f) / 0.010f, 2.0f)));
    c = mix(c, rgb(30, 42, 92), 0.92f * tall * smoothstep(0.033f, 0.015f, std::fabs(bar)));
    return mix(c, rgb(255, 214, 44), smoothstep(0.86f, 1.0f, p.along));
}

Pixel finColour(const FinPoint& p) {
    switch (p.part) {
        case Part::TAIL:
            return finPixel(p,
                            {rgb(255, 214, 44), rgb(255, 240, 170), 8, 0.96f, 0.88f, 0.12f, 0.02f});
        case Part::PECTORAL:
            return finPixel(p, {rgb(255, 214, 90), rgb(255, 236, 160), 8, 0.82f, 0.50f});
        case Part::PELVIC:
            return finPixel(p, {rgb(255, 200, 40), rgb(96, 156, 240), 9, 0.96f, 0.84f});
        default: {
            Pixel fin = finPixel(
                p, {rgb(255, 210, 36), rgb(255, 214, 48), 12, 0.97f, 0.92f, 0.10f, 0.02f, 0.40f});
            float outline = 0;
            const float blue = lines(p.side, outline) * (1 - smoothstep(0.45f, 0.75f, p.v));
            fin.colour = mix(fin.colour, kBlue, 0.85f * blue);
            // A blue seam just inside the margin.
            fin.colour = mix(fin.colour, rgb(60, 130, 240), 0.7f * band(p.v, 0.82f, 0.95f, 0.06f));
            return fin;
        }
    }
}

}  // namespace

int main(int, char** arguments) {
    const std::string folder = std::string(arguments[1]) + "/models/reeffishes/";
    Skin skin{
        bodyColour, finColour, reefFishDetail(), {rgb(255, 196, 60), rgb(150, 96, 24), 0.55f}};
    skin.detail.scale = 0.024f;
    skin.detail.scale_depth = 0.04f;
    skin.detail.scale_tint = 0.03f;
    skin.detail.mouth_corner = {0.038f, -0.030f};
    const Fish fish = anatomy();
    saveFish(fish, 20, folder + "gsbfish.nlm");
    saveSkin(fish, skin, 256, folder + "gsbfish.nlt");
}
