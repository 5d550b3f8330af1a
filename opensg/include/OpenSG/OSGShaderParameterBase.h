#ifndef _OSGSHADERPARAMETERBASE_H_
#define _OSGSHADERPARAMETERBASE_H_

// ShaderParameterBase: the field ids, masks and accessors, declared with ShaderParameter itself.
#include <OpenSG/OSGShaderParameter.h>

#endif
