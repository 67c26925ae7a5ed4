#include "fish/skin.h"

#include "common/noise.h"
#include "common/parallel.h"

namespace art {
namespace {

/// Light on a flank.
constexpr Vec3 kSunlit{1.10f, 1.09f, 1.06f};

/// What lies on the sand under a fish: the sand's own hue, as dark as it gets.
constexpr Vec3 kShade{0.25f, 0.29f, 0.23f};

/// From this length on the body gives way to the tail.
constexpr float kTailRoot = 0.91f;

/// A bell of height 1 and the given half width.
float bell(float distance, float width) {
    return std::exp(-distance * distance / (2 * width * width));
}

float segmentDistance(Vec2 p, Vec2 a, Vec2 b) {
    const Vec2 line = b - a;
    const float t = clamp01(dot(p - a, line) / std::max(dot(line, line), 1e-8f));
    return length(p - a - line * t);
}

struct Scale {
    float edge = 0;   ///< 1 on the rear rim of a scale.
    float dome = 0;   ///< 0 at its covered front, 1 towards the rim.
    float tint = 0;   ///< -1..1, one value per scale.
    float pearl = 0;  ///< 1 in the middle of what is seen of it.
};

/// Scales lie like roof tiles: each one covers the front of the next towards the tail.
Scale scaleAt(float along, float girth, float size) {
    const float x = along / size, y = girth / size;
    const int column = static_cast<int>(std::floor(x));
    for (int c = column - 1; c <= column + 1; ++c) {
        const float shift = (c & 1) ? 0.5f : 0.0f;
        const int row = static_cast<int>(std::floor(y - shift));
        const float dx = x - static_cast<float>(c);
        const float dy = y - shift - static_cast<float>(row) - 0.5f;
        const float d = std::sqrt(dx * dx * 0.62f + dy * dy * 1.9f);
        if (dx >= 0 && d < 1)
            return {smoothstep(0.72f, 0.98f, d), d, 2 * hashUnit(c, row, 3, 71) - 1,
                    1 - smoothstep(0.12f, 0.30f, length(Vec2{dx - 0.72f, dy}))};
    }
    return {};
}

Vec3 lit(Vec3 colour, const BodyPoint& p) {
    // Sun from above, light from the sand below: the flank is full, the lower belly turns cool.
    const float up = p.normal.z;
    const float sun = smoothstep(-0.85f, 0.45f, up);
    const Vec3 shade = mix(Vec3{0.80f, 0.84f, 0.87f}, kSunlit, sun);
    const float outline = std::pow(std::fabs(p.rise), 6.0f);
    return colour * shade * (1 - 0.20f * outline);
}

/// The mouth: a line that sags and fades towards its corner, between two lips.
Vec3 withMouth(Vec3 c, const Detail& d, Vec2 side) {
    const Vec2 line = d.mouth_corner - d.mouth_front;
    const Vec2 sag = (d.mouth_front + d.mouth_corner) * 0.5f - Vec2{0, 0.22f * length(line)};
    constexpr int kPieces = 8;
    float nearest = 1e9f, along = 0, above = 1;
    Vec2 from = d.mouth_front;
    for (int i = 1; i <= kPieces; ++i) {
        const float t = static_cast<float>(i) / kPieces;
        const Vec2 to = d.mouth_front * ((1 - t) * (1 - t)) + sag * (2 * t * (1 - t)) +
                        d.mouth_corner * (t * t);
        const float away = segmentDistance(side, from, to);
        if (away < nearest) {
            nearest = away;
            along = t;
            const Vec2 step = to - from, place = side - from;
            above = step.x * place.y - step.y * place.x > 0 ? 1.0f : -1.0f;
        }
        from = to;
    }
    // The lips thin out towards the corner, where a fold remains.
    const float lip = d.lips * (1 - 0.65f * along * along);
    const float across = nearest / lip;
    c = mix(c, d.lip_colour, d.lip_flush * (1 - smoothstep(0.75f, 1.1f, across)));
    // Both are round: light on their upper side, shade below them.
    c *= 1 + above * 0.10f * bell(across - 0.75f, 0.22f);
    c += Vec3{1, 0.97f, 0.92f} * (0.12f * bell(across - (above > 0 ? 0.8f : 0.35f), 0.16f));
    c *= 1 - (above > 0 ? 0.10f : 0.26f) * bell(across - 1.25f, 0.22f);
    const float half = mix(0.0040f, 0.0022f, along);
    return c * (1 - mix(0.80f, 0.50f, along) * (1 - smoothstep(0.6f * half, 1.8f * half, nearest)));
}

Vec3 bodyColour(const Fish& fish, const Skin& skin, const BodyPoint& p) {
    const Detail& d = skin.detail;
    Vec3 c = skin.body(p);
    const Vec2 side{p.along, p.height};
    const float behind_gill = smoothstep(d.gill.x - 0.01f, d.gill.x + 0.05f, p.along);

    const Scale s = scaleAt(p.along, p.girth, d.scale);
    const float scaly = behind_gill * (1 - smoothstep(0.9f, 1.0f, p.along));
    c *= 1 + scaly * (d.scale_tint * s.tint + d.scale_depth * (0.45f * s.dome - 1.1f * s.edge));
    c = mix(c, c * 0.45f + Vec3{0.55f, 0.53f, 0.52f}, scaly * d.pearl * s.pearl);
    const float sheen = mix(1.0f, 0.55f + 0.9f * s.dome * (1 - s.edge) + 0.25f * s.tint, scaly);
    c *= 0.96f + 0.08f * mottle(p, 0.09f, 31);
    c *= 0.985f + 0.03f * mottle(p, 0.02f, 37);

    c = lit(c, p);
    c += Vec3{1, 1, 1} *
         (d.gloss * sheen * bell(p.normal.z - 0.62f, 0.13f) * smoothstep(0.02f, 0.16f, p.along) *
          (1 - smoothstep(0.85f, 1.0f, p.along)));

    // The gill cover's edge: a dark slit, light on the cover's rim before it, shade behind it.
    const float h = (p.height - d.gill.y) / d.gill_height;
    if (std::fabs(h) < 1.3f) {
        const float edge = p.along - (d.gill.x - 0.42f * d.gill_height * h * h);
        const float here = 1 - smoothstep(0.75f, 1.1f, std::fabs(h));
        c *= 1 - 0.42f * here * bell(edge, 0.0055f);
        c *= 1 - 0.16f * here * smoothstep(0, 0.004f, edge) * (1 - smoothstep(0.004f, 0.05f, edge));
        c += Vec3{1, 1, 0.95f} * (0.07f * here * bell(edge + 0.014f, 0.007f));
        // The cheek plate in front of it, barely there.
        const float cheek = p.along - (d.gill.x * 0.72f - 0.35f * d.gill_height * h * h);
        c *= 1 - 0.10f * here * bell(cheek, 0.006f);
    }

    c = withMouth(c, d, side);

    // The socket shades the skin around the eye; the nostril lies between eye and snout.
    const float eye = length(side - fish.eye.place) / fish.eye.radius;
    c *= 1 - 0.30f * (1 - smoothstep(0.95f, 1.45f, eye));
    const Vec2 nostril =
        fish.eye.place + (d.mouth_front - fish.eye.place) * 0.5f + Vec2{0, fish.eye.radius * 0.5f};
    c *= 1 - 0.4f * (1 - smoothstep(0.3f, 1.0f, length(side - nostril) / 0.009f));
    return c;
}

Pixel eyePixel(const EyeLook& look, float u, float v) {
    const Vec2 p{2 * u - 1, 1 - 2 * v};  // x towards the tail, y up
    const float r = length(p), turn = std::atan2(p.y, p.x);
    const float fibre = valueNoise({turn * 5, r * 2.5f, 0}, 5) - 0.5f;
    Vec3 c = mix(look.iris, look.rim, smoothstep(look.pupil, 0.88f, r)) * (1 + 0.25f * fibre);
    c *= 0.72f + 0.38f * smoothstep(0.9f, -0.7f, p.y);  // the brow shades the iris' upper part
    const float pupil = length(Vec2{p.x * 0.94f + 0.02f, p.y}) / look.pupil;
    c = mix(Vec3{0.02f, 0.025f, 0.035f}, c, smoothstep(0.92f, 1.08f, pupil));
    c = mix(c, {0.93f, 0.86f, 0.66f}, 0.35f * bell(pupil - 1.14f, 0.06f));
    c = mix(c, c * 0.25f, smoothstep(0.80f, 0.96f, r));
    c += Vec3{1, 1, 1} * (1 - smoothstep(0.13f, 0.29f, length(p - Vec2{-0.24f, 0.32f})));
    c += Vec3{0.4f, 0.6f, 0.7f} *
         (0.4f * (1 - smoothstep(0.1f, 0.4f, length(p - Vec2{0.2f, -0.42f}))));
    return {c, 1 - smoothstep(0.90f, 1.0f, r)};
}

}  // namespace

Pixel finPixel(const FinPoint& p, const Rays& rays) {
    const bool hard = p.u < rays.spines, pectoral = p.part == Part::PECTORAL,
               tail = p.part == Part::TAIL;
    // Rays fork once: twice as many near the margin. Those of a pectoral fin stay single: it has
    // few texels, and lies over another fin.
    const float phase = p.u * rays.count;
    const float single = 0.5f + 0.5f * std::cos(2 * kPi * phase);
    const float twin = 0.5f + 0.5f * std::cos(4 * kPi * phase);
    const float fork = pectoral ? 0.0f : smoothstep(0.35f, 0.75f, p.v);
    const float ray = hard ? single * single : mix(single, twin, fork);

    // Where the mesh ends the fin is still half there: a rim of clear texels would hide what is
    // drawn behind it later.
    const float soft = 0.035f;
    const float tip = 1 + 0.5f * soft - (hard ? 1.5f * rays.notch : 0.012f) * (1 - ray);

    // Rays reach into the hem, skin hangs back between them.
    const float hem =
        p.v + (hard ? 0.0f : (tail ? 0.2f : 0.5f) * std::min(rays.edge, 0.16f) * (0.5f - ray));
    Vec3 c =
        mix(rays.base, rays.margin, smoothstep(1 - rays.edge * 1.6f, 1 - rays.edge * 0.4f, hem));
    // The body shades the fins' roots; the tail grows out of it without a step.
    const float root = 1 - smoothstep(0, 0.22f, p.v);
    c *= mix(1.0f, (tail ? 0.94f : 0.92f) + (tail ? 0.10f : 0.16f) * ray, tail ? 1 - root : 1.0f);
    c = c * mix(Vec3{1, 1, 1}, tail ? kSunlit : Vec3{0.84f, 0.84f, 0.84f}, root);
    c *= 0.97f + 0.06f * valueNoise({p.u * 9, p.v * 5, 0}, 23);

    float thin = mix(rays.solid, mix(rays.skin, rays.solid, pectoral ? 0.25f + 0.4f * ray : ray),
                     smoothstep(0.05f, 0.7f, p.v));
    // Where a pectoral fin grows out of the flank there is no edge; the flank lies behind it.
    if (pectoral)
        thin *= mix(0.25f, 1.0f, smoothstep(0.0f, 0.22f, p.v));
    const float sides = smoothstep(-0.01f, 0.01f, p.u) * smoothstep(1.01f, 0.99f, p.u);
    return {c, thin * sides * smoothstep(tip, tip - soft, p.v)};
}

float mottle(const BodyPoint& p, float size, uint32_t seed) {
    return 0.5f + 0.7f * fractalNoise({p.along / size, p.girth / size, 0.5f}, 3, seed);
}

float spots(Vec2 place, float spacing, float radius, uint32_t seed) {
    const float x = place.x / spacing, y = place.y / spacing;
    const int row = static_cast<int>(std::floor(y));
    float nearest = 1e9f;
    for (int r = row - 1; r <= row + 1; ++r) {
        const float shift = (r & 1) ? 0.5f : 0.0f;
        const int column = static_cast<int>(std::floor(x - shift));
        for (int c = column - 1; c <= column + 1; ++c) {
            const float cx =
                static_cast<float>(c) + 0.5f + shift + 0.42f * (hashUnit(c, r, 0, seed) - 0.5f);
            const float cy =
                static_cast<float>(r) + 0.5f + 0.42f * (hashUnit(c, r, 1, seed) - 0.5f);
            const float size = radius / spacing * (0.7f + 0.6f * hashUnit(c, r, 2, seed));
            nearest = std::min(nearest, length(Vec2{x - cx, y - cy}) / size);
        }
    }
    return nearest;
}

void saveSkin(const Fish& fish, const Skin& skin, int size, const std::string& path) {
    constexpr int kSamples = 3;  // per texel and axis
    Image sheet(size, size, {{0, 0, 0}, 0});
    for (int part = 0; part < kParts; ++part) {
        const Part which = static_cast<Part>(part);
        const Fin* fin = nullptr;
        for (const Fin& f : fish.fins)
            if (f.part == which)
                fin = &f;
        const bool shadow = which == Part::SHADOW && fish.shadow.depth > 0;
        if (!fin && which != Part::BODY && which != Part::EYE && !shadow)
            continue;
        const auto paint = [&](float u, float v) -> Pixel {
            if (which == Part::BODY)
                return {bodyColour(fish, skin, bodyPoint(fish.body, u, v)),
                        1 - smoothstep(kTailRoot, 1.0f, u)};
            if (shadow)
                return {kShade, skin.shade * std::pow(1 - smoothstep(0.0f, 0.84f, u), 1.25f)};
            if (which == Part::EYE)
                return eyePixel(skin.eye, u, v);
            return skin.fin(finPoint(*fin, u, v));
        };
        const Chart plot = plotOf(which), c = chartOf(which);
        const float scale = static_cast<float>(size);
        const int x0 = static_cast<int>(std::lround(plot.s0 * scale)),
                  x1 = static_cast<int>(std::lround(plot.s1 * scale)),
                  y0 = static_cast<int>(std::lround(plot.t0 * scale)),
                  y1 = static_cast<int>(std::lround(plot.t1 * scale));
        parallelFor(y1 - y0, [&](int row) {
            for (int x = x0; x < x1; ++x) {
                Vec3 sum;
                float alpha = 0;
                for (int i = 0; i < kSamples * kSamples; ++i) {
                    const float s = (static_cast<float>(x) +
                                     (static_cast<float>(i % kSamples) + 0.5f) / kSamples) /
                                    scale;
                    const float t = (static_cast<float>(y0 + row) +
                                     (static_cast<float>(i / kSamples) + 0.5f) / kSamples) /
                                    scale;
                    const Pixel p = paint(clamp01((s - c.s0) / (c.s1 - c.s0)),
                                          clamp01((t - c.t0) / (c.t1 - c.t0)));
                    sum += p.colour * p.alpha;
                    alpha += p.alpha;
                }
                if (alpha > 0)
                    sheet.at(x, y0 + row) = {sum / alpha, alpha / (kSamples * kSamples)};
            }
        });
    }
    bleed(sheet, 4);
    saveBmp32(sheet, path);
}

}  // namespace art
