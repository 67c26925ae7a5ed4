// The entry points that hosts call, with the real scene.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QTest>
#include <memory>
#include <optional>

#include "Marivista.h"
#include "host/KDEScreensaverFrame.h"
#include "host/virtual_display.h"
#include "main.h"

namespace {

using test::Client;

KDEFrame* sceneOf(const std::unique_ptr<KScreenSaver>& saver) {
    return dynamic_cast<KDEScreensaverFrame&>(*saver).saver;
}

TEST(EntryPoints, NameTheProgram) {
    EXPECT_STREQ(kss_applicationName, "atollia.kss");
    EXPECT_STREQ(kss_description, "Atollia");
    EXPECT_STREQ(kss_version, "0.1");
}

TEST(EntryPoints, SetupIsANewDialogWithoutParentThatIsNotModal) {
    const std::unique_ptr<QDialog> one(kss_setup());
    const std::unique_ptr<QDialog> two(kss_setup());
    ASSERT_NE(one, nullptr);
    EXPECT_NE(one, two);
    EXPECT_EQ(one->parent(), nullptr);
    EXPECT_FALSE(one->isModal());
    EXPECT_FALSE(one->isVisible());
}

TEST(EntryPoints, SetupSpeaksTheLanguageAskedForOrTheLocales) {
    const auto caption = [](const char* language) {
        return std::unique_ptr<QDialog>(createSetup(language))->windowTitle();
    };
    EXPECT_EQ(caption("ENG"), "Atollia Settings");
    EXPECT_EQ(caption("it"), "Impostazioni di Atollia");
    const QString usual = std::unique_ptr<QDialog>(kss_setup())->windowTitle();
    EXPECT_FALSE(usual.isEmpty());
    testing::internal::CaptureStdout();
    EXPECT_EQ(caption("SWE"), usual);
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::EndsWith("Language.dat has no texts in \"SWE\"\n"));
}

TEST(EntryPoints, ASecondSaverEmbedsTheSceneThatTheFirstOneBuilt) {
    Client client(std::getenv("DISPLAY"));
    const xcb_window_t left = client.window(0, 0, 200, 150);
    const xcb_window_t right = client.window(300, 0, 200, 150);

    std::unique_ptr<KScreenSaver> first(kss_create(left));
    KDEFrame* const scene = sceneOf(first);
    ASSERT_NE(dynamic_cast<CMarivistaScreensaver*>(scene), nullptr);
    EXPECT_EQ(scene->parentWidget(), first.get());
    ASSERT_TRUE(QTest::qWaitFor([&] { return scene->initdone; }, 60000));

    std::unique_ptr<KScreenSaver> second(kss_create(right));
    EXPECT_NE(first, second);
    EXPECT_EQ(sceneOf(second), scene);
    EXPECT_EQ(scene->parentWidget(), second.get());
    EXPECT_TRUE(scene->isVisible());

    // The first host's end must not take the scene from the second one.
    first.reset();
    EXPECT_EQ(scene->parentWidget(), second.get());
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const test::PIXEL sky = client.pixel(400, 5);
            return sky.blue > 100 && sky.blue > sky.red;
        },
        60000));
    second.reset();
    EXPECT_EQ(scene->parentWidget(), nullptr);
}

TEST(EntryPoints, TheClockRunsOnWhileTheSoundStarts) {
    Client client(std::getenv("DISPLAY"));
    const std::unique_ptr<KScreenSaver> saver(kss_create(client.window(0, 0, 200, 150)));
    auto& scene = dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver));
    ASSERT_TRUE(QTest::qWaitFor([&] { return scene.initdone; }, 60000));
    // What every member has read on its construction.
    EXPECT_LE(scene.camera.timer, scene.timer);
    EXPECT_LE(scene.cameratimer, scene.timer);
    EXPECT_LT(SDL_GetTicks() - scene.camera.timer, 600000u);
}

TEST(EntryPoints, TheFrameIsBlackAndTheFrameRateIsShownOnRequest) {
    Client client(std::getenv("DISPLAY"));
    const std::unique_ptr<KScreenSaver> saver(kss_create(client.window(0, 0, 200, 150)));
    EXPECT_EQ(saver->palette().color(QPalette::Window), QColor(Qt::black));
    EXPECT_EQ(saver->size(), QSize(200, 150));
    EXPECT_EQ(sceneOf(saver)->size(), QSize(200, 150));
    auto& scene = dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver));
    EXPECT_FALSE(scene.fpsOn);
    showFrameRate(*saver);
    EXPECT_TRUE(scene.fpsOn);
}

}  // namespace
