#include "system/RenderObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support.h"
#include "support/gl_recorder.h"

namespace {

using test::GL_CALL;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<double> IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
const float SIN30 = 0.5f, COS30 = std::sqrt(0.75f);

GLMatrix placementOf(RenderObject& object) {
    test::clear();
    object.preRender();
    GLMatrix m;
    const auto calls = test::callsOf("glMultMatrixf");
    EXPECT_EQ(calls.size(), 1u);
    if (!calls.empty())
        std::copy(calls[0].args.begin(), calls[0].args.end(), m.v);
    return m;
}

void expectEqual(const GLMatrix& a, const GLMatrix& b) {
    for (int i = 0; i < 16; ++i)
        EXPECT_FLOAT_EQ(a.v[i], b.v[i]) << i;
}

class RenderObjectTest : public ::testing::Test {
protected:
    RenderObjectTest() {
        test::clear();
        for (int i = 0; i < 3; ++i)
            texture[i].id = 11 + i;
    }
    ~RenderObjectTest() override { EXPECT_EQ(test::imbalance(), ""); }

    RenderObject object;
    Texture texture[3];
};

TEST_F(RenderObjectTest, startsAsDocumented) {
    EXPECT_EQ(object.flags, 13);
    EXPECT_EQ(object.rotX, 0);
    EXPECT_EQ(object.rotY, 0);
    EXPECT_EQ(object.rotZ, 0);
    expectVector(object.scalefactor, 1, 1, 1, 0);
    EXPECT_EQ(object.alpha, 1);
    EXPECT_THAT(object.textures, IsEmpty());
    EXPECT_THAT(object.texturescales, IsEmpty());
    EXPECT_FALSE(object.isTextured);
    EXPECT_FALSE(object.isAlphaBlending);
    EXPECT_FALSE(object.multiTexturing);
    EXPECT_EQ(object.rendercolor.a, 1);
    expectVector(object.vPos, 0, 0, 0, 0);
    expectVector(object.vAt, 0, 0, -1, 0);
    expectVector(object.vUp, 0, 1, 0, 0);
    expectVector(object.vInitPos, 0, 0, 0, 0);
    expectVector(object.vInitAt, 0, 0, 1, 0);
    expectVector(object.vInitUp, 0, 1, 0, 0);
    expectVector(object.getViewVector(), 0, 0, 1, 0);
    expectVector(object.boundSphere.center, 0, 0, 0, 0);
    expectVector(object.boundBox.min, 0, 0, 0, 0);
    expectVector(object.boundBox.max, 0, 0, 0, 0);
    EXPECT_EQ(object.avoidance_priority, 0);
    EXPECT_FALSE(object.avoiding);
}

TEST_F(RenderObjectTest, flagsHaveTheirValues) {
    EXPECT_EQ(INTERPOLATION, 1);
    EXPECT_EQ(ALPHABLENDING, 2);
    EXPECT_EQ(WORLD_POSITIONING, 4);
    EXPECT_EQ(DEPTH_TESTING, 8);
    EXPECT_EQ(BOUNDING_SPHERE, 16);
    EXPECT_EQ(BOUNDING_BOX, 32);
    object.removeFlags(WORLD_POSITIONING | DEPTH_TESTING);
    EXPECT_EQ(object.flags, 1);
    object.addFlags(BOUNDING_BOX);
    EXPECT_EQ(object.flags, 33);
    object.removeFlags(ALPHABLENDING);
    EXPECT_EQ(object.flags, 33);
}

TEST_F(RenderObjectTest, aFreshObjectDrawsPlainly) {
    object.render();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glTranslatef", {0, 0, 0}}, GL_CALL{"glMultMatrixf", IDENTITY},
                    GL_CALL{"glDisable", {GL_TEXTURE_2D}}, GL_CALL{"glColor4f", {1, 1, 1, 1}}));
}

TEST_F(RenderObjectTest, setsStateInOrder) {
    object.setPosition(1, 2, 3);
    object.scale(1, 1, 0.5f);
    object.addTexture(&texture[0]);
    object.enableAlphaBlending(true);
    object.removeFlags(DEPTH_TESTING);
    object.setRenderColor(GLColor(0.25f, 0.5f, 0.75f, 1));
    object.setAlpha(0.125f);
    object.render();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glTranslatef", {1, 2, -3}}, GL_CALL{"glMultMatrixf", IDENTITY},
                    GL_CALL{"glScalef", {1, 1, 0.5}}, GL_CALL{"glEnable", {GL_TEXTURE_2D}},
                    GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 11}},
                    GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, LIGHTMAP}},
                    GL_CALL{"glBlendFunc", {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}},
                    GL_CALL{"glEnable", {GL_BLEND}}, GL_CALL{"glDisable", {GL_DEPTH_TEST}},
                    GL_CALL{"glColor4f", {0.25, 0.5, 0.75, 0.125}},
                    GL_CALL{"glDisable", {GL_BLEND}}, GL_CALL{"glEnable", {GL_DEPTH_TEST}}));
}

