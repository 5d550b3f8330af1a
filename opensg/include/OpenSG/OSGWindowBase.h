#ifndef _OSGWINDOWBASE_H_
#define _OSGWINDOWBASE_H_

// WindowBase: the field ids, masks and accessors, declared with Window itself.
#include <OpenSG/OSGWindow.h>

#endif
