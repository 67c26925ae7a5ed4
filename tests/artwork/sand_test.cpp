// The sand is the stage of the bottom view: figures of how it looks there, over several moments.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "sand_figures.h"

namespace {

constexpr SandBox EVERYTHING{0, 0, 120, 90};

/// A grey picture, each pixel as bright as the function says.
template <class Brightness>
Picture painted(Brightness brightness) {
    Picture picture;
    picture.width = EVERYTHING.right;
    picture.height = EVERYTHING.bottom;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            for (int channel = 0; channel < 3; ++channel)
                picture.rgb.push_back(static_cast<uint8_t>(brightness(x, y)));
    return picture;
}

TEST(SandFigures, OfAnEvenPictureAreNothing) {
    const SandFigures f = measureSand(painted([](int, int) { return 200; }), EVERYTHING);
    EXPECT_EQ(f.saturation, 0);
    EXPECT_EQ(f.deviation, 0);
    EXPECT_NEAR(f.brightest, 200, 1e-6);
    EXPECT_NEAR(f.crispness, 0, 1e-9);
    EXPECT_EQ(f.line, 0);
    EXPECT_NEAR(f.fine, 0, 1e-9);
}

TEST(SandFigures, TellHowColourfulTheSandIs) {
    Picture picture = painted([](int, int) { return 200; });
    for (size_t i = 2; i < picture.rgb.size(); i += 3)
        picture.rgb[i] = 160;
    EXPECT_NEAR(measureSand(picture, EVERYTHING).saturation, 0.2, 1e-6);
}

TEST(SandFigures, LeaveOutWhatIsNotSand) {
    Picture picture = painted([](int x, int) { return x < 60 ? 200 : 20; });
    EXPECT_EQ(measureSand(picture, EVERYTHING).deviation, 0);
}

TEST(SandFigures, TellHowWideALineIs) {
    for (const int width : {6, 10}) {
        const auto stripes = [&](int, int y) {
            return y % 30 >= 10 && y % 30 < 10 + width ? 240 : 150;
        };
        EXPECT_NEAR(measureSand(painted(stripes), EVERYTHING).line, width, 1.5) << width;
    }
}

TEST(SandFigures, TellSlopesAndFineDetailApart) {
    const SandFigures ramp = measureSand(painted([](int x, int) { return 100 + x; }), EVERYTHING);
    EXPECT_NEAR(ramp.crispness, 1, 0.01);
    EXPECT_LT(ramp.fine, 0.2);
    const SandFigures grain =
        measureSand(painted([](int x, int y) { return (x + y) % 2 == 0 ? 190 : 210; }), EVERYTHING);
    EXPECT_NEAR(grain.fine, 10, 0.2);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

SandFigures medians(const std::vector<SandFigures>& all) {
    const auto of = [&](double SandFigures::*figure) {
        std::vector<double> values;
        for (const SandFigures& f : all)
            values.push_back(f.*figure);
        return median(values);
    };
    SandFigures result;
    for (double SandFigures::*figure :
         {&SandFigures::saturation, &SandFigures::deviation, &SandFigures::brightest,
          &SandFigures::crispness, &SandFigures::line, &SandFigures::fine})
        result.*figure = of(figure);
    return result;
}

/// What the real scene shows: medians over three moments, so that no single fish matters.
TEST(Sand, IsWarmBrightAndCrispBeforeTheEye) {
    std::vector<SandFigures> near, middle;
    const std::string path = testing::TempDir() + "atollia-sand.png";
    for (const char* moment : {"3 --seed 3", "20 --seed 20", "45 --seed 45"}) {
        const std::string command = std::string("'") + SNAPSHOT + "' '" + path +
                                    "' --view bottom --size 1280x948 --seconds " + moment;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        const Picture picture = Picture::loadPng(path);
        ASSERT_EQ(picture.width, 1280);
        near.push_back(measureSand(picture, NEAR_SAND));
        middle.push_back(measureSand(picture, MIDDLE_SAND));
    }
    std::remove(path.c_str());

    const SandFigures n = medians(near), m = medians(middle);
    EXPECT_NEAR(n.saturation, 0.126, 0.012);
    EXPECT_NEAR(n.deviation, 20.6, 4);
    EXPECT_GE(n.brightest, 241);
    EXPECT_GE(n.crispness, 9);
    EXPECT_NEAR(n.line, 8.3, 0.3);
    EXPECT_GE(n.fine, 3.8);

    EXPECT_NEAR(m.saturation, 0.127, 0.023);
    EXPECT_NEAR(m.deviation, 22.6, 4);
    EXPECT_GE(m.brightest, 240);
    EXPECT_GE(m.crispness, 14.3);
    EXPECT_NEAR(m.line, 5.9, 0.3);
    EXPECT_GE(m.fine, 5);
}

}  // namespace
