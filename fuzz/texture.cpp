#include <SDL_rwops.h>

#include <initializer_list>

#include "fuzz.h"
#include "system/Texture.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const TEXTURE_FLAG flags : {QUALITY_NORMAL, QUALITY_MIPMAP}) {
        fuzz::Printed printed;
        Texture texture;
        const bool loaded =
            texture.loadBMP(SDL_RWFromConstMem(data, static_cast<int>(size)), "picture", flags);
        fuzz::require(loaded == texture.loaded, "only a load that succeeds leaves a texture");
        fuzz::require(printed.lines() == 1 || (loaded && printed.lines() == 0),
                      "a bad picture gets one line, a good one none");
    }
    return 0;
}
