#include "WaterGround.h"

#include <SDL_rwops.h>
#include <gtest/gtest.h>

#include <cmath>

#include "support.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

namespace {

class WaterGroundTest : public ::testing::Test {
protected:
    WaterGroundTest() {
        test::clear();
        test::setTicks(1000);
        ground.timer = 1000;
    }
    ~WaterGroundTest() override { ground.cleanup(); }

    void build(int segments_x, int segments_y) {
        const auto bytes = bitmap(64, 64, 8, [](int x, int y) { return x + y; });
        ASSERT_TRUE(ground.loadBMP(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())),
                                   "floor.nlt"));
        ground.setSize(60, 50);
        ground.setHeightFactor(0.015f);
        ground.setNumSegments_X(segments_x);
        ground.setNumSegments_Y(segments_y);
    }

    // The sway of every vertex by its definition, in the order of the strip.
    std::vector<float> expectedSway() const {
        std::vector<float> sway;
        const auto sine = [](float at, double frequency, float phase, double amplitude) {
            return static_cast<float>(std::sin(at * 3.1415927 * frequency + phase) * amplitude);
        };
        bool reverse = false;
        for (int i = 0; i < ground.numSegments_x; ++i) {
            const float x0 = i * ground.stepsize_x * ground.resizefactor_x;
            const float x1 = (i + 1) * ground.stepsize_x * ground.resizefactor_x;
            const float a0 = sine(x0, 0.19, ground.curoffset1, 0.01);
            const float a1 = sine(x1, 0.19, ground.curoffset1, 0.01);
            const int rows = ground.numSegments_y;
            for (int j = reverse ? rows - 1 : 0; reverse ? j >= 0 : j < rows;
                 j += reverse ? -1 : 1) {
                const float z = j * ground.stepsize_y * ground.resizefactor_y;
                const float c = sine(z, 0.13, ground.curoffset2, 0.02);
                sway.push_back((reverse ? a0 : a1) - c);
                sway.push_back((reverse ? a1 : a0) - c);
            }
            reverse = !reverse;
        }
        return sway;
    }
    void expectSway() const {
        const auto expected = expectedSway();
        ASSERT_EQ(ground.numVerts, static_cast<int>(expected.size()));
        for (int i = 0; i < ground.numVerts; ++i)
            ASSERT_EQ(ground.vertices[i].modifier_y, expected[i]) << i;
    }

    WaterGround ground;
};

TEST_F(WaterGroundTest, startsAsDocumented) {
    test::setTicks(9);
    const WaterGround fresh;
    EXPECT_EQ(fresh.curoffset1, 0);
    EXPECT_EQ(fresh.curoffset2, 0);
    EXPECT_EQ(fresh.timer, 9u);
}

TEST_F(WaterGroundTest, onlyTheClockRunsBeforeThereIsAMesh) {
    test::advanceTicks(500);
    ground.modify();
    EXPECT_EQ(ground.timer, 1500u);
    EXPECT_EQ(ground.curoffset1, 0);
    build(50, 50);
    ground.initialize();
    ground.modify();
    EXPECT_EQ(ground.curoffset1, 0) << "the time before is not saved up";
    EXPECT_EQ(ground.curoffset2, 0);
}

TEST_F(WaterGroundTest, swaysEveryVertex) {
    build(50, 50);
    ground.render();
    EXPECT_EQ(ground.numVerts, 5000);
    expectSway();
    test::advanceTicks(400);
    ground.render();
    EXPECT_FLOAT_EQ(ground.curoffset1, 1.4f);
    EXPECT_FLOAT_EQ(ground.curoffset2, 1.0f);
    expectSway();
    for (int i = 0; i < ground.numVerts; ++i) {
        const MAP_VERTEX& v = ground.vertices[i];
        ASSERT_LE(std::fabs(v.modifier_y), 0.03f);
        ASSERT_EQ(v.modifier_x, 0);
        ASSERT_EQ(v.modifier_z, 0);
    }
}

