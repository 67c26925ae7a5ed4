#include "system/RenderObject.h"

#include <GL/gl.h>

#include <algorithm>

namespace {

void turn(GLVector3& v, const GLVector3& axis, float deg) {
    const GLMatrix rotation = rotationAbout(axis, deg);
    v.transform(&rotation);
}

bool areApart(float a, float half_a, float b, float half_b) {
    return std::max(a - half_a, b - half_b) > std::min(a + half_a, b + half_b);
}

void lineLoop(const BoundingBox& box, float y) {
    glBegin(GL_LINE_LOOP);
    glVertex3f(box.min.x, y, box.min.z);
    glVertex3f(box.max.x, y, box.min.z);
    glVertex3f(box.max.x, y, box.max.z);
    glVertex3f(box.min.x, y, box.max.z);
    glEnd();
}

void verticalEdges(const BoundingBox& box, float first_x, float second_x, float z) {
    glBegin(GL_LINES);
    for (const float x : {first_x, second_x}) {
        glVertex3f(x, box.min.y, z);
        glVertex3f(x, box.max.y, z);
    }
    glEnd();
}

}  // namespace

void RenderObject::render() {
    preRender();
    renderMesh();
    postRender();
}

void RenderObject::preRender() {
    GLMatrix placement;
    if (flags & WORLD_POSITIONING) {
        glTranslatef(vPos.x, vPos.y, vPos.z);
        if (rotX != 0)
            placement = rotmatrix_x * placement;
        if (rotY != 0)
            placement = rotmatrix_y * placement;
        if (rotZ != 0)
            placement = rotmatrix_z * placement;
    } else {
        placement.createFromLookAt(vPos.x, vPos.y, vPos.z, vAt.x, vAt.y, vAt.z, vUp.x, vUp.y,
                                   vUp.z);
    }
    glMultMatrixf(placement.v);
    if (scalefactor != GLVector3(1, 1, 1))
        glScalef(scalefactor.x, scalefactor.y, scalefactor.z);

    if (isTextured)
        bindTexture();
    else
        glDisable(GL_TEXTURE_2D);
    if (isAlphaBlending) {
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_BLEND);
    }
    if (!(flags & DEPTH_TESTING))
        glDisable(GL_DEPTH_TEST);
    glColor4f(rendercolor.r, rendercolor.g, rendercolor.b, rendercolor.a);
}

void RenderObject::postRender() {
    if (isAlphaBlending)
        glDisable(GL_BLEND);
    if (multiTexturing) {
        const int layers = static_cast<int>(textures.size());
        for (int i = 0; i < layers; ++i)
            textures[i]->disableTextureUnit(i);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    }
    // Texturing stays as it is: the next object decides about it anew.
    if (!(flags & DEPTH_TESTING))
        glEnable(GL_DEPTH_TEST);
}

void RenderObject::renderBoundings() {
    preRender();
    glColor4f(1, 1, 1, 1);
    glBindTexture(GL_TEXTURE_2D, 0);
    if (flags & BOUNDING_BOX) {
        lineLoop(boundBox, boundBox.min.y);
        lineLoop(boundBox, boundBox.max.y);
        verticalEdges(boundBox, boundBox.min.x, boundBox.max.x, boundBox.min.z);
        verticalEdges(boundBox, boundBox.max.x, boundBox.min.x, boundBox.max.z);
    }
    postRender();
}

void RenderObject::setPosition(float x, float y, float z) {
    const GLVector3 direction = vAt - vPos;
    vPos.set(x, y, -z);
    if (!(flags & WORLD_POSITIONING))
        vAt = vPos + direction;
}

void RenderObject::setXRotation(float deg) {
    rotX = modulo(deg, 360);
    rotmatrix_x.xRotation(rotX);
}

void RenderObject::setYRotation(float deg) {
    rotY = modulo(deg, 360);
    rotmatrix_y.yRotation(rotY);
}

void RenderObject::setZRotation(float deg) {
    rotZ = modulo(deg, 360);
    rotmatrix_z.zRotation(rotZ);
}

void RenderObject::pitch(float deg) {
    GLVector3 d = vAt - vPos;
    GLVector3 axis = cross(&d, &vUp);
    axis.normalize();
    turn(d, axis, deg);
    vAt = vPos + d;
}

void RenderObject::yaw(float deg) {
    GLVector3 d = vAt - vPos;
    turn(d, vUp, deg);
    vAt = vPos + d;
}

void RenderObject::roll(float deg) {
    GLVector3 d = vAt - vPos;
    d.normalize();
    turn(vUp, d, deg);
    vUp.normalize();
}

void RenderObject::move(float distance) {
    GLVector3 d = vAt - vPos;
    d.normalize();
    d = d * distance;
    vPos = vPos + d;
    vAt = vAt + d;
}

void RenderObject::addTexture(Texture* texture) {
    textures.push_back(texture);
    texturescales.push_back(1);
    isTextured = true;
    updateMultiTexturing();
}

void RenderObject::setTexture(Texture* texture, int layer) {
    textures[layer] = texture;
    isTextured = true;
    updateMultiTexturing();
}

void RenderObject::updateMultiTexturing() {
    if (textures.size() > 1)
        multiTexturing = Texture::initMultiTexturing();
}

void RenderObject::scaleTextureInLayer(int layer, float s) {
    if (static_cast<size_t>(layer) < texturescales.size())
        texturescales[layer] = s;
}

void RenderObject::setRenderColor(const GLColor& color) {
    rendercolor = GLColor(color.r, color.g, color.b, rendercolor.a);
}

void RenderObject::bindTexture() {
    const int layers = multiTexturing ? static_cast<int>(textures.size()) : 1;
    for (int i = 0; i < layers; ++i) {
        if (texturescales[i] != 1)
            textures[i]->setTileFactor(texturescales[i]);
        textures[i]->bindTexture(multiTexturing, i);
    }
}

bool RenderObject::isObjectIntersecting(const RenderObject* other) const {
    const auto half = [](float min, float max, float scale) { return (max - min) * scale / 2; };
    const RenderObject& a = *this;
    const RenderObject& b = *other;
    return !areApart(a.vPos.z, half(a.boundBox.min.z, a.boundBox.max.z, a.scalefactor.z), b.vPos.z,
                     half(b.boundBox.min.z, b.boundBox.max.z, b.scalefactor.z)) &&
           !areApart(a.vPos.x, half(a.boundBox.min.x, a.boundBox.max.x, a.scalefactor.x), b.vPos.x,
                     half(b.boundBox.min.x, b.boundBox.max.x, b.scalefactor.x)) &&
           !areApart(a.vPos.y, half(a.boundBox.min.y, a.boundBox.max.y, a.scalefactor.y), b.vPos.y,
                     half(b.boundBox.min.y, b.boundBox.max.y, b.scalefactor.y));
}

float RenderObject::getObjectDistance(const RenderObject* other) const {
    return distance(&other->vPos, &vPos);
}
