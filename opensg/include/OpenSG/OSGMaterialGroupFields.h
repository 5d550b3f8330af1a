#ifndef _OSGMATERIALGROUPFIELDS_H_
#define _OSGMATERIALGROUPFIELDS_H_

#include <OpenSG/OSGMaterialGroup.h>

#endif
