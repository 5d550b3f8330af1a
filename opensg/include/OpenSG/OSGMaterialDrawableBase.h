#ifndef _OSGMATERIALDRAWABLEBASE_H_
#define _OSGMATERIALDRAWABLEBASE_H_

// MaterialDrawableBase: the field ids, masks and accessors, declared with MaterialDrawable itself.
#include <OpenSG/OSGMaterialDrawable.h>

#endif
