#include "SkyDome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

namespace {

using test::GL_CALL;

class SkyDomeTest : public ::testing::Test {
protected:
    SkyDomeTest() { test::clear(); }
    ~SkyDomeTest() override {
        sky.cleanup();
        EXPECT_EQ(test::imbalance(), "");
    }

    SkyDome sky;
};

TEST_F(SkyDomeTest, startsAsDocumented) {
    test::setTicks(123);
    const SkyDome fresh;
    EXPECT_NE(fresh.skymode, SKY_DOME);
    EXPECT_NE(fresh.skymode, SKY_PLANE);
    EXPECT_FALSE(fresh.colormode);
    EXPECT_EQ(fresh.topcolor.r, 1);
    EXPECT_EQ(fresh.bottomcolor.b, 1);
    EXPECT_EQ(fresh.radius, 500);
    EXPECT_EQ(fresh.dtheta, 5);
    EXPECT_EQ(fresh.dphi, 5);
    EXPECT_EQ(fresh.hTile, 1);
    EXPECT_EQ(fresh.vTile, 1);
    EXPECT_EQ(fresh.divisions, 16);
    EXPECT_EQ(fresh.PlanetRadius, 500);
    EXPECT_EQ(fresh.AtmosphereRadius, 900);
    EXPECT_EQ(fresh.pRadius, 0);
    EXPECT_EQ(fresh.rotationspeed, 2);
    EXPECT_EQ(fresh.timer, 123u);
    EXPECT_EQ(fresh.NumVertices, 0);
    EXPECT_EQ(fresh.NumIndices, 0);
    EXPECT_EQ(fresh.vertices, nullptr);
    EXPECT_EQ(fresh.indices, nullptr);
    EXPECT_EQ(SKY_DOME, 0);
    EXPECT_EQ(SKY_PLANE, 1);
}

TEST_F(SkyDomeTest, drawsNothingBeforeInit) {
    sky.render();
    sky.renderDome();
    EXPECT_TRUE(test::vertices().empty());
}

// ---- plane

TEST_F(SkyDomeTest, planeIsABowlAroundTheTop) {
    sky.init(SKY_PLANE);
    EXPECT_EQ(sky.NumVertices, 17 * 17);
    EXPECT_EQ(sky.NumIndices, 16 * 16 * 6);
    EXPECT_EQ(sky.pRadius, 500);
    const float half = std::sqrt(900.f * 900 - 500.f * 500);
    const float delta = half / 8;
    EXPECT_NEAR(2 * half, 1496.66, 0.01);
    EXPECT_NEAR(delta, 93.54, 0.01);
    for (int i = 0; i <= 16; ++i) {
        for (int j = 0; j <= 16; ++j) {
            SCOPED_TRACE(std::to_string(i) + ", " + std::to_string(j));
            const float x = (j - 8) * delta, z = (i - 8) * delta;
            const SKYVERTEX& v = sky.vertices[17 * i + j];
            expectVector(v.vec, x, -(x * x + z * z) / 900, z, 0.01f);
            EXPECT_NEAR(v.tex.x, j / 16.f, 1e-6);
            EXPECT_NEAR(v.tex.y, 1 - i / 16.f, 1e-6);
        }
    }
    EXPECT_NEAR(sky.vertices[0].vec.y, -1244.4, 0.1);
    expectVector(sky.vertices[17 * 8 + 8].vec, 0, 0, 0, 1e-3f);
}

TEST_F(SkyDomeTest, planeTilesItsTexture) {
    sky.hTile = 3;
    sky.vTile = 2;
    sky.init(SKY_PLANE);
    EXPECT_FLOAT_EQ(sky.vertices[16].tex.x, 3);
    EXPECT_FLOAT_EQ(sky.vertices[0].tex.y, 2);
    EXPECT_NEAR(sky.vertices[17 * 16].tex.y, 0, 1e-6);
}

TEST_F(SkyDomeTest, planeCellsAreTwoTriangles) {
    sky.divisions = 2;
    sky.init(SKY_PLANE);
    const std::vector<int> indices(sky.indices, sky.indices + sky.NumIndices);
    EXPECT_THAT(indices, ::testing::ElementsAre(0, 1, 3, 1, 4, 3,  //
                                                1, 2, 4, 2, 5, 4,  //
                                                3, 4, 6, 4, 7, 6,  //
                                                4, 5, 7, 5, 8, 7));
}

TEST_F(SkyDomeTest, planeIsDrawnByItsIndices) {
    Texture texture;
    sky.addTexture(&texture);
    sky.init(SKY_PLANE);
    sky.render();
    EXPECT_EQ(test::count("glBegin"), 1);
    EXPECT_FALSE(test::wasCalled("glNormal3f"));
    EXPECT_EQ(test::count("glColor4f"), 1) << "only that of the object";
    const auto& drawn = test::vertices();
    ASSERT_EQ(drawn.size(), 1536u);
    for (int i = 0; i < 1536; ++i) {
        const SKYVERTEX& v = sky.vertices[sky.indices[i]];
        ASSERT_EQ(drawn[i].primitive, GLenum{GL_TRIANGLES});
        ASSERT_EQ(drawn[i].x, v.vec.x);
        ASSERT_EQ(drawn[i].y, v.vec.y);
        ASSERT_EQ(drawn[i].z, v.vec.z);
        ASSERT_EQ(drawn[i].u[0], v.tex.x);
        ASSERT_EQ(drawn[i].v[0], v.tex.y);
    }
}

TEST_F(SkyDomeTest, planeDivisionsAreClamped) {
    const struct {
        int divisions, vertices, indices;
    } CASES[] = {{0, 4, 6}, {-5, 4, 6}, {1, 4, 6}, {300, 66049, 393216}, {256, 66049, 393216}};
    for (const auto& c : CASES) {
        sky.divisions = c.divisions;
        sky.generatePlane();
        EXPECT_EQ(sky.NumVertices, c.vertices) << c.divisions;
        EXPECT_EQ(sky.NumIndices, c.indices) << c.divisions;
        EXPECT_EQ(sky.divisions, c.divisions);
    }
    // The numbers of the last vertices do not fit an index, and begin again at 0.
    EXPECT_EQ(sky.indices[sky.NumIndices - 2], static_cast<GLIndex>(66048));
    sky.renderPlane();
    EXPECT_EQ(test::vertices().size(), 393216u);
}

// ---- dome

// The dome's coordinates before and after the repair of its seam, by their definition.
std::vector<GLVector2> domeCoordinates(float hTile, float vTile) {
    std::vector<GLVector2> tex;
    const auto add = [&](double phi, double theta) {
        const double p = phi * 0.017453292, t = theta * 0.017453292;
        GLVector3 d(static_cast<float>(500 * std::sin(p) * std::cos(t)),
                    static_cast<float>(500 * std::sin(p) * std::sin(t)),
                    static_cast<float>(500 * std::cos(p)));
        d.normalize();
        tex.emplace_back(
            static_cast<float>(hTile * std::atan2(d.x, d.z) / 6.2831854820251465 + 0.5),
            static_cast<float>(vTile * std::asin(d.y) / 3.1415927 + 0.5));
    };
    for (int phi = 0; phi <= 85; phi += 5) {
        for (int theta = 0; theta <= 355; theta += 5) {
            add(phi, theta);
            add(phi + 5, theta);
            add(phi, theta + 5);
            add(phi + 5, theta + 5);
        }
    }
    for (size_t i = 0; i + 3 < tex.size(); ++i) {
        GLVector2 *a = &tex[i], *b = &tex[i + 1], *c = &tex[i + 2];
        if (a->x - b->x > 0.9f)
            b->x += 1;
        if (b->x - a->x > 0.9f)
            a->x += 1;
        if (a->x - c->x > 0.9f)
            c->x += 1;
        if (c->x - a->x > 0.9f)
            a->x += 1;
        if (b->x - c->x > 0.9f)
            c->x += 1;
        if (c->x - b->x > 0.9f)
            b->x += 1;
        if (a->y - b->y > 0.8f)
            b->y += 1;
        if (b->y - a->y > 0.8f)
            a->y += 1;
        if (a->y - c->y > 0.8f)
            c->y += 1;
        if (c->y - a->y > 0.8f)
            a->y += 1;
        if (b->y - c->y > 0.8f)
            c->y += 1;
        if (c->y - b->y > 0.8f)
            b->y += 1;
    }
    return tex;
}

TEST_F(SkyDomeTest, domeFillsItsVertices) {
    sky.init(SKY_DOME);
    ASSERT_EQ(sky.NumVertices, 5184);
    for (int i = 0; i < 5184; ++i)
        ASSERT_NEAR(vectorLength(&sky.vertices[i].vec), 500, 0.01) << i;
    // The first cell: pole, next row, pole again, next column of the next row.
    expectVector(sky.vertices[0].vec, 0, 0, 500, 1e-3f);
    const float s = 500 * std::sin(DTOR(5.f)), c = 500 * std::cos(DTOR(5.f));
    expectVector(sky.vertices[1].vec, s, 0, c, 0.01f);
    expectVector(sky.vertices[2].vec, 0, 0, 500, 1e-3f);
    expectVector(sky.vertices[3].vec, s * std::cos(DTOR(5.f)), s * std::sin(DTOR(5.f)), c, 0.01f);
    // The last one reaches the rim and the full turn.
    expectVector(sky.vertices[5183].vec, 500, 0, 0, 0.01f);
    EXPECT_NEAR(sky.vertices[1].tex.x, 0.5 + 5 / 360., 1e-5);
    EXPECT_NEAR(sky.vertices[1].tex.y, 0.5, 1e-5);
}

TEST_F(SkyDomeTest, domeCoordinatesGoOnAcrossTheSeam) {
    for (const auto& [h, v] : {std::pair{1.f, 1.f}, {2.f, 1.f}, {4.f, 30.f}}) {
        SkyDome dome;
        dome.hTile = h;
        dome.vTile = v;
        dome.init(SKY_DOME);
        const auto expected = domeCoordinates(h, v);
        ASSERT_EQ(dome.NumVertices, static_cast<int>(expected.size()));
        for (int i = 0; i < dome.NumVertices; ++i) {
            ASSERT_NEAR(dome.vertices[i].tex.x, expected[i].x, 1e-5) << i;
            ASSERT_NEAR(dome.vertices[i].tex.y, expected[i].y, 1e-5) << i;
        }
        dome.cleanup();
    }
}

TEST_F(SkyDomeTest, domeColoursAreGradedByRow) {
    sky.setColorTop(1, 0.5f, 0);
    sky.setColorBottom(0, 0.5f, 0.9f);
    EXPECT_TRUE(sky.colormode);
    sky.init(SKY_DOME);
    for (int row = 0; row < 18; ++row) {
        for (const int corner : {0, 1, 287}) {
            const SKYCOLOR& color = sky.vertices[row * 288 + corner].color;
            EXPECT_NEAR(color.r, 1 - row / 18.f, 1e-5) << row;
            EXPECT_NEAR(color.g, 0.5f, 1e-5);
            EXPECT_NEAR(color.b, 0.05f * row, 1e-5);
        }
    }
    sky.render();
    EXPECT_EQ(test::count("glColor4f"), 1) << "the colours are not drawn";
}

TEST_F(SkyDomeTest, withoutColoursVerticesAreBlack) {
    sky.init(SKY_DOME);
    EXPECT_EQ(sky.vertices[100].color.r, 0);
}

TEST_F(SkyDomeTest, domeIsDrawnAsOneStrip) {
    Texture texture;
    sky.addTexture(&texture);
    sky.init(SKY_DOME);
    sky.render();
    const auto& drawn = test::vertices();
    ASSERT_EQ(drawn.size(), 5184u);
    EXPECT_EQ(test::count("glBegin"), 1);
    EXPECT_EQ(drawn[0].primitive, GLenum{GL_TRIANGLE_STRIP});
    for (int i = 0; i < 5184; ++i) {
        ASSERT_EQ(drawn[i].x, sky.vertices[i].vec.x);
        ASSERT_EQ(drawn[i].u[0], sky.vertices[i].tex.x);
        ASSERT_EQ(drawn[i].v[0], sky.vertices[i].tex.y);
    }
}

TEST_F(SkyDomeTest, oneColourIsEnough) {
    sky.setColorTop(0.25f, 0.5f, 0.75f);
    EXPECT_TRUE(sky.colormode);
    sky.init(SKY_DOME);
    const SKYCOLOR& last = sky.vertices[17 * 288].color;
    EXPECT_NEAR(last.r, 0.25f + 0.75f * 17 / 18, 1e-5);
    EXPECT_NEAR(last.g, 0.5f + 0.5f * 17 / 18, 1e-5);
    EXPECT_NEAR(last.b, 0.75f + 0.25f * 17 / 18, 1e-5);

    SkyDome other;
    other.setColorBottom(0, 0, 0);
    EXPECT_TRUE(other.colormode);
    other.init(SKY_DOME);
    EXPECT_EQ(other.vertices[0].color.r, 1);
    EXPECT_NEAR(other.vertices[9 * 288].color.b, 0.5f, 1e-5);
    other.cleanup();
}

TEST_F(SkyDomeTest, domeOfOddStepsLeavesTheRestOfItsArrayEmpty) {
    sky.dphi = 7;
    sky.setColorTop(1, 1, 1);
    sky.setColorBottom(0, 0, 0);
    sky.init(SKY_DOME);
    // Room for 12.86 rows of 72 cells; twelve of them, 0 to 77 degrees, end above the rim.
    ASSERT_EQ(sky.NumVertices, 3702);
    const float rim = static_cast<float>(84 * 0.017453292);
    EXPECT_NEAR(sky.vertices[12 * 288 - 1].vec.z, 500 * std::cos(rim), 1e-2);
    EXPECT_NEAR(sky.vertices[11 * 288].color.r, 1 - 11 / 12.f, 1e-5);
    for (int i = 12 * 288; i < sky.NumVertices; ++i)
        ASSERT_EQ(sky.vertices[i].vec, GLVector3()) << i;
}

TEST_F(SkyDomeTest, stepsFromOneDegreeOnMakeADome) {
    sky.dtheta = sky.dphi = 1;
    sky.init(SKY_DOME);
    EXPECT_EQ(sky.NumVertices, 129600);
    for (auto [theta, phi] : {std::pair(0.5f, 5.0f), {5.0f, 0.5f}}) {
        sky.dtheta = theta;
        sky.dphi = phi;
        sky.generateDome();
        EXPECT_EQ(sky.NumVertices, 0);
        EXPECT_EQ(sky.vertices, nullptr);
    }
}

TEST_F(SkyDomeTest, domeStepsThatAreNotWholeStayWithinTheArray) {
    for (const float step : {7.5f, 1.9f, 89.f, 100.f, 400.f}) {
        sky.dtheta = sky.dphi = step;
        sky.generateDome();
        EXPECT_EQ(sky.NumVertices, static_cast<int>(360 / step * (90 / step) * 4)) << step;
    }
    for (const float step : {0.f, 0.5f, -5.f, std::nanf("")}) {
        sky.dtheta = sky.dphi = step;
        sky.generateDome();
        EXPECT_EQ(sky.NumVertices, 0) << step;
    }
}

// ---- modes

TEST_F(SkyDomeTest, initBuildsOnlyForANewMode) {
    sky.init(SKY_PLANE);
    const SKYVERTEX* plane = sky.vertices;
    sky.init(SKY_PLANE);
    EXPECT_EQ(sky.vertices, plane);
    sky.init(SKY_DOME);
    EXPECT_EQ(sky.NumVertices, 5184);
    EXPECT_EQ(sky.NumIndices, 1536) << "the indices of the plane stay";
    sky.init(SKY_PLANE);
    EXPECT_EQ(sky.NumVertices, 289);
    sky.init(static_cast<SKYDOME_MODE>(5));
    EXPECT_EQ(sky.skymode, 5);
    EXPECT_EQ(sky.NumVertices, 289);
    sky.render();
    EXPECT_EQ(test::vertices()[0].primitive, GLenum{GL_TRIANGLES}) << "drawn like a plane";
}

TEST_F(SkyDomeTest, staleIndicesReadNothingBeyondTheVertices) {
    sky.divisions = 256;
    sky.init(SKY_PLANE);
    sky.init(SKY_DOME);
    sky.init(static_cast<SKYDOME_MODE>(2));
    sky.render();
    EXPECT_FALSE(test::vertices().empty());
    EXPECT_LT(test::vertices().size(), 393216u);
}

TEST_F(SkyDomeTest, cleanupFreesBothArrays) {
    sky.init(SKY_PLANE);
    sky.cleanup();
    EXPECT_EQ(sky.vertices, nullptr);
    EXPECT_EQ(sky.indices, nullptr);
    EXPECT_EQ(sky.NumVertices, 0);
    EXPECT_EQ(sky.NumIndices, 0);
    sky.render();
    EXPECT_TRUE(test::vertices().empty());
}

// ---- turning

TEST_F(SkyDomeTest, turnsWithTheClock) {
    test::setTicks(5000);
    SkyDome turning;
    turning.setRotationSpeed(-0.75f);
    test::advanceTicks(1000);
    turning.render();
    EXPECT_EQ(turning.getYRotation(), -0.75f);
    turning.render();
    EXPECT_EQ(turning.getYRotation(), -0.75f) << "no time has passed";
    EXPECT_EQ(turning.timer, 6000u);
}

TEST_F(SkyDomeTest, turnsIndependentlyOfTheFrameRate) {
    test::setTicks(0);
    SkyDome turning;
    turning.setRotationSpeed(-0.75f);
    for (int i = 0; i < 6000; ++i) {
        test::advanceTicks(10);
        turning.render();
    }
    EXPECT_NEAR(turning.getYRotation(), -45, 0.01);
    // One long step, with the turn beyond a full one.
    test::advanceTicks(600000);
    turning.render();
    EXPECT_NEAR(turning.getYRotation(), -45 - 450 + 360, 0.01);
}

TEST_F(SkyDomeTest, turnsAcrossTheWrapOfTheClock) {
    test::setTicks(0xffffffffu - 499);
    SkyDome turning;
    turning.setRotationSpeed(10);
    test::advanceTicks(1000);
    turning.render();
    EXPECT_EQ(turning.getYRotation(), 10);
}

TEST_F(SkyDomeTest, raisesThePlane) {
    sky.init(SKY_PLANE);
    sky.render();
    EXPECT_EQ(test::callsOf("glTranslatef").back(), (GL_CALL{"glTranslatef", {0, 500, 0}}));
    EXPECT_FALSE(test::wasCalled("glRotatef"));
    EXPECT_EQ(test::calls()[0], (GL_CALL{"glGetBooleanv", {GL_LIGHTING}}));
    EXPECT_EQ(test::calls()[1].name, "glPushMatrix");
    EXPECT_EQ(test::calls()[2], (GL_CALL{"glDisable", {GL_LIGHTING}}));
}

TEST_F(SkyDomeTest, sinksAndTurnsTheDome) {
    sky.init(SKY_DOME);
    sky.render();
    const int move = test::indexOf(GL_CALL{"glTranslatef", {0, -100, 0}});
    EXPECT_GT(move, test::indexOf("glMultMatrixf"));
    EXPECT_EQ(test::calls()[move + 1], (GL_CALL{"glRotatef", {270, 1, 0, 0}}));
}

TEST_F(SkyDomeTest, restoresLighting) {
    sky.init(SKY_PLANE);
    sky.render();
    EXPECT_FALSE(test::isEnabled(GL_LIGHTING));
    EXPECT_FALSE(test::wasCalled(GL_CALL{"glEnable", {GL_LIGHTING}}));
    glEnable(GL_LIGHTING);
    test::clear();
    sky.preRender();
    EXPECT_FALSE(test::isEnabled(GL_LIGHTING));
    sky.postRender();
    EXPECT_TRUE(test::isEnabled(GL_LIGHTING));
    EXPECT_LT(test::indexOf(GL_CALL{"glEnable", {GL_LIGHTING}}), test::indexOf("glPopMatrix"));
    glDisable(GL_LIGHTING);
}

}  // namespace
