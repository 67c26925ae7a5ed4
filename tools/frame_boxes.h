// What a model file's own frame records say about its size.
#pragma once

#include <vector>

/// The thing in one frame, in the model's axes (x right, y up, z towards the viewer). The shadow
/// that a fish drops lies outside.
struct FrameBox {
    float low[3], high[3];

    /// Distance of the farthest corner from the origin.
    float reach() const;
};

/// One for each frame; none when the file cannot be read or is no model.
std::vector<FrameBox> readFrameBoxes(const char* path);
