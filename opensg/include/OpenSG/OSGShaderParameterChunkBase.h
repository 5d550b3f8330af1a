#ifndef _OSGSHADERPARAMETERCHUNKBASE_H_
#define _OSGSHADERPARAMETERCHUNKBASE_H_

// ShaderParameterChunkBase: the field ids, masks and accessors, declared with ShaderParameterChunk itself.
#include <OpenSG/OSGShaderParameterChunk.h>

#endif
