// Whatever a settings file asks for, the scene starts, runs and ends.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <string>

#include "Globals.h"
#include "scene_fixture.h"

namespace {

/// A settings file of random keys, most of them sensible, some not at all.
std::string randomSettings(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    std::string text;
    const auto add = [&](const char* key, const std::string& value) {
        if (below(8) != 0)
            text += std::string(key) + "=" + value + "\n";
    };
    const auto number = [&](int low, int high) -> std::string {
        const char* const odd[] = {"-1",         "0",   "99999", "2147483647", "-2147483648",
                                   "4294967296", "abc", "",      "3.7",        "1e9"};
        return below(6) == 0 ? odd[below(10)] : std::to_string(low + below(high - low + 1));
    };
    for (const char* key : {"FishRed", "FishBlue", "FishStripe", "FishYellBlu", "FishDot",
                            "FishBigGrey", "FishBigRed", "FishManta", "BirdGull", "SoundOn"})
        add(key, below(2) ? "true" : below(20) == 0 ? "maybe" : "false");
    add("BoidModel", number(0, 1));
    add("BoidCount", number(0, 20));
    add("FishCount", number(0, 10));
    add("CameraPos", number(0, 4));
    add("CameraSpeed", number(1, 9));
    add("CameraFixTop", number(1, 60));
    add("CameraFixBottom", number(5, 60));
    add("SkyType", number(0, 1));
    return text;
}

/// Ten shards of the matrix, so that they can run side by side.
class SettingsMatrix : public SceneTest, public testing::WithParamInterface<int> {};

TEST_P(SettingsMatrix, BuildsRunsAndEndsTwice) {
    const std::string file =
        testing::TempDir() + "atollia-matrix-" + std::to_string(getpid()) + ".config";
    test::setCountingOnly(true);
    for (unsigned seed = 0; seed < 20; ++seed) {
        const std::string text = randomSettings(static_cast<unsigned>(GetParam()) * 20 + seed);
        std::ofstream(file) << text;
        SCOPED_TRACE(text);
        for (int round = 0; round < 2; ++round) {
            make();
            scene().settings_file = QString::fromStdString(file);
            scene().loadSettings(640, 480);
            build();
            EXPECT_LE(scene().numFish, MAX_FISH);
            EXPECT_LE(scene().boidcount, MAX_FISH);
            EXPECT_EQ(scene().fish != nullptr, scene().numFish > 0);
            EXPECT_EQ(scene().fishmove != nullptr, scene().numFish > 0);
            EXPECT_EQ(scene().fishcrowd != nullptr, scene().boidcount > 0);
            for (int ms = 0; ms < 30000; ms += 40) {
                update(40);
                if (ms % 3000 == 0)
                    scene().renderScene();
            }
            EXPECT_EQ(test::imbalance(), "");
            scene().cleanup();
            scene().cleanup();
        }
    }
    test::setCountingOnly(false);
    std::remove(file.c_str());
}

class Limits : public SceneTest {};

TEST_F(Limits, AreSetToTheWorldAndNotToTheRecordThatIsRead) {
    const std::string file =
        testing::TempDir() + "atollia-limits-" + std::to_string(getpid()) + ".config";
    std::ofstream(file) << "BoidCount=2147483647\nFishCount=2000\n";
    make();
    scene().settings_file = QString::fromStdString(file);
    testing::internal::CaptureStdout();
    scene().loadSettings(640, 480);
    EXPECT_EQ(settings().boidcount, 2147483647);
    EXPECT_EQ(settings().fishcount, 2000);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    testing::internal::CaptureStdout();
    build();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "BoidCount 2147483647 is more than 1000, running with 1000\n"
              "FishCount 2000 is more than 1000, running with 1000\n");
    EXPECT_EQ(scene().boidcount, MAX_FISH);
    EXPECT_EQ(scene().numFish, MAX_FISH - 4);
    std::remove(file.c_str());
}

INSTANTIATE_TEST_SUITE_P(Shards, SettingsMatrix, testing::Range(0, 10));

}  // namespace
