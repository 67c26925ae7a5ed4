// The font of the screen text: white letters with a soft dark edge, drawn pixel for pixel.
//
// Called as: make_font <data folder> <outline font file>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_MODULE_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "common/image.h"

namespace {

constexpr int first_code = 32, last_code = 126;
constexpr int texture_side = 256;
constexpr int letter_pixels = 18;  // size of the letters; a capital is some 13 pixels high
constexpr int margin = 3;          // room above and below for the edge
constexpr int spacing = 2;         // pixels added to every advance, for the edge of both neighbours

// The edge: this dark next to the letter, gone this many pixels from it.
constexpr float edge_opacity = 0.86f;
constexpr float edge_core = 1.3f;
constexpr float edge_width = 3.4f;

/// One character cell of the font: what the letter covers and where it will stand.
struct Glyph {
    int width = 0;
    std::vector<float> cover;  // width x height of a line, 0..1
    int x = 0, y = 0;          // top left corner in the texture
};

/// How dark the edge is in each pixel: falls off with the distance to what is covered.
std::vector<float> edgeOf(const Glyph& glyph, int height) {
    const int reach = int(edge_width) + 1;
    std::vector<float> edge(glyph.cover.size());
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < glyph.width; ++x) {
            float darkest = 0;
            for (int dy = -reach; dy <= reach; ++dy) {
                for (int dx = -reach; dx <= reach; ++dx) {
                    const int sx = x + dx, sy = y + dy;
                    if (sx < 0 || sx >= glyph.width || sy < 0 || sy >= height)
                        continue;
                    const float distance = std::hypot(float(dx), float(dy));
                    const float near =
                        std::clamp((edge_width - distance) / (edge_width - edge_core), 0.0f, 1.0f);
                    darkest = std::max(darkest, glyph.cover[size_t(sy * glyph.width + sx)] * near);
                }
            }
            edge[size_t(y * glyph.width + x)] = edge_opacity * darkest;
        }
    }
    return edge;
}

void append(std::vector<unsigned char>& bytes, const void* value) {
    uint32_t bits;
    memcpy(&bits, value, 4);
    for (int i = 0; i < 4; ++i)
        bytes.push_back((bits >> (8 * i)) & 0xff);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        art::fail("usage: make_font <data folder> <outline font>");
    FT_Library library;
    FT_Face face;
    if (FT_Init_FreeType(&library) || FT_New_Face(library, argv[2], 0, &face) ||
        FT_Set_Pixel_Sizes(face, 0, letter_pixels))
        art::fail(std::string("cannot use ") + argv[2]);

    const int ascent = int(face->size->metrics.ascender >> 6);
    const int descent = -int(face->size->metrics.descender >> 6);
    const int height = ascent + descent + 2 * margin;
    std::vector<Glyph> glyphs;
    int x = 1, y = 1;
    for (int code = first_code; code <= last_code; ++code) {
        // The automatic hinter sets stems and bars on whole pixels in both directions.
        if (FT_Load_Char(face, FT_ULong(code),
                         FT_LOAD_RENDER | FT_LOAD_FORCE_AUTOHINT | FT_LOAD_TARGET_NORMAL))
            art::fail(std::string(argv[2]) + ": no character " + std::to_string(code));
        const FT_GlyphSlot slot = face->glyph;
        Glyph glyph;
        glyph.width = int(slot->advance.x >> 6) + spacing;
        glyph.cover.resize(size_t(glyph.width * height));
        for (int row = 0; row < int(slot->bitmap.rows); ++row) {
            for (int column = 0; column < int(slot->bitmap.width); ++column) {
                const int to_x = column + slot->bitmap_left + spacing / 2;
                const int to_y = row + margin + ascent - slot->bitmap_top;
                if (to_x < 0 || to_x >= glyph.width || to_y < 0 || to_y >= height)
                    art::fail(std::string("character ") + std::to_string(code) +
                              " does not fit its cell");
                glyph.cover[size_t(to_y * glyph.width + to_x)] =
                    slot->bitmap.buffer[row * slot->bitmap.pitch + column] / 255.0f;
            }
        }
        // A texel of nothing between the cells, so that none bleeds into its neighbour.
        if (x + glyph.width + 1 > texture_side) {
            x = 1;
            y += height + 1;
        }
        if (y + height + 1 > texture_side)
            art::fail("the font does not fit its texture");
        glyph.x = x;
        glyph.y = y;
        x += glyph.width + 1;
        glyphs.push_back(glyph);
    }
    FT_Done_Face(face);
    FT_Done_FreeType(library);

    std::vector<unsigned char> texels(size_t(texture_side) * texture_side * 2);
    for (const Glyph& glyph : glyphs) {
        const std::vector<float> edge = edgeOf(glyph, height);
        for (int row = 0; row < height; ++row) {
            for (int column = 0; column < glyph.width; ++column) {
                const size_t from = size_t(row * glyph.width + column);
                const size_t to = size_t((glyph.y + row) * texture_side + glyph.x + column) * 2;
                // The letter lies over its edge.
                const float cover = glyph.cover[from];
                const float alpha = cover + (1 - cover) * edge[from];
                texels[to] = (unsigned char)std::lround(alpha > 0 ? 255 * cover / alpha : 0);
                texels[to + 1] = (unsigned char)std::lround(255 * alpha);
            }
        }
    }

    std::vector<unsigned char> bytes;
    for (int32_t field : {0, texture_side, texture_side, first_code, last_code, 0})
        append(bytes, &field);
    for (const Glyph& glyph : glyphs) {
        const float side = texture_side;
        for (float value : {float(glyph.width), float(height), glyph.x / side, glyph.y / side,
                            (glyph.x + glyph.width) / side, (glyph.y + height) / side})
            append(bytes, &value);
    }
    bytes.insert(bytes.end(), texels.begin(), texels.end());

    const std::string path = std::string(argv[1]) + "/font.nlf";
    FILE* file = fopen(path.c_str(), "wb");
    if (!file || fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() || fclose(file) != 0)
        art::fail("cannot write " + path);
}
