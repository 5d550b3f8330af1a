#ifndef _OSGPOLYGONFOREGROUNDBASE_H_
#define _OSGPOLYGONFOREGROUNDBASE_H_

// PolygonForegroundBase: the field ids, masks and accessors, declared with PolygonForeground itself.
#include <OpenSG/OSGPolygonForeground.h>

#endif
