#include "system/TexturedQuad.h"

#include <GL/gl.h>

void TexturedQuad::setSize(float x, float y) {
    size_x = x;
    size_y = y;
    halfsize_x = x / 2;
    halfsize_y = y / 2;
}

void TexturedQuad::preRender() {
    glPushMatrix();
    RenderObject::preRender();
}

void TexturedQuad::renderMesh() {
    glBegin(GL_QUADS);
    textureCoord(texturefactor_x, 0);
    glVertex3f(halfsize_x, halfsize_y, 0);
    textureCoord(0, 0);
    glVertex3f(-halfsize_x, halfsize_y, 0);
    textureCoord(0, texturefactor_y);
    glVertex3f(-halfsize_x, -halfsize_y, 0);
    textureCoord(texturefactor_x, texturefactor_y);
    glVertex3f(halfsize_x, -halfsize_y, 0);
    glEnd();
}

void TexturedQuad::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
