// Pictures that repeat, in space or in time, do so without a seam.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "data_files.h"

using namespace test;

namespace {

float distance(const Picture& a, int ax, int ay, const Picture& b, int bx, int by) {
    return art::length(a.colour(ax, ay) - b.colour(bx, by)) +
           std::fabs(static_cast<float>(a.alpha(ax, ay) - b.alpha(bx, by)));
}

/// Mean difference between a column and the one to its right (which wraps round).
float columnStep(const Picture& p, int x) {
    float sum = 0;
    for (int y = 0; y < p.height; ++y)
        sum += distance(p, x, y, p, x + 1, y);
    return sum / static_cast<float>(p.height);
}

float rowStep(const Picture& p, int y) {
    float sum = 0;
    for (int x = 0; x < p.width; ++x)
        sum += distance(p, x, y, p, x, y + 1);
    return sum / static_cast<float>(p.width);
}

/// The step over the seam is like the others.
void expectSeamlessAcross(const Picture& p, const std::string& name) {
    float largest = 0;
    for (int x = 0; x < p.width - 1; ++x)
        largest = std::max(largest, columnStep(p, x));
    EXPECT_LE(columnStep(p, p.width - 1), 1.1f * largest + 0.2f) << name;
}

void expectSeamlessDown(const Picture& p, const std::string& name) {
    float largest = 0;
    for (int y = 0; y < p.height - 1; ++y)
        largest = std::max(largest, rowStep(p, y));
    EXPECT_LE(rowStep(p, p.height - 1), 1.1f * largest + 0.2f) << name;
}

struct Animation {
    const char* name;
    std::vector<std::string> (*files)();
    bool multiplies;  ///< darkens what it lies on
    float jump;       ///< how far a step may exceed the usual one; glints come and go in bursts
};

void PrintTo(const Animation& animation, std::ostream* out) { *out << animation.name; }

class Animations : public testing::TestWithParam<Animation> {
protected:
    void SetUp() override {
        for (const std::string& name : GetParam().files())
            frames.push_back(readPicture(name));
        ASSERT_EQ(frames.size(), 32u);
        for (const Picture& frame : frames) {
            ASSERT_TRUE(frame.bits == 24 || frame.bits == 32);
            ASSERT_EQ(frame.width, frames[0].width);
            ASSERT_EQ(frame.height, frames[0].height);
            ASSERT_EQ(frame.width & (frame.width - 1), 0);
            ASSERT_EQ(frame.height & (frame.height - 1), 0);
        }
    }

    float step(size_t from, size_t to) const {
        float sum = 0;
        const Picture &a = frames[from], &b = frames[to];
        for (int y = 0; y < a.height; ++y)
            for (int x = 0; x < a.width; ++x)
                sum += distance(a, x, y, b, x, y);
        return sum / static_cast<float>(a.width * a.height);
    }

    std::vector<Picture> frames;
};

TEST_P(Animations, RepeatInBothDirections) {
    const auto names = GetParam().files();
    for (size_t i = 0; i < frames.size(); i += 5) {
        expectSeamlessAcross(frames[i], names[i]);
        expectSeamlessDown(frames[i], names[i]);
    }
}

TEST_P(Animations, FlowEvenlyRoundTheLoop) {
    std::vector<float> steps;
    for (size_t i = 0; i < frames.size(); ++i)
        steps.push_back(step(i, (i + 1) % frames.size()));
    std::vector<float> sorted = steps;
    std::sort(sorted.begin(), sorted.end());
    const float usual = sorted[sorted.size() / 2];
    EXPECT_GT(usual, 0.0f) << "stands still";
    for (size_t i = 0; i < steps.size(); ++i) {
        EXPECT_LT(steps[i], GetParam().jump * usual) << "after frame " << i;
        EXPECT_GT(steps[i], usual / GetParam().jump) << "after frame " << i;
    }
}

TEST_P(Animations, HaveTheBrightnessThatTheSceneCountsOn) {
    for (const Picture& frame : frames) {
        float sum = 0, brightest = 0;
        for (int y = 0; y < frame.height; ++y)
            for (int x = 0; x < frame.width; ++x) {
                const float v = frame.colour(x, y).y / 255;
                sum += v;
                brightest = std::max(brightest, v);
            }
        const float mean = sum / static_cast<float>(frame.width * frame.height);
        EXPECT_GT(brightest, 0.97f);
        if (GetParam().multiplies) {
            EXPECT_GE(mean, 0.75f);
            EXPECT_LE(mean, 0.85f);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scene, Animations,
                         testing::Values(Animation{"caustics", caustics, true, 1.4f},
                                         Animation{"fishCaustics", fishCaustics, true, 1.4f},
                                         Animation{"highlights", highlights, false, 2.2f}),
                         [](const auto& info) { return info.param.name; });

TEST(Water, DriftsWithoutASeam) { expectSeamlessAcross(readPicture("water.nlt"), "water.nlt"); }

}  // namespace
