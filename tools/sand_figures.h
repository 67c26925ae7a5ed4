// How the sand of the bottom view looks, as numbers.
#pragma once

#include "offscreen.h"

/// A rectangle of pixels: [left, right) x [top, bottom), rows from the top.
struct SandBox {
    int left, top, right, bottom;
};

/// In pictures of 1280 x 948: the sand before the eye, and between the gardens.
constexpr SandBox NEAR_SAND{500, 770, 1280, 948}, MIDDLE_SAND{540, 640, 860, 770};

/// Luma runs from 0 to 255. Sand is what is bright and has little colour.
struct SandFigures {
    double saturation = 0;  ///< Mean of the sand's, 0..1, as in HSV.
    double deviation = 0;   ///< Of the sand's luma.
    double brightest = 0;   ///< 99th percentile of the sand's luma.
    double crispness = 0;   ///< 95th percentile of the luma's gradient, per pixel.
    double line = 0;        ///< Mean width of a line of light, pixels.
    double fine = 0;        ///< Deviation of the sand's detail below two pixels.
};

/// The box must lie inside the picture and show some sand.
SandFigures measureSand(const Picture& picture, const SandBox& box);
