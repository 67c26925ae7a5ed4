#include "quick/ReefSounds.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <utility>

#include "Marivista.h"
#include "system/SoundFade.h"
#include "system/Waiting.h"

namespace {

enum class MIXER { FREE, TAKEN, CLOSING };

// The mixer's turn comes every 185 milliseconds.
constexpr int NEXT_TURN = 250;
constexpr int PATIENCE = 1000;

/// What the closing thread uses may not end before it.
struct SOUNDS {
    std::mutex mutex;  ///< nobody else takes, opens or leaves the mixer
    std::atomic<MIXER> mixer{MIXER::FREE};
    SoundFade fade;
};

SOUNDS& sounds() {
    static SOUNDS& all = *new SOUNDS;
    return all;
}

void close(Sound* sound) {
    waitUntil([] { return sounds().fade.closed(); }, NEXT_TURN);
    delete sound;  // waits until the device has played what it has
    sounds().mixer = MIXER::FREE;
}

/// At the end of the process.
struct LAST_SOUND {
    ~LAST_SOUND() {
        waitUntil([] { return sounds().mixer != MIXER::CLOSING; }, PATIENCE);
    }
} last_sound;

}  // namespace

void startSounds(CMarivistaScreensaver& scene) {
    const std::lock_guard lock(sounds().mutex);
    if (sounds().mixer != MIXER::FREE)
        return;
    sounds().mixer = MIXER::TAKEN;
    sounds().fade.attach();
    sounds().fade.open(true);
    scene.wantedwssettings.soundOn = true;
    scene.initSound();
}

void stopSounds(CMarivistaScreensaver& scene) {
    if (!scene.sound)
        return;
    const std::lock_guard lock(sounds().mutex);
    scene.wantedwssettings.soundOn = false;
    sounds().mixer = MIXER::CLOSING;
    sounds().fade.open(false);
    std::thread(close, std::exchange(scene.sound, nullptr)).detach();
}

void holdSounds(bool held) {
    const std::lock_guard lock(sounds().mutex);
    if (sounds().mixer == MIXER::TAKEN)
        sounds().fade.open(!held);
}
