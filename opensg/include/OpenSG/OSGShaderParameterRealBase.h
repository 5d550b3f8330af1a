#ifndef _OSGSHADERPARAMETERREALBASE_H_
#define _OSGSHADERPARAMETERREALBASE_H_

// ShaderParameterRealBase: the field ids, masks and accessors, declared with ShaderParameterReal itself.
#include <OpenSG/OSGShaderParameterReal.h>

#endif
