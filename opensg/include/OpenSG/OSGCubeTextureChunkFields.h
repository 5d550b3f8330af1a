#ifndef _OSGCUBETEXTURECHUNKFIELDS_H_
#define _OSGCUBETEXTURECHUNKFIELDS_H_

#include <OpenSG/OSGCubeTextureChunk.h>

#endif
