#ifndef _OSGORTHOGRAPHICCAMERABASE_H_
#define _OSGORTHOGRAPHICCAMERABASE_H_

// OrthographicCameraBase: the field ids, masks and accessors, declared with OrthographicCamera itself.
#include <OpenSG/OSGOrthographicCamera.h>

#endif
