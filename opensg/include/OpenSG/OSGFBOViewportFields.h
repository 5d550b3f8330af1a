#ifndef _OSGFBOVIEWPORTFIELDS_H_
#define _OSGFBOVIEWPORTFIELDS_H_

#include <OpenSG/OSGFBOViewport.h>

#endif
