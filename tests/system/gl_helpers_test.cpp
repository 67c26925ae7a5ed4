#include "system/GLHelpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support.h"

namespace {

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
const float SIN45 = std::sqrt(0.5f);

void expectMatrix(const GLMatrix& m, const std::vector<float>& expected) {
    ASSERT_EQ(expected.size(), 16u);
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(m.v[i], expected[i], 1e-6) << "element " << i;
}

TEST(Vectors, startAsDocumented) {
    expectVector(GLVector3(), 0, 0, 0, 0);
    const GLColor color;
    EXPECT_EQ(color.r, 1);
    EXPECT_EQ(color.g, 1);
    EXPECT_EQ(color.b, 1);
    EXPECT_EQ(color.a, 1);
    expectMatrix(GLMatrix(), {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    const Quaternion q;
    EXPECT_EQ(q.x, 0);
    EXPECT_EQ(q.y, 0);
    EXPECT_EQ(q.z, 0);
    EXPECT_EQ(q.w, 1);
    const GLVertex vertex;
    expectVector(vertex.pos, 0, 0, 0, 0);
    expectVector(vertex.normal, 0, 0, 0, 0);
}

TEST(Vectors, constantsConvertAngles) {
    EXPECT_EQ(PI, 3.1415926535897f);
    EXPECT_FLOAT_EQ(DTOR(180.0f), PI);
    EXPECT_FLOAT_EQ(RTOD(PI), 180);
    const float x = 3;
    EXPECT_EQ(SQR(x), 9);
    // The argument stands bare.
    EXPECT_EQ(SQR(1 + 2), 1 + 2 * 1 + 2);
}

TEST(Vectors, addSubtractAndScale) {
    const GLVector3 a(1, 2, 3), b(0, 0, 1);
    expectVector(a + b, 1, 2, 4, 0);
    expectVector(a - b, 1, 2, 2, 0);
    expectVector(a * 2, 2, 4, 6, 0);
    expectVector(vectorFromPoints(&a, &b), 1, 2, 2, 0);
    expectVector(addVector(&a, &b), 1, 2, 4, 0);
    expectVector(divideVectorByScaler(&a, 2), 0.5f, 1, 1.5f, 0);
    expectVector(cross(&a, &b), 2, -1, 0, 0);
    EXPECT_EQ(dot(&a, &b), 3);
    GLVector3 c;
    c.set(7, 8, 9);
    expectVector(c, 7, 8, 9, 0);

    const GLVector2 d(3, 4), e(1, 1);
    EXPECT_TRUE(d + e == GLVector2(4, 5));
    EXPECT_TRUE(d - e == GLVector2(2, 3));
    EXPECT_EQ(dot(&d, &e), 7);
}

TEST(Vectors, haveLengthsAndDirections) {
    GLVector3 v(2, 3, 6);
    EXPECT_EQ(vectorLength(&v), 7);
    expectVector(normalize(&v), 2 / 7.f, 3 / 7.f, 6 / 7.f);
    expectVector(v, 2, 3, 6, 0);
    v.normalize();
    expectVector(v, 2 / 7.f, 3 / 7.f, 6 / 7.f);
    const GLVector3 a(1, 1, 1), b(3, 4, 7);
    EXPECT_EQ(distance(&a, &b), 7);
    const GLVector2 w(3, 4);
    EXPECT_EQ(vectorLength(&w), 5);
    EXPECT_TRUE(normalize(&w) == GLVector2(0.6f, 0.8f));
    const GLVector3 zero;
    EXPECT_TRUE(std::isnan(normalize(&zero).x));
    EXPECT_TRUE(std::isinf(divideVectorByScaler(&a, 0).y));
}

TEST(Vectors, compareExactly) {
    const GLVector3 a(0.1f, 0.2f, 0.3f);
    const float next = std::nextafter(0.3f, 1.0f);
    EXPECT_TRUE(a == GLVector3(0.1f, 0.2f, 0.3f));
    EXPECT_FALSE(a != GLVector3(0.1f, 0.2f, 0.3f));
    EXPECT_FALSE(a == GLVector3(0.1f, 0.2f, next));
    EXPECT_TRUE(a != GLVector3(0.1f, 0.2f, next));
    EXPECT_FALSE(a == GLVector3(std::nextafter(0.1f, 1.0f), 0.2f, 0.3f));
    EXPECT_FALSE(a == GLVector3(0.1f, std::nextafter(0.2f, 1.0f), 0.3f));
    const GLVector3 n(NaN, 0, 0);
    EXPECT_FALSE(n == n);
    EXPECT_TRUE(n != n);
    EXPECT_FALSE(GLVector2(1, next) == GLVector2(1, 0.3f));
}

TEST(Vectors, transformReadsTheMatrixByRows) {
    GLMatrix m;
    for (int i = 0; i < 16; ++i)
        m.v[i] = static_cast<float>(i + 1);
    GLVector3 v(1, 10, 100);
    v.transform(&m);
    expectVector(v, 1 + 20 + 300 + 4, 5 + 60 + 700 + 8, 9 + 100 + 1100 + 12, 0);
}

TEST(Vectors, transformTurnsTheOtherWay) {
    GLMatrix m;
    m.xRotation(90);
    GLVector3 v(0, 1, 0);
    v.transform(&m);
    expectVector(v, 0, 0, -1);
    // The translation of a look-at placement is not read.
    m.createFromLookAt(5, 6, 7, 5, 6, 6, 0, 1, 0);
    v.set(1, 2, 3);
    v.transform(&m);
    expectVector(v, 1, 2, 3);
}

TEST(Matrices, rotateLikeGL) {
    const float c = std::cos(DTOR(30.f)), s = 0.5f;
    GLMatrix m;
    std::fill(m.v, m.v + 16, 7.0f);  // everything is written
    m.xRotation(30);
    expectMatrix(m, {1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1});
    std::fill(m.v, m.v + 16, 7.0f);
    m.yRotation(30);
    expectMatrix(m, {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1});
    std::fill(m.v, m.v + 16, 7.0f);
    m.zRotation(30);
    expectMatrix(m, {c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    m.setIdentity();
    expectMatrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
}

TEST(Matrices, multiplyWithThisOnTheLeft) {
    GLMatrix a, b;
    for (int i = 0; i < 16; ++i) {
        a.v[i] = static_cast<float>(i);
        b.v[i] = static_cast<float>(i * i % 7);
    }
    const GLMatrix r = a * b;
    for (int c = 0; c < 4; ++c) {
        for (int row = 0; row < 4; ++row) {
            float sum = 0;
            for (int k = 0; k < 4; ++k)
                sum += a.v[k * 4 + row] * b.v[c * 4 + k];
            EXPECT_EQ(r.v[c * 4 + row], sum) << row << ", " << c;
        }
    }
}

TEST(Matrices, addUpInDoublePrecision) {
    GLMatrix a, b;
    // The small term is lost when a large one is added to it in single precision.
    a.v[0] = 1e8f;
    a.v[4] = 1;
    a.v[8] = -1e8f;
    b.v[0] = b.v[1] = b.v[2] = 1;
    EXPECT_EQ((a * b).v[0], 1);
}

TEST(Matrices, placeAnObjectThatLooks) {
    GLMatrix m;
    std::fill(m.v, m.v + 16, 7.0f);  // everything is written
    // Looks along +x from (1, 2, 3): its side is +z, and it looks out of the -x of its own.
    m.createFromLookAt(1, 2, 3, 11, 2, 3, 0, 5, 0);
    expectMatrix(m, {0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 1, 2, 3, 1});
    // An up vector that leans gives an up column at right angles to the view.
    m.createFromLookAt(0, 0, 0, 1, 1, 0, 0, 1, 0);
    expectMatrix(m, {0, 0, 1, 0, -SIN45, SIN45, 0, 0, -SIN45, -SIN45, 0, 0, 0, 0, 0, 1});
}

TEST(Quaternions, storeInFieldOrder) {
    const Quaternion q(1, 2, 3, 4);
    EXPECT_EQ(q.x, 1);
    EXPECT_EQ(q.y, 2);
    EXPECT_EQ(q.z, 3);
    EXPECT_EQ(q.w, 4);
}

TEST(Quaternions, turnAboutAnAxis) {
    Quaternion q;
    q.createFromAngle(0, 2, 0, 60);
    EXPECT_NEAR(q.y, 1, 1e-6) << "the axis is used as given";
    EXPECT_NEAR(q.w, std::sqrt(0.75f), 1e-6);
    EXPECT_EQ(q.x, 0);
    EXPECT_EQ(q.z, 0);
}

TEST(Quaternions, normalizeAllComponents) {
    Quaternion q(1, 3, 5, 1);
    q.normalize();
    EXPECT_FLOAT_EQ(q.x, 1 / 6.f);
    EXPECT_FLOAT_EQ(q.y, 3 / 6.f);
    EXPECT_FLOAT_EQ(q.z, 5 / 6.f);
    EXPECT_FLOAT_EQ(q.w, 1 / 6.f);
}

TEST(Quaternions, makeTheMatricesOfGL) {
    const struct {
        float x, y, z;
        void (GLMatrix::*rotate)(float);
    } AXES[] = {{1, 0, 0, &GLMatrix::xRotation},
                {0, 1, 0, &GLMatrix::yRotation},
                {0, 0, 1, &GLMatrix::zRotation}};
    for (const auto& axis : AXES) {
        for (const float angle : {-200.f, -35.f, 0.f, 35.f, 90.f, 350.f}) {
            Quaternion q;
            q.createFromAngle(axis.x, axis.y, axis.z, angle);
            GLMatrix m, expected;
            m.v[3] = m.v[14] = 8;  // everything is written
            q.createMatrix(&m);
            (expected.*axis.rotate)(angle);
            expectMatrix(m, std::vector<float>(expected.v, expected.v + 16));
        }
    }
    Quaternion().createMatrix(nullptr);
}

TEST(Quaternions, multiplyLikeHamilton) {
    const Quaternion a(1, 2, 3, 4), b(5, 6, 7, 8);
    const Quaternion r = a * b;
    EXPECT_EQ(r.x, 24);
    EXPECT_EQ(r.y, 48);
    EXPECT_EQ(r.z, 48);
    EXPECT_EQ(r.w, -6);
    const Quaternion i(1, 0, 0, 0), j(0, 1, 0, 0);
    EXPECT_EQ((i * j).z, 1);
    EXPECT_EQ((j * i).z, -1);
}

TEST(Quaternions, composeFromThreeAngles) {
    Quaternion q(1, 2, 3, 4);
    q.createFromYawPitchRoll(0, 0, 0);
    EXPECT_EQ(q.x, 0);
    EXPECT_EQ(q.y, 0);
    EXPECT_EQ(q.z, 0);
    EXPECT_EQ(q.w, 1);
    q.createFromYawPitchRoll(90, 0, 0);
    EXPECT_NEAR(q.x, SIN45, 1e-6);
    EXPECT_NEAR(q.w, SIN45, 1e-6);
    EXPECT_EQ(q.y, 0);
    q.createFromYawPitchRoll(0, 90, 0);
    EXPECT_NEAR(q.y, SIN45, 1e-6);
    q.createFromYawPitchRoll(0, 0, 90);
    EXPECT_NEAR(q.z, SIN45, 1e-6);
    // Yaw about x first, then pitch about y, then roll about z, each multiplied on the right.
    q.createFromYawPitchRoll(90, 90, 90);
    Quaternion x, y, z;
    x.createFromAngle(1, 0, 0, 90);
    y.createFromAngle(0, 1, 0, 90);
    z.createFromAngle(0, 0, 1, 90);
    const Quaternion expected = x * y * z;
    EXPECT_NEAR(q.x, expected.x, 1e-6);
    EXPECT_NEAR(q.y, expected.y, 1e-6);
    EXPECT_NEAR(q.z, expected.z, 1e-6);
    EXPECT_NEAR(q.w, expected.w, 1e-6);
}

TEST(Angles, haveASign) {
    const GLVector3 x(1, 0, 0), y(0, 1, 0), opposite(-1, 0, 0), longer(3, 0, 0), z(0, 0, 1);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&x, &y), PI / 2);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&y, &x), -PI / 2);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&x, &opposite), -PI);
    EXPECT_EQ(angleBetweenVectors(&x, &longer), 0);
    // Only x and y decide the sign.
    EXPECT_FLOAT_EQ(angleBetweenVectors(&x, &z), -PI / 2);

    const GLVector2 x2(2, 0), y2(0, 1), opposite2(-1, 0), diagonal(1, 1);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&x2, &y2), PI / 2);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&y2, &x2), -PI / 2);
    EXPECT_FLOAT_EQ(angleBetweenVectors(&x2, &opposite2), -PI);
    EXPECT_NEAR(angleBetweenVectors(&x2, &diagonal), PI / 4, 1e-6);
    EXPECT_EQ(angleBetweenVectors(&diagonal, &diagonal), 0);
}

