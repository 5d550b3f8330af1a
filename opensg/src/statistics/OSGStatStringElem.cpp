#include <OpenSG/OSGStatStringElem.h>

#include <cstdio>
#include <vector>

namespace osg
{

StatStringElem::StatStringElem(StatElemDescBase *desc) : StatElem(desc), _value()
{
}

StatStringElem::~StatStringElem(void)
{
}

StatElem *StatStringElem::create(StatElemDescBase *desc)
{
    return new StatStringElem(desc);
}

void StatStringElem::reset(void)
{
    _value.clear();
}

void StatStringElem::putToString(std::string &str, const char *format) const
{
    if(format == NULL)
    {
        str = _value;
        return;
    }
    std::vector<char> text(std::string(format).size() + _value.size() + 64);
    std::snprintf(text.data(), text.size(), format, _value.c_str());
    str = text.data();
}

bool StatStringElem::getFromString(const Char8 *&inVal)
{
    if(inVal != NULL)
        _value = inVal;
    return true;
}

Real64 StatStringElem::getValue(void) const
{
    return 0.0;
}

bool StatStringElem::operator <(const StatStringElem &other) const
{
    return this < &other;
}

StatElem *StatStringElem::clone(void) const
{
    StatStringElem *e = new StatStringElem(getDesc());
    e->_value = _value;
    return e;
}

StatElem &StatStringElem::operator +=(const StatElem &other)
{
    if(const StatStringElem *o = dynamic_cast<const StatStringElem *>(&other))
        _value += " " + o->_value;
    return *this;
}

} // namespace osg
