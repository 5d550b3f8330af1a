#include <OpenSG/OSGSimpleSceneManager.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include <algorithm>

namespace osg
{

SimpleSceneManager::SimpleSceneManager(void) :
    _win          (NullFC),
    _root         (NullFC),
    _internalRoot (NullFC),
    _headlightNode(NullFC),
    _headlight    (NullFC),
    _cart         (NullFC),
    _camera       (NullFC),
    _ownViewport  (NullFC),
    _action       (NULL),
    _ownAction    (NULL),
    _highlight    (NullFC),
    _foreground   (NullFC),
    _statforeground(NullFC),
    _statstate    (false),
    _navigator    (),
    _lastX        (0),
    _lastY        (0),
    _mouseButtons (0)
{
}

SimpleSceneManager::~SimpleSceneManager(void)
{
    if(_statstate && _action != NULL)
        _action->setStatistics(NULL);
    delete _ownAction;
    if(_ownViewport != NullFC)
    {
        // The window holds its ports without a reference.
        if(_win != NullFC)
        {
            MFViewportPtr &ports = _win->getPort();
            if(std::find(ports.begin(), ports.end(), _ownViewport) != ports.end())
            {
                beginEditCP(_win, Window::PortFieldMask);
                _win->subPort(_ownViewport);
                endEditCP(_win, Window::PortFieldMask);
            }
        }
        subRefCP(_ownViewport);
    }
    if(_statforeground != NullFC)
        subRefCP(_statforeground);
    if(_camera != NullFC)
        subRefCP(_camera);
    if(_internalRoot != NullFC)
        subRefCP(_internalRoot);
}

void SimpleSceneManager::setWindow(WindowPtr win)
{
    _win = win;
    if(_win != NullFC && _win->getPort().size() > 0)
        _navigator.setViewport(_win->getPort(0));
}

WindowPtr SimpleSceneManager::getWindow(void) { return _win; }

// Builds the internal graph on first use, so that setWindow and setRoot may
// come in either order and an application can add its own viewport before.
void SimpleSceneManager::initialize(void)
{
    if(_internalRoot != NullFC)
        return;

    if(_action == NULL)
        _action = _ownAction = RenderAction::create();

    TransformPtr cartCore = Transform::create();
    _cart = makeNodeFor(cartCore);

    _headlight = DirectionalLight::create();
    beginEditCP(_headlight);
    _headlight->setAmbient  (Color4f(0.3f, 0.3f, 0.3f, 1.f));
    _headlight->setDiffuse  (Color4f(1.f,  1.f,  1.f,  1.f));
    _headlight->setSpecular (Color4f(1.f,  1.f,  1.f,  1.f));
    _headlight->setDirection(0.f, 0.f, 1.f);
    _headlight->setBeacon   (_cart);
    endEditCP(_headlight);
    _headlightNode = makeNodeFor(_headlight);

    _internalRoot = makeNodeFor(Group::create());
    addRefCP(_internalRoot);
    beginEditCP(_internalRoot, Node::ChildrenFieldMask);
    _internalRoot->addChild(_headlightNode);
    _internalRoot->addChild(_cart);
    endEditCP(_internalRoot, Node::ChildrenFieldMask);

    if(_camera == NullFC)
    {
        _camera = PerspectiveCamera::create();
        addRefCP(_camera);
        beginEditCP(_camera);
        _camera->setFov (osgdegree2rad(60.f));
        _camera->setNear(0.1f);
        _camera->setFar (10000.f);
        endEditCP(_camera);
    }
    beginEditCP(_camera, Camera::BeaconFieldMask);
    _camera->setBeacon(_cart);
    endEditCP(_camera, Camera::BeaconFieldMask);

    _navigator.setCameraTransformation(_cart);

    if(_win == NullFC)
        return;
    if(_win->getPort().size() == 0)
    {
        SolidBackgroundPtr background = SolidBackground::create();
        beginEditCP(background);
        background->setColor(Color3f(0.f, 0.f, 0.f));
        endEditCP(background);

        _foreground = ImageForeground::create();

        SimpleStatisticsForegroundPtr sf = SimpleStatisticsForeground::create();
        beginEditCP(sf);
        sf->setSize (25.f);
        sf->setColor(Color4f(0.f, 1.f, 0.f, 0.7f));
        sf->addElement(RenderAction::statTravTime,         "FPS:                  %r.3f");
        sf->addElement(DrawActionBase::statCullTestedNodes, "Nodes culltested      %d");
        sf->addElement(DrawActionBase::statCulledNodes,     "Nodes culled          %d");
        sf->addElement(RenderAction::statNOcclusionMode,    "Occlusion culling     %s");
        sf->addElement(RenderAction::statNOcclusionTests,   "Occlusion tests       %d");
        sf->addElement(RenderAction::statNOcclusionCulled,  "Occlusion culled      %d");
        sf->addElement(RenderAction::statNGeometries,       "Nodes drawn           %d");
        sf->addElement(RenderAction::statNTransGeometries,  "Transp. Nodes drawn   %d");
        sf->addElement(RenderAction::statNMaterials,        "Material changes      %d");
        sf->addElement(RenderAction::statNMatrices,         "Matrix changes        %d");
        sf->addElement(Drawable::statNTriangles,            "Triangles drawn       %d");
        sf->addElement(Drawable::statNLines,                "Lines drawn           %d");
        sf->addElement(Drawable::statNPoints,               "Points drawn          %d");
        sf->addElement(Drawable::statNVertices,             "Vertices transformed  %d");
        sf->addElement(RenderAction::statNTextures,         "Textures used         %d");
        sf->addElement(RenderAction::statNTexBytes,         "Textures size (bytes) %d");
        endEditCP(sf);
        sf->editCollector().getElem(Drawable::statNTriangles);
        _statforeground = sf;
        addRefCP(_statforeground);

        _ownViewport = Viewport::create();
        addRefCP(_ownViewport);
        beginEditCP(_ownViewport);
        _ownViewport->setCamera    (_camera);
        _ownViewport->setRoot      (_internalRoot);
        _ownViewport->setBackground(background);
        _ownViewport->setSize      (0.f, 0.f, 1.f, 1.f);
        _ownViewport->addForeground(_foreground);
        endEditCP(_ownViewport);

        beginEditCP(_win, Window::PortFieldMask);
        _win->addPort(_ownViewport);
        endEditCP(_win, Window::PortFieldMask);
    }
    else
    {
        // Ports the application added without camera or root show ours.
        for(UInt32 i = 0; i < _win->getPort().size(); ++i)
        {
            ViewportPtr port = _win->getPort(i);
            if(port->getCamera() != NullFC && port->getRoot() != NullFC)
                continue;
            beginEditCP(port, Viewport::CameraFieldMask | Viewport::RootFieldMask);
            if(port->getCamera() == NullFC)
                port->setCamera(_camera);
            if(port->getRoot() == NullFC)
                port->setRoot(_internalRoot);
            endEditCP(port, Viewport::CameraFieldMask | Viewport::RootFieldMask);
        }
    }
    _navigator.setViewport(_win->getPort(0));
}

void SimpleSceneManager::setRoot(NodePtr root)
{
    initialize();
    if(_root == root)
        return;
    beginEditCP(_headlightNode, Node::ChildrenFieldMask);
    if(_root != NullFC)
        _headlightNode->subChild(_root);
    _root = root;
    if(_root != NullFC)
        _headlightNode->addChild(_root);
    endEditCP(_headlightNode, Node::ChildrenFieldMask);
}

NodePtr SimpleSceneManager::getRoot(void) { return _root; }

void SimpleSceneManager::setAction(RenderAction *action)
{
    if(action == NULL)
    {
        SWARNING << "SimpleSceneManager::setAction: no action" << endLog;
        return;
    }
    // The statistics move to the new action.
    const bool statstate = _statstate;
    if(statstate)
        setStatistics(false);
    delete _ownAction;
    _ownAction = NULL;
    _action    = action;
    if(statstate)
        setStatistics(true);
}

DrawActionBase *SimpleSceneManager::getAction(void) { return _action; }

void SimpleSceneManager::setCamera(PerspectiveCameraPtr camera)
{
    if(camera == NullFC)
    {
        SWARNING << "SimpleSceneManager::setCamera: no camera" << endLog;
        return;
    }
    addRefCP(camera);
    PerspectiveCameraPtr old = _camera;
    _camera = camera;
    if(_cart != NullFC)
    {
        beginEditCP(_camera, Camera::BeaconFieldMask);
        _camera->setBeacon(_cart);
        endEditCP(_camera, Camera::BeaconFieldMask);
    }
    if(_win != NullFC && old != NullFC)
    {
        for(UInt32 i = 0; i < _win->getPort().size(); ++i)
        {
            ViewportPtr port = _win->getPort(i);
            if(port->getCamera() != old)
                continue;
            beginEditCP(port, Viewport::CameraFieldMask);
            port->setCamera(_camera);
            endEditCP(port, Viewport::CameraFieldMask);
        }
    }
    if(old != NullFC)
        subRefCP(old);
}

PerspectiveCameraPtr SimpleSceneManager::getCamera(void) { return _camera; }

void SimpleSceneManager::setHeadlight(bool on)
{
    initialize();
    beginEditCP(_headlight, Light::OnFieldMask);
    _headlight->setOn(on);
    endEditCP(_headlight, Light::OnFieldMask);
}

void SimpleSceneManager::turnHeadlightOn(void)  { setHeadlight(true);  }
void SimpleSceneManager::turnHeadlightOff(void) { setHeadlight(false); }

bool SimpleSceneManager::getHeadlightState(void)
{
    return _headlight != NullFC && _headlight->getOn();
}

DirectionalLightPtr SimpleSceneManager::getHeadlight(void) { return _headlight; }

void    SimpleSceneManager::setHighlight(NodePtr obj) { _highlight = obj; }
NodePtr SimpleSceneManager::getHighlight(void)        { return _highlight; }

void SimpleSceneManager::showAll(void)
{
    initialize();
    if(_root == NullFC)
        return;

    DynamicVolume volume;
    _root->getWorldVolume(volume);
    if(!volume.isValid() || volume.isEmpty())
        return;
    Pnt3f low, high;
    volume.getBounds(low, high);
    const Pnt3f  center = low + (high - low) * 0.5f;
    Real32       radius = (high - low).length() * 0.5f;
    if(radius <= 0.f)
        radius = 1.f;

    // The sphere touches the narrower side of the view.
    Real32 fov = _camera->getFov();
    if(fov > Pi)
        fov = osgdegree2rad(fov);
    Real32 halfV = fov / 2.f, halfH = fov / 2.f;
    ViewportPtr port = _navigator.getViewport();
    if(port != NullFC && port->getPixelWidth() > 0 && port->getPixelHeight() > 0)
    {
        const Real32 aspect = Real32(port->getPixelWidth()) / Real32(port->getPixelHeight());
        const bool   horizontal = _camera->getFovMode() == PerspectiveCamera::FOV_horizontal ||
            (_camera->getFovMode() == PerspectiveCamera::FOV_smaller && aspect < 1.f);
        if(horizontal)
            halfV = osgatan(osgtan(halfH) / aspect);
        else
            halfH = osgatan(osgtan(halfV) * aspect);
    }
    const Real32 distance = radius / osgsin(std::min(halfV, halfH));

    _navigator.set(center + Vec3f(0.f, 0.f, distance), center, Vec3f(0.f, 1.f, 0.f));
    _navigator.setMotionFactor(distance / 20.f);

    beginEditCP(_camera, Camera::NearFieldMask | Camera::FarFieldMask);
    _camera->setNear(distance / 100.f);
    _camera->setFar (distance * 10.f);
    endEditCP(_camera, Camera::NearFieldMask | Camera::FarFieldMask);
    _navigator.updateCameraTransformation();
}

void SimpleSceneManager::setStatistics(bool on)
{
    if(_statforeground == NullFC || on == _statstate || _ownViewport == NullFC)
        return;

    MFForegroundPtr &fgs = _ownViewport->getForegrounds();
    beginEditCP(_ownViewport, Viewport::ForegroundsFieldMask);
    if(on)
    {
        _ownViewport->addForeground(_statforeground);
        _action->setStatistics(&_statforeground->editCollector());
    }
    else
    {
        MFForegroundPtr::iterator it = std::find(fgs.begin(), fgs.end(), _statforeground);
        if(it != fgs.end())
        {
            fgs.erase(it);
            subRefCP(_statforeground);
        }
        _action->setStatistics(NULL);
    }
    endEditCP(_ownViewport, Viewport::ForegroundsFieldMask);
    _statstate = on;
}

void SimpleSceneManager::useOpenSGLogo(void)
{
    SWARNING << "SimpleSceneManager::useOpenSGLogo: no logo is drawn" << endLog;
}

void SimpleSceneManager::resize(UInt16 width, UInt16 height)
{
    if(_win == NullFC)
    {
        SWARNING << "SimpleSceneManager::resize: no window" << endLog;
        return;
    }
    _win->resize(width, height);
}

void SimpleSceneManager::mouseMove(Int16 x, Int16 y)
{
    if(_mouseButtons != 0)
    {
        _navigator.moveTo(x, y);
        _navigator.updateCameraTransformation();
    }
    _lastX = x;
    _lastY = y;
}

void SimpleSceneManager::mouseButtonPress(UInt16 button, Int16 x, Int16 y)
{
    initialize();
    switch(button)
    {
        case MouseLeft:   _navigator.buttonPress(Navigator::LEFT_MOUSE,   x, y); break;
        case MouseMiddle: _navigator.buttonPress(Navigator::MIDDLE_MOUSE, x, y); break;
        case MouseRight:  _navigator.buttonPress(Navigator::RIGHT_MOUSE,  x, y); break;
        case MouseUp:     _navigator.buttonPress(Navigator::UP_MOUSE,     x, y); break;
        case MouseDown:   _navigator.buttonPress(Navigator::DOWN_MOUSE,   x, y); break;
        default:
            SWARNING << "SimpleSceneManager::mouseButtonPress: unknown button " << button
                     << endLog;
            return;
    }
    // The wheel steps at once and is no drag.
    if(button != MouseUp && button != MouseDown)
        _mouseButtons |= UInt16(1u << button);
    _navigator.updateCameraTransformation();
    _lastX = x;
    _lastY = y;
}

void SimpleSceneManager::mouseButtonRelease(UInt16 button, Int16 x, Int16 y)
{
    if(button > MouseDown)
        return;
    _mouseButtons &= UInt16(~(1u << button));
    _navigator.buttonRelease(Int16(button), x, y);
    _lastX = x;
    _lastY = y;
}

// 1.8's keys: y/h forwards and back, j/g left and right, u/t turn.
void SimpleSceneManager::key(UChar8 key, Int16 x, Int16 y)
{
    initialize();
    switch(key)
    {
        case 'j': _navigator.keyPress(Navigator::LEFT,      x, y); break;
        case 'g': _navigator.keyPress(Navigator::RIGHT,     x, y); break;
        case 'u': _navigator.keyPress(Navigator::LEFTROT,   x, y); break;
        case 't': _navigator.keyPress(Navigator::RIGHTROT,  x, y); break;
        case 'y': _navigator.keyPress(Navigator::FORWARDS,  x, y); break;
        case 'h': _navigator.keyPress(Navigator::BACKWARDS, x, y); break;
        default:  return;
    }
    _navigator.updateCameraTransformation();
}

void SimpleSceneManager::redraw(void)
{
    initialize();
    if(_win == NullFC)
    {
        SWARNING << "SimpleSceneManager::redraw: no window" << endLog;
        return;
    }
    _navigator.updateCameraTransformation();
    _win->render(_action);
}

void SimpleSceneManager::idle(void)
{
    _navigator.idle(Int16(_mouseButtons), _lastX, _lastY);
    _navigator.updateCameraTransformation();
}

Navigator *SimpleSceneManager::getNavigator(void) { return &_navigator; }

} // namespace osg
