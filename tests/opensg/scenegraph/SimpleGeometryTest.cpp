#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace osg;

namespace
{

// One corner of a face: its position (and normal) index and its texcoord
// index, which differ only on the icosphere.
struct Corner { UInt32 pos, tex; };
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

typedef std::vector<std::pair<UInt32, UInt32>> Primitives;   // type, length

Primitives repeat(UInt32 count, UInt32 type, UInt32 length)
{
    return Primitives(count, std::make_pair(type, length));
}

Primitives operator+(Primitives a, const Primitives &b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

UInt32 pow4(UInt32 n) { return 1u << (2 * n); }

struct LayoutCase
{
    std::string                  name;
    std::function<GeometryPtr()> make;
    UInt32                       positions, texCoords;
    Primitives                   primitives;
    std::vector<UInt32>          firstIndices;
    UInt32                       triangles;
    Pnt3f                        firstPosition;
    Vec3f                        firstNormal;
    Vec2f                        firstTexCoord;
    Pnt3f                        min, max;
    Vec2f                        texMin, texMax;
    // The expected length of a normal; slanted cone sides are not unit.
    std::function<Real32(const Vec3f &)> normalLength;
    // The point each vertex normal must point away from.
    std::function<Pnt3f(const Pnt3f &)>  inner;
    // A corner whose texture coordinate the layout fixes.
    Pnt3f                        probe;
    Vec3f                        probeNormal;
    Vec2f                        probeTexCoord;
};

Real32 unit(const Vec3f &) { return 1; }
Pnt3f  origin(const Pnt3f &) { return Pnt3f(0, 0, 0); }

// Inner radius 0.25, outer radius 1: the tube's centre line lies in z = 0.
Pnt3f torusTubeCentre(const Pnt3f &p)
{
    Real32 d = std::sqrt(p[0] * p[0] + p[1] * p[1]);
    return Pnt3f(p[0] / d, p[1] / d, 0);
}

std::vector<LayoutCase> layoutCases()
{
    const UInt32 s = 16;  // sides, a multiple of 4 so that the axes are hit
    const UInt32 strip = GL_TRIANGLE_STRIP;
    // Cone 3 high with radius 1: the side normals grow by 1 + 1/9.
    auto coneNormal = [](const Vec3f &n) {
        return n[0] == 0 && n[2] == 0 ? 1.f : 1.f + 1.f / 9;
    };
    // Cap texcoords of the corner at 15/16 of the way round: -sin and cos
    // of pi/8, halved and shifted into the unit square.
    const Real32 sin8 = std::sin(Pi / 8) / 2, cos8 = std::cos(Pi / 8) / 2;

    return {
        { "plane 2x1, 4x3", [] { return makePlaneGeo(2, 1, 4, 3); },
          5 * 4, 5 * 4, repeat(3, strip, 2 * 5), { 5, 0, 6, 1 }, 2 * 4 * 3,
          Pnt3f(-1, -.5f, 0), Vec3f(0, 0, 1), Vec2f(0, 0),
          Pnt3f(-1, -.5f, 0), Pnt3f(1, .5f, 0), Vec2f(0, 0), Vec2f(1, 1), unit,
          [](const Pnt3f &p) { return Pnt3f(p[0], p[1], -1); },
          Pnt3f(1, .5f, 0), Vec3f(0, 0, 1), Vec2f(1, 1) },
        // +Z, -Z (x by y), +X, -X (z by y), +Y, -Y (x by z).
        { "box 2x4x6, 1x2x3", [] { return makeBoxGeo(2, 4, 6, 1, 2, 3); },
          2 * (2 * 3 + 4 * 3 + 2 * 4), 2 * (2 * 3 + 4 * 3 + 2 * 4),
          repeat(2, strip, 2 * 2) + repeat(2, strip, 2 * 2) + repeat(2, strip, 2 * 4) +
          repeat(2, strip, 2 * 4) + repeat(3, strip, 2 * 2) + repeat(3, strip, 2 * 2),
          { 2, 0, 3, 1, 4, 2, 5, 3, 8, 6 }, 2 * 2 * (1 * 2 + 3 * 2 + 1 * 3),
          Pnt3f(-1, -2, 3), Vec3f(0, 0, 1), Vec2f(0, 0),
          Pnt3f(-1, -2, -3), Pnt3f(1, 2, 3), Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(1, 2, -3), Vec3f(0, 1, 0), Vec2f(1, 1) },
        { "cylinder", [=] { return makeCylinderGeo(2, .5f, s, true, true, true); },
          2 * (s + 1) + 2 * s, 2 * (s + 1) + 2 * s,
          repeat(1, strip, 2 * (s + 1)) + repeat(2, GL_POLYGON, s), { s + 1, 0, s + 2, 1 },
          2 * s + 2 * (s - 2),
          Pnt3f(0, 1, -.5f), Vec3f(0, 0, -1), Vec2f(1, 1),
          Pnt3f(-.5f, -1, -.5f), Pnt3f(.5f, 1, .5f), Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(.5f, -1, 0), Vec3f(1, 0, 0), Vec2f(.75f, 0) },
        { "cone", [=] { return makeConeGeo(3, 1, s, true, true); },
          2 * (s + 1) + s, 2 * (s + 1) + s,
          repeat(1, strip, 2 * (s + 1)) + repeat(1, GL_POLYGON, s), { s + 1, 0, s + 2, 1 },
          2 * s + (s - 2),
          Pnt3f(0, 1.5f, 0), Vec3f(0, 1, -3) * (std::sqrt(10.f) / 9), Vec2f(1, 1),
          Pnt3f(-1, -1.5f, -1), Pnt3f(1, 1.5f, 1), Vec2f(0, 0), Vec2f(1, 1), coneNormal, origin,
          Pnt3f(0, -1.5f, -1), Vec3f(0, -1, 0), Vec2f(.5f, 0) },
        { "frustum without side", [=] { return makeConicalFrustumGeo(1, .5f, 1, s, false, true, true); },
          2 * s, 2 * s, repeat(2, GL_POLYGON, s), { 0, 1, 2 }, 2 * (s - 2),
          Pnt3f(-sin8, .5f, -cos8), Vec3f(0, 1, 0), Vec2f(.5f - sin8, .5f + cos8),
          Pnt3f(-1, -.5f, -1), Pnt3f(1, .5f, 1), Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(-1, -.5f, 0), Vec3f(0, -1, 0), Vec2f(0, .5f) },
        { "torus", [=] { return makeTorusGeo(.25f, 1, s, 2 * s); },
          (2 * s + 1) * (s + 1), (2 * s + 1) * (s + 1),
          repeat(s, strip, 2 * (2 * s + 1)), { 0, 1, s + 1, s + 2 }, 2 * 2 * s * s,
          Pnt3f(1.25f, 0, 0), Vec3f(1, 0, 0), Vec2f(0, 0),
          Pnt3f(-1.25f, -1.25f, -.25f), Pnt3f(1.25f, 1.25f, .25f), Vec2f(-1, 0), Vec2f(0, 1),
          unit, torusTubeCentre,
          Pnt3f(0, -1, .25f), Vec3f(0, 0, 1), Vec2f(-.25f, .25f) },
        // Every split adds three vertices of its own; the texcoords add the
        // seam's twins.
        { "sphere depth 0", [] { return makeSphereGeo(0, 3); },
          12, 12, repeat(1, GL_TRIANGLES, 3 * 20), { 1, 1, 4, 4, 0, 0, 4, 4, 9, 9, 0, 0 }, 20,
          Pnt3f(3, 0, 0), Vec3f(1, 0, 0), Vec2f(.75f, .5f),
          Pnt3f(-3, -3 * .850651f, -3 * .894427f), Pnt3f(3, 3 * .850651f, 3 * .894427f),
          Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(-3, 0, 0), Vec3f(-1, 0, 0), Vec2f(.25f, .5f) },
        { "sphere depth 2", [] { return makeSphereGeo(2, 3); },
          12 + 20 * (pow4(2) - 1), 378, repeat(1, GL_TRIANGLES, 3 * 20 * pow4(2)),
          // Depth first: a corner's part of a corner's part, with the
          // first split's midpoints 12 to 14 and the second's 15 to 17.
          { 1, 1, 15, 15, 17, 17,  12, 12, 16, 16, 15, 15 }, 20 * pow4(2),
          Pnt3f(3, 0, 0), Vec3f(1, 0, 0), Vec2f(.75f, .5f),
          Pnt3f(-3, -3, -3), Pnt3f(3, 3, 3), Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(-3, 0, 0), Vec3f(-1, 0, 0), Vec2f(.25f, .5f) },
        { "lat-long sphere", [=] { return makeLatLongSphereGeo(8, s, 2); },
          9 * (s + 1), 9 * (s + 1), repeat(s, strip, 2 * 9), { 0, 1, s + 1, s + 2 }, 2 * 8 * s,
          Pnt3f(0, -2, 0), Vec3f(0, -1, 0), Vec2f(0, 0),
          Pnt3f(-2, -2, -2), Pnt3f(2, 2, 2), Vec2f(0, 0), Vec2f(1, 1), unit, origin,
          Pnt3f(2, 0, 0), Vec3f(1, 0, 0), Vec2f(.75f, .5f) },
    };
}

void expectNear(const Vec3f &actual, const Vec3f &expected, const char *what)
{
    EXPECT_LT((actual - expected).length(), 1e-5f)
        << what << " (" << actual[0] << ", " << actual[1] << ", " << actual[2] << ")";
}

} // namespace

TEST(SimpleGeometry, MakersBuildTheDescribedLayouts)
{
    for(const LayoutCase &c : layoutCases())
    {
        SCOPED_TRACE(c.name);
        GeometryPtr geo = c.make();
        ASSERT_NE(geo, NullFC);
        NodePtr node = makeNodeFor(geo);
        addRefCP(node);

        GeoPositionsPtr pos = geo->getPositions();
        GeoNormalsPtr   nrm = geo->getNormals();
        GeoTexCoordsPtr tex = geo->getTexCoords();
        ASSERT_NE(tex, NullFC);
        EXPECT_EQ(geo->getMaterial(), getDefaultMaterial());
        EXPECT_EQ(pos->size(), c.positions);
        EXPECT_EQ(nrm->size(), c.positions);
        EXPECT_EQ(tex->size(), c.texCoords);

        Primitives prims;
        for(UInt32 p = 0; p < geo->getTypes()->size(); ++p)
            prims.emplace_back(geo->getTypes()->getValue(p), geo->getLengths()->getValue(p));
        EXPECT_EQ(prims, c.primitives);
        for(UInt32 i = 0; i < c.firstIndices.size(); ++i)
            EXPECT_EQ(geo->getIndices()->getValue(i), c.firstIndices[i]) << "index " << i;

        // The icosphere indexes texcoords apart; the others share one index.
        const bool ico = prims.size() == 1 && prims[0].first == GL_TRIANGLES;
        UInt32 vertices = 0;
        for(const auto &p : prims)
            vertices += p.second;
        EXPECT_EQ(geo->getIndices()->size(), vertices * (ico ? 2 : 1));
        if(ico)
        {
            ASSERT_EQ(geo->getIndexMapping().size(), 2u);
            EXPECT_EQ(geo->getIndexMapping()[0], Geometry::MapPosition | Geometry::MapNormal);
            EXPECT_EQ(geo->getIndexMapping()[1], Geometry::MapTexCoords);
        }
        else
        {
            ASSERT_EQ(geo->getIndexMapping().size(), 1u);
            EXPECT_EQ(geo->getIndexMapping()[0], Geometry::MapPosition | Geometry::MapNormal |
                                                 Geometry::MapTexCoords);
        }

        expectNear(pos->getValue(0) - Pnt3f(0, 0, 0), c.firstPosition - Pnt3f(0, 0, 0),
                   "first position");
        expectNear(nrm->getValue(0), c.firstNormal, "first normal");
        EXPECT_LT((tex->getValue(0) - c.firstTexCoord).length(), 1e-5f) << "first texcoord";

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
            EXPECT_NEAR(n.length(), c.normalLength(n), 1e-5f) << "vertex " << i;
            EXPECT_GT(n.dot(pos->getValue(i) - c.inner(pos->getValue(i))), 0.f)
                << "vertex " << i;
        }
        for(UInt32 i = 0; i < tex->size(); ++i)
        {
            Vec2f t = tex->getValue(i);
            for(UInt32 k = 0; k < 2; ++k)
            {
                EXPECT_GE(t[k], c.texMin[k] - 1e-5f) << "texcoord " << i;
                EXPECT_LE(t[k], c.texMax[k] + 1e-5f) << "texcoord " << i;
            }
        }

        // Counter-clockwise from outside: the face normal agrees with the
        // vertex normals, for every face that is not degenerate.
        std::vector<Triangle> tris = triangles(geo);
        UInt32 faces = 0;
        for(const Triangle &t : tris)
        {
            EXPECT_LT(t[0].pos, pos->size());
            EXPECT_LT(t[0].tex, tex->size());
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
        bool probed = false;
        for(const Triangle &t : tris)
            for(const Corner &k : t)
                probed |= (pos->getValue(k.pos) - c.probe).length() < 1e-5f &&
                          (nrm->getValue(k.pos) - c.probeNormal).length() < 1e-5f &&
                          (tex->getValue(k.tex) - c.probeTexCoord).length() < 1e-5f;
        EXPECT_TRUE(probed) << "no corner at the probe with its texcoord";
        EXPECT_EQ(tris.size(), c.triangles);
        EXPECT_EQ(geo->countTriangles(), c.triangles);
        EXPECT_GT(faces, c.triangles / 2);

        subRefCP(node);
    }
}

// Off the seam at -Z, an icosphere's texcoords are its normal's longitude,
// counted from -Z over -X, and latitude; no face spans the whole texture.
TEST(SimpleGeometry, IcosphereTexCoordsAreLongitudeAndLatitude)
{
    GeometryPtr geo = makeSphereGeo(2, 1);
    addRefCP(geo);
    for(const Triangle &t : triangles(geo))
    {
        Real32 lowest = 1, highest = 0;
        for(const Corner &c : t)
        {
            lowest  = std::min(lowest,  geo->getTexCoords()->getValue(c.tex)[0]);
            highest = std::max(highest, geo->getTexCoords()->getValue(c.tex)[0]);
        }
        EXPECT_LE(highest - lowest, .5f + 1e-5f);
        for(const Corner &c : t)
        {
            const Vec3f n   = geo->getNormals()->getValue(c.pos);
            const Vec2f tex = geo->getTexCoords()->getValue(c.tex);
            EXPECT_NEAR(tex[1], (Pi - std::acos(n[1])) / Pi, 1e-5f);
            if(std::fabs(n[0]) > 1e-6f || n[2] > 1e-6f)
            {
                const Real32 s = std::atan2(-n[2], n[0]) / (2 * Pi) - .25f;
                EXPECT_NEAR(tex[0], s < 0 ? s + 1 : s, 1e-5f);
            }
        }
    }
    subRefCP(geo);
}

TEST(SimpleGeometry, InvalidArgumentsWarnAndGiveNullFC)
{
    struct Case { const char *what; std::function<GeometryPtr()> make; std::function<NodePtr()> node; };
    const Case cases[] =
    {
        { "makePlaneGeo",          [] { return makePlaneGeo(1, 1, 0, 1); },
                                   [] { return makePlane(1, 1, 0, 1); } },
        { "makePlaneGeo",          [] { return makePlaneGeo(1, 1, 1, 0); },
                                   [] { return makePlane(1, 1, 1, 0); } },
        { "makeBoxGeo",            [] { return makeBoxGeo(1, 1, 1, 1, 1, 0); },
                                   [] { return makeBox(1, 1, 1, 0, 1, 1); } },
        { "makeConicalFrustumGeo", [] { return makeConeGeo(0, 1, 8, true, true); },
                                   [] { return makeCone(1, 1, 2, true, true); } },
        { "makeConicalFrustumGeo", [] { return makeCylinderGeo(1, -1, 8, true, true, true); },
                                   [] { return makeCylinder(-1, 1, 8, true, true, true); } },
        { "makeConicalFrustumGeo", [] { return makeConicalFrustumGeo(1, 1, 1, 2, true, true, true); },
                                   [] { return makeConicalFrustum(1, -1, 1, 8, true, true, true); } },
        { "makeTorusGeo",          [] { return makeTorusGeo(0, 1, 8, 8); },
                                   [] { return makeTorus(1, 2, 8, 2); } },
        { "makeTorusGeo",          [] { return makeTorusGeo(1, 2, 2, 8); },
                                   [] { return makeTorus(1, 0, 8, 8); } },
        { "makeLatLongSphereGeo",  [] { return makeLatLongSphereGeo(3, 8, 1); },
                                   [] { return makeLatLongSphere(8, 3, 1); } },
        { "makeLatLongSphereGeo",  [] { return makeLatLongSphereGeo(8, 8, -1); },
                                   [] { return makeLatLongSphere(8, 8, 0); } },
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.what);
        testsupport::LogCapture log(LOG_WARNING);
        EXPECT_EQ(c.make(), NullFC);
        EXPECT_TRUE(log.contains(c.what));
        log.clear();
        EXPECT_EQ(c.node(), NullFC);
        EXPECT_TRUE(log.contains(c.what));
    }
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
    EXPECT_TRUE(mat->getLit());

    SimpleMaterialPtr unlit = SimpleMaterialPtr::dcast(getDefaultUnlitMaterial());
    ASSERT_NE(unlit, NullFC);
    EXPECT_NE(unlit, mat);
    EXPECT_FALSE(unlit->getLit());
    EXPECT_TRUE(unlit->getDiffuse().equals(Color3f(1, 1, .5f), 1e-6f));

    // Geometries that used it do not take it along when they go.
    Int32 refs = mat.getRefCount();
    GeometryPtr geo = makeBoxGeo(1, 1, 1, 1, 1, 1);
    addRefCP(geo);
    subRefCP(geo);
    EXPECT_EQ(mat.getRefCount(), refs);
}
