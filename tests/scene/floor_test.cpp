// The sea floor is one piece, and nothing behind the world shows: Mesa draws every frame before a
// red nothing and before a green one. ATOLLIA_FLOOR_FRAMES says how many frames of each view are
// looked at, ATOLLIA_FLOOR_SIZE ("1280x720") how large the largest are.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "Marivista.h"
#include "offscreen.h"
#include "support/clock.h"
#include "system/RowClip.h"

namespace {

struct SIZE {
    int width = 640, height = 474;
};

SIZE largest() {
    SIZE size;
    if (const char* const wanted = std::getenv("ATOLLIA_FLOOR_SIZE"))
        std::sscanf(wanted, "%dx%d", &size.width, &size.height);
    return size;
}

class FloorTest : public testing::Test {
protected:
    FloorTest() : WIDTH(largest().width), HEIGHT(largest().height), context(WIDTH, HEIGHT) {
        test::setTicks(1000);
        scene = std::make_unique<CMarivistaScreensaver>();
        scene->loadSettings(WIDTH, HEIGHT);
        scene->wantedwssettings.soundOn = false;
        scene->wantedwssettings.camerapos = 4;
        scene->draw_in_rows = drawInRows;
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
                test::advanceTicks(133);
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

    const int WIDTH, HEIGHT;
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
    const auto before = [this](float red, float green) {
        glClearColor(red, green, 0, 1);
        scene->renderScene();
        return context.read();
    };
    const std::vector<SIZE> shapes = {{WIDTH, HEIGHT},
                                      {WIDTH, WIDTH * 9 / 21},
                                      {WIDTH, WIDTH * 9 / 32},
                                      {HEIGHT * 9 / 16, HEIGHT}};
    std::size_t shape = 0;
    forAllFrames([&](float) {
        const SIZE size = shapes[shape++ % shapes.size()];
        scene->extras.proportions = size.height != HEIGHT;
        scene->setViewSize(size.width, size.height);
        const Picture red = before(1, 0), green = before(0, 1);
        // What is half transparent before nothing differs, too. Two drawings of the same may differ
        // by one step.
        int through = 0, last_x = 0, last_y = 0;
        for (int y = HEIGHT - size.height; y < HEIGHT; ++y)
            for (int x = 0; x < size.width; ++x) {
                const std::size_t at = 3 * (std::size_t(y) * std::size_t(WIDTH) + std::size_t(x));
                if (std::abs(red.rgb[at] - green.rgb[at]) <= 1 &&
                    std::abs(red.rgb[at + 1] - green.rgb[at + 1]) <= 1)
                    continue;
                ++through;
                last_x = x;
                last_y = y;
            }
        EXPECT_EQ(through, 0) << "pixels of " << size.width << " x " << size.height << ", one at "
                              << last_x << ", " << last_y;
    });
}

}  // namespace
