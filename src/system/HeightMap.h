// Terrain from a grid of heights.
#pragma once

#include "system/RenderObject.h"

struct SDL_RWops;

/// A point of the terrain; drawn at `vec` plus the modifiers.
struct MAP_VERTEX {
    GLVector3 vec;
    GLVector2 tex{0, 0};
    float modifier_x = 0;
    float modifier_y = 0;
    float modifier_z = 0;
};

/// One triangle strip over the samples, built at the first drawing and whenever the samples, the
/// segments or the height factor have changed since. Runs over -size/2..size/2 in x, and in z, as
/// stored, from -size towards 0: row 0 of the samples is the far edge. Owns samples and strip,
/// which only cleanup() frees.
class HeightMap : public RenderObject {
public:
    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    void cleanup() override;
    /// Called before each drawing, once the strip is there.
    virtual void modify() {}

    /// Heights 0..255 are the palette indices of an 8-bit bitmap. False, with a line on standard
    /// output, when it cannot be read; there are no samples then. The width must be a multiple
    /// of 4: rows are taken without regard to padding.
    bool loadBMP(const char* file);
    /// The same from an open source (null: could not be opened), which is closed; `name` is for the
    /// message only.
    bool loadBMP(SDL_RWops* source, const char* name);
    /// One byte per sample, row after row. False when the file cannot be opened or the extents make
    /// no map; samples that the file does not have are 0. The depth is not used.
    bool loadRAW(const char* file, int width, int height, int depth);
    /// The sample at (x, y), which wrap around at the far edges only; 0 where there is none.
    int getHeightData(int x, int y) const;

    void setNumSegments(int n);
    void setNumSegments_X(int n);
    void setNumSegments_Y(int n);
    /// World height of one height unit.
    void setHeightFactor(float f);
    /// World extents; a strip that is built already keeps its size.
    void setSize(float x, float z);
    /// Texture coordinate of the sample position (x, y).
    void setTextureCoord(GLVector2* out, float x, float y) const;
    void setVertexColor(int, int) {}
    void initialize();

    int mapsize_x = 0;         ///< samples per row
    int mapsize_y = 0;         ///< rows
    int numVerts = 0;          ///< numSegments_x * numSegments_y * 2
    float stepsize_x = 0;      ///< samples between mesh columns
    float stepsize_y = 0;      ///< samples between mesh rows
    float worldsize_x = 5;     ///< along x
    float worldsize_y = 5;     ///< along z
    float resizefactor_x = 0;  ///< world units per sample
    float resizefactor_y = 0;
    int numSegments_x = 50;  ///< mesh columns
    int numSegments_y = 50;  ///< mesh rows
    float heightfactor = 0.001f;
    unsigned char* mapdata = nullptr;
    int numMapPixels = 0;
    MAP_VERTEX* vertices = nullptr;
    bool initialized = false;

private:
    void freeSamples();
    void freeVertices();
    bool allocateSamples(int width, int height);
    void updateStepSizes();
};
