#include "system/Texture.h"

#include <GL/glu.h>
#include <dlfcn.h>

#include <cstdio>
#include <mutex>

#include "system/Bitmap.h"

namespace {

void upload(const SDL_Surface& image, GLint internal, GLenum format, bool mipmaps) {
    if (mipmaps)
        gluBuild2DMipmaps(GL_TEXTURE_2D, internal, image.w, image.h, format, GL_UNSIGNED_BYTE,
                          image.pixels);
    else
        glTexImage2D(GL_TEXTURE_2D, 0, internal, image.w, image.h, 0, format, GL_UNSIGNED_BYTE,
                     image.pixels);
}

}  // namespace

MULTITEXTURING multitexturing;

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
    load(*image, name, flags);
    SDL_FreeSurface(image);
    return true;
}

void Texture::load(const SDL_Surface& image, const char* name, TEXTURE_FLAG flags) {
    cleanup();
    glGenTextures(1, &id);
    glBindTexture(GL_TEXTURE_2D, id);
    // t keeps repeating whatever the flags say.
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, flags & WRAP_CLAMP ? GL_CLAMP : GL_REPEAT);
    setFilterQuality(flags);

    const bool mipmaps = flags & QUALITY_MIPMAP;
    const int depth = image.format->BytesPerPixel;
    has_image = depth == 3 || depth == 4;
    if (depth == 3)
        upload(image, GL_RGB, GL_BGR, mipmaps);
    else if (depth == 4)
        upload(image, GL_RGBA, GL_BGRA, mipmaps);
    else
        std::printf("Texture::loadBMP %s has %d bytes per pixel, not 3 or 4\n", name, depth);
    loaded = true;
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
    static std::mutex one_at_a_time;
    const std::lock_guard lock(one_at_a_time);
    if (multitexturing.probed)
        return multitexturing.available;
    multitexturing.probed = true;

    // Only development packages bring the name without a number.
    void* library = dlopen("libGL.so", RTLD_LAZY);
    if (!library)
        library = dlopen("libGL.so.1", RTLD_LAZY);
    if (!library)
        return false;
    multitexturing.active_texture =
        reinterpret_cast<PFNGLACTIVETEXTUREARBPROC>(dlsym(library, "glActiveTextureARB"));
    multitexturing.multi_tex_coord =
        reinterpret_cast<PFNGLMULTITEXCOORD2FARBPROC>(dlsym(library, "glMultiTexCoord2fARB"));
    // The program is linked with the library, so it stays mapped.
    dlclose(library);
    if (!multitexturing.active_texture || !multitexturing.multi_tex_coord)
        return false;

    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &multitexturing.units);
    multitexturing.available = true;
    return true;
}

void Texture::bindTexture(bool multitexture, int unit) {
    if (multitexture && multitexturing.available) {
        if (unit >= multitexturing.units)
            return;
        multitexturing.active_texture(getUnit(unit));
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

void Texture::disableTextureUnit(int unit) {
    if (!multitexturing.available || unit >= multitexturing.units)
        return;
    multitexturing.active_texture(getUnit(unit));
    glDisable(GL_TEXTURE_2D);
    multitexturing.active_texture(GL_TEXTURE0_ARB);
}
