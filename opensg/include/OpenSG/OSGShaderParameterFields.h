#ifndef _OSGSHADERPARAMETERFIELDS_H_
#define _OSGSHADERPARAMETERFIELDS_H_

#include <OpenSG/OSGShaderParameter.h>

#endif
