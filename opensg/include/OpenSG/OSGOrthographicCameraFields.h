#ifndef _OSGORTHOGRAPHICCAMERAFIELDS_H_
#define _OSGORTHOGRAPHICCAMERAFIELDS_H_

#include <OpenSG/OSGOrthographicCamera.h>

#endif
