#include <OpenSG/OSGWindow.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGDrawAction.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGLog.h>

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Window, "AttachmentContainer")

namespace
{

struct GLObject
{
    Window::GLObjectFunctor functor;
    UInt32                  refCount;       // windows that initialised it
    UInt32                  lastRefresh;
    UInt32                  lastReinitialize;
    bool                    destroyed;      // waiting in windows' queues
};

struct FunctionEntry
{
    std::string name;
    Int32       extension;
    UInt32      version;
};

// Process-wide registries, shared by all windows as in a single-aspect
// OpenSG: ids index _glObjects, 0 is never handed out.
std::vector<GLObject *> &glObjects(void)
{
    // Never destroyed, for the same reason as the container factory.
    static std::vector<GLObject *> *objects =
        new std::vector<GLObject *>(1, static_cast<GLObject *>(NULL));
    return *objects;
}

std::vector<std::string>   &extensionNames(void) { static std::vector<std::string> v; return v; }
std::vector<std::string>   &ignoredNames  (void) { static std::vector<std::string> v; return v; }
std::vector<FunctionEntry> &functionNames (void) { static std::vector<FunctionEntry> v; return v; }
std::vector<GLenum>        &constantNames (void) { static std::vector<GLenum> v; return v; }
std::vector<Window *>      &allWindows    (void) { static auto *v = new std::vector<Window *>; return *v; }

UInt32 &eventCounter(void)
{
    static UInt32 counter = 1;
    return counter;
}

typedef void *(*ProcAddressF)(const char *);

// epoxy has no public lookup by name; ask whichever loader the process uses.
Window::GLExtensionFunction lookupFunction(const char *name)
{
    static ProcAddressF getProc = NULL;
    static bool         looked  = false;
    if(!looked)
    {
        looked = true;
        const char *libs[][2] = { { "libEGL.so.1", "eglGetProcAddress"    },
                                  { "libGL.so.1",  "glXGetProcAddressARB" } };
        for(auto &lib : libs)
        {
            void *handle = dlopen(lib[0], RTLD_LAZY | RTLD_NOLOAD);
            if(handle == NULL)
                continue;
            getProc = reinterpret_cast<ProcAddressF>(dlsym(handle, lib[1]));
            // The process holds the library already; this look-up must not
            // keep it loaded past the application's own unloading.
            dlclose(handle);
            if(getProc != NULL)
                break;
        }
    }
    void *func = getProc != NULL ? getProc(name) : dlsym(RTLD_DEFAULT, name);
    return reinterpret_cast<Window::GLExtensionFunction>(func);
}

} // namespace

Window::Window(void) :
    Inherited(),
    _sfWidth                   (0),
    _sfHeight                  (0),
    _mfPort                    (),
    _sfResizePending           (false),
    _sfGlObjectEventCounter    (1),
    _mfGlObjectLastRefresh     (),
    _mfGlObjectLastReinitialize(),
    _glInitDone                (false),
    _glVersion                 (0)
{
    allWindows().push_back(this);
}

Window::Window(const Window &source) :
    Inherited(source),
    _sfWidth                   (source._sfWidth),
    _sfHeight                  (source._sfHeight),
    _mfPort                    (),
    _sfResizePending           (source._sfResizePending),
    _sfGlObjectEventCounter    (source._sfGlObjectEventCounter),
    _mfGlObjectLastRefresh     (),
    _mfGlObjectLastReinitialize(),
    _glInitDone                (false),
    _glVersion                 (0)
{
    allWindows().push_back(this);
}

Window::~Window(void)
{
    std::vector<Window *> &wins = allWindows();
    wins.erase(std::remove(wins.begin(), wins.end(), this), wins.end());

    // GL objects this window still holds count as released here; the
    // context may be gone, so no GL calls.
    std::vector<GLObject *> &objs = glObjects();
    for(UInt32 id = 1; id < objs.size() && id < _mfGlObjectLastReinitialize.size(); ++id)
    {
        if(objs[id] != NULL && _mfGlObjectLastReinitialize[id] != 0 &&
           objs[id]->refCount > 0 && --objs[id]->refCount == 0 &&
           objs[id]->destroyed)
        {
            // Its owner is gone and no other window will destroy it.
            delete objs[id];
            objs[id] = NULL;
        }
    }
}

