#include <OpenSG/OSGVector.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGReal16.h>

#include "support/LogCapture.h"
#include "support/MatrixRows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <type_traits>

using namespace osg;

namespace
{

typedef testsupport::Rows M4;
using testsupport::expectRowsNear;
using testsupport::fromRows;
using testsupport::rotationRows;
using testsupport::toRows;

void product(const M4 &a, const M4 &b, M4 &out)
{
    for(int r = 0; r < 4; ++r)
        for(int c = 0; c < 4; ++c)
        {
            out[r][c] = 0;
            for(int k = 0; k < 4; ++k)
                out[r][c] += a[r][k] * b[k][c];
        }
}

const M4 kIdentity = { { 1, 0, 0, 0 }, { 0, 1, 0, 0 }, { 0, 0, 1, 0 }, { 0, 0, 0, 1 } };

} // namespace

TEST(Vector, ArithmeticFollowsTheEquations)
{
    const Vec3f a(1.f, 2.f, 3.f), b(-2.f, 0.5f, 4.f);

    EXPECT_FLOAT_EQ(a.dot(b), 1 * -2 + 2 * 0.5f + 3 * 4);
    EXPECT_FLOAT_EQ(a * b,    1 * -2 + 2 * 0.5f + 3 * 4);
    EXPECT_EQ(a.cross(b), Vec3f(2 * 4 - 3 * 0.5f, 3 * -2 - 1 * 4, 1 * 0.5f - 2 * -2));
    EXPECT_FLOAT_EQ(a.length(), std::sqrt(14.f));
    EXPECT_NEAR(Vec3f(1.f, 0.f, 0.f).enclosedAngle(Vec3f(1.f, 1.f, 0.f)), Pi / 4, 1e-6);

    Vec3f n(3.f, 0.f, 4.f);
    n.normalize();
    EXPECT_EQ(n, Vec3f(0.6f, 0.f, 0.8f));

    // Too short to have a direction: left alone rather than blown up.
    Vec3f tiny(1e-7f, 0.f, 0.f);
    tiny.normalize();
    EXPECT_FLOAT_EQ(tiny[0], 1e-7f);

    const Pnt3f p(1.f, 1.f, 1.f), q(4.f, 5.f, 1.f);
    EXPECT_EQ(q - p, Vec3f(3.f, 4.f, 0.f));
    EXPECT_EQ(p + (q - p), q);
    EXPECT_FLOAT_EQ(p.dist(q), 5.f);
    EXPECT_EQ(2.f * p, Pnt3f(2.f, 2.f, 2.f));
}

TEST(Vector, ConstructorsFillMissingComponentsWithZero)
{
    const Real32 vals[] = { 7.f, 8.f, 9.f, 10.f };
    EXPECT_EQ(Vec4f(1.f, 2.f), Vec4f(1.f, 2.f, 0.f, 0.f));
    EXPECT_EQ(Vec3f(vals), Vec3f(7.f, 8.f, 9.f));
    EXPECT_EQ(Vec3f(static_cast<const Real32 *>(NULL)), Vec3f(0.f, 0.f, 0.f));
    EXPECT_EQ(Pnt4f(Pnt3f(1.f, 2.f, 3.f)), Pnt4f(1.f, 2.f, 3.f, 0.f));
    EXPECT_EQ(Vec2f(Vec4f(vals)), Vec2f(7.f, 8.f));
    EXPECT_TRUE(Vec3f(1.f, 2.f, 3.f) == Vec3f(1.f + 1e-7f, 2.f, 3.f));
    EXPECT_TRUE(Vec3f(1.f, 2.f, 3.f) < Vec3f(1.f, 2.5f, 0.f));
}

