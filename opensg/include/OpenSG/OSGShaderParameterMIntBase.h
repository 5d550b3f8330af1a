#ifndef _OSGSHADERPARAMETERMINTBASE_H_
#define _OSGSHADERPARAMETERMINTBASE_H_

// ShaderParameterMIntBase: the field ids, masks and accessors, declared with ShaderParameterMInt itself.
#include <OpenSG/OSGShaderParameterMInt.h>

#endif
