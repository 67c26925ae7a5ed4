// What gull and manta share: a wing that bends along its span.
#pragma once

#include <functional>

#include "common/vec.h"

namespace art {

/// The middle line of one wing in one frame, seen from the front: built from its slope in degrees
/// (positive upwards) at every distance from the body.
class BentWing {
public:
    BentWing(const std::function<float(float distance)>& slope, float span);
    /// Where a point ends that lies the given distance out along the flat wing and height above
    /// it: x outwards, y upwards.
    Vec2 carry(float distance, float height) const;

private:
    static constexpr int kSteps = 64;
    float span_;
    Vec2 line_[kSteps + 1];
    float slope_[kSteps + 1];  ///< Radians.
};

}  // namespace art
