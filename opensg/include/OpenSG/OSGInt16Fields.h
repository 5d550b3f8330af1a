#ifndef _OSGINT16FIELDS_H_
#define _OSGINT16FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
