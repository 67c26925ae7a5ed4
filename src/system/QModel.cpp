#include "system/QModel.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "system/RenderObject.h"
#include "system/SceneClock.h"

// All numbers in both layouts are little-endian, as they are on the machines this runs on.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the file records are copied as they lie");

namespace {

// --- MD3 -----------------------------------------------------------------------------------------
//
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

// --- MD2 -----------------------------------------------------------------------------------------

// offset  field             width   use
//      0  magic             int32   -
//      4  version           int32   -
//      8  sWidth, sHeight   int32s  size of the skin, to which texture coordinates relate
//     16  fSize             int32   -
//     20  nSkins            int32   -
//     24  nVerts            int32   vertices per keyframe
//     28  nTexCoords        int32   texture coordinates
//     32  nTris             int32   triangles
//     36  nGlCmds           int32   -
//     40  nFrames           int32   keyframes
//     44  offSkins          int32   -
//     48  offTexCoords      int32   offset of nTexCoords pairs of int16 (s, t)
//     52  offTris           int32   offset of nTris records of MD2_TRI
//     56  offFrames         int32   offset of nFrames records of MD2_FRAME with their vertices
//     60  offGlCmds         int32   -
//     64  offEnd            int32   -
struct MD2_Header {
    int32_t magic, version, sWidth, sHeight, fSize, nSkins, nVerts, nTexCoords, nTris, nGlCmds,
        nFrames, offSkins, offTexCoords, offTris, offFrames, offGlCmds, offEnd;
};
static_assert(sizeof(MD2_Header) == 68);

// offset  field  width     use
//      0  name   16 chars  animation name and frame number, ended by a zero unless it is full
struct MD2_FRAME_NAMES {
    char name[16];
};

// offset  field      width            use
//      0  scale      3 floats         size of one step of a vertex byte along x, y, z
//     12  translate  3 floats         position of vertex byte 0
//     24  name       MD2_FRAME_NAMES  animation
// followed by nVerts records of MD2_BYTE_VERTEX
struct MD2_FRAME {
    float scale[3], translate[3];
    MD2_FRAME_NAMES name;
};
static_assert(sizeof(MD2_FRAME) == 40);

// offset  field             width    use
//      0  v                 3 int8s  position in steps of the frame's scale
//      3  lightnormalindex  int8     entry of NORMALS
// The bytes are signed here, other than this layout has it elsewhere: the models are made for it.
struct MD2_BYTE_VERTEX {
    int8_t v[3];
    int8_t lightnormalindex;
};

// offset  field        width     use
//      0  vertIndices  3 int16s  vertex of each corner
//      6  texIndices   3 int16s  texture coordinate of each corner
struct MD2_TRI {
    int16_t vertIndices[3];
    int16_t texIndices[3];
};
static_assert(sizeof(MD2_TRI) == 12);

// The directions that lightnormalindex names: the corners of an icosahedron whose faces are divided
// in sixteen, in file axes.
const float NORMALS[162][3] = {
    {-0.525731f, 0.000000f, 0.850651f},   {-0.442863f, 0.238856f, 0.864188f},
    {-0.295242f, 0.000000f, 0.955423f},   {-0.309017f, 0.500000f, 0.809017f},
    {-0.162460f, 0.262866f, 0.951056f},   {0.000000f, 0.000000f, 1.000000f},
    {0.000000f, 0.850651f, 0.525731f},    {-0.147621f, 0.716567f, 0.681718f},
    {0.147621f, 0.716567f, 0.681718f},    {0.000000f, 0.525731f, 0.850651f},
    {0.309017f, 0.500000f, 0.809017f},    {0.525731f, 0.000000f, 0.850651f},
    {0.295242f, 0.000000f, 0.955423f},    {0.442863f, 0.238856f, 0.864188f},
    {0.162460f, 0.262866f, 0.951056f},    {-0.681718f, 0.147621f, 0.716567f},
    {-0.809017f, 0.309017f, 0.500000f},   {-0.587785f, 0.425325f, 0.688191f},
    {-0.850651f, 0.525731f, 0.000000f},   {-0.864188f, 0.442863f, 0.238856f},
    {-0.716567f, 0.681718f, 0.147621f},   {-0.688191f, 0.587785f, 0.425325f},
    {-0.500000f, 0.809017f, 0.309017f},   {-0.238856f, 0.864188f, 0.442863f},
    {-0.425325f, 0.688191f, 0.587785f},   {-0.716567f, 0.681718f, -0.147621f},
    {-0.500000f, 0.809017f, -0.309017f},  {-0.525731f, 0.850651f, 0.000000f},
    {0.000000f, 0.850651f, -0.525731f},   {-0.238856f, 0.864188f, -0.442863f},
    {0.000000f, 0.955423f, -0.295242f},   {-0.262866f, 0.951056f, -0.162460f},
    {0.000000f, 1.000000f, 0.000000f},    {0.000000f, 0.955423f, 0.295242f},
    {-0.262866f, 0.951056f, 0.162460f},   {0.238856f, 0.864188f, 0.442863f},
    {0.262866f, 0.951056f, 0.162460f},    {0.500000f, 0.809017f, 0.309017f},
    {0.238856f, 0.864188f, -0.442863f},   {0.262866f, 0.951056f, -0.162460f},
    {0.500000f, 0.809017f, -0.309017f},   {0.850651f, 0.525731f, 0.000000f},
    {0.716567f, 0.681718f, 0.147621f},    {0.716567f, 0.681718f, -0.147621f},
    {0.525731f, 0.850651f, 0.000000f},    {0.425325f, 0.688191f, 0.587785f},
    {0.864188f, 0.442863f, 0.238856f},    {0.688191f, 0.587785f, 0.425325f},
    {0.809017f, 0.309017f, 0.500000f},    {0.681718f, 0.147621f, 0.716567f},
    {0.587785f, 0.425325f, 0.688191f},    {0.955423f, 0.295242f, 0.000000f},
    {1.000000f, 0.000000f, 0.000000f},    {0.951056f, 0.162460f, 0.262866f},
    {0.850651f, -0.525731f, 0.000000f},   {0.955423f, -0.295242f, 0.000000f},
    {0.864188f, -0.442863f, 0.238856f},   {0.951056f, -0.162460f, 0.262866f},
    {0.809017f, -0.309017f, 0.500000f},   {0.681718f, -0.147621f, 0.716567f},
    {0.850651f, 0.000000f, 0.525731f},    {0.864188f, 0.442863f, -0.238856f},
    {0.809017f, 0.309017f, -0.500000f},   {0.951056f, 0.162460f, -0.262866f},
    {0.525731f, 0.000000f, -0.850651f},   {0.681718f, 0.147621f, -0.716567f},
    {0.681718f, -0.147621f, -0.716567f},  {0.850651f, 0.000000f, -0.525731f},
    {0.809017f, -0.309017f, -0.500000f},  {0.864188f, -0.442863f, -0.238856f},
    {0.951056f, -0.162460f, -0.262866f},  {0.147621f, 0.716567f, -0.681718f},
    {0.309017f, 0.500000f, -0.809017f},   {0.425325f, 0.688191f, -0.587785f},
    {0.442863f, 0.238856f, -0.864188f},   {0.587785f, 0.425325f, -0.688191f},
    {0.688191f, 0.587785f, -0.425325f},   {-0.147621f, 0.716567f, -0.681718f},
    {-0.309017f, 0.500000f, -0.809017f},  {0.000000f, 0.525731f, -0.850651f},
    {-0.525731f, 0.000000f, -0.850651f},  {-0.442863f, 0.238856f, -0.864188f},
    {-0.295242f, 0.000000f, -0.955423f},  {-0.162460f, 0.262866f, -0.951056f},
    {0.000000f, 0.000000f, -1.000000f},   {0.295242f, 0.000000f, -0.955423f},
    {0.162460f, 0.262866f, -0.951056f},   {-0.442863f, -0.238856f, -0.864188f},
    {-0.309017f, -0.500000f, -0.809017f}, {-0.162460f, -0.262866f, -0.951056f},
    {0.000000f, -0.850651f, -0.525731f},  {-0.147621f, -0.716567f, -0.681718f},
    {0.147621f, -0.716567f, -0.681718f},  {0.000000f, -0.525731f, -0.850651f},
    {0.309017f, -0.500000f, -0.809017f},  {0.442863f, -0.238856f, -0.864188f},
    {0.162460f, -0.262866f, -0.951056f},  {0.238856f, -0.864188f, -0.442863f},
    {0.500000f, -0.809017f, -0.309017f},  {0.425325f, -0.688191f, -0.587785f},
    {0.716567f, -0.681718f, -0.147621f},  {0.688191f, -0.587785f, -0.425325f},
    {0.587785f, -0.425325f, -0.688191f},  {0.000000f, -0.955423f, -0.295242f},
    {0.000000f, -1.000000f, 0.000000f},   {0.262866f, -0.951056f, -0.162460f},
    {0.000000f, -0.850651f, 0.525731f},   {0.000000f, -0.955423f, 0.295242f},
    {0.238856f, -0.864188f, 0.442863f},   {0.262866f, -0.951056f, 0.162460f},
    {0.500000f, -0.809017f, 0.309017f},   {0.716567f, -0.681718f, 0.147621f},
    {0.525731f, -0.850651f, 0.000000f},   {-0.238856f, -0.864188f, -0.442863f},
    {-0.500000f, -0.809017f, -0.309017f}, {-0.262866f, -0.951056f, -0.162460f},
    {-0.850651f, -0.525731f, 0.000000f},  {-0.716567f, -0.681718f, -0.147621f},
    {-0.716567f, -0.681718f, 0.147621f},  {-0.525731f, -0.850651f, 0.000000f},
    {-0.500000f, -0.809017f, 0.309017f},  {-0.238856f, -0.864188f, 0.442863f},
    {-0.262866f, -0.951056f, 0.162460f},  {-0.864188f, -0.442863f, 0.238856f},
    {-0.809017f, -0.309017f, 0.500000f},  {-0.688191f, -0.587785f, 0.425325f},
    {-0.681718f, -0.147621f, 0.716567f},  {-0.442863f, -0.238856f, 0.864188f},
    {-0.587785f, -0.425325f, 0.688191f},  {-0.309017f, -0.500000f, 0.809017f},
    {-0.147621f, -0.716567f, 0.681718f},  {-0.425325f, -0.688191f, 0.587785f},
    {-0.162460f, -0.262866f, 0.951056f},  {0.442863f, -0.238856f, 0.864188f},
    {0.162460f, -0.262866f, 0.951056f},   {0.309017f, -0.500000f, 0.809017f},
    {0.147621f, -0.716567f, 0.681718f},   {0.000000f, -0.525731f, 0.850651f},
    {0.425325f, -0.688191f, 0.587785f},   {0.587785f, -0.425325f, 0.688191f},
    {0.688191f, -0.587785f, 0.425325f},   {-0.955423f, 0.295242f, 0.000000f},
    {-0.951056f, 0.162460f, 0.262866f},   {-1.000000f, 0.000000f, 0.000000f},
    {-0.850651f, 0.000000f, 0.525731f},   {-0.955423f, -0.295242f, 0.000000f},
    {-0.951056f, -0.162460f, 0.262866f},  {-0.864188f, 0.442863f, -0.238856f},
    {-0.951056f, 0.162460f, -0.262866f},  {-0.809017f, 0.309017f, -0.500000f},
    {-0.864188f, -0.442863f, -0.238856f}, {-0.951056f, -0.162460f, -0.262866f},
    {-0.809017f, -0.309017f, -0.500000f}, {-0.681718f, 0.147621f, -0.716567f},
    {-0.681718f, -0.147621f, -0.716567f}, {-0.850651f, 0.000000f, -0.525731f},
    {-0.688191f, 0.587785f, -0.425325f},  {-0.587785f, 0.425325f, -0.688191f},
    {-0.425325f, 0.688191f, -0.587785f},  {-0.425325f, -0.688191f, -0.587785f},
    {-0.587785f, -0.425325f, -0.688191f}, {-0.688191f, -0.587785f, -0.425325f},
};

/// The bytes of one file, with the checks that every read of them needs.
class ModelBytes {
public:
    ModelBytes(const uint8_t* data, size_t size, const char* loader, const char* path)
        : data_(data), size_(static_cast<int64_t>(size)), loader_(loader), path_(path) {}

