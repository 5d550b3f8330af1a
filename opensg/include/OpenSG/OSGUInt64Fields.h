#ifndef _OSGUINT64FIELDS_H_
#define _OSGUINT64FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
