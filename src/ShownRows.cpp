#include "ShownRows.h"

#include <SDL_rwops.h>
#include <SDL_video.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "SkyBand.h"
#include "WaterGround.h"
#include "system/Bitmap.h"
#include "system/TexturedQuad.h"

namespace {

/// Pixels that the renderer's rounding may be off.
constexpr double SLACK = 1.0 / 16;
/// Units that the floor sways down, and the near edge up, at most.
constexpr double SWAY = 0.03;

struct ALPHAS {
    unsigned char least, most;
};

/// Of every row, from the top; none when the file has no alpha.
std::vector<ALPHAS> alphasOf(const SDL_Surface& image) {
    std::vector<ALPHAS> rows;
    if (image.format->BytesPerPixel == 4)
        for (int y = 0; y < image.h; ++y) {
            const auto* const pixels = static_cast<const unsigned char*>(image.pixels) +
                                       static_cast<size_t>(y) * image.pitch;
            ALPHAS row{255, 0};
            for (int x = 0; x < image.w; ++x) {
                row.least = std::min(row.least, pixels[4 * x + 3]);
                row.most = std::max(row.most, pixels[4 * x + 3]);
            }
            rows.push_back(row);
        }
    return rows;
}

std::vector<ALPHAS> alphasOf(const char* file) {
    SDL_Surface* const image = readBitmap(SDL_RWFromFile(file, "rb"));
    if (!image)
        return {};
    std::vector<ALPHAS> rows = alphasOf(*image);
    SDL_FreeSurface(image);
    return rows;
}

struct LINE {
    double y, z;
};

/// Where a row of the quad's texture is in the world.
LINE lineOf(const TexturedQuad& quad, double row) {
    const double local = quad.halfsize_y - row * quad.size_y;
    const double angle = quad.rotX * RADIANS_PER_DEGREE;
    return {quad.vPos.y + local * std::cos(angle), quad.vPos.z + local * std::sin(angle)};
}

}  // namespace

Sight::Sight(const GLVector3& eye, const GLVector3& at, const VIEW_WINDOW& window)
    : eye_x(eye.x), eye_y(eye.y), eye_z(eye.z), window(window) {
    const double x = at.x - eye.x, y = at.y - eye.y, z = at.z - eye.z;
    const double length = std::sqrt(x * x + y * y + z * z);
    ahead_y = y / length;
    ahead_z = z / length;
    aside_z = x / std::hypot(x, z);
}

bool Sight::isLevel() const { return std::fabs(aside_z) < 1e-5 && ahead_z < 0; }

double Sight::depth(double y, double z) const {
    return (y - eye_y) * ahead_y + (z - eye_z) * ahead_z;
}

bool Sight::isAhead(double y, double z) const { return depth(y, z) > 0.5; }

double Sight::row(double y, double z) const {
    const double up = (z - eye_z) * ahead_y - (y - eye_y) * ahead_z;
    return (up / depth(y, z) - window.bottom) / window.height();
}

double Sight::column(double x, double y, double z) const {
    return ((x - eye_x) / depth(y, z) - window.left) / window.width();
}

double Sight::farthestSpan(double left, double right, double y) const {
    const double farthest = std::min((left - eye_x) / window.left, (right - eye_x) / window.right);
    return eye_z + (farthest - (y - eye_y) * ahead_y) / ahead_z;
}

bool Sight::spans(double left, double right, double y, double z) const {
    return isAhead(y, z) && column(left, y, z) < 0 && column(right, y, z) > 1;
}

namespace {

// A filtered texel reaches to the middles of its neighbours.
TEXTURE_ROWS shownRows(const std::vector<ALPHAS>& rows) {
    const auto shown = [](const ALPHAS& row) { return row.most > 0; };
    const auto first = std::find_if(rows.begin(), rows.end(), shown);
    const auto last = std::find_if(rows.rbegin(), rows.rend(), shown).base();
    // The texture repeats: what is at its end can be seen at its beginning.
    if (first == rows.end() || first == rows.begin() || last == rows.end())
        return {};
    const auto count = static_cast<double>(rows.size());
    return {static_cast<double>(first - rows.begin() - 1) / count,
            static_cast<double>(last - rows.begin() + 1) / count};
}

}  // namespace

TEXTURE_ROWS shownRows(const char* file) { return shownRows(alphasOf(file)); }
TEXTURE_ROWS shownRows(const SDL_Surface& image) { return shownRows(alphasOf(image)); }

