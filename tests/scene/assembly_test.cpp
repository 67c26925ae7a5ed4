// What the scene is made of for given settings.

#include <gmock/gmock.h>

#include <cmath>
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

void expectAnimation(const QModel& model, const char* name, int start, int end, float fps,
                     size_t count = 1) {
    ASSERT_EQ(model.m_anim.size(), count) << name;
    const SAnimation& animation = model.m_anim.back();
    EXPECT_EQ(animation.name, name);
    EXPECT_EQ(animation.start, start);
    EXPECT_EQ(animation.end, end);
    EXPECT_EQ(model.fps, fps) << name;
}

/// A fish in two layers: its picture and the first of the caustics.
void expectFish(const ModelCore& fish, const QModel& model, const Texture& picture,
                const Texture& caustics, float size, float caustics_scale) {
    EXPECT_EQ(fish.model, &model);
    EXPECT_EQ(fish.scalefactor.x, size);
    EXPECT_EQ(fish.scalefactor.y, size);
    EXPECT_EQ(fish.scalefactor.z, size);
    EXPECT_THAT(fish.textures, ElementsAre(&picture, &caustics));
    EXPECT_THAT(fish.texturescales, ElementsAre(1.0f, caustics_scale));
    EXPECT_TRUE(fish.isAlphaBlending);
    EXPECT_FALSE(fish.flags & WORLD_POSITIONING);
}

TEST_F(AssemblyTest, TheFlyersAreMadeAsTheyShould) {
    make();
    build();
    const CMarivistaScreensaver& s = scene();
    EXPECT_EQ(s.gull.model, &s.gull_model);
    EXPECT_EQ(s.gull.scalefactor.x, 0.05f);
    EXPECT_EQ(s.gull.getPosition(), GLVector3(0, 5.5f, 0));
    EXPECT_FALSE(s.gull.flags & WORLD_POSITIONING);
    EXPECT_FALSE(s.gull.isAlphaBlending);
    EXPECT_THAT(s.gull.textures, ElementsAre(&s.tex_gull));
    expectAnimation(s.gull_model, "fly", 23, 42, 20, 2);
    EXPECT_EQ(s.gull_model.m_anim[0].name, "glide");
    EXPECT_EQ(s.gull_model.m_anim[0].start, 0);
    EXPECT_EQ(s.gull_model.m_anim[0].end, 19);
    EXPECT_EQ(s.gull_model.curAni, 1);
    EXPECT_EQ(s.gulltrack.renderobject, &s.gull);
    EXPECT_EQ(s.gulltrack.startindex, 0);
    EXPECT_EQ(s.gulltrack.speed, 0.005f);
    EXPECT_EQ(s.gulltrack.smoothroll_step, 0.6f);
    EXPECT_EQ(s.gulltrack.rollfactor, 10.0f);
    EXPECT_EQ(s.gulltrack.movestyle, MOVE_SPLINE);

    EXPECT_EQ(s.manta.scalefactor.x, 0.07f);
    EXPECT_EQ(s.manta.getPosition(), GLVector3(-17, -5, 4));
    EXPECT_THAT(s.manta.textures, ElementsAre(&s.tex_manta));
    expectAnimation(s.manta_model, "swim", 0, 19, 6);
    EXPECT_EQ(s.mantatrack.renderobject, &s.manta);
    EXPECT_EQ(s.mantatrack.startindex, 0);
    EXPECT_EQ(s.mantatrack.smoothroll_step, 2.0f);
    EXPECT_EQ(s.mantatrack.movestyle, MOVE_SPLINE);
}

