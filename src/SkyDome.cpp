#include "SkyDome.h"

#include <algorithm>
#include <cmath>

#include "system/SceneClock.h"

SkyDome::SkyDome() : timer(sceneTicks()) {}

void SkyDome::init(SKYDOME_MODE mode) {
    if (mode == skymode)
        return;
    skymode = mode;
    if (mode == SKY_DOME)
        generateDome();
    else if (mode == SKY_PLANE)
        generatePlane();
}

void SkyDome::setColorTop(float r, float g, float b) {
    topcolor = {r, g, b};
    colormode = true;
}

void SkyDome::setColorBottom(float r, float g, float b) {
    bottomcolor = {r, g, b};
    colormode = true;
}

void SkyDome::cleanup() {
    delete[] vertices;
    vertices = nullptr;
    NumVertices = 0;
    delete[] indices;
    indices = nullptr;
    NumIndices = 0;
}

void SkyDome::generateDome() {
    delete[] vertices;
    vertices = nullptr;
    NumVertices = 0;
    // The loops step by whole degrees.
    if (!(dtheta >= 1 && dphi >= 1))
        return;
    NumVertices = static_cast<int>(360 / dtheta * (90 / dphi) * 4);
    vertices = new SKYVERTEX[NumVertices]();

    // The indices of an earlier plane stay, as far as they name a vertex that is there.
    NumIndices = static_cast<int>(std::remove_if(indices, indices + NumIndices,
                                                 [this](GLIndex i) { return i >= NumVertices; }) -
                                  indices);

    SKYCOLOR color = topcolor;
    SKYCOLOR step{0, 0, 0};
    if (colormode) {
        const int rows = static_cast<int>(90 / dphi);
        step = {(bottomcolor.r - topcolor.r) / rows, (bottomcolor.g - topcolor.g) / rows,
                (bottomcolor.b - topcolor.b) / rows};
    }

    SKYVERTEX* next = vertices;
    const auto emit = [&](double phi, double theta) {
        // Steps that are not whole make more cells than the array has room for.
        if (next == vertices + NumVertices)
            return;
        const double p = phi * RADIANS_PER_DEGREE;
        const double t = theta * RADIANS_PER_DEGREE;
        next->vec.set(static_cast<float>(radius * std::sin(p) * std::cos(t)),
                      static_cast<float>(radius * std::sin(p) * std::sin(t)),
                      static_cast<float>(radius * std::cos(p)));
        const GLVector3 d = normalize(&next->vec);
        next->tex.set(static_cast<float>(hTile * std::atan2(d.x, d.z) / 6.2831854820251465 + 0.5),
                      static_cast<float>(vTile * std::asin(d.y) / 3.1415927 + 0.5));
        if (colormode)
            next->color = color;
        ++next;
    };
    for (int phi = 0; phi <= 90 - dphi; phi += static_cast<int>(dphi)) {
        for (int theta = 0; theta <= 360 - dtheta; theta += static_cast<int>(dtheta)) {
            emit(phi, theta);
            emit(phi + dphi, theta);
            emit(phi, theta + dtheta);
            emit(phi + dphi, theta + dtheta);
        }
        color = {color.r + step.r, color.g + step.g, color.b + step.b};
    }

    for (int i = 0; i < NumVertices - 3; ++i) {
        repairSeam(i, &GLVector2::x, 0.9f);
        repairSeam(i, &GLVector2::y, 0.8f);
    }
}

// Where the texture starts anew between neighbours of the strip, its coordinates go on instead.
void SkyDome::repairSeam(int i, float GLVector2::*coordinate, float threshold) {
    float& a = vertices[i].tex.*coordinate;
    float& b = vertices[i + 1].tex.*coordinate;
    float& c = vertices[i + 2].tex.*coordinate;
    const auto raise = [threshold](float& first, float& second) {
        if (first - second > threshold)
            second += 1;
        if (second - first > threshold)
            first += 1;
    };
    raise(a, b);
    raise(a, c);
    raise(b, c);
}

void SkyDome::generatePlane() {
    cleanup();
    const int d = std::clamp(divisions, 1, 256);
    pRadius = PlanetRadius;
    NumVertices = (d + 1) * (d + 1);
    NumIndices = d * d * 6;
    vertices = new SKYVERTEX[NumVertices]();
    indices = new GLIndex[NumIndices];

    const float size =
        2 * std::sqrt(AtmosphereRadius * AtmosphereRadius - PlanetRadius * PlanetRadius);
    const float delta = size / d;
    const float texdelta = 2.0f / d;
    SKYVERTEX* vertex = vertices;
    for (int i = 0; i <= d; ++i) {
        for (int j = 0; j <= d; ++j, ++vertex) {
            const float x = -0.5f * size + j * delta;
            const float z = -0.5f * size + i * delta;
            const float height = x * x / AtmosphereRadius + z * z / AtmosphereRadius;
            vertex->vec.set(x, 0 - height, z);
            vertex->tex.set(j * texdelta * 0.5f * hTile, (1 - i * texdelta * 0.5f) * vTile);
        }
    }

    GLIndex* index = indices;
    for (int i = 0; i < d; ++i) {
        for (int j = 0; j < d; ++j) {
            const int s = (d + 1) * i + j;
            for (const int corner : {s, s + 1, s + d + 1, s + 1, s + d + 2, s + d + 1})
                *index++ = static_cast<GLIndex>(corner);
        }
    }
}

void SkyDome::preRender() {
    glGetBooleanv(GL_LIGHTING, &lightenabled);
    glPushMatrix();
    const Uint32 now = sceneTicks();
    const Uint32 elapsed = now - timer;
    timer = now;
    rotateY(static_cast<float>(elapsed * rotationspeed / 1000.0));
    glDisable(GL_LIGHTING);
    RenderObject::preRender();
    if (skymode == SKY_DOME) {
        glTranslatef(0, -100, 0);
        // The pole of the dome is on +z.
        glRotatef(270, 1, 0, 0);
    } else {
        glTranslatef(0, pRadius, 0);
    }
}

void SkyDome::renderMesh() {
    if (skymode == SKY_DOME)
        renderDome();
    else
        renderPlane();
}

void SkyDome::renderDome() {
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i < NumVertices; ++i) {
        const SKYVERTEX& v = vertices[i];
        textureCoord(v.tex.x, v.tex.y);
        glVertex3f(v.vec.x, v.vec.y, v.vec.z);
    }
    glEnd();
}

void SkyDome::renderPlane() {
    glBegin(GL_TRIANGLES);
    for (int i = 0; vertices && i < NumIndices; ++i) {
        const SKYVERTEX& v = vertices[indices[i]];
        textureCoord(v.tex.x, v.tex.y);
        glVertex3f(v.vec.x, v.vec.y, v.vec.z);
    }
    glEnd();
}

void SkyDome::postRender() {
    if (lightenabled == GL_TRUE)
        glEnable(GL_LIGHTING);
    glPopMatrix();
    RenderObject::postRender();
}
