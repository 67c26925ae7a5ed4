// Writes the shapes of the island for the ray tracer: ground, stones, palms and jungle.
// Picture coordinates: x 0..30 to the right, y above the sea, z away from the viewer.
//
// island_geometry SHAPES.inc ISLAND.inc
#include <cstdio>
#include <string>

#include "common/image.h"
#include "common/noise.h"
#include "island/shapes.h"

using namespace art;

namespace {

constexpr int kFronds = 4, kClumps = 6, kRosettes = 2, kLeafTextures = 6;

/// A scene file that is being written.
class Scene {
public:
    explicit Scene(const std::string& path) : file_(std::fopen(path.c_str(), "w")) {
        if (!file_)
            fail("cannot write " + path);
    }
    ~Scene() { std::fclose(file_); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    template <class... Values>
    void write(const char* format, Values... values) {
        std::fprintf(file_, format, values...);
    }
    void write(const char* text) { std::fputs(text, file_); }

    void declare(const std::string& name, const Mesh& mesh) {
        write("#declare %s=mesh2{vertex_vectors{%zu", name.c_str(), mesh.vertices.size());
        for (const Vertex& v : mesh.vertices)
            write(",<%.4f,%.4f,%.4f>", v.position.x, v.position.y, v.position.z);
        write("}\nnormal_vectors{%zu", mesh.vertices.size());
        for (const Vec3& n : mesh.normals())
            write(",<%.3f,%.3f,%.3f>", n.x, n.y, n.z);
        write("}\nuv_vectors{%zu", mesh.vertices.size());
        for (const Vertex& v : mesh.vertices)
            write(",<%.3f,%.3f>", v.texture.x, v.texture.y);
        write("}\nface_indices{%zu", mesh.triangles.size());
        for (const auto& t : mesh.triangles)
            write(",<%d,%d,%d>", t[0], t[1], t[2]);
        write("}}\n");
    }

private:
    FILE* file_;
};

/// A bell of width w around c.
float bell(float x, float c, float w) { return std::exp(-std::pow((x - c) / w, 2.0f)); }

/// Height of the ground: a long flat spit to the left, a hill to the right, a shelf under water.
float ground(float x, float z) {
    const float rough = fractalNoise({x * 0.16f, z * 0.16f, 0.5f}, 4, 3);
    const float fine = fractalNoise({x * 0.5f, z * 0.5f, 0.5f}, 4, 4);
    // 1 on the island's long axis, 0 on its shore.
    const float left = (18.5f - x) / 19.5f, right = (x - 18.5f) / 13.8f;
    const float profile = x < 18.5f ? 1 - std::pow(left, 1.55f) : 1 - right * right;
    const float depth = 6.6f * std::sqrt(std::max(0.0f, profile)) * (1 + 0.22f * rough);
    const float off = (z + 1.2f * rough) / std::max(0.3f, depth);
    const float inland = 1 - off * off;

    float beach = 2.05f * smoothstep(-0.5f, 0.85f, inland) * smoothstep(0, 0.50f, profile) - 0.35f -
                  0.18f * smoothstep(0.2f, 0.9f, profile);
    if (inland < 0)
        beach = std::min(beach, -0.30f + 1.7f * std::max(-4.0f, inland));
    if (profile < -0.10f)
        beach = std::min(beach, -0.33f + 2.5f * (profile + 0.10f));
    const float hill = smoothstep(0.46f, 1.0f, inland) * smoothstep(0.15f, 0.75f, profile) *
                       (1.2f + 6.4f * bell(x, 20.8f, 4.9f) + 3.2f * bell(x, 12.6f, 3.6f) +
                        2.6f * bell(x, 27.0f, 2.6f));
    return beach + hill * (1 + 0.22f * fine) + 0.06f * fine;
}

Mesh groundMesh() {
    constexpr int kAlong = 420, kDeep = 200;
    Mesh mesh;
    for (int j = 0; j <= kDeep; ++j)
        for (int i = 0; i <= kAlong; ++i) {
            const float u = static_cast<float>(i) / kAlong, v = static_cast<float>(j) / kDeep;
            const float x = -2 + 34 * u, z = -9 + 17 * v;
            mesh.add({x, ground(x, z), z}, {u, v});
        }
    for (int j = 0; j < kDeep; ++j)
        for (int i = 0; i < kAlong; ++i) {
            const int a = j * (kAlong + 1) + i;
            mesh.quad(a, a + kAlong + 1, a + kAlong + 2, a + 1);
        }
    return mesh;
}

struct Stone {
    float x, z, size, tall;
};
/// Along the shore; the last ones are the crags of the hill.
const Stone kStones[] = {
    {4.3f, -1.3f, 0.55f, 0.85f}, {5.2f, -2.0f, 0.8f, 0.85f},  {5.9f, -1.5f, 0.5f, 0.85f},
    {3.6f, -0.8f, 0.4f, 0.85f},  {25.4f, -4.2f, 1.0f, 0.85f}, {26.5f, -3.9f, 0.7f, 0.85f},
    {24.3f, -4.4f, 0.5f, 0.85f}, {27.6f, -3.2f, 0.8f, 0.85f}, {14.6f, -4.9f, 0.45f, 0.85f},
    {15.3f, -5.0f, 0.3f, 0.85f}, {28.8f, -2.2f, 0.6f, 0.85f}, {20.6f, -0.6f, 1.5f, 1.5f},
    {22.0f, -0.2f, 1.2f, 1.25f}, {19.3f, -1.0f, 1.0f, 1.2f},  {21.4f, -1.3f, 0.8f, 1.3f},
};
constexpr size_t kFirstCrag = 11;

void writeStones(Scene& scene) {
    Random random(77);
    Mesh all;
    for (const Stone& s : kStones) {
        const uint32_t seed = random.bits() % 999;
        const Vec3 size = Vec3{1.25f, s.tall, 1} * s.size;
        const Vec3 foot{s.x, std::max(-0.1f, ground(s.x, s.z)) + 0.15f * s.size, s.z};
        const float turn = random.range(0, 360);
        all.append(island::boulder(seed, size), [&](Vec3 p) { return rotateY(p, turn) + foot; });
    }
    scene.declare("Stones", all);
}

struct Palm {
    float x, z, height, lean, direction;  ///< degrees, 0 leans to the right, 90 to the viewer
};
const Palm kPalms[] = {
    {6.3f, -0.6f, 5.0f, 2.5f, 185},  {6.9f, 0.2f, 6.4f, 1.6f, 170},
    {7.5f, -1.5f, 4.2f, 1.9f, 205},  {8.1f, -0.6f, 7.0f, 1.5f, 190},
    {9.0f, -1.9f, 5.3f, 1.6f, 150},  {10.4f, -1.0f, 6.6f, 1.2f, 20},
    {11.6f, -2.4f, 5.0f, 1.7f, 200}, {13.4f, -2.9f, 5.7f, 1.3f, 170},
    {15.6f, -3.1f, 4.9f, 1.6f, 15},  {17.6f, -3.4f, 6.2f, 1.3f, 195},
    {18.6f, -3.0f, 5.2f, 1.2f, 20},  {21.2f, -3.5f, 6.0f, 1.5f, 160},
    {22.6f, -3.2f, 4.9f, 1.4f, 10},  {24.2f, -2.9f, 6.2f, 1.4f, 20},
    {26.4f, -2.4f, 5.4f, 1.9f, 10},  {27.5f, -1.4f, 4.7f, 2.2f, 0},
    {7.3f, 1.5f, 6.2f, 1.0f, 90},    {12.6f, 0.5f, 5.4f, 0.9f, 120},
    {15.0f, 1.2f, 5.0f, 1.0f, 30},   {18.0f, 0.4f, 4.6f, 0.9f, 60},
    {24.0f, 0.6f, 4.6f, 0.9f, 100},  {25.2f, 1.0f, 4.6f, 1.1f, 10},
};

void writePalm(Scene& scene, const Palm& palm, int number, Random& random) {
    constexpr int kJoints = 7;
    const float angle = palm.direction * kPi / 180;
    const Vec3 lean{std::cos(angle), 0, -std::sin(angle) * 0.5f};
    const Vec3 foot{palm.x, ground(palm.x, palm.z) - 0.1f, palm.z};
    std::vector<Vec3> trunk;
    for (int i = 0; i <= kJoints; ++i) {
        const float t = static_cast<float>(i) / kJoints;
        const float wobble = 0.06f * std::sin(t * 5 + static_cast<float>(number));
        trunk.push_back(foot + lean * (palm.lean * std::pow(t, 1.7f)) +
                        Vec3{wobble, palm.height * t - 0.12f * palm.lean * t * t, 0});
    }
    scene.write("sphere_sweep{b_spline %d", kJoints + 3);
    for (int i = -1; i <= kJoints + 1; ++i) {
        const Vec3 p = i < 0         ? trunk[0] - Vec3{0, 0.5f, 0}
                       : i > kJoints ? trunk[kJoints] * 2.0f - trunk[kJoints - 1]
                                     : trunk[size_t(i)];
        const float t = clamp01(static_cast<float>(i) / kJoints);
        scene.write(",<%.3f,%.3f,%.3f>,%.3f", p.x, p.y, p.z,
                    mix(0.185f, 0.095f, t) + 0.10f * std::exp(-t * 9));
    }
    scene.write(" tolerance 0.001 texture{T_Trunk}}\n");

    const Vec3 top = trunk[kJoints];
    const int leaves = 15 + random.index(4);
    for (int i = 0; i < leaves; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(leaves);
        const float turn = static_cast<float>(i) * 137.5f + random.range(-12, 12);
        const float size = random.range(2.7f, 3.5f) * (palm.height / 5.6f * 0.35f + 0.65f) *
                           (t < 0.2f ? 0.8f : 1.0f);
        const float tilt = mix(24.0f, -34.0f, t) + random.range(-7, 7);
        scene.write(
            "object{Frond%d texture{T_Frond%d} scale %.3f rotate z*%.1f rotate x*%.1f "
            "rotate y*%.1f translate<%.3f,%.3f,%.3f>}\n",
            std::min(kFronds - 1, static_cast<int>(t * kFronds)), random.index(3), size, tilt,
            random.range(-12, 12), turn, top.x, top.y, top.z);
    }
    // One or two dead leaves hang along the trunk.
    for (int i = random.index(3); i > 0; --i)
        scene.write(
            "object{Frond%d texture{T_DeadFrond} scale %.3f rotate z*-58 rotate y*%.1f "
            "translate<%.3f,%.3f,%.3f>}\n",
            kFronds - 1, random.range(1.6f, 2.2f), random.range(0, 360), top.x, top.y - 0.1f,
            top.z);
    for (int i = 4 + random.index(4); i > 0; --i) {
        const float a = random.range(0, 2 * kPi);
        scene.write("sphere{<%.3f,%.3f,%.3f>,.135 texture{T_Nut}}\n", top.x + 0.20f * std::cos(a),
                    top.y - 0.17f, top.z + 0.20f * std::sin(a));
    }
}

bool onCrag(float x, float z) {
    for (size_t i = kFirstCrag; i < std::size(kStones); ++i) {
        const Stone& s = kStones[i];
        if (std::hypot(x - s.x, z - s.z) < 1.1f * s.size)
            return true;
    }
    return false;
}

void writeClump(Scene& scene, Vec3 p, Vec3 size, Random& random) {
    const int shape = random.index(kClumps), texture = random.index(kLeafTextures);
    scene.write("object{Clump%d texture{T_Leaf%d} scale <%.3f,%.3f,%.3f> rotate y*%.0f ", shape,
                texture, size.x, size.y, size.z, random.range(0, 360));
    scene.write("translate<%.3f,%.3f,%.3f>}\n", p.x, p.y, p.z);
}

void writeJungle(Scene& scene) {
    Random random(5);
    int left = 1700;
    for (int i = 0; i < 7000 && left > 0; ++i) {
        const float x = random.range(5.5f, 29.3f), z = random.range(-5.0f, 3.2f);
        const float h = ground(x, z), large = std::pow(random.unit(), 3.0f);
        if (h < 1.80f || onCrag(x, z))
            continue;
        // Bushes towards the beach, trees uphill.
        const float s =
            mix(random.range(0.24f, 0.48f), mix(0.36f, 1.30f, large), smoothstep(2.0f, 3.0f, h));
        writeClump(scene, {x, h + 0.25f * s, z}, {s, s * random.range(0.8f, 1.15f), s}, random);
        --left;
    }
    // Low bushes creep out onto the sand in places.
    for (int i = 0; i < 1400; ++i) {
        const float x = random.range(5, 29.3f), z = random.range(-6.5f, -1);
        const float h = ground(x, z), s = random.range(0.10f, 0.30f);
        const float creep = fractalNoise({x * 0.45f, 0.5f, 0.5f}, 2, 8);
        if (h < 1.62f - 0.75f * creep || h > 1.85f)
            continue;
        writeClump(scene, {x, h + 0.15f * s, z}, {s * 1.3f, s * 0.8f, s * 1.3f}, random);
    }
    // Trees that stand above the rest.
    for (int i = 0; i < 90; ++i) {
        const float x = random.range(9, 28), z = random.range(-2.5f, 2.5f);
        const float h = ground(x, z);
        if (h < 2.6f || onCrag(x, z))
            continue;
        const float trunk = random.range(0.9f, 2.0f) * smoothstep(2.2f, 4.5f, h);
        scene.write("cylinder{<%.2f,%.2f,%.2f>,<%.2f,%.2f,%.2f>,.07 texture{T_Trunk}}\n", x, h, z,
                    x, h + trunk, z);
        for (int k = 0; k < 5; ++k) {
            const float s = random.range(0.40f, 0.85f);
            writeClump(scene,
                       {x + random.range(-0.6f, 0.6f), h + trunk + random.range(-0.15f, 0.4f),
                        z + random.range(-0.5f, 0.5f)},
                       {s * 1.15f, s * 0.7f, s * 1.15f}, random);
        }
    }
    // Young palms and pandanus break up the round shapes.
    for (int i = 0; i < 260; ++i) {
        const float x = random.range(6, 29), z = random.range(-5.0f, 2.0f);
        const float h = ground(x, z);
        if (h < 1.75f || onCrag(x, z))
            continue;
        if (i % 2) {
            scene.write("object{Rosette%d texture{T_Frond%d} scale %.2f rotate y*%.0f ",
                        random.index(kRosettes), random.index(3), random.range(0.5f, 0.9f),
                        random.range(0, 360));
            scene.write("translate<%.2f,%.2f,%.2f>}\n", x, h + random.range(0.3f, 0.8f), z);
            continue;
        }
        const float size = random.range(1.1f, 1.8f), up = h + random.range(0.3f, 0.9f);
        for (int k = 0; k < 7; ++k)
            scene.write(
                "object{Frond%d texture{T_Frond%d} scale %.2f rotate z*%.0f rotate y*%.0f "
                "translate<%.2f,%.2f,%.2f>}\n",
                random.index(3), random.index(3), size * random.range(0.8f, 1.1f),
                random.range(-12, 32), static_cast<float>(k) * 137.5f, x, up, z);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        fail("usage: island_geometry SHAPES.inc ISLAND.inc");
    Scene shapes(argv[1]);
    for (int i = 0; i < kFronds; ++i)
        shapes.declare(
            "Frond" + std::to_string(i),
            island::frond(11 + static_cast<uint32_t>(i), 1.35f + 0.42f * static_cast<float>(i)));
    for (int i = 0; i < kClumps; ++i)
        shapes.declare("Clump" + std::to_string(i), island::clump(31 + static_cast<uint32_t>(i)));
    for (int i = 0; i < kRosettes; ++i)
        shapes.declare("Rosette" + std::to_string(i),
                       island::rosette(51 + static_cast<uint32_t>(i)));
    shapes.declare("Stack0", island::stack(1, 1.75f, 6.3f));
    shapes.declare("Stack1", island::stack(4, 1.15f, 3.2f));
    shapes.declare("Stack2", island::stack(7, 0.75f, 1.5f));

    Scene scene(argv[2]);
    scene.declare("Ground", groundMesh());
    writeStones(scene);
    scene.write("#declare Palms=union{\n");
    Random random(5);
    int number = 0;
    for (const Palm& palm : kPalms)
        writePalm(scene, palm, number++, random);
    scene.write("}\n#declare Jungle=union{\n");
    writeJungle(scene);
    scene.write("}\n");
}
