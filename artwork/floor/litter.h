// What lies about on the sand: rubble, shells and starfish.
#pragma once

#include <cstdint>
#include <vector>

#include "common/vec.h"

namespace art {

/// A lump on the sand. Lengths are world units.
struct Stone {
    float x, z, radius, height;
    Vec3 colour;
    uint32_t seed;
    float mottle;  ///< how uneven its colour is
    bool shell = false;
};

struct Star {
    float x, z, radius;
    float turn;  ///< of its arms, radians
    Vec3 colour;
};

/// How a place on a star lies to its arms.
struct OnArm {
    float inside = 0;  ///< 1 on the middle line, 0 at the edge, less outside
    float along = 0;   ///< 0 in the centre, 1 at a tip
};
/// The place is seen from the star's centre, in units of its radius.
OnArm onArm(const Star& star, Vec2 place);

/// Far ones first.
const std::vector<Stone>& stones();
const std::vector<Star>& stars();

/// Distance to the nearest coral's foot, in units of how far its garden reaches.
float nearness(float x, float z);

/// Before the eye a texel of the floor's picture covers two or three pixels. What is well seen
/// there, and every star, is part of a garden's picture, and the floor shows but its shadow.
bool closeUp(const Stone& stone);

}  // namespace art
