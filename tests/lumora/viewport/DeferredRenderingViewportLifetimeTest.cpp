#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/LiveObjects.h"
#include "support/SceneSetup.h"

using namespace osg;
using namespace testsupport;

namespace
{

const UInt16 Size = 32;

// A lit plane, a camera and one light of each deferred kind, all under one
// root that holds the only reference to each; every light casts shadows.
struct LitScene
{
    NodePtr               root       = makeGroupNode();
    PerspectiveCameraPtr  camera     = PerspectiveCamera::create();
    SolidBackgroundPtr    background = SolidBackground::create();
    std::vector<LightPtr> lights;

    LitScene()
    {
        addRefCP(root);
        addRefCP(camera);
        addRefCP(background);
        Matrix m;
        m.setTranslate(0, 0, 5);
        NodePtr beacon = makeTransformNode(m);
        addChild(root, beacon);

        SimpleMaterialPtr material = SimpleMaterial::create();
        editCP(material, [&] { material->setDiffuse(Color3f(0.8f, 0.8f, 0.8f)); });
        addChild(root, makeRect(-2, -2, 2, 2, 0, material));

        const Color3f white(1, 1, 1), black(0, 0, 0);
        lights = {makeLight(PointLightParams{Pnt3f(0, 0, 2)}),
                  makeLight(SpotLightParams{Pnt3f(0, 0, 2), Vec3f(0, 0, -1), deg2rad(40.0f), 0.0f,
                                            Vec3f(1, 0, 0), white, black, 0.0f}),
                  makeLight(DirectionalLightParams{Vec3f(0, 0, 1), white, black, 0.0f})};
        for(LightPtr light : lights)
        {
            editCP(light, Light::BeaconFieldMask, [&] { light->setBeacon(beacon); });
            addChild(root, makeNodeFor(light));
            subRefCP(light);
        }

        beginEditCP(camera);
        camera->setBeacon(beacon);
        camera->setFov(deg2rad(60));
        camera->setNear(1.0f);
        camera->setFar(10.0f);
        endEditCP(camera);
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
    editCP(scene.root, Node::ChildrenFieldMask,
           [&] { scene.root->subChild(point->getParents()[0]); });
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
