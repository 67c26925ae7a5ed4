// The small oval reef fish that wears several skins.
#pragma once

#include "fish/skin.h"

namespace art {

Fish reefFish();
/// Markings where this body has them.
Detail reefFishDetail();

}  // namespace art
