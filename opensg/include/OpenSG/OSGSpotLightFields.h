#ifndef _OSGSPOTLIGHTFIELDS_H_
#define _OSGSPOTLIGHTFIELDS_H_

#include <OpenSG/OSGSpotLight.h>

#endif