TEST_F(RenderObjectTest, keepsToTheStateContract) {
    for (int mask = 0; mask < 16; ++mask) {
        SCOPED_TRACE(mask);
        RenderObject o;
        if (mask & 1)
            o.enableAlphaBlending(true);
        if (mask & 2)
            o.removeFlags(DEPTH_TESTING);
        if (mask & 4)
            o.addTexture(&texture[0]);
        if (mask & 8)
            o.addTexture(&texture[1]);
        glEnable(GL_DEPTH_TEST);
        o.preRender();
        EXPECT_EQ(test::isEnabled(GL_BLEND), (mask & 1) != 0);
        EXPECT_EQ(test::isEnabled(GL_DEPTH_TEST), (mask & 2) == 0);
        EXPECT_EQ(test::isEnabled(GL_TEXTURE_2D), (mask & 12) != 0);
        o.postRender();
        EXPECT_FALSE(test::isEnabled(GL_BLEND));
        EXPECT_TRUE(test::isEnabled(GL_DEPTH_TEST));
        EXPECT_EQ(test::activeUnit(), 0);
        EXPECT_FALSE(test::isEnabled(GL_TEXTURE_2D, 1));
        const bool multitextured = (mask & 12) == 12;
        EXPECT_EQ(o.multiTexturing, multitextured);
        if (multitextured) {
            EXPECT_EQ(test::callsOf("glTexEnvi").back(),
                      (GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE}}));
        }
    }
}

TEST_F(RenderObjectTest, scalesOnlyWhenAFactorDiffers) {
    object.scale(1);
    object.preRender();
    EXPECT_FALSE(test::wasCalled("glScalef"));
    for (const GLVector3& factor : {GLVector3(2, 1, 1), GLVector3(1, 2, 1), GLVector3(1, 1, 2)}) {
        test::clear();
        object.scale(factor.x, factor.y, factor.z);
        object.preRender();
        EXPECT_TRUE(test::wasCalled({"glScalef", {factor.x, factor.y, factor.z}}));
    }
    object.scale(0.02f);
    expectVector(object.scalefactor, 0.02f, 0.02f, 0.02f, 0);
}

TEST_F(RenderObjectTest, callsItsVirtualStepsInOrder) {
    struct Steps : RenderObject {
        void preRender() override { order += "pre "; }
        void renderMesh() override { order += "mesh "; }
        void postRender() override { order += "post"; }
        std::string order;
    } steps;
    steps.render();
    EXPECT_EQ(steps.order, "pre mesh post");
    EXPECT_THAT(test::calls(), IsEmpty());
}

TEST_F(RenderObjectTest, baseHooksDoNothing) {
    GLVector3 normal(1, 2, 3);
    object.renderMesh();
    object.cleanup();
    object.getCollisionNormal(&object, &normal);
    expectVector(normal, 1, 2, 3, 0);
    EXPECT_THAT(test::calls(), IsEmpty());
}

// ---- angles

TEST_F(RenderObjectTest, anglesWrapAndKeepTheirSign) {
    object.rotateY(350);
    object.rotateY(20);
    EXPECT_EQ(object.getYRotation(), 10);
    object.setYRotation(0);
    object.rotateY(-370);
    EXPECT_EQ(object.getYRotation(), -10);
    object.rotateX(725.5f);
    EXPECT_EQ(object.getXRotation(), 5.5f);
    object.setZRotation(-360);
    EXPECT_EQ(object.getZRotation(), 0);
    object.rotateZ(-30);
    object.rotateZ(-340);
    EXPECT_EQ(object.getZRotation(), -10);
}

TEST_F(RenderObjectTest, matricesFollowTheAngles) {
    GLMatrix expected;
    object.rotateX(380);
    expected.xRotation(20);
    expectEqual(object.rotmatrix_x, expected);
    object.setYRotation(40);
    expected.yRotation(40);
    expectEqual(object.rotmatrix_y, expected);
    object.rotateZ(-50);
    expected.zRotation(-50);
    expectEqual(object.rotmatrix_z, expected);
}

