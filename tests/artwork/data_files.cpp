#include "data_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace test {
namespace {

std::vector<uint8_t> read(const std::string& name) {
    std::ifstream file(DATA_DIR + name, std::ios::binary);
    EXPECT_TRUE(file) << "no " << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class T>
T value(const std::vector<uint8_t>& bytes, size_t offset) {
    T result{};
    if (offset + sizeof(T) <= bytes.size())
        std::memcpy(&result, &bytes[offset], sizeof(T));
    else
        ADD_FAILURE() << "ends before " << offset + sizeof(T);
    return result;
}

int wrapped(int v, int size) { return ((v % size) + size) % size; }

std::vector<std::string> numbered(const char* pattern, int first) {
    std::vector<std::string> names;
    for (int i = 0; i < 32; ++i) {
        char name[64];
        std::snprintf(name, sizeof name, pattern, first + i);
        names.emplace_back(name);
    }
    return names;
}

}  // namespace

int Picture::at(int x, int y, int channel) const {
    const int depth = bits / 8;
    if (channel >= depth)
        return 255;
    return bytes[(size_t(wrapped(y, height)) * size_t(width) + size_t(wrapped(x, width))) *
                     size_t(depth) +
                 size_t(channel)];
}

art::Vec3 Picture::colour(int x, int y) const {
    return {static_cast<float>(at(x, y, 2)), static_cast<float>(at(x, y, 1)),
            static_cast<float>(at(x, y, 0))};
}

Picture readPicture(const std::string& name) {
    const std::vector<uint8_t> file = read(name);
    Picture picture;
    if (value<uint16_t>(file, 0) != 0x4d42) {
        ADD_FAILURE() << name << " is no bitmap";
        return picture;
    }
    const size_t start = value<uint32_t>(file, 10);
    const int width = value<int32_t>(file, 18), height = value<int32_t>(file, 22);
    const int bits = value<uint16_t>(file, 28);
    const size_t stride = (size_t(width) * size_t(bits) + 31) / 32 * 4;
    if (width <= 0 || height <= 0 || start + stride * size_t(height) > file.size()) {
        ADD_FAILURE() << name << " is cut short";
        return picture;
    }
    picture.width = width;
    picture.height = height;
    picture.bits = bits;
    for (int y = height - 1; y >= 0; --y) {
        const auto row = file.begin() + static_cast<std::ptrdiff_t>(start + stride * size_t(y));
        picture.bytes.insert(picture.bytes.end(), row, row + width * bits / 8);
    }
    return picture;
}

Model readModel(const std::string& name) {
    const std::vector<uint8_t> file = read(name);
    Model model;
    const size_t mesh = 108 + 56 * size_t(value<int32_t>(file, 76));
    model.frames = value<int32_t>(file, mesh + 72);
    const int vertices = value<int32_t>(file, mesh + 80),
              triangles = value<int32_t>(file, mesh + 84);
    const size_t triangle_start = mesh + value<uint32_t>(file, mesh + 88),
                 texture_start = mesh + value<uint32_t>(file, mesh + 96),
                 vertex_start = mesh + value<uint32_t>(file, mesh + 100);
    if (testing::Test::HasFailure())
        return model;
    for (size_t t = 0; t < size_t(triangles); ++t) {
        std::array<int, 3> corners;
        for (size_t k = 0; k < 3; ++k) {
            corners[k] = value<int32_t>(file, triangle_start + 12 * t + 4 * k);
            EXPECT_TRUE(corners[k] >= 0 && corners[k] < vertices) << name;
        }
        model.triangles.push_back(corners);
    }
    for (size_t v = 0; v < size_t(vertices); ++v)
        model.texture.push_back({value<float>(file, texture_start + 8 * v),
                                 value<float>(file, texture_start + 8 * v + 4)});
    for (size_t f = 0; f < size_t(model.frames); ++f) {
        model.positions.emplace_back();
        for (size_t v = 0; v < size_t(vertices); ++v) {
            const size_t at = vertex_start + 8 * (f * size_t(vertices) + v);
            const auto axis = [&](size_t k) {
                return static_cast<float>(value<int16_t>(file, at + 2 * k)) / 64;
            };
            model.positions.back().push_back({axis(0), axis(1), axis(2)});
        }
    }
    return model;
}

std::vector<std::string> caustics() { return numbered("caustics64/caust%.2d.nlt", 0); }
std::vector<std::string> fishCaustics() { return numbered("causticsfish32/caust%.2d.nlt", 0); }
std::vector<std::string> highlights() { return numbered("highlight/highlight%.5d.nlt", 44); }

}  // namespace test
