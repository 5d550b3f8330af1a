#ifndef _OSGSHADERPARAMETERMATRIXBASE_H_
#define _OSGSHADERPARAMETERMATRIXBASE_H_

// ShaderParameterMatrixBase: the field ids, masks and accessors, declared with ShaderParameterMatrix itself.
#include <OpenSG/OSGShaderParameterMatrix.h>

#endif