TEST(Real16, ConvertsToAndFromIeeeHalf)
{
    const struct { float value; UInt16 bits; float back; } cases[] = {
        { 1.f,              0x3c00, 1.f              },
        { -2.f,             0xc000, -2.f             },
        { 0.5f,             0x3800, 0.5f             },
        { 65504.f,          0x7bff, 65504.f          },
        { std::ldexp(1.f, -24), 0x0001, std::ldexp(1.f, -24) },   // smallest subnormal
        { 1e6f,             0x7c00, INFINITY         },
        { 1.f / 3.f,        0x3555, 0.333251953125f  },          // nearest half
        { 0.f,              0x0000, 0.f              },
    };
    for(const auto &c : cases)
    {
        const Real16 h(c.value);
        EXPECT_EQ(h.bits(), c.bits) << c.value;
        EXPECT_EQ(Real32(h), c.back) << c.value;
    }
}

TEST(Color, PacksAndConvertsFromHsv)
{
    Color3f c;
    // Packed with red in the lowest byte, as 1.8 packs.
    c.setRGB(0x0080ff);
    EXPECT_EQ(c, Color3f(1.f, 128.f / 255.f, 0.f));
    EXPECT_EQ(Color3ub(0x12, 0x34, 0x56).getRGB(), 0x563412u);
    Color4f rgba;
    rgba.setRGBA(0x40ff8000);
    EXPECT_EQ(rgba, Color4f(0.f, 128.f / 255.f, 1.f, 64.f / 255.f));
    EXPECT_EQ(Color4ub(0x12, 0x34, 0x56, 0x78).getRGBA(), 0x78563412u);

    const struct { float h, s, v; Color3f rgb; } hsv[] = {
        {   0.f, 1.f, 1.f,  Color3f(1.f, 0.f, 0.f) },
        { 120.f, 1.f, 1.f,  Color3f(0.f, 1.f, 0.f) },
        { 240.f, 1.f, 0.5f, Color3f(0.f, 0.f, 0.5f) },
        {  60.f, 0.5f, 1.f, Color3f(1.f, 1.f, 0.5f) },
        {  30.f, 0.f, 0.25f, Color3f(0.25f, 0.25f, 0.25f) },
    };
    for(const auto &t : hsv)
    {
        c.setValuesHSV(t.h, t.s, t.v);
        EXPECT_TRUE(c.equals(t.rgb, 1e-6f)) << t.h << " " << t.s << " " << t.v;
    }

    Color4ub c4;
    c4.setValuesHSV(120.f, 1.f, 1.f);
    EXPECT_EQ(c4, Color4ub(0, 255, 0, 255));
}

TEST(Matrix, ReadingOrderConstructorAndColumnMajorStorage)
{
    const Matrix m(1, 2, 3, 4,
                   5, 6, 7, 8,
                   9, 10, 11, 12,
                   13, 14, 15, 16);
    const Real32 columnMajor[16] = { 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16 };
    for(int i = 0; i < 16; ++i)
        EXPECT_EQ(m.getValues()[i], columnMajor[i]);
    EXPECT_EQ(m[3][0], 4.f);     // column 3, row 0

    Matrix fromMemory;
    fromMemory.setValue(columnMajor);
    EXPECT_EQ(fromMemory, m);

    Matrix fromText;
    fromText.setValue("1 5 9 13, 2 6 10 14, 3 7 11 15, 4 8 12 16");
    EXPECT_EQ(fromText, m);

    Pnt3f p(1.f, 1.f, 1.f);
    Matrix(1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1).multMatrixPnt(p);
    EXPECT_EQ(p, Pnt3f(11.f, 21.f, 31.f));
}

