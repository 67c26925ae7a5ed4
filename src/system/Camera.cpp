#include "system/Camera.h"

#include <GL/glu.h>

#include "system/SceneClock.h"

namespace {

GLVector3 sideways(const GLVector3& direction, const GLVector3& up) {
    GLVector3 side = cross(&direction, &up);
    side.normalize();
    return side;
}

}  // namespace

Camera::Camera() : timer(sceneTicks()) {}

void Camera::set(float ex, float ey, float ez, float ax, float ay, float az, float ux, float uy,
                 float uz) {
    vEye.set(ex, ey, -ez);
    vAt.set(ax, ay, -az);
    vUp.set(ux, uy, -uz);
    rotationX = 0;
}

void Camera::setViewMatrix() const {
    gluLookAt(vEye.x, vEye.y, vEye.z, vAt.x, vAt.y, vAt.z, vUp.x, vUp.y, vUp.z);
}

void Camera::pitch(float deg) {
    // Tested at 90 but stopped at 89, so that the view never becomes vertical.
    const float r = rotationX + deg;
    if (r >= 90) {
        deg = 89 - rotationX;
        rotationX = 89;
    } else if (r <= -90) {
        deg = -89 - rotationX;
        rotationX = -89;
    } else {
        rotationX = r;
    }
    GLVector3 d = vAt - vEye;
    const GLMatrix turn = rotationAbout(sideways(d, vUp), deg);
    d.transform(&turn);
    vAt = vEye + d;
}

void Camera::yaw(float deg) {
    GLVector3 d = vAt - vEye;
    const GLMatrix turn = rotationAbout(vUp, deg);
    d.transform(&turn);
    vAt = vEye + d;
}

void Camera::roll(float deg) {
    GLVector3 d = vAt - vEye;
    d.normalize();
    const GLMatrix turn = rotationAbout(d, deg);
    vUp.transform(&turn);
    vUp.normalize();
}

void Camera::move(float distance) {
    GLVector3 d = vAt - vEye;
    d.normalize();
    d = d * distance;
    vEye = vEye + d;
    vAt = vAt + d;
}

void Camera::strafe(float x, float y) {
    const GLVector3 shift = sideways(vAt - vEye, vUp) * x + normalize(&vUp) * y;
    vEye = vEye + shift;
    vAt = vAt + shift;
}

void Camera::pitchAroundOrigin(float deg) {
    const GLMatrix turn = rotationAbout(sideways(vAt - vEye, vUp), -deg);
    GLVector3 e = vEye - vAt;
    e.transform(&turn);
    vUp.transform(&turn);
    vEye = vAt + e;
}

void Camera::yawAroundOrigin(float deg) {
    vUp.normalize();
    const GLMatrix turn = rotationAbout(vUp, -deg);
    GLVector3 e = vEye - vAt;
    e.transform(&turn);
    vEye = vAt + e;
}

void Camera::update(int keys) {
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - timer;
    timer = now;
    const float step = elapsed * linearSpeed;

    if (keys & 4)
        strafe(step, 0);
    if (keys & 8)
        strafe(-step, 0);
    if (keys & 16)
        strafe(0, step);
    if (keys & 32)
        strafe(0, -step);
    if (keys & 1)
        move(step);
    if (keys & 2)
        move(-step);
    if (keys & 64)
        yaw(angularSpeed);
    if (keys & 128)
        yaw(-angularSpeed);
    if (keys & 512)
        pitch(angularSpeed);
    if (keys & 256)
        pitch(-angularSpeed);
}

void Camera::mouseMove(int dx, int dy) {
    if (dx != 0)
        yaw(dx * mouseSpeed);
    if (dy != 0)
        pitch(dy * mouseSpeed * invertmouse);
}