TEST_F(AssemblyTest, TheSingleFishAreMadeAsTheyShould) {
    make();
    build();
    const CMarivistaScreensaver& s = scene();
    const Texture& caustics = s.tex_caustics_fish[0];

    expectFish(s.vegetarian1, s.crowd_model, s.tex_fish_yellow, caustics, 0.02f, 0.4f);
    GLVector3 p = s.vegetarian1.getPositionVector();
    EXPECT_EQ(p.y, -3.5f);
    EXPECT_TRUE(p.x >= -4 && p.x <= 3 && p.z >= 3 && p.z <= 17);
    EXPECT_EQ(s.vegetarian1.getViewVector(), p + GLVector3(1, 0, 1));
    EXPECT_EQ(s.vmove1.model, &s.vegetarian1);
    EXPECT_EQ(s.vmove1.settings.height, -3.5f);
    EXPECT_FALSE(s.vmove1.settings.hunter);

    expectFish(s.hunter1, s.hunter1_model, s.tex_fish_swp, caustics, 0.02f, 0.4f);
    expectAnimation(s.hunter1_model, "swim", 20, 39, 12);
    p = s.hunter1.getPositionVector();
    EXPECT_EQ(p.y, -4.2f);
    EXPECT_TRUE(p.x >= -4 && p.x <= -1 && p.z >= 3 && p.z <= 17);
    EXPECT_EQ(s.hunter1.getViewVector(), p - GLVector3(1, 0, 0));
    EXPECT_EQ(s.huntmove1.model, &s.hunter1);
    EXPECT_EQ(s.huntmove1.fishboid, &s.fishsteering);
    const SingleMovementSettings& hunt = s.huntmove1.settings;
    EXPECT_EQ(hunt.height, -4.2f);
    EXPECT_EQ(hunt.normal_max_speed, 0.0009f);
    EXPECT_EQ(hunt.speed_animation_factor, 30000);
    EXPECT_EQ(hunt.area_center, GLVector2(-4, 5.5f));
    EXPECT_TRUE(hunt.variablespeed);
    EXPECT_FALSE(hunt.turn_animation);
    EXPECT_EQ(s.huntmove1.act_speed, 0.0009f);

    EXPECT_THAT(s.bigfishmove.points,
                ElementsAre(GLVector3(24, -6, 32), GLVector3(10, -6, 27), GLVector3(4, -6, 20),
                            GLVector3(0, -6, 14), GLVector3(-2, -6, 9), GLVector3(-11, -6, 1)));
    EXPECT_EQ(s.bigfishmove.track.speed, 0.0006f);
    EXPECT_NE(s.bigfishmove.actmodel, nullptr);
    const struct {
        const ModelCore& fish;
        const QModel& model;
        const Texture& picture;
        float scale, fps;
    } big_fish[] = {{s.yellowbigfish, s.yellowbigfish_model, s.tex_fish_ybig, 0.05f, 8},
                    {s.redbigfish, s.redbigfish_model, s.tex_fish_rbig, 0.07f, 5}};
    for (const auto& big : big_fish) {
        EXPECT_EQ(big.fish.model, &big.model);
        EXPECT_EQ(big.fish.scalefactor.x, big.scale);
        EXPECT_THAT(big.fish.textures, ElementsAre(&big.picture, &caustics));
        EXPECT_THAT(big.fish.texturescales, ElementsAre(1.0f, 0.8f));
        EXPECT_TRUE(big.fish.isAlphaBlending);
        expectAnimation(big.model, "swim", 0, 19, big.fps);
    }
}

TEST_F(AssemblyTest, ReefFishAndSchoolAreMadeAsTheyShould) {
    make();
    build();
    const CMarivistaScreensaver& s = scene();
    const Texture& caustics = s.tex_caustics_fish[0];
    const struct {
        const QModel& model;
        const Texture& picture;
        float scale;
        int end;
    } species[] = {{s.fish_stripe_model, s.tex_fish_moorishidol, 0.02f, 19},
                   {s.fish_red_model, s.tex_fish_red, 0.02f, 9},
                   {s.fish_blue_model, s.tex_fish_blue, 0.018f, 9},
                   {s.fish_yell_blu_model, s.tex_fish_gsb, 0.02f, 19}};
    ASSERT_EQ(s.numFish, 6);
    for (int i = 0; i < 6; ++i) {
        const auto& kind = species[i % 4];
        expectFish(s.fish[i], kind.model, kind.picture, caustics, kind.scale, 0.4f);
        const SingleMovementSettings& reef = s.fishmove[i].settings;
        EXPECT_EQ(reef.top_left, GLVector2(-15, 25));
        EXPECT_EQ(reef.top_right, GLVector2(14, 25));
        EXPECT_EQ(reef.bottom_left, GLVector2(-6, 2));
        EXPECT_EQ(reef.bottom_right, GLVector2(5, 2));
        EXPECT_EQ(reef.area_center, GLVector2(-1, 8));
        EXPECT_FALSE(reef.hunter);
        EXPECT_EQ(s.fishmove[i].model, &s.fish[i]);
        EXPECT_EQ(s.fishmove[i].areapolygon[2], GLVector2(5, 2));
    }
    for (const auto& kind : species)
        expectAnimation(kind.model, "swim", 0, kind.end, kind.model.fps);

    ASSERT_EQ(s.fishsteering.fishcrowd.size(), 10u);
    EXPECT_EQ(s.fishsteering.targetpoint, s.vegetarian1.getPositionVector());
    for (int i = 0; i < 10; ++i) {
        expectFish(s.fishcrowd[i], s.crowd_model, s.tex_fish_yellow, caustics, 0.015f, 0.4f);
        EXPECT_EQ(s.fishsteering.fishcrowd[static_cast<size_t>(i)].obj, &s.fishcrowd[i]);
        EXPECT_EQ(s.fishcrowd[i].getPositionVector().y, s.fishsteering.targetpoint.y);
    }
    expectAnimation(s.crowd_model, "swim", 0, 9, 44);
}

