#include <OpenSG/OSGGroup.h>

namespace osg
{

OSG_FC_IMPL(Group, "NodeCore")

void Group::initMethod(void)
{
}

Action::ResultE Group::renderEnter(Action *)
{
    return Action::Continue;
}

Action::ResultE Group::renderLeave(Action *)
{
    return Action::Continue;
}

} // namespace osg
