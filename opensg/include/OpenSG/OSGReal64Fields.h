#ifndef _OSGREAL64FIELDS_H_
#define _OSGREAL64FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
