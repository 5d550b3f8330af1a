#ifndef _OSGFBOVIEWPORTBASE_H_
#define _OSGFBOVIEWPORTBASE_H_

// FBOViewportBase: the field ids, masks and accessors, declared with FBOViewport itself.
#include <OpenSG/OSGFBOViewport.h>

#endif
