// The MD2 layout.
#include <cmath>

#include "system/ModelFile.h"

namespace {

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

/// The frame's name without its number.
std::string animationName(const MD2_FRAME_NAMES& frame) {
    std::string name(frame.name, strnlen(frame.name, sizeof(frame.name)));
    while (!name.empty() && name.back() >= '0' && name.back() <= '9')
        name.pop_back();
    return name;
}

}  // namespace

std::optional<MODEL_MESH> decodeMD2File(const uint8_t* data, size_t size, const char* path) {
    const ModelBytes file(data, size, "loadMD2", path);
    MD2_Header header;
    if (!file.begin(header))
        return std::nullopt;
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
        return std::nullopt;
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

    MODEL_MESH result(header.nFrames, header.nVerts, header.nTris, header.nTexCoords);
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
    std::vector<SAnimation>& runs = result.animations;
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
    return result;
}
