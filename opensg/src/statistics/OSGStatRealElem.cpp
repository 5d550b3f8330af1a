#include <OpenSG/OSGStatRealElem.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace osg
{

StatRealElem::StatRealElem(StatElemDescBase *desc) : StatElem(desc), _value(0.f)
{
}

StatRealElem::~StatRealElem(void)
{
}

StatElem *StatRealElem::create(StatElemDescBase *desc)
{
    return new StatRealElem(desc);
}

void StatRealElem::reset(void)
{
    _value = 0.f;
}

void StatRealElem::putToString(std::string &str, const char *format) const
{
    if(format == NULL)
    {
        std::ostringstream text;
        text << _value;
        str = text.str();
        return;
    }
    char text[256];
    std::snprintf(text, sizeof(text), format, double(_value));
    str = text;
}

bool StatRealElem::getFromString(const Char8 *&inVal)
{
    char  *end = NULL;
    float  v   = std::strtof(inVal, &end);
    if(end == inVal)
        return false;
    _value = v;
    inVal  = end;
    return true;
}

Real64 StatRealElem::getValue(void) const
{
    return Real64(_value);
}

bool StatRealElem::operator <(const StatRealElem &other) const
{
    return _value < other._value;
}

StatElem *StatRealElem::clone(void) const
{
    StatRealElem *e = new StatRealElem(getDesc());
    e->_value = _value;
    return e;
}

StatElem &StatRealElem::operator +=(const StatElem &other)
{
    if(const StatRealElem *o = dynamic_cast<const StatRealElem *>(&other))
        _value += o->_value;
    return *this;
}

} // namespace osg
