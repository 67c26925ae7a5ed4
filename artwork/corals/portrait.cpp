#include "corals/portrait.h"

#include "common/parallel.h"
#include "floor/placement.h"

namespace art {
namespace {

constexpr int kSamples = 2;  ///< per texel side

struct Hit {
    float depth = 0;
    int growth = -1, triangle = 0;
    float a = 0, b = 0;  ///< shares of the first two corners
};

Vec3 sunColour() { return {1.08f, 1.02f, 0.93f}; }
Vec3 skyColour() { return {0.86f, 0.99f, 1.08f}; }
Vec3 sandColour() { return {1.02f, 1.0f, 0.86f}; }

/// Keeps bright colours from burning out.
float shoulder(float v) {
    constexpr float kKnee = 0.78f;
    return v < kKnee ? v : kKnee + (1 - kKnee) * (1 - std::exp((kKnee - v) / (1 - kKnee)));
}

/// The light that leaves a surface towards the eye.
Vec3 shade(const Light& light, const Paint& paint, Vec3 point, Vec3 normal) {
    const Vec3 n = normalize(normal + paint.bump);
    // Water scatters the sun a little round every edge.
    constexpr float kRound = 0.25f;
    const float sun =
        light.sun(point, normal) * std::max(0.0f, dot(n, towardsSun()) + kRound) / (1 + kRound);
    const float sky = light.sky(point, normal);
    const float relief = 0.75f + 0.25f * dot(n, normal);
    const float from_sand = std::max(0.0f, 0.35f - 0.65f * n.y) * std::min(1.0f, 0.25f + sky);
    const Vec3 falling = sunColour() * (0.74f * sun) + skyColour() * (0.50f * sky * relief) +
                         sandColour() * (0.32f * from_sand) + Vec3{0.17f, 0.19f, 0.21f};
    // The water between branches glows: no twig turns black.
    const Vec3 least{0.22f, 0.25f, 0.28f};
    const Vec3 c =
        paint.colour * Vec3{std::hypot(falling.x, least.x), std::hypot(falling.y, least.y),
                            std::hypot(falling.z, least.z)};
    return {shoulder(c.x), shoulder(c.y), shoulder(c.z)};
}

/// Finds what the eye meets first, among this mesh and everything traced before.
void trace(const Mesh& mesh, int growth, const Camera& camera, const Picture& picture,
           std::vector<Hit>& hits) {
    const int width = picture.width * kSamples, height = picture.height * kSamples;
    std::vector<Vec3> projected;
    projected.reserve(mesh.vertices.size());
    for (const Vertex& v : mesh.vertices) {
        const Vec3 p = camera.project(v.position);
        projected.push_back({(p.x - static_cast<float>(picture.x)) * kSamples,
                             (p.y - static_cast<float>(picture.y)) * kSamples, p.z});
    }
    for (size_t t = 0; t < mesh.triangles.size(); ++t) {
        const Vec3 &a = projected[size_t(mesh.triangles[t][0])],
                   &b = projected[size_t(mesh.triangles[t][1])],
                   &c = projected[size_t(mesh.triangles[t][2])];
        const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (std::fabs(area) < 1e-9f)
            continue;
        const int x0 = std::max(0, static_cast<int>(std::floor(std::min({a.x, b.x, c.x}) - 0.5f)));
        const int x1 = std::min(width - 1, static_cast<int>(std::max({a.x, b.x, c.x})));
        const int y0 = std::max(0, static_cast<int>(std::floor(std::min({a.y, b.y, c.y}) - 0.5f)));
        const int y1 = std::min(height - 1, static_cast<int>(std::max({a.y, b.y, c.y})));
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) {
                const float px = static_cast<float>(x) + 0.5f, py = static_cast<float>(y) + 0.5f;
                const float u = ((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) / area;
                const float v = ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) / area;
                if (u < 0 || v < 0 || u + v > 1)
                    continue;
                const float depth = u * a.z + v * b.z + (1 - u - v) * c.z;
                Hit& hit = hits[size_t(y) * size_t(width) + size_t(x)];
                if (hit.growth < 0 || depth < hit.depth)
                    hit = {depth, growth, static_cast<int>(t), u, v};
            }
    }
}

/// Depth of what was drawn at a place of the camera's picture; very far where that is not solid.
float solidDepth(const std::vector<const Picture*>& pictures, int x, int y) {
    float nearest = 1e9f;
    for (const Picture* const picture : pictures) {
        const int column = x - picture->x, row = y - picture->y;
        if (column >= 0 && row >= 0 && column < picture->width && row < picture->height &&
            picture->image.at(column, row).alpha >= 1)
            nearest = std::min(nearest, picture->depth[picture->index(column, row)]);
    }
    return nearest;
}

}  // namespace

