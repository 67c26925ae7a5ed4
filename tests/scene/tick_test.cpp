// What one tick changes: clock, texture motion, flights, camera, calls.

#include <gmock/gmock.h>

#include <cmath>

#include "scene_fixture.h"

namespace {

class TickTest : public SceneTest {
protected:
    /// A scene with gull and camera only.
    void quiet() {
        make();
        noFish();
        build();
    }
    void stepGull() {
        // Models step when they are drawn.
        scene().gull_model.preRender();
        scene().gull_model.postRender();
    }
};

TEST_F(TickTest, TheFrameRateLineComesWithTheThousandthMillisecond) {
    quiet();
    scene().fpsOn = true;
    for (int i = 0; i < 9; ++i)
        update(100);
    update(99);
    EXPECT_STREQ(scene().fpsstr, "");
    EXPECT_EQ(scene().framecounter, 10);
    update(1);
    EXPECT_STREQ(scene().fpsstr, "1280 x 948   11.00 fps");
    EXPECT_EQ(scene().framecounter, 0);
    EXPECT_EQ(scene().fpstimer, 0u);
    EXPECT_THAT(scene().fpstext.lines, testing::ElementsAre("1280 x 948   11.00 fps"));
    update(2000);
    EXPECT_STREQ(scene().fpsstr, "1280 x 948   0.50 fps");
}

TEST_F(TickTest, WithoutTheFrameRateLineItsTextIsLeftAlone) {
    quiet();
    update(2000);
    EXPECT_TRUE(scene().fpstext.lines.empty());
}

TEST_F(TickTest, WaterAndCausticsDriftTogetherWithinOnePicture) {
    quiet();
    float last = scene().watertexmotion;
    int wraps = 0;
    for (int i = 0; i < 3000; ++i) {
        update(100);
        const float now = scene().watertexmotion;
        ASSERT_GE(now, 0.0f);
        ASSERT_LT(now, 1.0f);
        if (now > last)
            ++wraps;
        else
            ASSERT_NEAR(last - now, 0.0015f, 1e-6f);
        last = now;
    }
    EXPECT_EQ(wraps, 5);  // 300 s at 0.015 a second, the first at once.
    EXPECT_EQ(scene().tex_water.offset_x, last);
    EXPECT_EQ(scene().tex_water.offset_y, 0.0f);
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(scene().tex_caustics[i].offset_x, last);
        EXPECT_EQ(scene().tex_caustics_fish[i].offset_x, last);
        EXPECT_EQ(scene().tex_caustics[i].offset_y, 0.0f);
        EXPECT_EQ(scene().tex_caustics_fish[i].offset_y, 0.0f);
    }
}

TEST_F(TickTest, TheDriftStaysWithinOnePictureWhateverTheTick) {
    quiet();
    update(100000);
    EXPECT_NEAR(scene().watertexmotion, 0.5f, 1e-5f);
    // So little below 0 that one more than it rounds to 1.
    scene().watertexmotion = std::nextafter(0.000015f, 0.0f);
    update(1);
    EXPECT_EQ(scene().watertexmotion, 0.0f);
}

TEST_F(TickTest, TheWavesRun) {
    quiet();
    scene().water.timer = 1000;
    scene().water.curoffset1 = scene().water.curoffset2 = 0;
    test::setTicks(1100);
    scene().updateScene();
    EXPECT_FLOAT_EQ(scene().water.curoffset1, 0.5f);
    EXPECT_FLOAT_EQ(scene().water.curoffset2, 0.5f);
    EXPECT_FLOAT_EQ(scene().water.points_x[0].points_y[0].pos.z, 2 * 0.035f * std::sin(0.5f));
}

TEST_F(TickTest, EveryAnimalMovesByItsOwnClock) {
    make();
    build();
    update(10);
    update(70);
    for (const SingleFishMovement* mover : {&scene().vmove1, &scene().huntmove1})
        EXPECT_EQ(mover->elapsedtime, 70u);
    for (int i = 0; i < scene().numFish; ++i)
        EXPECT_EQ(scene().fishmove[i].elapsedtime, 70u);
    EXPECT_EQ(scene().fishsteering.elapsedtime, 70u);
    for (const AnimationTrack* track :
         {&scene().gulltrack, &scene().mantatrack, &scene().bigfishmove.track})
        EXPECT_EQ(track->time, 1080u);
}

