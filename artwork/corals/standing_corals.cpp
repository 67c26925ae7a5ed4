#include "corals/gardens.h"

namespace art {

std::vector<std::vector<Mesh>> standingCorals() {
    std::vector<std::vector<Mesh>> groups;
    for (const Garden& garden :
         {coral_a(), coral_c(), coral_d(), coral_f(), coral_g(), coral_h(), coral_i()}) {
        groups.emplace_back();
        for (const Layer& layer : garden.layers)
            for (const Growth& growth : layer.growths)
                groups.back().push_back(growth.mesh);
    }
    // Models that stand again elsewhere.
    const Mesh pink_thicket = thicket();
    const std::vector<Mesh> dome = groups[2];
    for (size_t i = 0; i < kCorals.size(); ++i) {
        const Placement& placement = kCorals[i];
        if (placement.model == std::string("coral_b")) {
            groups.emplace_back(1);
            groups.back()[0].append(pink_thicket,
                                    [&](Vec3 file) { return placement.toWorld(file); });
        }
        if (i == 6) {
            groups.emplace_back();
            for (const Mesh& mesh : dome) {
                groups.back().emplace_back();
                groups.back().back().append(
                    mesh, [&](Vec3 world) { return placement.toWorld(kCorals[5].toFile(world)); });
            }
        }
    }
    return groups;
}

}  // namespace art
