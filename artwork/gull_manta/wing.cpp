#include "gull_manta/wing.h"

namespace art {

BentWing::BentWing(const std::function<float(float distance)>& slope, float span) : span_(span) {
    const float step = span / kSteps;
    for (int i = 0; i <= kSteps; ++i) {
        slope_[i] = slope(step * static_cast<float>(i)) * kPi / 180;
        if (i > 0) {
            const float middle = (slope_[i - 1] + slope_[i]) / 2;
            line_[i] = line_[i - 1] + Vec2{std::cos(middle), std::sin(middle)} * step;
        }
    }
}

Vec2 BentWing::carry(float distance, float height) const {
    const float place = clamp01(distance / span_) * kSteps;
    const int i = std::min(kSteps - 1, static_cast<int>(place));
    const float k = place - static_cast<float>(i);
    const float slope = mix(slope_[i], slope_[i + 1], k);
    const Vec2 on = line_[i] + (line_[i + 1] - line_[i]) * k;
    return on + Vec2{-std::sin(slope), std::cos(slope)} * height;
}

}  // namespace art
