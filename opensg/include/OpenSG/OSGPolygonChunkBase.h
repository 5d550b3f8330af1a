#ifndef _OSGPOLYGONCHUNKBASE_H_
#define _OSGPOLYGONCHUNKBASE_H_

// PolygonChunkBase: the field ids, masks and accessors, declared with PolygonChunk itself.
#include <OpenSG/OSGPolygonChunk.h>

#endif