Picture frame(const Layer& layer, const Camera& camera) {
    Vec2 low{1e9f, 1e9f}, high{-1e9f, -1e9f};
    for (const Growth& growth : layer.growths)
        for (const Vertex& v : growth.mesh.vertices) {
            const Vec3 p = camera.project(v.position);
            low = {std::min(low.x, p.x), std::min(low.y, p.y)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y)};
        }
    Picture picture;
    picture.x = static_cast<int>(std::floor(low.x)) - kMargin;
    picture.y = static_cast<int>(std::floor(low.y)) - kMargin;
    picture.width = static_cast<int>(std::ceil(high.x)) + kMargin - picture.x;
    picture.height = static_cast<int>(std::ceil(high.y)) + kMargin - picture.y;
    return picture;
}

void soften(Picture& picture, float sigma) {
    for (const auto& [dx, dy] : {std::pair<int, int>{1, 0}, {0, 1}}) {
        const Picture before = picture;
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x) {
                Vec3 colour;
                float alpha = 0, depth = 0, bend = 0, weights = 0;
                for (int k = 1 - kMargin; k < kMargin; ++k) {
                    const int i = x + k * dx, j = y + k * dy;
                    const float w = std::exp(-static_cast<float>(k * k) / (2 * sigma * sigma));
                    weights += w;
                    if (i < 0 || j < 0 || i >= picture.width || j >= picture.height)
                        continue;
                    const Pixel& p = before.image.at(i, j);
                    const size_t at = before.index(i, j);
                    colour += p.colour * (w * p.alpha);
                    depth += before.depth[at] * (w * p.alpha);
                    bend += before.bend[at] * (w * p.alpha);
                    alpha += w * p.alpha;
                }
                // Too little is not worth hiding what is drawn behind it.
                constexpr float kLeast = 0.04f;
                const size_t at = picture.index(x, y);
                if (alpha < kLeast * weights) {
                    picture.image.at(x, y).alpha = picture.depth[at] = picture.bend[at] = 0;
                    continue;
                }
                picture.image.at(x, y) = {colour / alpha, alpha / weights};
                picture.depth[at] = depth / alpha;
                picture.bend[at] = bend / alpha;
            }
    }
}

void draw(const Layer& layer, const Camera& camera, const Light& light, const Ground* ground,
          const std::vector<const Picture*>& earlier, Picture& picture) {
    constexpr float kWithin = 0.02f;  // world units
    picture.image = Image(picture.width, picture.height, {{}, 0});
    const int width = picture.width * kSamples, height = picture.height * kSamples;
    std::vector<Hit> hits(size_t(width) * size_t(height));
    std::vector<std::vector<Vec3>> normals;
    for (size_t g = 0; g < layer.growths.size(); ++g) {
        normals.push_back(layer.growths[g].mesh.normals());
        trace(layer.growths[g].mesh, static_cast<int>(g), camera, picture, hits);
    }
    const size_t texels = size_t(picture.width) * size_t(picture.height);
    picture.depth.assign(texels, 0);
    picture.bend.assign(texels, 0);
    parallelFor(picture.height, [&](int row) {
        for (int column = 0; column < picture.width; ++column) {
            const float solid = solidDepth(earlier, picture.x + column, picture.y + row);
            Vec3 colour;
            float depth = 0, bend = 0, covered = 0;
            for (int s = 0; s < kSamples * kSamples; ++s) {
                const int x = column * kSamples + s % kSamples, y = row * kSamples + s / kSamples;
                const Hit& hit = hits[size_t(y) * size_t(width) + size_t(x)];
                if (hit.growth < 0 || hit.depth > solid + kWithin)
                    continue;
                const Growth& growth = layer.growths[size_t(hit.growth)];
                const auto& corner = growth.mesh.triangles[size_t(hit.triangle)];
                const float share[3] = {hit.a, hit.b, 1 - hit.a - hit.b};
                Vec3 point, normal;
                Vec2 texture;
                for (size_t k = 0; k < 3; ++k) {
                    const size_t v = size_t(corner[k]);
                    point += growth.mesh.vertices[v].position * share[k];
                    texture = texture + growth.mesh.vertices[v].texture * share[k];
                    normal += normals[size_t(hit.growth)][v] * share[k];
                }
                if (ground && point.y < ground->height(point.x, point.z) - 0.015f)
                    continue;
                for (size_t k = 0; k < 3; ++k)
                    bend += growth.bend[size_t(corner[k])] * share[k];
                normal = normalize(normal);
                if (dot(normal, camera.towardsEye(point)) < 0)
                    normal = -normal;
                colour += shade(light, growth.material(texture, point), point, normal);
                depth += hit.depth;
                ++covered;
            }
            if (covered == 0)
                continue;
            picture.image.at(column, row) = {colour / covered, covered / (kSamples * kSamples)};
            picture.depth[picture.index(column, row)] = depth / covered;
            picture.bend[picture.index(column, row)] = bend / covered;
        }
    });
}

}  // namespace art
