// Every picture that the scene asks for.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "data_files.h"

using namespace test;

namespace {

struct Wanted {
    const char* name;
    int bits;
    int smallest;  ///< texels along the longer side
};

void PrintTo(const Wanted& wanted, std::ostream* out) { *out << wanted.name; }

std::string withoutSlashes(const testing::TestParamInfo<Wanted>& info) {
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
    return name;
}

bool isPowerOfTwo(int v) { return v > 0 && (v & (v - 1)) == 0; }

class Pictures : public testing::TestWithParam<Wanted> {};

TEST_P(Pictures, HaveTheSizeAndDepthThatTheyAreDrawnWith) {
    const Picture picture = readPicture(GetParam().name);
    EXPECT_EQ(picture.bits, GetParam().bits);
    EXPECT_TRUE(isPowerOfTwo(picture.width)) << picture.width;
    EXPECT_TRUE(isPowerOfTwo(picture.height)) << picture.height;
    EXPECT_GE(std::max(picture.width, picture.height), GetParam().smallest);
    EXPECT_LE(std::max(picture.width, picture.height), 2048);
}

INSTANTIATE_TEST_SUITE_P(
    Scene, Pictures,
    testing::Values(Wanted{"sky_cloudy.nlt", 24, 2048}, Wanted{"sky_clear_16.nlt", 24, 512},
                    Wanted{"sky_clear_32.nlt", 32, 512}, Wanted{"terrain.nlt", 24, 1024},
                    Wanted{"water.nlt", 32, 512}, Wanted{"gwfader.nlt", 32, 256},
                    Wanted{"blendmap.nlt", 32, 256}, Wanted{"island.nlt", 32, 1024},
                    Wanted{"models//rock2.nlt", 32, 512}, Wanted{"models//coral_a.nlt", 32, 256},
                    Wanted{"models//coral_b.nlt", 32, 256}, Wanted{"models//coral_c.nlt", 32, 256},
                    Wanted{"models//coral_d.nlt", 32, 256}, Wanted{"models//coral_f.nlt", 32, 256},
                    Wanted{"models//coral_g.nlt", 32, 256}, Wanted{"models//coral_h.nlt", 32, 256},
                    Wanted{"models//coral_i.nlt", 32, 256}, Wanted{"models//gull.nlt", 24, 256},
                    Wanted{"models//manta.nlt", 24, 256},
                    Wanted{"models/reeffishes/blaugelbfish.nlt", 32, 256},
                    Wanted{"models/reeffishes/rotfish.nlt", 32, 256},
                    Wanted{"models/reeffishes/moorishidol.nlt", 32, 256},
                    Wanted{"models/reeffishes/gsbfish.nlt", 32, 256},
                    Wanted{"models/reeffishes/swpfish.nlt", 32, 256},
                    Wanted{"models/reeffishes/rbig.nlt", 32, 256},
                    Wanted{"models/reeffishes/ybig.nlt", 32, 256},
                    Wanted{"models/reeffishes/anglefish.nlt", 32, 256},
                    Wanted{"models/reeffishes/silverfish.nlt", 32, 256}),
    withoutSlashes);

/// The largest alpha within the given distance of a border.
int largestAlpha(const Picture& picture, int distance, bool left_right, bool top_bottom) {
    int largest = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const bool side = x < distance || x >= picture.width - distance;
            const bool end = y < distance || y >= picture.height - distance;
            if ((left_right && side) || (top_bottom && end))
                largest = std::max(largest, picture.alpha(x, y));
        }
    return largest;
}

/// Cut-out pictures repeat: what touches one border would show as a line at the opposite one.
TEST(AlphaBorders, OfTheCutOutsAreEmpty) {
    for (const char* name : {"island.nlt", "models//rock2.nlt"})
        EXPECT_EQ(largestAlpha(readPicture(name), 3, true, true), 0) << name;
    for (const char* coral : {"a", "c", "d", "f", "g", "h", "i"}) {
        const std::string name = std::string("models//coral_") + coral + ".nlt";
        EXPECT_EQ(largestAlpha(readPicture(name), 2, true, true), 0) << name;
    }
}

TEST(AlphaBorders, OfTheGlitterAreEmpty) {
    EXPECT_EQ(largestAlpha(readPicture("blendmap.nlt"), 1, true, true), 0);
}

