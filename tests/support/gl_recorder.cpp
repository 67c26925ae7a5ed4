#include "support/gl_recorder.h"

#include <GL/glu.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <ostream>

namespace {

using test::GL_CALL;
using test::GL_VERTEX;
using test::UNITS;

struct STATE {
    std::vector<GL_CALL> calls;
    std::vector<GL_VERTEX> vertices;
    std::map<std::string, int> counts;
    int begins = 0;

    std::map<GLenum, bool> enabled;
    std::array<bool, UNITS> texturing{};
    std::array<GLuint, UNITS> bound{};
    int unit = 0;
    GLenum matrix_mode = GL_MODELVIEW;
    std::map<GLenum, int> depth;
    GLuint next_texture = 1;
    GLenum primitive = GL_POINTS;
    bool inside = false;
    GL_VERTEX current{GL_POINTS, 0, 0, 0, 0, {}, {}, {}, {1, 1, 1, 1}, {0, 0, 1}};
    std::string complaints;

    std::map<GLenum, double> numbers;
    std::map<GLenum, std::string> strings;
    bool all_libraries = true;
    std::vector<std::string> libraries;
    std::vector<std::string> hidden;
};

// Lives as long as the program, so that drawables with static storage may still call GL at exit.
STATE& state() {
    static STATE& s = *new STATE;
    return s;
}

bool keep_images = true;
bool counting_only = false;
long total = 0;

void complain(const std::string& text) { state().complaints += text + "\n"; }

bool isAllowedInside(const std::string& name) {
    static const char* const NAMES[] = {
        "glVertex", "glSecondaryColor", "glTexCoord", "glMultiTexCoord",
        "glColor",  "glNormal",         "glEnd"};
    return std::any_of(std::begin(NAMES), std::end(NAMES), [&](const char* allowed) {
        return name.compare(0, std::strlen(allowed), allowed) == 0;
    });
}

// False when nothing is to be written down and the state stands still.
bool note(const char* name, std::initializer_list<double> args, const char* text = "") {
    ++total;
    if (counting_only)
        return false;
    STATE& s = state();
    s.calls.push_back({name, args, text});
    ++s.counts[name];
    if (s.inside && !isAllowedInside(name))
        complain(std::string(name) + " between glBegin and glEnd");
    return true;
}

int imageBytes(GLenum format, int width, int height) {
    const int pixel = format == GL_BGRA || format == GL_RGBA ? 4
                      : format == GL_LUMINANCE_ALPHA         ? 2
                                                             : 3;
    return (width * pixel + 3) / 4 * 4 * height;
}

void noteBytes(const void* pixels, int size) {
    if (!pixels || !keep_images)
        return;
    const auto* first = static_cast<const unsigned char*>(pixels);
    state().calls.back().bytes.assign(first, first + size);
}

void setCapability(GLenum capability, bool on) {
    STATE& s = state();
    if (capability == GL_TEXTURE_2D)
        s.texturing[s.unit] = on;
    else
        s.enabled[capability] = on;
}

void setCoordinate(int unit, float u, float v) {
    state().current.u[unit] = u;
    state().current.v[unit] = v;
}

void addVertex(float x, float y, float z) {
    STATE& s = state();
    if (!s.inside)
        complain("vertex outside glBegin and glEnd");
    GL_VERTEX vertex = s.current;
    vertex.primitive = s.primitive;
    vertex.begin = s.begins - 1;
    vertex.x = x;
    vertex.y = y;
    vertex.z = z;
    for (int i = 0; i < UNITS; ++i)
        vertex.texture[i] = s.texturing[i] ? s.bound[i] : 0;
    s.vertices.push_back(vertex);
}

double answerFor(GLenum name) {
    const STATE& s = state();
    const auto found = s.numbers.find(name);
    if (found != s.numbers.end())
        return found->second;
    if (name == GL_MAX_TEXTURE_UNITS_ARB)
        return UNITS;
    return test::isEnabled(name, s.unit) ? 1 : 0;
}

template <typename Number>
std::vector<double> numbers(const Number* values, int n) {
    return std::vector<double>(values, values + n);
}

bool startsWith(const char* text, const char* start) {
    return std::strncmp(text, start, std::strlen(start)) == 0;
}

}  // namespace

