// The program's window: what keys, mouse and menu do to it and to its reef.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QMenu>
#include <QQuickItem>
#include <QRadioButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <cstdlib>

#include "KMarivistaSetup.h"
#include "app/ReefWindow.h"
#include "quick/Reef.h"
#include "quick/ReefTexts.h"
#include "quick/Types.h"

// Outside every namespace, as the macro demands.
static void loadPage() { Q_INIT_RESOURCE(page); }

namespace {

/// Whether this ends the program, which goes on otherwise.
bool ends(const std::function<void()>& act) {
    bool ended = false;
    QTimer::singleShot(0, [&] {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&] {
            act();
            ended = !loop.isRunning();
            loop.quit();
        });
        loop.exec();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return ended;
}

bool fillsTheScreen(const QWindow& window) { return window.windowStates() & Qt::WindowFullScreen; }

class WindowTest : public testing::Test {
protected:
    WindowTest() {
        setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
        QCoreApplication::setApplicationName("atollia");
        const QString settings =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        QDir(settings).removeRecursively();
        QDir().mkpath(settings);
        loadPage();
        registerReefTypes("org.atollia.reef");
    }

    /// The menu that is open; null without one.
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    /// An entry of a menu by its key in the language file.
    static QAction& entry(QMenu& menu, const char* key) {
        const QString text = ReefTexts().text(key);
        for (QAction* action : menu.actions())
            if (action->text() == text)
                return *action;
        ADD_FAILURE() << "no entry " << key;
        return *menu.addSeparator();
    }
};

TEST_F(WindowTest, KeysForTheWholeScreen) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    for (const auto key : {Qt::Key_F11, Qt::Key_F}) {
        QTest::keyClick(&window, key);
        EXPECT_TRUE(fillsTheScreen(window));
        QTest::keyClick(&window, key);
        EXPECT_FALSE(fillsTheScreen(window));
    }
    QTest::keyClick(&window, Qt::Key_F11);
    EXPECT_FALSE(ends([&] { QTest::keyClick(&window, Qt::Key_Escape); })) << "leaves it first";
    EXPECT_FALSE(fillsTheScreen(window));
    EXPECT_TRUE(ends([&] { QTest::keyClick(&window, Qt::Key_Escape); }));
}

TEST_F(WindowTest, ADoubleClickFillsTheScreenAndAnotherLeavesIt) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    QTest::mouseDClick(&window, Qt::LeftButton, {}, {40, 40});
    EXPECT_TRUE(fillsTheScreen(window));
    QTest::mouseDClick(&window, Qt::LeftButton, {}, {40, 40});
    EXPECT_FALSE(fillsTheScreen(window));
    QTest::mouseDClick(&window, Qt::MiddleButton, {}, {40, 40});
    EXPECT_FALSE(fillsTheScreen(window));
}

TEST_F(WindowTest, KeysForTheReef) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    for (const int view : {3, 0, 2, 1}) {
        QTest::keyClick(&window, static_cast<Qt::Key>(Qt::Key_0 + view));
        EXPECT_EQ(window.reef().cameraPos(), view);
    }
    for (const int sky : {1, 0}) {
        QTest::keyClick(&window, Qt::Key_S);
        EXPECT_EQ(window.reef().skyType(), sky);
    }
    EXPECT_FALSE(window.reef().muted());
    for (const bool muted : {true, false}) {
        QTest::keyClick(&window, Qt::Key_M);
        EXPECT_EQ(window.reef().muted(), muted);
    }
    for (const auto key : {Qt::Key_P, Qt::Key_Space})
        for (const bool running : {false, true}) {
            QTest::keyClick(&window, key);
            EXPECT_EQ(window.reef().running(), running);
        }
    EXPECT_FALSE(ends([&] { QTest::keyClick(&window, Qt::Key_X); }));
    EXPECT_TRUE(ends([&] { QTest::keyClick(&window, Qt::Key_Q); }));
}

TEST_F(WindowTest, TheMenuDoesTheSameAndShowsHowThingsAre) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    window.reef().set_cameraPos(2);
    QTest::mousePress(&window, Qt::RightButton, {}, {40, 40});
    ASSERT_TRUE(menu());
    QMenu& shown = *menu();
    QMenu* const views = entry(shown, "camera").menu();
    ASSERT_TRUE(views);
    const char* const names[] = {"automatic", "top", "middle", "bottom"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(entry(*views, names[i]).isChecked(), i == 2) << names[i];
    for (int i = 0; i < 4; ++i) {
        entry(*views, names[i]).trigger();
        EXPECT_EQ(window.reef().cameraPos(), i);
    }
    EXPECT_FALSE(entry(shown, "cloudless").isChecked());
    EXPECT_TRUE(entry(shown, "sound").isChecked());
    EXPECT_FALSE(entry(shown, "pause").isChecked());
    EXPECT_FALSE(entry(shown, "fullscreen").isChecked());
    for (const char* key : {"cloudless", "sound", "pause", "fullscreen"})
        entry(shown, key).trigger();
    EXPECT_EQ(window.reef().skyType(), 1);
    EXPECT_TRUE(window.reef().muted());
    EXPECT_FALSE(window.reef().running());
    EXPECT_TRUE(fillsTheScreen(window));
    shown.hide();

    // Again, with the key that keyboards have for it.
    QTest::keyClick(&window, Qt::Key_Menu);
    ASSERT_EQ(menu(), &shown);
    EXPECT_TRUE(entry(*views, "bottom").isChecked());
    EXPECT_TRUE(entry(shown, "cloudless").isChecked());
    EXPECT_FALSE(entry(shown, "sound").isChecked());
    EXPECT_TRUE(entry(shown, "pause").isChecked());
    EXPECT_TRUE(entry(shown, "fullscreen").isChecked());
    EXPECT_TRUE(ends([&] { entry(shown, "quit").trigger(); }));
}

