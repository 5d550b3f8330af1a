#ifndef _OSGCOLOR3FFIELDS_H_
#define _OSGCOLOR3FFIELDS_H_

#include <OpenSG/OSGSFBaseTypes.h>

#endif
