#ifndef _OSGSTATEBASE_H_
#define _OSGSTATEBASE_H_

// StateBase: the field ids, masks and accessors, declared with State itself.
#include <OpenSG/OSGState.h>

#endif