TEXTURE_ROWS opaqueRows(const char* file) {
    const std::vector<ALPHAS> rows = alphasOf(file);
    const auto opaque = [](const ALPHAS& row) { return row.least == 255; };
    const auto first = std::find_if(rows.begin(), rows.end(), opaque);
    const auto end = std::find_if_not(first, rows.end(), opaque);
    const auto count = static_cast<double>(rows.size());
    return {(static_cast<double>(first - rows.begin()) + 0.5) / count,
            (static_cast<double>(end - rows.begin()) - 0.5) / count};
}

namespace {

/// The part of the picture that the floor covers, from the bottom on. A line of sight that comes in
/// above the floor's near edge, and reaches the floor's lowest level between its edges, has met the
/// floor before.
double rowsUnder(const Sight& sight, const WaterGround& floor) {
    if (!sight.isLevel() || !floor.initialized)
        return 0;
    const int last_row =
        static_cast<int>(static_cast<float>(floor.numSegments_y - 1) * floor.stepsize_y);
    int highest = 0;
    for (int x = 0; x < floor.mapsize_x; ++x)
        highest = std::max(highest, floor.getHeightData(x, last_row));
    const double left = floor.vPos.x - floor.worldsize_x / 2;
    const double right = left + (floor.mapsize_x - 1) * floor.resizefactor_x;
    const double lowest = floor.vPos.y - SWAY;
    const double far_z =
        std::max<double>(floor.vPos.z - floor.worldsize_y, sight.farthestSpan(left, right, lowest));
    const double near_z = floor.vPos.z - floor.worldsize_y + last_row * floor.resizefactor_y;
    const double near_y = floor.vPos.y + highest * floor.heightfactor + SWAY;
    const bool covers = far_z < near_z && sight.isAhead(near_y, near_z) &&
                        sight.isAhead(lowest, near_z) && sight.row(near_y, near_z) < 0;
    return covers ? sight.row(lowest, far_z) : 0;
}

}  // namespace

ROWS rowsOf(const Sight& sight, const TexturedQuad& quad, const TEXTURE_ROWS& rows, int height) {
    const LINE first = lineOf(quad, rows.first), last = lineOf(quad, rows.last);
    if (rows.empty() || !sight.isLevel() || !sight.isAhead(first.y, first.z) ||
        !sight.isAhead(last.y, last.z))
        return {};
    const auto [low, high] = std::minmax({sight.row(first.y, first.z), sight.row(last.y, last.z)});
    const double slack = SLACK / height;
    return {low - slack, high + slack};
}

std::vector<ROWS> rowsOfSky(const Sight& sight, const WaterGround& floor, const TexturedQuad& fader,
                            const TEXTURE_ROWS& opaque, int height) {
    const double slack = SLACK / height;
    const double low = rowsUnder(sight, floor) - slack;
    const LINE top = lineOf(fader, opaque.first), bottom = lineOf(fader, opaque.last);
    const double left = fader.vPos.x - fader.halfsize_x;
    const double right = fader.vPos.x + fader.halfsize_x;
    if (opaque.empty() || !sight.isLevel() || !sight.spans(left, right, top.y, top.z) ||
        !sight.spans(left, right, bottom.y, bottom.z))
        return {{low, 1}};
    const ROWS between{low, sight.row(bottom.y, bottom.z) + slack};
    const ROWS above{std::max(low, sight.row(top.y, top.z) - slack), 1};
    if (std::floor(between.low * height) >= std::ceil(between.high * height))
        return {above};
    return {between, above};
}

// The edge of a row of the band is straight between its columns.
double rowsAbove(const Sight& sight, float elevation, int height) {
    if (!sight.isLevel())
        return 0;
    double lowest = 1;
    for (const int side : {-1, 1})
        for (int azimuth = 0; azimuth <= SkyBand::WIDEST; azimuth += SkyBand::COLUMN) {
            const GLVector3 corner =
                SkyBand::corner(static_cast<float>(side * azimuth), elevation) + sight.eye();
            if (!sight.isAhead(corner.y, corner.z))
                return 0;
            lowest = std::min(lowest, sight.row(corner.y, corner.z));
            const double column = sight.column(corner.x, corner.y, corner.z);
            if (column < 0 || column > 1)
                break;
        }
    return lowest - SLACK / height;
}
