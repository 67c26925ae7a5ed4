#include "common/noise.h"

namespace art {
namespace {

uint32_t scramble(uint32_t x) {
    x ^= x >> 16;
    x *= 0x7feb352dU;
    x ^= x >> 15;
    x *= 0x846ca68bU;
    x ^= x >> 16;
    return x;
}

int wrap(int value, int period) {
    if (period <= 0)
        return value;
    const int m = value % period;
    return m < 0 ? m + period : m;
}

float fade(float t) { return t * t * t * (t * (t * 6 - 15) + 10); }

struct Lattice {
    int x, y, z;
    float fx, fy, fz;
};

Lattice lattice(Vec3 p) {
    const float x = std::floor(p.x), y = std::floor(p.y), z = std::floor(p.z);
    return {
        static_cast<int>(x), static_cast<int>(y), static_cast<int>(z), p.x - x, p.y - y, p.z - z};
}

/// Blends the values at the eight corners of a lattice cell.
template <class Corner>
float blend(const Lattice& l, Corner corner) {
    const float u = fade(l.fx), v = fade(l.fy), w = fade(l.fz);
    float plane[2];
    for (int k = 0; k < 2; ++k)
        plane[k] = mix(mix(corner(0, 0, k), corner(1, 0, k), u),
                       mix(corner(0, 1, k), corner(1, 1, k), u), v);
    return mix(plane[0], plane[1], w);
}

Cell findCell(Vec3 p, uint32_t seed, Period period, bool flat) {
    const Lattice l = lattice(p);
    Cell cell;
    float first = 1e9f, second = 1e9f;
    const int reach = flat ? 0 : 1;
    for (int c = -reach; c <= reach; ++c)
        for (int b = -1; b <= 1; ++b)
            for (int a = -1; a <= 1; ++a) {
                const uint32_t h = hash(wrap(l.x + a, period.x), wrap(l.y + b, period.y),
                                        wrap(l.z + c, period.z), seed);
                const auto unit = [](uint32_t bits) {
                    return static_cast<float>(bits >> 8) * (1.0f / 16777216.0f);
                };
                const Vec3 q{static_cast<float>(l.x + a) + unit(h),
                             static_cast<float>(l.y + b) + unit(scramble(h + 1)),
                             flat ? p.z : static_cast<float>(l.z + c) + unit(scramble(h + 2))};
                const float d = dot(q - p, q - p);
                if (d < first) {
                    second = first;
                    first = d;
                    cell.id = h;
                    cell.point = q;
                } else {
                    second = std::min(second, d);
                }
            }
    cell.nearest = std::sqrt(first);
    cell.second = std::sqrt(second);
    return cell;
}

}  // namespace

uint32_t Random::bits() {
    state_ = state_ * 1664525u + 1013904223u;
    return scramble(state_);
}

uint32_t hash(int x, int y, int z, uint32_t seed) {
    return scramble(scramble(scramble(static_cast<uint32_t>(x) * 0x9E3779B1u + seed) ^
                             (static_cast<uint32_t>(y) * 0x85EBCA77u)) ^
                    (static_cast<uint32_t>(z) * 0xC2B2AE3Du));
}

float hashUnit(int x, int y, int z, uint32_t seed) {
    return static_cast<float>(hash(x, y, z, seed) >> 8) * (1.0f / 16777216.0f);
}

float valueNoise(Vec3 p, uint32_t seed, Period period) {
    const Lattice l = lattice(p);
    return blend(l, [&](int a, int b, int c) {
        return hashUnit(wrap(l.x + a, period.x), wrap(l.y + b, period.y), wrap(l.z + c, period.z),
                        seed);
    });
}

float gradientNoise(Vec3 p, uint32_t seed, Period period) {
    const Lattice l = lattice(p);
    return blend(l, [&](int a, int b, int c) {
        const uint32_t h =
            hash(wrap(l.x + a, period.x), wrap(l.y + b, period.y), wrap(l.z + c, period.z), seed) &
            15u;
        const float dx = l.fx - static_cast<float>(a), dy = l.fy - static_cast<float>(b),
                    dz = l.fz - static_cast<float>(c);
        const float u = h < 8 ? dx : dy, v = h < 4 ? dy : (h == 12 || h == 14) ? dx : dz;
        return ((h & 1u) ? -u : u) + ((h & 2u) ? -v : v);
    });
}

float fractalNoise(Vec3 p, int octaves, uint32_t seed, Period period, float gain) {
    float sum = 0, weight = 0, amplitude = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += amplitude * gradientNoise(p, seed + static_cast<uint32_t>(i) * 17u, period);
        weight += amplitude;
        amplitude *= gain;
        p *= 2;
        period = {period.x * 2, period.y * 2, period.z * 2};
    }
    return sum / weight;
}

Cell cellNoise(Vec3 p, uint32_t seed, Period period) { return findCell(p, seed, period, false); }

Cell cellNoise(Vec2 p, uint32_t seed, Period period) {
    return findCell({p.x, p.y, 0}, seed, period, true);
}

}  // namespace art
