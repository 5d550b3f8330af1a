#ifndef _OSGSHADERPARAMETERVEC4F_H_
#define _OSGSHADERPARAMETERVEC4F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(Vec4f, SFVec4f, OSG_SFIELD)

#endif
