#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

using namespace osg;

namespace
{

// One corner of a face: position, normal and texcoord indices.
struct Corner
{
    UInt32 pos, tex;
};
typedef std::array<Corner, 3> Triangle;

// Decodes the primitives the way GL assembles them.
std::vector<Triangle> triangles(GeometryPtr geo)
{
    UInt32 nmap   = std::max<UInt32>(1, geo->getIndexMapping().size());
    Int16  texMap = geo->calcMappingIndex(Geometry::MapTexCoords);
    GeoIndicesPtr indices = geo->getIndices();

    auto corner = [&](UInt32 v) {
        Corner c;
        c.pos = indices->getValue(v * nmap);
        c.tex = indices->getValue(v * nmap + (texMap < 0 ? 0 : texMap));
        return c;
    };

    std::vector<Triangle> result;
    UInt32 first = 0;
    for(UInt32 p = 0; p < geo->getTypes()->size(); ++p)
    {
        UInt32 n    = geo->getLengths()->getValue(p);
        UInt32 type = geo->getTypes()->getValue(p);
        for(UInt32 i = 0; i + 2 < n; ++i)
        {
            if(type == GL_TRIANGLES && i % 3 == 0)
                result.push_back({ corner(first + i), corner(first + i + 1), corner(first + i + 2) });
            else if(type == GL_TRIANGLE_STRIP && i % 2 == 0)
                result.push_back({ corner(first + i), corner(first + i + 1), corner(first + i + 2) });
            else if(type == GL_TRIANGLE_STRIP)
                result.push_back({ corner(first + i + 1), corner(first + i), corner(first + i + 2) });
            else if(type == GL_POLYGON)
                result.push_back({ corner(first), corner(first + i + 1), corner(first + i + 2) });
        }
        first += n;
    }
    return result;
}

struct MakerCase
{
    std::string                  name;
    std::function<GeometryPtr()> make;
    UInt32                       positions;
    UInt32                       triangles;
    Pnt3f                        min, max;
    bool                         unitNormals;
    // The point each vertex normal must point away from.
    std::function<Pnt3f(const Pnt3f &)> inner;
};

Pnt3f origin(const Pnt3f &) { return Pnt3f(0, 0, 0); }

// Inner radius 0.25, outer radius 1: the tube's centre line lies in z = 0.
Pnt3f torusTubeCentre(const Pnt3f &p)
{
    Real32 d = std::sqrt(p[0] * p[0] + p[1] * p[1]);
    return Pnt3f(p[0] / d, p[1] / d, 0);
}

std::vector<MakerCase> makerCases()
{
    const UInt32 s = 16;  // sides, a multiple of 4 so that the axes are hit
    return {
        { "plane 2x1, 4x3", [] { return makePlaneGeo(2, 1, 4, 3); },
          5 * 4, 2 * 4 * 3, Pnt3f(-1, -.5f, 0), Pnt3f(1, .5f, 0), true,
          [](const Pnt3f &p) { return Pnt3f(p[0], p[1], -1); } },
        { "box 2x4x6, 1x2x3", [] { return makeBoxGeo(2, 4, 6, 1, 2, 3); },
          2 * (2 * 3 + 4 * 3 + 2 * 4), 2 * 2 * (1 * 2 + 3 * 2 + 1 * 3),
          Pnt3f(-1, -2, -3), Pnt3f(1, 2, 3), true, origin },
        { "cylinder", [=] { return makeCylinderGeo(2, .5f, s, true, true, true); },
          2 * (s + 1) + 2 * s, 2 * s + 2 * (s - 2), Pnt3f(-.5f, -1, -.5f), Pnt3f(.5f, 1, .5f),
          true, origin },
        { "cone", [=] { return makeConeGeo(3, 1, s, true, true); },
          2 * (s + 1) + s, 2 * s + (s - 2), Pnt3f(-1, -1.5f, -1), Pnt3f(1, 1.5f, 1), false, origin },
        { "frustum without side", [=] { return makeConicalFrustumGeo(1, .5f, 1, s, false, true, true); },
          2 * s, 2 * (s - 2), Pnt3f(-1, -.5f, -1), Pnt3f(1, .5f, 1), true, origin },
        { "torus", [=] { return makeTorusGeo(.25f, 1, s, 2 * s); },
          (2 * s + 1) * (s + 1), 2 * 2 * s * s, Pnt3f(-1.25f, -1.25f, -.25f),
          Pnt3f(1.25f, 1.25f, .25f), true, torusTubeCentre },
        { "sphere depth 2", [] { return makeSphereGeo(2, 3); },
          10 * 16 + 2, 20 * 16, Pnt3f(-3, -3, -3), Pnt3f(3, 3, 3), true, origin },
        { "lat-long sphere", [=] { return makeLatLongSphereGeo(8, s, 2); },
          9 * (s + 1), 2 * 8 * s, Pnt3f(-2, -2, -2), Pnt3f(2, 2, 2), true, origin },
    };
}

} // namespace

