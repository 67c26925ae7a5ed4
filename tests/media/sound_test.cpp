#include "system/Sound.h"

#include <SDL.h>

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <thread>

#include "support/sdl.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// A stereo frame.
struct FRAME {
    Sint16 left, right;
    bool operator==(const FRAME& other) const { return left == other.left && right == other.right; }
};
std::ostream& operator<<(std::ostream& out, const FRAME& f) {
    return out << "(" << f.left << ", " << f.right << ")";
}

/// The fields of a WAV file; those of a good one unless a test says otherwise.
struct WAV {
    const char* riff = "RIFF";
    const char* wave = "WAVE";
    const char* before = "";  ///< bytes between "WAVE" and the format
    const char* format = "fmt ";
    Uint32 format_size = 16;
    Uint16 coding = 1;
    Uint16 channels = 2;
    Uint32 rate = 22050;
    Uint16 bits = 16;
    const char* data = "data";
    Sint64 data_size = -1;     ///< what the file says, -1 for the truth
    size_t keep = size_t(-1);  ///< bytes to keep of the file
};

Bytes wavBytes(const std::vector<FRAME>& frames, const WAV& wav = {}) {
    Bytes bytes;
    const auto text = [&](const char* t) { bytes.insert(bytes.end(), t, t + strlen(t)); };
    const auto number = [&](Uint32 value, int width) {
        for (int i = 0; i < width; ++i)
            bytes.push_back(Uint8(value >> (8 * i)));
    };
    const Uint32 size = Uint32(frames.size() * sizeof(FRAME));
    const Uint32 block = wav.channels * wav.bits / 8;
    text(wav.riff), number(36 + size, 4), text(wav.wave), text(wav.before);
    text(wav.format), number(wav.format_size, 4), number(wav.coding, 2), number(wav.channels, 2);
    number(wav.rate, 4), number(wav.rate * block, 4), number(block, 2);
    number(wav.bits, 2);
    text(wav.data), number(wav.data_size < 0 ? size : Uint32(wav.data_size), 4);
    for (const FRAME& frame : frames)
        number(Uint16(frame.left), 2), number(Uint16(frame.right), 2);
    bytes.resize(std::min(bytes.size(), wav.keep));
    return bytes;
}

/// Frames with no two alike near each other, none silent, at most the given amplitude.
std::vector<FRAME> pattern(size_t length, int amplitude, unsigned seed) {
    std::vector<FRAME> frames;
    const auto next = [&] {
        seed = seed * 1103515245 + 12345;
        const int value = 1 + int(seed >> 16) % amplitude;
        return Sint16(seed & 0x8000 ? value : -value);
    };
    for (size_t i = 0; i < length; ++i) {
        const Sint16 left = next();
        frames.push_back({left, next()});
    }
    return frames;
}

std::vector<FRAME> readFrames(const std::string& path, size_t skip = 0) {
    std::ifstream in(path, std::ios::binary);
    in.seekg(std::streamoff(skip));
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    std::vector<FRAME> frames(bytes.size() / sizeof(FRAME));
    memcpy(frames.data(), bytes.data(), frames.size() * sizeof(FRAME));
    return frames;
}

/// Sounds in a folder of the test's own. The device is one of the two that need no hardware:
/// "dummy" plays to nobody, "disk" writes what it would play into a file.
class SoundTest : public testing::Test {
protected:
    SoundTest() {
        folder = testing::TempDir() + "soundXXXXXX";
        EXPECT_NE(mkdtemp(folder.data()), nullptr);
        folder += "/";
        setenv("SDL_AUDIODRIVER", "dummy", 1);
    }
    ~SoundTest() override {
        Mix_SetPostMix(nullptr, nullptr);
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
        EXPECT_EQ(system(("rm -r " + folder).c_str()), 0);
    }

