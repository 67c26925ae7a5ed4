// The royal blue skin of the reef fish: a black painter's palette on blue, and a yellow tail.
#include "fish/reef_fish.h"

using namespace art;

namespace {

const Vec3 kBlue = rgb(40, 104, 236), kBlack = rgb(14, 18, 56), kYellow = rgb(255, 212, 28);

float ellipse(Vec2 p, Vec2 middle, Vec2 radius, float power) {
    return std::pow(std::fabs(p.x - middle.x) / radius.x, power) +
           std::pow(std::fabs(p.y - middle.y) / radius.y, power);
}

/// 1 in front of the yellow wedge that opens towards the tail.
float beforeWedge(Vec2 side) {
    return smoothstep(0.012f, -0.012f, side.x - 0.835f - 0.95f * std::fabs(side.y));
}

Vec3 bodyColour(const BodyPoint& p) {
    const Vec2 side{p.along, p.height};
    Vec3 c = mix(kBlue, rgb(24, 62, 200), smoothstep(0.3f, 1.0f, p.rise));
    c = mix(c, rgb(96, 164, 252), 0.6f * smoothstep(-0.1f, -0.95f, p.rise));
    // The palette: a dark oval along the back, with a blue window behind the gill.
    const float oval = ellipse(side, {0.53f, 0.060f}, {0.415f, 0.150f}, 2.2f);
    const float window = ellipse(side, {0.455f, -0.004f}, {0.175f, 0.080f}, 2.0f);
    const float above = smoothstep(-0.078f, -0.052f, p.height + 0.06f * (p.along - 0.2f));
    const float mark = smoothstep(1.03f, 0.88f, oval) * smoothstep(0.88f, 1.08f, window) * above;
    c = mix(c, kBlack, 0.95f * mark);
    // A dark bridle from the palette through the eye.
    const float bridle = p.height - (0.040f + 0.30f * (p.along - 0.128f));
    c = mix(c, kBlack,
            0.85f * std::exp(-bridle * bridle / (2 * 0.014f * 0.014f)) *
                band(p.along, 0.135f, 0.22f, 0.02f));
    return mix(mix(kYellow, rgb(250, 204, 30), smoothstep(0.9f, 1.0f, p.along)), c,
               beforeWedge(side));
}

Pixel finColour(const FinPoint& p) {
    if (p.part == Part::TAIL) {
        Pixel tail =
            finPixel(p, {rgb(250, 204, 30), rgb(255, 226, 80), 12, 0.97f, 0.88f, 0.10f, 0.02f});
        const float lobe = std::fabs(p.u - 0.5f) * 2;
        tail.colour = mix(tail.colour, kBlack, smoothstep(0.70f, 0.78f, lobe + 0.05f * p.v));
        return tail;
    }
    if (p.part == Part::PECTORAL) {
        Pixel fin = finPixel(p, {rgb(40, 96, 216), rgb(255, 214, 70), 8, 0.88f, 0.62f, 0.30f});
        return fin;
    }
    Pixel fin = finPixel(p, {rgb(34, 84, 222), rgb(60, 130, 250), 18, 0.97f, 0.88f, 0.10f, 0.02f});
    // A dark border with a hair of light blue at the very edge.
    const float border = band(p.v, 0.62f, 0.88f, 0.06f);
    fin.colour = mix(fin.colour, kBlack, (p.part == Part::PELVIC ? 0.4f : 0.8f) * border);
    return fin;
}

}  // namespace

int main(int, char** arguments) {
    Skin skin{bodyColour, finColour, reefFishDetail(), {rgb(70, 74, 104), rgb(30, 40, 90), 0.50f}};
    skin.detail.scale = 0.018f;
    skin.detail.scale_depth = 0.07f;
    skin.detail.gill_height = 0.11f;
    saveSkin(reefFish(), skin, 256,
             std::string(arguments[1]) + "/models/reeffishes/blaugelbfish.nlt");
}
