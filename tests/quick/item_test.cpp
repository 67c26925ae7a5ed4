// The item Reef in pages of Qt Quick, drawn by Mesa's software renderer.
#include <gtest/gtest.h>

#include <malloc.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QPainter>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include "Globals.h"
#include "host/virtual_display.h"
#include "quick/page.h"
#include "support/chance.h"
#include "support/clock.h"

namespace {

using test::Page;
using test::until;

constexpr char FILLING[] =
    "Reef { anchors.fill: parent; cameraPos: 2; dayTime: 0; renderScale: 1 }";

/// The still picture has gone, and the scene's own is there.
bool waitForScene(Page& page) {
    return page.waitFrames(12) && until([&] { return page.reef()->problem().isEmpty(); });
}

/// While it lives, what this thread allocates and nobody frees is not looked for.
struct ForgivenLeaks {
#ifdef __SANITIZE_ADDRESS__
    __lsan::ScopedDisabler disabler;
#endif
    ForgivenLeaks() {}
};

/// Share of pixels that differ.
double difference(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return 1;
    int differing = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            differing += a.pixel(x, y) != b.pixel(x, y);
    return static_cast<double>(differing) / (a.width() * a.height());
}

/// While it lives, the item's clock stands still but where the item waits: that takes exactly as
/// long as it says, and no time of the machine's.
class ItemClock {
public:
    ItemClock() { nanoseconds = 1000 * SECOND; }
    ~ItemClock() { nanoseconds.reset(); }
    static double seconds() { return static_cast<double>(*nanoseconds) / SECOND; }
    static void advance(qint64 seconds) { *nanoseconds += seconds * SECOND; }

    static constexpr qint64 SECOND = 1000000000;
    static std::optional<qint64> nanoseconds;
};
std::optional<qint64> ItemClock::nanoseconds;

}  // namespace

// QElapsedTimer::nsecsElapsed(), QElapsedTimer::elapsed(), QTimer::start(int)
extern "C" {
qint64 __real__ZNK13QElapsedTimer12nsecsElapsedEv(const QElapsedTimer*);
qint64 __wrap__ZNK13QElapsedTimer12nsecsElapsedEv(const QElapsedTimer* timer) {
    return ItemClock::nanoseconds ? *ItemClock::nanoseconds
                                  : __real__ZNK13QElapsedTimer12nsecsElapsedEv(timer);
}
qint64 __real__ZNK13QElapsedTimer7elapsedEv(const QElapsedTimer*);
qint64 __wrap__ZNK13QElapsedTimer7elapsedEv(const QElapsedTimer* timer) {
    return ItemClock::nanoseconds ? *ItemClock::nanoseconds / 1000000
                                  : __real__ZNK13QElapsedTimer7elapsedEv(timer);
}
void __real__ZN6QTimer5startEi(QTimer*, int);
void __wrap__ZN6QTimer5startEi(QTimer* timer, int milliseconds) {
    if (ItemClock::nanoseconds && timer->isSingleShot()) {
        *ItemClock::nanoseconds += milliseconds * 1000000LL;
        milliseconds = 0;
    }
    __real__ZN6QTimer5startEi(timer, milliseconds);
}
}

