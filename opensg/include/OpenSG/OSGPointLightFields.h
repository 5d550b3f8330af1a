#ifndef _OSGPOINTLIGHTFIELDS_H_
#define _OSGPOINTLIGHTFIELDS_H_

#include <OpenSG/OSGPointLight.h>

#endif
