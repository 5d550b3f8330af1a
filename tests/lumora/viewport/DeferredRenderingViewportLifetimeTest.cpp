#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGTransform.h>

#include "support/DeferredScene.h"
#include "support/LiveObjects.h"
#include "support/LogCapture.h"

using namespace osg;
using testsupport::LiveObjects;

namespace
{

const UInt16 Size = 32;

// A lit plane, a camera and one light of each deferred kind, all under one
// root that holds the only reference to each.
struct LitScene
{
    NodePtr                root;
    PerspectiveCameraPtr   camera;
    SolidBackgroundPtr     background;
    std::vector<LightPtr>  lights;

    LitScene()
    {
        root = makeNodeFor(Group::create());
        addRefCP(root);

        Matrix m;
        m.setTranslate(0, 0, 5);
        TransformPtr beaconCore = Transform::create();
        beaconCore->setMatrix(m);
        NodePtr beacon = makeNodeFor(beaconCore);

        SimpleMaterialPtr material = SimpleMaterial::create();
        beginEditCP(material);
        material->setDiffuse(Color3f(0.8f, 0.8f, 0.8f));
        endEditCP(material);
        GeometryPtr plane = makePlaneGeo(4, 4, 2, 2);
        beginEditCP(plane, Geometry::MaterialFieldMask);
        plane->setMaterial(material);
        endEditCP(plane, Geometry::MaterialFieldMask);

        PointLightPtr point = PointLight::create();
        beginEditCP(point);
        point->setPosition(0, 0, 2);
        endEditCP(point);
        SpotLightPtr spot = SpotLight::create();
        beginEditCP(spot);
        spot->setPosition(0, 0, 2);
        spot->setDirection(Vec3f(0, 0, -1));
        spot->setSpotCutOff(deg2rad(40.0f));
        endEditCP(spot);
        DirectionalLightPtr directional = DirectionalLight::create();
        beginEditCP(directional);
        directional->setDirection(Vec3f(0, 0, 1));
        endEditCP(directional);
        lights = { point, spot, directional };

        beginEditCP(root, Node::ChildrenFieldMask);
        root->addChild(beacon);
        root->addChild(makeNodeFor(plane));
        for(LightPtr light : lights)
        {
            beginEditCP(light, Light::BeaconFieldMask);
            light->setBeacon(beacon);
            endEditCP(light, Light::BeaconFieldMask);
            root->addChild(makeNodeFor(light));
        }
        endEditCP(root, Node::ChildrenFieldMask);

        camera = PerspectiveCamera::create();
        addRefCP(camera);
        beginEditCP(camera);
        camera->setBeacon(beacon);
        camera->setFov(deg2rad(60));
        camera->setNear(1.0f);
        camera->setFar(10.0f);
        endEditCP(camera);

        background = SolidBackground::create();
        addRefCP(background);
    }

    ~LitScene()
    {
        subRefCP(background);
        subRefCP(camera);
        subRefCP(root);
    }

    DeferredRenderingViewportPtr makeViewport()
    {
        DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
        addRefCP(viewport);
        beginEditCP(viewport);
        viewport->setCamera(camera);
        viewport->setBackground(background);
        viewport->setRoot(root);
        viewport->setSize(0, 0, 1, 1);
        endEditCP(viewport);
        return viewport;
    }
};

class DeferredViewportLifetimeTest : public testsupport::WindowTest
{
  protected:
    int windowWidth () const override { return Size; }
    int windowHeight() const override { return Size; }

    void attach(DeferredRenderingViewportPtr viewport) { addPort(viewport); }
    void detach(DeferredRenderingViewportPtr viewport) { subPort(viewport); }
};

} // namespace

TEST_F(DeferredViewportLifetimeTest, DestroyingTheViewportAndSceneReleasesEverything)
{
    // The runtime's shared default materials and the downscale and blur
    // programs live for the whole process: a first viewport makes them.
    getDefaultMaterial();
    getDefaultUnlitMaterial();

    auto cycle = [&](const LiveObjects *before) {
        LitScene scene;
        DeferredRenderingViewportPtr viewport = scene.makeViewport();
        attach(viewport);
        viewport->prepareScene(scene.root);
        for(LightPtr light : scene.lights)
            viewport->addLight(light);
        window->render(action);
        window->render(action);
        ASSERT_EQ(viewport->getLights().size(), 3u);

        // The frame made its buffers, programs and light containers.
        if(before != nullptr)
        {
            const LiveObjects during = LiveObjects::count();
            EXPECT_GE(during.gl.at("texture"),     before->gl.at("texture") + 6);
            EXPECT_GE(during.gl.at("framebuffer"), before->gl.at("framebuffer") + 2);
            EXPECT_GE(during.gl.at("program"),     before->gl.at("program") + 5);
            EXPECT_EQ(during.containers.at("DeferredRenderingViewport"),
                      before->containers.at("DeferredRenderingViewport") + 1);
        }
        detach(viewport);
        subRefCP(viewport);
    };
    cycle(nullptr);
    window->frameExit();

    const LiveObjects before = LiveObjects::count();
    cycle(&before);
    // GL objects of destroyed containers go at the window's next frame end.
    window->frameExit();
    const LiveObjects after = LiveObjects::count();

    EXPECT_EQ(testsupport::differences(before, after), "");
}

TEST_F(DeferredViewportLifetimeTest, RegisteredLightsAreHeldUntilRemovedOrTheViewportGoes)
{
    LitScene scene;
    DeferredRenderingViewportPtr viewport = scene.makeViewport();
    attach(viewport);

    std::vector<Int32> counts;
    for(LightPtr light : scene.lights)
    {
        counts.push_back(light.getRefCount());
        viewport->addLight(light);
        EXPECT_EQ(light.getRefCount(), counts.back() + 1);
    }

    // The application lets go of a light it removed from its graph; the
    // viewport still reads it every frame.
    LightPtr point = scene.lights[0];
    beginEditCP(scene.root, Node::ChildrenFieldMask);
    scene.root->subChild(point->getParents()[0]);
    endEditCP(scene.root, Node::ChildrenFieldMask);
    EXPECT_EQ(point.getRefCount(), 1);
    window->render(action);
    EXPECT_EQ(point->getType(), PointLight::getClassType());

    addRefCP(point);
    viewport->subLight(point);
    EXPECT_EQ(point.getRefCount(), 1);
    subRefCP(point);

    detach(viewport);
    subRefCP(viewport);
    for(UInt32 i = 1; i < scene.lights.size(); ++i)
        EXPECT_EQ(scene.lights[i].getRefCount(), counts[i]);
}

TEST_F(DeferredViewportLifetimeTest, RenderWithoutAnActionWarnsAndDrawsNothing)
{
    LitScene scene;
    DeferredRenderingViewportPtr viewport = scene.makeViewport();
    attach(viewport);

    testsupport::LogCapture log;
    viewport->render(NULL);
    EXPECT_TRUE(log.contains("DeferredRenderingViewport::render")) << log.text();
    EXPECT_EQ(viewport->getLastWidth(), -1);

    detach(viewport);
    subRefCP(viewport);
}
