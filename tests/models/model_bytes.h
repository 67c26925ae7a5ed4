// Small model files, built byte by byte.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace test {

using Bytes = std::vector<uint8_t>;

template <class Value>
void append(Bytes& bytes, Value value) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&value);
    bytes.insert(bytes.end(), raw, raw + sizeof(value));
}

template <class Value>
void put(Bytes& bytes, size_t offset, Value value) {
    std::memcpy(bytes.data() + offset, &value, sizeof(value));
}

/// A file of the MD3 layout: header, frame and tag records, then one mesh with its skins,
/// triangles, texture coordinates and vertices in that order, without gaps.
struct Md3File {
    using Position = std::array<int16_t, 3>;  ///< file axes, in 1/64 unit

    std::vector<std::vector<Position>> frames;
    std::vector<std::array<float, 2>> tex;
    std::vector<std::array<int32_t, 3>> triangles;
    int tags = 0;
    int skins = 0;

    size_t tagStart() const { return 108 + 56 * frames.size(); }
    size_t meshStart() const { return tagStart() + 112 * frames.size() * tags; }
    size_t triStart() const { return meshStart() + 108 + 68 * skins; }
    size_t uvStart() const { return triStart() + 12 * triangles.size(); }
    size_t vertexStart() const { return uvStart() + 8 * tex.size(); }
    Bytes bytes() const;

    /// Three frames of a tetrahedron with tags and a skin: every kind of record is there.
    static Md3File tetrahedron();
};

/// A file of the MD2 layout: header, frames, triangles, texture coordinates, without gaps.
struct Md2File {
    struct Vertex {
        int8_t x, y, z, normal;
    };
    struct Frame {
        std::array<float, 3> scale, translate;
        std::string name;
        std::vector<Vertex> vertices;
    };
    struct Triangle {
        std::array<int16_t, 3> vertices, tex;
    };

    int skinwidth = 64, skinheight = 32;
    std::vector<Frame> frames;
    std::vector<Triangle> triangles;
    std::vector<std::array<int16_t, 2>> tex;

    size_t framesStart() const { return 68; }
    size_t trisStart() const;
    size_t texStart() const { return trisStart() + 12 * triangles.size(); }
    Bytes bytes() const;

    /// Six frames in the runs swim, turn and swim again; four vertices.
    static Md2File tetrahedron();
};

}  // namespace test
