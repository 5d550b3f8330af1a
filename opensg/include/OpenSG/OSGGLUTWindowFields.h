#ifndef _OSGGLUTWINDOWFIELDS_H_
#define _OSGGLUTWINDOWFIELDS_H_

#include <OpenSG/OSGGLUTWindow.h>

#endif
