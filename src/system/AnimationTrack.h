// Moves an object round a closed loop of waypoints.
#pragma once

#include <SDL.h>

#include <vector>

#include "system/GLHelpers.h"
#include "system/RenderObject.h"

struct TRACK_POINT {
    GLVector3 point;
    float rollangle = 0.0f;  ///< kept with the point, not used by the movement
};

enum MOVEMENT_STYLE { MOVE_LINEAR = 0, MOVE_SPLINE = 1 };

/// Combined with |.
enum TRACK_FLAG : int {
    ROTATE_OBJECT = 1,     ///< the object looks along the track
    ROLL_OBJECT = 2,       ///< it banks in curves
    SMOOTH_ROLL = 4,       ///< and does so gradually
    RELATIVE_MOVEMENT = 8  ///< the track's shape is followed from where the object stands
};

constexpr TRACK_FLAG operator|(TRACK_FLAG a, TRACK_FLAG b) {
    return static_cast<TRACK_FLAG>(static_cast<int>(a) | static_cast<int>(b));
}

/// Moves one RenderObject at a constant speed along a Catmull-Rom spline through the waypoints, or
/// along straight lines where there are fewer than four, and after the last on to the first. Reads
/// the clock itself. Points are world positions, speeds world units per millisecond, angles
/// degrees.
class AnimationTrack {
public:
    void addPoint(GLVector3 point, float rollangle);
    void addPoint(float x, float y, float z, float rollangle);
    /// The object moved; stays the caller's.
    void setRenderObject(RenderObject* object);
    /// Ignored unless i is below the number of points.
    void setStartpointIndex(int i);
    void setMovement(MOVEMENT_STYLE style);
    void setSpeed(float newspeed);
    void setRollFactor(float factor);
    void setMaxRollStep(float step);
    void addFlags(TRACK_FLAG f);
    void removeFlags(TRACK_FLAG f);
    void stop();
    /// The next move counts the whole time since the last one.
    void go();
    /// Index of the waypoint at which the current segment starts.
    int getActWaypoint();
    /// Drops waypoint 0; the current segment stays the same.
    void removeFirstPoint();
    /// One frame.
    void move();
    /// Debugging aid: 20 small quads per segment, red at the waypoints, green between.
    void renderWaypoints();

    /// Prepares the track; the first move does it by itself. Style and flags must stand by then.
    /// Waits for a later call while there is no point or no object.
    void init();
    /// The index itself, the last one for a negative, 0 for one past the end.
    int validateIndex(int i);
    /// Loads the control points of the segment that starts at waypoint i.
    void setWaypointOrder(int i);
    /// Position on a segment at t in 0..1.
    GLVector3 getPos(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                     const GLVector3* p3, float t);
    /// Position at t measured from the current segment; beyond 1 it lies on the next one.
    GLVector3 precalcPosition(float t);
    /// Banks the object by its change of heading since the last call.
    void rollObject(const GLVector3* direction);

    std::vector<TRACK_POINT> waypoints;
    RenderObject* renderobject = nullptr;  ///< not owned
    GLVector3 actposition;
    GLVector3 lastposition;
    GLVector2 lastrollvector{0.0f, 0.0f};  ///< (x, z) of the last direction; zero: none yet
    TRACK_POINT p[4];                      ///< before, start, end and after the current segment
    float dist = 0.0f;                     ///< curve parameter in the current segment
    int startindex = 0;
    MOVEMENT_STYLE movestyle = MOVE_SPLINE;
    float speed = 0.002f;
    float actspeed = 0.001f;  ///< step of dist per frame
    Uint32 time = 0;
    bool initialized = false;
    TRACK_FLAG flags = ROTATE_OBJECT | ROLL_OBJECT | SMOOTH_ROLL;
    bool playing = true;
    bool forcedLinearMovement = false;
    bool notEnoughPoints = false;
    float rollfactor = 10.0f;      ///< degrees of bank per degree of heading change in a frame
    float smoothroll_step = 2.0f;  ///< largest change of bank in a frame
    float wantedroll_angle = 0.0f;
    float actroll_angle = 0.0f;
    GLVector3 initialPos;
    GLVector3 initialView;
    GLVector3 initialUp;
    GLVector3 startPos;
};
