// The hours of the day in the scene: what is drawn and with which colours, and who is about.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "Globals.h"
#include "scene_fixture.h"
#include "system/Bitmap.h"

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

/// The part of both that a second unit is told to show of its own picture.
std::array<double, 4> cover() {
    const std::vector<test::GL_CALL> calls = test::callsOf("glTexEnvfv");
    std::array<double, 4> result{};
    if (!calls.empty())
        std::copy(calls[0].args.begin() + 2, calls[0].args.end(), result.begin());
    return result;
}

TEST_F(HoursTest, AtDuskBothPicturesShow) {
    makeAt(16.75);
    build();
    picture();
    EXPECT_FALSE(colours(scene().tex_sky.id).empty());
    const auto island = colours(scene().tex_island.id);
    ASSERT_EQ(island.size(), 1u) << "in one pass";
    const DAY_LIGHT light = lightAt(16.75);
    ASSERT_NEAR(light.evening, 0.3125, 1e-4);
    EXPECT_EQ(island[0][3], 1);
    EXPECT_EQ(test::count("glTexEnvfv"), 2) << "island and rock";
    const auto second = cover();
    EXPECT_NEAR(second[3], light.evening, 1e-6);
    const float above[] = {light.above.r, light.above.g, light.above.b};
    const float glow[] = {light.glow.r, light.glow.g, light.glow.b};
    for (size_t c = 0; c < 3; ++c) {
        EXPECT_NEAR(second[c], light.evening * glow[c], 1e-6) << "the evening's share";
        EXPECT_NEAR(island[0][c] * (1 - second[c]), (1 - light.evening) * above[c], 1e-6)
            << "noon's";
        EXPECT_LE(island[0][c], 1);
    }
    EXPECT_EQ(scene().island.textures, std::vector<Texture*>{&scene().tex_island}) << "untouched";
    EXPECT_EQ(scene().island.rendercolor.a, 1);
}

TEST_F(HoursTest, OnePictureOfTheIslandNeedsNoSecondUnit) {
    for (const double hour : {12.0, 17.5, 23.0}) {
        makeAt(hour);
        build();
        picture();
        EXPECT_EQ(test::count("glTexEnvfv"), 0) << hour;
    }
}

TEST_F(HoursTest, WithoutMultitexturingTheIslandsPicturesAreDrawnOverEachOther) {
    const bool available = Texture::initMultiTexturing();
    multitexturing.available = false;
    makeAt(16.75);
    build();
    update(10);
    test::clear();
    scene().hours.renderScenery(scene().island);
    multitexturing.available = available;
    EXPECT_EQ(test::count("glTexEnvfv"), 0);
    std::map<int, std::pair<GLuint, float>> draws;
    for (const test::GL_VERTEX& vertex : test::vertices())
        draws[vertex.begin] = {vertex.texture[0], vertex.color[3]};
    ASSERT_EQ(draws.size(), 2u);
    const auto under = draws.begin()->second, over = std::next(draws.begin())->second;
    EXPECT_EQ(under.first, scene().tex_island.id);
    EXPECT_EQ(under.second, 1) << "noon's picture lies whole under the evening's";
    EXPECT_NE(over.first, scene().tex_island.id);
    EXPECT_NEAR(over.second, lightAt(16.75).evening, 1e-6);
}

TEST_F(HoursTest, OfThePicturesOfTheIslandOnlyTheHalfThatShowsIsLoaded) {
    makeAt(19.7);
    build();
    // Width and height of the last four uploads: island and rock, each in evening and night.
    std::vector<std::array<double, 2>> sizes;
    for (const test::GL_CALL& call : test::callsOf("glTexImage2D"))
        sizes.push_back({call.args[3], call.args[4]});
    ASSERT_GE(sizes.size(), 4u);
    sizes.erase(sizes.begin(), sizes.end() - 4);
    using Size = std::array<double, 2>;
    EXPECT_THAT(sizes, testing::ElementsAre(Size{1024, 512}, Size{512, 256}, Size{256, 512},
                                            Size{128, 256}))
        << "the rock is higher than half of its pictures";
    update(10);
    test::clear();
    scene().hours.renderScenery(scene().island);
    ASSERT_EQ(test::vertices().size(), 4u);
    for (const test::GL_VERTEX& vertex : test::vertices()) {
        EXPECT_NE(vertex.texture[0], 0u);
        EXPECT_NE(vertex.texture[1], 0u);
        EXPECT_NEAR(vertex.v[0], vertex.y > 0 ? 0 : 1, 0.005) << "all of the evening's half";
        EXPECT_NEAR(vertex.v[1], vertex.v[0], 0.005) << "and the same of the night's";
    }
}