    int64_t size() const { return size_; }

    /// Whether count records of so many bytes lie in the file at offset. Takes any numbers.
    bool fits(int64_t offset, int64_t count, int64_t recordsize) const {
        return offset >= 0 && offset <= size_ && count >= 0 &&
               count <= (size_ - offset) / recordsize;
    }

    /// The record at an offset that was found to fit. Records need not be aligned.
    template <class Record>
    Record read(int64_t offset) const {
        Record record;
        std::memcpy(&record, data_ + offset, sizeof(Record));
        return record;
    }

    /// Prints the one line that says what is wrong; always false.
    __attribute__((format(printf, 2, 3))) bool broken(const char* what, ...) const {
        char text[160];
        va_list args;
        va_start(args, what);
        std::vsnprintf(text, sizeof(text), what, args);
        va_end(args);
        std::printf("QModel::%s %s: %s\n", loader_, path_, text);
        return false;
    }

private:
    const uint8_t* data_;
    int64_t size_;
    const char* loader_;
    const char* path_;
};

/// Hands the bytes of a file to the decoder; false, after a line on standard output, when they
/// cannot be had.
template <class Decode>
bool withFile(const char* loader, const char* path, Decode decode) {
    FILE* file = std::fopen(path, "rb");
    if (!file) {
        std::printf("QModel::%s fopen %s failed\n", loader, path);
        return false;
    }
    // Read to the end instead of asking for the size: the answer for a directory is nonsense.
    std::vector<uint8_t> bytes;
    uint8_t piece[65536];
    while (const size_t got = std::fread(piece, 1, sizeof(piece), file))
        bytes.insert(bytes.end(), piece, piece + got);
    const bool failed = std::ferror(file);
    std::fclose(file);
    if (failed) {
        std::printf("QModel::%s %s: the file cannot be read\n", loader, path);
        return false;
    }
    return decode(bytes.data(), bytes.size());
}

/// The frame's name without its number.
std::string animationName(const MD2_FRAME_NAMES& frame) {
    std::string name(frame.name, strnlen(frame.name, sizeof(frame.name)));
    while (!name.empty() && name.back() >= '0' && name.back() <= '9')
        name.pop_back();
    return name;
}

}  // namespace

