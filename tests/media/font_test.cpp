// The font that the saver is shipped with, as a file and on the screen.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>

#include "offscreen.h"
#include "system/GLText.h"

namespace {

const std::string font_file = DATA_DIR "font.nlf";

constexpr int width = 640, height = 64;

bool isPowerOfTwo(int n) { return n > 0 && (n & (n - 1)) == 0; }

class FontTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(context.ok());
        glViewport(0, 0, width, height);
        text.setScreensize(width, height);
        text.setFontfile(font_file.c_str());
        ASSERT_TRUE(text.initialized) << font_file;
        std::ifstream in(font_file, std::ios::binary);
        file.assign(std::istreambuf_iterator<char>(in), {});
        texels = reinterpret_cast<const unsigned char*>(file.data()) + 24 + 24 * 95;
    }

    /// Luminance and alpha of a pixel of the glyph, 0..255.
    int luminance(const GLFONTCHAR& g, int x, int y) { return texel(g, x, y)[0]; }
    int alpha(const GLFONTCHAR& g, int x, int y) { return texel(g, x, y)[1]; }
    const unsigned char* texel(const GLFONTCHAR& g, int x, int y) {
        const int column = int(std::lround(g.tx1 * float(text.font.texWidth))) + x;
        const int row = int(std::lround(g.ty1 * float(text.font.texHeight))) + y;
        return texels + 2 * (row * text.font.texWidth + column);
    }
    const GLFONTCHAR& glyph(char c) { return text.font.characters[c - 32]; }

    /// The line on a ground of one colour.
    Picture draw(const char* line, float x, float r, float g, float b) {
        glClearColor(r, g, b, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        text.setPosition(x, 8, 0);
        text.setSingleLineText(line);
        text.render();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        return context.read();
    }

    OffscreenContext context{width, height};
    GLText text;
    std::string file;
    const unsigned char* texels = nullptr;
};

TEST_F(FontTest, HasEveryPrintableCharacterPixelForPixel) {
    EXPECT_EQ(text.font.intStart, 32);
    EXPECT_EQ(text.font.intEnd, 126);
    EXPECT_TRUE(isPowerOfTwo(text.font.texWidth)) << text.font.texWidth;
    EXPECT_TRUE(isPowerOfTwo(text.font.texHeight)) << text.font.texHeight;
    EXPECT_GE(text.getLineheight(), 16);
    EXPECT_LE(text.getLineheight(), 36);
    for (char c = 32; c < 127; ++c) {
        const GLFONTCHAR& g = glyph(c);
        EXPECT_EQ(g.dy, text.getLineheight()) << c;
        EXPECT_EQ((g.tx2 - g.tx1) * float(text.font.texWidth), g.dx) << c;
        EXPECT_EQ((g.ty2 - g.ty1) * float(text.font.texHeight), g.dy) << c;
        EXPECT_GE(g.tx1, 0) << c;
        EXPECT_GE(g.ty1, 0) << c;
        EXPECT_LE(g.tx2, 1) << c;
        EXPECT_LE(g.ty2, 1) << c;
    }
}

TEST_F(FontTest, LettersAreBrightWithADarkEdge) {
    for (char c = 33; c < 127; ++c) {
        const GLFONTCHAR& g = glyph(c);
        int bright = 0, dark = 0, middle = 0;
        for (int y = 0; y < int(g.dy); ++y) {
            for (int x = 0; x < int(g.dx); ++x) {
                const int a = alpha(g, x, y), l = luminance(g, x, y);
                bright += a > 240 && l > 240;
                dark += a > 150 && l < 40;
                middle += a > 10 && a < 150 && l < 40;
            }
        }
        EXPECT_GE(bright, 3) << c << ": letters are crisp when pixels are wholly white";
        EXPECT_GE(dark, 8) << c;
        EXPECT_GT(middle, 8) << c << ": the edge is soft";
        // Nothing of it is cut off above or below.
        for (int x = 0; x < int(g.dx); ++x) {
            EXPECT_LT(alpha(g, x, 0), 30) << c;
            EXPECT_LT(alpha(g, x, int(g.dy) - 1), 30) << c;
        }
    }
    const GLFONTCHAR& space = glyph(' ');
    for (int y = 0; y < int(space.dy); ++y) {
        for (int x = 0; x < int(space.dx); ++x)
            EXPECT_EQ(alpha(space, x, y), 0);
    }
}