extern "C" {

// ---- extensions, found by name

void GLAPIENTRY glActiveTextureARB(GLenum texture) {
    const int unit = static_cast<int>(texture) - GL_TEXTURE0_ARB;
    if (!note("glActiveTextureARB", {double(texture)}))
        return;
    if (unit >= 0 && unit < UNITS)
        state().unit = unit;
    else
        complain("glActiveTextureARB of a unit that is not there");
}

void GLAPIENTRY glMultiTexCoord2fARB(GLenum texture, GLfloat u, GLfloat v) {
    const int unit = static_cast<int>(texture) - GL_TEXTURE0_ARB;
    if (!note("glMultiTexCoord2fARB", {double(texture), u, v}))
        return;
    if (unit >= 0 && unit < UNITS)
        setCoordinate(unit, u, v);
    else
        complain("glMultiTexCoord2fARB of a unit that is not there");
}

void* __real_dlopen(const char* file, int mode);
void* __real_dlsym(void* handle, const char* name);
int __real_dlclose(void* handle);
void* __wrap_dlopen(const char* file, int mode);
void* __wrap_dlsym(void* handle, const char* name);
int __wrap_dlclose(void* handle);

void* __wrap_dlopen(const char* file, int mode) {
    if (!file || !startsWith(file, "libGL.so"))
        return __real_dlopen(file, mode);
    note("dlopen", {double(mode)}, file);
    const STATE& s = state();
    const bool there = s.all_libraries ||
                       std::find(s.libraries.begin(), s.libraries.end(), file) != s.libraries.end();
    return there ? &state() : nullptr;
}

void* __wrap_dlsym(void* handle, const char* name) {
    STATE& s = state();
    if (handle != &s)
        return __real_dlsym(handle, name);
    note("dlsym", {}, name);
    if (std::find(s.hidden.begin(), s.hidden.end(), name) != s.hidden.end())
        return nullptr;
    if (std::strcmp(name, "glActiveTextureARB") == 0)
        return reinterpret_cast<void*>(&glActiveTextureARB);
    if (std::strcmp(name, "glMultiTexCoord2fARB") == 0)
        return reinterpret_cast<void*>(&glMultiTexCoord2fARB);
    return nullptr;
}

int __wrap_dlclose(void* handle) {
    if (handle != &state())
        return __real_dlclose(handle);
    note("dlclose", {});
    return 0;
}

// ---- vertices

void GLAPIENTRY glBegin(GLenum mode) {
    if (!note("glBegin", {double(mode)}))
        return;
    STATE& s = state();
    s.primitive = mode;
    s.inside = true;
    ++s.begins;
}

void GLAPIENTRY glEnd() {
    if (!note("glEnd", {}))
        return;
    if (!state().inside)
        complain("glEnd without glBegin");
    state().inside = false;
}

void GLAPIENTRY glVertex2f(GLfloat x, GLfloat y) {
    if (note("glVertex2f", {x, y}))
        addVertex(x, y, 0);
}

void GLAPIENTRY glVertex3f(GLfloat x, GLfloat y, GLfloat z) {
    if (note("glVertex3f", {x, y, z}))
        addVertex(x, y, z);
}

void GLAPIENTRY glVertex3fv(const GLfloat* v) {
    if (note("glVertex3fv", {v[0], v[1], v[2]}))
        addVertex(v[0], v[1], v[2]);
}

void GLAPIENTRY glTexCoord2f(GLfloat u, GLfloat v) {
    if (note("glTexCoord2f", {u, v}))
        setCoordinate(0, u, v);
}

void GLAPIENTRY glNormal3f(GLfloat x, GLfloat y, GLfloat z) {
    if (note("glNormal3f", {x, y, z}))
        state().current.normal = {x, y, z};
}

void GLAPIENTRY glColor3f(GLfloat r, GLfloat g, GLfloat b) {
    if (note("glColor3f", {r, g, b}))
        state().current.color = {r, g, b, 1};
}

void GLAPIENTRY glColor4f(GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
    if (note("glColor4f", {r, g, b, a}))
        state().current.color = {r, g, b, a};
}

// ---- matrices

void GLAPIENTRY glMatrixMode(GLenum mode) {
    if (note("glMatrixMode", {double(mode)}))
        state().matrix_mode = mode;
}

void GLAPIENTRY glPushMatrix() {
    if (note("glPushMatrix", {}))
        ++state().depth[state().matrix_mode];
}

void GLAPIENTRY glPopMatrix() {
    if (!note("glPopMatrix", {}))
        return;
    if (--state().depth[state().matrix_mode] < 0)
        complain("glPopMatrix without glPushMatrix");
}

void GLAPIENTRY glLoadIdentity() { note("glLoadIdentity", {}); }

void GLAPIENTRY glLoadMatrixf(const GLfloat* m) {
    if (note("glLoadMatrixf", {}))
        state().calls.back().args = numbers(m, 16);
}

void GLAPIENTRY glMultMatrixf(const GLfloat* m) {
    if (note("glMultMatrixf", {}))
        state().calls.back().args = numbers(m, 16);
}

void GLAPIENTRY glTranslatef(GLfloat x, GLfloat y, GLfloat z) { note("glTranslatef", {x, y, z}); }

void GLAPIENTRY glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
    note("glRotatef", {angle, x, y, z});
}

