#ifndef _OSGSTATECHUNKBASE_H_
#define _OSGSTATECHUNKBASE_H_

// StateChunkBase: the field ids, masks and accessors, declared with StateChunk itself.
#include <OpenSG/OSGStateChunk.h>

#endif
