#include <SDL_rwops.h>

#include "fuzz.h"
#include "system/HeightMap.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Printed printed;
    HeightMap map;
    const bool loaded = map.loadBMP(SDL_RWFromConstMem(data, static_cast<int>(size)), "heights");
    fuzz::require(printed.lines() == (loaded ? 0 : 1), "a bad map gets one line, a good one none");
    fuzz::require(loaded == (map.mapdata != nullptr), "only a load that succeeds leaves samples");
    map.setSize(60, 50);
    map.setNumSegments(7);
    map.render();
    map.cleanup();
    return 0;
}
