#include "common/mesh.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "common/image.h"

namespace art {
namespace {

/// Little-endian bytes of a model file.
class Writer {
public:
    void text(const char* s, size_t width) {
        std::string padded(s);
        padded.resize(width, '\0');
        bytes_.insert(bytes_.end(), padded.begin(), padded.end());
    }
    void i16(int v) {
        bytes_.push_back(static_cast<char>(v & 0xff));
        bytes_.push_back(static_cast<char>((v >> 8) & 0xff));
    }
    void i32(size_t v) {
        for (int i = 0; i < 4; ++i)
            bytes_.push_back(static_cast<char>((v >> (8 * i)) & 0xff));
    }
    void f32(float v) {
        uint32_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        i32(bits);
    }
    void save(const std::string& path) const {
        FILE* file = std::fopen(path.c_str(), "wb");
        if (!file || std::fwrite(bytes_.data(), 1, bytes_.size(), file) != bytes_.size() ||
            std::fclose(file) != 0)
            fail("cannot write " + path);
    }

private:
    std::vector<char> bytes_;
};

int quantise(float v, const std::string& path) {
    const int q = static_cast<int>(std::lround(v * 64));
    if (q < -32768 || q > 32767)
        fail("a vertex of " + path + " lies outside -512..511");
    return q;
}

}  // namespace

void Mesh::append(const Mesh& other, const std::function<Vec3(Vec3)>& place) {
    const int first = static_cast<int>(vertices.size());
    for (const Vertex& v : other.vertices)
        vertices.push_back({place(v.position), v.texture});
    for (const auto& t : other.triangles)
        triangles.push_back({t[0] + first, t[1] + first, t[2] + first});
}

std::vector<Vec3> Mesh::normals() const {
    std::vector<Vec3> result(vertices.size());
    for (const auto& t : triangles) {
        const Vec3 a = vertices[size_t(t[0])].position, b = vertices[size_t(t[1])].position,
                   c = vertices[size_t(t[2])].position;
        const Vec3 n = cross(b - a, c - a);
        for (const int corner : t)
            result[size_t(corner)] += n;
    }
    for (Vec3& n : result)
        n = normalize(n);
    return result;
}

void saveModel(const Mesh& mesh, int frames, const Pose& pose, const std::string& path, int boxed) {
    const size_t vertices = mesh.vertices.size(), triangles = mesh.triangles.size();
    const size_t inside = boxed < 0 ? vertices : static_cast<size_t>(boxed);
    if (vertices > 65535)
        fail(path + " has more than 65535 vertices");
    const size_t count = static_cast<size_t>(frames);
    const size_t header = 108, bones = 56 * count, mesh_header = 108;
    const size_t tri_start = mesh_header, uv_start = tri_start + 12 * triangles,
                 vertex_start = uv_start + 8 * vertices,
                 mesh_size = vertex_start + 8 * vertices * count;

    std::vector<Vec3> poses;
    poses.reserve(vertices * count);
    for (int f = 0; f < frames; ++f)
        for (size_t v = 0; v < vertices; ++v)
            poses.push_back(pose(static_cast<int>(v), mesh.vertices[v].position, f));

    Writer out;
    out.text("IDP3", 4);
    out.i32(15);
    out.text("", 68);
    out.i32(count);
    out.i32(0);  // tags
    out.i32(1);  // meshes
    out.i32(0);  // skins
    out.i32(header);
    out.i32(header + bones);
    out.i32(header + bones);
    out.i32(header + bones + mesh_size);
    for (size_t f = 0; f < count; ++f) {
        Vec3 low{1e9f, 1e9f, 1e9f}, high{-1e9f, -1e9f, -1e9f};
        for (size_t v = 0; v < inside; ++v) {
            const Vec3& p = poses[f * vertices + v];
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
        for (const float value : {low.x, low.y, low.z, high.x, high.y, high.z, 0.0f, 0.0f, 0.0f,
                                  length(high - low) / 2})
            out.f32(value);
        out.text("atollia", 16);
    }
    out.text("IDP3", 4);
    out.text("mesh", 68);
    out.i32(count);
    out.i32(0);  // skins
    out.i32(vertices);
    out.i32(triangles);
    out.i32(tri_start);
    out.i32(mesh_header);
    out.i32(uv_start);
    out.i32(vertex_start);
    out.i32(mesh_size);
    for (const auto& t : mesh.triangles)
        for (const int corner : t)
            out.i32(static_cast<size_t>(corner));
    for (const Vertex& v : mesh.vertices) {
        out.f32(v.texture.x);
        out.f32(v.texture.y);
    }
    for (const Vec3& p : poses) {
        out.i16(quantise(p.x, path));
        out.i16(quantise(p.y, path));
        out.i16(quantise(p.z, path));
        out.i16(0);  // the saver lights nothing and reads no normals
    }
    out.save(path);
}

Mesh tube(const std::vector<Vec3>& points, const std::vector<float>& radii, int sides, float t0,
          float t1) {
    Mesh mesh;
    const int n = static_cast<int>(points.size());
    const auto along = [&](int i) {
        return normalize(points[size_t(std::min(i + 1, n - 1))] -
                         points[size_t(std::max(i - 1, 0))]);
    };
    // One frame carried along the tube keeps it from twisting.
    Vec3 side =
        normalize(cross(along(0), std::fabs(along(0).z) > 0.9f ? Vec3{1, 0, 0} : Vec3{0, 0, 1}));
    Vec3 other = cross(along(0), side);
    int previous = -1;
    for (int i = 0; i < n; ++i) {
        const Vec3 forward = along(i);
        side = normalize(side - forward * dot(side, forward));
        // Where the tube turns back into itself, it still goes round the same way.
        const Vec3 across = cross(forward, side);
        other = dot(across, other) < 0 ? across * -1.0f : across;
        const float t = mix(t0, t1, static_cast<float>(i) / static_cast<float>(n - 1));
        const int base = static_cast<int>(mesh.vertices.size());
        for (int k = 0; k <= sides; ++k) {
            const float turn = static_cast<float>(k) / static_cast<float>(sides);
            const float angle = 2 * kPi * turn;
            mesh.add(points[size_t(i)] +
                         (side * std::cos(angle) + other * std::sin(angle)) * radii[size_t(i)],
                     {turn, t});
        }
        if (previous >= 0)
            for (int k = 0; k < sides; ++k)
                mesh.quad(previous + k, previous + k + 1, base + k + 1, base + k);
        previous = base;
    }
    const int tip = mesh.add(points.back() + along(n - 1) * (radii.back() * 0.8f), {0.5f, t1});
    for (int k = 0; k < sides; ++k)
        mesh.triangle(previous + k, previous + k + 1, tip);
    return mesh;
}

}  // namespace art
