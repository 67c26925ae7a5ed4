// What the scene is made of for given settings.

#include <gmock/gmock.h>

#include <cstring>

#include "Globals.h"
#include "scene_fixture.h"

namespace {

using testing::ElementsAre;

class AssemblyTest : public SceneTest {};

TEST_F(AssemblyTest, StartValues) {
    CMarivistaScreensaver& s = make();
    EXPECT_STREQ(s.strRegPath, "Software\\Orvo\\Screensavers\\Atollia");
    EXPECT_STREQ(s.strProjectName, "Orvo Atollia");
    EXPECT_STREQ(s.dataPath, "./Atollia/");
    EXPECT_FALSE(s.init);
    EXPECT_EQ(s.timer, 1000u);
    EXPECT_EQ(s.gulltimer, 1000u);
    EXPECT_EQ(s.cameratimer, 1000u);
    EXPECT_STREQ(s.fpsstr, "");
    EXPECT_EQ(s.framecounter, 0);
    EXPECT_FALSE(s.wireframe);
    EXPECT_FALSE(s.fpsOn);
    EXPECT_FALSE(s.helpexpanded);
    EXPECT_TRUE(s.helpvisible);
    EXPECT_EQ(s.fpstimer, 0u);
    EXPECT_EQ(s.lastframetime, 0u);
    EXPECT_EQ(s.watertexmotion, 0.0f);
    EXPECT_TRUE(s.gullflyanimation);
    EXPECT_FALSE(s.gullreverseflight);
    EXPECT_EQ(s.gull_nextani, 3000);
    EXPECT_FALSE(s.mantareverse);
    EXPECT_EQ(s.autoCameraDirection, 0);
    EXPECT_EQ(s.camera_nextmove, 10000);
    EXPECT_FALSE(s.autocameramove);
    EXPECT_FALSE(s.camerascrolling);
    EXPECT_EQ(s.sound, nullptr);
    EXPECT_EQ(s.fish, nullptr);
    EXPECT_EQ(s.fishmove, nullptr);
    EXPECT_EQ(s.fishcrowd, nullptr);
    EXPECT_EQ(s.soundtimer.min_interv, 20000);
    EXPECT_EQ(s.soundtimer.max_interv, 30000);
    EXPECT_TRUE(s.releaseGL());
    EXPECT_TRUE(s.doConfig());
    EXPECT_TRUE(s.resetEvents());
    SDL_Event event;
    event.type = 12;
    EXPECT_TRUE(s.processSDLEvents(&event));
    event.type = 13;
    EXPECT_FALSE(s.processSDLEvents(&event));
}

TEST_F(AssemblyTest, TheTextsAreOpen) {
    make();
    EXPECT_STRNE(scene().language.getString("caption"), "");
}

TEST_F(AssemblyTest, DefaultsGiveTheWholeWorld) {
    make();
    build();
    EXPECT_EQ(scene().boidcount, 10);
    EXPECT_EQ(scene().numFish, 6);
    EXPECT_EQ(scene().manta.model, &scene().manta_model);
    EXPECT_EQ(scene().hunter1.model, &scene().hunter1_model);
    EXPECT_THAT(scene().bigfishmove.models,
                ElementsAre(&scene().yellowbigfish, &scene().redbigfish));
    EXPECT_TRUE(scene().bird_gull);
    EXPECT_TRUE(scene().autocameramove);
    EXPECT_TRUE(scene().huntmove1.settings.hunter);
    EXPECT_EQ(scene().huntmove1.settings.max_speed_change, 0.000001f);
    EXPECT_EQ(scene().crowd_model.fps, 44.0f);
    EXPECT_EQ(scene().fish_red_model.fps, 15.0f);
    EXPECT_EQ(scene().fish_blue_model.fps, 7.0f);
    EXPECT_EQ(scene().fish_stripe_model.fps, 7.0f);
    EXPECT_EQ(scene().fish_yell_blu_model.fps, 7.0f);
}

TEST_F(AssemblyTest, TheBudgetGoesToTheBigOnesFirst) {
    make();
    settings().fishcount = 2;
    build();
    EXPECT_NE(scene().manta.model, nullptr);
    EXPECT_NE(scene().hunter1.model, nullptr);
    EXPECT_EQ(scene().yellowbigfish.model, nullptr);
    EXPECT_EQ(scene().redbigfish.model, nullptr);
    EXPECT_TRUE(scene().bigfishmove.models.empty());
    EXPECT_EQ(scene().numFish, 0);
}

TEST_F(AssemblyTest, ABudgetThatTheSingleFishUseUpLeavesNoReefFish) {
    make();
    settings().fishcount = 4;
    build();
    EXPECT_EQ(scene().numFish, 0);
    EXPECT_EQ(scene().fish, nullptr);
    EXPECT_EQ(scene().fishmove, nullptr);
    EXPECT_EQ(scene().bigfishmove.models.size(), 2u);
}

TEST_F(AssemblyTest, SpeciesTakeTurns) {
    make();
    settings().fish_red = false;
    settings().fishcount = 11;
    build();
    ASSERT_EQ(scene().numFish, 7);
    const QModel* const order[] = {&scene().fish_stripe_model, &scene().fish_blue_model,
                                   &scene().fish_yell_blu_model};
    const float scales[] = {0.02f, 0.018f, 0.02f};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(scene().fish[i].model, order[i % 3]) << i;
        EXPECT_EQ(scene().fish[i].scalefactor.x, scales[i % 3]) << i;
    }
}

