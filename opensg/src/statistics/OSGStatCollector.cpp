#include <OpenSG/OSGStatCollector.h>

#include <cstring>

namespace osg
{

StatCollector::StatCollector(void) : _elemVec()
{
    refitElemNum();
}

StatCollector::StatCollector(const StatCollector &source) : _elemVec()
{
    *this = source;
}

StatCollector *StatCollector::create(void)
{
    return new StatCollector();
}

StatCollector::~StatCollector(void)
{
    clearElems();
}

// Elements are owned: a copy clones them.
const StatCollector &StatCollector::operator =(const StatCollector &source)
{
    if(this == &source)
        return *this;
    clearElems();
    _elemVec.resize(source._elemVec.size(), NULL);
    for(size_t i = 0; i < source._elemVec.size(); ++i)
    {
        if(source._elemVec[i] != NULL)
            _elemVec[i] = source._elemVec[i]->clone();
    }
    return *this;
}

void StatCollector::refitElemNum(void)
{
    const size_t descs = size_t(StatElemDescBase::getNumOfDescs());
    if(_elemVec.size() < descs)
        _elemVec.resize(descs, NULL);
}

void StatCollector::clearElems(void)
{
    for(StatElem *elem : _elemVec)
        delete elem;
    _elemVec.clear();
}

void StatCollector::reset(void)
{
    for(StatElem *elem : _elemVec)
    {
        if(elem != NULL)
            elem->reset();
    }
}

StatElem *StatCollector::getElem(Int32 elemId, bool create)
{
    if(!create)
        return getElem(elemId);
    if(!StatElemDescBase::isValidID(elemId))
        return NULL;
    if(elemId >= Int32(_elemVec.size()))
        refitElemNum();
    StatElem *&elem = _elemVec[elemId];
    if(elem == NULL)
        elem = StatElemDescBase::getDesc(elemId)->createElem();
    return elem;
}

// "{name=value|name=value}".
void StatCollector::putToString(std::string &str) const
{
    str = "{";
    bool first = true;
    for(StatElem *elem : _elemVec)
    {
        if(elem == NULL)
            continue;
        if(!first)
            str += "|";
        std::string value;
        elem->putToString(value);
        str += elem->getDesc()->getName() + "=" + value;
        first = false;
    }
    str += "}";
}

bool StatCollector::getFromString(const Char8 *&inVal)
{
    const Char8 *c = inVal;
    if(c == NULL || *c++ != '{')
        return false;
    clearElems();
    while(*c != '\0' && *c != '}')
    {
        const Char8 *end = c;
        while(*end != '\0' && *end != '=' && *end != '}' && *end != '|')
            ++end;
        if(*end != '=')
            return false;
        StatElemDescBase *desc =
            StatElemDescBase::findDescByName(std::string(c, end).c_str());
        if(desc == NULL)
            return false;
        StatElem *elem = getElem(*desc);

        c = end = end + 1;
        while(*end != '\0' && *end != '}' && *end != '|')
            ++end;
        if(*end == '\0')
            return false;
        const std::string value(c, end);
        const Char8      *valp = value.c_str();
        if(!elem->getFromString(valp))
            return false;
        c = *end == '|' ? end + 1 : end;
    }
    inVal = c;
    return true;
}

bool StatCollector::getValue(std::string &name, Real64 &val)
{
    StatElemDescBase *desc = StatElemDescBase::findDescByName(name.c_str());
    if(desc == NULL)
        return false;
    StatElem *elem = getElem(*desc, false);
    if(elem == NULL)
        return false;
    val = elem->getValue();
    return true;
}

bool StatCollector::operator <(const StatCollector &other) const
{
    return this < &other;
}

StatCollector StatCollector::operator +(const StatCollector &other)
{
    StatCollector sum(*this);
    sum += other;
    return sum;
}

StatCollector &StatCollector::operator +=(const StatCollector &other)
{
    if(other._elemVec.size() > _elemVec.size())
        _elemVec.resize(other._elemVec.size(), NULL);
    for(size_t i = 0; i < other._elemVec.size(); ++i)
    {
        if(other._elemVec[i] == NULL)
            continue;
        if(_elemVec[i] == NULL)
            _elemVec[i] = other._elemVec[i]->clone();
        else
            *_elemVec[i] += *other._elemVec[i];
    }
    return *this;
}

} // namespace osg
