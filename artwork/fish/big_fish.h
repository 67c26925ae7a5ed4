// The big fish that cruise through the reef: a heavy perch, from which its species differ a little.
#pragma once

#include "fish/skin.h"

namespace art {

Fish bigFish();
/// Markings where this body has them.
Detail bigFishDetail();

}  // namespace art
