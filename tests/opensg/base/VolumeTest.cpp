#include <OpenSG/OSGVolumeFunctions.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGPlane.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGMatrixUtility.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace osg;

namespace
{

// Camera at (0, 0, 5) looking down -z, 90 degrees both ways, near 1, far 11:
// the frustum spans z in [-6, 4] and |x|, |y| <= 5 - z.
FrustumVolume cameraFrustum(void)
{
    Matrix beacon, view, proj;
    MatrixLookAt(beacon, 0, 0, 5, 0, 0, 0, 0, 1, 0);
    beacon.inverse(view);
    MatrixPerspective(proj, Pi / 4, 1.f, 1.f, 11.f);

    proj.mult(view);
    FrustumVolume frustum;
    frustum.setPlanes(proj);
    return frustum;
}

const Real32 s = 1.f / std::sqrt(2.f);

template <class V> SphereVolume extended(SphereVolume sphere, const V &by) { extend(sphere, by); return sphere; }
SphereVolume extendedBy(SphereVolume sphere, const Pnt3f &p) { sphere.extendBy(p); return sphere; }
DynamicVolume dynamicSphere(const Pnt3f &center, const Pnt3f &onSurface)
{
    DynamicVolume v(DynamicVolume::SPHERE_VOLUME);
    v.extendBy(center);
    v.extendBy(onSurface);
    return v;
}

} // namespace

TEST(Volume, StateFlagsFollowTheirRules)
{
    BoxVolume box;
    EXPECT_TRUE (box.isValid());
    EXPECT_TRUE (box.isEmpty());
    EXPECT_FALSE(box.isUntouchable()) << "being empty alone keeps nothing still";
    Pnt3f center(5, 5, 5);
    box.getCenter(center);
    EXPECT_EQ(center, Pnt3f(0, 0, 0)) << "an empty box's centre is the origin";

    box.setInfinite();
    EXPECT_FALSE(box.isEmpty());
    EXPECT_TRUE (box.isValid());
    EXPECT_TRUE (box.isUntouchable());

    box.setEmpty();
    EXPECT_FALSE(box.isInfinite());

    box.setStatic();
    box.setValid(false);              // ignored while static
    EXPECT_TRUE(box.isValid());
    box.extendBy(Pnt3f(1, 1, 1));
    EXPECT_TRUE(box.isEmpty()) << "a static box does not grow";

    BoxVolume plain(0, 0, 0, 1, 1, 1);
    EXPECT_FALSE(plain.isUntouchable());
}

TEST(BoxVolume, IntersectsOtherBoxesOnlyWhenOverlapping)
{
    const BoxVolume unit(0, 0, 0, 1, 1, 1);
    const struct { BoxVolume other; bool hit; } cases[] = {
        { BoxVolume(0.5f, 0.5f, 0.5f, 2, 2, 2), true  },
        { BoxVolume(1, 0, 0, 2, 1, 1),          true  },   // shared face
        { BoxVolume(0.2f, 0.2f, 0.2f, 0.3f, 0.3f, 0.3f), true },
        { BoxVolume(1.1f, 0, 0, 2, 1, 1),       false },
        { BoxVolume(0, -3, 0, 1, -0.01f, 1),    false },
        { BoxVolume(),                          false },   // empty
    };
    for(const auto &c : cases)
    {
        EXPECT_EQ(intersect(unit, c.other), c.hit) << c.other.getMin() << " " << c.other.getMax();
        EXPECT_EQ(unit.intersect(static_cast<const Volume &>(c.other)), c.hit);
    }
}

TEST(BoxVolume, ExtendAndTransformKeepEverythingInside)
{
    BoxVolume box;
    box.extendBy(Pnt3f(1, 2, 3));
    EXPECT_FALSE(box.isEmpty());
    EXPECT_EQ(box.getMin(), Pnt3f(1, 2, 3));
    EXPECT_EQ(box.getMax(), Pnt3f(1, 2, 3));

    box.extendBy(Pnt3f(-1, 5, 0));
    extend(box, SphereVolume(Pnt3f(0, 0, 10), 1.f));
    EXPECT_EQ(box.getMin(), Pnt3f(-1, -1, 0));
    EXPECT_EQ(box.getMax(), Pnt3f(1, 5, 11));

    // An eighth turn about z widens the unit box to half-diagonal sqrt(2)/2.
    BoxVolume unit(-0.5f, -0.5f, -0.5f, 0.5f, 0.5f, 0.5f);
    Matrix rot;
    rot.setTransform(Quaternion(Vec3f(0, 0, 1), Pi / 4));
    rot.setTranslate(10, 0, 0);
    unit.transform(rot);
    EXPECT_TRUE(unit.getMin().equals(Pnt3f(10 - s, -s, -0.5f), 1e-5f)) << unit.getMin();
    EXPECT_TRUE(unit.getMax().equals(Pnt3f(10 + s,  s,  0.5f), 1e-5f)) << unit.getMax();

    BoxVolume infinite;
    infinite.setInfinite();
    extend(box, infinite);
    EXPECT_TRUE(box.isInfinite());
}

