#include "framework/FrameRate.h"

#include <algorithm>
#include <cstring>

bool isSoftwareRenderer(const char* name) {
    for (const char* part : {"llvmpipe", "softpipe", "swrast", "Software Rasterizer"})
        if (name && std::strstr(name, part))
            return true;
    return false;
}

double frameLimit(double wanted, double refreshRate, bool softwareRenderer) {
    const double refresh = refreshRate > 0 ? refreshRate : 60;
    if (wanted > 0)
        return std::min(wanted, refresh);
    return softwareRenderer ? std::min<double>(30, refresh) : refresh;
}
