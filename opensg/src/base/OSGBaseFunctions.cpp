#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>

#include <dlfcn.h>

#include <cstdlib>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
# define OSG_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
# if __has_feature(address_sanitizer)
#  define OSG_ADDRESS_SANITIZER 1
# endif
#endif

namespace osg
{

SystemState GlobalSystemState = Startup;

namespace
{
// Function-local statics: registration happens during static initialisation
// of other libraries, in no particular order.
std::vector<InitFuncF> &initFunctions(void)      { static std::vector<InitFuncF> v; return v; }
std::vector<InitFuncF> &preMPInitFunctions(void) { static std::vector<InitFuncF> v; return v; }
std::vector<ExitFuncF> &exitFunctions(void)      { static std::vector<ExitFuncF> v; return v; }
std::vector<ExitFuncF> &postMPExitFunctions(void){ static std::vector<ExitFuncF> v; return v; }

bool s_atExitRegistered = false;

void osgExitAtExit(void)
{
    osgExit();
}
}

void addInitFunction      (InitFuncF f) { initFunctions().push_back(f);       }
void addSystemExitFunction(ExitFuncF f) { exitFunctions().push_back(f);       }
void addPreMPInitFunction (InitFuncF f) { preMPInitFunctions().push_back(f);  }
void addPostMPExitFunction(ExitFuncF f) { postMPExitFunctions().push_back(f); }

InitFuncWrapper::InitFuncWrapper(const InitFuncF func)
{
    addInitFunction(func);
}

StaticInitFuncWrapper::StaticInitFuncWrapper(const InitFuncF func)
{
    func();
}

bool osgInit(Int32, Char8 **, UInt16, UInt16, UInt16, bool, bool, bool)
{
    if(GlobalSystemState == Running)
        return true;

#if defined(OSG_ADDRESS_SANITIZER)
    // Windows open the GL driver through GLX or EGL, which unload it at exit,
    // before the leak check; unnamed, its suppressions would not apply.
    dlopen("/usr/lib/x86_64-linux-gnu/dri/swrast_dri.so", RTLD_NOW | RTLD_NODELETE);
    dlopen("/usr/lib/aarch64-linux-gnu/dri/swrast_dri.so", RTLD_NOW | RTLD_NODELETE);
#endif

    bool ok = true;

    for(InitFuncF f : preMPInitFunctions())
        ok = f() && ok;

    // Init functions may register further init functions.
    for(size_t i = 0; i < initFunctions().size(); ++i)
        ok = initFunctions()[i]() && ok;

    if(!ok)
    {
        SFATAL << "osgInit: an init function failed" << std::endl;
        return false;
    }

    GlobalSystemState = Running;

    if(!s_atExitRegistered)
    {
        s_atExitRegistered = true;
        atexit(osgExitAtExit);
    }
    return true;
}

bool osgExit(void)
{
    if(GlobalSystemState != Running)
        return true;

    GlobalSystemState = Shutdown;

    bool ok = true;
    for(auto it = exitFunctions().rbegin(); it != exitFunctions().rend(); ++it)
        ok = (*it)() && ok;
    for(auto it = postMPExitFunctions().rbegin(); it != postMPExitFunctions().rend(); ++it)
        ok = (*it)() && ok;
    return ok;
}

} // namespace osg
