#ifndef _OSGPERSPECTIVECAMERAFIELDS_H_
#define _OSGPERSPECTIVECAMERAFIELDS_H_

#include <OpenSG/OSGPerspectiveCamera.h>

#endif
