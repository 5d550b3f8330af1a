#ifndef _OSGINT64FIELDS_H_
#define _OSGINT64FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