void GLAPIENTRY glScalef(GLfloat x, GLfloat y, GLfloat z) { note("glScalef", {x, y, z}); }

void GLAPIENTRY glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top,
                        GLdouble near_plane, GLdouble far_plane) {
    note("glOrtho", {left, right, bottom, top, near_plane, far_plane});
}

void GLAPIENTRY gluOrtho2D(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top) {
    note("gluOrtho2D", {left, right, bottom, top});
}

void GLAPIENTRY gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble near_plane,
                               GLdouble far_plane) {
    note("gluPerspective", {fovy, aspect, near_plane, far_plane});
}

void GLAPIENTRY gluLookAt(GLdouble eye_x, GLdouble eye_y, GLdouble eye_z, GLdouble at_x,
                          GLdouble at_y, GLdouble at_z, GLdouble up_x, GLdouble up_y,
                          GLdouble up_z) {
    note("gluLookAt", {eye_x, eye_y, eye_z, at_x, at_y, at_z, up_x, up_y, up_z});
}

// ---- state

void GLAPIENTRY glEnable(GLenum capability) {
    if (note("glEnable", {double(capability)}))
        setCapability(capability, true);
}

void GLAPIENTRY glDisable(GLenum capability) {
    if (note("glDisable", {double(capability)}))
        setCapability(capability, false);
}

GLboolean GLAPIENTRY glIsEnabled(GLenum capability) {
    note("glIsEnabled", {double(capability)});
    return answerFor(capability) != 0;
}

void GLAPIENTRY glBlendFunc(GLenum source, GLenum destination) {
    note("glBlendFunc", {double(source), double(destination)});
}

void GLAPIENTRY glDepthFunc(GLenum function) { note("glDepthFunc", {double(function)}); }

void GLAPIENTRY glDepthMask(GLboolean on) { note("glDepthMask", {double(on)}); }

void GLAPIENTRY glShadeModel(GLenum mode) { note("glShadeModel", {double(mode)}); }

void GLAPIENTRY glHint(GLenum target, GLenum mode) {
    note("glHint", {double(target), double(mode)});
}

