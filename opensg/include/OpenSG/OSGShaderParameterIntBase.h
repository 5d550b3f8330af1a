#ifndef _OSGSHADERPARAMETERINTBASE_H_
#define _OSGSHADERPARAMETERINTBASE_H_

// ShaderParameterIntBase: the field ids, masks and accessors, declared with ShaderParameterInt itself.
#include <OpenSG/OSGShaderParameterInt.h>

#endif
