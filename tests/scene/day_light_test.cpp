// The table of the day's light: noon, its evenness, the sun's hours.

#include "DayLight.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "LocalTime.h"

namespace {

constexpr int DAY = 24 * 60;

std::array<float, 26> numbers(const DAY_LIGHT& l) {
    return {l.above.r,   l.above.g,   l.above.b,   l.under.r,  l.under.g, l.under.b, l.sea.r,
            l.sea.g,     l.sea.b,     l.glow.r,    l.glow.g,   l.glow.b,  l.mist,    l.caustics,
            l.sparkle.r, l.sparkle.g, l.sparkle.b, l.glints,   l.path,    l.evening, l.night,
            l.gull,      l.pace,      l.depth,     l.loudness, 0};
}

TEST(DayLight, NoonIsAsPainted) {
    for (const double hour : {10.0, 12.0, 15.0}) {
        const DAY_LIGHT noon = lightAt(hour);
        for (const TINT& tint : {noon.above, noon.under, noon.sea, noon.glow, noon.sparkle}) {
            EXPECT_EQ(tint.r, 1);
            EXPECT_EQ(tint.g, 1);
            EXPECT_EQ(tint.b, 1);
        }
        for (const float one : {noon.caustics, noon.glints, noon.gull, noon.pace, noon.loudness})
            EXPECT_EQ(one, 1);
        for (const float none : {noon.path, noon.evening, noon.night, noon.mist, noon.depth})
            EXPECT_EQ(none, 0);
    }
}

TEST(DayLight, NothingJumpsFromMinuteToMinute) {
    for (int minute = 0; minute < DAY; ++minute) {
        const auto before = numbers(lightAt(minute / 60.0));
        const auto after = numbers(lightAt((minute + 1) / 60.0));
        for (size_t i = 0; i < before.size(); ++i)
            EXPECT_NEAR(before[i], after[i], 0.025) << "number " << i << " at minute " << minute;
    }
}

TEST(DayLight, DaysFollowEachOther) {
    for (const double hour : {-24.0, 24.0, 48.0})
        EXPECT_EQ(numbers(lightAt(5.5 + hour)), numbers(lightAt(5.5)));
    EXPECT_EQ(numbers(lightAt(23.999)), numbers(lightAt(0.001))) << "night is still at midnight";
}

TEST(DayLight, AllStaysInRange) {
    for (int minute = 0; minute < DAY; ++minute) {
        const DAY_LIGHT light = lightAt(minute / 60.0);
        for (const float number : numbers(light)) {
            EXPECT_GE(number, 0) << minute;
            EXPECT_LE(number, 1) << minute;
        }
        EXPECT_TRUE(light.night == 0 || light.evening == 1)
            << "the night's pictures lie over the evening's, minute " << minute;
        EXPECT_TRUE(light.night == 0 || light.mist == 0) << "no mist over the night's, " << minute;
    }
}

TEST(DayLight, ItDarkensFromNoonToNight) {
    double last = 1e9;
    for (double hour = 12; hour <= 22; hour += 0.05) {
        const DAY_LIGHT light = lightAt(hour);
        const double sum =
            light.under.r + light.under.g + light.under.b + light.sea.r + light.sea.g + light.sea.b;
        EXPECT_LE(sum, last + 1e-5) << hour;
        last = sum;
    }
}

TEST(SunHour, FollowsTheClockWithoutALatitude) {
    for (int minute = 0; minute < DAY; minute += 7)
        EXPECT_DOUBLE_EQ(sunHour(minute, 0, 172), minute / 60.0);
}

TEST(SunHour, KnowsTheSeasons) {
    // Midsummer at 52 degrees north: the sun rises a quarter to four, by the sun's own noon.
    EXPECT_NEAR(sunHour(3.75 * 60, 52, 171), SUNRISE, 0.15);
    EXPECT_NEAR(sunHour(8.1 * 60, 52, 354), SUNRISE, 0.15);
    EXPECT_NEAR(sunHour(8.1 * 60, -52, 171), SUNRISE, 0.15) << "winter in the south";
    EXPECT_NEAR(sunHour(18 * 60, 52, 80), SUNSET, 0.15) << "equinox";
    EXPECT_DOUBLE_EQ(sunHour(12 * 60, 52, 171), NOON);
}

TEST(SunHour, RunsEvenlyAnywhereOnAnyDay) {
    for (const int latitude : {-90, -66, -30, 1, 45, 67, 90})
        for (int day = 0; day < 366; day += 61)
            for (int minute = 0; minute < DAY; ++minute) {
                const double step = std::remainder(
                    sunHour(minute + 1, latitude, day) - sunHour(minute, latitude, day), 24.0);
                EXPECT_GT(step, 0) << latitude << " " << day << " " << minute;
                EXPECT_LT(step, 0.06) << latitude << " " << day << " " << minute;
            }
}

TEST(LocalTime, QuietHoursMayGoOverMidnight) {
    const auto at = [](double hour) { return LOCAL_TIME{hour * 60, 0}; };
    EXPECT_TRUE(isWithinHours(at(23), 22, 7));
    EXPECT_TRUE(isWithinHours(at(6.99), 22, 7));
    EXPECT_FALSE(isWithinHours(at(7), 22, 7));
    EXPECT_TRUE(isWithinHours(at(13.5), 13, 14));
    EXPECT_FALSE(isWithinHours(at(14), 13, 14));
    EXPECT_FALSE(isWithinHours(at(8), 8, 8)) << "never";
}

TEST(LocalTime, TheSystemsIsOne) {
    const LOCAL_TIME now = readLocalTime();
    EXPECT_GE(now.minute, 0);
    EXPECT_LT(now.minute, DAY + 1);
    EXPECT_GE(now.day, 0);
    EXPECT_LE(now.day, 365);
}

TEST(DayChoice, IsNoonTheClockOrATime) {
    EXPECT_FALSE(parseDayChoice("noon")->hours);
    EXPECT_TRUE(parseDayChoice("clock")->hours);
    EXPECT_FALSE(parseDayChoice("clock")->minute);
    EXPECT_EQ(parseDayChoice("18:15")->minute, 18 * 60 + 15);
    EXPECT_EQ(parseDayChoice("6:30")->minute, 6 * 60 + 30);
    EXPECT_EQ(parseDayChoice("00:00")->minute, 0);
    for (const char* bad : {"", ":", "6", "24:00", "12:60", "1:5", "12:345", "-1:00", "a:30",
                            "1a:30", "12:3x", "012:30", "12:30 ", "Noon"})
        EXPECT_FALSE(parseDayChoice(bad)) << bad;
}

}  // namespace