void GLAPIENTRY glCullFace(GLenum mode) { note("glCullFace", {double(mode)}); }

void GLAPIENTRY glClear(GLbitfield mask) { note("glClear", {double(mask)}); }

void GLAPIENTRY glClearColor(GLfloat r, GLfloat g, GLfloat b, GLfloat a) {
    note("glClearColor", {r, g, b, a});
}

void GLAPIENTRY glClearDepth(GLdouble depth) { note("glClearDepth", {depth}); }

void GLAPIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    note("glViewport", {double(x), double(y), double(width), double(height)});
}

void GLAPIENTRY glFogf(GLenum name, GLfloat value) { note("glFogf", {double(name), value}); }

void GLAPIENTRY glFogi(GLenum name, GLint value) { note("glFogi", {double(name), double(value)}); }

void GLAPIENTRY glFogfv(GLenum name, const GLfloat* v) {
    if (name == GL_FOG_COLOR)
        note("glFogfv", {double(name), v[0], v[1], v[2], v[3]});
    else
        note("glFogfv", {double(name), v[0]});
}

// ---- textures

void GLAPIENTRY glGenTextures(GLsizei n, GLuint* names) {
    note("glGenTextures", {double(n)});
    for (GLsizei i = 0; i < n; ++i)
        names[i] = state().next_texture++;
}

void GLAPIENTRY glDeleteTextures(GLsizei n, const GLuint* names) {
    if (!note("glDeleteTextures", {double(n)}))
        return;
    std::vector<double>& args = state().calls.back().args;
    args.insert(args.end(), names, names + n);
}

void GLAPIENTRY glBindTexture(GLenum target, GLuint name) {
    if (note("glBindTexture", {double(target), double(name)}))
        state().bound[state().unit] = name;
}

void GLAPIENTRY glTexParameteri(GLenum target, GLenum name, GLint value) {
    note("glTexParameteri", {double(target), double(name), double(value)});
}

void GLAPIENTRY glTexParameterf(GLenum target, GLenum name, GLfloat value) {
    note("glTexParameterf", {double(target), double(name), value});
}

void GLAPIENTRY glSecondaryColor3f(GLfloat red, GLfloat green, GLfloat blue) {
    note("glSecondaryColor3f", {red, green, blue});
}

void GLAPIENTRY glTexEnvi(GLenum target, GLenum name, GLint value) {
    note("glTexEnvi", {double(target), double(name), double(value)});
}

void GLAPIENTRY glTexEnvf(GLenum target, GLenum name, GLfloat value) {
    note("glTexEnvf", {double(target), double(name), value});
}

void GLAPIENTRY glTexEnvfv(GLenum target, GLenum name, const GLfloat* values) {
    note("glTexEnvfv", {double(target), double(name), values[0], values[1], values[2], values[3]});
}

void GLAPIENTRY glTexImage2D(GLenum target, GLint level, GLint internal, GLsizei width,
                             GLsizei height, GLint border, GLenum format, GLenum type,
                             const void* pixels) {
    if (note("glTexImage2D", {double(target), double(level), double(internal), double(width),
                              double(height), double(border), double(format), double(type)}))
        noteBytes(pixels, imageBytes(format, width, height));
}

void GLAPIENTRY glTexSubImage2D(GLenum target, GLint level, GLint x, GLint y, GLsizei width,
                                GLsizei height, GLenum format, GLenum type, const void* pixels) {
    if (note("glTexSubImage2D", {double(target), double(level), double(x), double(y), double(width),
                                 double(height), double(format), double(type)}))
        noteBytes(pixels, imageBytes(format, width, height));
}

GLint GLAPIENTRY gluBuild2DMipmaps(GLenum target, GLint internal, GLsizei width, GLsizei height,
                                   GLenum format, GLenum type, const void* pixels) {
    if (note("gluBuild2DMipmaps", {double(target), double(internal), double(width), double(height),
                                   double(format), double(type)}))
        noteBytes(pixels, imageBytes(format, width, height));
    return 0;
}

