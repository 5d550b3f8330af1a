#ifndef _OSGSHADERCHUNKFIELDS_H_
#define _OSGSHADERCHUNKFIELDS_H_

#include <OpenSG/OSGShaderChunk.h>

#endif
