#include "system/Sound.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

/// A Sound has closed the device. Closed, the mixer forgets its channels but not how many there
/// were, and would reach for channels that are not there.
bool device_gone = false;

/// What decides about a sound's way to the device's rate and channels. Nothing is converted from
/// or to 0 of either.
struct SHAPE {
    Sint64 rate = 0;  ///< sample frames per second
    int channels = 0;
    Uint16 format = AUDIO_S16LSB;
};

/// How often the smaller of two numbers above 0 can be doubled within the larger one, both counted
/// in whole units.
int doublings(Sint64 a, Sint64 b, int unit) {
    int count = 0;
    for (Sint64 low = 2 * std::min(a, b); low / unit <= std::max(a, b) / unit; low *= 2)
        ++count;
    return count;
}

/// Whether the mixer survives the conversion. Its converter notes one step for each change of the
/// samples' form and for each halving or doubling of channels and rate, in a list of ten that must
/// end in an empty one, and does not count: a file that says 20 Hz, or 256 channels, of which it
/// sees 0, makes it run off the end of the list.
bool isConvertible(const SHAPE& from, const SHAPE& to) {
    const int channels = from.channels & 255;
    if (channels == 0 || from.rate < 1 || to.channels < 1 || to.rate < 1)
        return false;
    SDL_AudioCVT form;
    if (SDL_BuildAudioCVT(&form, from.format, 1, 1, to.format, 1, 1) < 0)
        return false;
    return form.filter_index + doublings(channels, to.channels, 1) +
               doublings(from.rate, to.rate, 100) <
           int(sizeof form.filters / sizeof *form.filters);
}

Uint32 tag(const char* name) {
    return Uint32(name[0]) | Uint32(name[1]) << 8 | Uint32(name[2]) << 16 | Uint32(name[3]) << 24;
}

/// WAV, plain or ADPCM: read by the same function that the mixer calls.
SHAPE wavShape(SDL_RWops* stream) {
    SDL_AudioSpec spec;
    Uint8* samples;
    Uint32 size;
    if (!SDL_LoadWAV_RW(stream, 0, &spec, &samples, &size))
        return {};
    SDL_FreeWAV(samples);
    return {spec.freq, spec.channels, spec.format};
}

/// AIFF and 8SVX. Behind a header of 12 bytes lie chunks: name, size, as many bytes, all numbers
/// big-endian.
/// | chunk | offset | field    | width | use                                                      |
/// | COMM  |      0 | channels |     2 |                                                          |
/// |       |      2 | frames   |     4 | -                                                        |
/// |       |      6 | bits     |     2 | per sample: 8 or 16                                      |
/// |       |      8 | exponent |     2 | of the rate, from 16383 on                               |
/// |       |     10 | mantissa |     8 | the upper half is read: the rate times 2^(31 - exponent) |
/// | VHDR  |     12 | rate     |     2 |                                                          |
SHAPE iffShape(SDL_RWops* stream) {
    SHAPE shape;
    const int end = SDL_RWseek(stream, 0, RW_SEEK_END);
    for (Sint64 at = 12; at + 8 <= end;) {
        SDL_RWseek(stream, int(at), RW_SEEK_SET);
        const Uint32 name = SDL_ReadLE32(stream);
        const Uint32 size = SDL_ReadBE32(stream);
        if (name == tag("COMM")) {
            shape.channels = SDL_ReadBE16(stream);
            SDL_ReadBE32(stream);
            shape.format = SDL_ReadBE16(stream) == 8 ? AUDIO_S8 : AUDIO_S16MSB;
            const int exponent = SDL_ReadBE16(stream) - 16383;
            const Uint32 mantissa = SDL_ReadBE32(stream);
            shape.rate = exponent < 0 || exponent > 31 ? 0 : mantissa >> (31 - exponent);
            return shape;
        }
        if (name == tag("VHDR")) {
            SDL_RWseek(stream, 12, RW_SEEK_CUR);
            return {SDL_ReadBE16(stream), 1, AUDIO_S8};
        }
        at += 8 + Sint64(size) + size % 2;
    }
    return shape;
}

