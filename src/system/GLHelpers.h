// Vectors, colours, matrices and quaternions, curves, random numbers and the interval timer.
//
// Angles are degrees, except for angleBetweenVectors. Nothing here allocates or reports errors:
// a zero-length vector handed to anything that normalises gives components that are not finite.
#pragma once

#include <cmath>
#include <cstdint>

constexpr float PI = 3.1415926535897f;
constexpr float FULL_TURN = 6.2831855f;
constexpr double RADIANS_PER_DEGREE = 0.017453292;
#define DTOR(x) ((x) * (PI / 180))
#define RTOD(x) ((x) * (180 / PI))
// The argument stands bare on purpose: pass a single name only.
#define SQR(x) (x * x)

/// Index of a vertex in a mesh.
using GLIndex = uint16_t;

struct GLMatrix;

struct GLVector3 {
    GLVector3() = default;
    GLVector3(float x, float y, float z) : x(x), y(y), z(z) {}

    void set(float nx, float ny, float nz) {
        x = nx;
        y = ny;
        z = nz;
    }
    GLVector3 operator+(const GLVector3& b) const { return {x + b.x, y + b.y, z + b.z}; }
    GLVector3 operator-(const GLVector3& b) const { return {x - b.x, y - b.y, z - b.z}; }
    GLVector3 operator*(float s) const { return {x * s, y * s, z * s}; }
    /// Exact, component by component.
    bool operator==(const GLVector3& b) const { return x == b.x && y == b.y && z == b.z; }
    bool operator!=(const GLVector3& b) const { return !(*this == b); }

    /// Reads the matrix row by row, translation in v[3], v[7] and v[11]: a matrix that turns by a
    /// in OpenGL turns this vector by -a. Everything that steers relies on this direction.
    void transform(const GLMatrix* m);
    void normalize();

    float x = 0, y = 0, z = 0;
};

struct GLVector2 {
    GLVector2() {}  // leaves the components unset; set() follows
    GLVector2(float x, float y) : x(x), y(y) {}

    void set(float nx, float ny) {
        x = nx;
        y = ny;
    }
    GLVector2 operator+(const GLVector2& b) const { return {x + b.x, y + b.y}; }
    GLVector2 operator-(const GLVector2& b) const { return {x - b.x, y - b.y}; }
    bool operator==(const GLVector2& b) const { return x == b.x && y == b.y; }

    float x, y;
};

/// Components 0..1; opaque white at first.
struct GLColor {
    GLColor() = default;
    GLColor(float r, float g, float b, float a) : r(r), g(g), b(b), a(a) {}

    float r = 1, g = 1, b = 1, a = 1;
};

struct GLVertex {
    GLVector3 pos;
    GLVector3 normal;
};

struct GLVertexPNT {
    GLVector3 pos;
    GLVector3 normal;
    GLVector2 tex;
};

/// 4x4 matrix, column-major as OpenGL reads it: row r, column c at v[c * 4 + r].
struct GLMatrix {
    GLMatrix() { setIdentity(); }

    void setIdentity();
    /// This matrix on the left.
    GLMatrix operator*(const GLMatrix& b) const;

    // The matrices of glRotatef about one axis, in degrees.
    void xRotation(float deg);
    void yRotation(float deg);
    void zRotation(float deg);

    /// The placement of an object at the eye that looks at the center (camera to world), not the
    /// viewing matrix of gluLookAt.
    void createFromLookAt(float eyeX, float eyeY, float eyeZ, float centerX, float centerY,
                          float centerZ, float upX, float upY, float upZ);

    float v[16];
};

/// Rotation; vector part first, scalar last.
struct Quaternion {
    Quaternion() = default;
    Quaternion(float x, float y, float z, float w) : x(x), y(y), z(z), w(w) {}

    /// The axis is used as it is given; unit length makes a unit quaternion.
    void createFromAngle(float ax, float ay, float az, float deg);
    /// Yaw about x, then pitch about y, then roll about z.
    void createFromYawPitchRoll(float yaw, float pitch, float roll);
    /// The rotation matrix of a unit quaternion; nothing for a null pointer.
    void createMatrix(GLMatrix* m) const;
    Quaternion operator*(const Quaternion& q) const;
    void normalize();

