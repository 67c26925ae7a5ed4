#include "system/Sound.h"

#include <cstdio>

namespace {

/// True when the stream holds a WAV file that the loader can be trusted with: rates near zero and
/// files without channels make it run off the end of its tables. Leaves the stream at its start.
///
/// RIFF header
/// | offset | field  | width | use                            |
/// |      0 | riff   |     4 | "RIFF"                         |
/// |      4 | size   |     4 | not read, the stream knows     |
/// |      8 | wave   |     4 | "WAVE"                         |
/// then chunks to the end, those of other names skipped
/// |      0 | name   |     4 | "fmt " comes before "data"     |
/// |      4 | size   |     4 | bytes that follow              |
/// "fmt ", at least 16 bytes
/// |      0 | coding |     2 | 1: plain samples               |
/// |      2 | channels |   2 | 1 or 2                         |
/// |      4 | rate   |     4 | sample frames per second       |
/// |      8 | -      |     6 | not read                       |
/// |     14 | bits   |     2 | per sample: 8 or 16            |
/// "data": the samples, at least one frame
bool isPlainWav(SDL_RWops* stream) {
    const auto tag = [](const char* name) {
        return Uint32(name[0]) | Uint32(name[1]) << 8 | Uint32(name[2]) << 16 |
               Uint32(name[3]) << 24;
    };
    const Sint64 end = SDL_RWseek(stream, 0, RW_SEEK_END);
    SDL_RWseek(stream, 0, RW_SEEK_SET);
    if (end < 12)
        return false;
    const Uint32 riff = SDL_ReadLE32(stream);
    SDL_ReadLE32(stream);
    if (riff != tag("RIFF") || SDL_ReadLE32(stream) != tag("WAVE"))
        return false;

    Uint32 frame = 0;  // bytes of a sample frame, once the format is known
    for (Sint64 at = 12; end - at >= 8;) {
        SDL_RWseek(stream, int(at), RW_SEEK_SET);
        const Uint32 name = SDL_ReadLE32(stream);
        const Uint32 size = SDL_ReadLE32(stream);
        at += 8;
        if (size > end - at)
            return false;
        if (name == tag("fmt ")) {
            if (size < 16)
                return false;
            const Uint16 coding = SDL_ReadLE16(stream);
            const Uint16 channels = SDL_ReadLE16(stream);
            const Uint32 rate = SDL_ReadLE32(stream);
            SDL_RWseek(stream, 6, RW_SEEK_CUR);
            const Uint16 bits = SDL_ReadLE16(stream);
            if (coding != 1 || channels < 1 || channels > 2 || rate < 4000 || rate > 192000 ||
                (bits != 8 && bits != 16))
                return false;
            frame = channels * bits / 8u;
        } else if (name == tag("data")) {
            SDL_RWseek(stream, 0, RW_SEEK_SET);
            return frame > 0 && size >= frame;
        }
        at += size;
    }
    return false;
}

/// Null when the file is missing or not a plain WAV file, or when no device is open.
Mix_Chunk* loadWav(const char* path) {
    SDL_RWops* stream = SDL_RWFromFile(path, "rb");
    if (stream && !isPlainWav(stream)) {
        SDL_RWclose(stream);
        return nullptr;
    }
    return Mix_LoadWAV_RW(stream, 1);
}

}  // namespace

Sound::~Sound() {
    Mix_HaltMusic();
    Mix_HaltChannel(-1);
    if (musicchunk)
        Mix_FreeChunk(musicchunk);
    musicchunk = nullptr;
    for (const SoundChannel& sound : sounds)
        Mix_FreeChunk(sound.chunk);
    // Closed, the mixer forgets its channels but not how many there were: the next one of us would
    // halt channels that are not there.
    Mix_AllocateChannels(0);
    Mix_CloseAudio();
}

bool Sound::initialize() {
    if (Mix_OpenAudio(audio_rate, audio_format, audio_channels, audio_buffers) != 0)
        return false;
    Mix_QuerySpec(&audio_rate, &audio_format, &audio_channels);
    return true;
}

bool Sound::loadMusic(const char* path) {
    musicchunk = loadWav(path);
    if (!musicchunk)
        printf("musicchunk == 0\n");
    return true;
}

void Sound::playMusic() {
    if (!musicchunk) {
        printf("mussicchunk == 0 (playMusic)\n");
        return;
    }
    Mix_PlayChannelTimed(-1, musicchunk, -1, -1);
}

void Sound::loadSound(const char* path, int id) {
    Mix_Chunk* chunk = loadWav(path);
    if (chunk)
        sounds.push_back({id, chunk});
    else
        printf("sc.chunk == NULL\n");
}

void Sound::playSound(int id, int loops) {
    for (const SoundChannel& sound : sounds) {
        if (sound.id == id) {
            Mix_PlayChannelTimed(-1, sound.chunk, loops, -1);
            return;
        }
    }
}
