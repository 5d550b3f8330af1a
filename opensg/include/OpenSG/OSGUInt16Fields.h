#ifndef _OSGUINT16FIELDS_H_
#define _OSGUINT16FIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
