#ifndef _OSGMFBASETYPES_H_
#define _OSGMFBASETYPES_H_

#include <OpenSG/OSGSFBaseTypes.h>

#endif
