#include "system/TexturedQuad.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/gl_recorder.h"

namespace {

using test::GL_CALL;

struct CORNER {
    float u, v, x, y;
};

void expectCorners(const std::vector<CORNER>& expected) {
    const auto& vertices = test::vertices();
    ASSERT_EQ(vertices.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(vertices[i].primitive, GLenum{GL_QUADS});
        EXPECT_EQ(vertices[i].begin, 0);
        EXPECT_EQ(vertices[i].u[0], expected[i].u);
        EXPECT_EQ(vertices[i].v[0], expected[i].v);
        EXPECT_EQ(vertices[i].x, expected[i].x);
        EXPECT_EQ(vertices[i].y, expected[i].y);
        EXPECT_EQ(vertices[i].z, 0);
    }
}

class TexturedQuadTest : public ::testing::Test {
protected:
    TexturedQuadTest() {
        test::clear();
        quad.addTexture(&texture);
    }
    ~TexturedQuadTest() override { EXPECT_EQ(test::imbalance(), ""); }

    Texture texture;
    TexturedQuad quad;
};

TEST_F(TexturedQuadTest, spansOneUnitAtFirst) {
    EXPECT_EQ(quad.size_x, 1);
    EXPECT_EQ(quad.size_y, 1);
    EXPECT_EQ(quad.halfsize_x, 0.5f);
    EXPECT_EQ(quad.halfsize_y, 0.5f);
    quad.render();
    expectCorners(
        {{1, 0, 0.5f, 0.5f}, {0, 0, -0.5f, 0.5f}, {0, 1, -0.5f, -0.5f}, {1, 1, 0.5f, -0.5f}});
    EXPECT_FALSE(test::wasCalled("glNormal3f"));
}

TEST_F(TexturedQuadTest, repeatsItsTexture) {
    quad.setTextureFactor(4);
    quad.render();
    expectCorners(
        {{4, 0, 0.5f, 0.5f}, {0, 0, -0.5f, 0.5f}, {0, 4, -0.5f, -0.5f}, {4, 4, 0.5f, -0.5f}});
    test::clear();
    quad.setTextureFactorX(2);
    quad.setTextureFactorY(3);
    quad.render();
    expectCorners(
        {{2, 0, 0.5f, 0.5f}, {0, 0, -0.5f, 0.5f}, {0, 3, -0.5f, -0.5f}, {2, 3, 0.5f, -0.5f}});
}

TEST_F(TexturedQuadTest, hasASize) {
    quad.setSize(30, 12);
    EXPECT_EQ(quad.size_x, 30);
    EXPECT_EQ(quad.size_y, 12);
    quad.render();
    expectCorners({{1, 0, 15, 6}, {0, 0, -15, 6}, {0, 1, -15, -6}, {1, 1, 15, -6}});
}

TEST_F(TexturedQuadTest, isMirroredByANegativeSize) {
    quad.setSize(-2, 2);
    EXPECT_EQ(quad.halfsize_x, -1);
    quad.render();
    expectCorners({{1, 0, -1, 1}, {0, 0, 1, 1}, {0, 1, 1, -1}, {1, 1, -1, -1}});
}

TEST_F(TexturedQuadTest, issuesNoCoordinatesWithoutATexture) {
    TexturedQuad plain;
    plain.render();
    EXPECT_EQ(test::count("glTexCoord2f"), 0);
    EXPECT_EQ(test::count("glMultiTexCoord2fARB"), 0);
    EXPECT_EQ(test::vertices().size(), 4u);
}

TEST_F(TexturedQuadTest, issuesTheCoordinatesOfEveryLayer) {
    Texture second;
    second.setTileFactor(12);
    quad.addTexture(&second);
    quad.render();
    EXPECT_EQ(test::vertices()[3].u[0], 1);
    EXPECT_EQ(test::vertices()[3].u[1], 12);
    EXPECT_EQ(test::vertices()[3].v[1], 12);
}

TEST_F(TexturedQuadTest, keepsItsPlacementToItself) {
    quad.enableAlphaBlending(true);
    quad.render();
    EXPECT_EQ(test::calls().front().name, "glPushMatrix");
    EXPECT_EQ(test::calls()[1].name, "glTranslatef");
    EXPECT_TRUE(test::wasCalled(GL_CALL{"glEnable", {GL_BLEND}}));
    // The matrix goes before the base restores blending.
    const int pop = test::indexOf("glPopMatrix");
    ASSERT_GE(pop, 0);
    EXPECT_LT(test::indexOf("glEnd"), pop);
    EXPECT_LT(pop, test::indexOf(GL_CALL{"glDisable", {GL_BLEND}}));
    test::clear();
    quad.cleanup();
    EXPECT_TRUE(test::calls().empty());
}

TEST_F(TexturedQuadTest, APartIsAPieceOfTheWidth) {
    quad.setSize(8, 2);
    quad.setPart(0.25f, 0.5f);
    quad.render();
    expectCorners({{0.5f, 0, 0, 1}, {0.25f, 0, -2, 1}, {0.25f, 1, -2, -1}, {0.5f, 1, 0, -1}});
}

TEST_F(TexturedQuadTest, ATaperedPartHasSlantingSides) {
    quad.setSize(8, 2);
    quad.setTaperedPart(0, 1, 0.25f, 0.5f);
    quad.render();
    expectCorners({{1, 0, 4, 1}, {0, 0, -4, 1}, {0.25f, 1, -2, -1}, {0.5f, 1, 0, -1}});
    quad.setRows(0.5f, 1);
    test::clear();
    quad.render();
    expectCorners(
        {{0.75f, 0.5f, 2, 0}, {0.125f, 0.5f, -3, 0}, {0.25f, 1, -2, -1}, {0.5f, 1, 0, -1}});
}

}  // namespace
