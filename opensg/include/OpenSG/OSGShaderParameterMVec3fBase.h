#ifndef _OSGSHADERPARAMETERMVEC3FBASE_H_
#define _OSGSHADERPARAMETERMVEC3FBASE_H_

// ShaderParameterMVec3fBase: the field ids, masks and accessors, declared with ShaderParameterMVec3f itself.
#include <OpenSG/OSGShaderParameterMVec3f.h>

#endif
