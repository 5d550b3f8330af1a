#ifndef _OSGFIELDCONTAINER_H_
#define _OSGFIELDCONTAINER_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGFieldContainerPtr.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGSField.h>
#include <OpenSG/OSGMField.h>

namespace osg
{

// Binary (de)serialisation is only used for cluster sync, which the runtime
// does not do; the handler exists so generated code compiles.
class BinaryDataHandler
{
};

class FieldContainer
{
  public:
    typedef FieldContainerPtr Ptr;

    enum { NextFieldId = 1 };

    static const BitVector NextFieldMask   = BitVector(1) << NextFieldId;
    static const BitVector MTInfluenceMask = 0x00;

    static const bool isNodeCore = false;

    static FieldContainerType &getClassType   (void) { return _type; }
    static UInt32              getClassTypeId (void) { return _type.getId(); }
    static UInt16              getClassGroupId(void) { return _type.getGroupId(); }

    virtual       FieldContainerType &getType(void);
    virtual const FieldContainerType &getType(void) const;

    UInt32       getTypeId  (void) const { return getType().getId(); }
    UInt16       getGroupId (void) const { return getType().getGroupId(); }
    const Char8 *getTypeName(void) const { return getType().getCName(); }

    virtual UInt32 getContainerSize(void) const = 0;

    Field *getField(UInt32 fieldId);
    Field *getField(const Char8 *fieldName);

    virtual FieldContainerPtr shallowCopy(void) const = 0;

    virtual UInt32 getBinSize (const BitVector &whichField);
    virtual void   copyToBin  (BinaryDataHandler &pMem, const BitVector &whichField);
    virtual void   copyFromBin(BinaryDataHandler &pMem, const BitVector &whichField);

    virtual void changed(BitVector whichField, UInt32 origin);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

    // Reference count and id live with the object (one aspect).
    Int32  getRefCountInternal   (void) const { return _refCount;    }
    UInt32 getContainerIdInternal(void) const { return _containerId; }

  protected:
    static FieldContainerType _type;

    FieldContainer(void);
    FieldContainer(const FieldContainer &obj);
    virtual ~FieldContainer(void);

    template <class ObjectPtrT>
    static void newPtr(ObjectPtrT &result,
                       const typename ObjectPtrT::StoredObjectType *prototypeP)
    {
        typedef typename ObjectPtrT::StoredObjectType ObjectType;
        ObjectType *p = new ObjectType(*prototypeP);
        result = ObjectPtrT(p);
        registerNew(result);
        p->onCreate(prototypeP);
        p->onCreateAspect(p, prototypeP);
    }

    template <class ObjectPtrT>
    static void newPtr(ObjectPtrT &result)
    {
        typedef typename ObjectPtrT::StoredObjectType ObjectType;
        ObjectType *p = new ObjectType();
        result = ObjectPtrT(p);
        registerNew(result);
        p->onCreate();
        p->onCreateAspect(p);
    }

    void onCreate      (const FieldContainer *source = NULL);
    void onCreateAspect(const FieldContainer *aspect0, const FieldContainer *source = NULL);
    virtual void onDestroy(void);

  public:
    virtual void executeSync(FieldContainer &other, const BitVector &whichField);

  protected:
    void executeSyncImpl(FieldContainer *pOther, const BitVector &whichField);

  private:
    friend class FieldContainerPtrBase;
    friend void addRefCP(const FieldContainerPtrBase &);
    friend void subRefCP(const FieldContainerPtrBase &);

    static void registerNew(const FieldContainerPtr &result);

    FieldContainer &operator =(const FieldContainer &) = delete;

    Int32  _refCount;
    UInt32 _containerId;
};

} // namespace osg

// --- Declaration helpers for the runtime's own container types. ----------
// They produce what a generated ...Base class declares: type access, the
// factory functions, and the aspect-copy hooks. User containers may instead
// spell all of this out in the generated style; both work.

#define OSG_FC_TYPE_COMMON_DECL(CLASS, PARENT)                                    \
  public:                                                                          \
    typedef PARENT        Inherited;                                               \
    typedef CLASS##Ptr    Ptr;                                                     \
    typedef CLASS         FieldSelfType;                                           \
    static ::osg::FieldContainerType &getClassType   (void) { return _type; }     \
    static ::osg::UInt32              getClassTypeId (void) { return _type.getId(); } \
    static ::osg::UInt16              getClassGroupId(void) { return _type.getGroupId(); } \
    virtual       ::osg::FieldContainerType &getType(void) override;               \
    virtual const ::osg::FieldContainerType &getType(void) const override;         \
    virtual ::osg::UInt32 getContainerSize(void) const override;                   \
  protected:                                                                       \
    static ::osg::FieldContainerType _type;                                        \
    static inline ::osg::FieldDescriptionList _fieldDescriptions;                  \
    friend class ::osg::FieldContainer;                                            \
    void executeSyncImpl(CLASS *pOther, const ::osg::BitVector &whichField)        \
    { Inherited::executeSyncImpl(pOther, whichField); }                            \
  public:

