#ifndef TESTS_SUPPORT_LOGCAPTURE_H
#define TESTS_SUPPORT_LOGCAPTURE_H

#include <OpenSG/OSGLog.h>

#include <cstddef>
#include <string>

namespace testsupport
{

// Collects what the OpenSG log writes while it lives. Captures nest: every
// live capture sees all text, and the log's type (and level, if given) come
// back when the last one goes.
class LogCapture
{
  public:
    LogCapture();
    explicit LogCapture(osg::LogLevel level);
    ~LogCapture();

    LogCapture(const LogCapture &)            = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    const std::string &text() const { return _text; }
    bool        contains(const std::string &str) const;
    std::size_t count   (const std::string &substr) const;
    void        clear   () { _text.clear(); }

    // How many captures were ever made: a test that made one reads the log.
    static std::size_t made();

  private:
    static void receive(const osg::Char8 *data, osg::Int32 size, void *);

    std::string   _text;
    bool          _setLevel;
    osg::LogLevel _previousLevel;
};

} // namespace testsupport

#endif
