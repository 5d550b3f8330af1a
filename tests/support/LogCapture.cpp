#include "support/LogCapture.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace testsupport
{

namespace
{

// The log has one callback slot and no way to read it back, so captures
// share a single callback and the type to restore belongs to the outermost.
std::recursive_mutex       s_mutex;
std::vector<std::string *> s_sinks;
osg::LogType               s_previousType = osg::LOG_STDERR;
std::size_t                s_made         = 0;

} // namespace

LogCapture::LogCapture() :
    _setLevel     (false),
    _previousLevel(osg::osgLog().getLogLevel())
{
    std::lock_guard<std::recursive_mutex> lock(s_mutex);
    osg::Log &log = osg::osgLog();
    log.flush();
    if(s_sinks.empty())
    {
        s_previousType = log.getLogType();
        log.setLogType(osg::LOG_BUFFER);
        log.getLogBuf().setCallback(&LogCapture::receive, NULL);
    }
    s_sinks.push_back(&_text);
    ++s_made;
}

std::size_t LogCapture::made()
{
    std::lock_guard<std::recursive_mutex> lock(s_mutex);
    return s_made;
}

LogCapture::LogCapture(osg::LogLevel level) :
    LogCapture()
{
    _setLevel = true;
    osg::osgLog().setLogLevel(level);
}

LogCapture::~LogCapture()
{
    std::lock_guard<std::recursive_mutex> lock(s_mutex);
    osg::Log &log = osg::osgLog();
    log.flush();
    if(_setLevel)
        log.setLogLevel(_previousLevel);

    s_sinks.erase(std::remove(s_sinks.begin(), s_sinks.end(), &_text), s_sinks.end());
    if(s_sinks.empty())
    {
        log.getLogBuf().removeCallback();
        log.setLogType(s_previousType);
    }
}

void LogCapture::receive(const osg::Char8 *data, osg::Int32 size, void *)
{
    std::lock_guard<std::recursive_mutex> lock(s_mutex);
    for(std::string *sink : s_sinks)
        sink->append(data, std::size_t(size));
}

bool LogCapture::contains(const std::string &str) const
{
    return _text.find(str) != std::string::npos;
}

std::size_t LogCapture::count(const std::string &substr) const
{
    if(substr.empty())
        return 0;
    std::size_t n = 0;
    for(std::size_t at = _text.find(substr); at != std::string::npos;
        at = _text.find(substr, at + substr.size()))
        ++n;
    return n;
}

} // namespace testsupport
