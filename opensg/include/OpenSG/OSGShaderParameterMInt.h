#ifndef _OSGSHADERPARAMETERMINT_H_
#define _OSGSHADERPARAMETERMINT_H_

#include <OpenSG/OSGShaderParameter.h>
#include <OpenSG/OSGSFSysTypes.h>

OSG_SHADER_PARAMETER_DECL(MInt, MFInt32, OSG_MFIELD)

#endif
