// The sounds that the saver is shipped with.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

constexpr int rate = 22050;

double inDecibels(double amplitude) { return 20 * std::log10(std::max(amplitude, 1e-9)); }

/// Amplitude over time, full scale at -1 and 1.
struct Recording {
    std::vector<double> left, right, both;  ///< both: the mean
    double seconds() const { return double(both.size()) / rate; }
};

uint32_t number(const std::string& bytes, size_t at, int width) {
    uint32_t value = 0;
    for (int i = 0; i < width; ++i)
        value |= uint32_t(uint8_t(bytes[at + size_t(i)])) << (8 * i);
    return value;
}

/// Fails the test unless the file is 22050 Hz, 16 bit, stereo and as long as it says.
Recording load(const std::string& name) {
    Recording sound;
    std::ifstream in(DATA_DIR "sound/" + name, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (bytes.size() < 48) {
        ADD_FAILURE() << name << ": " << bytes.size() << " bytes";
        return sound;
    }
    EXPECT_EQ(bytes.substr(0, 4), "RIFF") << name;
    EXPECT_EQ(number(bytes, 4, 4), bytes.size() - 8) << name;
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ") << name;
    EXPECT_EQ(number(bytes, 16, 4), 16u) << name;
    EXPECT_EQ(number(bytes, 20, 2), 1u) << name << ": plain samples";
    EXPECT_EQ(number(bytes, 22, 2), 2u) << name << ": channels";
    EXPECT_EQ(number(bytes, 24, 4), uint32_t(rate)) << name;
    EXPECT_EQ(number(bytes, 28, 4), uint32_t(4 * rate)) << name;
    EXPECT_EQ(number(bytes, 32, 2), 4u) << name;
    EXPECT_EQ(number(bytes, 34, 2), 16u) << name << ": bits";
    EXPECT_EQ(bytes.substr(36, 4), "data") << name;
    EXPECT_EQ(number(bytes, 40, 4), bytes.size() - 44) << name;
    for (size_t at = 44; at + 4 <= bytes.size(); at += 4) {
        sound.left.push_back(int16_t(number(bytes, at, 2)) / 32768.0);
        sound.right.push_back(int16_t(number(bytes, at + 2, 2)) / 32768.0);
        sound.both.push_back((sound.left.back() + sound.right.back()) / 2);
    }
    return sound;
}

double meanSquare(const Recording& sound, size_t begin, size_t end) {
    double sum = 0;
    for (size_t t = begin; t < end; ++t)
        sum += sound.left[t] * sound.left[t] + sound.right[t] * sound.right[t];
    return sum / double(2 * (end - begin));
}

/// Mean square of each piece of so many seconds.
std::vector<double> powers(const Recording& sound, double seconds) {
    const size_t piece = size_t(seconds * rate);
    std::vector<double> result;
    for (size_t at = 0; at + piece <= sound.both.size(); at += piece)
        result.push_back(meanSquare(sound, at, at + piece));
    return result;
}

/// Level in dB while the sound is there: of the pieces within 20 dB of the loudest.
double level(const Recording& sound) {
    const std::vector<double> all = powers(sound, 0.02);
    const double least = *std::max_element(all.begin(), all.end()) / 100;
    double sum = 0;
    int count = 0;
    for (double power : all) {
        if (power >= least) {
            sum += power;
            ++count;
        }
    }
    return 10 * std::log10(sum / count);
}

void transform(std::vector<std::complex<double>>& x) {
    const size_t n = x.size();
    if (n == 1)
        return;
    std::vector<std::complex<double>> even(n / 2), odd(n / 2);
    for (size_t i = 0; i < n / 2; ++i) {
        even[i] = x[2 * i];
        odd[i] = x[2 * i + 1];
    }
    transform(even);
    transform(odd);
    for (size_t i = 0; i < n / 2; ++i) {
        const auto turned = std::polar(1.0, -2 * M_PI * double(i) / double(n)) * odd[i];
        x[i] = even[i] + turned;
        x[i + n / 2] = even[i] - turned;
    }
}

/// Part of the power that lies between two frequencies in Hz, in dB.
double bandLevel(const Recording& sound, double low, double high) {
    constexpr size_t n = 2048;
    double band = 0, all = 0;
    for (size_t at = 0; at + n <= sound.both.size(); at += n / 2) {
        std::vector<std::complex<double>> x(n);
        for (size_t i = 0; i < n; ++i)
            x[i] = sound.both[at + i] * (0.5 - 0.5 * std::cos(2 * M_PI * double(i) / double(n)));
        transform(x);
        for (size_t i = 1; i < n / 2; ++i) {
            const double frequency = double(i) * rate / n;
            const double power = std::norm(x[i]);
            all += power;
            if (frequency >= low && frequency < high)
                band += power;
        }
    }
    return 10 * std::log10(band / all + 1e-12);
}

/// Pitch in Hz of the piece of 46 ms around a time: the shift below which it looks most like
/// itself, of those that a gull may have.
double pitch(const Recording& sound, double seconds) {
    const size_t begin = size_t(seconds * rate) - 512, length = 1024;
    double best = 0, best_likeness = 0;
    for (size_t lag = rate / 1600; lag <= rate / 550; ++lag) {
        double like = 0, a = 0, b = 0;
        for (size_t t = begin; t < begin + length; ++t) {
            like += sound.both[t] * sound.both[t + lag];
            a += sound.both[t] * sound.both[t];
            b += sound.both[t + lag] * sound.both[t + lag];
        }
        like /= std::sqrt(a * b);
        // The double period looks as good; the shorter one is the pitch.
        if (like > best_likeness + 0.05) {
            best_likeness = like;
            best = double(rate) / double(lag);
        }
    }
    return best;
}

/// Times of the cries of a call, begin and end: where it is within 12 dB of the loudest, apart by
/// dips of at least 6 dB.
std::vector<std::pair<double, double>> cries(const Recording& sound) {
    const std::vector<double> all = powers(sound, 0.01);
    const double loudest = *std::max_element(all.begin(), all.end());
    std::vector<std::pair<double, double>> result;
    double highest = 0, lowest = 0;
    bool inside = false;
    for (size_t i = 0; i < all.size(); ++i) {
        const double time = double(i) * 0.01;
        if (inside) {
            highest = std::max(highest, all[i]);
            result.back().second = time;
            if (all[i] < highest / 4) {
                inside = false;
                lowest = all[i];
            }
        } else {
            lowest = std::min(lowest, all[i]);
            if (all[i] > loudest / 16 && all[i] > 4 * lowest) {
                inside = true;
                highest = all[i];
                result.push_back({time, time});
            }
        }
    }
    return result;
}

const std::vector<std::string> calls = {"seagull1.wav", "seagull2.wav", "seagull3.wav",
                                        "seagull4.wav"};

TEST(SoundFiles, PeaksStayBelowFullScaleAndMixWithoutClipping) {
    const auto peak = [](const Recording& sound) {
        double highest = 0;
        for (const auto* channel : {&sound.left, &sound.right}) {
            for (double x : *channel)
                highest = std::max(highest, std::abs(x));
        }
        return highest;
    };
    const double water = peak(load("water.wav"));
    EXPECT_LE(inDecibels(water), -1);
    for (const std::string& name : calls) {
        const double call = peak(load(name));
        EXPECT_LE(inDecibels(call), -1) << name;
        EXPECT_GT(inDecibels(call), -12) << name;
        EXPECT_LT(call + water, 1) << name;
    }
}

TEST(SoundFiles, HaveNoOffset) {
    for (const char* name :
         {"water.wav", "seagull1.wav", "seagull2.wav", "seagull3.wav", "seagull4.wav"}) {
        const Recording sound = load(name);
        for (const auto* channel : {&sound.left, &sound.right}) {
            double sum = 0;
            for (double x : *channel)
                sum += x;
            EXPECT_LT(std::abs(sum / double(channel->size())), 1e-4) << name;
        }
    }
}

TEST(SoundFiles, CallsStandTwelveDecibelsAboveTheWater) {
    const double water = level(load("water.wav"));
    for (const std::string& name : calls)
        EXPECT_NEAR(level(load(name)) - water, 12, 2.5) << name;
}

TEST(SoundFiles, WaterIsLongAndHasNoSeam) {
    const Recording water = load("water.wav");
    ASSERT_GE(water.seconds(), 20);
    const size_t n = water.both.size();
    for (const auto* channel : {&water.left, &water.right}) {
        // The step across the seam, and how much it bends, are such as occur everywhere.
        std::vector<double> steps, bends;
        for (size_t t = 0; t < n; ++t) {
            const double a = (*channel)[t], b = (*channel)[(t + 1) % n],
                         c = (*channel)[(t + 2) % n];
            steps.push_back(std::abs(b - a));
            bends.push_back(std::abs(c - 2 * b + a));
        }
        const double step = steps[n - 1], bend = std::max(bends[n - 1], bends[n - 2]);
        std::sort(steps.begin(), steps.end());
        std::sort(bends.begin(), bends.end());
        EXPECT_LE(step, steps[n * 99 / 100]);
        EXPECT_LE(bend, bends[n * 99 / 100]);
    }
    const double before = meanSquare(water, n - rate / 4, n),
                 after = meanSquare(water, 0, rate / 4);
    EXPECT_NEAR(10 * std::log10(before / after), 0, 3) << "the waves jump at the seam";
}

TEST(SoundFiles, WaterIsCalmAndDoesNotHiss) {
    const Recording water = load("water.wav");
    EXPECT_LT(bandLevel(water, 5000, 11025), -35);
    EXPECT_LT(bandLevel(water, 0, 80), -15) << "rumble";
    // Waves come and go, without a pause between them and without a blow.
    const std::vector<double> all = powers(water, 0.5);
    const auto [low, high] = std::minmax_element(all.begin(), all.end());
    EXPECT_GT(10 * std::log10(*high / *low), 8);
    EXPECT_LT(10 * std::log10(*high / *low), 22);
    int waves = 0;
    for (size_t i = 0; i < all.size(); ++i) {
        const double here = all[i], back = all[(i + all.size() - 1) % all.size()],
                     next = all[(i + 1) % all.size()];
        waves += here > back && here >= next;
    }
    EXPECT_GE(waves, 6);
    EXPECT_LE(waves, 15);
}

TEST(SoundFiles, CallsBeginAndEndInSilence) {
    for (const std::string& name : calls) {
        const Recording call = load(name);
        const size_t n = call.both.size();
        EXPECT_LT(inDecibels(std::sqrt(meanSquare(call, 0, rate / 500))), -60) << name;
        EXPECT_LT(inDecibels(std::sqrt(meanSquare(call, n - rate / 50, n))), -70) << name;
        for (size_t t : {size_t(0), n - 1}) {
            EXPECT_LE(std::abs(call.left[t]), 2 / 32768.0) << name;
            EXPECT_LE(std::abs(call.right[t]), 2 / 32768.0) << name;
        }
    }
}

TEST(SoundFiles, CallsAreStacksOfHarmonics) {
    for (const std::string& name : calls) {
        const Recording call = load(name);
        EXPECT_LT(bandLevel(call, 0, 300), -30) << name;
        EXPECT_GT(bandLevel(call, 1500, 4000), -8) << name << ": no more than a whistle";
        EXPECT_GT(bandLevel(call, 6000, 8500), name == calls[2] ? -45 : -30) << name;
        for (const auto& [begin, end] : cries(call)) {
            const double tone = pitch(call, begin + 0.4 * (end - begin));
            EXPECT_GT(tone, 640) << name << " at " << begin;
            EXPECT_LT(tone, 1500) << name << " at " << begin;
        }
    }
}

TEST(SoundFiles, MewRisesFastAndFallsSlowly) {
    const Recording mew = load("seagull1.wav");
    const auto all = cries(mew);
    ASSERT_EQ(all.size(), 1u);
    const auto [begin, end] = all[0];
    EXPECT_GT(end - begin, 0.3);
    EXPECT_LT(end - begin, 0.95);
    std::vector<double> glide;
    for (double t = begin + 0.03; t < end - 0.03; t += 0.02)
        glide.push_back(pitch(mew, t));
    const auto top = std::max_element(glide.begin(), glide.end());
    EXPECT_LT(top - glide.begin(), int(glide.size()) * 4 / 10);
    EXPECT_GT(*top, 1.15 * glide.front());
    EXPECT_GT(*top, 1.15 * glide.back());
}

TEST(SoundFiles, CallsAreFourDifferentOnes) {
    const auto laugh = cries(load("seagull2.wav")), long_call = cries(load("seagull3.wav")),
               alarm = cries(load("seagull4.wav"));
    EXPECT_GE(laugh.size(), 6u);
    EXPECT_LT(laugh.back().second - laugh.front().first, 2.5);
    EXPECT_GE(long_call.size(), 6u);
    EXPECT_GT(long_call.back().second - long_call.front().first, 3);
    EXPECT_GE(alarm.size(), 2u);
    EXPECT_LE(alarm.size(), 4u);
    EXPECT_LT(alarm.back().second - alarm.front().first, 1);
}

}  // namespace
