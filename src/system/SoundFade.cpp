#include "system/SoundFade.h"

#include <SDL_mixer.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr int FADE_MS = 60;
constexpr int SLICE = 64;  // sample frames of the same loudness

}  // namespace

void SoundFade::attach() {
    Mix_SetPostMix([](void* fade, Uint8* stream,
                      int bytes) { static_cast<SoundFade*>(fade)->apply(stream, bytes); },
                   this);
}

void SoundFade::detach() { Mix_SetPostMix(nullptr, nullptr); }

void SoundFade::apply(std::uint8_t* stream, int bytes) {
    int rate = 0, channels = 0;
    Uint16 format = 0;
    if (!Mix_QuerySpec(&rate, &format, &channels))
        return;
    const int frame = channels * (format & 0xff) / 8;  // bytes
    const int length = rate * FADE_MS / 1000;          // of the fade, frames
    const bool opening = target;
    gone = !opening && level == 0;
    if (opening && level >= length)
        return;
    const std::vector<std::uint8_t> loud(stream, stream + bytes);
    const bool is_signed = format & 0x8000;
    std::memset(stream, is_signed ? 0 : 0x80, static_cast<std::size_t>(bytes));
    for (int at = 0; at < bytes; at += SLICE * frame) {
        level = std::clamp(level + (opening ? SLICE : -SLICE), 0, length);
        SDL_MixAudio(stream + at, loud.data() + at,
                     static_cast<Uint32>(std::min(SLICE * frame, bytes - at)),
                     SDL_MIX_MAXVOLUME * level / length);
    }
}
