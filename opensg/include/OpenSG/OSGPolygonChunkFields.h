#ifndef _OSGPOLYGONCHUNKFIELDS_H_
#define _OSGPOLYGONCHUNKFIELDS_H_

#include <OpenSG/OSGPolygonChunk.h>

#endif
