// Pictures in memory and the bitmap files of the data tree.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "common/vec.h"

namespace art {

/// Colour 0..1 as displayed, opacity 0..1, not premultiplied. Row 0 is the top row of the picture
/// and t = 0 of the texture.
struct Pixel {
    Vec3 colour;
    float alpha = 1;
};

class Image {
public:
    Image(int width, int height, Pixel fill = {})
        : width_(width), height_(height), pixels_(size_t(width) * size_t(height), fill) {}

    int width() const { return width_; }
    int height() const { return height_; }
    Pixel& at(int x, int y) { return pixels_[size_t(y) * size_t(width_) + size_t(x)]; }
    const Pixel& at(int x, int y) const { return pixels_[size_t(y) * size_t(width_) + size_t(x)]; }
    /// The nearest pixel of the endless repetition.
    const Pixel& wrapped(int x, int y) const {
        return at(((x % width_) + width_) % width_, ((y % height_) + height_) % height_);
    }
    /// Linear blend of the four pixels around (x, y) of the endless repetition; pixel centres lie
    /// at whole numbers plus a half.
    Pixel sample(float x, float y) const;

private:
    int width_, height_;
    std::vector<Pixel> pixels_;
};

/// A smaller picture: every pixel is the mean of so many columns and rows, weighted by their
/// opacity.
Image shrunk(const Image& image, int columns, int rows);

/// Makes up for the blur of a picture that is enlarged by linear filtering: what sets a pixel off
/// from its neighbours across and down grows by these shares. The picture repeats.
Image sharpened(const Image& image, float across, float down);

/// Gives pixels that are nearly transparent (alpha below threshold) the colour of the opaque ones
/// around them, spreading outwards the given number of texels and then flooding the rest with the
/// mean, so that filtering draws no rim. Alpha stays as it is.
void bleed(Image& image, int texels, float threshold = 0.02f);

/// Each writes the file whole or ends the program with a message on standard error.
/// 24-bit bitmap; alpha is dropped.
void saveBmp24(const Image& image, const std::string& path);
/// 32-bit bitmap whose fourth byte is alpha.
void saveBmp32(const Image& image, const std::string& path);
/// 8-bit bitmap with a grey palette; values row by row from the top, the width a multiple of 4.
void saveBmp8(const std::vector<uint8_t>& values, int width, int height, const std::string& path);
/// PNG with alpha, for looking at.
void savePng(const Image& image, const std::string& path);
/// Reads a PNG, as a ray tracer writes it; ends the program with a message when it cannot.
Image loadPng(const std::string& path);

/// Prints the message to standard error and ends the program with status 1.
[[noreturn]] void fail(const std::string& message);

}  // namespace art
