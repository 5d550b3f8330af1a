#ifndef _OSGSHLCHUNKFIELDS_H_
#define _OSGSHLCHUNKFIELDS_H_

#include <OpenSG/OSGSHLChunk.h>

#endif
