// The gardens of the scene, one source file each, named after their models.
#pragma once

#include "corals/garden.h"

namespace art {

Garden coral_a();
Garden coral_b();
Garden coral_c();
Garden coral_d();
Garden coral_f();
Garden coral_g();
Garden coral_h();
Garden coral_i();

}  // namespace art
