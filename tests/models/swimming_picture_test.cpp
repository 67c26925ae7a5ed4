// Pictures of a fish in motion: it swims nose first, back up, and is not mirrored.
#include <GL/gl.h>
#include <GL/glu.h>
#include <SDL.h>
#include <gmock/gmock.h>

#include <cmath>

#include "BigFishMovement.h"
#include "FishSteering.h"
#include "SingleFishMovement.h"
#include "models/model_bytes.h"
#include "offscreen.h"
#include "support/chance.h"
#include "support/clock.h"

using namespace test;

namespace {

constexpr int SIZE = 128;

enum COLOR { RED, GREEN, BLUE, GREY };

/// A picture of four columns in the colours above.
Bytes colorStripes() {
    const uint8_t colors[4][3] = {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {128, 128, 128}};  // BGR
    Bytes bytes{'B', 'M'};
    for (uint32_t value : {54u + 48u, 0u, 54u, 40u, 4u, 4u})
        append(bytes, value);
    append<uint16_t>(bytes, 1);
    append<uint16_t>(bytes, 24);
    for (uint32_t value : {0u, 48u, 0u, 0u, 0u, 0u})
        append(bytes, value);
    for (int row = 0; row < 4; ++row)
        for (const auto& color : colors)
            bytes.insert(bytes.end(), color, color + 3);
    return bytes;
}

/// A grey body with a red nose ahead, a green fin on its back and a blue one on its right, in the
/// axes of model files: right is +x, ahead +y, up +z.
Md3File coloredFish() {
    Md3File file;
    file.frames.resize(2);
    const auto spike = [&](std::array<int, 3> from, std::array<int, 3> to, COLOR color) {
        // Three blades round the line, so that it shows from every side.
        for (int axis = 0; axis < 3; ++axis) {
            const int first = static_cast<int>(file.tex.size());
            for (int corner = 0; corner < 3; ++corner) {
                std::array<int, 3> place = corner == 2 ? to : from;
                if (corner < 2)
                    place[axis] += corner ? 1 : -1;
                for (auto& frame : file.frames)
                    frame.push_back({static_cast<int16_t>(64 * place[0]),
                                     static_cast<int16_t>(64 * place[1]),
                                     static_cast<int16_t>(64 * place[2])});
                file.tex.push_back({(color + 0.5f) / 4, 0.5f});
            }
            file.triangles.push_back({first, first + 1, first + 2});
        }
    };
    spike({0, 2, 0}, {0, -6, 0}, GREY);
    spike({0, 3, 0}, {0, 6, 0}, RED);
    spike({0, 0, 2}, {0, 0, 5}, GREEN);
    spike({2, 0, 0}, {5, 0, 0}, BLUE);
    return file;
}

struct PLACE {
    double x = 0, y = 0;  ///< pixels, y upwards
    int pixels = 0;
};

/// The middle of the pixels of one colour.
PLACE middle(const Picture& picture, COLOR color) {
    PLACE place;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const uint8_t* p = &picture.rgb[3 * (size_t(y) * picture.width + x)];
            const bool red = p[0] > 64, green = p[1] > 64, blue = p[2] > 64;
            const bool match = color == GREY ? red && green && blue
                                             : red == (color == RED) && green == (color == GREEN) &&
                                                   blue == (color == BLUE);
            if (match) {
                place.x += x;
                place.y -= y;
                ++place.pixels;
            }
        }
    }
    place.x /= std::max(place.pixels, 1);
    place.y /= std::max(place.pixels, 1);
    return place;
}

/// Degrees from one way in the picture to another, counter-clockwise, within a half turn.
double degrees(double fromX, double fromY, double toX, double toY) {
    return std::remainder((std::atan2(toY, toX) - std::atan2(fromY, fromX)) * 180 / M_PI, 360);
}

struct SwimmingPicture : testing::Test {
    SwimmingPicture() : context(SIZE, SIZE) {
        setTicks(0);
        seedRandom(3);
    }

