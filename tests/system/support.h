// What the tests of math and drawables share.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "system/GLHelpers.h"

inline void expectVector(const GLVector3& v, float x, float y, float z, float tolerance = 1e-6f) {
    EXPECT_NEAR(v.x, x, tolerance);
    EXPECT_NEAR(v.y, y, tolerance);
    EXPECT_NEAR(v.z, z, tolerance);
}

/// A file that lasts as long as this object, with a name of its own for every process.
class TestFile {
public:
    TestFile(const std::string& name, const std::vector<uint8_t>& bytes)
        : path_(::testing::TempDir() + std::to_string(getpid()) + name) {
        std::ofstream(path_, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    ~TestFile() { std::remove(path_.c_str()); }
    TestFile(const TestFile&) = delete;
    TestFile& operator=(const TestFile&) = delete;

    const char* path() const { return path_.c_str(); }

private:
    std::string path_;
};

inline void put(std::vector<uint8_t>& bytes, size_t offset, uint32_t value, int width) {
    for (int i = 0; i < width; ++i)
        bytes[offset + i] = static_cast<uint8_t>(value >> 8 * i);
}

/// The bytes with a number of four of them changed.
inline std::vector<uint8_t> changed(std::vector<uint8_t> bytes, size_t offset, uint32_t value) {
    put(bytes, offset, value, 4);
    return bytes;
}

/// A bitmap file, row 0 at the top. `pixel` gives the bytes of the pixel (x, y) as a little-endian
/// number: the palette index at 8 bits per pixel, blue first at 24 and 32.
inline std::vector<uint8_t> bitmap(int width, int height, int depth,
                                   const std::function<uint32_t(int, int)>& pixel) {
    const int palette = depth == 8 ? 256 * 4 : 0;
    const int row = (width * depth + 31) / 32 * 4;
    const int start = 54 + palette;
    std::vector<uint8_t> bytes(start + row * height);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(bytes, 2, static_cast<uint32_t>(bytes.size()), 4);
    put(bytes, 10, start, 4);
    put(bytes, 14, 40, 4);
    put(bytes, 18, width, 4);
    put(bytes, 22, height, 4);
    put(bytes, 26, 1, 2);
    put(bytes, 28, depth, 2);
    for (int i = 0; i < palette; i += 4)
        put(bytes, 54 + i, 0x010101 * (i / 4), 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            put(bytes, start + (height - 1 - y) * row + x * depth / 8, pixel(x, y), depth / 8);
    }
    return bytes;
}
