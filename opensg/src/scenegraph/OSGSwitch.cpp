#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>

namespace osg
{

OSG_FC_IMPL(Switch, "Group")

Switch::Switch(void) :
    Inherited(),
    _sfChoice(Int32(NONE))
{
}

Switch::Switch(const Switch &source) :
    Inherited(source),
    _sfChoice(source._sfChoice)
{
}

Switch::~Switch(void)
{
}

void Switch::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, SwitchPtr, CNodePtr,
                                          Action *>(&Switch::renderEnter));
}

void Switch::changed(BitVector whichField, UInt32 origin)
{
    if(whichField & ChoiceFieldMask)
        invalidateVolume();

    Inherited::changed(whichField, origin);
}

// The node has already combined all children; keep only the chosen one.
// A shared core uses its first parent's children.
void Switch::adjustVolume(Volume &volume)
{
    if(getChoice() == ALL)
        return;

    volume.setValid();
    volume.setEmpty();

    if(getChoice() < 0 || getParents().empty())
        return;

    NodePtr parent = getParents()[0];
    if(UInt32(getChoice()) >= parent->getNChildren())
        return;

    NodePtr child = parent->getChild(getChoice());
    if(child->getTravMask() == 0)
        return;

    child->updateVolume();
    volume.extendBy(child->getVolume());
}

// Group's enter runs first in every case: Group's leave pops what it pushed.
Action::ResultE Switch::renderEnter(Action *action)
{
    Action::ResultE result = Group::renderEnter(action);
    if(result != Action::Continue)
        return result;

    Int32 choice = getChoice();
    if(choice == ALL)
        return Action::Continue;

    NodePtr node = action->getActNode();
    if(choice < 0 || UInt32(choice) >= node->getNChildren())
        return Action::Skip;

    action->useNodeList();
    action->addNode(node->getChild(choice));
    return Action::Continue;
}

} // namespace osg
