#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGAttachment.h>
#include <OpenSG/OSGBaseFunctions.h>

#include <cstring>

namespace osg
{

FieldContainerType::FieldContainerType(const Char8        *szName,
                                       const Char8        *szParentName,
                                       const Char8        *szGroupName,
                                       PrototypeCreateF    fPrototypeCreate,
                                       InitContainerF      fInitMethod,
                                       FieldDescription  **pDesc,
                                       UInt32              uiDescByteCounter,
                                       bool                ,
                                       FieldDescriptionList *pDescList) :
    DataType         (szName, szParentName),
    _uiGroupId       (0),
    _bInitialized    (false),
    _pParent         (NULL),
    _szGroupName     (szGroupName != NULL ? szGroupName : (szName != NULL ? szName : "")),
    _pPrototype      (),
    _fPrototypeCreate(fPrototypeCreate),
    _vDescVec        (),
    _pDescList       (pDescList)
{
    UInt32 numDesc = uiDescByteCounter / sizeof(FieldDescription *);
    for(UInt32 i = 0; pDesc != NULL && i < numDesc; ++i)
        _vDescVec.push_back(pDesc[i]);

    FieldContainerFactory::the()->registerType(this);
    _uiGroupId = FieldContainerFactory::the()->registerGroup(_szGroupName.c_str());

    if(fInitMethod != NULL)
        fInitMethod();

    // A library loaded after osgInit registers its types late.
    if(FieldContainerFactory::the()->isInitialized())
        initialize();
}

FieldContainerType::~FieldContainerType(void)
{
}

bool FieldContainerType::initialize(void)
{
    if(_bInitialized)
        return true;

    if(!_szParentName.empty())
    {
        _pParent = FieldContainerFactory::the()->findType(_szParentName.c_str());
        if(_pParent == NULL)
        {
            SWARNING << "FieldContainerType::initialize: parent type "
                     << _szParentName << " of " << _szName << " not found"
                     << std::endl;
            return false;
        }
        _pParent->initialize();
    }

    _bInitialized = true;

    if(_pDescList != NULL)
    {
        FieldDescription **descs = _pDescList->getDescriptions();
        const UInt32       count = _pDescList->getByteSize() / sizeof(FieldDescription *);
        for(UInt32 i = 0; i < count; ++i)
            _vDescVec.push_back(descs[i]);
    }

    if(_fPrototypeCreate != NULL && _pPrototype == NullFC)
    {
        // Containers skip their resources while starting up; a prototype
        // made for a type registered after osgInit must skip them too.
        const SystemState state = GlobalSystemState;
        GlobalSystemState = Startup;
        _pPrototype = _fPrototypeCreate();
        GlobalSystemState = state;
        addRefCP(_pPrototype);
    }
    return true;
}

FieldDescription *FieldContainerType::getFieldDescription(UInt32 uiFieldId)
{
    for(FieldDescription *desc : _vDescVec)
    {
        if(desc->getFieldId() == uiFieldId)
            return desc;
    }
    return _pParent != NULL ? _pParent->getFieldDescription(uiFieldId) : NULL;
}

const FieldDescription *FieldContainerType::getFieldDescription(UInt32 uiFieldId) const
{
    return const_cast<FieldContainerType *>(this)->getFieldDescription(uiFieldId);
}

FieldDescription *FieldContainerType::findFieldDescription(const Char8 *szFieldName)
{
    if(szFieldName == NULL)
        return NULL;
    for(FieldDescription *desc : _vDescVec)
    {
        if(desc->getName() == szFieldName)
            return desc;
    }
    return _pParent != NULL ? _pParent->findFieldDescription(szFieldName) : NULL;
}

const FieldDescription *FieldContainerType::findFieldDescription(const Char8 *szFieldName) const
{
    return const_cast<FieldContainerType *>(this)->findFieldDescription(szFieldName);
}

UInt32 FieldContainerType::getNumFieldDescs(void) const
{
    return UInt32(_vDescVec.size()) + (_pParent != NULL ? _pParent->getNumFieldDescs() : 0);
}

UInt32 FieldContainerType::addDescription(const FieldDescription &desc)
{
    _vDescVec.push_back(new FieldDescription(desc));
    return desc.getFieldId();
}

bool FieldContainerType::setPrototype(FieldContainerPtr pPrototype)
{
    if(pPrototype == NullFC)
        return false;
    setRefdCP(_pPrototype, pPrototype);
    return true;
}

bool FieldContainerType::isDerivedFrom(const TypeBase &other) const
{
    return DataType::isDerivedFrom(other);
}

bool FieldContainerType::isDerivedFrom(const FieldContainerType &other) const
{
    for(const FieldContainerType *t = this; t != NULL; t = t->_pParent)
    {
        if(t->getId() == other.getId())
            return true;
    }
    return false;
}

bool FieldContainerType::isNode(void) const
{
    return isDerivedFrom(Node::getClassType());
}

bool FieldContainerType::isNodeCore(void) const
{
    return isDerivedFrom(NodeCore::getClassType());
}

bool FieldContainerType::isAttachment(void) const
{
    return isDerivedFrom(Attachment::getClassType());
}

FieldContainerPtr FieldContainerType::createFieldContainer(void) const
{
    if(_pPrototype == NullFC)
        return NullFC;
    return _pPrototype->shallowCopy();
}

NodePtr FieldContainerType::createNode(void) const
{
    return isNode() ? NodePtr::dcast(createFieldContainer()) : NodePtr();
}

NodeCorePtr FieldContainerType::createNodeCore(void) const
{
    return isNodeCore() ? NodeCorePtr::dcast(createFieldContainer()) : NodeCorePtr();
}

AttachmentPtr FieldContainerType::createAttachment(void) const
{
    return isAttachment() ? AttachmentPtr::dcast(createFieldContainer()) : AttachmentPtr();
}

void FieldContainerType::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "FieldContainerType " << _szName << " (parent " << _szParentName
         << ", group " << _szGroupName << ", " << getNumFieldDescs()
         << " fields)" << std::endl;
}