    void SetUp() override {
        ASSERT_TRUE(context.ok());
        const Bytes fish = coloredFish().bytes();
        ASSERT_TRUE(model.decodeMD3(fish.data(), fish.size(), "fish"));
        model.addAnimation(0, 1, "swim");
        Bytes stripes = colorStripes();
        ASSERT_TRUE(texture.loadBMP(SDL_RWFromMem(stripes.data(), int(stripes.size())), "stripes",
                                    QUALITY_FASTEST));
        core.setModel(&model);
        core.addTexture(&texture);
        core.scale(0.5f);
        core.removeFlags(WORLD_POSITIONING);
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_TEXTURE_2D);
    }
    void TearDown() override { texture.cleanup(); }

    /// The fish before an eye that looks from the given side at the place (x, y, z) of the world.
    Picture look(const GLVector3& side, const GLVector3& up, const GLVector3& at,
                 const std::string& name) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-8, 8, -8, 8, 1, 100);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        // The world's z is GL's negated.
        gluLookAt(at.x + 50 * side.x, at.y + 50 * side.y, -at.z - 50 * side.z, at.x, at.y, -at.z,
                  up.x, up.y, -up.z);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        core.render();
        // The environment mode that a single texture asks for is one that GL refuses, on purpose.
        EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        const Picture picture = context.read();
        picture.savePng(testing::TempDir() + "swimming_" + name + ".png");
        return picture;
    }

    /// Moves the fish for a while and looks at it before and after, from above and from its right.
    template <class Move>
    void expectRightWayRound(const std::string& name, Move move) {
        const GLVector3 start = core.getPositionVector();
        const Picture above = look(GLVector3(0, 1, 0), GLVector3(0, 0, 1), start, name + "_above");
        advanceTicks(10);
        move();
        GLVector3 way = core.getPositionVector() - start;
        for (int i = 0; i < 4000 && vectorLength(&way) < 2; ++i) {
            advanceTicks(10);
            move();
            way = core.getPositionVector() - start;
        }
        ASSERT_GT(vectorLength(&way), 1.9f);
        const Picture later = look(GLVector3(0, 1, 0), GLVector3(0, 0, 1), start, name + "_later");

        const PLACE nose = middle(above, RED), body = middle(above, GREY),
                    right = middle(above, BLUE), nose_later = middle(later, RED);
        ASSERT_GT(nose.pixels, 5);
        ASSERT_GT(body.pixels, 5);
        ASSERT_GT(right.pixels, 5);
        ASSERT_GT(nose_later.pixels, 5);
        const double ahead_x = nose.x - body.x, ahead_y = nose.y - body.y;
        EXPECT_NEAR(degrees(ahead_x, ahead_y, nose_later.x - nose.x, nose_later.y - nose.y), 0, 12)
            << "the nose does not lead";
        // Seen from above, right is a quarter turn clockwise of ahead.
        EXPECT_NEAR(degrees(ahead_x, ahead_y, right.x - body.x - ahead_x * 0.4,
                            right.y - body.y - ahead_y * 0.4),
                    -90, 25)
            << "the fish is mirrored";

        // From the fish's right: the nose points to the right of the picture, the back up.
        const GLVector3 now = core.getPositionVector();
        way.normalize();
        const GLVector3 side_of_way(way.z, 0, -way.x);
        const Picture beside = look(side_of_way, GLVector3(0, 1, 0), now, name + "_beside");
        const PLACE nose_beside = middle(beside, RED), body_beside = middle(beside, GREY),
                    back = middle(beside, GREEN);
        ASSERT_GT(nose_beside.pixels, 5);
        ASSERT_GT(back.pixels, 5);
        EXPECT_GT(nose_beside.x, body_beside.x + 10);
        EXPECT_GT(back.y, body_beside.y + 10);
        EXPECT_NEAR(nose_beside.y, body_beside.y, 6);
    }

    /// Off the waypoints, where the ways curve.
    template <class Move>
    void swimToTheMiddle(const AnimationTrack& track, Move move) {
        for (int i = 0; i < 4000 && track.dist < 0.4f; ++i) {
            advanceTicks(10);
            move();
        }
    }

    OffscreenContext context;
    QModel model;
    Texture texture;
    ModelCore core;
};

}  // namespace

TEST_F(SwimmingPicture, OfASingleFish) {
    const float ways[][2] = {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {0.6f, 0.8f}};
    for (int i = 0; i < 5; ++i) {
        SCOPED_TRACE(i);
        core.setPositionVector(-5, 0, 12);
        core.setViewVector(-5 + ways[i][0], 0, 12 + ways[i][1]);
        SingleFishMovement mover;
        mover.setModel(&core);
        mover.init();
        expectRightWayRound("single" + std::to_string(i), [&] { mover.move(); });
    }
}

TEST_F(SwimmingPicture, OfAFishOnATrack) {
    for (bool reverse : {false, true}) {
        SCOPED_TRACE(reverse);
        AnimationTrack track;
        for (auto [x, z] : {std::pair(0, 0), {30, 0}, {30, 30}, {0, 30}})
            track.addPoint(float(reverse ? -x : x), -6, float(z), 0);
        track.setRenderObject(&core);
        swimToTheMiddle(track, [&] { track.move(); });
        expectRightWayRound(reverse ? "track_back" : "track", [&] { track.move(); });
    }
}

TEST_F(SwimmingPicture, OfAPassingBigFish) {
    BigFishMovement mover;
    mover.points = {GLVector3(24, -6, 32), GLVector3(10, -6, 27), GLVector3(4, -6, 20),
                    GLVector3(0, -6, 14), GLVector3(-2, -6, 9)};
    mover.models = {&core};
    mover.init();
    swimToTheMiddle(mover.track, [&] { mover.move(); });
    expectRightWayRound("big", [&] { mover.move(); });
}

TEST_F(SwimmingPicture, OfAFishInASchool) {
    FishSteering school;
    school.addFish(&core);
    school.setTargetPoint(0, -3.5f, 0);
    school.init();
    school.setTargetPoint(40, -3.5f, 60);
    setRandom(std::vector<int>(20, 1));
    for (int i = 0; i < 200; ++i) {
        advanceTicks(10);
        school.move();
    }
    expectRightWayRound("school", [&] { school.move(); });
}
