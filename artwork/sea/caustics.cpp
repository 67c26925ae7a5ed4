// Sunlight that the waves gather into bright lines: 32 frames of a layer that multiplies the sea
// floor and the fish. Each frame tiles in both directions; the last flows into the first.
//
// caustics DATA_DIR FOLDER SEED COLUMNS ROWS SHARPER
#include <cstdlib>
#include <string>
#include <vector>

#include "common/image.h"
#include "common/noise.h"
#include "common/parallel.h"

using namespace art;

namespace {

constexpr int kSize = 512;  // while gathering; a frame is shrunk from it
constexpr int kFrames = 32;
constexpr int kRaysPerTexel = 3;  // along each axis
/// How far a ray is thrown aside per unit of wave slope: the depth of the water.
constexpr float kDepth = 0.030f;
/// The floor is seen slanting, so lines that run away from the eye look broader than those across
/// the view. The whole net is narrower by this, across.
constexpr float kNarrower = 1.3f;

/// A wave with a whole number of periods across the tile and through the loop.
struct Wave {
    int kx, ky, cycles;
    float amplitude, phase;
};

std::vector<Wave> chooseWaves(uint32_t seed) {
    constexpr float kLongest = 1.6f, kShortest = 10.0f;  // periods across the tile
    Random random(seed);
    std::vector<Wave> waves;
    for (int kx = -14; kx <= 14; ++kx)
        for (int ky = 0; ky <= 10; ++ky) {
            if (ky == 0 && kx <= 0)
                continue;  // the mirror image of another wave
            const float k = std::hypot(static_cast<float>(kx) / kNarrower, static_cast<float>(ky));
            if (k < kLongest || k > kShortest)
                continue;
            const float amplitude = std::pow(k, -2.0f) * random.range(0.25f, 1.0f);
            if (random.unit() < 0.35f)
                continue;
            // The loop is short. What went through it more than once would boil; and if nothing
            // stood still, the net of lines would be another one several times a second.
            const float draw = random.unit();
            const int cycles = draw < 0.28f ? 1 : draw < 0.56f ? -1 : 0;
            waves.push_back({kx, ky, cycles, amplitude, random.range(0, 2 * kPi)});
        }
    return waves;
}

/// One value per texel of the tile.
using Grid = std::vector<float>;

int wrapped(int i) { return i & (kSize - 1); }
float& at(Grid& grid, int x, int y) { return grid[size_t(wrapped(y) * kSize + wrapped(x))]; }

float sample(const Grid& grid, float x, float y) {
    const float fx = std::floor(x), fy = std::floor(y);
    const int x0 = wrapped(static_cast<int>(fx)), x1 = wrapped(x0 + 1);
    const int y0 = wrapped(static_cast<int>(fy)) * kSize, y1 = wrapped(y0 / kSize + 1) * kSize;
    return mix(mix(grid[size_t(y0 + x0)], grid[size_t(y0 + x1)], x - fx),
               mix(grid[size_t(y1 + x0)], grid[size_t(y1 + x1)], x - fx), y - fy);
}

/// The slopes of the surface along x and y.
struct Slopes {
    Grid x = Grid(kSize * kSize), y = Grid(kSize * kSize);
};

Slopes surface(const std::vector<Wave>& waves, int frame) {
    Slopes slopes;
    std::vector<float> sin_x(kSize), cos_x(kSize);
    for (const Wave& w : waves) {
        const float turn = 2 * kPi / kSize;
        for (int x = 0; x < kSize; ++x) {
            sin_x[size_t(x)] = std::sin(turn * static_cast<float>(w.kx * x));
            cos_x[size_t(x)] = std::cos(turn * static_cast<float>(w.kx * x));
        }
        const float phase =
            w.phase + 2 * kPi * static_cast<float>(w.cycles * frame) / static_cast<float>(kFrames);
        for (int y = 0; y < kSize; ++y) {
            const float angle = turn * static_cast<float>(w.ky * y) + phase;
            const float s = std::sin(angle), c = std::cos(angle);
            for (int x = 0; x < kSize; ++x) {
                const float slope = -w.amplitude * (sin_x[size_t(x)] * c + cos_x[size_t(x)] * s);
                slopes.x[size_t(y * kSize + x)] += slope * static_cast<float>(w.kx);
                slopes.y[size_t(y * kSize + x)] += slope * static_cast<float>(w.ky);
            }
        }
    }
    return slopes;
}

/// Light that reaches each texel of the bottom; the mean is 1.
Grid gather(const Slopes& slopes) {
    Grid light(kSize * kSize);
    constexpr int kRays = kSize * kRaysPerTexel;
    constexpr float kShare = 1.0f / (kRaysPerTexel * kRaysPerTexel);
    for (int j = 0; j < kRays; ++j)
        for (int i = 0; i < kRays; ++i) {
            const float x = (static_cast<float>(i) + 0.5f) / kRaysPerTexel - 0.5f;
            const float y = (static_cast<float>(j) + 0.5f) / kRaysPerTexel - 0.5f;
            const float hit_x =
                x + kDepth / (kNarrower * kNarrower) * kSize * sample(slopes.x, x, y);
            const float hit_y = y + kDepth * kSize * sample(slopes.y, x, y);
            const float fx = std::floor(hit_x), fy = std::floor(hit_y);
            const int ix = static_cast<int>(fx), iy = static_cast<int>(fy);
            const float u = hit_x - fx, v = hit_y - fy;
            at(light, ix, iy) += kShare * (1 - u) * (1 - v);
            at(light, ix + 1, iy) += kShare * u * (1 - v);
            at(light, ix, iy + 1) += kShare * (1 - u) * v;
            at(light, ix + 1, iy + 1) += kShare * u * v;
        }
    return light;
}

/// Smooths a tile; so many texels up and down are seen, and fewer across.
Grid blurred(Grid grid, int down) {
    for (const bool across : {true, false}) {
        const auto reach = across ? static_cast<int>(std::lround(down / kNarrower)) : down;
        Grid sums(kSize * kSize);
        for (int y = 0; y < kSize; ++y)
            for (int x = 0; x < kSize; ++x) {
                float sum = 0;
                for (int d = -reach; d <= reach; ++d)
                    sum += static_cast<float>(reach + 1 - std::abs(d)) *
                           (across ? at(grid, x + d, y) : at(grid, x, y + d));
                at(sums, x, y) = sum / static_cast<float>((reach + 1) * (reach + 1));
            }
        grid = std::move(sums);
    }
    return grid;
}

/// Where the water is calm and gathers little light, 0 to 1: larger than the cells, so that lines
/// fade here and there and their cells open.
Grid calm(uint32_t seed, int frame) {
    constexpr int kSwells = 6;
    Random random(seed);
    std::vector<Wave> swells;
    for (int i = 0; i < kSwells; ++i)
        swells.push_back({static_cast<int>(random.range(-2.99f, 2.99f)),
                          static_cast<int>(random.range(1, 3.99f)), random.unit() < 0.5f ? 1 : -1,
                          std::sqrt(2.0f / kSwells), random.range(0, 2 * kPi)});
    Grid grid(kSize * kSize);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            float height = 0;
            for (const Wave& w : swells) {
                const float turns = static_cast<float>(w.kx * x + w.ky * y) / kSize +
                                    static_cast<float>(w.cycles * frame) / kFrames;
                height += w.amplitude * std::cos(2 * kPi * turns + w.phase);
            }
            at(grid, x, y) = smoothstep(0, 1.2f, height);
        }
    return grid;
}

