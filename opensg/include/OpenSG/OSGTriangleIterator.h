#ifndef _OSGTRIANGLEITERATOR_H_
#define _OSGTRIANGLEITERATOR_H_

#include <OpenSG/OSGPrimitiveIterator.h>

namespace osg
{

// Walks the triangles a geometry draws: strips and fans split with GL's
// winding, quads and polygons as fans; points and lines give none.
class TriangleIterator : public PrimitiveIterator
{
  public:
    TriangleIterator(void);
    explicit TriangleIterator(const GeometryPtr &geo);
    explicit TriangleIterator(const NodePtr &node);

    void setToBegin(void);
    void setToEnd  (void);

    // The triangle's number, counted over the geometry.
    Int32 getIndex(void) const { return Int32(_triIndex); }
    // The primitive the triangle belongs to.
    Int32 getPrimitiveIndex(void) const { return PrimitiveIterator::getIndex(); }

    void operator ++(void);
    void seek(Int32 index);

    Int32   getIndexIndex    (Int32 which) const;
    Int32   getPositionIndex (Int32 which) const;
    Pnt3f   getPosition      (Int32 which) const;
    Int32   getNormalIndex   (Int32 which) const;
    Vec3f   getNormal        (Int32 which) const;
    Int32   getColorIndex    (Int32 which) const;
    Color3f getColor         (Int32 which) const;
    Int32   getTexCoordsIndex(Int32 which) const;
    Vec2f   getTexCoords     (Int32 which) const;

    bool operator ==(const TriangleIterator &other) const;
    bool operator !=(const TriangleIterator &other) const { return !(*this == other); }

  private:
    void findTriangle(void);

    UInt32 _triIndex;
    UInt32 _primTri;      // triangle within the primitive
    Int32  _corner[3];    // vertices of the primitive making the triangle
};

} // namespace osg

#endif