/// Ogg: the page's header, then the stream's, which begins with "\1vorbis" at byte 28.
SHAPE oggShape(SDL_RWops* stream) {
    SHAPE shape;
    SDL_RWseek(stream, 39, RW_SEEK_SET);
    SDL_RWread(stream, &shape.channels, 1, 1);
    shape.rate = SDL_ReadLE32(stream);
    return shape;
}

/// FLAC: from byte 18 on 20 bits of rate and 3 of channels less one.
SHAPE flacShape(SDL_RWops* stream) {
    SDL_RWseek(stream, 18, RW_SEEK_SET);
    const Uint32 bits = SDL_ReadBE32(stream);
    return {bits >> 12, int(bits >> 9 & 7) + 1};
}

/// VOC: a block at the place that byte 20 tells, 1 kind and 3 bytes of size before what it holds:
/// kind 1 a rate between 3906 and 1000000, kind 9 one of 32 bits, bits per sample and channels.
SHAPE vocShape(SDL_RWops* stream) {
    SDL_RWseek(stream, 20, RW_SEEK_SET);
    SDL_RWseek(stream, SDL_ReadLE16(stream), RW_SEEK_SET);
    const Uint32 kind = SDL_ReadLE32(stream) & 255;
    const Uint32 rate = SDL_ReadLE32(stream);
    if (kind == 1)
        return {1000000 / (256 - Sint64(rate & 255)), 1, AUDIO_U8};
    const int channels = SDL_ReadLE16(stream) >> 8;
    return {kind == 9 ? rate : 0, channels};
}

/// Null when the mixer does not read the file or would not survive it, or when no device is open.
Mix_Chunk* load(const char* path, const SHAPE& device) {
    SDL_RWops* stream = SDL_RWFromFile(path, "rb");
    if (stream) {
        const Uint32 kind = SDL_ReadLE32(stream);
        SDL_RWseek(stream, 0, RW_SEEK_SET);
        const SHAPE shape = kind == tag("FORM")   ? iffShape(stream)
                            : kind == tag("OggS") ? oggShape(stream)
                            : kind == tag("fLaC") ? flacShape(stream)
                            : kind == tag("Crea") ? vocShape(stream)
                                                  : wavShape(stream);
        if (!isConvertible(shape, device)) {
            SDL_RWclose(stream);
            return nullptr;
        }
        SDL_RWseek(stream, 0, RW_SEEK_SET);
    }
    return Mix_LoadWAV_RW(stream, 1);
}

}  // namespace

Sound::~Sound() {
    if (!device_gone) {
        Mix_HaltMusic();
        Mix_HaltChannel(-1);
    }
    if (musicchunk)
        Mix_FreeChunk(musicchunk);
    musicchunk = nullptr;
    for (const SoundChannel& sound : sounds)
        Mix_FreeChunk(sound.chunk);
    Mix_CloseAudio();
    device_gone = true;
}

bool Sound::initialize() {
    // Newer SDL takes the signals that end a program, and does nothing with them.
    setenv("SDL_NO_SIGNAL_HANDLERS", "1", 0);
    if (Mix_OpenAudio(audio_rate, audio_format, audio_channels, audio_buffers) != 0)
        return false;
    device_gone = false;
    Mix_QuerySpec(&audio_rate, &audio_format, &audio_channels);
    return true;
}

bool Sound::loadMusic(const char* path) {
    musicchunk = load(path, {audio_rate, audio_channels, audio_format});
    if (!musicchunk)
        printf("musicchunk == 0\n");
    return true;
}

void Sound::playMusic() {
    if (!musicchunk) {
        printf("mussicchunk == 0 (playMusic)\n");
        return;
    }
    if (!device_gone)
        Mix_PlayChannelTimed(-1, musicchunk, -1, -1);
}

void Sound::loadSound(const char* path, int id) {
    Mix_Chunk* chunk = load(path, {audio_rate, audio_channels, audio_format});
    if (chunk)
        sounds.push_back({id, chunk});
    else
        printf("sc.chunk == NULL\n");
}

void Sound::playSound(int id, int loops) {
    for (const SoundChannel& sound : sounds) {
        if (sound.id == id) {
            if (!device_gone)
                Mix_PlayChannelTimed(-1, sound.chunk, loops, -1);
            return;
        }
    }
}
