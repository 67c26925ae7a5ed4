// The sky ahead in the evening and at night, as the saver's band shows it: columns are compass
// directions, rows elevations, both evenly. The sea under the horizon is that of noon in the hour's
// light, with the sky reflected where it is far away.
//
// hours DATA_DIR evening|night cloudy|clear FILE WIDTH
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "DayLight.h"
#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "sky/air.h"
#include "sky/clouds.h"

using namespace art;

namespace {

/// Turns the clouds so that a great one stands behind the island and none before the moon.
constexpr float kFirstView = -200;
/// The moon: its height and half its width, in degrees; rather larger than life.
constexpr float kMoonHeight = 13.5f, kMoonRadius = 0.95f;

struct Step {
    float degrees;
    Vec3 colour;
};

template <size_t N>
Vec3 graded(const Step (&steps)[N], float degrees) {
    size_t above = 1;
    while (above + 1 < N && steps[above].degrees < degrees)
        ++above;
    const Step &a = steps[above - 1], &b = steps[above];
    return mix(a.colour, b.colour, smoothstep(a.degrees, b.degrees, degrees));
}

float luminance(Vec3 c) { return dot(c, {0.30f, 0.59f, 0.11f}); }
Vec3 tinted(Vec3 c, TINT t) { return {c.x * t.r, c.y * t.g, c.z * t.b}; }

/// Degrees between two directions given by degrees.
float apart(float azimuth, float elevation, float azimuth2, float elevation2) {
    const float a = azimuth * kPi / 180, e = elevation * kPi / 180;
    const float b = azimuth2 * kPi / 180, f = elevation2 * kPi / 180;
    const float c = std::sin(e) * std::sin(f) + std::cos(e) * std::cos(f) * std::cos(a - b);
    return std::acos(std::min(1.0f, c)) * 180 / kPi;
}

struct Place {
    float azimuth, elevation;  ///< degrees
    Vec3 direction;
};

Place place(float azimuth, float elevation) {
    const float a = azimuth * kPi / 180, e = elevation * kPi / 180;
    return {
        azimuth, elevation, {std::sin(a) * std::cos(e), std::sin(e), -std::cos(a) * std::cos(e)}};
}

/// What one picture is made of.
class Hour {
public:
    virtual ~Hour() = default;
    /// The air without clouds.
    virtual Vec3 air(Place p) const = 0;
    /// A cloud, from its shade 0 to its light 1.
    virtual Vec3 cloud(Place p, float light) const = 0;
    /// Thin high clouds: how much of them is seen, and their colour.
    virtual Vec3 wisp(Place p) const = 0;
    virtual float wisps() const = 0;
    /// What glitters on the sea in a direction below the horizon.
    virtual Vec3 glitter(Place p) const = 0;
    virtual TINT seaLight() const = 0;
    virtual void finish(Image&) const {}
};

class Evening : public Hour {
public:
    Vec3 air(Place p) const override {
        static const Step kToward[] = {
            {0, rgb(255, 158, 74)},   {2.5f, rgb(255, 184, 96)}, {6, rgb(254, 188, 122)},
            {12, rgb(226, 168, 146)}, {20, rgb(150, 140, 164)},  {29, rgb(90, 112, 160)},
            {40, rgb(50, 82, 142)},
        };
        static const Step kAway[] = {
            {0, rgb(224, 140, 112)},  {2.5f, rgb(228, 154, 128)}, {6, rgb(212, 152, 146)},
            {12, rgb(164, 136, 160)}, {20, rgb(108, 114, 160)},   {29, rgb(68, 92, 150)},
            {40, rgb(42, 70, 132)},
        };
        const Vec3 base =
            mix(graded(kAway, p.elevation), graded(kToward, p.elevation), near(p, 36));
        // The sun behind the horizon's haze.
        const float core = near(p, 10) * std::exp(-std::pow(p.elevation / 4.6f, 2.0f));
        return base + Vec3{0.10f, 0.30f, 0.26f} * core;
    }
    Vec3 cloud(Place p, float light) const override {
        const float g = near(p, 40);
        // The lower a cloud, the redder its light.
        const float low = 1 - smoothstep(3, 22, p.elevation);
        const Vec3 shade = mix(rgb(98, 92, 132), mix(rgb(116, 92, 122), rgb(150, 98, 100), g), low);
        const Vec3 half = mix(rgb(186, 142, 152), rgb(232, 150, 112), g * 0.8f + 0.2f * low);
        const Vec3 lit = mix(rgb(252, 206, 178), rgb(255, 214, 142), g);
        return light < 0.5f ? mix(shade, half, 2 * light) : mix(half, lit, 2 * light - 1);
    }
    Vec3 wisp(Place p) const override {
        return mix(rgb(240, 160, 150), rgb(255, 196, 130), near(p, 38));
    }
    float wisps() const override { return 0.72f; }
    Vec3 glitter(Place p) const override {
        const float path = near(p, 8);
        return Vec3{1.0f, 0.66f, 0.30f} * (0.55f * path);
    }
    TINT seaLight() const override { return lightAt(EVENING_PICTURE).sea; }

private:
    static float near(Place p, float width) {
        return std::exp(-std::pow((p.azimuth - SKY_AHEAD::LIGHT) / width, 2.0f));
    }
};

class Night : public Hour {
public:
    Vec3 air(Place p) const override {
        static const Step kSteps[] = {
            {0, rgb(52, 76, 112)}, {3, rgb(42, 66, 106)}, {8, rgb(30, 52, 94)},
            {16, rgb(20, 37, 76)}, {28, rgb(12, 24, 56)}, {40, rgb(8, 16, 42)},
        };
        const float moon = apart(p.azimuth, p.elevation, SKY_AHEAD::LIGHT, kMoonHeight);
        const float halo = 0.16f * std::exp(-moon / 5) + 0.08f * std::exp(-moon / 18);
        return graded(kSteps, p.elevation) + Vec3{0.80f, 0.90f, 1.0f} * halo + milky(p);
    }
    Vec3 cloud(Place p, float light) const override {
        const float moon = apart(p.azimuth, p.elevation, SKY_AHEAD::LIGHT, kMoonHeight);
        const float g = std::exp(-moon / 22);
        return mix(mix(rgb(24, 38, 68), rgb(40, 56, 88), g),
                   mix(rgb(88, 108, 146), rgb(176, 190, 214), g), light * light);
    }
    Vec3 wisp(Place) const override { return rgb(70, 90, 126); }
    float wisps() const override { return 0.35f; }
    Vec3 glitter(Place p) const override {
        const float path = std::exp(-std::pow((p.azimuth - SKY_AHEAD::LIGHT) / 3.4f, 2.0f));
        return Vec3{0.70f, 0.80f, 0.92f} * (0.62f * path);
    }
    TINT seaLight() const override { return lightAt(NIGHT_PICTURE).sea; }
    void finish(Image& image) const override;

private:
    /// A faint band of light across the sky, with darker lanes.
    static Vec3 milky(Place p) {
        const float along = 0.80f * p.azimuth + 0.60f * (p.elevation - 20);
        const float across = -0.60f * (p.azimuth - 14) + 0.80f * (p.elevation - 20);
        const float wander = 3 * fractalNoise({along * 0.04f, 3.5f, 0.5f}, 2, 901);
        const float body = std::exp(-std::pow((across + wander) / 7, 2.0f));
        const float lumps = fractalNoise({along * 0.10f, across * 0.16f, 0.5f}, 5, 902);
        const float lane =
            smoothstep(0.25f, -0.05f, fractalNoise({along * 0.09f, across * 0.22f, 7.5f}, 4, 903));
        const float high = smoothstep(7, 22, p.elevation);
        return Vec3{0.62f, 0.70f, 0.86f} *
               (0.15f * high * body * std::max(0.0f, 0.7f + lumps) * mix(0.35f, 1.0f, lane));
    }
};

float columns(const Image& image) {
    return static_cast<float>(image.width()) / (SKY_AHEAD::RIGHT - SKY_AHEAD::LEFT);
}
float rows(const Image& image) {
    return static_cast<float>(image.height()) / (SKY_AHEAD::TOP - SKY_AHEAD::BOTTOM);
}

/// Adds a soft round dot of light; place and radius in degrees.
void dot(Image& image, float azimuth, float elevation, float radius, Vec3 light) {
    const float cx = (azimuth - SKY_AHEAD::LEFT) * columns(image);
    const float cy = (SKY_AHEAD::TOP - elevation) * rows(image);
    const float rx = radius * columns(image) / std::cos(elevation * kPi / 180);
    const float ry = radius * rows(image);
    for (int y = std::max(0, static_cast<int>(cy - 3 * ry));
         y <= std::min(image.height() - 1, static_cast<int>(cy + 3 * ry)); ++y)
        for (int x = std::max(0, static_cast<int>(cx - 3 * rx));
             x <= std::min(image.width() - 1, static_cast<int>(cx + 3 * rx)); ++x) {
            const float dx = (static_cast<float>(x) + 0.5f - cx) / rx;
            const float dy = (static_cast<float>(y) + 0.5f - cy) / ry;
            Pixel& pixel = image.at(x, y);
            // Alpha is what of the sky lies open, between the clouds.
            pixel.colour += light * (pixel.alpha * std::exp(-(dx * dx + dy * dy)));
        }
}

void Night::finish(Image& image) const {
    Random random(41);
    for (int i = 0; i < 2200; ++i) {
        const float azimuth = random.range(SKY_AHEAD::LEFT, SKY_AHEAD::RIGHT);
        const float elevation = random.range(0.5f, SKY_AHEAD::TOP);
        const float size = std::pow(random.unit(), 7.0f), warmth = random.unit();
        const float moon = apart(azimuth, elevation, SKY_AHEAD::LIGHT, kMoonHeight);
        const float seen = smoothstep(0.5f, 9, elevation) * smoothstep(2, 12, moon);
        const Vec3 colour = mix({0.82f, 0.90f, 1.0f}, {1.0f, 0.90f, 0.76f}, warmth * warmth);
        dot(image, azimuth, elevation, mix(0.032f, 0.062f, size),
            colour * (seen * mix(0.16f, 1.0f, size)));
        if (size > 0.55f)
            dot(image, azimuth, elevation, 0.14f, colour * (seen * 0.16f * size));
    }
    // The moon, a little past its first quarter's end, with its dark plains.
    const float sx = columns(image), sy = rows(image);
    const float cx = (SKY_AHEAD::LIGHT - SKY_AHEAD::LEFT) * sx,
                cy = (SKY_AHEAD::TOP - kMoonHeight) * sy;
    const float stretch = 1 / std::cos(kMoonHeight * kPi / 180);
    for (int y = static_cast<int>(cy - 2 * sy); y <= static_cast<int>(cy + 2 * sy); ++y)
        for (int x = static_cast<int>(cx - 2 * sx); x <= static_cast<int>(cx + 2 * sx); ++x) {
            const float dx = (static_cast<float>(x) + 0.5f - cx) / (sx * kMoonRadius * stretch);
            const float dy = (static_cast<float>(y) + 0.5f - cy) / (sy * kMoonRadius);
            const float r = std::sqrt(dx * dx + dy * dy);
            const float inside = 1 - smoothstep(0.95f, 1.05f, r);
            if (inside <= 0)
                continue;
            const float plains = smoothstep(
                0.0f, 0.35f, fractalNoise({dx * 1.5f + 0.4f, dy * 1.5f, 2.5f}, 4, 77) - 0.10f * dx);
            const float limb = 1 - 0.14f * r * r;
            const Vec3 face = mix(rgb(250, 248, 236), rgb(196, 200, 206), 0.75f * plains) * limb;
            Pixel& pixel = image.at(x, y);
            pixel.colour = mix(pixel.colour, face, inside * pixel.alpha);
        }
}

/// Colour of a point, and how much open sky is in it.
Pixel look(Place p, const Hour& hour, const sky::Clouds* clouds, float texel, float chance) {
    if (p.elevation < 0) {
        const float down = -p.elevation;
        const Vec3 own = tinted(sky::sea(p.elevation * kPi / 180), hour.seaLight());
        const Vec3 mirrored = hour.air(place(p.azimuth, 1.5f + 3 * down));
        const float far = 1 - smoothstep(0.1f, 2.1f, down);
        const Vec3 water = mix(own, mirrored, 0.62f * far * far);
        // Ripples, longer the nearer they are to the horizon.
        const float ripple = fractalNoise(
            {p.azimuth * 1.1f / (0.25f + down), 34 * std::log(0.25f + down), 0.5f}, 3, 611);
        const float spark = smoothstep(-0.12f, 0.4f, ripple);
        return {water + hour.glitter(p) * (spark * (1 - smoothstep(2.2f, 3.4f, down))), 0};
    }
    Pixel pixel{hour.air(p), 1};
    const float wisp = hour.wisps() * sky::wisps(p.direction);
    pixel.colour = mix(pixel.colour, hour.wisp(p), wisp);
    pixel.alpha = 1 - 0.7f * wisp;
    if (clouds) {
        const sky::Clouds::Sight sight =
            clouds->look(rotateY(p.direction, kFirstView), texel, chance);
        if (sight.opacity > 0) {
            const float light =
                clamp01((luminance(sight.colour / sight.opacity) - 0.64f) / (0.97f - 0.64f));
            // What is far away takes the air's colour.
            const float haze = 0.75f * (1 - smoothstep(0.5f, 6.5f, p.elevation));
            const Vec3 colour = mix(hour.cloud(p, light), hour.air(p), haze);
            pixel.colour = mix(pixel.colour, colour, sight.opacity);
            pixel.alpha *= 1 - sight.opacity;
        }
    }
    return pixel;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6)
        fail("usage: hours DATA_DIR evening|night cloudy|clear FILE WIDTH");
    const bool night = std::strcmp(argv[2], "night") == 0;
    const Evening evening;
    const Night dark;
    const Hour& hour = night ? static_cast<const Hour&>(dark) : evening;
    std::vector<sky::Clouds> clouds(std::strcmp(argv[3], "cloudy") == 0 ? 1 : 0);
    const int width = std::atoi(argv[5]), height = width > 1024 ? width / 2 : width;
    Image image(width, height);
    const float texel = 1 / columns(image) * kPi / 180;
    parallelFor(height, [&](int y) {
        for (int x = 0; x < width; ++x) {
            const float top = SKY_AHEAD::TOP - static_cast<float>(y) / rows(image);
            // The horizon and the distant clouds are finer than a texel.
            const int grid = top > -0.6f && top < 0.6f ? 4 : top > 0 && top < 7 ? 2 : 1;
            Pixel sum{{}, 0};
            for (int i = 0; i < grid * grid; ++i) {
                const float u = (static_cast<float>(i % grid) + 0.5f) / static_cast<float>(grid);
                const float v = (static_cast<float>(i / grid) + 0.5f) / static_cast<float>(grid);
                const Pixel one = look(
                    place(SKY_AHEAD::LEFT + (static_cast<float>(x) + u) / columns(image),
                          SKY_AHEAD::TOP - (static_cast<float>(y) + v) / rows(image)),
                    hour, clouds.empty() ? nullptr : clouds.data(), texel, hashUnit(x, y, i, 78));
                sum.colour += one.colour;
                sum.alpha += one.alpha;
            }
            const auto count = static_cast<float>(grid * grid);
            image.at(x, y) = {sum.colour / count, sum.alpha / count};
        }
    });
    hour.finish(image);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.at(x, y).colour = sky::grained(image.at(x, y).colour, x, y);
    saveBmp24(image, std::string(argv[1]) + "/" + argv[4]);
}
