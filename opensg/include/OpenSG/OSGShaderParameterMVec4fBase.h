#ifndef _OSGSHADERPARAMETERMVEC4FBASE_H_
#define _OSGSHADERPARAMETERMVEC4FBASE_H_

// ShaderParameterMVec4fBase: the field ids, masks and accessors, declared with ShaderParameterMVec4f itself.
#include <OpenSG/OSGShaderParameterMVec4f.h>

#endif
