#include <epoxy/gl.h>
#include <epoxy/egl.h>

#include <Lumora/HeadlessContext.h>

#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>

namespace lumora
{

struct HeadlessContext::Impl
{
    EGLDisplay    display = EGL_NO_DISPLAY;
    EGLSurface    surface = EGL_NO_SURFACE;
    EGLContext    context = EGL_NO_CONTEXT;
    int           width   = 0;
    int           height  = 0;
    bool          debug   = false;
    std::string   error;
    DebugCallback callback;

    bool create();
    void destroy();
    void installDebugOutput();
    bool fail(const std::string &what);
};

namespace
{

// eglTerminate ends a display for every user in the process, so it waits
// until the last context on that display is gone.
std::mutex                  s_displayMutex;
std::map<EGLDisplay, int>   s_displayUsers;

bool hasWord(const char *list, const char *word)
{
    if(list == NULL)
        return false;
    const size_t len = std::strlen(word);
    for(const char *p = std::strstr(list, word); p != NULL; p = std::strstr(p + 1, word))
    {
        const bool startOk = (p == list || p[-1] == ' ');
        const bool endOk   = (p[len] == '\0' || p[len] == ' ');
        if(startOk && endOk)
            return true;
    }
    return false;
}

std::string eglErrorName(EGLint code)
{
    switch(code)
    {
        case EGL_SUCCESS:             return "EGL_SUCCESS";
        case EGL_NOT_INITIALIZED:     return "EGL_NOT_INITIALIZED";
        case EGL_BAD_ACCESS:          return "EGL_BAD_ACCESS";
        case EGL_BAD_ALLOC:           return "EGL_BAD_ALLOC";
        case EGL_BAD_ATTRIBUTE:       return "EGL_BAD_ATTRIBUTE";
        case EGL_BAD_CONFIG:          return "EGL_BAD_CONFIG";
        case EGL_BAD_CONTEXT:         return "EGL_BAD_CONTEXT";
        case EGL_BAD_CURRENT_SURFACE: return "EGL_BAD_CURRENT_SURFACE";
        case EGL_BAD_DISPLAY:         return "EGL_BAD_DISPLAY";
        case EGL_BAD_MATCH:           return "EGL_BAD_MATCH";
        case EGL_BAD_NATIVE_PIXMAP:   return "EGL_BAD_NATIVE_PIXMAP";
        case EGL_BAD_NATIVE_WINDOW:   return "EGL_BAD_NATIVE_WINDOW";
        case EGL_BAD_PARAMETER:       return "EGL_BAD_PARAMETER";
        case EGL_BAD_SURFACE:         return "EGL_BAD_SURFACE";
        case EGL_CONTEXT_LOST:        return "EGL_CONTEXT_LOST";
    }
    std::ostringstream s;
    s << "EGL error 0x" << std::hex << code;
    return s.str();
}

#if defined(__SANITIZE_ADDRESS__)
# define LUMORA_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
# if __has_feature(address_sanitizer)
#  define LUMORA_ADDRESS_SANITIZER 1
# endif
#endif

#if defined(LUMORA_ADDRESS_SANITIZER)
// The driver is unloaded at exit, before the leak check, which then cannot
// name it and so cannot apply the driver's suppressions. Pinning it keeps
// it mapped. The GLX dispatch library is pinned too: in a program that does
// not link it, left to be opened and closed at run time, it made the leak
// checker's thread tracer crash at exit.
void pinGLDriver()
{
    static const char *const drivers[] = {
        "/usr/lib/x86_64-linux-gnu/dri/swrast_dri.so",
        "/usr/lib/aarch64-linux-gnu/dri/swrast_dri.so",
        "libGL.so.1",
    };
    for(const char *driver : drivers)
        dlopen(driver, RTLD_NOW | RTLD_NODELETE);
}
#else
void pinGLDriver()
{
}
#endif

// Returns an initialized display: Mesa's surfaceless platform first, since
// the default display may want an X server that is not there.
EGLDisplay openDisplay()
{
    pinGLDriver();

    // Client extensions need EGL 1.5 or EGL_EXT_client_extensions; an older
    // library answers NULL here.
    const char *clientExts = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if(hasWord(clientExts, "EGL_MESA_platform_surfaceless"))
    {
        const char *version = eglQueryString(EGL_NO_DISPLAY, EGL_VERSION);
        int major = 0, minor = 0;
        if(version != NULL)
            std::sscanf(version, "%d.%d", &major, &minor);

        // Looked up by hand: epoxy judges the EGL version by the current
        // display, and before the first context there is none.
        EGLDisplay display = EGL_NO_DISPLAY;
        auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYPROC>(
            eglGetProcAddress("eglGetPlatformDisplay"));
        auto getPlatformDisplayEXT = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
            eglGetProcAddress("eglGetPlatformDisplayEXT"));
        if((major > 1 || (major == 1 && minor >= 5)) && getPlatformDisplay != NULL)
            display = getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA,
                                         EGL_DEFAULT_DISPLAY, NULL);
        else if(hasWord(clientExts, "EGL_EXT_platform_base") && getPlatformDisplayEXT != NULL)
            display = getPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA,
                                            EGL_DEFAULT_DISPLAY, NULL);
        if(display != EGL_NO_DISPLAY && eglInitialize(display, NULL, NULL))
            return display;
    }

    EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    if(display != EGL_NO_DISPLAY && eglInitialize(display, NULL, NULL))
        return display;
    return EGL_NO_DISPLAY;
}

