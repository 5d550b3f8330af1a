#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGNodeCore.h>

#include <OpenSG/OSGFieldContainerFactory.h>

#include <cctype>
#include <map>
#include <set>

namespace osg
{

OSG_FC_TYPE_COMMON_IMPL(Node)
static FieldContainerPtr createNodePrototype(void)
{
    return Node::createEmpty();
}

FieldContainerType Node::_type("Node", "AttachmentContainer", NULL,
                               &createNodePrototype, &Node::initMethod,
                               NULL, 0, false, &Node::_fieldDescriptions);

NodePtr Node::create(void)
{
    NodePtr fc;
    if(getClassType().getPrototype() != NullFC)
        fc = NodePtr::dcast(getClassType().getPrototype()->shallowCopy());
    return fc;
}

NodePtr Node::createEmpty(void)
{
    NodePtr returnValue;
    newPtr(returnValue);
    return returnValue;
}

FieldContainerPtr Node::shallowCopy(void) const
{
    NodePtr returnValue;
    newPtr(returnValue, this);
    return returnValue;
}

// --- NodePtr / CNodePtr ---------------------------------------------------

NodePtr::NodePtr(const Node &source) : Inherited()
{
    _storeP = const_cast<Node *>(&source);
}

NodePtr::NodePtr(const Node *source) : Inherited()
{
    _storeP = const_cast<Node *>(source);
}

FieldContainer *NodePtr::getNodeCPtr(void) const
{
    return _storeP;
}

NodeCore *NodePtr::getCore(void) const
{
    return _storeP != NULL ? static_cast<Node *>(_storeP)->getCore().getCPtr() : NULL;
}

NodeCore *CNodePtr::operator->(void) const
{
    return _storeP != NULL ? static_cast<Node *>(_storeP)->getCore().getCPtr() : NULL;
}

Node *CNodePtr::getNode(void) const
{
    return static_cast<Node *>(_storeP);
}

NodePtr makeNodeFor(NodeCorePtr core)
{
    NodePtr n = Node::create();
    beginEditCP(n, Node::CoreFieldMask);
    n->setCore(core);
    endEditCP(n, Node::CoreFieldMask);
    return n;
}

// --- Node -----------------------------------------------------------------

Node::Node(void) :
    Inherited  (),
    _sfVolume  (),
    _sfTravMask(TypeTraits<UInt32>::getMax()),
    _sfParent  (),
    _mfChildren(),
    _sfCore    ()
{
    _sfVolume.getValue().setValid(false);
}

// A copy is a fresh node: no parent, children or core of its own yet.
Node::Node(const Node &source) :
    Inherited  (source),
    _sfVolume  (),
    _sfTravMask(source._sfTravMask),
    _sfParent  (),
    _mfChildren(),
    _sfCore    ()
{
    _sfVolume.getValue().setValid(false);
}

Node::~Node(void)
{
}

void Node::onDestroy(void)
{
    NodePtr self = getPtr();

    if(_sfCore.getValue() != NullFC)
    {
        NodeCorePtr core = _sfCore.getValue();
        beginEditCP(core, NodeCore::ParentsFieldMask);
        core->subParent(self);
        endEditCP(core, NodeCore::ParentsFieldMask);
        _sfCore.setValue(NullFC);
        subRefCP(core);
    }

    MFNodePtr children;
    children.swap(_mfChildren);
    for(NodePtr child : children)
    {
        beginEditCP(child, Node::ParentFieldMask);
        child->setParent(NullFC);
        endEditCP(child, Node::ParentFieldMask);
        subRefCP(child);
    }

    Inherited::onDestroy();
}

NodeCorePtr Node::getCore(void)
{
    return _sfCore.getValue();
}

NodeCorePtr Node::getCore(void) const
{
    return _sfCore.getValue();
}

void Node::setCore(const NodeCorePtr &core)
{
    NodePtr     self    = getPtr();
    NodeCorePtr oldCore = _sfCore.getValue();

    if(oldCore == core)
        return;

    addRefCP(core);

    if(oldCore != NullFC)
    {
        beginEditCP(oldCore, NodeCore::ParentsFieldMask);
        oldCore->subParent(self);
        endEditCP(oldCore, NodeCore::ParentsFieldMask);
        subRefCP(oldCore);
    }

    _sfCore.setValue(core);

    if(core != NullFC)
    {
        beginEditCP(core, NodeCore::ParentsFieldMask);
        core->addParent(self);
        endEditCP(core, NodeCore::ParentsFieldMask);
    }

    invalidateVolume();
}

NodePtr Node::getParent(void)
{
    return _sfParent.getValue();
}

void Node::setParent(const NodePtr &parent)
{
    _sfParent.setValue(parent);
}

UInt32 Node::getNChildren(void) const
{
    return _mfChildren.size();
}

// Detaches a node from its current parent before it is placed elsewhere; the
// caller already holds a reference, so the node survives.
static void detachFromParent(const NodePtr &childP)
{
    NodePtr oldParent = childP->getParent();
    if(oldParent == NullFC)
        return;
    beginEditCP(oldParent, Node::ChildrenFieldMask);
    oldParent->subChild(childP);
    endEditCP(oldParent, Node::ChildrenFieldMask);
}

void Node::addChild(const NodePtr &childP)
{
    if(childP == NullFC)
        return;

    addRefCP(childP);
    detachFromParent(childP);

    _mfChildren.push_back(childP);
    beginEditCP(childP, Node::ParentFieldMask);
    childP->setParent(getPtr());
    endEditCP(childP, Node::ParentFieldMask);

    invalidateVolume();
}

void Node::insertChild(UInt32 childIndex, const NodePtr &childP)
{
    if(childP == NullFC)
        return;

    addRefCP(childP);
    detachFromParent(childP);

    if(childIndex > _mfChildren.size())
        childIndex = _mfChildren.size();
    _mfChildren.insert(_mfChildren.begin() + childIndex, childP);

    beginEditCP(childP, Node::ParentFieldMask);
    childP->setParent(getPtr());
    endEditCP(childP, Node::ParentFieldMask);

    invalidateVolume();
}

void Node::replaceChild(UInt32 childIndex, const NodePtr &childP)
{
    if(childP == NullFC || childIndex >= _mfChildren.size())
        return;

    addRefCP(childP);
    detachFromParent(childP);

    // The detach may have shifted our own children if it was one of them.
    if(childIndex >= _mfChildren.size())
    {
        subRefCP(childP);
        return;
    }

    NodePtr oldChild = _mfChildren[childIndex];
    beginEditCP(oldChild, Node::ParentFieldMask);
    oldChild->setParent(NullFC);
    endEditCP(oldChild, Node::ParentFieldMask);

    _mfChildren[childIndex] = childP;
    beginEditCP(childP, Node::ParentFieldMask);
    childP->setParent(getPtr());
    endEditCP(childP, Node::ParentFieldMask);

    subRefCP(oldChild);
    invalidateVolume();
}

bool Node::replaceChildBy(const NodePtr &childP, const NodePtr &newChildP)
{
    Int32 index = findChild(childP);
    if(index < 0 || newChildP == NullFC)
        return false;

    if(childP == newChildP)
        return true;

    addRefCP(newChildP);
    detachFromParent(newChildP);
    index = findChild(childP);

    beginEditCP(childP, Node::ParentFieldMask);
    childP->setParent(NullFC);
    endEditCP(childP, Node::ParentFieldMask);

    _mfChildren[index] = newChildP;
    beginEditCP(newChildP, Node::ParentFieldMask);
    newChildP->setParent(getPtr());
    endEditCP(newChildP, Node::ParentFieldMask);

    subRefCP(childP);
    invalidateVolume();
    return true;
}

Int32 Node::findChild(const NodePtr &childP) const
{
    for(UInt32 i = 0; i < _mfChildren.size(); ++i)
    {
        if(_mfChildren[i] == childP)
            return Int32(i);
    }
    return -1;
}

void Node::subChild(const NodePtr &childP)
{
    Int32 index = findChild(childP);
    if(index < 0)
    {
        SWARNING << "Node::subChild: " << childP << " is not one of my children"
                 << std::endl;
        return;
    }
    subChild(UInt32(index));
}

void Node::subChild(UInt32 childIndex)
{
    if(childIndex >= _mfChildren.size())
        return;

    NodePtr child = _mfChildren[childIndex];
    _mfChildren.erase(_mfChildren.begin() + childIndex);

    beginEditCP(child, Node::ParentFieldMask);
    child->setParent(NullFC);
    endEditCP(child, Node::ParentFieldMask);

    subRefCP(child);
    invalidateVolume();
}

NodePtr Node::getChild(UInt32 childIndex)
{
    OSG_ASSERT(childIndex < _mfChildren.size());
    return _mfChildren[childIndex];
}

void Node::setTravMask(UInt32 val)
{
    _sfTravMask.setValue(val);
}

UInt32 Node::getTravMask(void) const
{
    return _sfTravMask.getValue();
}

bool Node::getActive(void) const
{
    return _sfTravMask.getValue() == TypeTraits<UInt32>::getMax();
}

void Node::setActive(bool val)
{
    _sfTravMask.setValue(val ? TypeTraits<UInt32>::getMax() : 0);
}

NodePtr Node::clone(void)
{
    NodePtr fc = Node::create();
    beginEditCP(fc);
    fc->setTravMask(getTravMask());
    fc->setCore(getCore());
    endEditCP(fc);
    return fc;
}

Matrix Node::getToWorld(void)
{
    Matrix result;
    getToWorld(result);
    return result;
}

void Node::getToWorld(Matrix &result)
{
    if(getParent() != NullFC)
        getParent()->getToWorld(result);
    else
        result.setIdentity();

    if(getCore() != NullFC)
        getCore()->accumulateMatrix(result);
}

DynamicVolume &Node::getVolume(bool update)
{
    if(update)
        updateVolume();
    return _sfVolume.getValue();
}

DynamicVolume &Node::editVolume(bool update)
{
    return getVolume(update);
}

const DynamicVolume &Node::getVolume(void) const
{
    return _sfVolume.getValue();
}

void Node::getWorldVolume(DynamicVolume &result)
{
    Matrix m;
    if(getParent() != NullFC)
        getParent()->getToWorld(m);
    else
        m.setIdentity();

    updateVolume();
    result = getVolume();
    result.transform(m);
}

void Node::updateVolume(void)
{
    if(_sfVolume.getValue().isValid() || getTravMask() == 0)
        return;

    DynamicVolume vol = _sfVolume.getValue();
    vol.getInstance().setEmpty();

    for(NodePtr child : _mfChildren)
    {
        if(child->getTravMask() != 0)
        {
            child->updateVolume();
            vol.getInstance().extendBy(child->getVolume());
        }
    }

    if(getCore() != NullFC)
        getCore()->adjustVolume(vol.getInstance());

    beginEditCP(getPtr(), Node::VolumeFieldMask);
    _sfVolume.setValue(vol);
    _sfVolume.getValue().instanceChanged();
    endEditCP(getPtr(), Node::VolumeFieldMask);
}

void Node::invalidateVolume(void)
{
    DynamicVolume &vol = _sfVolume.getValue();
    if(vol.isValid() && !vol.isStatic())
    {
        vol.setValid(false);
        if(getParent() != NullFC)
            getParent()->invalidateVolume();
    }
}

void Node::changed(BitVector whichField, UInt32 origin)
{
    if(whichField & TravMaskFieldMask)
    {
        if(getParent() != NullFC)
            getParent()->invalidateVolume();
        else
            invalidateVolume();
    }
    Inherited::changed(whichField, origin);
}

void Node::dump(UInt32 uiIndent, const BitVector bvFlags) const
{
    indentLog(uiIndent, PLOG);
    PLOG << "Node : " << _mfChildren.size() << " children | core "
         << _sfCore.getValue() << std::endl;
    for(NodePtr child : _mfChildren)
        child->dump(uiIndent + 2, bvFlags);
}

NodePtr cloneTree(const NodePtr &pRootNode)
{
    if(pRootNode == NullFC)
        return NodePtr();

    NodePtr root = pRootNode->clone();
    beginEditCP(root, Node::ChildrenFieldMask);
    for(UInt32 i = 0; i < pRootNode->getNChildren(); ++i)
        root->addChild(cloneTree(pRootNode->getChild(i)));
    endEditCP(root, Node::ChildrenFieldMask);
    return root;
}

namespace
{

typedef std::map<FieldContainer *, FieldContainer *> CloneMap;

std::vector<std::string> splitShareString(const std::string &shareString)
{
    std::vector<std::string> names;
    std::string name;
    for(char c : shareString + ",")
    {
        if(c == ',' || std::isspace(static_cast<unsigned char>(c)))
        {
            if(!name.empty())
                names.push_back(name);
            name.clear();
        }
        else
            name += c;
    }
    return names;
}

bool isShared(const FieldContainerType &type, const std::vector<std::string> &share)
{
    for(const std::string &name : share)
    {
        FieldContainerType *shared = FieldContainerFactory::the()->findType(name.c_str());
        if(shared != NULL && type.isDerivedFrom(*shared))
            return true;
    }
    return false;
}

// The reference counts of the containers that fc's fields point to.
std::map<FieldContainer *, Int32> pointeeRefCounts(FieldContainer *fc)
{
    std::map<FieldContainer *, Int32> counts;
    for(UInt32 id = 1; id <= fc->getType().getNumFieldDescs(); ++id)
    {
        Field *field = fc->getField(id);
        for(UInt32 i = 0; field != NULL && i < field->getNumContainerPtrs(); ++i)
        {
            FieldContainer *pointee = field->getContainerPtr(i);
            if(pointee != NULL)
                counts[pointee] = FieldContainerPtr(pointee).getRefCount();
        }
    }
    return counts;
}

// Moves owner from the back links of the container it left to those of the
// copy that replaced it.
void moveParentLink(FieldContainer *from, FieldContainer *to, FieldContainer *owner)
{
    Field *fromParents = from->getField("parents");
    Field *toParents   = to  ->getField("parents");
    if(fromParents == NULL || toParents == NULL)
        return;
    for(UInt32 i = 0; i < fromParents->getNumContainerPtrs(); ++i)
    {
        if(fromParents->getContainerPtr(i) == owner)
        {
            fromParents->subContainerPtr(i);
            toParents->addContainerPtr(owner);
            return;
        }
    }
}

FieldContainerPtr deepCloneContainer(const FieldContainerPtr &src,
                                     const std::vector<std::string> &share,
                                     CloneMap &clones)
{
    if(src == NullFC || isShared(src->getType(), share))
        return src;
    CloneMap::const_iterator known = clones.find(src.getCPtr());
    if(known != clones.end())
        return FieldContainerPtr(known->second);

    const std::map<FieldContainer *, Int32> before = pointeeRefCounts(src.getCPtr());
    FieldContainerPtr dst = src->shallowCopy();
    clones[src.getCPtr()] = dst.getCPtr();

    // The copy takes a reference on what its class owns; what it points to
    // without one (beacons, parents) is a link and stays.
    std::set<FieldContainer *> owned;
    for(const auto &entry : before)
    {
        if(FieldContainerPtr(entry.first).getRefCount() > entry.second)
            owned.insert(entry.first);
    }

    for(UInt32 id = 1; id <= dst->getType().getNumFieldDescs(); ++id)
    {
        Field *field = dst->getField(id);
        for(UInt32 i = 0; field != NULL && i < field->getNumContainerPtrs(); ++i)
        {
            FieldContainer *pointee = field->getContainerPtr(i);
            if(pointee == NULL || owned.count(pointee) == 0)
                continue;
            FieldContainerPtr copy = deepCloneContainer(FieldContainerPtr(pointee),
                                                        share, clones);
            if(copy.getCPtr() == pointee)
                continue;
            addRefCP(copy);
            field->setContainerPtr(i, copy.getCPtr());
            moveParentLink(pointee, copy.getCPtr(), dst.getCPtr());
            subRefCP(FieldContainerPtr(pointee));
        }
    }
    return dst;
}

NodePtr deepCloneNode(const NodePtr &src, const std::vector<std::string> &share,
                      CloneMap &clones)
{
    if(src == NullFC)
        return NodePtr();

    NodePtr dst = Node::create();
    beginEditCP(dst, Node::TravMaskFieldMask | Node::CoreFieldMask | Node::ChildrenFieldMask);
    dst->setTravMask(src->getTravMask());
    dst->setCore(NodeCorePtr::dcast(deepCloneContainer(src->getCore(), share, clones)));
    for(UInt32 i = 0; i < src->getNChildren(); ++i)
        dst->addChild(deepCloneNode(src->getChild(i), share, clones));
    endEditCP(dst, Node::TravMaskFieldMask | Node::CoreFieldMask | Node::ChildrenFieldMask);
    return dst;
}

} // namespace

FieldContainerPtr deepClone(const FieldContainerPtr &src, const std::vector<std::string> &share)
{
    CloneMap clones;
    return deepCloneContainer(src, share, clones);
}

FieldContainerPtr deepClone(const FieldContainerPtr &src, const std::string &shareString)
{
    return deepClone(src, splitShareString(shareString));
}

NodePtr deepCloneTree(const NodePtr &src, const std::vector<std::string> &share)
{
    CloneMap clones;
    return deepCloneNode(src, share, clones);
}

NodePtr deepCloneTree(const NodePtr &src, const std::string &shareString)
{
    return deepCloneTree(src, splitShareString(shareString));
}

// --- NodeCore ---------------------------------------------------------------

OSG_FC_ABSTRACT_IMPL(NodeCore, "AttachmentContainer")

NodeCore::NodeCore(void) : Inherited(), _mfParents()
{
}

NodeCore::NodeCore(const NodeCore &source) : Inherited(source), _mfParents()
{
}

NodeCore::~NodeCore(void)
{
}

void NodeCore::invalidateVolume(void)
{
    for(NodePtr parent : _mfParents)
        parent->invalidateVolume();
}

void NodeCore::accumulateMatrix(Matrix &)
{
}

void NodeCore::adjustVolume(Volume &)
{
}

void NodeCore::addParent(const NodePtr &parent)
{
    _mfParents.push_back(parent);
}

void NodeCore::subParent(const NodePtr &parent)
{
    auto it = _mfParents.find(parent);
    if(it != _mfParents.end())
        _mfParents.erase(it);
}

NodeCorePtr NodeCore::getPtr(void) const
{
    return NodeCorePtr(this);
}

} // namespace osg
