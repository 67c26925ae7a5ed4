// What arrives on a real GL: texels, matrices, vertices and pixels.
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glu.h>
#include <SDL_rwops.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "SkyDome.h"
#include "WaterGround.h"
#include "WaterSurface.h"
#include "offscreen.h"
#include "support.h"
#include "support/clock.h"
#include "system/TexturedQuad.h"

namespace {

constexpr int SIZE = 64;

// Blue, green, red, alpha: all different, and different for every pixel.
uint32_t numbered(int x, int y) { return 0x90604020u + 0x04030201u * (x + 4 * y); }

class RealGL : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(context.ok());
        test::setTicks(0);
        glViewport(0, 0, SIZE, SIZE);
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
    }
    void TearDown() override { EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}); }

    static void load(Texture& texture, const std::vector<uint8_t>& bytes, TEXTURE_FLAG flags) {
        ASSERT_TRUE(texture.loadBMP(
            SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())), "", flags));
    }
    static GLint levelParameter(int level, GLenum name) {
        GLint value = -1;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, name, &value);
        return value;
    }
    static GLint parameter(GLenum name) {
        GLint value = -1;
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    }
    static GLint environment() {
        GLint value = -1;
        glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &value);
        return value;
    }
    // Texels of the bound texture as numbers in the order of the files.
    static std::vector<uint32_t> texels(int level) {
        const int count =
            levelParameter(level, GL_TEXTURE_WIDTH) * levelParameter(level, GL_TEXTURE_HEIGHT);
        std::vector<uint8_t> bytes(4 * count);
        glGetTexImage(GL_TEXTURE_2D, level, GL_BGRA, GL_UNSIGNED_BYTE, bytes.data());
        std::vector<uint32_t> result;
        for (int i = 0; i < count; ++i) {
            result.push_back(bytes[4 * i] | bytes[4 * i + 1] << 8 | bytes[4 * i + 2] << 16 |
                             static_cast<uint32_t>(bytes[4 * i + 3]) << 24);
        }
        return result;
    }
    static int channel(uint32_t texel, int i) { return static_cast<int>(texel >> 8 * i & 0xff); }
    // Drawing with one texture raises this error, and no other.
    static void expectTheOneError() {
        EXPECT_EQ(glGetError(), GLenum{GL_INVALID_ENUM});
        EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    }
    static std::vector<float> modelView() {
        std::vector<float> m(16);
        glGetFloatv(GL_MODELVIEW_MATRIX, m.data());
        return m;
    }
    static void flatProjection(double width, double height, double depth) {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-width / 2, width / 2, -height / 2, height / 2, -depth, depth);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }
    struct RGB {
        int r, g, b;
    };
    static RGB at(const Picture& picture, int x, int y) {
        const uint8_t* p = &picture.rgb[3 * (y * picture.width + x)];
        return {p[0], p[1], p[2]};
    }

    OffscreenContext context{SIZE, SIZE};
};

// ---- textures

TEST_F(RealGL, plainTexturesArriveTexelByTexel) {
    for (const int depth : {24, 32}) {
        SCOPED_TRACE(depth);
        Texture texture;
        load(texture, bitmap(8, 4, depth, numbered), QUALITY_FASTEST);
        EXPECT_EQ(levelParameter(0, GL_TEXTURE_WIDTH), 8);
        EXPECT_EQ(levelParameter(0, GL_TEXTURE_HEIGHT), 4);
        EXPECT_EQ(levelParameter(1, GL_TEXTURE_WIDTH), 0) << "no mipmaps";
        const auto read = texels(0);
        ASSERT_EQ(read.size(), 32u);
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 8; ++x) {
                const uint32_t expected =
                    depth == 32 ? numbered(x, y) : numbered(x, y) | 0xff000000u;
                EXPECT_EQ(read[8 * y + x], expected) << x << ", " << y;
            }
        }
    }
}

