#ifndef _OSGMATRIXCAMERAFIELDS_H_
#define _OSGMATRIXCAMERAFIELDS_H_

#include <OpenSG/OSGMatrixCamera.h>

#endif
