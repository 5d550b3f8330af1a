#ifndef _OSGVIEWPORTBASE_H_
#define _OSGVIEWPORTBASE_H_

// ViewportBase: the field ids, masks and accessors, declared with Viewport itself.
#include <OpenSG/OSGViewport.h>

#endif
