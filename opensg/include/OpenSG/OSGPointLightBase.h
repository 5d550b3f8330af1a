#ifndef _OSGPOINTLIGHTBASE_H_
#define _OSGPOINTLIGHTBASE_H_

// PointLightBase: the field ids, masks and accessors, declared with PointLight itself.
#include <OpenSG/OSGPointLight.h>

#endif
