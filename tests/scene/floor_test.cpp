// The sea floor is one piece and nothing behind the world shows, drawn by Mesa before a red
// nothing. ATOLLIA_FLOOR_FRAMES says how many frames of each view are looked at.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "Marivista.h"
#include "offscreen.h"
#include "support/clock.h"

namespace {

constexpr int WIDTH = 640, HEIGHT = 474;

class FloorTest : public testing::Test {
protected:
    FloorTest() : context(WIDTH, HEIGHT) {
        test::setTicks(1000);
        scene = std::make_unique<CMarivistaScreensaver>();
        scene->loadSettings(WIDTH, HEIGHT);
        scene->wantedwssettings.soundOn = false;
        scene->wantedwssettings.camerapos = 4;
        scene->buildWorld();
        glClearColor(1, 0, 0, 1);
    }
    ~FloorTest() override { scene->cleanup(); }

    /// Has `look` see frames of every view, and of those on the way between them.
    template <class LOOK>
    void forAllFrames(LOOK look) {
        const char* const wanted = std::getenv("ATOLLIA_FLOOR_FRAMES");
        const int frames = wanted ? std::atoi(wanted) : 10;
        ASSERT_GT(frames, 0);
        for (const float pitch : {-25.0f, -16.0f, -8.0f, 0.0f, 4.5f}) {
            scene->camera.pitch(pitch);
            for (int i = 0; i < frames; ++i) {
                test::advanceTicks(33);
                scene->updateScene();
                look(pitch);
                ASSERT_FALSE(HasFailure()) << "frame " << i << " of " << pitch << " degrees";
            }
            scene->camera.pitch(-pitch);
        }
    }
    bool isRed(int x, int y) const {
        const uint8_t* const pixel = &picture.rgb[3 * (size_t(y) * WIDTH + size_t(x))];
        return pixel[0] == 255 && pixel[1] == 0 && pixel[2] == 0;
    }
    void expectNoRedInside() {
        for (int x = 0; x < WIDTH; ++x) {
            int first = 0, last = HEIGHT - 1;
            while (first < HEIGHT && isRed(x, first))
                ++first;
            while (last >= 0 && isRed(x, last))
                --last;
            for (int y = first + 1; y < last; ++y)
                EXPECT_FALSE(isRed(x, y)) << "at " << x << ", " << y;
        }
    }

    OffscreenContext context;
    std::unique_ptr<CMarivistaScreensaver> scene;
    Picture picture;
};

TEST_F(FloorTest, NothingShowsBetweenItsColumns) {
    ASSERT_TRUE(context.ok());
    forAllFrames([this](float) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glLoadIdentity();
        scene->camera.setViewMatrix();
        scene->terrain.render();
        picture = context.read();
        expectNoRedInside();
    });
}

TEST_F(FloorTest, NothingBehindTheWorldShows) {
    ASSERT_TRUE(context.ok());
    int shape = 0;
    forAllFrames([this, &shape](float) {
        const int width = WIDTH, height = shape++ % 2 ? WIDTH * 9 / 21 : HEIGHT;
        scene->extras.proportions = height != HEIGHT;
        scene->setViewSize(width, height);
        glClearColor(1, 0, 0, 1);
        scene->renderScene();
        picture = context.read();
        for (int y = HEIGHT - height; y < HEIGHT; ++y)
            for (int x = 0; x < width; ++x)
                EXPECT_FALSE(isRed(x, y)) << "at " << x << ", " << y;
    });
}

}  // namespace