TEST_F(RealGL, rowsOfAnyLengthArriveStraight) {
    for (const int width : {1, 2, 3, 5, 6, 7}) {
        Texture texture;
        load(texture, bitmap(width, 3, 24, numbered), QUALITY_FASTEST);
        const auto read = texels(0);
        ASSERT_EQ(read.size(), 3u * width);
        for (int y = 0; y < 3; ++y) {
            for (int x = 0; x < width; ++x)
                EXPECT_EQ(read[width * y + x], numbered(x, y) | 0xff000000u) << width;
        }
    }
}

TEST_F(RealGL, mipmapsAreAveragesDownToOneTexel) {
    Texture texture;
    load(texture, bitmap(8, 8, 32, numbered), QUALITY_MIPMAP);
    const auto top = texels(0);
    ASSERT_EQ(top.size(), 64u);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(top[i], numbered(i % 8, i / 8));
    std::vector<uint32_t> above = top;
    for (int level = 1, size = 4; size >= 1; ++level, size /= 2) {
        SCOPED_TRACE(level);
        ASSERT_EQ(levelParameter(level, GL_TEXTURE_WIDTH), size);
        const auto read = texels(level);
        ASSERT_EQ(read.size(), static_cast<size_t>(size * size));
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                for (int c = 0; c < 4; ++c) {
                    int sum = 0;
                    for (const int corner : {0, 1, 2 * size, 2 * size + 1})
                        sum += channel(above[2 * y * 2 * size + 2 * x + corner], c);
                    EXPECT_NEAR(channel(read[size * y + x], c), sum / 4.0, 1) << x << ", " << y;
                }
            }
        }
        above = read;
    }
    EXPECT_EQ(levelParameter(4, GL_TEXTURE_WIDTH), 0);
}

TEST_F(RealGL, mipmapsMakePowersOfTwo) {
    Texture texture;
    load(texture, bitmap(20, 12, 24, [](int, int) { return 0x102030; }), QUALITY_MIPMAP);
    EXPECT_EQ(levelParameter(0, GL_TEXTURE_WIDTH), 16);
    EXPECT_EQ(levelParameter(0, GL_TEXTURE_HEIGHT), 16);
    for (const uint32_t texel : texels(0))
        EXPECT_EQ(texel, 0xff102030u);
}

