#include "system/Bitmap.h"

#include <cstdint>
#include <cstdlib>

namespace {

// Start of a bitmap file; little endian.
//
// | offset | field        | width | use                                       |
// |--------|--------------|-------|-------------------------------------------|
// | 0      | magic        | 2     | left to the decoder                       |
// | 10     | pixel offset | 4     | where the rows start                      |
// | 14     | header size  | 4     | 12: the old header with 16-bit extents    |
// | 18     | width        | 4 (2) | pixels per row                            |
// | 22     | height       | 4 (2) | rows; negative when the top row is first  |
// | 28     | depth        | 2     | bits per pixel; at offset 24 in the old   |
constexpr int HEADER_SIZE = 30;

uint32_t read16(const uint8_t* p) { return p[0] | p[1] << 8; }
uint32_t read32(const uint8_t* p) { return read16(p) | read16(p + 2) << 16; }

// Whether the file holds all the rows that its header announces. The decoder allocates first and
// reads then, so that a few bytes could make it ask for gigabytes.
bool holdsItsPixels(SDL_RWops* source) {
    uint8_t header[HEADER_SIZE];
    const int64_t start = SDL_RWtell(source);
    const bool complete = SDL_RWread(source, header, 1, HEADER_SIZE) == HEADER_SIZE;
    const int64_t end = SDL_RWseek(source, 0, RW_SEEK_END);
    if (start < 0 || !complete || SDL_RWseek(source, static_cast<int>(start), RW_SEEK_SET) != start)
        return false;

    const bool old = read32(header + 14) == 12;
    const int64_t width = old ? read16(header + 18) : static_cast<int32_t>(read32(header + 18));
    const int64_t height =
        old ? read16(header + 20) : std::llabs(static_cast<int32_t>(read32(header + 22)));
    const int64_t depth = read16(header + (old ? 24 : 28));
    if (width < 1 || height < 1 || depth < 1 || depth > 32)
        return false;
    const int64_t row = (width * depth + 31) / 32 * 4;
    return (end - start - read32(header + 10)) / row >= height;
}

}  // namespace

SDL_Surface* readBitmap(SDL_RWops* source) {
    if (!source)
        return nullptr;
    if (!holdsItsPixels(source)) {
        SDL_RWclose(source);
        return nullptr;
    }
    return SDL_LoadBMP_RW(source, 1);
}
