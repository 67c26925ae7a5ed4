#include "BigFishMovement.h"

#include <cstdlib>

#include "system/SceneClock.h"

BigFishMovement::BigFishMovement() {
    track.removeFlags(ROLL_OBJECT);
    track.setSpeed(0.0006f);
}

void BigFishMovement::init() {
    if (models.empty() || points.empty())
        return;
    reverseorder = std::rand() & 1;
    actmodel = models[std::rand() % models.size()];
    track.setRenderObject(actmodel);
    setTrackPoints();
    state = 0;
}

void BigFishMovement::setTrackPoints() {
    track.stop();
    track.waypoints.clear();
    const size_t count = points.size();
    for (size_t i = 0; i < count; ++i)
        track.addPoint(points[reverseorder ? count - 1 - i : i], 0.0f);
    // The track keeps its place within a segment: a pass starts as far into the first one as the
    // last pass came in its final frame.
    track.setStartpointIndex(0);
    track.init();
    track.go();
}

void BigFishMovement::move() {
    if (models.empty())
        return;
    if (state == 0) {
        track.move();
        if (track.getActWaypoint() == static_cast<int>(points.size()) - 1) {
            state = 1;
            nextstart = std::rand() % 20000 + 10000;
            timer = sceneTicks();
        }
    } else if (sceneTicks() - timer > static_cast<Uint32>(nextstart)) {
        init();
    }
}

void BigFishMovement::render() {
    if (actmodel && state == 0)
        actmodel->render();
}
