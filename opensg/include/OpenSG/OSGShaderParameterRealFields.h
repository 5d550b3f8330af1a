#ifndef _OSGSHADERPARAMETERREALFIELDS_H_
#define _OSGSHADERPARAMETERREALFIELDS_H_

#include <OpenSG/OSGShaderParameterReal.h>

#endif