// Every kind against every other, through the typed and the generic calls.
TEST(Volume, PairsIntersectAsTheirShapesDo)
{
    const FrustumVolume frustum = cameraFrustum();
    const BoxVolume unit(-1, -1, -1, 1, 1, 1), beside(3, -1, -1, 5, 1, 1), farAway(30, 30, 30, 31, 31, 31);
    const SphereVolume ball(Pnt3f(0, 0, 0), 1.f), touching(Pnt3f(2, 0, 0), 1.f),
                       overlapping(Pnt3f(2, 0, 0), 1.5f), behindTheEye(Pnt3f(0, 0, 30), 2.f);
    DynamicVolume dynamic;
    dynamic.extendBy(Pnt3f(2.9f, 0, 0));
    dynamic.extendBy(Pnt3f(3.1f, 0.2f, 0.2f));
    const struct { const char *what; const Volume &a, &b; bool hit; } cases[] = {
        { "box, box apart",                   unit,    beside,                             false },
        { "box, sphere inside",               unit,    ball,                               true  },
        { "box, touching sphere",             unit,    touching,                           true  },
        { "box, corner beyond the radius",    ball,    BoxVolume(0.75f, 0.75f, -1, 2, 2, 1), false },
        { "box, corner within the radius",    ball,    BoxVolume(0.7f, 0.7f, -1, 2, 2, 1),   true  },
        { "box, sphere reaching in",          beside,  overlapping,                        true  },
        { "touching spheres do not",          ball,    touching,                           false },
        { "overlapping spheres",              ball,    overlapping,                        true  },
        { "empty sphere",                     ball,    SphereVolume(),                     false },
        { "frustum, box far away",            frustum, farAway,                            false },
        { "frustum, sphere at the centre",    frustum, ball,                               true  },
        { "frustum, sphere behind the eye",   frustum, behindTheEye,                       false },
        { "dynamic, box it reaches into",     dynamic, beside,                             true  },
        { "dynamic, box it misses",           dynamic, unit,                               false },
        { "dynamic, sphere within its reach", dynamic, touching,                           true  },
    };
    for(const auto &c : cases)
    {
        EXPECT_EQ(intersect(c.a, c.b), c.hit) << c.what;
        EXPECT_EQ(intersect(c.b, c.a), c.hit) << c.what << ", swapped";
        EXPECT_EQ(c.a.intersect(c.b),  c.hit) << c.what << ", member";
    }
    testsupport::LogCapture log;
    EXPECT_FALSE(intersect(frustum, frustum));
    EXPECT_TRUE(log.contains("intersect (frustum/frustum) is not impl."));
}