    float x = 0, y = 0, z = 0, w = 1;
};

/// The rotation about an axis of unit length, in degrees; see GLVector3::transform for which way.
GLMatrix rotationAbout(const GLVector3& axis, float deg);

/// a - b: the vector that leads from b to a.
GLVector3 vectorFromPoints(const GLVector3* a, const GLVector3* b);
GLVector3 addVector(const GLVector3* a, const GLVector3* b);
GLVector3 divideVectorByScaler(const GLVector3* v, float s);
GLVector3 cross(const GLVector3* a, const GLVector3* b);
float dot(const GLVector3* a, const GLVector3* b);
float dot(const GLVector2* a, const GLVector2* b);
GLVector3 normalize(const GLVector3* v);
GLVector2 normalize(const GLVector2* v);
float vectorLength(const GLVector3* v);
float vectorLength(const GLVector2* v);
float distance(const GLVector3* a, const GLVector3* b);

/// Radians, -pi..pi: positive when b lies counter-clockwise of a in the x-y plane, also for the
/// three-dimensional form. Opposite vectors give -pi; equal directions give 0.
float angleBetweenVectors(const GLVector3* a, const GLVector3* b);
float angleBetweenVectors(const GLVector2* a, const GLVector2* b);

/// `from` turned towards `to` by at most maxDegrees; both of unit length.
GLVector3 rotateVectorToDestination(const GLVector3* from, const GLVector3* to, float maxDegrees);

GLVector3 bezierCurve(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                      const GLVector3* p3, float t);
/// Degree n over points[0..n]; t below 1.
GLVector3 bezierCurve(const GLVector3* points, int n, double t);
/// From p1 at t = 0 to p2 at t = 1.
GLVector3 catmullRomSpline(const GLVector3* p0, const GLVector3* p1, const GLVector3* p2,
                           const GLVector3* p3, float t);
GLVector3 linearInterpolation(const GLVector3* a, const GLVector3* b, float t);

/// The remainder of v / n with the sign and the fraction of v.
float modulo(float v, int n);

/// A random multiple of 1 / 10^precision (at least one decimal) above min, below max. The range
/// must hold at least one such step; the result is min otherwise.
float randomf(float min, float max, int precision);

/// Moves *value towards target by at most step (above 0); returns the change.
float approximation(float* value, float target, float step);

/// Even-odd rule. Lower end points of edges count as outside, upper ones as inside.
bool isPointInsidePolygon(const GLVector2* polygon, int n, const GLVector2* p);

/// Whether `name` is a word of the OpenGL extension string; needs a current context.
bool searchForExtension(const char* name);

/// Copies "./", for what lies beside the program lies in the working directory, as far as it fits
/// into `size` bytes; nothing is written when size is below 2.
void getModulePath(char* dst, int size);

/// Lets a wave's phase, in [0, FULL_TURN), move on by so many milliseconds; a full turn is taken
/// off once.
inline void advancePhase(float& phase, uint32_t elapsed, double radiansPerMs) {
    phase = static_cast<float>(phase + elapsed * radiansPerMs);
    if (phase >= FULL_TURN)
        phase -= FULL_TURN;
}

/// What a timer of a few seconds counts of so many milliseconds: so few that the sum fits an int,
/// enough to end any such timer.
inline int saturatedMs(uint32_t elapsed) {
    constexpr uint32_t enough = 1000000000;
    return static_cast<int>(elapsed < enough ? elapsed : enough);
}

/// Fires after a random number of milliseconds, again and again.
struct IntervallTimer {
    /// Fires after at least min and less than max milliseconds; starts from 0.
    void set(int min, int max);
    /// True when it fires. What exceeds the interval is dropped.
    bool update(int elapsedMs);
    /// Draws a new interval.
    void setIntervall();
    void reset();
    void stop() { running = false; }
    void start() { running = true; }

    int timer = 0;           ///< milliseconds since the last firing
    int min_interv = -1;     ///< -1: not configured, every update fires
    int max_interv = -1;     ///< exclusive; -1: none
    int act_intervall = -1;  ///< milliseconds being waited for
    bool running = true;
};
