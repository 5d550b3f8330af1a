#ifndef _OSGSHADERPARAMETERMMATRIX_H_
#define _OSGSHADERPARAMETERMMATRIX_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFMathTypes.h>

OSG_SHADER_PARAMETER_DECL(MMatrix, MFMatrix, OSG_MFIELD)

#endif
