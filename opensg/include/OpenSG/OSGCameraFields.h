#ifndef _OSGCAMERAFIELDS_H_
#define _OSGCAMERAFIELDS_H_

#include <OpenSG/OSGCamera.h>

#endif
