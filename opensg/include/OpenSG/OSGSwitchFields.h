#ifndef _OSGSWITCHFIELDS_H_
#define _OSGSWITCHFIELDS_H_

#include <OpenSG/OSGSwitch.h>

#endif
