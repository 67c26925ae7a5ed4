// Sea fans on a low stone, before the plates on the left.
#include "corals/gardens.h"

namespace art {

Garden coral_c() {
    Garden garden;
    garden.placement = kCorals[4];
    garden.frames = 20;
    garden.width = 1024;
    garden.height = 256;
    garden.cell = 18;
    garden.west = -30;
    garden.east = 0.9f;
    garden.before_sand = 1.5f;
    const float x = -8.9f, y = -6.25f, z = 19.2f;

    Layer& back = garden.layer();
    back.fine = true;
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
    gold.fine = true;
    gold.add(fan(93, 1.45f, rgb(186, 96, 20), rgb(255, 206, 84)),
             {{x + 0.95f, y + 0.30f, z - 0.60f}, {4, 25, -8}});

    // Outposts on the sand in front, each a layer of its own so that its picture stays small. They
    // are drawn after the fish and stand before the fish's shadows, which would hide them.
    const auto outpost = [&](float at_x, float at_z) -> Layer& {
        Layer& layer = garden.layer();
        layer.nearer = 1.5f;
        layer.fine = true;
        layer.add(rock(static_cast<uint32_t>(at_x * 10 + 300), {0.26f, 0.15f, 0.22f}),
                  {onFloor(at_x, at_z, -0.03f)});
        layer.add(rock(static_cast<uint32_t>(at_z * 10 + 300), {0.16f, 0.10f, 0.15f}),
                  {onFloor(at_x + 0.36f, at_z - 0.12f, -0.02f)});
        return layer;
    };
    Layer& left = outpost(-7.5f, 12.7f);
    left.add(staghorn(201, 0.42f, 9, 0.034f, blue(), 1), {onFloor(-7.75f, 12.55f)});
    Layer& middle = outpost(-6.2f, 12.2f);
    middle.add(staghorn(202, 0.48f, 10, 0.036f, cream(), 1), {onFloor(-6.15f, 12.05f, 0.02f)});
    Layer& right = outpost(-2.3f, 11.9f);
    right.add(staghorn(203, 0.40f, 9, 0.034f, blue(), 1), {onFloor(-2.15f, 11.75f)});
    right.add(staghorn(204, 0.36f, 9, 0.032f, violet(), 1), {onFloor(-2.60f, 11.7f)});
    Layer& behind = outpost(-1.9f, 16.3f);
    behind.nearer = Layer().nearer;  // or it would stand before a thicket
    behind.add(brain(205, {0.30f, 0.24f, 0.30f}, rgb(214, 218, 108), rgb(116, 138, 56)),
               {onFloor(-2.3f, 16.15f)});
    behind.add(staghorn(206, 0.5f, 9, 0.038f, violet(), 1), {onFloor(-1.75f, 16.2f)});
    return garden;
}

}  // namespace art
