#ifndef _OSGSHADERPARAMETERMVEC2FBASE_H_
#define _OSGSHADERPARAMETERMVEC2FBASE_H_

// ShaderParameterMVec2fBase: the field ids, masks and accessors, declared with ShaderParameterMVec2f itself.
#include <OpenSG/OSGShaderParameterMVec2f.h>

#endif
