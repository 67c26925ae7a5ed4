#include "SingleFishMovement.h"

#include <GL/gl.h>

#include <cmath>

#include "FishSteering.h"
#include "system/SceneClock.h"
#include "system/TexturedQuad.h"

namespace {

const GLVector2 TOP_LEFT(-15.0f, 25.0f);
const GLVector2 TOP_RIGHT(10.0f, 25.0f);
const GLVector2 BOTTOM_LEFT(-6.0f, 2.0f);
const GLVector2 BOTTOM_RIGHT(-2.0f, 2.0f);
const GLVector2 MOVEMENT_AREA_CENTER(-5.0f, 12.0f);

constexpr int HUNT_CHECK_TIME = 14999;

bool isFinite(const GLVector3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

}  // namespace

SingleMovementSettings::SingleMovementSettings()
    : top_left(TOP_LEFT),
      top_right(TOP_RIGHT),
      bottom_left(BOTTOM_LEFT),
      bottom_right(BOTTOM_RIGHT),
      area_center(MOVEMENT_AREA_CENTER) {}

SingleFishMovement::SingleFishMovement() : act_angle_change(settings.angle_change) {
    speedtimer.set(3000, 4000);
}

void SingleFishMovement::setModel(ModelCore* newmodel) { model = newmodel; }

void SingleFishMovement::init() {
    if (!model)
        return;
    timer = sceneTicks();
    act_speed = wanted_speed = settings.normal_max_speed;

    GLVector3 position = model->getPositionVector();
    const GLVector3 heading = model->getViewVector() - position;
    position.y = settings.height;
    const GLVector3 view = position + heading;
    model->setPositionVector(&position);
    model->setViewVector(&view);

    areapolygon[0] = settings.top_left;
    areapolygon[1] = settings.bottom_left;
    areapolygon[2] = settings.bottom_right;
    areapolygon[3] = settings.top_right;
    turnDirection = 0;
    animation_state = 0;
    speedtimer.reset();
}

void SingleFishMovement::move() {
    if (!model)
        return;
    const Uint32 now = sceneTicks();
    elapsedtime = now - timer;
    timer = now;

    switch (state) {
        case 0:
            randomDirectionUpdate();
            dontLeaveArea();
            updateAngle();
            swim();
            if (settings.hunter)
                checkBoidDistance();
            break;
        case 1:
        case 3:
            if (distanceToPoint(&movement_point) <= settings.dest_deviation) {
                state = state == 3 ? 4 : 0;
                move();
                break;
            }
            moveToPoint(&movement_point);
            updateDirectionVector();
            swim();
            break;
        case 2:
            state = 0;
            break;
        case 4:
            if (fishboid)
                fishboid->startFlee();
            act_angle_change = settings.angle_change;
            wanted_speed = settings.normal_max_speed;
            state = 0;
            move();
            break;
    }
}

void SingleFishMovement::swim() {
    if (settings.turn_animation)
        modifyTurnAnimation();
    updateSpeed();
    model->move(elapsedtime * act_speed);
    if (model->model)
        model->model->setFPS(settings.speed_animation_factor * act_speed);
}

void SingleFishMovement::setBoidPoint(const GLVector3* point) { boid_point = *point; }

void SingleFishMovement::startHunt() {
    if (settings.hunter && state != 3)
        hunt(&boid_point);
}

void SingleFishMovement::hunt(GLVector3* point) {
    point->y = settings.height;
    moveToPoint(point);
    wanted_speed = settings.hunt_speed;
    act_angle_change = 0.2f;
    state = 3;
}

void SingleFishMovement::moveToPoint(const GLVector3* point) {
    movement_point = *point;
    const GLVector3 way = movement_point - model->getPositionVector();
    wanteddirection = normalize(&way);
}

float SingleFishMovement::distanceToPoint(const GLVector3* point) {
    const GLVector3 position = model->getPositionVector();
    return distance(&position, point);
}

void SingleFishMovement::randomDirectionUpdate() {
    directionupdate_timer += saturatedMs(elapsedtime);
    if (directionupdate_timer >= settings.direction_change_time) {
        wanted_rotation_y = randomf(0, 359, 2);
        directionupdate_timer = 0;
    }
}

void SingleFishMovement::dontLeaveArea() {
    const GLVector3 position = model->getPositionVector();
    const GLVector2 ground(position.x, position.z);
    outsidearea = !isPointInsidePolygon(areapolygon, 4, &ground);
    if (outsidearea) {
        state = 1;
        const GLVector3 center(settings.area_center.x, settings.height, settings.area_center.y);
        moveToPoint(&center);
    }
}

void SingleFishMovement::updateAngle() {
    const float delta =
        approximation(&act_rotation_y, wanted_rotation_y, elapsedtime * act_angle_change);
    turnDirection = delta == 0.0f ? 0 : delta > 0.0f ? 1 : -1;
    model->yaw(delta);
}

void SingleFishMovement::updateDirectionVector() {
    const GLVector3 position = model->getPositionVector();
    const GLVector3 heading = model->getViewVector() - position;
    const GLVector3 dir = normalize(&heading);
    const float step = elapsedtime * act_angle_change;
    GLVector3 turned = rotateVectorToDestination(&dir, &wanteddirection, step);
    if (!isFinite(turned)) {
        // The two lie on one line, which gives the turn no axis: keep a heading that is right, and
        // leave one that is opposite sideways.
        const GLVector3 up(0.0f, 1.0f, 0.0f);
        GLVector3 sideways = cross(&up, &dir);
        turned = dir;
        if (dot(&dir, &wanteddirection) < 0.0f && vectorLength(&sideways) > 0.0f) {
            sideways.normalize();
            turned = rotateVectorToDestination(&dir, &sideways, step);
        }
    }
    if (settings.turn_animation) {
        const float angle = angleBetweenVectors(&dir, &turned) * 57.295776f;
        turnDirection = angle > 1.0f ? 1 : angle < -1.0f ? -1 : 0;
    }
    const GLVector3 view = position + turned;
    model->setViewVector(&view);
}

void SingleFishMovement::updateSpeed() {
    if (settings.variablespeed && state != 3 && speedtimer.update(saturatedMs(elapsedtime)))
        wanted_speed = randomf(settings.normal_min_speed, settings.normal_max_speed, 5);
    approximation(&act_speed, wanted_speed, elapsedtime * settings.max_speed_change);
    act_angle_change = act_speed * settings.angle_change / settings.normal_max_speed;
}

void SingleFishMovement::checkBoidDistance() {
    huntupdate_timer += saturatedMs(elapsedtime);
    if (huntupdate_timer > HUNT_CHECK_TIME) {
        huntupdate_timer = 0;
        if (distanceToPoint(&boid_point) <= settings.hunt_distance)
            hunt(&boid_point);
    }
}

void SingleFishMovement::modifyTurnAnimation() {
    QModel* animated = model->model;
    if (!animated || animated->getActFrame() != animated->getEndFrame())
        return;
    if (turnDirection != 0 && animation_state == 0) {
        animated->setAnimation("turn");
        animation_state = 7;
    } else if (turnDirection == 0 && animation_state == 7) {
        animated->setAnimation("swim");
        animation_state = 0;
    }
}

void SingleFishMovement::renderMovementArea() {
    const float y = settings.height;
    const GLColor red(1.0f, 0.0f, 0.0f, 1.0f);
    const GLColor white;
    TexturedQuad quad;
    quad.setSize(0.3f, 0.3f);
    quad.setRenderColor(red);
    for (const GLVector2& corner :
         {settings.top_left, settings.top_right, settings.bottom_left, settings.bottom_right}) {
        quad.setPosition(corner.x, y, corner.y);
        quad.render();
    }
    quad.setRenderColor(white);
    quad.setPosition(settings.area_center.x, y, settings.area_center.y);
    quad.render();

    // Given to GL directly, so z is negated here as a RenderObject negates it.
    glBegin(GL_LINE_LOOP);
    for (const GLVector2& corner :
         {settings.top_left, settings.top_right, settings.bottom_right, settings.bottom_left})
        glVertex3f(corner.x, y, -corner.y);
    glEnd();
}
