// What the loaders make of good files, and what they say about bad ones.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>
#include <set>

#include "models/allocations.h"
#include "models/model_bytes.h"
#include "system/QModel.h"

using namespace test;

namespace {

using Decode = bool (QModel::*)(const uint8_t*, size_t, const char*);

bool operator==(const GLVector3& a, const std::array<float, 3>& b) {
    return a.x == b[0] && a.y == b[1] && a.z == b[2];
}

/// Decodes a copy of exactly the given length, so that the sanitizer sees every byte too far.
bool decode(QModel& model, Decode decoder, const Bytes& bytes) {
    std::unique_ptr<uint8_t[]> exact(new uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return (model.*decoder)(exact.get(), bytes.size(), "fish.nlm");
}

std::string printed(const std::function<void()>& run) {
    testing::internal::CaptureStdout();
    run();
    return testing::internal::GetCapturedStdout();
}

void expectEmpty(const QModel& model) {
    EXPECT_FALSE(model.loaded);
    EXPECT_EQ(model.NumFrames, 0);
    EXPECT_EQ(model.NumVerts, 0);
    EXPECT_EQ(model.NumTris, 0);
    EXPECT_EQ(model.framedata, nullptr);
    EXPECT_EQ(model.indices, nullptr);
    EXPECT_EQ(model.texindices, nullptr);
    EXPECT_TRUE(model.m_anim.empty());
}

/// Everything that drawing relies on without looking.
void expectSound(const QModel& model) {
    ASSERT_TRUE(model.loaded);
    ASSERT_GT(model.NumFrames, 0);
    ASSERT_GT(model.NumVerts, 0);
    ASSERT_GE(model.NumTris, 0);
    for (int c = 0; c < 3 * model.NumTris; ++c)
        ASSERT_LT(model.indices[c], model.NumVerts);
    for (int f = 0; f < model.NumFrames; ++f) {
        for (int v = 0; v < model.NumVerts; ++v) {
            const GLVector3& pos = model.framedata[f].vertices[v].pos;
            ASSERT_TRUE(std::isfinite(pos.x) && std::isfinite(pos.y) && std::isfinite(pos.z));
        }
        for (int c = 0; c < 3 * model.NumTris; ++c) {
            const GLVector2& tex = model.framedata[f].tex[model.texindices[c]];
            ASSERT_TRUE(std::isfinite(tex.x) && std::isfinite(tex.y));
        }
    }
}

/// A damaged file either makes a sound model or leaves an empty one after one line with its name;
/// and it never makes the loader ask for more memory than a file of this size can hold.
void expectSoundOrRefused(Decode decoder, const Bytes& bytes) {
    QModel model;
    bool good = false;
    watchAllocations();
    const std::string output = printed([&] { good = decode(model, decoder, bytes); });
    EXPECT_LE(largestAllocation(), 32 * bytes.size() + 65536);
    if (good) {
        expectSound(model);
        EXPECT_EQ(output, "");
        return;
    }
    expectEmpty(model);
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
    EXPECT_THAT(output, testing::AnyOf(testing::HasSubstr("fish.nlm: "),
                                       testing::StartsWith("!= header.")));
}

struct BadFile {
    const char* name;
    std::function<void(Bytes&)> spoil;
    std::string message;
};

void expectRefused(Decode decoder, const Bytes& good, const std::vector<BadFile>& cases) {
    for (const BadFile& bad : cases) {
        SCOPED_TRACE(bad.name);
        Bytes bytes = good;
        bad.spoil(bytes);
        QModel model;
        bool result = true;
        EXPECT_EQ(printed([&] { result = decode(model, decoder, bytes); }), bad.message);
        EXPECT_FALSE(result);
        expectEmpty(model);
    }
}

std::string temporary(const char* name, const Bytes& bytes) {
    const std::string path = testing::TempDir() + name;
    FILE* file = std::fopen(path.c_str(), "wb");
    EXPECT_NE(file, nullptr);
    if (!bytes.empty()) {
        EXPECT_EQ(std::fwrite(bytes.data(), bytes.size(), 1, file), 1u);
    }
    std::fclose(file);
    return path;
}

const Decode MD3 = &QModel::decodeMD3;
const Decode MD2 = &QModel::decodeMD2;
constexpr int HUGE_COUNT = std::numeric_limits<int>::max();

}  // namespace

TEST(Md3, FillsTheModel) {
    const Md3File file = Md3File::tetrahedron();
    QModel model;
    EXPECT_EQ(printed([&] { EXPECT_TRUE(decode(model, MD3, file.bytes())); }), "");
    EXPECT_TRUE(model.loaded);
    EXPECT_EQ(model.NumFrames, 3);
    EXPECT_EQ(model.NumVerts, 4);
    EXPECT_EQ(model.NumTris, 4);
    EXPECT_EQ(model.getAnimationCount(), 0);
    for (int c = 0; c < 12; ++c) {
        EXPECT_EQ(model.indices[c], file.triangles[c / 3][c % 3]);
        EXPECT_EQ(model.texindices[c], file.triangles[c / 3][c % 3]);
    }
    for (int f = 0; f < 3; ++f) {
        for (int v = 0; v < 4; ++v) {
            const auto& position = file.frames[f][v];
            const MDX_FRAMEDATA& frame = model.framedata[f];
            EXPECT_TRUE(frame.vertices[v].pos ==
                        (std::array<float, 3>{position[0] / 64.0f, position[2] / 64.0f,
                                              -position[1] / 64.0f}));
            EXPECT_TRUE(frame.vertices[v].normal == (std::array<float, 3>{0, 0, 0}));
            EXPECT_EQ(frame.tex[v].x, file.tex[v][0]);
            EXPECT_EQ(frame.tex[v].y, file.tex[v][1]);
        }
    }
    EXPECT_NE(model.framedata[0].tex.get(), model.framedata[1].tex.get());
}

TEST(Md3, TurnsFileAxesToModelAxes) {
    Md3File file = Md3File::tetrahedron();
    file.frames[0][0] = {64, 128, -64};
    QModel model;
    ASSERT_TRUE(decode(model, MD3, file.bytes()));
    EXPECT_TRUE(model.framedata[0].vertices[0].pos == (std::array<float, 3>{1, -1, -2}));
}

TEST(Md3, LooksAtNothingItDoesNotUse) {
    const Md3File file = Md3File::tetrahedron();
    Bytes bytes = file.bytes();
    for (size_t offset = 0; offset < 76; ++offset)
        bytes[offset] = 0xff;
    for (size_t offset = 84; offset < file.meshStart() + 72; ++offset)
        bytes[offset] = 0xff;
    put(bytes, file.meshStart() + 92, -1);
    put(bytes, file.meshStart() + 104, -1);
    QModel model;
    EXPECT_EQ(printed([&] { EXPECT_TRUE(decode(model, MD3, bytes)); }), "");
    expectSound(model);
}

TEST(Md3, TakesTheFirstMeshOnly) {
    Bytes bytes = Md3File::tetrahedron().bytes();
    bytes.insert(bytes.end(), 200, 0xee);
    put(bytes, 84, 2);
    QModel model;
    EXPECT_TRUE(decode(model, MD3, bytes));
    EXPECT_EQ(model.NumTris, 4);
}

TEST(Md3, DropsTheUpperHalfOfAnIndex) {
    Md3File file = Md3File::tetrahedron();
    file.triangles[1] = {0x10003, 0x7fff0002, 1};
    QModel model;
    ASSERT_TRUE(decode(model, MD3, file.bytes()));
    EXPECT_EQ(model.indices[3], 3);
    EXPECT_EQ(model.indices[4], 2);
    EXPECT_EQ(model.texindices[4], 2);
}

TEST(Md3, LoadsFromDisk) {
    const std::string path = temporary("good.nlm", Md3File::tetrahedron().bytes());
    QModel model;
    EXPECT_TRUE(model.loadMD3(path.c_str()));
    expectSound(model);
}

TEST(Md3, NamesAFileItCannotHave) {
    QModel model;
    EXPECT_EQ(printed([&] { EXPECT_FALSE(model.loadMD3("no/such.nlm")); }),
              "QModel::loadMD3 fopen no/such.nlm failed\n");
    EXPECT_EQ(printed([&] { EXPECT_FALSE(model.loadMD3("/")); }),
              "QModel::loadMD3 /: the file cannot be read\n");
    const std::string path = temporary("empty.nlm", {});
    EXPECT_EQ(printed([&] { EXPECT_FALSE(model.loadMD3(path.c_str())); }),
              "QModel::loadMD3 " + path + ": the header needs 108 bytes, the file has 0\n");
    expectEmpty(model);
}

TEST(Md3, IsEmptyAfterANewFileFailed) {
    for (const bool missing : {false, true}) {
        QModel model;
        ASSERT_TRUE(decode(model, MD3, Md3File::tetrahedron().bytes()));
        EXPECT_NE(printed([&] {
                      EXPECT_FALSE(missing ? model.loadMD3("no such file")
                                           : decode(model, MD3, Bytes(50)));
                  }),
                  "");
        expectEmpty(model);
    }
}

TEST(Md3, SaysWhatIsWrong) {
    const Md3File file = Md3File::tetrahedron();
    const size_t mesh = file.meshStart();
    const auto set = [](size_t offset, auto value) {
        return [=](Bytes& bytes) { put(bytes, offset, value); };
    };
    const std::string in = "QModel::loadMD3 fish.nlm: ";
    const float inf = std::numeric_limits<float>::infinity();
    expectRefused(
        MD3, file.bytes(),
        {
            {"cut header", [](Bytes& b) { b.resize(107); },
             in + "the header needs 108 bytes, the file has 107\n"},
            {"frames < 0", set(76, -1), in + "no room for -1 frame records\n"},
            {"huge frames", set(76, HUGE_COUNT), in + "no room for 2147483647 frame records\n"},
            {"tags < 0", set(80, -1), in + "no room for -1 tags in each of 3 frames\n"},
            {"huge tags", set(80, HUGE_COUNT),
             in + "no room for 2147483647 tags in each of 3 frames\n"},
            {"cut mesh header", [=](Bytes& b) { b.resize(mesh + 107); },
             in + "no room for the mesh header at byte " + std::to_string(mesh) + "\n"},
            {"no frames", set(mesh + 72, 0), in + "the mesh has 0 frames\n"},
            {"mesh frames < 0", set(mesh + 72, -5), in + "the mesh has -5 frames\n"},
            {"huge mesh frames", set(mesh + 72, HUGE_COUNT),
             in + "no room for 2147483647 frames of 4 vertices at offset 256 of the mesh\n"},
            {"skins < 0", set(mesh + 76, -1), in + "no room for -1 skins\n"},
            {"huge skins", set(mesh + 76, HUGE_COUNT), in + "no room for 2147483647 skins\n"},
            {"no vertices", set(mesh + 80, 0), in + "the mesh has 0 vertices\n"},
            {"vertices < 0", set(mesh + 80, -1), in + "the mesh has -1 vertices\n"},
            {"huge vertices", set(mesh + 80, HUGE_COUNT),
             in + "no room for 2147483647 texture coordinates at offset 224 of the mesh\n"},
            {"triangles < 0", set(mesh + 84, -1),
             in + "no room for -1 triangles at offset 176 of the mesh\n"},
            {"huge triangles", set(mesh + 84, HUGE_COUNT),
             in + "no room for 2147483647 triangles at offset 176 of the mesh\n"},
            {"triangles before the mesh", set(mesh + 88, -1),
             in + "no room for 4 triangles at offset -1 of the mesh\n"},
            {"triangles behind the file", set(mesh + 88, HUGE_COUNT),
             in + "no room for 4 triangles at offset 2147483647 of the mesh\n"},
            {"coordinates before the mesh", set(mesh + 96, -4),
             in + "no room for 4 texture coordinates at offset -4 of the mesh\n"},
            {"coordinates behind the file", set(mesh + 96, 1000000),
             in + "no room for 4 texture coordinates at offset 1000000 of the mesh\n"},
            {"vertices before the mesh", set(mesh + 100, -8),
             in + "no room for 3 frames of 4 vertices at offset -8 of the mesh\n"},
            {"vertices one byte too far", set(mesh + 100, 257),
             in + "no room for 3 frames of 4 vertices at offset 257 of the mesh\n"},
            {"index at the vertex count", set(file.triStart() + 16, 4),
             in + "triangle 1 names vertex 4 of 4\n"},
            {"index < 0", set(file.triStart(), -1), in + "triangle 0 names vertex -1 of 4\n"},
            {"coordinate without a value", set(file.uvStart() + 12, inf),
             in + "texture coordinate 1 is not finite\n"},
        });
}

TEST(Md2, FillsTheModel) {
    const Md2File file = Md2File::tetrahedron();
    QModel model;
    EXPECT_EQ(printed([&] { EXPECT_TRUE(decode(model, MD2, file.bytes())); }), "");
    EXPECT_TRUE(model.loaded);
    EXPECT_EQ(model.NumFrames, 6);
    EXPECT_EQ(model.NumVerts, 4);
    EXPECT_EQ(model.NumTris, 2);
    EXPECT_THAT(std::vector<GLIndex>(&model.indices[0], &model.indices[6]),
                testing::ElementsAre(0, 1, 2, 0, 3, 1));
    EXPECT_THAT(std::vector<GLIndex>(&model.texindices[0], &model.texindices[6]),
                testing::ElementsAre(4, 3, 2, 0, 1, 2));
    for (int f = 0; f < 6; ++f) {
        const GLVector2* tex = model.framedata[f].tex.get();
        EXPECT_EQ(tex[1].x, 1.0f);
        EXPECT_EQ(tex[3].y, 1.0f);
        EXPECT_EQ(tex[4].x, 0.25f);
        EXPECT_EQ(tex[4].y, -0.25f);
        // (10, 20, 30) by (0.5, 0.25, 2) from (1, 2, 3), y and z exchanged.
        EXPECT_TRUE(model.framedata[f].vertices[0].pos == (std::array<float, 3>{6, 63, -7}));
    }
}

TEST(Md2, ReadsBytesAsSigned) {
    QModel model;
    ASSERT_TRUE(decode(model, MD2, Md2File::tetrahedron().bytes()));
    const GLVertex* vertices = model.framedata[0].vertices.get();
    EXPECT_TRUE(vertices[1].pos == (std::array<float, 3>{-63, 1, -33.75f}));
    EXPECT_TRUE(vertices[3].normal == (std::array<float, 3>{0, 0, 0}));
}

TEST(Md2, LooksNormalsUp) {
    QModel model;
    ASSERT_TRUE(decode(model, MD2, Md2File::tetrahedron().bytes()));
    const GLVertex* vertices = model.framedata[0].vertices.get();
    EXPECT_TRUE(vertices[0].normal == (std::array<float, 3>{-0.525731f, 0.850651f, 0}));
    EXPECT_TRUE(vertices[1].normal == (std::array<float, 3>{0, 1, 0}));
    EXPECT_TRUE(vertices[2].normal == (std::array<float, 3>{-0.442863f, 0.864188f, 0.238856f}));
}

TEST(Md2, NormalsAreTheCornersOfADividedIcosahedron) {
    Md2File file = Md2File::tetrahedron();
    file.frames.resize(1);
    file.frames[0].vertices.clear();
    for (int i = 0; i < 128; ++i)
        file.frames[0].vertices.push_back({0, 0, 0, static_cast<int8_t>(i)});
    QModel model;
    ASSERT_TRUE(decode(model, MD2, file.bytes()));

    // Corners of the icosahedron, and every point that divides an edge of it in four.
    std::vector<GLVector3> corners;
    for (float s : {-0.525731f, 0.525731f}) {
        for (float t : {-0.850651f, 0.850651f}) {
            corners.push_back({s, t, 0});
            corners.push_back({0, s, t});
            corners.push_back({t, 0, s});
        }
    }
    const auto near = [](const GLVector3& a, const GLVector3& b, float limit) {
        return distance(&a, &b) < limit;
    };
    std::vector<GLVector3> points;
    for (const GLVector3& a : corners)
        for (const GLVector3& b : corners)
            for (const GLVector3& c : corners)
                if (near(a, b, 1.1f) && near(b, c, 1.1f) && near(c, a, 1.1f))
                    for (int i = 0; i <= 4; ++i)
                        for (int j = 0; i + j <= 4; ++j) {
                            GLVector3 p = a * float(i) + b * float(j) + c * float(4 - i - j);
                            if (vectorLength(&p) > 0)
                                points.push_back(normalize(&p));
                        }
    std::set<std::array<float, 3>> seen;
    for (int i = 0; i < 128; ++i) {
        const GLVector3 normal = model.framedata[0].vertices[i].normal;
        EXPECT_TRUE(std::any_of(points.begin(), points.end(), [&](const GLVector3& p) {
            return near(p, normal, 1e-5f);
        })) << i;
        seen.insert({normal.x, normal.y, normal.z});
    }
    EXPECT_EQ(seen.size(), 128u);
}

TEST(Md2, MakesAnimationsOfFrameNames) {
    QModel model;
    ASSERT_TRUE(decode(model, MD2, Md2File::tetrahedron().bytes()));
    ASSERT_EQ(model.getAnimationCount(), 3);
    const auto check = [&](int i, const char* name, int start, int end) {
        char found[16] = {};
        model.getAnimationName(i, found);
        EXPECT_STREQ(found, name);
        EXPECT_EQ(model.m_anim[i].start, start);
        EXPECT_EQ(model.m_anim[i].end, end);
        EXPECT_EQ(model.m_anim[i].cur, start);
    };
    check(0, "swim", 0, 2);
    check(1, "turn", 3, 4);
    check(2, "swim", 5, 5);
    // The animations of a second load join those of the first.
    ASSERT_TRUE(decode(model, MD2, Md2File::tetrahedron().bytes()));
    EXPECT_EQ(model.getAnimationCount(), 6);
}

TEST(Md2, TakesANameWithoutItsZero) {
    Md2File file = Md2File::tetrahedron();
    for (Md2File::Frame& frame : file.frames)
        frame.name = "abcdefghijklmn12";
    QModel model;
    ASSERT_TRUE(decode(model, MD2, file.bytes()));
    ASSERT_EQ(model.getAnimationCount(), 1);
    EXPECT_EQ(model.m_anim[0].name, "abcdefghijklmn");
    EXPECT_EQ(model.m_anim[0].end, 5);
}

TEST(Md2, NamesAFileItCannotHave) {
    QModel model;
    EXPECT_EQ(printed([&] { EXPECT_FALSE(model.loadMD2("no/such.md2")); }),
              "QModel::loadMD2 fopen no/such.md2 failed\n");
    expectEmpty(model);
    const std::string path = temporary("good.md2", Md2File::tetrahedron().bytes());
    EXPECT_TRUE(model.loadMD2(path.c_str()));
}

TEST(Md2, SaysWhatIsWrong) {
    const Md2File file = Md2File::tetrahedron();
    const auto set = [](size_t offset, auto value) {
        return [=](Bytes& bytes) { put(bytes, offset, value); };
    };
    const std::string in = "QModel::loadMD2 fish.nlm: ";
    const std::string frames = std::to_string(file.framesStart());
    const std::string tris = std::to_string(file.trisStart());
    const std::string tex = std::to_string(file.texStart());
    expectRefused(
        MD2, file.bytes(),
        {
            {"cut header", [](Bytes& b) { b.resize(67); },
             in + "the header needs 68 bytes, the file has 67\n"},
            {"no frames", set(40, 0), in + "the model has 0 frames\n"},
            {"frames < 0", set(40, -1), in + "the model has -1 frames\n"},
            {"huge frames", set(40, HUGE_COUNT),
             in + "no room for 2147483647 frames of 4 vertices at byte " + frames + "\n"},
            {"no vertices", set(24, 0), in + "the model has 0 vertices\n"},
            {"vertices < 0", set(24, -4), in + "the model has -4 vertices\n"},
            {"huge vertices", set(24, HUGE_COUNT),
             in + "no room for 6 frames of 2147483647 vertices at byte " + frames + "\n"},
            {"skin without width", set(8, 0), in + "the skin has a size of 0 x 32\n"},
            {"skin height < 0", set(12, -1), in + "the skin has a size of 64 x -1\n"},
            {"triangles < 0", set(32, -1), in + "no room for -1 triangles at byte " + tris + "\n"},
            {"huge triangles", set(32, HUGE_COUNT),
             in + "no room for 2147483647 triangles at byte " + tris + "\n"},
            {"coordinates < 0", set(28, -1),
             in + "no room for -1 texture coordinates at byte " + tex + "\n"},
            {"huge coordinates", set(28, HUGE_COUNT),
             in + "no room for 2147483647 texture coordinates at byte " + tex + "\n"},
            {"frames nowhere", set(56, -1), "!= header.offFrames\n"},
            {"triangles nowhere", set(52, -1), "!= header.offTris\n"},
            {"coordinates nowhere", set(48, -1), "!= header.offTexCoords\n"},
            {"frames behind the file", set(56, 70000),
             in + "no room for 6 frames of 4 vertices at byte 70000\n"},
            {"triangles behind the file", set(52, HUGE_COUNT),
             in + "no room for 2 triangles at byte 2147483647\n"},
            {"coordinates behind the file", set(48, HUGE_COUNT),
             in + "no room for 5 texture coordinates at byte 2147483647\n"},
            {"index at the vertex count", set(file.trisStart() + 2, int16_t(4)),
             in + "triangle 0 names vertex 4 of 4\n"},
            {"index < 0", set(file.trisStart() + 12, int16_t(-1)),
             in + "triangle 1 names vertex -1 of 4\n"},
            {"coordinate index too large", set(file.trisStart() + 6, int16_t(5)),
             in + "triangle 0 names texture coordinate 5 of 5\n"},
            {"coordinate index < 0", set(file.trisStart() + 6, int16_t(-3)),
             in + "triangle 0 names texture coordinate -3 of 5\n"},
            {"endless scale", set(file.framesStart() + 4, HUGE_VALF),
             in + "vertex 0 of frame 0 has no finite place\n"},
        });
}

TEST(Md2, RefusesCopiesThatTheFileDoesNotJustify) {
    Md2File file = Md2File::tetrahedron();
    file.frames.resize(1);
    file.frames.resize(500, file.frames[0]);
    file.tex.resize(5000);
    QModel model;
    watchAllocations();
    EXPECT_EQ(printed([&] { EXPECT_FALSE(decode(model, MD2, file.bytes())); }),
              "QModel::loadMD2 fish.nlm: 5000 texture coordinates are too many for 500 frames of 4 "
              "vertices\n");
    EXPECT_LT(largestAllocation(), 500000u);
    expectEmpty(model);
}

class Damage : public testing::TestWithParam<bool> {
protected:
    Damage() {
        if (GetParam()) {
            const Md3File file = Md3File::tetrahedron();
            decoder = MD3;
            good = file.bytes();
            boundaries = {76, 80, 84, 108, file.tagStart(), file.meshStart()};
            for (size_t field = 72; field <= 108; field += 4)
                boundaries.push_back(file.meshStart() + field);
            for (size_t place : {file.triStart(), file.uvStart(), file.vertexStart()})
                boundaries.push_back(place);
        } else {
            const Md2File file = Md2File::tetrahedron();
            decoder = MD2;
            good = file.bytes();
            for (size_t field = 0; field <= 68; field += 4)
                boundaries.push_back(field);
            for (size_t place : {file.framesStart() + 56, file.trisStart(), file.texStart()})
                boundaries.push_back(place);
        }
        boundaries.push_back(good.size());
    }

