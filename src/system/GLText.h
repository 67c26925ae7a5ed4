// Lines of text in a bitmap font.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "system/RenderObject.h"

/// One glyph: size in pixels, texture coordinates of the top left and the bottom right corner.
struct GLFONTCHAR {
    float dx, dy;
    float tx1, ty1;
    float tx2, ty2;
};

struct GLFONT {
    GLuint tex = 0;                    ///< 0: none; goes with the GL context
    int texWidth = 0, texHeight = 0;   ///< texels
    int intStart = 0, intEnd = -1;     ///< first and last character code
    GLFONTCHAR* characters = nullptr;  ///< intEnd - intStart + 1 of them, owned
};

/// Draws a textured quad per character. Screen text lies on top of everything: its origin is the
/// object's position in pixels from the top left, y growing downwards, and of the placement only
/// the scale counts.
class GLText : public RenderObject {
public:
    GLText();
    /// Loads the font and sets nothing else: screen size and line space are 0, and text in the
    /// scene does not blend, until the caller says otherwise.
    explicit GLText(const char* file);
    ~GLText() override;
    GLText(const GLText&) = delete;
    GLText& operator=(const GLText&) = delete;

    /// Reads a font file into a texture; the GL context must be current. False, without a
    /// font, when there is no such file, which is silent, or when it is broken, which prints a
    /// line. Whether text is drawn is for the caller to say, in `initialized`.
    bool createFont(const char* file);
    /// The same for the bytes of a font file; the name is for the message.
    bool createFont(const unsigned char* data, size_t size, const char* name);
    /// Replaces the font; without one nothing is drawn.
    void setFontfile(const char* file);
    /// Size of the screen in pixels, as the text sees it: stretched over the whole viewport.
    void setScreensize(int width, int height);
    /// Splits the text at line feeds. What follows the last one makes a line if it is not empty.
    void setText(const char* text);
    /// Makes the text one line, whatever it contains.
    void setSingleLineText(const char* text);
    /// Height of a line in pixels: that of the first glyph of the latest font that had any.
    float getLineheight() const { return lineheight; }

    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    /// Frees the glyphs, so that no letter is drawn until the next font. The texture stays, under
    /// its name in `font`: whoever has the context may release it.
    void cleanup() override;

    GLFONT font;
    std::vector<std::string> lines;
    int screenwidth = 0;
    int screenheight = 0;
    int texttype = 0;  ///< 0: screen text, else text placed in the scene like any object
    int numcharacters = 0;
    float lineheight = 0;
    float linespace = 0;  ///< extra pixels between lines
    bool initialized = false;
};
