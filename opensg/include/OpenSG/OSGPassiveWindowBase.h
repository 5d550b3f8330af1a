#ifndef _OSGPASSIVEWINDOWBASE_H_
#define _OSGPASSIVEWINDOWBASE_H_

// PassiveWindowBase: the field ids, masks and accessors, declared with PassiveWindow itself.
#include <OpenSG/OSGPassiveWindow.h>

#endif