TEST_F(WindowTest, SettingsChosenInItsDialogTakeEffect) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    QTest::keyClick(&window, Qt::Key_Menu);
    ASSERT_TRUE(menu());
    QMenu& shown = *menu();
    shown.hide();
    const auto choose = [&](const std::function<void(KMarivistaSetup&)>& choice) {
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<KMarivistaSetup*>(QApplication::activeModalWidget());
            ASSERT_TRUE(dialog);
            choice(*dialog);
        });
        entry(shown, "settings").trigger();
    };
    EXPECT_EQ(window.reef().dayTime(), 1);
    choose([](KMarivistaSetup& dialog) {
        dialog.daytime_radio1->click();
        dialog.sky_radio2->click();
        dialog.writeConfig();
    });
    EXPECT_EQ(window.reef().dayTime(), 0);
    EXPECT_EQ(window.reef().skyType(), 1);
    choose([](KMarivistaSetup& dialog) {
        dialog.sky_radio1->click();
        dialog.reject();
    });
    EXPECT_EQ(window.reef().skyType(), 1);
}

TEST_F(WindowTest, APointerThatRestsIsHidden) {
    ReefWindow window(PURPOSE::LOOKING);
    window.showRemembered();
    QTest::mouseMove(&window, {50, 50});
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.cursor().shape() == Qt::BlankCursor; }, 60000));
    QTest::mouseMove(&window, {60, 50});
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(WindowTest, ItsSizeIsRememberedButNotThatOfTheScreen) {
    const QSize usual = [] {
        ReefWindow window(PURPOSE::LOOKING);
        window.showRemembered();
        return window.size();
    }();
    const QSize wanted(500, 333);
    EXPECT_NE(usual, wanted);
    {
        ReefWindow window(PURPOSE::LOOKING);
        window.showRemembered();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, 60000));
        window.resize(wanted);
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return window.rootObject()->size() == QSizeF(wanted); }, 60000));
        QTest::keyClick(&window, Qt::Key_F11);
        window.resize(800, 600);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.rootObject()->size() == QSizeF(800, 600); },
                                    60000));
        EXPECT_TRUE(ends([&] { window.close(); }));
    }
    ReefWindow again(PURPOSE::LOOKING);
    again.showRemembered();
    EXPECT_EQ(again.size(), wanted);
}

TEST_F(WindowTest, AnIdlePictureIsSilentAndEndsAtTheFirstInput) {
    ReefWindow window(PURPOSE::UNTIL_INPUT);
    window.showFullScreen();
    EXPECT_TRUE(window.reef().muted());
    EXPECT_EQ(window.cursor().shape(), Qt::BlankCursor);
    EXPECT_TRUE(ends([&] { QTest::keyClick(&window, Qt::Key_Shift); }));
    EXPECT_TRUE(ends([&] { QTest::mousePress(&window, Qt::MiddleButton, {}, {50, 50}); }));
    EXPECT_TRUE(ends([&] {
        QWheelEvent turned({50, 50}, {50, 50}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                           Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window, &turned);
    }));
}

TEST_F(WindowTest, AnIdlePictureStaysWhileThePointerOnlyTrembles) {
    ReefWindow window(PURPOSE::UNTIL_INPUT);
    window.showFullScreen();
    EXPECT_FALSE(ends([&] {
        for (const QPoint& place : {QPoint(200, 200), {203, 200}, {198, 202}, {200, 206}})
            QTest::mouseMove(&window, place);
    }));
    EXPECT_TRUE(ends([&] { QTest::mouseMove(&window, {209, 201}); }));
}

TEST_F(WindowTest, ABackgroundIsDeafAndSilent) {
    ReefWindow window(PURPOSE::BACKGROUND);
    window.show();
    EXPECT_TRUE(window.reef().muted());
    EXPECT_FALSE(ends([&] {
        QTest::keyClick(&window, Qt::Key_Q);
        QTest::keyClick(&window, Qt::Key_F11);
        QTest::mouseMove(&window, {10, 10});
        QTest::mouseMove(&window, {90, 90});
        QTest::mousePress(&window, Qt::RightButton, {}, {40, 40});
    }));
    EXPECT_FALSE(fillsTheScreen(window));
    EXPECT_FALSE(menu());
}

TEST_F(WindowTest, TellsInOneLineWhyNothingCanBeDrawn) {
    ReefWindow window(PURPOSE::LOOKING);
    QSignalSpy failed(&window, &ReefWindow::failed);
    emit window.sceneGraphError(
        QQuickWindow::ContextNotAvailable,
        "Failed to create OpenGL context for format QSurfaceFormat(version 2.0)\nYou may try");
    ASSERT_EQ(failed.count(), 1);
    EXPECT_EQ(failed[0][0].toString(), "Failed to create OpenGL context");
}

}  // namespace
