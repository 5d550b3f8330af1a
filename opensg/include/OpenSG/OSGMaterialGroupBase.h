#ifndef _OSGMATERIALGROUPBASE_H_
#define _OSGMATERIALGROUPBASE_H_

// MaterialGroupBase: the field ids, masks and accessors, declared with MaterialGroup itself.
#include <OpenSG/OSGMaterialGroup.h>

#endif
