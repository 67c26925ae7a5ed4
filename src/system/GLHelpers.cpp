#include "system/GLHelpers.h"

#include <GL/gl.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

double halfAngle(float deg) { return deg / 180.0 * 3.1415927 / 2; }

template <typename Vector>
float signedAngle(const Vector& a, const Vector& b) {
    if (a == b)
        return 0;
    const float cz = a.x * b.y - a.y * b.x;
    // Only the upper side is clamped.
    const float angle = std::acos(std::min(dot(&a, &b), 1.0f));
    return cz > 0 ? angle : -angle;
}

}  // namespace

void GLVector3::transform(const GLMatrix* m) {
    const float* v = m->v;
    set(x * v[0] + y * v[1] + z * v[2] + v[3], x * v[4] + y * v[5] + z * v[6] + v[7],
        x * v[8] + y * v[9] + z * v[10] + v[11]);
}

void GLVector3::normalize() { *this = ::normalize(this); }

void GLMatrix::setIdentity() {
    std::fill(v, v + 16, 0.0f);
    v[0] = v[5] = v[10] = v[15] = 1;
}

GLMatrix GLMatrix::operator*(const GLMatrix& b) const {
    GLMatrix result;
    for (int c = 0; c < 4; ++c) {
        for (int r = 0; r < 4; ++r) {
            double sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += double{v[k * 4 + r]} * b.v[c * 4 + k];
            result.v[c * 4 + r] = static_cast<float>(sum);
        }
    }
    return result;
}

void GLMatrix::xRotation(float deg) {
    setIdentity();
    const double a = deg * RADIANS_PER_DEGREE;
    v[5] = v[10] = static_cast<float>(std::cos(a));
    v[6] = static_cast<float>(std::sin(a));
    v[9] = -v[6];
}

void GLMatrix::yRotation(float deg) {
    setIdentity();
    const double a = deg * RADIANS_PER_DEGREE;
    v[0] = v[10] = static_cast<float>(std::cos(a));
    v[8] = static_cast<float>(std::sin(a));
    v[2] = -v[8];
}

void GLMatrix::zRotation(float deg) {
    setIdentity();
    const double a = deg * RADIANS_PER_DEGREE;
    v[0] = v[5] = static_cast<float>(std::cos(a));
    v[1] = static_cast<float>(std::sin(a));
    v[4] = -v[1];
}

void GLMatrix::createFromLookAt(float eyeX, float eyeY, float eyeZ, float centerX, float centerY,
                                float centerZ, float upX, float upY, float upZ) {
    const GLVector3 given_up(upX, upY, upZ);
    GLVector3 forward(centerX - eyeX, centerY - eyeY, centerZ - eyeZ);
    forward.normalize();
    GLVector3 side = cross(&forward, &given_up);
    side.normalize();
    const GLVector3 up = cross(&side, &forward);

    const float columns[16] = {side.x,     side.y,     side.z,     0,  //
                               up.x,       up.y,       up.z,       0,  //
                               -forward.x, -forward.y, -forward.z, 0,  //
                               eyeX,       eyeY,       eyeZ,       1};
    std::copy(columns, columns + 16, v);
}

void Quaternion::createFromAngle(float ax, float ay, float az, float deg) {
    const double h = halfAngle(deg);
    const double s = std::sin(h);
    x = static_cast<float>(ax * s);
    y = static_cast<float>(ay * s);
    z = static_cast<float>(az * s);
    w = static_cast<float>(std::cos(h));
}

void Quaternion::createFromYawPitchRoll(float yaw, float pitch, float roll) {
    *this = Quaternion();
    Quaternion turn;
    if (yaw != 0)
        createFromAngle(1, 0, 0, yaw);
    if (pitch != 0) {
        turn.createFromAngle(0, 1, 0, pitch);
        *this = *this * turn;
    }
    if (roll != 0) {
        turn.createFromAngle(0, 0, 1, roll);
        *this = *this * turn;
    }
}

