// Keyframe models: the mesh and the animation state of one ".nlm" file.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "system/GLHelpers.h"

class RenderObject;
struct MODEL_MESH;

/// One named frame range.
struct SAnimation {
    float cur;  ///< playing position in frames: whole part the keyframe, fraction the blend weight
    int start;  ///< first frame
    int end;    ///< last frame, inclusive
    std::string name;
};

/// One decoded keyframe, in model axes: x to the right, y up, the nose along -z.
struct MDX_FRAMEDATA {
    std::unique_ptr<GLVertex[]> vertices;  ///< NumVerts entries
    std::unique_ptr<GLVector2[]> tex;      ///< texture coordinates, named by texindices
};

/// A triangle mesh stored once per keyframe, its frame ranges and the one clock that plays them.
/// Shared by any number of ModelCore objects, all of which show the same moment of the animation.
/// An empty model (nothing loaded, a load that failed, after cleanup) may be used like any other
/// and draws nothing; without an animation it says so on standard output, every time.
class QModel {
public:
    QModel();

    /// Loads a ".nlm" file, which has the MD3 layout. False, after one line on standard output,
    /// when the file cannot be opened or is broken; the model is then empty,
    /// but for its animations.
    bool loadMD3(const char* path);
    /// Loads a file of the MD2 layout and appends the animations that its frame names tell.
    /// Failures as with loadMD3.
    bool loadMD2(const char* path);
    /// The bytes of such a file, wherever they come from; path only names them in a message.
    bool decodeMD3(const uint8_t* data, size_t size, const char* path);
    bool decodeMD2(const uint8_t* data, size_t size, const char* path);

    /// Adds a range, both ends clamped to the frames there are: call it after loading.
    void addAnimation(int start, int end, const char* name);
    /// Rewinds and plays the first animation of exactly this name; nothing changes without one.
    void setAnimation(const char* name);
    /// Keyframes per second. A rate that is not above zero stands still.
    void setFPS(float fps);
    int getAnimationCount();
    /// Copies the name with its final zero; the caller answers for index and room.
    void getAnimationName(int index, char* out);
    /// Frame numbers of the current animation, 0 without one.
    int getActFrame();
    int getStartFrame();
    int getEndFrame();

    /// Pushes the matrix and advances the animation by the time since the last call, whichever
    /// object made that.
    void preRender();
    /// Draws with the texture layers and flags of the given object.
    void renderMesh(RenderObject* obj);
    void postRender();

    void renderSingleFrame(int frame);
    void renderAnimation();

    /// Frees the mesh; counts and animations stay.
    void cleanup();

    bool loaded = false;
    bool test = false;
    std::vector<SAnimation> m_anim;
    char actanimation[16] = {};
    float fps = 15.0f;
    float timePerFrame = 1000.0f / 15.0f;  ///< milliseconds per keyframe
    int CurFrame = 0;
    int NumFrames = 0;
    int NumVerts = 0;
    int NumTris = 0;
    Uint32 time;  ///< tick count of the last animation step
    int curAni = 0;
    int renderframe = 0;
    bool playing = true;
    int lastInterpolationFrame = 0;
    std::unique_ptr<MDX_FRAMEDATA[]> framedata;  ///< NumFrames keyframes
    std::unique_ptr<GLIndex[]> indices;          ///< 3 per triangle, below NumVerts
    std::unique_ptr<GLIndex[]> texindices;       ///< 3 per triangle, within every keyframe's tex
    MDX_FRAMEDATA* actframe = nullptr;           ///< keyframe being drawn
    MDX_FRAMEDATA* nextframe = nullptr;          ///< keyframe blended towards
    float interpolation_val = 0.0f;              ///< weight of nextframe, 0..1
    RenderObject* renderobj = nullptr;           ///< not owned

private:
    /// Makes the mesh this model's; nothing empties it. Tells which.
    bool adopt(std::optional<MODEL_MESH> mesh);
    MDX_FRAMEDATA* keyframe(int frame);
    void blend();
    template <class Positioned>
    void renderTriangles(Positioned position);
    void renderKeyframe();

    // The positions between two keyframes, kept from one drawing object to the next.
    std::unique_ptr<GLVector3[]> blended;
    MDX_FRAMEDATA* blendedact = nullptr;
    MDX_FRAMEDATA* blendednext = nullptr;
    float blendedval = 0.0f;
};
