#include "system/Texture.h"

#include <GL/glext.h>
#include <GL/glu.h>
#include <dlfcn.h>

#include <cstdio>

#include "system/Bitmap.h"

namespace {

bool multitexture_probed = false;
bool multitexture_available = false;
PFNGLACTIVETEXTUREARBPROC active_texture = nullptr;
PFNGLMULTITEXCOORD2FARBPROC multi_tex_coord = nullptr;
GLint texture_units = 0;

bool isUsable(int unit) { return unit < texture_units; }

void upload(const SDL_Surface& image, GLint internal, GLenum format, bool mipmaps) {
    if (mipmaps)
        gluBuild2DMipmaps(GL_TEXTURE_2D, internal, image.w, image.h, format, GL_UNSIGNED_BYTE,
                          image.pixels);
    else
        glTexImage2D(GL_TEXTURE_2D, 0, internal, image.w, image.h, 0, format, GL_UNSIGNED_BYTE,
                     image.pixels);
}

}  // namespace

Texture::~Texture() { cleanup(); }

void Texture::cleanup() {
    if (!loaded)
        return;
    glDeleteTextures(1, &id);
    loaded = false;
}

bool Texture::loadBMP(const char* filename, TEXTURE_FLAG flags) {
    return loadBMP(SDL_RWFromFile(filename, "rb"), filename, flags);
}

bool Texture::loadBMP(SDL_RWops* source, const char* name, TEXTURE_FLAG flags) {
    cleanup();
    SDL_Surface* image = readBitmap(source);
    if (!image) {
        std::printf("Texture::loadBMP SDL_LoadBMP %s failed\n", name);
        return false;
    }

    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    // t keeps repeating whatever the flags say.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, flags & WRAP_CLAMP ? GL_CLAMP : GL_REPEAT);
    setFilterQuality(flags);

    const bool mipmaps = flags & QUALITY_MIPMAP;
    const int depth = image->format->BytesPerPixel;
    if (depth == 3)
        upload(*image, GL_RGB, GL_BGR, mipmaps);
    else if (depth == 4)
        upload(*image, GL_RGBA, GL_BGRA, mipmaps);
    else
        std::printf("Texture::loadBMP %s has %d bytes per pixel, not 3 or 4\n", name, depth);
    SDL_FreeSurface(image);
    loaded = true;
    return true;
}

void Texture::setFilterQuality(TEXTURE_FLAG flags) {
    GLint minification = GL_LINEAR;
    GLint magnification = GL_LINEAR;
    if (flags & QUALITY_FASTEST)
        minification = magnification = GL_NEAREST;
    else if (flags & QUALITY_FAST)
        minification = GL_NEAREST;
    else if ((flags & QUALITY_MIPMAP) && !(flags & QUALITY_NORMAL))
        minification = GL_LINEAR_MIPMAP_NEAREST;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, minification);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, magnification);
}

bool Texture::initMultiTexturing() {
    if (multitexture_probed)
        return multitexture_available;
    multitexture_probed = true;

    // Only development packages bring the name without a number.
    void* library = dlopen("libGL.so", RTLD_LAZY);
    if (!library)
        library = dlopen("libGL.so.1", RTLD_LAZY);
    if (!library)
        return false;
    active_texture =
        reinterpret_cast<PFNGLACTIVETEXTUREARBPROC>(dlsym(library, "glActiveTextureARB"));
    multi_tex_coord =
        reinterpret_cast<PFNGLMULTITEXCOORD2FARBPROC>(dlsym(library, "glMultiTexCoord2fARB"));
    // The program is linked with the library, so it stays mapped.
    dlclose(library);
    if (!active_texture || !multi_tex_coord)
        return false;

    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &texture_units);
    multitexture_available = true;
    return true;
}

int Texture::getUnit(int unit) {
    return unit >= 1 && unit <= 31 ? GL_TEXTURE0_ARB + unit : GL_TEXTURE0_ARB;
}

void Texture::bindTexture(bool multitexture, int unit) {
    if (multitexture && multitexture_available) {
        if (!isUsable(unit))
            return;
        active_texture(getUnit(unit));
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, id);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE,
                  multitexturemode & SOURCE_ALPHA ? GL_DECAL : GL_MODULATE);
    } else {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, id);
        // The flag is no environment mode, so GL refuses it and keeps the mode that is set: drawing
        // with one texture must not change what the last multitextured object restored.
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, multitexturemode);
    }
}

void Texture::setGLCoordinates(float u, float v, bool multitexture, int unit) {
    const float s = u * tilefactor_x + offset_x;
    const float t = v * tilefactor_y + offset_y;
    if (!multitexture || !multitexture_available)
        glTexCoord2f(s, t);
    else if (isUsable(unit))
        multi_tex_coord(getUnit(unit), s, t);
}

void Texture::disableTextureUnit(int unit) {
    if (!multitexture_available || !isUsable(unit))
        return;
    active_texture(getUnit(unit));
    glDisable(GL_TEXTURE_2D);
    active_texture(GL_TEXTURE0_ARB);
}
