// The hours of the day in the scene: what is drawn and with which colours, and who is about.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "scene_fixture.h"

namespace {

class HoursTest : public SceneTest {
protected:
    /// A scene whose clock stands at an hour.
    CMarivistaScreensaver& makeAt(double hour) {
        CMarivistaScreensaver& scene = make();
        scene.extras.daytime = 1;
        setHour(hour);
        scene.localTime = [this] { return LOCAL_TIME{minute, 0}; };
        return scene;
    }
    void setHour(double hour) { minute = hour * 60; }
    /// The colours that things with this picture are drawn in.
    std::vector<std::array<float, 4>> colours(GLuint texture) {
        std::vector<std::array<float, 4>> result;
        for (const test::GL_VERTEX& vertex : test::vertices())
            if (vertex.texture[0] == texture && (result.empty() || result.back() != vertex.color))
                result.push_back(vertex.color);
        return result;
    }
    void picture() {
        update(10);
        test::clear();
        scene().renderScene();
    }

    double minute = 0;
};

std::vector<test::GL_CALL> callsOfAPicture(CMarivistaScreensaver& scene) {
    test::advanceTicks(10);
    scene.updateScene();
    test::clear();
    scene.renderScene();
    return test::calls();
}

TEST_F(HoursTest, NoonDrawsWhatIsDrawnWithoutHours) {
    make();
    build();
    std::vector<test::GL_CALL> without = callsOfAPicture(scene());
    std::vector<test::GL_VERTEX> vertices = test::vertices();
    const GLuint first = scene().tex_sky.id;

    test::setTicks(1000);
    makeAt(12);
    build();
    const std::vector<test::GL_CALL> with = callsOfAPicture(scene());
    const int shift = static_cast<int>(scene().tex_sky.id) - static_cast<int>(first);
    ASSERT_EQ(test::vertices().size(), vertices.size());
    for (size_t i = 0; i < vertices.size(); ++i) {
        ASSERT_EQ(test::vertices()[i].color, vertices[i].color) << i;
        ASSERT_EQ(test::vertices()[i].x, vertices[i].x) << i;
        ASSERT_EQ(test::vertices()[i].texture[0], vertices[i].texture[0] + shift) << i;
    }
    // The fog's colour is set anew in every picture, to the same one.
    ASSERT_EQ(with.size(), without.size() + 1);
    const int fog = test::indexOf("glFogfv");
    ASSERT_GE(fog, 0);
    EXPECT_EQ(with[static_cast<size_t>(fog)].args,
              (std::vector<double>{GL_FOG_COLOR, 0.12109375, 0.58984375, 0.70703125, 1.0}));
}

TEST_F(HoursTest, OffTheyLoadNothing) {
    make();
    build();
    EXPECT_FALSE(scene().hours.isOn());
    for (const test::GL_CALL& call : test::calls())
        EXPECT_EQ(call.text.find("hours"), std::string::npos);
}

TEST_F(HoursTest, NightColoursWhatIsThere) {
    makeAt(23);
    build();
    picture();
    const DAY_LIGHT night = lightAt(23);
    const auto is = [](TINT tint) { return std::array<float, 4>{tint.r, tint.g, tint.b, 1}; };
    EXPECT_THAT(colours(scene().tex_coral_a.id), testing::ElementsAre(is(night.under)));
    EXPECT_THAT(colours(scene().tex_terrain.id), testing::ElementsAre(is(night.under)));
    EXPECT_THAT(colours(scene().tex_fish_yellow.id), testing::ElementsAre(is(night.under)));
    EXPECT_THAT(colours(scene().tex_water.id), testing::ElementsAre(is(night.sea)));
    EXPECT_THAT(colours(scene().tex_sky.id), testing::IsEmpty()) << "hidden by the night's";
    EXPECT_THAT(colours(scene().tex_island.id), testing::IsEmpty());
    EXPECT_THAT(colours(scene().tex_highlight_blend.id), testing::IsEmpty()) << "the moon's path";
    EXPECT_THAT(colours(scene().tex_gull.id), testing::IsEmpty());
    EXPECT_EQ(test::imbalance(), "");
    EXPECT_FALSE(test::isEnabled(GL_BLEND));
    EXPECT_FALSE(test::isEnabled(GL_FOG));
}

TEST_F(HoursTest, AtDuskBothPicturesShow) {
    makeAt(16.5);
    build();
    picture();
    EXPECT_FALSE(colours(scene().tex_sky.id).empty());
    const auto island = colours(scene().tex_island.id);
    ASSERT_EQ(island.size(), 1u);
    EXPECT_EQ(island[0][3], 1) << "noon's picture lies whole under the evening's";
    EXPECT_EQ(scene().island.textures[0], &scene().tex_island) << "put back";
    EXPECT_EQ(scene().island.rendercolor.a, 1);
}

TEST_F(HoursTest, EveryHeightOfTheSkyIsDrawnOnceAndBlendedInANarrowBelt) {
    for (const double hour : {7.0, 16.9, 17.8, 19.7, 23.0}) {
        makeAt(hour);
        build();
        update(10);
        test::clear();
        scene().hours.renderSky(scene().camera.vEye);
        std::map<int, std::array<float, 2>> strips;  // from, to
        std::map<int, bool> shared;
        for (const test::GL_VERTEX& vertex : test::vertices()) {
            auto& strip = strips.try_emplace(vertex.begin, std::array{1e9f, -1e9f}).first->second;
            strip = {std::min(strip[0], vertex.y), std::max(strip[1], vertex.y)};
            shared[vertex.begin] |= vertex.color[3] < 1;
        }
        std::vector<std::array<float, 2>> sorted;
        float blended = 0;
        for (const auto& [begin, strip] : strips) {
            sorted.push_back(strip);
            blended += shared[begin] ? strip[1] - strip[0] : 0;
        }
        std::sort(sorted.begin(), sorted.end());
        for (size_t i = 1; i < sorted.size(); ++i)
            EXPECT_EQ(sorted[i][0], sorted[i - 1][1]) << hour;
        // In the belt noon's shows through the evening's; the night's has the evening's in it.
        const bool is_shared = hour == 7.0 || hour == 16.9;
        EXPECT_EQ(test::count("glBlendFunc"), is_shared ? 1 : 0) << hour;
        EXPECT_LT(blended, 20) << hour;
        EXPECT_GE(strips.size(), 2u) << hour;
        EXPECT_EQ(test::imbalance(), "") << hour;
        EXPECT_FALSE(test::isEnabled(GL_COLOR_SUM)) << hour;
        EXPECT_FALSE(test::isEnabled(GL_BLEND)) << hour;
    }
}

TEST_F(HoursTest, TwoPicturesOfTheIslandAreDrawnWithoutTheirEmptyRows) {
    makeAt(17);
    build();
    picture();
    std::array<float, 2> all{1e9f, -1e9f};
    int corners = 0;
    for (const test::GL_VERTEX& vertex : test::vertices())
        if (vertex.texture[0] == scene().tex_island.id) {
            all = {std::min(all[0], vertex.y), std::max(all[1], vertex.y)};
            ++corners;
        }
    EXPECT_EQ(corners, 4);
    EXPECT_LE(all[1] - all[0], 30);
    EXPECT_GT(all[1] - all[0], 1);
    EXPECT_EQ(scene().island.part_top, 0) << "put back";
    EXPECT_EQ(scene().island.part_bottom, 1);
}

TEST_F(HoursTest, GlintsOnThePathAreDrawnNoWiderThanIt) {
    makeAt(12);
    build();
    /// At the far edge and at the near one.
    const auto widths = [this] {
        picture();
        std::map<float, std::pair<float, float>> edges;
        const GLuint glints = scene().highlight.textures[0]->id;
        for (const test::GL_VERTEX& vertex : test::vertices())
            if (vertex.texture[0] == glints) {
                auto& edge = edges.try_emplace(vertex.y, vertex.x, vertex.x).first->second;
                edge = {std::min(edge.first, vertex.x), std::max(edge.second, vertex.x)};
            }
        std::vector<float> result;
        for (auto edge = edges.rbegin(); edge != edges.rend(); ++edge)
            result.push_back(edge->second.second - edge->second.first);
        return result;
    };
    EXPECT_THAT(widths(), testing::ElementsAre(50, 50));
    setHour(18);
    scene().skipUnseenTime();
    EXPECT_THAT(widths(), testing::ElementsAre(testing::Lt(12), testing::Lt(8)));
    setHour(12);
    scene().skipUnseenTime();
    EXPECT_THAT(widths(), testing::ElementsAre(50, 50));
}

TEST_F(HoursTest, AClockThatJumpsIsFollowedWithoutAJump) {
    makeAt(2);
    scene().extras.latitude = 60;
    scene().localTime = [this] { return LOCAL_TIME{minute, 171}; };
    setHour(2.9);
    build();
    update(10);
    const float before = scene().terrain.rendercolor.b;
    setHour(4);  // summer time begins
    update(20);
    const float at_once = scene().terrain.rendercolor.b;
    for (int i = 0; i < 60; ++i)
        update(20);
    const float later = scene().terrain.rendercolor.b;
    EXPECT_GT(later, before + 0.05f);
    EXPECT_LT(at_once, before + 0.3f * (later - before));
    EXPECT_NEAR(later, lightAt(sunHour(240, 60, 171)).under.b, 1e-3);
}

TEST_F(HoursTest, MidnightIsNoStep) {
    makeAt(23.999);
    build();
    update(10);
    const GLColor before = scene().terrain.rendercolor;
    setHour(0.001);
    update(20);
    EXPECT_EQ(scene().terrain.rendercolor.r, before.r);
    EXPECT_EQ(scene().hours.light().night, 1);
}

TEST_F(HoursTest, AfterTimeThatNobodySawTheHourIsRightAtOnce) {
    makeAt(12);
    build();
    update(10);
    setHour(22);
    scene().skipUnseenTime();
    update(10);
    EXPECT_EQ(scene().hours.light().night, 1);
    EXPECT_FALSE(scene().bird_gull);
}

TEST_F(HoursTest, TheGullGoesAndComesUnseen) {
    makeAt(12);
    build();
    const auto isAhead = [this] {
        const GLVector3 away = scene().gull.vPos - scene().camera.vEye;
        return away.z < 0 && std::fabs(away.x) < 0.5f * -away.z;
    };
    for (int i = 0; i < 60 * 50 && !isAhead(); ++i)
        update(20);
    ASSERT_TRUE(isAhead());
    setHour(23);
    update(20);
    EXPECT_TRUE(scene().bird_gull) << "it does not vanish before everybody's eyes";
    bool was_ahead = true;
    for (int i = 0; i < 120 * 50 && scene().bird_gull; ++i) {
        was_ahead = isAhead();
        update(20);
    }
    EXPECT_FALSE(scene().bird_gull);
    EXPECT_FALSE(was_ahead);
    setHour(10);
    for (int i = 0; i < 400; ++i)
        update(20);
    EXPECT_TRUE(scene().bird_gull);
}

TEST_F(HoursTest, WithoutAGullNoneComes) {
    makeAt(22);
    settings().bird_gull = false;
    build();
    update(10);
    setHour(12);
    scene().skipUnseenTime();
    update(10);
    EXPECT_FALSE(scene().bird_gull);
}

TEST_F(HoursTest, FishAreSlowerAtNightAndTheSchoolLower) {
    makeAt(12);
    build();
    update(10);
    const float speed = scene().vmove1.settings.normal_max_speed;
    const float height = scene().vmove1.settings.height;
    ASSERT_GT(scene().numFish, 0);
    const float reef_height = scene().fishmove[0].settings.height;
    setHour(23);
    scene().skipUnseenTime();
    update(10);
    EXPECT_LT(scene().vmove1.settings.normal_max_speed, 0.7f * speed);
    EXPECT_LT(scene().vmove1.settings.height, height - 0.5f);
    EXPECT_EQ(scene().fishmove[0].settings.height, reef_height);
    setHour(12);
    scene().skipUnseenTime();
    update(10);
    EXPECT_EQ(scene().vmove1.settings.normal_max_speed, speed);
    EXPECT_EQ(scene().vmove1.settings.height, height);
}

TEST_F(HoursTest, CausticsLoseTheirContrastOneFrameATick) {
    makeAt(12);
    build();
    update(10);
    test::clear();
    setHour(19);
    scene().skipUnseenTime();
    scene().updateScene();
    const int all = test::count("glTexSubImage2D");
    EXPECT_EQ(all, 64);
    setHour(19.2);
    test::clear();
    for (int i = 0; i < 5; ++i)
        update(20);
    EXPECT_LE(test::count("glTexSubImage2D"), 5);
}

TEST_F(HoursTest, TwoScenesHaveTwoClocks) {
    makeAt(12);
    build();
    CMarivistaScreensaver other;
    other.resolution_x = other.resolution_y = 200;
    other.wantedwssettings.soundOn = false;
    other.extras.daytime = 1;
    other.localTime = [] { return LOCAL_TIME{22 * 60, 0}; };
    other.buildWorld();
    update(10);
    other.updateScene();
    EXPECT_EQ(scene().hours.light().night, 0);
    EXPECT_EQ(other.hours.light().night, 1);
    other.cleanup();
}

}  // namespace
