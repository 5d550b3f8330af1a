#ifndef _OSGCHUNKMATERIALBASE_H_
#define _OSGCHUNKMATERIALBASE_H_

// ChunkMaterialBase: the field ids, masks and accessors, declared with ChunkMaterial itself.
#include <OpenSG/OSGChunkMaterial.h>

#endif
