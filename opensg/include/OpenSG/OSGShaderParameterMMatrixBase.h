#ifndef _OSGSHADERPARAMETERMMATRIXBASE_H_
#define _OSGSHADERPARAMETERMMATRIXBASE_H_

// ShaderParameterMMatrixBase: the field ids, masks and accessors, declared with ShaderParameterMMatrix itself.
#include <OpenSG/OSGShaderParameterMMatrix.h>

#endif
