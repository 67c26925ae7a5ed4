// Floor, corals and the ways of the fish, as they come together in the scene.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "BigFishMovement.h"
#include "data_files.h"
#include "floor/ground.h"
#include "floor/litter.h"
#include "floor/placement.h"
#include "support/chance.h"
#include "support/clock.h"

using namespace test;

namespace {

/// The floor sways by so much.
constexpr float kSway = 0.03f;

art::Ground readGround() {
    const Picture map = readPicture("terrain_map.nlt");
    EXPECT_EQ(map.width, art::Ground::kSize);
    EXPECT_EQ(map.height, art::Ground::kSize);
    EXPECT_EQ(map.bits, 8);
    return art::Ground(map.bytes);
}

/// Calls see(point) for points all over what can be seen of a coral, in world axes: what its
/// texture leaves clear is not there.
void forEachVisiblePoint(const art::Placement& placement,
                         const std::function<void(art::Vec3)>& see) {
    const std::string name = std::string("models/") + placement.model;
    const Model model = readModel(name + ".nlm");
    const Picture texture = readPicture(name + ".nlt");
    const float tiling = placement.model == std::string("coral_h") ? 3 : 1;
    constexpr int kSteps = 5;
    for (const auto& t : model.triangles)
        for (int i = 0; i <= kSteps; ++i)
            for (int j = 0; i + j <= kSteps; ++j) {
                const float share[3] = {static_cast<float>(i) / kSteps,
                                        static_cast<float>(j) / kSteps,
                                        static_cast<float>(kSteps - i - j) / kSteps};
                art::Vec3 p;
                art::Vec2 s;
                for (size_t k = 0; k < 3; ++k) {
                    p += model.positions[0][size_t(t[k])] * share[k];
                    s = s + model.texture[size_t(t[k])] * (share[k] * tiling);
                }
                const int x = static_cast<int>(std::floor(s.x * static_cast<float>(texture.width)));
                const int y =
                    static_cast<int>(std::floor(s.y * static_cast<float>(texture.height)));
                if (texture.alpha(x, y) > 100)
                    see(placement.toWorld(p));
            }
}

std::string describe(const art::Placement& placement) {
    return std::string(placement.model) + " at x " + std::to_string(placement.foot.x);
}

}  // namespace

TEST(SeaFloor, MapSuitsItsLoader) {
    const Picture map = readPicture("terrain_map.nlt");
    EXPECT_EQ(map.bits, 8);
    EXPECT_EQ(map.width % 4, 0);
    EXPECT_GE(map.width, 256);
    EXPECT_GE(map.height, 256);
}

TEST(SeaFloor, MeetsEveryFoot) {
    const art::Ground ground = readGround();
    for (const art::Placement& placement : art::kCorals)
        EXPECT_NEAR(ground.height(placement.foot.x, placement.foot.z), placement.foot.y,
                    0.15f - kSway)
            << describe(placement);
}

TEST(SeaFloor, StaysBelowTheReefFish) {
    const art::Ground ground = readGround();
    for (float z = 0; z <= 50; z += 0.5f)
        for (float x = -30; x <= 30; x += 0.5f)
            EXPECT_LT(ground.height(x, z) + kSway, -4.6f) << x << ", " << z;
}

TEST(SeaFloor, FallsAwayToTheSidesAndTheBack) {
    const art::Ground ground = readGround();
    for (float z = 2; z <= 50; z += 1) {
        EXPECT_LT(ground.height(-28, z), -7.8f);
        EXPECT_LT(ground.height(28, z), -7.8f);
    }
    for (float x = -30; x <= 30; x += 1)
        EXPECT_LT(ground.height(x, 46), -7.8f);
}

TEST(Corals, StandOnTheFloor) {
    const art::Ground ground = readGround();
    for (const art::Placement& placement : art::kCorals) {
        float lowest = 1e9f;
        forEachVisiblePoint(placement, [&](art::Vec3 p) {
            lowest = std::min(lowest, p.y - ground.height(p.x, p.z));
        });
        EXPECT_LT(lowest, 0.15f) << describe(placement) << " floats";
    }
}

/// The top view begins 11.5 degrees below the horizon.
TEST(Corals, StayOutOfTheTopView) {
    for (const art::Placement& placement : art::kCorals) {
        float least = 90;
        forEachVisiblePoint(placement, [&](art::Vec3 p) {
            const float down = std::atan2(art::kEye.y - p.y, p.z - art::kEye.z);
            least = std::min(least, down * 180 / art::kPi);
        });
        EXPECT_GT(least, 11.5f) << describe(placement);
    }
}

