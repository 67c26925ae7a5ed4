#include "system/AnimationTrack.h"

#include <cmath>

#include "system/SceneClock.h"
#include "system/TexturedQuad.h"

namespace {

constexpr float FIRST_STEP = 0.001f;
// How far ahead on the track the object looks, in parts of a segment.
constexpr float LOOK_AHEAD = 0.07f;

/// Degrees from the last heading to this one; 0 where one of them has no direction.
float headingChange(const GLVector2* heading, const GLVector2* last) {
    if (vectorLength(heading) == 0.0f || vectorLength(last) == 0.0f)
        return 0.0f;
    const float angle = angleBetweenVectors(heading, last);
    // The cosine of exact opposites may round below -1 and leave no number; their angle is -pi.
    return (std::isnan(angle) ? -PI : angle) * 57.295776f;
}

}  // namespace

void AnimationTrack::addPoint(GLVector3 point, float rollangle) {
    waypoints.push_back({point, rollangle});
}

void AnimationTrack::addPoint(float x, float y, float z, float rollangle) {
    addPoint(GLVector3(x, y, z), rollangle);
}

void AnimationTrack::setRenderObject(RenderObject* object) { renderobject = object; }

void AnimationTrack::setStartpointIndex(int i) {
    if (i < static_cast<int>(waypoints.size()))
        startindex = i;
}

void AnimationTrack::setMovement(MOVEMENT_STYLE style) { movestyle = style; }

void AnimationTrack::setSpeed(float newspeed) { speed = newspeed; }

void AnimationTrack::setRollFactor(float factor) { rollfactor = factor; }

void AnimationTrack::setMaxRollStep(float step) { smoothroll_step = step; }

void AnimationTrack::addFlags(TRACK_FLAG f) { flags = flags | f; }

void AnimationTrack::removeFlags(TRACK_FLAG f) { flags = static_cast<TRACK_FLAG>(flags & ~f); }

void AnimationTrack::stop() { playing = false; }

void AnimationTrack::go() { playing = true; }

int AnimationTrack::getActWaypoint() { return startindex; }

void AnimationTrack::removeFirstPoint() {
    if (waypoints.empty())
        return;
    waypoints.erase(waypoints.begin());
    startindex = validateIndex(startindex - 1);
}

int AnimationTrack::validateIndex(int i) {
    const int count = static_cast<int>(waypoints.size());
    if (i < 0)
        return count - 1;
    return i < count ? i : 0;
}

void AnimationTrack::setWaypointOrder(int i) {
    if (waypoints.empty())
        return;
    p[1] = waypoints[validateIndex(i)];
    p[2] = waypoints[validateIndex(i + 1)];
    if (!forcedLinearMovement) {
        p[0] = waypoints[validateIndex(i - 1)];
        p[3] = waypoints[validateIndex(i + 2)];
    }
}

GLVector3 AnimationTrack::getPos(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                                 const GLVector3* p3, float t) {
    return forcedLinearMovement ? linearInterpolation(p1, p2, t)
                                : catmullRomSpline(p0, p1, p2, p3, t);
}

GLVector3 AnimationTrack::precalcPosition(float t) {
    if (t <= 1.0f)
        return getPos(&p[0].point, &p[1].point, &p[2].point, &p[3].point, t);
    setWaypointOrder(validateIndex(startindex + 1));
    const GLVector3 position = getPos(&p[0].point, &p[1].point, &p[2].point, &p[3].point, t - 1.0f);
    setWaypointOrder(startindex);
    return position;
}

void AnimationTrack::init() {
    if (waypoints.empty() || !renderobject)
        return;
    startindex = validateIndex(startindex);
    const GLVector3 start = waypoints[startindex].point;
    if (!(flags & RELATIVE_MOVEMENT))
        renderobject->setPosition(start.x, start.y, start.z);
    renderobject->removeFlags(WORLD_POSITIONING);
    lastposition = actposition = start;
    if (waypoints.size() < 2)
        notEnoughPoints = true;
    if (waypoints.size() <= 3 || movestyle != MOVE_SPLINE)
        forcedLinearMovement = true;
    setWaypointOrder(startindex);
    initialPos = renderobject->getPositionVector();
    initialView = renderobject->getViewVector() - initialPos;
    initialUp = renderobject->getUpVector();
    startPos = start;
    time = sceneTicks();
    initialized = true;
}

void AnimationTrack::move() {
    if (!initialized)
        init();
    if (!initialized || notEnoughPoints || !playing)
        return;

    if (dist > 1.0f) {
        dist = 0.0f;
        startindex = validateIndex(startindex + 1);
        setWaypointOrder(startindex);
    }
    const GLVector3 raw = getPos(&p[0].point, &p[1].point, &p[2].point, &p[3].point, dist);
    actposition = raw;
    if (flags & RELATIVE_MOVEMENT)
        actposition = initialPos + (raw - startPos);

    GLVector3 look;
    if (flags & ROTATE_OBJECT) {
        renderobject->setPositionVector(actposition.x, actposition.y, actposition.z);
        look = precalcPosition(dist + LOOK_AHEAD);
        if (flags & RELATIVE_MOVEMENT)
            look = actposition + (look - raw);
        renderobject->setViewVector(look.x, look.y, look.z);
    } else {
        renderobject->setPosition(actposition.x, actposition.y, actposition.z);
    }
    // An object that is not turned banks by its place as seen from the origin: look is still zero.
    const GLVector3 direction = look - actposition;
    if (flags & ROLL_OBJECT)
        rollObject(&direction);

    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - time;
    time = now;
    const float wanted = elapsed * speed;
    if (wanted == 0.0f)
        return;
    const GLVector3 next = precalcPosition(dist + actspeed);
    const float covered = distance(&actposition, &next);
    const float step = actspeed * wanted / covered;
    // After a long pause the probe lies so far out that the step becomes zero or, one frame later,
    // so close that it covers nothing: begin again as a new track does.
    actspeed = std::isfinite(step) && step != 0.0f ? step : FIRST_STEP;
    dist += actspeed;
}

void AnimationTrack::rollObject(const GLVector3* direction) {
    const GLVector2 heading(direction->x, direction->z);
    const float wanted = -headingChange(&heading, &lastrollvector) * rollfactor;
    renderobject->setUpVector(0.0f, 1.0f, 0.0f);
    if (flags & SMOOTH_ROLL) {
        wantedroll_angle = wanted;
        approximation(&actroll_angle, wantedroll_angle, smoothroll_step);
    } else {
        actroll_angle = wanted;
    }
    renderobject->roll(actroll_angle);
    lastrollvector = heading;
}

void AnimationTrack::renderWaypoints() {
    if (!initialized)
        init();
    if (!initialized)
        return;
    const GLColor red(1.0f, 0.0f, 0.0f, 1.0f);
    const GLColor green(0.0f, 1.0f, 0.0f, 1.0f);
    TexturedQuad quad;
    quad.setSize(0.3f, 0.3f);
    for (int i = 0; i < static_cast<int>(waypoints.size()); ++i) {
        const GLVector3 before = waypoints[validateIndex(i - 1)].point;
        const GLVector3 start = waypoints[i].point;
        const GLVector3 end = waypoints[validateIndex(i + 1)].point;
        const GLVector3 after = waypoints[validateIndex(i + 2)].point;
        for (int j = 0; j < 20; ++j) {
            const GLVector3 position = getPos(&before, &start, &end, &after, j * 0.05f);
            quad.setRenderColor(j == 0 ? red : green);
            quad.setPosition(position.x, position.y, position.z);
            quad.render();
        }
    }
}