TEST_F(AssemblyTest, SkyFloorWaterAndQuadsAreMadeAsTheyShould) {
    make();
    build();
    const CMarivistaScreensaver& s = scene();
    EXPECT_EQ(s.sky.skymode, SKY_PLANE);
    EXPECT_EQ(s.sky.rotationspeed, -0.75f);
    EXPECT_THAT(s.sky.textures, ElementsAre(&s.tex_sky));
    EXPECT_THAT(s.skyflat.textures, ElementsAre(&s.tex_sky));

    EXPECT_EQ(s.terrain.worldsize_x, 60);
    EXPECT_EQ(s.terrain.worldsize_y, 50);
    EXPECT_EQ(s.terrain.heightfactor, 0.015f);
    EXPECT_EQ(s.terrain.numSegments_x, 50);
    EXPECT_EQ(s.terrain.numSegments_y, 50);
    EXPECT_NE(s.terrain.mapdata, nullptr);
    EXPECT_THAT(s.terrain.textures, ElementsAre(&s.tex_terrain, &s.tex_caustics[0]));
    EXPECT_THAT(s.terrain.texturescales, ElementsAre(1.0f, 5.0f));
    EXPECT_FALSE(s.terrain.isAlphaBlending);

    EXPECT_EQ(s.water.numSqares_x, 50);
    EXPECT_EQ(s.water.numSqares_y, 50);
    EXPECT_EQ(s.water.points_x[0].points_y[0].pos, GLVector3(-25, -25, 0));
    EXPECT_THAT(s.water.textures, ElementsAre(&s.tex_water));
    EXPECT_TRUE(s.water.isAlphaBlending);

    EXPECT_THAT(s.highlight.textures, ElementsAre(&s.tex_highlight_blend, &s.tex_highlight[0]));
    EXPECT_THAT(s.highlight.texturescales, ElementsAre(1.0f, 12.0f));
    const struct {
        const TexturedQuad& quad;
        float width, height;
        const Texture& picture;
        bool blended;
    } quads[] = {{s.island, 30, 30, s.tex_island, true},
                 {s.rock2, 10, 12, s.tex_rock2, true},
                 {s.highlight, 50, 40, s.tex_highlight_blend, true},
                 {s.gwfader, 60, 14, s.tex_gwfader, true},
                 {s.skyflat, 140, 100, s.tex_sky, false}};
    for (const auto& quad : quads) {
        EXPECT_EQ(quad.quad.size_x, quad.width);
        EXPECT_EQ(quad.quad.size_y, quad.height);
        EXPECT_EQ(quad.quad.textures[0], &quad.picture);
        EXPECT_EQ(quad.quad.isAlphaBlending, quad.blended);
    }

    const struct {
        const ModelCore& coral;
        const QModel& model;
        const Texture& picture;
    } corals[] = {{s.coral_a, s.coral_a_model, s.tex_coral_a},
                  {s.coral_b[0], s.coral_b_model, s.tex_coral_b},
                  {s.coral_b[1], s.coral_b_model, s.tex_coral_b},
                  {s.coral_b[2], s.coral_b_model, s.tex_coral_b},
                  {s.coral_c, s.coral_c_model, s.tex_coral_c},
                  {s.coral_d[0], s.coral_d_model, s.tex_coral_d},
                  {s.coral_d[1], s.coral_d_model, s.tex_coral_d},
                  {s.coral_f, s.coral_f_model, s.tex_coral_f},
                  {s.coral_g, s.coral_g_model, s.tex_coral_g},
                  {s.coral_h, s.coral_h_model, s.tex_coral_h},
                  {s.coral_i, s.coral_i_model, s.tex_coral_i}};
    for (const auto& coral : corals) {
        EXPECT_EQ(coral.coral.model, &coral.model);
        EXPECT_THAT(coral.coral.textures, ElementsAre(&coral.picture));
        EXPECT_THAT(coral.coral.texturescales,
                    ElementsAre(&coral.coral == &s.coral_h ? 3.0f : 1.0f));
        EXPECT_TRUE(coral.coral.isAlphaBlending);
    }
}

