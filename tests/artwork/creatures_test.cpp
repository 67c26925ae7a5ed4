// Every model that the scene asks for: frames, triangles, movement.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "data_files.h"

using namespace test;

namespace {

struct Wanted {
    const char* name;
    int frames;
    size_t fewest, most;  ///< triangles
};

void PrintTo(const Wanted& wanted, std::ostream* out) { *out << wanted.name; }

class Models : public testing::TestWithParam<Wanted> {};

TEST_P(Models, HaveTheFramesThatAreAnimated) {
    EXPECT_EQ(readModel(GetParam().name).frames, GetParam().frames);
}

TEST_P(Models, SpendTheirShareOfTriangles) {
    const size_t triangles = readModel(GetParam().name).triangles.size();
    EXPECT_GE(triangles, GetParam().fewest);
    EXPECT_LE(triangles, GetParam().most);
}

/// Largest way of any vertex from one frame to another.
float step(const Model& model, size_t from, size_t to) {
    float largest = 0;
    for (size_t v = 0; v < model.positions[from].size(); ++v)
        largest = std::max(largest, art::length(model.positions[to][v] - model.positions[from][v]));
    return largest;
}

/// No step of a range, and not the one from its last frame to its first, is a jump.
void expectLoop(const Model& model, size_t first, size_t last) {
    std::vector<float> steps;
    for (size_t f = first; f < last; ++f)
        steps.push_back(step(model, f, f + 1));
    steps.push_back(step(model, last, first));
    std::vector<float> sorted = steps;
    std::sort(sorted.begin(), sorted.end());
    const float usual = sorted[sorted.size() / 2];
    EXPECT_GT(usual, 0.0f) << "stands still";
    for (size_t i = 0; i < steps.size(); ++i)
        EXPECT_LE(steps[i], 2 * usual + 2.0f / 64) << "after frame " << first + i;
}

TEST_P(Models, Loop) {
    const Model model = readModel(GetParam().name);
    ASSERT_EQ(model.frames, GetParam().frames);
    const std::string name = GetParam().name;
    const auto last = static_cast<size_t>(model.frames) - 1;
    if (name == "models//gull.nlm") {
        expectLoop(model, 0, 19);
        expectLoop(model, 23, 42);
    } else if (name == "models/reeffishes/swpfish.nlm") {
        expectLoop(model, 20, 39);
    } else {
        expectLoop(model, 0, last);
    }
}

TEST_P(Models, KeepTheirTextureCoordinatesInThePicture) {
    // The scene multiplies those of coral_h by 3.
    const float whole = GetParam().name == std::string("models/coral_h.nlm") ? 1.0f / 3 : 1.0f;
    for (const art::Vec2& t : readModel(GetParam().name).texture) {
        EXPECT_GE(std::min(t.x, t.y), -0.05f * whole);
        EXPECT_LE(std::max(t.x, t.y), 1.05f * whole);
    }
}

std::string plainName(const testing::TestParamInfo<Wanted>& info) {
    std::string name = info.param.name;
    name = name.substr(name.rfind('/') + 1);
    return name.substr(0, name.find('.'));
}

INSTANTIATE_TEST_SUITE_P(Scene, Models,
                         testing::Values(Wanted{"models//gull.nlm", 43, 300, 2500},
                                         Wanted{"models//manta.nlm", 20, 300, 2500},
                                         Wanted{"models/coral_a.nlm", 10, 300, 2500},
                                         Wanted{"models/coral_b.nlm", 20, 300, 2500},
                                         Wanted{"models/coral_c.nlm", 20, 300, 2500},
                                         Wanted{"models/coral_d.nlm", 20, 300, 2500},
                                         Wanted{"models/coral_f.nlm", 10, 300, 2500},
                                         Wanted{"models/coral_g.nlm", 10, 300, 2500},
                                         Wanted{"models/coral_h.nlm", 10, 300, 2500},
                                         Wanted{"models/coral_i.nlm", 10, 300, 2500},
                                         Wanted{"models/reeffishes/ybig.nlm", 20, 400, 1200},
                                         Wanted{"models/reeffishes/rbig.nlm", 20, 400, 1200},
                                         Wanted{"models/reeffishes/moorishidol.nlm", 20, 400, 1200},
                                         Wanted{"models/reeffishes/rfish.nlm", 10, 400, 1200},
                                         Wanted{"models/reeffishes/gsbfish.nlm", 20, 400, 1200},
                                         Wanted{"models/reeffishes/silverfish.nlm", 10, 200, 1200},
                                         Wanted{"models/reeffishes/swpfish.nlm", 40, 400, 1200}),
                         plainName);

/// Every corner of every triangle is submitted anew in each frame.
TEST(Budget, OfAWholeFrameHolds) {
    const auto count = [](const char* name) { return readModel(name).triangles.size(); };
    size_t sum = 0;
    // With the settings as they come: everything that lives, a school of ten, six reef fish.
    for (const char* once :
         {"models//gull.nlm", "models//manta.nlm", "models/coral_a.nlm", "models/coral_c.nlm",
          "models/coral_f.nlm", "models/coral_g.nlm", "models/coral_h.nlm", "models/coral_i.nlm",
          "models/reeffishes/swpfish.nlm", "models/reeffishes/moorishidol.nlm",
          "models/reeffishes/moorishidol.nlm", "models/reeffishes/rfish.nlm",
          "models/reeffishes/rfish.nlm", "models/reeffishes/rfish.nlm",
          "models/reeffishes/gsbfish.nlm"})
        sum += count(once);
    sum += 3 * count("models/coral_b.nlm") + 2 * count("models/coral_d.nlm");
    sum += 10 * count("models/reeffishes/silverfish.nlm");
    sum += std::max(count("models/reeffishes/ybig.nlm"), count("models/reeffishes/rbig.nlm"));
    EXPECT_LE(sum, 24000u);
}

/// The swell is gentle: it moves tips, not feet.
class Corals : public testing::TestWithParam<const char*> {};

TEST_P(Corals, SwayGentlyAtTheTips) {
    const Model model = readModel(std::string("models/") + GetParam() + ".nlm");
    ASSERT_GT(model.frames, 0);
    art::Vec3 low = model.positions[0][0], high = low;
    for (const art::Vec3& p : model.positions[0]) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    const float size = art::length(high - low);
    float largest = 0;
    size_t still = 0;
    const size_t vertices = model.positions[0].size();
    for (size_t v = 0; v < vertices; ++v) {
        float way = 0;
        for (const auto& frame : model.positions)
            way = std::max(way, art::length(frame[v] - model.positions[0][v]));
        largest = std::max(largest, way);
        still += way < 0.004f * size;
    }
    EXPECT_GT(largest, 0.008f * size) << "nothing moves";
    EXPECT_LT(largest, 0.12f * size) << "a storm";
    EXPECT_GT(still, vertices / 5) << "feet move";
}

INSTANTIATE_TEST_SUITE_P(Scene, Corals,
                         testing::Values("coral_a", "coral_b", "coral_c", "coral_d", "coral_f",
                                         "coral_g", "coral_h", "coral_i"),
                         [](const auto& info) { return std::string(info.param); });

}  // namespace
