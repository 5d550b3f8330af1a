#ifndef _OSGPNT3FFIELDS_H_
#define _OSGPNT3FFIELDS_H_

#include <OpenSG/OSGSFVecTypes.h>

#endif
