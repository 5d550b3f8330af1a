#ifndef _OSGSHADERPARAMETERMREAL_H_
#define _OSGSHADERPARAMETERMREAL_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFSysTypes.h>

OSG_SHADER_PARAMETER_DECL(MReal, MFReal32, OSG_MFIELD)

#endif
