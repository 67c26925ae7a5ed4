// How a picture of the scene is drawn, seen from GL.

#include <gmock/gmock.h>

#include <cmath>
#include <map>

#include "scene_fixture.h"

namespace {

using testing::ElementsAreArray;

class DrawingTest : public SceneTest {
protected:
    /// Names of the things drawn since test::clear(), by the picture each of them carries; a
    /// number of the same in a row as "name xN".
    std::vector<std::string> order() {
        CMarivistaScreensaver& s = scene();
        std::map<GLuint, std::string> names;
        const struct {
            Texture& texture;
            const char* name;
        } known[] = {{s.tex_gull, "gull"},
                     {s.tex_sky, "sky"},
                     {s.tex_terrain, "terrain"},
                     {s.tex_rock2, "rock2"},
                     {s.tex_gwfader, "gwfader"},
                     {s.tex_fish_yellow, "school"},
                     {s.tex_fish_swp, "hunter"},
                     {s.tex_coral_a, "coral_a"},
                     {s.tex_coral_b, "coral_b"},
                     {s.tex_coral_c, "coral_c"},
                     {s.tex_coral_d, "coral_d"},
                     {s.tex_coral_f, "coral_f"},
                     {s.tex_coral_g, "coral_g"},
                     {s.tex_coral_h, "coral_h"},
                     {s.tex_coral_i, "coral_i"},
                     {s.tex_fish_moorishidol, "reef"},
                     {s.tex_fish_red, "reef"},
                     {s.tex_fish_blue, "reef"},
                     {s.tex_fish_gsb, "reef"},
                     {s.tex_fish_ybig, "big"},
                     {s.tex_fish_rbig, "big"},
                     {s.tex_island, "island"},
                     {s.tex_manta, "manta"},
                     {s.tex_water, "water"},
                     {s.tex_highlight_blend, "highlight"}};
        for (const auto& one : known)
            names[one.texture.getID()] = one.name;
        std::vector<std::string> result;
        int repeat = 0;
        std::string last;
        const auto flush = [&] {
            if (repeat)
                result.push_back(repeat == 1 ? last : last + " x" + std::to_string(repeat));
        };
        for (const Draw& draw : draws()) {
            const auto found = names.find(draw.texture[0]);
            const std::string name = (found == names.end() ? "text" : found->second) +
                                     std::string(draw.fog ? " in fog" : "");
            if (name == last) {
                ++repeat;
                continue;
            }
            flush();
            last = name;
            repeat = 1;
        }
        flush();
        return result;
    }

