#include "system/Texture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <SDL_rwops.h>

#include "support.h"
#include "support/gl_recorder.h"

namespace {

using test::GL_CALL;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

uint32_t numbered(int x, int y) { return 0x04030201u + 0x10u * x + 0x1000u * y; }

class TextureTest : public ::testing::Test {
protected:
    TextureTest() { test::clear(); }

    bool load(const std::vector<uint8_t>& bytes, TEXTURE_FLAG flags = QUALITY_NORMAL) {
        return texture.loadBMP(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())),
                               "some.nlt", flags);
    }
    static double parameter(GLenum name) {
        double value = -1;
        for (const GL_CALL& call : test::callsOf("glTexParameteri")) {
            if (call.args[1] == name)
                value = call.args[2];
        }
        return value;
    }

    Texture texture;
};

TEST_F(TextureTest, startsEmpty) {
    EXPECT_EQ(texture.getID(), 0u);
    EXPECT_EQ(texture.offset_x, 0);
    EXPECT_EQ(texture.offset_y, 0);
    EXPECT_EQ(texture.tilefactor_x, 1);
    EXPECT_EQ(texture.tilefactor_y, 1);
    EXPECT_FALSE(texture.loaded);
    EXPECT_EQ(texture.multitexturemode, LIGHTMAP);
}

TEST_F(TextureTest, flagsHaveTheirValues) {
    EXPECT_EQ(QUALITY_MIPMAP, 1);
    EXPECT_EQ(QUALITY_NORMAL, 2);
    EXPECT_EQ(QUALITY_FAST, 4);
    EXPECT_EQ(QUALITY_FASTEST, 8);
    EXPECT_EQ(WRAP_CLAMP, 16);
    EXPECT_EQ(WRAP_REPEAT, 32);
    EXPECT_EQ(ENV_REPLACE, 64);
    EXPECT_EQ(QUALITY_NORMAL | WRAP_REPEAT, 34);
    EXPECT_EQ(LIGHTMAP, 1);
    EXPECT_EQ(SOURCE_ALPHA, 2);
}

TEST_F(TextureTest, uploads24Bits) {
    const TestFile file("texture24.nlt", bitmap(2, 2, 24, numbered));
    EXPECT_TRUE(texture.loadBMP(file.path(), QUALITY_NORMAL | WRAP_REPEAT));
    EXPECT_TRUE(texture.loaded);
    const double id = texture.getID();
    ASSERT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glGenTextures", {1}}, GL_CALL{"glBindTexture", {GL_TEXTURE_2D, id}},
                    GL_CALL{"glTexParameteri", {GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT}},
                    GL_CALL{"glTexParameteri", {GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR}},
                    GL_CALL{"glTexParameteri", {GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR}},
                    GL_CALL{"glTexImage2D",
                            {GL_TEXTURE_2D, 0, GL_RGB, 2, 2, 0, GL_BGR, GL_UNSIGNED_BYTE}}));
    const auto& bytes = test::calls().back().bytes;
    ASSERT_EQ(bytes.size(), 16u);
    EXPECT_THAT(std::vector<int>(bytes.begin(), bytes.begin() + 6),
                ElementsAre(0x01, 0x02, 0x03, 0x11, 0x02, 0x03))
        << "the top row is the first";
    EXPECT_THAT(std::vector<int>(bytes.begin() + 8, bytes.begin() + 14),
                ElementsAre(0x01, 0x12, 0x03, 0x11, 0x12, 0x03));
}

TEST_F(TextureTest, uploads32BitsWithAlpha) {
    EXPECT_TRUE(load(bitmap(2, 1, 32, numbered)));
    const GL_CALL upload = test::calls().back();
    EXPECT_EQ(upload, (GL_CALL{"glTexImage2D",
                               {GL_TEXTURE_2D, 0, GL_RGBA, 2, 1, 0, GL_BGRA, GL_UNSIGNED_BYTE}}));
    EXPECT_THAT(upload.bytes, ElementsAre(1, 2, 3, 4, 0x11, 2, 3, 4));
}

TEST_F(TextureTest, buildsMipmapsOfAnySize) {
    EXPECT_TRUE(load(bitmap(5, 3, 24, numbered), QUALITY_MIPMAP));
    EXPECT_EQ(
        test::calls().back(),
        (GL_CALL{"gluBuild2DMipmaps", {GL_TEXTURE_2D, GL_RGB, 5, 3, GL_BGR, GL_UNSIGNED_BYTE}}));
    EXPECT_TRUE(load(bitmap(4, 4, 32, numbered), QUALITY_MIPMAP));
    EXPECT_EQ(
        test::calls().back(),
        (GL_CALL{"gluBuild2DMipmaps", {GL_TEXTURE_2D, GL_RGBA, 4, 4, GL_BGRA, GL_UNSIGNED_BYTE}}));
    EXPECT_FALSE(test::wasCalled("glTexImage2D"));
}

