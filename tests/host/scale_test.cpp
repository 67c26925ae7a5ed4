// Drawing at a fraction of the resolution: which one, decided on a clock set by hand, and what of
// it arrives in the window, drawn by Mesa.

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>

#include "host/AdaptiveScale.h"
#include "host/ScaledDrawing.h"
#include "offscreen.h"

namespace {

/// A renderer whose frames take `fixed` and, at full resolution, `fill` milliseconds more.
struct Renderer {
    double fixed, fill;
    AdaptiveScale scale{};
    double now = 1000;
    int changes = 0;
    int noise = 0;  ///< times differ by up to so many percent

    double frameTime() const { return fixed + fill * scale.fraction() * scale.fraction(); }
    void run(double milliseconds, bool travelling = false) {
        for (const double end = now + milliseconds; now < end;) {
            const double off = noise ? std::rand() % (2 * noise + 1) - noise : 0;
            const double took = frameTime() * (1 + off / 100);
            now += took > 1000.0 / 30 ? took : 1000.0 / 30;
            const double before = scale.fraction();
            scale.drawn(now, took, travelling);
            changes += scale.fraction() != before;
        }
    }
};

TEST(AdaptiveScale, WhatIsFastEnoughIsDrawnWhole) {
    Renderer hardware{1, 2};
    hardware.run(60000, true);
    EXPECT_EQ(hardware.scale.fraction(), 1);
    Renderer just{5, 26};
    just.run(60000, true);
    EXPECT_EQ(just.scale.fraction(), 1);
}

TEST(AdaptiveScale, FiveSecondsFindWhatReachesTheGoal) {
    for (const double fill : {30.0, 45.0, 65.0, 100.0, 140.0}) {
        Renderer slow{8, fill};
        slow.run(6000);
        EXPECT_LT(slow.scale.fraction(), 1);
        EXPECT_LT(slow.frameTime(), 1000 / 25.0) << fill;
        // Not smaller than it has to be.
        EXPECT_GT(slow.frameTime(), 13) << fill;
    }
    Renderer hopeless{200, 2000};
    hopeless.run(8000);
    EXPECT_EQ(hopeless.scale.fraction(), 0.4);
    EXPECT_LE(hopeless.changes, 2);
}

TEST(AdaptiveScale, OnceFoundItStaysInSpiteOfNoise) {
    for (double fill = 20; fill < 200; fill += 7) {
        Renderer renderer{8, fill};
        renderer.noise = 15;
        renderer.run(6000);
        renderer.changes = 0;
        renderer.run(600000, true);
        renderer.run(600000, false);
        EXPECT_LE(renderer.changes, 1) << fill;
    }
}

TEST(AdaptiveScale, AtRestItChangesAfterTenSecondsOfNeed) {
    Renderer renderer{5, 20};
    renderer.run(30000);
    ASSERT_EQ(renderer.scale.fraction(), 1);
    renderer.fill = 60;
    renderer.run(9500);
    EXPECT_EQ(renderer.scale.fraction(), 1);
    renderer.run(3000);
    EXPECT_LT(renderer.scale.fraction(), 1);
    // A burst of other work is over before that.
    Renderer disturbed{5, 20};
    disturbed.run(30000);
    for (int i = 0; i < 5; ++i) {
        disturbed.fill = 90;
        disturbed.run(7000);
        disturbed.fill = 20;
        disturbed.run(3000);
    }
    EXPECT_EQ(disturbed.changes, 0);
}

TEST(AdaptiveScale, OnTheCamerasWayItChangesAtOnceInBothDirections) {
    Renderer renderer{5, 20};
    renderer.run(30000);
    renderer.fill = 60;
    renderer.run(2500, true);
    const double smaller = renderer.scale.fraction();
    EXPECT_LT(smaller, 1);
    renderer.fill = 15;
    renderer.run(2500, true);
    EXPECT_GT(renderer.scale.fraction(), smaller);
    renderer.run(10000, true);
    EXPECT_EQ(renderer.scale.fraction(), 1);
}

constexpr int SIZE = 64;

/// Left half green, right half blue.
void paint() {
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glEnable(GL_DEPTH_TEST);
    glColor3f(0, 0, 1);
    glRectf(0, -1, 1, 1);
}

class ScaledDrawingTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(context.ok());
        glViewport(0, 0, SIZE, SIZE);
        glClearColor(1, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    void TearDown() override { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); }
    /// Viewport that the picture finds.
    std::array<GLint, 4> drawWith(ScaledDrawing& drawing, double fraction) {
        std::array<GLint, 4> found{};
        drawing.draw(fraction, [&] {
            glGetIntegerv(GL_VIEWPORT, found.data());
            paint();
        });
        return found;
    }
    /// 'r', 'g' or 'b' at a place from the left and upper edge.
    char colourAt(int x, int y) const {
        const Picture picture = context.read();
        const uint8_t* const rgb = &picture.rgb[3 * (size_t(y) * SIZE + size_t(x))];
        for (int i = 0; i < 3; ++i)
            if (rgb[i] > 250)
                return "rgb"[i];
        return '?';
    }

