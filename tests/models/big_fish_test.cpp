// The big fish that passes now and then.
#include <gmock/gmock.h>

#include <cmath>

#include "BigFishMovement.h"
#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

using namespace test;

namespace {

struct BigFish : testing::Test {
    BigFish() {
        setTicks(1000);
        for (int i = 0; i < 5; ++i)
            mover.points.push_back(GLVector3(3.0f * i, -6, 0.5f * i * i));
        for (ModelCore& core : cores)
            core.setModel(&model);
    }

    bool visible() {
        clear();
        mover.render();
        return wasCalled("glMultMatrixf");
    }

    QModel model;
    ModelCore cores[2];
    BigFishMovement mover;
};

}  // namespace

TEST_F(BigFish, StartsWithItsDefaults) {
    EXPECT_TRUE(mover.reverseorder);
    EXPECT_EQ(mover.actmodel, nullptr);
    EXPECT_EQ(mover.track.flags, ROTATE_OBJECT | SMOOTH_ROLL);
    EXPECT_EQ(mover.track.speed, 0.0006f);
}

TEST_F(BigFish, DoesNothingWithoutModels) {
    mover.init();
    mover.move();
    mover.render();
    EXPECT_EQ(mover.actmodel, nullptr);
    EXPECT_TRUE(mover.track.waypoints.empty());
}

TEST_F(BigFish, DoesNothingWithoutARoute) {
    seedRandom(1);
    mover.points.clear();
    mover.models = {&cores[0]};
    mover.init();
    for (int i = 0; i < 10; ++i) {
        advanceTicks(1000);
        mover.move();
    }
    EXPECT_FALSE(visible());
}

TEST_F(BigFish, ChoosesDirectionAndModel) {
    mover.models = {&cores[0], &cores[1]};
    setRandom({6, 7});
    mover.init();
    EXPECT_FALSE(mover.reverseorder);
    EXPECT_EQ(mover.actmodel, &cores[1]);
    EXPECT_EQ(mover.track.renderobject, &cores[1]);
    setRandom({7, 6});
    mover.init();
    EXPECT_TRUE(mover.reverseorder);
    EXPECT_EQ(mover.actmodel, &cores[0]);
    EXPECT_EQ(mover.state, 0);
}

TEST_F(BigFish, PassesBothWaysAndWaitsBetween) {
    mover.models = {&cores[0]};
    const std::vector<GLVector3> route = mover.points;
    setRandom({0, 0});
    mover.init();
    for (int pass = 0; pass < 4; ++pass) {
        const bool backward = pass % 2;
        EXPECT_EQ(mover.reverseorder, backward);
        const int wait = pass * 6000;
        // The wait at the end of this pass, then direction and model of the next one.
        setRandom({wait, !backward, 0});
        EXPECT_TRUE(visible());
        std::vector<int> reached{0};
        GLVector3 last = cores[0].getPosition();
        double covered = 0;
        int frames = 0;
        while (mover.state == 0 && frames++ < 10000) {
            advanceTicks(10);
            mover.move();
            const GLVector3 place = cores[0].getPosition();
            ASSERT_LT(distance(&place, &last), 0.1f);
            covered += distance(&place, &last);
            last = place;
            if (mover.track.getActWaypoint() != reached.back())
                reached.push_back(mover.track.getActWaypoint());
        }
        EXPECT_THAT(reached, testing::ElementsAre(0, 1, 2, 3, 4));
        EXPECT_NEAR(covered / (frames * 10), 0.0006, 0.00001);
        // It vanishes on the last point.
        EXPECT_LT(distance(&last, &route[backward ? 0 : 4]), 1e-4f);
        EXPECT_EQ(mover.nextstart, wait + 10000);
        EXPECT_FALSE(visible());

        const int waited = mover.nextstart / 10;
        for (int i = 0; i < waited; ++i) {
            advanceTicks(10);
            mover.move();
            ASSERT_EQ(mover.state, 1);
            ASSERT_FALSE(visible());
        }
        advanceTicks(1);
        mover.move();
        EXPECT_EQ(mover.state, 0);
        EXPECT_EQ(randomLeft(), 0u);
        ASSERT_EQ(mover.points.size(), route.size());
        for (size_t i = 0; i < route.size(); ++i)
            EXPECT_TRUE(mover.points[i] == route[i]);
    }
}

TEST_F(BigFish, WaitsForTenToThirtySeconds) {
    mover.models = {&cores[0]};
    mover.points.resize(1);
    for (const auto& [drawn, wait] : {std::pair(19999, 29999), {20000, 10000}, {20001, 10001}}) {
        setRandom({0, 0, drawn});
        mover.init();
        mover.move();
        EXPECT_EQ(randomLeft(), 0u);
        EXPECT_EQ(mover.nextstart, wait);
    }
}

TEST_F(BigFish, KeepsItsPlaceInASegmentFromPassToPass) {
    mover.models = {&cores[0]};
    setRandom({0, 0, 0, 0, 0});
    mover.init();
    while (mover.state == 0) {
        advanceTicks(10);
        mover.move();
    }
    const float kept = mover.track.dist;
    EXPECT_GT(kept, 0);
    advanceTicks(10001);
    mover.move();
    EXPECT_EQ(mover.track.dist, kept);
    EXPECT_EQ(mover.track.getActWaypoint(), 0);
}

TEST_F(BigFish, EndsARouteOfOnePointAtOnce) {
    mover.points.resize(1);
    mover.models = {&cores[0]};
    setRandom({0, 0, 500});
    mover.init();
    EXPECT_TRUE(visible());
    advanceTicks(10);
    mover.move();
    EXPECT_EQ(mover.state, 1);
    EXPECT_EQ(mover.nextstart, 10500);
    EXPECT_FALSE(visible());
}

TEST_F(BigFish, WaitsAcrossTheWrapOfTheClock) {
    mover.points.resize(1);
    mover.models = {&cores[0]};
    setTicks(0xffffff00u);
    setRandom({0, 0, 0, 1, 0});
    mover.init();
    mover.move();
    ASSERT_EQ(mover.state, 1);
    for (int i = 0; i < 100; ++i) {
        advanceTicks(100);
        mover.move();
        ASSERT_EQ(mover.state, 1) << i;
    }
    advanceTicks(1);
    mover.move();
    EXPECT_EQ(mover.state, 0);
}
