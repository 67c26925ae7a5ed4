// Which sound library the tests run on.
#pragma once

#include <SDL_version.h>

namespace test {

/// SDL 1.2 is a layer over its successors, as on Debian 13: it reads more kinds of files, resamples
/// for the device and counts its versions from 1.2.50 on.
inline bool sdlIsALayer() { return SDL_Linked_Version()->patch >= 50; }

}  // namespace test
