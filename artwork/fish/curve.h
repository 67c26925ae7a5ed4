// Smooth lines through a few points: the outlines that creatures are drawn with.
#pragma once

#include <vector>

#include "common/vec.h"

namespace art {

/// A smooth function through knots sorted by x; constant outside them. Not to be asked while empty.
class Curve {
public:
    Curve() = default;
    Curve(std::initializer_list<Vec2> knots) : knots_(knots) {}
    float at(float x) const;

private:
    float slope(size_t i) const;
    std::vector<Vec2> knots_;
};

/// A smooth line through points in a plane, walked evenly from 0 (first point) to 1 (last).
class Path {
public:
    Path() = default;
    Path(std::initializer_list<Vec2> points);
    Vec2 at(float t) const;

private:
    std::vector<Vec2> dense_;
    std::vector<float> walked_;  ///< Length up to each dense point.
};

}  // namespace art
