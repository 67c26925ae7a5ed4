// Pictures that the X server enlarges, and what then stands on its screen.
#include <GL/gl.h>
#include <gtest/gtest.h>

#include <QGLFramebufferObject>
#include <QGLWidget>
#include <QTest>
#include <QX11Info>
#include <cstdlib>

#include "framework/KDEFrame.h"
#include "host/ScreenPainter.h"
#include "host/ServerScaling.h"
#include "host/virtual_display.h"

namespace {

using test::Client;
using test::PIXEL;

constexpr int WIDTH = 200, HEIGHT = 100;
constexpr PIXEL RED{255, 0, 0}, GREEN{0, 255, 0}, BLUE{0, 0, 255}, WHITE{255, 255, 255},
    BLACK{0, 0, 0};

void fillWith(PIXEL colour, int x, int y, int width, int height) {
    glEnable(GL_SCISSOR_TEST);
    glScissor(x, y, width, height);
    glClearColor(float(colour.red), float(colour.green), float(colour.blue), 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glClearColor(0, 0, 0, 1);
    glDisable(GL_SCISSOR_TEST);
}

/// Red and green above blue and white.
void fillWithQuarters(int width, int height) {
    fillWith(BLUE, 0, 0, width / 2, height / 2);
    fillWith(WHITE, width / 2, 0, width / 2, height / 2);
    fillWith(RED, 0, height / 2, width / 2, height / 2);
    fillWith(GREEN, width / 2, height / 2, width / 2, height / 2);
}

class Enlarging : public testing::Test {
protected:
    void SetUp() override {
        widget.setWindowFlag(Qt::BypassWindowManagerHint);
        widget.setAutoBufferSwap(false);
        widget.setGeometry(0, 0, WIDTH, HEIGHT);
        widget.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
        widget.makeCurrent();
        smaller.emplace(20, 10);
        ASSERT_TRUE(smaller->bind());
        fillWithQuarters(20, 10);
        scaling.emplace(QX11Info::connection(), std::uint32_t(widget.winId()));
    }
    void TearDown() override { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); }
    PIXEL at(int x, int y) {
        scaling->begin();  // the server is done with what was sent
        return client.pixel(x, y);
    }

    struct Widget : QGLWidget {
        using QGLWidget::setAutoBufferSwap;
    };
    Client client{std::getenv("DISPLAY")};
    Widget widget;
    std::optional<QGLFramebufferObject> smaller;
    std::optional<ServerScaling> scaling;
};

TEST_F(Enlarging, APictureFillsItsArea) {
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(20, 10, {0, 0, WIDTH, HEIGHT}));
    EXPECT_EQ(at(0, 0), RED);
    EXPECT_EQ(at(90, 42), RED);
    EXPECT_EQ(at(110, 0), GREEN);
    EXPECT_EQ(at(199, 42), GREEN);
    EXPECT_EQ(at(0, 55), BLUE);
    EXPECT_EQ(at(90, 99), BLUE);
    EXPECT_EQ(at(110, 55), WHITE);
    EXPECT_EQ(at(199, 99), WHITE);
}

TEST_F(Enlarging, BetweenPixelsItIsSmooth) {
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(20, 10, {0, 0, WIDTH, HEIGHT}));
    int last = 256;
    for (int x = 95; x < 105; ++x) {
        const PIXEL pixel = at(x, 20);
        EXPECT_LT(pixel.red, last) << x;
        EXPECT_NEAR(pixel.red + pixel.green, 255, 3);
        last = pixel.red;
    }
}

TEST_F(Enlarging, OnlyTheAreaWithoutItsOmittedRowsChanges) {
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(20, 10, {0, 0, WIDTH, HEIGHT}));
    fillWith(BLACK, 0, 0, 20, 10);
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(20, 10, {120, 10, 40, 80}, 15));
    EXPECT_EQ(at(140, 24), GREEN);
    EXPECT_EQ(at(140, 25), BLACK);
    EXPECT_EQ(at(120, 89), BLACK);
    EXPECT_EQ(at(159, 40), BLACK);
    EXPECT_EQ(at(119, 40), GREEN);
    EXPECT_EQ(at(160, 40), GREEN);
    EXPECT_EQ(at(140, 90), WHITE);
}

