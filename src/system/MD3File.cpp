// The MD3 layout, which ".nlm" files have.
#include <cmath>

#include "system/ModelFile.h"

namespace {

// Header, then numFrames records of MD3Bone, then numFrames * numTags records of MD3Tag, then the
// first mesh. The header's own offsets are not consulted.

// offset  field        width     use
//      0  fileID       4 chars   -
//      4  version      int32     -
//      8  strFile      68 chars  -
//     76  numFrames    int32     leads to the mesh
//     80  numTags      int32     leads to the mesh
//     84  numMeshes    int32     - (only the first mesh is read)
//     88  numMaxSkins  int32     -
//     92  headerSize   int32     -
//     96  tagStart     int32     -
//    100  tagEnd       int32     -
//    104  fileSize     int32     -
struct MD3_Header {
    char fileID[4];
    int32_t version;
    char strFile[68];
    int32_t numFrames, numTags, numMeshes, numMaxSkins, headerSize, tagStart, tagEnd, fileSize;
};
static_assert(sizeof(MD3_Header) == 108);

// offset  field     width     use
//      0  mins      3 floats  -
//     12  maxs      3 floats  -
//     24  position  3 floats  -
//     36  scale     float     -
//     40  creator   16 chars  -
struct MD3Bone {
    float mins[3], maxs[3], position[3], scale;
    char creator[16];
};
static_assert(sizeof(MD3Bone) == 56);

// offset  field                      width     use
//      0  strName                    64 chars  -
//     64  trans_x, trans_y, trans_z  3 floats  -
//     76  rotation                   9 floats  -
struct MD3Tag {
    char strName[64];
    float trans_x, trans_y, trans_z, rotation[3][3];
};
static_assert(sizeof(MD3Tag) == 112);

// Offsets in the mesh count from the start of this record, which numSkins records of MD3Skin
// follow.
//
// offset  field          width     use
//      0  meshID         4 chars   -
//      4  strName        68 chars  -
//     72  numMeshFrames  int32     keyframes
//     76  numSkins       int32     skin records, skipped
//     80  numVertices    int32     vertices per keyframe
//     84  numTriangles   int32     triangles
//     88  triStart       int32     offset of numTriangles records of MD3_TRI_INDICES
//     92  headerSize     int32     -
//     96  uvStart        int32     offset of numVertices pairs of floats (s, t)
//    100  vertexStart    int32     offset of numMeshFrames * numVertices records of MD3_TRI
//    104  meshSize       int32     - (leads to the next mesh)
struct MD3MeshInfo {
    char meshID[4];
    char strName[68];
    int32_t numMeshFrames, numSkins, numVertices, numTriangles, triStart, headerSize, uvStart,
        vertexStart, meshSize;
};
static_assert(sizeof(MD3MeshInfo) == 108);

// offset  field    width     use
//      0  strName  68 chars  -
struct MD3Skin {
    char strName[68];
};

// offset  field        width     use
//      0  vertIndices  3 int32s  vertex, and texture coordinate, of each corner; lower 16 bits
struct MD3_TRI_INDICES {
    int32_t vertIndices[3];
};

// offset  field   width     use
//      0  vertex  3 int16s  position (x, y, z) in 1/64 unit
//      6  normal  2 bytes   -
struct MD3_TRI {
    int16_t vertex[3];
    uint8_t normal[2];
};
static_assert(sizeof(MD3_TRI) == 8);

}  // namespace