/// A decoded file on its way into the model.
struct QModel::MESH {
    MESH(int numframes, int numverts, int numtris, int numtex)
        : frames(numframes),
          vertices(numverts),
          triangles(numtris),
          framedata(new MDX_FRAMEDATA[numframes]),
          indices(new GLIndex[3 * static_cast<size_t>(numtris)]),
          texindices(new GLIndex[3 * static_cast<size_t>(numtris)]) {
        for (int f = 0; f < frames; ++f) {
            framedata[f].vertices.reset(new GLVertex[numverts]);
            framedata[f].tex.reset(new GLVector2[numtex]);
        }
    }

    int frames, vertices, triangles;
    std::unique_ptr<MDX_FRAMEDATA[]> framedata;
    std::unique_ptr<GLIndex[]> indices, texindices;
};

QModel::QModel() : time(sceneTicks()) {}

bool QModel::loadMD3(const char* path) {
    return withFile("loadMD3", path,
                    [&](const uint8_t* data, size_t size) { return decodeMD3(data, size, path); });
}

bool QModel::loadMD2(const char* path) {
    return withFile("loadMD2", path,
                    [&](const uint8_t* data, size_t size) { return decodeMD2(data, size, path); });
}

bool QModel::decodeMD3(const uint8_t* data, size_t size, const char* path) {
    const ModelBytes file(data, size, "loadMD3", path);
    if (!file.fits(0, 1, sizeof(MD3_Header)))
        return file.broken("the header needs %zu bytes, the file has %zu", sizeof(MD3_Header),
                           size);
    const auto header = file.read<MD3_Header>(0);
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

    MESH result(mesh.numMeshFrames, mesh.numVertices, mesh.numTriangles, mesh.numVertices);
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
    adopt(result);
    return true;
}

