#ifndef _OSGDEPTHCHUNKBASE_H_
#define _OSGDEPTHCHUNKBASE_H_

// DepthChunkBase: the field ids, masks and accessors, declared with DepthChunk itself.
#include <OpenSG/OSGDepthChunk.h>

#endif