TEST(SimpleGeometry, MakersBuildTheDescribedShapes)
{
    for(const MakerCase &c : makerCases())
    {
        SCOPED_TRACE(c.name);
        GeometryPtr geo = c.make();
        ASSERT_NE(geo, NullFC);
        NodePtr node = makeNodeFor(geo);
        addRefCP(node);

        GeoPositionsPtr pos = geo->getPositions();
        GeoNormalsPtr   nrm = geo->getNormals();
        ASSERT_NE(geo->getTexCoords(), NullFC);
        EXPECT_EQ(geo->getMaterial(), getDefaultMaterial());
        EXPECT_EQ(pos->size(), c.positions);
        EXPECT_EQ(nrm->size(), c.positions);
        EXPECT_EQ(geo->countTriangles(), c.triangles);

        // The node volume is the positions' bounding box.
        Pnt3f lo, hi;
        node->getVolume(true).getBounds(lo, hi);
        for(UInt32 i = 0; i < 3; ++i)
        {
            EXPECT_NEAR(lo[i], c.min[i], 1e-5f) << "axis " << i;
            EXPECT_NEAR(hi[i], c.max[i], 1e-5f) << "axis " << i;
        }

        for(UInt32 i = 0; i < pos->size(); ++i)
        {
            Vec3f n = nrm->getValue(i);
            if(c.unitNormals)
            {
                EXPECT_NEAR(n.length(), 1.f, 1e-5f) << "vertex " << i;
            }
            EXPECT_GT(n.dot(pos->getValue(i) - c.inner(pos->getValue(i))), 0.f)
                << "vertex " << i;
        }

        // Counter-clockwise from outside: the face normal agrees with the
        // vertex normals, for every face that is not degenerate.
        std::vector<Triangle> tris = triangles(geo);
        UInt32 faces = 0;
        for(const Triangle &t : tris)
        {
            Pnt3f p0 = pos->getValue(t[0].pos), p1 = pos->getValue(t[1].pos),
                  p2 = pos->getValue(t[2].pos);
            Vec3f face = (p1 - p0).cross(p2 - p0);
            if(face.length() < 1e-7f)
                continue;
            ++faces;
            Vec3f n = nrm->getValue(t[0].pos) + nrm->getValue(t[1].pos) +
                      nrm->getValue(t[2].pos);
            EXPECT_GT(face.dot(n), 0.f);
        }
        EXPECT_EQ(tris.size(), c.triangles);
        EXPECT_GT(faces, c.triangles / 2);

        subRefCP(node);
    }
}

