#ifndef _OSGGEOPROPERTY_H_
#define _OSGGEOPROPERTY_H_

#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGGeoPropPtrs.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGSFVecTypes.h>
#include <OpenSG/OSGSFBaseTypes.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGGL.h>

#include <cstddef>

namespace osg
{

// --- element access used to convert between stored and generic values -----

template <class T> struct GeoElementTraits
{
    typedef T Component;
    enum { Dim = 1 };
    static Real64 scale(void) { return 1.0; }
    static Real64 get(const T &e, UInt32) { return Real64(e); }
    static void   set(T &e, UInt32, Real64 v) { e = T(v); }
    static Real64 fill(UInt32) { return 0.0; }
};

template <class V, UInt32 N> struct GeoElementTraits<Vector<V, N> >
{
    typedef V Component;
    enum { Dim = N };
    static Real64 scale(void) { return 1.0; }
    static Real64 get(const Vector<V, N> &e, UInt32 i) { return Real64(e[i]); }
    static void   set(Vector<V, N> &e, UInt32 i, Real64 v) { e[i] = V(v); }
    static Real64 fill(UInt32) { return 0.0; }
};

// A homogeneous point gets w = 1 when filled from fewer components.
template <class V, UInt32 N> struct GeoElementTraits<Point<V, N> >
{
    typedef V Component;
    enum { Dim = N };
    static Real64 scale(void) { return 1.0; }
    static Real64 get(const Point<V, N> &e, UInt32 i) { return Real64(e[i]); }
    static void   set(Point<V, N> &e, UInt32 i, Real64 v) { e[i] = V(v); }
    static Real64 fill(UInt32 i) { return i == 3 ? 1.0 : 0.0; }
};

template <class V> struct GeoElementTraits<Color3<V> >
{
    typedef V Component;
    enum { Dim = 3 };
    static Real64 scale(void) { return ColorScale<V>::max(); }
    static Real64 get(const Color3<V> &e, UInt32 i) { return Real64(e[i]); }
    static void   set(Color3<V> &e, UInt32 i, Real64 v) { e[i] = V(v); }
    static Real64 fill(UInt32) { return 0.0; }
};

template <class V> struct GeoElementTraits<Color4<V> >
{
    typedef V Component;
    enum { Dim = 4 };
    static Real64 scale(void) { return ColorScale<V>::max(); }
    static Real64 get(const Color4<V> &e, UInt32 i) { return Real64(e[i]); }
    static void   set(Color4<V> &e, UInt32 i, Real64 v) { e[i] = V(v); }
    static Real64 fill(UInt32 i) { return i == 3 ? scale() : 0.0; }
};

// Copies the common components, rescales colours between byte and unit
// range and fills the rest with the target's defaults.
template <class ToT, class FromT>
inline ToT geoConvert(const FromT &from)
{
    typedef GeoElementTraits<FromT> FT;
    typedef GeoElementTraits<ToT>   TT;

    ToT    to;
    Real64 factor = TT::scale() / FT::scale();
    for(UInt32 i = 0; i < UInt32(TT::Dim); ++i)
    {
        Real64 v = i < UInt32(FT::Dim) ? FT::get(from, i) * factor : TT::fill(i);
        if(TT::scale() > 1.0)
            v = v < 0.0 ? 0.0 : (v > TT::scale() ? TT::scale() : v + 0.5);
        TT::set(to, i, v);
    }
    return to;
}

template <class T> struct GeoGLFormat;
template <> struct GeoGLFormat<Real32> { enum { value = GL_FLOAT          }; };
template <> struct GeoGLFormat<Real64> { enum { value = GL_DOUBLE         }; };
template <> struct GeoGLFormat<Int8  > { enum { value = GL_BYTE           }; };
template <> struct GeoGLFormat<UInt8 > { enum { value = GL_UNSIGNED_BYTE  }; };
template <> struct GeoGLFormat<Int16 > { enum { value = GL_SHORT          }; };
template <> struct GeoGLFormat<UInt16> { enum { value = GL_UNSIGNED_SHORT }; };
template <> struct GeoGLFormat<UInt32> { enum { value = GL_UNSIGNED_INT   }; };

// Tells the geometries holding a property that its data changed.
void geoPropertyDataChanged(Attachment *property);

// --- the abstract property interfaces --------------------------------------

#define OSG_GEO_PROPERTY_INTERFACE(NAME, GENERIC)                                  \
class NAME : public Attachment                                                     \
{                                                                                  \
    OSG_FC_ABSTRACT_DECL(NAME, Attachment)                                         \
                                                                                   \
  public:                                                                          \
    typedef GENERIC GenericType;                                                   \
                                                                                   \
    enum { NextFieldId = Inherited::NextFieldId };                                 \
                                                                                   \
    virtual UInt32      getFormat    (void) const = 0;                             \
    virtual UInt32      getFormatSize(void) const = 0;                             \
    virtual UInt32      getStride    (void) const = 0;                             \
    virtual UInt32      getDimension (void) const = 0;                             \
    virtual UInt32      getSize      (void) const = 0;                             \
    virtual UInt32      size         (void) const = 0;                             \
    virtual UInt8      *getData      (void) const = 0;                             \
    virtual UInt8      *editData     (void)       = 0;                             \
    virtual GenericType getValue     (const UInt32 index) const = 0;               \
    virtual void        getValue     (GenericType &val, const UInt32 index) const = 0; \
    virtual void        setValue     (const GenericType &val, const UInt32 index) = 0; \
    virtual void        addValue     (const GenericType &val) = 0;                 \
    virtual bool        insertValue  (const GenericType &val, const UInt32 index) = 0; \
    virtual void        clear        (void) = 0;                                   \
    virtual void        resize       (size_t newsize) = 0;                         \
    virtual void        push_back    (const GenericType &val) = 0;                 \
    virtual void        shrink       (void) = 0;                                   \
    virtual NAME##Ptr   clone        (void) = 0;                                   \
                                                                                   \
    static void initMethod(void) {}                                                \
                                                                                   \
  protected:                                                                       \
    NAME(void) : Inherited() {}                                                    \
    NAME(const NAME &source) : Inherited(source) {}                                \
    virtual ~NAME(void) {}                                                         \
};

OSG_GEO_PROPERTY_INTERFACE(GeoPositions, Pnt3f)
OSG_GEO_PROPERTY_INTERFACE(GeoNormals,   Vec3f)
OSG_GEO_PROPERTY_INTERFACE(GeoColors,    Color3f)
OSG_GEO_PROPERTY_INTERFACE(GeoTexCoords, Vec2f)
OSG_GEO_PROPERTY_INTERFACE(GeoIndices,   UInt32)
OSG_GEO_PROPERTY_INTERFACE(GeoPTypes,    UInt8)
OSG_GEO_PROPERTY_INTERFACE(GeoPLengths,  UInt32)

#undef OSG_GEO_PROPERTY_INTERFACE

// --- the concrete property: one multi field of StoredFieldType --------------

template <class DescT>
class GeoProperty : public DescT::Inherit
{
  public:
    typedef typename DescT::Inherit                Inherited;
    typedef typename DescT::InheritPtr             InheritedPtr;
    typedef GeoProperty<DescT>                     Self;
    typedef FCPtr<InheritedPtr, Self>              PtrType;
    typedef PtrType                                Ptr;
    typedef typename DescT::StoredFieldType        StoredFieldType;
    typedef typename StoredFieldType::StoredType   StoredType;
    typedef typename Inherited::GenericType        GenericType;
    typedef GeoElementTraits<StoredType>           ElementTraits;
    typedef typename ElementTraits::Component      Component;

