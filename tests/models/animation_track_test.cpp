// Objects on waypoint tracks.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "models/allocations.h"
#include "support/clock.h"
#include "support/gl_recorder.h"
#include "system/AnimationTrack.h"

using namespace test;

namespace {

bool isFinite(const GLVector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void expectNear(const GLVector3& a, const GLVector3& b, float tolerance = 1e-4f) {
    EXPECT_LE(distance(&a, &b), tolerance) << "(" << a.x << ", " << a.y << ", " << a.z << ") and ("
                                           << b.x << ", " << b.y << ", " << b.z << ")";
}

struct Track : testing::Test {
    Track() {
        setTicks(5000);
        track.setRenderObject(&object);
    }

    void addSquare(float side = 10) {
        track.addPoint(0, 0, 0, 0);
        track.addPoint(side, 0, 0, 0);
        track.addPoint(side, 0, side, 0);
        track.addPoint(0, 0, side, 0);
    }
    void step(Uint32 ms) {
        advanceTicks(ms);
        track.move();
    }

    RenderObject object;
    AnimationTrack track;
};

}  // namespace

TEST_F(Track, StartsWithItsDefaults) {
    EXPECT_TRUE(track.waypoints.empty());
    EXPECT_EQ(track.dist, 0);
    EXPECT_EQ(track.startindex, 0);
    EXPECT_EQ(track.movestyle, MOVE_SPLINE);
    EXPECT_EQ(track.speed, 0.002f);
    EXPECT_EQ(track.actspeed, 0.001f);
    EXPECT_FALSE(track.initialized);
    EXPECT_EQ(track.flags, ROTATE_OBJECT | ROLL_OBJECT | SMOOTH_ROLL);
    EXPECT_EQ(int(track.flags), 7);
    EXPECT_EQ(int(RELATIVE_MOVEMENT), 8);
    EXPECT_TRUE(track.playing);
    EXPECT_FALSE(track.forcedLinearMovement);
    EXPECT_FALSE(track.notEnoughPoints);
    EXPECT_EQ(track.rollfactor, 10);
    EXPECT_EQ(track.smoothroll_step, 2);
    EXPECT_EQ(track.wantedroll_angle, 0);
    EXPECT_EQ(track.actroll_angle, 0);
}

TEST_F(Track, ValidatesIndicesWithoutModulo) {
    addSquare();
    EXPECT_EQ(track.validateIndex(-1), 3);
    EXPECT_EQ(track.validateIndex(-9), 3);
    EXPECT_EQ(track.validateIndex(0), 0);
    EXPECT_EQ(track.validateIndex(3), 3);
    EXPECT_EQ(track.validateIndex(4), 0);
    EXPECT_EQ(track.validateIndex(7), 0);
}

TEST_F(Track, IgnoresAStartPointPastTheEnd) {
    addSquare();
    track.addPoint(GLVector3(5, 5, 5), 0);
    track.setStartpointIndex(5);
    EXPECT_EQ(track.getActWaypoint(), 0);
    track.setStartpointIndex(4);
    EXPECT_EQ(track.getActWaypoint(), 4);
    track.init();
    expectNear(object.getPosition(), GLVector3(5, 5, 5));
}

TEST_F(Track, PreparesTheObject) {
    addSquare();
    track.setStartpointIndex(2);
    object.setPosition(1, 2, 3);
    track.init();
    EXPECT_TRUE(track.initialized);
    EXPECT_FALSE(object.flags & WORLD_POSITIONING);
    expectNear(object.getPosition(), GLVector3(10, 0, 10), 0);
    expectNear(track.actposition, GLVector3(10, 0, 10), 0);
    expectNear(track.lastposition, GLVector3(10, 0, 10), 0);
    expectNear(track.startPos, GLVector3(10, 0, 10), 0);
    expectNear(track.initialPos, GLVector3(10, 0, 10), 0);
    expectNear(track.initialUp, GLVector3(0, 1, 0), 0);
    expectNear(track.initialView, object.getViewVector() - GLVector3(10, 0, 10), 0);
    EXPECT_EQ(track.time, 5000u);
    expectNear(track.p[0].point, GLVector3(10, 0, 0), 0);
    expectNear(track.p[1].point, GLVector3(10, 0, 10), 0);
    expectNear(track.p[2].point, GLVector3(0, 0, 10), 0);
    expectNear(track.p[3].point, GLVector3(0, 0, 0), 0);
}

TEST_F(Track, StartsAtTheLastPointForANegativeIndex) {
    addSquare();
    track.setStartpointIndex(-1);
    EXPECT_EQ(track.getActWaypoint(), -1);
    track.init();
    EXPECT_EQ(track.getActWaypoint(), 3);
}

TEST_F(Track, IsStraightWithFewerThanFourPoints) {
    for (int points = 1; points <= 5; ++points) {
        AnimationTrack short_track;
        short_track.setRenderObject(&object);
        for (int i = 0; i < points; ++i)
            short_track.addPoint(float(i), float(i * i), 0, 0);
        short_track.init();
        EXPECT_EQ(short_track.forcedLinearMovement, points < 4) << points;
        EXPECT_EQ(short_track.notEnoughPoints, points < 2) << points;
    }
    addSquare();
    track.setMovement(MOVE_LINEAR);
    track.init();
    EXPECT_TRUE(track.forcedLinearMovement);
    track.setMovement(MOVE_SPLINE);
    EXPECT_TRUE(track.forcedLinearMovement);
}

TEST_F(Track, FollowsLinesOrTheSpline) {
    track.addPoint(0, 0, 0, 0);
    track.addPoint(10, 0, 0, 0);
    track.addPoint(10, 0, 10, 0);
    for (int i = 0; i < 100; ++i) {
        step(10);
        EXPECT_EQ(object.getPosition().z, 0);
    }
    AnimationTrack curved;
    curved.setRenderObject(&object);
    for (const TRACK_POINT& point : track.waypoints)
        curved.addPoint(point.point, 0);
    curved.addPoint(0, 0, 10, 0);
    curved.init();
    // Half way along the first side the spline bulges by an eighth of it.
    expectNear(curved.precalcPosition(0.5f), GLVector3(5, 0, -1.25f));
}

TEST_F(Track, DoesNotMoveWithoutAnywhereToGo) {
    track.move();  // no point at all: waits
    EXPECT_FALSE(track.initialized);
    track.addPoint(3, 4, 5, 0);
    for (int i = 0; i < 10; ++i)
        step(1000);
    expectNear(object.getPosition(), GLVector3(3, 4, 5), 0);
    EXPECT_EQ(track.getActWaypoint(), 0);
    AnimationTrack without;
    without.addPoint(1, 1, 1, 0);
    without.move();
    without.renderWaypoints();
    EXPECT_FALSE(without.initialized);
}

TEST_F(Track, CoversItsSpeedAtAnyFrameRate) {
    for (MOVEMENT_STYLE style : {MOVE_LINEAR, MOVE_SPLINE}) {
        for (Uint32 tick : {10u, 16u, 33u, 100u}) {
            SCOPED_TRACE("style " + std::to_string(style) + ", " + std::to_string(tick) + " ms");
            AnimationTrack square;
            square.setRenderObject(&object);
            for (auto [x, z] : {std::pair(0, 0), {10, 0}, {10, 10}, {0, 10}})
                square.addPoint(float(x), 0, float(z), 0);
            square.setMovement(style);
            square.setSpeed(0.002f);
            const auto next = [&] {
                advanceTicks(tick);
                square.move();
                return object.getPosition();
            };
            GLVector3 last;
            for (int i = 0; i < 10; ++i)
                last = next();
            double within = 0, overall = 0;  // units
            int framesWithin = 0, corners = 0;
            const int frames = 600000 / tick;
            for (int i = 0; i < frames; ++i) {
                const int segment = square.getActWaypoint();
                const GLVector3 place = next();
                const double covered = distance(&place, &last);
                last = place;
                overall += covered;
                if (square.getActWaypoint() == segment) {
                    within += covered;
                    ++framesWithin;
                } else {
                    ++corners;
                }
            }
            const double perFrame = tick * 0.002;
            EXPECT_NEAR(within, framesWithin * perFrame, 0.01 * framesWithin * perFrame);
            // What a frame would go beyond a waypoint is dropped: at most its whole way, which at
            // 100 ms is 2 % of a side and below 1 % for the faster ones.
            EXPECT_LE(overall, 1.001 * frames * perFrame);
            EXPECT_GE(overall, 0.999 * (frames - corners) * perFrame);
            if (tick < 100) {
                EXPECT_NEAR(overall, frames * perFrame, 0.01 * frames * perFrame);
            }
            EXPECT_GT(corners, 90);
        }
    }
}

TEST_F(Track, GoesOnFromTheLastPointToTheFirst) {
    addSquare(1);
    track.setMovement(MOVE_LINEAR);
    std::vector<int> starts{0};
    for (int i = 0; i < 300; ++i) {
        step(10);
        if (track.getActWaypoint() != starts.back()) {
            starts.push_back(track.getActWaypoint());
            // What was left of the step is dropped: every segment starts at its waypoint.
            expectNear(object.getPosition(), track.waypoints[starts.back()].point, 1e-6f);
        }
    }
    EXPECT_THAT(starts, testing::ElementsAre(0, 1, 2, 3, 0, 1));
}

TEST_F(Track, LooksAheadAlongTheTrack) {
    addSquare();
    track.setMovement(MOVE_LINEAR);
    track.removeFlags(ROLL_OBJECT);
    for (int i = 0; i < 5; ++i) {
        step(10);
        const GLVector3 ahead(0.7f, 0, 0);
        expectNear(object.getViewVector() - object.getPositionVector(), ahead);
    }
    // Beyond the end of the segment it looks into the next one.
    track.dist = 0.95f;
    step(10);
    expectNear(object.getPositionVector(), GLVector3(9.5f, 0, 0));
    expectNear(object.getViewVector(), GLVector3(10, 0, 0.2f));
    expectNear(track.p[1].point, GLVector3(0, 0, 0), 0);
}

TEST_F(Track, LeavesASegmentOnlyBeyondItsEnd) {
    addSquare();
    track.init();
    track.dist = 1;
    step(0);
    EXPECT_EQ(track.getActWaypoint(), 0);
    expectNear(object.getPosition(), GLVector3(10, 0, 0));
    track.dist = std::nextafter(1.0f, 2.0f);
    step(0);
    EXPECT_EQ(track.getActWaypoint(), 1);
    EXPECT_EQ(track.dist, 0);
}

// The steps of a frame once more, one after the other, on a route without any symmetry.
TEST_F(Track, EveryFrameIsTheSumOfItsSteps) {
    const std::vector<GLVector3> route = {{1, 2, 3},  {9, 3, 1},   {14, -1, 8},
                                          {7, 0, 15}, {-2, 4, 11}, {-6, 1, 5}};
    // Everything beyond the end is the first point.
    const auto point = [&](int i) { return &route[i < 0 ? 5 : i < 6 ? size_t(i) : 0]; };
    const auto at = [&](int start, float t) {
        const int i = t <= 1 ? start : (start + 1) % 6;
        return catmullRomSpline(point(i - 1), point(i), point(i + 1), point(i + 2),
                                t <= 1 ? t : t - 1);
    };
    for (const int flags : {0, 1, 2, 3, 6, 7, 9, 11, 15}) {
        SCOPED_TRACE("flags " + std::to_string(flags));
        RenderObject moved, expected;
        moved.setPosition(14.03f, -1.02f, 8.04f);
        AnimationTrack curve;
        curve.setRenderObject(&moved);
        for (const GLVector3& place : route)
            curve.addPoint(place, 5);
        curve.flags = static_cast<TRACK_FLAG>(flags);
        curve.setStartpointIndex(2);
        curve.setSpeed(0.004f);
        curve.init();
        expected.removeFlags(WORLD_POSITIONING);
        expected.vPos = moved.vPos;
        expected.vAt = moved.vAt;

        const bool relative = flags & RELATIVE_MOVEMENT;
        const GLVector3 shift = relative ? moved.getPosition() - route[2] : GLVector3();
        int start = 2;
        float bank = 0;
        GLVector2 heading(0, 0);
        for (int frame = 0; frame < 600; ++frame) {
            // Rounding must not add up.
            float dist = curve.dist;
            const Uint32 elapsed = 5 + frame % 30;
            const float probe = curve.actspeed;
            advanceTicks(elapsed);
            curve.move();

            if (dist > 1) {
                dist = 0;
                start = (start + 1) % 6;
            }
            const GLVector3 raw = at(start, dist), place = raw + shift;
            GLVector3 look;
            if (flags & ROTATE_OBJECT) {
                look = at(start, dist + 0.07f) + shift;
                expected.setPositionVector(&place);
                expected.setViewVector(&look);
            } else {
                expected.setPosition(place);
            }
            if (flags & ROLL_OBJECT) {
                const GLVector3 direction = look - place;
                const GLVector2 now(direction.x, direction.z);
                const float wanted =
                    frame == 0 ? 0 : angleBetweenVectors(&now, &heading) * -57.295776f * 10;
                if (flags & SMOOTH_ROLL)
                    approximation(&bank, wanted, 2);
                else
                    bank = wanted;
                expected.setUpVector(0, 1, 0);
                expected.roll(bank);
                heading = now;
            }
            const GLVector3 next = at(start, dist + probe);
            dist += probe * static_cast<float>(elapsed) * 0.004f / distance(&place, &next);

            ASSERT_EQ(curve.getActWaypoint(), start) << frame;
            ASSERT_NEAR(curve.dist, dist, 1e-4) << frame;
            expectNear(moved.getPositionVector(), expected.getPositionVector(), 2e-3f);
            expectNear(moved.getViewVector(), expected.getViewVector(), 2e-3f);
            expectNear(moved.getUpVector(), expected.getUpVector(), 2e-2f);
            expectNear(curve.actposition, expected.getPositionVector(), 2e-3f);
            ASSERT_FALSE(HasFailure()) << frame;
        }
    }
}

TEST_F(Track, KeepsTheHeadingWithoutRotation) {
    addSquare();
    track.removeFlags(ROTATE_OBJECT | ROLL_OBJECT);
    object.removeFlags(WORLD_POSITIONING);
    const GLVector3 heading = object.getViewVector() - object.getPositionVector();
    for (int i = 0; i < 50; ++i)
        step(100);
    EXPECT_GT(object.getPosition().x, 5);
    expectNear(object.getViewVector() - object.getPositionVector(), heading);
}

TEST_F(Track, MovesAnObjectRelativeToItsPlace) {
    addSquare();
    track.setMovement(MOVE_LINEAR);
    track.addFlags(RELATIVE_MOVEMENT);
    object.setPosition(100, 0, 0);
    step(10);
    expectNear(object.getPosition(), GLVector3(100, 0, 0));
    expectNear(object.getViewVector(), GLVector3(100.7f, 0, 0));
    for (int i = 0; i < 400; ++i) {
        const float at = track.dist;
        step(10);
        expectNear(object.getPosition(), GLVector3(100 + 10 * at, 0, 0));
    }
    // The offset counts as way covered, so the object is slower than its speed; but it does move.
    EXPECT_GT(object.getPosition().x, 100.01f);
}

TEST_F(Track, CountsAPauseWhole) {
    addSquare(100);
    track.setMovement(MOVE_LINEAR);
    for (int i = 0; i < 100; ++i)
        step(10);
    const float before = track.dist;
    track.stop();
    const GLVector3 place = object.getPosition();
    for (int i = 0; i < 100; ++i)
        step(10);
    EXPECT_EQ(track.dist, before);
    expectNear(object.getPosition(), place, 0);
    track.go();
    step(0);
    EXPECT_NEAR(track.dist - before, 1000 * 0.002f / 100, 1e-4f);
}

TEST_F(Track, ReadsTheClockAcrossItsWrap) {
    setTicks(0xfffffff0u);
    addSquare();
    track.setMovement(MOVE_LINEAR);
    for (int i = 0; i < 10; ++i)
        step(100);
    EXPECT_LT(object.getPosition().x, 2.5f);
    EXPECT_GT(object.getPosition().x, 1.5f);
}

TEST_F(Track, StaysWhereItIsWhileNoTimePasses) {
    addSquare();
    for (int i = 0; i < 10; ++i)
        step(10);
    const float before = track.dist, step_before = track.actspeed;
    step(0);
    EXPECT_EQ(track.dist, before);
    EXPECT_EQ(track.actspeed, step_before);
}

TEST_F(Track, RecoversFromAnyPause) {
    for (MOVEMENT_STYLE style : {MOVE_LINEAR, MOVE_SPLINE}) {
        for (Uint32 pause : {1000u, 60000u, 600000u, 3600000u, 24u * 3600000u, 0xffffffffu}) {
            SCOPED_TRACE(pause);
            AnimationTrack square;
            square.setRenderObject(&object);
            for (auto [x, z] : {std::pair(0, 0), {10, 0}, {10, 10}, {0, 10}})
                square.addPoint(float(x), 0, float(z), 0);
            square.setMovement(style);
            for (int i = 0; i < 100; ++i) {
                advanceTicks(10);
                square.move();
            }
            advanceTicks(pause);
            for (int i = 0; i < 40; ++i) {
                square.move();
                ASSERT_TRUE(isFinite(object.getPositionVector()));
                ASSERT_TRUE(isFinite(object.getViewVector()));
                ASSERT_TRUE(isFinite(object.getUpVector()));
                advanceTicks(10);
            }
            // And swims on at its speed.
            GLVector3 last = object.getPosition();
            double covered = 0;
            for (int i = 0; i < 100; ++i) {
                advanceTicks(10);
                square.move();
                const GLVector3 place = object.getPosition();
                covered += distance(&place, &last);
                last = place;
            }
            EXPECT_NEAR(covered, 2.0, 0.05);
        }
    }
}

TEST_F(Track, HoldsAtSpeedZeroAndGoesOn) {
    addSquare();
    for (int i = 0; i < 20; ++i)
        step(10);
    track.setSpeed(0);
    step(10);
    const float held = track.dist;
    for (int i = 0; i < 20; ++i)
        step(10);
    EXPECT_EQ(track.dist, held);
    track.setSpeed(0.002f);
    const GLVector3 before = object.getPosition();
    for (int i = 0; i < 101; ++i)
        step(10);
    const GLVector3 after = object.getPosition();
    EXPECT_NEAR(distance(&after, &before), 2, 0.05);
}

TEST_F(Track, GetsPastTwoPointsInOnePlace) {
    track.addPoint(0, 0, 0, 0);
    track.addPoint(0, 0, 0, 0);
    track.addPoint(1, 0, 0, 0);
    bool arrived = false;
    for (int i = 0; i < 3000 && !arrived; ++i) {
        step(10);
        ASSERT_TRUE(std::isfinite(track.dist));
        arrived = track.getActWaypoint() == 2;
    }
    EXPECT_TRUE(arrived);
}

TEST_F(Track, BanksIntoTheFirstFrameWithoutALastHeading) {
    addSquare();
    step(10);
    EXPECT_EQ(track.actroll_angle, 0);
    EXPECT_TRUE(isFinite(object.getUpVector()));
    expectNear(object.getUpVector(), GLVector3(0, 1, 0));
}

TEST_F(Track, BanksByTheChangeOfHeading) {
    addSquare();
    track.removeFlags(SMOOTH_ROLL);
    track.init();
    const GLVector3 first(1, 0, 0), second(std::cos(DTOR(3.0f)), 0, std::sin(DTOR(3.0f)));
    track.rollObject(&first);
    track.rollObject(&second);
    // From the last heading to this one is -3 degrees as the angle is measured, times factor 10.
    EXPECT_NEAR(track.actroll_angle, 30, 1e-2);
    track.setRollFactor(2);
    track.rollObject(&first);
    EXPECT_NEAR(track.actroll_angle, -6, 1e-2);
    track.rollObject(&first);
    EXPECT_EQ(track.actroll_angle, 0);
    expectNear(object.getUpVector(), GLVector3(0, 1, 0));
}

TEST_F(Track, BanksGradually) {
    addSquare();
    track.init();
    const GLVector3 first(1, 0, 0);
    track.rollObject(&first);
    // A heading that turns by 3 degrees a frame keeps a bank of 30 wanted.
    std::vector<float> banks;
    for (int i = 1; i <= 17; ++i) {
        const float angle = DTOR(3.0f * i);
        const GLVector3 heading(std::cos(angle), 0, std::sin(angle));
        track.rollObject(&heading);
        banks.push_back(track.actroll_angle);
    }
    for (int i = 0; i < 14; ++i)
        EXPECT_NEAR(banks[i], 2 * (i + 1), 1e-3) << i;
    EXPECT_NEAR(banks[14], 30, 1e-2);
    EXPECT_NEAR(banks[16], 30, 1e-2);
    track.setMaxRollStep(0.6f);
    const float angle = DTOR(3.0f * 17);
    const GLVector3 straight(std::cos(angle), 0, std::sin(angle));
    track.rollObject(&straight);
    EXPECT_NEAR(track.actroll_angle, 29.4f, 1e-2);
    for (int i = 0; i < 60; ++i)
        track.rollObject(&straight);
    EXPECT_EQ(track.actroll_angle, 0);
}

TEST_F(Track, BanksFinitelyWhateverTheHeadings) {
    addSquare();
    track.init();
    const GLVector3 headings[] = {{0, 1, 0},         {0, 0, 0},         {0.3f, 0, 0.7f},
                                  {-0.3f, 0, -0.7f}, {1, 0, 1e-9f},     {-1, 0, -1e-9f},
                                  {0, -1, 0},        {0.1f, 0.2f, 0.3f}};
    for (const GLVector3& a : headings) {
        for (const GLVector3& b : headings) {
            track.rollObject(&a);
            ASSERT_TRUE(std::isfinite(track.actroll_angle));
            track.rollObject(&b);
            ASSERT_TRUE(std::isfinite(track.actroll_angle));
            ASSERT_TRUE(isFinite(object.getUpVector()));
        }
    }
}

TEST_F(Track, DropsItsFirstPoint) {
    track.removeFirstPoint();
    EXPECT_TRUE(track.waypoints.empty());
    addSquare();
    track.setStartpointIndex(2);
    track.removeFirstPoint();
    EXPECT_EQ(track.waypoints.size(), 3u);
    EXPECT_EQ(track.getActWaypoint(), 1);
    expectNear(track.waypoints[1].point, GLVector3(10, 0, 10), 0);
    track.setStartpointIndex(0);
    track.removeFirstPoint();
    EXPECT_EQ(track.getActWaypoint(), 1);  // the last of two
}

TEST_F(Track, FollowsAnEndlessRoute) {
    for (int i = 0; i < 8; ++i)
        track.addPoint(float(i), std::sin(float(i)), 0, 0);
    GLVector3 last;
    int added = 8;
    for (int i = 0; i < 20000; ++i) {
        step(10);
        const GLVector3 place = object.getPosition();
        ASSERT_LT(distance(&place, &last), 0.05f);
        last = place;
        if (track.getActWaypoint() > 3) {
            for (int j = 0; j < 4; ++j) {
                track.removeFirstPoint();
                track.addPoint(float(added), std::sin(float(added)), 0, 0);
                ++added;
            }
        }
    }
    EXPECT_GT(added, 30);
    EXPECT_EQ(track.waypoints.size(), 8u);
}

TEST_F(Track, AllocatesNothingWhileMoving) {
    addSquare();
    track.init();
    watchAllocations();
    for (int i = 0; i < 1000; ++i)
        step(10);
    EXPECT_EQ(allocationCount(), 0u);
}

TEST_F(Track, ShowsItsWaypoints) {
    addSquare();
    clear();
    track.renderWaypoints();
    ASSERT_EQ(vertices().size(), 4u * 20u * 4u);
    const std::vector<GL_CALL> places = callsOf("glTranslatef");
    ASSERT_EQ(places.size(), 80u);
    // z goes to GL negated, as for every object.
    EXPECT_EQ(places[40], (GL_CALL{"glTranslatef", {10, 0, -10}}));
    for (size_t i = 0; i < vertices().size(); ++i) {
        const auto& color = vertices()[i].color;
        const bool first = i / 4 % 20 == 0;
        EXPECT_EQ(color, (std::array<float, 4>{first ? 1.0f : 0.0f, first ? 0.0f : 1.0f, 0, 1}));
    }
    EXPECT_EQ(vertices()[0].x, 0.15f);
    EXPECT_EQ(vertices()[0].y, 0.15f);
    EXPECT_EQ(imbalance(), "");
    // The closing segment is there: both points behind it count as waypoint 0, so that it bulges
    // half as far as the others. The track's own segment is untouched.
    EXPECT_NEAR(places[30].args[0], 11.25, 1e-4);
    EXPECT_NEAR(places[70].args[0], -0.625, 1e-4);
    expectNear(track.p[1].point, GLVector3(0, 0, 0), 0);
}

TEST_F(Track, ShowsTheCurveThatItFollows) {
    const std::vector<GLVector3> route = {
        {1, 2, 3}, {9, 3, 1}, {14, -1, 8}, {7, 0, 15}, {-2, 4, 1}};
    for (const GLVector3& place : route)
        track.addPoint(place, 0);
    clear();
    track.renderWaypoints();
    const std::vector<GL_CALL> places = callsOf("glTranslatef");
    ASSERT_EQ(places.size(), 100u);
    for (int i = 0; i < 5; ++i) {
        // Beyond the end there is always waypoint 0.
        const GLVector3* const end = &route[i + 1 < 5 ? i + 1 : 0];
        const GLVector3* const after = &route[i + 2 < 5 ? i + 2 : 0];
        for (int j = 0; j < 20; ++j) {
            const GLVector3 p = catmullRomSpline(&route[i > 0 ? i - 1 : 4], &route[i], end, after,
                                                 static_cast<float>(j) * 0.05f);
            const std::vector<double>& args = places[static_cast<size_t>(i * 20 + j)].args;
            EXPECT_NEAR(args[0], p.x, 1e-4);
            EXPECT_NEAR(args[1], p.y, 1e-4);
            EXPECT_NEAR(args[2], -p.z, 1e-4);
        }
    }
}
