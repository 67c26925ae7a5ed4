// Four calls of a gull over water: a mew, a laugh, a long call from afar and an alarm.
#include <algorithm>
#include <cmath>
#include <vector>

#include "sound/wave.h"

using namespace art;

namespace {

/// One cry: a stack of harmonics on a gliding tone, as loud as the beak is open.
struct Note {
    double start, length;     ///< seconds
    double first, top, last;  ///< pitch at onset, at its highest and at the end, Hz
    double rise = 0.2;        ///< where in the note the pitch is highest, 0..1
    double level = 1;         ///< amplitude
    double bright = 0.5;      ///< 0 mellow .. 1 piercing
    double breath = 0.05;     ///< air heard beside the tone, amplitude
    double rasp = 0;          ///< depth of the fast flutter, 0..1
    double crack = 0;         ///< strength of the tones half way between the harmonics, 0..1
};

double smooth(double x) {
    x = std::clamp(x, 0.0, 1.0);
    return x * x * (3 - 2 * x);
}

/// Wanders about 0 at the pace of the frequency, mostly within -1 and 1.
class Wander {
public:
    Wander(double frequency, Random& random)
        : random_(random),
          filter_(Biquad::lowpass(frequency)),
          gain_(std::sqrt(sample_rate / (2.2 * frequency)) * 0.9) {
        for (int i = 0; i < sample_rate / 4; ++i)
            (*this)();
    }
    double operator()() { return gain_ * filter_(random_.range(-1, 1)); }

private:
    Random& random_;
    Biquad filter_;
    double gain_;
};

/// How well throat and beak carry a frequency; an open beak shifts everything up.
double carried(double frequency, double open) {
    const auto resonance = [&](double centre, double width, double strength) {
        const double x = (frequency / (0.86 + 0.2 * open) - centre) / width;
        return strength / (1 + x * x);
    };
    return resonance(1250, 480, 0.75) + resonance(2650, 620, 1.0) + resonance(4400, 800, 0.5) +
           resonance(6800, 1300, 0.3);
}

void sing(const Note& note, Mono& out, Random& random) {
    Wander unsteady(14, random), rough(90, random), flutter(25, random);
    Biquad air = Biquad::bandpass(3000, 0.5);
    const size_t begin = samples(note.start), length = samples(note.length);
    double phase = random.unit(), rasp_phase = random.unit();
    for (size_t t = 0; t < length && begin + t < out.size(); ++t) {
        const double u = double(t) / double(length);
        const double seconds = u * note.length;

        const double open = smooth(seconds / 0.035) * smooth((1 - u) * note.length / 0.11) *
                            (0.55 + 0.45 * std::sin(M_PI * std::pow(u, 0.6)));

        double pitch;
        if (u < note.rise) {
            pitch = note.first + (note.top - note.first) * std::sin(M_PI / 2 * u / note.rise);
        } else {
            const double fall = (u - note.rise) / (1 - note.rise);
            pitch = note.top + (note.last - note.top) * std::pow(fall, 1.6);
        }
        pitch *= 1 + 0.009 * unsteady() + 0.007 * rough() * (1.5 - open);
        phase += pitch / sample_rate;
        rasp_phase += (58 + 9 * flutter()) / sample_rate;

        const double shaken =
            1 - note.rasp * (0.5 + 0.5 * std::sin(2 * M_PI * rasp_phase)) * (0.6 + 0.4 * open);

        // A cry that is pressed harder has stronger overtones.
        const double slope = 1.55 - 0.75 * note.bright - 0.35 * open;
        double tone = 0;
        for (int k = 1; k * pitch < 9800; ++k) {
            const double f = k * pitch;
            const double fade = smooth((9800 - f) / 1500);
            const double weight = k == 1 ? 0.7 : 1;  // the throat is too small for the lowest
            tone += fade * weight * std::pow(k, -slope) * carried(f, open) *
                    std::sin(2 * M_PI * k * phase + 0.7 * k * k);
            if (note.crack > 0) {
                const double half = f - 0.5 * pitch;
                tone += fade * note.crack * std::pow(k, -slope) * carried(half, open) *
                        std::sin(2 * M_PI * (k - 0.5) * phase + 0.3 * k * k);
            }
        }
        // Air passes in puffs, once per beat of the voice.
        const double puff = 0.55 + 0.45 * std::sin(2 * M_PI * phase);
        const double breath = note.breath * puff * 4 * air(random.range(-1, 1));
        out[begin + t] += note.level * open * shaken * (tone + breath);
    }
}

/// Where the bird is.
struct Place {
    double pan;       ///< -1 left .. 1 right
    double dull;      ///< Hz above which the air swallows the sound
    double direct;    ///< amplitudes of what comes straight,
    double echo;      ///< of two echoes from the shore,
    double diffuse;   ///< and of the rest
    double level_db;  ///< active level of the finished call
};

Stereo hear(Mono dry, const Place& place) {
    Biquad::highpass(250).run(dry);
    Biquad::lowpass(place.dull, 0.6).run(dry);

    Stereo call(dry.size());
    const double right = std::sqrt(0.5 * (1 + place.pan)), left = std::sqrt(0.5 * (1 - place.pan));
    for (size_t t = 0; t < dry.size(); ++t) {
        call.left[t] = left * dry[t];
        call.right[t] = right * dry[t];
    }
    const Stereo room = reverberation(call, 2.2);

    // The water carries the call to the beach and back.
    Mono far = dry;
    Biquad::lowpass(2200).run(far);
    Stereo heard(dry.size());
    const auto late = [&](double seconds, size_t t) {
        const size_t by = samples(seconds);
        return t < by ? 0.0 : far[t - by];
    };
    for (size_t t = 0; t < dry.size(); ++t) {
        heard.left[t] = place.direct * call.left[t] + place.diffuse * room.left[t] +
                        place.echo * (0.9 * late(0.231, t) + 0.35 * late(0.394, t));
        heard.right[t] = place.direct * call.right[t] + place.diffuse * room.right[t] +
                         place.echo * (0.45 * late(0.243, t) + 0.6 * late(0.371, t));
    }

    // Nothing may click or hum: no offset, silence at both ends.
    for (Mono* channel : {&heard.left, &heard.right}) {
        Biquad::highpass(180).run(*channel);
        const size_t fade_in = samples(0.004), fade_out = samples(0.5);
        for (size_t t = 0; t < fade_in; ++t)
            (*channel)[t] *= smooth(double(t) / double(fade_in));
        for (size_t t = 0; t < fade_out; ++t)
            (*channel)[channel->size() - 1 - t] *= smooth(double(t) / double(fade_out));
    }
    scale(heard, decibels(place.level_db) / activeLevel(heard));
    return heard;
}

Stereo call(const std::vector<Note>& notes, const Place& place, double tail, uint32_t seed) {
    double end = 0;
    for (const Note& note : notes)
        end = std::max(end, note.start + note.length);
    Mono dry(samples(end + tail));
    Random random(seed);
    for (const Note& note : notes)
        sing(note, dry, random);
    return hear(dry, place);
}

/// One drawn-out, plaintive cry.
Stereo mew() {
    return call({{0.03, 0.88, 720, 1150, 760, 0.13, 1, 0.45, 0.07, 0.12, 0.03}},
                {-0.25, 7500, 1, 0.1, 0.11, -19}, 1.2, 11);
}

/// Eight quick cries that tire.
Stereo laugh() {
    std::vector<Note> notes;
    Random random(23);
    double at = 0.03;
    for (int i = 0; i < 8; ++i) {
        const double tired = i / 7.0;
        const double pitch = (1.06 - 0.2 * tired) * random.range(0.98f, 1.02f);
        notes.push_back({at, 0.155 + 0.03 * tired, 880 * pitch, 1240 * pitch, 800 * pitch, 0.28,
                         0.75 + 0.25 * std::sin(M_PI * (0.25 + 0.6 * tired)), 0.6, 0.08, 0.15,
                         0.06 * tired});
        at += 0.19 + 0.035 * tired + random.range(-0.006f, 0.006f);
    }
    return call(notes, {0.3, 7500, 1, 0.1, 0.1, -19}, 1.2, 37);
}

/// Two low calls, then a run of cries that climbs and dies away, far out.
Stereo longCall() {
    std::vector<Note> notes = {
        {0.03, 0.62, 700, 880, 690, 0.3, 0.7, 0.3, 0.05, 0, 0},
        {0.82, 0.70, 720, 960, 720, 0.3, 0.85, 0.35, 0.05, 0, 0},
    };
    Random random(41);
    double at = 1.68;
    for (int i = 0; i < 7; ++i) {
        const double u = i / 6.0;
        const double pitch = 1 + 0.14 * std::sin(M_PI * std::min(1.0, 0.25 + u)) - 0.12 * u;
        notes.push_back({at, 0.34 - 0.05 * u, 900 * pitch, 1370 * pitch, 850 * pitch, 0.2,
                         0.9 - 0.4 * u * u, 0.6, 0.05, 0.05, 0});
        at += 0.42 - 0.05 * u + random.range(-0.012f, 0.012f);
    }
    return call(notes, {-0.55, 3600, 0.5, 0.16, 0.42, -20.5}, 1.6, 53);
}

/// Three hoarse barks close by.
Stereo alarm() {
    return call({{0.03, 0.17, 640, 900, 690, 0.25, 1, 0.9, 0.22, 0.35, 0.5},
                 {0.235, 0.15, 650, 880, 680, 0.25, 0.9, 0.9, 0.22, 0.35, 0.5},
                 {0.425, 0.30, 700, 1010, 640, 0.18, 1, 0.95, 0.2, 0.3, 0.4}},
                {0.1, 9000, 1, 0.08, 0.07, -18.5}, 1.1, 71);
}

}  // namespace

int main(int, char** argv) {
    const std::string folder = std::string(argv[1]) + "/sound/seagull";
    saveWav(mew(), folder + "1.wav");
    saveWav(laugh(), folder + "2.wav");
    saveWav(longCall(), folder + "3.wav");
    saveWav(alarm(), folder + "4.wav");
}