namespace {

TEST(ReefItem, HasTheSettingsWithTheirDefaultsAndRanges) {
    Reef reef;
    EXPECT_EQ(reef.boidCount(), 10);
    EXPECT_EQ(reef.fishCount(), 10);
    EXPECT_EQ(reef.cameraSpeed(), 4);
    EXPECT_EQ(reef.cameraFixTop(), 30);
    EXPECT_TRUE(reef.fishManta());
    EXPECT_TRUE(reef.muted());
    EXPECT_TRUE(reef.running());
    EXPECT_EQ(reef.proportions(), 1);
    EXPECT_EQ(reef.dayTime(), 1);
    const struct {
        const char* name;
        int low, high;
    } ranges[] = {{"boidModel", 0, 1},        {"boidCount", 0, 20},  {"fishCount", 0, 10},
                  {"cameraPos", 0, 3},        {"cameraSpeed", 1, 9}, {"cameraFixTop", 1, 60},
                  {"cameraFixBottom", 5, 60}, {"skyType", 0, 1},     {"proportions", 0, 1},
                  {"dayTime", 0, 1},          {"latitude", -90, 90}, {"volume", 0, 100},
                  {"quietFrom", 0, 23},       {"quietTo", 0, 23},    {"samples", -1, 16}};
    for (const auto& [wanted, kept] :
         {std::pair(0.5, 0.5), {0.1, 0.4}, {7.0, 1.0}, {-1.0, 0.0}, {std::nan(""), 0.0}}) {
        reef.setRenderScale(wanted);
        EXPECT_EQ(reef.renderScale(), kept) << wanted;
    }
    for (const auto& range : ranges) {
        reef.setProperty(range.name, 100000);
        EXPECT_EQ(reef.property(range.name).toInt(), range.high) << range.name;
        reef.setProperty(range.name, -100000);
        EXPECT_EQ(reef.property(range.name).toInt(), range.low) << range.name;
    }
    // One property for every key of the settings file, but for the sound's: that is `muted`.
    for (const SETTING& setting : settings_read) {
        std::string name = setting.key;
        name[0] = static_cast<char>(std::tolower(name[0]));
        if (name == "soundOn")
            name = "muted";
        EXPECT_GE(reef.metaObject()->indexOfProperty(name.c_str()), 0) << name;
    }
    for (const EXTRA_SETTING& setting : extra_settings) {
        std::string name = setting.key;
        name[0] = static_cast<char>(std::tolower(name[0]));
        EXPECT_GE(reef.metaObject()->indexOfProperty(name.c_str()), 0) << name;
    }
}

TEST(ReefItem, ShowsAStillPictureFirstAndThenTheScene) {
    Page page(FILLING);
    ASSERT_TRUE(page.waitFrames(1));
    EXPECT_GT(test::colours(page.picture()), 1000);
    ASSERT_TRUE(waitForScene(page));
    EXPECT_GT(test::colours(page.picture()), 1000);
    EXPECT_EQ(page.reef()->problem(), "");
}

/// Text, a picture, a part of something, and what a shader draws: 76 pixels each.
QString thingsOf(const QString& picture) {
    return QStringLiteral(R"(
        component Things: Item {
            Rectangle { width: 70; height: 60; color: "black"
                Text { text: "Reef"; color: "white"; font.pixelSize: 30 } }
            Image { x: 76; width: 70; height: 60; source: "%1" }
            Rectangle { x: 152; width: 70; height: 60; color: "red"; clip: true
                Rectangle { x: 30; y: 30; width: 60; height: 60; radius: 20; color: "#8000ff00" } }
            Rectangle { id: painted; width: 70; height: 60; visible: false
                gradient: Gradient { GradientStop { position: 0; color: "yellow" }
                                     GradientStop { position: 1; color: "blue" } } }
            ShaderEffect { x: 228; width: 70; height: 60
                property variant source: ShaderEffectSource { sourceItem: painted; hideSource: true }
                fragmentShader: "
                    uniform sampler2D source; varying highp vec2 qt_TexCoord0;
                    uniform lowp float qt_Opacity;
                    void main() { gl_FragColor = vec4(texture2D(source, qt_TexCoord0).bgr, 1.0)
                                                 * qt_Opacity; }" }
        })")
        .arg(picture);
}

/// The largest difference of a colour from the mean of two pictures' there.
int worstDistanceFromMean(const QImage& mixed, const QImage& one, const QImage& other) {
    int worst = 0;
    for (int y = 0; y < mixed.height(); ++y)
        for (int x = 0; x < mixed.width(); ++x) {
            const QRgb m = mixed.pixel(x, y), a = one.pixel(x, y), b = other.pixel(x, y);
            for (const int off :
                 {2 * qRed(m) - qRed(a) - qRed(b), 2 * qGreen(m) - qGreen(a) - qGreen(b),
                  2 * qBlue(m) - qBlue(a) - qBlue(b)})
                worst = std::max(worst, std::abs(off) / 2);
        }
    return worst;
}

TEST(ReefItem, ThePageAroundItLooksTheSameAndSoDoesIt) {
    const QTemporaryDir folder;
    QImage painted(35, 30, QImage::Format_RGB32);
    for (int y = 0; y < painted.height(); ++y)
        for (int x = 0; x < painted.width(); ++x)
            painted.setPixel(x, y, qRgb(7 * x, 8 * y, 255 - 7 * x));
    ASSERT_TRUE(painted.save(folder.filePath("painted.png")));
    // Over the reef, and under it down to beyond its lower edge.
    constexpr int EDGE = 140, OVER = 8, UNDER = 110, WIDTH = 70, HEIGHT = 60;
    const QString things =
        thingsOf(QUrl::fromLocalFile(folder.filePath("painted.png")).toString()) +
        QStringLiteral(
            "Rectangle { anchors.fill: parent; color: \"#203040\"; z: -2 }"
            "Things { x: 8; y: %1; z: 1 } Things { x: 8; y: %2; z: -1 }")
            .arg(OVER)
            .arg(UNDER);
    const auto picture = [&](const QString& body) {
        test::setTicks(5000);
        test::seedRandom(3);
        Page page(body);
        EXPECT_TRUE(page.reef() ? waitForScene(page) : page.waitFrames(1));
        return page.picture();
    };
    const QString reef =
        QStringLiteral(
            "Reef { width: 320; height: %1; cameraPos: 2; dayTime: 0; boidCount: 5;"
            "renderScale: 1; maximumFrameRate: 1000; opacity: %2 }")
            .arg(EDGE);
    const QImage bare = picture(things);
    const QImage alone = picture(reef.arg(1));
    const QImage covering = picture(things + reef.arg(1));
    const QImage veiling = picture(things + reef.arg(0.5));
    for (int x = 8; x < 300; x += 76) {
        const QRect over(x, OVER, WIDTH, HEIGHT), under(x, UNDER, WIDTH, EDGE - UNDER),
            below(x, EDGE, WIDTH, HEIGHT - under.height());
        EXPECT_GT(test::colours(bare.copy(over)), 2) << x << ": it is drawn at all";
        EXPECT_EQ(bare.copy(under), bare.copy(over).copy(0, 0, WIDTH, under.height())) << x;
        for (const QRect& outside : {over, below}) {
            EXPECT_EQ(covering.copy(outside), bare.copy(outside)) << x << ", " << outside.y();
            EXPECT_EQ(veiling.copy(outside), bare.copy(outside)) << x << ", " << outside.y();
        }
        EXPECT_EQ(covering.copy(under), alone.copy(under)) << x;
        EXPECT_LE(worstDistanceFromMean(veiling.copy(under), alone.copy(under), bare.copy(under)),
                  2)
            << x;
    }
    const QRect beside(0, OVER + HEIGHT, 320, EDGE - OVER - HEIGHT), rest(0, EDGE, 320, 100);
    EXPECT_GT(test::colours(alone.copy(beside)), 1000);
    EXPECT_EQ(covering.copy(beside), alone.copy(beside));
    EXPECT_LE(worstDistanceFromMean(veiling.copy(beside), alone.copy(beside), bare.copy(beside)),
              2);
    for (const QImage& with : {covering, veiling})
        EXPECT_EQ(with.copy(rest), bare.copy(rest));
}

TEST(ReefItem, StandsStillWhileItDoesNotRunAndSwimsOnlySeenTime) {
    test::setTicks(5000);
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    page.reef()->setRunning(false);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    const QImage stopped = page.picture();
    test::advanceTicks(600000);
    page.window().update();
    ASSERT_TRUE(page.waitFrames(1));
    EXPECT_EQ(page.picture(), stopped);
    const int frames = page.frames();
    page.reef()->setRunning(true);
    ASSERT_TRUE(until([&] { return page.frames() > frames + 1; }));
    EXPECT_LT(difference(page.picture(), stopped), 0.001) << "ten minutes were not swum";
    test::advanceTicks(900);
    ASSERT_TRUE(page.waitFrames(2));
    EXPECT_GT(difference(page.picture(), stopped), 0.05) << "it swims on";
}

TEST(ReefItem, ANewSizeKeepsThePictureWhileItStandsStill) {
    test::setTicks(5000);
    Page page(
        "Reef { objectName: \"reef\"; width: parent.width; height: 200; cameraPos: 2; dayTime: 0; "
        "renderScale: 1 }");
    ASSERT_TRUE(waitForScene(page));
    page.reef()->setRunning(false);
    ASSERT_TRUE(page.waitFrames(1));
    page.reef()->setHeight(120);
    ASSERT_TRUE(page.waitFrames(1));
    const QImage picture = page.picture();
    EXPECT_GT(test::colours(picture.copy(0, 0, 320, 120)), 1000);
    EXPECT_EQ(test::colours(picture.copy(0, 121, 320, 100)), 1);
}

/// Mean difference of the colours of two pictures, 0 to 255.
double distance(const QImage& a, const QImage& b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y), other = b.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
                   std::abs(qBlue(one) - qBlue(other));
        }
    return sum / (3.0 * a.width() * a.height());
}

