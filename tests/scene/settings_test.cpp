// Whatever a settings file asks for, the scene starts, runs and ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

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

/// A frame whose store answers with what the test says and writes down every question.
class NotingScene : public CMarivistaScreensaver {
public:
    bool openSettingsFile(const char* path, const char* name) override {
        notes.push_back(std::string("open ") + path + ", " + name);
        return there;
    }
    bool closeSettingsFile() override {
        notes.push_back("close");
        return true;
    }
    int readInt(const char* key, int def) override {
        notes.push_back(std::string("int ") + key + " " + std::to_string(def));
        return answer ? *answer : def;
    }
    bool readBool(const char* key, bool def) override {
        notes.push_back(std::string("bool ") + key + (def ? " true" : " false"));
        return answer ? *answer != 0 : def;
    }
    bool writeInt(const char* key, int value) override {
        notes.push_back(std::string(key) + " " + std::to_string(value));
        return true;
    }

    std::vector<std::string> notes;
    std::optional<int> answer;
    bool there = true;
};

const char* const OPENED = "open Software\\Orvo\\Screensavers\\Atollia, Orvo Atollia";

TEST(Settings, AreAskedForInTheirOrderWithTheRecordAsDefault) {
    NotingScene scene;
    EXPECT_TRUE(scene.readSettings());
    EXPECT_THAT(scene.notes,
                testing::ElementsAre(
                    OPENED, "int BoidModel 0", "int BoidCount 10", "bool FishRed true",
                    "bool FishBlue true", "bool FishStripe true", "bool FishYellBlu true",
                    "bool FishDot true", "bool FishBigGrey true", "bool FishBigRed true",
                    "bool FishManta true", "bool BirdGull true", "int FishCount 10",
                    "int CameraPos 0", "int CameraSpeed 4", "int CameraFixTop 30",
                    "int CameraFixBottom 30", "int SkyType 0", "bool SoundOn true", "close"));
    scene.answer = 0;
    scene.readSettings();
    scene.answer.reset();
    scene.notes.clear();
    scene.readSettings();
    EXPECT_THAT(scene.notes, testing::Contains("int CameraSpeed 0"));
    EXPECT_THAT(scene.notes, testing::Contains("bool SoundOn false"));
}

TEST(Settings, AreWrittenAsNumbersInTheirOrder) {
    NotingScene scene;
    scene.wantedwssettings.fish_dot = false;
    scene.wantedwssettings.cameraspeed = 7;
    EXPECT_TRUE(scene.writeSettings());
    EXPECT_THAT(scene.notes,
                testing::ElementsAre(
                    OPENED, "BoidModel 0", "BoidCount 10", "FishRed 1", "FishBlue 1",
                    "FishStripe 1", "FishYellBlu 1", "FishDot 0", "FishBigGrey 1", "FishBigRed 1",
                    "FishManta 1", "FishCount 10", "BirdGull 1", "CameraPos 0", "CameraSpeed 7",
                    "CameraFixTop 30", "CameraFixBottom 30", "SkyType 0", "SoundOn 1", "close"));
}

TEST(Settings, WithoutAStoreStayAsTheyAre) {
    NotingScene scene;
    scene.there = false;
    scene.wantedwssettings.boidcount = 3;
    EXPECT_TRUE(scene.readSettings());
    EXPECT_TRUE(scene.writeSettings());
    EXPECT_THAT(scene.notes, testing::ElementsAre(OPENED, OPENED));
    EXPECT_EQ(scene.wantedwssettings.boidcount, 3);
}

TEST(ExtraSettings, AreReadOnRequestAndKeptInTheirRanges) {
    const std::string file =
        testing::TempDir() + "atollia-extras-" + std::to_string(getpid()) + ".config";
    std::ofstream(file) << "Proportions=1\nVolume=250\nLatitude=-100\nQuietFrom=22\nDayTime=7\n";
    CMarivistaScreensaver scene;
    scene.settings_file = QString::fromStdString(file);
    scene.readSettings();
    EXPECT_EQ(scene.extras.proportions, 0) << "only on request";
    scene.readExtraSettings();
    EXPECT_EQ(scene.extras.proportions, 1);
    EXPECT_EQ(scene.extras.volume, 100);
    EXPECT_EQ(scene.extras.latitude, -90);
    EXPECT_EQ(scene.extras.quiet_from, 22);
    EXPECT_EQ(scene.extras.quiet_to, 0);
    EXPECT_EQ(scene.extras.daytime, 1);
    std::remove(file.c_str());
}

}  // namespace
