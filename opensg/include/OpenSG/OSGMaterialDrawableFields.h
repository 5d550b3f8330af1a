#ifndef _OSGMATERIALDRAWABLEFIELDS_H_
#define _OSGMATERIALDRAWABLEFIELDS_H_

#include <OpenSG/OSGMaterialDrawable.h>

#endif
