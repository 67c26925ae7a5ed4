// Every test probes in a child of its own, because the search happens once per process.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/gl_recorder.h"
#include "system/RenderObject.h"
#include "system/Texture.h"

namespace {

using test::GL_CALL;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Exits with 0 when everything that was expected in this process has come true.
[[noreturn]] void finish() { std::exit(::testing::Test::HasFailure() ? 1 : 0); }

#define IN_A_CHILD(statements) \
    EXPECT_EXIT(               \
        {                      \
            statements;        \
            finish();          \
        },                     \
        ::testing::ExitedWithCode(0), "")

void findsThePlainNameFirst() {
    EXPECT_TRUE(Texture::initMultiTexturing());
    EXPECT_THAT(test::calls(),
                ElementsAre(GL_CALL{"dlopen", {RTLD_LAZY}, "libGL.so"},
                            GL_CALL{"dlsym", {}, "glActiveTextureARB"},
                            GL_CALL{"dlsym", {}, "glMultiTexCoord2fARB"}, GL_CALL{"dlclose", {}},
                            GL_CALL{"glGetIntegerv", {GL_MAX_TEXTURE_UNITS_ARB}}));
    test::clear();
    EXPECT_TRUE(Texture::initMultiTexturing());
    EXPECT_THAT(test::calls(), IsEmpty());
}

TEST(Multitexture, findsThePlainNameFirst) { IN_A_CHILD(findsThePlainNameFirst()); }

void fallsBackToTheRuntimeName() {
    test::setLibraries({"libGL.so.1"});
    EXPECT_TRUE(Texture::initMultiTexturing());
    EXPECT_EQ(test::calls()[0].text, "libGL.so");
    EXPECT_EQ(test::calls()[1].text, "libGL.so.1");
    EXPECT_EQ(test::count("dlclose"), 1);
}

TEST(Multitexture, fallsBackToTheRuntimeName) { IN_A_CHILD(fallsBackToTheRuntimeName()); }

void probesOnlyOnce() {
    test::setLibraries({});
    EXPECT_FALSE(Texture::initMultiTexturing());
    EXPECT_EQ(test::count("dlopen"), 2);
    EXPECT_FALSE(test::wasCalled("dlclose"));
    // Even if it could be found now.
    test::setLibraries({"libGL.so"});
    EXPECT_FALSE(Texture::initMultiTexturing());
    EXPECT_EQ(test::count("dlopen"), 2);
    EXPECT_FALSE(test::wasCalled("glGetIntegerv"));
}

TEST(Multitexture, probesOnlyOnce) { IN_A_CHILD(probesOnlyOnce()); }

void needsBothFunctions(const char* missing) {
    test::hideFunctions({missing});
    EXPECT_FALSE(Texture::initMultiTexturing());
    EXPECT_EQ(test::count("dlclose"), 1);
    EXPECT_FALSE(test::wasCalled("glGetIntegerv"));
    EXPECT_FALSE(Texture::initMultiTexturing());
    EXPECT_EQ(test::count("dlopen"), 1);
}

TEST(Multitexture, needsBothFunctions) {
    IN_A_CHILD(needsBothFunctions("glActiveTextureARB"));
    IN_A_CHILD(needsBothFunctions("glMultiTexCoord2fARB"));
}

void withoutItOnlyTheFirstLayerIsDrawn() {
    test::setLibraries({});
    Texture first, second;
    first.id = 3;
    second.id = 4;
    RenderObject object;
    object.addTexture(&first);
    object.addTexture(&second);
    EXPECT_FALSE(object.multiTexturing);
    test::clear();
    object.preRender();
    object.textureCoord(1, 2);
    object.postRender();
    EXPECT_EQ(test::count("glBindTexture"), 1);
    EXPECT_EQ(test::boundTexture(), 3u);
    EXPECT_EQ(test::count("glTexCoord2f"), 1);
    EXPECT_FALSE(test::wasCalled("glActiveTextureARB"));
    EXPECT_FALSE(test::wasCalled("glMultiTexCoord2fARB"));
    // Asked for or not.
    test::clear();
    second.bindTexture(true, 1);
    second.setGLCoordinates(1, 2, true, 1);
    second.disableTextureUnit(1);
    EXPECT_THAT(test::calls(),
                ElementsAre(GL_CALL{"glEnable", {GL_TEXTURE_2D}},
                            GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 4}},
                            GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, 1}},
                            GL_CALL{"glTexCoord2f", {1, 2}}));
}

TEST(Multitexture, withoutItOnlyTheFirstLayerIsDrawn) {
    IN_A_CHILD(withoutItOnlyTheFirstLayerIsDrawn());
}

void bindsToAUnit() {
    Texture::initMultiTexturing();
    test::clear();
    Texture texture;
    texture.id = 9;
    texture.bindTexture(true, 1);
    EXPECT_THAT(
        test::calls(),
        ElementsAre(GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB + 1}},
                    GL_CALL{"glEnable", {GL_TEXTURE_2D}},
                    GL_CALL{"glBindTexture", {GL_TEXTURE_2D, 9}},
                    GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE}}));
    EXPECT_EQ(test::activeUnit(), 1) << "stays active";
    test::clear();
    texture.setMultitextureMode(SOURCE_ALPHA);
    texture.bindTexture(true, 0);
    EXPECT_EQ(test::calls().back(),
              (GL_CALL{"glTexEnvi", {GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_DECAL}}));
    test::clear();
    texture.setTileFactor(2);
    texture.setGLCoordinates(1, 2, true, 1);
    texture.setGLCoordinates(1, 2, false, 1);
    texture.disableTextureUnit(1);
    EXPECT_THAT(test::calls(),
                ElementsAre(GL_CALL{"glMultiTexCoord2fARB", {GL_TEXTURE0_ARB + 1, 2, 4}},
                            GL_CALL{"glTexCoord2f", {2, 4}},
                            GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB + 1}},
                            GL_CALL{"glDisable", {GL_TEXTURE_2D}},
                            GL_CALL{"glActiveTextureARB", {GL_TEXTURE0_ARB}}));
}

TEST(Multitexture, bindsToAUnit) { IN_A_CHILD(bindsToAUnit()); }

void ignoresUnitsThatTheDriverDoesNotHave() {
    test::setAnswer(GL_MAX_TEXTURE_UNITS_ARB, 2);
    Texture::initMultiTexturing();
    test::clear();
    Texture texture;
    for (const int unit : {2, 3, 1000}) {
        texture.bindTexture(true, unit);
        texture.setGLCoordinates(1, 2, true, unit);
        texture.disableTextureUnit(unit);
    }
    EXPECT_THAT(test::calls(), IsEmpty());
    texture.bindTexture(true, 1);
    EXPECT_EQ(test::activeUnit(), 1);
}

TEST(Multitexture, ignoresUnitsThatTheDriverDoesNotHave) {
    IN_A_CHILD(ignoresUnitsThatTheDriverDoesNotHave());
}

}  // namespace
