#ifndef _OSGMATERIALCHUNKFIELDS_H_
#define _OSGMATERIALCHUNKFIELDS_H_

#include <OpenSG/OSGMaterialChunk.h>

#endif
