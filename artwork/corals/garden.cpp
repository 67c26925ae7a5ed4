#include "corals/garden.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "common/image.h"
#include "common/noise.h"
#include "corals/litter.h"
#include "corals/outline.h"
#include "floor/ground.h"

namespace art {
namespace {

/// Places the pictures in the texture, side by side in rows, high ones first; false when they do
/// not fit. The last cells of their meshes reach beyond them, and have room of their own for it.
bool pack(std::vector<Picture>& pictures, int cell, int width, int height) {
    std::vector<Picture*> order;
    for (Picture& picture : pictures)
        order.push_back(&picture);
    std::stable_sort(order.begin(), order.end(),
                     [](const Picture* a, const Picture* b) { return a->height > b->height; });
    int x = 0, y = 0, row = 0;
    for (Picture* const picture : order) {
        const int wide = (picture->width + cell - 1) / cell * cell,
                  high = (picture->height + cell - 1) / cell * cell;
        if (x + wide > width) {
            y += row;
            x = row = 0;
        }
        picture->at_x = x;
        picture->at_y = y;
        x += wide;
        row = std::max(row, high);
        if (x > width || y + high > height)
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
    Cutter(const Garden& garden, const Camera& camera, const Ground& ground)
        : garden_(garden), camera_(camera), ground_(ground) {}

    /// Appends a picture's mesh, far triangles first; it stays before everything cut earlier.
    void cut(const Picture& picture, float nearer, Relief& relief) {
        nearer_ = nearer;
        const int cell = garden_.cell;
        Grid grid;
        grid.columns = (picture.width + cell - 1) / cell;
        grid.rows = (picture.height + cell - 1) / cell;
        for (int j = 0; j <= grid.rows; ++j)
            for (int i = 0; i <= grid.columns; ++i)
                grid.points.push_back({i * cell, j * cell});
        grid.used.assign(grid.points.size(), 0);
        const auto corner = [&](int i, int j) {
            const size_t point = grid.index(i, j);
            grid.used[point] = 1;
            return static_cast<int>(point);
        };
        std::vector<MeshTriangle> triangles;
        std::vector<std::array<int, 2>> blocks;
        for (int j = 0; j < grid.rows; j += 2)
            for (int i = 0; i < grid.columns; i += 2) {
                Halves halves[4];
                bool full = i + 1 < grid.columns && j + 1 < grid.rows;
                for (int k = 0; k < 4; ++k) {
                    const int x = i + k % 2, y = j + k / 2;
                    if (x < grid.columns && y < grid.rows)
                        halves[k] = shown(picture, x * cell, y * cell);
                    full = full && halves[k].part[0] && halves[k].part[1];
                }
                if (full && even(picture, i, j)) {
                    blocks.push_back({i, j});
                    continue;
                }
                for (int k = 0; k < 4; ++k)
                    for (int half = 0; half < 2; ++half) {
                        if (!halves[k].part[half])
                            continue;
                        // Corners round the edge of the cell, from the top left.
                        constexpr int kCorners[2][2][3] = {{{0, 1, 2}, {0, 2, 3}},
                                                           {{0, 1, 3}, {1, 2, 3}}};
                        MeshTriangle t;
                        for (size_t c = 0; c < 3; ++c) {
                            const int at = kCorners[halves[k].way][half][c];
                            t[c] = corner(i + k % 2 + (at == 1 || at == 2), j + k / 2 + (at >= 2));
                        }
                        triangles.push_back(t);
                    }
            }
        // Four whole cells need but their outer corners, and between them what neighbours use.
        for (const auto& [i, j] : blocks) {
            constexpr int kRound[8][2] = {{0, 0}, {1, 0}, {2, 0}, {2, 1},
                                          {2, 2}, {1, 2}, {0, 2}, {0, 1}};
            std::vector<int> round;
            size_t hub = 0;
            for (int k = 0; k < 8; ++k) {
                const int x = i + kRound[k][0], y = j + kRound[k][1];
                if (k % 2 == 1) {
                    if (!grid.used[grid.index(x, y)])
                        continue;
                    hub = round.size();
                }
                round.push_back(corner(x, y));
            }
            // All from one between two corners, or else from one corner.
            const size_t n = round.size();
            for (size_t k = 1; k + 1 < n; ++k)
                triangles.push_back({round[hub], round[(hub + k) % n], round[(hub + k + 1) % n]});
        }
        tightenOutline(grid.points, triangles, picture.image, cell);
        std::vector<int> vertex(grid.points.size(), -1);
        for (MeshTriangle& t : triangles)
            for (int& point : t) {
                int& v = vertex[size_t(point)];
                if (v < 0) {
                    const MeshPoint& at = grid.points[size_t(point)];
                    v = add(picture, at.x, at.y, relief);
                }
                point = v;
            }
        const auto far = [&](const MeshTriangle& t) {
            float sum = 0;
            for (const int v : t)
                sum += camera_.project(relief.world[size_t(v)]).z;
            return sum;
        };
        std::stable_sort(triangles.begin(), triangles.end(),
                         [&](const auto& a, const auto& b) { return far(a) > far(b); });
        for (const auto& t : triangles)
            relief.mesh.triangles.push_back(t);
        for (size_t k = 0; k < vertex.size(); ++k)
            if (vertex[k] >= 0)
                nodes_.push_back({static_cast<float>(picture.x + grid.points[k].x),
                                  static_cast<float>(picture.y + grid.points[k].y),
                                  camera_.project(relief.world[size_t(vertex[k])]).z});
    }

private:
    /// The points between the cells of a picture.
    struct Grid {
        int columns = 0, rows = 0;  ///< of cells
        std::vector<MeshPoint> points;
        std::vector<char> used;  ///< by point: some triangle has it

        size_t index(int i, int j) const { return size_t(j) * size_t(columns + 1) + size_t(i); }
    };
    /// How a cell is cut in two, and which of the two triangles show anything.
    struct Halves {
        int way = 0;
        bool part[2] = {false, false};
    };

    /// Of the two ways to halve a cell, the one that leaves out more.
    Halves shown(const Picture& picture, int x0, int y0) const {
        Halves ways[2];
        for (int way = 0; way < 2; ++way) {
            ways[way].way = way;
            for (int half = 0; half < 2; ++half)
                ways[way].part[half] = covered(picture, x0, y0, way, half);
        }
        return ways[ways[1].part[0] + ways[1].part[1] < ways[0].part[0] + ways[0].part[1] ? 1 : 0];
    }

    /// Whether the four cells from this one on are so flat that their outer corners carry them.
    bool even(const Picture& picture, int i, int j) const {
        // World units. Behind its place it might sink into the sand.
        constexpr float kBehind = 0.12f, kBefore = 0.70f, kBend = 0.03f;
        Place at[3][3];
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 3; ++x)
                at[y][x] = place(picture, (i + x) * garden_.cell, (j + y) * garden_.cell);
        const auto between = [](const Place& p, const Place& a, const Place& b) {
            const float depth = (a.depth + b.depth) / 2 - p.depth, bend = (a.bend + b.bend) / 2;
            return depth < kBehind && depth > -kBefore && std::fabs(bend - p.bend) < kBend;
        };
        return between(at[0][1], at[0][0], at[0][2]) && between(at[2][1], at[2][0], at[2][2]) &&
               between(at[1][0], at[0][0], at[2][0]) && between(at[1][2], at[0][2], at[2][2]) &&
               between(at[1][1], at[0][0], at[2][2]) && between(at[1][1], at[0][2], at[2][0]);
    }

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

    /// Where the mesh stands at a texel of a picture, and how far it bends there.
    struct Place {
        float depth = 0, bend = 0;
    };
    Place place(const Picture& picture, int column, int row) const {
        Nearby near;
        for (int reach = 3; near.weight <= 0; reach *= 2)
            near = nearby(picture, column, row, reach);
        const float x = static_cast<float>(picture.x + column),
                    y = static_cast<float>(picture.y + row);
        // Nearer than it is, and before the floor: the picture already ends where the floor begins.
        float depth = near.depth / near.weight;
        if (garden_.cut)
            depth = std::min(depth - nearer_, floorDepth(x, y) - 0.12f);
        depth = std::min(depth, nearestBefore(x, y) - 0.02f);
        return {depth, near.bend / near.weight};
    }

    int add(const Picture& picture, int column, int row, Relief& relief) {
        const Place at = place(picture, column, row);
        const float x = static_cast<float>(picture.x + column),
                    y = static_cast<float>(picture.y + row);
        // The file keeps coarse positions; the texture is taken where the kept one really appears.
        Vec3 file = garden_.placement.toFile(camera_.unproject(x, y, at.depth));
        file = {kept(file.x), kept(file.y), kept(file.z)};
        const Vec3 world = garden_.placement.toWorld(file);
        const Vec3 seen = camera_.project(world);
        const Vec2 texture{(seen.x - static_cast<float>(picture.x - picture.at_x)) /
                               static_cast<float>(garden_.width),
                           (seen.y - static_cast<float>(picture.y - picture.at_y)) /
                               static_cast<float>(garden_.height)};
        relief.world.push_back(world);
        relief.bend.push_back(at.bend);
        return relief.mesh.add(file, texture * (1 / garden_.tiling));
    }

    /// Depth at which a line of sight meets the sea floor.
    float floorDepth(float x, float y) const {
        constexpr float kStride = 0.05f, kFarthest = 60;
        float depth = camera_.project(garden_.placement.foot).z - 6;
        for (; depth < kFarthest; depth += kStride) {
            const Vec3 p = camera_.unproject(x, y, depth);
            if (p.y < ground_.height(p.x, p.z))
                break;
        }
        return depth;
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

    struct Node {
        float x, y, depth;
    };
    const Garden& garden_;
    const Camera& camera_;
    const Ground& ground_;
    std::vector<Node> nodes_;
    float nearer_ = 0;  ///< of the layer that is being cut
};

/// The sea floor round a garden, which shades it and lights it from below.
Mesh groundRound(const Garden& garden, const Ground& ground) {
    Mesh mesh;
    constexpr int kCells = 24;
    constexpr float kReach = 5;
    // What stands elsewhere too shows there what the floor hides here: let light get at it.
    const float sunk = garden.cut ? 0.0f : 0.5f;
    for (int j = 0; j <= kCells; ++j)
        for (int i = 0; i <= kCells; ++i) {
            const float x =
                garden.placement.foot.x + kReach * (2.0f * static_cast<float>(i) / kCells - 1);
            const float z =
                garden.placement.foot.z + kReach * (2.0f * static_cast<float>(j) / kCells - 1);
            mesh.add({x, ground.height(x, z) - sunk, z}, {});
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

Growth settled(Growth growth) {
    growth.material = [material = growth.material](Vec2 texture, Vec3 p) {
        Paint paint = material(texture, p);
        const float above = p.y - onFloor(p.x, p.z).y;
        paint.colour = paint.colour * mix(0.64f, 1.0f, smoothstep(-0.05f, 0.22f, above));
        return paint;
    };
    return growth;
}

void strew(Layer& shown, uint32_t seed, float x, float z, float reach, int count, float farthest) {
    Random random(seed);
    const Shades shades[] = {violet(), pink(), blue(), green(), cream()};
    for (int i = 0; i < count; ++i) {
        const float angle = random.range(0, 2 * kPi), away = reach * random.range(0.55f, 1.15f);
        const Vec3 foot = onFloor(x + std::cos(angle) * away, z + std::sin(angle) * away * 0.8f);
        const float kind = random.unit();
        const uint32_t own = random.bits() % 10000;
        Layer behind;
        Layer& layer = foot.z < farthest ? shown : behind;
        if (kind < 0.60f) {
            layer.add(rock(own, {random.range(0.12f, 0.34f), random.range(0.08f, 0.20f),
                                 random.range(0.12f, 0.30f)}),
                      {foot});
        } else if (kind < 0.80f) {
            const Shades& colour = shades[random.index(5)];
            layer.add(staghorn(own, random.range(0.35f, 0.65f), 7, 0.032f, colour, 1), {foot});
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

void paintGarden(Garden garden, const std::string& folder) {
    constexpr float kPixels = 1144;  // to the radian, of a screen 948 high
    strewCloseUp(garden);
    const Ground ground;
    const Mesh floor = groundRound(garden, ground);
    std::vector<const Mesh*> occluders{&floor};
    Vec3 middle;
    float count = 0;
    for (const Layer& layer : garden.layers)
        for (const Growth& growth : layer.growths) {
            if (layer.apart)
                continue;
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
    } while (!pack(pictures, garden.cell, garden.width, garden.height));

    Image texture(garden.width, garden.height, {{}, 0});
    Relief relief;
    Cutter cutter(garden, camera, ground);
    std::vector<const Picture*> earlier;
    for (size_t i = 0; i < pictures.size(); ++i) {
        Picture& picture = pictures[i];
        const Layer& layer = garden.layers[i];
        std::optional<Light> own;
        if (layer.apart)
            own.emplace(std::vector<const Mesh*>{&layer.growths[0].mesh});
        draw(layer, camera, own ? *own : light, garden.cut ? &ground : nullptr, earlier, picture);
        if (layer.fine)
            soften(picture, 0.36f * scale / kPixels);
        for (int y = 0; y < picture.height; ++y)
            for (int x = 0; x < picture.width; ++x)
                texture.at(picture.at_x + x, picture.at_y + y) = picture.image.at(x, y);
        cutter.cut(picture, layer.nearer, relief);
        // From elsewhere, too, a foot would show where it is hidden from here.
        if (garden.cut)
            earlier.push_back(&picture);
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
    std::printf("%s: %zu triangles, %.0f texels to the radian\n", garden.placement.model,
                relief.mesh.triangles.size(), static_cast<double>(scale / 0.98f));
}

}  // namespace art
