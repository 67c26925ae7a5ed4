// Small vector math for painters.
#pragma once

#include <algorithm>
#include <cmath>

namespace art {

constexpr float kPi = 3.14159265358979f;

struct Vec2 {
    float x = 0, y = 0;
};
inline Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
inline Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
inline Vec2 operator*(Vec2 a, float s) { return {a.x * s, a.y * s}; }
inline float dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
inline float length(Vec2 a) { return std::sqrt(dot(a, a)); }

/// A point, a direction or a colour (0..1, as displayed: no gamma conversion anywhere).
struct Vec3 {
    float x = 0, y = 0, z = 0;
    Vec3& operator+=(Vec3 o) {
        x += o.x;
        y += o.y;
        z += o.z;
        return *this;
    }
    Vec3& operator*=(float s) {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
};
inline Vec3 operator+(Vec3 a, Vec3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
inline Vec3 operator-(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
inline Vec3 operator-(Vec3 a) { return {-a.x, -a.y, -a.z}; }
inline Vec3 operator*(Vec3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
inline Vec3 operator*(float s, Vec3 a) { return a * s; }
inline Vec3 operator*(Vec3 a, Vec3 b) { return {a.x * b.x, a.y * b.y, a.z * b.z}; }
inline Vec3 operator/(Vec3 a, float s) { return {a.x / s, a.y / s, a.z / s}; }
inline float dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
inline Vec3 cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(Vec3 a) { return std::sqrt(dot(a, a)); }
/// Unit vector along a; straight up for a zero vector.
inline Vec3 normalize(Vec3 a) {
    const float l = length(a);
    return l > 1e-12f ? a / l : Vec3{0, 0, 1};
}

/// Turns by degrees about an axis, counter-clockwise seen from its positive end.
inline Vec3 rotateX(Vec3 p, float degrees) {
    const float a = degrees * kPi / 180, c = std::cos(a), s = std::sin(a);
    return {p.x, p.y * c - p.z * s, p.y * s + p.z * c};
}
inline Vec3 rotateY(Vec3 p, float degrees) {
    const float a = degrees * kPi / 180, c = std::cos(a), s = std::sin(a);
    return {p.x * c + p.z * s, p.y, -p.x * s + p.z * c};
}
inline Vec3 rotateZ(Vec3 p, float degrees) {
    const float a = degrees * kPi / 180, c = std::cos(a), s = std::sin(a);
    return {p.x * c - p.y * s, p.x * s + p.y * c, p.z};
}

inline float clamp01(float v) { return std::min(1.0f, std::max(0.0f, v)); }
inline float mix(float a, float b, float t) { return a + (b - a) * t; }
inline Vec3 mix(Vec3 a, Vec3 b, float t) { return a + (b - a) * t; }
/// 0 below a, 1 above b, smooth between; a may lie above b for a falling step.
inline float smoothstep(float a, float b, float v) {
    const float t = clamp01((v - a) / (b - a));
    return t * t * (3 - 2 * t);
}
/// 1 between a and b with soft shoulders of the given width outside.
inline float band(float v, float a, float b, float soft) {
    return smoothstep(a - soft, a + soft, v) * (1 - smoothstep(b - soft, b + soft, v));
}
/// A colour from 0..255 components.
inline Vec3 rgb(float r, float g, float b) { return {r / 255, g / 255, b / 255}; }

}  // namespace art
