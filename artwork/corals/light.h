// Sun and sky falling on a garden, with everything in it casting shadows.
#pragma once

#include <vector>

#include "common/mesh.h"

namespace art {

/// Sees every occluder from the sun and from many parts of the sky, each a picture of depths.
class Light {
public:
    /// Meshes in world axes, y up; they are not kept.
    explicit Light(const std::vector<const Mesh*>& occluders);

    /// Share of the sun that reaches a point, 0..1; the edge of a shadow is about three times soft
    /// wide, in world units.
    float sun(Vec3 point, Vec3 normal, float soft = 0.018f) const;
    /// Share of the sky's light that reaches a surface; 1 on open level ground.
    float sky(Vec3 point, Vec3 normal) const;

private:
    /// Depth towards the light of the first thing it meets, seen along parallel rays.
    struct View {
        Vec3 towards, right, up;
        Vec2 low;         ///< right/up coordinates of the first texel
        float texel = 1;  ///< world units
        int width = 0, height = 0;
        float weight = 1;  ///< brightness of this part of the sky
        std::vector<float> depth;

        bool hidden(Vec3 point, float bias) const;
    };
    static View look(const std::vector<const Mesh*>& occluders, Vec3 towards, float texel);

    View sun_;
    std::vector<View> sky_;
    float open_ = 1;  ///< sky light on open level ground
};

}  // namespace art
