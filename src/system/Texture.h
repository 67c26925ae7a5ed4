// OpenGL textures loaded from bitmap files, and their use as layers.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

struct SDL_RWops;
struct SDL_Surface;

/// How a texture is loaded; combined with |.
enum TEXTURE_FLAG : int {
    QUALITY_MIPMAP = 1,   ///< full mipmap chain, linear-mipmap-nearest minification
    QUALITY_NORMAL = 2,   ///< linear
    QUALITY_FAST = 4,     ///< nearest minification, linear magnification
    QUALITY_FASTEST = 8,  ///< nearest
    WRAP_CLAMP = 16,      ///< clamp in s
    WRAP_REPEAT = 32,     ///< repeat in s; also without either flag
    ENV_REPLACE = 64,     ///< not read here
};

constexpr TEXTURE_FLAG operator|(TEXTURE_FLAG a, TEXTURE_FLAG b) {
    return static_cast<TEXTURE_FLAG>(static_cast<int>(a) | static_cast<int>(b));
}

/// What a texture does to the layers below it.
enum MULTITEXTURE_FLAG : int {
    LIGHTMAP = 1,      ///< multiplies
    SOURCE_ALPHA = 2,  ///< covers by its own alpha
};

/// Multitexturing of this process; Texture::initMultiTexturing fills it once, and may be read on
/// the threads that have called that. Here for the sake of setGLCoordinates, which runs for every
/// vertex and layer.
struct MULTITEXTURING {
    bool probed = false;
    bool available = false;
    PFNGLACTIVETEXTUREARBPROC active_texture = nullptr;
    PFNGLMULTITEXCOORD2FARBPROC multi_tex_coord = nullptr;
    GLint units = 0;  ///< that the driver has
};
extern MULTITEXTURING multitexturing;

/// One 2D texture with the tiling and offset of every coordinate issued through it. Lives on the
/// thread of the GL context. Copies share the GL name; only one of them may be cleaned up.
class Texture {
public:
    Texture() = default;
    /// The context must still be there if the texture is loaded.
    ~Texture();
    Texture(const Texture&) = default;
    Texture& operator=(const Texture&) = default;

    /// Loads or reloads a bitmap of 24 or 32 bits per pixel; the fourth byte of a pixel is its
    /// alpha. False, with a line on standard output, when the file is no complete bitmap. A bitmap
    /// of another depth gives true, with a line too, and a texture without an image.
    bool loadBMP(const char* filename, TEXTURE_FLAG flags);
    /// The same from an open source (null: could not be opened), which is closed; `name` is for the
    /// message only.
    bool loadBMP(SDL_RWops* source, const char* name, TEXTURE_FLAG flags);
    /// The same from a bitmap that has been read.
    void load(const SDL_Surface& image, const char* name, TEXTURE_FLAG flags);
    void cleanup();
    GLuint getID() const { return id; }

    /// Sets the filters of whichever 2D texture is bound.
    void setFilterQuality(TEXTURE_FLAG flags);
    void setOffset(float x, float y) {
        offset_x = x;
        offset_y = y;
    }
    void setTileFactor(float f) { tilefactor_x = tilefactor_y = f; }
    void setTileFactor_X(float f) { tilefactor_x = f; }
    void setTileFactor_Y(float f) { tilefactor_y = f; }
    void setMultitextureMode(MULTITEXTURE_FLAG mode) { multitexturemode = mode; }

    /// Makes this the current texture, of `unit` when multitexturing. Units that the driver does
    /// not have are ignored, here and below.
    void bindTexture(bool multitexture, int unit);
    void setGLCoordinates(float u, float v, bool multitexture, int unit);
    void disableTextureUnit(int unit);

    /// Looks for multitexturing once per process; whether it is there. Needs a current context; on
    /// any thread.
    static bool initMultiTexturing();
    /// The GL name of unit 0..31; unit 0 for any other number.
    static int getUnit(int unit);

    GLuint id = 0;
    float offset_x = 0;
    float offset_y = 0;
    float tilefactor_x = 1;
    float tilefactor_y = 1;
    bool loaded = false;
    bool has_image = false;  ///< the file's depth was one that can be used
    MULTITEXTURE_FLAG multitexturemode = LIGHTMAP;
};

inline int Texture::getUnit(int unit) {
    return unit >= 1 && unit <= 31 ? GL_TEXTURE0_ARB + unit : GL_TEXTURE0_ARB;
}

inline void Texture::setGLCoordinates(float u, float v, bool multitexture, int unit) {
    const float s = u * tilefactor_x + offset_x;
    const float t = v * tilefactor_y + offset_y;
    if (!multitexture || !multitexturing.available)
        glTexCoord2f(s, t);
    else if (unit < multitexturing.units)
        multitexturing.multi_tex_coord(getUnit(unit), s, t);
}
