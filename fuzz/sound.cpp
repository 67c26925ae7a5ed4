// The check of sound files, and the library's loader behind it with what passes.
#include <cstdlib>

#include "fuzz.h"
#include "system/Sound.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool device = [] {
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        return Mix_OpenAudio(22050, AUDIO_S16LSB, 2, 4096) == 0;
    }();
    fuzz::Printed printed;
    Sound sound;
    // The player closes the device when it goes; opened twice, it stays.
    fuzz::require(device && sound.initialize(), "there is a silent device");
    sound.loadSound(fuzz::asFile(data, size), 0);
    fuzz::require(printed.lines() == (sound.sounds.empty() ? 1 : 0),
                  "a bad sound gets one line, a good one none");
    return 0;
}
