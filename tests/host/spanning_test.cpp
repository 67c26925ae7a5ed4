// A window over two monitors, drawn by Mesa on an X server that has them.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <QGLFramebufferObject>
#include <QTest>
#include <cstdlib>
#include <utility>
#include <vector>

#include "Marivista.h"
#include "host/Arguments.h"
#include "host/KDEScreensaverFrame.h"
#include "host/ScreenPainter.h"
#include "host/virtual_display.h"
#include "main.h"
#include "support/clock.h"

namespace {

constexpr int WIDTH = 800, HEIGHT = 600;  // of the screen and the window
const AREA TALL{0, 0, 300, 600}, WIDE{300, 100, 500, 200};

/// The share of pixels in which two drawings of the same may differ: edges lie on other fractions
/// of a pixel.
constexpr double SAME = 0.002;

/// RGBA, row by row from the lowest on.
using Pixels = std::vector<unsigned char>;

/// What the current frame buffer has in a part of it, counted from its upper edge.
Pixels read(const AREA& area, int height) {
    Pixels pixels(std::size_t(4) * std::size_t(area.width) * std::size_t(area.height));
    glReadPixels(area.x, height - area.y - area.height, area.width, area.height, GL_RGBA,
                 GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

/// The share of pixels that are seen to differ.
double difference(const Pixels& one, const Pixels& other) {
    std::size_t different = 0;
    for (std::size_t i = 0; i < one.size(); i += 4)
        for (std::size_t channel = i; channel < i + 3; ++channel)
            if (std::abs(one[channel] - other[channel]) > 3) {
                ++different;
                break;
            }
    return 4.0 * double(different) / double(one.size());
}

/// The scene, ticked by the test alone.
class Scene : public CMarivistaScreensaver {
public:
    void updateScene() override {
        ++ticks;
        CMarivistaScreensaver::updateScene();
    }
    /// Ticks and draws; what then stands in the window.
    Pixels frame() {
        window.assign(std::size_t(4) * WIDTH * HEIGHT, 0);
        reading = true;
        updateGL();
        reading = false;
        return std::move(window);
    }
    /// The scene as it is now, drawn for a window of this size alone.
    Pixels alone(int width, int height) {
        QGLFramebufferObject buffer(width, height, QGLFramebufferObject::Depth);
        buffer.bind();
        setViewSize(width, height);
        renderScene();
        const Pixels pixels = read({0, 0, width, height}, height);
        buffer.release();
        setViewSize(WIDTH, HEIGHT);
        return pixels;
    }
    static Pixels part(const Pixels& of, const AREA& area) {
        Pixels pixels;
        for (int y = HEIGHT - area.y - area.height; y < HEIGHT - area.y; ++y) {
            const auto row = of.begin() + 4 * (std::ptrdiff_t(y) * WIDTH + area.x);
            pixels.insert(pixels.end(), row, row + 4 * std::ptrdiff_t(area.width));
        }
        return pixels;
    }

    int ticks = 0;

protected:
    void timerEvent(QTimerEvent*) override {}
    void paintGL() override {
        if (!reading)
            return;
        CMarivistaScreensaver::paintGL();
        window = read({0, 0, WIDTH, HEIGHT}, HEIGHT);
    }

private:
    bool reading = false;
    Pixels window;
};

TEST(SpanningWindow, ShowsTheSceneOnceOnEachMonitorInItsProportions) {
    test::Client client(std::getenv("DISPLAY"));
    test::setTicks(1000);
    Scene scene;
    scene.readSettings();
    scene.extras.proportions = 1;
    KDEScreensaverFrame saver(client.window(0, 0, WIDTH, HEIGHT));
    saver.init(&scene);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return scene.initdone && scene.testAttribute(Qt::WA_Mapped); }, 60000));
    scene.makeCurrent();
    std::vector<AREA> viewports;
    SCENE_PICTURE picture = pictureOf(saver);
    const auto draw = picture.draw;
    picture.draw = [&] {
        GLint area[4];
        glGetIntegerv(GL_VIEWPORT, area);
        viewports.push_back({area[0], HEIGHT - area[1] - area[3], area[2], area[3]});
        draw();
    };

    {
        const ScreenPainter painter(scene, picture, 1, 0);
        test::advanceTicks(40);
        const Pixels one = scene.frame();
        EXPECT_EQ(viewports, (std::vector<AREA>{{0, 0, WIDTH, HEIGHT}})) << "one monitor";
        EXPECT_LT(difference(one, scene.alone(WIDTH, HEIGHT)), SAME);
    }

    client.setMonitors({TALL, WIDE});
    const ScreenPainter painter(scene, picture, 1, 0);
    for (int i = 0; i < 3; ++i) {
        test::advanceTicks(1000);
        viewports.clear();
        scene.ticks = 0;
        const Pixels both = scene.frame();
        EXPECT_EQ(scene.ticks, 1);
        EXPECT_EQ(viewports, (std::vector<AREA>{TALL, WIDE}));
        for (const AREA& area : {TALL, WIDE}) {
            const Pixels shown = Scene::part(both, area);
            EXPECT_LT(difference(shown, scene.alone(area.width, area.height)), SAME);
            scene.extras.proportions = 0;
            EXPECT_EQ(difference(shown, scene.alone(area.width, area.height)) > 0.1,
                      area.width > area.height)
                << "stretched";
            scene.extras.proportions = 1;
        }
        const Pixels nowhere = Scene::part(both, {300, 300, 500, 300});
        EXPECT_EQ(difference(nowhere, Pixels(nowhere.size(), 0)), 0) << "no monitor shows this";
    }
    scene.makeCurrent();
    scene.cleanup();
}

}  // namespace
