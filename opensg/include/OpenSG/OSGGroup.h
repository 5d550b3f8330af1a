#ifndef _OSGGROUP_H_
#define _OSGGROUP_H_

#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGCoredNodePtr.h>

namespace osg
{

OSG_FC_PTR_DECL(Group, NodeCorePtr)

class Group : public NodeCore
{
    OSG_FC_DECL(Group, NodeCore)

  public:
    enum { NextFieldId = Inherited::NextFieldId };

    static void initMethod(void);

  protected:
    Group(void) : Inherited() {}
    Group(const Group &source) : Inherited(source) {}
    virtual ~Group(void) {}

    Action::ResultE renderEnter(Action *action);
    Action::ResultE renderLeave(Action *action);
};

typedef CoredNodePtr<Group> GroupNodePtr;

} // namespace osg

#endif
