// The clock of a test: what SDL_GetTicks returns. It stands still unless it is set.
#pragma once

#include <SDL_stdinc.h>

namespace test {

/// Milliseconds; 0 at first.
void setTicks(Uint32 ticks);
/// Wraps around at 2^32 like the real one.
void advanceTicks(Uint32 ms);

}  // namespace test
