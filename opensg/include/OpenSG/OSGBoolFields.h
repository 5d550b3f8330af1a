#ifndef _OSGBOOLFIELDS_H_
#define _OSGBOOLFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
