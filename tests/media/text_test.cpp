#include <gmock/gmock.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>

#include "media/font_bytes.h"
#include "support/gl_recorder.h"
#include "system/GLText.h"

namespace {

using test::FONT_FILE;
using test::GL_CALL;
using testing::ElementsAre;
using testing::IsEmpty;

class TextTest : public testing::Test {
protected:
    TextTest() { test::clear(); }
    ~TextTest() override {
        if (!path.empty())
            remove(path.c_str());
    }

    static bool load(GLText& text, const FONT_FILE& file) {
        const std::vector<unsigned char> bytes = file.bytes();
        return text.initialized = text.createFont(bytes.data(), bytes.size(), "test.nlf");
    }

    const char* fileWith(const FONT_FILE& font) {
        path = testing::TempDir() + "fontXXXXXX";
        const int descriptor = mkstemp(path.data());
        EXPECT_GE(descriptor, 0);
        const std::vector<unsigned char> bytes = font.bytes();
        FILE* out = fdopen(descriptor, "wb");
        EXPECT_EQ(fwrite(bytes.data(), 1, bytes.size(), out), bytes.size());
        fclose(out);
        return path.c_str();
    }

    std::string path;
};

/// Left and top of the quads drawn since test::clear().
std::vector<std::pair<float, float>> corners() {
    std::vector<std::pair<float, float>> result;
    for (size_t i = 0; i < test::vertices().size(); i += 4)
        result.push_back({test::vertices()[i].x, test::vertices()[i].y});
    return result;
}

TEST_F(TextTest, DefaultsOfTheTwoConstructors) {
    GLText text;
    EXPECT_EQ(text.font.characters, nullptr);
    EXPECT_THAT(text.lines, IsEmpty());
    EXPECT_EQ(text.screenwidth, 800);
    EXPECT_EQ(text.screenheight, 600);
    EXPECT_EQ(text.texttype, 0);
    EXPECT_EQ(text.getLineheight(), 0);
    EXPECT_EQ(text.linespace, 0);
    EXPECT_FALSE(text.initialized);
    EXPECT_TRUE(text.isAlphaBlending);

    GLText loaded(fileWith({}));
    EXPECT_TRUE(loaded.initialized);
    EXPECT_EQ(loaded.numcharacters, 3);
    EXPECT_FALSE(loaded.isAlphaBlending) << "of the other defaults it takes none";

    GLText missing("no such font.nlf");
    EXPECT_FALSE(missing.initialized);
}

TEST_F(TextTest, ReadsHeaderAndGlyphs) {
    GLText text;
    text.setFontfile(fileWith({}));
    EXPECT_TRUE(text.initialized);
    EXPECT_NE(text.font.tex, 99u) << "the name in the file means nothing";
    EXPECT_EQ(text.font.texWidth, 4);
    EXPECT_EQ(text.font.texHeight, 2);
    EXPECT_EQ(text.font.intStart, 'A');
    EXPECT_EQ(text.font.intEnd, 'C');
    EXPECT_EQ(text.numcharacters, 3);
    EXPECT_EQ(text.getLineheight(), 16);
    const GLFONTCHAR& b = text.font.characters[1];
    EXPECT_THAT((std::vector<float>{b.dx, b.dy, b.tx1, b.ty1, b.tx2, b.ty2}),
                ElementsAre(7, 15, 0.125f, 0.0f, 0.25f, 1.0f));
}

TEST_F(TextTest, UploadsTheTexture) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glGenTextures", {1}},
                    GL_CALL{"glBindTexture", {GL_TEXTURE_2D, double(text.font.tex)}},
                    GL_CALL{"glTexParameterf", {GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP}},
                    GL_CALL{"glTexParameterf", {GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP}},
                    GL_CALL{"glTexParameterf", {GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR}},
                    GL_CALL{"glTexParameterf", {GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR}},
                    GL_CALL{"glTexEnvf", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE}},
                    GL_CALL{"glTexImage2D",
                            {GL_TEXTURE_2D, 0, 2, 4, 2, 0, GL_LUMINANCE_ALPHA, GL_UNSIGNED_BYTE}}));
    EXPECT_EQ(test::calls().back().bytes, FONT_FILE().texels);
}

TEST_F(TextTest, RowsOfOddWidthArePadded) {
    FONT_FILE file;
    file.texWidth = 3;
    file.texels.resize(12);
    GLText text;
    ASSERT_TRUE(load(text, file));
    EXPECT_THAT(test::calls().back().bytes,
                ElementsAre(1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0));
}

