#ifndef _OSGPRIMITIVEITERATOR_H_
#define _OSGPRIMITIVEITERATOR_H_

#include <OpenSG/OSGMaterialDrawable.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>

namespace osg
{

// Declared here as in OSGGeometry.h, which includes the iterators after
// the geometry and is included after them here.
OSG_FC_PTR_DECL(Geometry, MaterialDrawablePtr)

// Walks the primitives of a geometry in order. Vertex `which` of the
// current primitive is resolved through the geometry's indices and index
// mapping; an attribute the geometry lacks has index -1.
class PrimitiveIterator
{
  public:
    PrimitiveIterator(void);
    explicit PrimitiveIterator(const GeometryPtr &geo);
    explicit PrimitiveIterator(const NodePtr &node);

    void setGeo    (const GeometryPtr &geo);
    void setGeo    (const NodePtr &node);
    void setToBegin(void);
    void setToEnd  (void);

    bool  isAtEnd (void) const { return _ended; }
    Int32 getIndex(void) const { return Int32(_primIndex); }
    UInt32 getType  (void) const { return _type;   }
    UInt32 getLength(void) const { return _length; }
    GeometryPtr getGeometry(void) const { return _geo; }

    void operator ++(void);
    void seek(Int32 index);

    // Where vertex `which` of the primitive sits in the index property
    // (per mapping group), and the attribute indices it resolves to.
    Int32   getIndexIndex         (Int32 which) const;
    Int32   getPositionIndex      (Int32 which) const;
    Pnt3f   getPosition           (Int32 which) const;
    Int32   getNormalIndex        (Int32 which) const;
    Vec3f   getNormal             (Int32 which) const;
    Int32   getColorIndex         (Int32 which) const;
    Color3f getColor              (Int32 which) const;
    Int32   getSecondaryColorIndex(Int32 which) const;
    Color3f getSecondaryColor     (Int32 which) const;
    Int32   getTexCoordsIndex     (Int32 which) const;
    Vec2f   getTexCoords          (Int32 which) const;
    Int32   getTexCoordsIndex1    (Int32 which) const;
    Vec2f   getTexCoords1         (Int32 which) const;
    Int32   getTexCoordsIndex2    (Int32 which) const;
    Vec2f   getTexCoords2         (Int32 which) const;
    Int32   getTexCoordsIndex3    (Int32 which) const;
    Vec2f   getTexCoords3         (Int32 which) const;

    bool operator ==(const PrimitiveIterator &other) const;
    bool operator !=(const PrimitiveIterator &other) const { return !(*this == other); }

  protected:
    // Attribute index of vertex slot `slot` (counted over all primitives).
    Int32 attributeIndex(UInt16 mapBit, UInt32 slot) const;
    Int32 slotIndex     (UInt16 mapBit, Int32 which) const;
    void  readPrimitive (void);

    GeometryPtr _geo;
    UInt32      _primIndex;
    UInt32      _firstSlot;   // slot of the primitive's first vertex
    UInt32      _type;
    UInt32      _length;
    UInt32      _numPrims;
    UInt32      _totalSlots;  // vertices of a geometry without lengths
    bool        _ended;
};

} // namespace osg

#include <OpenSG/OSGGeometry.h>

#endif