    enum
    {
        GeoPropDataFieldId = Inherited::NextFieldId,
        NextFieldId        = GeoPropDataFieldId + 1
    };
    static constexpr BitVector GeoPropDataFieldMask = BitVector(1) << GeoPropDataFieldId;

    static FieldContainerType &getClassType  (void) { return DescT::getType(); }
    static UInt32              getClassTypeId(void) { return DescT::getType().getId(); }

    virtual       FieldContainerType &getType(void)       override { return DescT::getType(); }
    virtual const FieldContainerType &getType(void) const override { return DescT::getType(); }
    virtual UInt32 getContainerSize(void) const override { return sizeof(Self); }

    static PtrType create(void)
    {
        PtrType fc;
        if(getClassType().getPrototype() != NullFC)
            fc = PtrType::dcast(getClassType().getPrototype()->shallowCopy());
        return fc;
    }

    static PtrType createEmpty(void)
    {
        PtrType fc;
        FieldContainer::newPtr(fc);
        return fc;
    }

    virtual FieldContainerPtr shallowCopy(void) const override
    {
        PtrType fc;
        FieldContainer::newPtr(fc, this);
        return fc;
    }

          StoredFieldType *editFieldPtr(void)       { return &_field; }
    const StoredFieldType *getFieldPtr (void) const { return &_field; }
          StoredFieldType *getFieldPtr (void)       { return &_field; }
          StoredFieldType &editField   (void)       { return  _field; }
    const StoredFieldType &getField    (void) const { return  _field; }
          StoredFieldType &getField    (void)       { return  _field; }

