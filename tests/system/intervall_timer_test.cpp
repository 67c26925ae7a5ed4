#include <gtest/gtest.h>

#include <climits>

#include "support/chance.h"
#include "system/GLHelpers.h"

namespace {

TEST(IntervallTimer, startsRunningAndUnconfigured) {
    IntervallTimer timer;
    EXPECT_EQ(timer.timer, 0);
    EXPECT_EQ(timer.min_interv, -1);
    EXPECT_EQ(timer.max_interv, -1);
    EXPECT_EQ(timer.act_intervall, -1);
    EXPECT_TRUE(timer.running);
    test::setRandom({});
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(timer.update(0));
}

TEST(IntervallTimer, firesWithinItsBounds) {
    test::seedRandom(3);
    IntervallTimer timer;
    timer.set(3000, 4000);
    for (int firing = 0; firing < 50; ++firing) {
        const int interval = timer.act_intervall;
        ASSERT_GE(interval, 3000);
        ASSERT_LT(interval, 4000);
        int updates = 1;
        while (!timer.update(10))
            ++updates;
        EXPECT_EQ(updates, (interval + 9) / 10);
        EXPECT_GE(updates, 300);
        EXPECT_LE(updates, 400);
        EXPECT_EQ(timer.timer, 0);
    }
}

TEST(IntervallTimer, drawsUniformlyFromRand) {
    test::setRandom({0, 999, 1000, 2500});
    IntervallTimer timer;
    timer.set(3000, 4000);
    EXPECT_EQ(timer.act_intervall, 3000);
    timer.reset();
    EXPECT_EQ(timer.act_intervall, 3999);
    timer.reset();
    EXPECT_EQ(timer.act_intervall, 3000);
    timer.reset();
    EXPECT_EQ(timer.act_intervall, 3500);
}

TEST(IntervallTimer, dropsWhatExceedsTheInterval) {
    test::setRandom({0, 0, 0});
    IntervallTimer timer;
    timer.set(100, 200);
    EXPECT_FALSE(timer.update(99));
    EXPECT_TRUE(timer.update(500));
    EXPECT_EQ(timer.timer, 0);
    EXPECT_FALSE(timer.update(99));
    EXPECT_TRUE(timer.update(1));
}

TEST(IntervallTimer, stopsAndGoesOn) {
    test::setRandom({0, 50});
    IntervallTimer timer;
    timer.set(100, 200);
    EXPECT_FALSE(timer.update(60));
    timer.stop();
    EXPECT_FALSE(timer.update(1000));
    EXPECT_EQ(timer.timer, 60);
    timer.start();
    EXPECT_FALSE(timer.update(39));
    EXPECT_EQ(timer.timer, 99);
    timer.reset();
    EXPECT_EQ(timer.timer, 0);
    EXPECT_EQ(timer.act_intervall, 150);
    EXPECT_FALSE(timer.update(149));
}

TEST(IntervallTimer, withoutUpperBoundLandsBetweenOnceAndTwiceTheLower) {
    // The lower bound is not the interval itself: it is overwritten by the draw.
    test::setRandom({0, 100, 101, 150});
    IntervallTimer timer;
    timer.set(100, -1);
    EXPECT_EQ(timer.act_intervall, 100);
    timer.setIntervall();
    EXPECT_EQ(timer.act_intervall, 200);
    timer.setIntervall();
    EXPECT_EQ(timer.act_intervall, 100);
    timer.setIntervall();
    EXPECT_EQ(timer.act_intervall, 149);
}

TEST(IntervallTimer, survivesBoundsThatMakeNoRange) {
    test::seedRandom(1);
    IntervallTimer timer;
    timer.set(500, 500);
    EXPECT_EQ(timer.act_intervall, 500);
    timer.set(INT_MIN, INT_MAX);
    timer.set(INT_MAX, INT_MIN);
    timer.set(-1, 500);
    EXPECT_EQ(timer.min_interv, -1);
}

TEST(IntervallTimer, survivesHugeSteps) {
    test::setRandom({0, 0});
    IntervallTimer timer;
    timer.set(INT_MAX - 1, INT_MAX);
    EXPECT_FALSE(timer.update(INT_MAX - 2));
    EXPECT_TRUE(timer.update(INT_MAX));
    EXPECT_EQ(timer.timer, 0);
}

}  // namespace
