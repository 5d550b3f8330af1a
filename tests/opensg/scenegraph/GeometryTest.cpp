#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <gtest/gtest.h>

#include <vector>

using namespace osg;

namespace
{

template <class PropPtr, class Value>
PropPtr makeProperty(const std::vector<Value> &values)
{
    PropPtr prop = PropPtr::StoredObjectType::create();
    beginEditCP(prop, PropPtr::StoredObjectType::GeoPropDataFieldMask);
    for(const Value &v : values)
        prop->getField().push_back(v);
    endEditCP(prop, PropPtr::StoredObjectType::GeoPropDataFieldMask);
    return prop;
}

} // namespace

TEST(GeoProperty, GenericAccessConvertsToAndFromTheStoredType)
{
    GeoColors4ubPtr colors = GeoColors4ub::create();
    addRefCP(colors);
    colors->push_back(Color3f(1, .5f, 0));
    EXPECT_EQ(colors->getField()[0], Color4ub(255, 128, 0, 255));
    EXPECT_TRUE(colors->getValue(0).equals(Color3f(1, 128 / 255.f, 0), 1e-6f));
    EXPECT_EQ(colors->getFormat(), UInt32(GL_UNSIGNED_BYTE));
    EXPECT_EQ(colors->getDimension(), 4u);
    subRefCP(colors);

    GeoPositions2sPtr pos = GeoPositions2s::create();
    addRefCP(pos);
    pos->push_back(Pnt3f(3, -4, 9));
    EXPECT_EQ(pos->getField()[0], Pnt2s(3, -4));
    EXPECT_EQ(pos->getValue(0), Pnt3f(3, -4, 0));
    EXPECT_EQ(pos->getFormat(), UInt32(GL_SHORT));
    EXPECT_EQ(pos->getFormatSize() * pos->getDimension(), 4u);
    subRefCP(pos);

    GeoPositions4fPtr hom = GeoPositions4f::create();
    addRefCP(hom);
    hom->push_back(Pnt3f(1, 2, 3));
    EXPECT_EQ(hom->getField()[0], Pnt4f(1, 2, 3, 1));
    EXPECT_TRUE(hom->insertValue(Pnt3f(7, 8, 9), 0));
    EXPECT_FALSE(hom->insertValue(Pnt3f(), 5));
    EXPECT_EQ(hom->getValue(0), Pnt3f(7, 8, 9));
    EXPECT_EQ(reinterpret_cast<Real32 *>(hom->getData())[4], 1.f);

    subRefCP(hom);

    GeoIndicesUI16Ptr indices = GeoIndicesUI16::create();
    addRefCP(indices);
    indices->push_back(65535);
    EXPECT_EQ(indices->getValue(0), 65535u);
    EXPECT_EQ(indices->getFormat(), UInt32(GL_UNSIGNED_SHORT));
    subRefCP(indices);
}

// Without lengths one primitive takes all positions; the iterator tests
// count every primitive type.
TEST(Geometry, CountTrianglesWithoutLengthsTakesAllPositions)
{
    GeometryPtr geo = Geometry::create();
    addRefCP(geo);
    beginEditCP(geo);
    geo->setPositions(makeProperty<GeoPositions3fPtr>(std::vector<Pnt3f>(12)));
    geo->setTypes(makeProperty<GeoPTypesUI8Ptr>(std::vector<UInt8>{ GL_TRIANGLES }));
    endEditCP(geo);
    EXPECT_EQ(geo->countTriangles(), 4u);
    subRefCP(geo);
}