// ---- questions

GLenum GLAPIENTRY glGetError() {
    note("glGetError", {});
    return GL_NO_ERROR;
}

const GLubyte* GLAPIENTRY glGetString(GLenum name) {
    note("glGetString", {double(name)});
    const auto& strings = state().strings;
    const auto found = strings.find(name);
    return reinterpret_cast<const GLubyte*>(found == strings.end() ? "" : found->second.c_str());
}

void GLAPIENTRY glGetIntegerv(GLenum name, GLint* value) {
    note("glGetIntegerv", {double(name)});
    *value = static_cast<GLint>(answerFor(name));
}

void GLAPIENTRY glGetFloatv(GLenum name, GLfloat* value) {
    note("glGetFloatv", {double(name)});
    *value = static_cast<GLfloat>(answerFor(name));
}

void GLAPIENTRY glGetBooleanv(GLenum name, GLboolean* value) {
    note("glGetBooleanv", {double(name)});
    *value = answerFor(name) != 0;
}

}  // extern "C"

namespace test {

bool GL_CALL::operator==(const GL_CALL& other) const {
    return name == other.name && args == other.args && text == other.text;
}

std::ostream& operator<<(std::ostream& out, const GL_CALL& call) {
    out << call.name << "(";
    const char* separator = "";
    for (const double arg : call.args) {
        out << separator << arg;
        separator = ", ";
    }
    if (!call.text.empty())
        out << separator << call.text;
    return out << ")";
}

const std::vector<GL_CALL>& calls() { return state().calls; }

const std::vector<GL_VERTEX>& vertices() { return state().vertices; }

void clear() {
    STATE& s = state();
    s.calls.clear();
    s.vertices.clear();
    s.counts.clear();
    s.begins = 0;
    total = 0;
}

int count(const std::string& name) { return state().counts[name]; }

int indexOf(const std::string& name, int from) {
    const auto& all = calls();
    for (size_t i = from; i < all.size(); ++i) {
        if (all[i].name == name)
            return static_cast<int>(i);
    }
    return -1;
}

int indexOf(const GL_CALL& call, int from) {
    const auto& all = calls();
    for (size_t i = from; i < all.size(); ++i) {
        if (all[i] == call)
            return static_cast<int>(i);
    }
    return -1;
}

bool wasCalled(const std::string& name) { return indexOf(name) >= 0; }

bool wasCalled(const GL_CALL& call) { return indexOf(call) >= 0; }

std::vector<GL_CALL> callsOf(const std::string& name) {
    std::vector<GL_CALL> found;
    for (const GL_CALL& call : calls()) {
        if (call.name == name)
            found.push_back(call);
    }
    return found;
}

std::string imbalance() {
    std::string result = state().complaints;
    if (state().inside)
        result += "glBegin without glEnd\n";
    for (const auto& [mode, depth] : state().depth) {
        if (depth > 0)
            result += "glPushMatrix without glPopMatrix\n";
    }
    return result;
}

bool isEnabled(GLenum capability, int unit) {
    const STATE& s = state();
    if (capability == GL_TEXTURE_2D)
        return s.texturing[unit];
    const auto found = s.enabled.find(capability);
    return found != s.enabled.end() && found->second;
}

GLuint boundTexture(int unit) { return state().bound[unit]; }

int activeUnit() { return state().unit; }

void setAnswer(GLenum name, double value) { state().numbers[name] = value; }

void setAnswer(GLenum name, const char* text) { state().strings[name] = text; }

void setLibraries(std::vector<std::string> names) {
    state().all_libraries = false;
    state().libraries = std::move(names);
}

void hideFunctions(std::vector<std::string> names) { state().hidden = std::move(names); }

void setKeepImages(bool on) { keep_images = on; }

void setCountingOnly(bool on) { counting_only = on; }

long totalCount() { return total; }

}  // namespace test
