#ifndef _OSGGROUPFIELDS_H_
#define _OSGGROUPFIELDS_H_

#include <OpenSG/OSGGroup.h>

#endif
