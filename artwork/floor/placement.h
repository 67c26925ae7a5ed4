// Where the saver stands its corals and its eye: what the reef's painters paint for.
#pragma once

#include <array>
#include <string>

#include "common/vec.h"

namespace art {

/// World points here are in the saver's public axes: x to the right, y up, z away from the eye.
constexpr Vec3 kEye{0, 2, -7};

/// Towards the sun: high, from the left, a little behind the eye.
inline Vec3 towardsSun() { return normalize({-0.46f, 1.0f, -0.40f}); }

/// One coral of the scene: its model is scaled, turned about x, then y, then z (degrees, in axes
/// whose z points towards the eye), and set down at foot.
struct Placement {
    const char* model;
    Vec3 foot;
    Vec3 turn;
    Vec3 scale;

    /// World point of a point in file axes (x right, y away, z up).
    Vec3 toWorld(Vec3 file) const {
        Vec3 p{file.x * scale.x, file.z * scale.y, -file.y * scale.z};
        p = rotateZ(rotateY(rotateX(p, turn.x), turn.y), turn.z);
        return {foot.x + p.x, foot.y + p.y, foot.z - p.z};
    }
    /// The other way round.
    Vec3 toFile(Vec3 world) const {
        Vec3 p{world.x - foot.x, world.y - foot.y, foot.z - world.z};
        p = rotateX(rotateY(rotateZ(p, -turn.z), -turn.y), -turn.x);
        return {p.x / scale.x, -p.z / scale.z, p.y / scale.y};
    }
};

inline constexpr std::array<Placement, 11> kCorals{{
    {"coral_a", {-2.8f, -5.4f, 20.2f}, {0, 0, 0}, {1, 1, 1}},
    {"coral_b", {-3.7f, -7.6f, 14.2f}, {-35, -45, 0}, {0.04f, 0.04f, 0.04f}},
    {"coral_b", {-5, -7.5f, 13.7f}, {25, -15, 0}, {0.045f, 0.045f, 0.045f}},
    {"coral_b", {-3.4f, -7.6f, 12.8f}, {30, 40, 0}, {0.03f, 0.03f, 0.03f}},
    {"coral_c", {-8.9f, -6.2f, 19.2f}, {30, -10, 0}, {0.04f, 0.04f, 0.04f}},
    {"coral_d", {-5.6f, -7.4f, 15}, {0, 45, 0}, {0.05f, 0.05f, 0.05f}},
    {"coral_d", {-11.6f, -5.6f, 15}, {0, 45, 0}, {0.04f, 0.02f, 0.04f}},
    {"coral_f", {-10, -6, 20.2f}, {-30, 40, 25}, {1, 1, 1}},
    {"coral_g", {0, -7, 25.2f}, {0, 0, 0}, {1, 1, 1}},
    {"coral_h", {7, -7.2f, 22}, {0, 0, 10}, {1, 0.5f, 1}},
    {"coral_i", {11, -7, 18.4f}, {12, 15, -5}, {1.2f, 1.4f, 1.3f}},
}};

/// The way of the big fish, centre line; y = -6 throughout.
inline constexpr std::array<Vec2, 6> kBigFishRoute{
    {{24, 32}, {10, 27}, {4, 20}, {0, 14}, {-2, 9}, {-11, 1}}};

}  // namespace art
