#include "host/FramePacer.h"

#include <gtest/gtest.h>

#include "host/Renderer.h"

namespace {

/// Frames that a limit lets through in ten seconds of ticks every so many milliseconds.
int framesInTenSeconds(double framesPerSecond, int tick) {
    FrameLimit limit(framesPerSecond);
    int frames = 0;
    for (std::int64_t now = 1000; now < 11000; now += tick)
        frames += limit.due(now) ? 1 : 0;
    return frames;
}

TEST(FrameLimit, KeepsTheRateAlthoughTicksDoNotDivideIt) {
    EXPECT_NEAR(framesInTenSeconds(60, 10), 600, 2);
    EXPECT_NEAR(framesInTenSeconds(30, 10), 300, 2);
    EXPECT_NEAR(framesInTenSeconds(59.94, 10), 599, 2);
    EXPECT_NEAR(framesInTenSeconds(1, 10), 10, 1);
}

TEST(FrameLimit, CannotMakeFramesOutOfTooFewTicks) {
    EXPECT_EQ(framesInTenSeconds(144, 10), 1000);
    EXPECT_EQ(framesInTenSeconds(60, 100), 100);
}

TEST(FrameLimit, DoesNotCatchUpAfterAPause) {
    FrameLimit limit(50);
    EXPECT_TRUE(limit.due(1000));
    EXPECT_TRUE(limit.due(61000));
    int frames = 0;
    for (std::int64_t now = 61001; now <= 62000; ++now)
        frames += limit.due(now) ? 1 : 0;
    EXPECT_NEAR(frames, 50, 1);
}

TEST(FrameLimit, IsTheRefreshRateOrThirtyOrWhatIsWanted) {
    EXPECT_EQ(frameLimit(0, 75, false), 75);
    EXPECT_EQ(frameLimit(0, 75, true), 30);
    EXPECT_EQ(frameLimit(0, 24, true), 24);
    EXPECT_EQ(frameLimit(25, 75, false), 25);
    EXPECT_EQ(frameLimit(25, 75, true), 25);
    EXPECT_EQ(frameLimit(50, 75, true), 50);
    EXPECT_EQ(frameLimit(500, 75, false), 75);
    EXPECT_EQ(frameLimit(0, 0, false), 60);
    EXPECT_EQ(frameLimit(0, -1, false), 60);
}

TEST(Renderers, ThatDrawOnTheProcessorAreKnown) {
    EXPECT_TRUE(isSoftwareRenderer("llvmpipe (LLVM 15.0.6, 256 bits)"));
    EXPECT_TRUE(isSoftwareRenderer("softpipe"));
    EXPECT_TRUE(isSoftwareRenderer("Software Rasterizer"));
    EXPECT_FALSE(isSoftwareRenderer("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
    EXPECT_FALSE(isSoftwareRenderer(nullptr));
}

TEST(Renderers, SmoothEdgesWhereTheyCostNothingOrAreWanted) {
    EXPECT_EQ(samplesPerPixel({}, true), 4);
    EXPECT_EQ(samplesPerPixel({}, false), 0);
    EXPECT_EQ(samplesPerPixel(0, true), 0);
    EXPECT_EQ(samplesPerPixel(8, true), 8);
    EXPECT_EQ(samplesPerPixel(2, false), 2);
}

TEST(ShownState, AnyReasonIsEnoughNotToDraw) {
    EXPECT_TRUE((SHOWN_STATE{true, false, false}).seen());
    EXPECT_FALSE((SHOWN_STATE{false, false, false}).seen());
    EXPECT_FALSE((SHOWN_STATE{true, true, false}).seen());
    EXPECT_FALSE((SHOWN_STATE{true, false, true}).seen());
}

}  // namespace