TEST_F(AssemblyTest, ChanceIsAskedInTheOrderOfTheThingsMade) {
    make();
    std::vector<int> chance;
    for (int i = 0; i < 93; ++i)
        chance.push_back(i * 3701 + 11);
    test::setRandom(chance);
    build();
    EXPECT_EQ(test::randomLeft(), 0u);
    test::seedRandom(1);

    CMarivistaScreensaver& s = scene();
    const auto range = [&](size_t i, float min, float max) {
        return min + static_cast<float>(chance[i] % std::lround((max - min) * 100)) / 100;
    };
    EXPECT_NEAR(s.gulltrack.waypoints[7].point.z, range(8, 5, 35), 1e-4);
    EXPECT_NEAR(s.gulltrack.waypoints[4].point.y, range(15, 2.5f, 4.5f), 1e-4);
    EXPECT_NEAR(s.vegetarian1.getPositionVector().x, range(16, -4, 3), 1e-4);
    EXPECT_NEAR(s.vegetarian1.getPositionVector().z, range(17, 3, 17), 1e-4);
    EXPECT_EQ(s.vmove1.speedtimer.act_intervall, chance[18] % 1000 + 3000);
    EXPECT_NEAR(s.mantatrack.waypoints[0].point.z, range(19, 30, 40), 1e-4);
    EXPECT_NEAR(s.mantatrack.waypoints[0].point.y, -range(20, 2, 4), 1e-4);
    EXPECT_NEAR(s.mantatrack.waypoints[6].point.y, -range(42, 2, 4), 1e-4);
    EXPECT_NEAR(s.hunter1.getPositionVector().x, range(43, -4, -1), 1e-4);
    EXPECT_NEAR(s.hunter1.getPositionVector().z, range(44, 3, 17), 1e-4);
    EXPECT_EQ(s.huntmove1.speedtimer.act_intervall, chance[45] % 1000 + 3000);
    EXPECT_EQ(s.bigfishmove.reverseorder, chance[46] % 2 == 1);
    EXPECT_EQ(s.bigfishmove.actmodel, s.bigfishmove.models[static_cast<size_t>(chance[47] % 2)]);
    for (size_t i = 0; i < 6; ++i) {
        // One value for the timer of every mover made, before the first fish is placed.
        const GLVector3 p = s.fish[i].getPositionVector();
        EXPECT_NEAR(p.x, range(54 + 3 * i, -5.5f, 6), 1e-4);
        EXPECT_NEAR(p.z, range(55 + 3 * i, 3, 21), 1e-4);
        EXPECT_EQ(s.fishmove[i].speedtimer.act_intervall, chance[56 + 3 * i] % 1000 + 3000);
    }
    for (size_t i = 0; i < 10; ++i) {
        const GLVector3 p = s.fishcrowd[i].getPositionVector() - s.fishsteering.targetpoint;
        EXPECT_NEAR(p.z, static_cast<float>(chance[72 + 2 * i] % 10) * 0.3f, 1e-4);
        EXPECT_NEAR(p.x, static_cast<float>(chance[73 + 2 * i] % 10) * 0.3f - 2, 1e-4);
    }
    EXPECT_EQ(s.soundtimer.act_intervall, chance[92] % 10000 + 20000);
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
