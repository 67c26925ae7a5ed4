// Turns a ray-traced picture into a card of the scene: half the size, its reflection and the blue
// below the waterline, foam along it, an empty rim and colour under the transparency.
//
// cutout DATA_DIR FILE PICTURE.png HOUR WATERLINE DEPTH HAZE FOAM REACH SPAN BAYS NARROWER
//   HOUR       0 noon, 1 evening, 2 night
//   WATERLINE  as a share of the height, from the top
//   DEPTH      how far down the water lets things be seen, as a share of the height
//   HAZE       how much of the air's colour lies over it, 0..1
//   FOAM       half the thickness of the line of foam, in texels of a card 1024 wide
//   REACH      how far the last swell came up, in thicknesses
//   SPAN       how wide the card is for the foam: arcs and gaps are a few such units long
//   BAYS       how far the water comes in between two points of the shore, in thicknesses
//   NARROWER   how many columns become one at last
#include <cstdlib>
#include <string>
#include <vector>

#include "DayLight.h"
#include "common/image.h"
#include "common/noise.h"
#include "sea/colours.h"

using namespace art;

namespace {

constexpr int kRim = 4;

/// What the water has of the hour.
struct Light {
    Vec3 haze;
    TINT sea, foam;
};

Light lightOf(int hour) {
    if (hour == 0)
        return {rgb(172, 212, 232), lightAt(NOON).sea, lightAt(NOON).above};
    const DAY_LIGHT light = lightAt(hour == 1 ? EVENING_PICTURE : NIGHT_PICTURE);
    return {hour == 1 ? rgb(214, 150, 124) : rgb(46, 68, 106), light.sea, light.above};
}

Vec3 tinted(Vec3 c, TINT t) { return {c.x * t.r, c.y * t.g, c.z * t.b}; }

/// Puts top over bottom.
Pixel over(Pixel top, Pixel bottom) {
    const float alpha = top.alpha + bottom.alpha * (1 - top.alpha);
    if (alpha <= 0)
        return {bottom.colour, 0};
    return {(top.colour * top.alpha + bottom.colour * (bottom.alpha * (1 - top.alpha))) / alpha,
            alpha};
}

/// Where water and land meet, a row for each column: the level of the sea at the points of the
/// shore, higher in its bays, which lie farther away.
struct Shore {
    float level;
    std::vector<float> rows;
};

Shore shoreOf(int columns, float level, float span, float bays) {
    Shore shore{level, {}};
    for (int x = 0; x < columns; ++x) {
        const float u = span * (static_cast<float>(x) + 0.5f) / static_cast<float>(columns);
        const float bay = smoothstep(-0.30f, 0.35f, fractalNoise({u * 0.13f, 9.5f, 0.5f}, 2, 12));
        shore.rows.push_back(level - bays * bay);
    }
    return shore;
}

/// Lets the ground follow the shore: in a bay what stood at the level of the sea stands higher, and
/// what lies above is pushed together.
void bend(Image& image, const Shore& shore) {
    const Image straight = image;
    for (int x = 0; x < image.width(); ++x) {
        const float bay = shore.level - shore.rows[size_t(x)];
        if (bay <= 0)
            continue;
        for (int y = 0; y < image.height(); ++y) {
            const float up = shore.level - static_cast<float>(y);
            const float from = static_cast<float>(y) + bay * smoothstep(7 * bay, 0, up);
            const int row = std::min(static_cast<int>(from), image.height() - 1);
            const float next = clamp01(from - static_cast<float>(row));
            const Pixel a = straight.at(x, row);
            const Pixel b = straight.at(x, std::min(row + 1, image.height() - 1));
            // By opacity: clear texels are black.
            const float alpha = mix(a.alpha, b.alpha, next);
            const float share = alpha > 0 ? next * b.alpha / alpha : next;
            image.at(x, y) = {mix(a.colour, b.colour, share), alpha};
        }
    }
}

/// What lies under water: the ground, fading into the blue, and above it a trembling reflection.
void sink(Image& image, const Shore& shore, float depth, TINT light) {
    const Vec3 shallow = tinted(rgb(146, 226, 214), light);
    const Vec3 deep = tinted(sea::kFarSea, light);
    const Image above = image;
    for (int x = 0; x < image.width(); ++x) {
        const float waterline = shore.rows[size_t(x)];
        for (int y = static_cast<int>(std::ceil(waterline)); y < image.height(); ++y) {
            const float down = static_cast<float>(y) + 0.5f - waterline;
            const float k = clamp01(down / depth), u = static_cast<float>(x) / 24;
            Pixel ground = image.at(x, y);
            ground.colour = mix(ground.colour, mix(shallow, deep, k), clamp01(0.45f + 0.75f * k));
            ground.alpha *= std::pow(1 - k, 1.5f) * 0.85f;

            const float tremble = 5 * fractalNoise({u * 0.3f, down * 0.35f, 0.5f}, 2, 9);
            const int mirrored = std::max(0, static_cast<int>(waterline - down * 1.4f) - 1);
            const int aside =
                std::min(image.width() - 1, std::max(0, x + static_cast<int>(tremble)));
            Pixel reflection = above.at(aside, mirrored);
            reflection.colour = mix(reflection.colour, deep, 0.45f);
            reflection.alpha *= 0.42f * std::pow(1 - k, 1.2f);
            Pixel seen = over(reflection, ground);
            // Below the level of the sea the saver's waves cover all this; a bay must not end where
            // they begin.
            const float in = shore.level - waterline;
            if (in > 0) {
                const float bay = smoothstep(0, in, down) * smoothstep(0, 6, in);
                const float waves = static_cast<float>(y) - shore.level;
                seen.colour = mix(seen.colour, deep, 0.7f * bay * smoothstep(12, 3, waves));
            }
            image.at(x, y) = seen;
        }
    }
}

/// Where something stands in the water, a little wider than it: wet ground, the scallops that the
/// last swell has left on it, each with a bright rim and a thin film inside, and a line of foam
/// with long gaps.
void foam(Image& image, const Shore& shore, float thickness, float reach, float span, TINT light) {
    constexpr int kSlope = 30;
    // Rocks stand too steep to be washed far up.
    const float washes = smoothstep(1, 4, reach);
    // How far it reaches beyond the land: farther from a beach than from a rock.
    const int aside = static_cast<int>(mix(200, 360, washes) / span);
    std::vector<Pixel> foot;
    for (int x = 0; x < image.width(); ++x)
        foot.push_back(image.at(x, static_cast<int>(shore.rows[size_t(x)]) - 1));
    const Vec3 white = tinted({0.97f, 0.995f, 1}, light);
    const Vec3 film = tinted(rgb(226, 244, 238), light);
    for (int x = 0; x < image.width(); ++x) {
        const float waterline = shore.rows[size_t(x)];
        const int row = static_cast<int>(waterline) - 1;
        float near = 0;
        for (int a = -aside; a <= aside; ++a)
            if (x + a >= 0 && x + a < image.width())
                near = std::max(
                    near, foot[size_t(x + a)].alpha * (1 - std::fabs(static_cast<float>(a)) /
                                                               (static_cast<float>(aside) + 1)));
        // Not to the card's sides, where it would be cut off.
        near *= smoothstep(6, 48, static_cast<float>(std::min(x, image.width() - 1 - x)));
        const float u = span * static_cast<float>(x) / static_cast<float>(image.width());
        const float swell = 1.6f * thickness * fractalNoise({u * 0.4f, 0.5f, 0.5f}, 3, 5);
        const float broken = smoothstep(-0.10f, 0.32f, fractalNoise({u * 0.7f, 2.5f, 0.5f}, 3, 3));
        const float half =
            thickness * (mix(0.65f, 0.35f, washes) + 1.3f * broken) * mix(0.5f, 1.0f, near);
        // Arcs of uneven length that meet in cusps at the water.
        const float arc = u * 0.15f + 0.8f * gradientNoise({u * 0.22f, 7.5f, 0.5f}, 8);
        const float turn = arc - std::floor(arc);
        const float size = 0.35f + hashUnit(static_cast<int>(std::floor(arc)), 0, 0, 9);
        const float bow = std::max(0.0f, 4 * turn * (1 - turn));
        const float top = thickness * (0.6f + reach * size * std::sqrt(bow));
        const float wet =
            thickness * (10 + 5 * fractalNoise({u * 0.3f, 4.5f, 0.5f}, 2, 6)) + 0.4f * top;
        // Not the flat point of the beach, which the water washes over.
        float land = 0;
        for (int a = -kSlope; a <= kSlope; ++a)
            land += image.wrapped(x + a, row - 24).alpha / (2 * kSlope + 1);
        const float ashore = near * land;
        for (int y = row - 48; y <= row + 8; ++y) {
            const float below = static_cast<float>(y) + 0.5f - waterline - swell;
            const float off = below / half, rim = (below + top) / (0.8f * thickness);
            Pixel& pixel = image.at(x, y);
            const float damp =
                ashore * smoothstep(-wet - 2 * thickness, -wet + 3 * thickness, below);
            pixel.colour = mix(pixel.colour, pixel.colour * Vec3{0.80f, 0.79f, 0.80f}, damp);
            // Where the arcs meet the foam gathers; below their bows the water is clear.
            // Round rocks it never quite parts.
            const float line = mix(mix(0.50f, 0.05f, washes), 0.90f, broken) *
                               mix(1.0f, 0.35f, bow * washes) * std::exp(-off * off);
            const float washed = below > 0
                                     ? 0
                                     : washes * mix(0.25f, 0.70f, broken) *
                                           smoothstep(-top - thickness, -top + thickness, below);
            pixel = over({film, near * washed}, pixel);
            const float edge =
                below > 0 ? 0 : washes * mix(0.85f, 0.55f, broken) * std::exp(-rim * rim);
            pixel = over({white, near * std::max(line, edge)}, pixel);
        }
    }
}

/// Fades what lies under water away from the sides of the card, so that they do not show.
void clearSides(Image& image, float waterline) {
    const float soft = 0.04f * static_cast<float>(image.width());
    for (int y = static_cast<int>(waterline) - 2; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.at(x, y).alpha *=
                smoothstep(0, soft, static_cast<float>(std::min(x, image.width() - 1 - x)));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 13)
        fail(
            "usage: cutout DATA_DIR FILE PICTURE.png HOUR WATERLINE DEPTH HAZE FOAM REACH SPAN "
            "BAYS "
            "NARROWER");
    const auto number = [&](int i) { return static_cast<float>(std::atof(argv[i])); };
    Image image = shrunk(loadPng(argv[3]), 2, 2);
    const Light light = lightOf(std::atoi(argv[4]));
    const float height = static_cast<float>(image.height()), waterline = number(5) * height;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.at(x, y).colour = mix(image.at(x, y).colour, light.haze, number(7));
    const float thickness = number(8) * static_cast<float>(image.width()) / 1024;
    const Shore shore = shoreOf(image.width(), waterline, number(10), number(11) * thickness);
    bend(image, shore);
    sink(image, shore, number(6) * height, light.sea);
    foam(image, shore, thickness, number(9), number(10), light.foam);
    clearSides(image, waterline);
    image = shrunk(image, std::atoi(argv[12]), 1);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (std::min(std::min(x, y), std::min(image.width() - 1 - x, image.height() - 1 - y)) <
                kRim)
                image.at(x, y).alpha = 0;
    bleed(image, 24);
    saveBmp32(image, std::string(argv[1]) + "/" + argv[2]);
}
