#ifndef _OSGBLENDCHUNKBASE_H_
#define _OSGBLENDCHUNKBASE_H_

// BlendChunkBase: the field ids, masks and accessors, declared with BlendChunk itself.
#include <OpenSG/OSGBlendChunk.h>

#endif