TEST(Matrix, InverseTimesOriginalIsIdentity)
{
    M4 rot;
    rotationRows(rot, 1, 2, 3, 0.7);
    rot[0][3] = 5; rot[1][3] = -2; rot[2][3] = 0.5;

    const M4 cases[] = {
        { { 2, 0, 0, 1 }, { 0, 3, 0, 2 }, { 0, 0, 4, 3 }, { 0, 0, 0, 1 } },
        { { 1, 2, 3, 4 }, { 0, 1, 4, 2 }, { 5, 6, 0, 1 }, { 1, 0, 2, 3 } },
        { { 0.3, -1.2, 2.5, 0.1 }, { 4.1, 0.2, -0.7, 1.9 },
          { -2.2, 3.3, 0.4, -1.5 }, { 0.6, 0.8, -3.1, 2.7 } },
        { { 1, 0, 0, 0 }, { 0, 1, 0, 0 }, { 0, 0, 1, 0 }, { 7, 8, 9, 1 } },
        { { rot[0][0], rot[0][1], rot[0][2], rot[0][3] },
          { rot[1][0], rot[1][1], rot[1][2], rot[1][3] },
          { rot[2][0], rot[2][1], rot[2][2], rot[2][3] },
          { 0, 0, 0, 1 } },
    };
    int index = 0;
    for(const M4 &c : cases)
    {
        SCOPED_TRACE(index++);
        const Matrix m = fromRows(c);
        Matrix inv, inverted(m);
        ASSERT_TRUE(m.inverse(inv));
        ASSERT_TRUE(inverted.invert());
        for(const Matrix &result : { inv, inverted })
        {
            M4 invRows, prod;
            toRows(result, invRows);
            product(c, invRows, prod);
            for(int r = 0; r < 4; ++r)
                for(int col = 0; col < 4; ++col)
                    EXPECT_NEAR(prod[r][col], kIdentity[r][col], 1e-5);
        }
    }
}

TEST(Matrix, SingularInverseFailsAndYieldsIdentity)
{
    const Matrix singular(1, 2, 3, 4, 2, 4, 6, 8, 0, 1, 0, 1, 1, 1, 1, 1);
    Matrix result(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2);

    testsupport::LogCapture log;
    EXPECT_FALSE(singular.inverse(result));
    EXPECT_EQ(result, Matrix::identity());

    Matrix m(singular);
    EXPECT_FALSE(m.invert());
    EXPECT_EQ(m, Matrix::identity());
}

TEST(Matrix, FullPointTransformDividesByW)
{
    Matrix proj;
    MatrixFrustum(proj, -1, 1, -1, 1, 1, 10);

    // z = -near maps to depth -1, z = -far to +1.
    Pnt3f nearPt(0.5f, 0.f, -1.f), farPt(0.f, 10.f, -10.f);
    proj.multFullMatrixPnt(nearPt);
    proj.multFullMatrixPnt(farPt);
    EXPECT_TRUE(nearPt.equals(Pnt3f(0.5f, 0.f, -1.f), 1e-6f));
    EXPECT_TRUE(farPt .equals(Pnt3f(0.f,  1.f,  1.f), 1e-6f));

    testsupport::LogCapture log;
    Pnt3f eye(1.f, 2.f, 0.f);
    proj.multFullMatrixPnt(eye);      // w = -z = 0
    EXPECT_EQ(eye, Pnt3f(0.f, 0.f, 0.f));
    EXPECT_TRUE(log.contains("multFullMatrixPnt: w == 0.0f!"));
}

TEST(Matrix, SetTransformBuildsTranslateRotateScale)
{
    // A quarter turn about z: (x, y) -> (-y, x).
    const Quaternion r(Vec3f(0.f, 0.f, 1.f), Pi / 2), none(Quaternion::identity());
    const Vec3f one(1.f, 1.f, 1.f), zero(0.f, 0.f, 0.f);
    const struct { const char *what; Vec3f t; Quaternion r; Vec3f s; Quaternion so; Vec3f c;
                   Pnt3f p, expected; } cases[] = {
        // p -> t + R (s * p).
        { "trs", Vec3f(1.f, -2.f, 3.f), r, Vec3f(2.f, 3.f, .5f), none, zero,
          Pnt3f(1.f, 1.f, 2.f), Pnt3f(1.f - 3.f, -2.f + 2.f, 3.f + 1.f) },
        // A scale orientation of a quarter turn scales along y instead of x.
        { "so on x", zero, none, Vec3f(2.f, 1.f, 1.f), r, zero, Pnt3f(1.f, 0.f, 0.f), Pnt3f(1.f, 0.f, 0.f) },
        { "so on y", zero, none, Vec3f(2.f, 1.f, 1.f), r, zero, Pnt3f(0.f, 1.f, 0.f), Pnt3f(0.f, 2.f, 0.f) },
        // With a centre the rotation turns about that point.
        { "centre", zero, r, one, none, Vec3f(5.f, 0.f, 0.f), Pnt3f(5.f, 0.f, 0.f), Pnt3f(5.f, 0.f, 0.f) },
        { "off centre", zero, r, one, none, Vec3f(5.f, 0.f, 0.f), Pnt3f(6.f, 0.f, 0.f), Pnt3f(5.f, 1.f, 0.f) },
    };
    for(const auto &c : cases)
    {
        Matrix m;
        m.setTransform(c.t, c.r, c.s, c.so, c.c);
        Pnt3f got;
        m.multMatrixPnt(c.p, got);
        EXPECT_TRUE(got.equals(c.expected, 1e-5f)) << c.what << ": " << got;
    }
}

