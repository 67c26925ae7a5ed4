// The stack on the right, a table on its top.
#include "corals/gardens.h"

namespace art {

Garden coral_i() {
    Garden garden;
    garden.placement = kCorals[10];
    garden.width = 1024;
    garden.height = 512;
    garden.cell = 19;
    garden.west = 0.9f;
    garden.east = 30;
    const float x = 11, y = -7.1f, z = 18.4f;

    Layer& rigid = garden.layer();
    rigid.add(rock(141, {1.25f, 2.0f, 1.1f}), {{x, y + 0.1f, z}});
    rigid.add(rock(142, {1.1f, 0.85f, 0.9f}), {{x - 1.2f, y, z - 0.5f}});
    rigid.add(rock(143, {1.1f, 1.15f, 1.0f}), {{x + 1.3f, y, z - 0.1f}});
    rigid.add(table(144, 1.25f, 0.75f), {{x - 0.2f, y + 1.95f, z}, {-12, 10, 0}});
    rigid.add(rock(154, {0.46f, 0.36f, 0.42f}), {{x - 0.2f, y + 1.80f, z - 0.22f}});
    rigid.add(brain(150, {0.40f, 0.36f, 0.40f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {{x + 2.1f, y + 0.2f, z - 0.9f}, {-10, 0, 0}});
    rigid.add(plates(146, 0.80f, 10, rgb(140, 112, 40), rgb(240, 200, 70)),
              {{x + 0.35f, y + 1.25f, z - 0.95f}, {-30, 0, 0}});
    rigid.add(rock(155, {0.66f, 0.34f, 0.44f}), {{x - 0.55f, y + 0.02f, z - 1.42f}});
    rigid.add(brain(151, {0.36f, 0.22f, 0.32f}, rgb(242, 186, 108), rgb(160, 92, 54)),
              {{x - 1.50f, y + 0.27f, z - 1.06f}, {-14, 0, 8}});
    rigid.add(plates(152, 0.36f, 7, rgb(150, 96, 60), rgb(244, 166, 120)),
              {{x + 0.15f, y + 0.45f, z - 1.10f}, {-45, 0, 0}});
    rigid.add(staghorn(153, 0.34f, 9, 0.030f, pink(), 1),
              {{x - 0.75f, y + 1.15f, z - 0.75f}, {-25, 0, 0}});
    strew(rigid, 919, x, z - 0.4f, 2.6f, 12);

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(fan(147, 1.45f, rgb(180, 24, 116), rgb(255, 96, 186)),
             {{x + 1.5f, y + 0.9f, z - 0.5f}, {-4, -15, -10}});
    soft.add(staghorn(145, 1.3f, 13, 0.066f, violet(), 3),
             {{x - 1.35f, y + 0.7f, z - 0.7f}, {-10, 0, 10}});
    soft.add(sponges(148, 1.1f, 4, rgb(140, 78, 176), rgb(220, 166, 238)),
             {{x - 0.55f, y + 0.15f, z - 1.45f}});
    soft.add(staghorn(149, 1.0f, 12, 0.050f, cream(), 3), {{x + 1.7f, y + 0.15f, z - 1.1f}});

    // Outposts on the sand in front.
    Layer& left = garden.layer();
    left.fine = true;
    left.add(rock(221, {0.30f, 0.17f, 0.26f}), {onFloor(8.4f, 16.0f, -0.03f)});
    left.add(staghorn(222, 0.46f, 9, 0.036f, green(), 1), {onFloor(8.65f, 15.85f)});
    left.add(brain(223, {0.20f, 0.16f, 0.20f}, rgb(236, 176, 150), rgb(150, 86, 84)),
             {onFloor(8.05f, 15.85f)});
    Layer& right = garden.layer();
    right.fine = true;
    right.add(rock(224, {0.32f, 0.18f, 0.26f}), {onFloor(12.9f, 14.6f, -0.03f)});
    right.add(staghorn(225, 0.5f, 10, 0.038f, pink(), 1), {onFloor(12.65f, 14.4f)});
    right.add(sponges(226, 0.45f, 3, rgb(236, 130, 40), rgb(255, 196, 92)),
              {onFloor(13.2f, 14.4f)});
    return garden;
}

}  // namespace art