TEST_F(AssemblyTest, NoSpeciesNoReefFish) {
    make();
    settings().fish_stripe = settings().fish_red = settings().fish_blue = false;
    settings().fish_yell_blu = false;
    build();
    EXPECT_EQ(scene().numFish, 0);
    EXPECT_EQ(scene().fish, nullptr);
    tick(10);
}

TEST_F(AssemblyTest, ReefFishStandInThreeLayersFacingTurnAboutAlongX) {
    make();
    build();
    for (int i = 0; i < scene().numFish; ++i) {
        const GLVector3 p = scene().fish[i].getPositionVector();
        const GLVector3 v = scene().fish[i].getViewVector();
        EXPECT_GE(p.x, -5.5f);
        EXPECT_LE(p.x, 6.0f);
        EXPECT_GE(p.z, 3.0f);
        EXPECT_LE(p.z, 21.0f);
        // The mover takes every fish to its own swimming depth.
        EXPECT_FLOAT_EQ(p.y, -3.5f);
        EXPECT_FLOAT_EQ(v.x - p.x, i % 2 ? -1.0f : 1.0f);
        EXPECT_FLOAT_EQ(v.z, p.z);
        EXPECT_EQ(scene().fishmove[i].fishboid, &scene().fishsteering);
        EXPECT_FALSE(scene().fish[i].flags & WORLD_POSITIONING);
    }
}

TEST_F(AssemblyTest, NoSchoolLoadsNoSchoolModel) {
    for (const int count : {0, -3}) {
        make();
        settings().boidcount = count;
        build();
        EXPECT_EQ(scene().boidcount, 0);
        EXPECT_EQ(scene().fishcrowd, nullptr);
        EXPECT_FALSE(scene().crowd_model.loaded);
        EXPECT_FALSE(scene().huntmove1.settings.hunter);
        tick(10);
    }
}

TEST_F(AssemblyTest, TheOtherSchoolFish) {
    make();
    settings().boidmodel = 7;
    build();
    EXPECT_EQ(scene().crowd_model.NumFrames, 10);
    EXPECT_EQ(scene().crowd_model.NumVerts, scene().fish_red_model.NumVerts);
}