const char *debugTypeName(GLenum type)
{
    switch(type)
    {
        case GL_DEBUG_TYPE_ERROR:               return "error";
        case GL_DEBUG_TYPE_DEPRECATED_BEHAVIOR: return "deprecated";
        case GL_DEBUG_TYPE_UNDEFINED_BEHAVIOR:  return "undefined behaviour";
        case GL_DEBUG_TYPE_PORTABILITY:         return "portability";
        case GL_DEBUG_TYPE_PERFORMANCE:         return "performance";
        default:                                return "other";
    }
}

void GLAPIENTRY onDebugMessage(GLenum, GLenum type, GLuint, GLenum severity,
                               GLsizei length, const GLchar *message,
                               const void *userParam)
{
    const auto *impl = static_cast<const HeadlessContext::Impl *>(userParam);
    const std::string text = length >= 0 ? std::string(message, size_t(length))
                                         : std::string(message);
    if(impl->callback)
        impl->callback(type, severity, text);
    else
        HeadlessContext::defaultDebugSink(type, severity, text);
}

} // namespace

bool HeadlessContext::Impl::fail(const std::string &what)
{
    error = what + " (" + eglErrorName(eglGetError()) + ")";
    destroy();
    return false;
}

bool HeadlessContext::Impl::create()
{
    if(width <= 0 || height <= 0)
    {
        error = "HeadlessContext: width and height must be positive";
        return false;
    }

    display = openDisplay();
    if(display == EGL_NO_DISPLAY)
        return fail("HeadlessContext: no EGL display could be initialized");
    {
        std::lock_guard<std::mutex> lock(s_displayMutex);
        ++s_displayUsers[display];
    }

    if(!eglBindAPI(EGL_OPENGL_API))
        return fail("HeadlessContext: the EGL display offers no desktop OpenGL");

    const EGLint configAttribs[] =
    {
        EGL_SURFACE_TYPE,    EGL_PBUFFER_BIT,
        EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
        EGL_RED_SIZE,        8,
        EGL_GREEN_SIZE,      8,
        EGL_BLUE_SIZE,       8,
        EGL_ALPHA_SIZE,      8,
        EGL_DEPTH_SIZE,      24,
        EGL_STENCIL_SIZE,    8,
        EGL_NONE
    };
    EGLConfig config     = NULL;
    EGLint    numConfigs = 0;
    if(!eglChooseConfig(display, configAttribs, &config, 1, &numConfigs) ||
       numConfigs < 1)
        return fail("HeadlessContext: no RGBA8/depth24/stencil8 pbuffer config");

    const EGLint surfaceAttribs[] = { EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE };
    surface = eglCreatePbufferSurface(display, config, surfaceAttribs);
    if(surface == EGL_NO_SURFACE)
        return fail("HeadlessContext: eglCreatePbufferSurface failed");

    // The runtime draws with fixed-function state as well as shaders, so a
    // core profile will not do; the unversioned request is the last resort.
    const EGLint debugFlag = debug ? EGL_TRUE : EGL_FALSE;
    const EGLint compat45[] =
    {
        EGL_CONTEXT_MAJOR_VERSION,       4,
        EGL_CONTEXT_MINOR_VERSION,       5,
        EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT,
        EGL_CONTEXT_OPENGL_DEBUG,        debugFlag,
        EGL_NONE
    };
    const EGLint anyVersion[] = { EGL_CONTEXT_OPENGL_DEBUG, debugFlag, EGL_NONE };
    const EGLint plain[]      = { EGL_NONE };

    for(const EGLint *attribs : { compat45, anyVersion, plain })
    {
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, attribs);
        if(context != EGL_NO_CONTEXT)
            break;
    }
    if(context == EGL_NO_CONTEXT)
        return fail("HeadlessContext: eglCreateContext failed");

    if(!eglMakeCurrent(display, surface, surface, context))
        return fail("HeadlessContext: eglMakeCurrent failed");

    if(debug)
        installDebugOutput();
    return true;
}