TEST_F(FontTest, NoTwoLettersLookAlike) {
    for (char c = 32; c < 127; ++c) {
        for (char d = char(c + 1); d < 127; ++d) {
            const GLFONTCHAR &a = glyph(c), &b = glyph(d);
            int difference = a.dx != b.dx;
            for (int y = 0; y < int(a.dy) && !difference; ++y) {
                for (int x = 0; x < int(a.dx); ++x)
                    difference += alpha(a, x, y) != alpha(b, x, y);
            }
            EXPECT_GT(difference, 0) << c << d;
        }
    }
}

TEST_F(FontTest, FiguresAreOfOneWidth) {
    for (char c = '0'; c <= '9'; ++c)
        EXPECT_EQ(glyph(c).dx, glyph('0').dx) << "a number that counts must not jump";
    EXPECT_GT(glyph('W').dx, glyph('i').dx);
}

TEST_F(FontTest, FrameRateLineReadsOnSkyCloudSandAndWater) {
    struct GROUND {
        const char* name;
        int r, g, b;
    };
    for (const GROUND& ground :
         {GROUND{"zenith", 23, 77, 168}, GROUND{"haze", 209, 233, 241},
          GROUND{"cloud", 240, 244, 246}, GROUND{"sand", 255, 244, 217},
          GROUND{"shaded sand", 205, 205, 185}, GROUND{"lagoon", 39, 160, 192}}) {
        const Picture picture = draw("1280 x 720   59.87 fps", 4, float(ground.r) / 255,
                                     float(ground.g) / 255, float(ground.b) / 255);
        // Every white pixel has a dark one near it: that is what the eye reads, whatever lies
        // behind.
        const auto brightness = [&](int x, int y) {
            const uint8_t* p = &picture.rgb[size_t(3 * (y * width + x))];
            return (2 * p[0] + 5 * p[1] + p[2]) / 8;
        };
        int white = 0, contrasted = 0;
        for (int y = 3; y < height - 3; ++y) {
            for (int x = 3; x < width - 3; ++x) {
                const uint8_t* p = &picture.rgb[size_t(3 * (y * width + x))];
                if (p[0] < 253 || p[1] < 253 || p[2] < 253)
                    continue;
                ++white;
                int darkest = 255;
                for (int dy = -3; dy <= 3; ++dy) {
                    for (int dx = -3; dx <= 3; ++dx)
                        darkest = std::min(darkest, brightness(x + dx, y + dy));
                }
                contrasted += darkest < 80;
            }
        }
        EXPECT_GT(white, 400) << ground.name;
        EXPECT_EQ(contrasted, white) << ground.name;
    }
}

TEST_F(FontTest, DrawsTheTexelsAsTheyAre) {
    const Picture picture = draw("g", 16, 0, 0, 0);
    const GLFONTCHAR& g = glyph('g');
    int worst = 0;
    for (int y = 0; y < int(g.dy); ++y) {
        for (int x = 0; x < int(g.dx); ++x) {
            const int expected = luminance(g, x, y) * alpha(g, x, y) / 255;
            const int drawn = picture.rgb[size_t(3 * ((8 + y) * width + 16 + x))];
            worst = std::max(worst, std::abs(drawn - expected));
        }
    }
    EXPECT_LE(worst, 2);
}

TEST_F(FontTest, DefaultScreenSizeIsStretchedOverTheWindow) {
    text.setScreensize(width / 2, height / 2);
    const Picture doubled = draw("H", 0, 0, 0, 0);
    text.setScreensize(width, height);
    const Picture plain = draw("H", 0, 0, 0, 0);
    const auto extent = [&](const Picture& picture) {
        int right = 0, bottom = 0;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                if (picture.rgb[size_t(3 * (y * width + x))] > 200) {
                    right = std::max(right, x);
                    bottom = std::max(bottom, y);
                }
            }
        }
        return std::pair(right, bottom);
    };
    EXPECT_NEAR(extent(doubled).first, 2 * extent(plain).first, 3);
    EXPECT_NEAR(extent(doubled).second, 2 * extent(plain).second, 3);
}

TEST(FontWithoutContext, MayOutliveIt) {
    auto context = std::make_unique<OffscreenContext>(16, 16);
    ASSERT_TRUE(context->ok());
    GLText text;
    text.setFontfile(font_file.c_str());
    ASSERT_TRUE(text.initialized);
    EXPECT_TRUE(glIsTexture(text.font.tex));
    context.reset();
    text.cleanup();
    EXPECT_EQ(text.font.characters, nullptr);
}

}  // namespace
