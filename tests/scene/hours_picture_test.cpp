// A day drawn for real, minute by minute: noon to the pixel, and no jump anywhere.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>

#include "Marivista.h"
#include "offscreen.h"
#include "support/clock.h"

namespace {

constexpr int WIDTH = 160, HEIGHT = 118;
/// Camera positions of the settings.
constexpr int TOP = 1, BOTTOM = 4;

using Mean = std::array<double, 3>;

Mean mean(const Picture& picture) {
    Mean sum{};
    for (size_t i = 0; i < picture.rgb.size(); ++i)
        sum[i % 3] += picture.rgb[i];
    for (double& channel : sum)
        channel /= static_cast<double>(picture.rgb.size()) / 3;
    return sum;
}

/// A scene in which nothing but the light changes.
class StillDay {
public:
    StillDay(int view, int sky, bool hours) : context(WIDTH, HEIGHT) {
        test::setTicks(1000);
        srand(1);
        scene = std::make_unique<CMarivistaScreensaver>();
        scene->loadSettings(WIDTH, HEIGHT);
        SaverSettings& settings = scene->wantedwssettings;
        settings.soundOn = false;
        settings.bird_gull = false;
        settings.camerapos = view;
        settings.skytype = sky;
        scene->extras.daytime = hours;
        scene->localTime = [this] { return LOCAL_TIME{minute, 0}; };
        srand(1);
        scene->buildWorld();
    }
    ~StillDay() { scene->cleanup(); }

    Picture at(double at_minute) {
        minute = at_minute;
        scene->skipUnseenTime();
        scene->tick();
        return context.read();
    }

private:
    OffscreenContext context;
    double minute = 720;
    std::unique_ptr<CMarivistaScreensaver> scene;
};

class DayPicture : public testing::TestWithParam<std::array<int, 2>> {};

TEST_P(DayPicture, NoonIsNoonToThePixel) {
    const auto [view, sky] = GetParam();
    const Picture without = StillDay(view, sky, false).at(720);
    StillDay day(view, sky, true);
    EXPECT_EQ(day.at(720).rgb, without.rgb);
    EXPECT_NE(day.at(19 * 60).rgb, without.rgb);
    EXPECT_EQ(day.at(720).rgb, without.rgb) << "again after the evening";
}

TEST_P(DayPicture, NoChannelJumps) {
    const auto [view, sky] = GetParam();
    StillDay day(view, sky, true);
    // Sunrise and sunset may be fast, an hour and a half before and after.
    const auto limit = [](int minute) {
        const bool fast = std::abs(minute - 360) < 90 || std::abs(minute - 1080) < 90;
        return fast ? 4.0 : 1.0;
    };
    Mean last = mean(day.at(0));
    for (int minute = 1; minute <= 1440; ++minute) {
        const Mean now = mean(day.at(minute % 1440));
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(now[c], last[c], limit(minute)) << "channel " << c << ", " << minute;
        last = now;
    }
}

TEST_P(DayPicture, MorningsOnlyBrightenAndEveningsOnlyDarken) {
    const auto [view, sky] = GetParam();
    StillDay day(view, sky, true);
    const auto light = [&](int minute) {
        const Mean now = mean(day.at(minute));
        return 0.3 * now[0] + 0.59 * now[1] + 0.11 * now[2];
    };
    for (const auto& [from, to] : {std::pair{12 * 60, 21 * 60}, std::pair{12 * 60, 3 * 60}}) {
        double least = 1e9;
        for (int minute = from; minute != to; minute += from < to ? 1 : -1) {
            const double now = light(minute);
            EXPECT_LT(now, least + 0.3) << minute;
            least = std::min(least, now);
        }
    }
}

TEST_P(DayPicture, NightCanBeRead) {
    const auto [view, sky] = GetParam();
    const Mean night = mean(StillDay(view, sky, true).at(22 * 60));
    EXPECT_GT(night[2], 50);
    EXPECT_GT(night[2], 1.5 * night[0]) << "a moon's light looks blue";
    EXPECT_LT(night[1], 100);
}

INSTANTIATE_TEST_SUITE_P(Views, DayPicture,
                         testing::Values(std::array<int, 2>{TOP, 0}, std::array<int, 2>{TOP, 1},
                                         std::array<int, 2>{BOTTOM, 0}));

}  // namespace
