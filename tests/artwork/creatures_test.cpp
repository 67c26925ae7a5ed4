// Every model that the scene asks for: frames, triangles, movement.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
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
    // Stony branches hardly move.
    if (GetParam() == std::string("coral_b")) {
        EXPECT_LT(largest, 0.04f * size);
    }
    EXPECT_GT(still, vertices / 5) << "feet move";
}

INSTANTIATE_TEST_SUITE_P(Scene, Corals,
                         testing::Values("coral_a", "coral_b", "coral_c", "coral_d", "coral_f",
                                         "coral_g", "coral_h", "coral_i"),
                         [](const auto& info) { return std::string(info.param); });

// ---- Fish ----

/// A fish's fins and shadow lie in these parts of its sheet: s0, t0, s1, t1.
struct Plot {
    float s0, t0, s1, t1;
    bool has(art::Vec2 t) const { return t.x > s0 && t.y > t0 && t.x < s1 && t.y < t1; }
};
constexpr Plot kTail{0, 0.5f, 0.34f, 1}, kShadow{0.86f, 0.86f, 1, 0.90f};
/// Tail, dorsal, anal and pelvic fins.
constexpr Plot kFins[] = {kTail, {0.34f, 0.5f, 1, 0.72f}, {0.34f, 0.72f, 0.72f, 1}};

constexpr struct {
    const char *model, *skin;
} kSwimming[] = {{"rfish.nlm", "rotfish.nlt"},   {"rfish.nlm", "blaugelbfish.nlt"},
                 {"rfish.nlm", "anglefish.nlt"}, {"silverfish.nlm", "silverfish.nlt"},
                 {"gsbfish.nlm", "gsbfish.nlt"}, {"moorishidol.nlm", "moorishidol.nlt"},
                 {"swpfish.nlm", "swpfish.nlt"}, {"ybig.nlm", "ybig.nlt"},
                 {"rbig.nlm", "rbig.nlt"}};

std::string fishFile(const std::string& name) { return "models/reeffishes/" + name; }

/// Largest angle in degrees between the tail fin and the fish's axis.
float tailSway(const Model& fish) {
    float largest = 0;
    for (const auto& frame : fish.positions) {
        art::Vec3 root, margin;
        float roots = 0, margins = 0;
        for (size_t v = 0; v < frame.size(); ++v)
            if (kTail.has(fish.texture[v])) {
                if (fish.texture[v].y < 0.51f) {
                    root += frame[v];
                    ++roots;
                } else if (fish.texture[v].y > 0.99f) {
                    margin += frame[v];
                    ++margins;
                }
            }
        const art::Vec3 way = margin / margins - root / roots;
        largest = std::max(largest, std::fabs(std::atan2(way.x, -way.y)) * 180 / art::kPi);
    }
    return largest;
}

/// A texel that is clear still hides the fish behind it, which are drawn later.
TEST_P(Corals, LeaveLittleClearRoundWhatTheyShow) {
    const std::string name = std::string("models/") + GetParam();
    const Model model = readModel(name + ".nlm");
    const Picture picture = readPicture(name + ".nlt");
    const float tiling = GetParam() == std::string("coral_h") ? 3 : 1;
    constexpr int kSteps = 12;
    double clear = 0, whole = 0;
    for (const auto& t : model.triangles) {
        art::Vec2 at[3];
        for (size_t k = 0; k < 3; ++k)
            at[k] = model.texture[size_t(t[k])] * tiling;
        const art::Vec2 b = at[1] - at[0], c = at[2] - at[0];
        const double area = std::fabs(b.x * c.y - b.y * c.x);
        for (int i = 0; i < kSteps; ++i)
            for (int j = 0; i + j < kSteps; ++j) {
                const float u = (static_cast<float>(i) + 1 / 3.0f) / kSteps,
                            v = (static_cast<float>(j) + 1 / 3.0f) / kSteps;
                const art::Vec2 s = at[0] + b * u + c * v;
                whole += area;
                if (picture.alpha(
                        static_cast<int>(std::floor(s.x * static_cast<float>(picture.width))),
                        static_cast<int>(std::floor(s.y * static_cast<float>(picture.height)))) <
                    16)
                    clear += area;
            }
    }
    ASSERT_GT(whole, 0);
    // A mesh cut at its cells alone has .28 to .35 where branches are seen, and .50 with the fans.
    EXPECT_LT(clear / whole, GetParam() == std::string("coral_c") ? 0.33 : 0.20);
}