/// How much neighbours in a row differ, 0 to 255: small pictures that were enlarged are smoother.
double roughness(const QImage& picture) {
    return distance(picture.copy(0, 0, picture.width() - 1, picture.height()),
                    picture.copy(1, 0, picture.width() - 1, picture.height()));
}

/// A page's still picture, and what the scene begins with.
struct BEGINNING {
    QImage still, scene;
};
BEGINNING begin(const QString& settings, const QSize& shape) {
    test::setTicks(5000);
    Page page(
        "Reef { anchors.fill: parent; running: false; renderScale: 1; fishCount: 0;"
        "boidCount: 0; birdGull: false;" +
            settings + "}",
        shape);
    EXPECT_TRUE(page.waitFrames(1));
    const QImage still = page.picture();
    page.reef()->setRunning(true);
    EXPECT_TRUE(waitForScene(page));
    return {still, page.picture()};
}

TEST(ReefItem, TheStillPictureShowsTheViewThatTheSceneBeginsWith) {
    // Most of the difference is the light on the sand, which is never the same.
    constexpr int OFF = 4;
    for (const QSize& shape : {QSize(320, 180), QSize(200, 320)})
        for (int view = 0; view < 4; ++view)
            for (const int proportions : {0, 1}) {
                const auto [still, scene] =
                    begin(QStringLiteral("dayTime: 0; cameraPos: %1; proportions: %2")
                              .arg(view)
                              .arg(proportions),
                          shape);
                const double difference = distance(still, scene);
                EXPECT_LT(difference, 12) << view << ", " << proportions;
                // A few lines higher or lower it would fit far worse.
                const int height = shape.height() - OFF;
                for (const int down : {0, OFF})
                    EXPECT_LT(2 * difference,
                              distance(still.copy(0, down, shape.width(), height),
                                       scene.copy(0, OFF - down, shape.width(), height)))
                        << view << ", " << proportions;
            }
}