TEST_F(TextTest, CleanupFreesTheGlyphsAndLeavesTheTexture) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    const GLuint name = text.font.tex;
    text.setSingleLineText("AB");
    test::clear();
    text.cleanup();
    EXPECT_EQ(text.font.characters, nullptr);
    EXPECT_EQ(text.font.tex, name) << "for whoever has the context";
    text.cleanup();
    EXPECT_THAT(test::calls(), IsEmpty());
    text.render();
    EXPECT_THAT(test::vertices(), IsEmpty());
    EXPECT_EQ(test::imbalance(), "");
    // The next font is drawn again.
    ASSERT_TRUE(text.createFont(fileWith({})));
    text.renderMesh();
    EXPECT_EQ(test::vertices().size(), 8u);
}

TEST_F(TextTest, DestructorCallsNoGL) {
    // The context may be gone by then.
    auto text = std::make_unique<GLText>();
    ASSERT_TRUE(load(*text, {}));
    test::clear();
    text.reset();
    EXPECT_THAT(test::calls(), IsEmpty());
}

TEST_F(TextTest, SetFontfileReplacesTheFont) {
    struct Counted : GLText {
        void cleanup() override {
            ++cleanups;
            GLText::cleanup();
        }
        int cleanups = 0;
    } text;
    text.setFontfile(fileWith({}));
    const GLuint first = text.font.tex;
    text.setFontfile(path.c_str());
    EXPECT_NE(text.font.tex, first);
    EXPECT_TRUE(text.initialized);
    EXPECT_EQ(text.cleanups, 2);
    testing::internal::CaptureStdout();
    text.setFontfile("no such font.nlf");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(text.initialized);
    EXPECT_EQ(text.font.characters, nullptr);
    EXPECT_EQ(text.cleanups, 3);
}