#define OSG_FC_ABSTRACT_DECL(CLASS, PARENT)                                       \
    OSG_FC_TYPE_COMMON_DECL(CLASS, PARENT)

#define OSG_FC_DECL(CLASS, PARENT)                                                \
    OSG_FC_TYPE_COMMON_DECL(CLASS, PARENT)                                         \
    static CLASS##Ptr create     (void);                                           \
    static CLASS##Ptr createEmpty(void);                                           \
    virtual ::osg::FieldContainerPtr shallowCopy(void) const override;

#define OSG_FC_TYPE_COMMON_IMPL(CLASS)                                             \
    ::osg::FieldContainerType &osgClassTypeOf(CLASS *) { return CLASS::getClassType(); } \
    ::osg::FieldContainerType &CLASS::getType(void) { return _type; }              \
    const ::osg::FieldContainerType &CLASS::getType(void) const { return _type; }  \
    ::osg::UInt32 CLASS::getContainerSize(void) const { return sizeof(CLASS); }

#define OSG_FC_ABSTRACT_IMPL(CLASS, PARENTNAME)                                    \
    ::osg::FieldContainerType CLASS::_type(#CLASS, PARENTNAME, NULL, NULL,         \
        &CLASS::initMethod, NULL, 0, false, &CLASS::_fieldDescriptions);           \
    OSG_FC_TYPE_COMMON_IMPL(CLASS)

#define OSG_FC_IMPL(CLASS, PARENTNAME)                                             \
    static ::osg::FieldContainerPtr osgCreatePrototype##CLASS(void)                \
    { return CLASS::createEmpty(); }                                               \
    ::osg::FieldContainerType CLASS::_type(#CLASS, PARENTNAME, NULL,               \
        &osgCreatePrototype##CLASS, &CLASS::initMethod,                            \
        NULL, 0, false, &CLASS::_fieldDescriptions);                               \
    OSG_FC_TYPE_COMMON_IMPL(CLASS)                                                 \
    CLASS##Ptr CLASS::create(void)                                                 \
    {                                                                              \
        CLASS##Ptr fc;                                                             \
        if(getClassType().getPrototype() != ::osg::NullFC)                        \
            fc = CLASS##Ptr::dcast(getClassType().getPrototype()->shallowCopy());  \
        return fc;                                                                 \
    }                                                                              \
    CLASS##Ptr CLASS::createEmpty(void)                                            \
    {                                                                              \
        CLASS##Ptr returnValue;                                                    \
        newPtr(returnValue);                                                       \
        return returnValue;                                                        \
    }                                                                              \
    ::osg::FieldContainerPtr CLASS::shallowCopy(void) const                        \
    {                                                                              \
        CLASS##Ptr returnValue;                                                    \
        newPtr(returnValue, this);                                                 \
        return returnValue;                                                        \
    }

// Field ids and masks.
#define OSG_FIELD_MASK(NAME)                                                       \
    static constexpr ::osg::BitVector NAME##FieldMask =                            \
        ::osg::BitVector(1) << NAME##FieldId;