TEST_F(Enlarging, OmittedRowsAreThoseOfTheEnlargedPicture) {
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(20, 10, {0, 0, WIDTH, HEIGHT}, 60));
    EXPECT_EQ(at(20, 40), BLACK);
    EXPECT_EQ(at(20, 60), BLUE);
    EXPECT_EQ(at(199, 99), WHITE);
}

TEST_F(Enlarging, AFrameCanShowMorePicturesEachLargerThanTheLast) {
    ASSERT_TRUE(scaling->begin());
    ASSERT_TRUE(scaling->show(4, 4, {0, 0, 50, HEIGHT}));  // blue alone
    ASSERT_TRUE(scaling->show(20, 10, {50, 0, 50, HEIGHT}));
    QGLFramebufferObject larger(90, 80);
    ASSERT_TRUE(larger.bind());
    fillWith(WHITE, 0, 0, 90, 80);
    ASSERT_TRUE(scaling->show(90, 80, {110, 0, 90, 80}));
    EXPECT_EQ(at(25, 50), BLUE);
    EXPECT_EQ(at(60, 20), RED);
    EXPECT_EQ(at(90, 80), WHITE);
    EXPECT_EQ(at(105, 50), BLACK);
    EXPECT_EQ(at(110, 0), WHITE);
    EXPECT_EQ(at(199, 79), WHITE);
    EXPECT_EQ(at(150, 80), BLACK);
}

TEST_F(Enlarging, AWindowThatHasGoneIsNoError) {
    ASSERT_TRUE(scaling->begin());
    client.destroy(xcb_window_t(widget.winId()));
    ASSERT_FALSE(client.exists(xcb_window_t(widget.winId())));
    for (int i = 0; i < 3; ++i)
        if (scaling->begin())
            scaling->show(20, 10 - i, {0, 0, WIDTH, HEIGHT});
    ServerScaling late(QX11Info::connection(), std::uint32_t(widget.winId()));
    EXPECT_FALSE(late.begin());
}

/// Whether pictures can be shown in a window of a server with these options.
bool canShow(const std::vector<std::string>& options, int depth = 0) {
    const test::VirtualDisplay display(options);
    if (display.name().empty()) {
        ADD_FAILURE() << "no X server";
        return false;
    }
    Client client(display.name());
    return ServerScaling(client.connection(), client.window(0, 0, 30, 20, depth)).begin();
}

TEST(Servers, OnlyThoseThatCanShowPictures) {
    EXPECT_TRUE(canShow({"-screen", "0", "80x60x24"}));
    EXPECT_FALSE(canShow({"-screen", "0", "80x60x24", "-extension", "RENDER"}));
    EXPECT_FALSE(canShow({"-screen", "0", "80x60x24", "-extension", "MIT-SHM"}));
    EXPECT_FALSE(canShow({"-screen", "0", "80x60x16"}));
    EXPECT_FALSE(canShow({"-screen", "0", "80x60x24"}, 32)) << "has an alpha of its own";
}

TEST(Servers, AConnectionThatIsLostShowsNothing) {
    test::VirtualDisplay display({"-screen", "0", "80x60x24"});
    Client client(display.name());
    ServerScaling scaling(client.connection(), client.window(0, 0, 30, 20));
    ASSERT_TRUE(scaling.begin());
    display.kill();
    EXPECT_FALSE(scaling.begin());
}

/// White above black, as a scene.
class Halves : public KDEFrame {
public:
    bool initGL() override {
        glViewport(0, 0, resolution_x, resolution_y);
        return true;
    }
    bool initScene() override { return true; }
    void updateScene() override {}
    void renderScene() override {
        GLint area[4];
        glGetIntegerv(GL_VIEWPORT, area);
        drawn_height = area[3];
        fillWith(BLUE, area[0], area[1], area[2], area[3] / 2);
        fillWith(GREEN, area[0], area[1] + area[3] / 2, area[2], area[3] - area[3] / 2);
    }
    bool releaseGL() override { return true; }
    bool cleanup() override { return true; }
    bool resetEvents() override { return true; }

