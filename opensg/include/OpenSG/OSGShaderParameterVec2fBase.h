#ifndef _OSGSHADERPARAMETERVEC2FBASE_H_
#define _OSGSHADERPARAMETERVEC2FBASE_H_

// ShaderParameterVec2fBase: the field ids, masks and accessors, declared with ShaderParameterVec2f itself.
#include <OpenSG/OSGShaderParameterVec2f.h>

#endif
