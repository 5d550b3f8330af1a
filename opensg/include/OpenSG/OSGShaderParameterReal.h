#ifndef _OSGSHADERPARAMETERREAL_H_
#define _OSGSHADERPARAMETERREAL_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFSysTypes.h>

OSG_SHADER_PARAMETER_DECL(Real, SFReal32, OSG_SFIELD)

#endif
