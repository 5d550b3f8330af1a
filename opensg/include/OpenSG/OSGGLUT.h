#ifndef _OSGGLUT_H_
#define _OSGGLUT_H_

#include <OpenSG/OSGGL.h>
#include <GL/freeglut.h>

#endif
