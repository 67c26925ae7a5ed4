// Plants and stones as meshes for the ray tracer: y up, about one unit in size. Texture t is the
// brightness of a leaf, 0 shaded to 1 sunlit.
#pragma once

#include "common/mesh.h"

namespace island {

/// A palm leaf of length 1 that starts at the origin towards +x and bends down; droop 1 hangs a
/// little, 2.6 straight down.
art::Mesh frond(uint32_t seed, float droop);
/// A ball of leaves of about radius 1 around the origin.
art::Mesh clump(uint32_t seed);
/// A rosette of stiff narrow leaves of length 1, as of a pandanus.
art::Mesh rosette(uint32_t seed);
/// A weathered stone of about radius 1, its middle at the origin.
art::Mesh boulder(uint32_t seed, art::Vec3 size);
/// A sea stack that stands on the origin, undercut by the waves; it reaches one unit under water.
art::Mesh stack(uint32_t seed, float radius, float height);

}  // namespace island
