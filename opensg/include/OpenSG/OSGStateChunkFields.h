#ifndef _OSGSTATECHUNKFIELDS_H_
#define _OSGSTATECHUNKFIELDS_H_

#include <OpenSG/OSGStateChunk.h>

#endif
