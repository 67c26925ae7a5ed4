#include "fish/curve.h"

namespace art {

float Curve::slope(size_t i) const {
    const Vec2 a = knots_[i > 0 ? i - 1 : 0], b = knots_[std::min(i + 1, knots_.size() - 1)];
    return (b.y - a.y) / (b.x - a.x);
}

float Curve::at(float x) const {
    if (x <= knots_.front().x)
        return knots_.front().y;
    if (x >= knots_.back().x)
        return knots_.back().y;
    size_t i = 0;
    while (x > knots_[i + 1].x)
        ++i;
    const Vec2 a = knots_[i], b = knots_[i + 1];
    const float h = b.x - a.x, t = (x - a.x) / h, t2 = t * t, t3 = t2 * t;
    return (2 * t3 - 3 * t2 + 1) * a.y + (t3 - 2 * t2 + t) * h * slope(i) +
           (3 * t2 - 2 * t3) * b.y + (t3 - t2) * h * slope(i + 1);
}

Path::Path(std::initializer_list<Vec2> points) {
    constexpr int kSteps = 16;
    const std::vector<Vec2> p(points);
    const auto point = [&](int i) {
        return p[size_t(std::max(0, std::min(i, static_cast<int>(p.size()) - 1)))];
    };
    for (int i = 0; i + 1 < static_cast<int>(p.size()); ++i)
        for (int k = 0; k < kSteps; ++k) {
            const float t = static_cast<float>(k) / kSteps, t2 = t * t, t3 = t2 * t;
            const Vec2 a = point(i - 1), b = point(i), c = point(i + 1), d = point(i + 2);
            dense_.push_back((b * 2.0f + (c - a) * t + (a * 2.0f - b * 5.0f + c * 4.0f - d) * t2 +
                              (b * 3.0f - a - c * 3.0f + d) * t3) *
                             0.5f);
        }
    dense_.push_back(p.back());
    walked_.push_back(0);
    for (size_t i = 1; i < dense_.size(); ++i)
        walked_.push_back(walked_.back() + length(dense_[i] - dense_[i - 1]));
}

Vec2 Path::at(float t) const {
    const float target = clamp01(t) * walked_.back();
    size_t i = 1;
    while (i + 1 < dense_.size() && walked_[i] < target)
        ++i;
    const float span = walked_[i] - walked_[i - 1];
    const float k = span > 0 ? clamp01((target - walked_[i - 1]) / span) : 0;
    return dense_[i - 1] + (dense_[i] - dense_[i - 1]) * k;
}

}  // namespace art
