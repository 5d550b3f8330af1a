#ifndef _OSGSFIELD_H_
#define _OSGSFIELD_H_

#include <OpenSG/OSGField.h>
#include <OpenSG/OSGFieldDataType.h>
#include <OpenSG/OSGFieldContainerPtr.h>

#include <type_traits>

namespace osg
{

template <class FieldTypeT, Int32 fieldNameSpace = 0>
class SField : public Field
{
  public:
    typedef SField<FieldTypeT, fieldNameSpace>                       Self;
    typedef FieldTypeT                                               StoredType;
    typedef const FieldTypeT                                        &ArgumentType;
    typedef typename FieldTraitsSelect<FieldTypeT, fieldNameSpace>::Type SFieldTraits;

    static const FieldType &getClassType(void)
    {
        static FieldType type(SFieldTraits::getSName(), "Field",
                              SFieldTraits::getType(), FieldType::SINGLE_FIELD,
                              &SField::create);
        return type;
    }

    SField(void) : Field(), _value() {}
    SField(const SField &obj) : Field(obj), _value(obj._value) {}
    explicit SField(ArgumentType value) : Field(), _value(value) {}

    virtual const FieldType &getType(void) const override { return getClassType(); }
    virtual UInt32           getSize(void) const override { return 1; }

    static constexpr bool HoldsContainers =
        std::is_base_of<FieldContainerPtrBase, FieldTypeT>::value;

    virtual UInt32 getNumContainerPtrs(void) const override
    {
        return HoldsContainers ? 1 : 0;
    }
    virtual FieldContainer *getContainerPtr(UInt32) const override
    {
        if constexpr(HoldsContainers)
            return ContainerPtrAccess::get(_value);
        return NULL;
    }
    virtual void setContainerPtr(UInt32, FieldContainer *fc) override
    {
        if constexpr(HoldsContainers)
            ContainerPtrAccess::set(_value, fc);
    }

          FieldTypeT &getValue(void)       { return _value; }
    const FieldTypeT &getValue(void) const { return _value; }

    void setValue(ArgumentType value) { _value = value; }
    void setValue(const SField &obj)  { _value = obj._value; }

    void syncWith  (SField &source)      { _value = source._value; }
    void operator =(const SField &other) { _value = other._value; }

    static Field *create(void) { return new SField; }

  protected:
    FieldTypeT _value;
};

} // namespace osg

#define OSG_FIELD_REG_CONCAT2(a, b) a##b
#define OSG_FIELD_REG_CONCAT(a, b)  OSG_FIELD_REG_CONCAT2(a, b)

// Registers the single field type of a container pointer at load time.
#define OSG_DLLEXPORT_SFIELD_DEF1(T1, DLLMAPPING)                                 \
    [[maybe_unused]] static const ::osg::FieldType &                               \
        OSG_FIELD_REG_CONCAT(osgSFieldTypeReg_, __LINE__) =                        \
            ::osg::SField<T1>::getClassType()
#define OSG_DLLEXPORT_SFIELD_DEF2(T1, T2, DLLMAPPING)                             \
    [[maybe_unused]] static const ::osg::FieldType &                               \
        OSG_FIELD_REG_CONCAT(osgSFieldTypeReg_, __LINE__) =                        \
            ::osg::SField<T1, T2>::getClassType()

#endif
