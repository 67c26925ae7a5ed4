// Brain corals with a few neighbours. It stands twice: as it is painted, and flattened on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_d() {
    Garden garden;
    garden.placement = kCorals[5];
    garden.frames = 20;
    garden.width = 512;
    garden.height = 512;
    garden.cell = 14;
    garden.cut = false;
    // Seen from between the two directions from which the eye sees the two.
    const Placement& twin = kCorals[6];
    const Vec3 other = garden.placement.toWorld(twin.toFile(kEye));
    const Vec3 foot = garden.placement.foot;
    garden.eye = foot + normalize(normalize(kEye - foot) * 1.3f + normalize(other - foot)) *
                            length(kEye - foot);

    Layer& rigid = garden.layer();
    const float x = foot.x, y = foot.y, z = foot.z;
    rigid.add(brain(101, {1.05f, 0.95f, 1.05f}, rgb(240, 186, 108), rgb(164, 92, 54)),
              {{x, y + 0.05f, z}, {-8, 45, 0}});
    rigid.add(brain(102, {0.52f, 0.42f, 0.52f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {{x - 0.95f, y - 0.02f, z - 0.55f}, {-10, 0, 0}});
    rigid.add(brain(103, {0.34f, 0.30f, 0.34f}, rgb(236, 176, 150), rgb(150, 86, 84)),
              {{x + 0.95f, y - 0.02f, z - 0.50f}, {-10, 0, 0}});
    rigid.add(rock(104, {0.40f, 0.22f, 0.34f}), {{x + 0.35f, y - 0.04f, z - 1.02f}});
    rigid.add(rock(105, {0.28f, 0.18f, 0.26f}), {{x - 0.40f, y - 0.05f, z - 1.0f}});

    Layer& soft = garden.layer();
    soft.add(staghorn(106, 0.85f, 11, 0.050f, blue(), 2), {{x + 1.0f, y, z - 0.15f}});
    soft.add(plates(107, 0.34f, 7, rgb(140, 112, 40), rgb(240, 200, 70)),
             {{x - 0.05f, y, z - 1.1f}, {0, 40, 0}});
    return garden;
}

}  // namespace art