TEST(ReefItem, TheStillPictureHasTheLightOfTheHour) {
    std::vector<QImage> stills;
    for (const int minute : {6 * 60 + 45, 12 * 60, 17 * 60 + 18, 22 * 60}) {
        // A time zone in which it is that late.
        const std::time_t now = std::time(nullptr);
        const int behind = (static_cast<int>(now / 60 % 1440) - minute + 1440) % 1440;
        qputenv("TZ", QStringLiteral("TEST%1:%2").arg(behind / 60).arg(behind % 60).toLatin1());
        tzset();
        const auto [still, scene] = begin("dayTime: 1", {320, 200});
        EXPECT_LT(distance(still, scene), 15) << minute;
        for (const QImage& other : stills)
            EXPECT_GT(distance(other, scene), 15) << minute;
        stills.push_back(still);
    }
    qunsetenv("TZ");
    tzset();
}

TEST(ReefItem, TheStillPictureFadesAway) {
    test::setTicks(5000);
    // The scene looks elsewhere than the picture before it.
    Page page("Reef { anchors.fill: parent; dayTime: 0; running: false; renderScale: 1 }");
    ASSERT_TRUE(page.waitFrames(1));
    const QImage still = page.picture();
    page.reef()->set_cameraPos(1);
    page.reef()->setRunning(true);
    std::vector<double> differences;
    for (int i = 0; i < 12; ++i) {
        ASSERT_TRUE(page.waitFrames(1));
        differences.push_back(distance(page.picture(), still));
    }
    EXPECT_GT(differences.back(), 30);
    EXPECT_LT(differences.front(), 0.6 * differences.back());
    for (size_t i = 1; i < differences.size(); ++i)
        EXPECT_LT(differences[i] - differences[i - 1], 0.6 * differences.back()) << i;
}

