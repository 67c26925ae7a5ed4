// Sounds in memory and the filters they go through.
#pragma once

#include <string>
#include <vector>

#include "common/noise.h"

namespace art {

constexpr int sample_rate = 22050;  ///< Hz

/// Amplitude over time, full scale at -1 and 1.
using Mono = std::vector<double>;

struct Stereo {
    Mono left, right;
    explicit Stereo(size_t length = 0) : left(length), right(length) {}
    size_t length() const { return left.size(); }
};

/// Number of samples in a time of seconds.
size_t samples(double seconds);
/// Factor of amplitude for a level in decibels.
double decibels(double level);

/// Second-order filter; corner and centre frequencies in Hz.
class Biquad {
public:
    static Biquad lowpass(double frequency, double q = 0.7071);
    static Biquad highpass(double frequency, double q = 0.7071);
    /// 0 dB at the centre.
    static Biquad bandpass(double frequency, double q);

    double operator()(double x) {
        const double y = b0_ * x + z1_;
        z1_ = b1_ * x - a1_ * y + z2_;
        z2_ = b2_ * x - a2_ * y;
        return y;
    }
    void run(Mono& sound) {
        for (double& x : sound)
            x = (*this)(x);
    }
    /// For a sound that is a loop: what comes out is one, too.
    void runLoop(Mono& sound) {
        for (double x : sound)
            (*this)(x);
        run(sound);
    }

private:
    Biquad(double b0, double b1, double b2, double a0, double a1, double a2)
        : b0_(b0 / a0), b1_(b1 / a0), b2_(b2 / a0), a1_(a1 / a0), a2_(a2 / a0) {}
    double b0_, b1_, b2_, a1_, a2_;
    double z1_ = 0, z2_ = 0;
};

Mono whiteNoise(size_t length, Random& random);

/// What comes back late and from everywhere: decays by 60 dB in the given seconds, high tones
/// sooner. Left and right differ.
Stereo reverberation(const Stereo& sound, double seconds);

/// Root mean square over both channels of the frames in which the sound is there at all: those of
/// 20 ms that come within 20 dB of the loudest one.
double activeLevel(const Stereo& sound);
double peak(const Stereo& sound);
void scale(Stereo& sound, double factor);

/// 16-bit WAV file. Ends the program with a message when the sound reaches above -1 dB of full
/// scale or the file cannot be written.
void saveWav(const Stereo& sound, const std::string& path);

}  // namespace art