TEST_F(TickTest, WhatNobodySeesDoesNotPass) {
    // Four seconds with a break of so many milliseconds, at a rest of the camera and again on its
    // way; the last picture, but for the names of its textures. Breaks are whole rounds of the
    // texture animations, which follow the clock on the wall.
    const auto film = [this](Uint32 pause, bool announced) {
        test::setTicks(1000000);
        make();
        settings().soundOn = true;
        scene().camera_nextmove = 2000;
        scene().soundtimer.set(3000, 3000);
        build();
        test::seedRandom(5);
        test::sounds.clear();
        test::setCountingOnly(true);
        for (int i = 0; i < 100; ++i) {
            tick(40);
            if (i == 30 || i == 80) {
                test::advanceTicks(pause);
                if (announced)
                    scene().skipUnseenTime();
                tick(0);
            }
        }
        test::setCountingOnly(false);
        EXPECT_EQ(scene().autoCameraDirection, 1);
        EXPECT_EQ(test::sounds.size(), 1u);
        test::clear();
        tick(40);
        std::vector<test::GL_CALL> picture;
        for (const test::GL_CALL& call : test::calls())
            if (call.name != "glBindTexture")
                picture.push_back(call);
        return picture;
    };
    const std::vector<test::GL_CALL> uninterrupted = film(0, false);
    ASSERT_GT(uninterrupted.size(), 100000u);
    EXPECT_TRUE(film(20800, true) == uninterrupted);
    EXPECT_TRUE(film(1600, true) == uninterrupted);
    EXPECT_TRUE(film(3200, false) == uninterrupted);
    EXPECT_TRUE(film(0u - 3200u, false) == uninterrupted);
}

TEST_F(TickTest, ThreeSecondsBetweenPicturesPass) {
    make();
    build();
    tick(10);
    tick(3000);
    EXPECT_EQ(scene().vmove1.elapsedtime, 3000u);
    tick(3001);
    EXPECT_EQ(scene().vmove1.elapsedtime, 0u);
    tick(10);
    EXPECT_EQ(scene().vmove1.elapsedtime, 10u);
    // Without pictures nobody waits for one: a tick is as long as it says.
    update(10);
    update(60000);
    EXPECT_EQ(scene().vmove1.elapsedtime, 60000u);
}

TEST_F(TickTest, AnnouncedTimeIsOneTicks) {
    make();
    build();
    tick(10);
    scene().skipUnseenTime();
    tick(500);
    EXPECT_EQ(scene().lastframetime, 0u);
    tick(500);
    EXPECT_EQ(scene().lastframetime, 500u);
}

TEST_F(TickTest, EverySceneLeavesOutItsOwnTime) {
    make();
    build();
    tick(10);
    WaterSurface alone;
    CMarivistaScreensaver other;
    other.wantedwssettings.soundOn = false;
    other.buildWorld();
    other.tick();
    test::advanceTicks(2000);
    scene().skipUnseenTime();
    scene().tick();
    other.tick();
    alone.update();
    EXPECT_EQ(other.lastframetime, 2000u);
    EXPECT_EQ(other.vmove1.elapsedtime, 2000u);
    EXPECT_EQ(scene().vmove1.elapsedtime, 0u);
    EXPECT_EQ(alone.timer, other.water.timer);
    EXPECT_EQ(alone.timer - scene().water.timer, 2000u);
    other.cleanup();
}

TEST_F(TickTest, TheSkyIsCentredOnTheEye) {
    quiet();
    update(10);
    EXPECT_EQ(scene().sky.getPosition(), GLVector3(0, 2.0f - 300.0f, -7.0f));
}