void Quaternion::createMatrix(GLMatrix* m) const {
    if (!m)
        return;
    m->setIdentity();
    float* v = m->v;
    v[0] = 1 - 2 * (y * y + z * z);
    v[1] = 2 * (x * y + z * w);
    v[2] = 2 * (x * z - y * w);
    v[4] = 2 * (x * y - z * w);
    v[5] = 1 - 2 * (x * x + z * z);
    v[6] = 2 * (y * z + x * w);
    v[8] = 2 * (x * z + y * w);
    v[9] = 2 * (y * z - x * w);
    v[10] = 1 - 2 * (x * x + y * y);
}

Quaternion Quaternion::operator*(const Quaternion& q) const {
    return {w * q.x + x * q.w + y * q.z - z * q.y, w * q.y + y * q.w + z * q.x - x * q.z,
            w * q.z + z * q.w + x * q.y - y * q.x, w * q.w - x * q.x - y * q.y - z * q.z};
}

void Quaternion::normalize() {
    const float length = std::sqrt(x * x + y * y + z * z + w * w);
    x /= length;
    y /= length;
    z /= length;
    w /= length;
}

GLMatrix rotationAbout(const GLVector3& axis, float deg) {
    Quaternion q;
    q.createFromAngle(axis.x, axis.y, axis.z, deg);
    q.normalize();
    GLMatrix m;
    q.createMatrix(&m);
    return m;
}

GLVector3 vectorFromPoints(const GLVector3* a, const GLVector3* b) { return *a - *b; }

GLVector3 addVector(const GLVector3* a, const GLVector3* b) { return *a + *b; }

GLVector3 divideVectorByScaler(const GLVector3* v, float s) {
    return {v->x / s, v->y / s, v->z / s};
}

GLVector3 cross(const GLVector3* a, const GLVector3* b) {
    return {a->y * b->z - a->z * b->y, a->z * b->x - a->x * b->z, a->x * b->y - a->y * b->x};
}

float dot(const GLVector3* a, const GLVector3* b) {
    return a->x * b->x + a->y * b->y + a->z * b->z;
}

float dot(const GLVector2* a, const GLVector2* b) { return a->x * b->x + a->y * b->y; }

GLVector3 normalize(const GLVector3* v) { return divideVectorByScaler(v, vectorLength(v)); }

GLVector2 normalize(const GLVector2* v) {
    const float length = vectorLength(v);
    return {v->x / length, v->y / length};
}

float vectorLength(const GLVector3* v) { return std::sqrt(dot(v, v)); }

float vectorLength(const GLVector2* v) { return std::sqrt(dot(v, v)); }

float distance(const GLVector3* a, const GLVector3* b) {
    const GLVector3 between = vectorFromPoints(a, b);
    return vectorLength(&between);
}

float angleBetweenVectors(const GLVector3* a, const GLVector3* b) {
    return signedAngle(normalize(a), normalize(b));
}

float angleBetweenVectors(const GLVector2* a, const GLVector2* b) {
    return signedAngle(normalize(a), normalize(b));
}

GLVector3 rotateVectorToDestination(const GLVector3* from, const GLVector3* to, float maxDegrees) {
    const GLVector3 perpendicular = cross(from, to);
    const GLVector3 axis = normalize(&perpendicular);
    const float m = static_cast<float>(maxDegrees * RADIANS_PER_DEGREE);
    const float angle = std::acos(std::min(dot(from, to), 1.0f));
    // Written so that an angle that is not a number counts as out of reach.
    if (m >= angle)
        return *to;

    const float c = std::cos(m);
    const float s = std::sin(m);
    const float t = 1 - c;
    const float ax = axis.x, ay = axis.y, az = axis.z;
    const GLVector3 row0(t * ax * ax + c, t * ax * ay - az * s, t * ax * az + ay * s);
    const GLVector3 row1(t * ax * ay + az * s, t * ay * ay + c, t * ay * az - ax * s);
    const GLVector3 row2(t * ax * az - ay * s, t * ay * az + ax * s, t * az * az + c);
    return {dot(&row0, from), dot(&row1, from), dot(&row2, from)};
}

GLVector3 bezierCurve(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                      const GLVector3* p3, float t) {
    const float u = 1 - t;
    return *p0 * (u * u * u) + *p1 * (3 * t * u * u) + *p2 * (3 * t * t * u) + *p3 * (t * t * t);
}

