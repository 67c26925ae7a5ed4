// Colours that floor, fader, water and sky must share, so that they meet without a line.
#pragma once

#include "common/vec.h"

namespace sea {

/// The saver's fog, which floor and fish fade into.
inline const art::Vec3 kFog{0.121f, 0.590f, 0.707f};
/// The open sea where the lagoon ends: top of the fader, far edge of the water, lowest band of the
/// sky.
inline const art::Vec3 kFarSea = art::rgb(27, 141, 180);
/// The open sea close under the horizon's haze.
inline const art::Vec3 kHorizonSea = art::rgb(46, 138, 192);

}  // namespace sea
