#ifndef _OSGSHADERPARAMETERMVEC4F_H_
#define _OSGSHADERPARAMETERMVEC4F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(MVec4f, MFVec4f, OSG_MFIELD)

#endif
