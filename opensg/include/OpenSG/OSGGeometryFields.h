#ifndef _OSGGEOMETRYFIELDS_H_
#define _OSGGEOMETRYFIELDS_H_

#include <OpenSG/OSGGeometry.h>

#endif
