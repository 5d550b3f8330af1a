#ifndef _OSGSFMATHTYPES_H_
#define _OSGSFMATHTYPES_H_

#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>

OSG_FIELD_DATA_TRAITS(FieldDataTraits, Matrix,     Matrix)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Matrix4d,   Matrix4d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Quaternion, Quaternion)

namespace osg
{

typedef SField<Matrix>     SFMatrix;      typedef MField<Matrix>     MFMatrix;
typedef SField<Matrix4d>   SFMatrix4d;    typedef MField<Matrix4d>   MFMatrix4d;
typedef SField<Quaternion> SFQuaternion;  typedef MField<Quaternion> MFQuaternion;

} // namespace osg

#endif
