#include "sand_figures.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// One value per pixel of a box.
struct Plane {
    Plane(int w, int h) : width(w), height(h), values(static_cast<size_t>(w) * size_t(h)) {}
    double& at(int x, int y) { return values[size_t(y) * size_t(width) + size_t(x)]; }
    double at(int x, int y) const { return values[size_t(y) * size_t(width) + size_t(x)]; }

    int width, height;
    std::vector<double> values;
};

/// Linear between the two nearest ranks.
double percentile(std::vector<double> values, double percent) {
    std::sort(values.begin(), values.end());
    const double rank = percent / 100 * static_cast<double>(values.size() - 1);
    const auto low = static_cast<size_t>(rank);
    const size_t high = std::min(low + 1, values.size() - 1);
    return values[low] + (values[high] - values[low]) * (rank - static_cast<double>(low));
}

double mean(const std::vector<double>& values) {
    double sum = 0;
    for (double v : values)
        sum += v;
    return values.empty() ? 0 : sum / static_cast<double>(values.size());
}

double deviation(const std::vector<double>& values) {
    const double middle = mean(values);
    double sum = 0;
    for (double v : values)
        sum += (v - middle) * (v - middle);
    return values.empty() ? 0 : std::sqrt(sum / static_cast<double>(values.size()));
}

/// The border's pixels lie beside their own mirror images.
int mirrored(int i, int size) {
    if (i < 0)
        return -i - 1;
    return i < size ? i : 2 * size - 1 - i;
}

std::vector<double> bell(double sigma) {
    const int reach = static_cast<int>(std::lround(4 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(std::exp(-0.5 * i * i / (sigma * sigma)));
        sum += weights.back();
    }
    for (double& w : weights)
        w /= sum;
    return weights;
}

/// The slope of the bell: answers to a ramp of one per pixel with one.
std::vector<double> bellSlope(double sigma) {
    std::vector<double> weights = bell(sigma);
    const int reach = static_cast<int>(weights.size()) / 2;
    for (int i = -reach; i <= reach; ++i)
        weights[i + reach] *= i / (sigma * sigma);
    return weights;
}

Plane filtered(const Plane& plane, const std::vector<double>& across,
               const std::vector<double>& down) {
    const auto run = [](const Plane& from, const std::vector<double>& weights, bool rows) {
        const int reach = static_cast<int>(weights.size()) / 2;
        Plane to(from.width, from.height);
        for (int y = 0; y < from.height; ++y)
            for (int x = 0; x < from.width; ++x)
                for (int i = -reach; i <= reach; ++i)
                    to.at(x, y) +=
                        weights[i + reach] * (rows ? from.at(mirrored(x + i, from.width), y)
                                                   : from.at(x, mirrored(y + i, from.height)));
        return to;
    };
    return run(run(plane, across, true), down, false);
}

Plane blurred(const Plane& plane, double sigma) {
    return filtered(plane, bell(sigma), bell(sigma));
}

/// From each pixel to the nearest one where inside is zero.
Plane depthInside(const Plane& inside) {
    const int far = inside.width + inside.height;
    Plane depth = inside;
    for (int x = 0; x < inside.width; ++x) {
        int away = far;
        for (int y = 0; y < inside.height; ++y) {
            away = inside.at(x, y) > 0 ? std::min(far, away + 1) : 0;
            depth.at(x, y) = away;
        }
        away = far;
        for (int y = inside.height - 1; y >= 0; --y) {
            away = inside.at(x, y) > 0 ? std::min(far, away + 1) : 0;
            depth.at(x, y) = std::min<double>(depth.at(x, y), away);
        }
    }
    for (int y = 0; y < inside.height; ++y) {
        const auto row = depth.values.begin() + std::ptrdiff_t(y) * inside.width;
        const std::vector<double> column(row, row + inside.width);
        for (int x = 0; x < inside.width; ++x) {
            double best = column[size_t(x)];
            for (int a = 1; a < best; ++a)
                for (int side : {x - a, x + a})
                    if (side >= 0 && side < inside.width)
                        best = std::min(best, std::hypot(a, column[size_t(side)]));
            depth.at(x, y) = best;
        }
    }
    return depth;
}

/// Twice the mean depth along the ridges of what is brighter than the limit.
double lineWidth(const Plane& luma, double limit) {
    Plane lines = blurred(luma, 1);
    for (double& v : lines.values)
        v = v > limit;
    const Plane depth = depthInside(lines);
    std::vector<double> ridge;
    for (int y = 0; y < depth.height; ++y)
        for (int x = 0; x < depth.width; ++x) {
            double around = 0;
            for (int b = std::max(0, y - 2); b <= std::min(depth.height - 1, y + 2); ++b)
                for (int a = std::max(0, x - 2); a <= std::min(depth.width - 1, x + 2); ++a)
                    around = std::max(around, depth.at(a, b));
            if (depth.at(x, y) > 1 && depth.at(x, y) >= around)
                ridge.push_back(depth.at(x, y));
        }
    return 2 * mean(ridge);
}

}  // namespace

SandFigures measureSand(const Picture& picture, const SandBox& box) {
    Plane luma(box.right - box.left, box.bottom - box.top), saturation = luma;
    for (int y = 0; y < luma.height; ++y)
        for (int x = 0; x < luma.width; ++x) {
            const uint8_t* rgb =
                &picture.rgb[size_t((box.top + y) * picture.width + box.left + x) * 3];
            const int most = std::max({rgb[0], rgb[1], rgb[2]});
            const int least = std::min({rgb[0], rgb[1], rgb[2]});
            luma.at(x, y) = 0.299 * rgb[0] + 0.587 * rgb[1] + 0.114 * rgb[2];
            saturation.at(x, y) = double(most - least) / std::max(1, most);
        }
    const Plane soft = blurred(luma, 2);
    std::vector<double> colours, lumas, details;
    for (size_t i = 0; i < luma.values.size(); ++i)
        if (saturation.values[i] < 0.25 && luma.values[i] > 90) {
            colours.push_back(saturation.values[i]);
            lumas.push_back(luma.values[i]);
            details.push_back(luma.values[i] - soft.values[i]);
        }

    Plane gradient = filtered(luma, bellSlope(1), bell(1));
    const Plane down = filtered(luma, bell(1), bellSlope(1));
    for (size_t i = 0; i < gradient.values.size(); ++i)
        gradient.values[i] = std::hypot(gradient.values[i], down.values[i]);

    const double middle = percentile(luma.values, 50), top = percentile(luma.values, 99);
    SandFigures figures;
    figures.saturation = mean(colours);
    figures.deviation = deviation(lumas);
    figures.brightest = percentile(lumas, 99);
    figures.crispness = percentile(gradient.values, 95);
    figures.line = lineWidth(luma, middle + 0.6 * (top - middle));
    figures.fine = deviation(details);
    return figures;
}
