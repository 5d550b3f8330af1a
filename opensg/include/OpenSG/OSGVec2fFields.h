#ifndef _OSGVEC2FFIELDS_H_
#define _OSGVEC2FFIELDS_H_

#include <OpenSG/OSGSFVecTypes.h>

#endif
