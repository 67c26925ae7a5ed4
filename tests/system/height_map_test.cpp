#include "system/HeightMap.h"

#include <SDL_rwops.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

#include "support.h"
#include "support/gl_recorder.h"

namespace {

uint32_t slope(int x, int y) { return (x + 7 * y) % 256; }

class HeightMapTest : public ::testing::Test {
protected:
    HeightMapTest() { test::clear(); }
    ~HeightMapTest() override { map.cleanup(); }

    bool load(const std::vector<uint8_t>& bytes) {
        return map.loadBMP(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())),
                           "map.nlt");
    }
    void loadSlope(int width, int height) { ASSERT_TRUE(load(bitmap(width, height, 8, slope))); }

    HeightMap map;
};

TEST_F(HeightMapTest, startsAsDocumented) {
    EXPECT_EQ(map.mapsize_x, 0);
    EXPECT_EQ(map.mapsize_y, 0);
    EXPECT_EQ(map.numVerts, 0);
    EXPECT_EQ(map.stepsize_x, 0);
    EXPECT_EQ(map.stepsize_y, 0);
    EXPECT_EQ(map.worldsize_x, 5);
    EXPECT_EQ(map.worldsize_y, 5);
    EXPECT_EQ(map.numSegments_x, 50);
    EXPECT_EQ(map.numSegments_y, 50);
    EXPECT_EQ(map.heightfactor, 0.001f);
    EXPECT_EQ(map.mapdata, nullptr);
    EXPECT_EQ(map.numMapPixels, 0);
    EXPECT_EQ(map.vertices, nullptr);
    EXPECT_FALSE(map.initialized);
    const MAP_VERTEX vertex;
    expectVector(vertex.vec, 0, 0, 0, 0);
    EXPECT_TRUE(vertex.tex == GLVector2(0, 0));
    EXPECT_EQ(vertex.modifier_x, 0);
    EXPECT_EQ(vertex.modifier_y, 0);
    EXPECT_EQ(vertex.modifier_z, 0);
}

// ---- samples

TEST_F(HeightMapTest, paletteIndicesAreHeights) {
    map.initialized = true;
    const TestFile file("heights.nlt", bitmap(8, 4, 8, slope));
    EXPECT_TRUE(map.loadBMP(file.path()));
    EXPECT_EQ(map.mapsize_x, 8);
    EXPECT_EQ(map.mapsize_y, 4);
    EXPECT_EQ(map.numMapPixels, 32);
    EXPECT_FLOAT_EQ(map.stepsize_x, 7 / 50.f);
    EXPECT_FLOAT_EQ(map.stepsize_y, 3 / 50.f);
    EXPECT_FALSE(map.initialized);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 8; ++x)
            EXPECT_EQ(map.getHeightData(x, y), static_cast<int>(slope(x, y)));
    }
}

TEST_F(HeightMapTest, rowsAreTakenWithoutRegardToPadding) {
    // The decoder pads rows of 5 to 8 bytes, which shift what follows.
    ASSERT_TRUE(load(bitmap(5, 3, 8, [](int x, int y) { return 10 * (y + 1) + x; })));
    EXPECT_EQ(map.numMapPixels, 15);
    EXPECT_EQ(map.getHeightData(4, 0), 14);
    EXPECT_EQ(map.getHeightData(3, 1), 20);
}

TEST_F(HeightMapTest, samplesWrapAround) {
    loadSlope(8, 4);
    EXPECT_EQ(map.getHeightData(8, 0), map.getHeightData(0, 0));
    EXPECT_EQ(map.getHeightData(17, 9), map.getHeightData(1, 1));
    EXPECT_EQ(map.getHeightData(INT_MAX, INT_MAX), map.getHeightData(7, 3));
    // The remainder keeps its sign, so a negative column lies in the row before.
    EXPECT_EQ(map.getHeightData(-1, 1), map.getHeightData(7, 0));
    EXPECT_EQ(map.getHeightData(-1, 0), 0) << "in front of the first sample";
    EXPECT_EQ(map.getHeightData(0, -3), 0);
    EXPECT_EQ(map.getHeightData(INT_MIN, INT_MIN), 0 + map.getHeightData(0, 0));
}

