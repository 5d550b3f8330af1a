#ifndef _OSGSOLIDBACKGROUNDFIELDS_H_
#define _OSGSOLIDBACKGROUNDFIELDS_H_

#include <OpenSG/OSGSolidBackground.h>

#endif