std::optional<MODEL_MESH> decodeMD3File(const uint8_t* data, size_t size, const char* path) {
    const ModelBytes file(data, size, "loadMD3", path);
    MD3_Header header;
    if (!file.begin(header))
        return std::nullopt;
    const int64_t bones = sizeof(MD3_Header);
    if (!file.fits(bones, header.numFrames, sizeof(MD3Bone)))
        return file.broken("no room for %d frame records", header.numFrames);
    const int64_t tags = bones + header.numFrames * int64_t(sizeof(MD3Bone));
    const int64_t numtags = int64_t(header.numFrames) * header.numTags;
    if (header.numTags < 0 || !file.fits(tags, numtags, sizeof(MD3Tag)))
        return file.broken("no room for %d tags in each of %d frames", header.numTags,
                           header.numFrames);
    const int64_t start = tags + numtags * int64_t(sizeof(MD3Tag));
    if (!file.fits(start, 1, sizeof(MD3MeshInfo)))
        return file.broken("no room for the mesh header at byte %lld",
                           static_cast<long long>(start));

    const auto mesh = file.read<MD3MeshInfo>(start);
    if (mesh.numMeshFrames <= 0)
        return file.broken("the mesh has %d frames", mesh.numMeshFrames);
    if (mesh.numVertices <= 0)
        return file.broken("the mesh has %d vertices", mesh.numVertices);
    if (!file.fits(start + sizeof(MD3MeshInfo), mesh.numSkins, sizeof(MD3Skin)))
        return file.broken("no room for %d skins", mesh.numSkins);
    // A block before the mesh it belongs to is as wrong as one behind the end of the file.
    if (mesh.triStart < 0 ||
        !file.fits(start + mesh.triStart, mesh.numTriangles, sizeof(MD3_TRI_INDICES)))
        return file.broken("no room for %d triangles at offset %d of the mesh", mesh.numTriangles,
                           mesh.triStart);
    if (mesh.uvStart < 0 || !file.fits(start + mesh.uvStart, mesh.numVertices, 2 * sizeof(float)))
        return file.broken("no room for %d texture coordinates at offset %d of the mesh",
                           mesh.numVertices, mesh.uvStart);
    if (mesh.vertexStart < 0 ||
        !file.fits(start + mesh.vertexStart, int64_t(mesh.numMeshFrames) * mesh.numVertices,
                   sizeof(MD3_TRI)))
        return file.broken("no room for %d frames of %d vertices at offset %d of the mesh",
                           mesh.numMeshFrames, mesh.numVertices, mesh.vertexStart);

    MODEL_MESH result(mesh.numMeshFrames, mesh.numVertices, mesh.numTriangles, mesh.numVertices);
    for (int t = 0; t < result.triangles; ++t) {
        const auto triangle = file.read<MD3_TRI_INDICES>(start + mesh.triStart +
                                                         t * int64_t(sizeof(MD3_TRI_INDICES)));
        for (int corner = 0; corner < 3; ++corner) {
            const auto index = static_cast<GLIndex>(triangle.vertIndices[corner]);
            if (index >= result.vertices)
                return file.broken("triangle %d names vertex %d of %d", t,
                                   triangle.vertIndices[corner], result.vertices);
            result.indices[3 * size_t(t) + corner] = index;
            result.texindices[3 * size_t(t) + corner] = index;
        }
    }
    for (int v = 0; v < result.vertices; ++v) {
        const int64_t offset = start + mesh.uvStart + v * int64_t(2 * sizeof(float));
        const auto s = file.read<float>(offset);
        const auto t = file.read<float>(offset + sizeof(float));
        if (!std::isfinite(s) || !std::isfinite(t))
            return file.broken("texture coordinate %d is not finite", v);
        for (int f = 0; f < result.frames; ++f)
            result.framedata[f].tex[v].set(s, t);
    }
    int64_t offset = start + mesh.vertexStart;
    for (int f = 0; f < result.frames; ++f) {
        for (int v = 0; v < result.vertices; ++v, offset += sizeof(MD3_TRI)) {
            const auto vertex = file.read<MD3_TRI>(offset);
            result.framedata[f].vertices[v].pos.set(
                vertex.vertex[0] / 64.0f, vertex.vertex[2] / 64.0f, -vertex.vertex[1] / 64.0f);
        }
    }
    return result;
}
