// Base of everything that is drawn.
#pragma once

#include <vector>

#include "system/GLHelpers.h"
#include "system/Texture.h"

/// Combined with |.
enum RENDEROBJECT_FLAG : int {
    INTERPOLATION = 1,      ///< keyframe models blend between frames
    ALPHABLENDING = 2,      ///< not read; see enableAlphaBlending
    WORLD_POSITIONING = 4,  ///< placed by position and angles; else by position, view point and up
    DEPTH_TESTING = 8,      ///< clear: drawn without depth test
    BOUNDING_SPHERE = 16,   ///< not read
    BOUNDING_BOX = 32,      ///< renderBoundings draws the box
};

constexpr RENDEROBJECT_FLAG operator|(RENDEROBJECT_FLAG a, RENDEROBJECT_FLAG b) {
    return static_cast<RENDEROBJECT_FLAG>(static_cast<int>(a) | static_cast<int>(b));
}

struct BoundingSphere {
    GLVector3 center;
    float radius;
};

/// Corners in model space.
struct BoundingBox {
    GLVector3 min;
    GLVector3 max;
};

/// Placement, colour and texture layers of a drawable, and the three steps that draw it.
///
/// Setters of positions and directions store z negated and getters negate it back; everything else
/// works on the stored values, which are those that GL gets. Textures are not owned. Subclasses
/// push the model-view matrix before the base preRender and pop it before the base postRender.
class RenderObject {
public:
    RenderObject() = default;
    virtual ~RenderObject() = default;

    virtual void preRender();
    virtual void renderMesh() {}
    virtual void postRender();
    /// Frees GL objects and meshes; while the context is current.
    virtual void cleanup() {}
    virtual void getCollisionNormal(RenderObject* /*other*/, GLVector3* /*normal*/) {}

    void render();
    /// Draws the bounding box in white lines if BOUNDING_BOX is set.
    void renderBoundings();

    /// Moves the view point along when placed by it.
    void setPosition(float x, float y, float z);
    void setPosition(GLVector3 position) { setPosition(position.x, position.y, position.z); }
    GLVector3 getPosition() const { return {vPos.x, vPos.y, -vPos.z}; }
    void scale(float s) { scalefactor.set(s, s, s); }
    void scale(float x, float y, float z) { scalefactor.set(x, y, z); }

    // Degrees; the angles stay within (-360, 360) and keep their sign.
    void rotateX(float deg) { setXRotation(rotX + deg); }
    void rotateY(float deg) { setYRotation(rotY + deg); }
    void rotateZ(float deg) { setZRotation(rotZ + deg); }
    void setXRotation(float deg);
    void setYRotation(float deg);
    void setZRotation(float deg);
    float getXRotation() const { return rotX; }
    float getYRotation() const { return rotY; }
    float getZRotation() const { return rotZ; }

    // The view point does not move with the position here.
    void setPositionVector(float x, float y, float z) { vPos.set(x, y, -z); }
    void setPositionVector(const GLVector3* v) { setPositionVector(v->x, v->y, v->z); }
    void setViewVector(float x, float y, float z) { vAt.set(x, y, -z); }
    void setViewVector(const GLVector3* v) { setViewVector(v->x, v->y, v->z); }
    void setUpVector(float x, float y, float z) { vUp.set(x, y, -z); }
    void setUpVector(const GLVector3* v) { setUpVector(v->x, v->y, v->z); }
    GLVector3 getPositionVector() const { return {vPos.x, vPos.y, -vPos.z}; }
    GLVector3 getViewVector() const { return {vAt.x, vAt.y, -vAt.z}; }
    GLVector3 getUpVector() const { return {vUp.x, vUp.y, -vUp.z}; }

    // Turns of the viewing direction in degrees, and a step along it.
    void pitch(float deg);
    void yaw(float deg);
    void roll(float deg);
    void move(float distance);

    void addTexture(Texture* texture);
    /// Replaces an existing layer.
    void setTexture(Texture* texture, int layer);
    /// Tile factor given to the layer's texture whenever this object binds it; 1 leaves the
    /// texture's own alone. Layers that are not there are ignored.
    void scaleTextureInLayer(int layer, float s);
    void addFlags(RENDEROBJECT_FLAG f) { flags = static_cast<RENDEROBJECT_FLAG>(flags | f); }
    void removeFlags(RENDEROBJECT_FLAG f) { flags = static_cast<RENDEROBJECT_FLAG>(flags & ~f); }
    /// Alpha of the render colour.
    void setAlpha(float a) { rendercolor.a = a; }
    void enableAlphaBlending(bool on) { isAlphaBlending = on; }
    /// Keeps the alpha.
    void setRenderColor(const GLColor& color);
    void bindTexture();
    /// Issues the coordinate for every layer that is drawn.
    void textureCoord(float u, float v);

    /// Whether the two scaled boxes, each centred on its object and not turned, overlap or touch.
    bool isObjectIntersecting(const RenderObject* other) const;
    float getObjectDistance(const RenderObject* other) const;

    GLMatrix rotmatrix_x;
    GLMatrix rotmatrix_y;
    GLMatrix rotmatrix_z;
    float rotX = 0, rotY = 0, rotZ = 0;
    GLVector3 scalefactor{1, 1, 1};
    float alpha = 1;  ///< for subclasses; setAlpha does not touch it
    std::vector<Texture*> textures;
    std::vector<float> texturescales;
    bool isTextured = false;
    bool isAlphaBlending = false;
    bool multiTexturing = false;
    GLColor rendercolor;
    GLVector3 vPos;
    GLVector3 vAt{0, 0, -1};
    GLVector3 vUp{0, 1, 0};
    GLVector3 vInitPos;
    GLVector3 vInitAt{0, 0, 1};  ///< not negated, unlike vAt
    GLVector3 vInitUp{0, 1, 0};
    GLVector3* boundingData = nullptr;
    BoundingSphere boundSphere;
    BoundingBox boundBox;
    int avoidance_priority = 0;
    bool avoiding = false;
    RENDEROBJECT_FLAG flags = INTERPOLATION | WORLD_POSITIONING | DEPTH_TESTING;

private:
    void updateMultiTexturing();
};

inline void RenderObject::textureCoord(float u, float v) {
    if (!isTextured)
        return;
    if (!multiTexturing) {
        textures[0]->setGLCoordinates(u, v, false, 0);
        return;
    }
    const int layers = static_cast<int>(textures.size());
    for (int i = 0; i < layers; ++i)
        textures[i]->setGLCoordinates(u, v, true, i);
}
