// The large outcrop in the middle: tables above, thickets, sponges and a fan before it.
#include "corals/gardens.h"

namespace art {

Garden coral_a() {
    Garden garden;
    garden.placement = kCorals[0];
    garden.width = 1024;
    garden.height = 512;
    garden.cell = 17;
    const float x = -2.8f, y = -5.5f, z = 20.2f;

    Layer& rigid = garden.layer();
    rigid.add(rock(3, {2.2f, 1.05f, 1.6f}), {{x, y + 0.1f, z}});
    rigid.add(rock(8, {1.3f, 0.75f, 1.0f}), {{x + 1.5f, y, z - 0.5f}});
    rigid.add(rock(12, {1.2f, 0.9f, 1.0f}), {{x - 1.6f, y + 0.1f, z - 0.2f}});
    rigid.add(table(21, 1.65f, 0.90f), {{x - 0.5f, y + 0.16f, z + 0.1f}, {-9, 20, 0}});
    rigid.add(table(22, 1.05f, 0.60f), {{x + 1.4f, y + 0.40f, z + 0.2f}, {-13, -30, 0}});
    rigid.add(table(23, 0.90f, 0.60f), {{x - 1.95f, y + 0.42f, z - 0.1f}, {-12, 60, 0}});
    rigid.add(brain(41, {0.68f, 0.46f, 0.52f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {{x + 0.72f, y + 0.72f, z - 1.22f}, {-24, 0, -7}});
    rigid.add(brain(49, {0.30f, 0.24f, 0.28f}, rgb(202, 210, 104), rgb(108, 132, 56)),
              {{x + 1.22f, y + 0.42f, z - 1.48f}, {-26, 0, -14}});
    // Small growth all over the side that is seen; places as on a globe, in degrees.
    const auto face = [&](float east, float north) {
        const float e = east * kPi / 180, n = north * kPi / 180;
        return Vec3{x + 2.25f * std::sin(e) * std::cos(n), y + 0.1f + 1.05f * std::sin(n),
                    z - 1.62f * std::cos(e) * std::cos(n)};
    };
    rigid.add(brain(42, {0.30f, 0.27f, 0.30f}, rgb(242, 186, 108), rgb(160, 92, 54)),
              {face(-20, 14), {-35, 0, 0}});
    rigid.add(brain(43, {0.22f, 0.20f, 0.22f}, rgb(236, 166, 170), rgb(156, 84, 96)),
              {face(36, 22), {-35, 0, 0}});
    rigid.add(brain(44, {0.17f, 0.16f, 0.17f}, rgb(214, 218, 108), rgb(116, 138, 56)),
              {face(-43, 20), {-35, 0, 0}});
    rigid.add(plates(45, 0.34f, 7, rgb(150, 96, 60), rgb(244, 166, 120)),
              {face(9, 8), {-50, 0, 0}});
    rigid.add(staghorn(47, 0.34f, 9, 0.030f, pink(), 1), {face(50, 28), {-30, 0, 0}});
    rigid.add(staghorn(48, 0.30f, 9, 0.028f, green(), 1), {face(-30, 30), {-30, 0, 0}});
    strew(rigid, 909, x, z - 0.4f, 3.2f, 14, z);

    Layer& soft = garden.layer();
    soft.fine = true;
    soft.add(fan(51, 1.05f, rgb(180, 24, 116), rgb(255, 96, 186)),
             {{x - 1.75f, y + 0.57f, z - 0.95f}, {-8, 14, 6}});
    soft.add(staghorn(31, 0.94f, 15, 0.056f, violet(), 3),
             {{x + 1.92f, y + 0.52f, z - 1.02f}, {-6, 215, -6}});
    soft.add(staghorn(32, 0.78f, 12, 0.050f, cream(), 3),
             {{x - 0.3f, y + 0.82f, z - 1.35f}, {0, 30, 0}});
    soft.add(sponges(64, 1.04f, 5, rgb(236, 120, 30), rgb(255, 196, 92)),
             {{x - 1.05f, y + 0.60f, z - 1.50f}});
    soft.add(plates(71, 0.65f, 8, rgb(140, 112, 40), rgb(240, 200, 70)),
             {{x + 2.75f, y + 0.20f, z - 0.65f}});
    soft.add(anemone(75, 0.75f, 190), {{x - 2.4f, y + 0.75f, z - 0.85f}, {-15, 0, 10}});
    return garden;
}

}  // namespace art
