#ifndef _OSGSTRINGFIELDS_H_
#define _OSGSTRINGFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
