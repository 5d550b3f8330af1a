#ifndef _OSGCHUNKMATERIALFIELDS_H_
#define _OSGCHUNKMATERIALFIELDS_H_

#include <OpenSG/OSGChunkMaterial.h>

#endif
