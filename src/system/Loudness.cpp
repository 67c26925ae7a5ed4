#include "system/Loudness.h"

#include <SDL_mixer.h>

#include <cmath>

void setLoudness(float percent) {
    Mix_Volume(-1, static_cast<int>(std::lround(percent * MIX_MAX_VOLUME / 100)));
}