/// What one colour becomes, as film takes it: between dark and bright, the more light, the slower
/// it grows brighter. So much light is halfway there in the core of a line, so much in its glow.
struct Film {
    float dark, bright, core, glow;
};

float exposed(const Film& film, float core, float glow) {
    const float c = std::pow(core / film.core, 5.5f), g = std::pow(glow / film.glow, 2.4f);
    return mix(film.dark, film.bright, std::min(1.0f, c / (1 + c) + 0.50f * g / (1 + g)));
}

/// A line is a thin cream core in a glow that falls off gently into the cell. Red is bright first
/// and blue last: warm round a line. In calm water the light stays spread out.
Image develop(const Grid& gathered, const Grid& calmness) {
    const Grid light = blurred(gathered, 2);
    const Grid near = blurred(gathered, 5);
    const Grid halo = blurred(gathered, 11);
    const Grid spread = blurred(gathered, 24);
    constexpr Film kRed{0.772f, 1, 1.124f, 0.854f}, kGreen{0.763f, 1, 1.188f, 0.899f},
        kBlue{0.733f, 0.975f, 1.290f, 1.034f};
    Image image(kSize, kSize);
    for (int y = 0; y < kSize; ++y)
        for (int x = 0; x < kSize; ++x) {
            const size_t i = size_t(y * kSize + x);
            const float spreads = 0.8f * calmness[i];
            // A line shows by how much it outshines what is round it: a faint one goes on to the
            // next instead of ending, and where many meet there is no white patch.
            const float around = std::pow(std::max(1.0f, halo[i]), 0.40f);
            const float core = mix(mix(light[i], near[i], 0.31f), spread[i], spreads) / around;
            const float glow = mix(halo[i], spread[i], spreads);
            image.at(x, y).colour = {exposed(kRed, core, glow), exposed(kGreen, core, glow),
                                     exposed(kBlue, core, glow)};
        }
    return image;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 7)
        fail("usage: caustics DATA_DIR FOLDER SEED COLUMNS ROWS SHARPER");
    const std::string folder = std::string(argv[1]) + "/" + argv[2] + "/";
    const auto seed = static_cast<uint32_t>(std::atoi(argv[3]));
    const std::vector<Wave> waves = chooseWaves(seed);
    const int columns = kSize / std::atoi(argv[4]), rows = kSize / std::atoi(argv[5]);
    const auto sharper = static_cast<float>(std::atof(argv[6]));
    parallelFor(kFrames, [&](int frame) {
        const Grid light = gather(surface(waves, frame));
        char name[24];
        std::snprintf(name, sizeof name, "caust%.2d.nlt", frame);
        // Both seeds were chosen together, by eye and by the sand's figures.
        const Image developed = develop(light, calm(seed + 105, frame));
        saveBmp24(sharpened(shrunk(developed, columns, rows), sharper, sharper), folder + name);
    });
}
