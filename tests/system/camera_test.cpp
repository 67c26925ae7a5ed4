#include "system/Camera.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

namespace {

const float SIN30 = 0.5f, COS30 = std::sqrt(0.75f);

// Looks from (0, 0, -5) along stored +z.
Camera cameraAtFive() {
    Camera camera;
    camera.set(0, 0, 5, 0, 0, 0, 0, 1, 0);
    return camera;
}

GLVector3 viewOf(const Camera& camera) { return camera.vAt - camera.vEye; }

TEST(Camera, startsAsDocumented) {
    test::setTicks(77);
    const Camera camera;
    expectVector(camera.vEye, 0, 10, 20, 0);
    expectVector(camera.vAt, 0, 0, 0, 0);
    expectVector(camera.vUp, 0, 1, 0, 0);
    EXPECT_EQ(camera.rotationX, 0);
    EXPECT_EQ(camera.timer, 77u);
    EXPECT_EQ(camera.getLinearSpeed(), 0.02f);
    EXPECT_EQ(camera.getAngularSpeed(), 0.5f);
    EXPECT_EQ(camera.getMouseSpeed(), 0.3f);
    EXPECT_EQ(camera.invertmouse, 1);
    EXPECT_FALSE(camera.isMouseInverted());
}

TEST(Camera, storesZNegated) {
    Camera camera;
    camera.rotationX = 5;
    camera.set(1, 2, 3, 4, 5, 6, 7, 8, 9);
    expectVector(camera.vEye, 1, 2, -3, 0);
    expectVector(camera.vAt, 4, 5, -6, 0);
    expectVector(camera.vUp, 7, 8, -9, 0);
    EXPECT_EQ(camera.rotationX, 0);
}

TEST(Camera, handsTheStoredValuesToGL) {
    test::clear();
    cameraAtFive().setViewMatrix();
    ASSERT_EQ(test::calls().size(), 1u);
    EXPECT_EQ(test::calls()[0], (test::GL_CALL{"gluLookAt", {0, 0, -5, 0, 0, 0, 0, 1, 0}}));
}

TEST(Camera, pitchTurnsTheViewAboutItsSide) {
    Camera camera = cameraAtFive();
    camera.pitch(30);
    expectVector(camera.vEye, 0, 0, -5, 0);
    expectVector(viewOf(camera), 0, -5 * SIN30, 5 * COS30, 1e-5f);
    expectVector(camera.vUp, 0, 1, 0, 0);
    EXPECT_EQ(camera.rotationX, 30);
    camera.pitch(-55);
    EXPECT_EQ(camera.rotationX, -25);
    expectVector(viewOf(camera), 0, 5 * std::sin(DTOR(25.f)), 5 * std::cos(DTOR(25.f)), 1e-5f);
}

TEST(Camera, pitchStopsAt89) {
    Camera camera = cameraAtFive();
    camera.pitch(80);
    EXPECT_EQ(camera.rotationX, 80);
    const GLVector3 before = viewOf(camera);
    camera.pitch(15);
    EXPECT_EQ(camera.rotationX, 89);
    const GLVector3 after = viewOf(camera);
    EXPECT_NEAR(std::acos(dot(&before, &after) / 25), DTOR(9.f), 1e-4);
    camera.pitch(5);
    EXPECT_EQ(camera.rotationX, 89);
    expectVector(viewOf(camera), after.x, after.y, after.z, 1e-5f);
}

TEST(Camera, pitchIsTestedAt90) {
    Camera camera = cameraAtFive();
    camera.pitch(-90);
    EXPECT_EQ(camera.rotationX, -89);
    expectVector(viewOf(camera), 0, 5 * std::sin(DTOR(89.f)), 5 * std::cos(DTOR(89.f)), 1e-5f);
    camera = cameraAtFive();
    camera.pitch(89.5f);
    EXPECT_EQ(camera.rotationX, 89.5f);
}

TEST(Camera, yawTurnsTheViewAboutTheUpVector) {
    Camera camera = cameraAtFive();
    camera.yaw(30);
    // The transform turns by the opposite angle about +y.
    expectVector(viewOf(camera), -5 * SIN30, 0, 5 * COS30, 1e-5f);
    expectVector(camera.vEye, 0, 0, -5, 0);
    EXPECT_EQ(camera.rotationX, 0);
}

TEST(Camera, rollTurnsTheUpVectorAndNormalisesIt) {
    Camera camera;
    camera.set(0, 0, 5, 0, 0, 0, 0, 4, 0);
    camera.roll(30);
    expectVector(camera.vUp, SIN30, COS30, 0);
    expectVector(viewOf(camera), 0, 0, 5, 0);
}

TEST(Camera, moveAndStrafeKeepTheView) {
    Camera camera;
    camera.set(0, 0, 5, 0, 0, 0, 0, 2, 0);
    camera.move(2);
    expectVector(camera.vEye, 0, 0, -3);
    expectVector(camera.vAt, 0, 0, 2);
    camera.strafe(3, 1);
    // The side of a view along +z with up +y is -x.
    expectVector(camera.vEye, -3, 1, -3);
    expectVector(camera.vAt, -3, 1, 2);
    expectVector(camera.vUp, 0, 2, 0, 0);
}

TEST(Camera, orbitsKeepTheLookAtPoint) {
    Camera camera;
    camera.set(1, 2, 7, 1, 2, 2, 0, 3, 0);
    camera.yawAroundOrigin(90);
    expectVector(camera.vAt, 1, 2, -2, 0);
    expectVector(camera.vEye, 1 - 5, 2, -2, 1e-5f);
    expectVector(camera.vUp, 0, 1, 0, 0);
    camera.yawAroundOrigin(270);
    expectVector(camera.vEye, 1, 2, -7, 1e-5f);

    camera.pitchAroundOrigin(30);
    expectVector(camera.vAt, 1, 2, -2, 0);
    expectVector(camera.vEye, 1, 2 - 5 * SIN30, -2 - 5 * COS30, 1e-5f);
    expectVector(camera.vUp, 0, COS30, -SIN30, 1e-5f);
    EXPECT_EQ(camera.rotationX, 0);
}

TEST(Camera, aFullOrbitReturns) {
    Camera camera = cameraAtFive();
    camera.yawAroundOrigin(360);
    expectVector(camera.vEye, 0, 0, -5, 1e-5f);
    expectVector(camera.vAt, 0, 0, 0, 0);
}

TEST(Camera, updateScalesMovesByTime) {
    const struct {
        int bit;
        float x, y, z;
    } MOVES[] = {{4, -2, 0, -5},  {8, 2, 0, -5}, {16, 0, 2, -5},
                 {32, 0, -2, -5}, {1, 0, 0, -3}, {2, 0, 0, -7}};
    for (const auto& move : MOVES) {
        SCOPED_TRACE(move.bit);
        test::setTicks(1000);
        Camera camera = cameraAtFive();
        test::advanceTicks(100);
        camera.update(move.bit);
        EXPECT_EQ(camera.timer, 1100u);
        expectVector(camera.vEye, move.x, move.y, move.z, 1e-5f);
        expectVector(viewOf(camera), 0, 0, 5, 1e-5f);
    }
}

TEST(Camera, updateTurnsByOneStepPerCall) {
    test::setTicks(5);
    const float s = 5 * std::sin(DTOR(0.5f)), c = 5 * std::cos(DTOR(0.5f));
    const struct {
        int bit;
        float x, y;
    } TURNS[] = {{64, -s, 0}, {128, s, 0}, {512, 0, -s}, {256, 0, s}};
    for (const auto& turn : TURNS) {
        SCOPED_TRACE(turn.bit);
        Camera camera = cameraAtFive();
        // No time passes.
        camera.update(turn.bit | 1 | 4);
        expectVector(camera.vEye, 0, 0, -5, 0);
        expectVector(viewOf(camera), turn.x, turn.y, c, 1e-5f);
    }
}

TEST(Camera, updateAppliesItsActionsInOrder) {
    test::setTicks(0);
    Camera camera = cameraAtFive();
    camera.setLinearSpeed(1);
    camera.setAngularSpeed(90);
    test::advanceTicks(1);
    // Forward comes before the turn, so it goes along the old view.
    camera.update(64 | 1);
    expectVector(camera.vEye, 0, 0, -4, 1e-5f);
    expectVector(viewOf(camera), -5, 0, 0, 1e-5f);
    camera.update(0);
    expectVector(camera.vEye, 0, 0, -4, 1e-5f);
}

TEST(Camera, updateSurvivesTheWrapOfTheClock) {
    test::setTicks(0xffffffffu - 9);
    Camera camera = cameraAtFive();
    test::advanceTicks(50);
    camera.update(1);
    expectVector(camera.vEye, 0, 0, -4, 1e-5f);
}

TEST(Camera, updateTakesLongPausesAsUnsigned) {
    test::setTicks(0);
    Camera camera = cameraAtFive();
    camera.setLinearSpeed(0.001f);
    test::setTicks(3000000000u);
    camera.update(1);
    EXPECT_NEAR(camera.vEye.z, 3000000 - 5, 1);
}

TEST(Camera, mouseTurns) {
    Camera camera = cameraAtFive();
    camera.setMouseSpeed(0.5f);
    camera.mouseMove(0, 0);
    expectVector(viewOf(camera), 0, 0, 5, 0);
    camera.mouseMove(60, 0);
    expectVector(viewOf(camera), -5 * SIN30, 0, 5 * COS30, 1e-5f);
    camera = cameraAtFive();
    camera.mouseMove(0, 60);
    expectVector(viewOf(camera), 0, -5 * std::sin(DTOR(18.f)), 5 * std::cos(DTOR(18.f)), 1e-5f);
    EXPECT_EQ(camera.rotationX, 18);
}

TEST(Camera, mouseCanBeInverted) {
    Camera camera = cameraAtFive();
    camera.invertMouse(true);
    EXPECT_TRUE(camera.isMouseInverted());
    camera.mouseMove(0, 10);
    EXPECT_FLOAT_EQ(camera.rotationX, -3);
    camera.invertMouse(false);
    EXPECT_FALSE(camera.isMouseInverted());
    camera.mouseMove(0, 10);
    EXPECT_NEAR(camera.rotationX, 0, 1e-6);
}

}  // namespace