TEST(Geometry, CloneCopiesThePropertiesAndSharesTheMaterial)
{
    MaterialPtr mat = SimpleMaterial::create();
    GeometryPtr geo = Geometry::create();
    addRefCP(geo);
    beginEditCP(geo);
    geo->setPositions(makeProperty<GeoPositions3fPtr>(std::vector<Pnt3f>{ Pnt3f(1, 2, 3) }));
    geo->setMaterial(mat);
    geo->editMFIndexMapping()->push_back(Geometry::MapPosition);
    endEditCP(geo);

    GeometryPtr copy = geo->clone();
    addRefCP(copy);
    EXPECT_NE(copy->getPositions(), geo->getPositions());
    EXPECT_EQ(copy->getPositions()->getValue(0), Pnt3f(1, 2, 3));
    EXPECT_EQ(copy->getMaterial(), mat);
    EXPECT_EQ(copy->getIndexMapping().size(), 1u);
    EXPECT_EQ(copy->calcMappingIndex(Geometry::MapPosition), 0);
    EXPECT_EQ(copy->calcMappingIndex(Geometry::MapNormal), -1);
    EXPECT_EQ(mat.getRefCount(), 2);

    subRefCP(copy);
    subRefCP(geo);
}

using GeometryDrawTest = testsupport::GLTest;

// The same picture from three layouts of the data: red left half as two
// triangles, blue right half as a strip.
TEST_F(GeometryDrawTest, AllIndexLayoutsDrawTheSamePrimitives)
{
    const Pnt3f grid[6] = { Pnt3f(-1, -1, 0), Pnt3f(0, -1, 0), Pnt3f(1, -1, 0),
                            Pnt3f(-1,  1, 0), Pnt3f(0,  1, 0), Pnt3f(1,  1, 0) };
    const Color3f blue(0, 0, 1), red(1, 0, 0);
    const UInt32 corners[10] = { 0, 1, 4,  0, 4, 3,  1, 2, 4, 5 };
    const std::vector<UInt8>  types   = { GL_TRIANGLES, GL_TRIANGLE_STRIP };
    const std::vector<UInt32> lengths = { 6, 4 };

    enum Layout { Unindexed, SingleIndex, InterleavedIndices };
    for(Layout layout : { Unindexed, SingleIndex, InterleavedIndices })
    {
        SCOPED_TRACE(layout);
        testsupport::SceneSetup setup(32, 32);

        std::vector<Pnt3f>   pos;
        std::vector<Color3f> col;
        std::vector<UInt32>  idx;
        std::vector<UInt16>  mapping;
        for(UInt32 i = 0; i < 10; ++i)
        {
            const Color3f &c = i < 6 ? red : blue;
            if(layout == Unindexed)
            {
                pos.push_back(grid[corners[i]]);
                col.push_back(c);
            }
            else if(layout == SingleIndex)
            {
                idx.push_back(UInt32(pos.size()));
                pos.push_back(grid[corners[i]]);
                col.push_back(c);
            }
            else
            {
                idx.push_back(corners[i]);
                idx.push_back(i < 6 ? 1 : 0);
            }
        }
        if(layout == InterleavedIndices)
        {
            pos.assign(grid, grid + 6);
            col = { blue, red };
            mapping = { Geometry::MapPosition, Geometry::MapColor };
        }

        GeometryPtr geo = Geometry::create();
        beginEditCP(geo);
        geo->setPositions(makeProperty<GeoPositions3fPtr>(pos));
        geo->setColors(makeProperty<GeoColors3fPtr>(col));
        geo->setTypes(makeProperty<GeoPTypesUI8Ptr>(types));
        geo->setLengths(makeProperty<GeoPLengthsUI32Ptr>(lengths));
        if(!idx.empty())
            geo->setIndices(makeProperty<GeoIndicesUI32Ptr>(idx));
        geo->editMFIndexMapping()->getValues().assign(mapping.begin(), mapping.end());
        geo->setMaterial(testsupport::makeUnlitMaterial(Color3f(0, 1, 0), 0));
        endEditCP(geo);
        testsupport::addChild(setup.root, makeNodeFor(geo));

        setup.render();

        // Unlit and untextured, the vertex colours land unchanged in 8 bits.
        for(int y : { 4, 27 })
        {
            EXPECT_EQ(testsupport::readPixelRGBA8(8, y),  (testsupport::RGBA8{ 255, 0, 0, 255 }));
            EXPECT_EQ(testsupport::readPixelRGBA8(24, y), (testsupport::RGBA8{ 0, 0, 255, 255 }));
        }
    }
}
