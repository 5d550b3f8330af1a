#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/SceneSetup.h"

#include <Lumora/DeferredDirectionalLight.h>
#include <Lumora/DeferredLightBatch.h>
#include <Lumora/DeferredPointLight.h>
#include <Lumora/DeferredSpotLight.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

// A light type the viewport has no deferred counterpart for.
namespace registrytest
{

OSG_FC_PTR_DECL(HemisphereLight, ::osg::LightPtr)

class HemisphereLight : public ::osg::Light
{
    OSG_FC_DECL(HemisphereLight, ::osg::Light)

  public:
    static void initMethod(void) {}

  protected:
    HemisphereLight(void) : Inherited() {}
    HemisphereLight(const HemisphereLight &source) : Inherited(source) {}
    virtual ~HemisphereLight(void) {}
};

OSG_FC_IMPL(HemisphereLight, "Light")

} // namespace registrytest

using namespace osg;
using namespace testsupport;
using registrytest::HemisphereLight;
using registrytest::HemisphereLightPtr;

namespace
{

enum class Kind { Point, Spot, Directional };

// A light of the given kind that lights the plane at z = 0 from above; its
// shadow intensity of 1 casts none.
LightPtr createLight(Kind kind)
{
    const Color3f white(1, 1, 1), black(0, 0, 0);
    const Vec3f   attenuation(1, 0, 0.1f);
    if(kind == Kind::Point)
        return makeLight(PointLightParams{Pnt3f(0, 0, 2), white, black, attenuation, 1.0f});
    if(kind == Kind::Spot)
        return makeLight(SpotLightParams{Pnt3f(0, 0, 2), Vec3f(0, 0, -1), deg2rad(40.0f), 0.0f,
                                         attenuation, white, black});
    return makeLight(DirectionalLightParams{Vec3f(0, 0, 1)});
}

class DeferredLightRegistryTest : public DeferredSceneTest
{
  protected:
    void setOn(LightPtr light, bool on)
    {
        editCP(light, Light::OnFieldMask, [&] { light->setOn(on); });
    }

    // The light root's children, in order.
    std::vector<NodePtr> lightRootChildren(DeferredRenderingViewportPtr port) const
    {
        std::vector<NodePtr> children;
        NodePtr lightRoot = port->getLightRoot();
        for(UInt32 i = 0; i < lightRoot->getNChildren(); ++i)
            children.push_back(lightRoot->getChild(i));
        return children;
    }

    // What the light root holds without lights: the emissive pass and the
    // light batch's pass.
    std::vector<NodePtr> screenPasses(DeferredRenderingViewportPtr port) const
    {
        return {port->getEmissiveLight()->getVolumeRoot(),
                port->getLightBatch()->getVolumeRoot()};
    }

    // A white plane that any of the lights above lights at the centre.
    void addLitPlane() { addPlane(8.0f, 0.0f, material(Color3f(1, 1, 1))); }

    float centre() { return LitImage(viewport).at(32, 32, 0); }
};

} // namespace

// Added twice, before and after a frame, a light gets one deferred light.
// Removed before or after its first frame, that goes with its volume; our
// reference outlives it, its own goes with it.
TEST_F(DeferredLightRegistryTest, VolumeJoinsTheLightRootAtTheFirstFrameAndSubLightDeletesIt)
{
    addLitPlane();
    LightPtr light = createLight(Kind::Point);
    float lit = 0.0f;
    for(bool framed : {false, true})
    {
        SCOPED_TRACE(framed ? "after a frame" : "before any frame");
        viewport->addLight(light);
        viewport->addLight(light);
        ASSERT_EQ(viewport->getLights().size(), 1u);
        NodePtr volume = viewport->getLights().at(light)->getVolumeRoot();
        addRefCP(volume);
        EXPECT_EQ(volume.getRefCount(), 2);
        EXPECT_EQ(volume->getParent(), NullFC);
        if(framed)
        {
            renderFrame();
            lit = centre();
            EXPECT_GT(lit, 0.1f);
            viewport->addLight(light);
            renderFrame();
            EXPECT_EQ(volume->getParent(), viewport->getLightRoot());
            EXPECT_EQ(viewport->getLights().size(), 1u);
            EXPECT_EQ(lightRootChildren(viewport).size(), 3u);
            EXPECT_NEAR(centre(), lit, 0.001f);
        }

        viewport->subLight(light);
        EXPECT_TRUE(viewport->getLights().empty());
        EXPECT_EQ(volume.getRefCount(), 1);
        EXPECT_EQ(volume->getParent(), NullFC);
        EXPECT_EQ(lightRootChildren(viewport), screenPasses(viewport));
        renderFrame();
        EXPECT_EQ(lightRootChildren(viewport), screenPasses(viewport));
        EXPECT_EQ(LitImage(viewport).maxValue(), 0.0f);
        subRefCP(volume);
    }

    // Removing it again changes nothing.
    viewport->subLight(light);
    EXPECT_TRUE(viewport->getLights().empty());

    // Added back, it gets a fresh deferred light that draws as before.
    viewport->addLight(light);
    renderFrame();
    EXPECT_EQ(lightRootChildren(viewport).size(), 3u);
    EXPECT_NEAR(centre(), lit, 0.001f);
    subRefCP(light);
}

