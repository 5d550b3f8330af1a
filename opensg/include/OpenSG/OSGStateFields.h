#ifndef _OSGSTATEFIELDS_H_
#define _OSGSTATEFIELDS_H_

#include <OpenSG/OSGState.h>

#endif