TEST_F(HeightMapTest, withoutSamplesHeightsAreZero) { EXPECT_EQ(map.getHeightData(3, 4), 0); }

TEST_F(HeightMapTest, namesAFileThatIsMissing) {
    loadSlope(4, 4);
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(map.loadBMP("/nowhere/map.nlt"));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Could not load height map: /nowhere/map.nlt\n");
    EXPECT_EQ(map.mapdata, nullptr) << "the old samples are gone";
    EXPECT_EQ(map.getHeightData(1, 1), 0);
}

TEST_F(HeightMapTest, refusesOtherDepths) {
    for (const int depth : {16, 24, 32}) {
        loadSlope(4, 4);
        ::testing::internal::CaptureStdout();
        EXPECT_FALSE(load(bitmap(4, 4, depth, slope)));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(),
                  "sdlsurf->format->BytesPerPixel != 1\n");
        EXPECT_EQ(map.mapdata, nullptr);
    }
}

TEST_F(HeightMapTest, badBitmapsGiveOneLineAndNoSamples) {
    const auto good = bitmap(8, 8, 8, slope);
    const struct {
        const char* name;
        std::vector<uint8_t> bytes;
    } CASES[] = {
        {"empty", {}},
        {"cut in the palette", {good.begin(), good.begin() + 500}},
        {"cut in the last row", {good.begin(), good.end() - 1}},
        {"oversized", changed(good, 18, 16000)},
        {"oversized upwards", changed(good, 22, INT_MAX)},
        {"zero columns", changed(good, 18, 0)},
        {"zero rows", changed(good, 22, 0)},
        {"negative width", changed(good, 18, 0xffffffff)},
    };
    for (const auto& c : CASES) {
        SCOPED_TRACE(c.name);
        ::testing::internal::CaptureStdout();
        EXPECT_FALSE(load(c.bytes));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Could not load height map: map.nlt\n");
        EXPECT_EQ(map.mapdata, nullptr);
        map.render();
    }
}

TEST_F(HeightMapTest, readsRawBytes) {
    std::vector<uint8_t> bytes;
    for (int i = 0; i < 12; ++i)
        bytes.push_back(static_cast<uint8_t>(i * 20));
    const TestFile file("heights.raw", bytes);
    map.initialized = true;
    EXPECT_TRUE(map.loadRAW(file.path(), 4, 3, 99));
    EXPECT_EQ(map.mapsize_x, 4);
    EXPECT_EQ(map.mapsize_y, 3);
    EXPECT_EQ(map.numMapPixels, 12);
    EXPECT_FLOAT_EQ(map.stepsize_x, 3 / 50.f);
    EXPECT_FALSE(map.initialized);
    EXPECT_EQ(map.getHeightData(3, 2), 220);
}

TEST_F(HeightMapTest, aMapMayBeOneSampleWideOrHigh) {
    const TestFile file("few.raw", {30, 40, 50});
    for (const auto& [width, height] : {std::pair{3, 1}, {1, 3}, {1, 1}}) {
        EXPECT_TRUE(map.loadRAW(file.path(), width, height, 8));
        EXPECT_EQ(map.getHeightData(0, 0), 30);
        EXPECT_EQ(map.getHeightData(width - 1, height - 1), 20 + 10 * width * height);
        EXPECT_EQ(map.getHeightData(width, height), 30);
        map.setNumSegments(2);
        map.render();
        EXPECT_EQ(map.numVerts, 8);
    }
}

TEST_F(HeightMapTest, aShortRawFileLeavesTheRestFlat) {
    const TestFile file("short.raw", {9, 8, 7});
    EXPECT_TRUE(map.loadRAW(file.path(), 4, 4, 8));
    EXPECT_EQ(map.getHeightData(2, 0), 7);
    EXPECT_EQ(map.getHeightData(3, 0), 0);
    EXPECT_EQ(map.getHeightData(3, 3), 0);
    const TestFile empty("empty.raw", {});
    EXPECT_TRUE(map.loadRAW(empty.path(), 4, 4, 8));
    EXPECT_EQ(map.getHeightData(0, 0), 0);
}