    OffscreenContext context{SIZE, SIZE};
};

TEST_F(ScaledDrawingTest, TheWholeIsDrawnDirectly) {
    ScaledDrawing drawing;
    EXPECT_EQ(drawWith(drawing, 1), (std::array<GLint, 4>{0, 0, SIZE, SIZE}));
    EXPECT_EQ(colourAt(31, 5), 'g');
    EXPECT_EQ(colourAt(32, 60), 'b');
}

TEST_F(ScaledDrawingTest, ASmallerPictureFillsTheSamePlace) {
    ScaledDrawing drawing;
    for (const double fraction : {0.85, 0.5, 0.4}) {
        SetUp();
        const auto found = drawWith(drawing, fraction);
        EXPECT_EQ(found[2], std::lround(SIZE * fraction));
        for (const int y : {0, 30, 63}) {
            EXPECT_EQ(colourAt(0, y), 'g');
            EXPECT_EQ(colourAt(28, y), 'g');
            EXPECT_EQ(colourAt(36, y), 'b');
            EXPECT_EQ(colourAt(63, y), 'b');
        }
    }
    drawing.release();
}

TEST_F(ScaledDrawingTest, OnlyTheViewportIsDrawnAndStays) {
    ScaledDrawing drawing;
    glViewport(16, 8, 32, 24);
    EXPECT_EQ(drawWith(drawing, 0.5), (std::array<GLint, 4>{0, 0, 16, 12}));
    GLint area[4], target = -1;
    glGetIntegerv(GL_VIEWPORT, area);
    EXPECT_EQ(area[0], 16);
    EXPECT_EQ(area[3], 24);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
    EXPECT_EQ(target, 0);
    EXPECT_EQ(colourAt(15, 45), 'r');
    EXPECT_EQ(colourAt(16, 45), 'g');
    EXPECT_EQ(colourAt(47, 45), 'b');
    EXPECT_EQ(colourAt(48, 45), 'r');
    EXPECT_EQ(colourAt(20, SIZE - 1 - 7), 'r');
    EXPECT_EQ(colourAt(20, SIZE - 1 - 8), 'g');
    EXPECT_EQ(colourAt(20, SIZE - 1 - 31), 'g');
    EXPECT_EQ(colourAt(20, SIZE - 1 - 32), 'r');
    drawing.release();
}

TEST_F(ScaledDrawingTest, WhoeverShowsTheSmallerPictureFindsItToRead) {
    for (const int samples : {0, 4}) {
        SetUp();
        ScaledDrawing drawing(samples);
        std::array<std::array<uint8_t, 3>, 2> found{};
        drawing.draw(0.5, paint, [&](int width, int height) {
            EXPECT_EQ(width, SIZE / 2);
            EXPECT_EQ(height, SIZE / 2);
            for (int i = 0; i < 2; ++i)
                glReadPixels(i * (width - 1), height / 2, 1, 1, GL_RGB, GL_UNSIGNED_BYTE,
                             found[size_t(i)].data());
            return true;
        });
        EXPECT_EQ(found[0], (std::array<uint8_t, 3>{0, 255, 0}));
        EXPECT_EQ(found[1], (std::array<uint8_t, 3>{0, 0, 255}));
        EXPECT_EQ(colourAt(2, 30), 'r') << "it is not enlarged as well";
        drawing.draw(0.5, paint, [](int, int) { return false; });
        EXPECT_EQ(colourAt(2, 30), 'g');
        drawing.release();
    }
}

