// How much of the world a picture of any shape shows when nothing in it may be stretched.
#pragma once

/// Vertical angle of view, degrees, of every picture that is no wider than MAX_ASPECT.
constexpr double VIEW_ANGLE = 45;
/// Wider pictures are drawn with this aspect all the same, unless they keep their proportions.
constexpr double MAX_ASPECT = 1.35;
/// From this aspect on a picture that does so shows more to both sides than the one of MAX_ASPECT.
constexpr double WIDER_FROM = 16.0 / 9;

/// Where the camera begins: its line of sight falls by so much for each unit straight on.
constexpr double CAMERA_FALL = 2.0 / 8;
/// Where it rests, degrees farther down.
constexpr float CAMERA_TOP_PITCH = -25.0f;
constexpr float CAMERA_MIDDLE_PITCH = -8.0f;
constexpr float CAMERA_LOW_PITCH = 4.5f;

/// The picture's edges as tangents of the angles from the line of sight, up and right positive.
struct VIEW_WINDOW {
    double left, right, bottom, top;

    double width() const { return right - left; }
    double height() const { return top - bottom; }
};

/// `aspect`: width by height of the picture; `horizon`: where the level of the eye lies, as a
/// tangent like the edges. Up to MAX_ASPECT this is the design's view. Wider pictures show as much
/// from left to right and lose height, up to 16:9; from there to 21:9 they show more to both sides,
/// and beyond they lose height again. What is lost above and below leaves the horizon where it
/// stands in the design's picture, as a part of its height.
VIEW_WINDOW trueView(double aspect, double horizon);
