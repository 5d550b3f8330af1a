#ifndef _OSGSOLIDBACKGROUNDBASE_H_
#define _OSGSOLIDBACKGROUNDBASE_H_

// SolidBackgroundBase: the field ids, masks and accessors, declared with SolidBackground itself.
#include <OpenSG/OSGSolidBackground.h>

#endif
