// Sound output: a background loop and numbered effects.
#pragma once

#include <SDL_mixer.h>

#include <vector>

/// A loaded effect.
struct SoundChannel {
    int id;            ///< the caller's number for it
    Mix_Chunk* chunk;  ///< owned by the Sound
};

/// Owns the open audio device and what is played on it: use one at a time, for the first that goes
/// closes the device. Without a device everything here still works and nothing is heard. Use on one
/// thread; mixing runs on a thread of the mixer's own.
class Sound {
public:
    Sound() = default;
    /// Silence, then frees the sounds and closes the device.
    ~Sound();
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;

    /// Opens the device; false, without a message, when there is none to be had. The audio_*
    /// members then say what it really gave.
    bool initialize();
    /// Loads the background loop, a file of any kind that the mixer reads: WAV, AIFF, Ogg, FLAC,
    /// VOC. Prints a line when that fails, and is true all the same: a saver without its waves is
    /// no failure.
    bool loadMusic(const char* path);
    /// Plays the background loop for ever on a free channel.
    void playMusic();
    /// Loads an effect; a line is printed and nothing kept when that fails. Of effects with the
    /// same id the first is the one that plays.
    void loadSound(const char* path, int id);
    /// Plays an effect on a free channel: once for loops 0, for ever for -1. Does nothing for an
    /// id that is not loaded or when every channel is taken.
    void playSound(int id, int loops);

    int audio_rate = 22050;  ///< Hz
    Uint16 audio_format = AUDIO_S16LSB;
    int audio_channels = 2;
    int audio_buffers = 4096;          ///< sample frames mixed at a time
    Mix_Chunk* musicchunk = nullptr;   ///< owned
    std::vector<SoundChannel> sounds;  ///< in load order
};
