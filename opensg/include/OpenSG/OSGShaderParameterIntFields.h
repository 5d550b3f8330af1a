#ifndef _OSGSHADERPARAMETERINTFIELDS_H_
#define _OSGSHADERPARAMETERINTFIELDS_H_

#include <OpenSG/OSGShaderParameterInt.h>

#endif
