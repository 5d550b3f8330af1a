#ifndef _OSGGL_H_
#define _OSGGL_H_

// The system GL header, so that programs can mix it freely with their own GL,
// EGL, GLU or GLUT includes. The runtime reaches newer entry points through a
// loader in its sources only.
#include <OpenSG/OSGConfig.h>
#include <GL/gl.h>

// The calling convention of GL entry points and callbacks.
#ifndef OSG_APIENTRY
# ifdef APIENTRY
#  define OSG_APIENTRY APIENTRY
# else
#  define OSG_APIENTRY
# endif
#endif

// A GL enum value that no GL constant takes.
#define OSG_GL_UNUSED 0xffff

#include <OpenSG/OSGGLU.h>

OSG_BEGIN_NAMESPACE

// Logs every queued GL error as a warning naming file, line and msg, and
// returns false if there was any. Checks only in a runtime built with
// OSG_DEBUG; elsewhere it returns true.
bool osgGlCheckError(const char *file, int line, const char *msg);

OSG_END_NAMESPACE

#ifdef OSG_DEBUG
#define glErr(text) { ::osg::osgGlCheckError(__FILE__, __LINE__, (text)); }
#else
#define glErr(text)
#endif

#endif
