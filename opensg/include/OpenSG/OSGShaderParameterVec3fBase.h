#ifndef _OSGSHADERPARAMETERVEC3FBASE_H_
#define _OSGSHADERPARAMETERVEC3FBASE_H_

// ShaderParameterVec3fBase: the field ids, masks and accessors, declared with ShaderParameterVec3f itself.
#include <OpenSG/OSGShaderParameterVec3f.h>

#endif