TEST_F(TextTest, CreateFontLeavesItToTheCallerWhetherTextIsDrawn) {
    GLText text;
    EXPECT_TRUE(text.createFont(fileWith({})));
    EXPECT_FALSE(text.initialized);
    text.initialized = true;
    FONT_FILE other;
    other.glyphs[0][0] = 25;
    const std::vector<unsigned char> bytes = other.bytes();
    EXPECT_TRUE(text.createFont(bytes.data(), bytes.size(), "other.nlf"));
    EXPECT_TRUE(text.initialized);
    EXPECT_EQ(text.font.characters[0].dx, 25);

    // A font that cannot be had or is broken leaves none.
    EXPECT_FALSE(text.createFont("no such font.nlf"));
    EXPECT_EQ(text.font.characters, nullptr);
    EXPECT_TRUE(text.createFont(bytes.data(), bytes.size(), "other.nlf"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(text.createFont(bytes.data(), bytes.size() - 1, "cut.nlf"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "GLText::createFont cut.nlf is shorter than its header says\n");
    EXPECT_EQ(text.font.characters, nullptr);
    EXPECT_EQ(text.numcharacters, 0);
    EXPECT_EQ(text.getLineheight(), 16);
}

TEST_F(TextTest, AFontMayHaveNoGlyphs) {
    FONT_FILE file;
    file.intEnd = file.intStart - 1;
    file.glyphs.clear();
    GLText text;
    text.setFontfile(fileWith(file));
    EXPECT_TRUE(text.initialized);
    EXPECT_EQ(text.numcharacters, 0);
    EXPECT_EQ(text.getLineheight(), 0) << "there is no first glyph";
    EXPECT_EQ(test::calls().back().bytes, file.texels);
    text.setSingleLineText("A@");
    text.render();
    EXPECT_THAT(test::vertices(), IsEmpty());
}

TEST_F(TextTest, TakesTheSmallestFontAndTheLargestTexture) {
    FONT_FILE file;
    file.intEnd = file.intStart;
    file.glyphs.resize(1);
    file.texWidth = file.texHeight = 1;
    file.texels.resize(2);
    GLText text;
    ASSERT_TRUE(load(text, file));
    EXPECT_EQ(text.numcharacters, 1);
    EXPECT_EQ(text.getLineheight(), 16);
    text.setSingleLineText("AB");
    text.renderMesh();
    EXPECT_EQ(test::vertices().size(), 4u);
    for (int* side : {&file.texWidth, &file.texHeight}) {
        file.texWidth = file.texHeight = 1;
        *side = 4096;
        file.texels.resize(2 * 4096);
        EXPECT_TRUE(load(text, file));
    }
}

TEST_F(TextTest, BytesBehindTheTexelsAreNotRead) {
    std::vector<unsigned char> bytes = FONT_FILE().bytes();
    bytes.insert(bytes.end(), 100, 0xee);
    GLText text;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(text.createFont(bytes.data(), bytes.size(), "long.nlf"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(text.numcharacters, 3);
    EXPECT_EQ(test::calls().back().bytes, FONT_FILE().texels);
}

TEST_F(TextTest, SplitsTextAtLineFeeds) {
    GLText text;
    text.setText("");
    EXPECT_THAT(text.lines, IsEmpty());
    text.setText("one");
    EXPECT_THAT(text.lines, ElementsAre("one"));
    text.setText("one\ntwo\n");
    EXPECT_THAT(text.lines, ElementsAre("one", "two"));
    text.setText("\none\n\ntwo");
    EXPECT_THAT(text.lines, ElementsAre("", "one", "", "two"));
    text.setText("\n");
    EXPECT_THAT(text.lines, ElementsAre(""));
}

TEST_F(TextTest, SingleLineIsTakenAsItIs) {
    GLText text;
    text.setText("one\ntwo\nthree");
    text.setSingleLineText("four\nfive");
    EXPECT_THAT(text.lines, ElementsAre("four\nfive"));
    text.setSingleLineText("");
    EXPECT_THAT(text.lines, ElementsAre(""));
}

TEST_F(TextTest, EmptyTextsDrawNothing) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    test::clear();
    text.setText("");
    text.render();
    text.setSingleLineText("");
    text.render();
    EXPECT_THAT(test::vertices(), IsEmpty());
    EXPECT_EQ(test::imbalance(), "");
}

TEST_F(TextTest, GlyphIsAQuadFromTheTopLeftDownwards) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    text.setPosition(100, 50, 3);
    text.setSingleLineText("A");
    test::clear();
    text.renderMesh();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glBegin", {GL_QUADS}}, GL_CALL{"glTexCoord2f", {0.0, 0.25}},
                    GL_CALL{"glVertex3f", {100, 50, 0}}, GL_CALL{"glTexCoord2f", {0.0, 0.75}},
                    GL_CALL{"glVertex3f", {100, 66, 0}}, GL_CALL{"glTexCoord2f", {0.5, 0.75}},
                    GL_CALL{"glVertex3f", {110, 66, 0}}, GL_CALL{"glTexCoord2f", {0.5, 0.25}},
                    GL_CALL{"glVertex3f", {110, 50, 0}}, GL_CALL{"glEnd", {}}));
}

TEST_F(TextTest, CursorAdvancesByTheWidth) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    text.setSingleLineText("ABCA");
    test::clear();
    text.renderMesh();
    EXPECT_THAT(corners(), ElementsAre(testing::Pair(0, 0), testing::Pair(10, 0),
                                       testing::Pair(17, 0), testing::Pair(21, 0)));
    EXPECT_EQ(test::count("glBegin"), 1);
    // The third glyph is lower than the line.
    EXPECT_EQ(test::vertices()[2 * 4 + 1].y, 14);
}

TEST_F(TextTest, LinesLieBelowEachOther) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    ASSERT_EQ(text.getLineheight(), 16);
    text.linespace = 2;
    text.setText("A\n\nBB\nC");
    test::clear();
    text.renderMesh();
    EXPECT_THAT(corners(), ElementsAre(testing::Pair(0, 0), testing::Pair(0, 36),
                                       testing::Pair(7, 36), testing::Pair(0, 54)));
    EXPECT_EQ(test::count("glBegin"), 1);
    text.setText("A\nA");
    test::clear();
    text.renderMesh();
    EXPECT_THAT(corners(), ElementsAre(testing::Pair(0, 0), testing::Pair(0, 18)));
}

TEST_F(TextTest, CharactersOutsideTheFontAreSkipped) {
    FONT_FILE file;
    file.intStart = 32;
    file.intEnd = 126;
    file.glyphs.assign(95, file.glyphs[0]);
    GLText text;
    ASSERT_TRUE(load(text, file));
    EXPECT_EQ(text.numcharacters, 95);
    // Above the last, below the first, and negative as every byte of an umlaut is.
    text.setSingleLineText(" \x7f\x1f\t\xc3\xbc\x80\xff~");
    test::clear();
    text.renderMesh();
    EXPECT_THAT(corners(), ElementsAre(testing::Pair(0, 0), testing::Pair(10, 0)));
}

