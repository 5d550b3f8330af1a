#ifndef _OSGSHLPARAMETERCHUNKBASE_H_
#define _OSGSHLPARAMETERCHUNKBASE_H_

// SHLParameterChunkBase: the field ids, masks and accessors, declared with SHLParameterChunk itself.
#include <OpenSG/OSGSHLParameterChunk.h>

#endif
