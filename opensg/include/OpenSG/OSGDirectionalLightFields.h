#ifndef _OSGDIRECTIONALLIGHTFIELDS_H_
#define _OSGDIRECTIONALLIGHTFIELDS_H_

#include <OpenSG/OSGDirectionalLight.h>

#endif