void Window::changed(BitVector whichField, UInt32 origin)
{
    Inherited::changed(whichField, origin);
}

void Window::dump(UInt32, const BitVector) const
{
    SLOG << "Window " << getWidth() << "x" << getHeight()
         << ", " << _mfPort.size() << " ports" << std::endl;
}

// --- ports ----------------------------------------------------------------

void Window::addPort(const ViewportPtr &portP)
{
    if(portP == NullFC)
        return;
    _mfPort.push_back(portP);
    beginEditCP(portP, Viewport::ParentFieldMask);
    portP->setParent(WindowPtr(this));
    endEditCP(portP, Viewport::ParentFieldMask);
}

void Window::insertPort(UInt32 portIndex, const ViewportPtr &portP)
{
    if(portP == NullFC)
        return;
    if(portIndex > _mfPort.size())
        portIndex = UInt32(_mfPort.size());
    _mfPort.insert(_mfPort.begin() + portIndex, portP);
    beginEditCP(portP, Viewport::ParentFieldMask);
    portP->setParent(WindowPtr(this));
    endEditCP(portP, Viewport::ParentFieldMask);
}

void Window::replacePort(UInt32 portIndex, const ViewportPtr &portP)
{
    if(portIndex >= _mfPort.size() || portP == NullFC)
        return;
    ViewportPtr old = _mfPort[portIndex];
    if(old != NullFC)
    {
        beginEditCP(old, Viewport::ParentFieldMask);
        old->setParent(NullFC);
        endEditCP(old, Viewport::ParentFieldMask);
    }
    _mfPort[portIndex] = portP;
    beginEditCP(portP, Viewport::ParentFieldMask);
    portP->setParent(WindowPtr(this));
    endEditCP(portP, Viewport::ParentFieldMask);
}

void Window::replacePortBy(const ViewportPtr &portP, const ViewportPtr &newPortP)
{
    for(UInt32 i = 0; i < _mfPort.size(); ++i)
    {
        if(_mfPort[i] == portP)
        {
            replacePort(i, newPortP);
            return;
        }
    }
}

void Window::subPort(const ViewportPtr &portP)
{
    for(UInt32 i = 0; i < _mfPort.size(); ++i)
    {
        if(_mfPort[i] == portP)
        {
            subPort(i);
            return;
        }
    }
    SWARNING << "Window::subPort: viewport is not a port of this window" << std::endl;
}

void Window::subPort(UInt32 portIndex)
{
    if(portIndex >= _mfPort.size())
        return;
    ViewportPtr port = _mfPort[portIndex];
    if(port != NullFC)
    {
        beginEditCP(port, Viewport::ParentFieldMask);
        port->setParent(NullFC);
        endEditCP(port, Viewport::ParentFieldMask);
    }
    _mfPort.erase(_mfPort.begin() + portIndex);
}

void Window::clearPorts(void)
{
    while(!_mfPort.empty())
        subPort(UInt32(_mfPort.size() - 1));
}

// --- size -----------------------------------------------------------------

void Window::resize(int width, int height)
{
    WindowPtr self(this);
    beginEditCP(self, WidthFieldMask | HeightFieldMask | ResizePendingFieldMask);
    setWidth (UInt16(width));
    setHeight(UInt16(height));
    setResizePending(true);
    endEditCP(self, WidthFieldMask | HeightFieldMask | ResizePendingFieldMask);
}

void Window::resizeGL(void)
{
    if(!isResizePending())
        return;
    glViewport(0, 0, getWidth(), getHeight());
    setResizePending(false);
}

bool Window::isResizePending(void)
{
    return getResizePending();
}

void Window::setSize(UInt16 width, UInt16 height)
{
    setWidth(width);
    setHeight(height);
}

// --- frame ----------------------------------------------------------------

void Window::setupGL(void)
{
    glPixelStorei(GL_PACK_ALIGNMENT,   1);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_NORMALIZE);

    // Light 0 is white by default; lights are explicit here.
    const GLfloat black[4] = { 0.f, 0.f, 0.f, 1.f };
    glLightfv(GL_LIGHT0, GL_DIFFUSE,  black);
    glLightfv(GL_LIGHT0, GL_SPECULAR, black);

    frameInit();
}