TEST_F(TextureTest, filtersByTheFirstFlagThatMatches) {
    const struct {
        int flags;
        GLint minification, magnification;
        bool mipmaps;
    } CASES[] = {
        {0, GL_LINEAR, GL_LINEAR, false},
        {QUALITY_MIPMAP, GL_LINEAR_MIPMAP_NEAREST, GL_LINEAR, true},
        {QUALITY_NORMAL, GL_LINEAR, GL_LINEAR, false},
        {QUALITY_MIPMAP | QUALITY_NORMAL, GL_LINEAR, GL_LINEAR, true},
        {QUALITY_FAST, GL_NEAREST, GL_LINEAR, false},
        {QUALITY_MIPMAP | QUALITY_FAST, GL_NEAREST, GL_LINEAR, true},
        {QUALITY_NORMAL | QUALITY_FAST, GL_NEAREST, GL_LINEAR, false},
        {QUALITY_FASTEST, GL_NEAREST, GL_NEAREST, false},
        {QUALITY_FAST | QUALITY_FASTEST, GL_NEAREST, GL_NEAREST, false},
        {15, GL_NEAREST, GL_NEAREST, true},
        {WRAP_REPEAT | ENV_REPLACE, GL_LINEAR, GL_LINEAR, false},
    };
    for (const auto& c : CASES) {
        SCOPED_TRACE(c.flags);
        test::clear();
        EXPECT_TRUE(load(bitmap(2, 2, 24, numbered), static_cast<TEXTURE_FLAG>(c.flags)));
        EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), c.minification);
        EXPECT_EQ(parameter(GL_TEXTURE_MAG_FILTER), c.magnification);
        EXPECT_EQ(test::wasCalled("gluBuild2DMipmaps"), c.mipmaps);
        EXPECT_EQ(test::wasCalled("glTexImage2D"), !c.mipmaps);
    }
}

TEST_F(TextureTest, wrapsInTWhateverTheFlags) {
    const struct {
        int flags;
        GLint wrap;
    } CASES[] = {{0, GL_REPEAT},
                 {WRAP_REPEAT, GL_REPEAT},
                 {WRAP_CLAMP, GL_CLAMP},
                 {WRAP_CLAMP | WRAP_REPEAT, GL_CLAMP}};
    for (const auto& c : CASES) {
        test::clear();
        EXPECT_TRUE(load(bitmap(2, 2, 24, numbered), static_cast<TEXTURE_FLAG>(c.flags)));
        EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), c.wrap) << c.flags;
        EXPECT_EQ(parameter(GL_TEXTURE_WRAP_T), -1) << c.flags;
    }
}

TEST_F(TextureTest, setFilterQualityDoesNotBind) {
    texture.setFilterQuality(QUALITY_FASTEST);
    EXPECT_THAT(
        test::calls(),
        ElementsAre(
            GL_CALL{"glTexParameteri", {GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST}},
            GL_CALL{"glTexParameteri", {GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST}}));
}

TEST_F(TextureTest, loadingAgainFreesTheOldImageFirst) {
    EXPECT_TRUE(load(bitmap(2, 2, 24, numbered)));
    const double first = texture.getID();
    test::clear();
    EXPECT_TRUE(load(bitmap(2, 2, 24, numbered)));
    EXPECT_EQ(test::calls()[0], (GL_CALL{"glDeleteTextures", {1, first}}));
    EXPECT_EQ(test::calls()[1], (GL_CALL{"glGenTextures", {1}}));
    EXPECT_EQ(test::count("glDeleteTextures"), 1);
}

TEST_F(TextureTest, cleanupFreesOnce) {
    texture.cleanup();
    EXPECT_THAT(test::calls(), IsEmpty());
    EXPECT_TRUE(load(bitmap(2, 2, 24, numbered)));
    texture.cleanup();
    EXPECT_FALSE(texture.loaded);
    texture.cleanup();
    EXPECT_EQ(test::count("glDeleteTextures"), 1);
}

TEST_F(TextureTest, theDestructorFrees) {
    {
        Texture other;
        const auto bytes = bitmap(2, 2, 24, numbered);
        other.loadBMP(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())), "",
                      QUALITY_FAST);
        EXPECT_FALSE(test::wasCalled("glDeleteTextures"));
    }
    EXPECT_EQ(test::count("glDeleteTextures"), 1);
    test::clear();
    { Texture never_loaded; }
    EXPECT_THAT(test::calls(), IsEmpty());
}

