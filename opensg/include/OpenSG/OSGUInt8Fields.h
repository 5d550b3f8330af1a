#ifndef _OSGUINT8FIELDS_H_
#define _OSGUINT8FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
