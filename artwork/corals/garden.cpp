#include "corals/garden.h"

#include <cstdio>
#include <numeric>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"
#include "corals/light.h"
#include "floor/ground.h"

namespace art {
namespace {

/// How the eye sees a garden: x to the right and y down, in texels; depth along the line of sight.
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

constexpr int kMargin = 3;   ///< empty texels round every picture
constexpr int kSamples = 2;  ///< per texel side

/// The rectangle that a layer covers, not yet drawn.
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

struct Hit {
    float depth = 0;
    int growth = -1, triangle = 0;
    float a = 0, b = 0;  ///< shares of the first two corners
};

Vec3 sunColour() { return {1.08f, 1.02f, 0.93f}; }
Vec3 skyColour() { return {0.86f, 0.99f, 1.08f}; }
Vec3 sandColour() { return {1.02f, 1.0f, 0.86f}; }

/// The light that leaves a surface towards the eye.
Vec3 shade(const Light& light, const Paint& paint, Vec3 point, Vec3 normal) {
    const Vec3 n = normalize(normal + paint.bump);
    const float sun = light.sun(point, normal) * std::max(0.0f, dot(n, towardsSun()));
    const float sky = light.sky(point, normal);
    const float relief = 0.75f + 0.25f * dot(n, normal);
    const float from_sand = std::max(0.0f, 0.35f - 0.65f * n.y) * std::min(1.0f, 0.25f + sky);
    return paint.colour * (sunColour() * (0.80f * sun) + skyColour() * (0.62f * sky * relief) +
                           sandColour() * (0.30f * from_sand) + Vec3{0.06f, 0.08f, 0.09f});
}

class Painter {
public:
    Painter(const Light& light, const Camera& camera) : light_(light), camera_(camera) {}

