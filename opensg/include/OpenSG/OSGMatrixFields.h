#ifndef _OSGMATRIXFIELDS_H_
#define _OSGMATRIXFIELDS_H_

#include <OpenSG/OSGSFMathTypes.h>

#endif
