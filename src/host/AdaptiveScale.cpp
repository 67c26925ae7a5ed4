#include "host/AdaptiveScale.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<double, 6> fractions = {1, 0.85, 0.7, 0.6, 0.5, 0.4};
constexpr int last = static_cast<int>(fractions.size()) - 1;

constexpr double MEASURING = 1000;  ///< and no fewer than LEAST_FRAMES
constexpr int LEAST_FRAMES = 2;
constexpr double BEGINNING = 5000;
constexpr double PATIENCE = 10000;

/// How much more pixels cost; what does not depend on them makes the true change smaller.
double growth(int from, int to) {
    const double side = fractions[static_cast<size_t>(to)] / fractions[static_cast<size_t>(from)];
    return side * side;
}

}  // namespace

// The rest of a frame's time goes into showing it and into whatever else the machine does.
AdaptiveScale::AdaptiveScale(double pace) : longest(0.8 * 1000 / pace), best(0.65 * 1000 / pace) {}

double AdaptiveScale::fraction() const { return fractions[static_cast<size_t>(step)]; }

int AdaptiveScale::wantedStep(double mean) const {
    if (mean > longest) {
        int smaller = std::min(step + 1, last);
        while (smaller < last && mean * growth(step, smaller) > best)
            ++smaller;
        return smaller;
    }
    return step > 0 && mean * growth(step, step - 1) < best ? step - 1 : step;
}

void AdaptiveScale::measureAnew(double now) {
    measured_since = now;
    frames = 0;
    sum = 0;
}

void AdaptiveScale::drawn(double now, double took, bool travelling) {
    if (started < 0) {
        // The first frame uploads what all others find.
        started = now;
        measureAnew(now);
        return;
    }
    ++frames;
    sum += took;
    if (now - measured_since < MEASURING || frames < LEAST_FRAMES)
        return;
    const int wanted = wantedStep(sum / frames);
    measureAnew(now);
    if (wanted == step) {
        needed_since = -1;
        return;
    }
    if (needed_since < 0)
        needed_since = now;
    if (travelling || now - started < BEGINNING || now - needed_since >= PATIENCE) {
        step = wanted;
        needed_since = -1;
    }
}
