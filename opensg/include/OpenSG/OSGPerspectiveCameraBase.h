#ifndef _OSGPERSPECTIVECAMERABASE_H_
#define _OSGPERSPECTIVECAMERABASE_H_

// PerspectiveCameraBase: the field ids, masks and accessors, declared with PerspectiveCamera itself.
#include <OpenSG/OSGPerspectiveCamera.h>

#endif
