// Which rows of the picture can show a thing at all, so that a host need not fill the others.
#pragma once

#include <vector>

#include "Proportions.h"
#include "system/GLHelpers.h"

class TexturedQuad;
class WaterGround;
struct SDL_Surface;

/// From 0 at the bottom of the picture to 1 at its top.
struct ROWS {
    double low = 0, high = 1;
};

/// What eye and window say about lines that run along x. Good for nothing where the eye is rolled
/// or looks aside: isLevel() then is false.
class Sight {
public:
    Sight(const GLVector3& eye, const GLVector3& at, const VIEW_WINDOW& window);

    bool isLevel() const;
    GLVector3 eye() const { return {float(eye_x), float(eye_y), float(eye_z)}; }
    /// Before the eye, and not in its plane.
    bool isAhead(double y, double z) const;
    // Of a point that is ahead.
    double row(double y, double z) const;
    /// From 0 at the picture's left edge to 1 at the right one.
    double column(double x, double y, double z) const;
    /// Whether what lies from `left` to `right` reaches from edge to edge of the picture.
    bool spans(double left, double right, double y, double z) const;
    /// How far away, as a z, it still does so at a height.
    double farthestSpan(double left, double right, double y) const;

private:
    double depth(double y, double z) const;

    double eye_x, eye_y, eye_z;
    double ahead_y, ahead_z;  ///< direction of sight; x is 0
    double aside_z;           ///< how far the right hand side is from being x
    VIEW_WINDOW window;
};

/// Rows of a picture from its top, as parts of its height. Empty without such rows.
struct TEXTURE_ROWS {
    double first = 0, last = 0;

    bool empty() const { return !(first < last); }
};
/// Between the first and the last row of a bitmap file that are not wholly transparent: what a
/// filtered texture of it shows lies there. A file that cannot be read, or has no alpha, has none.
TEXTURE_ROWS shownRows(const char* file);
TEXTURE_ROWS shownRows(const SDL_Surface& image);
/// The same of the first unbroken run of rows that are wholly opaque when filtered.
TEXTURE_ROWS opaqueRows(const char* file);

/// The rows of the picture, `height` pixels high, that the rows of the quad's texture can be in;
/// all where that cannot be said. For quads that are turned about x alone.
ROWS rowsOf(const Sight& sight, const TexturedQuad& quad, const TEXTURE_ROWS& rows, int height);
/// The rows of the picture, `height` pixels high, from the bottom on, that neither the floor nor
/// the opaque part of the fader, which is drawn after it, covers from edge to edge: where the sky
/// may show. Some rows can be in two of them.
std::vector<ROWS> rowsOfSky(const Sight& sight, const WaterGround& floor, const TexturedQuad& fader,
                            const TEXTURE_ROWS& opaque, int height);
/// Where in the picture, `height` pixels high, the standing sky is at some degrees above the
/// horizon or higher: above this row. 0 where that cannot be said.
double rowsAbove(const Sight& sight, float elevation, int height);