TEST(ReefItem, DrawsAtAFractionOfTheResolutionWhenAsked) {
    test::setTicks(5000);
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    page.reef()->setRunning(false);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    const QImage whole = page.picture();
    EXPECT_EQ(page.reef()->currentScale(), 1);
    for (const double scale : {0.4, 1.0, 0.7}) {
        page.reef()->setRenderScale(scale);
        ASSERT_TRUE(until([&] { return page.reef()->currentScale() == scale; }));
        ASSERT_TRUE(page.waitFrames(1));
        const QImage picture = page.picture();
        if (scale == 1) {
            EXPECT_EQ(picture, whole);
            continue;
        }
        EXPECT_EQ(picture.size(), whole.size());
        EXPECT_LT(distance(picture, whole), 12) << scale;
        EXPECT_LT(roughness(picture), 0.8 * roughness(whole)) << scale;
    }
}

TEST(ReefItem, ASoftwareRendererDrawsWhatItCanAfford) {
    // So many pixels take such a renderer far longer than a frame may.
    Page page("Reef { anchors.fill: parent; cameraPos: 2; dayTime: 0 }", {2560, 1600});
    ASSERT_TRUE(until([&] { return page.reef()->currentScale() < 1; }));
    EXPECT_GE(page.reef()->currentScale(), 0.4);
    page.reef()->setRenderScale(1);
    ASSERT_TRUE(until([&] { return page.reef()->currentScale() == 1; }));
    page.reef()->setRenderScale(0);
    ASSERT_TRUE(until([&] { return page.reef()->currentScale() < 1; }));
    // Samples are for looking closely.
    page.reef()->setSamples(2);
    ASSERT_TRUE(until([&] { return page.reef()->currentScale() == 1; }));
}

TEST(ReefItem, GraphicsHardwareDrawsEveryPixelSharply) {
    constexpr char PRETENDED[] = "force_gl_renderer=Pretended graphics hardware";
    constexpr char PICTURE[] = "ATOLLIA_TEST_PICTURE";
    if (qEnvironmentVariableIsEmpty(PICTURE)) {
        const QTemporaryDir folder;
        // The software renderer keeps the name that it is given, which a leak sanitizer would
        // report: a byte of a strdup of its own.
        QFile driver(folder.filePath("driver.supp"));
        ASSERT_TRUE(driver.open(QIODevice::WriteOnly) && driver.write("leak:swrast_dri.so\n"));
        driver.close();
        const std::string forgiven =
            "LSAN_OPTIONS=print_suppressions=0:suppressions=" + driver.fileName().toStdString();
        const auto picture = [&](const char* renderer, const char* name) {
            test::Process again(
                {QCoreApplication::applicationFilePath().toStdString(),
                 "--gtest_filter=ReefItem.GraphicsHardware*"},
                {renderer, std::string(PICTURE) + "=" + folder.filePath(name).toStdString(),
                 forgiven});
            const test::END end = again.wait(300000);
            EXPECT_EQ(end.status, 0) << again.output() << again.errors();
            return QImage(folder.filePath(name));
        };
        const QImage hard = picture(PRETENDED, "hard.png");
        const QImage soft = picture("force_gl_renderer", "soft.png");
        ASSERT_FALSE(hard.isNull() || soft.isNull());
        EXPECT_GT(distance(hard, soft), 0.1) << "seen at a slant it is filtered better";
        EXPECT_LT(distance(hard, soft), 12);
        return;
    }
    test::setTicks(5000);
    test::seedRandom(3);
    Page page(
        "Reef { anchors.fill: parent; cameraPos: 3; dayTime: 0; samples: 0; boidCount: 0;"
        "fishCount: 0; birdGull: false }",
        {1600, 1000});
    if (qEnvironmentVariableIsEmpty("force_gl_renderer"))
        page.reef()->setRenderScale(1);
    // Long enough for what is too slow to be noticed.
    ASSERT_TRUE(page.waitFrames(12));
    EXPECT_EQ(page.reef()->currentScale(), 1);
    ASSERT_TRUE(page.picture().save(qEnvironmentVariable(PICTURE)));
}

TEST(ReefItem, DrawsNothingThatIsNotVisible) {
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
    page.reef()->setVisible(false);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    page.reef()->setVisible(true);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
    page.window().hide();
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    page.window().show();
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
}

