#ifndef _OSGMATRIXCAMERABASE_H_
#define _OSGMATRIXCAMERABASE_H_

// MatrixCameraBase: the field ids, masks and accessors, declared with MatrixCamera itself.
#include <OpenSG/OSGMatrixCamera.h>

#endif
