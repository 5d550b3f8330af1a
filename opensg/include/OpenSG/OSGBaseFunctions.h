#ifndef _OSGBASEFUNCTIONS_H_
#define _OSGBASEFUNCTIONS_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGBaseMathFunctions.h>

namespace osg
{

typedef bool (*InitFuncF)(void);
typedef bool (*ExitFuncF)(void);

void addInitFunction      (InitFuncF initFunc);
void addSystemExitFunction(ExitFuncF exitFunc);
void addPreMPInitFunction (InitFuncF initFunc);
void addPostMPExitFunction(ExitFuncF exitFunc);

bool osgInit(Int32 argc, Char8 **argv,
             UInt16 major   = OSG_MAJOR_VERSION,
             UInt16 minor   = OSG_MINOR_VERSION,
             UInt16 release = OSG_RELEASE_VERSION,
             bool   debug   = false,
             bool   dll     = true,
             bool   mt      = false);
bool osgExit(void);

struct InitFuncWrapper
{
    InitFuncWrapper(const InitFuncF func);
};

struct StaticInitFuncWrapper
{
    StaticInitFuncWrapper(const InitFuncF func);
};

enum SystemState
{
    Startup  = 0x01,
    Running  = 0x02,
    Shutdown = 0x03
};

extern SystemState GlobalSystemState;

} // namespace osg

#endif
