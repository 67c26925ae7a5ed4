// A school of small fish: gathers at a point, wanders, flees from an enemy.
#pragma once

#include <SDL.h>

#include <vector>

#include "system/GLHelpers.h"
#include "system/ModelCore.h"

/// One fish of a school.
struct FishObject {
    ModelCore* obj = nullptr;  ///< not owned
    GLVector3 pos;             ///< the model's position, as this frame's steering sees it
    float speed = 0.0f;        ///< world units per millisecond
    float wanted_speed = 0.0f;
    GLVector3 wanted_view;  ///< direction aimed at
    int wander_update = 0;  ///< milliseconds from one wander decision to the next
    int wandertimer = 0;
    int fleetimer = 0;
    int state = 0;  ///< 0 schooling, 1 wandering, 2 fleeing, 3 calming down
    int id = 0;
    bool collision = false;
};

/// Moves a school; call move once per frame. Reads the clock itself. Heading changes are limited
/// per component and millisecond, speed changes per millisecond.
class FishSteering {
public:
    /// Adds a fish, which stays the caller's and is from now on placed by look-at.
    void addFish(ModelCore* fish);
    void setTargetPoint(float x, float y, float z);
    void setEnemyPoint(float x, float y, float z);
    void addCollisionObjectVector(std::vector<ModelCore*>* objects);
    /// Places the fish on a 3 x 3 patch round the target.
    void init();
    /// One frame for every fish.
    void move();
    /// The whole school bolts.
    void startFlee();

    // The behaviours of one fish.
    void seek(FishObject* fish);
    void arriveBehaviour(FishObject* fish);
    void wander(FishObject* fish);
    void flee(FishObject* fish);
    void checkBounds(FishObject* fish);
    void checkCollisions(FishObject* fish);

    GLVector3 targetpoint;
    GLVector3 enemypoint;
    std::vector<FishObject> fishcrowd;
    std::vector<ModelCore*>* collisionobjects = nullptr;  ///< kept, not used; not owned
    Uint32 timer = 0;                                     ///< clock of the last frame
    Uint32 elapsedtime = 0;
};
