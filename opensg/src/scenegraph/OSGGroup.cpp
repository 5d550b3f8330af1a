#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGRenderAction.h>

namespace osg
{

OSG_FC_IMPL(Group, "NodeCore")

void Group::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, GroupPtr, CNodePtr,
                                          Action *>(&Group::renderEnter));
    RenderAction::registerLeaveDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, GroupPtr, CNodePtr,
                                          Action *>(&Group::renderLeave));
}

// Every enter pushes one visibility entry and every leave pops it; the leave
// callback runs after a Skip as well.
Action::ResultE Group::renderEnter(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL && !ra->pushVisibility())
        return Action::Skip;
    return Action::Continue;
}

Action::ResultE Group::renderLeave(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL)
        ra->popVisibility();
    return Action::Continue;
}

} // namespace osg