TEST_F(RenderObjectTest, rotationsAreMultipliedZYX) {
    object.setXRotation(20);
    object.setYRotation(40);
    object.setZRotation(60);
    GLMatrix x, y, z;
    x.xRotation(20);
    y.yRotation(40);
    z.zRotation(60);
    expectEqual(placementOf(object), z * (y * x));
}

TEST_F(RenderObjectTest, everyAngleButZeroCounts) {
    for (const float angle : {1.0f, -1.0f, 0.25f}) {
        object.setXRotation(angle);
        object.setYRotation(0);
        object.setZRotation(0);
        expectEqual(placementOf(object), object.rotmatrix_x);
        object.setXRotation(0);
        object.setYRotation(angle);
        expectEqual(placementOf(object), object.rotmatrix_y);
        object.setYRotation(0);
        object.setZRotation(angle);
        expectEqual(placementOf(object), object.rotmatrix_z);
    }
}

TEST_F(RenderObjectTest, anAngleOfZeroIsSkipped) {
    // A matrix that does not belong to its angle shows whether it is used.
    object.rotmatrix_x.v[0] = 9;
    object.rotmatrix_z.v[0] = 9;
    object.setYRotation(40);
    expectEqual(placementOf(object), object.rotmatrix_y);
}

TEST_F(RenderObjectTest, survivesHugeAngles) {
    object.rotateX(1e30f);
    object.rotateX(-1e30f);
    object.setYRotation(std::nanf(""));
    EXPECT_LT(std::fabs(object.getXRotation()), 360);
    EXPECT_TRUE(std::isnan(object.getYRotation()));
}

// ---- placement

TEST_F(RenderObjectTest, positionsStoreZNegated) {
    object.setPosition(1, 2, 3);
    expectVector(object.getPosition(), 1, 2, 3, 0);
    expectVector(object.vPos, 1, 2, -3, 0);
    object.setPosition(GLVector3(4, 5, 6));
    expectVector(object.getPosition(), 4, 5, 6, 0);
    expectVector(object.getPositionVector(), 4, 5, 6, 0);
    // Placed by its position, the object leaves its view point behind.
    expectVector(object.getViewVector(), 0, 0, 1, 0);
}

TEST_F(RenderObjectTest, directionsStoreZNegated) {
    object.setPositionVector(1, 2, 3);
    expectVector(object.vPos, 1, 2, -3, 0);
    object.setViewVector(4, 5, 6);
    expectVector(object.vAt, 4, 5, -6, 0);
    expectVector(object.getViewVector(), 4, 5, 6, 0);
    object.setUpVector(7, 8, 9);
    expectVector(object.vUp, 7, 8, -9, 0);
    expectVector(object.getUpVector(), 7, 8, 9, 0);

    GLVector3 v(1, 1, 1);
    object.setPositionVector(&v);
    object.setViewVector(&v);
    object.setUpVector(&v);
    expectVector(object.vPos, 1, 1, -1, 0);
    expectVector(object.vAt, 1, 1, -1, 0);
    expectVector(object.vUp, 1, 1, -1, 0);
}

TEST_F(RenderObjectTest, theViewPointMovesAlongInLookAtMode) {
    object.removeFlags(WORLD_POSITIONING);
    object.setPosition(1, 2, 3);
    expectVector(object.getViewVector(), 1, 2, 4, 0);
    object.setPositionVector(5, 5, 5);
    expectVector(object.getViewVector(), 1, 2, 4, 0);
    object.setPosition(6, 8, 10);
    expectVector(object.getViewVector(), 2, 5, 9, 0);
}

TEST_F(RenderObjectTest, lookAtModeIsPlacedByOneMatrix) {
    object.removeFlags(WORLD_POSITIONING);
    object.setXRotation(45);
    object.setPositionVector(1, 2, 3);
    object.setViewVector(2, 2, 3);
    GLMatrix expected;
    expected.createFromLookAt(1, 2, -3, 2, 2, -3, 0, 1, 0);
    expectEqual(placementOf(object), expected);
    EXPECT_FALSE(test::wasCalled("glTranslatef"));
}

