#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGGL.h>

#include <cmath>
#include <vector>

// Applications compare these shapes vertex by vertex with what OpenSG 1.8
// made (picking, texturing, saved scenes), so the layouts, the order of
// every element and even the float arithmetic follow 1.8's, quirks
// included; the comments point the quirks out.

namespace osg
{

namespace
{

// Collects the properties of one shape; every one uses the same types.
class ShapeBuilder
{
  public:
    ShapeBuilder(void) :
        _positions(GeoPositions3f ::create()),
        _normals  (GeoNormals3f   ::create()),
        _texCoords(GeoTexCoords2f ::create()),
        _indices  (GeoIndicesUI32 ::create()),
        _lengths  (GeoPLengthsUI32::create()),
        _types    (GeoPTypesUI8   ::create())
    {
    }

    UInt32 vertexCount(void) const { return _positions->getSize(); }

    void addVertex(const Pnt3f &p, const Vec3f &n)
    {
        _positions->editField().push_back(p);
        _normals  ->editField().push_back(n);
    }

    void addVertex(const Pnt3f &p, const Vec3f &n, const Vec2f &t)
    {
        addVertex(p, n);
        addTexCoord(t);
    }

    void addTexCoord(const Vec2f &t) { _texCoords->editField().push_back(t); }

    void addPrimitive(GLenum type, UInt32 length)
    {
        _types  ->editField().push_back(UInt8(type));
        _lengths->editField().push_back(length);
    }

    void addIndex(UInt32 i) { _indices->editField().push_back(i); }

    GeometryPtr finish(UInt16 firstMapping, UInt16 secondMapping = 0)
    {
        GeometryPtr geo = Geometry::create();
        beginEditCP(geo);
        geo->setMaterial (getDefaultMaterial());
        geo->setPositions(_positions);
        geo->setNormals  (_normals);
        geo->setTexCoords(_texCoords);
        geo->setIndices  (_indices);
        geo->setTypes    (_types);
        geo->setLengths  (_lengths);
        geo->editMFIndexMapping()->push_back(firstMapping);
        if(secondMapping != 0)
            geo->editMFIndexMapping()->push_back(secondMapping);
        endEditCP(geo);
        return geo;
    }

    GeometryPtr finish(void)
    {
        return finish(Geometry::MapPosition | Geometry::MapNormal |
                      Geometry::MapTexCoords);
    }

