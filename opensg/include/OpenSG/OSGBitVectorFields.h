#ifndef _OSGBITVECTORFIELDS_H_
#define _OSGBITVECTORFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
