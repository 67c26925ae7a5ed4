// The school: gathering, wandering, fleeing.
#include <gmock/gmock.h>

#include <cmath>

#include "FishSteering.h"
#include "SingleFishMovement.h"
#include "models/allocations.h"
#include "support/chance.h"
#include "support/clock.h"

using namespace test;

namespace {

bool isFinite(const GLVector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void expectNear(const GLVector3& a, const GLVector3& b, float tolerance = 1e-5f) {
    EXPECT_LE(distance(&a, &b), tolerance) << "(" << a.x << ", " << a.y << ", " << a.z << ") and ("
                                           << b.x << ", " << b.y << ", " << b.z << ")";
}

struct School : testing::Test {
    School() {
        setTicks(0);
        seedRandom(11);
    }

    void add(int count) {
        cores.resize(count);
        for (ModelCore& core : cores) {
            core.setModel(&model);
            school.addFish(&core);
        }
    }
    /// One fish at a place, looking along a unit vector, with the target at (0, -3.5, 0).
    FishObject& one(const GLVector3& place, const GLVector3& way = GLVector3(1, 0, 0)) {
        add(1);
        school.setTargetPoint(0, -3.5f, 0);
        school.init();
        put(place, way);
        return school.fishcrowd[0];
    }
    void put(const GLVector3& place, const GLVector3& way) {
        cores[0].setPositionVector(&place);
        const GLVector3 view = place + way;
        cores[0].setViewVector(&view);
    }
    void step(Uint32 ms) {
        advanceTicks(ms);
        school.move();
    }
    GLVector3 position(int i = 0) { return cores[i].getPositionVector(); }
    GLVector3 heading(int i = 0) { return cores[i].getViewVector() - position(i); }

    QModel model;
    std::vector<ModelCore> cores;
    FishSteering school;
};

}  // namespace

TEST_F(School, StartsEmpty) {
    EXPECT_TRUE(school.fishcrowd.empty());
    EXPECT_TRUE(school.targetpoint == GLVector3());
    EXPECT_TRUE(school.enemypoint == GLVector3());
    EXPECT_EQ(school.collisionobjects, nullptr);
    school.init();
    step(100);
    school.startFlee();
    std::vector<ModelCore*> objects;
    school.addCollisionObjectVector(&objects);
    EXPECT_EQ(school.collisionobjects, &objects);
}

TEST_F(School, PlacesItsFishOnAGrid) {
    add(50);
    EXPECT_FALSE(cores[0].flags & WORLD_POSITIONING);
    school.setTargetPoint(0, -3.5f, 0);
    const GLVector3 before = heading(0);
    std::vector<int> chance;
    for (int i = 0; i < 100; ++i)
        chance.push_back(i * 7);
    setRandom(chance);
    setTicks(777);
    school.init();
    EXPECT_EQ(randomLeft(), 0u);
    EXPECT_EQ(school.timer, 777u);
    for (int i = 0; i < 50; ++i) {
        // The way along z is drawn first.
        const float z = 14 * i % 10 * 0.3f;
        const float x = (14 * i + 7) % 10 * 0.3f - 2.0f;
        expectNear(position(i), GLVector3(x, -3.5f, z));
        const FishObject& fish = school.fishcrowd[i];
        EXPECT_EQ(fish.id, i);
        EXPECT_EQ(fish.state, 0);
        EXPECT_EQ(fish.speed, 0);
        EXPECT_EQ(fish.fleetimer, 0);
        EXPECT_EQ(fish.wandertimer, 0);
        EXPECT_EQ(fish.wander_update, 1000);
    }
    expectNear(heading(0), before);
}

TEST_F(School, BeginsAnew) {
    FishObject& fish = one(GLVector3());
    fish.state = 3;
    fish.fleetimer = fish.wandertimer = fish.wander_update = 600;
    fish.speed = 0.005f;
    fish.id = 9;
    school.init();
    EXPECT_EQ(fish.state, 0);
    EXPECT_EQ(fish.fleetimer, 0);
    EXPECT_EQ(fish.wandertimer, 0);
    EXPECT_EQ(fish.wander_update, 1000);
    EXPECT_EQ(fish.speed, 0);
    EXPECT_EQ(fish.id, 0);
    fish.fleetimer = 900;
    school.startFlee();
    EXPECT_EQ(fish.fleetimer, 0);
}

TEST_F(School, SlowsDownWhileItSwims) {
    for (auto [away, speed] : {std::pair(8.0f, 0.002f), {5.0f, 0.001f}, {4.0f, 0.0006f}}) {
        cores.clear();
        school.fishcrowd.clear();
        const FishObject& fish = one(GLVector3(0, -3.5f, away), GLVector3(0, 0, -1));
        step(10);
        EXPECT_NEAR(fish.wanted_speed, speed, 1e-6) << away;
    }
}

TEST_F(School, SlowsDownOnArrival) {
    FishObject& fish = one(GLVector3());
    for (auto [away, speed] : {std::pair(10.0f, 0.002f),
                               {7.0f, 0.002f},
                               {6.0f, 0.0015f},
                               {5.0f, 0.001f},
                               {4.0f, 0.0006f},
                               {3.0f, 0.0006f},
                               {0.0f, 0.0006f}}) {
        fish.pos.set(0, -3.5f, away);
        school.arriveBehaviour(&fish);
        EXPECT_NEAR(fish.wanted_speed, speed, 1e-9) << away;
    }
}

TEST_F(School, SeeksItsTarget) {
    FishObject& fish = one(GLVector3());
    fish.pos.set(3, -3.5f, 4);
    school.seek(&fish);
    expectNear(fish.wanted_view, GLVector3(-0.6f, 0, -0.8f));
    // A fish that is there keeps its heading.
    fish.pos = school.targetpoint;
    school.seek(&fish);
    expectNear(fish.wanted_view, GLVector3(-0.6f, 0, -0.8f));
}

TEST_F(School, TurnsAndSpeedsUpWithinLimits) {
    one(GLVector3(0, -3.5f, 10), GLVector3(1, 0, 0));
    GLVector3 before = heading();
    float speed = 0;
    for (int i = 0; i < 90; ++i) {
        step(10);
        const GLVector3 now = heading();
        ASSERT_LE(std::fabs(now.x - before.x), 0.02f + 1e-5f);
        ASSERT_LE(std::fabs(now.y - before.y), 0.02f + 1e-5f);
        ASSERT_LE(std::fabs(now.z - before.z), 0.02f + 1e-5f);
        ASSERT_LE(school.fishcrowd[0].speed - speed, 0.00004f + 1e-9f);
        before = now;
        speed = school.fishcrowd[0].speed;
        EXPECT_NEAR(model.fps, speed * 25000, 1e-3);
    }
    // By then it looks at the target and swims at full speed.
    EXPECT_LT(heading().z, -0.95f);
    EXPECT_EQ(speed, 0.002f);
}

TEST_F(School, WandersByTheTossOfACoin) {
    FishObject& fish = one(GLVector3(0, -3.5f, 2), GLVector3(0, 0, -1));
    setRandom({2, 9900, 5000, 0});
    for (int i = 0; i < 100; ++i)
        step(10);
    EXPECT_EQ(randomLeft(), 4u);  // at 1000 ms, not before it is exceeded
    step(10);
    EXPECT_EQ(randomLeft(), 0u);
    EXPECT_EQ(fish.state, 1);
    EXPECT_EQ(fish.wander_update, 600);
    EXPECT_EQ(fish.wandertimer, 0);
    EXPECT_EQ(fish.wanted_speed, 0.001f);
    const GLVector3 drawn(49, 0, -50);
    expectNear(fish.wanted_view, normalize(&drawn));

    // From then on it keeps the heading that it has turned to.
    const GLVector3 way = heading();
    setRandom({7});
    for (int i = 0; i < 60; ++i) {
        step(10);
        expectNear(heading(), way, 1e-4f);
        EXPECT_EQ(fish.wanted_speed, 0.002f);
    }
    EXPECT_EQ(fish.state, 1);
    step(10);
    EXPECT_EQ(fish.state, 0);
    EXPECT_EQ(fish.wander_update, 1000);
}

TEST_F(School, DrawsDirectionsBetweenMinusFiftyAndFifty) {
    FishObject& fish = one(GLVector3(0, -3.5f, 2));
    fish.wandertimer = 1000;
    school.elapsedtime = 1;
    setRandom({0, 10000, 19999, 9999});
    school.wander(&fish);
    EXPECT_EQ(randomLeft(), 0u);
    const GLVector3 drawn(-50, 49.99f, 49.99f);
    expectNear(fish.wanted_view, normalize(&drawn));
}

TEST_F(School, DrawsAWanderWithoutDirection) {
    FishObject& fish = one(GLVector3(0, -3.5f, 2));
    setRandom({0, 5000, 5000, 5000});
    step(1001);
    EXPECT_EQ(fish.state, 1);
    EXPECT_TRUE(isFinite(heading()));
    EXPECT_TRUE(isFinite(position()));
}

TEST_F(School, HoldsItsDepthBand) {
    FishObject& fish = one(GLVector3());
    struct Case {
        float y;
        float corrected;
        GLVector3 view;
    };
    const GLVector3 level(1, 0, 0), up(1, 1.5f, 0), down(1, -1.5f, 0);
    for (const Case& c : {Case{-3.5f, -3.5f, level},
                          {-3.01f, -3.01f, level},
                          {-3, -3, down},
                          {-1.5f, -1.5f, down},
                          {-1.01f, -1.01f, down},
                          {-1, -3, down},
                          {-0.5f, -3, down},
                          {-3.99f, -3.99f, level},
                          {-4, -4, up},
                          {-5.5f, -5.5f, up},
                          {-5.99f, -5.99f, up},
                          {-6, -4, up},
                          {-20, -4, up}}) {
        for (int state : {0, 2, 3}) {
            fish.state = state;
            fish.pos.set(7, c.y, 8);
            fish.wanted_view = level;
            school.checkBounds(&fish);
            EXPECT_EQ(fish.state, state);
            EXPECT_TRUE(fish.pos == GLVector3(7, c.corrected, 8)) << c.y;
            expectNear(fish.wanted_view, normalize(&c.view));
        }
        // A wanderer is not steered: it goes back to the school.
        fish.state = 1;
        fish.pos.set(7, c.y, 8);
        fish.wanted_view = level;
        school.checkBounds(&fish);
        EXPECT_EQ(fish.state, c.y >= -3 || c.y <= -4 ? 0 : 1);
        EXPECT_TRUE(fish.pos == GLVector3(7, c.y, 8));
        expectNear(fish.wanted_view, level);
    }
    fish.state = 0;
    fish.pos.set(0, -2, 0);
    fish.wanted_view.set(0, 1.5f, 0);
    school.checkBounds(&fish);
    EXPECT_TRUE(isFinite(fish.wanted_view));
}

TEST_F(School, CorrectsADepthInTheViewOnly) {
    FishObject& fish = one(GLVector3(5, -0.5f, 0), GLVector3(-1, 0, 0));
    step(10);
    EXPECT_EQ(fish.pos.y, -3);
    EXPECT_EQ(position().y, -0.5f + (position().y + 0.5f));
    EXPECT_NEAR(position().y, -0.5f, 1e-3);
    // Heading (-1, 2.5, 0) as seen from the corrected place, turned by one step.
    EXPECT_NEAR(cores[0].getViewVector().y, -0.52f, 1e-3);
    EXPECT_LT(fish.wanted_view.y, -0.5f);
    FishObject& level = fish;
    put(GLVector3(5, -3.5f, 0), GLVector3(-1, 0, 0));
    step(10);
    EXPECT_EQ(level.pos.y, -3.5f);
    EXPECT_NEAR(heading().y, 0, 1e-6);
}

TEST_F(School, FleesAndCalmsDown) {
    add(5);
    school.setTargetPoint(0, -3.5f, 0);
    school.init();
    school.setEnemyPoint(-10, -3.5f, 0);
    for (int i = 0; i < 300; ++i)
        step(10);
    school.startFlee();
    for (const FishObject& fish : school.fishcrowd) {
        EXPECT_EQ(fish.state, 2);
        EXPECT_EQ(fish.fleetimer, 0);
    }
    for (int i = 0; i < 101; ++i) {
        step(10);
        for (const FishObject& fish : school.fishcrowd) {
            EXPECT_EQ(fish.speed, 0.005f);
            EXPECT_EQ(fish.state, i < 100 ? 2 : 3);
            if (fish.pos.y < -3 && fish.pos.y > -4) {
                const GLVector3 away = fish.pos - school.enemypoint;
                expectNear(fish.wanted_view, normalize(&away));
            }
        }
    }
    for (int i = 0; i < 200; ++i) {
        step(10);
        for (const FishObject& fish : school.fishcrowd) {
            EXPECT_EQ(fish.wanted_speed, 0.001f);
            EXPECT_EQ(fish.state, 3);
        }
    }
    for (const FishObject& fish : school.fishcrowd)
        EXPECT_EQ(fish.speed, 0.001f);  // reached after a second
    step(10);
    for (const FishObject& fish : school.fishcrowd)
        EXPECT_EQ(fish.state, 0);
}

TEST_F(School, CountsItsFlightToTheMillisecond) {
    FishObject& fish = one(GLVector3(1, -3.5f, 0));
    const struct {
        int state, before, state_after, after;
    } moments[] = {{2, 1000, 2, 1000}, {2, 1001, 3, 0}, {3, 2000, 3, 2000}, {3, 2001, 0, 0}};
    school.elapsedtime = 0;
    for (const auto& moment : moments) {
        fish.state = moment.state;
        fish.fleetimer = moment.before;
        school.flee(&fish);
        EXPECT_EQ(fish.state, moment.state_after) << moment.before;
        EXPECT_EQ(fish.fleetimer, moment.after) << moment.before;
    }
}

TEST_F(School, EndsItsTimersInAFrameOfAnyLength) {
    FishObject& fish = one(GLVector3(1, -3.5f, 0));
    for (const Uint32 elapsed : {0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        school.elapsedtime = elapsed;
        fish.state = 2;
        fish.fleetimer = fish.wandertimer = 900;
        school.flee(&fish);
        EXPECT_EQ(fish.state, 3) << elapsed;
        EXPECT_EQ(fish.fleetimer, 0) << elapsed;
        setRandom({1});
        school.wander(&fish);
        EXPECT_EQ(fish.state, 0) << elapsed;
        EXPECT_EQ(fish.wandertimer, 0) << elapsed;
    }
}

TEST_F(School, BoltsFarAndFast) {
    one(GLVector3(0, -3.5f, 0), GLVector3(1, 0, 0));
    school.setEnemyPoint(-1, -3.5f, 0);
    school.startFlee();
    for (int i = 0; i < 101; ++i)
        step(10);
    EXPECT_NEAR(position().x, 5.05f, 1e-3);
    EXPECT_NEAR(position().z, 0, 1e-3);
}

TEST_F(School, FleesFromItsOwnPlaceFinitely) {
    FishObject& fish = one(GLVector3(2, -3.5f, 2));
    school.setEnemyPoint(2, -3.5f, 2);
    school.startFlee();
    step(10);
    EXPECT_TRUE(isFinite(position()));
    EXPECT_EQ(fish.speed, 0.005f);
}

TEST_F(School, TurnsStraightBackWithoutLosingItsHeading) {
    for (Uint32 tick : {10u, 20u, 25u, 50u, 100u, 250u, 500u}) {
        cores.clear();
        school.fishcrowd.clear();
        one(GLVector3(0, -3.5f, 10), GLVector3(0, 0, 1));
        setRandom(std::vector<int>(50, 1));
        for (Uint32 t = 0; t < 3000; t += tick) {
            step(tick);
            ASSERT_TRUE(isFinite(position())) << tick;
            ASSERT_TRUE(heading() != GLVector3()) << tick;
        }
        EXPECT_LT(position().z, 10) << tick;
        EXPECT_LT(heading().z, -0.5f) << tick;
    }
}

TEST_F(School, SurvivesPauses) {
    add(10);
    school.setTargetPoint(0, -3.5f, 0);
    for (Uint32 pause : {0u, 60000u, 600000u, 3600000u, 24u * 3600000u}) {
        for (int state = 0; state < 4; ++state) {
            school.init();
            for (FishObject& fish : school.fishcrowd)
                fish.state = state;
            step(10);
            step(pause);
            for (int i = 0; i < 200; ++i) {
                step(10);
                for (int f = 0; f < 10; ++f)
                    ASSERT_TRUE(isFinite(position(f)) && isFinite(cores[f].getViewVector()))
                        << pause << " in state " << state;
            }
        }
    }
}

TEST_F(School, ReadsTheClockAcrossItsWrap) {
    setTicks(0xfffffff0u);
    one(GLVector3(0, -3.5f, 10), GLVector3(0, 0, -1));
    step(100);
    EXPECT_EQ(school.elapsedtime, 100u);
    EXPECT_NEAR(school.fishcrowd[0].speed, 0.0004f, 1e-8);
    EXPECT_NEAR(position().z, 10 - 0.04f, 1e-5);
}

TEST_F(School, SwimsWithoutMeshes) {
    add(3);
    cores[1].setModel(nullptr);
    school.init();
    step(10);
    EXPECT_GT(school.fishcrowd[1].speed, 0);
}

TEST_F(School, AllocatesNothingWhileMoving) {
    add(100);
    school.init();
    watchAllocations();
    for (int i = 0; i < 500; ++i)
        step(10);
    EXPECT_EQ(allocationCount(), 0u);
}

/// An hour with the leader, and if wanted the hunter, that the scene gives the school.
struct Hour : School, testing::WithParamInterface<bool> {};

TEST_P(Hour, StaysFiniteAndInItsBand) {
    add(20);
    ModelCore leader, hunter;
    SingleFishMovement leading, hunting;
    leader.removeFlags(WORLD_POSITIONING);
    leader.setPositionVector(0, -3.5f, 10);
    leader.setViewVector(1, -3.5f, 11);
    leading.setModel(&leader);
    leading.init();
    hunter.removeFlags(WORLD_POSITIONING);
    hunter.setPositionVector(-2, -4.2f, 9);
    hunter.setViewVector(-3, -4.2f, 9);
    hunting.setModel(&hunter);
    hunting.settings.height = -4.2f;
    hunting.settings.hunter = GetParam();
    hunting.fishboid = &school;
    hunting.init();
    school.setTargetPoint(0, -3.5f, 10);
    school.init();

    long inside = 0, all = 0;
    float lowest = 0, highest = -10;
    int flights = 0;
    for (int i = 0; i < 360000; ++i) {
        advanceTicks(10);
        const GLVector3 point = leader.getPosition();
        school.setTargetPoint(point.x, point.y, point.z);
        school.setEnemyPoint(point.x, point.y, point.z);
        school.move();
        hunting.setBoidPoint(&point);
        leading.move();
        const int state = school.fishcrowd[0].state;
        hunting.move();
        flights += state != 2 && school.fishcrowd[0].state == 2;
        for (const ModelCore& fish : cores) {
            const GLVector3 place = fish.getPositionVector();
            ASSERT_TRUE(isFinite(place) && isFinite(fish.getViewVector())) << i;
            ++all;
            inside += place.y >= -4 && place.y <= -3;
            lowest = std::min(lowest, place.y);
            highest = std::max(highest, place.y);
        }
    }
    const double share = double(inside) / all;
    RecordProperty("share", std::to_string(share));
    if (GetParam()) {
        // Bolting fish shoot over the edge of the band before they have turned.
        EXPECT_GT(flights, 20);
        EXPECT_GT(share, 0.97);
    } else {
        EXPECT_EQ(flights, 0);
        EXPECT_GT(share, 0.99);
    }
    EXPECT_GT(lowest, -6);
    EXPECT_LT(highest, -1);
}

INSTANTIATE_TEST_SUITE_P(OfTheSchool, Hour, testing::Bool(), [](const auto& info) {
    return info.param ? "WithAHunter" : "WithItsLeader";
});