TEST_F(RenderObjectTest, steersByItsViewPoint) {
    object.setPositionVector(1, 1, 1);
    object.setViewVector(1, 1, -4);  // stored: from z -1 to 4, along +z
    object.pitch(30);
    expectVector(object.vAt - object.vPos, 0, -5 * SIN30, 5 * COS30, 1e-5f);
    expectVector(object.vUp, 0, 1, 0, 0);
    object.pitch(-30);
    object.setUpVector(0, 3, 0);
    object.yaw(30);
    const GLVector3 turned = object.vAt - object.vPos;
    expectVector(object.vPos, 1, 1, -1, 0);
    expectVector(object.vUp, 0, 3, 0, 0);
    // The up vector is not of unit length here, so the turn is not by 30 degrees.
    Quaternion q;
    q.createFromAngle(0, 3, 0, 30);
    q.normalize();
    GLMatrix m;
    q.createMatrix(&m);
    GLVector3 expected(0, 0, 5);
    expected.transform(&m);
    expectVector(turned, expected.x, expected.y, expected.z, 1e-5f);
}

TEST_F(RenderObjectTest, yawsByDegreesAboutAUnitUpVector) {
    object.setViewVector(0, 0, -5);
    object.yaw(30);
    expectVector(object.vAt, -5 * SIN30, 0, 5 * COS30, 1e-5f);
}

TEST_F(RenderObjectTest, rollTurnsTheUpVectorOnly) {
    object.setPositionVector(3, 2, 1);
    object.setViewVector(3, 2, -4);
    object.setUpVector(0, 4, 0);
    object.roll(30);
    expectVector(object.vUp, SIN30, COS30, 0);
    expectVector(object.vAt, 3, 2, 4, 0);
    expectVector(object.vPos, 3, 2, -1, 0);
}

TEST_F(RenderObjectTest, movesAlongItsView) {
    object.setPositionVector(1, 2, 3);
    object.setViewVector(1, 2, 13);
    object.move(0.5f);
    expectVector(object.getPosition(), 1, 2, 3.5f);
    expectVector(object.getViewVector(), 1, 2, 13.5f);
    object.move(-1);
    expectVector(object.getPosition(), 1, 2, 2.5f);
}

// ---- appearance

TEST_F(RenderObjectTest, colourAndAlphaAreSetApart) {
    object.setAlpha(0.5f);
    object.setRenderColor(GLColor(1, 1, 1, 1));
    EXPECT_EQ(object.rendercolor.a, 0.5f);
    EXPECT_EQ(object.alpha, 1) << "setAlpha does not touch the member of that name";
    object.setRenderColor(GLColor(0.1f, 0.2f, 0.3f, 0.9f));
    EXPECT_EQ(object.rendercolor.r, 0.1f);
    EXPECT_EQ(object.rendercolor.g, 0.2f);
    EXPECT_EQ(object.rendercolor.b, 0.3f);
    EXPECT_EQ(object.rendercolor.a, 0.5f);
}

TEST_F(RenderObjectTest, layersAreAppendedAndReplaced) {
    object.addTexture(&texture[0]);
    EXPECT_TRUE(object.isTextured);
    EXPECT_FALSE(object.multiTexturing);
    object.addTexture(&texture[1]);
    EXPECT_TRUE(object.multiTexturing);
    EXPECT_THAT(object.textures, ElementsAre(&texture[0], &texture[1]));
    EXPECT_THAT(object.texturescales, ElementsAre(1, 1));
    object.multiTexturing = false;
    object.setTexture(&texture[2], 1);
    EXPECT_THAT(object.textures, ElementsAre(&texture[0], &texture[2]));
    EXPECT_TRUE(object.multiTexturing) << "decided anew";
}

TEST_F(RenderObjectTest, scalesOfMissingLayersAreIgnored) {
    object.addTexture(&texture[0]);
    object.scaleTextureInLayer(1, 5);
    object.scaleTextureInLayer(-1, 5);
    EXPECT_THAT(object.texturescales, ElementsAre(1));
    object.scaleTextureInLayer(0, 5);
    EXPECT_THAT(object.texturescales, ElementsAre(5));
}

TEST_F(RenderObjectTest, aLayerScaleBecomesTheTileFactorAtBinding) {
    texture[0].setTileFactor(7);
    texture[1].setTileFactor(7);
    object.addTexture(&texture[0]);
    object.addTexture(&texture[1]);
    object.scaleTextureInLayer(1, 5);
    object.bindTexture();
    EXPECT_EQ(texture[0].tilefactor_x, 7) << "a scale of 1 leaves the texture alone";
    EXPECT_EQ(texture[0].tilefactor_y, 7);
    EXPECT_EQ(texture[1].tilefactor_x, 5);
    EXPECT_EQ(texture[1].tilefactor_y, 5);
}

