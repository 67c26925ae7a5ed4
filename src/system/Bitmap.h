// Reading of bitmap files.
#pragma once

#include <SDL_rwops.h>
#include <SDL_video.h>

/// Decodes an uncompressed Windows bitmap, bottom row first in the file, top row first in the
/// result. Closes `source`, which may be null. The caller frees the surface. Null when the source
/// is no bitmap, has no pixels, or is shorter than its header promises.
SDL_Surface* readBitmap(SDL_RWops* source);
