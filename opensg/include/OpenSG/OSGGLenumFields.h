#ifndef _OSGGLENUMFIELDS_H_
#define _OSGGLENUMFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
