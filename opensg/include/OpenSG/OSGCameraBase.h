#ifndef _OSGCAMERABASE_H_
#define _OSGCAMERABASE_H_

// CameraBase: the field ids, masks and accessors, declared with Camera itself.
#include <OpenSG/OSGCamera.h>

#endif
