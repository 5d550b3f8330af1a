#ifndef _OSGLOG_H_
#define _OSGLOG_H_

#include <OpenSG/OSGBaseTypes.h>

#include <cstdarg>
#include <fstream>
#include <mutex>
#include <ostream>
#include <streambuf>
#include <vector>

namespace osg
{

enum LogType  { LOG_NONE = 0, LOG_STDOUT = 1, LOG_STDERR = 2, LOG_FILE = 3, LOG_BUFFER = 4 };
enum LogLevel { LOG_LOG = 0, LOG_FATAL = 1, LOG_WARNING = 2, LOG_NOTICE = 3, LOG_INFO = 4, LOG_DEBUG = 5 };

enum LogHeaderElem
{
    LOG_NONE_HEADER         = 0,
    LOG_BEGIN_NEWLINE_HEADER = 1,
    LOG_TYPE_HEADER         = 2,
    LOG_TIMESTAMP_HEADER    = 4,
    LOG_MODULE_HEADER       = 8,
    LOG_FILE_HEADER         = 16,
    LOG_LINE_HEADER         = 32,
    LOG_END_NEWLINE_HEADER  = 64
};

// Receives everything written in LOG_BUFFER mode; callbacks see each piece.
class LogBuf : public std::streambuf
{
  public:
    typedef void (*Callback)(const Char8 *data, Int32 size, void *clientData);

    void setCallback   (Callback cb, void *clientData = NULL, bool flushData = false);
    void removeCallback(void);
    void setEnabled    (bool value = true) { _enabled = value; }
    bool getEnabled    (void) const        { return _enabled; }
    void clearChunkBag (void)              { _chunks.clear(); }

  protected:
    int_type        overflow(int_type c) override;
    std::streamsize xsputn  (const char *s, std::streamsize n) override;

  private:
    void write(const char *s, std::streamsize n);

    bool              _enabled    = true;
    Callback          _callback   = NULL;
    void             *_clientData = NULL;
    std::string       _chunks;
};

class Log : public std::ostream
{
  public:
    Log(LogType logType = LOG_STDERR, LogLevel logLevel = LOG_NOTICE);
    Log(const Char8 *fileName, LogLevel logLevel = LOG_NOTICE);
    virtual ~Log(void);

    void     setLogLevel(LogLevel logLevel, bool force = false);
    LogLevel getLogLevel(void);
    bool     checkLevel (LogLevel logLevel);

    void     setLogType (LogType logType, bool force = false);
    LogType  getLogType (void);
    void     setLogFile (const Char8 *fileName, bool force = false);

    void     setHeaderElem(UInt32 elemMask, bool force = false);
    UInt32   getHeaderElem(void);

    std::ostream &stream    (LogLevel level);
    std::ostream &doHeader  (LogLevel level, const Char8 *module,
                             const Char8 *file, UInt32 line);
    std::ostream &nilstream (void);

    void doLog(const Char8 *format, ...) __attribute__((format(printf, 2, 3)));

    LogBuf &getLogBuf(void) { return _logBuf; }

    void lock  (void) { _mutex.lock();   }
    void unlock(void) { _mutex.unlock(); }

  private:
    void connect(void);

    LogType               _logType;
    LogLevel              _logLevel;
    UInt32                _headerElem;
    std::ofstream         _fileStream;
    LogBuf                _logBuf;
    std::ostream          _nilStream;
    std::recursive_mutex  _mutex;
};

typedef Log *LogP;

extern LogP osgLogP;

Log          &osgLog    (void);
std::ostream &endLog    (std::ostream &strm);
void          indentLog (UInt32 indent, std::ostream &stream);

void osgStartLog(bool logHeader, LogLevel level, const Char8 *fileName, UInt32 line);

} // namespace osg

#ifndef OSG_LOG_MODULE
#define OSG_LOG_MODULE "OpenSG"
#endif

#define OSG_LOG_HEADER(level) \
    ::osg::osgLog().doHeader(level, OSG_LOG_MODULE, __FILE__, __LINE__)

#define SLOG     OSG_LOG_HEADER(::osg::LOG_LOG)
#define SFATAL   OSG_LOG_HEADER(::osg::LOG_FATAL)
#define SWARNING OSG_LOG_HEADER(::osg::LOG_WARNING)
#define SNOTICE  OSG_LOG_HEADER(::osg::LOG_NOTICE)
#define SINFO    OSG_LOG_HEADER(::osg::LOG_INFO)

#define PLOG     ::osg::osgLog().stream(::osg::LOG_LOG)
#define PFATAL   ::osg::osgLog().stream(::osg::LOG_FATAL)
#define PWARNING ::osg::osgLog().stream(::osg::LOG_WARNING)
#define PNOTICE  ::osg::osgLog().stream(::osg::LOG_NOTICE)
#define PINFO    ::osg::osgLog().stream(::osg::LOG_INFO)

#define FLOG(par)      ::osg::osgLogFHelper(::osg::LOG_LOG,     true,  __FILE__, __LINE__).log par
#define FFATAL(par)    ::osg::osgLogFHelper(::osg::LOG_FATAL,   true,  __FILE__, __LINE__).log par
#define FWARNING(par)  ::osg::osgLogFHelper(::osg::LOG_WARNING, true,  __FILE__, __LINE__).log par
#define FNOTICE(par)   ::osg::osgLogFHelper(::osg::LOG_NOTICE,  true,  __FILE__, __LINE__).log par
#define FINFO(par)     ::osg::osgLogFHelper(::osg::LOG_INFO,    true,  __FILE__, __LINE__).log par
#define FPLOG(par)     ::osg::osgLogFHelper(::osg::LOG_LOG,     false, __FILE__, __LINE__).log par
#define FPFATAL(par)   ::osg::osgLogFHelper(::osg::LOG_FATAL,   false, __FILE__, __LINE__).log par
#define FPWARNING(par) ::osg::osgLogFHelper(::osg::LOG_WARNING, false, __FILE__, __LINE__).log par
#define FPNOTICE(par)  ::osg::osgLogFHelper(::osg::LOG_NOTICE,  false, __FILE__, __LINE__).log par
#define FPINFO(par)    ::osg::osgLogFHelper(::osg::LOG_INFO,    false, __FILE__, __LINE__).log par
#ifdef OSG_DEBUG
#define FDEBUG(par)    ::osg::osgLogFHelper(::osg::LOG_DEBUG,   true,  __FILE__, __LINE__).log par
#else
#define FDEBUG(par)
#endif

namespace osg
{
struct osgLogFHelper
{
    osgLogFHelper(LogLevel level, bool header, const Char8 *file, UInt32 line)
        : _level(level), _header(header), _file(file), _line(line) {}
    void log(const Char8 *format, ...) __attribute__((format(printf, 2, 3)));

    LogLevel     _level;
    bool         _header;
    const Char8 *_file;
    UInt32       _line;
};
}

#endif