TEST_F(RealGL, filtersAndWrapsAreThoseOfTheFlags) {
    Texture texture;
    load(texture, bitmap(4, 4, 24, numbered), QUALITY_MIPMAP | WRAP_CLAMP);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_CLAMP);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_T), GL_REPEAT);
    EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_NEAREST);
    EXPECT_EQ(parameter(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
    load(texture, bitmap(4, 4, 24, numbered), QUALITY_FAST | WRAP_REPEAT);
    EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_REPEAT);
    EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(parameter(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
}

TEST_F(RealGL, otherDepthsLeaveTheTextureEmpty) {
    Texture texture;
    load(texture, bitmap(4, 4, 8, [](int x, int) { return x; }), QUALITY_NORMAL);
    EXPECT_EQ(glIsTexture(texture.getID()), GL_TRUE);
    EXPECT_EQ(levelParameter(0, GL_TEXTURE_WIDTH), 0);
}

TEST_F(RealGL, cleanupDeletesTheTexture) {
    Texture texture;
    load(texture, bitmap(4, 4, 24, numbered), QUALITY_NORMAL);
    const GLuint id = texture.getID();
    EXPECT_EQ(glIsTexture(id), GL_TRUE);
    texture.cleanup();
    EXPECT_EQ(glIsTexture(id), GL_FALSE);
}

TEST_F(RealGL, bindingAloneRaisesOneErrorAndKeepsTheMode) {
    Texture texture;
    load(texture, bitmap(4, 4, 24, numbered), QUALITY_NORMAL);
    for (const MULTITEXTURE_FLAG mode : {LIGHTMAP, SOURCE_ALPHA}) {
        texture.setMultitextureMode(mode);
        texture.bindTexture(false, 0);
        expectTheOneError();
        EXPECT_EQ(environment(), GL_MODULATE);
    }
}

TEST_F(RealGL, layersCombineInTheirUnits) {
    Texture base, light, decal;
    load(base, bitmap(4, 4, 24, [](int, int) { return 0x0080c0; }), QUALITY_NORMAL);
    load(light, bitmap(4, 4, 24, [](int, int) { return 0x808080; }), QUALITY_NORMAL);
    load(decal, bitmap(4, 4, 32, [](int, int) { return 0x40ff0000; }), QUALITY_NORMAL);
    decal.setMultitextureMode(SOURCE_ALPHA);
    flatProjection(2, 2, 1);

    TexturedQuad quad;
    quad.setSize(2, 2);
    quad.addTexture(&base);
    quad.addTexture(&light);
    ASSERT_TRUE(quad.multiTexturing);
    quad.render();
    RGB color = at(context.read(), 32, 32);
    EXPECT_NEAR(color.r, 0, 1);
    EXPECT_NEAR(color.g, 0x80 * 0x80 / 255.0, 1.5);
    EXPECT_NEAR(color.b, 0xc0 * 0x80 / 255.0, 1.5);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
    EXPECT_EQ(environment(), GL_MODULATE);

    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    quad.setTexture(&decal, 1);
    quad.render();
    color = at(context.read(), 32, 32);
    EXPECT_NEAR(color.r, 0x40, 1.5);
    EXPECT_NEAR(color.g, 0x80 * (1 - 0x40 / 255.0), 1.5);
    EXPECT_NEAR(color.b, 0xc0 * (1 - 0x40 / 255.0), 1.5);
}

TEST_F(RealGL, aQuadShowsItsFileUpright) {
    const uint32_t colors[2][2] = {{0xff0000, 0x00ff00}, {0x0000ff, 0xffffff}};
    Texture texture;
    load(texture, bitmap(2, 2, 24, [&](int x, int y) { return colors[y][x]; }), QUALITY_FASTEST);
    flatProjection(2, 2, 1);
    TexturedQuad quad;
    quad.setSize(2, 2);
    quad.addTexture(&texture);
    quad.render();
    expectTheOneError();
    const Picture picture = context.read();
    for (int y = 0; y < SIZE; ++y) {
        for (int x = 0; x < SIZE; ++x) {
            const uint32_t expected = colors[y / 32][x / 32];
            const RGB color = at(picture, x, y);
            ASSERT_EQ(color.r << 16 | color.g << 8 | color.b, static_cast<int>(expected))
                << x << ", " << y;
        }
    }
}

TEST_F(RealGL, alphaOfTheFileBlends) {
    Texture texture;
    load(texture, bitmap(2, 2, 32, [](int, int) { return 0x40ffffff; }), QUALITY_FASTEST);
    flatProjection(2, 2, 1);
    TexturedQuad quad;
    quad.setSize(2, 2);
    quad.addTexture(&texture);
    quad.enableAlphaBlending(true);
    quad.setAlpha(0.5f);
    quad.render();
    expectTheOneError();
    EXPECT_NEAR(at(context.read(), 10, 10).g, 0x20, 1);
}

// ---- matrices

TEST_F(RealGL, rotationsEqualThoseOfGL) {
    GLMatrix m;
    for (const float angle : {-350.f, -90.f, -30.f, 0.f, 12.5f, 90.f, 180.f, 270.f}) {
        const struct {
            void (GLMatrix::*rotate)(float);
            float x, y, z;
        } AXES[] = {{&GLMatrix::xRotation, 1, 0, 0},
                    {&GLMatrix::yRotation, 0, 1, 0},
                    {&GLMatrix::zRotation, 0, 0, 1}};
        for (const auto& axis : AXES) {
            glLoadIdentity();
            glRotatef(angle, axis.x, axis.y, axis.z);
            const auto expected = modelView();
            (m.*axis.rotate)(angle);
            for (int i = 0; i < 16; ++i)
                EXPECT_NEAR(m.v[i], expected[i], 1e-6) << angle << " element " << i;
        }
    }
}

TEST_F(RealGL, objectsAreTurnedXThenYThenZ) {
    RenderObject object;
    object.setPosition(1, 2, 3);
    object.setXRotation(20);
    object.setYRotation(40);
    object.setZRotation(60);
    object.scale(2, 3, 4);
    glLoadIdentity();
    object.preRender();
    object.postRender();
    const auto placed = modelView();
    glLoadIdentity();
    glTranslatef(1, 2, -3);
    glRotatef(60, 0, 0, 1);
    glRotatef(40, 0, 1, 0);
    glRotatef(20, 1, 0, 0);
    glScalef(2, 3, 4);
    const auto expected = modelView();
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(placed[i], expected[i], 1e-5) << i;
}

// ---- sky

TEST_F(RealGL, theSkyTurnsByItsSpeed) {
    SkyDome sky;
    sky.setRotationSpeed(-0.75f);
    const auto angle = [&] {
        glLoadIdentity();
        sky.preRender();
        const auto m = modelView();
        sky.postRender();
        return RTOD(std::atan2(m[8], m[0]));
    };
    for (int second = 1; second <= 20; ++second) {
        test::advanceTicks(1000);
        EXPECT_NEAR(angle(), -0.75 * second, 1e-4);
    }
    test::advanceTicks(40);
    EXPECT_NEAR(angle(), -0.75 * 20.04, 1e-4);
}

TEST_F(RealGL, theSkyShowsTheSamePictureTurned) {
    Texture texture;
    load(texture,
         bitmap(64, 64, 24,
                [](int x, int y) {
                    return 128 + static_cast<int>(100 * std::sin(x * 0.3)) +
                           (128 + static_cast<int>(100 * std::cos(y * 0.2 + x * 0.1))) * 256 +
                           x * 4 * 65536;
                }),
         QUALITY_NORMAL | WRAP_REPEAT);
    SkyDome sky;
    sky.addTexture(&texture);
    sky.init(SKY_PLANE);
    sky.setPosition(0, -300, 0);
    sky.setRotationSpeed(-0.75f);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(60, 1, 0.1, 1000);
    glMatrixMode(GL_MODELVIEW);
    const auto look = [&] {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glLoadIdentity();
        gluLookAt(0, 0, 0, 0, 1, 0, 0, 0, 1);
        sky.render();
        expectTheOneError();
        return context.read();
    };
    const Picture before = look();
    test::advanceTicks(120000);  // a quarter turn
    const Picture quarter = look();
    EXPECT_EQ(sky.getYRotation(), -90);
    // Turning by -90 degrees about +y leads +z to -x: seen from below, with +z at the top and +x at
    // the right, from the top to the left.
    int worst = 0, changed = 0, worst_x = 0, worst_y = 0;
    for (int y = 0; y < SIZE; ++y) {
        for (int x = 0; x < SIZE; ++x) {
            const RGB now = at(quarter, y, SIZE - 1 - x);
            const RGB then = at(before, x, y);
            const int difference = std::max(
                {std::abs(now.r - then.r), std::abs(now.g - then.g), std::abs(now.b - then.b)});
            if (difference > worst) {
                worst = difference;
                worst_x = x;
                worst_y = y;
            }
            changed += at(quarter, x, y).r != then.r;
        }
    }
    EXPECT_LE(worst, 12) << "at " << worst_x << ", " << worst_y;
    EXPECT_GT(changed, SIZE * SIZE / 2);
    sky.cleanup();
}

// ---- water and sea floor

TEST_F(RealGL, theWaterLiesFlatWithItsKnownHeights) {
    WaterSurface water;
    water.setPosition(0, 0, 20);
    water.setXRotation(-90);
    water.initialize(50, 50, 50, 50);
    // From above, a pixel around every point of the grid; depth 0..1 is height 0.1..-0.1.
    glViewport(0, 0, 51, 51);
    flatProjection(51, 51, 0.1);
    glRotatef(90, 1, 0, 0);
    glTranslatef(0, 0, 20);
    for (const Uint32 elapsed : {0u, 100u, 357u}) {
        SCOPED_TRACE(elapsed);
        test::advanceTicks(elapsed);
        water.update();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        water.render();
        std::vector<float> depth(51 * 51);
        glReadPixels(0, 0, 51, 51, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
        const double phase = water.curoffset1;
        // Points on the border lie on the edge of what is filled. Rasterising moves the others by a
        // fraction of a pixel, on slopes of up to 0.02 a pixel.
        for (int j = 1; j < 50; ++j) {
            for (int i = 1; i < 50; ++i) {
                const double height = 0.035 * std::sin(i * M_PI * 0.18 + phase) +
                                      0.035 * std::sin(j * M_PI * 0.15 + phase);
                ASSERT_NEAR((0.5 - depth[51 * j + i]) * 0.2, height, 2e-5) << i << ", " << j;
            }
        }
    }
    water.cleanup();
}

TEST_F(RealGL, theSeaFloorIsClosedAndRowZeroIsFar) {
    const auto heights = bitmap(64, 64, 8, [](int x, int y) { return (x * 5 + y * 3) % 200; });
    Texture texture;
    // Its top half is red, its bottom half green.
    load(texture, bitmap(2, 2, 24, [](int, int y) { return y == 0 ? 0xff0000 : 0x00ff00; }),
         QUALITY_FASTEST);
    WaterGround ground;
    ASSERT_TRUE(
        ground.loadBMP(SDL_RWFromConstMem(heights.data(), static_cast<int>(heights.size())), ""));
    ground.setSize(60, 50);
    ground.setHeightFactor(0.015f);
    ground.setNumSegments(50);
    ground.setPosition(0, -8, 0);
    ground.addTexture(&texture);
    // From above; x -32..32 to the right, z -57..7 downwards.
    flatProjection(64, 64, 100);
    glRotatef(90, 1, 0, 0);
    glTranslatef(0, 0, 25);
    for (const Uint32 elapsed : {0u, 800u}) {
        test::advanceTicks(elapsed);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        ground.render();
        expectTheOneError();
        const Picture picture = context.read();
        for (int y = 9; y < 54; ++y) {
            for (int x = 4; x < 59; ++x) {
                const RGB color = at(picture, x, y);
                if (std::abs(y - 32) < 2)
                    continue;
                const bool far = y < 32;
                ASSERT_EQ(color.r, far ? 255 : 0) << x << ", " << y;
                ASSERT_EQ(color.g, far ? 0 : 255) << x << ", " << y;
            }
        }
        EXPECT_EQ(at(picture, 0, 30).r, 0) << "beside it there is nothing";
    }
    ground.cleanup();
}

}  // namespace

namespace {

/// Pixels that are neither black nor white under the slanting side of a white triangle on black.
int pixelsInBetween(int samples) {
    OffscreenContext context(SIZE, SIZE, samples);
    EXPECT_TRUE(context.ok());
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glColor3f(1, 1, 1);
    glBegin(GL_TRIANGLES);
    glVertex2f(-0.9f, -0.9f);
    glVertex2f(0.9f, -0.7f);
    glVertex2f(-0.6f, 0.9f);
    glEnd();
    const Picture picture = context.read();
    int white = 0, between = 0;
    for (size_t i = 0; i < picture.rgb.size(); i += 3) {
        white += picture.rgb[i] == 255;
        between += picture.rgb[i] > 0 && picture.rgb[i] < 255;
    }
    EXPECT_GT(white, SIZE * SIZE / 4);
    // What is drawn after a picture was taken shows in the next one.
    glClear(GL_COLOR_BUFFER_BIT);
    const Picture cleared = context.read();
    EXPECT_EQ(std::count(cleared.rgb.begin(), cleared.rgb.end(), 0), SIZE * SIZE * 3);
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
    return between;
}

}  // namespace

TEST(Offscreen, SmoothsEdgesWithSamplesOnly) {
    EXPECT_EQ(pixelsInBetween(0), 0);
    // Its three sides are 160 pixels long in all.
    EXPECT_GT(pixelsInBetween(4), 80);
}