TEST_F(ScaledDrawingTest, TheTopIsEnlargedBelowWhatIsDrawnOverIt) {
    ScaledDrawing drawing;
    drawing.draw(0.5, paint, [](int, int) { return true; });
    Picture top{SIZE, 6, std::vector<uint8_t>(3 * SIZE * 6)};
    drawing.drawTop(
        6,
        [] {
            // The third row of the viewport, from its left edge to the middle.
            glEnable(GL_SCISSOR_TEST);
            GLint area[4];
            glGetIntegerv(GL_VIEWPORT, area);
            EXPECT_EQ(area[2], SIZE);
            EXPECT_EQ(area[3], SIZE);
            glScissor(area[0], area[1] + SIZE - 3, SIZE / 2, 1);
            glClearColor(1, 1, 1, 1);
            glClear(GL_COLOR_BUFFER_BIT);
            glDisable(GL_SCISSOR_TEST);
        },
        [&] {
            glPixelStorei(GL_PACK_ALIGNMENT, 1);
            glReadPixels(0, 0, SIZE, 6, GL_RGB, GL_UNSIGNED_BYTE, top.rgb.data());
        });
    const auto pixel = [&](int x, int y) {
        const uint8_t* const rgb = &top.rgb[3 * (size_t(5 - y) * SIZE + size_t(x))];
        return std::array<int, 3>{rgb[0], rgb[1], rgb[2]};
    };
    EXPECT_EQ(pixel(2, 1), (std::array<int, 3>{0, 255, 0}));
    EXPECT_EQ(pixel(2, 2), (std::array<int, 3>{255, 255, 255}));
    EXPECT_EQ(pixel(31, 2), (std::array<int, 3>{255, 255, 255}));
    EXPECT_EQ(pixel(60, 2), (std::array<int, 3>{0, 0, 255}));
    EXPECT_EQ(pixel(2, 3), (std::array<int, 3>{0, 255, 0}));
    EXPECT_EQ(pixel(60, 5), (std::array<int, 3>{0, 0, 255}));
    EXPECT_EQ(colourAt(2, 2), 'r') << "the frame buffer bound before";
    GLint area[4];
    glGetIntegerv(GL_VIEWPORT, area);
    EXPECT_EQ(area[3], SIZE);
    drawing.release();
}

TEST_F(ScaledDrawingTest, SamplesAreMadeOne) {
    ScaledDrawing smooth(4), wishful(4096);
    for (ScaledDrawing* const drawing : {&smooth, &wishful})
        for (const double fraction : {1.0, 0.5}) {
            SetUp();
            drawWith(*drawing, fraction);
            EXPECT_EQ(colourAt(2, 30), 'g');
            EXPECT_EQ(colourAt(60, 30), 'b');
        }
    smooth.release();
    wishful.release();
}

TEST_F(ScaledDrawingTest, EnlargesWhateverIsSetAndLeavesItSet) {
    const GLenum steps[] = {GL_ALPHA_TEST, GL_BLEND,    GL_CULL_FACE,  GL_DEPTH_TEST,
                            GL_FOG,        GL_LIGHTING, GL_TEXTURE_2D, GL_STENCIL_TEST};
    ScaledDrawing drawing;
    GLuint texture = 0;
    glGenTextures(1, &texture);
    drawing.draw(0.5, [&] {
        paint();
        for (const GLenum step : steps)
            glEnable(step);
        glBlendFunc(GL_ZERO, GL_ONE);
        glAlphaFunc(GL_NEVER, 0);
        glDepthFunc(GL_NEVER);
        glCullFace(GL_FRONT_AND_BACK);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL);
        for (const GLenum matrix : {GL_PROJECTION, GL_TEXTURE, GL_MODELVIEW}) {
            glMatrixMode(matrix);
            glLoadIdentity();
            glTranslatef(5, 0, 0);
        }
    });
    EXPECT_EQ(colourAt(2, 2), 'g');
    EXPECT_EQ(colourAt(60, 60), 'b');
    for (const GLenum step : steps) {
        EXPECT_TRUE(glIsEnabled(step)) << step;
        glDisable(step);
    }
    GLint value = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &value);
    EXPECT_EQ(value, GLint(texture));
    glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &value);
    EXPECT_EQ(value, GL_DECAL);
    glGetIntegerv(GL_MATRIX_MODE, &value);
    EXPECT_EQ(value, GL_MODELVIEW);
    for (const GLenum matrix : {GL_PROJECTION_MATRIX, GL_TEXTURE_MATRIX, GL_MODELVIEW_MATRIX}) {
        GLfloat found[16];
        glGetFloatv(matrix, found);
        EXPECT_EQ(found[12], 5) << matrix;
    }
    drawing.release();
}

TEST_F(ScaledDrawingTest, WorksAgainAfterARelease) {
    ScaledDrawing drawing;
    drawWith(drawing, 0.5);
    drawing.release();
    drawing.release();
    SetUp();
    drawWith(drawing, 0.5);
    EXPECT_EQ(colourAt(2, 30), 'g');
    drawing.release();
}

}  // namespace