TEST_F(RenderObjectTest, aSharedTextureTakesTheLastScale) {
    RenderObject other;
    object.addTexture(&texture[0]);
    other.addTexture(&texture[0]);
    object.scaleTextureInLayer(0, 3);
    other.scaleTextureInLayer(0, 4);
    object.bindTexture();
    other.bindTexture();
    EXPECT_EQ(texture[0].tilefactor_x, 4);
}

TEST_F(RenderObjectTest, bindsEveryLayerToItsUnit) {
    object.addTexture(&texture[0]);
    object.addTexture(&texture[1]);
    object.preRender();
    EXPECT_EQ(test::boundTexture(0), 11u);
    EXPECT_EQ(test::boundTexture(1), 12u);
    EXPECT_TRUE(test::isEnabled(GL_TEXTURE_2D, 0));
    EXPECT_TRUE(test::isEnabled(GL_TEXTURE_2D, 1));
    object.postRender();
    EXPECT_FALSE(test::isEnabled(GL_TEXTURE_2D, 0)) << "switched off on every unit it used";
    EXPECT_FALSE(test::isEnabled(GL_TEXTURE_2D, 1));
    EXPECT_EQ(test::activeUnit(), 0);
}

TEST_F(RenderObjectTest, layersAreSwitchedOffInOrderBeforeTheDepthTestReturns) {
    texture[1].setMultitextureMode(SOURCE_ALPHA);
    object.addTexture(&texture[0]);
    object.addTexture(&texture[1]);
    object.enableAlphaBlending(true);
    object.removeFlags(DEPTH_TESTING);
    object.preRender();
    test::clear();
    object.postRender();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(
            GL_CALL{"glDisable", {GL_BLEND}}, GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB}},
            GL_CALL{"glDisable", {GL_TEXTURE_2D}}, GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB}},
            GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB + 1}},
            GL_CALL{"glDisable", {GL_TEXTURE_2D}}, GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB}},
            GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE}},
            GL_CALL{"glEnable", {GL_DEPTH_TEST}}));
}

TEST_F(RenderObjectTest, withoutMultitexturingOnlyTheFirstLayerIsDrawn) {
    object.addTexture(&texture[0]);
    object.addTexture(&texture[1]);
    object.multiTexturing = false;
    object.preRender();
    object.textureCoord(1, 2);
    object.postRender();
    EXPECT_EQ(test::count("glBindTexture"), 1);
    EXPECT_TRUE(test::wasCalled({"glBindTexture", {GL_TEXTURE_2D, 11}}));
    EXPECT_TRUE(test::wasCalled({"glTexCoord2f", {1, 2}}));
    EXPECT_FALSE(test::wasCalled("glActiveTextureARB"));
}

TEST_F(RenderObjectTest, textureCoordGoesToEveryLayer) {
    object.textureCoord(1, 2);
    EXPECT_THAT(test::calls(), IsEmpty());
    object.addTexture(&texture[0]);
    texture[0].setOffset(0.5f, 0);
    object.textureCoord(1, 2);
    EXPECT_THAT(test::calls(), ElementsAre(GL_CALL{"glTexCoord2f", {1.5, 2}}));
    object.addTexture(&texture[1]);
    texture[1].setTileFactor(3);
    test::clear();
    object.textureCoord(1, 2);
    EXPECT_THAT(test::calls(),
                ElementsAre(GL_CALL{"glMultiTexCoord2fARB", {GL_TEXTURE0_ARB, 1.5, 2}},
                            GL_CALL{"glMultiTexCoord2fARB", {GL_TEXTURE0_ARB + 1, 3, 6}}));
}

// ---- bounds

TEST_F(RenderObjectTest, boxesIntersectUntilAHairApart) {
    RenderObject other;
    for (RenderObject* o : {&object, &other}) {
        o->boundBox.min.set(-0.5f, -0.5f, -0.5f);
        o->boundBox.max.set(0.5f, 0.5f, 0.5f);
    }
    const float hair = std::nextafter(1.0f, 2.0f);
    for (const GLVector3& axis : {GLVector3(1, 0, 0), GLVector3(0, 1, 0), GLVector3(0, 0, 1)}) {
        for (const float sign : {1.f, -1.f}) {
            other.setPosition(axis * sign);
            EXPECT_TRUE(object.isObjectIntersecting(&other));
            EXPECT_TRUE(other.isObjectIntersecting(&object));
            // Seen from 0 the difference of one bit survives the arithmetic only when doubled.
            other.setPosition(axis * (sign * (2 * hair - 1)));
            EXPECT_FALSE(object.isObjectIntersecting(&other));
            EXPECT_FALSE(other.isObjectIntersecting(&object));
        }
    }
}