    Draw find(const Texture& texture) {
        for (const Draw& draw : draws())
            if (draw.texture[0] == texture.id)
                return draw;
        ADD_FAILURE() << "not drawn";
        return {};
    }
};

TEST_F(DrawingTest, TheWorldIsDrawnInItsOrder) {
    make();
    build();
    test::advanceTicks(10);
    scene().updateScene();
    test::clear();
    scene().renderScene();
    const char* const expected[] = {
        "gull",
        "sky",
        "terrain in fog",
        "rock2",
        "gwfader",
        "school in fog x10",
        "hunter in fog",
        "coral_h in fog",
        "coral_i in fog",
        "coral_g in fog",
        "coral_f in fog",
        "coral_a in fog",
        "reef in fog x6",
        "big in fog",
        "coral_c in fog",
        "coral_d in fog x2",
        "coral_b in fog x3",
        "island",
        "manta",
        "water",
        "highlight",
    };
    EXPECT_THAT(order(), ElementsAreArray(expected));
    EXPECT_EQ(test::imbalance(), "");
    EXPECT_FALSE(test::isEnabled(GL_FOG));
    EXPECT_TRUE(test::isEnabled(GL_DEPTH_TEST));
    EXPECT_FALSE(test::isEnabled(GL_BLEND));
}

TEST_F(DrawingTest, TheFrameRateLineLiesOnTop) {
    make();
    noFish();
    settings().bird_gull = false;
    scene().fpsOn = true;
    build();
    update(1500);
    test::clear();
    scene().renderScene();
    EXPECT_EQ(order().back(), "text");
}

TEST_F(DrawingTest, AClearSkyIsOneRectangle) {
    make();
    noFish();
    settings().skytype = 1;
    build();
    update(10);
    test::clear();
    scene().renderScene();
    const Draw sky = find(scene().tex_sky);
    EXPECT_EQ(sky.primitive, static_cast<GLenum>(GL_QUADS));
    EXPECT_FLOAT_EQ(test::vertices()[static_cast<size_t>(sky.first)].x, 70.0f);
    EXPECT_FLOAT_EQ(test::vertices()[static_cast<size_t>(sky.first)].y, 50.0f);
}

TEST_F(DrawingTest, CausticsRunByTheClock) {
    make();
    settings().camerapos = 3;
    build();
    for (const Uint32 now : {2000u, 2049u, 2050u, 3599u, 3600u, 0xFFFFFFFFu}) {
        test::setTicks(now);
        scene().updateScene();
        test::clear();
        scene().renderScene();
        const size_t frame = now / 50 % 32;
        EXPECT_EQ(find(scene().tex_terrain).texture[1], scene().tex_caustics[frame].id) << now;
        for (Texture* fish : {&scene().tex_fish_yellow, &scene().tex_fish_swp,
                              &scene().tex_fish_red, &scene().tex_fish_moorishidol})
            EXPECT_EQ(find(*fish).texture[1], scene().tex_caustics_fish[frame].id) << now;
        EXPECT_EQ(find(scene().tex_highlight_blend).texture[1], scene().tex_highlight[frame].id);
    }
}

TEST_F(DrawingTest, LayersRepeatAsOftenAsTheyShould) {
    make();
    build();
    update(10);
    test::clear();
    scene().renderScene();
    // The second unit's coordinate of a vertex for its first unit's: scale times it, plus drift.
    const struct {
        Texture& picture;
        float scale;
        float drift;
    } layers[] = {{scene().tex_terrain, 5.0f, scene().watertexmotion},
                  {scene().tex_fish_yellow, 0.4f, scene().watertexmotion},
                  {scene().tex_fish_swp, 0.4f, scene().watertexmotion},
                  {scene().tex_fish_red, 0.4f, scene().watertexmotion},
                  {scene().tex_highlight_blend, 12.0f, 0.0f}};
    for (const auto& layer : layers) {
        const Draw draw = find(layer.picture);
        for (size_t i = 0; i < 4; ++i) {
            const test::GL_VERTEX& v = test::vertices()[static_cast<size_t>(draw.first) + i];
            EXPECT_NEAR(v.u[1], v.u[0] * layer.scale + layer.drift, 1e-4f);
            EXPECT_NEAR(v.v[1], v.v[0] * layer.scale, 1e-4f);
        }
    }
    const size_t big = scene().bigfishmove.actmodel == &scene().yellowbigfish ? 0 : 1;
    const Draw draw = find(big == 0 ? scene().tex_fish_ybig : scene().tex_fish_rbig);
    const test::GL_VERTEX& v = test::vertices()[static_cast<size_t>(draw.first)];
    EXPECT_NEAR(v.u[1], v.u[0] * 0.8f + scene().watertexmotion, 1e-4f);
    EXPECT_EQ(scene().tex_coral_h.tilefactor_x, 3.0f);
    EXPECT_EQ(scene().tex_coral_h.tilefactor_y, 3.0f);
}

TEST_F(DrawingTest, TheSparkleHoldsStillInTheTickInWhichATravelStarts) {
    make();
    noFish();
    build();
    GLuint before = 0;
    for (Uint32 now = 0; now < 12000; now += 50) {
        tick(50);
        const GLuint sparkle = scene().highlight.textures[1]->id;
        if (scene().camerascrolling) {
            EXPECT_EQ(sparkle, before);
            tick(50);
            EXPECT_NE(scene().highlight.textures[1]->id, before);
            return;
        }
        EXPECT_NE(sparkle, before);
        before = sparkle;
    }
    FAIL() << "the camera never started";
}

TEST_F(DrawingTest, TheAspectIsCapped) {
    const struct {
        int width, height;
        double aspect;
    } sizes[] = {{1280, 720, 1.35},       {1280, 948, 1.35},   {1351, 1000, 1.35},
                 {1350, 1000, 1.35},      {1349, 1000, 1.349}, {800, 600, 800.0 / 600},
                 {151, 115, 151.0 / 115}, {400, 800, 0.5}};
    for (const auto& size : sizes) {
        make();
        scene().resolution_x = size.width;
        scene().resolution_y = size.height;
        test::clear();
        scene().initGL();
        const auto perspective = test::callsOf("gluPerspective");
        ASSERT_EQ(perspective.size(), 1u);
        EXPECT_EQ(perspective[0].args[0], 45.0);
        EXPECT_NEAR(perspective[0].args[1], size.aspect, 1e-6);
        EXPECT_NEAR(perspective[0].args[2], 0.1, 1e-9);
        EXPECT_EQ(perspective[0].args[3], 1000.0);
        const auto viewport = test::callsOf("glViewport");
        ASSERT_EQ(viewport.size(), 1u);
        EXPECT_EQ(viewport[0].args,
                  (std::vector<double>{0, 0, double(size.width), double(size.height)}));
    }
}

TEST_F(DrawingTest, PicturesThatKeepTheirProportionsAreSetUpAnewEveryTime) {
    make();
    noFish();
    build();
    const auto picture = [this](int width, int proportions) {
        scene().extras.proportions = proportions;
        scene().setViewSize(width, 720);
        test::clear();
        tick(0);
        return test::calls();
    };
    const std::vector<test::GL_CALL> stretched = picture(1280, 0);
    EXPECT_FALSE(test::wasCalled("glMatrixMode"));
    const std::vector<test::GL_CALL> cropped = picture(1280, 1);
    ASSERT_EQ(test::callsOf("glMatrixMode").size(), 2u);
    EXPECT_EQ(test::callsOf("glMatrixMode")[1].args[0], GL_MODELVIEW);
    // Beside the projection only a wider view is another picture.
    EXPECT_EQ(cropped.size(), stretched.size() + 4);
    EXPECT_GT(picture(1680, 1).size(), stretched.size() * 3 / 2);
    // As wide as the design allows, and narrower, it is the design's.
    for (const int width : {972, 960, 405})
        EXPECT_TRUE(picture(width, 1) == picture(width, 0)) << width;
}

TEST_F(DrawingTest, SlantsAreSharpenedWhereGlCan) {
    make();
    noFish();
    build();
    const auto sharpened = [this] {
        test::clear();
        scene().sharpenSlants();
        return test::callsOf("glTexParameterf");
    };
    EXPECT_TRUE(sharpened().empty());
    test::setAnswer(GL_EXTENSIONS, "GL_ARB_multitexture GL_EXT_texture_filter_anisotropic GL_x");
    for (const int most : {16, 4}) {
        test::setAnswer(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, most);
        const std::vector<test::GL_CALL> calls = sharpened();
        ASSERT_EQ(calls.size(), 35u);  // floor, water, sky, 32 caustics
        for (const test::GL_CALL& call : calls) {
            EXPECT_EQ(call.args[1], GL_TEXTURE_MAX_ANISOTROPY_EXT);
            EXPECT_EQ(call.args[2], std::min(most, 8));
        }
    }
    test::setAnswer(GL_EXTENSIONS, "");
}

TEST_F(DrawingTest, FogIsSetUpAndLeftOff) {
    make();
    test::clear();
    scene().initGL();
    const auto colour = test::callsOf("glFogfv");
    ASSERT_EQ(colour.size(), 1u);
    EXPECT_EQ(colour[0].args,
              (std::vector<double>{GL_FOG_COLOR, 0.12109375, 0.58984375, 0.70703125, 1.0}));
    EXPECT_TRUE(test::wasCalled({"glFogi", {GL_FOG_MODE, GL_LINEAR}}));
    EXPECT_TRUE(test::wasCalled({"glFogf", {GL_FOG_START, 25}}));
    EXPECT_TRUE(test::wasCalled({"glFogf", {GL_FOG_END, 50}}));
    EXPECT_FALSE(test::isEnabled(GL_FOG));
    EXPECT_TRUE(test::isEnabled(GL_DEPTH_TEST));
}

TEST_F(DrawingTest, WithoutMoreUnitsTheFirstLayersAreDrawn) {
    // The probe runs once in a process, and has succeeded if another test came first.
    make();
    build();
    for (RenderObject* object : {static_cast<RenderObject*>(&scene().terrain),
                                 static_cast<RenderObject*>(&scene().highlight)})
        object->multiTexturing = false;
    update(10);
    test::clear();
    scene().renderScene();
    EXPECT_EQ(test::imbalance(), "");
}

}  // namespace