// --- factory --------------------------------------------------------------

static InitFuncWrapper s_factoryInit(FieldContainerFactory::initializeFactory);

FieldContainerFactory *FieldContainerFactory::the(void)
{
    // Never destroyed: containers still alive at exit are released while
    // other statics go away, and must find the factory's store then.
    static FieldContainerFactory *factory = new FieldContainerFactory;
    return factory;
}

FieldContainerFactory::FieldContainerFactory(void) :
    _bInitialized  (false),
    _typeIdMap     (),
    _groupNames    (1, std::string()),
    _containerStore(1)
{
}

bool FieldContainerFactory::initializeFactory(void)
{
    FieldContainerFactory *factory = the();
    bool ok = true;
    // Prototypes are made while the system state is still start-up.
    for(auto &entry : factory->_typeIdMap)
        ok = entry.second->initialize() && ok;
    factory->_bInitialized = true;
    return ok;
}

FieldContainerType *FieldContainerFactory::findType(UInt32 uiTypeId) const
{
    auto it = _typeIdMap.find(uiTypeId);
    return it != _typeIdMap.end() ? it->second : NULL;
}

FieldContainerType *FieldContainerFactory::findType(const Char8 *szName) const
{
    return findType(TypeFactory::the()->findTypeId(szName));
}

UInt32 FieldContainerFactory::getNumTypes(void) const
{
    return UInt32(_typeIdMap.size());
}

FieldContainerFactory::TypeMapIterator FieldContainerFactory::beginTypes(void)
{
    return _typeIdMap.begin();
}

FieldContainerFactory::TypeMapIterator FieldContainerFactory::endTypes(void)
{
    return _typeIdMap.end();
}

UInt16 FieldContainerFactory::findGroupId(const Char8 *szName) const
{
    if(szName == NULL)
        return 0;
    for(size_t i = 1; i < _groupNames.size(); ++i)
    {
        if(_groupNames[i] == szName)
            return UInt16(i);
    }
    return 0;
}

const Char8 *FieldContainerFactory::findGroupName(UInt16 uiGroupId) const
{
    return uiGroupId > 0 && uiGroupId < _groupNames.size()
        ? _groupNames[uiGroupId].c_str() : NULL;
}

UInt16 FieldContainerFactory::getNumGroups(void) const
{
    return UInt16(_groupNames.size() - 1);
}

FieldContainerPtr FieldContainerFactory::getContainer(UInt32 uiFieldContainerId) const
{
    return uiFieldContainerId < _containerStore.size()
        ? _containerStore[uiFieldContainerId] : FieldContainerPtr();
}

FieldContainerPtr FieldContainerFactory::createFieldContainer(const Char8 *name) const
{
    const FieldContainerType *type = findType(name);
    return type != NULL ? type->createFieldContainer() : FieldContainerPtr();
}

NodePtr FieldContainerFactory::createNode(const Char8 *name) const
{
    const FieldContainerType *type = findType(name);
    return type != NULL ? type->createNode() : NodePtr();
}

NodeCorePtr FieldContainerFactory::createNodeCore(const Char8 *name) const
{
    const FieldContainerType *type = findType(name);
    return type != NULL ? type->createNodeCore() : NodeCorePtr();
}

AttachmentPtr FieldContainerFactory::createAttachment(const Char8 *name) const
{
    const FieldContainerType *type = findType(name);
    return type != NULL ? type->createAttachment() : AttachmentPtr();
}

UInt32 FieldContainerFactory::registerType(FieldContainerType *pType)
{
    _typeIdMap[pType->getId()] = pType;
    return pType->getId();
}

UInt16 FieldContainerFactory::registerGroup(const Char8 *szName)
{
    UInt16 id = findGroupId(szName);
    if(id == 0)
    {
        _groupNames.push_back(szName != NULL ? szName : "");
        id = UInt16(_groupNames.size() - 1);
    }
    return id;
}

UInt32 FieldContainerFactory::registerFieldContainer(const FieldContainerPtr &pFieldContainer)
{
    _containerStore.push_back(pFieldContainer);
    return UInt32(_containerStore.size() - 1);
}

bool FieldContainerFactory::unregisterFieldContainer(const FieldContainerPtr &pFieldContainer)
{
    UInt32 id = pFieldContainer.getFieldContainerId();
    if(id == 0 || id >= _containerStore.size())
        return false;
    _containerStore[id] = NullFC;
    return true;
}

} // namespace osg
