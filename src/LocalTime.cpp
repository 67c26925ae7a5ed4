#include "LocalTime.h"

#include <time.h>

LOCAL_TIME readLocalTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    localtime_r(&now.tv_sec, &parts);
    const double seconds = parts.tm_sec + static_cast<double>(now.tv_nsec) * 1e-9;
    return {parts.tm_hour * 60 + parts.tm_min + seconds / 60, parts.tm_yday};
}

bool isWithinHours(const LOCAL_TIME& time, int from, int to) {
    const double hour = time.minute / 60;
    return from <= to ? hour >= from && hour < to : hour >= from || hour < to;
}
