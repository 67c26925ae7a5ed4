// The entry points that hosts call, with the real scene.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDialog>
#include <QTest>
#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>

#include "Marivista.h"
#include "host/Arguments.h"
#include "host/FramePacer.h"
#include "host/KDEScreensaverFrame.h"
#include "host/virtual_display.h"
#include "main.h"

namespace {

using test::Client;

KDEFrame* sceneOf(const std::unique_ptr<KScreenSaver>& saver) {
    return dynamic_cast<KDEScreensaverFrame&>(*saver).saver;
}

/// One for all tests: the next client would have windows of the same names, and news of the old
/// ones might still be on the way.
Client& host() {
    static Client client(std::getenv("DISPLAY"));
    return client;
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
    Client& client = host();
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

TEST(EntryPoints, ASaverAfterTheFirstOnesEndIsAsGoodAsTheFirst) {
    Client& client = host();
    for (const int width : {200, 400}) {
        const xcb_window_t window = client.window(0, 0, width, 150);
        client.blacken(window);
        const std::unique_ptr<KScreenSaver> saver(kss_create(window));
        auto& scene = dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver));
        ASSERT_TRUE(QTest::qWaitFor([&] { return scene.initdone; }, 60000));
        EXPECT_EQ(scene.resolution_x, width);
        EXPECT_GT(scene.numFish, 0);
        EXPECT_NE(scene.sound, nullptr);
        // Sky and water, not white planes.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const test::PICTURE column = client.picture(width / 2, 0, 1, 150);
                return std::any_of(column.pixels.begin(), column.pixels.end(),
                                   [](auto& pixel) { return pixel.blue > pixel.red + 60; });
            },
            60000))
            << width;
    }
}

TEST(EntryPoints, TheClockRunsOnWhileTheSoundStarts) {
    Client& client = host();
    const std::unique_ptr<KScreenSaver> saver(kss_create(client.window(0, 0, 200, 150)));
    auto& scene = dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver));
    ASSERT_TRUE(QTest::qWaitFor([&] { return scene.initdone; }, 60000));
    // What every member has read on its construction.
    EXPECT_LE(scene.camera.timer, scene.timer);
    EXPECT_LE(scene.cameratimer, scene.timer);
    EXPECT_LT(SDL_GetTicks() - scene.camera.timer, 600000u);
}

TEST(EntryPoints, SaversOfTheSameSecondAreNoTwins) {
    const std::time_t before = std::time(nullptr);
    const std::unique_ptr<KScreenSaver> saver(kss_create(0));
    const std::time_t after = std::time(nullptr);
    const int drawn = std::rand();
    for (std::time_t second = before; second <= after; ++second) {
        std::srand(static_cast<unsigned>(second));
        EXPECT_NE(std::rand(), drawn) << "what every saver of this second draws";
    }
}

TEST(EntryPoints, PresetSettingsAreThoseOfTheNextScene) {
    const auto built = [] {
        const std::unique_ptr<KScreenSaver> saver(kss_create(0));
        return dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver)).extras;
    };
    EXPECT_EQ(built().volume, 100);
    presetSetting({&EXTRA_SETTINGS::volume, 30});
    EXPECT_EQ(built().volume, 30);
    presetSetting({&EXTRA_SETTINGS::volume, 100});
    EXPECT_EQ(built().volume, 100);
}

/// The four corners of a part of the screen show something.
bool cornersShow(Client& client, int x, int y, int width, int height) {
    const test::PICTURE picture = client.picture(x, y, width, height);
    for (const int row : {0, height - 1})
        for (const int column : {0, width - 1})
            if (picture.at(column, row) == test::PIXEL{0, 0, 0})
                return false;
    return true;
}

TEST(EntryPoints, ThePictureFollowsTheSizeOfTheWindow) {
    Client& client = host();
    const xcb_window_t window = client.window(0, 0, 200, 150);
    client.blacken(window);
    const std::unique_ptr<KScreenSaver> saver(kss_create(window));
    auto& scene = dynamic_cast<CMarivistaScreensaver&>(*sceneOf(saver));
    const FramePacer pacer(
        scene, 0,
        {[&](int width, int height) { setViewSize(*saver, width, height); }, [] {}, [](bool) {}});
    const auto shows = [&](int width, int height) {
        return QTest::qWaitFor([&] { return cornersShow(client, 0, 0, width, height); }, 60000);
    };
    ASSERT_TRUE(shows(200, 150));
    // Wider, higher, smaller: as large as the window and in the proportions of a new start.
    const struct {
        int width, height;
        float aspect;
    } sizes[] = {{600, 400, 1.35F}, {300, 500, 0.6F}, {100, 80, 1.25F}};
    for (const auto& size : sizes) {
        client.resize(window, size.width, size.height);
        ASSERT_TRUE(QTest::qWaitFor([&] { return scene.resolution_x == size.width; }, 60000));
        EXPECT_TRUE(shows(size.width, size.height));
        scene.makeCurrent();
        GLint viewport[4];
        GLfloat projection[16];
        glGetIntegerv(GL_VIEWPORT, viewport);
        glGetFloatv(GL_PROJECTION_MATRIX, projection);
        EXPECT_EQ(viewport[2], size.width);
        EXPECT_EQ(viewport[3], size.height);
        EXPECT_NEAR(projection[5] / projection[0], size.aspect, 0.001F);
        EXPECT_EQ(scene.fpstext.screenwidth, size.width);
    }
}

TEST(EntryPoints, TheFrameIsBlackAndTheFrameRateIsShownOnRequest) {
    Client& client = host();
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