    Decode decoder;
    Bytes good;
    std::vector<size_t> boundaries;
};

TEST_P(Damage, EveryCutIsRefused) {
    std::vector<size_t> cuts;
    for (size_t cut = 0; cut < good.size(); cut += 16)
        cuts.push_back(cut);
    for (size_t boundary : boundaries)
        for (size_t cut : {boundary - 1, boundary, boundary + 1})
            if (cut < good.size())
                cuts.push_back(cut);
    for (size_t cut : cuts) {
        SCOPED_TRACE(cut);
        const Bytes bytes(good.begin(), good.begin() + cut);
        QModel model;
        printed([&] { EXPECT_FALSE(decode(model, decoder, bytes)); });
        expectSoundOrRefused(decoder, bytes);
    }
}

TEST_P(Damage, SingleBytesNeverBreakTheLoader) {
    std::mt19937 random(20260313);
    for (int i = 0; i < 10000; ++i) {
        Bytes bytes = good;
        const size_t place = random() % bytes.size();
        bytes[place] = static_cast<uint8_t>(random());
        SCOPED_TRACE("byte " + std::to_string(place) + " is " + std::to_string(bytes[place]));
        expectSoundOrRefused(decoder, bytes);
        if (HasFailure())
            break;
    }
}

TEST_P(Damage, WildHeaderNumbersNeverBreakTheLoader) {
    std::mt19937 random(7);
    const int32_t wild[] = {0, 1, -1, 2, 255, 65535, 65536, 0x7fffffff, -0x7fffffff - 1, 1 << 30};
    for (int i = 0; i < 10000; ++i) {
        Bytes bytes = good;
        // Two fields at once: products and sums of wrong numbers.
        for (int j = 0; j < 2; ++j) {
            const size_t place = boundaries[random() % boundaries.size()];
            if (place + 4 <= bytes.size())
                put(bytes, place, wild[random() % std::size(wild)]);
        }
        expectSoundOrRefused(decoder, bytes);
        if (HasFailure())
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Damage, testing::Bool(),
                         [](const auto& info) { return info.param ? "Md3" : "Md2"; });
