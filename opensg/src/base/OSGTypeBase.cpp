#include <OpenSG/OSGTypeBase.h>
#include <OpenSG/OSGLog.h>

#include <map>
#include <utility>
#include <vector>

namespace osg
{

namespace
{
struct TypeRegistry
{
    std::vector<TypeBase *>                         types{ NULL };
    std::map<std::pair<UInt32, std::string>, UInt32> byName;
};

TypeRegistry &registry(void)
{
    static TypeRegistry r;
    return r;
}
}

TypeFactory *TypeFactory::the(void)
{
    static TypeFactory factory;
    return &factory;
}

UInt32 TypeFactory::registerType(TypeBase *pType)
{
    TypeRegistry &r = registry();
    auto key = std::make_pair(pType->getNameSpace(), pType->getName());
    auto it  = r.byName.find(key);
    if(it != r.byName.end())
    {
        SWARNING << "TypeFactory::registerType: type " << pType->getName()
                 << " registered twice" << std::endl;
        return it->second;
    }
    UInt32 id = UInt32(r.types.size());
    r.types.push_back(pType);
    r.byName[key] = id;
    return id;
}

UInt32 TypeFactory::findTypeId(const Char8 *szName, const UInt32 uiNameSpace)
{
    if(szName == NULL)
        return 0;
    TypeRegistry &r = registry();
    auto it = r.byName.find(std::make_pair(uiNameSpace, std::string(szName)));
    return it == r.byName.end() ? 0 : it->second;
}

TypeBase *TypeFactory::findType(UInt32 uiTypeId)
{
    TypeRegistry &r = registry();
    return uiTypeId < r.types.size() ? r.types[uiTypeId] : NULL;
}

TypeBase *TypeFactory::findType(const Char8 *szName, const UInt32 uiNameSpace)
{
    return findType(findTypeId(szName, uiNameSpace));
}

UInt32 TypeFactory::getNumTypes(void)
{
    return UInt32(registry().types.size() - 1);
}

TypeBase::TypeBase(const Char8 *szName, const Char8 *szParentName,
                   const UInt32 uiNameSpace) :
    _uiTypeId    (0),
    _uiTypeRootId(0),
    _szName      (szName != NULL ? szName : ""),
    _szParentName(szParentName != NULL ? szParentName : ""),
    _uiNameSpace (uiNameSpace)
{
    _uiTypeId = TypeFactory::the()->registerType(this);
}

TypeBase::~TypeBase(void)
{
}

TypeBase *TypeBase::getParent(void) const
{
    if(_szParentName.empty())
        return NULL;
    return TypeFactory::the()->findType(_szParentName.c_str(), _uiNameSpace);
}

bool TypeBase::isDerivedFrom(const TypeBase &other) const
{
    for(const TypeBase *t = this; t != NULL; t = t->getParent())
    {
        if(t->_uiTypeId == other._uiTypeId)
            return true;
    }
    return false;
}

} // namespace osg
