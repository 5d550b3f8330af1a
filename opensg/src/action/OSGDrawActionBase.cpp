#include <OpenSG/OSGDrawActionBase.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGDrawable.h>

namespace osg
{

StatElemDesc<StatTimeElem> DrawActionBase::statTravTime(
    "travTime", "time for traversal");
StatElemDesc<StatIntElem>  DrawActionBase::statCullTestedNodes(
    "cullTestedNodes", "nodes tested");
StatElemDesc<StatIntElem>  DrawActionBase::statCulledNodes(
    "culledNodes", "nodes culled from frustum");

DrawActionBase::DrawActionBase(void) :
    Action         (),
    _viewport      (NULL),
    _camera        (NULL),
    _background    (NULL),
    _window        (NULL),
    _statistics    (NULL),
    _ownStat       (false),
    _resetStat     (true),
    _material      (NULL),
    _materialNode  (),
    _frustumCulling(true),
    _autoFrustum   (true),
    _volumeDrawing (false),
    _frustum       (),
    _mCameraToWorld()
{
}

DrawActionBase::DrawActionBase(const DrawActionBase &source) :
    Action         (source),
    _viewport      (source._viewport),
    _camera        (source._camera),
    _background    (source._background),
    _window        (source._window),
    _statistics    (source._statistics),
    _ownStat       (false),
    _resetStat     (source._resetStat),
    _material      (source._material),
    _materialNode  (source._materialNode),
    _frustumCulling(source._frustumCulling),
    _autoFrustum   (source._autoFrustum),
    _volumeDrawing (source._volumeDrawing),
    _frustum       (source._frustum),
    _mCameraToWorld(source._mCameraToWorld)
{
}

DrawActionBase::~DrawActionBase(void)
{
    if(_ownStat)
        delete _statistics;
}

StatCollector *DrawActionBase::getStatistics(void)
{
    if(_statistics == NULL)
    {
        _statistics = StatCollector::create();
        _ownStat    = true;
    }
    return _statistics;
}

void DrawActionBase::setStatistics(StatCollector *stat)
{
    if(_ownStat)
        delete _statistics;
    _statistics = stat;
    _ownStat    = false;
}

Action::ResultE DrawActionBase::start(void)
{
    if(_camera != NULL && _viewport != NULL)
    {
        if(_frustumCulling && _autoFrustum)
            _camera->getFrustum(_frustum, *_viewport);

        Matrix viewing;
        _camera->getViewing(viewing, _viewport->getPixelWidth(),
                            _viewport->getPixelHeight());
        _mCameraToWorld.invertFrom(viewing);
    }

    StatCollector *stat = getStatistics();
    if(_resetStat)
    {
        stat->getElem(statTravTime       )->reset();
        stat->getElem(statCullTestedNodes)->reset();
        stat->getElem(statCulledNodes    )->reset();
        // Geometry counts only into a collector that asked for triangles.
        if(stat->getElem(Drawable::statNTriangles, false) != NULL)
        {
            stat->getElem(Drawable::statNGeoBytes  )->reset();
            stat->getElem(Drawable::statNTriangles )->set(0);
            stat->getElem(Drawable::statNLines     )->set(0);
            stat->getElem(Drawable::statNPoints    )->set(0);
            stat->getElem(Drawable::statNVertices  )->set(0);
            stat->getElem(Drawable::statNPrimitives)->set(0);
        }
    }
    stat->getElem(statTravTime)->start();

    return Action::start();
}

Action::ResultE DrawActionBase::stop(ResultE res)
{
    getStatistics()->getElem(statTravTime)->stop();
    if(_ownStat)
    {
        delete _statistics;
        _statistics = NULL;
        _ownStat    = false;
    }
    return Action::stop(res);
}

// Narrows the act node's children to the visible ones.
UInt32 DrawActionBase::selectVisibles(void)
{
    NodePtr node = getActNode();
    if(node == NullFC)
        return 0;

    if(!getFrustumCulling())
        return node->getNChildren();

    useNodeList();
    UInt32 count = 0;
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
    {
        NodePtr child = node->getChild(i);
        if(isVisible(getCPtr(child)))
        {
            addNode(child);
            ++count;
        }
    }
    return count;
}

} // namespace osg