TEST(ReefItem, StandsStillWhileAnotherWindowCoversItsOwn) {
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
    test::Client other(qEnvironmentVariable("DISPLAY").toStdString());
    const xcb_window_t part = other.window(0, 0, 800, 600);
    const auto place = [&](std::uint32_t y, std::uint32_t stacking) {
        const std::uint32_t values[] = {y, stacking};
        xcb_configure_window(other.connection(), part,
                             XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_STACK_MODE, values);
        xcb_flush(other.connection());
    };
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    const int frames = page.frames();
    const QDeadlineTimer second(1000);
    until([&] { return second.hasExpired(); });
    EXPECT_EQ(page.frames(), frames);
    place(100, XCB_STACK_MODE_ABOVE);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; })) << "a part of it is seen";
    place(0, XCB_STACK_MODE_ABOVE);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    place(0, XCB_STACK_MODE_BELOW);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));

    // A window that was away meanwhile.
    page.window().hide();
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
    page.window().show();
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
    place(0, XCB_STACK_MODE_ABOVE);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));

    // Another window of the server's for the same page, above the one that covered the first.
    page.window().destroy();
    page.window().show();
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() > 0; }));
    place(0, XCB_STACK_MODE_ABOVE);
    ASSERT_TRUE(until([&] { return page.reef()->frameRate() == 0; }));
}

TEST(ReefItem, SettingsTakeEffectWhileItRuns) {
    test::setTicks(5000);
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    const QImage middle = page.picture();
    page.reef()->set_cameraPos(1);
    ASSERT_TRUE(page.waitFrames(2));
    const QImage top = page.picture();
    EXPECT_GT(difference(top, middle), 0.5);
    page.reef()->set_skyType(1);
    ASSERT_TRUE(page.waitFrames(2));
    const QImage clear = page.picture();
    EXPECT_GT(difference(clear, top), 0.2);
    EXPECT_GT(test::colours(clear), 1000) << "no flash";
}

TEST(ReefItem, DrawsAsOftenAsItMayAndNoOftener) {
    constexpr int FRAMES = 40;
    Page page(FILLING);
    ASSERT_TRUE(waitForScene(page));
    const double refresh = page.window().screen()->refreshRate();
    ASSERT_GT(refresh, 30);
    const ItemClock clock;
    const struct {
        double wanted, limit;
    } rates[] = {{0, 30}, {1000, refresh}, {10, 10}, {45, 45}, {0, 30}};
    for (const auto& rate : rates) {
        page.reef()->setMaximumFrameRate(rate.wanted);
        // Nor does it make up for pictures that it missed.
        ItemClock::advance(5);
        ASSERT_TRUE(page.waitFrames(4));
        const double since = ItemClock::seconds();
        const int before = page.frames();
        ASSERT_TRUE(page.waitFrames(FRAMES));
        const double seconds = ItemClock::seconds() - since;
        EXPECT_NEAR((page.frames() - before) / seconds, rate.limit, 0.08 * rate.limit)
            << rate.wanted;
    }
}

/// Bytes that the process has asked for and not given back.
size_t bytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

TEST(ReefItem, TwoHundredCreationsAndDestructionsLeaveNothing) {
    Page page(
        "Loader { objectName: \"loader\"; anchors.fill: parent; sourceComponent: Reef { "
        "boidCount: 0; fishCount: 0 } }",
        {64, 48});
    auto* loader = page.item("loader");
    constexpr int WARM = 20, HALF = 110, ALL = 200;
    size_t warm = 0, half = 0;
    for (int round = 0; round < ALL; ++round) {
        loader->setProperty("active", true);
        ASSERT_TRUE(page.waitFrames(3)) << round;
        loader->setProperty("active", false);
        ASSERT_TRUE(page.waitFrames(1)) << round;
        // The scene goes with the first picture without it; that may have been the last with it.
        page.window().update();
        ASSERT_TRUE(page.waitFrames(1)) << round;
        if (round == WARM)
            warm = bytesInUse();
        if (round == HALF)
            half = bytesInUse();
    }
    // A scene takes tens of MiB; a thousandth of that lost each time would be a megabyte in each
    // half. A table of the renderer's that grows once, by two, is in one of them only.
    const auto grown = [](size_t from, size_t to) { return to > from ? to - from : 0; };
    EXPECT_LT(std::min(grown(warm, half), grown(half, bytesInUse())), 1000000U);
}

TEST(ReefItem, WindowsComeAndGo) {
    for (int round = 0; round < 5; ++round) {
        Page page(FILLING, {160, 120});
        ASSERT_TRUE(waitForScene(page));
    }
}

