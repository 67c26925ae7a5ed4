// A large fish that crosses the scene now and then.
#pragma once

#include <SDL.h>

#include <vector>

#include "system/AnimationTrack.h"
#include "system/ModelCore.h"

/// Sends one of several models, chosen at random, once along a route, hides it at the end and
/// starts again after 10 to 30 seconds. Does nothing without models or without a route.
class BigFishMovement {
public:
    BigFishMovement();

    /// Starts a pass; points and models must be filled by then.
    void init();
    /// Loads the route into the track in the direction of the current pass.
    void setTrackPoints();
    /// One frame.
    void move();
    void render();

    bool reverseorder = true;       ///< the current pass runs the route backward
    ModelCore* actmodel = nullptr;  ///< fish of the current pass; not owned
    int state = 0;                  ///< 0 on the route, 1 hidden
    Uint32 timer = 0;               ///< clock at the start of the wait
    int nextstart = 0;              ///< length of the wait in milliseconds
    AnimationTrack track;
    std::vector<GLVector3> points;   ///< the route
    std::vector<ModelCore*> models;  ///< not owned
};
