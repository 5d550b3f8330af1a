#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGGL.h>

#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace osg
{

namespace
{

// Collects the properties of one of the simple shapes.
class ShapeBuilder
{
  public:
    ShapeBuilder(void) :
        _positions(GeoPositions3f ::create()),
        _normals  (GeoNormals3f   ::create()),
        _texCoords(GeoTexCoords2f ::create()),
        _indices  (GeoIndicesUI32 ::create()),
        _lengths  (GeoPLengthsUI32::create()),
        _types    (GeoPTypesUI8   ::create()),
        _open     (0)
    {
    }

    UInt32 addVertex(const Pnt3f &p, const Vec3f &n, const Vec2f &t)
    {
        _positions->editField().push_back(p);
        _normals  ->editField().push_back(n);
        _texCoords->editField().push_back(t);
        return _positions->size() - 1;
    }

    void addPosition(const Pnt3f &p, const Vec3f &n)
    {
        _positions->editField().push_back(p);
        _normals  ->editField().push_back(n);
    }

    UInt32 addTexCoord(const Vec2f &t)
    {
        _texCoords->editField().push_back(t);
        return _texCoords->size() - 1;
    }

    void begin(GLenum type)
    {
        _types->editField().push_back(UInt8(type));
        _open = _indices->size();
    }

    void index(UInt32 i)
    {
        _indices->editField().push_back(i);
    }

    void end(UInt32 indicesPerVertex = 1)
    {
        _lengths->editField().push_back((_indices->size() - _open) / indicesPerVertex);
    }

    GeometryPtr finish(const std::vector<UInt16> &mapping)
    {
        GeometryPtr geo = Geometry::create();
        beginEditCP(geo);
        geo->setPositions(_positions);
        geo->setNormals  (_normals);
        geo->setTexCoords(_texCoords);
        geo->setIndices  (_indices);
        geo->setLengths  (_lengths);
        geo->setTypes    (_types);
        geo->editMFIndexMapping()->getValues().assign(mapping.begin(), mapping.end());
        geo->setMaterial (getDefaultMaterial());
        endEditCP(geo);
        return geo;
    }

    GeometryPtr finish(void)
    {
        return finish(std::vector<UInt16>(1, Geometry::MapPosition |
                                              Geometry::MapNormal   |
                                              Geometry::MapTexCoords));
    }

  private:
    GeoPositions3fPtr  _positions;
    GeoNormals3fPtr    _normals;
    GeoTexCoords2fPtr  _texCoords;
    GeoIndicesUI32Ptr  _indices;
    GeoPLengthsUI32Ptr _lengths;
    GeoPTypesUI8Ptr    _types;
    UInt32             _open;
};

// One strip per row of a grid of (nu + 1) x (nv + 1) vertices starting at
// `first`, ordered so that the faces turn counter-clockwise seen from the
// side u x v points to.
void addGridStrips(ShapeBuilder &b, UInt32 first, UInt32 nu, UInt32 nv)
{
    for(UInt32 j = 0; j < nv; ++j)
    {
        b.begin(GL_TRIANGLE_STRIP);
        for(UInt32 i = 0; i <= nu; ++i)
        {
            b.index(first + (j + 1) * (nu + 1) + i);
            b.index(first +  j      * (nu + 1) + i);
        }
        b.end();
    }
}

// A subdivided rectangle centred at `center`, spanning `u` and `v` (full
// extents) with texcoords running along them.
void addFace(ShapeBuilder &b, const Pnt3f &center, const Vec3f &u, const Vec3f &v,
             const Vec3f &normal, UInt32 nu, UInt32 nv)
{
    UInt32 first = 0;
    for(UInt32 j = 0; j <= nv; ++j)
    {
        for(UInt32 i = 0; i <= nu; ++i)
        {
            Real32 s = Real32(i) / nu;
            Real32 t = Real32(j) / nv;
            UInt32 idx = b.addVertex(center + u * (s - 0.5f) + v * (t - 0.5f),
                                     normal, Vec2f(s, t));
            if(i == 0 && j == 0)
                first = idx;
        }
    }
    addGridStrips(b, first, nu, nv);
}

} // namespace

GeometryPtr makePlaneGeo(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert)
{
    if(hor == 0 || vert == 0)
    {
        SWARNING << "makePlaneGeo: illegal subdivision " << hor << " x " << vert
                 << std::endl;
        return NullFC;
    }

    ShapeBuilder b;
    addFace(b, Pnt3f(0, 0, 0), Vec3f(xsize, 0, 0), Vec3f(0, ysize, 0),
            Vec3f(0, 0, 1), hor, vert);
    return b.finish();
}

GeometryPtr makeBoxGeo(Real32 xsize, Real32 ysize, Real32 zsize,
                       UInt16 hor, UInt16 vert, UInt16 depth)
{
    if(hor == 0 || vert == 0 || depth == 0)
    {
        SWARNING << "makeBoxGeo: illegal subdivision " << hor << " x " << vert
                 << " x " << depth << std::endl;
        return NullFC;
    }

    Real32 x = xsize / 2, y = ysize / 2, z = zsize / 2;

    ShapeBuilder b;
    addFace(b, Pnt3f( 0,  0,  z), Vec3f( xsize, 0, 0), Vec3f(0, ysize, 0), Vec3f( 0,  0,  1), hor,   vert);
    addFace(b, Pnt3f( 0,  0, -z), Vec3f(-xsize, 0, 0), Vec3f(0, ysize, 0), Vec3f( 0,  0, -1), hor,   vert);
    addFace(b, Pnt3f( x,  0,  0), Vec3f(0, 0, -zsize), Vec3f(0, ysize, 0), Vec3f( 1,  0,  0), depth, vert);
    addFace(b, Pnt3f(-x,  0,  0), Vec3f(0, 0,  zsize), Vec3f(0, ysize, 0), Vec3f(-1,  0,  0), depth, vert);
    addFace(b, Pnt3f( 0,  y,  0), Vec3f(xsize, 0, 0), Vec3f(0, 0, -zsize), Vec3f( 0,  1,  0), hor,   depth);
    addFace(b, Pnt3f( 0, -y,  0), Vec3f(xsize, 0, 0), Vec3f(0, 0,  zsize), Vec3f( 0, -1,  0), hor,   depth);
    return b.finish();
}

GeometryPtr makeConicalFrustumGeo(Real32 height, Real32 topradius, Real32 botradius,
                                  UInt16 sides, bool doSide, bool doTop, bool doBottom)
{
    if(height <= 0 || topradius < 0 || botradius < 0 || sides < 3)
    {
        SWARNING << "makeConicalFrustumGeo: illegal parameters height " << height
                 << ", radii " << topradius << "/" << botradius << ", sides "
                 << sides << std::endl;
        return NullFC;
    }

    Real32 top   =  height / 2;
    Real32 bot   = -height / 2;
    Real32 slope = (botradius - topradius) / height;
    Real32 delta = 2 * Pi / sides;

    ShapeBuilder b;

    if(doSide)
    {
        // Bottom before top in each column turns the faces outwards.
        b.begin(GL_TRIANGLE_STRIP);
        for(UInt32 j = 0; j <= sides; ++j)
        {
            Real32 beta = j * delta;
            Real32 x = std::sin(beta), z = -std::cos(beta);
            Real32 s = 1 - Real32(j) / sides;
            Vec3f  n(x, slope, z);

            b.index(b.addVertex(Pnt3f(x * botradius, bot, z * botradius), n, Vec2f(s, 0)));
            b.index(b.addVertex(Pnt3f(x * topradius, top, z * topradius), n, Vec2f(s, 1)));
        }
        b.end();
    }

    // Going against the side's direction turns the top cap's face upwards.
    if(doTop && topradius > 0)
    {
        b.begin(GL_POLYGON);
        for(Int32 j = sides - 1; j >= 0; --j)
        {
            Real32 beta = j * delta;
            Real32 x = std::sin(beta), z = -std::cos(beta);
            b.index(b.addVertex(Pnt3f(x * topradius, top, z * topradius), Vec3f(0, 1, 0),
                                Vec2f(x / 2 + .5f, -z / 2 + .5f)));
        }
        b.end();
    }

    if(doBottom && botradius > 0)
    {
        b.begin(GL_POLYGON);
        for(UInt32 j = 0; j < sides; ++j)
        {
            Real32 beta = j * delta;
            Real32 x = std::sin(beta), z = -std::cos(beta);
            b.index(b.addVertex(Pnt3f(x * botradius, bot, z * botradius), Vec3f(0, -1, 0),
                                Vec2f(x / 2 + .5f, z / 2 + .5f)));
        }
        b.end();
    }

    return b.finish();
}

GeometryPtr makeConeGeo(Real32 height, Real32 botradius, UInt16 sides,
                        bool doSide, bool doBottom)
{
    return makeConicalFrustumGeo(height, 0, botradius, sides, doSide, false, doBottom);
}

GeometryPtr makeCylinderGeo(Real32 height, Real32 radius, UInt16 sides,
                            bool doSide, bool doTop, bool doBottom)
{
    return makeConicalFrustumGeo(height, radius, radius, sides, doSide, doTop, doBottom);
}

GeometryPtr makeTorusGeo(Real32 innerRadius, Real32 outerRadius, UInt16 sides, UInt16 rings)
{
    if(innerRadius <= 0 || outerRadius <= 0 || sides < 3 || rings < 3)
    {
        SWARNING << "makeTorusGeo: illegal parameters radii " << innerRadius << "/"
                 << outerRadius << ", sides " << sides << ", rings " << rings
                 << std::endl;
        return NullFC;
    }

    ShapeBuilder b;
    for(UInt32 a = 0; a <= rings; ++a)
    {
        Real32 theta = 2 * Pi * a / rings;
        for(UInt32 c = 0; c <= sides; ++c)
        {
            Real32 phi = 2 * Pi * c / sides;
            Real32 d   = outerRadius + innerRadius * std::cos(phi);
            Vec3f  n(std::cos(theta) * std::cos(phi), -std::sin(theta) * std::cos(phi),
                     std::sin(phi));
            b.addVertex(Pnt3f(std::cos(theta) * d, -std::sin(theta) * d,
                              innerRadius * std::sin(phi)),
                        n, Vec2f(-Real32(a) / rings, Real32(c) / sides));
        }
    }

    // The next ring first in each pair turns the faces outwards.
    for(UInt32 a = 0; a < rings; ++a)
    {
        b.begin(GL_TRIANGLE_STRIP);
        for(UInt32 c = 0; c <= sides; ++c)
        {
            b.index((a + 1) * (sides + 1) + c);
            b.index( a      * (sides + 1) + c);
        }
        b.end();
    }
    return b.finish();
}

GeometryPtr makeSphereGeo(UInt16 depth, Real32 radius)
{
    if(radius <= 0)
    {
        SWARNING << "makeSphereGeo: illegal radius " << radius << std::endl;
        return NullFC;
    }

    const Real32 g = (1 + std::sqrt(5.f)) / 2;
    std::vector<Vec3f> dirs =
    {
        Vec3f(-1,  g,  0), Vec3f( 1,  g,  0), Vec3f(-1, -g,  0), Vec3f( 1, -g,  0),
        Vec3f( 0, -1,  g), Vec3f( 0,  1,  g), Vec3f( 0, -1, -g), Vec3f( 0,  1, -g),
        Vec3f( g,  0, -1), Vec3f( g,  0,  1), Vec3f(-g,  0, -1), Vec3f(-g,  0,  1)
    };
    std::vector<UInt32> tris =
    {
        0, 11,  5,   0,  5,  1,   0,  1,  7,   0,  7, 10,   0, 10, 11,
        1,  5,  9,   5, 11,  4,  11, 10,  2,  10,  7,  6,   7,  1,  8,
        3,  9,  4,   3,  4,  2,   3,  2,  6,   3,  6,  8,   3,  8,  9,
        4,  9,  5,   2,  4, 11,   6,  2, 10,   8,  6,  7,   9,  8,  1
    };
    for(Vec3f &d : dirs)
        d.normalize();

    for(UInt32 level = 0; level < depth; ++level)
    {
        std::map<std::pair<UInt32, UInt32>, UInt32> midpoints;
        auto midpoint = [&](UInt32 i, UInt32 j)
        {
            std::pair<UInt32, UInt32> key(osgMin(i, j), osgMax(i, j));
            auto it = midpoints.find(key);
            if(it != midpoints.end())
                return it->second;
            Vec3f m = dirs[i] + dirs[j];
            m.normalize();
            dirs.push_back(m);
            midpoints[key] = UInt32(dirs.size() - 1);
            return UInt32(dirs.size() - 1);
        };

        std::vector<UInt32> next;
        next.reserve(tris.size() * 4);
        for(size_t t = 0; t < tris.size(); t += 3)
        {
            UInt32 a = tris[t], b = tris[t + 1], c = tris[t + 2];
            UInt32 ab = midpoint(a, b), bc = midpoint(b, c), ca = midpoint(c, a);
            UInt32 sub[] = { a, ab, ca,  ab, b, bc,  ca, bc, c,  ab, bc, ca };
            next.insert(next.end(), sub, sub + 12);
        }
        tris.swap(next);
    }

    ShapeBuilder b;

    // Texcoords: one per vertex, plus s = 1 twins for the vertices on the
    // seam (x = 0, z < 0), whose own entry has s = 0.
    std::vector<UInt32> texOf(dirs.size()), seamTwin(dirs.size(), 0);
    for(UInt32 i = 0; i < dirs.size(); ++i)
    {
        const Vec3f &d = dirs[i];
        b.addPosition(Pnt3f(d * radius), d);

        Real32 t = (Pi - std::acos(osgClamp(-1.f, d[1], 1.f))) / Pi;
        bool   pole = std::fabs(d[0]) < 1e-6f && std::fabs(d[2]) < 1e-6f;
        bool   seam = std::fabs(d[0]) < 1e-6f && d[2] < 0 && !pole;
        Real32 s    = pole ? 0.5f : (seam ? 0.f : 0.5f + std::atan2(d[0], d[2]) / (2 * Pi));

        texOf[i] = b.addTexCoord(Vec2f(s, t));
        if(seam)
            seamTwin[i] = b.addTexCoord(Vec2f(1.f, t));
    }

    b.begin(GL_TRIANGLES);
    for(size_t t = 0; t < tris.size(); t += 3)
    {
        Real32 side = 0;
        for(UInt32 k = 0; k < 3; ++k)
            side += dirs[tris[t + k]][0];

        for(UInt32 k = 0; k < 3; ++k)
        {
            UInt32 v = tris[t + k];
            b.index(v);
            b.index(seamTwin[v] != 0 && side > 0 ? seamTwin[v] : texOf[v]);
        }
    }
    b.end(2);

    std::vector<UInt16> mapping;
    mapping.push_back(Geometry::MapPosition | Geometry::MapNormal);
    mapping.push_back(Geometry::MapTexCoords);
    return b.finish(mapping);
}

GeometryPtr makeLatLongSphereGeo(UInt16 latres, UInt16 longres, Real32 radius)
{
    if(radius <= 0 || latres < 4 || longres < 4)
    {
        SWARNING << "makeLatLongSphereGeo: illegal parameters radius " << radius
                 << ", resolution " << latres << " x " << longres << std::endl;
        return NullFC;
    }

    ShapeBuilder b;
    for(UInt32 a = 0; a <= latres; ++a)
    {
        Real32 theta = -Pi / 2 + Pi * a / latres;
        for(UInt32 c = 0; c <= longres; ++c)
        {
            Real32 phi = -Pi + 2 * Pi * c / longres;
            Vec3f  n(std::cos(theta) * std::sin(phi), std::sin(theta),
                     std::cos(theta) * std::cos(phi));
            b.addVertex(Pnt3f(n * radius), n,
                        Vec2f(Real32(c) / longres, Real32(a) / latres));
        }
    }

    for(UInt32 c = 0; c < longres; ++c)
    {
        b.begin(GL_TRIANGLE_STRIP);
        for(UInt32 a = 0; a <= latres; ++a)
        {
            b.index(a * (longres + 1) + c);
            b.index(a * (longres + 1) + c + 1);
        }
        b.end();
    }
    return b.finish();
}

NodePtr makePlane(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert)
{
    GeometryPtr geo = makePlaneGeo(xsize, ysize, hor, vert);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeBox(Real32 xsize, Real32 ysize, Real32 zsize,
                UInt16 hor, UInt16 vert, UInt16 depth)
{
    GeometryPtr geo = makeBoxGeo(xsize, ysize, zsize, hor, vert, depth);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeCone(Real32 height, Real32 botradius, UInt16 sides, bool doSide, bool doBottom)
{
    GeometryPtr geo = makeConeGeo(height, botradius, sides, doSide, doBottom);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeCylinder(Real32 height, Real32 radius, UInt16 sides,
                     bool doSide, bool doTop, bool doBottom)
{
    GeometryPtr geo = makeCylinderGeo(height, radius, sides, doSide, doTop, doBottom);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeConicalFrustum(Real32 height, Real32 topradius, Real32 botradius,
                           UInt16 sides, bool doSide, bool doTop, bool doBottom)
{
    GeometryPtr geo = makeConicalFrustumGeo(height, topradius, botradius, sides,
                                            doSide, doTop, doBottom);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeTorus(Real32 innerRadius, Real32 outerRadius, UInt16 sides, UInt16 rings)
{
    GeometryPtr geo = makeTorusGeo(innerRadius, outerRadius, sides, rings);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeSphere(UInt16 depth, Real32 radius)
{
    GeometryPtr geo = makeSphereGeo(depth, radius);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

NodePtr makeLatLongSphere(UInt16 latres, UInt16 longres, Real32 radius)
{
    GeometryPtr geo = makeLatLongSphereGeo(latres, longres, radius);
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
}

MaterialPtr getDefaultMaterial(void)
{
    static SimpleMaterialPtr material;
    if(material == NullFC)
    {
        material = SimpleMaterial::create();
        addRefCP(material);
        beginEditCP(material);
        material->setDiffuse  (Color3f(.7f, .7f, .5f));
        material->setAmbient  (Color3f(.1f, .1f, .1f));
        material->setSpecular (Color3f(1.f, 1.f, 1.f));
        material->setShininess(20.f);
        endEditCP(material);
    }
    return material;
}

MaterialPtr getDefaultUnlitMaterial(void)
{
    static SimpleMaterialPtr material;
    if(material == NullFC)
    {
        material = SimpleMaterial::create();
        addRefCP(material);
        beginEditCP(material);
        material->setDiffuse(Color3f(1.f, 1.f, .5f));
        material->setLit    (false);
        endEditCP(material);
    }
    return material;
}

} // namespace osg