bool QModel::decodeMD2(const uint8_t* data, size_t size, const char* path) {
    const ModelBytes file(data, size, "loadMD2", path);
    if (!file.fits(0, 1, sizeof(MD2_Header)))
        return file.broken("the header needs %zu bytes, the file has %zu", sizeof(MD2_Header),
                           size);
    const auto header = file.read<MD2_Header>(0);
    if (header.nFrames <= 0)
        return file.broken("the model has %d frames", header.nFrames);
    if (header.nVerts <= 0)
        return file.broken("the model has %d vertices", header.nVerts);
    if (header.sWidth <= 0 || header.sHeight <= 0)
        return file.broken("the skin has a size of %d x %d", header.sWidth, header.sHeight);

    // A place before the file's start is one that no seek arrives at.
    const char* unreachable = header.offFrames < 0      ? "!= header.offFrames\n"
                              : header.offTris < 0      ? "!= header.offTris\n"
                              : header.offTexCoords < 0 ? "!= header.offTexCoords\n"
                                                        : nullptr;
    if (unreachable) {
        std::printf("%s", unreachable);
        return false;
    }
    const int64_t framesize = sizeof(MD2_FRAME) + header.nVerts * int64_t(sizeof(MD2_BYTE_VERTEX));
    if (!file.fits(header.offFrames, header.nFrames, framesize))
        return file.broken("no room for %d frames of %d vertices at byte %d", header.nFrames,
                           header.nVerts, header.offFrames);
    if (!file.fits(header.offTris, header.nTris, sizeof(MD2_TRI)))
        return file.broken("no room for %d triangles at byte %d", header.nTris, header.offTris);
    if (!file.fits(header.offTexCoords, header.nTexCoords, 2 * sizeof(int16_t)))
        return file.broken("no room for %d texture coordinates at byte %d", header.nTexCoords,
                           header.offTexCoords);
    // Every keyframe gets a copy of the texture coordinates, which a small file could make huge.
    // Even with a coordinate for each corner of each triangle a sound model stays below this.
    const int64_t copies = int64_t(header.nFrames) * header.nTexCoords * sizeof(GLVector2);
    if (copies > 32 * file.size())
        return file.broken("%d texture coordinates are too many for %d frames of %d vertices",
                           header.nTexCoords, header.nFrames, header.nVerts);

    MESH result(header.nFrames, header.nVerts, header.nTris, header.nTexCoords);
    for (int t = 0; t < result.triangles; ++t) {
        const auto triangle = file.read<MD2_TRI>(header.offTris + t * int64_t(sizeof(MD2_TRI)));
        for (int corner = 0; corner < 3; ++corner) {
            const int index = triangle.vertIndices[corner];
            const int texindex = triangle.texIndices[corner];
            if (index < 0 || index >= result.vertices)
                return file.broken("triangle %d names vertex %d of %d", t, index, result.vertices);
            if (texindex < 0 || texindex >= header.nTexCoords)
                return file.broken("triangle %d names texture coordinate %d of %d", t, texindex,
                                   header.nTexCoords);
            result.indices[3 * size_t(t) + corner] = static_cast<GLIndex>(index);
            result.texindices[3 * size_t(t) + corner] = static_cast<GLIndex>(texindex);
        }
    }
    for (int i = 0; i < header.nTexCoords; ++i) {
        const int64_t offset = header.offTexCoords + i * int64_t(2 * sizeof(int16_t));
        const float s = float(file.read<int16_t>(offset)) / header.sWidth;
        const float t = float(file.read<int16_t>(offset + sizeof(int16_t))) / header.sHeight;
        for (int f = 0; f < result.frames; ++f)
            result.framedata[f].tex[i].set(s, t);
    }
    std::vector<SAnimation> runs;
    for (int f = 0; f < result.frames; ++f) {
        int64_t offset = header.offFrames + f * framesize;
        const auto frame = file.read<MD2_FRAME>(offset);
        const std::string name = animationName(frame.name);
        if (runs.empty() || runs.back().name != name)
            runs.push_back({static_cast<float>(f), f, f, name});
        runs.back().end = f;

        offset += sizeof(MD2_FRAME);
        for (int v = 0; v < result.vertices; ++v, offset += sizeof(MD2_BYTE_VERTEX)) {
            const auto vertex = file.read<MD2_BYTE_VERTEX>(offset);
            float place[3];
            for (int axis = 0; axis < 3; ++axis) {
                place[axis] = vertex.v[axis] * frame.scale[axis] + frame.translate[axis];
                if (!std::isfinite(place[axis]))
                    return file.broken("vertex %d of frame %d has no finite place", v, f);
            }
            GLVertex& out = result.framedata[f].vertices[v];
            out.pos.set(place[0], place[2], -place[1]);
            // A signed byte reaches the first 128 entries; the others read as negative and leave
            // the normal at zero, as all normals of the other layout are.
            if (vertex.lightnormalindex >= 0) {
                const float* normal = NORMALS[vertex.lightnormalindex];
                out.normal.set(normal[0], normal[2], -normal[1]);
            }
        }
    }
    adopt(result);
    m_anim.insert(m_anim.end(), runs.begin(), runs.end());
    return true;
}