TEST_F(TickTest, TheSchoolTakesItsLeaderAsTargetAndEnemy) {
    make();
    build();
    const GLVector3 at_first = scene().vegetarian1.getPositionVector();
    update(1000);
    const GLVector3 leader = scene().vegetarian1.getPositionVector();
    EXPECT_NE(leader, at_first);
    update(10);
    EXPECT_EQ(scene().fishsteering.targetpoint, leader);
    EXPECT_EQ(scene().fishsteering.enemypoint, leader);
    EXPECT_EQ(scene().huntmove1.boid_point, leader);
}

TEST_F(TickTest, TheCameraRestsTravelsAndRests) {
    quiet();
    settings().cameraspeed = 4;
    settings().camerafix_top = 20;
    settings().camerafix_bottom = 15;
    const float step = 0.04f;  // Degrees in one tick of 10 ms.
    enum { BOTTOM, UP, TOP, DOWN };
    int state = BOTTOM;
    Uint32 since = 0;
    int cycles = 0;
    for (Uint32 now = 10; now <= 600000; now += 10) {
        update(10);
        const float pitch = scene().camera.rotationX;
        const int direction = scene().autoCameraDirection;
        ASSERT_GE(pitch, -25.0f - step - 1e-3f);
        ASSERT_LE(pitch, step + 1e-3f);
        const bool starts = direction != 0 && (state == BOTTOM || state == TOP);
        ASSERT_EQ(scene().camerascrolling, starts) << now;
        const Uint32 length = now - since;
        if (state == BOTTOM && direction == 1) {
            ASSERT_EQ(length, cycles == 0 ? 10010u : 15010u);
            state = UP;
            since = now;
        } else if (state == UP && direction == 0) {
            ASSERT_NEAR(static_cast<float>(length), 25000.0f / 4, 30.0f);
            ASSERT_LE(pitch, -25.0f);
            state = TOP;
            since = now;
        } else if (state == TOP && direction == -1) {
            ASSERT_EQ(length, 20010u);
            state = DOWN;
            since = now;
        } else if (state == DOWN && direction == 0) {
            ASSERT_NEAR(static_cast<float>(length), 25000.0f / 4, 30.0f);
            ASSERT_GE(pitch, 0.0f);
            state = BOTTOM;
            since = now;
            ++cycles;
        }
    }
    EXPECT_EQ(cycles, 12);
}

TEST_F(TickTest, ACameraWithoutSpeedStartsAndNeverArrives) {
    quiet();
    settings().cameraspeed = 0;
    int starts = 0;
    for (int i = 0; i < 10000; ++i) {
        update(10);
        starts += scene().camerascrolling;
    }
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(scene().autoCameraDirection, 1);
    EXPECT_EQ(scene().camera.rotationX, 0.0f);
}

TEST_F(TickTest, WithoutARestTheCameraTurnsBackAtOnce) {
    quiet();
    settings().camerafix_top = 0;
    while (scene().camera.rotationX > -25.0f)
        update(10);
    update(10);
    EXPECT_EQ(scene().autoCameraDirection, 0);
    update(10);
    EXPECT_EQ(scene().autoCameraDirection, -1);
}

TEST_F(TickTest, AFixedCameraStaysWhereItIs) {
    make();
    noFish();
    settings().camerapos = 2;
    build();
    for (int i = 0; i < 3000; ++i)
        update(10);
    EXPECT_FLOAT_EQ(scene().camera.rotationX, -8.0f);
}

TEST_F(TickTest, TheGullFliesByARoundOfRandomPointsAndBack) {
    quiet();
    const auto& points = scene().gulltrack.waypoints;
    ASSERT_EQ(points.size(), 8u);
    const float x[] = {30, 10, -10, -30, -30, -10, 10, 30};
    for (size_t i = 0; i < 8; ++i) {
        EXPECT_FLOAT_EQ(points[i].point.x, x[i]);
        EXPECT_GE(points[i].point.y, 2.5f);
        EXPECT_LE(points[i].point.y, 4.5f);
        EXPECT_GE(points[i].point.z, 5.0f);
        EXPECT_LE(points[i].point.z, 35.0f);
        EXPECT_EQ(points[i].rollangle, 0.0f);
    }
    EXPECT_FALSE(scene().gullreverseflight);
}