void HeadlessContext::Impl::installDebugOutput()
{
    if(epoxy_gl_version() < 43 && !epoxy_has_gl_extension("GL_KHR_debug"))
    {
        debug = false;
        return;
    }
    // Synchronous, so a message arrives inside the call that caused it.
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glDebugMessageCallback(onDebugMessage, this);
    glDebugMessageControl(GL_DONT_CARE, GL_DONT_CARE, GL_DONT_CARE, 0, NULL, GL_TRUE);
}

void HeadlessContext::Impl::destroy()
{
    if(display == EGL_NO_DISPLAY)
        return;

    if(eglGetCurrentContext() == context)
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if(context != EGL_NO_CONTEXT)
        eglDestroyContext(display, context);
    if(surface != EGL_NO_SURFACE)
        eglDestroySurface(display, surface);
    context = EGL_NO_CONTEXT;
    surface = EGL_NO_SURFACE;

    bool last = false;
    {
        std::lock_guard<std::mutex> lock(s_displayMutex);
        auto it = s_displayUsers.find(display);
        if(it != s_displayUsers.end() && --it->second == 0)
        {
            s_displayUsers.erase(it);
            last = true;
        }
    }
    if(last)
        eglTerminate(display);
    display = EGL_NO_DISPLAY;
}

HeadlessContext::HeadlessContext(int width, int height, bool debug,
                                 DebugCallback callback) :
    _impl(new Impl)
{
    _impl->width    = width;
    _impl->height   = height;
    _impl->debug    = debug;
    _impl->callback = std::move(callback);
    _impl->create();
}

HeadlessContext::~HeadlessContext()
{
    _impl->destroy();
}

bool HeadlessContext::isValid() const
{
    return _impl->context != EGL_NO_CONTEXT;
}

const std::string &HeadlessContext::errorString() const
{
    return _impl->error;
}

bool HeadlessContext::makeCurrent()
{
    if(!isValid())
        return false;
    if(eglMakeCurrent(_impl->display, _impl->surface, _impl->surface, _impl->context))
        return true;
    _impl->error = "HeadlessContext: eglMakeCurrent failed (" +
                   eglErrorName(eglGetError()) + ")";
    return false;
}

void HeadlessContext::doneCurrent()
{
    if(isValid() && eglGetCurrentContext() == _impl->context)
        eglMakeCurrent(_impl->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

int HeadlessContext::width() const
{
    return _impl->width;
}

int HeadlessContext::height() const
{
    return _impl->height;
}

bool HeadlessContext::isDebug() const
{
    return _impl->debug;
}

void HeadlessContext::setDebugCallback(DebugCallback callback)
{
    _impl->callback = std::move(callback);
}

void HeadlessContext::defaultDebugSink(GLenum type, GLenum severity,
                                       const std::string &message)
{
    if(type != GL_DEBUG_TYPE_ERROR)
        return;
    std::cerr << "GL " << debugTypeName(type) << " (severity 0x" << std::hex
              << severity << std::dec << "): " << message << std::endl;
}

} // namespace lumora
