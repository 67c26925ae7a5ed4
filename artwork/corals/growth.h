// Corals in full detail, as they are before they are painted into a picture.
#pragma once

#include <functional>
#include <vector>

#include "common/mesh.h"

namespace art {

/// What a surface looks like at a point, before light falls on it.
struct Paint {
    Vec3 colour;
    Vec3 bump;  ///< Added to the unit normal.
};
/// texture: the vertex coordinate, interpolated; point: in world units.
using Material = std::function<Paint(Vec2 texture, Vec3 point)>;

/// One coral: a closed or open mesh, y up. bend: for each vertex, how far the swell moves it, in
/// world units.
struct Growth {
    Mesh mesh;
    std::vector<float> bend;
    Material material;
};

/// Rows of vertices round the y axis become a skin; facing outwards.
void skin(Mesh& mesh, int first, int rows, int columns);

/// Turns about x, y, z by degrees, in this order, then scales and moves.
struct Stand {
    Vec3 foot;
    Vec3 turn{0, 0, 0};
    Vec3 scale{1, 1, 1};
};
Growth stand(Growth growth, const Stand& where);

/// Colours from the foot of a branch to its tip.
struct Shades {
    Vec3 foot, middle, tip;
};
Shades violet();
Shades pink();
Shades blue();
Shades green();
Shades cream();

/// All stand on the origin with their feet sunk a little; sizes are in world units.

/// A thicket of forking branches; forks is how often each stem divides.
Growth staghorn(uint32_t seed, float height, int stems, float thickness, const Shades& shades,
                int forks = 2, float spread = 0.75f);
/// A flat top full of short branchlets, with its underside and stalk; the top lies at height.
std::vector<Growth> table(uint32_t seed, float radius, float height);
/// A net of branches in the plane z = 0.
Growth fan(uint32_t seed, float height, Vec3 low, Vec3 high);
Growth sponges(uint32_t seed, float height, int count, Vec3 low, Vec3 high);
/// Curled plates round a centre.
Growth plates(uint32_t seed, float radius, int count, Vec3 low, Vec3 high);
/// A folded leather cap on a foot.
Growth leather(uint32_t seed, float radius);
Growth anemone(uint32_t seed, float radius, int arms);
/// A dome with winding grooves; radii along x, y, z.
Growth brain(uint32_t seed, Vec3 radii, Vec3 ridge, Vec3 groove);
/// A weathered lump overgrown with algae.
Growth rock(uint32_t seed, Vec3 radii, float roughness = 0.28f);

}  // namespace art