    std::string fileWith(const Bytes& bytes, const std::string& name = "test.wav") {
        std::ofstream(folder + name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        return folder + name;
    }

    void useDisk() {
        raw = folder + "raw";
        remove(raw.c_str());
        setenv("SDL_AUDIODRIVER", "disk", 1);
        setenv("SDL_DISKAUDIOFILE", raw.c_str(), 1);
        setenv("SDL_DISKAUDIODELAY", "1", 1);
        mixed.clear();
        Mix_SetPostMix(
            [](void* test, Uint8* stream, int bytes) {
                const auto* const frames = reinterpret_cast<const FRAME*>(stream);
                auto& self = *static_cast<SoundTest*>(test);
                const std::lock_guard<std::mutex> guard(self.lock);
                self.mixed.insert(self.mixed.end(), frames, frames + bytes / int(sizeof(FRAME)));
            },
            this);
    }

    /// What the mixer has given to the device, which may have another rate.
    std::vector<FRAME> given() {
        const std::lock_guard<std::mutex> guard(lock);
        return mixed;
    }

    /// Until the disk device has been given so many more frames; fails after a minute.
    void waitFor(size_t frames) {
        const size_t wanted = given().size() + frames;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        while (given().size() < wanted) {
            ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "the device stands still";
            std::this_thread::yield();
        }
    }

    std::string folder, raw;
    std::mutex lock;  ///< of what is mixed, on the mixer's thread
    std::vector<FRAME> mixed;
};

size_t firstHeard(const std::vector<FRAME>& played) {
    size_t at = 0;
    while (at < played.size() && played[at] == FRAME{0, 0})
        ++at;
    return at;
}

/// Frames that repeat the loop without gap from the given place on.
size_t lengthOfLooping(const std::vector<FRAME>& played, size_t begin,
                       const std::vector<FRAME>& loop) {
    size_t length = 0;
    while (begin + length < played.size() && played[begin + length] == loop[length % loop.size()])
        ++length;
    return length;
}

TEST_F(SoundTest, StartsClosedAndEmpty) {
    Sound sound;
    EXPECT_EQ(sound.audio_rate, 22050);
    EXPECT_EQ(sound.audio_format, 0x8010);
    EXPECT_EQ(sound.audio_channels, 2);
    EXPECT_EQ(sound.audio_buffers, 4096);
    EXPECT_EQ(sound.musicchunk, nullptr);
    EXPECT_TRUE(sound.sounds.empty());
    EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 0);
}

TEST_F(SoundTest, OpensTheDeviceAndClosesItAgain) {
    int rate, channels;
    Uint16 format;
    {
        Sound sound;
        sound.audio_rate = 44100;
        ASSERT_TRUE(sound.initialize());
        EXPECT_EQ(Mix_QuerySpec(&rate, &format, &channels), 1);
        EXPECT_EQ(sound.audio_rate, rate);
        EXPECT_EQ(sound.audio_format, format);
        EXPECT_EQ(sound.audio_channels, channels);
    }
    EXPECT_EQ(Mix_QuerySpec(&rate, &format, &channels), 0);
}

TEST_F(SoundTest, RunsOnWhenAnotherPlayerHasClosedTheDevice) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    const std::string file = fileWith(wavBytes(pattern(2000, 9000, 1)));
    sound.loadMusic(file.c_str());
    sound.loadSound(file.c_str(), 0);
    { Sound other; }
    EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 0);
    // The mixer would reach for channels that went with the device.
    sound.playMusic();
    sound.playSound(0, 0);
    EXPECT_EQ(SDL_GetAudioStatus(), SDL_AUDIO_STOPPED);
}

TEST_F(SoundTest, ThePlayerAfterHasAllItsChannels) {
    { EXPECT_TRUE(Sound().initialize()); }
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    sound.loadSound(fileWith(wavBytes(pattern(2000, 9000, 1))).c_str(), 0);
    for (int i = 0; i < 50; ++i)
        sound.playSound(0, -1);
    EXPECT_EQ(Mix_Playing(-1), MIX_CHANNELS);
}

TEST_F(SoundTest, SecondPlayerMayFindTheDeviceGone) {
    { EXPECT_TRUE(Sound().initialize()); }
    setenv("SDL_AUDIODRIVER", "none at all", 1);
    // A layer chooses its driver once.
    EXPECT_EQ(Sound().initialize(), test::sdlIsALayer());
}

