#ifndef _OSGLIGHTBASE_H_
#define _OSGLIGHTBASE_H_

// LightBase: the field ids, masks and accessors, declared with Light itself.
#include <OpenSG/OSGLight.h>

#endif
