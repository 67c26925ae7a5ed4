// A table and a green thicket on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_f() {
    Garden garden;
    garden.placement = kCorals[7];
    garden.width = 512;
    garden.height = 256;
    garden.cell = 14;
    const float x = -10, y = -6.05f, z = 20.2f;

    Layer& rigid = garden.layer();
    rigid.add(rock(111, {1.35f, 0.5f, 1.1f}), {{x, y, z}});
    rigid.add(brain(114, {0.62f, 0.40f, 0.5f}, rgb(196, 206, 110), rgb(120, 146, 66)),
              {{x - 1.5f, y - 0.22f, z - 0.3f}});
    rigid.add(table(112, 1.15f, 0.7f), {{x - 0.75f, y + 0.30f, z + 0.1f}, {-16, 40, 4}});
    rigid.add(plates(117, 0.55f, 8, rgb(160, 132, 48), rgb(236, 214, 92)),
              {{x - 0.55f, y + 0.25f, z - 0.75f}, {-25, 0, 0}});
    rigid.add(brain(115, {0.42f, 0.36f, 0.42f}, rgb(236, 176, 150), rgb(150, 86, 84)),
              {{x - 1.08f, y + 0.0f, z - 1.0f}});
    // None before the fans' stone: what is drawn later there would have holes.
    strew(rigid, 913, x - 1.0f, z - 0.1f, 1.7f, 8);

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(staghorn(113, 1.42f, 14, 0.064f, green(), 3), {{x - 2.36f, y - 0.24f, z - 0.5f}});
    soft.add(anemone(116, 0.55f, 150), {{x - 0.25f, y + 0.25f, z - 1.0f}, {-12, 0, 0}});
    return garden;
}

}  // namespace art
