// Settings of today's screens and days, beside those of SaverSettings: every one is off, or as the
// saver always was, unless the settings file or a host asks for more.
#pragma once

#include <array>

/// A new record holds the saver's defaults; other hosts of the scene may begin with others.
struct EXTRA_SETTINGS {
    int proportions = 0;  ///< 0 stretched to the window, 1 true at every aspect
    int daytime = 0;      ///< 0 always noon, 1 the hours of the clock
    int latitude = 0;     ///< degrees north, for sunrise and sunset; 0: at 6 and 18 all year
    int volume = 100;     ///< loudness of all sounds, percent
    int quiet_from = 0;   ///< hour from which there is no sound; the same as quiet_to: never quiet
    int quiet_to = 0;     ///< hour from which there is sound again
};

/// One key of the settings file, its field and the range that it is kept in.
struct EXTRA_SETTING {
    const char* key;
    int EXTRA_SETTINGS::*field;
    int low, high;
};

inline constexpr std::array<EXTRA_SETTING, 6> extra_settings = {{
    {"Proportions", &EXTRA_SETTINGS::proportions, 0, 1},
    {"DayTime", &EXTRA_SETTINGS::daytime, 0, 1},
    {"Latitude", &EXTRA_SETTINGS::latitude, -90, 90},
    {"Volume", &EXTRA_SETTINGS::volume, 0, 100},
    {"QuietFrom", &EXTRA_SETTINGS::quiet_from, 0, 23},
    {"QuietTo", &EXTRA_SETTINGS::quiet_to, 0, 23},
}};
