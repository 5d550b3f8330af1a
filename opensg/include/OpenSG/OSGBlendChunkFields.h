#ifndef _OSGBLENDCHUNKFIELDS_H_
#define _OSGBLENDCHUNKFIELDS_H_

#include <OpenSG/OSGBlendChunk.h>

#endif