// Spheres grow to the sphere around both bounding boxes; a point only
// widens the radius.
TEST(SphereVolume, ExtendCircumscribesBothBoundingBoxes)
{
    const struct { const char *what; SphereVolume grown; Pnt3f center; Real32 radius; } cases[] = {
        // [-1, 6] x [-2, 2] x [-2, 2]
        { "by a sphere",          extended(SphereVolume(Pnt3f(0, 0, 0), 1.f), SphereVolume(Pnt3f(4, 0, 0), 2.f)),
          Pnt3f(2.5f, 0, 0), 4.5f },
        // [-5, 5]^3, though the other already lay inside
        { "by a sphere inside",   extended(SphereVolume(Pnt3f(0, 0, 0), 5.f), SphereVolume(Pnt3f(1, 0, 0), 1.f)),
          Pnt3f(0, 0, 0), 5.f * std::sqrt(3.f) },
        // [-1, 3] x [-1, 1] x [-1, 1]
        { "by a box",             extended(SphereVolume(Pnt3f(0, 0, 0), 1.f), BoxVolume(0, 0, 0, 3, 1, 1)),
          Pnt3f(1, 0, 0), std::sqrt(6.f) },
        // the same sphere, grown from a point with its centre kept
        { "by a dynamic sphere",  extended(SphereVolume(Pnt3f(0, 0, 0), 1.f), dynamicSphere(Pnt3f(4, 0, 0), Pnt3f(4, 2, 0))),
          Pnt3f(2.5f, 0, 0), 4.5f },
        { "empty, by a box",      extended(SphereVolume(), BoxVolume(0, 0, 0, 2, 2, 2)),
          Pnt3f(1, 1, 1), std::sqrt(3.f) },
        { "by a point",           extendedBy(SphereVolume(Pnt3f(0, 0, 0), 1.f), Pnt3f(3, 0, 0)),
          Pnt3f(0, 0, 0), 3.f },
        { "by a point inside",    extendedBy(SphereVolume(Pnt3f(0, 0, 0), 1.f), Pnt3f(0.5f, 0, 0)),
          Pnt3f(0, 0, 0), 1.f },
    };
    for(const auto &c : cases)
    {
        EXPECT_TRUE(c.grown.getCenter().equals(c.center, 1e-5f)) << c.what << ": " << c.grown.getCenter();
        EXPECT_NEAR(c.grown.getRadius(), c.radius, 1e-5f) << c.what;
    }
}

// Frusta neither grow nor make others grow, and a plain Volume has no extend.
TEST(Volume, ExtendsInvolvingAFrustumOrAPlainVolumeOnlySaySo)
{
    FrustumVolume frustum = cameraFrustum();
    BoxVolume box(-1, -1, -1, 1, 1, 1);
    SphereVolume sphere(Pnt3f(0, 0, 0), 1.f);
    DynamicVolume dynamic;
    testsupport::LogCapture log;
    extend(box, frustum);
    extend(sphere, frustum);
    extend(frustum, box);
    extend(static_cast<Volume &>(dynamic), box);
    for(const char *message : { "extend (box/frustum) is not impl.", "extend (sphere/frustum) is not impl.",
                                "extend (frustum/box) is not impl.", "extend (frustum/volume) is not impl." })
        EXPECT_TRUE(log.contains(message)) << message;
    EXPECT_EQ(box.getMax(), Pnt3f(1, 1, 1));
    EXPECT_FLOAT_EQ(sphere.getRadius(), 1.f);
    EXPECT_TRUE(dynamic.isEmpty());
    EXPECT_EQ(frustum.getPlanes()[0].getDistanceFromOrigin(), cameraFrustum().getPlanes()[0].getDistanceFromOrigin());

    dynamic.extendBy(box);
    EXPECT_EQ(dynamic.getMax(), Pnt3f(1, 1, 1)) << "a dynamic volume extends through extendBy";
}

// Planes from projection times view, or from the eight corners: the same
// planes, pointing inwards.
TEST(FrustumVolume, PlanesFromMatrixOrCornersPointInwards)
{
    const FrustumVolume frustum = cameraFrustum();
    FrustumVolume fromCorners;
    // nlt nlb nrt nrb flt flb frt frb; near half-size 1, far half-size 11.
    fromCorners.setPlanes(Pnt3f(-1, 1, 4),   Pnt3f(-1, -1, 4),   Pnt3f(1, 1, 4),   Pnt3f(1, -1, 4),
                          Pnt3f(-11, 11, -6), Pnt3f(-11, -11, -6), Pnt3f(11, 11, -6), Pnt3f(11, -11, -6));
    // Side planes pass through the eye (0, 0, 5): d = n . eye.
    const struct { const char *name; Vec3f n; Real32 d; } expected[] = {
        { "near",   Vec3f( 0,  0, -1),  -4.f      },
        { "far",    Vec3f( 0,  0,  1),  -6.f      },
        { "left",   Vec3f( s,  0, -s),  -5.f * s  },
        { "right",  Vec3f(-s,  0, -s),  -5.f * s  },
        { "top",    Vec3f( 0, -s, -s),  -5.f * s  },
        { "bottom", Vec3f( 0,  s, -s),  -5.f * s  },
    };
    const FrustumVolume *const both[] = { &frustum, &fromCorners };
    for(int i = 0; i < 6; ++i)
        for(const FrustumVolume *f : both)
        {
            SCOPED_TRACE(std::string(expected[i].name) + (f == &frustum ? " from matrix" : " from corners"));
            const Plane &p = f->getPlanes()[i];
            EXPECT_TRUE(p.getNormal().equals(expected[i].n, 1e-5f)) << p.getNormal();
            EXPECT_NEAR(p.getDistanceFromOrigin(), expected[i].d, 1e-4);
        }
    EXPECT_EQ(&frustum.getNear(),   &frustum.getPlanes()[0]);
    EXPECT_EQ(&frustum.getBottom(), &frustum.getPlanes()[5]);

    EXPECT_TRUE (frustum.intersect(Pnt3f(0, 0, 0)));
    EXPECT_TRUE (frustum.intersect(Pnt3f(9.9f, 0, -5)));
    EXPECT_FALSE(frustum.intersect(Pnt3f(0, 0, 4.5f)));
    EXPECT_FALSE(frustum.intersect(Pnt3f(0, 10.1f, -5)));
    testsupport::LogCapture log;
    EXPECT_FALSE(frustum.isOnSurface(Pnt3f(0, 0, 4)));       // not implemented: warns
    EXPECT_TRUE(log.contains("FrustumVolume::isOnSurface"));
    // Two square pyramids' difference: (11^2 * 4 * 11 - 1^2 * 4 * 1) / 3.
    EXPECT_NEAR(frustum.getScalarVolume(), (484.f * 11.f - 4.f) / 3.f, 0.1f);
}

