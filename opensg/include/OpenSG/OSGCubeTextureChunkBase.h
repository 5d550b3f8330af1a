#ifndef _OSGCUBETEXTURECHUNKBASE_H_
#define _OSGCUBETEXTURECHUNKBASE_H_

// CubeTextureChunkBase: the field ids, masks and accessors, declared with CubeTextureChunk itself.
#include <OpenSG/OSGCubeTextureChunk.h>

#endif
