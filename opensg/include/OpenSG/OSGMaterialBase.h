#ifndef _OSGMATERIALBASE_H_
#define _OSGMATERIALBASE_H_

// MaterialBase: the field ids, masks and accessors, declared with Material itself.
#include <OpenSG/OSGMaterial.h>

#endif
