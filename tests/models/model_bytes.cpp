#include "models/model_bytes.h"

namespace test {

Bytes Md3File::bytes() const {
    Bytes out;
    const auto text = [&](const char* value, size_t width) {
        for (size_t i = 0; i < width; ++i)
            append<char>(out, i < std::strlen(value) ? value[i] : 0);
    };
    const auto number = [&](size_t value) { append<int32_t>(out, static_cast<int32_t>(value)); };
    const size_t verts = tex.size();
    const size_t size = vertexStart() + 8 * verts * frames.size();

    text("IDP3", 4);
    number(15);
    text("tetrahedron", 68);
    number(frames.size());
    number(tags);
    number(1);
    number(0);
    number(108);
    number(tagStart());
    number(meshStart());
    number(size);
    for (size_t f = 0; f < frames.size(); ++f) {
        for (int i = 0; i < 10; ++i)
            append(out, 1.5f);
        text("made by hand", 16);
    }
    for (size_t i = 0; i < frames.size() * tags; ++i) {
        text("tag", 64);
        for (int j = 0; j < 12; ++j)
            append(out, -2.5f);
    }

    text("IDP3", 4);
    text("body", 68);
    number(frames.size());
    number(skins);
    number(verts);
    number(triangles.size());
    number(triStart() - meshStart());
    number(108);
    number(uvStart() - meshStart());
    number(vertexStart() - meshStart());
    number(size - meshStart());
    for (int i = 0; i < skins; ++i)
        text("skin", 68);
    for (const auto& triangle : triangles)
        for (int32_t index : triangle)
            append(out, index);
    for (const auto& coordinate : tex)
        for (float value : coordinate)
            append(out, value);
    for (const auto& frame : frames) {
        for (const Position& position : frame) {
            for (int16_t value : position)
                append(out, value);
            append<uint16_t>(out, 0x1234);
        }
    }
    return out;
}

Md3File Md3File::tetrahedron() {
    Md3File file;
    for (int16_t f = 0; f < 3; ++f) {
        const auto lift = static_cast<int16_t>(64 * f);
        file.frames.push_back({{{0, 128, lift}},
                               {{64, -64, lift}},
                               {{-64, -64, lift}},
                               {{0, 0, static_cast<int16_t>(lift + 96)}}});
    }
    file.tex = {{0.0f, 0.25f}, {1.0f, 0.5f}, {0.5f, 0.75f}, {0.125f, 1.0f}};
    file.triangles = {{0, 1, 2}, {0, 3, 1}, {1, 3, 2}, {2, 3, 0}};
    file.tags = 2;
    file.skins = 1;
    return file;
}

size_t Md2File::trisStart() const {
    size_t start = framesStart();
    for (const Frame& frame : frames)
        start += 40 + 4 * frame.vertices.size();
    return start;
}

Bytes Md2File::bytes() const {
    Bytes out;
    const size_t verts = frames.front().vertices.size();
    const size_t end = texStart() + 4 * tex.size();
    for (size_t value : {size_t(0x32504449), size_t(8), size_t(skinwidth), size_t(skinheight),
                         40 + 4 * verts, size_t(0), verts, tex.size(), triangles.size(), size_t(0),
                         frames.size(), end, texStart(), trisStart(), framesStart(), end, end})
        append<int32_t>(out, static_cast<int32_t>(value));
    for (const Frame& frame : frames) {
        for (float value : frame.scale)
            append(out, value);
        for (float value : frame.translate)
            append(out, value);
        for (size_t i = 0; i < 16; ++i)
            append<char>(out, i < frame.name.size() ? frame.name[i] : 0);
        for (const Vertex& vertex : frame.vertices)
            append(out, vertex);
    }
    for (const Triangle& triangle : triangles) {
        for (int16_t index : triangle.vertices)
            append(out, index);
        for (int16_t index : triangle.tex)
            append(out, index);
    }
    for (const auto& coordinate : tex)
        for (int16_t value : coordinate)
            append(out, value);
    return out;
}

Md2File Md2File::tetrahedron() {
    Md2File file;
    for (const char* name : {"swim01", "swim02", "swim03", "turn1", "turn2", "swim9"})
        file.frames.push_back(
            {{0.5f, 0.25f, 2.0f},
             {1.0f, 2.0f, 3.0f},
             name,
             {{10, 20, 30, 0}, {-128, 127, -1, 5}, {0, 0, 0, 127}, {1, 2, 3, -1}}});
    file.triangles = {{{0, 1, 2}, {4, 3, 2}}, {{0, 3, 1}, {0, 1, 2}}};
    file.tex = {{0, 0}, {64, 0}, {64, 32}, {0, 32}, {16, -8}};
    return file;
}

}  // namespace test
