// A low patch of leather corals and anemones. The big fish passes close behind, on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_h() {
    Garden garden;
    garden.placement = kCorals[9];
    garden.width = 512;
    garden.height = 256;
    garden.cell = 11;
    garden.tiling = 3;
    const float x = 8.1f, y = -7.3f, z = 21.4f;

    Layer& rigid = garden.layer();
    rigid.add(rock(131, {1.7f, 0.50f, 1.0f}), {{x + 0.2f, y, z}});
    rigid.add(rock(132, {0.9f, 0.45f, 0.7f}), {{x + 1.6f, y, z - 0.5f}});
    rigid.add(rock(140, {0.6f, 0.30f, 0.5f}), {{x - 1.1f, y, z - 0.2f}});
    rigid.add(leather(133, 0.75f), {{x - 0.40f, y + 0.30f, z - 0.50f}, {-14, 0, 4}, {1, 0.85f, 1}});
    rigid.add(leather(134, 0.58f),
              {{x + 0.75f, y + 0.30f, z - 0.90f}, {-6, 60, -6}, {1, 0.85f, 1}});
    rigid.add(brain(137, {0.55f, 0.45f, 0.55f}, rgb(242, 200, 124), rgb(156, 92, 58)),
              {{x + 2.35f, y + 0.1f, z - 0.8f}, {-8, 0, 0}});
    strew(rigid, 917, x + 0.2f, z - 0.4f, 2.4f, 10);

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(staghorn(138, 1.25f, 14, 0.056f, cream(), 3), {{x + 0.55f, y + 0.3f, z + 0.35f}});
    soft.add(staghorn(136, 1.0f, 12, 0.052f, blue(), 3), {{x - 1.55f, y + 0.10f, z - 0.35f}});
    soft.add(anemone(135, 1.0f, 240), {{x + 1.65f, y + 0.42f, z - 0.45f}, {-10, 0, 0}});
    soft.add(sponges(139, 0.9f, 4, rgb(236, 120, 30), rgb(255, 196, 92)),
             {{x + 0.15f, y + 0.15f, z - 1.15f}});
    return garden;
}

}  // namespace art
