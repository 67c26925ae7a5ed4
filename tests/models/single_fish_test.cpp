// Single fish: wandering, coming back, hunting.
#include <gmock/gmock.h>

#include <cmath>

#include "FishSteering.h"
#include "SingleFishMovement.h"
#include "models/allocations.h"
#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

using namespace test;

namespace {

float degreesBetween(const GLVector3& a, const GLVector3& b) {
    const double cosine = dot(&a, &b) / (double(vectorLength(&a)) * vectorLength(&b));
    return static_cast<float>(std::acos(std::clamp(cosine, -1.0, 1.0)) * 180 / M_PI);
}

bool isFinite(const GLVector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// A fish in the middle of the standard area, looking along x.
struct SingleFish : testing::Test {
    SingleFish() {
        setTicks(100);
        seedRandom(4);
        fish = std::make_unique<SingleFishMovement>();
        core.removeFlags(WORLD_POSITIONING);
        core.setModel(&animated);
        place(-5, 12);
        fish->setModel(&core);
        fish->fishboid = &school;
        school.addFish(&prey);
    }

    void place(float x, float z, float towards_x = 1, float towards_z = 0) {
        core.setPositionVector(x, -1, z);
        core.setViewVector(x + towards_x, -1, z + towards_z);
    }
    void step(Uint32 ms) {
        advanceTicks(ms);
        fish->move();
        if (school.fishcrowd[0].state == 2) {
            ++flights;
            school.fishcrowd[0].state = 0;
        }
    }
    GLVector3 position() { return core.getPositionVector(); }
    GLVector3 heading() { return core.getViewVector() - core.getPositionVector(); }

    QModel animated;
    ModelCore core, prey;
    FishSteering school;
    int flights = 0;
    std::unique_ptr<SingleFishMovement> fish;
};

}  // namespace

TEST_F(SingleFish, HasItsDefaults) {
    const SingleMovementSettings s;
    EXPECT_TRUE(s.top_left == GLVector2(-15, 25));
    EXPECT_TRUE(s.top_right == GLVector2(10, 25));
    EXPECT_TRUE(s.bottom_left == GLVector2(-6, 2));
    EXPECT_TRUE(s.bottom_right == GLVector2(-2, 2));
    EXPECT_TRUE(s.area_center == GLVector2(-5, 12));
    EXPECT_EQ(s.angle_change, 0.05f);
    EXPECT_EQ(s.direction_change_time, 4000);
    EXPECT_EQ(s.speed_animation_factor, 40000);
    EXPECT_EQ(s.height, -3.5f);
    EXPECT_EQ(s.pitch_angle, 5);
    EXPECT_EQ(s.dest_deviation, 1);
    EXPECT_FALSE(s.hunter);
    EXPECT_EQ(s.hunt_distance, 10);
    EXPECT_FALSE(s.turn_animation);
    EXPECT_EQ(s.hunt_speed, 0.003f);
    EXPECT_EQ(s.max_speed_change, 0.000004f);
    EXPECT_EQ(s.normal_max_speed, 0.001f);
    EXPECT_EQ(s.normal_min_speed, 0.0005f);
    EXPECT_FALSE(s.variablespeed);

    const SingleFishMovement mover;
    EXPECT_EQ(mover.model, nullptr);
    EXPECT_EQ(mover.state, 0);
    EXPECT_EQ(mover.act_angle_change, 0.05f);
    EXPECT_FALSE(mover.outsidearea);
    EXPECT_EQ(mover.speedtimer.min_interv, 3000);
    EXPECT_EQ(mover.speedtimer.max_interv, 4000);
}

TEST_F(SingleFish, StartsAtItsDepth) {
    setRandom({321});
    fish->init();
    EXPECT_EQ(randomLeft(), 0u);
    EXPECT_TRUE(position() == GLVector3(-5, -3.5f, 12));
    EXPECT_TRUE(heading() == GLVector3(1, 0, 0));
    EXPECT_EQ(fish->act_speed, 0.001f);
    EXPECT_EQ(fish->wanted_speed, 0.001f);
    EXPECT_EQ(fish->timer, 100u);
    EXPECT_EQ(fish->turnDirection, 0);
    EXPECT_EQ(fish->animation_state, 0);
    EXPECT_EQ(fish->speedtimer.act_intervall, 3321);
    EXPECT_TRUE(fish->areapolygon[0] == fish->settings.top_left);
    EXPECT_TRUE(fish->areapolygon[1] == fish->settings.bottom_left);
    EXPECT_TRUE(fish->areapolygon[2] == fish->settings.bottom_right);
    EXPECT_TRUE(fish->areapolygon[3] == fish->settings.top_right);
}

TEST_F(SingleFish, StartsAgainWithoutATurn) {
    fish->turnDirection = 1;
    fish->animation_state = 7;
    fish->init();
    EXPECT_EQ(fish->turnDirection, 0);
    EXPECT_EQ(fish->animation_state, 0);
}

TEST_F(SingleFish, DoesNothingWithoutAFish) {
    SingleFishMovement mover;
    mover.init();
    advanceTicks(5000);
    mover.move();
    EXPECT_EQ(mover.timer, 0u);
    // A fish without a mesh swims all the same.
    core.setModel(nullptr);
    fish->settings.turn_animation = true;
    fish->init();
    step(1000);
    EXPECT_NEAR(position().x, -4, 1e-4);
}

TEST_F(SingleFish, SwimsTurnsAndBeatsItsFinsAtItsRates) {
    fish->init();
    for (int i = 0; i < 100; ++i)
        step(10);
    EXPECT_NEAR(position().x, -4, 1e-3);
    EXPECT_NEAR(position().z, 12, 1e-4);
    EXPECT_NEAR(animated.fps, 40, 1e-3);
    EXPECT_EQ(fish->turnDirection, 0);

    fish->wanted_rotation_y = 90;
    GLVector3 before = heading();
    for (int i = 0; i < 100; ++i) {
        step(10);
        EXPECT_NEAR(degreesBetween(heading(), before), 0.5, 0.01);
        EXPECT_GT(fish->turnDirection, 0);
        before = heading();
    }
    EXPECT_NEAR(fish->act_rotation_y, 50, 1e-3);
}

TEST_F(SingleFish, DrawsAHeadingEveryFourSeconds) {
    fish->init();
    setRandom({12345, 400});
    for (int i = 0; i < 399; ++i)
        step(10);
    EXPECT_EQ(randomLeft(), 2u);
    EXPECT_EQ(fish->wanted_rotation_y, 0);
    step(10);
    EXPECT_EQ(randomLeft(), 1u);
    EXPECT_NEAR(fish->wanted_rotation_y, 123.45f, 1e-4);
    EXPECT_EQ(fish->directionupdate_timer, 0);
    EXPECT_NEAR(fish->act_rotation_y, 0.5f, 1e-5);
    step(4000);
    EXPECT_EQ(fish->wanted_rotation_y, 4);
}

TEST_F(SingleFish, DrawsHeadingsBelow359Degrees) {
    fish->init();
    setRandom({35899, 35900});
    step(4000);
    EXPECT_NEAR(fish->wanted_rotation_y, 358.99f, 1e-3);
    fish->state = 0;
    place(-5, 12);
    step(4000);
    EXPECT_EQ(fish->wanted_rotation_y, 0);
    seedRandom(4);
}

TEST_F(SingleFish, TurnsTheLongWayRound) {
    fish->init();
    fish->act_rotation_y = 350;
    fish->wanted_rotation_y = 10;
    fish->elapsedtime = 1000;
    for (float expected : {300.0f, 250.0f, 200.0f, 150.0f, 100.0f, 50.0f, 10.0f}) {
        fish->updateAngle();
        EXPECT_NEAR(fish->act_rotation_y, expected, 1e-3);
        EXPECT_LT(fish->turnDirection, 0);
    }
    fish->updateAngle();
    EXPECT_EQ(fish->turnDirection, 0);
}

TEST_F(SingleFish, TurnsEvenByTheSmallestChange) {
    fish->init();
    fish->elapsedtime = 1000;
    for (float change : {1e-30f, 0.5f, 0.999f, 1.0f, 30.0f}) {
        fish->act_rotation_y = 0;
        fish->wanted_rotation_y = change;
        fish->updateAngle();
        EXPECT_GT(fish->turnDirection, 0) << change;
        fish->act_rotation_y = 0;
        fish->wanted_rotation_y = -change;
        fish->updateAngle();
        EXPECT_LT(fish->turnDirection, 0) << change;
        if (change >= 1) {
            EXPECT_EQ(fish->turnDirection, -1);
        }
    }
}

TEST_F(SingleFish, ComesBackIntoItsArea) {
    place(-20, 5, -1, 0.5f);
    fish->init();
    step(10);
    EXPECT_EQ(fish->state, 1);
    EXPECT_TRUE(fish->outsidearea);
    EXPECT_TRUE(fish->movement_point == GLVector3(-5, -3.5f, 12));
    GLVector3 before = heading();
    int frames = 0;
    while (fish->state == 1 && frames < 10000) {
        GLVector3 at = position();
        const GLVector3 center(-5, -3.5f, 12);
        ASSERT_GT(distance(&at, &center), 1.0f - 0.011f);
        step(10);
        ASSERT_LE(degreesBetween(heading(), before), 0.5f + 0.02f);
        before = heading();
        ++frames;
    }
    EXPECT_EQ(fish->state, 0);
    const GLVector3 at = position();
    EXPECT_NEAR(std::hypot(at.x + 5, at.z - 12), 1.0, 0.02);
    EXPECT_NEAR(at.y, -3.5f, 0.01);
}

TEST_F(SingleFish, ReachesAPointAtItsDeviationAndGoesOnInTheSameFrame) {
    fish->init();
    fish->movement_point.set(-4, -3.5f, 12);
    fish->state = 1;
    animated.setFPS(1);
    step(1000);
    EXPECT_EQ(fish->state, 0);
    EXPECT_NEAR(animated.fps, 40, 1e-3);
    // Nothing is left of the frame's time, so the fish is where it was.
    EXPECT_EQ(fish->elapsedtime, 0u);
    EXPECT_TRUE(position() == GLVector3(-5, -3.5f, 12));
    fish->movement_point.set(-3.99f, -3.5f, 12);
    fish->state = 1;
    step(0);
    EXPECT_EQ(fish->state, 1);
}

TEST_F(SingleFish, FreesItselfInTheFrameAfterAHunt) {
    fish->init();
    fish->wanted_speed = fish->settings.hunt_speed;
    fish->state = 4;
    step(1000);
    EXPECT_EQ(flights, 1);
    EXPECT_EQ(fish->state, 0);
    EXPECT_EQ(fish->elapsedtime, 0u);
    EXPECT_EQ(fish->wanted_speed, 0.001f);
}

TEST_F(SingleFish, StaysInItsAreaForAnHour) {
    fish->settings.variablespeed = true;
    fish->init();
    for (int i = 0; i < 360000; ++i) {
        step(10);
        const GLVector3 at = position();
        ASSERT_TRUE(isFinite(at) && isFinite(core.getViewVector())) << i;
        ASSERT_LT(std::hypot(at.x + 5, at.z - 12), 30) << i;
        ASSERT_NEAR(at.y, -3.5f, 0.2f) << i;
    }
}

TEST_F(SingleFish, FallsBackFromTheTransitionalState) {
    fish->init();
    fish->state = 2;
    const GLVector3 before = position();
    step(500);
    EXPECT_EQ(fish->state, 0);
    EXPECT_TRUE(position() == before);
}

TEST_F(SingleFish, HuntsNearbyPreyOnlyAfterFifteenSeconds) {
    for (float away : {8.0f, 12.0f}) {
        SCOPED_TRACE(away);
        place(-5, 12);
        fish->state = 0;
        fish->huntupdate_timer = 0;
        fish->settings.hunter = true;
        fish->settings.height = -4.2f;
        fish->init();
        int checks = 0;
        for (int i = 1; i <= 3000; ++i) {
            place(-5, 12);
            GLVector3 prey_place = position();
            prey_place.x += away;
            prey_place.y = -4.2f;
            core.setPositionVector(-5, -4.2f, 12);
            fish->setBoidPoint(&prey_place);
            const int timer = fish->huntupdate_timer;
            step(10);
            checks += fish->huntupdate_timer < timer;
            if (away < 10) {
                ASSERT_EQ(fish->state, i < 1500 ? 0 : 3) << i;
                if (fish->state == 3)
                    break;
            } else {
                ASSERT_NE(fish->state, 3) << i;
            }
        }
        EXPECT_EQ(checks, away < 10 ? 1 : 2);
    }
}

TEST_F(SingleFish, HuntsUpToItsDistanceAfterFifteenSecondsToTheMillisecond) {
    fish->settings.hunter = true;
    fish->init();
    const GLVector3 prey_place(5, -3.5f, 12);
    fish->setBoidPoint(&prey_place);
    fish->huntupdate_timer = 14999;
    step(0);
    EXPECT_EQ(fish->huntupdate_timer, 14999);
    fish->huntupdate_timer = 15000;
    step(0);
    EXPECT_EQ(fish->huntupdate_timer, 0);
    EXPECT_EQ(fish->state, 3);

    fish->state = 0;
    const GLVector3 beyond(5.01f, -3.5f, 12);
    fish->setBoidPoint(&beyond);
    fish->huntupdate_timer = 15000;
    step(0);
    EXPECT_EQ(fish->huntupdate_timer, 0);
    EXPECT_EQ(fish->state, 0);
}

TEST_F(SingleFish, EndsItsTimersInAFrameOfAnyLength) {
    fish->settings.hunter = true;
    fish->settings.variablespeed = true;
    fish->init();
    const GLVector3 prey_place(60, -3.5f, 12);
    fish->setBoidPoint(&prey_place);
    for (const Uint32 elapsed : {0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        fish->elapsedtime = elapsed;
        fish->directionupdate_timer = fish->huntupdate_timer = 900;
        fish->speedtimer.timer = 900;
        fish->wanted_speed = 1;
        setRandom({100, 0, 0});
        fish->randomDirectionUpdate();
        EXPECT_EQ(fish->directionupdate_timer, 0) << elapsed;
        fish->checkBoidDistance();
        EXPECT_EQ(fish->huntupdate_timer, 0) << elapsed;
        fish->updateSpeed();
        EXPECT_EQ(randomLeft(), 0u) << elapsed;
        EXPECT_NEAR(fish->wanted_speed, 0.0005f, 1e-8) << elapsed;
    }
    seedRandom(4);
}

TEST_F(SingleFish, LeavesPreyAloneUnlessItIsAHunter) {
    fish->init();
    GLVector3 near(-4, -3.5f, 12);
    fish->setBoidPoint(&near);
    fish->startHunt();
    EXPECT_EQ(fish->state, 0);
    for (int i = 0; i < 2000; ++i) {
        step(10);
        ASSERT_NE(fish->state, 3);
    }
    EXPECT_EQ(fish->huntupdate_timer, 0);
}

TEST_F(SingleFish, StartsAHuntOnDemand) {
    fish->settings.hunter = true;
    fish->init();
    GLVector3 far_away(60, 2, 12);
    fish->setBoidPoint(&far_away);
    EXPECT_EQ(far_away.y, 2);
    fish->startHunt();
    EXPECT_EQ(fish->state, 3);
    EXPECT_EQ(fish->boid_point.y, -3.5f);
    EXPECT_TRUE(fish->movement_point == GLVector3(60, -3.5f, 12));
    EXPECT_TRUE(fish->wanteddirection == GLVector3(1, 0, 0));
    EXPECT_EQ(fish->wanted_speed, 0.003f);
    EXPECT_EQ(fish->act_angle_change, 0.2f);
    // The prey moves on, but a hunt under way keeps its aim.
    const GLVector3 elsewhere(0, 0, 0);
    fish->setBoidPoint(&elsewhere);
    fish->startHunt();
    EXPECT_TRUE(fish->movement_point == GLVector3(60, -3.5f, 12));
    // From the next frame on the turning rate follows the speed.
    step(10);
    EXPECT_NEAR(fish->act_speed, 0.00104f, 1e-7);
    EXPECT_NEAR(fish->act_angle_change, 0.052f, 1e-5);
    EXPECT_NEAR(animated.fps, 41.6f, 1e-2);
}

TEST_F(SingleFish, SetsTheDepthOfThePointItHunts) {
    fish->init();
    GLVector3 prey_place(0, 5, 12);
    fish->hunt(&prey_place);
    EXPECT_EQ(prey_place.y, -3.5f);
    EXPECT_EQ(fish->distanceToPoint(&prey_place), 5);
}

TEST_F(SingleFish, EndsAHuntWithOneFlightAndSlowsDown) {
    fish->settings.hunter = true;
    fish->init();
    GLVector3 prey_place(2, -3.5f, 12);
    fish->setBoidPoint(&prey_place);
    fish->startHunt();
    int frames = 0;
    while (flights == 0 && frames++ < 2000)
        step(10);
    EXPECT_EQ(flights, 1);
    EXPECT_EQ(fish->state, 0);
    EXPECT_EQ(fish->wanted_speed, 0.001f);
    GLVector3 at = position();
    EXPECT_LE(distance(&at, &prey_place), 1.0f);
    float before = fish->act_speed;
    EXPECT_GT(before, 0.002f);
    while (fish->act_speed > 0.001f && frames++ < 4000) {
        step(10);
        EXPECT_LE(before - fish->act_speed, 0.00004f + 1e-9f);
        before = fish->act_speed;
    }
    EXPECT_EQ(fish->act_speed, 0.001f);
    EXPECT_EQ(flights, 1);
}

TEST_F(SingleFish, HuntsOncePerCheck) {
    fish->settings.hunter = true;
    fish->init();
    int hunts = 0, checks = 0;
    for (int i = 0; i < 60000; ++i) {
        const GLVector3 prey_place(-4, -3.5f, 11);
        fish->setBoidPoint(&prey_place);
        const int state = fish->state, timer = fish->huntupdate_timer;
        step(10);
        checks += fish->huntupdate_timer < timer;
        hunts += fish->state == 3 && state != 3;
    }
    EXPECT_GT(hunts, 10);
    EXPECT_LE(hunts, checks);
    // All but one that may still be on.
    EXPECT_LE(hunts - flights, 1);
    EXPECT_GE(hunts - flights, 0);
}

TEST_F(SingleFish, VariesItsSpeed) {
    fish->settings.variablespeed = true;
    setRandom({0});
    fish->init();
    setRandom({23, 500});
    for (int i = 0; i < 299; ++i)
        step(10);
    EXPECT_EQ(fish->wanted_speed, 0.001f);
    step(10);
    EXPECT_EQ(randomLeft(), 0u);
    // The interval is drawn first, the speed then: entry 500 of 50 is its first step.
    EXPECT_NEAR(fish->wanted_speed, 0.0005f, 1e-7);
    EXPECT_NEAR(fish->act_speed, 0.00096f, 1e-7);
    EXPECT_NEAR(fish->act_angle_change, 0.048f, 1e-5);
}

TEST_F(SingleFish, DrawsSpeedsInHundredThousandths) {
    fish->settings.variablespeed = true;
    fish->init();
    setRandom({0, 51});
    step(3999);
    EXPECT_NEAR(fish->wanted_speed, 0.00051f, 1e-8);
    seedRandom(4);
}

TEST_F(SingleFish, KeepsItsHuntingSpeedThroughoutTheHunt) {
    fish->settings.variablespeed = true;
    fish->init();
    GLVector3 far_away(60, -3.5f, 12);
    fish->hunt(&far_away);
    setRandom({});
    for (int i = 0; i < 500; ++i)
        step(10);
    EXPECT_EQ(fish->state, 3);
    EXPECT_EQ(fish->wanted_speed, 0.003f);
    seedRandom(4);
}

TEST_F(SingleFish, ShowsItsTurnsOnlyIfItIsToldTo) {
    animated.NumFrames = 40;
    animated.addAnimation(0, 19, "swim");
    animated.addAnimation(20, 39, "turn");
    fish->init();
    for (const bool shown : {false, true}) {
        fish->settings.turn_animation = shown;
        for (const int state : {0, 1}) {
            SCOPED_TRACE(testing::Message() << "state " << state << ", shown " << shown);
            place(-5, 12);
            fish->state = state;
            fish->movement_point.set(-5, -3.5f, 30);
            fish->act_angle_change = 0.05f;
            fish->act_rotation_y = 0;
            fish->wanted_rotation_y = 100;
            fish->animation_state = 0;
            animated.setAnimation("swim");
            animated.m_anim[0].cur = 19;
            step(100);
            EXPECT_EQ(animated.curAni, shown ? 1 : 0);
            EXPECT_EQ(fish->animation_state, shown ? 7 : 0);
        }
    }
}

TEST_F(SingleFish, CountsTurnsOfMoreThanADegreeOnItsWayToAPoint) {
    fish->settings.turn_animation = true;
    fish->init();
    const GLVector3 above(-5, 10, 12), beside(-5, -3.5f, 30);
    const struct {
        const GLVector3& point;
        Uint32 ms;
        int direction;
    } turns[] = {{above, 21, 1}, {above, 19, 0}, {beside, 21, -1}, {beside, 19, 0}};
    for (const auto& turn : turns) {
        core.setViewVector(-4, -3.5f, 12);
        fish->moveToPoint(&turn.point);
        fish->turnDirection = 5;
        fish->elapsedtime = turn.ms;
        fish->updateDirectionVector();
        EXPECT_EQ(fish->turnDirection, turn.direction) << turn.ms;
    }
}

TEST_F(SingleFish, ChangesAnimationsAtTheEndOfACycle) {
    animated.NumFrames = 40;
    animated.addAnimation(0, 19, "swim");
    animated.addAnimation(20, 39, "turn");
    fish->settings.turn_animation = true;
    fish->init();
    SAnimation& swim = animated.m_anim[0];
    SAnimation& turn = animated.m_anim[1];
    const auto at = [&](float frame) {
        animated.m_anim[animated.curAni].cur = frame;
        fish->modifyTurnAnimation();
        return animated.curAni;
    };
    EXPECT_EQ(at(19), 0);  // does not turn
    EXPECT_EQ(fish->animation_state, 0);
    fish->turnDirection = 1;
    EXPECT_EQ(at(0), 0);
    EXPECT_EQ(at(18.9f), 0);
    EXPECT_EQ(fish->animation_state, 0);
    EXPECT_EQ(at(19.2f), 1);
    EXPECT_EQ(fish->animation_state, 7);
    EXPECT_EQ(turn.cur, 20);
    EXPECT_EQ(at(39), 1);
    EXPECT_EQ(turn.cur, 39);  // goes on, instead of beginning again
    fish->turnDirection = 0;
    EXPECT_EQ(at(30), 1);
    EXPECT_EQ(at(39.5f), 0);
    EXPECT_EQ(fish->animation_state, 0);
    EXPECT_EQ(swim.cur, 0);
    fish->turnDirection = -1;
    EXPECT_EQ(at(19), 1);
}

TEST_F(SingleFish, ShowsItsTurnsWhileSwimmingToAPoint) {
    fish->settings.turn_animation = true;
    fish->init();
    GLVector3 behind(-5, -3.5f, 40);
    fish->hunt(&behind);
    step(30);
    EXPECT_NE(fish->turnDirection, 0);
    fish->hunt(&behind);
    core.setViewVector(position().x, -3.5f, position().z + 1);
    step(10);
    EXPECT_EQ(fish->turnDirection, 0);
}

TEST_F(SingleFish, TurnsRoundFromTheOppositeHeading) {
    for (const GLVector3& way : {GLVector3(-1, 0, 0), GLVector3(0, 0, 1), GLVector3(-3, 0, -4)}) {
        place(0, 12, -way.x, -way.z);
        fish->init();
        fish->state = 0;
        GLVector3 target = position() + way * 30;
        fish->hunt(&target);
        for (int i = 0; i < 700; ++i) {
            GLVector3 before = heading();
            step(10);
            ASSERT_TRUE(isFinite(heading())) << i;
            ASSERT_LE(degreesBetween(before, heading()), 2.05f);
        }
        EXPECT_LT(degreesBetween(heading(), target - position()), 1);
    }
}

TEST_F(SingleFish, KeepsItsHeadingWhileNoTimePasses) {
    fish->init();
    GLVector3 ahead(20.3f, -3.5f, 12);
    fish->hunt(&ahead);
    for (int i = 0; i < 20; ++i) {
        step(10);
        const GLVector3 at = position(), way = heading();
        step(0);
        EXPECT_TRUE(position() == at);
        EXPECT_TRUE(isFinite(heading()));
        EXPECT_NEAR(degreesBetween(heading(), way), 0, 0.05f);
    }
}

TEST_F(SingleFish, SurvivesPausesInEveryState) {
    fish->settings.hunter = true;
    fish->settings.turn_animation = true;
    fish->settings.variablespeed = true;
    for (int state : {0, 1, 2, 3, 4}) {
        for (Uint32 pause : {0u, 60000u, 600000u, 3600000u, 24u * 3600000u}) {
            place(-5, 12);
            fish->init();
            GLVector3 aim(-3, -3.5f, 14);
            fish->hunt(&aim);
            fish->state = state;
            step(pause);
            for (int i = 0; i < 100; ++i) {
                step(10);
                ASSERT_TRUE(isFinite(position()) && isFinite(core.getViewVector()));
            }
        }
    }
}

TEST_F(SingleFish, ReadsTheClockAcrossItsWrap) {
    setTicks(0xfffffff0u);
    fish->init();
    step(1000);
    EXPECT_NEAR(position().x, -4, 1e-4);
    EXPECT_EQ(fish->elapsedtime, 1000u);
}

TEST_F(SingleFish, AllocatesNothingWhileMoving) {
    fish->settings.hunter = true;
    fish->init();
    watchAllocations();
    for (int i = 0; i < 10000; ++i)
        step(10);
    EXPECT_EQ(allocationCount(), 0u);
}

TEST_F(SingleFish, ShowsItsArea) {
    clear();
    fish->renderMovementArea();
    const std::vector<GL_CALL> places = callsOf("glTranslatef");
    const float corners[5][2] = {{-15, 25}, {10, 25}, {-6, 2}, {-2, 2}, {-5, 12}};
    ASSERT_EQ(places.size(), 5u);
    ASSERT_EQ(vertices().size(), 5u * 4u + 4u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(places[i], (GL_CALL{"glTranslatef", {corners[i][0], -3.5, -corners[i][1]}}));
        const bool center = i == 4;
        EXPECT_EQ(vertices()[4 * i].color,
                  (std::array<float, 4>{1, center ? 1.0f : 0.0f, center ? 1.0f : 0.0f, 1}));
    }
    EXPECT_EQ(vertices()[0].x, 0.15f);
    const float loop[4][2] = {{-15, -25}, {10, -25}, {-2, -2}, {-6, -2}};
    for (int i = 0; i < 4; ++i) {
        const GL_VERTEX& vertex = vertices()[20 + i];
        EXPECT_EQ(vertex.primitive, GLenum(GL_LINE_LOOP));
        EXPECT_EQ(vertex.x, loop[i][0]);
        EXPECT_EQ(vertex.y, -3.5f);
        EXPECT_EQ(vertex.z, loop[i][1]);
    }
    EXPECT_EQ(imbalance(), "");
}
