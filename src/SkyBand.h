// The sky ahead as it stands in the evening and at night: unlike the turning sky it stays, for it
// has the place of the sunset and of the moon in it.
#pragma once

#include "DayLight.h"
#include "system/RenderObject.h"

/// How far a picture of the sky has come over the one before it. It comes from high up and is at
/// the horizon, where the old light stays longest, at last, or it rises from there; both show only
/// in a belt between.
struct SKY_CHANGE {
    float come;  ///< from 0, not at all, to 1
    float belt;  ///< its height in degrees, not 0
    bool rises = false;

    // Degrees above the horizon: the belt's edges.
    float upper() const;
    float lower() const { return upper() - belt; }
    /// Of the new picture.
    float shareAt(float elevation) const;
};

/// Rows of the sky, by the new picture's share there. Combined with |.
enum SKY_ROWS : int {
    ROWS_BEFORE = 1,  ///< 0
    ROWS_SHARED = 2,  ///< between
    ROWS_AFTER = 4,   ///< 1
};

/// A piece of a cylinder round the eye, its picture going on mirrored at the sides. The horizon is
/// where the eye is level, and SKY_AHEAD says what the picture covers. Colours differ by height:
/// those of the sea are apart from the sky's. With two pictures the shares are those of the second
/// over the first; needs multitexturing.
class SkyBand : public RenderObject {
public:
    /// Degrees from one column of its vertices to the next, and of the last ones to each side.
    static constexpr int COLUMN = 4, WIDEST = 76;

    /// A vertex, seen from the eye.
    static GLVector3 corner(float azimuth, float elevation);

    void preRender() override;
    void renderMesh() override;
    void postRender() override;

    TINT sky{1, 1, 1};
    TINT sea{1, 1, 1};
    SKY_CHANGE change{1, 1};
    SKY_ROWS rows = ROWS_AFTER;  ///< that are drawn
    /// Pale haze over the picture, 0..1; less of it high up, none on the sea. For one picture.
    float mist = 0;
};
