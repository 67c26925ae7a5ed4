#pragma once

#include <optional>

#include "framework/FrameRate.h"

/// Whether GL on the toolkit's display and default screen is drawn by graphics hardware; asked
/// before there is a context. False when it cannot be found out.
bool isAccelerated();

/// Samples per pixel to ask for: what is wanted, else enough for smooth edges where they cost
/// nearly nothing, and none where the processor would have to draw them all.
int samplesPerPixel(std::optional<int> wanted, bool accelerated);
