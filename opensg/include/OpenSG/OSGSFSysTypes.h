#ifndef _OSGSFSYSTYPES_H_
#define _OSGSFSYSTYPES_H_

#include <OpenSG/OSGSField.h>
#include <OpenSG/OSGMField.h>
#include <OpenSG/OSGGL.h>

#include <string>

OSG_FIELD_DATA_TRAITS(FieldDataTraits2, bool,        Bool)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Int8,        Int8)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  UInt8,       UInt8)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Int16,       Int16)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  UInt16,      UInt16)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Int32,       Int32)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  UInt32,      UInt32)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Int64,       Int64)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  UInt64,      UInt64)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Real32,      Real32)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  Real64,      Real64)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  std::string, String)
OSG_FIELD_DATA_TRAITS(FieldDataTraits,  void *,      VoidP)
OSG_FIELD_DATA_TRAITS(FieldDataTraits1, Time,        Time)
OSG_FIELD_DATA_TRAITS(FieldDataTraits1, GLenum,      GLenum)
OSG_FIELD_DATA_TRAITS(FieldDataTraits1, BitVector,   BitVector)

namespace osg
{

typedef SField<bool, 2>      SFBool;
typedef SField<Int8>         SFInt8;
typedef SField<UInt8>        SFUInt8;
typedef SField<Int16>        SFInt16;
typedef SField<UInt16>       SFUInt16;
typedef SField<Int32>        SFInt32;
typedef SField<UInt32>       SFUInt32;
typedef SField<Int64>        SFInt64;
typedef SField<UInt64>       SFUInt64;
typedef SField<Real32>       SFReal32;
typedef SField<Real64>       SFReal64;
typedef SField<std::string>  SFString;
typedef SField<void *>       SFVoidP;
typedef SField<Time, 1>      SFTime;
typedef SField<GLenum, 1>    SFGLenum;
typedef SField<BitVector, 1> SFBitVector;

typedef MField<bool, 2>      MFBool;
typedef MField<Int8>         MFInt8;
typedef MField<UInt8>        MFUInt8;
typedef MField<Int16>        MFInt16;
typedef MField<UInt16>       MFUInt16;
typedef MField<Int32>        MFInt32;
typedef MField<UInt32>       MFUInt32;
typedef MField<Int64>        MFInt64;
typedef MField<UInt64>       MFUInt64;
typedef MField<Real32>       MFReal32;
typedef MField<Real64>       MFReal64;
typedef MField<std::string>  MFString;
typedef MField<void *>       MFVoidP;
typedef MField<Time, 1>      MFTime;
typedef MField<GLenum, 1>    MFGLenum;
typedef MField<BitVector, 1> MFBitVector;

} // namespace osg

#endif
