#include "support/DeferredScene.h"
#include "support/LiveObjects.h"
#include "support/LogCapture.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGBlendChunk.h>

#include <cmath>

using namespace osg;
using namespace testsupport;

namespace
{

const UInt16 Size = 64;

SimpleMaterialPtr createMaterial(Color3f diffuse, Real32 transparency = 0.0f)
{
    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(diffuse);
    material->setSpecular(Color3f(0.5f, 0.25f, 0.1f));
    material->setShininess(16.0f);
    material->setEmission(Color3f(0.1f, 0.2f, 0.3f));
    material->setTransparency(transparency);
    material->setLit(transparency == 0.0f);
    endEditCP(material);
    return material;
}

// A 64x64 window looking down -Z from (0, 0, 5) at a scene around the
// origin, over a coloured background.
class DeferredViewportTest : public DeferredSceneTest
{
  protected:
    DeferredSceneOptions sceneOptions() const override
    {
        DeferredSceneOptions options;
        options.background = Color3f(0.2f, 0.4f, 0.6f);
        return options;
    }

    TextureImage gbuffer(int index)
    {
        return TextureImage(viewport->getGBufferTarget().getTargetTexture(UInt8(index)));
    }
};

// Window depth of an eye-space distance d in front of a perspective camera.
float windowDepth(float d, float n, float f)
{
    float ndc = (f + n) / (f - n) - 2.0f * f * n / ((f - n) * d);
    return ndc * 0.5f + 0.5f;
}

} // namespace

TEST_F(DeferredViewportTest, PrepareSceneConvertsASharedMaterialOnce)
{
    SimpleMaterialPtr shared = createMaterial(Color3f(0.8f, 0.4f, 0.2f));
    addPlane(1, 0, shared);
    addPlane(1, 1, shared);

    viewport->prepareScene(root);
    UInt32 chunks = shared->getChunks().size();
    viewport->prepareScene(root);

    EXPECT_EQ(shared->getChunks().size(), chunks);
    EXPECT_GE(shared->find(viewport->getGBufferShader()), 0);
    EXPECT_EQ(viewport->getDeferredNodes().size(), 2u);
    EXPECT_TRUE(viewport->getForwardNodes().empty());
}

TEST_F(DeferredViewportTest, PrepareSceneSortsTransparentAndSkipsHiddenNodes)
{
    SimpleMaterialPtr glass  = createMaterial(Color3f(1, 0, 0), 0.5f);
    SimpleMaterialPtr hidden = createMaterial(Color3f(0, 1, 0));
    NodePtr transparent = addPlane(1, 0, glass);
    NodePtr masked      = addPlane(1, 0, hidden);
    masked->getChild(0)->setTravMask(1);

    viewport->prepareScene(root);
    viewport->prepareScene(root);

    ASSERT_EQ(viewport->getForwardNodes().size(), 1u);
    EXPECT_EQ(viewport->getForwardNodes()[0], transparent->getChild(0));
    EXPECT_TRUE(viewport->getDeferredNodes().empty());
    EXPECT_GE(glass->find(viewport->getForwardDepth()), 0);
    EXPECT_LT(glass->find(viewport->getGBufferShader()), 0);
    EXPECT_LT(hidden->find(viewport->getGBufferShader()), 0);
}

TEST_F(DeferredViewportTest, MissingContainersWarnAndDrawNothing)
{
    struct Case { const char *message; int missing; };
    const Case cases[] = {
        { "DeferredRenderingViewport::render: no camera!",     0 },
        { "DeferredRenderingViewport::render: no Background!", 1 },
        { "DeferredRenderingViewport::render: no Root!",       2 },
        { "DeferredRenderingViewport::render",                 3 },  // no action
    };
    for(const Case &c : cases)
    {
        beginEditCP(viewport);
        viewport->setCamera    (c.missing == 0 ? CameraPtr()     : CameraPtr(camera));
        viewport->setBackground(c.missing == 1 ? BackgroundPtr() : BackgroundPtr(background));
        viewport->setRoot      (c.missing == 2 ? NodePtr()       : root);
        endEditCP(viewport);

        glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        LogCapture log(LOG_WARNING);
        viewport->render(c.missing == 3 ? nullptr : action);

        EXPECT_TRUE(log.contains(c.message)) << log.text();
        EXPECT_EQ(log.count("DeferredRenderingViewport::render"), 1u);
        // The clear colour untouched; 0.5 may round either way.
        RGBA8 pixel = readPixelRGBA8(32, 32);
        EXPECT_NEAR(pixel.r, 0.25f * 255, 1);
        EXPECT_NEAR(pixel.g, 0.5f * 255, 1);
        EXPECT_NEAR(pixel.b, 0.75f * 255, 1);
        EXPECT_EQ(pixel.a, 255);
        EXPECT_EQ(viewport->getLastWidth(), -1);
    }
}