TEST(SimpleGeometry, TexCoordsAtKnownVertices)
{
    struct Probe
    {
        std::string                  name;
        std::function<GeometryPtr()> make;
        Pnt3f                        position;
        Vec3f                        normal;
        Vec2f                        texCoord;
    };
    const Probe probes[] =
    {
        { "plane min", [] { return makePlaneGeo(2, 4, 2, 2); }, Pnt3f(-1, -2, 0), Vec3f(0, 0, 1), Vec2f(0, 0) },
        { "plane max", [] { return makePlaneGeo(2, 4, 2, 2); }, Pnt3f( 1,  2, 0), Vec3f(0, 0, 1), Vec2f(1, 1) },
        { "box +Z",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f(-1, -1,  1), Vec3f( 0,  0,  1), Vec2f(0, 0) },
        { "box -Z",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f( 1, -1, -1), Vec3f( 0,  0, -1), Vec2f(0, 0) },
        { "box +X",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f( 1, -1,  1), Vec3f( 1,  0,  0), Vec2f(0, 0) },
        { "box -X",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f(-1, -1, -1), Vec3f(-1,  0,  0), Vec2f(0, 0) },
        { "box +Y",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f(-1,  1,  1), Vec3f( 0,  1,  0), Vec2f(0, 0) },
        { "box -Y",    [] { return makeBoxGeo(2, 2, 2, 1, 1, 1); }, Pnt3f(-1, -1, -1), Vec3f( 0, -1,  0), Vec2f(0, 0) },
        { "cylinder side start", [] { return makeCylinderGeo(2, 1, 4, true, true, true); },
          Pnt3f(0, 1, -1), Vec3f(0, 0, -1), Vec2f(1, 1) },
        { "cylinder side quarter", [] { return makeCylinderGeo(2, 1, 4, true, true, true); },
          Pnt3f(1, -1, 0), Vec3f(1, 0, 0), Vec2f(.75f, 0) },
        { "cylinder top cap", [] { return makeCylinderGeo(2, 1, 4, true, true, true); },
          Pnt3f(1, 1, 0), Vec3f(0, 1, 0), Vec2f(1, .5f) },
        { "cylinder top cap -Z", [] { return makeCylinderGeo(2, 1, 4, true, true, true); },
          Pnt3f(0, 1, -1), Vec3f(0, 1, 0), Vec2f(.5f, 1) },
        { "cylinder bottom cap -Z", [] { return makeCylinderGeo(2, 1, 4, true, true, true); },
          Pnt3f(0, -1, -1), Vec3f(0, -1, 0), Vec2f(.5f, 0) },
        { "lat-long south pole", [] { return makeLatLongSphereGeo(4, 4, 1); },
          Pnt3f(0, -1, 0), Vec3f(0, -1, 0), Vec2f(.5f, 0) },
        { "lat-long equator +X", [] { return makeLatLongSphereGeo(4, 4, 1); },
          Pnt3f(1, 0, 0), Vec3f(1, 0, 0), Vec2f(.75f, .5f) },
        { "torus outer equator", [] { return makeTorusGeo(.5f, 2, 4, 4); },
          Pnt3f(2.5f, 0, 0), Vec3f(1, 0, 0), Vec2f(0, 0) },
        { "torus top of the tube after a quarter turn", [] { return makeTorusGeo(.5f, 2, 4, 4); },
          Pnt3f(0, -2, .5f), Vec3f(0, 0, 1), Vec2f(-.25f, .25f) },
    };

    for(const Probe &p : probes)
    {
        SCOPED_TRACE(p.name);
        GeometryPtr geo = p.make();
        ASSERT_NE(geo, NullFC);
        addRefCP(geo);

        bool found = false;
        for(const Triangle &t : triangles(geo))
        {
            for(const Corner &c : t)
            {
                Pnt3f pos = geo->getPositions()->getValue(c.pos);
                Vec3f nrm = geo->getNormals()->getValue(c.pos);
                if((pos - p.position).length() > 1e-5f || (nrm - p.normal).length() > 1e-5f)
                    continue;
                Vec2f tex = geo->getTexCoords()->getValue(c.tex);
                found |= (tex - p.texCoord).length() < 1e-5f;
            }
        }
        EXPECT_TRUE(found);
        subRefCP(geo);
    }
}

TEST(SimpleGeometry, SphereTexCoordsFollowLatitudeAndLongitudeWithASeamAtMinusZ)
{
    GeometryPtr geo = makeSphereGeo(3, 1);
    addRefCP(geo);

    ASSERT_EQ(geo->getIndexMapping().size(), 2u);
    EXPECT_EQ(geo->getIndexMapping()[0], Geometry::MapPosition | Geometry::MapNormal);
    EXPECT_EQ(geo->getIndexMapping()[1], Geometry::MapTexCoords);

    UInt32 seamCorners = 0;
    for(const Triangle &t : triangles(geo))
    {
        for(const Corner &c : t)
        {
            Vec3f  n   = geo->getNormals()->getValue(c.pos);
            Vec2f  tex = geo->getTexCoords()->getValue(c.tex);
            Real32 x = n[0], y = n[1], z = n[2];

            EXPECT_NEAR(tex[1], (Pi - std::acos(y)) / Pi, 1e-5f);

            bool pole = std::fabs(x) < 1e-6f && std::fabs(z) < 1e-6f;
            bool seam = !pole && std::fabs(x) < 1e-6f && z < 0;
            if(pole)
            {
                EXPECT_FLOAT_EQ(tex[0], .5f);
            }
            else if(seam)
            {
                // The twin on the +X side of the seam ends the texture.
                Real32 side = 0;
                for(const Corner &o : t)
                    side += geo->getNormals()->getValue(o.pos)[0];
                EXPECT_FLOAT_EQ(tex[0], side > 0 ? 1.f : 0.f);
                ++seamCorners;
            }
            else
            {
                EXPECT_NEAR(tex[0], .5f + std::atan2(x, z) / (2 * Pi), 1e-5f);
            }
            EXPECT_NEAR((geo->getPositions()->getValue(c.pos) - Pnt3f(0, 0, 0)).length(), 1.f, 1e-5f);
        }
    }
    EXPECT_GT(seamCorners, 0u);
    subRefCP(geo);
}