TEST(Matrix, GetTransformRecoversItsParts)
{
    const struct { Vec3f t; Vec3f axis; float angle; Vec3f s; Vec3f soAxis; float soAngle; } cases[] = {
        { Vec3f(0, 0, 0),   Vec3f(0, 1, 0), 0.f,  Vec3f(1, 1, 1),       Vec3f(1, 0, 0), 0.f  },
        { Vec3f(3, -4, 5),  Vec3f(1, 1, 0), 1.1f, Vec3f(1, 1, 1),       Vec3f(1, 0, 0), 0.f  },
        { Vec3f(-1, 2, 0),  Vec3f(0, 0, 1), 2.5f, Vec3f(2, 0.5f, 3),    Vec3f(1, 0, 0), 0.f  },
        { Vec3f(10, 0, -7), Vec3f(1, 2, 3), 0.4f, Vec3f(1.5f, 4, 0.25f), Vec3f(0, 1, 1), 0.9f },
        // A mirror: the rotation stays proper, the sign goes into the scale.
        { Vec3f(1, 1, 1),   Vec3f(0, 1, 0), 0.7f, Vec3f(-1, 2, 1),      Vec3f(1, 0, 0), 0.f  },
    };
    int index = 0;
    for(const auto &c : cases)
    {
        SCOPED_TRACE(index++);
        const Quaternion r (c.axis,   c.angle);
        const Quaternion so(c.soAxis, c.soAngle);
        Matrix m;
        m.setTransform(c.t, r, c.s, so);

        Vec3f t, s;
        Quaternion gotR, gotSo;
        m.getTransform(t, gotR, s, gotSo);
        EXPECT_TRUE(t.equals(c.t, 1e-5f));

        // The split is not unique; rebuilding must give the same matrix.
        Matrix rebuilt;
        rebuilt.setTransform(t, gotR, s, gotSo);
        EXPECT_TRUE(rebuilt.equals(m, 1e-4f)) << m << rebuilt;

        Matrix rm;
        gotR.getValue(rm);
        EXPECT_NEAR(rm.det3(), 1.f, 1e-5);

        if(c.soAngle == 0.f && c.s[0] > 0.f)
        {
            // Scale along the axes: rotation and factors come back as given.
            M4 expected;
            rotationRows(expected, c.axis[0], c.axis[1], c.axis[2], c.angle == 0.f ? 0.0 : c.angle);
            expectRowsNear(rm, expected, 1e-5);
            for(int i = 0; i < 3; ++i)
                EXPECT_NEAR(s[i], c.s[i], 1e-5);
        }
    }
}

