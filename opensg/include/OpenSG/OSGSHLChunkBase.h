#ifndef _OSGSHLCHUNKBASE_H_
#define _OSGSHLCHUNKBASE_H_

// SHLChunkBase: the field ids, masks and accessors, declared with SHLChunk itself.
#include <OpenSG/OSGSHLChunk.h>

#endif