TEST_F(TickTest, TheGullDrawsDepthBeforeHeight) {
    make();
    noFish();
    // School leader x and z, eight points, the leader's heading, gull calls: all at their minimum
    // but the first point's depth.
    std::vector<int> values(64, 0);
    values[0] = 1000;  // Depth 5 + 10.00
    test::setRandom(values);
    build();
    EXPECT_FLOAT_EQ(scene().gulltrack.waypoints[0].point.z, 15.0f);
    EXPECT_FLOAT_EQ(scene().gulltrack.waypoints[0].point.y, 2.5f);
    EXPECT_FLOAT_EQ(scene().gulltrack.waypoints[1].point.z, 5.0f);
    test::seedRandom(1);
}

TEST_F(TickTest, WhatTheGullHasPassedIsReplacedAhead) {
    quiet();
    update(10);
    scene().gulltrack.startindex = 4;
    const GLVector3 fifth = scene().gulltrack.waypoints[4].point;
    std::vector<int> values(9, 0);
    values[0] = 1;  // Not a fixed loop.
    test::setRandom(values);
    update(10);
    EXPECT_EQ(test::randomLeft(), 0u);
    ASSERT_EQ(scene().gulltrack.waypoints.size(), 8u);
    EXPECT_EQ(scene().gulltrack.waypoints[0].point, fifth);
    EXPECT_EQ(scene().gulltrack.getActWaypoint(), 0);
    EXPECT_FLOAT_EQ(scene().gulltrack.waypoints[4].point.x, 30);
    EXPECT_TRUE(scene().gullreverseflight);

    scene().gulltrack.startindex = 4;
    test::setRandom(values);
    update(10);
    EXPECT_FLOAT_EQ(scene().gulltrack.waypoints[4].point.x, -30);
    EXPECT_FALSE(scene().gullreverseflight);
}

TEST_F(TickTest, NowAndThenTheGullPassesCloseByTheEye) {
    quiet();
    update(10);
    const float loop[4][3] = {{18, 1, 25}, {4, 1, 4}, {0, 3, -7}, {18, 3.5f, -7}};
    for (const bool reverse : {false, true}) {
        scene().gullreverseflight = reverse;
        for (int again = 0; again < 4; ++again) {
            scene().gulltrack.startindex = 4;
            test::setRandom({4});  // Its last two bits choose the loop; nothing else is drawn.
            update(10);
            EXPECT_EQ(test::randomLeft(), 0u);
            EXPECT_EQ(scene().gullreverseflight, reverse);
            ASSERT_EQ(scene().gulltrack.waypoints.size(), 8u);
            for (size_t i = 0; i < 4; ++i)
                EXPECT_EQ(scene().gulltrack.waypoints[4 + i].point,
                          GLVector3(reverse ? -loop[i][0] : loop[i][0], loop[i][1], loop[i][2]));
        }
    }
}

TEST_F(TickTest, TheGullChangesItsWingbeatOnlyAtItsEnd) {
    quiet();
    ASSERT_TRUE(scene().gull_model.loaded);
    bool flying = true;
    Uint32 last_switch = 0, now = 0;
    int switches = 0;
    for (int i = 0; i < 30000; ++i) {
        const int frame = scene().gull_model.getActFrame();
        const int phase = scene().gull_nextani;
        now += 10;
        update(10);
        if (scene().gullflyanimation != flying) {
            flying = !flying;
            ++switches;
            EXPECT_TRUE(frame == 19 || frame == 42) << frame;
            EXPECT_EQ(frame == 42, !flying);
            EXPECT_GT(now - last_switch, static_cast<Uint32>(phase));
            EXPECT_GE(scene().gull_nextani, 2000);
            EXPECT_LT(scene().gull_nextani, 5000);
            EXPECT_EQ(scene().gull_model.getStartFrame(), flying ? 23 : 0);
            EXPECT_EQ(scene().gull_model.getEndFrame(), flying ? 42 : 19);
            last_switch = now;
        }
        stepGull();
    }
    EXPECT_GT(switches, 50);
}

