#include "WaterGround.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include "system/SceneClock.h"

WaterGround::WaterGround() : timer(sceneTicks()) {}

void WaterGround::modify() {
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - timer;
    timer = now;
    if (!vertices)
        return;
    advancePhase(curoffset1, elapsed, 0.0035);
    advancePhase(curoffset2, elapsed, 0.0025);
    // Segments that changed since the strip was built say nothing about it.
    if (numSegments_y < 1 || numVerts != std::int64_t{2} * numSegments_x * numSegments_y)
        return;

    const auto acrossX = [this](float x) {
        return static_cast<float>(std::sin(x * 3.1415927 * 0.19 + curoffset1) * 0.01);
    };
    // The sway of a row is the same in every column.
    std::vector<float> rows(numSegments_y);
    for (int j = 0; j < numSegments_y; ++j) {
        const float z = j * stepsize_y * resizefactor_y;
        rows[j] = static_cast<float>(std::sin(z * 3.1415927 * 0.13 + curoffset2) * 0.02);
    }
    for (int i = 0; i < numSegments_x; ++i) {
        const float x0 = i * stepsize_x * resizefactor_x;
        const float x1 = (i + 1) * stepsize_x * resizefactor_x;
        const bool up = i % 2 == 0;
        const float first = acrossX(up ? x1 : x0);
        const float second = acrossX(up ? x0 : x1);
        MAP_VERTEX* pair = vertices + 2 * i * numSegments_y;
        for (int n = 0; n < numSegments_y; ++n, pair += 2) {
            const float row = rows[up ? n : numSegments_y - 1 - n];
            pair[0].modifier_y = first - row;
            pair[1].modifier_y = second - row;
        }
    }
}