void QModel::adopt(MESH& mesh) {
    cleanup();
    NumFrames = mesh.frames;
    NumVerts = mesh.vertices;
    NumTris = mesh.triangles;
    framedata = std::move(mesh.framedata);
    indices = std::move(mesh.indices);
    texindices = std::move(mesh.texindices);
    loaded = true;
}

void QModel::cleanup() {
    framedata.reset();
    indices.reset();
    texindices.reset();
    blended.reset();
    actframe = nextframe = blendedact = blendednext = nullptr;
}

void QModel::addAnimation(int start, int end, const char* name) {
    const int last = std::max(NumFrames - 1, 0);
    start = std::clamp(start, 0, last);
    m_anim.push_back({static_cast<float>(start), start, std::clamp(end, 0, last), name});
}

void QModel::setAnimation(const char* name) {
    for (size_t i = 0; i < m_anim.size(); ++i) {
        if (m_anim[i].name == name) {
            curAni = static_cast<int>(i);
            m_anim[i].cur = static_cast<float>(m_anim[i].start);
            return;
        }
    }
}

void QModel::setFPS(float newfps) {
    fps = newfps;
    timePerFrame = 1000.0f / fps;
}

int QModel::getAnimationCount() { return static_cast<int>(m_anim.size()); }

void QModel::getAnimationName(int index, char* out) {
    std::strcpy(out, m_anim[index].name.c_str());
}