TEST(ReefItem, GoesOnWhenTheGraphicsAreLostAndFoundAgain) {
    // Qt's render loop of two threads makes a QOffscreenSurface on this one with every context, and
    // forgets that of the context before; some of what it lets go of its graphics with, too.
    auto of_the_toolkit = std::make_unique<ForgivenLeaks>();
    Page page(FILLING);
    page.window().setPersistentSceneGraph(false);
    page.window().setPersistentOpenGLContext(false);
    ASSERT_TRUE(waitForScene(page));
    page.window().hide();
    page.window().releaseResources();
    of_the_toolkit.reset();
    page.window().show();
    ASSERT_TRUE(page.waitFrames(4));
    EXPECT_GT(test::colours(page.picture()), 1000);
}

TEST(ReefItem, TwoWindowsAtOnceEachWithItsThread) {
    Page first(FILLING), second(FILLING);
    ASSERT_TRUE(waitForScene(first));
    ASSERT_TRUE(waitForScene(second));
    first.reef()->setMuted(false);
    second.reef()->setMuted(false);
    for (int round = 0; round < 5; ++round) {
        test::advanceTicks(50);
        ASSERT_TRUE(first.waitFrames(2));
        ASSERT_TRUE(second.waitFrames(2));
    }
    first.reef()->set_boidCount(20);
    second.reef()->set_skyType(1);
    ASSERT_TRUE(first.waitFrames(2));
    ASSERT_TRUE(second.waitFrames(2));
    EXPECT_GT(test::colours(first.picture()), 1000);
    EXPECT_GT(test::colours(second.picture()), 1000);
}

/// What is heard goes into a file, so much at once as the design's device takes, every so many
/// milliseconds. A reef that sounds.
class ReefSounds : public testing::Test {
protected:
    void play(int turn) {
        ASSERT_TRUE(folder.isValid());
        qputenv("SDL_AUDIODRIVER", "disk");
        qputenv("SDL_DISKAUDIODELAY", QByteArray::number(turn));
        qputenv("SDL_DISKAUDIOFILE", file().toUtf8());
        page.emplace(FILLING);
        ASSERT_TRUE(waitForScene(*page));
        page->reef()->setMuted(false);
        ASSERT_TRUE(until([&] { return QFile::exists(file()); }));
    }
    QString file() const { return folder.filePath("heard"); }
    /// How loud it was from the first one of these samples before the last that was heard to the
    /// second: the root of the mean square.
    double loudness(int from, int to) const {
        const auto samples = heard();
        const auto end = lastOf(samples);
        double sum = 0;
        for (auto i = end - from; i != end - to; ++i)
            sum += 1.0 * *i * *i;
        return std::sqrt(sum / (from - to));
    }
    bool isLoud() const {
        const auto samples = heard();
        return samples.size() > 8 * TURN && lastOf(samples) > samples.end() - 100;
    }
    bool isSilent() const { return silence() > TURN / 2; }
    /// So many samples have been played, and so many of the last ones were silent.
    qint64 played() const { return QFile(file()).size() / 2; }
    qint64 silence() const {
        const auto samples = heard();
        return samples.end() - lastOf(samples);
    }
    /// As `until`, while the scenes' time passes with their pictures: volumes change little by
    /// little.
    bool untilInTime(const std::function<bool()>& condition) {
        int seen = page->frames();
        return until([&] {
            if (page->frames() != seen)
                test::advanceTicks(100);
            seen = page->frames();
            return condition();
        });
    }
    /// Whether only silence is played from now on.
    bool staysSilent() {
        const qint64 before = played();
        return untilInTime([&] { return played() > before + 4 * TURN; }) && silence() > 4 * TURN;
    }
    void expectFaded() const {
        // The last 15 milliseconds of the 60, and 60 before them all.
        EXPECT_LT(loudness(661, 0), 0.4 * loudness(5292, 2646));
    }

    static constexpr int TURN = 8192;  ///< samples, left and right in turn
    QTemporaryDir folder;
    std::optional<Page> page;

private:
    std::vector<qint16> heard() const {
        QFile in(file());
        EXPECT_TRUE(in.open(QFile::ReadOnly));
        const QByteArray bytes = in.readAll();
        std::vector<qint16> samples(bytes.size() / 2);
        if (!samples.empty())
            std::memcpy(samples.data(), bytes.constData(), samples.size() * 2);
        return samples;
    }
    /// Behind the last sample that is not silent.
    static std::vector<qint16>::const_iterator lastOf(const std::vector<qint16>& samples) {
        return std::find_if(samples.rbegin(), samples.rend(), [](int s) { return s != 0; }).base();
    }
};

