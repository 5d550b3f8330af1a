#ifndef _OSGSHADERPARAMETERINT_H_
#define _OSGSHADERPARAMETERINT_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFSysTypes.h>

OSG_SHADER_PARAMETER_DECL(Int, SFInt32, OSG_SFIELD)

#endif
