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
    const float top = (1 - 2 * part_top) * halfsize_y, v_top = part_top * texturefactor_y;
    const float bottom = (1 - 2 * part_bottom) * halfsize_y,
                v_bottom = part_bottom * texturefactor_y;
    glBegin(GL_QUADS);
    textureCoord(u_right, v_top);
    glVertex3f(right, top, 0);
    textureCoord(u_left, v_top);
    glVertex3f(left, top, 0);
    textureCoord(u_left, v_bottom);
    glVertex3f(left, bottom, 0);
    textureCoord(u_right, v_bottom);
    glVertex3f(right, bottom, 0);
    glEnd();
}

void TexturedQuad::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
