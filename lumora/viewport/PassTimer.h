#ifndef _LUMORA_PASSTIMER_H_
#define _LUMORA_PASSTIMER_H_

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGWindow.h>

OSG_BEGIN_NAMESPACE

// Times a frame's passes on the GPU with timestamp queries. A frame's
// timestamps are read frames later, once the GPU has them, so that timing
// never waits for it; frames issued while every query set is still in
// flight go untimed.
class PassTimer
{
  public:
    enum { MaxPasses = 16, FramesInFlight = 4 };

    PassTimer(void);
    ~PassTimer(void);

    // False where the window has no timer queries; then mark and end do
    // nothing for this frame.
    bool begin(WindowPtr window);
    // Ends pass `pass` (consecutive from 0) at this point of the GL stream.
    void mark (UInt32 pass);
    void end  (void);

    // The newest frame whose timestamps arrived: milliseconds per pass, and
    // how many frames before the one begun last it was.
    bool          hasTimes (void) const { return _hasTimes; }
    const Real64 *getTimes (void) const { return _times;    }
    UInt32        getPasses(void) const { return _timedPasses; }
    UInt32        getAge   (void) const { return _age;      }

  private:
    static void handleGL(Window *window, UInt32 idstatus);

    PassTimer(const PassTimer &) = delete;
    PassTimer &operator =(const PassTimer &) = delete;

    struct FrameQueries
    {
        GLuint queries[MaxPasses + 1];
        UInt32 marks;     // timestamps issued, the frame's start included
        UInt64 frame;
        bool   pending;
    };

    bool resolveFunctions(WindowPtr window);
    void collect        (void);

    FrameQueries  _frames[FramesInFlight];
    FrameQueries *_current;
    Window       *_window;      // the one that made the queries
    UInt32        _objectId;    // first of the queries' GL objects
    UInt64        _frame;
    bool          _created;
    Real64        _times[MaxPasses];
    UInt32        _timedPasses;
    bool          _hasTimes;
    UInt32        _age;

    typedef void (OSG_APIENTRY *GenQueries      )(GLsizei, GLuint *);
    typedef void (OSG_APIENTRY *DeleteQueries   )(GLsizei, const GLuint *);
    typedef void (OSG_APIENTRY *QueryCounter    )(GLuint, GLenum);
    typedef void (OSG_APIENTRY *GetQueryObjectiv)(GLuint, GLenum, GLint *);
    typedef void (OSG_APIENTRY *GetQueryObjectui64v)(GLuint, GLenum, UInt64 *);

    GenQueries          _gen;
    DeleteQueries       _delete;
    QueryCounter        _counter;
    GetQueryObjectiv    _available;
    GetQueryObjectui64v _result;
};

OSG_END_NAMESPACE

#endif
