#include <OpenSG/OSGFieldContainer.h>
#include <OpenSG/OSGBaseFunctions.h>

namespace osg
{

const NullFieldContainerPtr NullFC;

FieldContainerType FieldContainer::_type("FieldContainer");

FieldContainerType &osgClassTypeOf(FieldContainer *)
{
    return FieldContainer::getClassType();
}

FieldContainer::FieldContainer(void) :
    _refCount   (0),
    _containerId(0)
{
}

FieldContainer::FieldContainer(const FieldContainer &) :
    _refCount   (0),
    _containerId(0)
{
}

FieldContainer::~FieldContainer(void)
{
}

FieldContainerType &FieldContainer::getType(void)
{
    return _type;
}

const FieldContainerType &FieldContainer::getType(void) const
{
    return _type;
}

Field *FieldContainer::getField(UInt32 fieldId)
{
    const FieldDescription *desc = getType().getFieldDescription(fieldId);
    return desc != NULL ? desc->getField(*this) : NULL;
}

Field *FieldContainer::getField(const Char8 *fieldName)
{
    const FieldDescription *desc = getType().findFieldDescription(fieldName);
    return desc != NULL ? desc->getField(*this) : NULL;
}

UInt32 FieldContainer::getBinSize(const BitVector &)
{
    return 0;
}

void FieldContainer::copyToBin(BinaryDataHandler &, const BitVector &)
{
}

void FieldContainer::copyFromBin(BinaryDataHandler &, const BitVector &)
{
}

void FieldContainer::changed(BitVector, UInt32)
{
}

void FieldContainer::dump(UInt32 uiIndent, const BitVector) const
{
    indentLog(uiIndent, PLOG);
    PLOG << getType().getName() << " (" << this << ")" << std::endl;
}

void FieldContainer::onCreate(const FieldContainer *)
{
}

void FieldContainer::onCreateAspect(const FieldContainer *, const FieldContainer *)
{
}

void FieldContainer::onDestroy(void)
{
}

void FieldContainer::executeSync(FieldContainer &, const BitVector &)
{
}

void FieldContainer::executeSyncImpl(FieldContainer *, const BitVector &)
{
}

void FieldContainer::registerNew(const FieldContainerPtr &result)
{
    result->_containerId =
        FieldContainerFactory::the()->registerFieldContainer(result);
    Thread::getCurrentChangeList()->addCreated(result->_containerId);
}

// --- pointer operations ---------------------------------------------------

Int32 FieldContainerPtrBase::getRefCount(void) const
{
    return _storeP != NULL ? _storeP->_refCount : 0;
}

UInt32 FieldContainerPtrBase::getFieldContainerId(void) const
{
    return _storeP != NULL ? _storeP->_containerId : 0;
}

UInt16 FieldContainerPtrBase::getContainerSize(void) const
{
    return _storeP != NULL ? UInt16(_storeP->getContainerSize()) : 0;
}

void FieldContainerPtrBase::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    if(_storeP != NULL)
        _storeP->dump(uiIndent, bvFlags);
    else
    {
        indentLog(uiIndent, PLOG);
        PLOG << "NullFC" << std::endl;
    }
}

std::ostream &operator <<(std::ostream &os, const FieldContainerPtrBase &fc)
{
    if(fc == NullFC)
        return os << "NullFC";
    return os << fc.getBaseCPtr()->getTypeName() << ":" << fc.getFieldContainerId();
}

void addRefCP(const FieldContainerPtrBase &objectP)
{
    if(objectP != NullFC)
        ++objectP.getBaseCPtr()->_refCount;
}

void subRefCP(const FieldContainerPtrBase &objectP)
{
    if(objectP == NullFC)
        return;

    FieldContainer *fc = objectP.getBaseCPtr();
    if(--fc->_refCount > 0)
        return;

    FieldContainerPtr ptr(fc);
    Thread::getCurrentChangeList()->addDestroyed(fc->_containerId);
    FieldContainerFactory::the()->unregisterFieldContainer(ptr);
    fc->onDestroy();
    delete fc;
}

void setRefdCP(FieldContainerPtrBase &objectP, const FieldContainerPtrBase &newObjectP)
{
    if(objectP == newObjectP)
        return;
    addRefCP(newObjectP);
    subRefCP(objectP);
    objectP = newObjectP;
}

void clearRefCP(FieldContainerPtrBase &objectP)
{
    subRefCP(objectP);
    objectP = NullFC;
}

void beginEditCP(const FieldContainerPtr &, BitVector, UInt32)
{
}

void endEditCP(const FieldContainerPtr &objectP, BitVector whichField, UInt32 origin)
{
    if(objectP == NullFC)
        return;
    Thread::getCurrentChangeList()->addChanged(objectP.getFieldContainerId(), whichField);
    objectP->changed(whichField, origin);
}

void changedCP(const FieldContainerPtr &objectP, BitVector whichField, UInt32 origin)
{
    if(objectP == NullFC)
        return;
    objectP->changed(whichField, origin);
}

void endEditNotChangedCP(const FieldContainerPtr &objectP, BitVector whichField, UInt32)
{
    if(objectP == NullFC)
        return;
    Thread::getCurrentChangeList()->addChanged(objectP.getFieldContainerId(), whichField);
}

// --- thread and change list ----------------------------------------------

ChangeList *Thread::getCurrentChangeList(void)
{
    static ChangeList list;
    return &list;
}

// Entries stay until the application clears or applies the list: dropping
// them would lose changes that a consumer of the list has not seen yet.
void ChangeList::addChanged(UInt32 uiContainerId, BitVector bvWhichField)
{
    if(!_changed.empty() && _changed.back().first == uiContainerId)
    {
        _changed.back().second |= bvWhichField;
        return;
    }
    _changed.push_back(ChangeEntry(uiContainerId, bvWhichField));
}

void ChangeList::addCreated(UInt32 uiContainerId)
{
    _created.push_back(uiContainerId);
}

void ChangeList::addDestroyed(UInt32 uiContainerId)
{
    _destroyed.push_back(uiContainerId);
}

void ChangeList::clearAll(void)
{
    _changed.clear();
    _created.clear();
    _destroyed.clear();
}

bool ChangeList::merge(ChangeList &other)
{
    _changed.insert(_changed.end(), other._changed.begin(), other._changed.end());
    _created.insert(_created.end(), other._created.begin(), other._created.end());
    _destroyed.insert(_destroyed.end(), other._destroyed.begin(), other._destroyed.end());
    return true;
}

void ChangeList::swap(ChangeList &other)
{
    _changed.swap(other._changed);
    _created.swap(other._created);
    _destroyed.swap(other._destroyed);
}

void ChangeList::applyTo(UInt32)
{
}

void ChangeList::apply(void)
{
}

void ChangeList::applyAndClear(void)
{
    clearAll();
}

} // namespace osg
