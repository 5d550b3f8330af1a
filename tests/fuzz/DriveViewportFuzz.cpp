#include "FuzzTargets.h"
#include "support/Builders.h"
#include "support/EffectSetters.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>
#include <Lumora/LumoraInit.h>

#include <cstring>
#include <memory>
#include <vector>

using namespace osg;
using testsupport::editCP;

namespace fuzz
{

namespace
{

typedef DeferredRenderingViewport DRV;

// Reads the input front to back; past its end everything reads as zero.
class Reader
{
  public:
    Reader(const std::uint8_t *data, std::size_t size) : _data(data), _size(size) {}

    bool          atEnd(void) const { return _at >= _size; }
    std::uint8_t  byte (void)       { return _at < _size ? _data[_at++] : 0; }
    Real32        real (void)
    {
        std::uint8_t bytes[4] = {byte(), byte(), byte(), byte()};
        Real32 value;
        std::memcpy(&value, bytes, sizeof(value));
        return value;
    }

  private:
    const std::uint8_t *_data;
    std::size_t         _size;
    std::size_t         _at = 0;
};

// What lives across inputs: the context, the scene, the window.
struct Stage
{
    std::unique_ptr<lumora::HeadlessContext> context;
    PassiveWindowPtr     window;
    RenderAction        *action = nullptr;
    NodePtr              root;
    NodePtr              empty;
    PerspectiveCameraPtr camera;
    SolidBackgroundPtr   background;
};

NodePtr addChild(NodePtr parent, NodePtr child)
{
    editCP(parent, Node::ChildrenFieldMask, [&] { parent->addChild(child); });
    return child;
}

// A node translated to at, under parent.
NodePtr placedNode(NodePtr parent, const Vec3f &at)
{
    Matrix m;
    m.setTranslate(at);
    TransformPtr transform = Transform::create();
    editCP(transform, [&] { transform->setMatrix(m); });
    return addChild(parent, makeNodeFor(transform));
}

void addGeometry(NodePtr parent, GeometryPtr geometry, Real32 transparency, const Vec3f &at)
{
    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(Color3f(0.8f, 0.6f, 0.4f));
    material->setTransparency(transparency);
    endEditCP(material);
    editCP(geometry, Geometry::MaterialFieldMask, [&] { geometry->setMaterial(material); });
    addChild(placedNode(parent, at), makeNodeFor(geometry));
}

Stage &stage(void)
{
    static Stage s;
    if(s.context)
        return s;

    s.context.reset(new lumora::HeadlessContext(64, 64));
    osgInit(0, NULL);
    initLumora();
    // The inputs are meant to be wrong; their warnings are expected.
    osgLog().setLogLevel(LOG_FATAL);

    s.root = makeNodeFor(Group::create());
    addRefCP(s.root);
    s.empty = makeNodeFor(Group::create());
    addRefCP(s.empty);
    addGeometry(s.root, makePlaneGeo(8, 8, 1, 1), 0, Vec3f(0, 0, 0));
    addGeometry(s.root, makeBoxGeo(1, 1, 1, 1, 1, 1), 0, Vec3f(0, 0, 0.5f));
    addGeometry(s.root, makePlaneGeo(1, 1, 1, 1), 0.5f, Vec3f(0.5f, 0, 1.5f));
    NodePtr beacon = placedNode(s.root, Vec3f(0, 0, 6));

    s.camera = PerspectiveCamera::create();
    addRefCP(s.camera);
    beginEditCP(s.camera);
    s.camera->setBeacon(beacon);
    s.camera->setFov(deg2rad(60));
    s.camera->setNear(0.5f);
    s.camera->setFar(20);
    endEditCP(s.camera);

    s.background = SolidBackground::create();
    addRefCP(s.background);

    s.window = PassiveWindow::create();
    addRefCP(s.window);
    s.window->init();
    s.action = RenderAction::create();
    return s;
}

LightPtr makeLight(Reader &in)
{
    const std::uint8_t kind = in.byte() % 3;
    LightPtr light = kind == 0 ? LightPtr(PointLight::create()) :
                     kind == 1 ? LightPtr(SpotLight::create()) :
                                 LightPtr(DirectionalLight::create());
    beginEditCP(light);
    if(kind != 2)
        PointLightPtr::dcast(light)->setPosition(Pnt3f(in.real(), in.real(), in.real()));
    if(kind == 1)
    {
        SpotLightPtr spot = SpotLightPtr::dcast(light);
        spot->setDirection(Vec3f(in.real(), in.real(), in.real()));
        spot->setSpotCutOff(in.real());
    }
    else if(kind == 2)
        DirectionalLightPtr::dcast(light)->setDirection(Vec3f(in.real(), in.real(), in.real()));
    light->setShadowIntensity(in.byte() < 16 ? 0.5f : 1.0f);
    light->setQuadraticAttenuation(in.real());
    endEditCP(light);
    return light;
}

const auto &s_effectOn   = testsupport::effectOn;
const auto &s_parameters = testsupport::effectParameters;

} // namespace

int driveViewport(const std::uint8_t *data, std::size_t size)
{
    Stage &s = stage();
    Reader in(data, size);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    addRefCP(viewport);
    beginEditCP(viewport);
    viewport->setCamera(s.camera);
    viewport->setBackground(s.background);
    viewport->setRoot(s.root);
    viewport->setSize(0, 0, 1, 1);
    endEditCP(viewport);
    editCP(s.window, Window::PortFieldMask, [&] { s.window->addPort(viewport); });
    s.window->resize(32, 32);

    std::vector<LightPtr> lights;
    auto pickLight = [&](void) -> LightPtr
    {
        return lights.empty() ? LightPtr(NullFC) : lights[in.byte() % lights.size()];
    };

    // Frames cost the most; a handful per input keeps the fuzzer moving.
    int frames = 0;
    for(int step = 0; step < 64 && !in.atEnd(); ++step)
    {
        switch(in.byte() % 14)
        {
            case 0:
                lights.push_back(makeLight(in));
                addRefCP(lights.back());
                viewport->addLight(lights.back());
                break;
            case 1:
                viewport->subLight(pickLight());
                break;
            case 2:
                if(LightPtr light = pickLight())
                {
                    beginEditCP(light);
                    light->setDiffuse(Color4f(in.real(), in.real(), in.real(), 1));
                    light->setShadowIntensity(in.real());
                    endEditCP(light);
                }
                break;
            case 3:
                if(LightPtr light = pickLight())
                {
                    editCP(light, Light::OnFieldMask, [&] { light->setOn(!light->getOn()); });
                    viewport->addLight(light);
                }
                break;
            case 4:
            {
                const UInt32 slot = in.byte() % DRV::NumPostProcessors;
                (viewport.getCPtr()->*s_effectOn[slot])(!viewport->isPostProcessOn(slot));
                break;
            }
            case 5:
            {
                const std::uint8_t which = in.byte() % 7;
                (viewport.getCPtr()->*s_parameters[which])(in.real());
                break;
            }
            case 6:
                viewport->setGlobalShadowIntensity(in.real());
                break;
            case 7:
                s.window->resize(in.byte() % 48, in.byte() % 48);
                break;
            case 8:
                viewport->prepareScene(in.byte() % 3 == 0 ? s.empty : s.root);
                break;
            case 9:
                viewport->prepareScene(NullFC);
                viewport->addLight(NullFC);
                viewport->subLight(NullFC);
                break;
            case 10:
                beginEditCP(viewport, Viewport::CameraFieldMask | Viewport::RootFieldMask);
                viewport->setCamera(in.byte() % 2 ? s.camera : PerspectiveCameraPtr(NullFC));
                viewport->setRoot(in.byte() % 2 ? s.root : NodePtr(NullFC));
                endEditCP(viewport, Viewport::CameraFieldMask | Viewport::RootFieldMask);
                break;
            case 11:
                beginEditCP(s.camera);
                s.camera->setNear(in.real());
                s.camera->setFar(in.real());
                endEditCP(s.camera);
                break;
            default:
                if(frames < 6)
                {
                    s.window->render(s.action);
                    ++frames;
                }
                break;
        }
        Thread::getCurrentChangeList()->clearAll();
    }

    beginEditCP(s.camera);
    s.camera->setNear(0.5f);
    s.camera->setFar(20);
    endEditCP(s.camera);
    editCP(s.window, Window::PortFieldMask, [&] { s.window->subPort(viewport); });
    subRefCP(viewport);
    for(LightPtr light : lights)
        subRefCP(light);
    s.window->frameInit();
    s.window->frameExit();
    Thread::getCurrentChangeList()->clearAll();
    while(glGetError() != GL_NO_ERROR)
        ;
    return 0;
}

} // namespace fuzz

LUMORA_FUZZ_TARGET(driveViewport)