// Neither a light that is off when added, even once switched on, nor one
// of a type without a deferred counterpart is registered; only the latter
// warns, and nothing half-made is left to trip the next frame.
TEST_F(DeferredLightRegistryTest, LightsOffWhenAddedOrOfUnsupportedTypeStayUnregistered)
{
    addLitPlane();
    LightPtr off = createLight(Kind::Spot);
    setOn(off, false);
    HemisphereLightPtr unsupported = HemisphereLight::create();
    ASSERT_NE(unsupported, NullFC);
    addRefCP(unsupported);
    ASSERT_TRUE(unsupported->getType().isDerivedFrom(Light::getClassType()));

    viewport->addLight(off);
    viewport->addLight(unsupported);
    EXPECT_TRUE(viewport->getLights().empty());
    EXPECT_EQ(log().count("DeferredRenderingViewport::addLight"), 1u) << log().text();
    EXPECT_TRUE(log().contains("HemisphereLight")) << log().text();

    setOn(off, true);
    renderFrame();
    EXPECT_TRUE(viewport->getLights().empty());
    EXPECT_EQ(lightRootChildren(viewport), screenPasses(viewport));
    EXPECT_EQ(LitImage(viewport).maxValue(), 0.0f);
    subRefCP(unsupported);
    subRefCP(off);
}

// Null containers, an unknown light and a viewport beyond the texture limit
// (one warning for two frames) leave the next sane frame as before.
TEST_F(DeferredLightRegistryTest, MisuseWarnsAndKeepsTheRegistryAndScene)
{
    addLitPlane();
    LightPtr light = createLight(Kind::Point);
    viewport->addLight(light);
    renderFrame();
    const float before = centre();
    ASSERT_GT(before, 0.1f);

    viewport->addLight(NullFC);
    viewport->subLight(NullFC);
    viewport->prepareScene(NullFC);
    for(const char *operation : {"addLight", "subLight", "prepareScene"})
        EXPECT_TRUE(log().contains(std::string("DeferredRenderingViewport::") + operation))
            << operation << ": " << log().text();
    EXPECT_EQ(viewport->getLights().size(), 1u);
    EXPECT_EQ(viewport->getDeferredNodes().size(), 1u);

    // An unknown light goes silently and takes nothing with it.
    LightPtr stranger = createLight(Kind::Spot);
    viewport->subLight(stranger);
    EXPECT_EQ(viewport->getLights().size(), 1u);

    GLint maxSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize);
    window->resize(UInt16(maxSize + 1), Size);
    window->render(action);
    window->render(action);
    EXPECT_EQ(log().count("is larger than the largest texture"), 1u) << log().text();
    EXPECT_EQ(viewport->getLastWidth(), Size);

    window->resize(Size, Size);
    window->render(action);
    EXPECT_NEAR(centre(), before, 1e-4f);
    subRefCP(stranger);
    subRefCP(light);
}

