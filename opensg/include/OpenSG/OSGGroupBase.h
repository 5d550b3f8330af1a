#ifndef _OSGGROUPBASE_H_
#define _OSGGROUPBASE_H_

// GroupBase: the field ids, masks and accessors, declared with Group itself.
#include <OpenSG/OSGGroup.h>

#endif