TEST_F(TextTest, CodesMayBeFarOutOfReach) {
    for (auto [start, end] : std::vector<std::pair<int, int>>{
             {std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 2},
             {std::numeric_limits<int>::max() - 2, std::numeric_limits<int>::max()},
             {-129, -127}}) {
        FONT_FILE file;
        file.intStart = start;
        file.intEnd = end;
        GLText text;
        ASSERT_TRUE(load(text, file));
        EXPECT_EQ(text.numcharacters, 3);
        text.setSingleLineText("A\x7f\x80\x81\xff");
        test::clear();
        text.renderMesh();
        EXPECT_EQ(test::vertices().size(), start == -129 ? 8u : 0u);
    }
}

TEST_F(TextTest, ScreenTextSetsAndRestoresItsState) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    text.setScreensize(1280, 720);
    text.setPosition(10, 20, 30);
    text.rotateX(45);
    text.scale(2, 3, 4);
    text.setRenderColor(GLColor(0.25f, 0.5f, 0.75f, 1));
    text.setAlpha(0.125f);
    text.removeFlags(DEPTH_TESTING);
    test::clear();
    text.render();
    EXPECT_THAT(
        test::calls(),
        ElementsAre(
            GL_CALL{"glEnable", {GL_TEXTURE_2D}},
            GL_CALL{"glBindTexture", {GL_TEXTURE_2D, double(text.font.tex)}},
            GL_CALL{"glBlendFunc", {GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA}},
            GL_CALL{"glEnable", {GL_BLEND}}, GL_CALL{"glMatrixMode", {GL_PROJECTION}},
            GL_CALL{"glPushMatrix", {}}, GL_CALL{"glLoadIdentity", {}},
            GL_CALL{"glOrtho", {0, 1280, 720, 0, 0, 1}}, GL_CALL{"glMatrixMode", {GL_MODELVIEW}},
            GL_CALL{"glPushMatrix", {}}, GL_CALL{"glLoadIdentity", {}},
            GL_CALL{"glScalef", {2, 3, 4}}, GL_CALL{"glDisable", {GL_DEPTH_TEST}},
            GL_CALL{"glColor4f", {0.25, 0.5, 0.75, 0.125}}, GL_CALL{"glBegin", {GL_QUADS}},
            GL_CALL{"glEnd", {}}, GL_CALL{"glEnable", {GL_DEPTH_TEST}}, GL_CALL{"glPopMatrix", {}},
            GL_CALL{"glMatrixMode", {GL_PROJECTION}}, GL_CALL{"glPopMatrix", {}},
            GL_CALL{"glMatrixMode", {GL_MODELVIEW}}, GL_CALL{"glDisable", {GL_BLEND}}));
    EXPECT_EQ(test::imbalance(), "");
    EXPECT_TRUE(test::isEnabled(GL_TEXTURE_2D)) << "texturing stays on";
}

TEST_F(TextTest, TextInTheSceneIsPlacedLikeAnyObject) {
    GLText text;
    ASSERT_TRUE(load(text, {}));
    text.texttype = 1;
    text.setPosition(1, 2, 3);
    text.setSingleLineText("AB");
    test::clear();
    text.render();
    EXPECT_TRUE(test::wasCalled({"glTranslatef", {1, 2, -3}}));
    EXPECT_THAT(corners(), ElementsAre(testing::Pair(0, 0), testing::Pair(10, 0)));
    EXPECT_FALSE(test::wasCalled("glOrtho"));
    EXPECT_FALSE(test::wasCalled("glPushMatrix"));
    EXPECT_FALSE(test::wasCalled("glPopMatrix"));
    EXPECT_FALSE(test::isEnabled(GL_BLEND));

    // Step for step what the base class does.
    std::vector<GL_CALL> drawn = test::calls();
    drawn.erase(drawn.begin() + test::indexOf("glBegin"),
                drawn.begin() + test::indexOf("glEnd") + 1);
    test::clear();
    text.RenderObject::preRender();
    text.RenderObject::postRender();
    EXPECT_EQ(drawn, test::calls());
}

TEST_F(TextTest, WithoutAFontNoLetterIsDrawn) {
    GLText text;
    text.setSingleLineText("ABC");
    text.render();
    EXPECT_FALSE(test::wasCalled("glBegin"));
    EXPECT_EQ(test::imbalance(), "");
}

struct BAD_FONT {
    const char* name;
    std::vector<unsigned char> bytes;
    const char* message;
};

