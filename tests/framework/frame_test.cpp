#include <SDL_events.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <cstring>

#include "framework/frame_scene.h"

namespace {

using test::FrameScene;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// Shows the frame and waits for its first frame; the timer's later ticks are left out of `calls`
/// by tests that compare whole lists.
void show(FrameScene& frame, int width, int height) {
    frame.resize(width, height);
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&frame));
}

TEST(KDEFrame, StartsWithItsDefaults) {
    FrameScene frame(nullptr, "lagoon");
    EXPECT_EQ(frame.objectName(), "lagoon");
    EXPECT_FALSE(frame.initdone);
    EXPECT_TRUE(frame.loopready);
    EXPECT_EQ(frame.config, nullptr);
    EXPECT_EQ(frame.resolution_x, 800);
    EXPECT_EQ(frame.resolution_y, 600);
    EXPECT_EQ(frame.colordepth, 16);
    EXPECT_FALSE(frame.quit);
    EXPECT_THAT(frame.calls, IsEmpty());
}

TEST(KDEFrame, FieldsFollowEachOther) {
    FrameScene frame;
    const auto at = [](const void* field) { return reinterpret_cast<std::uintptr_t>(field); };
    EXPECT_LT(at(frame.strRegPath), at(frame.dataPath));
    EXPECT_LT(at(frame.dataPath), at(frame.strProjectName));
    EXPECT_LT(at(frame.strProjectName), at(&frame.resolution_x));
    EXPECT_LT(at(&frame.resolution_x), at(&frame.resolution_y));
    EXPECT_LT(at(&frame.resolution_y), at(&frame.colordepth));
    EXPECT_LT(at(&frame.colordepth), at(&frame.quit));
    EXPECT_LT(at(&frame.initdone), at(&frame.loopready));
    EXPECT_LT(at(&frame.loopready), at(&frame.config));
    EXPECT_EQ(sizeof frame.strRegPath, 256U);
    EXPECT_EQ(sizeof frame.dataPath, 256U);
    EXPECT_EQ(sizeof frame.strProjectName, 128U);
}

TEST(KDEFrame, TheContextAloneStartsNothing) {
    FrameScene frame;
    frame.initializeGL();
    EXPECT_THAT(frame.calls, IsEmpty());
}

TEST(KDEFrame, FirstResizeStartsTheSceneAndLaterOnesChangeNothing) {
    FrameScene frame;
    frame.resizeGL(320, 240);
    EXPECT_TRUE(frame.initdone);
    EXPECT_THAT(frame.calls, ElementsAre("readSettings 320 x 240", "initGL", "initScene"));
    frame.resizeGL(640, 480);
    frame.resizeGL(1, 1);
    EXPECT_THAT(frame.calls, ElementsAre("readSettings 320 x 240", "initGL", "initScene"));
    EXPECT_EQ(frame.resolution_x, 320);
    EXPECT_EQ(frame.resolution_y, 240);
}

TEST(KDEFrame, ASceneThatFailsToBuildIsStillDriven) {
    FrameScene frame;
    frame.succeed = false;
    frame.resizeGL(320, 240);
    EXPECT_TRUE(frame.initdone);
    frame.calls.clear();
    frame.paintGL();
    EXPECT_THAT(frame.calls, ElementsAre("updateScene", "renderScene"));
}

TEST(KDEFrame, APaintDuringAFrameDoesNothing) {
    FrameScene frame;
    frame.during_update = [&] { frame.paintGL(); };
    frame.during_render = [&] {
        EXPECT_FALSE(frame.loopready);
        frame.paintGL();
    };
    frame.paintGL();
    EXPECT_THAT(frame.calls, ElementsAre("updateScene", "renderScene"));
    EXPECT_TRUE(frame.loopready);
    frame.paintGL();
    EXPECT_THAT(frame.calls,
                ElementsAre("updateScene", "renderScene", "updateScene", "renderScene"));
}

TEST(KDEFrame, ShownItStartsBeforeItDrawsAndTicks) {
    FrameScene frame;
    show(frame, 300, 200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame.calls.size() > 9; }, 60000));
    EXPECT_EQ(frame.calls[0], "readSettings 300 x 200");
    EXPECT_EQ(frame.calls[1], "initGL");
    EXPECT_EQ(frame.calls[2], "initScene");
    for (std::size_t i = 3; i < frame.calls.size(); ++i)
        EXPECT_EQ(frame.calls[i], i % 2 ? "updateScene" : "renderScene");
}

TEST(KDEFrame, ALargerWindowKeepsResolutionAndViewport) {
    FrameScene frame;
    show(frame, 300, 200);
    frame.resize(600, 400);
    frame.calls.clear();
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame.calls.size() > 6; }, 60000));
    EXPECT_EQ(frame.size(), QSize(600, 400));
    EXPECT_EQ(frame.resolution_x, 300);
    EXPECT_EQ(frame.resolution_y, 200);
    EXPECT_THAT(frame.viewport, ElementsAre(0, 0, 300, 200));
    EXPECT_THAT(frame.calls, testing::Not(Contains("readSettings 300 x 200")));
}

TEST(KDEFrame, ATickIsOneFrame) {
    FrameScene frame;
    show(frame, 300, 200);
    frame.calls.clear();
    QTimerEvent tick(1);
    frame.timerEvent(&tick);
    EXPECT_THAT(frame.calls, ElementsAre("updateScene", "renderScene"));
}

TEST(KDEFrame, CloseReleasesOnceWithTheContextCurrent) {
    FrameScene frame;
    show(frame, 300, 200);
    frame.doneCurrent();
    frame.calls.clear();
    EXPECT_TRUE(frame.close(false));
    EXPECT_THAT(frame.calls, ElementsAre("releaseGL current", "cleanup"));
    EXPECT_FALSE(frame.isVisible());
}

TEST(KDEFrame, TheWindowManagersCloseReleasesToo) {
    FrameScene frame;
    show(frame, 300, 200);
    frame.doneCurrent();
    frame.calls.clear();
    EXPECT_TRUE(static_cast<QWidget&>(frame).close());
    EXPECT_THAT(frame.calls, ElementsAre("releaseGL current", "cleanup"));
}

TEST(KDEFrame, CloseDeletesWhenAskedTo) {
    int destroyed = 0;
    auto* frame = new FrameScene;
    frame->destroyed = &destroyed;
    EXPECT_TRUE(frame->close(true));
    EXPECT_EQ(destroyed, 1);

    auto* hidden = new FrameScene;
    hidden->destroyed = &destroyed;
    hidden->setAttribute(Qt::WA_DeleteOnClose);
    const QPointer<FrameScene> watched(hidden);
    EXPECT_TRUE(hidden->close(true));
    EXPECT_TRUE(watched.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(destroyed, 2);
}

TEST(KDEFrame, QuitEventsAndNoOthersAskForTheEnd) {
    FrameScene frame;
    for (int type = 0; type < 256; ++type) {
        SDL_Event event;
        std::memset(&event, 0xff, sizeof event);
        event.type = static_cast<Uint8>(type);
        EXPECT_EQ(frame.processSDLEvents(&event), type == 12) << type;
    }
    EXPECT_FALSE(frame.quit);
    frame.resetSDLEvents();
    EXPECT_THAT(frame.calls, IsEmpty());
}

TEST(KDEFrame, HasNothingToConfigure) {
    FrameScene frame;
    EXPECT_TRUE(frame.doConfig());
    EXPECT_TRUE(frame.KDEFrame::readSettings());
    EXPECT_TRUE(frame.KDEFrame::writeSettings());
    EXPECT_EQ(frame.config, nullptr);
}

}  // namespace
