// Pictures and models of the data tree, read by hand so that nothing of the program's own reading
// is taken on trust.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "common/vec.h"

namespace test {

/// A bitmap of the data tree; empty, after a failed expectation, when it is no such thing.
struct Picture {
    int width = 0, height = 0, bits = 0;
    std::vector<uint8_t> bytes;  ///< row 0 on top; blue, green, red and perhaps alpha, or an index

    /// Channel 0 blue, 1 green, 2 red, 3 alpha (255 without); x and y wrap round.
    int at(int x, int y, int channel) const;
    /// Red, green and blue, 0..255.
    art::Vec3 colour(int x, int y) const;
    int alpha(int x, int y) const { return at(x, y, 3); }
};
/// name is relative to the data directory.
Picture readPicture(const std::string& name);

/// A model of the data tree, in file axes (x right, y away, z up).
struct Model {
    int frames = 0;
    std::vector<std::array<int, 3>> triangles;
    std::vector<art::Vec2> texture;
    std::vector<std::vector<art::Vec3>> positions;  ///< frame by frame
};
Model readModel(const std::string& name);

/// The names of an animation's files.
std::vector<std::string> caustics();
std::vector<std::string> fishCaustics();
std::vector<std::string> highlights();

}  // namespace test
