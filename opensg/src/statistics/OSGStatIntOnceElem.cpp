#include <OpenSG/OSGStatIntOnceElem.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace osg
{

StatIntOnceElem::StatIntOnceElem(StatElemDescBase *desc) :
    StatElem(desc), _value(0), _ids()
{
}

StatIntOnceElem::~StatIntOnceElem(void)
{
}

StatElem *StatIntOnceElem::create(StatElemDescBase *desc)
{
    return new StatIntOnceElem(desc);
}

void StatIntOnceElem::add(UInt32 contributorId, Int32 v)
{
    if(_ids.insert(contributorId).second)
        _value += v;
}

void StatIntOnceElem::sub(UInt32 contributorId, Int32 v)
{
    if(_ids.insert(contributorId).second)
        _value -= v;
}

void StatIntOnceElem::inc(UInt32 contributorId) { add(contributorId, 1); }
void StatIntOnceElem::dec(UInt32 contributorId) { sub(contributorId, 1); }

void StatIntOnceElem::reset(void)
{
    _value = 0;
    _ids.clear();
}

void StatIntOnceElem::putToString(std::string &str, const char *format) const
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

bool StatIntOnceElem::getFromString(const Char8 *&inVal)
{
    char *end = NULL;
    long  v   = std::strtol(inVal, &end, 10);
    if(end == inVal)
        return false;
    _value = Int32(v);
    inVal  = end;
    return true;
}

Real64 StatIntOnceElem::getValue(void) const
{
    return Real64(_value);
}

bool StatIntOnceElem::operator <(const StatIntOnceElem &other) const
{
    return _value < other._value;
}

StatElem *StatIntOnceElem::clone(void) const
{
    StatIntOnceElem *e = new StatIntOnceElem(getDesc());
    e->_value = _value;
    e->_ids   = _ids;
    return e;
}

StatElem &StatIntOnceElem::operator +=(const StatElem &other)
{
    if(const StatIntOnceElem *o = dynamic_cast<const StatIntOnceElem *>(&other))
    {
        _value += o->_value;
        _ids.insert(o->_ids.begin(), o->_ids.end());
    }
    return *this;
}

} // namespace osg