TEST_F(HeightMapTest, aMissingRawFileChangesNothing) {
    loadSlope(4, 4);
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(map.loadRAW("/nowhere/map.raw", 8, 8, 8));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_NE(map.mapdata, nullptr);
    EXPECT_EQ(map.mapsize_x, 4);
}

TEST_F(HeightMapTest, rawExtentsMustMakeAMap) {
    const TestFile file("four.raw", {1, 2, 3, 4});
    for (const auto& [width, height] :
         {std::pair{0, 4}, {4, 0}, {-2, -2}, {-1, 4}, {1 << 20, 1 << 20}}) {
        loadSlope(4, 4);
        EXPECT_FALSE(map.loadRAW(file.path(), width, height, 8)) << width << " x " << height;
        EXPECT_EQ(map.mapdata, nullptr);
    }
}

// ---- the strip

TEST_F(HeightMapTest, hasTwoVerticesPerCell) {
    loadSlope(8, 8);
    map.render();
    EXPECT_EQ(map.numVerts, 5000);
    EXPECT_EQ(test::vertices().size(), 5000u);
    EXPECT_EQ(test::count("glBegin"), 1);
    EXPECT_EQ(test::vertices()[0].primitive, GLenum{GL_TRIANGLE_STRIP});
    EXPECT_EQ(test::imbalance(), "");
}

TEST_F(HeightMapTest, stepsOverTheSamples) {
    ASSERT_TRUE(load(bitmap(260, 260, 8, slope)));
    map.mapsize_x = map.mapsize_y = 257;  // the width of a bitmap is a multiple of 4
    map.setNumSegments(64);
    EXPECT_EQ(map.stepsize_x, 4);
    EXPECT_EQ(map.stepsize_y, 4);
    map.initialize();
    EXPECT_EQ(map.numVerts, 64 * 64 * 2);
    EXPECT_FLOAT_EQ(map.vertices[0].tex.x, 4 / 257.f);
    EXPECT_EQ(map.vertices[0].tex.y, 0);
    EXPECT_EQ(map.vertices[1].tex.x, 0);
    EXPECT_EQ(map.vertices[1].tex.y, 0);
    EXPECT_FLOAT_EQ(map.vertices[2].tex.y, 4 / 257.f);
}

TEST_F(HeightMapTest, isOneSerpentineStrip) {
    loadSlope(8, 8);
    map.setNumSegments_X(3);
    map.setNumSegments_Y(2);
    map.setSize(16, 24);
    map.setHeightFactor(0.5f);
    map.initialize();
    EXPECT_TRUE(map.initialized);
    ASSERT_EQ(map.numVerts, 12);
    EXPECT_EQ(map.resizefactor_x, 2);
    EXPECT_EQ(map.resizefactor_y, 3);

    const float sx = 7 / 3.f, sy = 3.5f;
    const struct {
        float column, row;
    } ORDER[] = {{1, 0}, {0, 0}, {1, 1}, {0, 1},   // upwards: right edge first
                 {1, 1}, {2, 1}, {1, 0}, {2, 0},   // downwards: left edge first
                 {3, 0}, {2, 0}, {3, 1}, {2, 1}};  // upwards again
    for (int i = 0; i < 12; ++i) {
        SCOPED_TRACE(i);
        const MAP_VERTEX& v = map.vertices[i];
        const float x = ORDER[i].column * sx, y = ORDER[i].row * sy;
        const int height = map.getHeightData(static_cast<int>(x), static_cast<int>(y));
        expectVector(v.vec, x * 2 - 8, height * 0.5f, y * 3 - 24, 1e-5f);
        EXPECT_NEAR(v.tex.x, x / 8, 1e-6);
        EXPECT_NEAR(v.tex.y, y / 8, 1e-6);
        EXPECT_EQ(v.modifier_x, 0);
        EXPECT_EQ(v.modifier_y, 0);
        EXPECT_EQ(v.modifier_z, 0);
    }
}