    virtual UInt32 getFormat    (void) const override { return GeoGLFormat<Component>::value; }
    virtual UInt32 getFormatSize(void) const override { return sizeof(Component); }
    // 0: the elements are tightly packed.
    virtual UInt32 getStride    (void) const override { return 0; }
    virtual UInt32 getDimension (void) const override { return ElementTraits::Dim; }
    virtual UInt32 getSize      (void) const override { return _field.size(); }
    virtual UInt32 size         (void) const override { return _field.size(); }

    virtual UInt8 *getData(void) const override
    {
        return _field.empty() ? NULL :
            reinterpret_cast<UInt8 *>(const_cast<StoredType *>(&_field.front()));
    }
    virtual UInt8 *editData(void) override { return getData(); }

    virtual GenericType getValue(const UInt32 index) const override
    {
        return geoConvert<GenericType>(_field[index]);
    }
    virtual void getValue(GenericType &val, const UInt32 index) const override
    {
        val = geoConvert<GenericType>(_field[index]);
    }
    virtual void setValue(const GenericType &val, const UInt32 index) override
    {
        _field[index] = geoConvert<StoredType>(val);
    }
    virtual void addValue(const GenericType &val) override
    {
        _field.push_back(geoConvert<StoredType>(val));
    }
    virtual bool insertValue(const GenericType &val, const UInt32 index) override
    {
        if(index > _field.size())
            return false;
        _field.insert(_field.begin() + index, geoConvert<StoredType>(val));
        return true;
    }
    virtual void clear    (void) override            { _field.clear();          }
    virtual void resize   (size_t newsize) override  { _field.resize(newsize);  }
    virtual void push_back(const GenericType &val) override { addValue(val);     }
    virtual void shrink   (void) override
    {
        typename StoredFieldType::StorageType(_field.getValues()).swap(_field.getValues());
    }

    virtual typename Inherited::Ptr clone(void) override
    {
        PtrType fc = createEmpty();
        fc->_field.setValues(_field);
        return fc;
    }

    virtual void changed(BitVector whichField, UInt32 origin) override
    {
        if(whichField & GeoPropDataFieldMask)
            geoPropertyDataChanged(this);
        Inherited::changed(whichField, origin);
    }

    static void initMethod(void) {}

  protected:
    friend class FieldContainer;

    GeoProperty(void) : Inherited(), _field() {}
    GeoProperty(const GeoProperty &source) : Inherited(source), _field(source._field) {}
    virtual ~GeoProperty(void) {}

