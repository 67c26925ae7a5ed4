// The light of the day: what the scene looks like at every hour, as one table. Pure functions that
// know neither GL nor a clock.
#pragma once

/// A factor for each channel, 1 for what is painted for noon.
struct TINT {
    float r, g, b;
};

/// The scene at one moment. Everything is 1, or 0 for shares of other pictures, at noon.
struct DAY_LIGHT {
    TINT above;      ///< on what flies over the water
    TINT under;      ///< on floor, corals and fish
    TINT sea;        ///< on surface, fog and fader, and the sea out to the horizon
    TINT glow;       ///< on the evening's pictures: sky, island and rock
    float mist;      ///< pale haze over the sky; none while night is more than 0
    float caustics;  ///< contrast of the caustics
    TINT sparkle;    ///< colour of the glints
    float glints;    ///< their strength
    float path;      ///< 0 glints all over, 1 only on the path below a low light
    float evening;   ///< share of the evening's pictures over those of noon
    float night;     ///< share of the night's pictures over both
    float gull;      ///< 1 about, 0 gone to roost
    float pace;      ///< of the fish
    float depth;     ///< how much lower the school swims, world units
    float loudness;  ///< of the water
};

/// Hours of the sun: 6 sunrise, 12 noon, 18 sunset, whatever clock and season say.
constexpr double SUNRISE = 6, NOON = 12, SUNSET = 18;
/// The hours at which the evening's and the night's pictures are seen as they are painted.
constexpr double EVENING_PICTURE = 17.3, NIGHT_PICTURE = 22;

/// What the pictures of the evening's and the night's sky cover, in degrees right of straight ahead
/// and above the horizon. Row 0 of a picture is its top.
struct SKY_AHEAD {
    static constexpr float LEFT = -46, RIGHT = 46, TOP = 40, BOTTOM = -13;
    /// Where the low sun and the moon stand.
    static constexpr float LIGHT = -15;
};

/// The light at an hour of the sun, of any day: hours repeat every 24.
DAY_LIGHT lightAt(double sun_hour);

/// The hour of the sun, 0 to 24, at so many minutes after midnight. A latitude of 0 has sunrise at
/// 6 and sunset at 18 all year; elsewhere they are those of the day of the year, 0 to 365, where
/// the sun does rise and set, and never nearer than two hours to noon or midnight.
double sunHour(double minute_of_day, int latitude, int day_of_year);
