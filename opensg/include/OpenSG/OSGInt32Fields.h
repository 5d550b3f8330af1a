#ifndef _OSGINT32FIELDS_H_
#define _OSGINT32FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