TEST_F(HoursTest, NothingOfThePathIsOutsideOfThePieceThatIsDrawn) {
    makeAt(18);
    build();
    picture();
    SDL_Surface* const image = readBitmap(SDL_RWFromFile(dataFile("hours/path.nlt").c_str(), "rb"));
    ASSERT_TRUE(image);
    // At both ends of the piece: row, left and right side.
    std::map<float, std::pair<float, float>> ends;
    for (const test::GL_VERTEX& vertex : test::vertices())
        if (vertex.texture[0] == scene().highlight.textures[0]->id) {
            auto& end = ends.try_emplace(vertex.v[0], vertex.u[0], vertex.u[0]).first->second;
            end = {std::min(end.first, vertex.u[0]), std::max(end.second, vertex.u[0])};
        }
    ASSERT_EQ(ends.size(), 2u);
    const auto [top, upper] = *ends.begin();
    const auto [bottom, lower] = *ends.rbegin();
    EXPECT_EQ(top, 0);
    int shown = 0;
    for (int y = 0; y < image->h; ++y)
        for (int x = 0; x < image->w; ++x) {
            if (static_cast<unsigned char*>(image->pixels)[y * image->pitch + 4 * x + 3] == 0)
                continue;
            ++shown;
            // As far as a filtered texel reaches.
            const auto h = static_cast<float>(image->h), w = static_cast<float>(image->w);
            EXPECT_LE(static_cast<float>(y) + 1.5f, bottom * h) << x << ", " << y;
            for (const float row : {static_cast<float>(y) - 0.5f, static_cast<float>(y) + 1.5f}) {
                const float t = std::max(0.0f, row / h) / bottom;
                EXPECT_GE(static_cast<float>(x) - 0.5f,
                          (upper.first + t * (lower.first - upper.first)) * w)
                    << x << ", " << y;
                EXPECT_LE(static_cast<float>(x) + 1.5f,
                          (upper.second + t * (lower.second - upper.second)) * w)
                    << x << ", " << y;
            }
        }
    EXPECT_GT(shown, 1000);
    SDL_FreeSurface(image);
}

/// With the hours of the day and without.
class Volume : public HoursTest, public testing::WithParamInterface<int> {
protected:
    /// Goes on for so long; the loudness that the sounds have then.
    float after(int seconds) {
        for (int i = 0; i < 25 * seconds; ++i)
            update(40);
        return test::loudness.empty() ? 100 : test::loudness.back();
    }
};

TEST_P(Volume, IsThatOfTheSettings) {
    for (const int percent : {100, 40, 0}) {
        makeAt(12).extras.daytime = GetParam();
        settings().soundOn = true;
        scene().extras.volume = percent;
        test::loudness.clear();
        build();
        ASSERT_FALSE(test::loudness.empty());
        EXPECT_FLOAT_EQ(test::loudness.front(), static_cast<float>(percent)) << "from the start";
        EXPECT_FLOAT_EQ(after(5), static_cast<float>(percent));
    }
}

TEST_P(Volume, ComesAndGoesSoftlyWithTheQuietHours) {
    makeAt(21.99).extras.daytime = GetParam();
    settings().soundOn = true;
    scene().extras.volume = 60;
    scene().extras.quiet_from = 22;
    scene().extras.quiet_to = 7;
    test::loudness.clear();
    build();
    EXPECT_GT(after(5), 20);
    for (const double hour : {22.0, 2.0, 6.99}) {
        setHour(hour);
        EXPECT_EQ(after(5), 0) << hour;
    }
    float last = test::loudness.front();
    for (const float now : test::loudness) {
        EXPECT_LT(std::fabs(now - last), 2.5) << "a step that is heard";
        last = now;
    }
    setHour(7);
    EXPECT_GT(after(5), 20);
}

INSTANTIATE_TEST_SUITE_P(Hours, Volume, testing::Values(0, 1));

TEST_F(HoursTest, NightsAreQuieter) {
    makeAt(2);
    settings().soundOn = true;
    test::loudness.clear();
    build();
    EXPECT_LT(test::loudness.front(), 60);
    for (int i = 0; i < 125; ++i)
        update(40);
    EXPECT_LT(test::loudness.back(), 60);
}

TEST_F(HoursTest, EveryHeightOfTheSkyIsDrawnOnceAndBlendedInANarrowBelt) {
    for (const double hour : {7.0, 16.9, 17.8, 19.7, 23.0}) {
        makeAt(hour);
        build();
        update(10);
        test::clear();
        scene().hours.renderSky(scene().camera.vEye);
        EXPECT_EQ(test::count("glBlendFunc"), 0) << "what hides noon's comes before it";
        scene().hours.renderSkyOverNoon(scene().camera.vEye);
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
    EXPECT_LT(all[1] - all[0], 16);
    EXPECT_GT(all[1] - all[0], 1);
    EXPECT_EQ(scene().island.part_top, 0) << "untouched";
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
    EXPECT_THAT(widths(), testing::ElementsAre(testing::Lt(16), testing::Lt(5)));
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
