#include "support/clock.h"

namespace {

Uint32 now = 0;

}  // namespace

extern "C" {
Uint32 __wrap_SDL_GetTicks();
Uint32 __wrap_SDL_GetTicks() { return now; }
}

void test::setTicks(Uint32 ticks) { now = ticks; }

void test::advanceTicks(Uint32 ms) { now += ms; }
