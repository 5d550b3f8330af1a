#ifndef _OSGDRAWABLEFIELDS_H_
#define _OSGDRAWABLEFIELDS_H_

#include <OpenSG/OSGDrawable.h>

#endif
