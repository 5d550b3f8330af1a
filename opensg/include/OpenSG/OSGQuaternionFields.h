#ifndef _OSGQUATERNIONFIELDS_H_
#define _OSGQUATERNIONFIELDS_H_

#include <OpenSG/OSGSFMathTypes.h>

#endif