TEST_F(DeferredViewportTest, ZeroSizeWindowEndsTheFrameSilently)
{
    window->resize(0, Size);
    LogCapture log(LOG_WARNING);
    viewport->render(action);
    EXPECT_TRUE(log.text().empty());
    EXPECT_EQ(viewport->getLastWidth(), -1);
}

TEST_F(DeferredViewportTest, GBufferHoldsEncodedSurfaceAndBackground)
{
    addPlane(2, 0, createMaterial(Color3f(0.8f, 0.4f, 0.2f)));
    viewport->prepareScene(root);
    window->render(action);

    // 8-bit channels: a step of 1/255; normals 10 bits. The shininess 16 is
    // stored as log2(s) / 8, within 16 * 8 ln 2 / 255 of 16 once decoded.
    const float tol = 1.0f / 255.0f, normalTol = 1.0f / 1023.0f, shininessTol = 0.0038f;
    struct Channel { int texture, channel; float expected, tolerance; };
    const Channel centre[] =
    {
        {0, 0, 0.5f, normalTol}, {0, 1, 0.5f, normalTol}, {0, 2, 1.0f, normalTol}, {0, 3, 1.0f, tol},
        {1, 0, 0.8f, tol}, {1, 1, 0.4f, tol},  {1, 2, 0.2f, tol},
        {2, 0, 0.5f, tol}, {2, 1, 0.25f, tol}, {2, 2, 0.1f, tol}, {2, 3, 0.5f, shininessTol},
        {3, 0, 0.1f, tol}, {3, 1, 0.2f, tol},  {3, 2, 0.3f, tol},
    };
    // The plane covers about a third of the view; the corner is background.
    const float corner[4] = {0.2f, 0.4f, 0.6f, 0.0f};
    for(int index = 0; index < 4; ++index)
    {
        const TextureImage image = gbuffer(index);
        for(const Channel &c : centre)
        {
            if(c.texture != index)
                continue;
            EXPECT_NEAR(image.at(32, 32, c.channel), c.expected, c.tolerance)
                << "texture " << index << " channel " << c.channel;
        }
        for(int channel = 0; channel < 4; ++channel)
            EXPECT_NEAR(image.at(1, 1, channel), corner[channel], tol)
                << "background, texture " << index << " channel " << channel;
    }
    TextureChunkPtr depth = viewport->getGBufferTarget().getTargetTexture(4);
    EXPECT_NEAR(depthTexel(depth, 32, 32), windowDepth(5.0f, 1.0f, 10.0f), 1e-4f);
    EXPECT_FLOAT_EQ(depthTexel(depth, 1, 1), 1.0f);
}

TEST_F(DeferredViewportTest, TransparentGeometryIsDrawnForwardOverTheLitImage)
{
    NodePtr opaque      = addPlane(4, 0, createMaterial(Color3f(0.8f, 0.8f, 0.8f)));
    NodePtr transparent = addPlane(0.5f, 1, createMaterial(Color3f(1, 0, 0), 0.5f));
    viewport->prepareScene(root);

    Real32 farBefore = camera->getFar();
    window->render(action);

    // No registered light: the lit image is the emissive term, the plane's
    // emission under the glass and the background's colour (which the
    // background wrote into every G-buffer texture) around the plane.
    const Color3f emission(0.1f, 0.2f, 0.3f);
    const Color3f glass(1, 0, 0);
    RGBA8 centre = readPixelRGBA8(32, 32);
    EXPECT_NEAR(centre.r, 255 * (0.5f * glass[0] + 0.5f * emission[0]), 2);
    EXPECT_NEAR(centre.g, 255 * (0.5f * glass[1] + 0.5f * emission[1]), 2);
    EXPECT_NEAR(centre.b, 255 * (0.5f * glass[2] + 0.5f * emission[2]), 2);
    RGBA8 corner = readPixelRGBA8(4, 4);
    EXPECT_NEAR(corner.r, 255 * 0.2f, 1);
    EXPECT_NEAR(corner.g, 255 * 0.4f, 1);
    EXPECT_NEAR(corner.b, 255 * 0.6f, 1);

    // The glass is absent from the G-buffer: the opaque plane's diffuse there.
    EXPECT_NEAR(gbuffer(1).at(32, 32, 0), 0.8f, 1.0f / 255.0f);

    EXPECT_EQ(camera->getFar(), farBefore);
    EXPECT_EQ(opaque->getChild(0)->getTravMask(), 0xFFFFFFFFu);
    EXPECT_EQ(transparent->getChild(0)->getTravMask(), 0xFFFFFFFFu);
}

