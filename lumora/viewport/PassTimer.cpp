#include "PassTimer.h"

#include <OpenSG/OSGTypedFunctors.h>

#ifndef GL_TIMESTAMP
#define GL_TIMESTAMP 0x8E28
#endif
#ifndef GL_QUERY_RESULT
#define GL_QUERY_RESULT 0x8866
#endif
#ifndef GL_QUERY_RESULT_AVAILABLE
#define GL_QUERY_RESULT_AVAILABLE 0x8867
#endif

OSG_BEGIN_NAMESPACE

namespace
{
struct TimerFunctionIds
{
    UInt32 extension, gen, del, counter, available, result;
};

// Registered when the first timer is made, so that the window resolves them
// in its next frameInit. Timestamps are core from GL 3.3.
const TimerFunctionIds &timerFunctionIds(void)
{
    static const UInt32 extension = Window::registerExtension("GL_ARB_timer_query");
    static const TimerFunctionIds ids =
    {
        extension,
        Window::registerFunction("glGenQueries",          Int32(extension), 0x0303),
        Window::registerFunction("glDeleteQueries",       Int32(extension), 0x0303),
        Window::registerFunction("glQueryCounter",        Int32(extension), 0x0303),
        Window::registerFunction("glGetQueryObjectiv",    Int32(extension), 0x0303),
        Window::registerFunction("glGetQueryObjectui64v", Int32(extension), 0x0303)
    };
    return ids;
}
} // namespace

PassTimer::PassTimer(void) :
    _current    (NULL),
    _window     (NULL),
    _objectId   (0),
    _frame      (0),
    _created    (false),
    _timedPasses(0),
    _hasTimes   (false),
    _age        (0),
    _gen        (NULL),
    _delete     (NULL),
    _counter    (NULL),
    _available  (NULL),
    _result     (NULL)
{
    timerFunctionIds();
    for(UInt32 i = 0; i < FramesInFlight; ++i)
    {
        _frames[i].marks   = 0;
        _frames[i].frame   = 0;
        _frames[i].pending = false;
    }
    for(UInt32 i = 0; i < MaxPasses; ++i)
        _times[i] = 0.0;
}

PassTimer::~PassTimer(void)
{
    // The window deletes them at its next frameExit, in its own context.
    if(_objectId != 0)
        Window::destroyGLObject(_objectId, FramesInFlight * (MaxPasses + 1));
}

void PassTimer::handleGL(Window *window, UInt32 idstatus)
{
    UInt32 id;
    Window::GLObjectStatusE status;
    Window::unpackIdStatus(idstatus, id, status);
    if(status != Window::destroy)
        return;
    GLuint name = window->getGLObjectId(id);
    DeleteQueries remove =
        reinterpret_cast<DeleteQueries>(window->getFunction(timerFunctionIds().del));
    if(name != 0 && remove != NULL)
        remove(1, &name);
}

bool PassTimer::resolveFunctions(WindowPtr window)
{
    const TimerFunctionIds &ids = timerFunctionIds();
    if(!window->hasExtension(ids.extension) && window->getGLVersion() < 0x0303)
        return false;
    _gen       = reinterpret_cast<GenQueries         >(window->getFunction(ids.gen));
    _delete    = reinterpret_cast<DeleteQueries      >(window->getFunction(ids.del));
    _counter   = reinterpret_cast<QueryCounter       >(window->getFunction(ids.counter));
    _available = reinterpret_cast<GetQueryObjectiv   >(window->getFunction(ids.available));
    _result    = reinterpret_cast<GetQueryObjectui64v>(window->getFunction(ids.result));
    return _gen != NULL && _delete != NULL && _counter != NULL &&
           _available != NULL && _result != NULL;
}

bool PassTimer::begin(WindowPtr window)
{
    _current = NULL;
    if(!_created)
    {
        if(!resolveFunctions(window))
            return false;
        _window   = window.getCPtr();
        _objectId = Window::registerGLObject(
            osgTypedFunctionVoidFunctor2Ptr<Window, UInt32>(&PassTimer::handleGL),
            FramesInFlight * (MaxPasses + 1));
        for(UInt32 i = 0; i < FramesInFlight; ++i)
        {
            _gen(MaxPasses + 1, _frames[i].queries);
            for(UInt32 q = 0; q <= MaxPasses; ++q)
            {
                const UInt32 id = _objectId + i * (MaxPasses + 1) + q;
                window->validateGLObject(id);
                window->setGLObjectId(id, _frames[i].queries[q]);
            }
        }
        _created = true;
    }
    if(window.getCPtr() != _window)
        return false;

    ++_frame;
    collect();
    for(UInt32 i = 0; i < FramesInFlight && _current == NULL; ++i)
    {
        if(!_frames[i].pending)
            _current = &_frames[i];
    }
    if(_current == NULL)
        return true;

    _current->frame = _frame;
    _current->marks = 1;
    _counter(_current->queries[0], GL_TIMESTAMP);
    return true;
}

void PassTimer::mark(UInt32 pass)
{
    if(_current == NULL || pass + 1 != _current->marks || pass >= MaxPasses)
        return;
    _counter(_current->queries[_current->marks++], GL_TIMESTAMP);
}

void PassTimer::end(void)
{
    if(_current != NULL)
        _current->pending = _current->marks > 1;
    _current = NULL;
}

void PassTimer::collect(void)
{
    // Oldest first, so that the newest arrived frame is the one kept.
    for(;;)
    {
        FrameQueries *oldest = NULL;
        for(UInt32 i = 0; i < FramesInFlight; ++i)
        {
            if(_frames[i].pending && (oldest == NULL || _frames[i].frame < oldest->frame))
                oldest = &_frames[i];
        }
        if(oldest == NULL)
            return;

        // The last timestamp arrives last.
        GLint available = 0;
        _available(oldest->queries[oldest->marks - 1], GL_QUERY_RESULT_AVAILABLE, &available);
        if(!available)
            return;

        UInt64 previous = 0;
        _result(oldest->queries[0], GL_QUERY_RESULT, &previous);
        for(UInt32 i = 1; i < oldest->marks; ++i)
        {
            UInt64 stamp = 0;
            _result(oldest->queries[i], GL_QUERY_RESULT, &stamp);
            _times[i - 1] = stamp > previous ? Real64(stamp - previous) * 1e-6 : 0.0;
            previous = stamp;
        }
        _timedPasses    = oldest->marks - 1;
        _hasTimes       = true;
        _age            = UInt32(_frame - oldest->frame);
        oldest->pending = false;
    }
}

OSG_END_NAMESPACE
