#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <set>

#include "support.h"
#include "support/chance.h"
#include "support/gl_recorder.h"
#include "system/GLHelpers.h"

namespace {

const GLVector3 P[] = {{0, 0, 0}, {1, 2, 0}, {3, 2, 1}, {4, 0, 2}};

TEST(Bezier, cubic) {
    expectVector(bezierCurve(&P[0], &P[1], &P[2], &P[3], 0), 0, 0, 0);
    expectVector(bezierCurve(&P[0], &P[1], &P[2], &P[3], 1), 4, 0, 2);
    // Weights 1/8, 3/8, 3/8, 1/8.
    expectVector(bezierCurve(&P[0], &P[1], &P[2], &P[3], 0.5f), 2, 1.5f, 0.625f);
    // Weights 27/64, 27/64, 9/64, 1/64.
    expectVector(bezierCurve(&P[0], &P[1], &P[2], &P[3], 0.25f), 58 / 64.f, 72 / 64.f, 11 / 64.f);
}

TEST(Bezier, anyDegree) {
    for (const double t : {0.0, 0.2, 0.5, 0.9}) {
        const GLVector3 cubic = bezierCurve(&P[0], &P[1], &P[2], &P[3], static_cast<float>(t));
        expectVector(bezierCurve(P, 3, t), cubic.x, cubic.y, cubic.z);
    }
    expectVector(bezierCurve(P, 1, 0.25), 0.25f, 0.5f, 0);
    expectVector(bezierCurve(P, 0, 0.7), 0, 0, 0);
    // A straight line of equidistant points stays one; the largest coefficient is above 1e8.
    std::array<GLVector3, 31> line;
    for (int i = 0; i < 31; ++i)
        line[i].set(static_cast<float>(i), 0, 1);
    expectVector(bezierCurve(line.data(), 30, 0.3), 9, 0, 1, 1e-5f);
}

TEST(Bezier, undefinedAtTheEnd) { EXPECT_TRUE(std::isnan(bezierCurve(P, 3, 1.0).x)); }

TEST(CatmullRom, runsFromTheSecondToTheThirdPoint) {
    expectVector(catmullRomSpline(&P[0], &P[1], &P[2], &P[3], 0), 1, 2, 0);
    expectVector(catmullRomSpline(&P[0], &P[1], &P[2], &P[3], 1), 3, 2, 1);
    // Weights -1/16, 9/16, 9/16, -1/16 in the middle.
    expectVector(catmullRomSpline(&P[0], &P[1], &P[2], &P[3], 0.5f), 2, 2.25f, 7 / 16.f);
}

TEST(LinearInterpolation, isAStraightLine) {
    expectVector(linearInterpolation(&P[1], &P[3], 0), 1, 2, 0, 0);
    expectVector(linearInterpolation(&P[1], &P[3], 0.5f), 2.5f, 1, 1, 0);
    expectVector(linearInterpolation(&P[1], &P[3], 2), 7, -2, 4, 0);
}

TEST(Modulo, keepsFractionAndSign) {
    EXPECT_EQ(modulo(725, 360), 5);
    EXPECT_EQ(modulo(370.5f, 360), 10.5f);
    EXPECT_EQ(modulo(-30.25f, 360), -30.25f);
    EXPECT_EQ(modulo(-5.5f, 360), -5.5f);
    EXPECT_EQ(modulo(-370, 360), -10);
    EXPECT_EQ(modulo(0.75f, 1), 0.75f);
    EXPECT_EQ(modulo(-2.75f, 1), -0.75f);
    EXPECT_EQ(modulo(360, 360), 0);
    EXPECT_FALSE(std::signbit(modulo(-360, 360)));
}

TEST(Modulo, survivesNumbersThatFitNoInt) {
    EXPECT_EQ(modulo(3.6e12f, 360), std::fmod(double{3.6e12f}, 360));
    EXPECT_EQ(modulo(-std::ldexp(1.0f, 100), 360), -std::fmod(std::ldexp(1.0, 100), 360));
    EXPECT_TRUE(std::isnan(modulo(std::numeric_limits<float>::quiet_NaN(), 360)));
    EXPECT_FALSE(std::isfinite(modulo(std::numeric_limits<float>::infinity(), 360)));
    EXPECT_FALSE(std::isfinite(modulo(5, 0)));
}

TEST(Randomf, liesOnTheDecimalGrid) {
    test::setRandom({0, 1, 99, 100, 12345, 2147483647});
    EXPECT_EQ(randomf(0, 1, 2), 0);
    EXPECT_EQ(randomf(0, 1, 2), 0.01f);
    EXPECT_EQ(randomf(0, 1, 2), 0.99f);
    EXPECT_EQ(randomf(0, 1, 2), 0);
    EXPECT_EQ(randomf(0, 1, 2), 0.45f);
    EXPECT_EQ(randomf(0, 1, 2), 0.47f);
    EXPECT_EQ(test::randomLeft(), 0u);
}

TEST(Randomf, coversItsRangeWithoutTheEnd) {
    test::seedRandom(1);
    std::set<float> unit, tenths;
    for (int i = 0; i < 5000; ++i) {
        unit.insert(randomf(0, 1, 2));
        tenths.insert(randomf(5, 10, 0));
    }
    EXPECT_EQ(unit.size(), 100u);
    EXPECT_EQ(*unit.begin(), 0);
    EXPECT_EQ(*unit.rbegin(), 0.99f);
    EXPECT_EQ(tenths.size(), 50u) << "one decimal is the least";
    EXPECT_EQ(*tenths.begin(), 5);
    EXPECT_FLOAT_EQ(*tenths.rbegin(), 9.9f);
}

TEST(Randomf, shiftsByTheLowerEnd) {
    test::setRandom({0, 699, 700, 250});
    EXPECT_EQ(randomf(-4, 3, 2), -4);
    EXPECT_FLOAT_EQ(randomf(-4, 3, 2), 2.99f);
    EXPECT_EQ(randomf(-4, 3, 2), -4);
    EXPECT_FLOAT_EQ(randomf(-4, -1, 3), -3.75f);
}

TEST(Randomf, takesAnyNumberOfDecimals) {
    test::setRandom({2000000000, 2000000000, 123, 123});
    EXPECT_FLOAT_EQ(randomf(0, 1, 10), 0.2f);
    EXPECT_FLOAT_EQ(randomf(0, 0.1f, 11), 0.02f);
    // Every power of ten that a float holds counts, those above do not.
    EXPECT_FLOAT_EQ(randomf(0, 1, 38), 1.23e-36f);
    EXPECT_FLOAT_EQ(randomf(0, 1, 39), 1.23e-36f);
}

TEST(Randomf, neverExceedsTheUpperEnd) {
    // A reversed range is shifted beyond its end.
    test::setRandom({55});
    EXPECT_EQ(randomf(10, 1, 1), 1);
}

TEST(Randomf, survivesRangesWithoutAStep) {
    test::setRandom({7, 7, 7, 7, 7});
    EXPECT_EQ(randomf(2, 2, 2), 2);
    EXPECT_EQ(randomf(2, 2.001f, 2), 2);
    EXPECT_EQ(randomf(2, std::numeric_limits<float>::quiet_NaN(), 2), 2);
    EXPECT_EQ(randomf(0, 1e30f, 2), 0.07f);
    EXPECT_TRUE(std::isfinite(randomf(0, 1, 1000000000)));
}

TEST(Approximation, stepsAndSnaps) {
    float value = 0;
    EXPECT_EQ(approximation(&value, 1, 0.3f), 0.3f);
    EXPECT_FLOAT_EQ(value, 0.3f);
    EXPECT_EQ(approximation(&value, 1, 0.3f), 0.3f);
    EXPECT_FLOAT_EQ(value, 0.6f);
    EXPECT_EQ(approximation(&value, 1, 0.3f), 0.3f);
    EXPECT_FLOAT_EQ(value, 0.9f);
    EXPECT_NEAR(approximation(&value, 1, 0.3f), 0.1f, 1e-6);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(approximation(&value, 1, 0.3f), 0);
    EXPECT_EQ(value, 1);
}

TEST(Approximation, stepsDown) {
    float value = 1;
    EXPECT_EQ(approximation(&value, 0, 0.75f), -0.75f);
    EXPECT_EQ(value, 0.25f);
    EXPECT_EQ(approximation(&value, 0, 0.75f), -0.25f);
    EXPECT_EQ(value, 0);
    value = 2;
    EXPECT_EQ(approximation(&value, 1, 1), -1) << "a distance of exactly one step";
    EXPECT_EQ(value, 1);
}

const GLVector2 SQUARE[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

bool isInSquare(float x, float y) {
    const GLVector2 p(x, y);
    return isPointInsidePolygon(SQUARE, 4, &p);
}

TEST(PointInPolygon, unitSquare) {
    EXPECT_TRUE(isInSquare(0.5f, 0.5f));
    EXPECT_FALSE(isInSquare(1.5f, 0.5f));
    EXPECT_FALSE(isInSquare(-0.5f, 0.5f));
    EXPECT_FALSE(isInSquare(0.5f, 1.5f));
    EXPECT_FALSE(isInSquare(0, 0.5f)) << "both vertical edges are crossed";
    EXPECT_TRUE(isInSquare(1, 0.5f));
    EXPECT_FALSE(isInSquare(0.5f, 0)) << "lower ends do not count";
    EXPECT_TRUE(isInSquare(0.5f, 1)) << "upper ends do";
}

TEST(PointInPolygon, slantedAndConcave) {
    const GLVector2 shape[] = {{0, 0}, {4, 0}, {4, 4}, {2, 1}, {0, 4}};
    const auto inside = [&](float x, float y) {
        const GLVector2 p(x, y);
        return isPointInsidePolygon(shape, 5, &p);
    };
    EXPECT_TRUE(inside(0.5f, 2));
    EXPECT_TRUE(inside(3.5f, 2));
    EXPECT_FALSE(inside(2, 2)) << "in the notch";
    EXPECT_TRUE(inside(2, 0.5f));
    EXPECT_FALSE(inside(5, 2));
}

TEST(PointInPolygon, withoutCorners) {
    const GLVector2 p(0, 0);
    EXPECT_FALSE(isPointInsidePolygon(SQUARE, 0, &p));
}

TEST(Extensions, areFoundAsWholeWords) {
    test::setAnswer(GL_EXTENSIONS, "GL_ARB_multitexture_more GL_EXT_bgra GL_ARB_x");
    EXPECT_TRUE(searchForExtension("GL_EXT_bgra"));
    EXPECT_TRUE(searchForExtension("GL_ARB_multitexture_more"));
    EXPECT_TRUE(searchForExtension("GL_ARB_x"));
    EXPECT_FALSE(searchForExtension("GL_ARB_multitexture"));
    EXPECT_FALSE(searchForExtension("GL_EXT_bgrax"));
    EXPECT_FALSE(searchForExtension("EXT_bgra"));
    test::setAnswer(GL_EXTENSIONS, "");
    EXPECT_FALSE(searchForExtension("GL_EXT_bgra"));
}

TEST(ModulePath, isTheWorkingDirectory) {
    char path[256] = "old";
    getModulePath(path, 1);
    EXPECT_STREQ(path, "old");
    getModulePath(path, 256);
    EXPECT_STREQ(path, "./");
    char small[3] = {'x', 'x', 'x'};
    getModulePath(small, 2);
    EXPECT_EQ(small[2], 'x') << "nothing is written beyond the end";
}

}  // namespace