TEST(Quaternion, AxisAngleMatchesRodrigues)
{
    const struct { double x, y, z, angle; } cases[] = {
        { 1, 0, 0, 0.5 }, { 0, 1, 0, -1.2 }, { 0, 0, 1, Pi },
        { 1, 1, 1, 2.0 }, { 3, -1, 2, 3.0 }, { 0, 1, 0, Pi },   // half turns take the non-trace branch
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.angle);
        const Quaternion q(Vec3f(c.x, c.y, c.z), Real32(c.angle));
        M4 expected;
        rotationRows(expected, c.x, c.y, c.z, c.angle);

        Matrix m;
        q.getValue(m);
        expectRowsNear(m, expected, 1e-5);

        // And back: same rotation, quaternion up to sign.
        const Quaternion back(fromRows(expected));
        const float sign = back.w() * q.w() + back.x() * q.x() +
                           back.y() * q.y() + back.z() * q.z() < 0 ? -1.f : 1.f;
        for(int i = 0; i < 4; ++i)
            EXPECT_NEAR(back.getValues()[i] * sign, q.getValues()[i], 1e-5);
    }

    EXPECT_EQ(Quaternion(Vec3f(0.f, 0.f, 0.f), 1.f), Quaternion::identity());
}

TEST(Quaternion, MultAppliesTheOtherRotationFirst)
{
    const Quaternion a(Vec3f(0.f, 0.f, 1.f), Pi / 2);
    const Quaternion b(Vec3f(1.f, 0.f, 0.f), Pi / 2);

    Quaternion ab(a);
    ab.mult(b);
    Vec3f v;
    ab.multVec(Vec3f(0.f, 1.f, 0.f), v);
    // b: y -> z, then a leaves z alone.
    EXPECT_TRUE(v.equals(Vec3f(0.f, 0.f, 1.f), 1e-6f)) << v;

    Quaternion ba(a);
    ba.multLeft(b);
    ba.multVec(Vec3f(0.f, 1.f, 0.f), v);
    // a: y -> -x, then b leaves x alone.
    EXPECT_TRUE(v.equals(Vec3f(-1.f, 0.f, 0.f), 1e-6f)) << v;

    const Quaternion fromTo(Vec3f(1.f, 2.f, 0.f), Vec3f(0.f, -1.f, 3.f));
    fromTo.multVec(Vec3f(1.f, 2.f, 0.f), v);
    Vec3f expected(0.f, -1.f, 3.f);
    expected *= std::sqrt(5.f / 10.f);
    EXPECT_TRUE(v.equals(expected, 1e-5f)) << v;
}

TEST(Quaternion, SlerpFollowsTheShorterArcAtConstantSpeed)
{
    const Vec3f axis(1.f, 2.f, -2.f);
    const Real32 theta = 1.6f;
    const Quaternion end(axis, theta);
    Quaternion flipped(end);
    for(int i = 0; i < 4; ++i)
        flipped[i] = -flipped[i];        // same rotation, other hemisphere

    const struct { Quaternion to; float t; float angle; } cases[] = {
        { end,     0.5f,  theta / 2 },
        { end,     0.25f, theta / 4 },
        { flipped, 0.5f,  theta / 2 },
        { end,     2.0f,  theta * 2 },   // extrapolates
        { end,     0.f,   0.f       },
    };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.t);
        Quaternion member;
        member.slerpThis(Quaternion::identity(), c.to, c.t);
        M4 expected;
        rotationRows(expected, axis[0], axis[1], axis[2], c.angle);
        for(const Quaternion &got : { Quaternion::slerp(Quaternion::identity(), c.to, c.t), member })
        {
            Matrix m;
            got.getValue(m);
            expectRowsNear(m, expected, 1e-5);
        }
    }

    // Nearly equal inputs fall back to linear blending without NaNs.
    const Quaternion q(axis, 1e-5f);
    const Quaternion halfway = Quaternion::slerp(Quaternion::identity(), q, 0.5f);
    EXPECT_FALSE(std::isnan(halfway.w()));
    EXPECT_NEAR(halfway.length(), 1.f, 1e-6);
}