TEST_F(SoundTest, LeavesSignalsAndVideoAlone) {
    constexpr int signals = 32;  // those above are for real time
    struct sigaction before[signals], after[signals];
    for (int i = 1; i < signals; ++i)
        sigaction(i, nullptr, &before[i]);
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    for (int i = 1; i < signals; ++i) {
        sigaction(i, nullptr, &after[i]);
        EXPECT_EQ(before[i].sa_handler, after[i].sa_handler) << "signal " << i;
    }
    EXPECT_EQ(SDL_WasInit(SDL_INIT_VIDEO), 0u);
}

TEST_F(SoundTest, WaterLoopsPastItsEndWithoutAGap) {
    // Shorter than what is mixed at a time, and longer, with ends inside a mixed block.
    for (size_t length : {1000u, 5000u, 30011u}) {
        useDisk();
        const std::vector<FRAME> loop = pattern(length, 20000, 1);
        {
            Sound sound;
            ASSERT_TRUE(sound.initialize());
            EXPECT_TRUE(sound.loadMusic(fileWith(wavBytes(loop)).c_str()));
            sound.playMusic();
            waitFor(3 * length + 3 * 4096);
        }
        const std::vector<FRAME> played = given();
        const size_t begin = firstHeard(played);
        const size_t heard = lengthOfLooping(played, begin, loop);
        EXPECT_GT(heard, 2 * length);
        for (size_t i = begin + heard; i < played.size(); ++i)
            ASSERT_EQ(played[i], (FRAME{0, 0})) << "frame " << i << " after " << heard;
    }
}

TEST_F(SoundTest, CallIsMixedOnTop) {
    useDisk();
    const std::vector<FRAME> loop = pattern(7001, 9000, 1);
    const std::vector<FRAME> call = pattern(10007, 9000, 2);
    {
        Sound sound;
        ASSERT_TRUE(sound.initialize());
        sound.loadMusic(fileWith(wavBytes(loop), "loop.wav").c_str());
        sound.loadSound(fileWith(wavBytes(call), "call.wav").c_str(), 3);
        sound.playMusic();
        waitFor(3 * 4096);
        sound.playSound(3, 0);
        waitFor(call.size() + 4 * 4096);
    }
    const std::vector<FRAME> played = given();
    const size_t begin = firstHeard(played);
    const size_t at = begin + lengthOfLooping(played, begin, loop);
    ASSERT_LT(at + call.size() + 4096, played.size()) << "no call was heard";
    for (size_t i = 0; i < call.size(); ++i) {
        const FRAME below = loop[(at + i - begin) % loop.size()];
        const FRAME both = {Sint16(below.left + call[i].left), Sint16(below.right + call[i].right)};
        ASSERT_EQ(played[at + i], both) << "frame " << i << " of the call";
    }
    // Once only, and the loop goes on as if nothing had been.
    for (size_t i = at + call.size(); i < at + call.size() + 4096; ++i)
        ASSERT_EQ(played[i], loop[(i - begin) % loop.size()]) << "frame " << i;
}

TEST_F(SoundTest, SilenceFollowsTheDestructor) {
    useDisk();
    const std::vector<FRAME> loop = pattern(3000, 9000, 1);
    const std::string file = fileWith(wavBytes(loop));
    {
        Sound sound;
        ASSERT_TRUE(sound.initialize());
        sound.loadMusic(file.c_str());
        sound.loadSound(file.c_str(), 0);
        sound.playMusic();
        sound.playSound(0, -1);
        waitFor(3 * 4096);
    }
    EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 0) << "the device is still open";
    EXPECT_LT(firstHeard(readFrames(raw)), readFrames(raw).size());

    useDisk();
    Sound next;
    ASSERT_TRUE(next.initialize());
    EXPECT_EQ(Mix_Playing(-1), 0);
    waitFor(3 * 4096);
    const std::vector<FRAME> played = readFrames(raw);
    EXPECT_EQ(firstHeard(played), played.size()) << "something goes on playing";
}

