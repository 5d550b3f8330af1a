#ifndef _OSGGRABFOREGROUNDFIELDS_H_
#define _OSGGRABFOREGROUNDFIELDS_H_

#include <OpenSG/OSGGrabForeground.h>

#endif
