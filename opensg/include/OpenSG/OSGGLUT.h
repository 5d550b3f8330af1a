#ifndef _OSGGLUT_H_
#define _OSGGLUT_H_

// Plain GLUT, as 1.8 gives it: code that builds here builds against any GLUT.
#include <OpenSG/OSGGL.h>
#include <GL/glut.h>

#endif
