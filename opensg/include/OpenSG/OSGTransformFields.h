#ifndef _OSGTRANSFORMFIELDS_H_
#define _OSGTRANSFORMFIELDS_H_

#include <OpenSG/OSGTransform.h>

#endif
