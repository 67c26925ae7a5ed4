#include "Quad.h"

#include <GL/gl.h>

namespace {

struct CORNER {
    float x, y, z, u, v;
};

struct FACE {
    GLVector3 normal;
    CORNER corners[4];
};

const FACE FACES[] = {
    // front
    {{0, 0, 1}, {{-1, -1, 1, 0, 0}, {1, -1, 1, 1, 0}, {1, 1, 1, 1, 1}, {-1, 1, 1, 0, 1}}},
    // back
    {{0, 0, -1}, {{-1, -1, -1, 1, 0}, {-1, 1, -1, 1, 1}, {1, 1, -1, 0, 1}, {1, -1, -1, 0, 0}}},
    // top
    {{0, 1, 0}, {{-1, 1, -1, 0, 1}, {-1, 1, 1, 0, 0}, {1, 1, 1, 1, 0}, {1, 1, -1, 1, 1}}},
    // bottom
    {{0, -1, 0}, {{-1, -1, -1, 1, 1}, {1, -1, -1, 0, 1}, {1, -1, 1, 0, 0}, {-1, -1, 1, 1, 0}}},
    // right
    {{1, 0, 0}, {{1, -1, -1, 1, 0}, {1, 1, -1, 1, 1}, {1, 1, 1, 0, 1}, {1, -1, 1, 0, 0}}},
    // left
    {{-1, 0, 0}, {{-1, -1, -1, 0, 0}, {-1, -1, 1, 1, 0}, {-1, 1, 1, 1, 1}, {-1, 1, -1, 0, 1}}},
};

}  // namespace

void Quad::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void Quad::renderMesh() {
    glBegin(GL_QUADS);
    for (const FACE& face : FACES) {
        glNormal3f(face.normal.x, face.normal.y, face.normal.z);
        for (const CORNER& c : face.corners) {
            textureCoord(c.u, c.v);
            glVertex3f(c.x, c.y, c.z);
        }
    }
    glEnd();
}

void Quad::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
