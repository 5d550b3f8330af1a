#ifndef _OSGMATERIALCHUNKBASE_H_
#define _OSGMATERIALCHUNKBASE_H_

// MaterialChunkBase: the field ids, masks and accessors, declared with MaterialChunk itself.
#include <OpenSG/OSGMaterialChunk.h>

#endif
