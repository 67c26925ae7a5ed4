#include "system/Loudness.h"

#include <SDL_mixer.h>

#include <cmath>

void setLoudness(float percent) {
    // Closed, the mixer would reach for channels that are not there.
    if (Mix_QuerySpec(nullptr, nullptr, nullptr) > 0)
        Mix_Volume(-1, static_cast<int>(std::lround(percent * MIX_MAX_VOLUME / 100)));
}
