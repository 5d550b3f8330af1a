#ifndef _OSGREAL32FIELDS_H_
#define _OSGREAL32FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
