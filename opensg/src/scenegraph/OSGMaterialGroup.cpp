#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGRenderAction.h>

namespace osg
{

OSG_FC_IMPL(MaterialGroup, "Group")

MaterialGroup::MaterialGroup(void) :
    Inherited(),
    _sfMaterial()
{
}

MaterialGroup::MaterialGroup(const MaterialGroup &source) :
    Inherited(source),
    _sfMaterial(source._sfMaterial)
{
}

MaterialGroup::~MaterialGroup(void)
{
}

// A copy holds the same material and needs its own reference.
void MaterialGroup::onCreate(const MaterialGroup *)
{
    addRefCP(_sfMaterial.getValue());
}

void MaterialGroup::onDestroy(void)
{
    MaterialPtr material = _sfMaterial.getValue();
    _sfMaterial.setValue(NullFC);
    subRefCP(material);

    Inherited::onDestroy();
}

void MaterialGroup::setMaterial(const MaterialPtr &value)
{
    if(_sfMaterial.getValue() == value)
        return;

    MaterialPtr old = _sfMaterial.getValue();
    addRefCP(value);
    _sfMaterial.setValue(value);
    subRefCP(old);
}

void MaterialGroup::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, MaterialGroupPtr, CNodePtr,
                                          Action *>(&MaterialGroup::renderEnter));
    RenderAction::registerLeaveDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, MaterialGroupPtr, CNodePtr,
                                          Action *>(&MaterialGroup::renderLeave));
}

// An enclosing MaterialGroup's material stays in force: the outermost wins.
Action::ResultE MaterialGroup::renderEnter(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra == NULL)
        return Action::Continue;

    Action::ResultE result = Group::renderEnter(action);
    if(result != Action::Continue)
        return result;

    if(ra->getMaterial() == NULL && getMaterial() != NullFC)
        ra->setMaterial(getCPtr(getMaterial()), ra->getActNode());

    return Action::Continue;
}

Action::ResultE MaterialGroup::renderLeave(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL && ra->getMaterial() != NULL &&
       ra->getMaterialNode() == ra->getActNode())
    {
        ra->setMaterial(NULL, NullFC);
    }
    return Group::renderLeave(action);
}

} // namespace osg
