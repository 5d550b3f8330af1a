#ifndef _OSGSHADERCHUNKBASE_H_
#define _OSGSHADERCHUNKBASE_H_

// ShaderChunkBase: the field ids, masks and accessors, declared with ShaderChunk itself.
#include <OpenSG/OSGShaderChunk.h>

#endif