TEST(AlphaBorders, FaderGrowsFromNothingToEverything) {
    const Picture fader = readPicture("gwfader.nlt");
    // Above the lower part, in which it grows, it hides the end of the floor; only its upper edge,
    // where the open sea lies behind it, may fade again.
    const int grown = fader.height * 83 / 100, open = fader.height * 7 / 100;
    int before = 256;
    for (int y = open; y < fader.height; ++y) {
        EXPECT_LE(fader.alpha(0, y), before) << "row " << y;
        before = fader.alpha(0, y);
    }
    for (int y = open + 1; y < grown; ++y)
        for (int x = 0; x < fader.width; ++x)
            ASSERT_EQ(fader.alpha(x, y), 255) << x << ", " << y;
    EXPECT_EQ(fader.alpha(0, fader.height - 1), 0);
}

/// The picture repeats, and with several samples a pixel the lower edge is sampled beyond its end.
TEST(AlphaBorders, FaderEndsClearAboveAndBelow) {
    const Picture fader = readPicture("gwfader.nlt");
    for (int x = 0; x < fader.width; ++x)
        for (const int y : {0, 1, fader.height - 1})
            EXPECT_EQ(fader.alpha(x, y), 0) << x << ", " << y;
}

TEST(AlphaBorders, WaterIsClearNearAndDenseFar) {
    const Picture water = readPicture("water.nlt");
    const auto mean = [&](int row) {
        int sum = 0;
        for (int x = 0; x < water.width; ++x)
            sum += water.alpha(x, row);
        return static_cast<float>(sum) / static_cast<float>(water.width) / 255;
    };
    EXPECT_NEAR(mean(0), 0.7f, 0.12f);
    EXPECT_NEAR(mean(water.height - 1), 0.15f, 0.08f);
}

/// A rim of another colour would show wherever filtering reaches over an edge.
TEST(Bleeding, CarriesTheColourOverEveryEdge) {
    std::vector<std::string> names{"island.nlt", "models//rock2.nlt"};
    for (const char* coral : {"a", "b", "c", "d", "f", "g", "h", "i"})
        names.push_back(std::string("models//coral_") + coral + ".nlt");
    for (const char* fish : {"blaugelbfish", "rotfish", "moorishidol", "gsbfish", "swpfish", "rbig",
                             "ybig", "anglefish", "silverfish"})
        names.push_back(std::string("models/reeffishes/") + fish + ".nlt");
    for (const std::string& name : names) {
        const Picture picture = readPicture(name);
        // A clear texel has the colour of a visible one beside it, or lies between them.
        int edges = 0, strange = 0;
        for (int y = 1; y + 1 < picture.height; ++y)
            for (int x = 1; x + 1 < picture.width; ++x) {
                if (picture.alpha(x, y) > 5)
                    continue;
                float nearest = 1e9f;
                for (int i = 0; i < 9; ++i)
                    if (picture.alpha(x + i % 3 - 1, y + i / 3 - 1) > 128)
                        nearest = std::min(
                            nearest, art::length(picture.colour(x, y) -
                                                 picture.colour(x + i % 3 - 1, y + i / 3 - 1)));
                if (nearest == 1e9f)
                    continue;
                ++edges;
                strange += nearest > 110;
            }
        EXPECT_GT(edges, 0) << name;
        EXPECT_LT(strange, edges / 25 + 1) << name;
    }
}

TEST(Floor, IsPaleSinceTheCausticsOnlyDarken) {
    const Picture floor = readPicture("terrain.nlt");
    // The open sand in front.
    art::Vec3 sum;
    int count = 0, burnt = 0;
    for (int y = floor.height * 17 / 20; y < floor.height * 19 / 20; ++y)
        for (int x = floor.width * 2 / 5; x < floor.width * 3 / 5; ++x) {
            const art::Vec3 c = floor.colour(x, y);
            sum += c;
            ++count;
            burnt += c.x == 255 && c.y == 255 && c.z == 255;
        }
    const art::Vec3 mean = sum / static_cast<float>(count);
    EXPECT_GT(mean.y, 225);
    EXPECT_GT(mean.x, mean.z) << "sand is warm";
    EXPECT_LT(burnt, count / 100);
}

TEST(Sky, IsNeverStormy) {
    // Cloud bases stay lighter than this where they are grey; blue is darker.
    const Picture sky = readPicture("sky_cloudy.nlt");
    int stormy = 0;
    for (int y = 0; y < sky.height; y += 4)
        for (int x = 0; x < sky.width; x += 4) {
            const art::Vec3 c = sky.colour(x, y);
            stormy += c.z - c.x < 30 && c.y < 150;
        }
    EXPECT_EQ(stormy, 0);
}

}  // namespace
