#ifndef _OSGFIELDDATATYPE_H_
#define _OSGFIELDDATATYPE_H_

#include <OpenSG/OSGDataType.h>

namespace osg
{

// Traits of the value stored in a field: its data type and the field names.
// Namespace 1 and 2 separate types that share a C++ type (Time vs Real64,
// GLenum vs UInt32, bool).
template <class ValueTypeT> struct FieldDataTraits;
template <class ValueTypeT> struct FieldDataTraits1;
template <class ValueTypeT> struct FieldDataTraits2;

template <class ValueTypeT, bool bTypeHasParent = false>
struct FieldTraitsRecurseMapper
{
    enum { StringConvertable = 0x00 };
};

template <class ValueTypeT>
struct FieldTraitsRecurseBase : public FieldTraitsRecurseMapper<ValueTypeT, false>
{
};

template <class ValueTypeT, Int32 NameSpaceI>
struct FieldTraitsSelect { typedef FieldDataTraits<ValueTypeT> Type; };

template <class ValueTypeT>
struct FieldTraitsSelect<ValueTypeT, 1> { typedef FieldDataTraits1<ValueTypeT> Type; };

template <class ValueTypeT>
struct FieldTraitsSelect<ValueTypeT, 2> { typedef FieldDataTraits2<ValueTypeT> Type; };

} // namespace osg

#define OSG_FIELD_DATA_TRAITS(TRAITS, TYPE, NAME)                                  \
namespace osg {                                                                    \
template <> struct TRAITS<TYPE> : public FieldTraitsRecurseBase<TYPE>              \
{                                                                                  \
    static DataType    &getType (void) { static DataType t(#NAME, NULL); return t; } \
    static const Char8 *getSName(void) { return "SF" #NAME; }                      \
    static const Char8 *getMName(void) { return "MF" #NAME; }                      \
};                                                                                 \
}

#endif
