#include <OpenSG/OSGLog.h>

#include <cstdio>
#include <iostream>

namespace osg
{

LogP osgLogP = NULL;

static const Char8 *levelName(LogLevel level)
{
    static const Char8 *names[] = { "LOG", "FATAL", "WARNING", "NOTICE", "INFO", "DEBUG" };
    return names[level];
}

void LogBuf::setCallback(Callback cb, void *clientData, bool flushData)
{
    _callback   = cb;
    _clientData = clientData;

    if(flushData && _callback != NULL && !_chunks.empty())
        _callback(_chunks.data(), Int32(_chunks.size()), _clientData);

    _chunks.clear();
}

void LogBuf::removeCallback(void)
{
    _callback   = NULL;
    _clientData = NULL;
}

void LogBuf::write(const char *s, std::streamsize n)
{
    if(n <= 0)
        return;

    // As in 1.8: enabled only decides whether the text is kept; a callback
    // hears everything.
    if(_enabled)
        _chunks.append(s, size_t(n));
    if(_callback != NULL)
        _callback(s, Int32(n), _clientData);
}

LogBuf::int_type LogBuf::overflow(int_type c)
{
    if(!traits_type::eq_int_type(c, traits_type::eof()))
    {
        char ch = traits_type::to_char_type(c);
        write(&ch, 1);
    }
    return traits_type::not_eof(c);
}

std::streamsize LogBuf::xsputn(const char *s, std::streamsize n)
{
    write(s, n);
    return n;
}

// A stream whose buffer swallows everything: messages above the level.
class NilBuf : public std::streambuf
{
  protected:
    int_type        overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char *, std::streamsize n) override { return n; }
};

static NilBuf s_nilBuf;

Log::Log(LogType logType, LogLevel logLevel) :
    std::ostream(NULL),
    _logType   (logType),
    _logLevel  (logLevel),
    _headerElem(LOG_TYPE_HEADER),
    _nilStream (&s_nilBuf)
{
    connect();
}

Log::Log(const Char8 *fileName, LogLevel logLevel) :
    std::ostream(NULL),
    _logType   (LOG_FILE),
    _logLevel  (logLevel),
    _headerElem(LOG_TYPE_HEADER),
    _nilStream (&s_nilBuf)
{
    setLogFile(fileName, true);
}

Log::~Log(void)
{
    flush();
}

void Log::connect(void)
{
    switch(_logType)
    {
        case LOG_STDOUT: rdbuf(std::cout.rdbuf()); break;
        case LOG_STDERR: rdbuf(std::cerr.rdbuf()); break;
        case LOG_FILE:   rdbuf(_fileStream.is_open() ? static_cast<std::streambuf *>(_fileStream.rdbuf()) : &s_nilBuf); break;
        case LOG_BUFFER: rdbuf(&_logBuf); break;
        case LOG_NONE:
        default:         rdbuf(&s_nilBuf); break;
    }
}

void Log::setLogLevel(LogLevel logLevel, bool OSG_CHECK_ARG(force))
{
    _logLevel = logLevel;
}

LogLevel Log::getLogLevel(void)
{
    return _logLevel;
}

bool Log::checkLevel(LogLevel logLevel)
{
    return logLevel <= _logLevel;
}

void Log::setLogType(LogType logType, bool OSG_CHECK_ARG(force))
{
    flush();
    _logType = logType;
    connect();
}

LogType Log::getLogType(void)
{
    return _logType;
}

void Log::setLogFile(const Char8 *fileName, bool OSG_CHECK_ARG(force))
{
    flush();
    if(_fileStream.is_open())
        _fileStream.close();
    if(fileName != NULL && *fileName != '\0')
    {
        _fileStream.open(fileName);
        _logType = LOG_FILE;
    }
    connect();
}

void Log::setHeaderElem(UInt32 elemMask, bool OSG_CHECK_ARG(force))
{
    _headerElem = elemMask;
}

UInt32 Log::getHeaderElem(void)
{
    return _headerElem;
}

std::ostream &Log::stream(LogLevel level)
{
    return checkLevel(level) ? static_cast<std::ostream &>(*this) : _nilStream;
}

std::ostream &Log::nilstream(void)
{
    return _nilStream;
}

std::ostream &Log::doHeader(LogLevel level, const Char8 *module,
                            const Char8 *file, UInt32 line)
{
    if(!checkLevel(level))
        return _nilStream;

    std::ostream &out = *this;
    if(_headerElem & LOG_BEGIN_NEWLINE_HEADER)
        out << '\n';
    if(_headerElem & LOG_TYPE_HEADER)
        out << levelName(level) << ": ";
    if(_headerElem & LOG_MODULE_HEADER)
        out << module << ": ";
    if(_headerElem & LOG_FILE_HEADER)
        out << file << ':';
    if(_headerElem & LOG_LINE_HEADER)
        out << line << ": ";
    return out;
}

void Log::doLog(const Char8 *format, ...)
{
    char buffer[4096];
    va_list args;
    va_start(args, format);
    vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);
    *this << buffer;
    flush();
}

void osgLogFHelper::log(const Char8 *format, ...)
{
    Log &log = osgLog();
    if(!log.checkLevel(_level))
        return;

    char buffer[4096];
    va_list args;
    va_start(args, format);
    vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);

    std::ostream &out = _header ? log.doHeader(_level, OSG_LOG_MODULE, _file, _line)
                                : log.stream(_level);
    out << buffer;
    out.flush();
}

Log &osgLog(void)
{
    if(osgLogP == NULL)
        osgLogP = new Log(LOG_STDERR, LOG_WARNING);
    return *osgLogP;
}

std::ostream &endLog(std::ostream &strm)
{
    strm << std::endl;
    return strm;
}

void indentLog(UInt32 indent, std::ostream &stream)
{
    for(UInt32 i = 0; i < indent; ++i)
        stream << ' ';
}

} // namespace osg
