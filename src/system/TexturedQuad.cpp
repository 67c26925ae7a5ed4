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
    const auto corner = [this](const float(&side)[2], float row) {
        const float part = side[0] + (side[1] - side[0]) * row;
        textureCoord(part * texturefactor_x, row * texturefactor_y);
        glVertex3f((2 * part - 1) * halfsize_x, (1 - 2 * row) * halfsize_y, 0);
    };
    glBegin(GL_QUADS);
    corner(part_right, part_top);
    corner(part_left, part_top);
    corner(part_left, part_bottom);
    corner(part_right, part_bottom);
    glEnd();
}

void TexturedQuad::postRender() {
    glPopMatrix();
    RenderObject::postRender();
}