TEST_F(SoundTest, RealWaterLoops) {
    useDisk();
    const std::string file = DATA_DIR "sound/water.wav";
    const std::vector<FRAME> loop = readFrames(file, 44);
    ASSERT_GT(loop.size(), 20u * 22050) << file;
    {
        Sound sound;
        ASSERT_TRUE(sound.initialize());
        sound.loadMusic(file.c_str());
        sound.playMusic();
        waitFor(loop.size() + 20 * 4096);
    }
    const std::vector<FRAME> played = given();
    EXPECT_GT(lengthOfLooping(played, firstHeard(played), loop), loop.size() + 10 * 4096);
}

TEST_F(SoundTest, PlaysTheEffectWithTheId) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    const std::string file = fileWith(wavBytes(pattern(2000, 9000, 1)));
    sound.loadSound(file.c_str(), 7);
    sound.loadSound(file.c_str(), -2);
    sound.loadSound(file.c_str(), 7);
    ASSERT_EQ(sound.sounds.size(), 3u) << "ids may be given twice";
    EXPECT_EQ(sound.sounds[1].id, -2);

    sound.playSound(-2, -1);
    EXPECT_EQ(Mix_GetChunk(0), sound.sounds[1].chunk);
    for (int i = 0; i < 3; ++i)
        sound.playSound(7, -1);
    EXPECT_EQ(Mix_Playing(-1), 4);
    for (int channel = 1; channel < 4; ++channel)
        EXPECT_EQ(Mix_GetChunk(channel), sound.sounds[0].chunk) << "only the first of an id plays";
}

TEST_F(SoundTest, UnknownIdIsSilent) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    sound.loadSound(fileWith(wavBytes(pattern(2000, 9000, 1))).c_str(), 0);
    testing::internal::CaptureStdout();
    sound.loadSound((folder + "missing.wav").c_str(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "sc.chunk == NULL\n");
    EXPECT_EQ(sound.sounds.size(), 1u);

    testing::internal::CaptureStdout();
    sound.playSound(1, 0);
    sound.playSound(99, -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(Mix_Playing(-1), 0);
}

TEST_F(SoundTest, FullMixerIgnoresACall) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    const std::string file = fileWith(wavBytes(pattern(2000, 9000, 1)));
    sound.loadMusic(file.c_str());
    sound.loadSound(file.c_str(), 0);
    testing::internal::CaptureStdout();
    for (int i = 0; i < 50; ++i)
        sound.playSound(0, -1);
    sound.playMusic();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(Mix_Playing(-1), Mix_AllocateChannels(-1));
}

TEST_F(SoundTest, MissingMusicIsToldAndStillTrue) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    testing::internal::CaptureStdout();
    EXPECT_TRUE(sound.loadMusic((folder + "missing.wav").c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "musicchunk == 0\n");
    testing::internal::CaptureStdout();
    sound.playMusic();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "mussicchunk == 0 (playMusic)\n");
    EXPECT_EQ(Mix_Playing(-1), 0);
}

TEST_F(SoundTest, PlayMusicWithoutLoadingIsTold) {
    Sound sound;
    testing::internal::CaptureStdout();
    sound.playMusic();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "mussicchunk == 0 (playMusic)\n");
}

/// What the scene does, on a machine where the device cannot be had.
void playEverythingInSilence(const std::string& file) {
    {
        Sound sound;
        testing::internal::CaptureStdout();
        EXPECT_FALSE(sound.initialize());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(sound.audio_rate, 22050);

        testing::internal::CaptureStdout();
        EXPECT_TRUE(sound.loadMusic(file.c_str()));
        sound.playMusic();
        sound.loadSound(file.c_str(), 0);
        sound.playSound(0, 0);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "musicchunk == 0\nmussicchunk == 0 (playMusic)\nsc.chunk == NULL\n");
    }
    EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 0);
}

