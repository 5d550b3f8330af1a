#ifndef _OSGFOREGROUNDBASE_H_
#define _OSGFOREGROUNDBASE_H_

// ForegroundBase: the field ids, masks and accessors, declared with Foreground itself.
#include <OpenSG/OSGForeground.h>

#endif
