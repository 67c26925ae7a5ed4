// The height map of the sea floor.
#include "common/image.h"
#include "floor/ground.h"

int main(int, char** argv) {
    const art::Ground ground;
    art::saveBmp8(ground.samples(), art::Ground::kSize, art::Ground::kSize,
                  argv[1] + std::string("/terrain_map.nlt"));
}
