// Pictures of the real scene, drawn by Mesa and compared with pictures kept beside this file.
//
// The kept pictures change only through scripts/golden.sh.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "offscreen.h"

namespace {

/// A folder of this process, kept when a test failed, so that its pictures can be looked at.
class Folder : public testing::Environment {
public:
    void SetUp() override { std::filesystem::create_directories(path); }
    void TearDown() override {
        if (testing::UnitTest::GetInstance()->Passed())
            std::filesystem::remove_all(path);
    }

    const std::string path = testing::TempDir() + "atollia-pictures-" + std::to_string(getpid());
};

const auto* const folder = static_cast<Folder*>(testing::AddGlobalTestEnvironment(new Folder));

std::string temporary(const std::string& name) { return folder->path + "/" + name; }

std::string bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// A path as one word of a shell command.
std::string quoted(const std::string& path) {
    std::string word = "'";
    for (char c : path)
        word += c == '\'' ? "'\\''" : std::string(1, c);
    return word + "'";
}

/// Runs the project's camera; the path of the picture it took.
std::string snapshot(const std::string& name, const std::string& arguments) {
    const std::string out = temporary(name);
    const std::string command = quoted(SNAPSHOT) + " " + quoted(out) + " " + arguments;
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return out;
}

constexpr int BLOCK = 4;

/// Mean colour of a block of 4 x 4 pixels.
struct Block {
    double channel[3] = {};
};

Block block(const Picture& picture, int x, int y) {
    Block mean;
    for (int b = 0; b < BLOCK; ++b)
        for (int a = 0; a < BLOCK; ++a)
            for (int c = 0; c < 3; ++c)
                mean.channel[c] +=
                    picture.rgb[static_cast<size_t>(((y + b) * picture.width + x + a) * 3 + c)] /
                    double(BLOCK * BLOCK);
    return mean;
}

struct Difference {
    double mean = 0;   ///< Over all blocks and channels, in levels.
    double worst = 0;  ///< Of one block and channel.
    int x = 0, y = 0;  ///< Where that is.
    int bad_blocks = 0;
};

/// Far above what narrower vectors or other rounding of the processor change (nothing, so far), far
/// below a fog of a slightly wrong colour, a missing coral or one small fish seen from its other
/// side.
constexpr double BAD_LEVELS = 12;
constexpr int MOST_BAD_BLOCKS = 12;
constexpr double MOST_MEAN = 0.2;

Difference compare(const Picture& one, const Picture& other) {
    Difference result;
    int count = 0;
    for (int y = 0; y + BLOCK <= one.height; y += BLOCK)
        for (int x = 0; x + BLOCK <= one.width; x += BLOCK) {
            const Block p = block(one, x, y), q = block(other, x, y);
            double most = 0;
            for (int c = 0; c < 3; ++c) {
                const double d = std::fabs(p.channel[c] - q.channel[c]);
                result.mean += d;
                ++count;
                most = std::max(most, d);
            }
            if (most > BAD_LEVELS)
                ++result.bad_blocks;
            if (most > result.worst) {
                result.worst = most;
                result.x = x;
                result.y = y;
            }
        }
    result.mean /= count;
    return result;
}

struct Golden {
    const char* name;
    const char* arguments;
};

void PrintTo(const Golden& golden, std::ostream* out) { *out << golden.name; }

class GoldenPicture : public testing::TestWithParam<Golden> {};

TEST_P(GoldenPicture, IsAsItWas) {
    const std::string name = GetParam().name;
    std::string arguments = GetParam().arguments;
    const std::string config = temporary(name + ".config");
    std::ofstream(config) << "SkyType=" << (name.find("clear") != std::string::npos ? 1 : 0)
                          << "\n";
    const std::string path =
        snapshot(name + ".png", arguments + " --size 640x474 --seed 1 --config " + quoted(config));
    const Picture now = Picture::loadPng(path);
    if (std::getenv("ATOLLIA_NEW_GOLDEN")) {
        ASSERT_TRUE(now.savePng(TEST_DIR "golden/" + name + ".png"));
        return;
    }
    const Picture golden = Picture::loadPng(TEST_DIR "golden/" + name + ".png");
    ASSERT_EQ(golden.width, now.width);
    ASSERT_EQ(golden.height, now.height);
    const Difference difference = compare(golden, now);
    EXPECT_LE(difference.mean, MOST_MEAN) << "see " << path;
    EXPECT_LE(difference.bad_blocks, MOST_BAD_BLOCKS)
        << "worst by " << difference.worst << " levels at " << difference.x << ", " << difference.y
        << "; see " << path;
}

/// Test names have no dashes.
std::string testName(const testing::TestParamInfo<Golden>& info) {
    std::string name = info.param.name;
    for (char& c : name)
        if (c == '-')
            c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Views, GoldenPicture,
                         testing::Values(Golden{"bottom-cloudy-4", "--view bottom --seconds 4"},
                                         Golden{"bottom-cloudy-9", "--view bottom --seconds 9"},
                                         Golden{"bottom-clear-4", "--view bottom --seconds 4"},
                                         Golden{"bottom-clear-9", "--view bottom --seconds 9"},
                                         Golden{"middle-cloudy-4", "--view middle --seconds 4"},
                                         Golden{"middle-cloudy-9", "--view middle --seconds 9"},
                                         Golden{"middle-clear-4", "--view middle --seconds 4"},
                                         Golden{"middle-clear-9", "--view middle --seconds 9"},
                                         Golden{"top-cloudy-4", "--view top --seconds 4"},
                                         Golden{"top-cloudy-9", "--view top --seconds 9"},
                                         Golden{"top-clear-4", "--view top --seconds 4"},
                                         Golden{"top-clear-9", "--view top --seconds 9"}),
                         testName);

INSTANTIATE_TEST_SUITE_P(
    Hours, GoldenPicture,
    testing::Values(Golden{"bottom-morning", "--view bottom --seconds 4 --daytime 6:30"},
                    Golden{"top-morning", "--view top --seconds 4 --daytime 6:30"},
                    Golden{"bottom-noon", "--view bottom --seconds 4 --daytime 12:00"},
                    Golden{"top-noon", "--view top --seconds 4 --daytime 12:00"},
                    Golden{"bottom-evening", "--view bottom --seconds 4 --daytime 18:15"},
                    Golden{"top-evening", "--view top --seconds 4 --daytime 18:15"},
                    Golden{"bottom-night", "--view bottom --seconds 4 --daytime 22:00"},
                    Golden{"top-night", "--view top --seconds 4 --daytime 22:00"}),
    testName);

TEST(Snapshot, SameArgumentsGiveTheSameBytes) {
    const std::string arguments = "--view bottom --seconds 3 --size 320x237";
    const std::string one = snapshot("one.png", arguments), two = snapshot("two.png", arguments);
    EXPECT_FALSE(bytes(one).empty());
    EXPECT_EQ(bytes(one), bytes(two));
}

TEST(Snapshot, IsNotBlankAndDiffersBetweenViews) {
    Picture views[3];
    const char* const names[] = {"bottom", "middle", "top"};
    for (int i = 0; i < 3; ++i) {
        const std::string name = names[i];
        views[i] = Picture::loadPng(
            snapshot(name + ".png", "--view " + name + " --seconds 1 --size 320x237"));
        ASSERT_EQ(views[i].width, 320);
        const auto [low, high] = std::minmax_element(views[i].rgb.begin(), views[i].rgb.end());
        EXPECT_GT(*high - *low, 100) << name;
    }
    EXPECT_GT(compare(views[0], views[1]).mean, 5);
    EXPECT_GT(compare(views[1], views[2]).mean, 5);
    EXPECT_GT(compare(views[0], views[2]).mean, 5);
}

TEST(Snapshot, NumbersThePicturesOfAStrip) {
    const std::string out =
        snapshot("strip.png", "--seconds 0.5 --frames 2 --fps 5 --size 160x118");
    const std::string base = out.substr(0, out.size() - 4);
    EXPECT_FALSE(bytes(base + "-0000.png").empty());
    EXPECT_FALSE(bytes(base + "-0001.png").empty());
    EXPECT_NE(bytes(base + "-0000.png"), bytes(base + "-0001.png"));
}

TEST(Snapshot, FindsSettingsBesideIt) {
    const std::string config = temporary("beside.config");
    std::ofstream(config) << "SkyType=1\n";
    const std::string view = "--view top --seconds 1 --size 160x118";
    const std::string cloudy = snapshot("cloudy.png", view);
    const std::string folder = config.substr(0, config.rfind('/'));
    const std::string clear = temporary("clear.png");
    ASSERT_EQ(std::system(("cd " + quoted(folder) + " && " + quoted(SNAPSHOT) + " " +
                           quoted(clear) + " " + view + " --config beside.config")
                              .c_str()),
              0);
    // The same pictures, had the file not been found.
    EXPECT_GT(compare(Picture::loadPng(cloudy), Picture::loadPng(clear)).mean, 1);
}

TEST(Snapshot, SmoothsEdges) {
    const std::string view = "--view bottom --seconds 1 --size 160x118";
    const Picture plain = Picture::loadPng(snapshot("plain.png", view));
    // The software renderer itself loses the samples' memory, which a leak sanitizer would report.
    const std::string driver = temporary("driver.supp");
    std::ofstream(driver) << "leak:swrast_dri.so\n";
    setenv("LSAN_OPTIONS", ("print_suppressions=0:suppressions=" + driver).c_str(), 1);
    const Picture smooth = Picture::loadPng(snapshot("smooth.png", view + " --samples 4"));
    unsetenv("LSAN_OPTIONS");
    const double difference = compare(plain, smooth).mean;
    EXPECT_GT(difference, 0.1);
    EXPECT_LT(difference, 5);
}

TEST(Snapshot, RefusesNonsense) {
    for (const char* arguments : {"", "x.png --view sideways", "x.png --size big", "x.png --what",
                                  "x.png --config no-such-file", "x.png --daytime 25:00"})
        EXPECT_NE(std::system((quoted(SNAPSHOT) + " " + arguments + " 2>/dev/null").c_str()), 0)
            << arguments;
}

}  // namespace
