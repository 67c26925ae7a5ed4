#include "FishSteering.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "system/SceneClock.h"

namespace {

constexpr float CRUISE_SPEED = 0.002f;
constexpr float SLOWEST_SPEED = 0.0006f;
constexpr float WANDER_SPEED = 0.001f;
constexpr float FLEE_SPEED = 0.005f;
constexpr float CALM_SPEED = 0.001f;

constexpr float TURN_STEP = 0.002f;      // per component and millisecond
constexpr float SPEED_STEP = 0.000004f;  // per millisecond
constexpr float FRAMES_PER_SPEED = 25000.0f;

// The depth band and the places beyond which a fish is steered from the band's edge.
constexpr float BAND_TOP = -3.0f;
constexpr float BAND_BOTTOM = -4.0f;
constexpr float FAR_ABOVE = -1.0f;
constexpr float FAR_BELOW = -6.0f;

/// Makes the fish want to swim along a direction of any length; one without length changes nothing.
void aimAlong(FishObject* fish, GLVector3 direction) {
    if (vectorLength(&direction) > 0.0f)
        fish->wanted_view = normalize(&direction);
}

}  // namespace

void FishSteering::addFish(ModelCore* fish) {
    FishObject object;
    object.obj = fish;
    fishcrowd.push_back(object);
    fish->removeFlags(WORLD_POSITIONING);
}

void FishSteering::setTargetPoint(float x, float y, float z) { targetpoint.set(x, y, z); }

void FishSteering::setEnemyPoint(float x, float y, float z) { enemypoint.set(x, y, z); }

void FishSteering::addCollisionObjectVector(std::vector<ModelCore*>* objects) {
    collisionobjects = objects;
}

void FishSteering::init() {
    for (size_t i = 0; i < fishcrowd.size(); ++i) {
        FishObject& fish = fishcrowd[i];
        const float offset_z = (std::rand() % 10) * 0.3f;
        const float offset_x = (std::rand() % 10) * 0.3f - 2.0f;
        fish.obj->setPosition(targetpoint.x + offset_x, targetpoint.y, targetpoint.z + offset_z);
        fish.state = 0;
        fish.fleetimer = 0;
        fish.speed = 0.0f;
        fish.id = static_cast<int>(i);
        fish.wandertimer = 0;
        fish.wander_update = 1000;
    }
    timer = sceneTicks();
}

void FishSteering::move() {
    const Uint32 now = sceneTicks();
    elapsedtime = now - timer;
    timer = now;

    for (FishObject& fish : fishcrowd) {
        const GLVector3 position = fish.obj->getPositionVector();
        fish.pos = position;
        fish.wanted_view = fish.obj->getViewVector() - fish.pos;
        fish.wanted_speed = CRUISE_SPEED;

        switch (fish.state) {
            case 0:
                seek(&fish);
                arriveBehaviour(&fish);
                wander(&fish);
                break;
            case 1:
                wander(&fish);
                break;
            case 2:
            case 3:
                flee(&fish);
                break;
        }
        checkBounds(&fish);
        checkCollisions(&fish);

        // The heading hangs on the record's position: a depth that checkBounds corrected tilts the
        // fish this much more, and leaves the model where it is.
        GLVector3 cur = fish.obj->getViewVector() - fish.pos;
        const float step = elapsedtime * TURN_STEP;
        approximation(&cur.x, fish.wanted_view.x, step);
        approximation(&cur.y, fish.wanted_view.y, step);
        approximation(&cur.z, fish.wanted_view.z, step);
        GLVector3 view = fish.pos + cur;
        // A turn straight back passes through no heading at all, and a fish without one has no way
        // to move: put it past that point.
        if (view == position)
            view = position + fish.wanted_view * TURN_STEP;
        fish.obj->setViewVector(view.x, view.y, view.z);

        approximation(&fish.speed, fish.wanted_speed, elapsedtime * SPEED_STEP);
        fish.obj->move(elapsedtime * fish.speed);
        if (fish.obj->model)
            fish.obj->model->setFPS(fish.speed * FRAMES_PER_SPEED);
    }
}

void FishSteering::startFlee() {
    for (FishObject& fish : fishcrowd) {
        fish.state = 2;
        fish.fleetimer = 0;
    }
}

void FishSteering::seek(FishObject* fish) {
    if (fish->pos != targetpoint)
        aimAlong(fish, targetpoint - fish->pos);
}

void FishSteering::arriveBehaviour(FishObject* fish) {
    const float d = std::max(std::fabs(distance(&fish->pos, &targetpoint)) - 3.0f, 0.0f);
    fish->wanted_speed = std::clamp(d * 0.0005f, SLOWEST_SPEED, CRUISE_SPEED);
}

void FishSteering::wander(FishObject* fish) {
    fish->wandertimer += saturatedMs(elapsedtime);
    if (fish->wandertimer <= fish->wander_update)
        return;
    fish->wandertimer = 0;
    if (std::rand() & 1) {
        fish->wander_update = 1000;
        fish->state = 0;
        return;
    }
    const float x = randomf(-50, 50, 2);
    const float y = randomf(-50, 50, 2);
    const float z = randomf(-50, 50, 2);
    aimAlong(fish, GLVector3(x, y, z));
    fish->wanted_speed = WANDER_SPEED;
    fish->wander_update = 600;
    fish->state = 1;
}

void FishSteering::flee(FishObject* fish) {
    fish->fleetimer += saturatedMs(elapsedtime);
    const bool bolting = fish->state == 2;
    if (fish->fleetimer > (bolting ? 1000 : 2000)) {
        fish->fleetimer = 0;
        fish->state = bolting ? 3 : 0;
    }
    aimAlong(fish, fish->pos - enemypoint);
    if (bolting)
        fish->speed = fish->wanted_speed = FLEE_SPEED;
    else
        fish->wanted_speed = CALM_SPEED;
}

void FishSteering::checkBounds(FishObject* fish) {
    GLVector3& pos = fish->pos;
    if (fish->state == 1) {
        if (pos.y >= BAND_TOP || pos.y <= BAND_BOTTOM)
            fish->state = 0;
    } else if (pos.y >= BAND_TOP) {
        if (pos.y >= FAR_ABOVE)
            pos.y = BAND_TOP;
        aimAlong(fish, fish->wanted_view + GLVector3(0.0f, -1.5f, 0.0f));
    } else if (pos.y <= BAND_BOTTOM) {
        if (pos.y <= FAR_BELOW)
            pos.y = BAND_BOTTOM;
        aimAlong(fish, fish->wanted_view + GLVector3(0.0f, 1.5f, 0.0f));
    }
}

void FishSteering::checkCollisions(FishObject*) {}
