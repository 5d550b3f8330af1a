#ifndef _OSGMFSYSTYPES_H_
#define _OSGMFSYSTYPES_H_

#include <OpenSG/OSGSFSysTypes.h>

#endif