TEST_F(SoundTest, RunsOnWithoutADevice) {
    setenv("SDL_AUDIODRIVER", "none at all", 1);
    playEverythingInSilence(fileWith(wavBytes(pattern(2000, 9000, 1))));
}

TEST_F(SoundTest, RunsOnWhenTheDeviceDoesNotOpen) {
    useDisk();
    setenv("SDL_DISKAUDIOFILE", (folder + "no/such/folder").c_str(), 1);
    playEverythingInSilence(fileWith(wavBytes(pattern(2000, 9000, 1))));
}

TEST_F(SoundTest, TakesThePlainKindsOfWav) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    const std::vector<FRAME> frames = pattern(500, 9000, 1);
    WAV mono, narrow, slow, fast, noted;
    mono.channels = 1;
    narrow.bits = 8;
    slow.rate = 4000;
    fast.rate = 192000;
    noted.before = "LIST\4\1\1\1";  // a length that no chunk has, mended below
    for (const WAV& wav : {WAV{}, mono, narrow, slow, fast}) {
        sound.loadSound(fileWith(wavBytes(frames, wav)).c_str(), 0);
        sound.playSound(0, 0);
    }
    EXPECT_EQ(sound.sounds.size(), 5u);
    Bytes bytes = wavBytes(frames, noted);
    bytes[17] = bytes[18] = bytes[19] = 0;
    bytes.insert(bytes.begin() + 20, {'n', 'o', 't', 'e'});
    sound.loadSound(fileWith(bytes).c_str(), 0);
    EXPECT_EQ(sound.sounds.size(), 6u) << "a chunk of another kind before the format";
    sound.loadSound(fileWith(wavBytes(pattern(1, 9000, 1))).c_str(), 0);
    EXPECT_EQ(sound.sounds.size(), 7u) << "a single frame";
}

void append(Bytes& bytes, const char* text) {
    bytes.insert(bytes.end(), text, text + strlen(text));
}
void append(Bytes& bytes, Uint64 value, int width, bool big_endian = false) {
    for (int i = 0; i < width; ++i) {
        const int place = big_endian ? width - 1 - i : i;
        // The numbers have 64 bits, some of the fields are wider.
        bytes.push_back(place < 8 ? Uint8(value >> 8 * place) : 0);
    }
}

/// Four blocks of compressed samples, coding 2 (MS) or 17 (IMA), mono.
Bytes adpcmBytes(Uint16 coding, Uint32 rate = 22050) {
    const bool ms = coding == 2;
    constexpr Uint32 block = 256;
    Bytes bytes;
    append(bytes, "RIFF"), append(bytes, (ms ? 70 : 40) + 4 * block, 4), append(bytes, "WAVEfmt ");
    append(bytes, ms ? 50 : 20, 4), append(bytes, coding, 2), append(bytes, 1, 2);
    append(bytes, rate, 4), append(bytes, rate / 2, 4), append(bytes, block, 2);
    append(bytes, 4, 2), append(bytes, ms ? 32 : 2, 2);
    append(bytes, ms ? (block - 7) * 2 + 2 : (block - 4) * 2 + 1, 2);
    if (ms) {
        append(bytes, 7, 2);
        for (int c : {256, 0, 512, -256, 0, 0, 192, 64, 240, 0, 460, -208, 392, -232})
            append(bytes, Uint16(c), 2);
    }
    append(bytes, "data"), append(bytes, 4 * block, 4);
    for (Uint32 i = 0; i < 4 * block; ++i)
        bytes.push_back(i % block < 4 ? 0 : Uint8(i * 37));
    return bytes;
}

/// 500 frames of 16 bits, the rate as 1.mantissa times 2^exponent.
Bytes aiffBytes(int exponent, Uint64 mantissa, int channels = 2) {
    const Uint32 size = Uint32(500 * 2 * channels);
    Bytes bytes;
    append(bytes, "FORM"), append(bytes, 46 + size, 4, true), append(bytes, "AIFFCOMM");
    append(bytes, 18, 4, true), append(bytes, Uint64(channels), 2, true);
    append(bytes, 500, 4, true), append(bytes, 16, 2, true);
    append(bytes, Uint64(16383 + exponent), 2, true), append(bytes, mantissa, 8, true);
    append(bytes, "SSND"), append(bytes, 8 + size, 4, true), append(bytes, 0, 8);
    bytes.resize(bytes.size() + size, 55);
    return bytes;
}

