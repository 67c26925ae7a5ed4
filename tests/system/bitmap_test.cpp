#include "system/Bitmap.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>

#include "support.h"
#include "support/sdl.h"

namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

Surface decode(const std::vector<uint8_t>& bytes) {
    return {readBitmap(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()))),
            &SDL_FreeSurface};
}

std::vector<uint8_t> pixel(const SDL_Surface& image, int x, int y) {
    const int width = image.format->BytesPerPixel;
    const auto* first = static_cast<const uint8_t*>(image.pixels) + y * image.pitch + x * width;
    return {first, first + width};
}

uint32_t numbered(int x, int y) { return 0x01020300u * (x + 1) + 0x10 * y; }

TEST(Bitmap, topRowComesFirst) {
    const Surface image = decode(bitmap(3, 2, 24, [](int x, int y) { return 16 * y + x; }));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->w, 3);
    EXPECT_EQ(image->h, 2);
    EXPECT_EQ(image->format->BytesPerPixel, 3);
    EXPECT_EQ(pixel(*image, 2, 0), (std::vector<uint8_t>{2, 0, 0}));
    EXPECT_EQ(pixel(*image, 1, 1), (std::vector<uint8_t>{17, 0, 0}));
}

TEST(Bitmap, keepsTheFourthByte) {
    const Surface image = decode(bitmap(2, 2, 32, numbered));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->format->BytesPerPixel, 4);
    EXPECT_EQ(pixel(*image, 0, 0), (std::vector<uint8_t>{0, 3, 2, 1}));
    EXPECT_EQ(pixel(*image, 1, 1), (std::vector<uint8_t>{0x10, 6, 4, 2}));
}

TEST(Bitmap, keepsPaletteIndices) {
    const Surface image = decode(bitmap(4, 4, 8, [](int x, int y) { return 60 * y + x; }));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->format->BytesPerPixel, 1);
    EXPECT_EQ(pixel(*image, 3, 3), (std::vector<uint8_t>{183}));
}

TEST(Bitmap, readsTopDownFilesOrNone) {
    auto bytes = bitmap(2, 2, 24, [](int, int y) { return y + 1; });
    put(bytes, 22, static_cast<uint32_t>(-2), 4);
    const Surface image = decode(bytes);
    if (image) {
        EXPECT_EQ(image->h, 2);
        EXPECT_EQ(pixel(*image, 0, 0)[0], 2) << "the last row of the other order";
    }
}

TEST(Bitmap, refusesASourceThatCouldNotBeOpened) {
    EXPECT_EQ(readBitmap(SDL_RWFromFile("/nowhere/at.all", "rb")), nullptr);
    EXPECT_EQ(readBitmap(SDL_RWFromFile("/", "rb")), nullptr);
}

TEST(Bitmap, refusesEveryCutFile) {
    for (const int depth : {8, 24, 32}) {
        const auto whole = bitmap(5, 3, depth, [](int x, int) { return x; });
        ASSERT_NE(decode(whole), nullptr);
        for (size_t size = 0; size < whole.size(); ++size) {
            // A buffer of its own size, so that reading beyond it is noticed.
            EXPECT_EQ(decode({whole.begin(), whole.begin() + static_cast<long>(size)}), nullptr)
                << depth << " bits cut to " << size;
        }
    }
}

TEST(Bitmap, refusesWhatTheHeaderCannotMean) {
    const struct {
        const char* name;
        size_t offset;
        uint32_t value;
        int width;
    } CASES[] = {
        {"other magic", 0, 0x4142, 2},
        {"pixels behind the end", 10, 0x7fffffff, 4},
        {"pixels far behind the end", 10, 0xffffffff, 4},
        {"no width", 18, 0, 4},
        {"negative width", 18, static_cast<uint32_t>(-4), 4},
        {"more columns than bytes", 18, 1000, 4},
        {"as many columns as possible", 18, INT_MAX, 4},
        {"most negative width", 18, 0x80000000, 4},
        {"no height", 22, 0, 4},
        {"more rows than bytes", 22, 4096, 4},
        {"as many rows as possible", 22, INT_MAX, 4},
        {"most negative height", 22, 0x80000000, 4},
        {"no depth", 28, 0, 2},
        {"depth that no decoder knows", 28, 65535, 2},
        {"run-length encoding", 30, 1, 4},
    };
    for (const auto& c : CASES) {
        for (const int depth : {8, 24, 32}) {
            auto bytes = bitmap(4, 4, depth, [](int x, int) { return x; });
            put(bytes, c.offset, c.value, c.width);
            if (c.offset == 30 && test::sdlIsALayer())
                continue;  // it reads that
            EXPECT_EQ(decode(bytes), nullptr) << c.name << " at " << depth;
        }
    }
}

TEST(Bitmap, neverAllocatesMoreThanTheFileHolds) {
    // 16383 x 65535 pixels of 4 bytes are the most that the decoder would try.
    auto bytes = bitmap(4, 4, 32, numbered);
    put(bytes, 18, 16383, 4);
    put(bytes, 22, 65535, 4);
    EXPECT_EQ(decode(bytes), nullptr);
    // So many bytes that their number does not fit 63 bits.
    put(bytes, 18, 1 << 30, 4);
    put(bytes, 22, 0x80000000, 4);
    EXPECT_EQ(decode(bytes), nullptr);
}

TEST(Bitmap, survivesEveryChangedByteOfTheHeader) {
    for (const int depth : {8, 24, 32}) {
        const auto whole = bitmap(4, 4, depth, [](int x, int) { return x; });
        for (size_t offset = 0; offset < 54; ++offset) {
            for (const uint8_t value : {0x00, 0x01, 0x7f, 0x80, 0xff}) {
                auto bytes = whole;
                bytes[offset] = value;
                const Surface image = decode(bytes);
                if (!image)
                    continue;
                // Whatever it is, its pixels must be there.
                uint32_t sum = 0;
                for (int y = 0; y < image->h; ++y) {
                    for (int x = 0; x < image->w; ++x)
                        sum += pixel(*image, x, y)[0];
                }
                EXPECT_LE(sum, 255u * image->w * image->h);
            }
        }
    }
}

TEST(Bitmap, survivesWrongCountsOfColours) {
    for (const uint32_t colours : {1u, 255u, 256u, 257u, 65536u, 0x7fffffffu, 0xffffffffu}) {
        auto bytes = bitmap(4, 4, 8, [](int x, int) { return x; });
        put(bytes, 46, colours, 4);
        decode(bytes);
    }
}

TEST(Bitmap, readsTheOldHeader) {
    // Extents of 16 bits and a palette of three bytes per colour.
    std::vector<uint8_t> bytes(26 + 2 * 8);
    bytes[0] = 'B';
    bytes[1] = 'M';
    put(bytes, 10, 26, 4);
    put(bytes, 14, 12, 4);
    put(bytes, 18, 2, 2);
    put(bytes, 20, 2, 2);
    put(bytes, 22, 1, 2);
    put(bytes, 24, 24, 2);
    bytes[26 + 8] = 77;
    const Surface image = decode(bytes);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->w, 2);
    EXPECT_EQ(image->h, 2);
    EXPECT_EQ(pixel(*image, 0, 0)[0], 77);
    bytes.pop_back();
    EXPECT_EQ(decode(bytes), nullptr);
}

}  // namespace
