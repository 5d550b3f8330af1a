#ifndef _OSGGEOMETRY_H_
#define _OSGGEOMETRY_H_

#include <OpenSG/OSGMaterialDrawable.h>
#include <OpenSG/OSGGeoProperty.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGCoredNodePtr.h>

#include <vector>

namespace osg
{

class PrimitiveIterator;
class TriangleIterator;
class FaceIterator;
class LineIterator;
class EdgeIterator;

OSG_FC_PTR_DECL(Geometry, MaterialDrawablePtr)

class Geometry : public MaterialDrawable
{
    OSG_FC_DECL(Geometry, MaterialDrawable)

  public:
    enum
    {
        TypesFieldId             = Inherited::NextFieldId,
        LengthsFieldId           = TypesFieldId             + 1,
        PositionsFieldId         = LengthsFieldId           + 1,
        NormalsFieldId           = PositionsFieldId         + 1,
        ColorsFieldId            = NormalsFieldId           + 1,
        SecondaryColorsFieldId   = ColorsFieldId            + 1,
        TexCoordsFieldId         = SecondaryColorsFieldId   + 1,
        TexCoords1FieldId        = TexCoordsFieldId         + 1,
        TexCoords2FieldId        = TexCoords1FieldId        + 1,
        TexCoords3FieldId        = TexCoords2FieldId        + 1,
        TexCoords4FieldId        = TexCoords3FieldId        + 1,
        TexCoords5FieldId        = TexCoords4FieldId        + 1,
        TexCoords6FieldId        = TexCoords5FieldId        + 1,
        TexCoords7FieldId        = TexCoords6FieldId        + 1,
        IndicesFieldId           = TexCoords7FieldId        + 1,
        IndexMappingFieldId      = IndicesFieldId           + 1,
        DlistCacheFieldId        = IndexMappingFieldId      + 1,
        GLIdFieldId              = DlistCacheFieldId        + 1,
        IgnoreGLForAspectFieldId = GLIdFieldId              + 1,
        MinindexFieldId          = IgnoreGLForAspectFieldId + 1,
        MaxindexFieldId          = MinindexFieldId          + 1,
        LowindicesFieldId        = MaxindexFieldId          + 1,
        HighindicesFieldId       = LowindicesFieldId        + 1,
        VboFieldId               = HighindicesFieldId       + 1,
        NextFieldId              = VboFieldId               + 1
    };
    OSG_FIELD_MASK(Types)
    OSG_FIELD_MASK(Lengths)
    OSG_FIELD_MASK(Positions)
    OSG_FIELD_MASK(Normals)
    OSG_FIELD_MASK(Colors)
    OSG_FIELD_MASK(SecondaryColors)
    OSG_FIELD_MASK(TexCoords)
    OSG_FIELD_MASK(TexCoords1)
    OSG_FIELD_MASK(TexCoords2)
    OSG_FIELD_MASK(TexCoords3)
    OSG_FIELD_MASK(TexCoords4)
    OSG_FIELD_MASK(TexCoords5)
    OSG_FIELD_MASK(TexCoords6)
    OSG_FIELD_MASK(TexCoords7)
    OSG_FIELD_MASK(Indices)
    OSG_FIELD_MASK(IndexMapping)
    OSG_FIELD_MASK(DlistCache)
    OSG_FIELD_MASK(GLId)
    OSG_FIELD_MASK(IgnoreGLForAspect)
    OSG_FIELD_MASK(Minindex)
    OSG_FIELD_MASK(Maxindex)
    OSG_FIELD_MASK(Lowindices)
    OSG_FIELD_MASK(Highindices)
    OSG_FIELD_MASK(Vbo)