    int drawn_height = 0;

protected:
    void timerEvent(QTimerEvent*) override {}
};

class Painting : public testing::TestWithParam<double> {
protected:
    void SetUp() override {
        frame.setGeometry(0, 0, WIDTH, HEIGHT);
        frame.setWindowFlag(Qt::BypassWindowManagerHint);
        frame.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
    }
    SCENE_PICTURE picture() {
        return {[&] { frame.renderScene(); },
                [&] {
                    if (text == 0)
                        return;
                    // One column of two.
                    glBegin(GL_LINES);
                    glColor3f(1, 0, 0);
                    for (int x = 0; x < WIDTH; x += 2) {
                        const float across = 2 * (float(x) + 0.5f) / WIDTH - 1;
                        glVertex2f(across, 1);
                        glVertex2f(across, 1 - 2 * float(text) / HEIGHT);
                    }
                    glEnd();
                },
                [&] { return text; },
                [] { return false; },
                [&](int width, int height) {
                    frame.resolution_x = width;
                    frame.resolution_y = height;
                    frame.initGL();
                },
                [] {}};
    }
    test::PICTURE shown() {
        // The server has done what was asked of it before this is answered.
        std::free(xcb_get_input_focus_reply(QX11Info::connection(),
                                            xcb_get_input_focus(QX11Info::connection()), nullptr));
        return client.picture(0, 0, WIDTH, HEIGHT);
    }

    Client client{std::getenv("DISPLAY")};
    Halves frame;
    int text = 0;
};

TEST_P(Painting, ShowsSceneAndTextInTheWholeWindow) {
    const ScreenPainter painter(frame, picture(), GetParam(), 0);
    for (const int rows : {0, 12, 0}) {
        text = rows;
        frame.updateGL();
        EXPECT_EQ(frame.drawn_height, HEIGHT * GetParam());
        EXPECT_EQ(frame.autoBufferSwap(), GetParam() == 1) << "else the server shows it";
        const test::PICTURE all = shown();
        for (int x = 0; x < WIDTH; ++x) {
            ASSERT_EQ(all.at(x, 0), rows && x % 2 == 0 ? RED : GREEN) << x;
            ASSERT_EQ(all.at(x, 10), rows && x % 2 == 0 ? RED : GREEN) << x;
            ASSERT_EQ(all.at(x, 12), GREEN) << x;
            ASSERT_EQ(all.at(x, 45), GREEN) << x;
            ASSERT_EQ(all.at(x, 55), BLUE) << x;
            ASSERT_EQ(all.at(x, HEIGHT - 1), BLUE) << x;
        }
    }
}

TEST_P(Painting, ShowsSceneAndTextOnEachMonitor) {
    const AREA tall{0, 0, 60, HEIGHT}, wide{60, 20, 140, 40};
    client.setMonitors({tall, wide});
    const ScreenPainter painter(frame, picture(), GetParam(), 0);
    for (const int rows : {0, 12}) {
        text = rows;
        frame.updateGL();
        const test::PICTURE all = shown();
        for (const AREA& area : {tall, wide}) {
            EXPECT_EQ(all.at(area.x + 1, area.y) == GREEN, rows == 0);
            for (const int x : {area.x + 1, area.x + area.width - 2}) {
                EXPECT_EQ(all.at(x, area.y + 13), GREEN);
                EXPECT_EQ(all.at(x, area.y + area.height / 2 - 4), GREEN);
                EXPECT_EQ(all.at(x, area.y + area.height / 2 + 4), BLUE);
                EXPECT_EQ(all.at(x, area.y + area.height - 1), BLUE);
            }
        }
        EXPECT_EQ(all.at(130, 10), BLACK);
        EXPECT_EQ(all.at(130, 80), BLACK);
    }
    client.setMonitors({{0, 0, 800, 600}});
}

INSTANTIATE_TEST_SUITE_P(Fractions, Painting, testing::Values(1.0, 0.5, 0.4));

}  // namespace
