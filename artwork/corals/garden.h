// A garden of corals, and how it becomes a model and a texture of the data tree.
//
// The eye of the scene never leaves its place, so a garden is drawn once, in full detail, as the
// eye sees it. The picture, with its light, becomes the texture; a coarse mesh with the depth of
// what it shows carries it, cut closely along the outline.
#pragma once

#include <deque>
#include <string>

#include "corals/portrait.h"
#include "floor/placement.h"

namespace art {

struct Garden {
    Placement placement;            ///< the coral of the scene that it is drawn for
    Vec3 eye = kEye;                ///< where it is seen from
    int frames = 10;                ///< keyframes of one swell
    int width = 512, height = 512;  ///< of the texture
    int cell = 14;                  ///< texels between mesh points
    bool cut = true;                ///< along the sea floor; not for what stands elsewhere too
    float tiling = 1;               ///< the scene multiplies texture coordinates by it
    /// What lies on the sand close to the eye between these x is in its picture, too.
    float west = 0, east = 0;
    /// How much nearer than it lies that stands, world units: before the fish's shadows where they
    /// are drawn first, which its clear texels would cut out otherwise.
    float before_sand = 0.10f;
    std::deque<Layer> layers;  ///< world axes, y up

    /// A new layer, before the others.
    Layer& layer() {
        layers.emplace_back();
        return layers.back();
    }
};

/// A point on the sea floor, or lifted above it.
Vec3 onFloor(float x, float z, float lift = 0);

/// A stony coral, in world axes, that darkens where it meets the sea floor.
Growth settled(Growth growth);

/// Stones and small corals strewn round a place, thinning outwards; none farther away than a z from
/// where they would only peep out.
void strew(Layer& shown, uint32_t seed, float x, float z, float reach, int count,
           float farthest = 1e9f);

/// Writes models/<model>.nlm and models/<model>.nlt below the folder.
void paintGarden(Garden garden, const std::string& folder);

}  // namespace art