TEST_F(AssemblyTest, TheRedBigFishNeedsTheGreyOne) {
    make();
    settings().fish_big_grey = false;
    settings().fishcount = 3;
    build();
    EXPECT_FALSE(scene().yellowbigfish_model.loaded);
    EXPECT_FALSE(scene().redbigfish_model.loaded);
    EXPECT_THAT(scene().bigfishmove.models, ElementsAre(&scene().redbigfish));
    EXPECT_EQ(scene().numFish, 0);  // It takes its place in the budget all the same.
    testing::internal::CaptureStdout();
    for (int i = 0; i < 50; ++i)
        tick(10);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(AssemblyTest, OneKeyLoadsBothBigFish) {
    make();
    settings().fish_big_red = false;
    build();
    EXPECT_TRUE(scene().yellowbigfish_model.loaded);
    EXPECT_TRUE(scene().redbigfish_model.loaded);
    EXPECT_THAT(scene().bigfishmove.models, ElementsAre(&scene().yellowbigfish));
}

TEST_F(AssemblyTest, CameraPositions) {
    const struct {
        int camerapos;
        bool automatic;
        float pitch;
    } positions[] = {{0, true, 0},  {1, false, -25.0f}, {2, false, -8.0f}, {3, false, 4.5f},
                     {4, false, 0}, {-1, false, 0},     {99999, false, 0}};
    for (const auto& position : positions) {
        make();
        noFish();
        settings().camerapos = position.camerapos;
        build();
        EXPECT_EQ(scene().autocameramove, position.automatic) << position.camerapos;
        EXPECT_FLOAT_EQ(scene().camera.rotationX, position.pitch) << position.camerapos;
    }
}

TEST_F(AssemblyTest, SoundOnlyWhenWanted) {
    make();
    build();
    EXPECT_EQ(scene().sound, nullptr);
    EXPECT_TRUE(test::sounds.empty());

    make();
    settings().soundOn = true;
    build();
    ASSERT_NE(scene().sound, nullptr);
    EXPECT_THAT(test::sounds, ElementsAre("music water.wav", "loop", "sound 0 seagull1.wav",
                                          "sound 1 seagull2.wav", "sound 2 seagull3.wav",
                                          "sound 3 seagull4.wav"));
    scene().cleanup();
    EXPECT_EQ(test::sounds.back(), "gone");
    EXPECT_EQ(scene().sound, nullptr);
}

TEST_F(AssemblyTest, NoGull) {
    make();
    settings().bird_gull = false;
    build();
    EXPECT_FALSE(scene().gull_model.loaded);
    EXPECT_FALSE(scene().bird_gull);
    EXPECT_TRUE(scene().gulltrack.waypoints.empty());
    tick(10);
}

TEST_F(AssemblyTest, TheSkyAsWanted) {
    testing::internal::CaptureStdout();
    test::setDataDirectory("/nowhere/");
    const struct {
        int skytype, colordepth;
        const char* file;
    } skies[] = {{0, 16, "sky_cloudy.nlt"},
                 {0, 32, "sky_cloudy.nlt"},
                 {1, 16, "sky_clear_16.nlt"},
                 {1, 32, "sky_clear_32.nlt"},
                 {5, 24, "sky_clear_16.nlt"}};
    std::string expected;
    for (const auto& sky : skies) {
        make();
        noFish();
        settings().skytype = sky.skytype;
        scene().colordepth = sky.colordepth;
        build();
    }
    const std::string out = testing::internal::GetCapturedStdout();
    size_t at = 0;
    for (const auto& sky : skies) {
        const std::string line =
            std::string("Texture::loadBMP SDL_LoadBMP /nowhere/") + sky.file + " failed\n";
        at = out.find(line, at);
        ASSERT_NE(at, std::string::npos) << line;
        ++at;
    }
}

TEST_F(AssemblyTest, TheReefStandsWhereItBelongs) {
    make();
    build();
    const CMarivistaScreensaver& s = scene();
    const struct {
        const RenderObject& object;
        float x, y, z, rx, ry, rz, sx, sy, sz;
    } places[] = {
        {s.coral_a, -2.8f, -5.4f, 20.2f, 0, 0, 0, 1, 1, 1},
        {s.coral_b[0], -3.7f, -7.6f, 14.2f, -35, -45, 0, 0.04f, 0.04f, 0.04f},
        {s.coral_b[1], -5, -7.5f, 13.7f, 25, -15, 0, 0.045f, 0.045f, 0.045f},
        {s.coral_b[2], -3.4f, -7.6f, 12.8f, 30, 40, 0, 0.03f, 0.03f, 0.03f},
        {s.coral_c, -8.9f, -6.2f, 19.2f, 30, -10, 0, 0.04f, 0.04f, 0.04f},
        {s.coral_d[0], -5.6f, -7.4f, 15, 0, 45, 0, 0.05f, 0.05f, 0.05f},
        {s.coral_d[1], -11.6f, -5.6f, 15, 0, 45, 0, 0.04f, 0.02f, 0.04f},
        {s.coral_f, -10, -6, 20.2f, -30, 40, 25, 1, 1, 1},
        {s.coral_g, 0, -7, 25.2f, 0, 0, 0, 1, 1, 1},
        {s.coral_h, 7, -7.2f, 22, 0, 0, 10, 1, 0.5f, 1},
        {s.coral_i, 11, -7, 18.4f, 12, 15, -5, 1.2f, 1.4f, 1.3f},
        {s.terrain, 0, -8, 0, 0, 0, 0, 1, 1, 1},
        {s.island, 16, 4, 44, 0, 0, 0, 1, 1, 1},
        {s.rock2, -31.7f, 4, 60, 0, 30, 0, 1, 1, 1},
        {s.water, 0, 0, 20, -90, 0, 0, 1, 1, 1},
        {s.highlight, 0, 0.2f, 15, -90, 0, 0, 1, 1, 1},
        {s.gwfader, 0, -3.4f, 40, -60, 0, 0, 1, 1, 1},
        {s.skyflat, 0, 45, 100, 0, 0, 0, 1, 1, 1},
    };
    for (const auto& place : places) {
        const GLVector3 p = const_cast<RenderObject&>(place.object).getPosition();
        SCOPED_TRACE(testing::Message() << "expected at " << place.x << ", " << place.z);
        EXPECT_EQ(p, GLVector3(place.x, place.y, place.z));
        EXPECT_EQ(place.object.rotX, place.rx);
        EXPECT_EQ(place.object.rotY, place.ry);
        EXPECT_EQ(place.object.rotZ, place.rz);
        EXPECT_EQ(const_cast<RenderObject&>(place.object).scalefactor,
                  GLVector3(place.sx, place.sy, place.sz));
    }
    const struct {
        const QModel& model;
        int end;
        float fps;
    } sways[] = {{s.coral_a_model, 9, 5},  {s.coral_b_model, 19, 5}, {s.coral_c_model, 19, 5},
                 {s.coral_d_model, 19, 5}, {s.coral_f_model, 9, 3},  {s.coral_g_model, 9, 3},
                 {s.coral_h_model, 9, 3},  {s.coral_i_model, 9, 3}};
    for (const auto& sway : sways) {
        ASSERT_EQ(sway.model.m_anim.size(), 1u);
        EXPECT_EQ(sway.model.m_anim[0].name, "wabbel");
        EXPECT_EQ(sway.model.m_anim[0].start, 0);
        EXPECT_EQ(sway.model.m_anim[0].end, sway.end);
        EXPECT_EQ(sway.model.fps, sway.fps);
    }
}

TEST_F(AssemblyTest, CleanupReleasesEveryGLObjectButTheFontAndMayBeRepeated) {
    test::clear();
    make();
    build();
    tick(10);
    scene().cleanup();
    // The texture of the font goes with the context.
    EXPECT_EQ(test::count("glDeleteTextures"), test::count("glGenTextures") - 1);
    EXPECT_GT(test::count("glGenTextures"), 120);
    EXPECT_EQ(scene().fish, nullptr);
    EXPECT_EQ(scene().fishmove, nullptr);
    EXPECT_EQ(scene().fishcrowd, nullptr);
    scene().cleanup();
    EXPECT_EQ(test::count("glDeleteTextures"), test::count("glGenTextures") - 1);
    // A last paint that the toolkit had already queued.
    tick(10);
}

}  // namespace
