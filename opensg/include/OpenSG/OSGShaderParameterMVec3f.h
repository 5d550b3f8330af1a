#ifndef _OSGSHADERPARAMETERMVEC3F_H_
#define _OSGSHADERPARAMETERMVEC3F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(MVec3f, MFVec3f, OSG_MFIELD)

#endif