void Window::doFrameInit(void)
{
    const char *version = reinterpret_cast<const char *>(glGetString(GL_VERSION));
    if(version == NULL)
    {
        SWARNING << "Window::frameInit: no current GL context" << std::endl;
        return;
    }
    int major = 0, minor = 0;
    std::sscanf(version, "%d.%d", &major, &minor);
    _glVersion = (UInt32(major) << 8) | UInt32(minor);

    GLint count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    for(GLint i = 0; i < count; ++i)
    {
        const char *ext = reinterpret_cast<const char *>(glGetStringi(GL_EXTENSIONS, GLuint(i)));
        if(ext != NULL)
            _availExtensions.insert(ext);
    }
    for(const std::string &ignored : ignoredNames())
        _availExtensions.erase(ignored);

    _glInitDone = true;
}

void Window::resolveNew(void)
{
    const std::vector<std::string> &exts = extensionNames();
    while(_extensionAvailable.size() < exts.size())
        _extensionAvailable.push_back(
            _availExtensions.count(exts[_extensionAvailable.size()]) != 0);

    const std::vector<FunctionEntry> &funcs = functionNames();
    while(_functions.size() < funcs.size())
    {
        const FunctionEntry &f = funcs[_functions.size()];
        bool usable = (f.extension < 0 || hasExtension(UInt32(f.extension))) ||
                      (f.version != 0xffff && _glVersion >= f.version);
        _functions.push_back(usable ? lookupFunction(f.name.c_str()) : NULL);
    }

    const std::vector<GLenum> &consts = constantNames();
    while(_constantValues.size() < consts.size())
    {
        GLfloat value[4] = { 0.f, 0.f, 0.f, 0.f };
        glGetFloatv(consts[_constantValues.size()], value);
        _constantValues.push_back(value[0]);
    }
}

void Window::frameInit(void)
{
    if(!_glInitDone)
        doFrameInit();
    if(_glInitDone)
        resolveNew();
}

void Window::frameExit(void)
{
    destroyQueued();

    for(GLenum err = glGetError(); err != GL_NO_ERROR; err = glGetError())
        SWARNING << "Window::frameExit: GL error 0x" << std::hex << err
                 << std::dec << std::endl;
}

void Window::draw(DrawAction *action)
{
    activate();
    frameInit();
    resizeGL();
    drawAllViewports(action);
    swap();
    frameExit();
}

void Window::drawAllViewports(DrawAction *action)
{
    if(action == NULL)
    {
        SWARNING << "Window::drawAllViewports: no action" << std::endl;
        return;
    }
    action->setWindow(this);
    for(UInt32 i = 0; i < _mfPort.size(); ++i)
    {
        if(_mfPort[i] != NullFC)
            _mfPort[i]->draw(action);
    }
}

void Window::render(RenderActionBase *action)
{
    activate();
    frameInit();
    renderAllViewports(action);
    swap();
    frameExit();
}

void Window::renderAllViewports(RenderActionBase *action)
{
    if(action == NULL)
    {
        SWARNING << "Window::renderAllViewports: no action" << std::endl;
        return;
    }
    action->setWindow(this);
    for(UInt32 i = 0; i < _mfPort.size(); ++i)
    {
        if(_mfPort[i] != NullFC)
            _mfPort[i]->render(action);
    }
}

// --- extensions -------------------------------------------------------------

UInt32 Window::registerExtension(const Char8 *s)
{
    if(s == NULL)
        return TypeTraits<UInt32>::getMax();
    Int32 id = getExtensionId(s);
    if(id >= 0)
        return UInt32(id);
    extensionNames().push_back(s);
    return UInt32(extensionNames().size() - 1);
}

void Window::ignoreExtensions(const Char8 *s)
{
    if(s == NULL)
        return;
    std::istringstream in(s);
    std::string name;
    while(in >> name)
        ignoredNames().push_back(name);
}

UInt32 Window::registerFunction(const Char8 *s, Int32 ext, UInt32 version)
{
    if(s == NULL)
        return TypeTraits<UInt32>::getMax();
    std::vector<FunctionEntry> &names = functionNames();
    for(UInt32 i = 0; i < names.size(); ++i)
    {
        if(names[i].name == s)
            return i;
    }
    FunctionEntry entry = { s, ext, version };
    functionNames().push_back(entry);
    return UInt32(functionNames().size() - 1);
}