    OSG_SFIELD_NOSET(SFGeoPTypesPtr,    Types)
    OSG_SFIELD_NOSET(SFGeoPLengthsPtr,  Lengths)
    OSG_SFIELD_NOSET(SFGeoPositionsPtr, Positions)
    OSG_SFIELD_NOSET(SFGeoNormalsPtr,   Normals)
    OSG_SFIELD_NOSET(SFGeoColorsPtr,    Colors)
    OSG_SFIELD_NOSET(SFGeoColorsPtr,    SecondaryColors)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords1)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords2)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords3)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords4)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords5)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords6)
    OSG_SFIELD_NOSET(SFGeoTexCoordsPtr, TexCoords7)
    OSG_SFIELD_NOSET(SFGeoIndicesPtr,   Indices)
    OSG_MFIELD      (MFUInt16,          IndexMapping)
    OSG_SFIELD      (SFBool,            DlistCache)
    OSG_SFIELD      (SFInt32,           GLId)
    OSG_SFIELD      (SFInt32,           IgnoreGLForAspect)
    OSG_SFIELD      (SFUInt32,          Minindex)
    OSG_SFIELD      (SFUInt32,          Maxindex)
    OSG_MFIELD      (MFUInt32,          Lowindices)
    OSG_MFIELD      (MFUInt32,          Highindices)
    OSG_SFIELD      (SFBool,            Vbo)

  public:
    static constexpr UInt16 MapPosition       = 1;
    static constexpr UInt16 MapNormal         = MapPosition << 1;
    static constexpr UInt16 MapColor          = MapNormal << 1;
    static constexpr UInt16 MapSecondaryColor = MapColor << 1;
    static constexpr UInt16 MapTexCoords      = MapSecondaryColor << 1;
    static constexpr UInt16 MapTexCoords1     = MapTexCoords << 1;
    static constexpr UInt16 MapTexCoords2     = MapTexCoords1 << 1;
    static constexpr UInt16 MapTexCoords3     = MapTexCoords2 << 1;
    static constexpr UInt16 MapTexCoords4     = MapTexCoords3 << 1;
    static constexpr UInt16 MapTexCoords5     = MapTexCoords4 << 1;
    static constexpr UInt16 MapTexCoords6     = MapTexCoords5 << 1;
    static constexpr UInt16 MapTexCoords7     = MapTexCoords6 << 1;
    static constexpr UInt16 MapEmpty          = MapTexCoords7 << 1;

    // These reference the new property, release the old one and keep the
    // property's Parents up to date.
    void setTypes          (const GeoPTypesPtr    &value);
    void setLengths        (const GeoPLengthsPtr  &value);
    void setPositions      (const GeoPositionsPtr &value);
    void setNormals        (const GeoNormalsPtr   &value);
    void setColors         (const GeoColorsPtr    &value);
    void setSecondaryColors(const GeoColorsPtr    &value);
    void setTexCoords      (const GeoTexCoordsPtr &value);
    void setTexCoords1     (const GeoTexCoordsPtr &value);
    void setTexCoords2     (const GeoTexCoordsPtr &value);
    void setTexCoords3     (const GeoTexCoordsPtr &value);
    void setTexCoords4     (const GeoTexCoordsPtr &value);
    void setTexCoords5     (const GeoTexCoordsPtr &value);
    void setTexCoords6     (const GeoTexCoordsPtr &value);
    void setTexCoords7     (const GeoTexCoordsPtr &value);
    void setIndices        (const GeoIndicesPtr   &value);

    // Index of the IndexMapping entry that contains attrib, -1 if none.
    Int16 calcMappingIndex(UInt16 attrib) const;

    // A new geometry with copies of all properties and the same material.
    GeometryPtr clone(void);

    PrimitiveIterator beginPrimitives(void) const;
    PrimitiveIterator endPrimitives  (void) const;
    TriangleIterator  beginTriangles (void) const;
    TriangleIterator  endTriangles   (void) const;
    FaceIterator      beginFaces     (void) const;
    FaceIterator      endFaces       (void) const;
    LineIterator      beginLines     (void) const;
    LineIterator      endLines       (void) const;
    EdgeIterator      beginEdges     (void) const;
    EdgeIterator      endEdges       (void) const;

    virtual Action::ResultE drawPrimitives(DrawActionBase *action) override;

    void invalidateDlistCache(void);

    // Runtime extension: the triangles drawing would produce (points and
    // lines count none), for statistics.
    UInt32 countTriangles(void) const;

  private:
    void countPrimitives(UInt32 &triangles, UInt32 &lines, UInt32 &points,
                         UInt32 &vertices, UInt32 &primitives) const;

  public:

    virtual void changed(BitVector whichField, UInt32 origin) override;
    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const override;

    static void initMethod(void);

  protected:
    friend void geoPropertyDataChanged(Attachment *property);

    Geometry(void);
    Geometry(const Geometry &source);
    virtual ~Geometry(void);

    void onCreate(const Geometry *source = NULL);
    virtual void onDestroy(void) override;

    virtual void adjustVolume(Volume &volume) override;

    Action::ResultE renderEnter(Action *action);
    Action::ResultE renderLeave(Action *action);

  private:
    enum { NumAttributes = 12 };

    template <class PtrT>
    void setProperty(SField<PtrT> &field, const PtrT &value);

    struct AttributeView
    {
        UInt8  *data;
        UInt32  format;
        UInt32  dimension;
        UInt32  elementSize;
        UInt32  size;
    };

    bool      getAttribute (UInt32 slot, AttributeView &view) const;
    BitVector fieldsHolding(const FieldContainerPtr &property) const;
    void      releaseProperties(void);
    void      updateCache  (void);

    // Per-vertex copies of the attributes, built when IndexMapping has
    // several entries, kept until the geometry changes.
    bool                 _cacheValid;
    UInt32               _cacheVertices;
    UInt32               _cacheMaxIndex;
    std::vector<UInt8>   _expanded[NumAttributes];
};

typedef RefPtr<GeometryPtr>    GeometryRefPtr;
typedef CoredNodePtr<Geometry> GeometryNodePtr;

} // namespace osg

#include <OpenSG/OSGPrimitiveIterator.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <OpenSG/OSGFaceIterator.h>
#include <OpenSG/OSGLineIterator.h>

#endif
