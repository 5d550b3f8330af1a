#ifndef _OSGGRABFOREGROUNDBASE_H_
#define _OSGGRABFOREGROUNDBASE_H_

// GrabForegroundBase: the field ids, masks and accessors, declared with GrabForeground itself.
#include <OpenSG/OSGGrabForeground.h>

#endif
