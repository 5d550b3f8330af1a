#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGRenderAction.h>

namespace osg
{

OSG_FC_IMPL(Transform, "Group")

Transform::Transform(void) :
    Inherited(),
    _sfMatrix()
{
    _sfMatrix.getValue().setIdentity();
}

Transform::Transform(const Transform &source) :
    Inherited(source),
    _sfMatrix(source._sfMatrix)
{
}

Transform::~Transform(void)
{
}

void Transform::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, TransformPtr, CNodePtr,
                                          Action *>(&Transform::renderEnter));
    RenderAction::registerLeaveDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, TransformPtr, CNodePtr,
                                          Action *>(&Transform::renderLeave));
}

void Transform::accumulateMatrix(Matrix &result)
{
    result.mult(getMatrix());
}

void Transform::adjustVolume(Volume &volume)
{
    volume.transform(getMatrix());
}

void Transform::changed(BitVector whichField, UInt32 origin)
{
    if(whichField & MatrixFieldMask)
        invalidateVolume();

    Inherited::changed(whichField, origin);
}

// The node's volume is in the parent's space, so it is tested before the
// push. The matrix is pushed even for a culled node: the leave callback runs
// after a Skip too and always pops.
Action::ResultE Transform::renderEnter(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra == NULL)
        return Action::Continue;

    Action::ResultE result = Group::renderEnter(action);
    ra->push_matrix(getMatrix());
    return result;
}

Action::ResultE Transform::renderLeave(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL)
        ra->pop_matrix();
    return Group::renderLeave(action);
}

} // namespace osg
