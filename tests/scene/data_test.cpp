// A scene whose data files are missing or broken runs with the rest of its world.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>

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
