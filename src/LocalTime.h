// The clock on the wall. Whoever needs it keeps a function of this kind, so that another one can
// take its place: a moment that the user chose, or a test's.
#pragma once

struct LOCAL_TIME {
    double minute = 720;  ///< since midnight, with its fraction
    int day = 0;          ///< of the year, 0 to 365
};

/// What the system says, in the user's time zone.
LOCAL_TIME readLocalTime();

/// Whether the time lies in the hours from one to the other, which may go over midnight. None do
/// when both are the same.
bool isWithinHours(const LOCAL_TIME& time, int from, int to);
