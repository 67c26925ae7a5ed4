// One free-swimming fish: wanders within its area, and hunts the school if it is a hunter.
#pragma once

#include <SDL.h>

#include "system/GLHelpers.h"
#include "system/ModelCore.h"

class FishSteering;

/// What distinguishes one fish from another. The area lies in the ground plane (x is world x, y is
/// world z); depths are world y, angles degrees, times milliseconds, speeds world units per
/// millisecond.
struct SingleMovementSettings {
    SingleMovementSettings();

    GLVector2 top_left;
    GLVector2 top_right;
    GLVector2 bottom_left;
    GLVector2 bottom_right;
    GLVector2 area_center;                 ///< where the fish goes when it finds itself outside
    float angle_change = 0.05f;            ///< degrees per millisecond at normal_max_speed
    int direction_change_time = 4000;      ///< between random headings
    float speed_animation_factor = 40000;  ///< animation frames per second and unit of speed
    float height = -3.5f;                  ///< swimming depth
    float pitch_angle = 5.0f;              ///< not used by the movement
    float dest_deviation = 1.0f;           ///< a point this near counts as reached
    bool hunter = false;                   ///< needs fishboid
    float hunt_distance = 10.0f;           ///< prey further away is left alone
    bool turn_animation = false;           ///< play "turn" instead of "swim" while turning
    float hunt_speed = 0.003f;
    float max_speed_change = 0.000004f;  ///< per millisecond
    float normal_max_speed = 0.001f;
    float normal_min_speed = 0.0005f;
    bool variablespeed = false;     ///< needs a speed range of at least 0.00001
    int speedchange_intervall = 0;  ///< not used by the movement
};

/// Moves one ModelCore; call move once per frame. Reads the clock itself. Does nothing without a
/// model.
class SingleFishMovement {
public:
    SingleFishMovement();

    /// The fish moved; stays the caller's.
    void setModel(ModelCore* newmodel);
    /// Puts the fish to its depth, heading kept. Model and settings must stand by then.
    void init();
    /// One frame.
    void move();
    /// Where the school is now.
    void setBoidPoint(const GLVector3* point);
    /// Begins a hunt at once, at any distance; only for a hunter that is not hunting already.
    void startHunt();
    /// Darts at the point, whose y is set to the fish's depth.
    void hunt(GLVector3* point);
    void moveToPoint(const GLVector3* point);
    float distanceToPoint(const GLVector3* point);
    /// Debugging aid: quads at the corners and the centre, a line round the area.
    void renderMovementArea();

    // The steps of move.
    void randomDirectionUpdate();
    void dontLeaveArea();
    void updateAngle();
    void updateSpeed();
    void updateDirectionVector();
    void checkBoidDistance();
    void modifyTurnAnimation();

    SingleMovementSettings settings;
    FishSteering* fishboid = nullptr;  ///< the school that flees when a hunt ends; not owned
    ModelCore* model = nullptr;        ///< not owned
    int state = 0;  ///< 0 free, 1 to a point, 2 becomes 0 next frame, 3 hunting, 4 hunt finished
    int animation_state = 0;  ///< 0 swim, 7 turn
    int turnDirection = 0;    ///< not zero while the fish turns
    Uint32 timer = 0;         ///< clock of the last frame
    Uint32 elapsedtime = 0;
    int directionupdate_timer = 0;
    int huntupdate_timer = 0;
    int stateupdate_timer = 0;
    GLVector3 wanteddirection;  ///< unit vector to movement_point
    float wanted_rotation_y = 0.0f;
    float wanted_rotation_x = 0.0f;
    float act_rotation_x = 0.0f;
    float act_rotation_y = 0.0f;
    GLVector3 movement_point;
    float act_speed = 0.0f;
    float wanted_speed = 0.0f;
    float act_angle_change;  ///< degrees per millisecond
    GLVector3 boid_point;
    bool outsidearea = false;
    GLVector2 areapolygon[4];
    IntervallTimer speedtimer;

private:
    void swim();
};
