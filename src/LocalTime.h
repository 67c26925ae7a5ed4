// The clock on the wall. Whoever needs it keeps a function of this kind, so that another one can
// take its place: a moment that the user chose, or a test's.
#pragma once

#include <optional>
#include <string>

struct LOCAL_TIME {
    double minute = 720;  ///< since midnight, with its fraction
    int day = 0;          ///< of the year, 0 to 365
};

/// What the system says, in the user's time zone.
LOCAL_TIME readLocalTime();

/// Whether the time lies in the hours from one to the other, which may go over midnight. None do
/// when both are the same.
bool isWithinHours(const LOCAL_TIME& time, int from, int to);

/// What a user says who wants an hour: "noon" for ever, "clock", or a time that stands still.
struct DAY_CHOICE {
    bool hours = false;         ///< other than always noon
    std::optional<int> minute;  ///< after midnight; empty: as the clock says
};

/// Reads "noon", "clock" or "HH:MM"; empty for anything else.
inline std::optional<DAY_CHOICE> parseDayChoice(const std::string& text) {
    if (text == "noon")
        return DAY_CHOICE{};
    if (text == "clock")
        return DAY_CHOICE{true, {}};
    const auto digit = [&](std::size_t i) { return text[i] >= '0' && text[i] <= '9'; };
    const std::size_t colon = text.find(':');
    if (colon < 1 || colon > 2 || text.size() != colon + 3 || !digit(0) || !digit(colon - 1) ||
        !digit(colon + 1) || !digit(colon + 2))
        return {};
    const int hour = std::stoi(text), minute = std::stoi(text.substr(colon + 1));
    if (hour > 23 || minute > 59)
        return {};
    return DAY_CHOICE{true, hour * 60 + minute};
}
