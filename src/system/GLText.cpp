#include "system/GLText.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

/// Font file, little-endian.
///
/// | offset | field      | width | use                                              |
/// |      0 | tex        |     4 | not read                                         |
/// |      4 | texWidth   |     4 | texels, at least 1                               |
/// |      8 | texHeight  |     4 | texels, at least 1                               |
/// |     12 | intStart   |     4 | first character code                             |
/// |     16 | intEnd     |     4 | last character code; one below the first: none   |
/// |     20 | characters |     4 | not read                                         |
/// |     24 | glyphs     |    24 | each: dx, dy, tx1, ty1, tx2, ty2 as floats       |
/// |      - | texels     |     2 | each: luminance, alpha; rows in the order of GL  |
///
/// What follows the last texel is not read.
constexpr size_t header_size = 24;
constexpr size_t glyph_size = 24;
constexpr size_t texel_size = 2;

/// Larger textures than any GL of the kind has room for.
constexpr int max_texture_side = 4096;

static_assert(sizeof(GLFONTCHAR) == glyph_size, "glyphs are copied as they stand in the file");

int32_t readInt(const unsigned char* bytes) {
    return static_cast<int32_t>(
        static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
        static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24);
}

/// Fills font except for its texture and points texels at the texture's bytes; the caller owns the
/// glyphs. Returns what is wrong with the file, null if nothing.
const char* decode(const unsigned char* data, size_t size, GLFONT& font,
                   const unsigned char*& texels) {
    if (size < header_size)
        return "has no room for its header";
    font.texWidth = readInt(data + 4);
    font.texHeight = readInt(data + 8);
    font.intStart = readInt(data + 12);
    font.intEnd = readInt(data + 16);
    if (font.texWidth < 1 || font.texWidth > max_texture_side || font.texHeight < 1 ||
        font.texHeight > max_texture_side)
        return "has a texture of impossible size";
    if (int64_t(font.intEnd) < int64_t(font.intStart) - 1)
        return "has its last character before its first";

    const uint64_t count = uint64_t(int64_t(font.intEnd) - font.intStart + 1);
    const uint64_t texel_count = uint64_t(font.texWidth) * uint64_t(font.texHeight);
    if (size < header_size + count * glyph_size + texel_count * texel_size)
        return "is shorter than its header says";

    std::unique_ptr<GLFONTCHAR[]> glyphs(new GLFONTCHAR[count]);
    for (uint64_t i = 0; i < count; ++i) {
        float values[6];
        for (size_t k = 0; k < 6; ++k) {
            const int32_t bits = readInt(data + header_size + i * glyph_size + 4 * k);
            memcpy(&values[k], &bits, sizeof(bits));
            if (!std::isfinite(values[k]))
                return "has a glyph that is no number";
        }
        glyphs[i] = {values[0], values[1], values[2], values[3], values[4], values[5]};
    }
    texels = data + header_size + count * glyph_size;
    font.characters = glyphs.release();
    return nullptr;
}

}  // namespace

GLText::GLText() : screenwidth(800), screenheight(600) { enableAlphaBlending(true); }

GLText::GLText(const char* file) { initialized = createFont(file); }

GLText::~GLText() { GLText::cleanup(); }

void GLText::cleanup() {
    delete[] font.characters;
    font.characters = nullptr;
    numcharacters = 0;
}

bool GLText::createFont(const char* file) {
    GLText::cleanup();
    FILE* stream = fopen(file, "rb");
    if (!stream)
        return false;
    std::vector<unsigned char> bytes;
    unsigned char block[4096];
    while (const size_t size = fread(block, 1, sizeof(block), stream))
        bytes.insert(bytes.end(), block, block + size);
    fclose(stream);
    return createFont(bytes.data(), bytes.size(), file);
}

bool GLText::createFont(const unsigned char* data, size_t size, const char* name) {
    GLText::cleanup();
    GLFONT decoded;
    const unsigned char* texels = nullptr;
    if (const char* fault = decode(data, size, decoded, texels)) {
        printf("GLText::createFont %s %s\n", name, fault);
        return false;
    }
    font = decoded;
    numcharacters = static_cast<int>(int64_t(font.intEnd) - font.intStart + 1);
    if (numcharacters > 0)
        lineheight = font.characters[0].dy;

    glGenTextures(1, &font.tex);
    glBindTexture(GL_TEXTURE_2D, font.tex);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    // GL takes every row to begin at a multiple of four bytes, which in a file of odd width it
    // does not.
    const size_t row = static_cast<size_t>(font.texWidth) * texel_size;
    const size_t padded_row = (row + 3) / 4 * 4;
    std::vector<unsigned char> padded;
    if (padded_row != row) {
        padded.resize(padded_row * static_cast<size_t>(font.texHeight));
        for (size_t y = 0; y < static_cast<size_t>(font.texHeight); ++y)
            memcpy(&padded[y * padded_row], texels + y * row, row);
        texels = padded.data();
    }
    glTexImage2D(GL_TEXTURE_2D, 0, 2, font.texWidth, font.texHeight, 0, GL_LUMINANCE_ALPHA,
                 GL_UNSIGNED_BYTE, texels);
    return true;
}

void GLText::setFontfile(const char* file) {
    cleanup();
    initialized = createFont(file);
}

void GLText::setScreensize(int width, int height) {
    screenwidth = width;
    screenheight = height;
}

void GLText::setText(const char* text) {
    lines.clear();
    while (const char* end = strchr(text, '\n')) {
        lines.emplace_back(text, end);
        text = end + 1;
    }
    if (*text)
        lines.emplace_back(text);
}

void GLText::setSingleLineText(const char* text) {
    // Assigned in place: this comes every frame.
    lines.resize(1);
    lines[0] = text;
}

void GLText::preRender() {
    if (texttype != 0) {
        RenderObject::preRender();
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, font.tex);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_BLEND);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, screenwidth, screenheight, 0, 0, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glScalef(scalefactor.x, scalefactor.y, scalefactor.z);
    glDisable(GL_DEPTH_TEST);
    glColor4f(rendercolor.r, rendercolor.g, rendercolor.b, rendercolor.a);
}

void GLText::renderMesh() {
    if (!initialized)
        return;
    const float x = texttype == 0 ? vPos.x : 0;
    const float y = texttype == 0 ? vPos.y : 0;
    float line_offset = 0;
    glBegin(GL_QUADS);
    for (const std::string& line : lines) {
        float cursor = 0;
        for (const char c : line) {
            const int64_t index = int64_t(static_cast<signed char>(c)) - font.intStart;
            if (index < 0 || index >= numcharacters)
                continue;
            const GLFONTCHAR& glyph = font.characters[index];
            const float left = x + cursor;
            const float top = y + line_offset;
            glTexCoord2f(glyph.tx1, glyph.ty1);
            glVertex3f(left, top, 0);
            glTexCoord2f(glyph.tx1, glyph.ty2);
            glVertex3f(left, top + glyph.dy, 0);
            glTexCoord2f(glyph.tx2, glyph.ty2);
            glVertex3f(left + glyph.dx, top + glyph.dy, 0);
            glTexCoord2f(glyph.tx2, glyph.ty1);
            glVertex3f(left + glyph.dx, top, 0);
            cursor += glyph.dx;
        }
        line_offset += lineheight + linespace;
    }
    glEnd();
}

void GLText::postRender() {
    if (texttype != 0) {
        RenderObject::postRender();
        return;
    }
    glEnable(GL_DEPTH_TEST);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glDisable(GL_BLEND);
}
