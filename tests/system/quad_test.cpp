#include "Quad.h"

#include <gtest/gtest.h>

#include "support.h"
#include "support/gl_recorder.h"

namespace {

const struct {
    float x, y, z, u, v;
} CORNERS[] = {
    {-1, -1, 1, 0, 0},  {1, -1, 1, 1, 0},  {1, 1, 1, 1, 1},  {-1, 1, 1, 0, 1},   // front
    {-1, -1, -1, 1, 0}, {-1, 1, -1, 1, 1}, {1, 1, -1, 0, 1}, {1, -1, -1, 0, 0},  // back
    {-1, 1, -1, 0, 1},  {-1, 1, 1, 0, 0},  {1, 1, 1, 1, 0},  {1, 1, -1, 1, 1},   // top
    {-1, -1, -1, 1, 1}, {1, -1, -1, 0, 1}, {1, -1, 1, 0, 0}, {-1, -1, 1, 1, 0},  // bottom
    {1, -1, -1, 1, 0},  {1, 1, -1, 1, 1},  {1, 1, 1, 0, 1},  {1, -1, 1, 0, 0},   // right
    {-1, -1, -1, 0, 0}, {-1, -1, 1, 1, 0}, {-1, 1, 1, 1, 1}, {-1, 1, -1, 0, 1},  // left
};
const GLVector3 NORMALS[] = {{0, 0, 1}, {0, 0, -1}, {0, 1, 0}, {0, -1, 0}, {1, 0, 0}, {-1, 0, 0}};

TEST(Quad, isACube) {
    test::clear();
    Texture texture;
    Quad quad;
    quad.addTexture(&texture);
    quad.render();
    EXPECT_EQ(test::imbalance(), "");
    EXPECT_EQ(test::count("glBegin"), 1);
    EXPECT_EQ(test::count("glNormal3f"), 6);

    const auto& vertices = test::vertices();
    ASSERT_EQ(vertices.size(), 24u);
    for (int i = 0; i < 24; ++i) {
        SCOPED_TRACE(i);
        const test::GL_VERTEX& v = vertices[i];
        EXPECT_EQ(v.primitive, GLenum{GL_QUADS});
        expectVector({v.x, v.y, v.z}, CORNERS[i].x, CORNERS[i].y, CORNERS[i].z, 0);
        EXPECT_EQ(v.u[0], CORNERS[i].u);
        EXPECT_EQ(v.v[0], CORNERS[i].v);
        expectVector({v.normal[0], v.normal[1], v.normal[2]}, NORMALS[i / 4].x, NORMALS[i / 4].y,
                     NORMALS[i / 4].z, 0);
    }
}

TEST(Quad, facesAreCounterClockwiseFromOutside) {
    test::clear();
    Quad quad;
    quad.render();
    const auto& v = test::vertices();
    ASSERT_EQ(v.size(), 24u);
    for (int face = 0; face < 6; ++face) {
        const auto corner = [&](int i) {
            return GLVector3(v[face * 4 + i].x, v[face * 4 + i].y, v[face * 4 + i].z);
        };
        const GLVector3 a = corner(1) - corner(0), b = corner(2) - corner(1);
        const GLVector3 outside = cross(&a, &b);
        EXPECT_GT(dot(&outside, &NORMALS[face]), 0) << face;
    }
}

TEST(Quad, keepsItsPlacementToItself) {
    test::clear();
    Quad quad;
    quad.removeFlags(DEPTH_TESTING);
    quad.render();
    EXPECT_EQ(test::calls().front().name, "glPushMatrix");
    EXPECT_EQ(test::calls()[1].name, "glTranslatef");
    EXPECT_LT(test::indexOf("glEnd"), test::indexOf("glPopMatrix"));
    EXPECT_LT(test::indexOf("glPopMatrix"),
              test::indexOf(test::GL_CALL{"glEnable", {GL_DEPTH_TEST}}));
}

}  // namespace
