// The gardens of the scene, one source file each, named after their models.
#pragma once

#include "corals/garden.h"

namespace art {

Garden coral_a();
Garden coral_c();
Garden coral_d();
Garden coral_f();
Garden coral_g();
Garden coral_h();
Garden coral_i();

/// The model of coral_b, which is no garden, in file axes.
Mesh thicket();
/// Its texture.
Image thicketSkin();
/// Writes models/coral_b.nlm and models/coral_b.nlt below the folder.
void paintThicket(const std::string& folder);

/// Everything that stands on the sea floor, in world axes (y up), group by group.
std::vector<std::vector<Mesh>> standingCorals();

}  // namespace art
