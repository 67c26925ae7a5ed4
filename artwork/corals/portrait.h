// Drawing corals in full detail, as an eye sees them, under sun and sky.
#pragma once

#include <vector>

#include "common/image.h"
#include "corals/growth.h"
#include "corals/light.h"
#include "floor/ground.h"

namespace art {

/// What sways together. Later layers stand before earlier ones as the eye sees them.
struct Layer {
    std::vector<Growth> growths;
    /// How much nearer to the eye than it is its mesh stands, world units. The eye never leaves its
    /// place, so this does not show.
    float nearer = 0.10f;
    /// Lies so far from the others that neither shades the other.
    bool apart = false;
    /// Twigs and nets no wider than a pixel: their outlines fade over one, since many a screen has
    /// one sample per pixel.
    bool fine = false;

    void add(Growth growth, const Stand& where) {
        growths.push_back(stand(std::move(growth), where));
    }
    void add(std::vector<Growth> several, const Stand& where) {
        for (Growth& growth : several)
            add(std::move(growth), where);
    }
};

/// What an eye sees: x to the right and y down, in texels; depth along the line of sight.
class Camera {
public:
    Camera(Vec3 eye, Vec3 target) : eye_(eye) {
        forward_ = normalize(target - eye);
        right_ = normalize(cross({0, 1, 0}, forward_));
        up_ = cross(forward_, right_);
    }
    void setScale(float texels) { scale_ = texels; }
    Vec3 project(Vec3 p) const {
        const Vec3 d = p - eye_;
        const float depth = dot(d, forward_);
        return {scale_ * dot(d, right_) / depth, -scale_ * dot(d, up_) / depth, depth};
    }
    Vec3 unproject(float x, float y, float depth) const {
        return eye_ + (forward_ + right_ * (x / scale_) - up_ * (y / scale_)) * depth;
    }
    Vec3 towardsEye(Vec3 p) const { return normalize(eye_ - p); }

private:
    Vec3 eye_, right_, up_, forward_;
    float scale_ = 1;
};

/// A layer as a picture, with what the mesh needs to know about each texel.
struct Picture {
    int x = 0, y = 0;  ///< camera coordinates of its first texel
    int width = 0, height = 0;
    int at_x = 0, at_y = 0;  ///< place in the texture
    Image image{0, 0};
    std::vector<float> depth, bend;  ///< means over what covers the texel; depth 0 for nothing

    size_t index(int column, int row) const { return size_t(row) * size_t(width) + size_t(column); }
};

/// Empty texels round every framed picture.
constexpr int kMargin = 3;

/// The rectangle that a layer covers, not yet drawn.
Picture frame(const Layer& layer, const Camera& camera);

/// Lets outlines and colours run over into each other, within the margin; sigma in texels.
void soften(Picture& picture, float sigma);

/// Draws a layer into its rectangle; what lies outside is left out, and so is what the sea floor
/// hides, if there is one, and what earlier pictures hide, so that feet end in the stone below.
void draw(const Layer& layer, const Camera& camera, const Light& light, const Ground* ground,
          const std::vector<const Picture*>& earlier, Picture& picture);

}  // namespace art
