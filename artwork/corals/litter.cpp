#include "corals/litter.h"

#include "common/noise.h"
#include "floor/ground.h"

namespace art {
namespace {

/// A dome of rows of vertices round the y axis, its top first; outline and height in 0..1 by the
/// angle and the share of the way out.
template <class Place>
Growth dome(int down, int around, Place place) {
    Growth growth;
    for (int j = 0; j <= down; ++j)
        for (int i = 0; i <= around; ++i) {
            const float angle = 2 * kPi * static_cast<float>(i) / static_cast<float>(around);
            const auto [position, texture] =
                place(static_cast<float>(j) / static_cast<float>(down), angle);
            growth.mesh.add(position, texture);
        }
    skin(growth.mesh, 0, down, around);
    growth.bend.assign(growth.mesh.vertices.size(), 0);
    return growth;
}

struct Corner {
    Vec3 position;
    Vec2 texture;
};

/// Sets a growth down: what is level in it follows the sand.
Growth laid(Growth growth, float x, float z) {
    static const Ground ground;
    for (Vertex& v : growth.mesh.vertices) {
        v.position.x += x;
        v.position.z += z;
        v.position.y += ground.height(v.position.x, v.position.z);
    }
    return growth;
}

Growth pebble(const Stone& stone) {
    const float where = static_cast<float>(stone.seed % 997);
    Growth growth = dome(18, 36, [&](float out, float angle) {
        const float polar = 0.62f * kPi * out;
        const Vec3 d{std::sin(polar) * std::cos(angle), std::cos(polar),
                     std::sin(polar) * std::sin(angle)};
        const float lump = fractalNoise(d * 0.9f + Vec3{where, 0, 0}, 3, stone.seed);
        const Vec3 radii{stone.radius, stone.height, stone.radius * 0.85f};
        return Corner{d * radii * (1 + 0.50f * lump), {d.x, d.z}};
    });
    growth.material = [=](Vec2, Vec3 p) {
        const Vec3 q = p / stone.radius + Vec3{where, 0, 0};
        const float mottle = fractalNoise(q * 1.2f, 3, stone.seed + 1);
        const float spots = fractalNoise(q * 4, 2, stone.seed + 2);
        const Cell pit = cellNoise(q * 2.6f, stone.seed + 3);
        Vec3 c = mix(stone.colour, rgb(190, 178, 152), 0.40f);
        c = mix(c, rgb(198, 130, 152), 0.5f * smoothstep(0.1f, 0.3f, mottle));
        c = mix(c, rgb(142, 140, 96), 0.5f * smoothstep(0.12f, 0.30f, -mottle));
        c = c * (0.74f + 0.24f * smoothstep(0.10f, 0.40f, pit.nearest));
        return Paint{c * (1 + stone.mottle * (0.30f * mottle + 0.45f * spots)),
                     Vec3{spots, 0, mottle} * 0.6f};
    };
    return growth;
}

/// Half a scallop, its back up: ribs run from the hinge and its two ears to a wavy edge.
Growth scallop(const Stone& stone) {
    constexpr int kRibs = 9;
    const float turn = static_cast<float>(stone.seed % 628) / 100;
    const auto rib = [=](Vec2 t) {
        // Seen from the hinge, at the edge opposite the turn.
        return std::atan2(t.y, t.x + 1.05f) * kRibs / (0.5f * kPi);
    };
    Growth growth = dome(16, 66, [&](float out, float angle) {
        const Vec2 flat{out * std::cos(angle), out * std::sin(angle)};
        const float wide = std::max(mix(0.22f, 1.08f, smoothstep(-1.05f, 0.45f, flat.x)),
                                    0.55f * smoothstep(-0.88f, -0.94f, flat.x));
        const float edge = 1 + 0.07f * std::cos(2 * kPi * rib(flat)) * smoothstep(0.6f, 1.0f, out);
        const Vec2 at{flat.x * edge, flat.y * wide * edge};
        const float c = std::cos(turn), s = std::sin(turn);
        const float ribs = 1 + 0.10f * std::cos(2 * kPi * rib(flat)) * out;
        const float height =
            stone.height * 1.2f * ribs * std::sqrt(std::max(0.0f, 1 - out * out)) - 0.01f;
        return Corner{Vec3{(at.x * c - at.y * s) * stone.radius, height,
                           (at.x * s + at.y * c) * stone.radius},
                      flat};
    });
    growth.material = [=](Vec2 t, Vec3 p) {
        const float wave = std::cos(2 * kPi * rib(t));
        const float from_hinge = length(Vec2{t.x + 1.05f, t.y});
        const float rings = std::sin(11 * from_hinge);
        const float blush = fractalNoise(p / stone.radius * 0.8f, 2, stone.seed);
        Vec3 tone = mix(stone.colour, rgb(226, 128, 108),
                        0.60f * smoothstep(-0.1f, 0.4f, blush + 0.15f * rings));
        tone = mix(tone, rgb(178, 96, 92), 0.5f * smoothstep(0.5f, 0.05f, from_hinge));
        return Paint{tone * (0.75f + 0.17f * wave), Vec3{0, 0, 0.5f * std::sin(2 * kPi * rib(t))}};
    };
    return growth;
}

/// A snail's shell on its side, wound round its axis from the pointed end to the mouth: a whelk, or
/// slender as an auger.
Growth spiral(const Stone& stone, bool slender) {
    const float turn = static_cast<float>(stone.seed % 628) / 100;
    const float whorls = slender ? 7.0f : 4.0f;
    const float length = (slender ? 3.0f : 2.3f) * stone.radius,
                widest = (slender ? 0.42f : 0.70f) * stone.radius;
    // From 0 at a seam to 1 just before the next.
    const auto wound = [=](float along, float angle) {
        const float w = whorls * std::pow(along, 0.7f) + angle / (2 * kPi);
        return w - std::floor(w);
    };
    Growth growth = dome(48, 40, [&](float along, float angle) {
        const float body =
            slender ? std::pow(along, 0.9f)
                    : std::pow(along, 1.25f) * 1.35f * (1 - 0.75f * smoothstep(0.66f, 1.0f, along));
        const float belly = std::sin(kPi * wound(along, angle));
        const float r = widest * (body * (0.80f + 0.24f * std::sqrt(belly)) + 0.02f) *
                        (along > 0.995f ? 0.2f : 1.0f);
        const Vec3 axis{std::cos(turn), 0, std::sin(turn)},
            side{-std::sin(turn), 0, std::cos(turn)};
        const float lying = 0.50f * widest * body;
        return Corner{axis * ((along - 0.5f) * length) + side * (std::cos(angle) * r) +
                          Vec3{0, std::sin(angle) * r + lying, 0},
                      {along, angle}};
    });
    growth.material = [=](Vec2 t, Vec3 p) {
        const float w = wound(t.x, t.y);
        const float seam = std::min(w, 1 - w);
        const float flames = fractalNoise(p / stone.radius * 1.6f, 2, stone.seed);
        const Vec3 dark = slender ? rgb(164, 108, 70) : rgb(196, 122, 88);
        Vec3 c = mix(stone.colour * 0.94f, dark,
                     0.75f * smoothstep(0.25f, 0.40f, w) * smoothstep(0.62f, 0.50f, w) *
                         smoothstep(-0.25f, 0.05f, flames));
        c = mix(c, rgb(232, 160, 140), slender ? 0.0f : 0.6f * smoothstep(0.80f, 0.95f, t.x));
        return Paint{c * (0.62f + 0.30f * smoothstep(0.0f, 0.16f, seam)), {}};
    };
    return growth;
}

Growth shell(const Stone& stone) {
    switch (stone.seed % 3) {
        case 0:
            return scallop(stone);
        case 1:
            return spiral(stone, false);
        default:
            return spiral(stone, true);
    }
}

Growth starfish(const Star& star) {
    Growth growth = dome(20, 240, [&](float out, float angle) {
        const Vec2 way{std::cos(angle), std::sin(angle)};
        float in = 0, beyond = 1.15f;
        for (int i = 0; i < 20; ++i) {
            const float between = (in + beyond) / 2;
            (onArm(star, way * between).inside > 0 ? in : beyond) = between;
        }
        const Vec2 at = way * (in * out);
        const OnArm arm = onArm(star, at);
        const float thick = mix(0.21f, 0.11f, arm.along);
        const float height = thick * std::sqrt(clamp01(arm.inside)) - 0.03f;
        return Corner{Vec3{at.x, height, at.y} * star.radius, at};
    });
    growth.material = [=](Vec2 t, Vec3) {
        const OnArm arm = onArm(star, t);
        const Cell plate = cellNoise(t * 17, 881);
        const float knob = 1 - smoothstep(0.12f, 0.38f, plate.nearest);
        const float ridge = smoothstep(0.55f, 0.98f, arm.inside);
        const float mottle = fractalNoise({t.x * 3, t.y * 3, star.x}, 3, 882);
        Vec3 c = star.colour * (0.80f + 0.28f * mottle + 0.10f * ridge);
        c = mix(c, c * 0.62f, 0.55f * smoothstep(0.30f, 0.60f, plate.nearest));
        c = mix(c, star.colour * 0.6f + Vec3{0.40f, 0.38f, 0.34f}, knob * mix(0.22f, 0.60f, ridge));
        const Vec3 away{t.x * 17 - plate.point.x, 0, t.y * 17 - plate.point.y};
        return Paint{c, away * (0.8f * knob)};
    };
    return growth;
}

}  // namespace

void strewCloseUp(Garden& garden) {
    const auto here = [&](float x) { return x >= garden.west && x < garden.east; };
    const auto add = [&](Growth growth, float x, float z) {
        Layer& layer = garden.layer();
        layer.apart = true;
        layer.nearer = garden.before_sand;
        layer.growths.push_back(laid(std::move(growth), x, z));
    };
    for (const Star& star : stars())
        if (here(star.x))
            add(starfish(star), star.x, star.z);
    for (const Stone& stone : stones())
        if (closeUp(stone) && here(stone.x))
            add(stone.shell ? shell(stone)
                : stone.radius > 0.15f
                    ? rock(stone.seed % 1000, {stone.radius, stone.height, stone.radius})
                    : pebble(stone),
                stone.x, stone.z);
}

}  // namespace art
