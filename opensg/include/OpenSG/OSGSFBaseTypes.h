#ifndef _OSGSFBASETYPES_H_
#define _OSGSFBASETYPES_H_

#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGReal16.h>
#include <OpenSG/OSGDynamicVolume.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGPlane.h>

OSG_FIELD_DATA_TRAITS(FieldDataTraits, Color3f,       Color3f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Color4f,       Color4f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Color3ub,      Color3ub)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Color4ub,      Color4ub)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Real16,        Real16)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, DynamicVolume, DynamicVolume)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, BoxVolume,     BoxVolume)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Plane,         Plane)

namespace osg
{

typedef SField<Color3f>       SFColor3f;
typedef SField<Color4f>       SFColor4f;
typedef SField<Color3ub>      SFColor3ub;
typedef SField<Color4ub>      SFColor4ub;
typedef SField<Real16>        SFReal16;
typedef SField<DynamicVolume> SFDynamicVolume;
typedef SField<BoxVolume>     SFBoxVolume;
typedef SField<Plane>         SFPlane;

typedef MField<Color3f>       MFColor3f;
typedef MField<Color4f>       MFColor4f;
typedef MField<Color3ub>      MFColor3ub;
typedef MField<Color4ub>      MFColor4ub;
typedef MField<Real16>        MFReal16;
typedef MField<DynamicVolume> MFVolume;
typedef MField<BoxVolume>     MFBoxVolume;
typedef MField<Plane>         MFPlane;

} // namespace osg

#endif