/// A block of kind 9, 16 bits.
Bytes vocBytes(Uint32 rate, int channels = 1) {
    Bytes bytes;
    append(bytes, "Creative Voice File\x1a"), append(bytes, 26, 2), append(bytes, 0x010a, 2);
    append(bytes, 0x1129, 2), append(bytes, 9, 1), append(bytes, 12 + 1000, 3);
    append(bytes, rate, 4), append(bytes, 16, 1), append(bytes, Uint64(channels), 1);
    append(bytes, 4, 2), append(bytes, 0, 4);
    bytes.resize(bytes.size() + 1000, 55);
    bytes.push_back(0);
    return bytes;
}

/// The beginning of an Ogg file that says so much of itself.
Bytes oggBytes(Uint32 rate, int channels) {
    Bytes bytes;
    append(bytes, "OggS"), append(bytes, 0x0200, 2), append(bytes, 0, 20), append(bytes, 0x1e01, 2);
    append(bytes, "\1vorbis"), append(bytes, 0, 4), append(bytes, Uint64(channels), 1);
    append(bytes, rate, 4), append(bytes, 0, 12), append(bytes, 0x01b8, 2);
    return bytes;
}

TEST_F(SoundTest, TakesWhateverTheMixerReads) {
    const std::vector<FRAME> frames = pattern(500, 9000, 1);
    WAV slow, fast, six;
    slow.rate = 400;
    fast.rate = 384000;
    six.channels = 6;
    const std::vector<std::pair<const char*, Bytes>> cases = {
        {"MS ADPCM", adpcmBytes(2)},
        {"IMA ADPCM", adpcmBytes(17)},
        {"AIFF of 44100 Hz", aiffBytes(15, Uint64(44100) << 48)},
        {"AIFF of 8000 Hz, mono", aiffBytes(12, Uint64(8000) << 51, 1)},
        {"VOC of 11025 Hz", vocBytes(11025)},
        {"WAV of 400 Hz", wavBytes(frames, slow)},
        {"WAV of 384 kHz", wavBytes(frames, fast)},
        {"WAV of six channels", wavBytes(frames, six)},
    };
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    for (const auto& [name, bytes] : cases) {
        const size_t before = sound.sounds.size();
        sound.loadSound(fileWith(bytes).c_str(), 0);
        ASSERT_EQ(sound.sounds.size(), before + 1) << name;
        EXPECT_GT(sound.sounds.back().chunk->alen, 0u) << name;
    }
}

TEST_F(SoundTest, LeavesOutWhatTheMixerWouldNotSurvive) {
    const std::vector<FRAME> frames = pattern(500, 9000, 1);
    std::vector<std::pair<std::string, Bytes>> cases;
    for (Uint32 rate : {0u, 1u, 8u, 100000000u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        const std::string name = " of " + std::to_string(rate) + " Hz";
        WAV wav;
        wav.rate = rate;
        wav.bits = 8;
        wav.channels = 1;
        cases.push_back({"WAV" + name, wavBytes(frames, wav)});
        cases.push_back({"VOC" + name, vocBytes(rate)});
        cases.push_back({"ADPCM" + name, adpcmBytes(17, rate)});
        cases.push_back({"Ogg" + name, oggBytes(rate, 2)});
    }
    WAV wide;
    wide.channels = 256;
    cases.push_back({"WAV of 256 channels", wavBytes(frames, wide)});
    cases.push_back({"AIFF of 256 channels", aiffBytes(14, Uint64(22050) << 49, 256)});
    cases.push_back({"AIFF of 2 Hz", aiffBytes(1, Uint64(1) << 63)});
    cases.push_back({"AIFF of 2^28 Hz", aiffBytes(28, Uint64(1) << 63)});
    cases.push_back({"VOC without channels", vocBytes(22050, 0)});
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    for (const auto& [name, bytes] : cases) {
        testing::internal::CaptureStdout();
        sound.loadSound(fileWith(bytes).c_str(), 0);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "sc.chunk == NULL\n") << name;
    }
    EXPECT_TRUE(sound.sounds.empty());
}