TEST_F(ReefSounds, FadeWhenTheyAreMuted) {
    play(10);
    ASSERT_TRUE(until([&] { return isLoud(); }));
    page->reef()->setMuted(true);
    ASSERT_TRUE(until([&] { return isSilent(); }));
    expectFaded();
}

TEST_F(ReefSounds, FadeWhenNobodySeesTheReef) {
    play(10);
    ASSERT_TRUE(until([&] { return isLoud(); }));
    page->window().hide();
    ASSERT_TRUE(until([&] { return isSilent(); }));
    expectFaded();
    page->window().show();
    EXPECT_TRUE(until([&] { return isLoud(); }));
}

TEST_F(ReefSounds, ComeFromOneReefUntilItIsMutedOrGoesAndThenFromTheOther) {
    play(10);
    ASSERT_TRUE(until([&] { return isLoud(); }));
    // What is heard while the one that sounds has nothing to say would be the other one.
    page->reef()->set_volume(0);
    ASSERT_TRUE(untilInTime([&] { return isSilent(); }));
    page->window().setPosition(400, 0);  // beside the other one, which would cover it
    std::optional<Page> other(std::in_place, FILLING);
    ASSERT_TRUE(waitForScene(*other));
    other->reef()->setMuted(false);
    ASSERT_TRUE(other->waitFrames(4));
    EXPECT_TRUE(staysSilent());
    page->reef()->setMuted(true);
    EXPECT_TRUE(untilInTime([&] { return isLoud(); }));

    other->reef()->set_volume(0);
    ASSERT_TRUE(untilInTime([&] { return isSilent(); }));
    page->reef()->set_volume(100);
    page->reef()->setMuted(false);
    ASSERT_TRUE(page->waitFrames(4));
    EXPECT_TRUE(staysSilent());
    other.reset();
    EXPECT_TRUE(untilInTime([&] { return isLoud(); }));
}

TEST_F(ReefSounds, ComeBackAsLoudAsTheyWere) {
    play(10);
    page->reef()->set_volume(0);
    ASSERT_TRUE(until([&] { return played() > 0; }));
    ASSERT_TRUE(untilInTime([&] { return isSilent(); }));
    page->reef()->setMuted(true);
    ASSERT_TRUE(page->waitFrames(4));
    ASSERT_TRUE(QFile::remove(file()));
    page->reef()->setMuted(false);
    ASSERT_TRUE(until([&] { return QFile::exists(file()); }));
    ASSERT_TRUE(until([&] { return played() > 8 * TURN; }));
    EXPECT_EQ(silence(), played());
}

TEST_F(ReefSounds, AreMutedWithoutHoldingUpThePicture) {
    constexpr int NEVER = 3600 * 1000;
    play(NEVER);
    page->reef()->setMuted(true);
    EXPECT_TRUE(page->waitFrames(4));
}

TEST(ReefItem, WithACoreProfileThereIsAStillPictureAndTheReason) {
    Page page(FILLING, {320, 240}, QSurfaceFormat::CoreProfile);
    ASSERT_TRUE(until([&] { return !page.reef()->problem().isEmpty(); }));
    EXPECT_TRUE(page.reef()->problem().contains("core profile"));
    EXPECT_FALSE(page.reef()->problem().contains('\n'));
    EXPECT_GT(test::colours(page.picture()), 1000);
    EXPECT_EQ(page.reef()->frameRate(), 0);
}

TEST(ReefItem, WithoutOpenGLThereIsAStillPictureAndTheReason) {
    if (qgetenv("QT_QUICK_BACKEND") != "software") {
        // The backend is one for the whole process.
        test::Process again({QCoreApplication::applicationFilePath().toStdString(),
                             "--gtest_filter=ReefItem.WithoutOpenGL*"},
                            {"QT_QUICK_BACKEND=software"});
        const test::END end = again.wait();
        EXPECT_TRUE(end.ended);
        EXPECT_EQ(end.status, 0) << again.output();
        EXPECT_NE(again.output().find("Reef: "), std::string::npos);
        return;
    }
    Page page(FILLING);
    ASSERT_TRUE(until([&] { return !page.reef()->problem().isEmpty(); }));
    EXPECT_TRUE(page.reef()->problem().contains("OpenGL"));
    EXPECT_GT(test::colours(page.picture()), 1000);
}

}  // namespace