GLVector3 bezierCurve(const GLVector3* points, int n, double t) {
    GLVector3 result;
    double a = 1;
    double b = std::pow(1 - t, n);
    for (int i = 0; i <= n; ++i) {
        double c = a * b;
        a *= t;
        b /= 1 - t;
        // Multiplying by the binomial coefficient factor by factor keeps the products small.
        int j = i;
        int k = n - i;
        for (int f = n; f >= 1; --f) {
            c *= f;
            if (j > 1)
                c /= j--;
            if (k > 1)
                c /= k--;
        }
        result.x += static_cast<float>(points[i].x * c);
        result.y += static_cast<float>(points[i].y * c);
        result.z += static_cast<float>(points[i].z * c);
    }
    return result;
}

GLVector3 catmullRomSpline(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                           const GLVector3* p3, float t) {
    const auto component = [t](float a, float b, float c, float d) {
        return 0.5f * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t +
                       (3 * b - a - 3 * c + d) * t * t * t);
    };
    return {component(p0->x, p1->x, p2->x, p3->x), component(p0->y, p1->y, p2->y, p3->y),
            component(p0->z, p1->z, p2->z, p3->z)};
}

GLVector3 linearInterpolation(const GLVector3* a, const GLVector3* b, float t) {
    return *a + (*b - *a) * t;
}

float modulo(float v, int n) {
    // In floating point, because not every whole number that v can hold fits an int.
    const double whole = std::trunc(v);
    return static_cast<float>(std::fmod(whole, n) + (v - whole));
}

float randomf(float min, float max, int precision) {
    const float d = max - min;
    float m = 10;
    for (int i = 1; i < precision && std::isfinite(m * 10); ++i)
        m *= 10;
    const int r = std::rand();
    const float steps = m * d;
    if (!(std::fabs(steps) >= 1))
        return min;
    const int k = std::fabs(steps) < 2147483648.0f ? static_cast<int>(steps) : INT_MAX;
    return std::min(static_cast<float>(r % k) / m + min, max);
}

float approximation(float* value, float target, float step) {
    if (target == *value)
        return 0;
    const float diff = target - *value;
    if (diff >= step) {
        *value += step;
        return step;
    }
    if (diff <= -step) {
        *value -= step;
        return -step;
    }
    *value = target;
    return diff;
}

bool isPointInsidePolygon(const GLVector2* polygon, int n, const GLVector2* p) {
    bool inside = false;
    GLVector2 a = polygon[0];
    for (int i = 1; i <= n; ++i) {
        const GLVector2 b = polygon[i % n];
        if (p->y > std::min(a.y, b.y) && p->y <= std::max(a.y, b.y) && p->x <= std::max(a.x, b.x) &&
            a.y != b.y) {
            const float x = (p->y - a.y) * (b.x - a.x) / (b.y - a.y) + a.x;
            if (a.x == b.x || p->x <= x)
                inside = !inside;
        }
        a = b;
    }
    return inside;
}

bool searchForExtension(const char* name) {
    const char* word = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    const size_t length = std::strlen(name);
    while (word && *word) {
        const size_t word_length = std::strcspn(word, " ");
        if (word_length == length && std::strncmp(word, name, length) == 0)
            return true;
        word += word_length;
        if (*word)
            ++word;
    }
    return false;
}

void getModulePath(char* dst, int size) {
    // Data is looked for relative to the working directory.
    if (size > 1)
        std::snprintf(dst, size, "./");
}

void IntervallTimer::set(int min, int max) {
    timer = 0;
    min_interv = min;
    max_interv = max;
    setIntervall();
}

bool IntervallTimer::update(int elapsedMs) {
    if (!running)
        return false;
    const int64_t sum = int64_t{timer} + elapsedMs;
    if (sum < act_intervall) {
        timer = static_cast<int>(sum);
        return false;
    }
    timer = 0;
    setIntervall();
    return true;
}

void IntervallTimer::setIntervall() {
    if (min_interv == -1)
        return;
    // Without an upper bound the lower one is not the interval either: the range then is -1 - min,
    // and the interval lands between min and 2 * min.
    const int64_t range = int64_t{max_interv} - min_interv;
    if (range == 0)
        act_intervall = min_interv;
    else
        act_intervall = static_cast<int>(std::rand() % range + min_interv);
}

void IntervallTimer::reset() {
    timer = 0;
    setIntervall();
}
