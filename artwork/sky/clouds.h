// Fair-weather cumulus all round the eye, marched through as a volume. Lengths in kilometres, the
// eye at the origin, y up.
#pragma once

#include <vector>

#include "common/noise.h"
#include "common/vec.h"

namespace sky {

/// Rounded lumps of several sizes in a cube that repeats in all directions.
class Billows {
public:
    Billows();
    /// 0 in the hollows to 1 on the lumps; one lump of the coarsest size per unit.
    float at(art::Vec3 p) const;

private:
    std::vector<float> values_;
};

class Clouds {
public:
    Clouds();

    struct Sight {
        art::Vec3 colour;   ///< Of the clouds alone, weighted by their opacity.
        float opacity = 0;  ///< 0..1
    };
    struct Range {
        float nearest, farthest;  ///< From the eye.
    };
    /// What a glance meets. texel is the angle in radians that one texel of the picture covers;
    /// chance, 0..1, staggers the marching steps. Clouds with their middle nearer or farther than
    /// the range are left out.
    Sight look(art::Vec3 direction, float texel, float chance, Range range = {0, 1e9f}) const;

private:
    struct Puff {
        art::Vec3 centre;
        float radius;
    };
    /// A puff with the smaller ones on its flanks.
    struct Heap {
        art::Vec3 centre;
        float radius;  ///< Of the sphere that holds them all.
        std::vector<Puff> puffs;
    };
    struct Cloud {
        art::Vec3 centre;
        float radius;    ///< Of the sphere that holds it all.
        float softness;  ///< 0 hard and dense, 1 wispy
        std::vector<Heap> heaps;
    };
    struct Crossing {
        float from, to;
        const Cloud* cloud;
    };

    void scatter();
    void pileUp(art::Vec3 foot, float width, float height, art::Random& random);
    float depthInside(const Cloud& cloud, art::Vec3 p, bool fine) const;
    float sunlight(const Cloud& cloud, art::Vec3 p, art::Vec3 sun, float edge) const;
    void march(const Crossing& crossing, art::Vec3 direction, art::Vec3 sun, float texel,
               float chance, Sight& sight) const;

    Billows billows_;
    std::vector<Cloud> clouds_;
    std::vector<std::vector<int>> sectors_;  ///< Clouds by compass direction.
};

}  // namespace sky