    StoredFieldType _field;
};

#define OSG_GEO_PROPERTY(NAME, INTERFACE, FIELD)                                   \
struct NAME##PropertyDesc                                                          \
{                                                                                  \
    typedef INTERFACE        Inherit;                                              \
    typedef INTERFACE##Ptr   InheritPtr;                                           \
    typedef FIELD            StoredFieldType;                                      \
    static FieldContainerType &getType(void);                                      \
};                                                                                 \
typedef GeoProperty<NAME##PropertyDesc> NAME;                                      \
typedef NAME::PtrType                   NAME##Ptr;                                 \
typedef RefPtr<NAME##Ptr>               NAME##RefPtr;

OSG_GEO_PROPERTY(GeoPositions2f, GeoPositions, MFPnt2f)
OSG_GEO_PROPERTY(GeoPositions3f, GeoPositions, MFPnt3f)
OSG_GEO_PROPERTY(GeoPositions4f, GeoPositions, MFPnt4f)
OSG_GEO_PROPERTY(GeoPositions2d, GeoPositions, MFPnt2d)
OSG_GEO_PROPERTY(GeoPositions3d, GeoPositions, MFPnt3d)
OSG_GEO_PROPERTY(GeoPositions4d, GeoPositions, MFPnt4d)
OSG_GEO_PROPERTY(GeoPositions2s, GeoPositions, MFPnt2s)
OSG_GEO_PROPERTY(GeoPositions3s, GeoPositions, MFPnt3s)
OSG_GEO_PROPERTY(GeoPositions4s, GeoPositions, MFPnt4s)

OSG_GEO_PROPERTY(GeoNormals3f, GeoNormals, MFVec3f)
OSG_GEO_PROPERTY(GeoNormals3s, GeoNormals, MFVec3s)
OSG_GEO_PROPERTY(GeoNormals3b, GeoNormals, MFVec3b)

OSG_GEO_PROPERTY(GeoColors3f,  GeoColors, MFColor3f)
OSG_GEO_PROPERTY(GeoColors4f,  GeoColors, MFColor4f)
OSG_GEO_PROPERTY(GeoColors3ub, GeoColors, MFColor3ub)
OSG_GEO_PROPERTY(GeoColors4ub, GeoColors, MFColor4ub)

OSG_GEO_PROPERTY(GeoTexCoords1f, GeoTexCoords, MFReal32)
OSG_GEO_PROPERTY(GeoTexCoords2f, GeoTexCoords, MFVec2f)
OSG_GEO_PROPERTY(GeoTexCoords3f, GeoTexCoords, MFVec3f)
OSG_GEO_PROPERTY(GeoTexCoords4f, GeoTexCoords, MFVec4f)
OSG_GEO_PROPERTY(GeoTexCoords1d, GeoTexCoords, MFReal64)
OSG_GEO_PROPERTY(GeoTexCoords2d, GeoTexCoords, MFVec2d)
OSG_GEO_PROPERTY(GeoTexCoords3d, GeoTexCoords, MFVec3d)
OSG_GEO_PROPERTY(GeoTexCoords4d, GeoTexCoords, MFVec4d)

OSG_GEO_PROPERTY(GeoIndicesUI16, GeoIndices, MFUInt16)
OSG_GEO_PROPERTY(GeoIndicesUI32, GeoIndices, MFUInt32)

OSG_GEO_PROPERTY(GeoPTypesUI8, GeoPTypes, MFUInt8)

OSG_GEO_PROPERTY(GeoPLengthsUI8,  GeoPLengths, MFUInt8)
OSG_GEO_PROPERTY(GeoPLengthsUI16, GeoPLengths, MFUInt16)
OSG_GEO_PROPERTY(GeoPLengthsUI32, GeoPLengths, MFUInt32)

#undef OSG_GEO_PROPERTY

} // namespace osg

#endif
