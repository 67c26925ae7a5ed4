// What a host spares the renderer is never seen: every picture is the whole one, to the pixel.

#include "ShownRows.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "Marivista.h"
#include "offscreen.h"
#include "support/clock.h"
#include "system/RowClip.h"

namespace {

constexpr int LARGEST = 720;

class ShownRowsTest : public testing::Test {
protected:
    ShownRowsTest() : context(LARGEST, LARGEST) {}

    /// At an hour of the day, or without hours.
    void build(int skytype, bool proportions, int width, int height, double hour = 0) {
        test::setTicks(1000);
        scene = std::make_unique<CMarivistaScreensaver>();
        scene->loadSettings(width, height);
        scene->wantedwssettings.soundOn = false;
        scene->wantedwssettings.camerapos = 4;
        scene->wantedwssettings.skytype = skytype;
        scene->extras.proportions = proportions;
        scene->extras.daytime = hour > 0;
        scene->localTime = [hour] { return LOCAL_TIME{hour * 60, 0}; };
        scene->draw_in_rows = clip;
        scene->buildWorld();
    }
    ~ShownRowsTest() override {
        if (scene)
            scene->cleanup();
    }

    /// Draws the same moment with and without clipping; in how many channels they differ.
    size_t differences() {
        scene->draw_in_rows = clip;
        bands.clear();
        scene->renderScene();
        const Picture clipped = context.read();
        scene->draw_in_rows = nullptr;
        scene->renderScene();
        const Picture whole = context.read();
        size_t different = 0;
        for (size_t i = 0; i < whole.rgb.size(); ++i)
            different += whole.rgb[i] != clipped.rgb[i];
        return different;
    }
    /// The renderer cuts a mesh where its buffer ends, in every picture elsewhere, and rounds
    /// otherwise there: even the same picture drawn twice differs by a level in a pixel, once in
    /// some hundred. What clipping does wrong is wrong every time.
    void expectSamePictures(const std::string& what) {
        size_t different = differences();
        for (int again = 0; different > 0 && again < 2; ++again)
            different = differences();
        EXPECT_EQ(different, 0u) << what;
    }

    /// Several seconds of every view, and of those on the way between them.
    void expectSameTravel() {
        const float steps[] = {-25, -20, -16, -12, -8, -4, 0, 2.25f, 4.5f};
        for (int second = 0; second < 3; ++second)
            for (const float pitch : steps) {
                test::advanceTicks(333);
                scene->updateScene();
                scene->camera.pitch(pitch);
                expectSamePictures(std::to_string(pitch) + " degrees");
                scene->camera.pitch(-pitch);
                ASSERT_FALSE(HasFailure());
            }
    }

    OffscreenContext context;
    std::unique_ptr<CMarivistaScreensaver> scene;
    std::vector<ROWS> bands;  ///< that were asked for
    const std::function<void(double, double, const std::function<void()>&)> clip =
        [this](double low, double high, const std::function<void()>& draw) {
            bands.push_back({low, high});
            drawInRows(low, high, draw);
        };
};

TEST_F(ShownRowsTest, PicturesAreTheSameInAllViews) {
    ASSERT_TRUE(context.ok());
    build(0, false, 720, 405);
    expectSameTravel();
    // Of every picture something is spared: the last rows are the sparkle's, the others the sky's.
    scene->camera.pitch(4.5f);
    expectSamePictures("below");
    double sky = 0;
    for (size_t i = 0; i + 1 < bands.size(); ++i)
        sky += bands[i].high - bands[i].low;
    EXPECT_LT(sky, 0.2);
    EXPECT_GT(sky, 0.1);
    EXPECT_NEAR(bands.back().high - bands.back().low, 0.16, 0.02);
}

TEST_F(ShownRowsTest, PicturesAreTheSameWithTheFlatSky) {
    build(1, false, 540, 400);
    expectSameTravel();
}

TEST_F(ShownRowsTest, PicturesAreTheSameInSmallWindows) {
    for (const int height : {33, 100, 163}) {
        build(1, false, 4 * height / 3, height);
        expectSameTravel();
        scene->cleanup();
    }
}

TEST_F(ShownRowsTest, PicturesAreTheSameWithTrueProportions) {
    build(0, true, 720, 405);
    expectSameTravel();
    scene->setViewSize(720, 309);
    expectSameTravel();
    scene->setViewSize(405, 720);
    expectSameTravel();
}

TEST_F(ShownRowsTest, PicturesAreTheSameAtAllHours) {
    for (const double hour : {7.1, 12.0, 16.7, 17.0, 17.25, 18.0, 19.7, 23.0}) {
        build(hour<17, hour> 16.9, 360, hour < 20 ? 203 : 155, hour);
        expectSameTravel();
        EXPECT_FALSE(bands.empty());
        scene->cleanup();
    }
}

TEST_F(ShownRowsTest, PicturesAreTheSameForAnEyeThatLooksAside) {
    build(1, false, 720, 405);
    scene->camera.yaw(30);
    expectSamePictures("30 degrees to the side");
    scene->camera.yaw(150);
    expectSamePictures("backwards");
}

TEST_F(ShownRowsTest, ASceneOfWhichNobodyAsksItDrawsItsSkyInNoRows) {
    build(0, false, 720, 405);
    scene->draw_in_rows = nullptr;
    scene->tick();
    EXPECT_TRUE(bands.empty());
}

void fill(float red) {
    glClearColor(red, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

TEST_F(ShownRowsTest, RowsAreThoseOfTheViewportWithinTheScissorThatIsSet) {
    fill(0);
    glViewport(100, 200, 300, 100);
    glScissor(150, 210, 50, 500);
    glEnable(GL_SCISSOR_TEST);
    drawInRows(0.205, 0.5, [] { fill(1); });
    GLint box[4];
    glGetIntegerv(GL_SCISSOR_BOX, box);
    EXPECT_TRUE(glIsEnabled(GL_SCISSOR_TEST));
    EXPECT_EQ(std::vector<GLint>(box, box + 4), (std::vector<GLint>{150, 210, 50, 500}));
    glDisable(GL_SCISSOR_TEST);
    const Picture picture = context.read();
    for (int y = 0; y < LARGEST; ++y)
        for (int x = 0; x < LARGEST; ++x) {
            const int row = LARGEST - 1 - y;
            const bool inside = x >= 150 && x < 200 && row >= 220 && row < 250;
            ASSERT_EQ(picture.rgb[3 * size_t(y * LARGEST + x)], inside ? 255 : 0) << x << " " << y;
        }
    drawInRows(0.5, 0.7, [] {});
    EXPECT_FALSE(glIsEnabled(GL_SCISSOR_TEST));
}

TEST(ShownRows, APictureThatCannotBeReadHasNone) {
    EXPECT_TRUE(shownRows("/nowhere").empty());
    EXPECT_TRUE(opaqueRows("/nowhere").empty());
}

}  // namespace