TEST_F(TextureTest, namesAFileThatIsMissing) {
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(texture.loadBMP("/nowhere/water.nlt", QUALITY_NORMAL));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Texture::loadBMP SDL_LoadBMP /nowhere/water.nlt failed\n");
    EXPECT_FALSE(texture.loaded);
    EXPECT_THAT(test::calls(), IsEmpty());
}

TEST_F(TextureTest, badBitmapsGiveOneLineAndNoTexture) {
    const auto good = bitmap(4, 4, 24, numbered);
    const struct {
        const char* name;
        std::vector<uint8_t> bytes;
    } CASES[] = {
        {"empty", {}},
        {"no bitmap", std::vector<uint8_t>(5000, 'x')},
        {"cut in the header", {good.begin(), good.begin() + 40}},
        {"cut in the last row", {good.begin(), good.end() - 1}},
        {"oversized", changed(good, 18, 30000)},
        {"oversized upwards", changed(good, 22, 1 << 30)},
        {"zero columns", changed(good, 18, 0)},
        {"zero rows", changed(good, 22, 0)},
    };
    for (const auto& c : CASES) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(load(good));
        test::clear();
        ::testing::internal::CaptureStdout();
        EXPECT_FALSE(load(c.bytes));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(),
                  "Texture::loadBMP SDL_LoadBMP some.nlt failed\n");
        EXPECT_FALSE(texture.loaded);
        EXPECT_EQ(test::calls().size(), 1u) << "the old image is freed all the same";
        EXPECT_TRUE(test::wasCalled("glDeleteTextures"));
    }
}

TEST_F(TextureTest, otherDepthsGiveATextureWithoutAnImage) {
    for (const int depth : {8, 16}) {
        SCOPED_TRACE(depth);
        test::clear();
        ::testing::internal::CaptureStdout();
        EXPECT_TRUE(load(bitmap(4, 4, depth, [](int x, int) { return x; })));
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Texture::loadBMP some.nlt has " +
                                                                std::to_string(depth / 8) +
                                                                " bytes per pixel, not 3 or 4\n");
        EXPECT_TRUE(texture.loaded);
        EXPECT_FALSE(texture.has_image);
        EXPECT_TRUE(test::wasCalled("glGenTextures"));
        EXPECT_TRUE(test::wasCalled("glBindTexture"));
        EXPECT_FALSE(test::wasCalled("glTexImage2D"));
        EXPECT_FALSE(test::wasCalled("gluBuild2DMipmaps"));
    }
}

TEST_F(TextureTest, tilesAndOffsetsCoordinates) {
    texture.setTileFactor(4);
    texture.setOffset(0.25f, 0.25f);
    texture.setGLCoordinates(1, 0.5f, false, 0);
    texture.setTileFactor_X(2);
    texture.setTileFactor_Y(3);
    texture.setOffset(0, 1);
    texture.setGLCoordinates(1, 1, false, 3);
    EXPECT_THAT(test::calls(), ElementsAre(GL_CALL{"glTexCoord2f", {4.25, 2.25}},
                                           GL_CALL{"glTexCoord2f", {2, 4}}));
}

TEST_F(TextureTest, bindsAloneWithTheFlagAsItsMode) {
    texture.id = 5;
    texture.bindTexture(false, 3);
    texture.setMultitextureMode(SOURCE_ALPHA);
    texture.bindTexture(false, 0);
    // 1 and 2 are no environment modes: the mode that is set stays.
    EXPECT_THAT(test::calls(),
                ElementsAre(GL_CALL{"glEnable", {GL_TEXTURE_2D}},
                            GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 5}},
                            GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, 1}},
                            GL_CALL{"glEnable", {GL_TEXTURE_2D}},
                            GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 5}},
                            GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, 2}}));
}

TEST_F(TextureTest, unitsHaveNames) {
    EXPECT_EQ(Texture::getUnit(0), GL_TEXTURE0_ARB);
    EXPECT_EQ(Texture::getUnit(1), GL_TEXTURE0_ARB + 1);
    EXPECT_EQ(Texture::getUnit(31), GL_TEXTURE0_ARB + 31);
    EXPECT_EQ(Texture::getUnit(32), GL_TEXTURE0_ARB);
    EXPECT_EQ(Texture::getUnit(-1), GL_TEXTURE0_ARB);
}

}  // namespace