TEST_F(SoundTest, BrokenFilesAreToldAndLeftOut) {
    const std::vector<FRAME> frames = pattern(500, 9000, 1);
    const auto broken = [&](auto change) {
        WAV wav;
        change(wav);
        return wavBytes(frames, wav);
    };
    std::vector<std::pair<const char*, Bytes>> cases = {
        {"empty", {}},
        {"not riff", broken([](WAV& w) { w.riff = "RIFX"; })},
        {"not wave", broken([](WAV& w) { w.wave = "AVI "; })},
        {"no format", broken([](WAV& w) { w.format = "cue "; })},
        {"no data", broken([](WAV& w) { w.data = "fact"; })},
        {"short format", broken([](WAV& w) { w.format_size = 14; })},
        {"format past the end", broken([](WAV& w) { w.format_size = 0x7fffffff; })},
        {"format of 4 GB", broken([](WAV& w) { w.format_size = 0xffffffff; })},
        {"compressed, MS", broken([](WAV& w) { w.coding = 2; })},
        {"compressed, IMA", broken([](WAV& w) { w.coding = 17; })},
        {"floating point", broken([](WAV& w) { w.coding = 3, w.bits = 32; })},
        {"no channels", broken([](WAV& w) { w.channels = 0; })},
        {"rate 0", broken([](WAV& w) { w.rate = 0; })},
        {"rate 1", broken([](WAV& w) { w.rate = 1; })},
        {"rate 4294967295", broken([](WAV& w) { w.rate = 0xffffffff; })},
        {"0 bits", broken([](WAV& w) { w.bits = 0; })},
        {"24 bits", broken([](WAV& w) { w.bits = 24; })},
        {"no samples", broken([](WAV& w) { w.data_size = 0; })},
        {"data past the end", broken([](WAV& w) { w.data_size = 2001; })},
        {"data of 2 GB", broken([](WAV& w) { w.data_size = 0x7fffffff; })},
        {"data of 4 GB", broken([](WAV& w) { w.data_size = 0xffffffff; })},
        {"data before the format", broken([](WAV& w) { w.before = "data\4\1\1\1fmt "; })},
        {"ogg", {'O', 'g', 'g', 'S', 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (size_t keep = 1; keep < 48; ++keep)
        cases.push_back({"cut off", broken([=](WAV& w) { w.keep = keep; })});

    Sound sound;
    ASSERT_TRUE(sound.initialize());
    for (const auto& [name, bytes] : cases) {
        const std::string file = fileWith(bytes);
        const size_t before = sound.sounds.size();
        testing::internal::CaptureStdout();
        sound.loadSound(file.c_str(), 0);
        const bool kept = sound.sounds.size() > before;
        EXPECT_EQ(testing::internal::GetCapturedStdout(), kept ? "" : "sc.chunk == NULL\n")
            << name << ", " << bytes.size() << " bytes";
        // A layer over newer libraries makes something of a few of them.
        EXPECT_TRUE(!kept || test::sdlIsALayer()) << name << ", " << bytes.size() << " bytes";
        testing::internal::CaptureStdout();
        EXPECT_TRUE(sound.loadMusic(file.c_str()));
        EXPECT_EQ(testing::internal::GetCapturedStdout(), kept ? "" : "musicchunk == 0\n")
            << name << ", " << bytes.size() << " bytes";
    }
}

TEST_F(SoundTest, FolderIsNoSound) {
    Sound sound;
    ASSERT_TRUE(sound.initialize());
    testing::internal::CaptureStdout();
    sound.loadSound(folder.c_str(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "sc.chunk == NULL\n");
}

}  // namespace
