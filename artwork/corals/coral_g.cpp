// The far outcrop, half in the haze.
#include "corals/gardens.h"

namespace art {

Garden coral_g() {
    Garden garden;
    garden.placement = kCorals[8];
    garden.width = 1024;
    garden.height = 256;
    garden.cell = 17;
    const float x = 0, y = -7.1f, z = 25.2f;

    Layer& rigid = garden.layer();
    rigid.add(rock(121, {1.9f, 1.35f, 1.3f}), {{x, y, z}});
    rigid.add(rock(122, {1.1f, 0.75f, 0.9f}), {{x + 1.6f, y, z - 0.3f}});
    rigid.add(rock(127, {0.8f, 0.6f, 0.7f}), {{x - 1.7f, y, z - 0.2f}});
    rigid.add(table(123, 1.45f, 0.75f), {{x + 0.3f, y + 0.78f, z}, {-11, 0, 0}});
    rigid.add(brain(128, {0.45f, 0.40f, 0.45f}, rgb(242, 200, 124), rgb(156, 92, 58)),
              {{x + 0.35f, y + 0.75f, z - 1.05f}, {-10, 0, 0}});
    strew(rigid, 915, x, z - 0.2f, 2.9f, 8);

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(fan(126, 1.7f, rgb(186, 96, 20), rgb(255, 206, 84)),
             {{x - 1.9f, y + 0.4f, z - 0.2f}, {0, 10, 8}});
    soft.add(staghorn(124, 1.4f, 13, 0.070f, green(), 3), {{x + 1.7f, y + 0.64f, z - 0.85f}});
    soft.add(sponges(125, 1.3f, 5, rgb(140, 78, 176), rgb(220, 166, 238)),
             {{x - 1.1f, y + 0.8f, z - 0.8f}});
    return garden;
}

}  // namespace art