TEST_F(TickTest, AGullWithoutItsLastFramesNeverSwitches) {
    make();
    noFish();
    test::setDataDirectory("/nowhere/");
    testing::internal::CaptureStdout();
    build();
    for (int i = 0; i < 3000; ++i)
        update(10);
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(scene().gullflyanimation);
}

TEST_F(TickTest, TheMantaGlidesOnForEver) {
    make();
    settings().boidcount = 0;
    settings().fishcount = 1;
    build();
    const auto& points = scene().mantatrack.waypoints;
    ASSERT_EQ(points.size(), 12u);
    for (size_t i = 0; i < 12; ++i) {
        const float x = 26.0f - 10.4f * static_cast<float>(i < 6 ? i : 11 - i);
        EXPECT_NEAR(points[i].point.x, x, 1e-5f);
        EXPECT_LE(points[i].point.y, -2.0f);
        EXPECT_GE(points[i].point.y, -4.0f);
        EXPECT_GE(points[i].point.z, 30.0f);
        EXPECT_LE(points[i].point.z, 40.0f);
    }
    update(10);
    scene().mantatrack.startindex = 6;
    const GLVector3 seventh = points[6].point;
    update(10);
    ASSERT_EQ(points.size(), 12u);
    EXPECT_EQ(points[0].point, seventh);
    EXPECT_NEAR(points[6].point.x, 26.0f, 1e-5f);
    EXPECT_TRUE(scene().mantareverse);
    EXPECT_EQ(scene().mantatrack.rollfactor, 5.0f);
    EXPECT_EQ(scene().mantatrack.speed, 0.0017f);
}

TEST_F(TickTest, GullsCallEveryTwentyToThirtySeconds) {
    make();
    noFish();
    settings().soundOn = true;
    build();
    test::sounds.clear();
    std::vector<Uint32> calls;
    size_t heard = 0;
    for (Uint32 now = 10; now <= 1800000; now += 10) {
        update(10);
        if (test::sounds.size() > heard) {
            ++heard;
            ASSERT_EQ(test::sounds.size(), heard);
            calls.push_back(now);
        }
    }
    ASSERT_GE(calls.size(), 60u);
    for (size_t i = 1; i < calls.size(); ++i) {
        EXPECT_GE(calls[i] - calls[i - 1], 20000u);
        EXPECT_LE(calls[i] - calls[i - 1], 30000u);
    }
    for (const char* call : {"play 0", "play 1", "play 2", "play 3"})
        EXPECT_THAT(test::sounds, testing::Contains(call));
}

TEST_F(TickTest, AGullThatIsSwitchedOffNeitherMovesNorIsDrawnNorCalls) {
    make();
    noFish();
    settings().soundOn = true;
    build();
    tick(10);
    scene().bird_gull = false;
    test::sounds.clear();
    const GLVector3 place = scene().gull.getPositionVector();
    const int phase = scene().gull_nextani;
    for (int i = 0; i < 4000; ++i)
        update(10);
    test::clear();
    scene().renderScene();
    EXPECT_EQ(scene().gull.getPositionVector(), place);
    EXPECT_EQ(scene().gull_nextani, phase);
    for (const Draw& draw : draws())
        EXPECT_NE(draw.texture[0], scene().tex_gull.id);
    EXPECT_TRUE(test::sounds.empty());
}

TEST_F(TickTest, WithoutAPlayerACallIsSilent) {
    quiet();
    ASSERT_EQ(scene().sound, nullptr);
    test::setRandom({});
    scene().playRandomGullsound();
    EXPECT_EQ(test::randomLeft(), 0u);
    test::seedRandom(1);
}

TEST_F(TickTest, NoCallsWithoutSoundOrGull) {
    for (const bool gull : {false, true}) {
        make();
        noFish();
        settings().soundOn = !gull;
        settings().bird_gull = gull;
        build();
        test::sounds.clear();
        for (int i = 0; i < 12000; ++i)
            update(10);
        EXPECT_TRUE(test::sounds.empty());
    }
}

}  // namespace
