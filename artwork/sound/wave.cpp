#include "sound/wave.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "common/image.h"

namespace art {

size_t samples(double seconds) { return size_t(seconds * sample_rate + 0.5); }

double decibels(double level) { return std::pow(10.0, level / 20); }

namespace {
double angle(double frequency) { return 2 * M_PI * frequency / sample_rate; }
}  // namespace

Biquad Biquad::lowpass(double frequency, double q) {
    const double c = std::cos(angle(frequency)), a = std::sin(angle(frequency)) / (2 * q);
    return {(1 - c) / 2, 1 - c, (1 - c) / 2, 1 + a, -2 * c, 1 - a};
}

Biquad Biquad::highpass(double frequency, double q) {
    const double c = std::cos(angle(frequency)), a = std::sin(angle(frequency)) / (2 * q);
    return {(1 + c) / 2, -1 - c, (1 + c) / 2, 1 + a, -2 * c, 1 - a};
}

Biquad Biquad::bandpass(double frequency, double q) {
    const double c = std::cos(angle(frequency)), a = std::sin(angle(frequency)) / (2 * q);
    return {a, 0, -a, 1 + a, -2 * c, 1 - a};
}

Mono whiteNoise(size_t length, Random& random) {
    Mono noise(length);
    for (double& x : noise)
        x = random.range(-1, 1);
    return noise;
}

Stereo reverberation(const Stereo& sound, double seconds) {
    // Eight delays feed each other through a reflection, which keeps the energy and spreads every
    // echo over all of them. The lengths share no factor, so that no tone rings.
    constexpr std::array<int, 8> lengths = {601, 743, 881, 1031, 1187, 1319, 1487, 1663};
    std::array<Mono, 8> lines;
    std::array<size_t, 8> at{};
    std::array<double, 8> dull{}, gain;
    for (size_t i = 0; i < lines.size(); ++i) {
        lines[i].resize(size_t(lengths[i]));
        gain[i] = decibels(-60.0 * lengths[i] / (sample_rate * seconds));
    }
    Stereo wet(sound.length());
    for (size_t t = 0; t < sound.length(); ++t) {
        std::array<double, 8> out;
        double sum = 0;
        for (size_t i = 0; i < lines.size(); ++i) {
            dull[i] += 0.45 * (lines[i][at[i]] - dull[i]);
            out[i] = gain[i] * dull[i];
            sum += out[i];
        }
        for (size_t i = 0; i < lines.size(); ++i) {
            const double in = i % 2 ? sound.right[t] : sound.left[t];
            lines[i][at[i]] = in + out[i] - sum / 4;
            at[i] = (at[i] + 1) % lines[i].size();
        }
        wet.left[t] = 0.5 * (out[0] - out[2] + out[4] - out[6]);
        wet.right[t] = 0.5 * (out[1] - out[3] + out[5] - out[7]);
    }
    return wet;
}

double activeLevel(const Stereo& sound) {
    const size_t frame = samples(0.02);
    std::vector<double> powers;
    for (size_t begin = 0; begin + frame <= sound.length(); begin += frame) {
        double power = 0;
        for (size_t t = begin; t < begin + frame; ++t)
            power += sound.left[t] * sound.left[t] + sound.right[t] * sound.right[t];
        powers.push_back(power / double(2 * frame));
    }
    const double floor = 0.01 * *std::max_element(powers.begin(), powers.end());
    double sum = 0;
    int count = 0;
    for (double power : powers) {
        if (power >= floor) {
            sum += power;
            ++count;
        }
    }
    return std::sqrt(sum / count);
}

double peak(const Stereo& sound) {
    double highest = 0;
    for (const Mono* channel : {&sound.left, &sound.right}) {
        for (double x : *channel)
            highest = std::max(highest, std::abs(x));
    }
    return highest;
}

void scale(Stereo& sound, double factor) {
    for (Mono* channel : {&sound.left, &sound.right}) {
        for (double& x : *channel)
            x *= factor;
    }
}

void saveWav(const Stereo& sound, const std::string& path) {
    if (peak(sound) > decibels(-1))
        fail(path + ": too loud");
    std::vector<unsigned char> bytes;
    const auto number = [&](uint32_t value, int width) {
        for (int i = 0; i < width; ++i)
            bytes.push_back((value >> (8 * i)) & 0xff);
    };
    const auto tag = [&](const char* name) { bytes.insert(bytes.end(), name, name + 4); };
    const uint32_t size = uint32_t(4 * sound.length());
    tag("RIFF"), number(36 + size, 4), tag("WAVE");
    tag("fmt "), number(16, 4);
    number(1, 2), number(2, 2), number(sample_rate, 4), number(4 * sample_rate, 4);
    number(4, 2), number(16, 2);
    tag("data"), number(size, 4);
    for (size_t t = 0; t < sound.length(); ++t) {
        for (double x : {sound.left[t], sound.right[t]})
            number(uint32_t(std::lround(x * 32767)), 2);
    }

    FILE* file = fopen(path.c_str(), "wb");
    if (!file || fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || fclose(file) != 0)
        fail("cannot write " + path);
}

}  // namespace art
