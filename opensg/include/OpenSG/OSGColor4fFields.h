#ifndef _OSGCOLOR4FFIELDS_H_
#define _OSGCOLOR4FFIELDS_H_

#include <OpenSG/OSGSFBaseTypes.h>

#endif
