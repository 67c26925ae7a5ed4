// Brain corals with a few neighbours. It stands twice: as it is painted, and flattened on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_d() {
    Garden garden;
    garden.placement = kCorals[5];
    garden.frames = 20;
    garden.width = 512;
    garden.height = 256;
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
    // The neighbours reach deep: where the garden stands again, the sand falls away from it.
    rigid.add(brain(102, {0.52f, 0.62f, 0.52f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {{x - 0.95f, y - 0.22f, z - 0.55f}, {-8, 0, 0}});
    rigid.add(brain(103, {0.36f, 0.55f, 0.36f}, rgb(236, 176, 150), rgb(150, 86, 84)),
              {{x + 1.05f, y - 0.25f, z - 0.30f}, {-8, 0, 0}});
    rigid.add(rock(104, {0.40f, 0.62f, 0.34f}, 0.2f), {{x + 0.35f, y - 0.45f, z - 1.00f}});
    rigid.add(rock(105, {0.28f, 0.55f, 0.26f}, 0.2f), {{x - 0.42f, y - 0.42f, z - 1.0f}});
    for (Growth& growth : rigid.growths)
        growth = settled(std::move(growth));
    // Rubble before the neighbours' feet, which would end in a line on the sand.
    rigid.add(rock(108, {0.20f, 0.44f, 0.18f}, 0.2f), {onFloor(x + 0.86f, z - 0.70f, -0.30f)});
    rigid.add(rock(109, {0.16f, 0.42f, 0.15f}, 0.2f), {onFloor(x + 1.20f, z - 0.66f, -0.29f)});
    rigid.add(rock(110, {0.17f, 0.42f, 0.15f}, 0.2f), {onFloor(x - 0.74f, z - 1.06f, -0.28f)});
    rigid.add(rock(118, {0.12f, 0.40f, 0.11f}, 0.2f), {onFloor(x - 1.06f, z - 1.04f, -0.30f)});

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(staghorn(106, 0.75f, 11, 0.048f, blue(), 2), {{x + 0.80f, y + 0.02f, z - 0.85f}});
    soft.add(staghorn(107, 0.42f, 9, 0.034f, cream(), 1), {{x - 0.05f, y + 0.06f, z - 1.12f}});
    return garden;
}

}  // namespace art
