#ifndef _OSGGEOMETRYBASE_H_
#define _OSGGEOMETRYBASE_H_

// GeometryBase: the field ids, masks and accessors, declared with Geometry itself.
#include <OpenSG/OSGGeometry.h>

#endif
