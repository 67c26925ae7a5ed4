// Painting of fish skins: what all species have in common.
#pragma once

#include <functional>
#include <string>

#include "common/image.h"
#include "fish/anatomy.h"

namespace art {

/// Markings on the body that are drawn over the species' colours. Lengths in body lengths.
struct Detail {
    float scale = 0.030f;       ///< Size of a scale.
    float scale_depth = 0.1f;   ///< Strength of the scales' edges, 0..1.
    float scale_tint = 0.05f;   ///< Difference of brightness from scale to scale.
    float pearl = 0;            ///< Strength of a pale dot in the middle of each scale, 0..1.
    Vec2 gill{0.27f, 0};        ///< Middle of the gill cover's rear edge, side view.
    float gill_height = 0.11f;  ///< Half its height.
    Vec2 mouth_front{0, 0}, mouth_corner{0.06f, -0.02f};  ///< Ends of the mouth's line.
    float lips = 0.010f;                                  ///< Thickness of a lip in front.
    Vec3 lip_colour{1, 1, 1};                             ///< What the lips take on,
    float lip_flush = 0;                                  ///< and how much, 0..1.
    float gloss = 0.12f;  ///< Brightness of the wet sheen along the upper flank.
};

struct EyeLook {
    Vec3 iris, rim;      ///< Iris near the pupil and at its outer edge.
    float pupil = 0.5f;  ///< Radius as a part of the eye's.
};

struct Skin {
    std::function<Vec3(const BodyPoint&)> body;  ///< Colours only; light and markings come on top.
    std::function<Pixel(const FinPoint&)> fin;
    Detail detail;
    EyeLook eye;
    /// Darkness of the shadow's middle: faint, since far below a small fish it would be a blot of
    /// its own.
    float shade = 0.38f;
};

/// The look of a fin: rays from root to margin with thin skin between them.
struct Rays {
    Vec3 base, margin;    ///< Colours at the root and along the outer edge.
    float count = 20;     ///< Rays at the root; they fork on the way out.
    float solid = 0.95f;  ///< Opacity of a ray, and
    float skin = 0.80f;   ///< of the skin between two rays at the margin.
    float edge = 0.12f;   ///< Part of the ray's length that the margin colour takes.
    float notch = 0.05f;  ///< Depth of the cuts between hard spines, part of their length.
    float spines = 0;     ///< Part of the fin, from its front, that has hard spines.
};
Pixel finPixel(const FinPoint& p, const Rays& rays);

/// Paints the sheet and writes it as a 32-bit bitmap of size x size texels.
void saveSkin(const Fish& fish, const Skin& skin, int size, const std::string& path);

/// Values 0..1 that wander softly over the skin, about size body lengths apart.
float mottle(const BodyPoint& p, float size, uint32_t seed);

/// Round spots scattered over a plane: distance to the nearest spot's middle in spot radii.
float spots(Vec2 place, float spacing, float radius, uint32_t seed);

}  // namespace art
