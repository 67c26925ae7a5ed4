#include "frame_boxes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

float FrameBox::reach() const {
    float square = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const float farthest = std::max(std::fabs(low[axis]), std::fabs(high[axis]));
        square += farthest * farthest;
    }
    return std::sqrt(square);
}

std::vector<FrameBox> readFrameBoxes(const char* path) {
    constexpr size_t HEADER = 108, RECORD = 56;
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    int32_t count = 0;
    if (bytes.size() >= HEADER)
        std::memcpy(&count, &bytes[76], sizeof count);
    if (count <= 0 || bytes.size() < HEADER + RECORD * static_cast<size_t>(count))
        return {};
    std::vector<FrameBox> boxes;
    for (int i = 0; i < count; ++i) {
        float box[6];
        std::memcpy(box, &bytes[HEADER + RECORD * static_cast<size_t>(i)], sizeof box);
        // File axes: x right, y away, z up.
        boxes.push_back({{box[0], box[2], -box[4]}, {box[3], box[5], -box[1]}});
    }
    return boxes;
}
