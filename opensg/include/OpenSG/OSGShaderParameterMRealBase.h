#ifndef _OSGSHADERPARAMETERMREALBASE_H_
#define _OSGSHADERPARAMETERMREALBASE_H_

// ShaderParameterMRealBase: the field ids, masks and accessors, declared with ShaderParameterMReal itself.
#include <OpenSG/OSGShaderParameterMReal.h>

#endif
