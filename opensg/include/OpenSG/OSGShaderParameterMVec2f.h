#ifndef _OSGSHADERPARAMETERMVEC2F_H_
#define _OSGSHADERPARAMETERMVEC2F_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFVecTypes.h>

OSG_SHADER_PARAMETER_DECL(MVec2f, MFVec2f, OSG_MFIELD)

#endif