void Window::registerConstant(GLenum val)
{
    constantNames().push_back(val);
}

Int32 Window::getExtensionId(const Char8 *s)
{
    const std::vector<std::string> &exts = extensionNames();
    for(UInt32 i = 0; i < exts.size(); ++i)
    {
        if(exts[i] == s)
            return Int32(i);
    }
    return -1;
}

// Like the functions, a registered extension is known from the next
// frameInit on.
bool Window::hasExtension(UInt32 id)
{
    if(id >= _extensionAvailable.size())
    {
        SWARNING << "Window::hasExtension: extension id " << id
                 << " is out of range" << std::endl;
        return false;
    }
    return _extensionAvailable[id];
}

bool Window::hasExtension(const Char8 *s)
{
    if(s == NULL)
        return false;
    if(!_glInitDone)
        frameInit();
    return _availExtensions.count(s) != 0;
}

// A function registered after the window's last frameInit is not resolved
// yet: NULL, as the caller must be ready for anyway.
Window::GLExtensionFunction Window::getFunction(UInt32 id)
{
    if(id >= _functions.size())
    {
        SINFO << "Window::getFunction: function id " << id
              << " is not resolved yet" << std::endl;
        return NULL;
    }
    if(_functions[id] == NULL)
        SINFO << "Window::getFunction: " << functionNames()[id].name
              << " is not available" << std::endl;
    return _functions[id];
}

Window::GLExtensionFunction Window::getFunctionNoCheck(UInt32 id)
{
    return id < _functions.size() ? _functions[id] : NULL;
}

UInt32 Window::getGLVersion(void)
{
    if(!_glInitDone)
        frameInit();
    return _glVersion;
}

Real32 Window::getConstantValue(GLenum val)
{
    const std::vector<GLenum> &consts = constantNames();
    for(UInt32 i = 0; i < consts.size(); ++i)
    {
        if(consts[i] == val)
        {
            if(i >= _constantValues.size())
                frameInit();
            if(i < _constantValues.size())
                return _constantValues[i];
        }
    }
    GLfloat value[4] = { 0.f, 0.f, 0.f, 0.f };
    glGetFloatv(val, value);
    return value[0];
}

// --- GL objects ---------------------------------------------------------------

UInt32 Window::registerGLObject(GLObjectFunctor functor, UInt32 num)
{
    if(num == 0)
        num = 1;
    std::vector<GLObject *> &objs = glObjects();
    UInt32 first = UInt32(objs.size());
    for(UInt32 i = 0; i < num; ++i)
        objs.push_back(new GLObject{ functor, 0, 0, 0, false });
    return first;
}

bool Window::handledHere(UInt32 id) const
{
    return id < _mfGlObjectLastReinitialize.size() &&
           _mfGlObjectLastReinitialize[id] != 0;
}

void Window::validateGLObject(UInt32 id)
{
    std::vector<GLObject *> &objs = glObjects();
    if(id == 0 || id >= objs.size() || objs[id] == NULL)
    {
        SWARNING << "Window::validateGLObject: invalid id " << id << std::endl;
        return;
    }
    GLObject *obj = objs[id];

    if(_mfGlObjectLastReinitialize.size() <= id)
    {
        _mfGlObjectLastReinitialize.resize(id + 1, 0);
        _mfGlObjectLastRefresh     .resize(id + 1, 0);
    }

    UInt32 now = eventCounter();
    if(_mfGlObjectLastReinitialize[id] == 0)
    {
        ++obj->refCount;
        _mfGlObjectLastReinitialize[id] = now;
        _mfGlObjectLastRefresh     [id] = now;
        obj->functor.call(this, packIdStatus(id, initialize));
    }
    else if(obj->lastReinitialize >= _mfGlObjectLastReinitialize[id])
    {
        _mfGlObjectLastReinitialize[id] = now;
        _mfGlObjectLastRefresh     [id] = now;
        obj->functor.call(this, packIdStatus(id, reinitialize));
    }
    else if(obj->lastRefresh >= _mfGlObjectLastRefresh[id])
    {
        _mfGlObjectLastRefresh[id] = now;
        obj->functor.call(this, packIdStatus(id, needrefresh));
    }
}

