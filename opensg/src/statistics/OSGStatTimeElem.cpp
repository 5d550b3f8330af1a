#include <OpenSG/OSGStatTimeElem.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace osg
{

StatTimeElem::StatTimeElem(StatElemDescBase *desc) :
    StatElem(desc), _startTime(0.0), _time(0.0)
{
}

StatTimeElem::~StatTimeElem(void)
{
}

StatElem *StatTimeElem::create(StatElemDescBase *desc)
{
    return new StatTimeElem(desc);
}

void StatTimeElem::reset(void)
{
    _time = 0.0;
}

void StatTimeElem::putToString(std::string &str, const char *format) const
{
    if(format == NULL)
    {
        std::ostringstream text;
        text << _time;
        str = text.str();
        return;
    }

    std::string  fmt   = format;
    double       value = _time;
    const char  *proc  = std::strchr(format, '%');
    if(proc != NULL && std::strncmp(proc, "%ms", 3) == 0)
    {
        fmt.insert(size_t(proc - format) + 1, ".2f ");
        value = _time * 1000.0;
    }
    else if(proc != NULL && std::strncmp(proc, "%r", 2) == 0)
    {
        fmt.erase(size_t(proc - format) + 1, 1);
        value = 1.0 / _time;
    }
    char text[256];
    std::snprintf(text, sizeof(text), fmt.c_str(), value);
    str = text;
}

bool StatTimeElem::getFromString(const Char8 *&inVal)
{
    char   *end = NULL;
    double  v   = std::strtod(inVal, &end);
    if(end == inVal)
        return false;
    _time = v;
    inVal = end;
    return true;
}

Real64 StatTimeElem::getValue(void) const
{
    return _time;
}

bool StatTimeElem::operator <(const StatTimeElem &other) const
{
    return _time < other._time;
}

StatElem *StatTimeElem::clone(void) const
{
    StatTimeElem *e = new StatTimeElem(getDesc());
    e->_startTime = _startTime;
    e->_time      = _time;
    return e;
}

StatElem &StatTimeElem::operator +=(const StatElem &other)
{
    if(const StatTimeElem *o = dynamic_cast<const StatTimeElem *>(&other))
        _time += o->_time;
    return *this;
}

} // namespace osg
