#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(Light, "Group")

Light::Light(void) :
    Inherited              (),
    _sfAmbient             (Color4f(0, 0, 0, 1)),
    _sfDiffuse             (Color4f(1, 1, 1, 1)),
    _sfSpecular            (Color4f(1, 1, 1, 1)),
    _sfBeacon              (),
    _sfOn                  (true),
    _sfConstantAttenuation (1.f),
    _sfLinearAttenuation   (0.f),
    _sfQuadraticAttenuation(0.f),
    _sfShadowIntensity     (0.f),
    _sfShadowMode          (UInt32(CAST_SHADOW_AUTO)),
    _pChunk                (NullFC)
{
}

Light::Light(const Light &source) :
    Inherited              (source),
    _sfAmbient             (source._sfAmbient),
    _sfDiffuse             (source._sfDiffuse),
    _sfSpecular            (source._sfSpecular),
    _sfBeacon              (source._sfBeacon),
    _sfOn                  (source._sfOn),
    _sfConstantAttenuation (source._sfConstantAttenuation),
    _sfLinearAttenuation   (source._sfLinearAttenuation),
    _sfQuadraticAttenuation(source._sfQuadraticAttenuation),
    _sfShadowIntensity     (source._sfShadowIntensity),
    _sfShadowMode          (source._sfShadowMode),
    _pChunk                (NullFC)
{
}

Light::~Light(void)
{
}

void Light::initMethod(void)
{
    RenderAction::registerEnterDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, LightPtr, CNodePtr,
                                          Action *>(&Light::renderEnter));
    RenderAction::registerLeaveDefault(
        getClassType(),
        osgTypedMethodFunctor2BaseCPtrRef<Action::ResultE, LightPtr, CNodePtr,
                                          Action *>(&Light::renderLeave));
}

// A copy shares the beacon and needs its own reference.
void Light::onCreate(const Light *)
{
    addRefCP(_sfBeacon.getValue());
}

void Light::onDestroy(void)
{
    NodePtr beacon = _sfBeacon.getValue();
    _sfBeacon.setValue(NullFC);
    subRefCP(beacon);
    subRefCP(_pChunk);
    _pChunk = NullFC;

    Inherited::onDestroy();
}

void Light::setAmbient(Real32 r, Real32 g, Real32 b, Real32 a)
{
    _sfAmbient.getValue().setValuesRGBA(r, g, b, a);
}

void Light::setDiffuse(Real32 r, Real32 g, Real32 b, Real32 a)
{
    _sfDiffuse.getValue().setValuesRGBA(r, g, b, a);
}

void Light::setSpecular(Real32 r, Real32 g, Real32 b, Real32 a)
{
    _sfSpecular.getValue().setValuesRGBA(r, g, b, a);
}

void Light::setBeacon(const NodePtr &beacon)
{
    if(_sfBeacon.getValue() == beacon)
        return;

    NodePtr old = _sfBeacon.getValue();
    addRefCP(beacon);
    _sfBeacon.setValue(beacon);
    subRefCP(old);
}

bool Light::getBeaconToWorld(Matrix &result, const NodePtr &lightNode)
{
    if(getBeacon() != NullFC)
    {
        getBeacon()->getToWorld(result);
        return true;
    }

    NodePtr node = lightNode;
    if(node == NullFC && !getParents().empty())
        node = getParents()[0];
    if(node == NullFC)
        return false;

    SINFO << "Light::getBeaconToWorld: no beacon, using the light's node"
          << std::endl;
    node->getToWorld(result);
    return true;
}

LightChunkPtr Light::getChunk(void)
{
    return _pChunk;
}

// Written without edit calls: the chunk mirrors the light and is refilled
// whenever the light is set up.
void Light::makeChunk(void)
{
    if(_pChunk == NullFC)
    {
        _pChunk = LightChunk::create();
        addRefCP(_pChunk);
    }
    _pChunk->setDiffuse (getDiffuse ());
    _pChunk->setAmbient (getAmbient ());
    _pChunk->setSpecular(getSpecular());
    _pChunk->setPosition (Vec4f(0.f, 0.f, 1.f, 0.f));
    _pChunk->setDirection(Vec3f(0.f, 0.f, -1.f));
    _pChunk->setExponent(0.f);
    _pChunk->setCutoff  (180.f);
    _pChunk->setConstantAttenuation (getConstantAttenuation ());
    _pChunk->setLinearAttenuation   (getLinearAttenuation   ());
    _pChunk->setQuadraticAttenuation(getQuadraticAttenuation());
}

void Light::activateGL(GLenum light) const
{
    Light *self = const_cast<Light *>(this);
    self->makeChunk();

    const GLboolean wasEnabled = glIsEnabled(light);
    self->_pChunk->activate(NULL, UInt32(light - GL_LIGHT0));
    if(!wasEnabled)
        glDisable(light);
}

// The light is collected whether or not its subtree is visible; the
// children are culled as under any group.
Action::ResultE Light::renderEnter(Action *action)
{
    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL && getOn())
        ra->dropLight(this);

    return Group::renderEnter(action);
}

Action::ResultE Light::renderLeave(Action *action)
{
    Action::ResultE result = Group::renderLeave(action);

    RenderAction *ra = dynamic_cast<RenderAction *>(action);
    if(ra != NULL && getOn())
        ra->undropLight(this);

    return result;
}

} // namespace osg
