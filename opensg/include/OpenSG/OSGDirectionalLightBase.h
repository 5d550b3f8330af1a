#ifndef _OSGDIRECTIONALLIGHTBASE_H_
#define _OSGDIRECTIONALLIGHTBASE_H_

// DirectionalLightBase: the field ids, masks and accessors, declared with DirectionalLight itself.
#include <OpenSG/OSGDirectionalLight.h>

#endif
