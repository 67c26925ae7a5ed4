// Sea fans on a low stone, before the plates on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_c() {
    Garden garden;
    garden.placement = kCorals[4];
    garden.frames = 20;
    garden.width = 1024;
    garden.height = 512;
    garden.cell = 22;
    const float x = -8.9f, y = -6.25f, z = 19.2f;

    Layer& back = garden.layer();
    back.add(fan(92, 2.1f, rgb(186, 26, 118), rgb(255, 92, 190)),
             {{x + 0.25f, y + 0.25f, z}, {6, -10, 4}});

    Layer& front = garden.layer();
    front.add(rock(91, {0.95f, 0.42f, 0.8f}), {{x, y, z}});
    front.add(rock(95, {0.5f, 0.3f, 0.45f}), {{x + 0.95f, y - 0.05f, z - 0.35f}});
    front.add(staghorn(97, 0.6f, 9, 0.036f, cream(), 2), {{x - 0.75f, y + 0.1f, z - 0.55f}});
    front.add(brain(98, {0.26f, 0.22f, 0.26f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {{x - 0.25f, y + 0.12f, z - 0.75f}});
    strew(front, 911, x, z - 0.3f, 1.7f, 8);

    Layer& gold = garden.layer();
    gold.add(fan(93, 1.45f, rgb(186, 96, 20), rgb(255, 206, 84)),
             {{x + 0.95f, y + 0.12f, z - 0.40f}, {4, 25, -8}});
    return garden;
}

}  // namespace art
