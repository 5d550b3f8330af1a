#ifndef _OSGSHADERPARAMETERBOOLFIELDS_H_
#define _OSGSHADERPARAMETERBOOLFIELDS_H_

#include <OpenSG/OSGShaderParameterBool.h>

#endif