TEST_F(HeightMapTest, rowZeroIsTheFarEdge) {
    loadSlope(8, 8);
    map.setSize(60, 50);
    map.initialize();
    float far = 1, near = -100;
    for (int i = 0; i < map.numVerts; ++i) {
        far = std::min(far, map.vertices[i].vec.z);
        near = std::max(near, map.vertices[i].vec.z);
    }
    EXPECT_EQ(far, -50);
    EXPECT_EQ(map.vertices[0].tex.y, 0);
    EXPECT_EQ(map.vertices[0].vec.z, -50);
    // The last row of samples is never reached.
    EXPECT_FLOAT_EQ(near, 49 * (7 / 50.f) * (50 / 8.f) - 50);
    EXPECT_EQ(map.vertices[1].vec.x, -30);
}

TEST_F(HeightMapTest, heightsAreTakenAtTruncatedPositions) {
    ASSERT_TRUE(load(bitmap(4, 4, 8, [](int x, int) { return x * 100; })));
    map.setNumSegments(2);
    map.setHeightFactor(1);
    map.initialize();
    // Column 1 lies at sample 1.5.
    EXPECT_EQ(map.vertices[0].vec.y, 100);
}

TEST_F(HeightMapTest, drawsAtTheModifiedPlace) {
    loadSlope(4, 4);
    Texture texture;
    map.addTexture(&texture);
    map.setNumSegments(1);
    map.initialize();
    map.vertices[1].modifier_x = 1;
    map.vertices[1].modifier_y = 2;
    map.vertices[1].modifier_z = 3;
    map.render();
    ASSERT_EQ(test::vertices().size(), 2u);
    const auto& v = test::vertices()[1];
    const MAP_VERTEX& expected = map.vertices[1];
    expectVector({v.x, v.y, v.z}, expected.vec.x + 1, expected.vec.y + 2, expected.vec.z + 3);
    EXPECT_EQ(test::vertices()[0].u[0], map.vertices[0].tex.x);
}

TEST_F(HeightMapTest, preRenderBuildsThenModifiesThenPlaces) {
    struct Swaying : HeightMap {
        void modify() override {
            had_vertices = vertices != nullptr;
            had_pushed = test::wasCalled("glPushMatrix");
            had_placed = test::wasCalled("glMultMatrixf");
        }
        bool had_vertices = false, had_pushed = false, had_placed = true;
    } swaying;
    const auto bytes = bitmap(4, 4, 8, slope);
    ASSERT_TRUE(
        swaying.loadBMP(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())), ""));
    swaying.render();
    EXPECT_TRUE(swaying.had_vertices);
    EXPECT_TRUE(swaying.had_pushed);
    EXPECT_FALSE(swaying.had_placed);
    swaying.cleanup();
}

TEST_F(HeightMapTest, keepsItsPlacementToItself) {
    loadSlope(4, 4);
    map.setNumSegments(1);
    map.setPosition(1, 2, 3);
    map.enableAlphaBlending(true);
    map.removeFlags(DEPTH_TESTING);
    map.render();
    std::vector<std::string> names;
    for (const test::GL_CALL& call : test::calls())
        names.push_back(call.name);
    EXPECT_THAT(names, ::testing::ElementsAre("glPushMatrix", "glTranslatef", "glMultMatrixf",
                                              "glDisable", "glBlendFunc", "glEnable", "glDisable",
                                              "glColor4f", "glBegin", "glVertex3f", "glVertex3f",
                                              "glEnd", "glPopMatrix", "glDisable", "glEnable"));
    EXPECT_FALSE(test::isEnabled(GL_BLEND));
    EXPECT_TRUE(test::isEnabled(GL_DEPTH_TEST));
    EXPECT_EQ(test::imbalance(), "");
}