int QModel::getActFrame() { return m_anim.empty() ? 0 : static_cast<int>(m_anim[curAni].cur); }

int QModel::getStartFrame() { return m_anim.empty() ? 0 : m_anim[curAni].start; }

int QModel::getEndFrame() { return m_anim.empty() ? 0 : m_anim[curAni].end; }

MDX_FRAMEDATA* QModel::keyframe(int frame) {
    // A range may outlast the file it was made for: one that was freed, or replaced by a shorter.
    return framedata ? &framedata[std::clamp(frame, 0, NumFrames - 1)] : nullptr;
}

void QModel::preRender() {
    glPushMatrix();
    if (m_anim.empty())
        return;
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - time;
    time = now;

    SAnimation& a = m_anim[curAni];
    int next = 0;
    if (playing) {
        const float cur = a.cur + elapsed / timePerFrame;
        if (cur > a.cur && std::isfinite(cur))
            a.cur = cur;
        interpolation_val = a.cur - std::trunc(a.cur);
        // What taking off whole rounds one by one would leave, however many there are.
        const int round = a.end + 1 - a.start;
        if (a.cur >= a.end + 1)
            a.cur = round > 0 ? a.start + std::fmod(a.cur - a.start, static_cast<float>(round))
                              : a.start;
        next = static_cast<int>(a.cur) + 1;
        if (next > a.end)
            next = a.start;
    }
    actframe = keyframe(static_cast<int>(a.cur));
    nextframe = keyframe(next);
}

