// A scene whose data files are missing or broken runs with the rest of its world.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "scene_fixture.h"

namespace {

namespace fs = std::filesystem;

class DataTest : public SceneTest {
protected:
    DataTest()
        : folder(fs::path(testing::TempDir()) / ("atollia-data-" + std::to_string(getpid()))) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        test::setCountingOnly(true);
    }
    ~DataTest() override {
        test::setCountingOnly(false);
        fs::remove_all(folder);
    }

    /// Builds, runs and ends a scene on the folder; what it printed.
    std::string run() {
        test::setDataDirectory(folder.string() + "/");
        make();
        testing::internal::CaptureStdout();
        build();
        for (int i = 0; i < 100; ++i)
            tick(100);
        scene().cleanup();
        return testing::internal::GetCapturedStdout();
    }

    static std::multiset<std::string> lines(const std::string& text) {
        std::multiset<std::string> result;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            result.insert(line);
        return result;
    }

    fs::path folder;
};

TEST_F(DataTest, WithoutAnyDataEveryMissingFileIsNamedOnce) {
    const auto said = lines(run());
    int count = 0;
    for (const std::string& line : said) {
        EXPECT_NE(line.find(folder.string()), std::string::npos) << line;
        ++count;
        // The red and the blue fish share one model file, which is asked for twice.
        EXPECT_EQ(said.count(line), line.find("/rfish.nlm") != std::string::npos ? 2u : 1u) << line;
    }
    // 25 pictures, 3 animations of 32, 18 models, the height map; a missing font says nothing.
    EXPECT_EQ(count, 25 + 96 + 18 + 1);
}

TEST_F(DataTest, FilesAreAskedForInTheirOrder) {
    std::vector<std::string> expected = {
        "sky_cloudy.nlt",      "models//gull.nlt",    "models//manta.nlt",   "terrain.nlt",
        "models//coral_a.nlt", "models//coral_b.nlt", "models//coral_c.nlt", "models//coral_d.nlt",
        "models//coral_f.nlt", "models//coral_g.nlt", "models//coral_h.nlt", "models//coral_i.nlt",
        "water.nlt",           "gwfader.nlt",         "models//rock2.nlt",   "island.nlt"};
    const struct {
        const char* pattern;
        int first;
    } animations[] = {{"caustics64/caust%.2d.nlt", 0},
                      {"causticsfish32/caust%.2d.nlt", 0},
                      {"highlight/highlight%.5d.nlt", 44}};
    for (const auto& animation : animations) {
        for (int i = 0; i < 32; ++i) {
            char name[64];
            std::snprintf(name, sizeof name, animation.pattern, animation.first + i);
            expected.push_back(name);
        }
    }
    for (const char* name : {"blendmap.nlt",
                             "models/reeffishes/blaugelbfish.nlt",
                             "models/reeffishes/rotfish.nlt",
                             "models/reeffishes/moorishidol.nlt",
                             "models/reeffishes/gsbfish.nlt",
                             "models/reeffishes/swpfish.nlt",
                             "models/reeffishes/rbig.nlt",
                             "models/reeffishes/ybig.nlt",
                             "models/reeffishes/silverfish.nlt",
                             "models//gull.nlm",
                             "models//manta.nlm",
                             "models/coral_a.nlm",
                             "models/coral_b.nlm",
                             "models/coral_c.nlm",
                             "models/coral_d.nlm",
                             "models/coral_f.nlm",
                             "models/coral_g.nlm",
                             "models/coral_h.nlm",
                             "models/coral_i.nlm",
                             "models/reeffishes/ybig.nlm",
                             "models/reeffishes/rbig.nlm",
                             "models/reeffishes/moorishidol.nlm",
                             "models/reeffishes/rfish.nlm",
                             "models/reeffishes/rfish.nlm",
                             "models/reeffishes/gsbfish.nlm",
                             "models/reeffishes/silverfish.nlm",
                             "models/reeffishes/swpfish.nlm",
                             "terrain_map.nlt"})
        expected.push_back(name);

    std::vector<std::string> asked;
    std::istringstream said(run());
    for (std::string line; std::getline(said, line);) {
        const size_t name = line.find(folder.string()) + folder.string().size() + 1;
        ASSERT_LT(name, line.size()) << line;
        asked.push_back(line.substr(name, line.find(' ', name) - name));
    }
    EXPECT_EQ(asked, expected);
}

TEST_F(DataTest, CompleteDataSaysNothing) {
    fs::remove(folder);
    fs::create_directory_symlink(LOADDIR, folder);
    EXPECT_EQ(run(), "");
}

/// Every file there as it is, or missing, cut, empty or full of rubbish.
class DamagedData : public DataTest, public testing::WithParamInterface<unsigned> {};

TEST_P(DamagedData, TheRestOfTheWorldRuns) {
    std::mt19937 random(GetParam());
    for (const auto& entry : fs::recursive_directory_iterator(LOADDIR)) {
        const fs::path target = folder / fs::relative(entry.path(), LOADDIR);
        if (entry.is_directory()) {
            fs::create_directories(target);
            continue;
        }
        switch (random() % 8) {
            case 0:
                break;
            case 1:
                std::ofstream(target, std::ios::binary);
                break;
            case 2: {
                fs::copy_file(entry.path(), target);
                fs::resize_file(target, fs::file_size(target) * (random() % 100) / 100);
                break;
            }
            case 3: {
                std::ofstream file(target, std::ios::binary);
                for (int i = 0; i < 5000; ++i)
                    file.put(static_cast<char>(random()));
                break;
            }
            case 4: {
                // Its header is right, what it announces is not.
                fs::copy_file(entry.path(), target);
                std::fstream file(target, std::ios::in | std::ios::out | std::ios::binary);
                for (int i = 0; i < 8; ++i) {
                    file.seekp(static_cast<std::streamoff>(random() % 220));
                    file.put(static_cast<char>(random()));
                }
                break;
            }
            default:
                fs::create_symlink(entry.path(), target);
                break;
        }
    }
    run();
    EXPECT_EQ(test::imbalance(), "");
}

INSTANTIATE_TEST_SUITE_P(Seeds, DamagedData, testing::Range(1u, 25u));

}  // namespace
