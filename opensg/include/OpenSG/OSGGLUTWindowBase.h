#ifndef _OSGGLUTWINDOWBASE_H_
#define _OSGGLUTWINDOWBASE_H_

// GLUTWindowBase: the field ids, masks and accessors, declared with GLUTWindow itself.
#include <OpenSG/OSGGLUTWindow.h>

#endif
