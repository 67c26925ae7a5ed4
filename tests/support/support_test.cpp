// The seams themselves: what they replace, and that they notice what tests rely on.
#include <GL/glu.h>
#include <SDL_timer.h>
#include <dlfcn.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/chance.h"
#include "support/clock.h"
#include "support/gl_recorder.h"

namespace {

TEST(Clock, standsStillUntilItIsSet) {
    EXPECT_EQ(SDL_GetTicks(), 0u);
    test::setTicks(0xffffffffu);
    EXPECT_EQ(SDL_GetTicks(), 0xffffffffu);
    test::advanceTicks(11);
    EXPECT_EQ(SDL_GetTicks(), 10u);
}

TEST(Chance, yieldsTheSequence) {
    test::setRandom({3, 1, 2});
    std::srand(5);
    EXPECT_EQ(std::rand(), 3);
    EXPECT_EQ(std::rand(), 1);
    EXPECT_EQ(test::randomLeft(), 1u);
    EXPECT_EQ(std::rand(), 2);
    EXPECT_NONFATAL_FAILURE(std::rand(), "more than 3 times");
}

TEST(Chance, repeatsItselfForTheSameSeed) {
    test::seedRandom(7);
    const int first = std::rand();
    const int second = std::rand();
    test::seedRandom(7);
    std::srand(8);
    EXPECT_EQ(std::rand(), first);
    EXPECT_EQ(std::rand(), second);
    EXPECT_NE(first, second);
}

class Recorder : public ::testing::Test {
protected:
    Recorder() { test::clear(); }
};

TEST_F(Recorder, writesDownCallsWithTheirArguments) {
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glTranslatef(1, 2, 0.5f);
    gluLookAt(1, 2, 3, 4, 5, 6, 7, 8, 9);
    ASSERT_EQ(test::calls().size(), 3u);
    EXPECT_EQ(test::calls()[0], (test::GL_CALL{"glBlendFunc", {GL_SRC_ALPHA, GL_ONE}}));
    EXPECT_EQ(test::indexOf("glTranslatef"), 1);
    EXPECT_EQ(test::indexOf("glTranslatef", 2), -1);
    EXPECT_TRUE(test::wasCalled({"glTranslatef", {1, 2, 0.5}}));
    EXPECT_FALSE(test::wasCalled({"glTranslatef", {1, 2, 0.25}}));
    EXPECT_TRUE(test::wasCalled({"gluLookAt", {1, 2, 3, 4, 5, 6, 7, 8, 9}}));
    EXPECT_EQ(test::count("glBlendFunc"), 1);
    EXPECT_EQ(test::callsOf("glTranslatef").size(), 1u);
}

TEST_F(Recorder, keepsWhatWasCurrentAtAVertex) {
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, 7);
    glActiveTextureARB(GL_TEXTURE0_ARB + 1);
    glBindTexture(GL_TEXTURE_2D, 8);
    glActiveTextureARB(GL_TEXTURE0_ARB);
    glBegin(GL_QUADS);
    glColor4f(0.1f, 0.2f, 0.3f, 0.4f);
    glNormal3f(0, 1, 0);
    glTexCoord2f(5, 6);
    glMultiTexCoord2fARB(GL_TEXTURE0_ARB + 1, 7, 8);
    glVertex3f(1, 2, 3);
    glEnd();

    ASSERT_EQ(test::vertices().size(), 1u);
    const test::GL_VERTEX& v = test::vertices()[0];
    EXPECT_EQ(v.primitive, GLenum{GL_QUADS});
    EXPECT_EQ(v.z, 3);
    EXPECT_EQ(v.u[0], 5);
    EXPECT_EQ(v.v[1], 8);
    EXPECT_EQ(v.color[3], 0.4f);
    EXPECT_EQ(v.normal[1], 1);
    EXPECT_EQ(v.texture[0], 7u);
    // Bound, but texturing is off on that unit.
    EXPECT_EQ(v.texture[1], 0u);
    EXPECT_EQ(test::boundTexture(1), 8u);
    EXPECT_EQ(test::imbalance(), "");
}

TEST_F(Recorder, noticesWhatDoesNotPair) {
    glPushMatrix();
    EXPECT_EQ(test::imbalance(), "glPushMatrix without glPopMatrix\n");
    glPopMatrix();
    EXPECT_EQ(test::imbalance(), "");
    glBegin(GL_LINES);
    EXPECT_EQ(test::imbalance(), "glBegin without glEnd\n");
    glEnd();
    EXPECT_EQ(test::imbalance(), "");
}

// Complaints stay, so each kind has a process of its own in CTest and is looked for by name here.
TEST_F(Recorder, complainsAboutMisplacedCalls) {
    glBegin(GL_LINES);
    glEnable(GL_BLEND);
    glEnd();
    glVertex3f(0, 0, 0);
    glPopMatrix();
    glPushMatrix();
    EXPECT_NE(test::imbalance().find("glEnable between glBegin and glEnd"), std::string::npos);
    EXPECT_NE(test::imbalance().find("vertex outside glBegin"), std::string::npos);
    EXPECT_NE(test::imbalance().find("glPopMatrix without glPushMatrix"), std::string::npos);
}

TEST_F(Recorder, answersAsItIsTold) {
    GLint value = 0;
    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &value);
    EXPECT_EQ(value, test::UNITS);
    test::setAnswer(GL_MAX_TEXTURE_UNITS_ARB, 2);
    glGetIntegerv(GL_MAX_TEXTURE_UNITS_ARB, &value);
    EXPECT_EQ(value, 2);
    glEnable(GL_LIGHTING);
    GLboolean on = GL_FALSE;
    glGetBooleanv(GL_LIGHTING, &on);
    EXPECT_EQ(on, GL_TRUE);
    test::setAnswer(GL_EXTENSIONS, "a b");
    EXPECT_STREQ(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS)), "a b");
}

TEST_F(Recorder, opensTheLibrariesThatItIsGiven) {
    test::setLibraries({"libGL.so.1"});
    EXPECT_EQ(dlopen("libGL.so", RTLD_LAZY), nullptr);
    void* library = dlopen("libGL.so.1", RTLD_LAZY);
    ASSERT_NE(library, nullptr);
    test::hideFunctions({"glMultiTexCoord2fARB"});
    EXPECT_EQ(dlsym(library, "glActiveTextureARB"), reinterpret_cast<void*>(&glActiveTextureARB));
    EXPECT_EQ(dlsym(library, "glMultiTexCoord2fARB"), nullptr);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_TRUE(test::wasCalled({"dlopen", {RTLD_LAZY}, "libGL.so"}));
    // Other libraries are none of its business.
    void* program = dlopen(nullptr, RTLD_LAZY);
    EXPECT_NE(program, nullptr);
    dlclose(program);
}

TEST_F(Recorder, canDoNothingButCount) {
    test::setCountingOnly(true);
    glBegin(GL_QUADS);
    glVertex3f(0, 0, 0);
    glEnd();
    test::setCountingOnly(false);
    EXPECT_EQ(test::totalCount(), 3);
    EXPECT_TRUE(test::calls().empty());
    EXPECT_TRUE(test::vertices().empty());
}

}  // namespace
