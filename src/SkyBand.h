// The sky ahead as it stands in the evening and at night: unlike the turning sky it stays, for it
// has the place of the sunset and of the moon in it.
#pragma once

#include "DayLight.h"
#include "system/RenderObject.h"

/// A piece of a cylinder round the eye, its picture going on mirrored at the sides. The horizon is
/// where the eye is level, and SKY_AHEAD says what the picture covers. Colours differ by height:
/// those of the sea are apart from the sky's. With two pictures the shares are those of the second
/// over the first, and nothing behind shows; needs multitexturing.
class SkyBand : public RenderObject {
public:
    void preRender() override;
    void renderMesh() override;
    void postRender() override;

    TINT sky{1, 1, 1};
    TINT sea{1, 1, 1};
    // Shares of the picture over what lies behind, 0..1.
    float high = 1;     ///< high up
    float low = 1;      ///< in the sky at the horizon
    float surface = 1;  ///< on the sea
    /// Pale haze over picture and sky, 0..1; less of it high up, none on the sea. For one picture.
    float mist = 0;
};