TEST(MatrixUtility, FrustumAndOrthogonalMatchTheGlFormulas)
{
    const struct { double l, r, b, t, n, f; } cases[] = {
        { -1, 1, -1, 1, 1, 100 }, { -0.3, 0.7, -0.2, 0.5, 0.5, 20 }, { 2, 5, -4, -1, 3, 4 },
    };
    for(const auto &c : cases)
    {
        Matrix m;
        EXPECT_FALSE(MatrixFrustum(m, c.l, c.r, c.b, c.t, c.n, c.f));
        M4 expected;
        testsupport::frustumRows(expected, c.l, c.r, c.b, c.t, c.n, c.f);
        expectRowsNear(m, expected, 1e-5);

        EXPECT_FALSE(MatrixOrthogonal(m, c.l, c.r, c.b, c.t, c.n, c.f));
        testsupport::orthoRows(expected, c.l, c.r, c.b, c.t, c.n, c.f);
        expectRowsNear(m, expected, 1e-5);
    }
}

TEST(MatrixUtility, PerspectiveTakesTheHalfAngle)
{
    const struct { double halfFovy, aspect, n, f; } cases[] = {
        { Pi / 4, 1, 1, 10 }, { 0.3, 1.5, 0.1, 1000 }, { 1.2, 0.5, 2, 3 },
    };
    for(const auto &c : cases)
    {
        Matrix m;
        EXPECT_FALSE(MatrixPerspective(m, c.halfFovy, c.aspect, c.n, c.f));
        const double top = c.n * std::tan(c.halfFovy), right = top * c.aspect;
        M4 expected;
        testsupport::frustumRows(expected, -right, right, -top, top, c.n, c.f);
        expectRowsNear(m, expected, 1e-4);
    }

    const struct { float fovy, aspect, n, f; } failing[] = {
        { 0.5f, 1.f, 10.f, 1.f },    // near beyond far
        { 0.f,  1.f, 1.f, 10.f },    // no angle
        { 0.5f, 1.f, 5.f, 5.f },     // no depth
        { 0.5f, 0.f, 1.f, 10.f },    // no width
    };
    for(const auto &c : failing)
    {
        Matrix m(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2);
        EXPECT_TRUE(MatrixPerspective(m, c.fovy, c.aspect, c.n, c.f));
        EXPECT_EQ(m, Matrix::identity());
    }
}

TEST(MatrixUtility, LookAtGivesTheCameraToWorldMatrix)
{
    const struct { Pnt3f from, at; Vec3f up; Vec3f right, newUp, back; } cases[] = {
        { Pnt3f(1, 2, 3), Pnt3f(1, 2, -7), Vec3f(0, 1, 0),
          Vec3f(1, 0, 0), Vec3f(0, 1, 0), Vec3f(0, 0, 1) },
        { Pnt3f(0, 0, 0), Pnt3f(4, 0, 0), Vec3f(0, 3, 0),
          Vec3f(0, 0, 1), Vec3f(0, 1, 0), Vec3f(-1, 0, 0) },
        // Up not perpendicular to the view: it is made so.
        { Pnt3f(0, 5, 0), Pnt3f(0, 0, 0), Vec3f(0, 1, -1),
          Vec3f(1, 0, 0), Vec3f(0, 0, -1), Vec3f(0, 1, 0) },
    };
    for(const auto &c : cases)
    {
        Matrix m;
        EXPECT_FALSE(MatrixLookAt(m, c.from, c.at, c.up));
        const M4 expected = { { c.right[0], c.newUp[0], c.back[0], c.from[0] },
                              { c.right[1], c.newUp[1], c.back[1], c.from[1] },
                              { c.right[2], c.newUp[2], c.back[2], c.from[2] },
                              { 0, 0, 0, 1 } };
        expectRowsNear(m, expected, 1e-6);
    }

    Matrix m;
    EXPECT_TRUE(MatrixLookAt(m, 0, 0, 0, 0, 5, 0, 0, 1, 0));
    EXPECT_EQ(m, Matrix::identity());
}