TEST(FrustumVolume, BoxTestIsConservative)
{
    const FrustumVolume frustum = cameraFrustum();
    const struct { const char *what; BoxVolume box; bool hit; } cases[] = {
        { "inside",            BoxVolume(-1, -1, -1, 1, 1, 1),             true  },
        { "straddles near",    BoxVolume(-0.4f, -0.4f, 3, 0.4f, 0.4f, 4.5f), true  },
        { "behind the eye",    BoxVolume(-1, -1, 6, 1, 1, 8),             false },
        { "beyond far",        BoxVolume(-1, -1, -9, 1, 1, -7),           false },
        { "left of the view",  BoxVolume(-20, -1, -1, -7, 1, 1),          false },
        { "above the view",    BoxVolume(-1, 12, -6, 1, 14, -5),          false },
        // Outside, but not wholly outside any single plane: reported.
        { "past the far edge", BoxVolume(11.5f, -0.1f, -7, 13, 0.1f, -5.5f), true },
    };
    for(const auto &c : cases)
    {
        EXPECT_EQ(intersect(c.box, frustum), c.hit) << c.what;
        EXPECT_EQ(intersect(frustum, c.box), c.hit) << c.what;
    }
}

TEST(FrustumVolume, PlaneSetCollectsThePlanesAVolumeIsInside)
{
    const FrustumVolume frustum = cameraFrustum();
    const struct { const char *what; BoxVolume box; bool hit; UInt8 inside; } cases[] = {
        { "centre",         BoxVolume(-1, -1, -1, 1, 1, 1),             true,  FrustumVolume::P_ALL },
        { "straddles near", BoxVolume(-0.4f, -0.4f, 3, 0.4f, 0.4f, 4.5f), true,
          FrustumVolume::P_ALL & ~FrustumVolume::P_NEAR },
        { "straddles left", BoxVolume(-8, -1, -1, -5, 1, 1),           true,
          FrustumVolume::P_ALL & ~FrustumVolume::P_LEFT },
        { "beyond far",     BoxVolume(-1, -1, -9, 1, 1, -7),           false, FrustumVolume::P_NONE },
    };
    for(const auto &c : cases)
    {
        FrustumVolume::PlaneSet inplanes = FrustumVolume::P_NONE;
        EXPECT_EQ(intersect(frustum, c.box, inplanes), c.hit) << c.what;
        if(c.hit)
        {
            EXPECT_EQ(inplanes, c.inside) << c.what;
        }
    }

    // Planes already known to contain the parent are not tested again.
    FrustumVolume::PlaneSet inplanes = FrustumVolume::P_FAR;
    EXPECT_TRUE(intersect(frustum, BoxVolume(-1, -1, -9, 1, 1, -7), inplanes));
}

