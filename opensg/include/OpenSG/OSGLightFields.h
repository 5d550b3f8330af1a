#ifndef _OSGLIGHTFIELDS_H_
#define _OSGLIGHTFIELDS_H_

#include <OpenSG/OSGLight.h>

#endif
