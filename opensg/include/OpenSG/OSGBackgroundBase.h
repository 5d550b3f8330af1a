#ifndef _OSGBACKGROUNDBASE_H_
#define _OSGBACKGROUNDBASE_H_

// BackgroundBase: the field ids, masks and accessors, declared with Background itself.
#include <OpenSG/OSGBackground.h>

#endif
