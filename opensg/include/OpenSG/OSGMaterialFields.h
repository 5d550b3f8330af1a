#ifndef _OSGMATERIALFIELDS_H_
#define _OSGMATERIALFIELDS_H_

#include <OpenSG/OSGMaterial.h>

#endif
