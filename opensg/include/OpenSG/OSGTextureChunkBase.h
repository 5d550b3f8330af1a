#ifndef _OSGTEXTURECHUNKBASE_H_
#define _OSGTEXTURECHUNKBASE_H_

// TextureChunkBase: the field ids, masks and accessors, declared with TextureChunk itself.
#include <OpenSG/OSGTextureChunk.h>

#endif