TEST_F(WaterGroundTest, swaysMeshesOfAnyShape) {
    for (const auto& [x, y] : {std::pair{1, 1}, {1, 7}, {2, 7}, {7, 1}, {3, 2}}) {
        SCOPED_TRACE(std::to_string(x) + " x " + std::to_string(y));
        build(x, y);
        test::advanceTicks(70);
        ground.render();
        expectSway();
    }
}

TEST_F(WaterGroundTest, showsNoCracks) {
    build(50, 50);
    test::advanceTicks(1234);
    ground.render();
    test::advanceTicks(500);
    ground.render();
    // The right edge of a column is the left edge of the next, which runs the other way.
    const auto at = [this](int column, int row, bool right) -> const MAP_VERTEX& {
        const bool up = column % 2 == 0;
        return ground.vertices[2 * (column * 50 + (up ? row : 49 - row)) + (up != right)];
    };
    for (int column = 0; column + 1 < 50; ++column) {
        for (int row = 0; row < 50; ++row) {
            const MAP_VERTEX& left = at(column, row, true);
            const MAP_VERTEX& right = at(column + 1, row, false);
            ASSERT_EQ(left.vec, right.vec);
            ASSERT_EQ(left.modifier_y, right.modifier_y);
        }
    }
}

TEST_F(WaterGroundTest, drawsTheSway) {
    build(3, 3);
    test::advanceTicks(100);
    ground.render();
    ASSERT_EQ(test::vertices().size(), 18u);
    for (int i = 0; i < 18; ++i)
        EXPECT_EQ(test::vertices()[i].y, ground.vertices[i].vec.y + ground.vertices[i].modifier_y);
}

TEST_F(WaterGroundTest, phasesWrapOnce) {
    build(4, 4);
    ground.initialize();
    test::advanceTicks(2000);
    ground.modify();
    EXPECT_NEAR(ground.curoffset1, 7 - 6.2831855, 1e-5);
    EXPECT_NEAR(ground.curoffset2, 5, 1e-5);
    test::advanceTicks(600000);
    ground.modify();
    EXPECT_NEAR(ground.curoffset1, 7 + 2100 - 2 * 6.2831855, 1e-2);
    expectSway();
}

TEST_F(WaterGroundTest, runsAcrossTheWrapOfTheClock) {
    build(4, 4);
    ground.initialize();
    ground.timer = 0xffffffffu - 99;
    test::setTicks(100);
    ground.modify();
    EXPECT_FLOAT_EQ(ground.curoffset1, 0.7f);
}

TEST_F(WaterGroundTest, leavesAMeshAloneThatSettingsHaveLeftBehind) {
    build(3, 3);
    ground.initialize();
    ground.setNumSegments(50);
    test::advanceTicks(100);
    ground.modify();
    EXPECT_EQ(ground.numVerts, 18);
    EXPECT_EQ(ground.vertices[0].modifier_y, 0);
    ground.render();
    expectSway();
}

TEST_F(WaterGroundTest, swaysAMeshMadeByHand) {
    ground.numSegments_x = 2;
    ground.numSegments_y = 3;
    ground.stepsize_x = 1.5f;
    ground.stepsize_y = 2;
    ground.resizefactor_x = 0.5f;
    ground.resizefactor_y = 0.25f;
    ground.numVerts = 12;
    ground.vertices = new MAP_VERTEX[12];
    test::advanceTicks(100);
    ground.modify();
    expectSway();
    EXPECT_NE(ground.vertices[11].modifier_y, 0);
}

TEST_F(WaterGroundTest, hasNothingToDoWithoutVertices) {
    build(3, 3);
    ground.render();
    ground.cleanup();
    test::advanceTicks(100);
    ground.render();
    EXPECT_EQ(ground.timer, 1100u);
    EXPECT_EQ(ground.curoffset1, 0);
}

TEST_F(WaterGroundTest, ignoresKeys) {
    build(3, 3);
    ground.render();
    const auto before = expectedSway();
    ground.keyPressed();
    EXPECT_EQ(ground.curoffset1, 0);
    EXPECT_EQ(ground.timer, 1000u);
    EXPECT_EQ(expectedSway(), before);
    expectSway();
}

}  // namespace
