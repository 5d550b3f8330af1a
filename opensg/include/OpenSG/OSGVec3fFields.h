#ifndef _OSGVEC3FFIELDS_H_
#define _OSGVEC3FFIELDS_H_

#include <OpenSG/OSGSFVecTypes.h>

#endif
