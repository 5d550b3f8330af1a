#ifndef _OSGINT8FIELDS_H_
#define _OSGINT8FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
