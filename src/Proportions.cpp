#include "Proportions.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double WIDEST_ASPECT = 21.0 / 9;

}  // namespace

VIEW_WINDOW trueView(double aspect, double horizon) {
    const double edge = std::tan(VIEW_ANGLE / 2 * 3.14159265358979 / 180);
    const double widening = std::clamp(aspect, WIDER_FROM, WIDEST_ASPECT) / WIDER_FROM;
    const double right = edge * std::min(aspect, MAX_ASPECT * widening);
    const double height = 2 * right / aspect;
    const double above = std::clamp((edge - horizon) / (2 * edge), 0.0, 1.0);
    // A horizon outside the picture stays outside, at the edge that is then the whole one.
    const double top = std::clamp(horizon, -edge, edge) + above * height;
    return {-right, right, top - height, top};
}