void Window::setGLObjectId(UInt32 id, UInt32 glid)
{
    if(_ids.size() <= id)
        _ids.resize(id + 1, 0);
    _ids[id] = glid;
}

UInt32 Window::getGLObjectId(UInt32 id)
{
    return id < _ids.size() ? _ids[id] : 0;
}

// Stamps are taken from a counter that only grows, so a window that handled
// an object before the stamp does it again on its next validate.
void Window::refreshGLObject(UInt32 id)
{
    std::vector<GLObject *> &objs = glObjects();
    if(id == 0 || id >= objs.size() || objs[id] == NULL)
    {
        SWARNING << "Window::refreshGLObject: invalid id " << id << std::endl;
        return;
    }
    objs[id]->lastRefresh = eventCounter()++;
}

void Window::reinitializeGLObject(UInt32 id)
{
    std::vector<GLObject *> &objs = glObjects();
    if(id == 0 || id >= objs.size() || objs[id] == NULL)
    {
        SWARNING << "Window::reinitializeGLObject: invalid id " << id << std::endl;
        return;
    }
    objs[id]->lastReinitialize = eventCounter()++;
}

void Window::destroyGLObject(UInt32 id, UInt32 num)
{
    std::vector<GLObject *> &objs = glObjects();
    for(UInt32 i = id; i < id + num && i < objs.size(); ++i)
    {
        if(i == 0 || objs[i] == NULL)
            continue;
        bool queued = false;
        for(Window *win : allWindows())
        {
            if(win->handledHere(i))
            {
                win->_glObjectDestroyList.push_back(std::make_pair(i, 1u));
                queued = true;
            }
        }
        if(queued)
        {
            objs[i]->destroyed = true;
        }
        else
        {
            delete objs[i];
            objs[i] = NULL;
        }
    }
}

namespace
{

// Mesa's llvmpipe keeps the attachments of the framebuffer it last drew
// into alive past their deletion, until real work goes to another one: a
// 2048 shadow target is 67 MB held for the life of the process. A one-texel
// clear elsewhere before the deletions lets them go; it costs nothing on
// drivers without the hold.
void releaseDriverFramebufferHold(void)
{
    GLint drawFB = 0, readFB = 0, boundRB = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &drawFB);
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &readFB);
    glGetIntegerv(GL_RENDERBUFFER_BINDING, &boundRB);

    GLuint fb = 0, rb = 0;
    glGenRenderbuffers(1, &rb);
    glBindRenderbuffer(GL_RENDERBUFFER, rb);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 1, 1);
    glBindRenderbuffer(GL_RENDERBUFFER, GLuint(boundRB));
    glGenFramebuffers(1, &fb);
    glBindFramebuffer(GL_FRAMEBUFFER, fb);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0,
                              GL_RENDERBUFFER, rb);

    glPushAttrib(GL_COLOR_BUFFER_BIT | GL_SCISSOR_BIT | GL_VIEWPORT_BIT);
    glDisable(GL_SCISSOR_TEST);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glViewport(0, 0, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glPopAttrib();

    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, GLuint(drawFB));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(readFB));
    glDeleteFramebuffers(1, &fb);
    glDeleteRenderbuffers(1, &rb);
}

} // namespace

void Window::destroyQueued(void)
{
    std::vector<GLObject *> &objs = glObjects();
    std::vector<std::pair<UInt32, UInt32> > queue;
    queue.swap(_glObjectDestroyList);
    if(!queue.empty())
        releaseDriverFramebufferHold();

    for(const std::pair<UInt32, UInt32> &entry : queue)
    {
        UInt32 id = entry.first;
        if(id >= objs.size() || objs[id] == NULL || !handledHere(id))
            continue;
        GLObject *obj = objs[id];
        obj->functor.call(this, packIdStatus(id, destroy));
        _mfGlObjectLastReinitialize[id] = 0;
        _mfGlObjectLastRefresh     [id] = 0;
        setGLObjectId(id, 0);
        if(obj->refCount > 0 && --obj->refCount == 0)
        {
            obj->functor.call(this, packIdStatus(id, finaldestroy));
            delete obj;
            objs[id] = NULL;
        }
    }
}

} // namespace osg