TEST(Angles, areClampedAboveOnly) {
    // Nearly parallel directions whose product rounds to more than 1 must not give a NaN.
    for (int i = 1; i < 2000; ++i) {
        const GLVector3 a(static_cast<float>(i), 0.3f * i, 0.7f);
        const GLVector3 b(a.x, a.y, std::nextafter(a.z, 1.0f));
        EXPECT_FALSE(std::isnan(angleBetweenVectors(&a, &b))) << i;
    }
    const GLVector3 zero, x(1, 0, 0);
    EXPECT_TRUE(std::isnan(angleBetweenVectors(&zero, &x)));
}

TEST(BoundedTurn, stopsAtTheLimit) {
    const GLVector3 x(1, 0, 0), y(0, 1, 0);
    expectVector(rotateVectorToDestination(&x, &y, 10), std::cos(DTOR(10.f)), std::sin(DTOR(10.f)),
                 0);
    EXPECT_TRUE(rotateVectorToDestination(&x, &y, 100) == y);
}

TEST(BoundedTurn, stillTurnsAtExactlyTheAngle) {
    // 90 degrees in single precision lie slightly below the right angle.
    const GLVector3 x(1, 0, 0), y(0, 1, 0);
    const GLVector3 turned = rotateVectorToDestination(&x, &y, 90);
    EXPECT_TRUE(turned != y);
    expectVector(turned, 0, 1, 0);
}

TEST(BoundedTurn, turnsAboutTheCommonPerpendicular) {
    const GLVector3 from(0, 0.6f, 0.8f), to(0.8f, 0, 0.6f);
    const GLVector3 turned = rotateVectorToDestination(&from, &to, 20);
    EXPECT_NEAR(vectorLength(&turned), 1, 1e-6);
    EXPECT_NEAR(std::acos(dot(&from, &turned)), DTOR(20.f), 1e-5);
    EXPECT_NEAR(std::acos(dot(&turned, &to)), std::acos(dot(&from, &to)) - DTOR(20.f), 1e-5);
}

TEST(BoundedTurn, givesNoNumberForWhatHasNoAngle) {
    const GLVector3 from(NaN, 0, 0), to(1, 0, 0);
    EXPECT_TRUE(std::isnan(rotateVectorToDestination(&from, &to, 10).x));
    // Equal vectors have no axis, but there is nothing to turn either.
    EXPECT_TRUE(rotateVectorToDestination(&to, &to, 10) == to);
}

}  // namespace
