// The cloudless sky and the open sea under it, as colours of a direction.
#pragma once

#include "common/vec.h"

namespace sky {

/// Colour of the air at an elevation in radians, 0 at the horizon to pi/2 overhead.
art::Vec3 air(float elevation);
/// Colour that far clouds fade into.
art::Vec3 haze();
/// The open sea at an elevation below 0: at 2.2 degrees down it is the colour that the water's edge
/// has, further down it fades into the fog as the fader before it does.
art::Vec3 sea(float elevation);
/// The same in a direction (a unit vector), with streaks where the wind ruffles it.
art::Vec3 ruffledSea(art::Vec3 direction);
/// Thin high clouds in a direction (a unit vector with y up): 0 for none, 1 for white.
float wisps(art::Vec3 direction);
/// The colour with a grain too fine to see, which keeps the steps of 8 bits from showing as bands.
art::Vec3 grained(art::Vec3 colour, int x, int y);

}  // namespace sky
