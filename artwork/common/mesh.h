// Triangle meshes with keyframes and the model files of the data tree.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "common/vec.h"

namespace art {

/// One point of a mesh in file axes: x to the right, y forward (a fish's nose), z up.
struct Vertex {
    Vec3 position;
    Vec2 texture;  ///< s to the right, t downwards in the picture, 0..1
};

struct Mesh {
    std::vector<Vertex> vertices;
    std::vector<std::array<int, 3>> triangles;

    int add(Vec3 position, Vec2 texture) {
        vertices.push_back({position, texture});
        return static_cast<int>(vertices.size()) - 1;
    }
    void triangle(int a, int b, int c) { triangles.push_back({a, b, c}); }
    /// Two triangles, corners in order round the edge.
    void quad(int a, int b, int c, int d) {
        triangle(a, b, c);
        triangle(a, c, d);
    }
    /// Appends another mesh, its positions changed by the given function.
    void append(const Mesh& other, const std::function<Vec3(Vec3)>& place);
    /// Smooth vertex normals; triangles count by their area.
    std::vector<Vec3> normals() const;
};

/// Position of a vertex in a keyframe: rest is its position in the mesh. The last frame flows
/// into frame 0.
using Pose = std::function<Vec3(int vertex, const Vec3& rest, int frame)>;

/// Writes the mesh as a ".nlm" file with the given number of keyframes, the pose deciding where
/// each vertex stands in each. Positions are kept to 1/64 unit within -512..511; a mesh that does
/// not fit, or has more than 65535 vertices, ends the program with a message. The frames' boxes
/// hold the first boxed vertices, or all: what follows them, a shadow, does not belong to the
/// thing.
void saveModel(const Mesh& mesh, int frames, const Pose& pose, const std::string& path,
               int boxed = -1);

/// A tube along points with a radius at each, closed at its far end by a point. Texture s runs
/// round it once (0..1), t from t0 at the first point to t1 at the last.
Mesh tube(const std::vector<Vec3>& points, const std::vector<float>& radii, int sides, float t0,
          float t1);

}  // namespace art
