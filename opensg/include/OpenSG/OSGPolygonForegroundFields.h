#ifndef _OSGPOLYGONFOREGROUNDFIELDS_H_
#define _OSGPOLYGONFOREGROUNDFIELDS_H_

#include <OpenSG/OSGPolygonForeground.h>

#endif
