#ifndef _OSGPNT2FFIELDS_H_
#define _OSGPNT2FFIELDS_H_

#include <OpenSG/OSGSFVecTypes.h>

#endif
