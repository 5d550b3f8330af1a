#ifndef _OSGPASSIVEWINDOWFIELDS_H_
#define _OSGPASSIVEWINDOWFIELDS_H_

#include <OpenSG/OSGPassiveWindow.h>

#endif