TEST_F(RenderObjectTest, boxesAreScaledAndCentredOnThePosition) {
    RenderObject other;
    object.boundBox.min.set(10, 10, 10);  // the offset of the box does not count
    object.boundBox.max.set(12, 12, 12);
    object.scale(3, 1, 1);
    other.setPosition(3, 0, 0);
    EXPECT_TRUE(object.isObjectIntersecting(&other));
    other.setPosition(3.01f, 0, 0);
    EXPECT_FALSE(object.isObjectIntersecting(&other));
    other.setPosition(0, 1.01f, 0);
    EXPECT_FALSE(object.isObjectIntersecting(&other));
    object.setYRotation(90);  // rotation does not count either
    other.setPosition(3, 0, 0);
    EXPECT_TRUE(object.isObjectIntersecting(&other));
}

TEST_F(RenderObjectTest, distanceIsBetweenPositions) {
    RenderObject other;
    object.setPosition(1, 1, 1);
    other.setPosition(3, 4, 7);
    EXPECT_EQ(object.getObjectDistance(&other), 7);
}

TEST_F(RenderObjectTest, boundingBoxIsDrawnInWhiteLines) {
    object.addFlags(BOUNDING_BOX);
    object.setRenderColor(GLColor(0, 0, 0, 1));
    object.boundBox.min.set(1, 2, 3);
    object.boundBox.max.set(4, 5, 6);
    object.renderBoundings();

    const struct {
        GLenum primitive;
        int begin;
        float x, y, z;
    } EXPECTED[] = {
        {GL_LINE_LOOP, 0, 1, 2, 3}, {GL_LINE_LOOP, 0, 4, 2, 3}, {GL_LINE_LOOP, 0, 4, 2, 6},
        {GL_LINE_LOOP, 0, 1, 2, 6}, {GL_LINE_LOOP, 1, 1, 5, 3}, {GL_LINE_LOOP, 1, 4, 5, 3},
        {GL_LINE_LOOP, 1, 4, 5, 6}, {GL_LINE_LOOP, 1, 1, 5, 6}, {GL_LINES, 2, 1, 2, 3},
        {GL_LINES, 2, 1, 5, 3},     {GL_LINES, 2, 4, 2, 3},     {GL_LINES, 2, 4, 5, 3},
        {GL_LINES, 3, 4, 2, 6},     {GL_LINES, 3, 4, 5, 6},     {GL_LINES, 3, 1, 2, 6},
        {GL_LINES, 3, 1, 5, 6}};
    const auto& vertices = test::vertices();
    ASSERT_EQ(vertices.size(), std::size(EXPECTED));
    for (size_t i = 0; i < vertices.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(vertices[i].primitive, EXPECTED[i].primitive);
        EXPECT_EQ(vertices[i].begin, EXPECTED[i].begin);
        expectVector({vertices[i].x, vertices[i].y, vertices[i].z}, EXPECTED[i].x, EXPECTED[i].y,
                     EXPECTED[i].z, 0);
        EXPECT_THAT(vertices[i].color, ElementsAre(1, 1, 1, 1));
        EXPECT_EQ(vertices[i].texture[0], 0u);
    }
    EXPECT_TRUE(test::wasCalled({"glBindTexture", {GL_TEXTURE_2D, 0}}));
}

TEST_F(RenderObjectTest, boundingsAreDrawnBetweenTheVirtualSteps) {
    struct Steps : RenderObject {
        void preRender() override { glPushMatrix(); }
        void renderMesh() override { ADD_FAILURE() << "no mesh is drawn"; }
        void postRender() override { glPopMatrix(); }
    } steps;
    steps.renderBoundings();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glPushMatrix", {}}, GL_CALL{"glColor4f", {1, 1, 1, 1}},
                    GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 0}}, GL_CALL{"glPopMatrix", {}}));
}

TEST_F(RenderObjectTest, boundingsNeedTheBoxFlag) {
    object.addFlags(BOUNDING_SPHERE);
    object.enableAlphaBlending(true);
    object.renderBoundings();
    EXPECT_THAT(test::vertices(), IsEmpty());
    EXPECT_TRUE(test::wasCalled({"glColor4f", {1, 1, 1, 1}}));
    EXPECT_FALSE(test::isEnabled(GL_BLEND)) << "postRender has run";
}

}  // namespace
