#include <OpenSG/OSGDrawActionBase.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGNode.h>

namespace osg
{

DrawActionBase::DrawActionBase(void) :
    Action         (),
    _viewport      (NULL),
    _camera        (NULL),
    _background    (NULL),
    _window        (NULL),
    _statistics    (NULL),
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
    return Action::start();
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
