#ifndef _OSGTIMEFIELDS_H_
#define _OSGTIMEFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
