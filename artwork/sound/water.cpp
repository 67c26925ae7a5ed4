// Small waves of a calm lagoon lapping on sand, as a loop.
#include <algorithm>
#include <cmath>
#include <vector>

#include "sound/wave.h"

using namespace art;

namespace {

constexpr double loop_seconds = 30;

double smooth(double x) {
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

/// A sound without beginning or end; times wrap.
struct Loop : Stereo {
    Loop() : Stereo(samples(loop_seconds)) {}
    size_t wrap(size_t t) const { return t % length(); }
};

/// The tone of a bubble of air closing under water: it rings at a pitch set by its radius, dies
/// away fast, and rises a little as the bubble nears the surface.
void addBubble(Loop& loop, double start, double radius_mm, double level, double pan,
               double rising) {
    const double radius = radius_mm * 0.001;
    const double pitch = 3.0 / radius;
    const double damping = 0.13 / radius + 0.0072 * std::pow(radius, -1.5);
    const double glide = rising * damping;
    const double right = std::sqrt(0.5 * (1 + pan)), left = std::sqrt(0.5 * (1 - pan));
    const size_t begin = samples(start), length = samples(6.5 / damping);
    const double soft = 0.0012;  // seconds until it is at its loudest
    double phase = 0;
    for (size_t t = 0; t < length; ++t) {
        const double time = double(t) / sample_rate;
        const double f = pitch * (1 + std::min(glide * time, 0.6));
        if (f > 8000)
            break;
        phase += f / sample_rate;
        const double x =
            level * smooth(time / soft) * std::exp(-damping * time) * std::sin(2 * M_PI * phase);
        const size_t at = loop.wrap(begin + t);
        loop.left[at] += left * x;
        loop.right[at] += right * x;
    }
}

/// A wave that reaches the sand.
struct Wave {
    double start;     ///< seconds
    double strength;  ///< 0..1
    double from, to;  ///< where it touches first and last, -1 left .. 1 right
    double pace;      ///< 1, less for a wave that takes its time
};

/// Bubbles that a wave folds in, the coarse ones when it tips over, finer ones as it runs up the
/// sand and back.
void addBubbles(Loop& loop, const Wave& wave, Random& random) {
    const double length = 3.4 / wave.pace;
    const int count = int(1900 * wave.strength);
    for (int i = 0; i < count; ++i) {
        // Most of them soon after the wave tips, then fewer and fewer.
        const double u = std::pow(random.unit(), 1.7);
        const double swell = smooth(u / 0.12);
        const double fine = smooth(u / 0.5);
        const double size = std::pow(random.unit(), 1.6);
        const double radius = 0.65 + (1.1 + 3.4 * (1 - fine)) * size;
        const double level = 0.5 * swell * (1 - 0.75 * u) * std::pow(radius / 3, 0.8) *
                             std::pow(random.unit(), 1.5) * wave.strength;
        const double pan = std::clamp(
            wave.from + (wave.to - wave.from) * u + random.range(-0.3f, 0.3f), -0.9, 0.9);
        addBubble(loop, wave.start + u * length, radius, level, pan, 0.02 + 0.1 * random.unit());
    }
}

/// The soft rush of the water itself, on one side of the place where the wave touches: low while
/// the wave comes, opening as it spreads, then dying.
void addRush(Loop& loop, const Wave& wave, double side, Random& random) {
    const size_t length = samples(5.2 / wave.pace);
    const size_t begin = samples(wave.start + loop_seconds - 1.3 / wave.pace);
    double low = 0, lower = 0, lowest = 0;
    for (size_t t = 0; t < length; ++t) {
        const double u = double(t) / double(length);
        const double level = smooth(u / 0.3) * std::pow(1 - u, 1.8) * wave.strength;
        const double cutoff = 260 + 1050 * smooth((u - 0.12) / 0.3) * (1 - 0.6 * u);
        const double k = 1 - std::exp(-2 * M_PI * cutoff / sample_rate);
        low += k * (random.range(-1, 1) - low);
        lower += k * (low - lower);
        lowest += 0.03 * (lower - lowest);  // no rumble below some 100 Hz
        const double x = 3.2 * level * (lower - lowest);
        const double touch = wave.from + (wave.to - wave.from) * smooth(u * 1.3);
        const double pan = std::clamp(0.7 * touch + side, -1.0, 1.0);
        const size_t at = loop.wrap(begin + t);
        loop.left[at] += std::sqrt(0.5 * (1 - pan)) * x;
        loop.right[at] += std::sqrt(0.5 * (1 + pan)) * x;
    }
}

/// Ripples against a stone here and there, between the waves.
void addRipples(Loop& loop, Random& random) {
    double at = 0;
    while (at < loop_seconds) {
        const double pan = random.range(-0.8f, 0.8f);
        const int drops = 2 + random.index(5);
        double radius = random.range(2.2f, 5.5f);
        double time = at;
        for (int i = 0; i < drops; ++i) {
            addBubble(loop, time, radius, 0.16 * random.range(0.3f, 1.0f), pan, 0.12);
            time += random.range(0.03f, 0.11f);
            radius *= random.range(0.75f, 1.1f);
        }
        at += random.range(0.25f, 1.1f);
    }
}

/// The wide water far off, barely there.
void addDistance(Loop& loop, Random& random) {
    for (Mono* channel : {&loop.left, &loop.right}) {
        Mono noise = whiteNoise(loop.length(), random);
        Biquad::lowpass(420).runLoop(noise);
        Biquad::lowpass(900).runLoop(noise);
        Biquad::highpass(90).runLoop(noise);
        const double shift = random.unit();
        for (size_t t = 0; t < loop.length(); ++t) {
            const double u = double(t) / double(loop.length());
            const double swell = 1 + 0.3 * std::sin(2 * M_PI * (4 * u + shift)) +
                                 0.2 * std::sin(2 * M_PI * (7 * u - shift));
            (*channel)[t] += 0.11 * swell * noise[t];
        }
    }
}

}  // namespace

int main(int, char** argv) {
    const std::vector<Wave> waves = {
        {1.0, 0.80, -0.6, 0.3, 1.00},  {4.3, 0.55, 0.5, -0.2, 1.10}, {7.2, 1.00, -0.2, 0.7, 0.90},
        {11.4, 0.50, 0.6, 0.1, 1.15},  {13.8, 0.75, -0.7, 0.0, 1.0}, {17.5, 0.90, 0.3, -0.6, 0.92},
        {20.9, 0.45, -0.4, 0.4, 1.20}, {23.2, 0.70, 0.7, -0.1, 1.0}, {26.9, 0.95, -0.5, 0.5, 0.95},
    };
    Loop loop;
    Random random(5);
    addDistance(loop, random);
    addRipples(loop, random);
    for (const Wave& wave : waves) {
        for (double side : {-0.55, 0.55})
            addRush(loop, wave, side, random);
        addBubbles(loop, wave, random);
    }
    for (Mono* channel : {&loop.left, &loop.right}) {
        Biquad::lowpass(4200, 0.6).runLoop(*channel);
        Biquad::highpass(70).runLoop(*channel);
    }
    scale(loop, decibels(-31) / activeLevel(loop));
    saveWav(loop, std::string(argv[1]) + "/sound/water.wav");
}