TEST(Line, BoxAndTriangleIntersections)
{
    const BoxVolume box(-1, -1, -1, 1, 1, 1);
    const struct { Pnt3f pos; Vec3f dir; bool hit; Real32 enter, exit; } cases[] = {
        { Pnt3f(-5, 0, 0),    Vec3f(2, 0, 0),  true,  4.f, 6.f },
        { Pnt3f(0, 0, 0),     Vec3f(0, 1, 0),  true,  0.f, 1.f },   // a ray: it enters where it starts
        { Pnt3f(-5, -5, 0),   Vec3f(1, 1, 0),  true,  4.f * std::sqrt(2.f), 6.f * std::sqrt(2.f) },
        { Pnt3f(-5, 1.5f, 0), Vec3f(1, 0, 0),  false, 0.f, 0.f },
        { Pnt3f(5, 0, 0),     Vec3f(1, 0, 0),  false, 0.f, 0.f },   // box behind the ray
    };
    for(const auto &c : cases)
    {
        Real32 enter, exit;
        const Line line(c.pos, c.dir);
        ASSERT_EQ(line.intersect(box, enter, exit), c.hit) << c.pos;
        if(c.hit)
        {
            EXPECT_NEAR(enter, c.enter, 1e-5) << c.pos;
            EXPECT_NEAR(exit,  c.exit,  1e-5) << c.pos;
        }
    }

    Real32 t;
    Vec3f  normal;
    const Line down(Pnt3f(0.25f, 0.25f, 3), Vec3f(0, 0, -1));
    EXPECT_TRUE(down.intersect(Pnt3f(0, 0, 1), Pnt3f(1, 0, 1), Pnt3f(0, 1, 1), t, &normal));
    EXPECT_FLOAT_EQ(t, 2.f);
    EXPECT_EQ(normal, Vec3f(0, 0, 1));
    EXPECT_FALSE(Line(Pnt3f(0.75f, 0.75f, 3), Vec3f(0, 0, -1))
                 .intersect(Pnt3f(0, 0, 1), Pnt3f(1, 0, 1), Pnt3f(0, 1, 1), t));

    Real32 enter, exit;
    EXPECT_TRUE(Line(Pnt3f(0, 0, 10), Vec3f(0, 0, -1)).intersect(cameraFrustum(), enter, exit));
    EXPECT_NEAR(enter, 6.f, 1e-4);     // enters through near at z = 4
    EXPECT_NEAR(exit, 16.f, 1e-4);     // leaves through far at z = -6
}

TEST(Plane, IntersectionsTransformAndClip)
{
    const Plane xy(Vec3f(0, 0, 2), 3.f);          // z = 3, normal made unit
    EXPECT_EQ(xy.getNormal(), Vec3f(0, 0, 1));
    EXPECT_FLOAT_EQ(xy.distance(Pnt3f(5, 5, 1)), -2.f);

    Pnt3f hit;
    EXPECT_TRUE(xy.intersect(Line(Pnt3f(1, 1, 0), Vec3f(0, 1, 1)), hit));
    EXPECT_TRUE(hit.equals(Pnt3f(1, 4, 3), 1e-5f)) << hit;

    Line edge;
    const Plane slanted(Vec3f(1, 0, 1), Pnt3f(0, 0, 0));
    ASSERT_TRUE(xy.intersect(slanted, edge));
    // Every point of the line lies on both planes.
    for(Real32 k : { -3.f, 0.f, 7.f })
    {
        const Pnt3f p = edge.getPosition() + edge.getDirection() * k;
        EXPECT_NEAR(xy.distance(p), 0.f, 1e-5);
        EXPECT_NEAR(slanted.distance(p), 0.f, 1e-5);
    }

    // As 1.8: the normal turns with the matrix, and the distance moves by
    // minus the translation along the new normal.
    Plane moved(xy);
    Matrix m;
    m.setTransform(Vec3f(2, 5, 0), Quaternion(Vec3f(0, 1, 0), Pi / 2));
    moved.transform(m);
    EXPECT_TRUE(moved.getNormal().equals(Vec3f(1, 0, 0), 1e-5f)) << moved.getNormal();
    EXPECT_NEAR(moved.getDistanceFromOrigin(), 3.f - 2.f, 1e-5);

    // Keep x >= 0 of the square [-1, 1]^2.
    Pnt3f square[] = { Pnt3f(-1, -1, 0), Pnt3f(1, -1, 0), Pnt3f(1, 1, 0), Pnt3f(-1, 1, 0) };
    Pnt3f out[5];
    const int n = Plane(Vec3f(1, 0, 0), 0.f).clip(square, out, 4);
    ASSERT_EQ(n, 4);
    const Pnt3f expected[] = { Pnt3f(0, -1, 0), Pnt3f(1, -1, 0), Pnt3f(1, 1, 0), Pnt3f(0, 1, 0) };
    for(int i = 0; i < 4; ++i)
        EXPECT_EQ(out[i], expected[i]) << i;

    EXPECT_TRUE (xy.isInHalfSpace (Pnt3f(0, 0, 3), Pnt3f(1, 1, 4)));
    EXPECT_FALSE(xy.isInHalfSpace (Pnt3f(0, 0, 2), Pnt3f(1, 1, 4)));
    EXPECT_TRUE (xy.isOutHalfSpace(Pnt3f(0, 0, 1), Pnt3f(1, 1, 2.9f)));
    EXPECT_FALSE(xy.isOutHalfSpace(Pnt3f(0, 0, 1), Pnt3f(1, 1, 3.1f)));
}

