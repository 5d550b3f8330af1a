#ifndef _OSGVOIDPFIELDS_H_
#define _OSGVOIDPFIELDS_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