void QModel::renderMesh(RenderObject* obj) {
    renderobj = obj;
    if (m_anim.empty())
        renderSingleFrame(0);
    else
        renderAnimation();
}

void QModel::postRender() { glPopMatrix(); }

template <class Positioned>
void QModel::renderTriangles(Positioned position) {
    // Copies of the members: after each GL call the compiler would have to load them again.
    const GLVertex* const vertices = actframe->vertices.get();
    const GLVector2* const coordinates = actframe->tex.get();
    const GLIndex* const corners = indices.get();
    const GLIndex* const texcorners = texindices.get();
    RenderObject* const object = renderobj;
    const size_t count = 3 * static_cast<size_t>(NumTris);
    glBegin(GL_TRIANGLES);
    for (size_t c = 0; c < count; ++c) {
        const GLIndex i = corners[c];
        const GLVector3& normal = vertices[i].normal;
        const GLVector2& tex = coordinates[texcorners[c]];
        const GLVector3& pos = position(i);
        glNormal3f(normal.x, normal.y, normal.z);
        if (object)
            object->textureCoord(tex.x, tex.y);
        glVertex3f(pos.x, pos.y, pos.z);
    }
    glEnd();
}

void QModel::renderKeyframe() {
    const GLVertex* const vertices = actframe->vertices.get();
    renderTriangles([vertices](GLIndex i) -> const GLVector3& { return vertices[i].pos; });
}

void QModel::renderSingleFrame(int frame) {
    if (frame >= NumFrames) {
        std::printf("frame >= NumFrames\n");
        return;
    }
    actframe = keyframe(frame);
    if (actframe)
        renderKeyframe();
}

void QModel::renderAnimation() {
    if (!actframe)
        return;
    // Without a step since the last single frame there is nothing to blend towards.
    if (!nextframe || !renderobj || !(renderobj->flags & INTERPOLATION)) {
        renderKeyframe();
        return;
    }
    blend();
    const GLVector3* const positions = blended.get();
    renderTriangles([positions](GLIndex i) -> const GLVector3& { return positions[i]; });
}

void QModel::blend() {
    if (blendedact == actframe && blendednext == nextframe && blendedval == interpolation_val)
        return;
    if (!blended)
        blended.reset(new GLVector3[NumVerts]);
    for (int v = 0; v < NumVerts; ++v)
        blended[v] = linearInterpolation(&actframe->vertices[v].pos, &nextframe->vertices[v].pos,
                                         interpolation_val);
    blendedact = actframe;
    blendednext = nextframe;
    blendedval = interpolation_val;
}
