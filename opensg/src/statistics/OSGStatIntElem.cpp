#include <OpenSG/OSGStatIntElem.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace osg
{

StatIntElem::StatIntElem(StatElemDescBase *desc) : StatElem(desc), _value(0)
{
}

StatIntElem::~StatIntElem(void)
{
}

StatElem *StatIntElem::create(StatElemDescBase *desc)
{
    return new StatIntElem(desc);
}

void StatIntElem::reset(void)
{
    _value = 0;
}

void StatIntElem::putToString(std::string &str, const char *format) const
{
    if(format == NULL)
    {
        str = std::to_string(_value);
        return;
    }
    char text[256];
    std::snprintf(text, sizeof(text), format, _value);
    str = text;
}

bool StatIntElem::getFromString(const Char8 *&inVal)
{
    char *end = NULL;
    long  v   = std::strtol(inVal, &end, 10);
    if(end == inVal)
        return false;
    _value = Int32(v);
    inVal  = end;
    return true;
}

Real64 StatIntElem::getValue(void) const
{
    return Real64(_value);
}

bool StatIntElem::operator <(const StatIntElem &other) const
{
    return _value < other._value;
}

StatElem *StatIntElem::clone(void) const
{
    StatIntElem *e = new StatIntElem(getDesc());
    e->_value = _value;
    return e;
}

StatElem &StatIntElem::operator +=(const StatElem &other)
{
    if(const StatIntElem *o = dynamic_cast<const StatIntElem *>(&other))
        _value += o->_value;
    return *this;
}

} // namespace osg
