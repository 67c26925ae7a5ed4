// Repeatable randomness: the same seeds give the same values on every machine.
#pragma once

#include <cstdint>

#include "common/vec.h"

namespace art {

/// A sequence of random numbers; copy it to repeat the sequence.
class Random {
public:
    explicit Random(uint32_t seed) : state_(seed * 2654435761u + 12345u) {}
    uint32_t bits();
    /// In [0, 1).
    float unit() { return static_cast<float>(bits() >> 8) * (1.0f / 16777216.0f); }
    /// In [low, high).
    float range(float low, float high) { return low + (high - low) * unit(); }
    /// In [0, count).
    int index(int count) { return static_cast<int>(bits() % static_cast<uint32_t>(count)); }

private:
    uint32_t state_;
};

/// Mixes the bits of a lattice point and a seed.
uint32_t hash(int x, int y, int z, uint32_t seed);
/// The same as a number in [0, 1).
float hashUnit(int x, int y, int z, uint32_t seed);

/// Repetition of a noise along each axis, in lattice cells; 0 for none.
struct Period {
    int x = 0, y = 0, z = 0;
};

/// Smooth random values in [0, 1], one lattice cell per unit.
float valueNoise(Vec3 p, uint32_t seed, Period period = {});
/// Gradient noise, about -1..1 with mean 0, one lattice cell per unit.
float gradientNoise(Vec3 p, uint32_t seed, Period period = {});
/// Sum of octaves of gradient noise, each twice as fine and gain times as strong; about -1..1.
/// The period is that of the coarsest octave.
float fractalNoise(Vec3 p, int octaves, uint32_t seed, Period period = {}, float gain = 0.5f);

struct Cell {
    float nearest = 0, second = 0;  ///< Distances to the two nearest feature points.
    uint32_t id = 0;                ///< Random bits that belong to the nearest point.
    Vec3 point;                     ///< The nearest feature point.
};
/// One feature point per lattice cell, at random within it.
Cell cellNoise(Vec3 p, uint32_t seed, Period period = {});
/// The same with all points in the plane z = 0.
Cell cellNoise(Vec2 p, uint32_t seed, Period period = {});

}  // namespace art
