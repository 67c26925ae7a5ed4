// The sky: a mesh that turns slowly about the vertical axis.
#pragma once

#include <GL/gl.h>
#include <SDL_stdinc.h>

#include "system/RenderObject.h"

enum SKYDOME_MODE : int {
    SKY_DOME = 0,   ///< hemisphere
    SKY_PLANE = 1,  ///< square grid bent down at its edges
};

struct SKYCOLOR {
    float r, g, b;
};

struct SKYVERTEX {
    GLVector3 vec;
    GLVector2 tex{0, 0};
    SKYCOLOR color;
};

/// Give it a texture, build the mesh with init(), render each frame. Turns with the clock, from its
/// construction on. Owns its arrays, which only cleanup() frees.
class SkyDome : public RenderObject {
public:
    SkyDome();

    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    void cleanup() override;

    /// Builds the mesh if the mode is another one than before.
    void init(SKYDOME_MODE mode);
    /// Degrees per second.
    void setRotationSpeed(float speed) { rotationspeed = speed; }
    // Vertex colours of the next dome, graded from top to bottom; they are computed but not drawn.
    void setColorTop(float r, float g, float b);
    void setColorBottom(float r, float g, float b);
    void generateDome();
    void generatePlane();
    void renderDome();
    void renderPlane();

    SKYDOME_MODE skymode = static_cast<SKYDOME_MODE>(-1);  ///< none yet: the first init() builds
    bool colormode = false;
    SKYCOLOR topcolor{1, 1, 1};
    SKYCOLOR bottomcolor{1, 1, 1};
    float radius = 500;  ///< of the dome
    float dtheta = 5;    ///< dome step in longitude, degrees, 1 or more
    float dphi = 5;      ///< dome step in latitude, degrees, 1 or more
    float hTile = 1;     ///< texture repeats along u
    float vTile = 1;     ///< texture repeats along v
    int divisions = 16;  ///< plane cells per side, used within 1..256
    float PlanetRadius = 500;
    float AtmosphereRadius = 900;
    float pRadius = 0;        ///< lift of the plane when it is drawn
    float rotationspeed = 2;  ///< degrees per second
    Uint32 timer;             ///< tick of the last frame
    int NumVertices = 0;
    int NumIndices = 0;  ///< plane only
    SKYVERTEX* vertices = nullptr;
    GLIndex* indices = nullptr;
    GLboolean lightenabled = GL_FALSE;  ///< lighting before this object's drawing

private:
    void repairSeam(int i, float GLVector2::*coordinate, float threshold);
};
