#ifndef _OSGUINT32FIELDS_H_
#define _OSGUINT32FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
