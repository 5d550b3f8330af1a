#include <OpenSG/OSGStatElemDesc.h>
#include <OpenSG/OSGLog.h>

#include <cstring>

namespace osg
{

// Built by the first descriptor, which may be a static of any library.
std::vector<StatElemDescBase *> *StatElemDescBase::_descVec = NULL;

bool StatElemDescBase::isValidID(Int32 descId)
{
    return _descVec != NULL && descId >= 0 && descId < Int32(_descVec->size());
}

StatElemDescBase *StatElemDescBase::getDesc(Int32 descId)
{
    return isValidID(descId) ? (*_descVec)[descId] : NULL;
}

Int32 StatElemDescBase::getNumOfDescs(void)
{
    return _descVec != NULL ? Int32(_descVec->size()) : 0;
}

StatElemDescBase *StatElemDescBase::findDescByName(const Char8 *name)
{
    if(name == NULL || *name == '\0' || _descVec == NULL)
        return NULL;
    for(StatElemDescBase *desc : *_descVec)
    {
        if(desc->_name == name)
            return desc;
    }
    return NULL;
}

StatElemDescBase::StatElemDescBase(const Char8 *name, const Char8 *description) :
    _id         (-1),
    _name       (name),
    _description(description)
{
    if(_descVec == NULL)
        _descVec = new std::vector<StatElemDescBase *>;

    if(findDescByName(name) != NULL)
    {
        SFATAL << "StatElemDescBase: the name " << name << " is registered twice"
               << std::endl;
        return;
    }
    _id = Int32(_descVec->size());
    _descVec->push_back(this);
}

StatElemDescBase::~StatElemDescBase(void)
{
}

void StatElemDescBase::printAll(void)
{
    for(Int32 i = 0; i < getNumOfDescs(); ++i)
        (*_descVec)[i]->print();
}

void StatElemDescBase::print(void)
{
    SLOG << "StatElemDescBase: ID/Name/Description: " << _id << "/" << _name << "/"
         << _description << std::endl;
}

bool StatElemDescBase::operator <(const StatElemDescBase &other) const
{
    return this < &other;
}

} // namespace osg
