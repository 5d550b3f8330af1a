#ifndef _OSGDEPTHCHUNKFIELDS_H_
#define _OSGDEPTHCHUNKFIELDS_H_

#include <OpenSG/OSGDepthChunk.h>

#endif
