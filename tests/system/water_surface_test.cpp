#include "WaterSurface.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

namespace {

// A height by its definition: single-precision sines, each scaled and then added.
float heightAt(int i, int j, float phase1, float phase2) {
    const float a = static_cast<float>(std::sin(i * 3.1415927 * 0.18 + phase1));
    const float b = static_cast<float>(std::sin(j * 3.1415927 * 0.15 + phase2));
    return static_cast<float>(b * 0.035 + a * 0.035);
}

class WaterSurfaceTest : public ::testing::Test {
protected:
    WaterSurfaceTest() {
        test::clear();
        test::setTicks(1000);
        water.timer = 1000;
    }
    ~WaterSurfaceTest() override {
        water.cleanup();
        EXPECT_EQ(test::imbalance(), "");
    }

    const WATERPOINT& point(int i, int j) const { return water.points_x[i].points_y[j]; }
    void expectHeights() const {
        for (int i = 0; i < water.numPoints_x; ++i) {
            for (int j = 0; j < water.numPoints_y; ++j)
                ASSERT_EQ(point(i, j).pos.z, heightAt(i, j, water.curoffset1, water.curoffset2))
                    << i << ", " << j;
        }
    }

    WaterSurface water;
};

TEST_F(WaterSurfaceTest, startsAsDocumented) {
    test::setTicks(42);
    const WaterSurface fresh;
    EXPECT_EQ(fresh.timer, 42u);
    EXPECT_EQ(fresh.texturefactor, 1);
    EXPECT_EQ(fresh.curoffset1, 0);
    EXPECT_EQ(fresh.curoffset2, 0);
    EXPECT_EQ(fresh.points_x, nullptr);
    EXPECT_EQ(fresh.numSqares_x, 0);
    EXPECT_EQ(fresh.numSqares_y, 0);
    EXPECT_EQ(fresh.numPoints_x, 0);
    EXPECT_EQ(fresh.numPoints_y, 0);
}

TEST_F(WaterSurfaceTest, nothingIsNeededBeforeInitialize) {
    water.update();
    water.render();
    water.cleanup();
    EXPECT_TRUE(test::vertices().empty());
}

TEST_F(WaterSurfaceTest, buildsACentredGrid) {
    water.initialize(50, 50, 50, 50);
    EXPECT_EQ(water.numSqares_x, 50);
    EXPECT_EQ(water.numSqares_y, 50);
    EXPECT_EQ(water.numPoints_x, 51);
    EXPECT_EQ(water.numPoints_y, 51);
    for (int i = 0; i <= 50; ++i) {
        for (int j = 0; j <= 50; ++j) {
            expectVector(point(i, j).pos, i - 25.f, j - 25.f, 0, 0);
            EXPECT_NEAR(point(i, j).tex.x, i / 50.f, 1e-6);
            EXPECT_NEAR(point(i, j).tex.y, 1 - j / 50.f, 1e-6);
        }
    }
}

TEST_F(WaterSurfaceTest, repeatsItsTextureFromTheNextInitialize) {
    water.initialize(10, 20, 2, 4);
    water.setTexFactor(6);
    EXPECT_EQ(point(2, 0).tex.x, 1);
    water.initialize(10, 20, 2, 4);
    EXPECT_EQ(point(2, 0).tex.x, 6);
    EXPECT_EQ(point(0, 0).tex.y, 6);
    EXPECT_EQ(point(0, 4).tex.y, 0);
    expectVector(point(1, 1).pos, 0, -5, 0, 0);
}

TEST_F(WaterSurfaceTest, canBeInitializedAgain) {
    // The address sanitizer sees to it that everything before is freed, and no more.
    water.initialize(50, 50, 50, 50);
    water.initialize(10, 10, 3, 7);
    EXPECT_EQ(water.numPoints_x, 4);
    EXPECT_EQ(water.numPoints_y, 8);
    water.initialize(10, 10, 60, 2);
    EXPECT_EQ(water.numPoints_x, 61);
    expectVector(point(60, 2).pos, 5, 5, 0, 1e-5f);
}

TEST_F(WaterSurfaceTest, initializeCleansUpThroughTheVirtualTable) {
    struct Counting : WaterSurface {
        void cleanup() override {
            ++cleanups;
            WaterSurface::cleanup();
        }
        int cleanups = 0;
    } counting;
    counting.initialize(1, 1, 1, 1);
    EXPECT_EQ(counting.cleanups, 1);
    counting.cleanup();
}

TEST_F(WaterSurfaceTest, mayBeASingleCell) {
    water.initialize(4, 6, 1, 1);
    ASSERT_NE(water.points_x, nullptr);
    EXPECT_EQ(water.numPoints_x, 2);
    EXPECT_EQ(water.numPoints_y, 2);
    EXPECT_EQ(water.points_x[0].points_y[0].pos, GLVector3(-2, -3, 0));
    EXPECT_EQ(water.points_x[1].points_y[1].pos, GLVector3(2, 3, 0));
    test::advanceTicks(100);
    water.update();
    EXPECT_FLOAT_EQ(water.points_x[0].points_y[0].pos.z, 2 * 0.035f * std::sin(0.5f));
    water.render();
    EXPECT_EQ(test::vertices().size(), 4u);
}

TEST_F(WaterSurfaceTest, survivesSegmentsThatMakeNoGrid) {
    for (const int n : {0, -1, -100}) {
        water.initialize(10, 10, n, 5);
        EXPECT_EQ(water.points_x, nullptr);
        water.update();
        water.render();
        water.initialize(10, 10, 5, n);
        EXPECT_EQ(water.points_x, nullptr);
        water.update();
        water.render();
    }
    EXPECT_TRUE(test::vertices().empty());
}

TEST_F(WaterSurfaceTest, heightsFollowTwoWaves) {
    water.initialize(50, 50, 50, 50);
    water.update();
    EXPECT_EQ(water.curoffset1, 0);
    expectHeights();
    EXPECT_EQ(point(0, 0).pos.z, 0);
    // Columns go through a wave of 0.18 pi per column, rows through one of 0.15 pi per row.
    EXPECT_NEAR(point(1, 0).pos.z, 0.035 * std::sin(0.18 * M_PI), 1e-7);
    EXPECT_NEAR(point(0, 1).pos.z, 0.035 * std::sin(0.15 * M_PI), 1e-7);

    test::advanceTicks(100);
    water.update();
    EXPECT_FLOAT_EQ(water.curoffset1, 0.5f);
    EXPECT_FLOAT_EQ(water.curoffset2, 0.5f);
    expectHeights();
    EXPECT_NEAR(point(0, 0).pos.z, 0.07 * std::sin(0.5), 1e-7);
    for (int i = 0; i <= 50; ++i) {
        for (int j = 0; j <= 50; ++j) {
            ASSERT_LE(std::fabs(point(i, j).pos.z), 0.07f);
            ASSERT_EQ(point(i, j).pos.x, i - 25.f);
            ASSERT_EQ(point(i, j).pos.y, j - 25.f);
        }
    }
}

TEST_F(WaterSurfaceTest, standsStillWithinAMillisecond) {
    water.initialize(10, 10, 10, 10);
    test::advanceTicks(333);
    water.update();
    const float before = point(3, 4).pos.z;
    water.update();
    EXPECT_EQ(point(3, 4).pos.z, before);
    expectHeights();
}

TEST_F(WaterSurfaceTest, phasesWrapOnce) {
    water.initialize(10, 10, 10, 10);
    test::advanceTicks(1257);  // 6.285 radians
    water.update();
    EXPECT_NEAR(water.curoffset1, 6.285 - 6.2831855, 1e-5);
    EXPECT_NEAR(water.curoffset2, 6.285 - 6.2831855, 1e-5);
    // A long pause leaves them above a full turn until later frames bring them down.
    test::advanceTicks(4000);
    water.update();
    EXPECT_NEAR(water.curoffset1, 0.0018 + 20 - 6.2831855, 1e-3);
    expectHeights();
    water.update();
    EXPECT_NEAR(water.curoffset1, 0.0018 + 20 - 2 * 6.2831855, 1e-3);
}

TEST_F(WaterSurfaceTest, manySmallStepsEqualOneLargeOne) {
    water.initialize(10, 10, 10, 10);
    for (int i = 0; i < 100; ++i) {
        test::advanceTicks(10);
        water.update();
    }
    EXPECT_NEAR(water.curoffset1, 5, 1e-4);
    expectHeights();
}

TEST_F(WaterSurfaceTest, runsAcrossTheWrapOfTheClock) {
    water.initialize(10, 10, 10, 10);
    test::setTicks(0xffffffffu - 49);
    water.timer = 0xffffffffu - 49;
    test::advanceTicks(100);
    water.update();
    EXPECT_FLOAT_EQ(water.curoffset1, 0.5f);
    EXPECT_EQ(water.timer, 50u);
}

TEST_F(WaterSurfaceTest, isDrawnCellByCell) {
    Texture texture;
    water.addTexture(&texture);
    water.initialize(4, 6, 2, 3);
    test::advanceTicks(200);
    water.update();
    water.render();
    EXPECT_EQ(test::count("glBegin"), 1);
    EXPECT_FALSE(test::wasCalled("glNormal3f"));
    EXPECT_EQ(test::count("glColor4f"), 1);
    const auto& drawn = test::vertices();
    ASSERT_EQ(drawn.size(), 24u);
    size_t n = 0;
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 3; ++j) {
            for (const auto& [di, dj] : {std::pair{0, 1}, {0, 0}, {1, 0}, {1, 1}}) {
                const WATERPOINT& expected = point(i + di, j + dj);
                const test::GL_VERTEX& v = drawn[n++];
                EXPECT_EQ(v.primitive, GLenum{GL_QUADS});
                expectVector({v.x, v.y, v.z}, expected.pos.x, expected.pos.y, expected.pos.z, 0);
                EXPECT_EQ(v.u[0], expected.tex.x);
                EXPECT_EQ(v.v[0], expected.tex.y);
            }
        }
    }
}

TEST_F(WaterSurfaceTest, keepsItsPlacementToItself) {
    water.initialize(1, 1, 1, 1);
    water.enableAlphaBlending(true);
    water.render();
    EXPECT_EQ(test::calls().front().name, "glPushMatrix");
    EXPECT_LT(test::indexOf("glPopMatrix"), test::indexOf(test::GL_CALL{"glDisable", {GL_BLEND}}));
}

TEST_F(WaterSurfaceTest, cleanupMayBeRepeated) {
    water.initialize(5, 5, 5, 5);
    water.cleanup();
    EXPECT_EQ(water.points_x, nullptr);
    water.cleanup();
    water.update();
    water.render();
    EXPECT_TRUE(test::vertices().empty());
}

}  // namespace
