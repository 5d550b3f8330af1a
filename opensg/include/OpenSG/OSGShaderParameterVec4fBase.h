#ifndef _OSGSHADERPARAMETERVEC4FBASE_H_
#define _OSGSHADERPARAMETERVEC4FBASE_H_

// ShaderParameterVec4fBase: the field ids, masks and accessors, declared with ShaderParameterVec4f itself.
#include <OpenSG/OSGShaderParameterVec4f.h>

#endif