// A light with a NaN or infinite field is left out of the frame with one
// warning; once the field is finite again it lights exactly like a light
// that was never spoiled.
TEST_F(DeferredLightRegistryTest, NonFiniteLightFieldsLeaveNoTraceOnceFixed)
{
    const Real32 nan = std::numeric_limits<Real32>::quiet_NaN();
    const Real32 inf = std::numeric_limits<Real32>::infinity();

    struct Case { const char *name; Kind kind; bool shadows;
                  std::function<void(LightPtr, Real32)> set; Real32 bad, fixed; };
    const Case cases[] = {
        {"point position", Kind::Point, false,
         [](LightPtr l, Real32 v) { PointLightPtr::dcast(l)->setPosition(Pnt3f(0, v, 2)); }, nan, 0.5f},
        {"point diffuse", Kind::Point, false,
         [](LightPtr l, Real32 v) { l->setDiffuse(Color4f(v, 1, 1, 1)); }, inf, 0.5f},
        {"point attenuation", Kind::Point, false,
         [](LightPtr l, Real32 v) { l->setQuadraticAttenuation(v); }, nan, 0.2f},
        {"spot cut-off", Kind::Spot, false,
         [](LightPtr l, Real32 v) { SpotLightPtr::dcast(l)->setSpotCutOff(v); }, nan, 0.6f},
        {"shadowed spot position", Kind::Spot, true,
         [](LightPtr l, Real32 v) { SpotLightPtr::dcast(l)->setPosition(Pnt3f(v, 0, 2)); }, inf, 0.3f},
        {"shadowed sun direction", Kind::Directional, true,
         [](LightPtr l, Real32 v) { DirectionalLightPtr::dcast(l)->setDirection(Vec3f(0, v, 1)); }, nan, 0.5f},
    };

    addLitPlane();
    viewport->prepareScene(root);
    for(const Case &test : cases)
    {
        SCOPED_TRACE(test.name);
        LightPtr light = createLight(test.kind);
        LightPtr fresh = createLight(test.kind);
        for(LightPtr l : {light, fresh})
        {
            beginEditCP(l);
            l->setShadowIntensity(test.shadows ? 0.5f : 1.0f);
            test.set(l, test.fixed);
            endEditCP(l);
        }
        viewport->addLight(fresh);
        window->render(action);
        const float expected = centre();
        ASSERT_GT(expected, 0.1f);
        viewport->subLight(fresh);

        viewport->addLight(light);
        editCP(light, [&] { test.set(light, test.bad); });
        const std::size_t warnings = log().count("non-finite fields");
        window->render(action);
        window->render(action);
        EXPECT_EQ(log().count("non-finite fields"), warnings + 1) << log().text();
        EXPECT_EQ(centre(), 0.0f);

        editCP(light, [&] { test.set(light, test.fixed); });
        window->render(action);
        EXPECT_NEAR(centre(), expected, 1e-4f);

        // Spoiled again later: reported again.
        editCP(light, [&] { test.set(light, test.bad); });
        window->render(action);
        EXPECT_EQ(log().count("non-finite fields"), warnings + 2) << log().text();

        viewport->subLight(light);
        subRefCP(fresh);
        subRefCP(light);
    }
}

// An application shader that does not compile is reported by the runtime;
// the rest of the frame is drawn as usual.
TEST_F(DeferredLightRegistryTest, ShaderThatFailsToCompileSpoilsOnlyItsOwnObject)
{
    addLitPlane();
    LightPtr light = createLight(Kind::Point);
    viewport->addLight(light);
    renderFrame();
    const float before = centre();

    SHLChunkPtr broken = SHLChunk::create();
    beginEditCP(broken);
    broken->setVertexProgram("void main(void) { gl_Position = ftransform(); }\n");
    broken->setFragmentProgram("void main(void) { gl_FragColor = undefinedThing; }\n");
    endEditCP(broken);
    BlendChunkPtr blend = BlendChunk::create();
    beginEditCP(blend);
    blend->setSrcFactor(GL_SRC_ALPHA);
    blend->setDestFactor(GL_ONE_MINUS_SRC_ALPHA);
    endEditCP(blend);

    // A small pane in front, away from the pixel read below.
    scene->addToRoot(makeRect(1.25f, 1.25f, 1.75f, 1.75f, 1.0f,
                              makeChunkMaterial({broken, blend})));

    expectGLErrors();
    renderFrame();
    EXPECT_TRUE(log().contains("undefinedThing")) << log().text();
    EXPECT_EQ(viewport->getForwardNodes().size(), 1u);
    EXPECT_NEAR(centre(), before, 1e-4f);
    subRefCP(light);
}
