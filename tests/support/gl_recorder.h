// A stand-in for GL and GLU that writes down every call with its arguments.
//
// Link gl_recorder instead of the libraries of the project: it brings those that draw, without GL.
// A GL function that the recorder does not know is a link error.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

#include <array>
#include <iosfwd>
#include <string>
#include <vector>

namespace test {

/// Enough for what the project draws with.
constexpr int UNITS = 4;

/// One call. Also dlopen, dlsym and dlclose of GL.
struct GL_CALL {
    std::string name;
    /// The numbers in their order; vectors and matrices with all components, pointers left out.
    std::vector<double> args;
    /// What the call was told to open or to find.
    std::string text = {};
    /// The image, for calls that upload one: rows padded to 4 bytes.
    std::vector<unsigned char> bytes = {};

    /// Of name, arguments and text.
    bool operator==(const GL_CALL& other) const;
};
std::ostream& operator<<(std::ostream& out, const GL_CALL& call);

/// A vertex between glBegin and glEnd, with what was current when it was submitted.
struct GL_VERTEX {
    GLenum primitive;
    int begin;  ///< which glBegin since clear(), from 0
    float x, y, z;
    std::array<float, UNITS> u, v;      ///< texture coordinate of each unit
    std::array<GLuint, UNITS> texture;  ///< name bound to each unit, 0 where 2D texturing is off
    std::array<float, 4> color;
    std::array<float, 3> normal;
};

/// Everything since the start or clear().
const std::vector<GL_CALL>& calls();
const std::vector<GL_VERTEX>& vertices();
/// Forgets calls, vertices and counts; the state stays.
void clear();

int count(const std::string& name);
/// Position of the first such call at or after `from`; -1 if there is none.
int indexOf(const std::string& name, int from = 0);
int indexOf(const GL_CALL& call, int from = 0);
bool wasCalled(const std::string& name);
bool wasCalled(const GL_CALL& call);
/// All calls of one function.
std::vector<GL_CALL> callsOf(const std::string& name);

/// What is wrong with the pairs of glBegin and glEnd, glPushMatrix and glPopMatrix since the start,
/// and with calls that are not allowed between glBegin and glEnd; empty when all is well.
std::string imbalance();

/// Whether the capability is on; 2D texturing is asked of its unit.
bool isEnabled(GLenum capability, int unit = 0);
/// Name bound to the unit.
GLuint boundTexture(int unit = 0);
/// The texture unit that GL calls go to, from 0.
int activeUnit();

/// What glGetIntegerv, glGetFloatv and glGetBooleanv return for `name`. Without an answer they
/// return whether the capability is on, and 4 for GL_MAX_TEXTURE_UNITS_ARB.
void setAnswer(GLenum name, double value);
/// What glGetString returns; an empty string without an answer.
void setAnswer(GLenum name, const char* text);
/// The GL libraries that dlopen finds; all that start with "libGL.so" at first.
void setLibraries(std::vector<std::string> names);
/// The functions that dlsym does not find in them.
void hideFunctions(std::vector<std::string> names);

/// Whether uploaded images are kept with their calls; they are unless this says otherwise.
void setKeepImages(bool on);
/// Calls are only counted, not written down, so that benchmarks measure the callers. State and
/// vertices stand still too.
void setCountingOnly(bool on);
/// Number of all calls.
long totalCount();

}  // namespace test
