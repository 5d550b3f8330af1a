#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <OpenSG/OSGLineIterator.h>
#include <OpenSG/OSGEdgeIterator.h>

#include <gtest/gtest.h>

#include <array>
#include <vector>

using namespace osg;

namespace
{

struct Primitive { GLenum type; UInt32 length; };

// Every kind of primitive in one geometry; position i is (i, 0, 0), so a
// position's x tells which vertex it is.
const Primitive s_primitives[] = {
    { GL_TRIANGLES,      6 },
    { GL_TRIANGLE_STRIP, 5 },
    { GL_TRIANGLE_FAN,   5 },
    { GL_QUADS,          4 },
    { GL_QUAD_STRIP,     6 },
    { GL_POLYGON,        4 },
    { GL_LINES,          2 },
    { GL_POINTS,         1 },
    { GL_LINE_STRIP,     3 },
    { GL_LINE_LOOP,      3 },
};

// The triangles GL draws for them, as vertex numbers, in GL's winding.
const std::vector<std::array<int, 3> > s_triangles = {
    { 0, 1, 2 }, { 3, 4, 5 },                                 // triangles
    { 6, 7, 8 }, { 8, 7, 9 }, { 8, 9, 10 },                   // strip
    { 11, 12, 13 }, { 11, 13, 14 }, { 11, 14, 15 },           // fan
    { 16, 17, 18 }, { 16, 18, 19 },                           // quad
    { 20, 21, 22 }, { 22, 21, 23 }, { 22, 23, 24 }, { 24, 23, 25 },  // quad strip
    { 26, 27, 28 }, { 26, 28, 29 },                           // polygon
};

GeometryPtr makeAllPrimitives(bool indexed)
{
    GeoPTypesUI8Ptr    types   = GeoPTypesUI8::create();
    GeoPLengthsUI32Ptr lengths = GeoPLengthsUI32::create();
    UInt32 total = 0;
    for(const Primitive &p : s_primitives)
    {
        types->push_back(UInt8(p.type));
        lengths->push_back(p.length);
        total += p.length;
    }

    GeoPositions3fPtr positions = GeoPositions3f::create();
    GeoTexCoords2fPtr texCoords = GeoTexCoords2f::create();
    for(UInt32 i = 0; i < total; ++i)
    {
        positions->push_back(Pnt3f(Real32(i), 0, 0));
        texCoords->push_back(Vec2f(Real32(i), 1));
    }

    GeometryPtr geo = Geometry::create();
    beginEditCP(geo);
    geo->setTypes(types);
    geo->setLengths(lengths);
    geo->setPositions(positions);
    geo->setTexCoords(texCoords);
    if(indexed)
    {
        // Vertex v uses position v and texcoord total-1-v, in two
        // interleaved indices.
        GeoIndicesUI32Ptr indices = GeoIndicesUI32::create();
        for(UInt32 v = 0; v < total; ++v)
        {
            indices->push_back(v);
            indices->push_back(total - 1 - v);
        }
        geo->setIndices(indices);
        geo->getIndexMapping().push_back(Geometry::MapPosition);
        geo->getIndexMapping().push_back(Geometry::MapTexCoords);
    }
    endEditCP(geo);
    return geo;
}

class GeometryIterators : public ::testing::TestWithParam<bool> {};

TEST_P(GeometryIterators, TrianglesFollowGLsDecompositionOfEveryPrimitive)
{
    GeometryPtr geo = makeAllPrimitives(GetParam());
    addRefCP(geo);
    const Real32 total = 39;   // vertices of s_primitives

    size_t n = 0;
    for(TriangleIterator it = geo->beginTriangles(); it != geo->endTriangles(); ++it, ++n)
    {
        ASSERT_LT(n, s_triangles.size());
        EXPECT_EQ(it.getIndex(), Int32(n));
        for(Int32 c = 0; c < 3; ++c)
        {
            const int vertex = s_triangles[n][size_t(c)];
            EXPECT_EQ(it.getPositionIndex(c), vertex) << "triangle " << n << " corner " << c;
            EXPECT_EQ(it.getPosition(c), Pnt3f(Real32(vertex), 0, 0));
            const Real32 s = GetParam() ? total - 1 - Real32(vertex) : Real32(vertex);
            EXPECT_EQ(it.getTexCoords(c), Vec2f(s, 1));
            EXPECT_EQ(it.getNormalIndex(c), -1);
        }
    }
    EXPECT_EQ(n, s_triangles.size());
    EXPECT_EQ(UInt32(n), geo->countTriangles());

    TriangleIterator seeker = geo->beginTriangles();
    seeker.seek(9);
    EXPECT_EQ(seeker.getPositionIndex(0), 16);
    EXPECT_EQ(seeker.getPrimitiveIndex(), 3);
    subRefCP(geo);
}

TEST_P(GeometryIterators, PrimitivesAndFacesWalkTheSameGeometry)
{
    GeometryPtr geo = makeAllPrimitives(GetParam());
    addRefCP(geo);

    size_t n = 0;
    UInt32 first = 0;
    for(PrimitiveIterator it = geo->beginPrimitives(); it != geo->endPrimitives(); ++it, ++n)
    {
        ASSERT_LT(n, std::size(s_primitives));
        EXPECT_EQ(it.getType(),   s_primitives[n].type);
        EXPECT_EQ(it.getLength(), s_primitives[n].length);
        EXPECT_EQ(it.getPositionIndex(0), Int32(first));
        first += s_primitives[n].length;
    }
    EXPECT_EQ(n, std::size(s_primitives));

    // Quads stay whole; the quad strip gives quads 20-21-23-22, 22-23-25-24.
    std::vector<std::vector<Int32> > faces;
    for(FaceIterator it = geo->beginFaces(); it != geo->endFaces(); ++it)
    {
        std::vector<Int32> face;
        for(UInt32 c = 0; c < it.getLength(); ++c)
            face.push_back(it.getPositionIndex(Int32(c)));
        faces.push_back(face);
    }
    ASSERT_EQ(faces.size(), 13u);
    EXPECT_EQ(faces[8],  (std::vector<Int32>{ 16, 17, 18, 19 }));
    EXPECT_EQ(faces[9],  (std::vector<Int32>{ 20, 21, 23, 22 }));
    EXPECT_EQ(faces[10], (std::vector<Int32>{ 22, 23, 25, 24 }));
    EXPECT_EQ(faces[11], (std::vector<Int32>{ 26, 27, 28 }));
    subRefCP(geo);
}

// Lines give their segments; edges add every face's outline in its
// winding, so a wireframe walk sees what GL draws in line mode.
TEST_P(GeometryIterators, LinesAndEdgesJoinTheVerticesGLJoins)
{
    typedef std::pair<Int32, Int32> Segment;
    const std::vector<Segment> lines = {
        { 30, 31 }, { 33, 34 }, { 34, 35 }, { 36, 37 }, { 37, 38 }, { 38, 36 } };

    std::vector<Segment> edges;
    auto outline = [&edges](std::vector<Int32> face)
    {
        for(size_t c = 0; c < face.size(); ++c)
            edges.push_back(Segment(face[c], face[(c + 1) % face.size()]));
    };
    for(size_t t = 0; t < 8; ++t)   // triangles, strip and fan
        outline({ s_triangles[t][0], s_triangles[t][1], s_triangles[t][2] });
    outline({ 16, 17, 18, 19 });
    outline({ 20, 21, 23, 22 });
    outline({ 22, 23, 25, 24 });
    outline({ 26, 27, 28, 29 });
    edges.insert(edges.end(), lines.begin(), lines.end());

    GeometryPtr geo = makeAllPrimitives(GetParam());
    addRefCP(geo);
    const Real32 total = 39;

    auto walk = [total](auto it, auto end, const std::vector<Segment> &expected)
    {
        size_t n = 0;
        for(; it != end; ++it, ++n)
        {
            ASSERT_LT(n, expected.size());
            EXPECT_EQ(it.getIndex(), Int32(n));
            const Int32 ends[2] = { expected[n].first, expected[n].second };
            for(Int32 e = 0; e < 2; ++e)
            {
                EXPECT_EQ(it.getPositionIndex(e), ends[e]) << "segment " << n << " end " << e;
                EXPECT_EQ(it.getPosition(e), Pnt3f(Real32(ends[e]), 0, 0));
                const Real32 s = GetParam() ? total - 1 - Real32(ends[e]) : Real32(ends[e]);
                EXPECT_EQ(it.getTexCoords(e), Vec2f(s, 1));
            }
            EXPECT_EQ(it.getPositionIndex(2), -1);
        }
        EXPECT_EQ(n, expected.size());
    };
    {
        SCOPED_TRACE("lines");
        walk(geo->beginLines(), geo->endLines(), lines);
    }
    {
        SCOPED_TRACE("edges");
        walk(geo->beginEdges(), geo->endEdges(), edges);
    }

    LineIterator seeker = geo->beginLines();
    seeker.seek(5);
    EXPECT_EQ(seeker.getPositionIndex(1), 36);
    EXPECT_EQ(seeker.getPrimitiveIndex(), 9);
    subRefCP(geo);
}

INSTANTIATE_TEST_SUITE_P(Geometry, GeometryIterators, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool> &info)
                         { return info.param ? "Indexed" : "Direct"; });

} // namespace
