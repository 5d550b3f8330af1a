#ifndef _OSGSFVECTYPES_H_
#define _OSGSFVECTYPES_H_

#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGVector.h>

OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec2f,  Vec2f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec3f,  Vec3f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec4f,  Vec4f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec3d,  Vec3d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec4ub, Vec4ub)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt2f,  Pnt2f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt3f,  Pnt3f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt4f,  Pnt4f)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt2d,  Pnt2d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt3d,  Pnt3d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt4d,  Pnt4d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt2s,  Pnt2s)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt3s,  Pnt3s)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Pnt4s,  Pnt4s)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec3s,  Vec3s)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec3b,  Vec3b)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec2d,  Vec2d)
OSG_FIELD_DATA_TRAITS(FieldDataTraits, Vec4d,  Vec4d)

namespace osg
{

typedef SField<Vec2f>  SFVec2f;   typedef MField<Vec2f>  MFVec2f;
typedef SField<Vec3f>  SFVec3f;   typedef MField<Vec3f>  MFVec3f;
typedef SField<Vec4f>  SFVec4f;   typedef MField<Vec4f>  MFVec4f;
typedef SField<Vec2d>  SFVec2d;   typedef MField<Vec2d>  MFVec2d;
typedef SField<Vec3d>  SFVec3d;   typedef MField<Vec3d>  MFVec3d;
typedef SField<Vec4d>  SFVec4d;   typedef MField<Vec4d>  MFVec4d;
typedef SField<Vec4ub> SFVec4ub;  typedef MField<Vec4ub> MFVec4ub;
typedef SField<Vec3s>  SFVec3s;   typedef MField<Vec3s>  MFVec3s;
typedef SField<Vec3b>  SFVec3b;   typedef MField<Vec3b>  MFVec3b;
typedef SField<Pnt2f>  SFPnt2f;   typedef MField<Pnt2f>  MFPnt2f;
typedef SField<Pnt3f>  SFPnt3f;   typedef MField<Pnt3f>  MFPnt3f;
typedef SField<Pnt4f>  SFPnt4f;   typedef MField<Pnt4f>  MFPnt4f;
typedef SField<Pnt2d>  SFPnt2d;   typedef MField<Pnt2d>  MFPnt2d;
typedef SField<Pnt3d>  SFPnt3d;   typedef MField<Pnt3d>  MFPnt3d;
typedef SField<Pnt4d>  SFPnt4d;   typedef MField<Pnt4d>  MFPnt4d;
typedef SField<Pnt2s>  SFPnt2s;   typedef MField<Pnt2s>  MFPnt2s;
typedef SField<Pnt3s>  SFPnt3s;   typedef MField<Pnt3s>  MFPnt3s;
typedef SField<Pnt4s>  SFPnt4s;   typedef MField<Pnt4s>  MFPnt4s;

} // namespace osg

#endif
