#ifndef _OSGLINEITERATOR_H_
#define _OSGLINEITERATOR_H_

#include <OpenSG/OSGPrimitiveIterator.h>

namespace osg
{

// Walks the line segments a geometry draws: pairs of GL_LINES, consecutive
// vertices of strips and loops (a loop closes back to its first vertex);
// points and faces give none.
class LineIterator : public PrimitiveIterator
{
  public:
    LineIterator(void);
    explicit LineIterator(const GeometryPtr &geo);
    explicit LineIterator(const NodePtr &node);

    void setToBegin(void);
    void setToEnd  (void);

    // The segment's number, counted over the geometry.
    Int32 getIndex(void) const { return Int32(_lineIndex); }
    // The primitive the segment belongs to.
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

    bool operator ==(const LineIterator &other) const;
    bool operator !=(const LineIterator &other) const { return !(*this == other); }

  protected:
    // With face edges the outlines of the faces count too.
    explicit LineIterator(bool faceEdges);

  private:
    void findSegment(void);

    bool   _faceEdges;
    UInt32 _lineIndex;
    UInt32 _primLine;     // segment within the primitive
    Int32  _end[2];       // vertices of the primitive joined by the segment
};

} // namespace osg

// Geometry's beginEdges needs it complete.
#include <OpenSG/OSGEdgeIterator.h>

#endif
