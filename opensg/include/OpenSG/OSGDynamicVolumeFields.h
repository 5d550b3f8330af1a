#ifndef _OSGDYNAMICVOLUMEFIELDS_H_
#define _OSGDYNAMICVOLUMEFIELDS_H_

#include <OpenSG/OSGSFBaseTypes.h>

#endif