  private:
    GeoPositions3fPtr  _positions;
    GeoNormals3fPtr    _normals;
    GeoTexCoords2fPtr  _texCoords;
    GeoIndicesUI32Ptr  _indices;
    GeoPLengthsUI32Ptr _lengths;
    GeoPTypesUI8Ptr    _types;
};

// A grid of nu x nv quads across the axes u and v of a box of `size`,
// mirrored along them by the signs, lying at `level` on the third axis.
// Texcoords follow the grid; one strip per row, the upper row first.
void addGrid(ShapeBuilder &b, const Vec3f &size, UInt32 u, UInt32 v,
             Real32 uSign, Real32 vSign, UInt16 nu, UInt16 nv,
             Real32 level, const Vec3f &normal)
{
    const UInt32 first = b.vertexCount();
    const UInt32 w     = 3 - u - v;
    const Real32 uStep = size[u] / nu;
    const Real32 vStep = size[v] / nv;

    for(UInt32 y = 0; y <= nv; ++y)
    {
        for(UInt32 x = 0; x <= nu; ++x)
        {
            Pnt3f p;
            p[u] = (x * uStep - size[u] / 2) * uSign;
            p[v] = (y * vStep - size[v] / 2) * vSign;
            p[w] = level;
            b.addVertex(p, normal, Vec2f(x / Real32(nu), y / Real32(nv)));
        }
    }

    for(UInt32 y = 0; y < nv; ++y)
    {
        b.addPrimitive(GL_TRIANGLE_STRIP, 2 * (nu + 1));
        for(UInt32 x = 0; x <= nu; ++x)
        {
            b.addIndex(first + (y + 1) * (nu + 1) + x);
            b.addIndex(first +  y      * (nu + 1) + x);
        }
    }
}

Real32 lengthOf(const Vec3f &v)
{
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

// Scales by the reciprocal, as 1.8 did; a null vector stays null.
Vec3f unitLength(const Vec3f &v)
{
    const Real32 len = lengthOf(v);
    return std::fabs(len) < Eps ? v : v * (1.f / len);
}

// t runs from the south pole to the north, s once around from -Z over
// -X, +Z and +X, as on the lat-long sphere.
Vec2f sphereTexCoord(const Vec3f &n)
{
    Real32 s = std::atan2(-n[2], n[0]) - Pi / 2;
    if(s <= -Eps)
        s += 2 * Pi;
    return Vec2f(s / (2 * Pi), (Pi - std::acos(n[1])) / Pi);
}

// An icosahedron split recursively. Triangles share no midpoints, every
// split adds its own three, so the vertex count is 12 + 20 (4^depth - 1).
// Normals and texcoords are taken from the positions, not from the unit
// directions, which turns them inwards for a negative radius and to null
// for a radius of 0: 1.8 did the same.
class IcoSphere
{
  public:
    explicit IcoSphere(Real32 radius) : _radius(radius) {}

    void addCorner(const Vec3f &v)
    {
        const Vec3f n = unitLength(v);
        const Real32 len = lengthOf(v);
        _positions.push_back(Pnt3f(v * (len == 0 ? 1 : _radius / len)));
        _normals  .push_back(n);
        _texCoords.push_back(sphereTexCoord(n));
    }

    void subdivide(UInt32 a, UInt32 b, UInt32 c, UInt32 depth)
    {
        if(depth == 0)
        {
            // Positions and texcoords: two indices per corner.
            const UInt32 corners[] = { a, a, b, b, c, c };
            _indices.insert(_indices.end(), corners, corners + 6);
            return;
        }

        const UInt32 ab = addMidpoint(a, b);
        const UInt32 bc = addMidpoint(b, c);
        const UInt32 ca = addMidpoint(c, a);

        subdivide(a,  ab, ca, depth - 1);
        subdivide(b,  bc, ab, depth - 1);
        subdivide(c,  ca, bc, depth - 1);
        subdivide(ab, bc, ca, depth - 1);
    }

    // The seam where s wraps runs along x = 0, z < 0. Its vertices carry
    // s = 0; each corner on it gets a texcoord of its own with s = 1 in a
    // triangle that does not reach into x < 0, so no face spans the whole
    // texture. Poles get s = .5 whichever side.
    void splitSeam(void)
    {
        for(UInt32 tri = 0; tri < _indices.size(); tri += 6)
        {
            Vec3f n[3];
            bool  nearSeam = false, west = false;
            for(UInt32 k = 0; k < 3; ++k)
            {
                n[k]      = _normals[_indices[tri + 2 * k]];
                nearSeam |= std::fabs(n[k][0]) <= 0.01 && n[k][2] <= Eps;
                west     |= n[k][0] <= -Eps;
            }
            if(!nearSeam)
                continue;

            for(UInt32 k = 0; k < 3; ++k)
            {
                if(!(std::fabs(n[k][0]) <= Eps && n[k][2] <= Eps))
                    continue;

                UInt32 &tex = _indices[tri + 2 * k + 1];
                Real32  s   = west ? 0.f : 1.f;
                if(std::fabs(std::fabs(n[k][1]) - 1) <= Eps)
                    s = .5f;
                _texCoords.push_back(Vec2f(s, _texCoords[tex][1]));
                tex = UInt32(_texCoords.size() - 1);
            }
        }
    }

    GeometryPtr build(void) const
    {
        ShapeBuilder b;
        for(UInt32 i = 0; i < _positions.size(); ++i)
            b.addVertex(_positions[i], _normals[i]);
        for(const Vec2f &t : _texCoords)
            b.addTexCoord(t);
        b.addPrimitive(GL_TRIANGLES, UInt32(_indices.size() / 2));
        for(UInt32 i : _indices)
            b.addIndex(i);
        return b.finish(Geometry::MapPosition | Geometry::MapNormal,
                        Geometry::MapTexCoords);
    }

  private:
    UInt32 addMidpoint(UInt32 a, UInt32 b)
    {
        // a + (b - a) / 2 rounds differently from (a + b) / 2; halving it
        // once more only moves where tiny radii count as null.
        const Pnt3f &pa = _positions[a];
        const Pnt3f  m  = pa + (_positions[b] - pa) * .5f;
        const Vec3f  n  = unitLength(Vec3f(m[0], m[1], m[2]) * .5f);

        _positions.push_back(Pnt3f(n * _radius));
        _normals  .push_back(n);
        _texCoords.push_back(sphereTexCoord(n));
        return UInt32(_positions.size() - 1);
    }

    Real32             _radius;
    std::vector<Pnt3f> _positions;
    std::vector<Vec3f> _normals;
    std::vector<Vec2f> _texCoords;
    std::vector<UInt32> _indices;
};

NodePtr nodeFor(GeometryPtr geo)
{
    return geo != NullFC ? makeNodeFor(geo) : NodePtr();
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
    addGrid(b, Vec3f(xsize, ysize, 0), 0, 1, 1, 1, hor, vert, 0, Vec3f(0, 0, 1));
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

    // +Z, -Z, +X, -X, +Y, -Y. Seen from outside, s runs to the right on
    // every face; t runs up on the sides, towards -Z on the top and
    // towards +Z on the bottom.
    struct Face
    {
        UInt32 u, v;
        Real32 uSign, vSign;
        Vec3f  normal;
    };
    const Face faces[] =
    {
        { 0, 1,  1,  1, Vec3f( 0,  0,  1) },
        { 0, 1, -1,  1, Vec3f( 0,  0, -1) },
        { 2, 1, -1,  1, Vec3f( 1,  0,  0) },
        { 2, 1,  1,  1, Vec3f(-1,  0,  0) },
        { 0, 2,  1, -1, Vec3f( 0,  1,  0) },
        { 0, 2,  1,  1, Vec3f( 0, -1,  0) },
    };

    const Vec3f  size(xsize, ysize, zsize);
    const UInt16 steps[] = { hor, vert, depth };

    ShapeBuilder b;
    for(const Face &f : faces)
    {
        const UInt32 w = 3 - f.u - f.v;
        addGrid(b, size, f.u, f.v, f.uSign, f.vSign, steps[f.u], steps[f.v],
                f.normal[w] * size[w] / 2, f.normal);
    }
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

    const Real32 top   =  height / 2;
    const Real32 bot   = -height / 2;
    const Real32 delta = 2.f * Pi / sides;
    const Real32 slope = (botradius - topradius) / height;
    // The side normals are (x, slope, z) divided by this, i.e. scaled up
    // by sqrt(1 + slope^2) rather than down: not unit length on a slant.
    const Real32 shrink = 1.f / std::sqrt(1 + slope * slope);

    ShapeBuilder b;

    // The angle starts at -Z and turns towards +X.
    auto sinAt = [&](Int32 j) { return std::sin(j * delta); };
    auto cosAt = [&](Int32 j) { return std::cos(j * delta); };

    if(doSide)
    {
        // The top ring, then the bottom ring, each closed by a copy of its
        // first vertex for the texture seam; s runs from 1 down to 0.
        const UInt32 first = b.vertexCount();
        const Real32 rows[2][3] = { { topradius, top, 1 }, { botradius, bot, 0 } };
        for(const Real32 *row : rows)
        {
            for(Int32 j = 0; j <= sides; ++j)
            {
                const Real32 x = sinAt(j), z = -cosAt(j);
                b.addVertex(Pnt3f(x * row[0], row[1], z * row[0]),
                            Vec3f(x / shrink, slope / shrink, z / shrink),
                            Vec2f(1.f - j / Real32(sides), row[2]));
            }
        }

        b.addPrimitive(GL_TRIANGLE_STRIP, 2 * (sides + 1));
        for(UInt32 j = 0; j <= sides; ++j)
        {
            b.addIndex(first + sides + 1 + j);
            b.addIndex(first + j);
        }
    }

    // The caps' vertices go round backwards; the top uses them in that
    // order, the bottom reversed, so that both face outwards. A cap's
    // texture is the disc seen from outside, +X to the right.
    if(doTop && topradius > 0)
    {
        const UInt32 first = b.vertexCount();
        for(Int32 j = sides - 1; j >= 0; --j)
        {
            const Real32 x = topradius * sinAt(j), z = -topradius * cosAt(j);
            b.addVertex(Pnt3f(x, top, z), Vec3f(0, 1, 0),
                        Vec2f(x / topradius / 2 + .5f, -z / topradius / 2 + .5f));
        }

        b.addPrimitive(GL_POLYGON, sides);
        for(UInt32 j = 0; j < sides; ++j)
            b.addIndex(first + j);
    }

    if(doBottom && botradius > 0)
    {
        const UInt32 first = b.vertexCount();
        for(Int32 j = sides - 1; j >= 0; --j)
        {
            const Real32 x = botradius * sinAt(j), z = -botradius * cosAt(j);
            b.addVertex(Pnt3f(x, bot, z), Vec3f(0, -1, 0),
                        Vec2f(x / botradius / 2 + .5f, z / botradius / 2 + .5f));
        }

        b.addPrimitive(GL_POLYGON, sides);
        for(UInt32 j = 0; j < sides; ++j)
            b.addIndex(first + sides - 1 - j);
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

    // (rings + 1) x (sides + 1) vertices, the last of each row and column
    // repeating the first for the texture. The angles are summed step by
    // step, not multiplied out, which shifts them by a few ulps.
    const Real32 ringDelta = 2.f * Pi / rings;
    const Real32 sideDelta = 2.f * Pi / sides;

    ShapeBuilder b;
    Real32 theta = 0;
    for(UInt32 a = 0; a <= rings; ++a, theta += ringDelta)
    {
        const Real32 cosTheta = std::cos(theta), sinTheta = std::sin(theta);
        Real32 phi = 0;
        for(UInt32 c = 0; c <= sides; ++c, phi += sideDelta)
        {
            const Real32 cosPhi = std::cos(phi), sinPhi = std::sin(phi);
            const Real32 dist   = outerRadius + innerRadius * cosPhi;
            // s runs from 0 down to -1 around the ring.
            b.addVertex(Pnt3f(cosTheta * dist, -sinTheta * dist, innerRadius * sinPhi),
                        Vec3f(cosTheta * cosPhi, -sinTheta * cosPhi, sinPhi),
                        Vec2f(-Int32(a) / Real32(rings), c / Real32(sides)));
        }
    }

    // One strip per step around the tube, running once around the ring.
    for(UInt32 c = 0; c < sides; ++c)
    {
        b.addPrimitive(GL_TRIANGLE_STRIP, 2 * (rings + 1));
        for(UInt32 a = 0; a <= rings; ++a)
        {
            b.addIndex(a * (sides + 1) + c);
            b.addIndex(a * (sides + 1) + c + 1);
        }
    }
    return b.finish();
}

GeometryPtr makeSphereGeo(UInt16 depth, Real32 radius)
{
    // The classic unit icosahedron, (+-a, 0, +-c) and its cyclic shifts,
    // turned about Y so that the first corner lies on +X.
    const Real32 a = .525731112119133606f;
    const Real32 c = .850650808352039932f;
    Vec3f corners[] =
    {
        Vec3f(-a, 0,  c), Vec3f( a, 0,  c), Vec3f(-a, 0, -c), Vec3f( a, 0, -c),
        Vec3f( 0, c,  a), Vec3f( 0, c, -a), Vec3f( 0, -c, a), Vec3f( 0, -c, -a),
        Vec3f( c, a,  0), Vec3f(-c, a,  0), Vec3f( c, -a, 0), Vec3f(-c, -a, 0)
    };
    const UInt32 faces[20][3] =
    {
        { 1,  4,  0 }, {  4, 9, 0 }, {  4, 5,  9 }, { 8, 5,  4 }, {  1, 8, 4 },
        { 1, 10,  8 }, { 10, 3, 8 }, {  8, 3,  5 }, { 3, 2,  5 }, {  3, 7, 2 },
        { 3, 10,  7 }, { 10, 6, 7 }, {  6, 11, 7 }, { 6, 0, 11 }, {  6, 1, 0 },
        { 10, 1,  6 }, { 11, 0, 9 }, {  2, 11, 9 }, { 5, 2,  9 }, { 11, 2, 7 }
    };

    Matrix turn;
    turn.setTransform(Quaternion(Vec3f(0, 1, 0), std::acos(c) + Pi / 2));

    IcoSphere sphere(radius);
    for(Vec3f &v : corners)
    {
        turn.mult(v, v);
        sphere.addCorner(v);
    }
    for(const UInt32 *f : faces)
        sphere.subdivide(f[0], f[1], f[2], depth);
    sphere.splitSeam();
    return sphere.build();
}

GeometryPtr makeLatLongSphereGeo(UInt16 latres, UInt16 longres, Real32 radius)
{
    if(radius <= 0 || latres < 4 || longres < 4)
    {
        SWARNING << "makeLatLongSphereGeo: illegal parameters radius " << radius
                 << ", resolution " << latres << " x " << longres << std::endl;
        return NullFC;
    }

    // From the south pole up, each row from -Z round over -X, +Z and +X
    // back to -Z; the angles are summed step by step.
    const Real32 latDelta  = Pi / latres;
    const Real32 longDelta = 2.f * Pi / longres;

    ShapeBuilder b;
    Real32 theta = -Pi / 2;
    for(UInt32 a = 0; a <= latres; ++a, theta += latDelta)
    {
        const Real32 cosTheta = std::cos(theta), sinTheta = std::sin(theta);
        Real32 phi = -Pi;
        for(UInt32 c = 0; c <= longres; ++c, phi += longDelta)
        {
            const Real32 cosPhi = std::cos(phi), sinPhi = std::sin(phi);
            b.addVertex(Pnt3f(cosTheta * sinPhi * radius, sinTheta * radius,
                              cosTheta * cosPhi * radius),
                        Vec3f(cosTheta * sinPhi, sinTheta, cosTheta * cosPhi),
                        Vec2f(c / Real32(longres), a / Real32(latres)));
        }
    }

    // One strip per column, from pole to pole.
    for(UInt32 c = 0; c < longres; ++c)
    {
        b.addPrimitive(GL_TRIANGLE_STRIP, 2 * (latres + 1));
        for(UInt32 a = 0; a <= latres; ++a)
        {
            b.addIndex(a * (longres + 1) + c);
            b.addIndex(a * (longres + 1) + c + 1);
        }
    }
    return b.finish();
}

NodePtr makePlane(Real32 xsize, Real32 ysize, UInt16 hor, UInt16 vert)
{
    return nodeFor(makePlaneGeo(xsize, ysize, hor, vert));
}

NodePtr makeBox(Real32 xsize, Real32 ysize, Real32 zsize,
                UInt16 hor, UInt16 vert, UInt16 depth)
{
    return nodeFor(makeBoxGeo(xsize, ysize, zsize, hor, vert, depth));
}

NodePtr makeCone(Real32 height, Real32 botradius, UInt16 sides, bool doSide, bool doBottom)
{
    return nodeFor(makeConeGeo(height, botradius, sides, doSide, doBottom));
}

NodePtr makeCylinder(Real32 height, Real32 radius, UInt16 sides,
                     bool doSide, bool doTop, bool doBottom)
{
    return nodeFor(makeCylinderGeo(height, radius, sides, doSide, doTop, doBottom));
}

NodePtr makeConicalFrustum(Real32 height, Real32 topradius, Real32 botradius,
                           UInt16 sides, bool doSide, bool doTop, bool doBottom)
{
    return nodeFor(makeConicalFrustumGeo(height, topradius, botradius, sides,
                                         doSide, doTop, doBottom));
}

NodePtr makeTorus(Real32 innerRadius, Real32 outerRadius, UInt16 sides, UInt16 rings)
{
    return nodeFor(makeTorusGeo(innerRadius, outerRadius, sides, rings));
}

NodePtr makeSphere(UInt16 depth, Real32 radius)
{
    return nodeFor(makeSphereGeo(depth, radius));
}

NodePtr makeLatLongSphere(UInt16 latres, UInt16 longres, Real32 radius)
{
    return nodeFor(makeLatLongSphereGeo(latres, longres, radius));
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
