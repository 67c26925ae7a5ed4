// Pictures of every shape that keep their proportions: what they show, and that it is round.

#include "Proportions.h"

#include <GL/glu.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "Marivista.h"
#include "offscreen.h"

namespace {

const double EDGE = std::tan(VIEW_ANGLE / 2 * 3.14159265358979 / 180);
/// The level of the eye in the views from the top to the bottom one.
constexpr double HIGHEST = -0.194, LOWEST = 0.335;

template <class CHECK>
void forAllPictures(CHECK check) {
    for (double aspect = 0.5; aspect <= 3.6; aspect += 0.01)
        for (double horizon = HIGHEST; horizon <= LOWEST; horizon += 0.05)
            check(aspect, horizon, trueView(aspect, horizon));
}

TEST(Proportions, NothingIsStretched) {
    forAllPictures([](double aspect, double, const VIEW_WINDOW& view) {
        ASSERT_NEAR(view.width() / view.height(), aspect, 1e-9);
        ASSERT_EQ(view.left, -view.right);
    });
}

TEST(Proportions, TheHorizonStaysWhereItIsInTheDesignsPicture) {
    forAllPictures([](double aspect, double horizon, const VIEW_WINDOW& view) {
        const double designs = (EDGE - horizon) / (2 * EDGE);
        ASSERT_NEAR((view.top - horizon) / view.height(), designs, 1e-9) << aspect;
    });
}

TEST(Proportions, NothingAboveAndBelowTheDesignsPictureShows) {
    forAllPictures([](double aspect, double, const VIEW_WINDOW& view) {
        ASSERT_LE(view.top, EDGE + 1e-9) << aspect;
        ASSERT_GE(view.bottom, -EDGE - 1e-9) << aspect;
        if (aspect <= MAX_ASPECT) {
            ASSERT_NEAR(view.height(), 2 * EDGE, 1e-9);
        }
    });
}

TEST(Proportions, WideScreensLoseHeightUltraWideOnesGainWidth) {
    const double width = 2 * EDGE * MAX_ASPECT;
    for (const double aspect : {MAX_ASPECT, 1.5, 1.6, WIDER_FROM})
        EXPECT_NEAR(trueView(aspect, 0.25).width(), width, 1e-9);
    EXPECT_NEAR(trueView(2, 0.25).height(), trueView(WIDER_FROM, 0.25).height(), 1e-9);
    EXPECT_NEAR(trueView(21.0 / 9, 0.25).width(), width * 21 / 16, 1e-9);
    EXPECT_NEAR(trueView(32.0 / 9, 0.25).width(), width * 21 / 16, 1e-9);
}

TEST(Proportions, AHorizonOutsideThePictureLeavesAPicture) {
    for (const double horizon : {-57.0, -0.5, 0.5, 57.0}) {
        const VIEW_WINDOW view = trueView(2, horizon);
        EXPECT_NEAR(view.width() / view.height(), 2, 1e-9);
        EXPECT_NEAR(horizon > 0 ? view.top : view.bottom, horizon > 0 ? EDGE : -EDGE, 1e-9);
    }
}

constexpr int LARGEST = 1280;

struct Box {
    int left = LARGEST, right = -1, top = LARGEST, bottom = -1;
};

/// Where the picture is white.
Box whiteIn(const Picture& picture) {
    Box box;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (picture.rgb[3 * (size_t(y) * size_t(picture.width) + size_t(x))] > 127) {
                box.left = std::min(box.left, x);
                box.right = std::max(box.right, x);
                box.top = std::min(box.top, y);
                box.bottom = std::max(box.bottom, y);
            }
    return box;
}

/// Draws nothing but a white disc that faces the eye, in the middle of the picture and of this
/// radius in pixels from left to right.
void drawDisc(int width, int height, int radius) {
    GLdouble projection[16];
    const GLdouble identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    const GLint viewport[4] = {0, 0, width, height};
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    GLdouble x, y, z, side, ignored;
    gluUnProject(width / 2.0, height / 2.0, 0.9, identity, projection, viewport, &x, &y, &z);
    gluUnProject(width / 2.0 + radius, height / 2.0, 0.9, identity, projection, viewport, &side,
                 &ignored, &ignored);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_FOG);
    glDisable(GL_BLEND);
    glColor4f(1, 1, 1, 1);
    glLoadIdentity();
    glBegin(GL_TRIANGLE_FAN);
    for (int i = 0; i < 720; ++i)
        glVertex3d(x + (side - x) * std::cos(i * 3.14159265 / 360),
                   y + (side - x) * std::sin(i * 3.14159265 / 360), z);
    glEnd();
    glPopAttrib();
}

TEST(Proportions, WhatIsRoundIsDrawnRound) {
    OffscreenContext context(LARGEST, LARGEST);
    ASSERT_TRUE(context.ok());
    auto scene = std::make_unique<CMarivistaScreensaver>();
    scene->loadSettings(LARGEST, LARGEST);
    scene->wantedwssettings.soundOn = false;
    scene->wantedwssettings.camerapos = 4;
    scene->extras.proportions = 1;
    scene->buildWorld();
    const struct {
        int width, height;
    } sizes[] = {{960, 720},  {1152, 720}, {1280, 720}, {1260, 540},
                 {1280, 360}, {720, 1280}, {640, 1280}, {1278, 355}};
    for (const auto& size : sizes)
        for (const float pitch : {-25.0f, -8.0f, 0.0f, 4.5f}) {
            scene->setViewSize(size.width, size.height);
            scene->camera.pitch(pitch);
            scene->tick();
            scene->camera.pitch(-pitch);
            const int radius = std::min(size.width, size.height) * 2 / 5;
            drawDisc(size.width, size.height, radius);
            const Box box = whiteIn(context.read());
            const int wide = box.right - box.left + 1, high = box.bottom - box.top + 1;
            EXPECT_NEAR(wide, 2 * radius, 2);
            EXPECT_NEAR(high, wide, wide * 0.01) << size.width << " x " << size.height;
        }

    // The design's own picture of such a window is not.
    scene->extras.proportions = 0;
    scene->setViewSize(1280, 720);
    scene->tick();
    drawDisc(1280, 720, 200);
    const Box box = whiteIn(context.read());
    EXPECT_NEAR(box.bottom - box.top, 400 / (16.0 / 9 / MAX_ASPECT), 3);
    scene->cleanup();
}

}  // namespace