std::vector<BAD_FONT> badFonts() {
    constexpr int lowest = std::numeric_limits<int>::min(),
                  highest = std::numeric_limits<int>::max();
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const char* const no_header = "has no room for its header";
    const char* const size = "has a texture of impossible size";
    const char* const order = "has its last character before its first";
    const char* const length = "is shorter than its header says";
    const char* const number = "has a glyph that is no number";
    std::vector<BAD_FONT> bad;
    const auto add = [&](const char* name, const char* message, auto change) {
        FONT_FILE file;
        change(file);
        bad.push_back({name, file.bytes(), message});
    };
    add("width 0", size, [](FONT_FILE& f) { f.texWidth = 0; });
    add("height 0", size, [](FONT_FILE& f) { f.texHeight = 0; });
    add("negative width", size, [](FONT_FILE& f) { f.texWidth = -4; });
    add("negative both", size, [](FONT_FILE& f) { f.texWidth = -4, f.texHeight = -2; });
    add("lowest height", size, [](FONT_FILE& f) { f.texHeight = lowest; });
    add("width beyond any GL", size, [](FONT_FILE& f) { f.texWidth = 4097; });
    add("sizes whose product overflows", size,
        [](FONT_FILE& f) { f.texWidth = f.texHeight = 65536; });
    add("highest width", size, [](FONT_FILE& f) { f.texWidth = highest; });
    add("texture larger than the file", length, [](FONT_FILE& f) { f.texWidth = 4096; });
    add("a row too many", length, [](FONT_FILE& f) { f.texHeight = 3; });
    add("end below start", order, [](FONT_FILE& f) { f.intEnd = f.intStart - 2; });
    add("start above all", order, [](FONT_FILE& f) { f.intStart = highest; });
    add("start and end as far apart as they go", order,
        [](FONT_FILE& f) { f.intStart = highest, f.intEnd = lowest; });
    add("every code there is", length,
        [](FONT_FILE& f) { f.intStart = lowest, f.intEnd = highest; });
    add("half of the codes", length, [](FONT_FILE& f) { f.intStart = 0, f.intEnd = highest; });
    add("a glyph too many", length, [](FONT_FILE& f) { f.intEnd = 'D'; });
    add("a texel missing", length, [](FONT_FILE& f) { f.texels.pop_back(); });
    add("no texels", length, [](FONT_FILE& f) { f.texels.clear(); });
    for (size_t field = 0; field < 6; ++field) {
        add("not a number", number, [=](FONT_FILE& f) { f.glyphs[2][field] = nan; });
        add("infinite", number, [=](FONT_FILE& f) { f.glyphs[0][field] = -infinity; });
    }
    const std::vector<unsigned char> good = FONT_FILE().bytes();
    for (size_t keep = 0; keep < good.size(); ++keep)
        bad.push_back(
            {"cut off",
             std::vector<unsigned char>(good.begin(), good.begin() + std::ptrdiff_t(keep)),
             keep < 24 ? no_header : length});
    return bad;
}

TEST_F(TextTest, BrokenFontsFailWithALine) {
    for (const BAD_FONT& bad : badFonts()) {
        // On the heap and no longer than it is, so that reading beyond it is noticed.
        std::unique_ptr<unsigned char[]> bytes(new unsigned char[bad.bytes.size()]);
        std::copy(bad.bytes.begin(), bad.bytes.end(), bytes.get());
        GLText text;
        text.setSingleLineText("ABC");
        test::clear();
        testing::internal::CaptureStdout();
        EXPECT_FALSE(text.createFont(bytes.get(), bad.bytes.size(), "some/font.nlf")) << bad.name;
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  std::string("GLText::createFont some/font.nlf ") + bad.message + "\n")
            << bad.name << ", " << bad.bytes.size() << " bytes";
        EXPECT_THAT(test::calls(), IsEmpty()) << bad.name;
        EXPECT_EQ(text.font.characters, nullptr);
        EXPECT_EQ(text.font.tex, 0u);
        EXPECT_EQ(text.numcharacters, 0);
        text.render();
        EXPECT_FALSE(test::wasCalled("glBegin"));
    }
}

TEST_F(TextTest, BrokenFileOnDiskFailsLikeAMissingOne) {
    FONT_FILE file;
    file.texels.pop_back();
    GLText text;
    ASSERT_TRUE(load(text, {}));
    testing::internal::CaptureStdout();
    text.setFontfile(fileWith(file));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "GLText::createFont " + path + " is shorter than its header says\n");
    EXPECT_FALSE(text.initialized);
    EXPECT_EQ(text.font.characters, nullptr) << "nothing of the old font is left";

    testing::internal::CaptureStdout();
    EXPECT_FALSE(text.createFont(testing::TempDir().c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "GLText::createFont " + testing::TempDir() + " has no room for its header\n");
}

}  // namespace
