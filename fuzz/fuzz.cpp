#include "fuzz.h"

#include <GL/glu.h>
#include <SDL.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace {

volatile uint8_t uploaded;  // Keeps the reading of images from being left out.

void readImage(GLsizei width, GLsizei height, GLenum format, const void* pixels) {
    const long texel = format == GL_LUMINANCE_ALPHA           ? 2
                       : format == GL_RGB || format == GL_BGR ? 3
                                                              : 4;
    // Rows begin at multiples of four bytes; the last one ends with its last texel.
    const long row = (width * texel + 3) / 4 * 4;
    const long size = width > 0 && height > 0 ? row * (height - 1) + width * texel : 0;
    uint8_t sum = 0;
    for (long i = 0; i < size; ++i)
        sum = static_cast<uint8_t>(sum + static_cast<const uint8_t*>(pixels)[i]);
    uploaded = sum;
}

}  // namespace

extern "C" {
Uint32 __wrap_SDL_GetTicks();
void __wrap_glGenTextures(GLsizei count, GLuint* names);
void __wrap_glTexImage2D(GLenum, GLint, GLint, GLsizei width, GLsizei height, GLint, GLenum format,
                         GLenum, const void* pixels);
GLint __wrap_gluBuild2DMipmaps(GLenum, GLint, GLsizei width, GLsizei height, GLenum format, GLenum,
                               const void* pixels);

Uint32 __wrap_SDL_GetTicks() {
    static Uint32 now = 0;
    return now += 37;
}

void __wrap_glGenTextures(GLsizei count, GLuint* names) { std::fill_n(names, count, 1); }

void __wrap_glTexImage2D(GLenum, GLint, GLint, GLsizei width, GLsizei height, GLint, GLenum format,
                         GLenum, const void* pixels) {
    readImage(width, height, format, pixels);
}

GLint __wrap_gluBuild2DMipmaps(GLenum, GLint, GLsizei width, GLsizei height, GLenum format, GLenum,
                               const void* pixels) {
    readImage(width, height, format, pixels);
    return 0;
}
}

namespace fuzz {

Printed::Printed() : before_(stdout) {
    stdout = fmemopen(text_, sizeof text_, "w");
    require(stdout != nullptr, "there is memory for what is printed");
}

Printed::~Printed() {
    std::fclose(stdout);
    stdout = before_;
}

int Printed::lines() {
    std::fflush(stdout);
    return static_cast<int>(std::count(text_, text_ + std::ftell(stdout), '\n'));
}

void require(bool kept, const char* promise) {
    if (kept)
        return;
    std::fprintf(stderr, "not kept: %s\n", promise);
    std::abort();
}

const char* asFile(const uint8_t* data, size_t size) {
    static char path[] = "/tmp/atollia-fuzz-XXXXXX";
    static const int file = [] {
        std::atexit([] { unlink(path); });
        return mkstemp(path);
    }();
    const bool written =
        ftruncate(file, 0) == 0 && pwrite(file, data, size, 0) == static_cast<ssize_t>(size);
    require(written, "there is room for a file");
    return path;
}

}  // namespace fuzz
