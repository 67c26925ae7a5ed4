#include "system/HeightMap.h"

#include <GL/gl.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <new>

#include "system/Bitmap.h"

bool HeightMap::loadBMP(const char* file) { return loadBMP(SDL_RWFromFile(file, "rb"), file); }

bool HeightMap::loadBMP(SDL_RWops* source, const char* name) {
    freeSamples();
    SDL_Surface* image = readBitmap(source);
    if (!image) {
        std::printf("Could not load height map: %s\n", name);
        return false;
    }
    bool loaded = false;
    if (image->format->BytesPerPixel != 1)
        std::printf("sdlsurf->format->BytesPerPixel != 1\n");
    else
        loaded = allocateSamples(image->w, image->h);
    // As one block: a row of the surface is never shorter than a row of samples.
    if (loaded)
        std::copy_n(static_cast<const unsigned char*>(image->pixels), numMapPixels, mapdata);
    SDL_FreeSurface(image);
    return loaded;
}

bool HeightMap::loadRAW(const char* file, int width, int height, int /*depth*/) {
    std::FILE* source = std::fopen(file, "rb");
    if (!source)
        return false;
    freeSamples();
    const bool loaded = allocateSamples(width, height);
    // A short file leaves the rest at 0.
    [[maybe_unused]] const size_t count = loaded ? std::fread(mapdata, 1, numMapPixels, source) : 0;
    std::fclose(source);
    return loaded;
}

bool HeightMap::allocateSamples(int width, int height) {
    const int64_t count = int64_t{width} * height;
    if (width < 1 || height < 1 || count > INT_MAX)
        return false;
    mapdata = new (std::nothrow) unsigned char[count]();
    if (!mapdata)
        return false;
    mapsize_x = width;
    mapsize_y = height;
    numMapPixels = static_cast<int>(count);
    updateStepSizes();
    initialized = false;
    return true;
}

void HeightMap::freeSamples() {
    delete[] mapdata;
    mapdata = nullptr;
    numMapPixels = 0;
}

void HeightMap::freeVertices() {
    delete[] vertices;
    vertices = nullptr;
    numVerts = 0;
}

int HeightMap::getHeightData(int x, int y) const {
    if (!mapdata || mapsize_x < 1 || mapsize_y < 1)
        return 0;
    const int64_t index = int64_t{y % mapsize_y} * mapsize_x + x % mapsize_x;
    return index >= 0 && index < numMapPixels ? mapdata[index] : 0;
}

void HeightMap::setNumSegments(int n) {
    numSegments_x = numSegments_y = n;
    updateStepSizes();
    initialized = false;
}

void HeightMap::setNumSegments_X(int n) {
    numSegments_x = n;
    updateStepSizes();
    initialized = false;
}

void HeightMap::setNumSegments_Y(int n) {
    numSegments_y = n;
    updateStepSizes();
    initialized = false;
}

void HeightMap::updateStepSizes() {
    stepsize_x = static_cast<float>(mapsize_x - 1) / numSegments_x;
    stepsize_y = static_cast<float>(mapsize_y - 1) / numSegments_y;
}

void HeightMap::setHeightFactor(float f) {
    heightfactor = f;
    initialized = false;
}

void HeightMap::setSize(float x, float z) {
    worldsize_x = x;
    worldsize_y = z;
}

void HeightMap::setTextureCoord(GLVector2* out, float x, float y) const {
    out->set(x / mapsize_x, y / mapsize_y);
}

void HeightMap::initialize() {
    const float half = worldsize_x / 2;
    resizefactor_x = worldsize_x / mapsize_x;
    resizefactor_y = worldsize_y / mapsize_y;
    freeVertices();
    if (mapsize_x == 0 && mapsize_y == 0)
        return;

    initialized = true;
    const int64_t pairs = int64_t{numSegments_x} * numSegments_y;
    if (numSegments_x < 1 || numSegments_y < 1 || pairs > INT_MAX / 2)
        return;
    vertices = new (std::nothrow) MAP_VERTEX[2 * pairs];
    if (!vertices)
        return;
    numVerts = static_cast<int>(2 * pairs);

    MAP_VERTEX* next = vertices;
    const auto emit = [&](float sx, float y) {
        const int height = getHeightData(static_cast<int>(sx), static_cast<int>(y));
        next->vec.set(sx * resizefactor_x - half, height * heightfactor,
                      y * resizefactor_y - worldsize_y);
        setTextureCoord(&next->tex, sx, y);
        ++next;
    };
    // Serpentine, so that the whole terrain is one strip.
    for (int i = 0; i < numSegments_x; ++i) {
        const float x0 = i * stepsize_x;
        // To the last bit where the next column begins: else the sky shows through between them.
        const float x1 = (i + 1) * stepsize_x;
        for (int n = 0; n < numSegments_y; ++n) {
            const bool up = i % 2 == 0;
            const float y = (up ? n : numSegments_y - 1 - n) * stepsize_y;
            emit(up ? x1 : x0, y);
            emit(up ? x0 : x1, y);
        }
    }
}

void HeightMap::preRender() {
    glPushMatrix();
    if (!initialized)
        initialize();
    modify();
    RenderObject::preRender();
}

void HeightMap::renderMesh() {
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i < numVerts; ++i) {
        const MAP_VERTEX& v = vertices[i];
        textureCoord(v.tex.x, v.tex.y);
        glVertex3f(v.vec.x + v.modifier_x, v.vec.y + v.modifier_y, v.vec.z + v.modifier_z);
    }
    glEnd();
}

void HeightMap::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}

void HeightMap::cleanup() {
    freeSamples();
    freeVertices();
    mapsize_x = mapsize_y = 0;
}
