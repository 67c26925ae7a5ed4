// The sea floor.
#pragma once

#include <SDL_stdinc.h>

#include "system/HeightMap.h"

/// A terrain whose points sway up and down by up to 0.03 units, as if seen through moving water.
class WaterGround : public HeightMap {
public:
    WaterGround();

    /// Moves the sway to the current time.
    void modify() override;
    void keyPressed() {}

    float curoffset1 = 0;  ///< phase of the sway along x, radians
    float curoffset2 = 0;  ///< phase of the sway along z, radians
    Uint32 timer;          ///< tick of the last modify
};
