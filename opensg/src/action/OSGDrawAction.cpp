#include <OpenSG/OSGDrawAction.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVolumeFunctions.h>

namespace osg
{

namespace
{
std::vector<Action::Functor> &drawEnterDefaults(void) { static std::vector<Action::Functor> v; return v; }
std::vector<Action::Functor> &drawLeaveDefaults(void) { static std::vector<Action::Functor> v; return v; }

void storeDrawDefault(std::vector<Action::Functor> &functors, UInt32 typeId,
                      const Action::Functor &func)
{
    if(functors.size() <= typeId)
        functors.resize(typeId + 1);
    functors[typeId] = func;
}
}

DrawAction *DrawAction::create(void)
{
    return new DrawAction();
}

DrawAction::DrawAction(void) : DrawActionBase()
{
    fillFunctors();
}

DrawAction::DrawAction(const DrawAction &source) : DrawActionBase(source)
{
}

DrawAction::~DrawAction(void)
{
}

void DrawAction::registerEnterDefault(const FieldContainerType &type, const Action::Functor &func)
{
    storeDrawDefault(drawEnterDefaults(), type.getId(), func);
}

void DrawAction::registerLeaveDefault(const FieldContainerType &type, const Action::Functor &func)
{
    storeDrawDefault(drawLeaveDefaults(), type.getId(), func);
}

std::vector<Action::Functor> *DrawAction::getDefaultEnterFunctors(void)
{
    return &drawEnterDefaults();
}

std::vector<Action::Functor> *DrawAction::getDefaultLeaveFunctors(void)
{
    return &drawLeaveDefaults();
}

bool DrawAction::isVisible(Node *node)
{
    if(!getFrustumCulling() || node == NULL)
        return true;

    DynamicVolume vol;
    node->getWorldVolume(vol);
    return intersect(getFrustum(), vol);
}

} // namespace osg
