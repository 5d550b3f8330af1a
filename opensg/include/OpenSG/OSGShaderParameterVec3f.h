#ifndef _OSGSHADERPARAMETERVEC3F_H_
#define _OSGSHADERPARAMETERVEC3F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(Vec3f, SFVec3f, OSG_SFIELD)

#endif
