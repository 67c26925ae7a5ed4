#include "system/QModel.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "system/ModelFile.h"
#include "system/RenderObject.h"
#include "system/SceneClock.h"

namespace {

/// The bytes of a file; nothing, after a line on standard output, when they cannot be had.
std::optional<std::vector<uint8_t>> readFile(const char* loader, const char* path) {
    FILE* file = std::fopen(path, "rb");
    if (!file) {
        std::printf("QModel::%s fopen %s failed\n", loader, path);
        return std::nullopt;
    }
    // Read to the end instead of asking for the size: the answer for a directory is nonsense.
    std::vector<uint8_t> bytes;
    uint8_t piece[65536];
    while (const size_t got = std::fread(piece, 1, sizeof(piece), file))
        bytes.insert(bytes.end(), piece, piece + got);
    const bool failed = std::ferror(file);
    std::fclose(file);
    if (failed) {
        std::printf("QModel::%s %s: the file cannot be read\n", loader, path);
        return std::nullopt;
    }
    return bytes;
}

}  // namespace

QModel::QModel() : time(sceneTicks()) {}

bool QModel::loadMD3(const char* path) {
    const auto bytes = readFile("loadMD3", path);
    return bytes ? decodeMD3(bytes->data(), bytes->size(), path) : adopt(std::nullopt);
}

bool QModel::loadMD2(const char* path) {
    const auto bytes = readFile("loadMD2", path);
    return bytes ? decodeMD2(bytes->data(), bytes->size(), path) : adopt(std::nullopt);
}

bool QModel::decodeMD3(const uint8_t* data, size_t size, const char* path) {
    return adopt(decodeMD3File(data, size, path));
}

bool QModel::decodeMD2(const uint8_t* data, size_t size, const char* path) {
    return adopt(decodeMD2File(data, size, path));
}

bool QModel::adopt(std::optional<MODEL_MESH> mesh) {
    cleanup();
    loaded = mesh.has_value();
    NumFrames = loaded ? mesh->frames : 0;
    NumVerts = loaded ? mesh->vertices : 0;
    NumTris = loaded ? mesh->triangles : 0;
    if (loaded) {
        framedata = std::move(mesh->framedata);
        indices = std::move(mesh->indices);
        texindices = std::move(mesh->texindices);
        m_anim.insert(m_anim.end(), mesh->animations.begin(), mesh->animations.end());
    }
    return loaded;
}

void QModel::cleanup() {
    framedata.reset();
    indices.reset();
    texindices.reset();
    blended.reset();
    actframe = nextframe = blendedact = blendednext = nullptr;
}

void QModel::addAnimation(int start, int end, const char* name) {
    const int last = std::max(NumFrames - 1, 0);
    start = std::clamp(start, 0, last);
    m_anim.push_back({static_cast<float>(start), start, std::clamp(end, 0, last), name});
}

void QModel::setAnimation(const char* name) {
    for (size_t i = 0; i < m_anim.size(); ++i) {
        if (m_anim[i].name == name) {
            curAni = static_cast<int>(i);
            m_anim[i].cur = static_cast<float>(m_anim[i].start);
            return;
        }
    }
}

void QModel::setFPS(float newfps) {
    fps = newfps;
    timePerFrame = 1000.0f / fps;
}

int QModel::getAnimationCount() { return static_cast<int>(m_anim.size()); }

void QModel::getAnimationName(int index, char* out) {
    std::strcpy(out, m_anim[index].name.c_str());
}

int QModel::getActFrame() { return m_anim.empty() ? 0 : static_cast<int>(m_anim[curAni].cur); }

int QModel::getStartFrame() { return m_anim.empty() ? 0 : m_anim[curAni].start; }

int QModel::getEndFrame() { return m_anim.empty() ? 0 : m_anim[curAni].end; }

MDX_FRAMEDATA* QModel::keyframe(int frame) {
    // A range may outlast the file it was made for: one that was freed, or replaced by a shorter.
    return framedata ? &framedata[std::clamp(frame, 0, NumFrames - 1)] : nullptr;
}

void QModel::preRender() {
    glPushMatrix();
    if (m_anim.empty())
        return;
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - time;
    time = now;

    SAnimation& a = m_anim[curAni];
    int next = 0;
    if (playing) {
        const float cur = a.cur + elapsed / timePerFrame;
        if (cur > a.cur && std::isfinite(cur))
            a.cur = cur;
        interpolation_val = a.cur - std::trunc(a.cur);
        // What taking off whole rounds one by one would leave, however many there are.
        const int round = a.end + 1 - a.start;
        if (a.cur >= a.end + 1)
            a.cur = round > 0 ? a.start + std::fmod(a.cur - a.start, static_cast<float>(round))
                              : a.start;
        next = static_cast<int>(a.cur) + 1;
        if (next > a.end)
            next = a.start;
    }
    actframe = keyframe(static_cast<int>(a.cur));
    nextframe = keyframe(next);
}

void QModel::renderMesh(RenderObject* obj) {
    renderobj = obj;
    if (m_anim.empty())
        renderSingleFrame(0);
    else
        renderAnimation();
}

void QModel::postRender() { glPopMatrix(); }

template <class Positioned>
void QModel::renderTriangles(Positioned position) {
    // Copies of the members: after each GL call the compiler would have to load them again.
    const GLVertex* const vertices = actframe->vertices.get();
    const GLVector2* const coordinates = actframe->tex.get();
    const GLIndex* const corners = indices.get();
    const GLIndex* const texcorners = texindices.get();
    RenderObject* const object = renderobj;
    const size_t count = 3 * static_cast<size_t>(NumTris);
    glBegin(GL_TRIANGLES);
    for (size_t c = 0; c < count; ++c) {
        const GLIndex i = corners[c];
        const GLVector3& normal = vertices[i].normal;
        const GLVector2& tex = coordinates[texcorners[c]];
        const GLVector3& pos = position(i);
        glNormal3f(normal.x, normal.y, normal.z);
        if (object)
            object->textureCoord(tex.x, tex.y);
        glVertex3f(pos.x, pos.y, pos.z);
    }
    glEnd();
}

void QModel::renderKeyframe() {
    const GLVertex* const vertices = actframe->vertices.get();
    renderTriangles([vertices](GLIndex i) -> const GLVector3& { return vertices[i].pos; });
}

void QModel::renderSingleFrame(int frame) {
    if (frame >= NumFrames) {
        std::printf("frame >= NumFrames\n");
        return;
    }
    actframe = keyframe(frame);
    if (actframe)
        renderKeyframe();
}

void QModel::renderAnimation() {
    if (!actframe)
        return;
    // Without a step since the last single frame there is nothing to blend towards.
    if (!nextframe || !renderobj || !(renderobj->flags & INTERPOLATION)) {
        renderKeyframe();
        return;
    }
    blend();
    const GLVector3* const positions = blended.get();
    renderTriangles([positions](GLIndex i) -> const GLVector3& { return positions[i]; });
}

void QModel::blend() {
    if (blendedact == actframe && blendednext == nextframe && blendedval == interpolation_val)
        return;
    if (!blended)
        blended.reset(new GLVector3[NumVerts]);
    for (int v = 0; v < NumVerts; ++v)
        blended[v] = linearInterpolation(&actframe->vertices[v].pos, &nextframe->vertices[v].pos,
                                         interpolation_val);
    blendedact = actframe;
    blendednext = nextframe;
    blendedval = interpolation_val;
}
