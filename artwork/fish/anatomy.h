// The build of a fish: body, fins and eyes, the sheet its skin is painted on, and how it swims.
//
// Shapes are drawn in body lengths: along the fish 0 is the snout and 1 the root of the tail fin;
// height is measured from the fish's axis, upwards; width sideways from its middle plane.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "common/mesh.h"
#include "fish/curve.h"

namespace art {

/// Where the parts lie on the skin's sheet.
enum class Part { BODY, TAIL, DORSAL, ANAL, PELVIC, PECTORAL, EYE, EXTRA, SHADOW };
constexpr int kParts = 9;

/// A rectangle of the sheet in fractions of its size, t downwards.
struct Chart {
    float s0, t0, s1, t1;
};
/// What a part owns of the sheet; all of it is painted.
Chart plotOf(Part part);
/// The inner part of the plot that u and v run across from 0 to 1. Around it lies a rim, so that
/// filtering never reaches a neighbour.
Chart chartOf(Part part);
/// Place on the sheet.
inline Vec2 onSheet(Part part, float u, float v) {
    const Chart c = chartOf(part);
    return {mix(c.s0, c.s1, u), mix(c.t0, c.t1, v)};
}

struct Body {
    Curve top, bottom;            ///< Outline over the length.
    Curve width;                  ///< Half width over the length.
    float widest = 0.5f;          ///< Where the widest line runs between bottom (0) and top (1).
    float keel = 1.0f;            ///< 1 an ellipse in section; more sharpens back and belly.
    std::vector<float> stations;  ///< Lengths at which the mesh has a ring.
    int half_sides = 8;           ///< Faces from back to belly on each side.
};

/// A place on the skin of one side.
struct BodyPoint {
    float along = 0;   ///< 0 snout, 1 root of the tail fin.
    float round = 0;   ///< 0 ridge of the back, 1 keel of the belly.
    float height = 0;  ///< Above the axis.
    float rise = 0;    ///< -1 at the belly's outline, 1 at the back's.
    float girth = 0;   ///< Length over the skin down from the ridge of the back.
    Vec3 position;     ///< In body lengths, axes as in the model: nose towards -along.
    Vec3 normal;       ///< Outwards, z up.
};
BodyPoint bodyPoint(const Body& body, float along, float round);

/// How an end of a fin's margin is rounded: over a share of the fin, rays grow to their full
/// length, as in a quarter of an ellipse; the outermost one is shorter by depth, a part of its
/// length.
struct Corner {
    float share = 0, depth = 0;
};

/// A fin is a sheet of rays between its root and its margin: u runs along both, v from root (0)
/// to margin (1).
struct Fin {
    Part part = Part::DORSAL;
    Path root, margin;   ///< In side view (along, height); paired fins lie flat on the drawing.
    Vec2 bow;            ///< How far the middle of a ray leaves the straight line.
    float flare = 1;     ///< More than 1 spreads the rays late: a tail that keeps its waist.
    Corner front, rear;  ///< Where u is 0, and where it is 1.
    int columns = 4, rows = 1;

    bool paired = false;  ///< One on each side, hinged where its root's first point touches skin.
    float splay = 0;      ///< Degrees a paired fin is turned out from the body about its root.
    float paddle = 0;     ///< Degrees it swings to either side of the splay.
    float ripple = 0;     ///< Sideways play of a middle fin's margin, in body lengths.
};
struct FinPoint {
    Part part = Part::DORSAL;
    float u = 0, v = 0;
    Vec2 side;  ///< Side view place (along, height).
};
FinPoint finPoint(const Fin& fin, float u, float v);
/// Where the mesh of a fin has columns: closer where its margin bends.
std::vector<float> finColumns(const Fin& fin);

struct Eye {
    Vec2 place;  ///< Side view.
    float radius = 0.03f;
    float bulge = 0.3f;  ///< Height of its dome in eye radii.
};

/// A bend that travels from head to tail.
struct Swim {
    float sway = 22;      ///< Degrees the tail's root turns to either side.
    float waves = 0.75f;  ///< Waves along the body.
    float head = 0.12f;   ///< The head's share of the sway.
    float rear = 1.6f;    ///< More leaves more of the sway to the rear end.
};

/// A soft shape of body and tail on the sand below, bending with the fish. It turns with it too, so
/// it cannot keep the sun's side; it lies under the fish, a little larger.
struct Shadow {
    float depth = 0;                     ///< File units below the model's origin; 0 for none.
    float width = 0.38f;                 ///< Half width, body lengths.
    float front = -0.05f, back = 1.28f;  ///< Where it begins and ends along the fish.
};

struct Fish {
    Body body;
    std::vector<Fin> fins;
    Eye eye;
    Swim swim;
    Shadow shadow;
    float length = 40;    ///< File units per body length.
    float centre = 0.5f;  ///< The length that lies on the model's origin.
};

/// The fin of a fish that has one of this kind.
Fin& finOf(Fish& fish, Part part);

/// Where the body bends in one frame: heading in degrees at a length, positive to the right.
using Bend = std::function<float(float along, int frame)>;

/// Swimming over a number of frames, as a bend.
Bend swimming(const Swim& swim, int frames);

/// Writes the fish as a model. The bend covers all frames; paddle(frame) gives the phase of the
/// paired fins in turns.
void saveFish(const Fish& fish, int frames, const Bend& bend,
              const std::function<float(int frame)>& paddle, const std::string& path);
/// The same for a fish that only swims.
void saveFish(const Fish& fish, int frames, const std::string& path);

}  // namespace art
