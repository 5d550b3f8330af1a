#ifndef _OSGSHADERPARAMETERVEC2F_H_
#define _OSGSHADERPARAMETERVEC2F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(Vec2f, SFVec2f, OSG_SFIELD)

#endif
