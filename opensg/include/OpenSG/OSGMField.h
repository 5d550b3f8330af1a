#ifndef _OSGMFIELD_H_
#define _OSGMFIELD_H_

#include <OpenSG/OSGField.h>
#include <OpenSG/OSGFieldDataType.h>
#include <OpenSG/OSGSField.h>

#include <algorithm>
#include <vector>

namespace osg
{

template <class T>
class MFieldVector : public std::vector<T>
{
  public:
    using std::vector<T>::vector;
};

template <class FieldTypeT, Int32 fieldNameSpace = 0>
class MField : public Field
{
  public:
    typedef MField<FieldTypeT, fieldNameSpace>                       Self;
    typedef FieldTypeT                                               StoredType;
    typedef MFieldVector<FieldTypeT>                                 StorageType;
    typedef typename StorageType::iterator                           iterator;
    typedef typename StorageType::const_iterator                     const_iterator;
    typedef typename StorageType::reverse_iterator                   reverse_iterator;
    typedef typename StorageType::const_reverse_iterator             const_reverse_iterator;
    typedef typename StorageType::reference                          reference;
    typedef typename StorageType::const_reference                    const_reference;
    typedef const FieldTypeT                                        &ArgumentType;
    typedef typename FieldTraitsSelect<FieldTypeT, fieldNameSpace>::Type MFieldTraits;

    static const FieldType &getClassType(void)
    {
        static FieldType type(MFieldTraits::getMName(), "Field",
                              MFieldTraits::getType(), FieldType::MULTI_FIELD,
                              &MField::create);
        return type;
    }

    MField(void) : Field(), _values() {}
    MField(const MField &obj) : Field(obj), _values(obj._values) {}
    explicit MField(const UInt32 size) : Field(), _values(size) {}

    virtual const FieldType &getType(void) const override { return getClassType(); }
    virtual UInt32           getSize(void) const override { return UInt32(_values.size()); }

    static constexpr bool HoldsContainers =
        std::is_base_of<FieldContainerPtrBase, FieldTypeT>::value;

    virtual UInt32 getNumContainerPtrs(void) const override
    {
        return HoldsContainers ? UInt32(_values.size()) : 0;
    }
    virtual FieldContainer *getContainerPtr(UInt32 index) const override
    {
        if constexpr(HoldsContainers)
            return index < _values.size() ? ContainerPtrAccess::get(_values[index]) : NULL;
        return NULL;
    }
    virtual void setContainerPtr(UInt32 index, FieldContainer *fc) override
    {
        if constexpr(HoldsContainers)
        {
            if(index < _values.size())
                ContainerPtrAccess::set(_values[index], fc);
        }
    }
    virtual void addContainerPtr(FieldContainer *fc) override
    {
        if constexpr(HoldsContainers)
        {
            _values.push_back(FieldTypeT());
            ContainerPtrAccess::set(_values.back(), fc);
        }
    }
    virtual void subContainerPtr(UInt32 index) override
    {
        if constexpr(HoldsContainers)
        {
            if(index < _values.size())
                _values.erase(_values.begin() + index);
        }
    }

          StorageType &getValues(void)       { return _values; }
    const StorageType &getValues(void) const { return _values; }

    void setValues(const StorageType &value) { _values = value; }
    void setValues(const MField &obj)        { _values = obj._values; }

    reference       getValue(const UInt32 index)       { return _values[index]; }
    const_reference getValue(const UInt32 index) const { return _values[index]; }
    void setValue(ArgumentType value, const UInt32 index) { _values[index] = value; }
    void addValue(ArgumentType value)                     { _values.push_back(value); }

    iterator               begin (void)       { return _values.begin();  }
    iterator               end   (void)       { return _values.end();    }
    const_iterator         begin (void) const { return _values.begin();  }
    const_iterator         end   (void) const { return _values.end();    }
    reverse_iterator       rbegin(void)       { return _values.rbegin(); }
    reverse_iterator       rend  (void)       { return _values.rend();   }
    const_reverse_iterator rbegin(void) const { return _values.rbegin(); }
    const_reverse_iterator rend  (void) const { return _values.rend();   }
    reference              front (void)       { return _values.front();  }
    const_reference        front (void) const { return _values.front();  }
    reference              back  (void)       { return _values.back();   }
    const_reference        back  (void) const { return _values.back();   }

    void     clear (void)                                { _values.clear(); }
    iterator insert(iterator pos, ArgumentType value)    { return _values.insert(pos, value); }
    iterator erase (iterator pos)                        { return _values.erase(pos); }
    iterator erase (iterator first, iterator last)       { return _values.erase(first, last); }
    iterator find  (ArgumentType value)
    { return std::find(_values.begin(), _values.end(), value); }
    const_iterator find(ArgumentType value) const
    { return std::find(_values.begin(), _values.end(), value); }
    void push_back(ArgumentType value)                   { _values.push_back(value); }
    void resize (size_t newsize, FieldTypeT t = FieldTypeT()) { _values.resize(newsize, t); }
    void reserve(size_t newsize)                         { _values.reserve(newsize); }

    UInt32 size    (void) const { return UInt32(_values.size());     }
    UInt32 capacity(void) const { return UInt32(_values.capacity()); }
    bool   empty   (void) const { return _values.empty();            }

    void swap(MField &right) { _values.swap(right._values); }

    reference       operator [](UInt32 index)       { return _values[index]; }
    const_reference operator [](UInt32 index) const { return _values[index]; }

    void operator =(const MField &source) { _values = source._values; }
    void syncWith  (MField &source)       { _values = source._values; }

    static Field *create(void) { return new MField; }

  protected:
    StorageType _values;
};

} // namespace osg

// Registers the multi field type of a container pointer at load time.
#define OSG_DLLEXPORT_MFIELD_DEF1(T1, DLLMAPPING)                                 \
    [[maybe_unused]] static const ::osg::FieldType &                               \
        OSG_FIELD_REG_CONCAT(osgMFieldTypeReg_, __LINE__) =                        \
            ::osg::MField<T1>::getClassType()
#define OSG_DLLEXPORT_MFIELD_DEF2(T1, T2, DLLMAPPING)                             \
    [[maybe_unused]] static const ::osg::FieldType &                               \
        OSG_FIELD_REG_CONCAT(osgMFieldTypeReg_, __LINE__) =                        \
            ::osg::MField<T1, T2>::getClassType()

#endif