// Materials belong to the application: a viewport that goes, or that alone
// still holds a material, gives back what it added and what it silenced.
TEST_F(DeferredViewportTest, ViewportsGiveTheApplicationsMaterialsBack)
{
    SimpleMaterialPtr opaque = createMaterial(Color3f(0.8f, 0.4f, 0.2f));
    SimpleMaterialPtr glass  = createMaterial(Color3f(1, 0, 0), 0.5f);
    BlendChunkPtr     blend  = BlendChunk::create();
    SHLChunkPtr       shader = SHLChunk::create();
    beginEditCP(opaque, ChunkMaterial::ChunksFieldMask);
    opaque->addChunk(blend);
    opaque->addChunk(shader);
    endEditCP(opaque, ChunkMaterial::ChunksFieldMask);
    addRefCP(opaque);
    addRefCP(glass);
    addPlane(1, 0, opaque);
    addPlane(1, 1, glass);
    const std::size_t opaqueChunks = opaque->getChunks().size();
    const std::size_t glassChunks  = glass->getChunks().size();

    DeferredRenderingViewportPtr other = scene->makeViewport();
    other->prepareScene(root);
    ASSERT_GE(opaque->find(other->getGBufferShader()), 0);
    ASSERT_GT(glass->getChunks().size(), glassChunks);
    ASSERT_TRUE(blend->getIgnore());
    ASSERT_TRUE(shader->getIgnore());

    subRefCP(other);
    EXPECT_EQ(opaque->getChunks().size(), opaqueChunks);
    EXPECT_EQ(glass->getChunks().size(),  glassChunks);
    EXPECT_FALSE(blend->getIgnore());
    EXPECT_FALSE(shader->getIgnore());
    subRefCP(glass);
    subRefCP(opaque);

    // A model dropped from the scene: at the next preparation the viewport
    // lets go of its material, and nothing of it is left.
    viewport->prepareScene(root);
    const LiveObjects before = LiveObjects::countContainers();
    NodePtr model = addPlane(1, 0, createMaterial(Color3f(0, 1, 0)));
    addRefCP(model);
    viewport->prepareScene(root);
    editCP(root, Node::ChildrenFieldMask, [&] { root->subChild(model); });
    subRefCP(model);
    viewport->prepareScene(root);
    EXPECT_EQ(differences(before, LiveObjects::countContainers()), "");
}

// The second viewport to prepare a shared material must not take the
// first one's G-buffer chunks for the application's, and the application's
// own blend stays off until the last viewport using the material goes.
TEST_F(DeferredViewportTest, TwoViewportsSharingAMaterialEachKeepTheirOwnShader)
{
    SimpleMaterialPtr shared = createMaterial(Color3f(0.8f, 0.4f, 0.2f));
    BlendChunkPtr     blend  = BlendChunk::create();
    editCP(shared, ChunkMaterial::ChunksFieldMask, [&] { shared->addChunk(blend); });
    addRefCP(shared);
    addPlane(1, 0, shared);
    const std::size_t chunks = shared->getChunks().size();

    DeferredRenderingViewportPtr first  = scene->makeViewport();
    DeferredRenderingViewportPtr second = scene->makeViewport();
    first->prepareScene(root);
    second->prepareScene(root);
    EXPECT_FALSE(first->getGBufferShader()->getIgnore());
    EXPECT_FALSE(second->getGBufferShader()->getIgnore());

    subRefCP(first);
    EXPECT_GE(shared->find(second->getGBufferShader()), 0);
    EXPECT_TRUE(blend->getIgnore());
    subRefCP(second);
    EXPECT_EQ(shared->getChunks().size(), chunks);
    EXPECT_FALSE(blend->getIgnore());
    subRefCP(shared);
}

// The factory's viewport and the type's prototype hold no targets or lights
// until a window draws them; dump is the single fixed line.
TEST(DeferredViewportType, FreshViewportAndPrototypeOwnNothingAndDumpOneLine)
{
    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    ASSERT_NE(viewport, NullFC);
    addRefCP(viewport);
    EXPECT_FALSE(viewport->getGBufferTarget().isInitialized());
    EXPECT_FALSE(viewport->getLightTarget().isInitialized());
    EXPECT_EQ(SFDeferredRenderingViewportPtr::getClassType().getName(),
              "SFDeferredRenderingViewportPtr");

    LogCapture log(LOG_WARNING);
    viewport->dump();
    EXPECT_TRUE(log.contains("Dump DeferredRenderingViewport NI\n")) << log.text();
    EXPECT_EQ(log.count("\n"), 1u);
    subRefCP(viewport);

    DeferredRenderingViewportPtr prototype = DeferredRenderingViewportPtr::dcast(
        DeferredRenderingViewport::getClassType().getPrototype());
    ASSERT_NE(prototype, NullFC);
    EXPECT_EQ(prototype->getLightRoot(), NullFC);
    EXPECT_EQ(prototype->getLightRenderAction(), nullptr);
}
