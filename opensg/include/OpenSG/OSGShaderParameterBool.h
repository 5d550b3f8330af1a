#ifndef _OSGSHADERPARAMETERBOOL_H_
#define _OSGSHADERPARAMETERBOOL_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFSysTypes.h>

OSG_SHADER_PARAMETER_DECL(Bool, SFBool, OSG_SFIELD)

#endif
