#ifndef _OSGSHADERPARAMETERMATRIX_H_
#define _OSGSHADERPARAMETERMATRIX_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFMathTypes.h>

OSG_SHADER_PARAMETER_DECL(Matrix, SFMatrix, OSG_SFIELD)

#endif
