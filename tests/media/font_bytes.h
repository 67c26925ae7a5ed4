// Font files in memory.
#pragma once

#include <cstdint>
#include <cstring>
#include <vector>

namespace test {

/// A font file, field by field; glyphs and texels are as the file will hold them, whatever the
/// header says. Without changes it is sound: codes 'A' to 'C', a texture of 4 x 2.
struct FONT_FILE {
    int32_t tex = 99;
    int32_t texWidth = 4, texHeight = 2;
    int32_t intStart = 'A', intEnd = 'C';
    int32_t characters = 0x1234;
    std::vector<std::vector<float>> glyphs = {
        {10, 16, 0.0f, 0.25f, 0.5f, 0.75f},
        {7, 15, 0.125f, 0.0f, 0.25f, 1.0f},
        {4, 14, 0.75f, 0.5f, 1.0f, 0.625f},
    };
    std::vector<unsigned char> texels = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

    std::vector<unsigned char> bytes() const {
        std::vector<unsigned char> result;
        const auto append = [&](const void* value) {
            uint32_t bits;
            std::memcpy(&bits, value, 4);
            for (int i = 0; i < 4; ++i)
                result.push_back(static_cast<unsigned char>(bits >> (8 * i)));
        };
        for (int32_t field : {tex, texWidth, texHeight, intStart, intEnd, characters})
            append(&field);
        for (const std::vector<float>& glyph : glyphs) {
            for (float value : glyph)
                append(&value);
        }
        result.insert(result.end(), texels.begin(), texels.end());
        return result;
    }
};

}  // namespace test
