// Shells, pebbles and starfish before the eye, in as much detail as the corals.
#pragma once

#include "corals/garden.h"
#include "floor/litter.h"

namespace art {

/// Adds what lies close up between the garden's west and east to it, each a layer of its own.
void strewCloseUp(Garden& garden);

}  // namespace art
