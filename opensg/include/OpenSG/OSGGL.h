#ifndef _OSGGL_H_
#define _OSGGL_H_

// The system GL header, so that programs can mix it freely with their own GL,
// EGL, GLU or GLUT includes. The runtime reaches newer entry points through a
// loader in its sources only.
#include <GL/gl.h>

// The calling convention of GL entry points and callbacks.
#ifndef OSG_APIENTRY
# ifdef APIENTRY
#  define OSG_APIENTRY APIENTRY
# else
#  define OSG_APIENTRY
# endif
#endif

#endif