TEST_F(HeightMapTest, isBuiltOnceAndAgainWhenSettingsChange) {
    loadSlope(8, 8);
    map.render();
    const MAP_VERTEX* built = map.vertices;
    map.render();
    EXPECT_EQ(map.vertices, built);
    // The size alone does not count.
    map.setSize(100, 100);
    map.render();
    EXPECT_EQ(map.vertices[1].vec.x, -2.5f);
    map.setHeightFactor(0.001f);
    map.render();
    EXPECT_EQ(map.vertices[1].vec.x, -50);
    map.setSize(10, 10);
    map.setNumSegments(50);
    map.render();
    EXPECT_EQ(map.vertices[1].vec.x, -5);
}

TEST_F(HeightMapTest, segmentsFollowBothSetters) {
    loadSlope(8, 8);
    map.initialize();
    map.setNumSegments_X(7);
    EXPECT_FALSE(map.initialized);
    EXPECT_EQ(map.stepsize_x, 1);
    map.initialize();
    map.setNumSegments_Y(14);
    EXPECT_FALSE(map.initialized);
    EXPECT_EQ(map.stepsize_y, 0.5f);
    EXPECT_EQ(map.numSegments_x, 7);
}

TEST_F(HeightMapTest, withoutSamplesTheBuildIsRetried) {
    map.render();
    EXPECT_FALSE(map.initialized);
    EXPECT_EQ(map.numVerts, 0);
    EXPECT_TRUE(test::vertices().empty());
    loadSlope(4, 4);
    map.render();
    EXPECT_TRUE(map.initialized);
    EXPECT_EQ(test::vertices().size(), 5000u);
}

TEST_F(HeightMapTest, aFailedLoadKeepsTheMeshUntilItIsRebuilt) {
    loadSlope(8, 8);
    map.setHeightFactor(1);
    map.render();
    EXPECT_FALSE(load({}));
    test::clear();
    map.render();
    EXPECT_EQ(test::vertices().size(), 5000u);
    EXPECT_NE(map.vertices[4999].vec.y, 0);
    map.setHeightFactor(1);
    map.render();
    EXPECT_EQ(map.numVerts, 5000);
    EXPECT_EQ(map.vertices[4999].vec.y, 0) << "flat without samples";
}

TEST_F(HeightMapTest, survivesSegmentsThatMakeNoMesh) {
    loadSlope(4, 4);
    for (const int n : {0, -1, -50, INT_MAX, INT_MIN}) {
        map.setNumSegments(2);
        map.render();
        EXPECT_EQ(map.numVerts, 8);
        map.setNumSegments(n);
        map.render();
        EXPECT_EQ(map.numVerts, 0) << n;
    }
    for (const int n : {0, -1, INT_MIN}) {
        map.setNumSegments_X(n);
        map.setNumSegments_Y(2);
        map.render();
        EXPECT_EQ(map.numVerts, 0) << n << " columns";
        map.setNumSegments_X(2);
        map.setNumSegments_Y(n);
        map.render();
        EXPECT_EQ(map.numVerts, 0) << n << " rows";
    }
    map.setNumSegments(2);
    map.render();
    EXPECT_EQ(map.numVerts, 8);
}

TEST_F(HeightMapTest, textureCoordinatesDivideByTheMapSize) {
    loadSlope(8, 4);
    GLVector2 out;
    map.setTextureCoord(&out, 2, 3);
    EXPECT_TRUE(out == GLVector2(0.25f, 0.75f));
    map.setVertexColor(1, 2);
}

TEST_F(HeightMapTest, cleanupLeavesAnEmptyStrip) {
    loadSlope(4, 4);
    map.render();
    map.cleanup();
    EXPECT_EQ(map.mapdata, nullptr);
    EXPECT_EQ(map.vertices, nullptr);
    EXPECT_EQ(map.mapsize_x, 0);
    EXPECT_EQ(map.mapsize_y, 0);
    EXPECT_EQ(map.numVerts, 0);
    EXPECT_TRUE(map.initialized);
    test::clear();
    map.render();
    EXPECT_TRUE(test::vertices().empty());
    EXPECT_EQ(test::count("glBegin"), 1);
    map.cleanup();
}

}  // namespace
