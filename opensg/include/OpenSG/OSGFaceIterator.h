#ifndef _OSGFACEITERATOR_H_
#define _OSGFACEITERATOR_H_

#include <OpenSG/OSGPrimitiveIterator.h>

namespace osg
{

// Walks the faces a geometry draws: quads (of GL_QUADS and GL_QUAD_STRIP)
// as faces of length 4, everything else as triangles of length 3.
class FaceIterator : public PrimitiveIterator
{
  public:
    FaceIterator(void);
    explicit FaceIterator(const GeometryPtr &geo);
    explicit FaceIterator(const NodePtr &node);

    void setToBegin(void);
    void setToEnd  (void);

    Int32  getIndex (void) const { return Int32(_faceIndex); }
    UInt32 getLength(void) const { return _faceLength; }

    void operator ++(void);
    void seek(Int32 index);

    Int32   getPositionIndex (Int32 which) const;
    Pnt3f   getPosition      (Int32 which) const;
    Int32   getNormalIndex   (Int32 which) const;
    Vec3f   getNormal        (Int32 which) const;
    Int32   getTexCoordsIndex(Int32 which) const;
    Vec2f   getTexCoords     (Int32 which) const;

    bool operator ==(const FaceIterator &other) const;
    bool operator !=(const FaceIterator &other) const { return !(*this == other); }

  private:
    void findFace(void);

    UInt32 _faceIndex;
    UInt32 _primFace;
    UInt32 _faceLength;
    Int32  _corner[4];
};

} // namespace osg

#endif