TEST(DynamicVolume, ForwardsToItsInstanceAndMorphs)
{
    DynamicVolume dv;
    EXPECT_EQ(dv.getType(), DynamicVolume::BOX_VOLUME);
    EXPECT_TRUE(dv.isEmpty());

    dv.extendBy(Pnt3f(-1, -2, -2));
    dv.extendBy(Pnt3f(1, 2, 2));
    EXPECT_FALSE(dv.isEmpty());
    EXPECT_EQ(dv.getMax(), Pnt3f(1, 2, 2));

    // Volume references see the instance too.
    Volume &asVolume = dv;
    asVolume.setEmpty();
    EXPECT_TRUE(dv.getInstance().isEmpty());
    dv.extendBy(BoxVolume(-1, -2, -2, 1, 2, 2));
    EXPECT_TRUE(intersect(static_cast<const Volume &>(dv), BoxVolume(0.5f, 0.5f, 0.5f, 3, 3, 3)));

    dv.morphToType(DynamicVolume::SPHERE_VOLUME);
    ASSERT_EQ(dv.getType(), DynamicVolume::SPHERE_VOLUME);
    // As 1.8: the centre is taken as max - min, the radius is half the diagonal.
    const SphereVolume &sphere = static_cast<const SphereVolume &>(dv.getInstance());
    EXPECT_EQ(sphere.getCenter(), Pnt3f(2, 4, 4));
    EXPECT_FLOAT_EQ(sphere.getRadius(), 3.f);

    DynamicVolume copy(dv);
    dv.setVolumeType(DynamicVolume::BOX_VOLUME);
    EXPECT_EQ(copy.getType(), DynamicVolume::SPHERE_VOLUME);
    EXPECT_TRUE(copy.intersect(Pnt3f(2, 4, 6.9f)));
    EXPECT_TRUE(dv.isEmpty());
}

// 1.8's plane rule for each plane: a translation t takes t . n off the distance.
TEST(FrustumVolume, TransformMovesEachPlaneBy18sRule)
{
    const FrustumVolume before = cameraFrustum();
    FrustumVolume frustum = before;
    Matrix shift;
    shift.setTranslate(3, 0, -10);
    frustum.transform(shift);
    const Vec3f t(3, 0, -10);
    for(int i = 0; i < 6; ++i)
    {
        const Plane &was = before.getPlanes()[i], &now = frustum.getPlanes()[i];
        EXPECT_TRUE(now.getNormal().equals(was.getNormal(), 1e-5f)) << i;
        EXPECT_NEAR(now.getDistanceFromOrigin(), was.getDistanceFromOrigin() - t.dot(was.getNormal()), 1e-4) << i;
    }
}

TEST(SphereVolume, TransformScalesByTheLargestAxis)
{
    SphereVolume sphere(Pnt3f(1, 0, 0), 2.f);
    Matrix m;
    m.setTransform(Vec3f(0, 5, 0), Quaternion(Vec3f(0, 0, 1), Pi / 2), Vec3f(1, 3, 0.5f));
    sphere.transform(m);
    // Centre: scale (1, 0, 0), quarter turn to (0, 1, 0), move by (0, 5, 0).
    EXPECT_TRUE(sphere.getCenter().equals(Pnt3f(0, 6, 0), 1e-5f)) << sphere.getCenter();
    EXPECT_FLOAT_EQ(sphere.getRadius(), 6.f);
}
