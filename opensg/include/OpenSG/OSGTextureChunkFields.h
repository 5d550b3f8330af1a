#ifndef _OSGTEXTURECHUNKFIELDS_H_
#define _OSGTEXTURECHUNKFIELDS_H_

#include <OpenSG/OSGTextureChunk.h>

#endif
