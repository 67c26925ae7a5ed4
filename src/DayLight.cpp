#include "DayLight.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr double PI = 3.14159265358979;

struct ROW {
    double hour;  // of the sun
    DAY_LIGHT light;
};

// Between two rows the light blends evenly. From the last the day goes on to the first.
// clang-format off
constexpr ROW rows[] = {
    //        above           under           sea             glow            mist  caus  sparkle         glin path even nigt gull pace dept loud
    // night
    { 4.3, {{.20f,.26f,.40f},{.19f,.35f,.53f},{.15f,.27f,.43f},{.36f,.35f,.49f}, 0.f, .70f,{.80f,.90f,1.f},  1.f, 1.f, 1.f, 1.f, 0.f,.55f,.9f,.45f}},
    // first light
    { 5.2, {{.42f,.44f,.56f},{.34f,.46f,.58f},{.38f,.44f,.56f},{.58f,.60f,.72f}, 0.f,  .20f,{.80f,.84f,.94f},.30f, 1.f, 1.f, 0.f, 0.f, .7f,.6f,.6f}},
    // sunrise
    { 6.0, {{.86f,.82f,.82f},{.72f,.80f,.85f},{.78f,.82f,.87f},{.88f,.88f,.93f}, .30f, .40f,{1.f,.88f,.78f}, .80f, 1.f, 1.f, 0.f, 1.f,.85f,.3f,.8f}},
    // morning
    {6.75, {{.97f,.95f,.94f},{.92f,.96f,.97f},{.94f,.97f,.98f},{.86f,.91f,.96f}, .24f, .80f,{1.f,.95f,.88f}, .90f, 1.f, 1.f, 0.f, 1.f, 1.f, 0.f, 1.f}},
    // noon
    { 7.5, {{1,1,1},        {1,1,1},        {1,1,1},        {1,1,1},           0,    1,  {1,1,1},          1,   0,   0,   0,   1,   1,   0,   1}},
    {16.5, {{1,1,1},        {1,1,1},        {1,1,1},        {1,1,1},           0,    1,  {1,1,1},          1,   0,   0,   0,   1,   1,   0,   1}},
    // evening gold
    {17.3, {{1.f,.86f,.66f},{1.f,.94f,.86f},{.86f,.80f,.78f},{1.f,1.f,1.f},   0.f,  .80f,{1.f,.82f,.46f}, 1.f, 1.f, 1.f, 0.f, 1.f, 1.f, 0.f, 1.f}},
    // sunset
    {18.2, {{.86f,.66f,.56f},{.86f,.75f,.68f},{.80f,.56f,.58f},{.92f,.89f,.95f}, 0.f, .50f,{1.f,.70f,.42f}, 1.f, 1.f, 1.f, 0.f, 1.f,.85f,.3f,.8f}},
    // dusk
    {19.1, {{.42f,.38f,.50f},{.42f,.45f,.58f},{.42f,.36f,.48f},{.60f,.50f,.60f}, 0.f, .20f,{.86f,.66f,.64f},.35f, 1.f, 1.f,.32f, 0.f, .7f,.6f,.6f}},
    // night
    {20.4, {{.20f,.26f,.40f},{.19f,.35f,.53f},{.15f,.27f,.43f},{.36f,.35f,.49f}, 0.f, .70f,{.80f,.90f,1.f},  1.f, 1.f, 1.f, 1.f, 0.f,.55f,.9f,.45f}},
};
// clang-format on

float mix(float a, float b, float t) { return a + (b - a) * t; }
TINT mix(TINT a, TINT b, float t) { return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t)}; }

double modulo(double value, double length) { return value - length * std::floor(value / length); }

}  // namespace

DAY_LIGHT lightAt(double sun_hour) {
    const ROW* const last = std::prev(std::end(rows));
    const double hour = modulo(sun_hour, 24);
    const ROW* after = std::upper_bound(std::begin(rows), std::end(rows), hour,
                                        [](double h, const ROW& row) { return h < row.hour; });
    const ROW& from = after == std::begin(rows) ? *last : after[-1];
    const ROW& to = after == std::end(rows) ? rows[0] : *after;
    const auto t =
        static_cast<float>(modulo(hour - from.hour, 24) / modulo(to.hour - from.hour, 24));
    const DAY_LIGHT &a = from.light, &b = to.light;
    return {
        mix(a.above, b.above, t),     mix(a.under, b.under, t),   mix(a.sea, b.sea, t),
        mix(a.glow, b.glow, t),       mix(a.mist, b.mist, t),     mix(a.caustics, b.caustics, t),
        mix(a.sparkle, b.sparkle, t), mix(a.glints, b.glints, t), mix(a.path, b.path, t),
        mix(a.evening, b.evening, t), mix(a.night, b.night, t),   mix(a.gull, b.gull, t),
        mix(a.pace, b.pace, t),       mix(a.depth, b.depth, t),   mix(a.loudness, b.loudness, t)};
}

double sunHour(double minute_of_day, int latitude, int day_of_year) {
    const double hour = modulo(minute_of_day / 60, 24);
    if (latitude == 0)
        return hour;
    const double tilt = -23.44 * std::cos((day_of_year + 10) * 2 * PI / 365.25) * PI / 180;
    const double cosine = -std::tan(latitude * PI / 180) * std::tan(tilt);
    const double half = std::clamp(std::acos(std::clamp(cosine, -1.0, 1.0)) * 12 / PI, 2.0, 10.0);
    const double from_noon = hour - NOON;
    if (std::fabs(from_noon) <= half)
        return NOON + from_noon * 6 / half;
    const double after_dark = std::fabs(from_noon) - half;
    return NOON + std::copysign(6 + after_dark * 6 / (12 - half), from_noon);
}