/// They beat four times a second, which is too fast for more.
TEST(Fish, QuickTailsSwayLittle) {
    for (const char* name : {"rfish.nlm", "silverfish.nlm"}) {
        const float sway = tailSway(readModel(fishFile(name)));
        EXPECT_GT(sway, 8) << name;
        EXPECT_LT(sway, 13) << name;
    }
}

TEST(Fish, SchoolIsLongEnoughToBeSeen) {
    const Model fish = readModel(fishFile("silverfish.nlm"));
    float nose = -1e9f, tail = 1e9f;
    for (const art::Vec3& p : fish.positions[0]) {
        nose = std::max(nose, p.y);
        tail = std::min(tail, p.y);
    }
    // World units, in the size in which the scene draws it; 50 pixels of 948 at a distance of 22.
    EXPECT_GT((nose - tail) * 0.015f, 0.96f);
    EXPECT_LT((nose - tail) * 0.015f, 1.10f);
}

/// From above and behind, one fish must stand out from the next: a pale ridge and a pale flank with
/// a dark stripe between them.
TEST(Fish, SchoolIsOutlinedFromAbove) {
    const Picture skin = readPicture(fishFile("silverfish.nlt"));
    ASSERT_GT(skin.width, 0);
    // The body fills the sheet's upper half: the snout on the left, the ridge of the back on top.
    for (const float along : {0.25f, 0.40f, 0.55f, 0.70f}) {
        const auto brightness = [&](float round) {
            const art::Vec3 c = skin.colour(static_cast<int>(along * skin.width),
                                            static_cast<int>(round * 0.5f * skin.height));
            return 0.30f * c.x + 0.59f * c.y + 0.11f * c.z;
        };
        float stripe = 255;
        for (float round = 0.12f; round < 0.45f; round += 0.02f)
            stripe = std::min(stripe, brightness(round));
        EXPECT_GT(brightness(0.06f), stripe + 60) << "ridge at " << along;
        EXPECT_GT(brightness(0.65f), stripe + 90) << "flank at " << along;
    }
}

/// A texel that is clear still hides what is drawn after the fish.
TEST(Fish, FinsEndWhereTheyAreDrawn) {
    for (const auto& one : kSwimming) {
        const Model fish = readModel(fishFile(one.model));
        const Picture skin = readPicture(fishFile(one.skin));
        double clear = 0, whole = 0;
        constexpr int kSteps = 12;
        for (const auto& t : fish.triangles) {
            art::Vec2 at[3];
            art::Vec3 p[3];
            for (size_t k = 0; k < 3; ++k) {
                at[k] = fish.texture[size_t(t[k])];
                p[k] = fish.positions[0][size_t(t[k])];
            }
            const art::Vec2 middle = (at[0] + at[1] + at[2]) * (1.0f / 3);
            if (std::none_of(std::begin(kFins), std::end(kFins),
                             [&](const Plot& plot) { return plot.has(middle); }))
                continue;
            const double area = art::length(art::cross(p[1] - p[0], p[2] - p[0]));
            for (int i = 0; i < kSteps; ++i)
                for (int j = 0; i + j < kSteps; ++j) {
                    const float a = (static_cast<float>(i) + 1 / 3.0f) / kSteps,
                                b = (static_cast<float>(j) + 1 / 3.0f) / kSteps;
                    const art::Vec2 s = at[0] * a + at[1] * b + at[2] * (1 - a - b);
                    whole += area;
                    if (skin.alpha(static_cast<int>(s.x * static_cast<float>(skin.width)),
                                   static_cast<int>(s.y * static_cast<float>(skin.height))) < 64)
                        clear += area;
                }
        }
        ASSERT_GT(whole, 0) << one.skin;
        EXPECT_LT(clear / whole, 0.01) << one.skin;
    }
}

