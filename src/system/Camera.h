// The scene's viewpoint.
#pragma once

#include <SDL_stdinc.h>

#include "system/GLHelpers.h"

/// Eye, look-at point and up vector; `set` stores z negated, everything else works on the stored
/// values. Angles in degrees.
class Camera {
public:
    Camera();

    void set(float ex, float ey, float ez, float ax, float ay, float az, float ux, float uy,
             float uz);
    /// Multiplies the view onto the current matrix.
    void setViewMatrix() const;

    // Turns of the view; pitching stops at 89 degrees up and down, counted since `set`.
    void pitch(float deg);
    void yaw(float deg);
    void roll(float deg);
    void move(float distance);
    /// Sideways by x and along the up vector by y.
    void strafe(float x, float y);
    // Orbits of the eye around the look-at point.
    void pitchAroundOrigin(float deg);
    void yawAroundOrigin(float deg);

    /// Key steering. Bits: 1 forward, 2 back, 4 right, 8 left, 16 up, 32 down, 64 and 128 yaw,
    /// 512 and 256 pitch. Moves follow the time since the last call, turns are one step per call.
    void update(int keys);
    void mouseMove(int dx, int dy);

    void setLinearSpeed(float speed) { linearSpeed = speed; }
    void setAngularSpeed(float speed) { angularSpeed = speed; }
    void setMouseSpeed(float speed) { mouseSpeed = speed; }
    float getLinearSpeed() const { return linearSpeed; }
    float getAngularSpeed() const { return angularSpeed; }
    float getMouseSpeed() const { return mouseSpeed; }
    void invertMouse(bool on) { invertmouse = on ? -1 : 1; }
    bool isMouseInverted() const { return invertmouse != 1; }

    GLVector3 vEye{0, 10, 20};
    GLVector3 vAt;
    GLVector3 vUp{0, 1, 0};
    float rotationX = 0;        ///< pitch since `set`
    Uint32 timer;               ///< tick of the last update
    float linearSpeed = 0.02f;  ///< units per millisecond
    float angularSpeed = 0.5f;  ///< degrees per update
    float mouseSpeed = 0.3f;    ///< degrees per mouse unit
    int invertmouse = 1;        ///< -1: vertical motion the other way
};