/// All reef fish swim at -3.5, and are a fifth of a unit high on either side.
TEST(Corals, StayBelowTheReefFish) {
    for (const art::Placement& placement : art::kCorals) {
        float top = -1e9f;
        forEachVisiblePoint(placement, [&](art::Vec3 p) { top = std::max(top, p.y); });
        EXPECT_LT(top, -3.7f) << describe(placement);
    }
}

/// A texel of the floor's picture covers two to three pixels before the eye, one of a garden's none
/// more than one, even where a wide screen stretches it.
TEST(Gardens, AreFinerThanAScreenIs) {
    constexpr float kPixels = 1300 * 1.32f;  // to the radian, on a screen of 1920 x 1080
    for (const size_t garden : {4, 10}) {
        const art::Placement& placement = art::kCorals[garden];
        const std::string name = std::string("models/") + placement.model;
        const Model model = readModel(name + ".nlm");
        const Picture texture = readPicture(name + ".nlt");
        double texels = 0, seen = 0;
        for (const auto& t : model.triangles) {
            art::Vec3 ray[3];
            art::Vec2 at[3];
            for (size_t k = 0; k < 3; ++k) {
                ray[k] = normalize(placement.toWorld(model.positions[0][size_t(t[k])]) - art::kEye);
                at[k] = {model.texture[size_t(t[k])].x * static_cast<float>(texture.width),
                         model.texture[size_t(t[k])].y * static_cast<float>(texture.height)};
            }
            const art::Vec2 a = at[1] - at[0], b = at[2] - at[0];
            texels += std::fabs(a.x * b.y - a.y * b.x);
            seen += length(cross(ray[1] - ray[0], ray[2] - ray[0]));
        }
        EXPECT_GT(std::sqrt(texels / seen), kPixels) << describe(placement);
    }
}

TEST(Gardens, ShowEveryStarfish) {
    const art::Ground ground = readGround();
    std::vector<float> miss(art::stars().size(), 1);
    for (const size_t garden : {4, 10})
        forEachVisiblePoint(art::kCorals[garden], [&](art::Vec3 p) {
            for (size_t i = 0; i < miss.size(); ++i) {
                const art::Star& star = art::stars()[i];
                const art::Vec3 centre{star.x, ground.height(star.x, star.z), star.z};
                miss[i] = std::min(
                    miss[i], length(normalize(p - art::kEye) - normalize(centre - art::kEye)));
            }
        });
    for (size_t i = 0; i < miss.size(); ++i)
        EXPECT_LT(miss[i], 0.005f) << "star " << i;
}

/// It cruises between z 30 and 40, with wings less than three units long.
TEST(Corals, StayBeforeTheManta) {
    for (const art::Placement& placement : art::kCorals) {
        float farthest = 0;
        forEachVisiblePoint(placement, [&](art::Vec3 p) { farthest = std::max(farthest, p.z); });
        EXPECT_LT(farthest, 27.2f) << describe(placement);
    }
}

namespace {

/// The way the big fish really swims, both ways, in steps of a few hundredths of a unit.
std::vector<art::Vec3> bigFishWay() {
    std::vector<art::Vec3> way;
    for (const int backward : {0, 1}) {
        setTicks(1000);
        QModel model;
        ModelCore fish;
        fish.setModel(&model);
        BigFishMovement mover;
        for (const art::Vec2& p : art::kBigFishRoute)
            mover.points.push_back(GLVector3(p.x, -6, p.y));
        mover.models = {&fish};
        // Direction and model, then the wait at the end.
        setRandom({backward, 0, 0});
        mover.init();
        while (mover.state == 0) {
            const GLVector3 at = fish.getPositionVector();
            way.push_back({at.x, at.y, at.z});
            advanceTicks(50);
            mover.move();
        }
    }
    return way;
}

}  // namespace

TEST(BigFishWay, HasAUnitOfWaterBelowIt) {
    const art::Ground ground = readGround();
    const auto way = bigFishWay();
    ASSERT_GT(way.size(), 1000u);
    for (const art::Vec3& p : way)
        ASSERT_LT(ground.height(p.x, p.z) + kSway, p.y - 1 + 0.01f) << p.x << ", " << p.z;
}

/// The fish is 1.2 high and less than that wide.
TEST(BigFishWay, IsClearOfCorals) {
    // Only some of its points are near any coral.
    std::vector<art::Vec3> way;
    for (const art::Vec3& p : bigFishWay())
        if (way.empty() || art::length(p - way.back()) > 0.15f)
            way.push_back(p);
    for (const art::Placement& placement : art::kCorals) {
        float nearest = 1e9f;
        forEachVisiblePoint(placement, [&](art::Vec3 p) {
            for (const art::Vec3& q : way)
                nearest = std::min(nearest, art::dot(p - q, p - q));
        });
        EXPECT_GT(std::sqrt(nearest), 0.7f) << describe(placement);
    }
}
