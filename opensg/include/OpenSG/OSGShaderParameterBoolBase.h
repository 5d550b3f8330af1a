#ifndef _OSGSHADERPARAMETERBOOLBASE_H_
#define _OSGSHADERPARAMETERBOOLBASE_H_

// ShaderParameterBoolBase: the field ids, masks and accessors, declared with ShaderParameterBool itself.
#include <OpenSG/OSGShaderParameterBool.h>

#endif