TEST(SimpleGeometry, ConicalFrustumSideNormalsCarryTheSlopeUnnormalised)
{
    const Real32 h = 2, top = .5f, bot = 1.5f;
    GeometryPtr  geo = makeConicalFrustumGeo(h, top, bot, 8, true, false, false);
    addRefCP(geo);

    GeoNormalsPtr nrm = geo->getNormals();
    ASSERT_EQ(nrm->size(), 18u);
    for(UInt32 i = 0; i < nrm->size(); ++i)
    {
        Vec3f n = nrm->getValue(i);
        EXPECT_NEAR(n[1], (bot - top) / h, 1e-6f);
        EXPECT_NEAR(n[0] * n[0] + n[2] * n[2], 1.f, 1e-5f);
    }
    subRefCP(geo);
}

TEST(SimpleGeometry, InvalidArgumentsWarnAndGiveNullFC)
{
    struct Case { const char *what; std::function<GeometryPtr()> make; };
    const Case cases[] =
    {
        { "makePlaneGeo",          [] { return makePlaneGeo(1, 1, 0, 1); } },
        { "makePlaneGeo",          [] { return makePlaneGeo(1, 1, 1, 0); } },
        { "makeBoxGeo",            [] { return makeBoxGeo(1, 1, 1, 1, 1, 0); } },
        { "makeConicalFrustumGeo", [] { return makeConeGeo(0, 1, 8, true, true); } },
        { "makeConicalFrustumGeo", [] { return makeCylinderGeo(1, -1, 8, true, true, true); } },
        { "makeConicalFrustumGeo", [] { return makeConicalFrustumGeo(1, 1, 1, 2, true, true, true); } },
        { "makeTorusGeo",          [] { return makeTorusGeo(0, 1, 8, 8); } },
        { "makeTorusGeo",          [] { return makeTorusGeo(1, 2, 8, 2); } },
        { "makeSphereGeo",         [] { return makeSphereGeo(1, 0); } },
        { "makeLatLongSphereGeo",  [] { return makeLatLongSphereGeo(3, 8, 1); } },
        { "makeLatLongSphereGeo",  [] { return makeLatLongSphereGeo(8, 8, -1); } },
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.what);
        testsupport::LogCapture log(LOG_WARNING);
        EXPECT_EQ(c.make(), NullFC);
        EXPECT_TRUE(log.contains(c.what));
    }

    testsupport::LogCapture log(LOG_WARNING);
    EXPECT_EQ(makeTorus(1, 2, 8, 2), NullFC);
}

TEST(SimpleGeometry, DefaultMaterialIsOneSharedSimpleMaterial)
{
    SimpleMaterialPtr mat = SimpleMaterialPtr::dcast(getDefaultMaterial());
    ASSERT_NE(mat, NullFC);
    EXPECT_EQ(getDefaultMaterial(), mat);
    EXPECT_TRUE(mat->getDiffuse().equals(Color3f(.7f, .7f, .5f), 1e-6f));
    EXPECT_TRUE(mat->getAmbient().equals(Color3f(.1f, .1f, .1f), 1e-6f));
    EXPECT_TRUE(mat->getSpecular().equals(Color3f(1, 1, 1), 1e-6f));
    EXPECT_FLOAT_EQ(mat->getShininess(), 20.f);

    // Geometries that used it do not take it along when they go.
    Int32 refs = mat.getRefCount();
    GeometryPtr geo = makeBoxGeo(1, 1, 1, 1, 1, 1);
    addRefCP(geo);
    subRefCP(geo);
    EXPECT_EQ(mat.getRefCount(), refs);
}
