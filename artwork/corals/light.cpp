#include "corals/light.h"

#include "common/parallel.h"
#include "floor/placement.h"

namespace art {

Light::Light(const std::vector<const Mesh*>& occluders) {
    sun_ = look(occluders, towardsSun(), 0.012f);
    constexpr int kDirections = 40;
    sky_.resize(kDirections);
    parallelFor(kDirections, [&](int i) {
        // A spiral over the upper half of the sphere and a little below its edge.
        const float y = mix(0.98f, -0.12f, (static_cast<float>(i) + 0.5f) / kDirections);
        const float angle = static_cast<float>(i) * 2.39996f, r = std::sqrt(1 - y * y);
        View view = look(occluders, {r * std::cos(angle), y, r * std::sin(angle)}, 0.03f);
        view.weight = 0.75f + 0.25f * std::max(0.0f, y);
        sky_[size_t(i)] = std::move(view);
    });
    open_ = 0;
    for (const View& view : sky_)
        open_ += view.weight * std::max(0.0f, view.towards.y);
}

Light::View Light::look(const std::vector<const Mesh*>& occluders, Vec3 towards, float texel) {
    View view;
    view.towards = towards;
    view.right =
        normalize(cross(std::fabs(towards.y) > 0.9f ? Vec3{1, 0, 0} : Vec3{0, 1, 0}, towards));
    view.up = cross(towards, view.right);
    view.texel = texel;
    Vec2 low{1e9f, 1e9f}, high{-1e9f, -1e9f};
    for (const Mesh* mesh : occluders)
        for (const Vertex& v : mesh->vertices) {
            const Vec2 p{dot(v.position, view.right), dot(v.position, view.up)};
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    view.low = low;
    view.width = static_cast<int>((high.x - low.x) / texel) + 1;
    view.height = static_cast<int>((high.y - low.y) / texel) + 1;
    view.depth.assign(size_t(view.width) * size_t(view.height), -1e9f);
    for (const Mesh* mesh : occluders)
        for (const auto& t : mesh->triangles) {
            Vec3 p[3];
            for (int k = 0; k < 3; ++k) {
                const Vec3& at = mesh->vertices[size_t(t[size_t(k)])].position;
                p[k] = {(dot(at, view.right) - low.x) / texel, (dot(at, view.up) - low.y) / texel,
                        dot(at, towards)};
            }
            const float area =
                (p[1].x - p[0].x) * (p[2].y - p[0].y) - (p[1].y - p[0].y) * (p[2].x - p[0].x);
            if (std::fabs(area) < 1e-9f)
                continue;
            const int x0 = std::max(0, static_cast<int>(std::min({p[0].x, p[1].x, p[2].x})));
            const int x1 =
                std::min(view.width - 1, static_cast<int>(std::max({p[0].x, p[1].x, p[2].x})));
            const int y0 = std::max(0, static_cast<int>(std::min({p[0].y, p[1].y, p[2].y})));
            const int y1 =
                std::min(view.height - 1, static_cast<int>(std::max({p[0].y, p[1].y, p[2].y})));
            for (int y = y0; y <= y1; ++y)
                for (int x = x0; x <= x1; ++x) {
                    const float px = static_cast<float>(x) + 0.5f,
                                py = static_cast<float>(y) + 0.5f;
                    const float a =
                        ((p[1].x - px) * (p[2].y - py) - (p[1].y - py) * (p[2].x - px)) / area;
                    const float b =
                        ((p[2].x - px) * (p[0].y - py) - (p[2].y - py) * (p[0].x - px)) / area;
                    // Half a texel over its edge, so that thin twigs leave no holes.
                    if (a < -0.15f || b < -0.15f || 1 - a - b < -0.15f)
                        continue;
                    float& d = view.depth[size_t(y) * size_t(view.width) + size_t(x)];
                    d = std::max(d, a * p[0].z + b * p[1].z + (1 - a - b) * p[2].z);
                }
        }
    return view;
}

bool Light::View::hidden(Vec3 point, float bias) const {
    const int x = static_cast<int>((dot(point, right) - low.x) / texel);
    const int y = static_cast<int>((dot(point, up) - low.y) / texel);
    if (x < 0 || y < 0 || x >= width || y >= height)
        return false;
    return depth[size_t(y) * size_t(width) + size_t(x)] > dot(point, towards) + bias;
}

float Light::sun(Vec3 point, Vec3 normal, float soft) const {
    const Vec3 at = point + normal * 0.03f;
    float seen = 0;
    for (int j = -1; j <= 1; ++j)
        for (int i = -1; i <= 1; ++i) {
            const Vec3 aside = sun_.right * static_cast<float>(i) + sun_.up * static_cast<float>(j);
            seen += sun_.hidden(at + aside * soft, 0.04f) ? 0.0f : 1.0f;
        }
    return seen / 9;
}

float Light::sky(Vec3 point, Vec3 normal) const {
    const Vec3 at = point + normal * 0.05f;
    float sum = 0;
    for (const View& view : sky_) {
        const float facing = dot(normal, view.towards);
        if (facing > 0 && !view.hidden(at, 0.05f))
            sum += facing * view.weight;
    }
    return sum / open_;
}

}  // namespace art