TEST(MatrixUtility, StereoEyesMeetOnTheZeroParallaxPlane)
{
    const float fovy = 1.f, aspect = 1.5f, n = 1.f, f = 50.f, zp = 10.f, eyes = 0.6f;

    for(const float which : { 0.f, 1.f })
    {
        Matrix proj, trans;
        EXPECT_FALSE(MatrixStereoPerspective(proj, trans, fovy, aspect, n, f, zp, eyes, which, 1.f));

        // The point on the zero-parallax plane straight ahead of the centre
        // projects to the image centre for either eye.
        Pnt3f p(0.f, 0.f, -zp);
        trans.multMatrixPnt(p);
        proj.multFullMatrixPnt(p);
        EXPECT_NEAR(p[0], 0.f, 1e-6);
        EXPECT_NEAR(trans[3][0], -(which - 0.5f) * eyes, 1e-6);
    }
}

TEST(Matrix, Inverse3AndTransposeWorkOnTheirBlocks)
{
    const M4 rows = { { 2, 1, 0, 7 }, { 0, 3, 1, 8 }, { 1, 0, 4, 9 }, { 1, 2, 3, 4 } };
    const Matrix m = fromRows(rows);

    Matrix inv3;
    ASSERT_TRUE(m.inverse3(inv3));
    M4 invRows;
    toRows(inv3, invRows);
    for(int r = 0; r < 3; ++r)
        for(int c = 0; c < 3; ++c)
        {
            double sum = 0;
            for(int k = 0; k < 3; ++k)
                sum += rows[r][k] * invRows[k][c];
            EXPECT_NEAR(sum, r == c ? 1.0 : 0.0, 1e-6) << r << c;
        }
    // Outside the 3x3 block the result is the identity.
    EXPECT_EQ(inv3[3], Vec4f(0.f, 0.f, 0.f, 1.f));
    EXPECT_EQ(inv3[0][3], 0.f);

    Matrix t(m);
    t.transpose();
    for(int r = 0; r < 4; ++r)
        for(int c = 0; c < 4; ++c)
            EXPECT_EQ(t[c][r], rows[c][r]);
}

TEST(BaseMathFunctions, IntegerArgumentsComputeInReal32)
{
    struct Case { const char *name; Real32 got; double expected; };
    const Case cases[] = {
        { "deg2rad(60)",       deg2rad(60),             std::acos(-1.0) / 3.0 },
        { "osgdegree2rad(90)", osgdegree2rad(90),       std::acos(-1.0) / 2.0 },
        { "rad2deg(1)",        rad2deg(1),              180.0 / std::acos(-1.0) },
        { "osgrad2degree(2)",  osgrad2degree(2),        360.0 / std::acos(-1.0) },
        { "osgsqrt(2)",        osgsqrt(2),              std::sqrt(2.0) },
        { "osgsin(1)",         osgsin(1),               std::sin(1.0) },
        { "osgcos(1)",         osgcos(1),               std::cos(1.0) },
        { "osgtan(1)",         osgtan(1),               std::tan(1.0) },
        { "osgatan2(1, 2)",    osgatan2(1, 2),          std::atan2(1.0, 2.0) },
        { "osgpow(2, -1)",     osgpow(2, -1),           0.5 },
        { "osgexp(1)",         osgexp(1),               std::exp(1.0) },
        { "osgsqrt(UInt8 3)",  osgsqrt(UInt8(3)),       std::sqrt(3.0) },
    };
    // Real32 rounding of the results.
    for(const Case &c : cases)
        EXPECT_NEAR(c.got, c.expected, 1e-6 * std::fabs(c.expected) + 1e-7) << c.name;

    EXPECT_TRUE((std::is_same<decltype(deg2rad(60)),      Real32>::value));
    EXPECT_TRUE((std::is_same<decltype(osgsqrt(Int64(4))), Real32>::value));
    EXPECT_TRUE((std::is_same<decltype(osgcos(1.0f)),     Real32>::value));
    EXPECT_TRUE((std::is_same<decltype(deg2rad(60.0)),    Real64>::value));
    EXPECT_TRUE((std::is_same<decltype(osgabs(-3)),       int>::value));
}
