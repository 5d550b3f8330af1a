#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGLog.h>

namespace osg
{

namespace
{
std::vector<Action::Functor> &defaultEnter(void) { static std::vector<Action::Functor> v; return v; }
std::vector<Action::Functor> &defaultLeave(void) { static std::vector<Action::Functor> v; return v; }

void storeFunctor(std::vector<Action::Functor> &functors, UInt32 typeId,
                  const Action::Functor &func)
{
    if(functors.size() <= typeId)
        functors.resize(typeId + 1);
    functors[typeId] = func;
}
}

Action *Action::create(void)
{
    Action *action = new Action;
    action->fillFunctors();
    return action;
}

Action::Action(void) :
    _enterFunctors(),
    _leaveFunctors(),
    _actNode      (),
    _newList      (),
    _useNewList   (false),
    _travMask     (TypeTraits<UInt32>::getMax())
{
}

Action::Action(const Action &source) :
    _enterFunctors(source._enterFunctors),
    _leaveFunctors(source._leaveFunctors),
    _actNode      (),
    _newList      (),
    _useNewList   (false),
    _travMask     (source._travMask)
{
}

Action::~Action(void)
{
}

void Action::fillFunctors(void)
{
    _enterFunctors = *getDefaultEnterFunctors();
    _leaveFunctors = *getDefaultLeaveFunctors();
}

std::vector<Action::Functor> *Action::getDefaultEnterFunctors(void)
{
    return &defaultEnter();
}

std::vector<Action::Functor> *Action::getDefaultLeaveFunctors(void)
{
    return &defaultLeave();
}

void Action::registerEnterDefault(const FieldContainerType &type, const Functor &func)
{
    storeFunctor(defaultEnter(), type.getId(), func);
}

void Action::registerLeaveDefault(const FieldContainerType &type, const Functor &func)
{
    storeFunctor(defaultLeave(), type.getId(), func);
}

void Action::registerEnterFunction(const FieldContainerType &type, const Functor &func)
{
    storeFunctor(_enterFunctors, type.getId(), func);
}

void Action::registerLeaveFunction(const FieldContainerType &type, const Functor &func)
{
    storeFunctor(_leaveFunctors, type.getId(), func);
}

Action::ResultE Action::start(void)
{
    return Continue;
}

Action::ResultE Action::stop(ResultE res)
{
    return res;
}

Action::ResultE Action::apply(std::vector<NodePtr>::iterator begin,
                              std::vector<NodePtr>::iterator end)
{
    ResultE res = start();
    if(res != Continue)
        return res;

    for(; begin != end && res != Quit; ++begin)
    {
        if(*begin == NullFC)
        {
            SWARNING << "Action::apply: null node in the list" << std::endl;
            return Quit;
        }
        res = recurse(*begin);
    }
    return stop(res);
}

Action::ResultE Action::apply(NodePtr node)
{
    if(node == NullFC)
    {
        SWARNING << "Action::apply: node is NullFC" << std::endl;
        return Quit;
    }
    std::vector<NodePtr> nodes(1, node);
    return apply(nodes.begin(), nodes.end());
}

Action::ResultE Action::recurse(NodePtr node)
{
    if(node == NullFC)
        return Continue;

    if((node->getTravMask() & getTravMask()) == 0)
        return Continue;

    if(node->getCore() == NullFC)
    {
        SWARNING << "Action::recurse: core is NullFC" << std::endl;
        return Quit;
    }

    _actNode    = node;
    _useNewList = false;
    _newList.clear();

    ResultE result = callEnter(node);

    if(result == Continue)
    {
        if(_useNewList)
            result = callNewList();
        else
        {
            for(UInt32 i = 0; i < node->getNChildren() && result != Quit; ++i)
                result = recurse(node->getChild(i));
            if(result == Skip)
                result = Continue;
        }
    }
    else if(result == Skip)
        result = Continue;

    if(result == Quit)
        return Quit;

    _actNode = node;
    return callLeave(node);
}

Action::ResultE Action::callNewList(void)
{
    std::vector<NodePtr> nodes;
    nodes.swap(_newList);
    _useNewList = false;

    ResultE result = Continue;
    for(size_t i = 0; i < nodes.size() && result != Quit; ++i)
        result = recurse(nodes[i]);
    return result == Quit ? Quit : Continue;
}

// The functor of the core's type or of its nearest registered ancestor.
Action::ResultE Action::callFunctor(std::vector<Functor> &functors, NodePtr node)
{
    CNodePtr cnode(node);
    for(const FieldContainerType *type = &node->getCore()->getType();
        type != NULL; type = type->getParent())
    {
        UInt32 id = type->getId();
        if(id < functors.size() && functors[id].isValid())
            return functors[id].call(cnode, this);
    }
    return Continue;
}

Action::ResultE Action::callEnter(NodePtr node)
{
    return callFunctor(_enterFunctors, node);
}

Action::ResultE Action::callLeave(NodePtr node)
{
    return callFunctor(_leaveFunctors, node);
}

NodePtr Action::getActNode(void)
{
    return _actNode;
}

UInt32 Action::getNNodes(void) const
{
    return UInt32(_newList.size());
}

const NodePtr Action::getNode(int index)
{
    return _newList[index];
}

void Action::addNode(NodePtr node)
{
    _newList.push_back(node);
}

void Action::useNodeList(void)
{
    _useNewList = true;
}

// --- functor traversal ------------------------------------------------------

static Action::ResultE traverseEnter(NodePtr node, TraverseEnterFunctor &func)
{
    Action::ResultE res = func.call(node);
    if(res != Action::Continue)
        return res == Action::Skip ? Action::Continue : res;

    for(UInt32 i = 0; i < node->getNChildren(); ++i)
    {
        NodePtr child = node->getChild(i);
        if(traverseEnter(child, func) == Action::Quit)
            return Action::Quit;
    }
    return Action::Continue;
}

static Action::ResultE traverseEnterLeave(NodePtr node, TraverseEnterFunctor &enter,
                                          TraverseLeaveFunctor &leave)
{
    Action::ResultE res = enter.call(node);
    if(res == Action::Quit)
        return leave.call(node, Action::Quit);

    Action::ResultE childRes = Action::Continue;
    if(res == Action::Continue)
    {
        for(UInt32 i = 0; i < node->getNChildren(); ++i)
        {
            NodePtr child = node->getChild(i);
            if(traverseEnterLeave(child, enter, leave) == Action::Quit)
            {
                childRes = Action::Quit;
                break;
            }
        }
    }
    return leave.call(node, childRes);
}

Action::ResultE traverse(NodePtr root, TraverseEnterFunctor func)
{
    if(root == NullFC)
        return Action::Continue;
    return traverseEnter(root, func);
}

Action::ResultE traverse(const std::vector<NodePtr> &nodeList, TraverseEnterFunctor func)
{
    for(NodePtr node : nodeList)
    {
        if(node != NullFC && traverseEnter(node, func) == Action::Quit)
            return Action::Quit;
    }
    return Action::Continue;
}

Action::ResultE traverse(NodePtr root, TraverseEnterFunctor enter, TraverseLeaveFunctor leave)
{
    if(root == NullFC)
        return Action::Continue;
    return traverseEnterLeave(root, enter, leave);
}

Action::ResultE traverse(const std::vector<NodePtr> &nodeList,
                         TraverseEnterFunctor enter, TraverseLeaveFunctor leave)
{
    for(NodePtr node : nodeList)
    {
        if(node != NullFC && traverseEnterLeave(node, enter, leave) == Action::Quit)
            return Action::Quit;
    }
    return Action::Continue;
}

} // namespace osg
