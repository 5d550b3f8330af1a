#ifndef _OSGSPOTLIGHTBASE_H_
#define _OSGSPOTLIGHTBASE_H_

// SpotLightBase: the field ids, masks and accessors, declared with SpotLight itself.
#include <OpenSG/OSGSpotLight.h>

#endif
