// Months of the scene's life on the hand-set clock, without drawing.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "scene_fixture.h"

namespace {

void expectFinite(const GLVector3& p, const std::string& what) {
    ASSERT_TRUE(std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z))
        << what << " at " << p.x << ", " << p.y << ", " << p.z;
}

class SoakTest : public SceneTest {
protected:
    void SetUp() override {
        make();
        build();
    }

    void run(Uint32 milliseconds, Uint32 step, int check_every) {
        const Uint32 steps = milliseconds / step;
        for (Uint32 i = 0; i < steps; ++i) {
            update(step);
            // Animations step when they are drawn; the gull switches between its two by them.
            scene().gull_model.preRender();
            scene().gull_model.postRender();
            if (i % static_cast<Uint32>(check_every) == 0) {
                check(step);
                if (HasFatalFailure())
                    return;
            }
        }
    }

    void check(Uint32 step) {
        CMarivistaScreensaver& s = scene();
        for (int i = 0; i < s.numFish; ++i)
            ASSERT_NO_FATAL_FAILURE(expectFinite(s.fish[i].getPositionVector(), "reef fish"));
        for (int i = 0; i < s.boidcount; ++i)
            ASSERT_NO_FATAL_FAILURE(
                expectFinite(s.fishcrowd[i].getPositionVector(), "school fish"));
        ModelCore* const others[] = {&s.gull,    &s.manta,         &s.vegetarian1,
                                     &s.hunter1, &s.yellowbigfish, &s.redbigfish};
        for (ModelCore* other : others)
            ASSERT_NO_FATAL_FAILURE(expectFinite(other->getPositionVector(), "animal"));
        for (ModelCore* flyer : {&s.gull, &s.manta}) {
            const GLVector3 p = flyer->getPositionVector();
            ASSERT_LT(std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z), 60.0f);
        }
        // Nobody sees an animal that is much farther away than the reef is wide.
        std::vector<ModelCore*> swimmers = {&s.vegetarian1, &s.hunter1};
        for (int i = 0; i < s.numFish; ++i)
            swimmers.push_back(&s.fish[i]);
        for (int i = 0; i < s.boidcount; ++i)
            swimmers.push_back(&s.fishcrowd[i]);
        for (ModelCore* swimmer : swimmers) {
            const GLVector3 p = swimmer->getPositionVector();
            ASSERT_LT(std::hypot(p.x, p.y, p.z), 60.0f);
        }
        const float overshoot =
            static_cast<float>(step) * static_cast<float>(s.wantedwssettings.cameraspeed) / 1000;
        ASSERT_GE(s.camera.rotationX, -25.0f - overshoot);
        ASSERT_LE(s.camera.rotationX, 0.0f + overshoot);
        expectFinite(s.camera.vAt, "view point");
        ASSERT_LE(s.gulltrack.waypoints.size(), 12u);
        ASSERT_LE(s.mantatrack.waypoints.size(), 18u);
        ASSERT_GE(s.watertexmotion, 0.0f);
        ASSERT_LT(s.watertexmotion, 1.0f);
    }
};

constexpr Uint32 HOUR = 3600000;

TEST_F(SoakTest, AnHourAtTheTimersPace) { run(HOUR, 10, 100); }

TEST_F(SoakTest, ADayAtAHundredMilliseconds) { run(24 * HOUR, 100, 10); }

TEST_F(SoakTest, SixtyDaysAtAWholeSecondAcrossTheWrapOfTheTicks) {
    // Starting late in the 49.7 days after which the tick count wraps.
    for (int day = 0; day < 60; ++day)
        ASSERT_NO_FATAL_FAILURE(run(24 * HOUR, 1000, 10));
}

TEST_F(SoakTest, TheWrapAtTheTimersPace) {
    const Uint32 before = 0u - HOUR / 10;
    test::setTicks(before);
    scene().updateScene();
    run(HOUR / 5, 10, 10);
}

TEST_F(SoakTest, AProcessStoppedForHoursGoesOn) {
    run(60000, 10, 100);
    run(10 * HOUR, 10 * HOUR, 1);
    run(60000, 10, 1);
}

TEST_F(SoakTest, AWallClockThatIsSetBackGoesOn) {
    run(60000, 10, 100);
    update(0u - 3000);
    run(60000, 10, 1);
    EXPECT_LT(scene().water.curoffset1, 7.0f);
}

TEST_F(SoakTest, AStopWhileTheCameraTravelsTakesItNoFurther) {
    while (scene().autoCameraDirection == 0)
        update(10);
    update(1000);
    const float pitch = scene().camera.rotationX;
    update(10 * HOUR);
    EXPECT_EQ(scene().camera.rotationX, pitch);
    update(1000);
    EXPECT_FLOAT_EQ(scene().camera.rotationX, pitch - 4);
}

}  // namespace
