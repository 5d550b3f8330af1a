#ifndef _OSGSWITCHBASE_H_
#define _OSGSWITCHBASE_H_

// SwitchBase: the field ids, masks and accessors, declared with Switch itself.
#include <OpenSG/OSGSwitch.h>

#endif