/// Where the far side of a body is seen edge on, smoothed edges take their colour from far beyond
/// it.
TEST(Fish, SkinGoesOnBeyondTheRidge) {
    constexpr float kBeyond = 0.034f;  // of the sheet
    for (const auto& one : kSwimming) {
        const Model fish = readModel(fishFile(one.model));
        const Picture skin = readPicture(fishFile(one.skin));
        ASSERT_GT(skin.width, 0);
        float top = 1;
        for (const art::Vec2& t : fish.texture)
            top = std::min(top, t.y);
        EXPECT_GE(top, kBeyond) << one.model;
        // Behind that the body dissolves into the tail.
        for (int x = 0; x < skin.width * 3 / 4; ++x)
            for (int y = 0; y < static_cast<int>(kBeyond * static_cast<float>(skin.height)); ++y)
                ASSERT_EQ(skin.alpha(x, y), 255) << one.skin << " at " << x << ", " << y;
    }
}

struct Shaded {
    const char* model;
    float scale, swims;  ///< as the scene draws it
};

TEST(Fish, DropShadowsOnTheSand) {
    // The reef fish share one model in two sizes.
    for (const Shaded& fish :
         {Shaded{"rfish.nlm", 0.02f, -3.5f}, Shaded{"rfish.nlm", 0.018f, -3.5f},
          Shaded{"gsbfish.nlm", 0.02f, -3.5f}, Shaded{"moorishidol.nlm", 0.02f, -3.5f},
          Shaded{"swpfish.nlm", 0.02f, -4.2f}, Shaded{"ybig.nlm", 0.05f, -6},
          Shaded{"rbig.nlm", 0.07f, -6}}) {
        const Model model = readModel(fishFile(fish.model));
        size_t found = 0;
        float nose = -1e9f, front = -1e9f;
        for (size_t v = 0; v < model.texture.size(); ++v) {
            const art::Vec3 p = model.positions[0][v];
            if (!kShadow.has(model.texture[v])) {
                nose = std::max(nose, p.y);
                continue;
            }
            ++found;
            front = std::max(front, p.y);
            const float y = fish.swims + p.z * fish.scale;
            EXPECT_GT(y, -7.4f) << fish.model << " sinks into the sand";
            // Higher up it would hide the feet of corals that are drawn after it.
            EXPECT_LT(y, -6.8f) << fish.model << " floats";
        }
        EXPECT_GE(found, 13u) << fish.model;
        EXPECT_NEAR(front, nose, 6) << fish.model;
    }
}

/// It pitches, and its shadows would swing.
TEST(Fish, SchoolDropsNone) {
    const Model model = readModel(fishFile("silverfish.nlm"));
    for (const art::Vec3& p : model.positions[0])
        EXPECT_GT(p.z, -20);
}

// ---- Manta and gull ----

/// It glides level: its body rolls little, and its wings do the rest.
TEST(Manta, LeansLittle) {
    const Model manta = readModel("models//manta.nlm");
    float most = 0, tips_high = -1e9f, tips_low = 1e9f;
    for (const auto& frame : manta.positions)
        for (size_t a = 0; a < frame.size(); ++a) {
            const art::Vec2 t = manta.texture[a];
            if (t.x > 0.97f && t.y < 0.45f) {
                tips_high = std::max(tips_high, frame[a].z);
                tips_low = std::min(tips_low, frame[a].z);
            }
            // The same place left and right of the middle; there the wings do not bend yet.
            if (t.x < 0.05f || t.x > 0.08f || t.y > 0.9f || frame[a].x < 0)
                continue;
            for (size_t b = 0; b < frame.size(); ++b)
                if (frame[b].x < 0 && art::length(manta.texture[b] - t) < 1e-5f) {
                    const art::Vec3 across = frame[a] - frame[b];
                    const float lean = std::atan2(across.z, across.x) * 180 / art::kPi;
                    most = std::max(most, std::fabs(lean));
                }
        }
    EXPECT_GT(most, 5);
    EXPECT_LT(most, 12);
    EXPECT_GT(tips_high - tips_low, 20) << "it does not beat";
}

/// The eye finds it first: its banked wings cover more than three units in the scene.
TEST(Gull, IsLarge) {
    const Model gull = readModel("models//gull.nlm");
    float span = 0;
    for (const auto& frame : gull.positions) {
        float left = 0, right = 0;
        for (const art::Vec3& p : frame) {
            left = std::min(left, p.x);
            right = std::max(right, p.x);
        }
        span = std::max(span, (right - left) * 0.05f);
    }
    EXPECT_GT(span, 3.4f);
    EXPECT_LT(span, 4.0f);
}

}  // namespace
