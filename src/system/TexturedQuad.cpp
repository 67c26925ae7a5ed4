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
    const float left = (2 * part_left - 1) * halfsize_x, u_left = part_left * texturefactor_x;
    const float right = (2 * part_right - 1) * halfsize_x, u_right = part_right * texturefactor_x;
    glBegin(GL_QUADS);
    textureCoord(u_right, 0);
    glVertex3f(right, halfsize_y, 0);
    textureCoord(u_left, 0);
    glVertex3f(left, halfsize_y, 0);
    textureCoord(u_left, texturefactor_y);
    glVertex3f(left, -halfsize_y, 0);
    textureCoord(u_right, texturefactor_y);
    glVertex3f(right, -halfsize_y, 0);
    glEnd();
}

void TexturedQuad::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
