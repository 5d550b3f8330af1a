#ifndef _OSGVEC4FFIELDS_H_
#define _OSGVEC4FFIELDS_H_

#include <OpenSG/OSGSFVecTypes.h>

#endif