// Describes the field MEMBER, declared with NAME##FieldId and NAME##FieldMask,
// to the class's type: the link joins the class's list while the program
// starts, before the type that reads the list is made.
#define OSG_FIELD_DESCRIPTION(FIELDTYPE, NAME, MEMBER)                             \
  private:                                                                         \
    ::osg::Field *getGenericField##NAME(void) { return &MEMBER; }                  \
    static ::osg::FieldDescription *describeField##NAME(void)                      \
    {                                                                              \
        return new ::osg::FieldDescription(FIELDTYPE::getClassType(),              \
            ::osg::fieldDescriptionName(#NAME).c_str(), NAME##FieldId,             \
            NAME##FieldMask, false,                                                \
            static_cast< ::osg::FieldAccessMethod>(                                \
                &FieldSelfType::getGenericField##NAME));                           \
    }                                                                              \
    static inline ::osg::FieldDescriptionLink _fieldLink##NAME{                    \
        _fieldDescriptions, &describeField##NAME };                                \
  public:

// A single field with the generated accessors (edit/get/set).
#define OSG_SFIELD_NOSET(FIELDTYPE, NAME)                                          \
  public:                                                                          \
          FIELDTYPE *editSF##NAME(void)       { return &_sf##NAME; }               \
    const FIELDTYPE *getSF##NAME (void) const { return &_sf##NAME; }               \
          FIELDTYPE *getSF##NAME (void)       { return &_sf##NAME; }               \
          FIELDTYPE::StoredType &edit##NAME(void)       { return _sf##NAME.getValue(); } \
    const FIELDTYPE::StoredType &get##NAME (void) const { return _sf##NAME.getValue(); } \
          FIELDTYPE::StoredType &get##NAME (void)       { return _sf##NAME.getValue(); } \
  protected:                                                                       \
    FIELDTYPE _sf##NAME;                                                           \
    OSG_FIELD_DESCRIPTION(FIELDTYPE, NAME, _sf##NAME)

#define OSG_SFIELD(FIELDTYPE, NAME)                                                \
    OSG_SFIELD_NOSET(FIELDTYPE, NAME)                                              \
    void set##NAME(const FIELDTYPE::StoredType &value) { _sf##NAME.setValue(value); }

// A multi field with the generated accessors (no setter, as generated).
#define OSG_MFIELD(FIELDTYPE, NAME)                                                \
  public:                                                                          \
          FIELDTYPE *editMF##NAME(void)       { return &_mf##NAME; }               \
    const FIELDTYPE *getMF##NAME (void) const { return &_mf##NAME; }               \
          FIELDTYPE *getMF##NAME (void)       { return &_mf##NAME; }               \
          FIELDTYPE::reference       edit##NAME(const ::osg::UInt32 index)       { return _mf##NAME[index]; } \
          FIELDTYPE::const_reference get##NAME (const ::osg::UInt32 index) const { return _mf##NAME[index]; } \
          FIELDTYPE::reference       get##NAME (const ::osg::UInt32 index)       { return _mf##NAME[index]; } \
          FIELDTYPE &get##NAME(void)       { return _mf##NAME; }                   \
    const FIELDTYPE &get##NAME(void) const { return _mf##NAME; }                   \
  protected:                                                                       \
    FIELDTYPE _mf##NAME;                                                           \
    OSG_FIELD_DESCRIPTION(FIELDTYPE, NAME, _mf##NAME)

// Pointer typedefs of a container, as OSGFooFields.h declares them.
// CLASS##Base names the class itself: the generated base and the user class
// are one class here.
#define OSG_FC_PTR_DECL(CLASS, PARENTPTR)                                          \
    class CLASS;                                                                   \
    typedef CLASS CLASS##Base;                                                     \
    ::osg::FieldContainerType &osgClassTypeOf(CLASS *);                            \
    typedef ::osg::FCPtr<PARENTPTR, CLASS> CLASS##Ptr;                             \
    typedef ::osg::SField<CLASS##Ptr>      SF##CLASS##Ptr;                         \
    typedef ::osg::MField<CLASS##Ptr>      MF##CLASS##Ptr;


#include <string>

namespace osg
{

// Field traits of every container pointer type: "FooPtr" with parent
// "ParentPtr", fields "SFFooPtr" and "MFFooPtr".
template <class BasePtrTypeT, class FieldContainerTypeT>
struct FieldDataTraits<FCPtr<BasePtrTypeT, FieldContainerTypeT> > :
    public FieldTraitsRecurseMapper<FCPtr<BasePtrTypeT, FieldContainerTypeT>, true>
{
    static DataType &getType(void)
    {
        // Through osgClassTypeOf: the classes may be incomplete here.
        static const std::string name = std::string(
            osgClassTypeOf(static_cast<FieldContainerTypeT *>(NULL)).getCName()) + "Ptr";
        static const std::string parent = std::string(osgClassTypeOf(
            static_cast<typename BasePtrTypeT::StoredObjectType *>(NULL)).getCName()) + "Ptr";
        static DataType type(name.c_str(), parent.c_str());
        return type;
    }
    static const Char8 *getSName(void)
    {
        static const std::string name = std::string("SF") + getType().getCName();
        return name.c_str();
    }
    static const Char8 *getMName(void)
    {
        static const std::string name = std::string("MF") + getType().getCName();
        return name.c_str();
    }
};

template <>
struct FieldDataTraits<FieldContainerPtr> :
    public FieldTraitsRecurseMapper<FieldContainerPtr, true>
{
    static DataType    &getType (void) { static DataType t("FieldContainerPtr", NULL); return t; }
    static const Char8 *getSName(void) { return "SFFieldContainerPtr"; }
    static const Char8 *getMName(void) { return "MFFieldContainerPtr"; }
};

typedef SField<FieldContainerPtr> SFFieldContainerPtr;
typedef MField<FieldContainerPtr> MFFieldContainerPtr;

} // namespace osg

#endif