    /// Draws a layer into its framed picture.
    void paint(const Layer& layer, Picture& picture) const {
        picture.image = Image(picture.width, picture.height, {{}, 0});
        const int width = picture.width * kSamples, height = picture.height * kSamples;
        std::vector<Hit> hits(size_t(width) * size_t(height));
        std::vector<std::vector<Vec3>> normals;
        for (size_t g = 0; g < layer.growths.size(); ++g) {
            normals.push_back(layer.growths[g].mesh.normals());
            trace(layer.growths[g].mesh, static_cast<int>(g), picture, hits, width, height);
        }
        const size_t texels = size_t(picture.width) * size_t(picture.height);
        picture.depth.assign(texels, 0);
        picture.bend.assign(texels, 0);
        parallelFor(picture.height, [&](int row) {
            for (int column = 0; column < picture.width; ++column) {
                Vec3 colour;
                float depth = 0, bend = 0, covered = 0;
                for (int s = 0; s < kSamples * kSamples; ++s) {
                    const int x = column * kSamples + s % kSamples,
                              y = row * kSamples + s / kSamples;
                    const Hit& hit = hits[size_t(y) * size_t(width) + size_t(x)];
                    if (hit.growth < 0)
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
                        bend += growth.bend[v] * share[k];
                    }
                    normal = normalize(normal);
                    if (dot(normal, camera_.towardsEye(point)) < 0)
                        normal = -normal;
                    colour += shade(light_, growth.material(texture, point), point, normal);
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

private:
    void trace(const Mesh& mesh, int growth, const Picture& picture, std::vector<Hit>& hits,
               int width, int height) const {
        std::vector<Vec3> projected;
        projected.reserve(mesh.vertices.size());
        for (const Vertex& v : mesh.vertices) {
            const Vec3 p = camera_.project(v.position);
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
            const int x0 =
                std::max(0, static_cast<int>(std::floor(std::min({a.x, b.x, c.x}) - 0.5f)));
            const int x1 = std::min(width - 1, static_cast<int>(std::max({a.x, b.x, c.x})));
            const int y0 =
                std::max(0, static_cast<int>(std::floor(std::min({a.y, b.y, c.y}) - 0.5f)));
            const int y1 = std::min(height - 1, static_cast<int>(std::max({a.y, b.y, c.y})));
            for (int y = y0; y <= y1; ++y)
                for (int x = x0; x <= x1; ++x) {
                    const float px = static_cast<float>(x) + 0.5f,
                                py = static_cast<float>(y) + 0.5f;
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

    const Light& light_;
    const Camera& camera_;
};

/// Places the pictures in the texture, side by side in rows; false when they do not fit.
bool pack(std::vector<Picture>& pictures, int width, int height) {
    int x = 0, y = 0, row = 0;
    for (Picture& picture : pictures) {
        if (x + picture.width > width) {
            y += row;
            x = row = 0;
        }
        picture.at_x = x;
        picture.at_y = y;
        x += picture.width;
        row = std::max(row, picture.height);
        if (x > width || y + picture.height > height)
            return false;
    }
    return true;
}

/// Means over the covered texels near a place; weight 0 where there are none.
struct Nearby {
    float depth = 0, bend = 0, weight = 0;
};
Nearby nearby(const Picture& picture, int column, int row, int reach) {
    Nearby sum;
    for (int y = std::max(0, row - reach); y <= std::min(picture.height - 1, row + reach); ++y)
        for (int x = std::max(0, column - reach); x <= std::min(picture.width - 1, column + reach);
             ++x) {
            const float w = picture.image.at(x, y).alpha;
            if (w <= 0)
                continue;
            sum.depth += w * picture.depth[picture.index(x, y)];
            sum.bend += w * picture.bend[picture.index(x, y)];
            sum.weight += w;
        }
    return sum;
}

/// The mesh of a garden: where each vertex stands in the world, and how far it bends.
struct Relief {
    Mesh mesh;  ///< file axes, at rest
    std::vector<Vec3> world;
    std::vector<float> bend;
};

float kept(float v) { return std::round(v * 64) / 64; }

class Cutter {
public:
    Cutter(const Garden& garden, const Camera& camera) : garden_(garden), camera_(camera) {}

    /// Appends a picture's mesh, far triangles first; it stays before everything cut earlier.
    void cut(const Picture& picture, Relief& relief) {
        const int cell = garden_.cell;
        const int columns = (picture.width + cell - 1) / cell,
                  rows = (picture.height + cell - 1) / cell;
        std::vector<int> vertex(size_t(columns + 1) * size_t(rows + 1), -1);
        const auto corner = [&](int i, int j) {
            int& v = vertex[size_t(j) * size_t(columns + 1) + size_t(i)];
            if (v < 0)
                v = add(picture, i * cell, j * cell, relief);
            return v;
        };
        std::vector<std::array<int, 3>> triangles;
        for (int j = 0; j < rows; ++j)
            for (int i = 0; i < columns; ++i) {
                // Of the two ways to halve a cell, the one that leaves out more.
                bool part[2][2];
                for (int way = 0; way < 2; ++way)
                    for (int half = 0; half < 2; ++half)
                        part[way][half] = covered(picture, i * cell, j * cell, way, half);
                const int way = part[1][0] + part[1][1] < part[0][0] + part[0][1] ? 1 : 0;
                for (int half = 0; half < 2; ++half) {
                    if (!part[way][half])
                        continue;
                    const int a = corner(i, j), b = corner(i + 1, j), c = corner(i + 1, j + 1),
                              d = corner(i, j + 1);
                    if (way == 0)
                        triangles.push_back(half == 0 ? std::array<int, 3>{a, b, c}
                                                      : std::array<int, 3>{a, c, d});
                    else
                        triangles.push_back(half == 0 ? std::array<int, 3>{a, b, d}
                                                      : std::array<int, 3>{b, c, d});
                }
            }
        const auto far = [&](const std::array<int, 3>& t) {
            float sum = 0;
            for (const int v : t)
                sum += camera_.project(relief.world[size_t(v)]).z;
            return sum;
        };
        std::stable_sort(triangles.begin(), triangles.end(),
                         [&](const auto& a, const auto& b) { return far(a) > far(b); });
        for (const auto& t : triangles)
            relief.mesh.triangles.push_back(t);
        limit(picture, relief, vertex, columns, rows);
    }

private:
    /// Whether the triangle of a cell shows anything. Way 0 is cut from the top left to the bottom
    /// right (half 0 above), way 1 the other way (half 0 left).
    bool covered(const Picture& picture, int x0, int y0, int way, int half) const {
        constexpr float kSlack = 1.5f;  // texels; linear filtering reaches over the edge
        const int cell = garden_.cell;
        for (int y = std::max(0, y0 - 1); y < std::min(picture.height, y0 + cell + 1); ++y)
            for (int x = std::max(0, x0 - 1); x < std::min(picture.width, x0 + cell + 1); ++x) {
                if (picture.image.at(x, y).alpha <= 0)
                    continue;
                const float u = static_cast<float>(x - x0) + 0.5f,
                            v = static_cast<float>(y - y0) + 0.5f;
                const float side = way == 0 ? u - v : static_cast<float>(cell) - u - v;
                if (half == 0 ? side > -kSlack : side < kSlack)
                    return true;
            }
        return false;
    }

    int add(const Picture& picture, int column, int row, Relief& relief) {
        Nearby near;
        for (int reach = 3; near.weight <= 0; reach *= 2)
            near = nearby(picture, column, row, reach);
        const float x = static_cast<float>(picture.x + column),
                    y = static_cast<float>(picture.y + row);
        float depth = near.depth / near.weight;
        depth = std::min(depth, nearestBefore(x, y) - 0.02f);
        // The file keeps coarse positions; the texture is taken where the kept one really appears.
        Vec3 file = garden_.placement.toFile(camera_.unproject(x, y, depth));
        file = {kept(file.x), kept(file.y), kept(file.z)};
        const Vec3 world = garden_.placement.toWorld(file);
        const Vec3 seen = camera_.project(world);
        const Vec2 texture{(seen.x - static_cast<float>(picture.x - picture.at_x)) /
                               static_cast<float>(garden_.width),
                           (seen.y - static_cast<float>(picture.y - picture.at_y)) /
                               static_cast<float>(garden_.height)};
        relief.world.push_back(world);
        relief.bend.push_back(near.bend / near.weight);
        return relief.mesh.add(file, texture * (1 / garden_.tiling));
    }

    /// Depth of the nearest thing cut earlier round a place of the camera's picture.
    float nearestBefore(float x, float y) const {
        float nearest = 1e9f;
        for (const Node& node : nodes_)
            if (std::fabs(node.x - x) < 1.5f * static_cast<float>(garden_.cell) &&
                std::fabs(node.y - y) < 1.5f * static_cast<float>(garden_.cell))
                nearest = std::min(nearest, node.depth);
        return nearest;
    }

    void limit(const Picture& picture, const Relief& relief, const std::vector<int>& vertex,
               int columns, int rows) {
        for (int j = 0; j <= rows; ++j)
            for (int i = 0; i <= columns; ++i) {
                const int v = vertex[size_t(j) * size_t(columns + 1) + size_t(i)];
                if (v >= 0)
                    nodes_.push_back({static_cast<float>(picture.x + i * garden_.cell),
                                      static_cast<float>(picture.y + j * garden_.cell),
                                      camera_.project(relief.world[size_t(v)]).z});
            }
    }

    struct Node {
        float x, y, depth;
    };
    const Garden& garden_;
    const Camera& camera_;
    std::vector<Node> nodes_;
};

/// The sea floor round a garden, which shades it and lights it from below.
Mesh groundRound(const Garden& garden) {
    const Ground ground;
    Mesh mesh;
    constexpr int kCells = 24;
    constexpr float kReach = 5;
    for (int j = 0; j <= kCells; ++j)
        for (int i = 0; i <= kCells; ++i) {
            const float x =
                garden.placement.foot.x + kReach * (2.0f * static_cast<float>(i) / kCells - 1);
            const float z =
                garden.placement.foot.z + kReach * (2.0f * static_cast<float>(j) / kCells - 1);
            mesh.add({x, ground.height(x, z), z}, {});
        }
    for (int j = 0; j < kCells; ++j)
        for (int i = 0; i < kCells; ++i) {
            const int a = j * (kCells + 1) + i;
            mesh.quad(a, a + 1, a + kCells + 2, a + kCells + 1);
        }
    return mesh;
}

/// Where the swell has carried a vertex: a round of small loops that close after all frames.
Vec3 swell(Vec3 world, float bend, int frame, int frames) {
    const float turn = 2 * kPi * static_cast<float>(frame) / static_cast<float>(frames) -
                       0.9f * world.x - 0.6f * world.z;
    return {bend * std::sin(turn), 0.22f * bend * std::cos(2 * turn + 0.7f),
            0.45f * bend * std::sin(turn + 1.2f)};
}

}  // namespace

Vec3 onFloor(float x, float z, float lift) {
    static const Ground ground;
    return {x, ground.height(x, z) + lift, z};
}

void strew(Layer& layer, uint32_t seed, float x, float z, float reach, int count) {
    Random random(seed);
    const Shades shades[] = {violet(), pink(), blue(), green(), cream()};
    for (int i = 0; i < count; ++i) {
        const float angle = random.range(0, 2 * kPi), away = reach * random.range(0.55f, 1.15f);
        const Vec3 foot = onFloor(x + std::cos(angle) * away, z + std::sin(angle) * away * 0.8f);
        const float kind = random.unit();
        const uint32_t own = random.bits() % 10000;
        if (kind < 0.60f) {
            layer.add(rock(own, {random.range(0.12f, 0.34f), random.range(0.08f, 0.20f),
                                 random.range(0.12f, 0.30f)}),
                      {foot});
        } else if (kind < 0.80f) {
            layer.add(
                staghorn(own, random.range(0.35f, 0.65f), 7, 0.032f, shades[random.index(5)], 1),
                {foot});
        } else if (kind < 0.92f) {
            const float r = random.range(0.16f, 0.34f);
            layer.add(brain(own, {r, r * 0.8f, r}, rgb(208, 214, 112), rgb(120, 140, 62)), {foot});
        } else {
            layer.add(
                sponges(own, random.range(0.4f, 0.6f), 3, rgb(236, 130, 40), rgb(255, 196, 92)),
                {foot});
        }
    }
}

void paintGarden(const Garden& garden, const std::string& folder) {
    const Mesh floor = groundRound(garden);
    std::vector<const Mesh*> occluders{&floor};
    Vec3 middle;
    float count = 0;
    for (const Layer& layer : garden.layers)
        for (const Growth& growth : layer.growths) {
            occluders.push_back(&growth.mesh);
            for (const Vertex& v : growth.mesh.vertices)
                middle += v.position;
            count += static_cast<float>(growth.mesh.vertices.size());
        }
    const Light light(occluders);
    Camera camera(garden.eye, middle / count);

    // The largest scale at which all layers fit; finer than twice the pixels of a screen 1080
    // high it would only glitter.
    std::vector<Picture> pictures;
    float scale = 2600;
    do {
        camera.setScale(scale);
        pictures.clear();
        for (const Layer& layer : garden.layers)
            pictures.push_back(frame(layer, camera));
        scale *= 0.98f;
    } while (!pack(pictures, garden.width, garden.height));

    const Painter painter(light, camera);
    Image texture(garden.width, garden.height, {{}, 0});
    Relief relief;
    Cutter cutter(garden, camera);
    for (size_t i = 0; i < pictures.size(); ++i) {
        Picture& picture = pictures[i];
        painter.paint(garden.layers[i], picture);
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                texture.at(picture.at_x + x, picture.at_y + y) = picture.image.at(x, y);
        cutter.cut(picture, relief);
    }
    bleed(texture, 12);

    const std::string path = folder + "/models/" + garden.placement.model;
    saveBmp32(texture, path + ".nlt");
    const auto pose = [&](int vertex, const Vec3&, int frame) {
        const size_t v = static_cast<size_t>(vertex);
        return garden.placement.toFile(
            relief.world[v] + swell(relief.world[v], relief.bend[v], frame, garden.frames));
    };
    saveModel(relief.mesh, garden.frames, pose, path + ".nlm");
    std::printf("%s: %zu triangles\n", garden.placement.model, relief.mesh.triangles.size());
}

}  // namespace art
