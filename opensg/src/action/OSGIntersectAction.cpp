#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGFieldContainerType.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGBoxVolume.h>

namespace osg
{

namespace
{

std::vector<Action::Functor> &intersectEnterDefaults(void) { static std::vector<Action::Functor> v; return v; }
std::vector<Action::Functor> &intersectLeaveDefaults(void) { static std::vector<Action::Functor> v; return v; }

void storeIntersectDefault(std::vector<Action::Functor> &functors, UInt32 typeId,
                  const Action::Functor &func)
{
    if(functors.size() <= typeId)
        functors.resize(typeId + 1);
    functors[typeId] = func;
}

// Whether the ray passes the node's volume before the nearest hit so far.
bool rayMeetsVolume(IntersectAction *ia, NodePtr node)
{
    DynamicVolume &vol = node->getVolume(true);
    if(vol.isEmpty())
        return false;
    if(vol.isInfinite())
        return true;
    Pnt3f low, high;
    vol.getBounds(low, high);
    Real32 enter, exit;
    return ia->getLocalLine().intersect(BoxVolume(low, high), enter, exit) &&
           enter <= ia->getLocalMaxDist();
}

Action::ResultE coreEnter(CNodePtr &, Action *action)
{
    IntersectAction *ia = static_cast<IntersectAction *>(action);
    return rayMeetsVolume(ia, ia->getActNode()) ? Action::Continue : Action::Skip;
}

Action::ResultE transformEnter(CNodePtr &, Action *action)
{
    IntersectAction *ia   = static_cast<IntersectAction *>(action);
    NodePtr          node = ia->getActNode();
    if(!rayMeetsVolume(ia, node))
        return Action::Skip;
    TransformPtr transform = TransformPtr::dcast(node->getCore());
    ia->pushTransform(transform->getMatrix());
    return Action::Continue;
}

Action::ResultE transformLeave(CNodePtr &, Action *action)
{
    static_cast<IntersectAction *>(action)->popTransform();
    return Action::Continue;
}

Action::ResultE switchEnter(CNodePtr &, Action *action)
{
    IntersectAction *ia   = static_cast<IntersectAction *>(action);
    NodePtr          node = ia->getActNode();
    if(!rayMeetsVolume(ia, node))
        return Action::Skip;
    SwitchPtr sw     = SwitchPtr::dcast(node->getCore());
    Int32     choice = sw->getChoice();
    if(choice == Switch::ALL)
        return Action::Continue;
    if(choice < 0 || choice >= Int32(node->getNChildren()))
        return Action::Skip;
    ia->useNodeList();
    ia->addNode(node->getChild(UInt32(choice)));
    return Action::Continue;
}

Action::ResultE geometryEnter(CNodePtr &, Action *action)
{
    IntersectAction *ia   = static_cast<IntersectAction *>(action);
    NodePtr          node = ia->getActNode();
    if(!rayMeetsVolume(ia, node))
        return Action::Skip;
    GeometryPtr geo = GeometryPtr::dcast(node->getCore());
    for(TriangleIterator it = geo->beginTriangles(); it != geo->endTriangles(); ++it)
    {
        Real32 t;
        Vec3f  normal;
        if(ia->getLocalLine().intersect(it.getPosition(0), it.getPosition(1),
                                        it.getPosition(2), t, &normal))
            ia->setHit(t, node, it.getIndex(), normal);
    }
    return Action::Continue;
}

} // namespace

IntersectAction::IntersectAction(void) :
    Action      (),
    _line       (),
    _maxdist    (Inf),
    _localLine  (),
    _localScale (1.f),
    _spaces     (),
    _hit        (false),
    _hitT       (Inf),
    _hitNormal  (),
    _hitObject  (NullFC),
    _hitTriangle(-1)
{
    if(intersectEnterDefaults().empty())
    {
        registerEnterDefault(NodeCore::getClassType(),
            osgTypedFunctionFunctor2CPtrRef<ResultE, CNodePtr, Action *>(&coreEnter));
        registerEnterDefault(Transform::getClassType(),
            osgTypedFunctionFunctor2CPtrRef<ResultE, CNodePtr, Action *>(&transformEnter));
        registerLeaveDefault(Transform::getClassType(),
            osgTypedFunctionFunctor2CPtrRef<ResultE, CNodePtr, Action *>(&transformLeave));
        registerEnterDefault(Switch::getClassType(),
            osgTypedFunctionFunctor2CPtrRef<ResultE, CNodePtr, Action *>(&switchEnter));
        registerEnterDefault(Geometry::getClassType(),
            osgTypedFunctionFunctor2CPtrRef<ResultE, CNodePtr, Action *>(&geometryEnter));
    }
    fillFunctors();
}

IntersectAction::IntersectAction(const IntersectAction &source) :
    Action      (source),
    _line       (source._line),
    _maxdist    (source._maxdist),
    _localLine  (source._localLine),
    _localScale (source._localScale),
    _spaces     (),
    _hit        (false),
    _hitT       (Inf),
    _hitNormal  (),
    _hitObject  (NullFC),
    _hitTriangle(-1)
{
}

IntersectAction::~IntersectAction(void)
{
}

IntersectAction *IntersectAction::create(void)
{
    return new IntersectAction();
}

IntersectAction *IntersectAction::create(const Line &line, const Real32 maxdist)
{
    IntersectAction *ia = new IntersectAction();
    ia->setLine(line, maxdist);
    return ia;
}

void IntersectAction::registerEnterDefault(const FieldContainerType &type,
                                           const Functor            &func)
{
    storeIntersectDefault(intersectEnterDefaults(), type.getId(), func);
}

void IntersectAction::registerLeaveDefault(const FieldContainerType &type,
                                           const Functor            &func)
{
    storeIntersectDefault(intersectLeaveDefaults(), type.getId(), func);
}

std::vector<Action::Functor> *IntersectAction::getDefaultEnterFunctors(void)
{
    return &intersectEnterDefaults();
}

std::vector<Action::Functor> *IntersectAction::getDefaultLeaveFunctors(void)
{
    return &intersectLeaveDefaults();
}

void IntersectAction::setLine(const Line &line, const Real32 maxdist)
{
    _line    = line;
    _maxdist = maxdist;
}

Action::ResultE IntersectAction::start(void)
{
    _localLine   = _line;
    _localScale  = 1.f;
    _spaces.clear();
    _hit         = false;
    _hitT        = _maxdist;
    _hitNormal   = Vec3f(0.f, 0.f, 0.f);
    _hitObject   = NullFC;
    _hitTriangle = -1;
    return Action::start();
}

Real32 IntersectAction::getLocalMaxDist(void) const
{
    return _hitT * _localScale;
}

Pnt3f IntersectAction::getHitPoint(void) const
{
    return _line.getPosition() + _line.getDirection() * _hitT;
}

void IntersectAction::scale(Real32 s)
{
    _localScale *= s;
}

void IntersectAction::setHit(Real32 t, NodePtr obj, Int32 triIndex, Vec3f &normal)
{
    // As 1.8, of equally near hits the last one found counts.
    const Real32 worldT = t / _localScale;
    if(t < 0.f || worldT > _hitT)
        return;
    _hit         = true;
    _hitT        = worldT;
    _hitObject   = obj;
    _hitTriangle = triIndex;
    _hitNormal   = normal;
}

void IntersectAction::pushTransform(const Matrix &toParent)
{
    Space space = { getActNode(), _localLine, _localScale };
    _spaces.push_back(space);

    Matrix toLocal;
    toLocal.invertFrom(toParent);
    Pnt3f pos;
    Vec3f dir;
    toLocal.multMatrixPnt(_localLine.getPosition(),  pos);
    toLocal.multMatrixVec(_localLine.getDirection(), dir);
    const Real32 length = dir.length();
    _localLine.setValue(pos, dir);
    scale(length);
}

void IntersectAction::popTransform(void)
{
    if(_spaces.empty() || _spaces.back().node != getActNode())
        return;
    _localLine  = _spaces.back().line;
    _localScale = _spaces.back().scale;
    _spaces.pop_back();
}

} // namespace osg
