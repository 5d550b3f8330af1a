#include "support/DeferredScene.h"

#include "support/SceneSetup.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGTextureChunk.h>

#include <cmath>

using namespace osg;

namespace testsupport
{

WindowAndAction::WindowAndAction(int width, int height) :
    window(PassiveWindow::create()),
    action(RenderAction::create())
{
    addRefCP(window);
    window->init();
    window->resize(width, height);
    action->setWindow(window.getCPtr());
}

WindowAndAction::~WindowAndAction()
{
    delete action;
    subRefCP(window);
}

void WindowAndAction::addPort(ViewportPtr port)
{
    editCP(window, Window::PortFieldMask, [&] { window->addPort(port); });
}

void WindowAndAction::subPort(ViewportPtr port)
{
    editCP(window, Window::PortFieldMask, [&] { window->subPort(port); });
}

void WindowTest::SetUp()
{
    GLTest::SetUp();
    _windowAndAction.reset(new WindowAndAction(windowWidth(), windowHeight()));
    window = _windowAndAction->window;
    action = _windowAndAction->action;
}

void WindowTest::TearDown()
{
    _windowAndAction.reset();
    action = nullptr;
    GLTest::TearDown();
}

DeferredScene::DeferredScene(const DeferredSceneOptions &o) :
    options        (o),
    windowAndAction(o.width, o.height),
    window         (windowAndAction.window),
    action         (windowAndAction.action)
{
    root = makeGroupNode();
    addRefCP(root);
    Matrix m;
    m.setTranslate(0, 0, o.eyeZ);
    cameraBeacon = addToRoot(makeTransformNode(m));

    camera = PerspectiveCamera::create();
    addRefCP(camera);
    beginEditCP(camera);
    camera->setBeacon(cameraBeacon);
    camera->setFov(deg2rad(o.fovDegrees));
    camera->setNear(o.nearPlane);
    camera->setFar(o.farPlane);
    endEditCP(camera);

    background = SolidBackground::create();
    addRefCP(background);
    beginEditCP(background);
    background->setColor(o.background);
    background->setAlpha(o.backgroundAlpha);
    endEditCP(background);

    viewport = makeViewport();
    windowAndAction.addPort(viewport);
}

DeferredScene::~DeferredScene()
{
    windowAndAction.subPort(viewport);
    subRefCP(viewport);
    subRefCP(background);
    subRefCP(camera);
    subRefCP(root);
}

DeferredRenderingViewportPtr DeferredScene::makeViewport(Real32 left, Real32 bottom,
                                                         Real32 right, Real32 top) const
{
    DeferredRenderingViewportPtr port = DeferredRenderingViewport::create();
    addRefCP(port);
    beginEditCP(port);
    port->setCamera(camera);
    port->setBackground(background);
    port->setRoot(root);
    port->setSize(left, bottom, right, top);
    endEditCP(port);
    return port;
}

NodePtr DeferredScene::addToRoot(NodePtr node)
{
    addChild(root, node);
    return node;
}

NodePtr DeferredScene::addPlane(Real32 size, Real32 z, MaterialPtr mat)
{
    const Real32 h = size / 2;
    return addToRoot(makeRect(-h, -h, h, h, z, mat));
}

void DeferredScene::renderFrame()
{
    viewport->prepareScene(root);
    window->render(action);
}

Pnt3f DeferredScene::pixelOnPlane(int x, int y, Real32 z) const
{
    const Real32 t     = std::tan(deg2rad(options.fovDegrees) / 2);
    const Real32 ndcX  = 2.0f * (x + 0.5f) / options.width  - 1.0f;
    const Real32 ndcY  = 2.0f * (y + 0.5f) / options.height - 1.0f;
    const Real32 depth = options.eyeZ - z;
    const Real32 aspect = Real32(options.width) / Real32(options.height);
    return Pnt3f(ndcX * t * aspect * depth, ndcY * t * depth, z);
}

void DeferredSceneTest::SetUp()
{
    GLTest::SetUp();
    scene.reset(new DeferredScene(sceneOptions()));
    window       = scene->window;
    action       = scene->action;
    root         = scene->root;
    cameraBeacon = scene->cameraBeacon;
    camera       = scene->camera;
    background   = scene->background;
    viewport     = scene->viewport;
}

void DeferredSceneTest::TearDown()
{
    scene.reset();
    action = nullptr;
    GLTest::TearDown();
}

SimpleMaterialPtr DeferredSceneTest::material(const Color3f &diffuse, const Color3f &specular,
                                              Real32 shininess, const Color3f &emission)
{
    SimpleMaterialPtr mat = SimpleMaterial::create();
    beginEditCP(mat);
    mat->setDiffuse  (diffuse);
    mat->setAmbient  (Color3f(0, 0, 0));
    mat->setSpecular (specular);
    mat->setShininess(shininess);
    mat->setEmission (emission);
    endEditCP(mat);
    return mat;
}

} // namespace testsupport
