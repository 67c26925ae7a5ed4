// Writes the GL calls of one frame to standard output, first as renderScene makes them, then part
// by part: the numbers of calls, vertices and words of each, and the words.
//
// All GL functions of a frame come here first; see the --wrap options of this program. Nothing is
// timed here: the measuring program is linked without them.
#include <algorithm>
#include <array>
#include <cstdio>

#include "bench_world.h"
#include "gl_trace.h"

namespace {

bench::TRACE trace;
bool recording = false;

template <class Value>
void keep(const Value& value) {
    constexpr size_t size = sizeof value;
    static_assert(size % sizeof(uint32_t) == 0);
    std::vector<uint32_t>& words = trace.words;
    const size_t end = words.size();
    words.resize(end + size / sizeof(uint32_t));
    std::memcpy(&words[end], &value, size);
}

template <class... Arguments>
void record(bench::TRACE_OP op, const Arguments&... arguments) {
    if (!recording)
        return;
    ++trace.calls;
    trace.vertices += op == bench::OP_glVertex3f;
    trace.words.push_back(op);
    (keep(arguments), ...);
}

MULTITEXTURING real;

void APIENTRY activeTexture(GLenum unit) {
    record(bench::OP_glActiveTextureARB, unit);
    real.active_texture(unit);
}

void APIENTRY multiTexCoord(GLenum unit, GLfloat s, GLfloat t) {
    record(bench::OP_glMultiTexCoord2fARB, unit, s, t);
    real.multi_tex_coord(unit, s, t);
}

void write() {
    const uint32_t header[] = {trace.calls, trace.vertices,
                               static_cast<uint32_t>(trace.words.size())};
    std::fwrite(header, sizeof header, 1, stdout);
    std::fwrite(trace.words.data(), sizeof(uint32_t), trace.words.size(), stdout);
    trace = {};
}

}  // namespace

#define CALL(name, parameters, arguments)                                                         \
    void __real_##name parameters;                                                                \
    void __wrap_##name parameters;                                                                \
    void __wrap_##name parameters {                                                               \
        const auto keep_all = [](const auto&... values) { record(bench::OP_##name, values...); }; \
        keep_all arguments;                                                                       \
        __real_##name arguments;                                                                  \
    }
extern "C" {
TRACED_CALLS(CALL)

void __real_glMultMatrixf(const GLfloat* matrix);
void __wrap_glMultMatrixf(const GLfloat* matrix);
void __wrap_glMultMatrixf(const GLfloat* matrix) {
    std::array<GLfloat, 16> values;
    std::copy_n(matrix, values.size(), values.begin());
    record(bench::OP_glMultMatrixf, values);
    __real_glMultMatrixf(matrix);
}

void __real_glGetBooleanv(GLenum name, GLboolean* answer);
void __wrap_glGetBooleanv(GLenum name, GLboolean* answer);
void __wrap_glGetBooleanv(GLenum name, GLboolean* answer) {
    record(bench::OP_glGetBooleanv, name);
    __real_glGetBooleanv(name, answer);
}
}
#undef CALL

int main() {
    bench::World world;
    if (!world.ok()) {
        std::fprintf(stderr, "record_frame: no OpenGL context\n");
        return 1;
    }
    // The replay knows no scissor; the picture is the same without.
    world.scene->draw_in_rows = nullptr;
    real = multitexturing;
    multitexturing.active_texture = activeTexture;
    multitexturing.multi_tex_coord = multiTexCoord;

    world.advanceToTracedFrame();
    recording = true;
    world.scene->renderScene();
    write();
    for (const bench::PART& part : world.parts()) {
        part.draw();
        write();
    }
    recording = false;
    return std::fflush(stdout) == 0 ? 0 : 1;
}
