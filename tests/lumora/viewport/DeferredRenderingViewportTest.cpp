#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>

#include "support/GLTest.h"
#include "support/LogCapture.h"
#include "support/PixelProbe.h"

#include <cmath>
#include <vector>

using namespace osg;
using testsupport::RGBAf;

namespace
{

const UInt16 Size = 64;

DeferredRenderingViewportPtr createViewport(void)
{
    return DeferredRenderingViewportPtr::dcast(
        FieldContainerFactory::the()->createFieldContainer("DeferredRenderingViewport"));
}

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

NodePtr createPlane(Real32 size, Real32 z, MaterialPtr material)
{
    GeometryPtr geometry = makePlaneGeo(size, size, 1, 1);
    beginEditCP(geometry, Geometry::MaterialFieldMask);
    geometry->setMaterial(material);
    endEditCP(geometry, Geometry::MaterialFieldMask);

    TransformPtr transform = Transform::create();
    Matrix m;
    m.setTranslate(0, 0, z);
    beginEditCP(transform, Transform::MatrixFieldMask);
    transform->setMatrix(m);
    endEditCP(transform, Transform::MatrixFieldMask);

    NodePtr node = makeNodeFor(transform);
    beginEditCP(node, Node::ChildrenFieldMask);
    node->addChild(makeNodeFor(geometry));
    endEditCP(node, Node::ChildrenFieldMask);
    return node;
}

// A 64x64 window looking down -Z from (0, 0, 5) at a scene around the origin.
class DeferredViewportTest : public testsupport::GLTest
{
  protected:
    void SetUp() override
    {
        GLTest::SetUp();

        window = PassiveWindow::create();
        addRefCP(window);
        window->init();
        window->resize(Size, Size);

        root = makeNodeFor(Group::create());
        addRefCP(root);

        NodePtr beacon = makeNodeFor(Transform::create());
        Matrix  m;
        m.setTranslate(0, 0, 5);
        TransformPtr::dcast(beacon->getCore())->setMatrix(m);
        beginEditCP(root, Node::ChildrenFieldMask);
        root->addChild(beacon);
        endEditCP(root, Node::ChildrenFieldMask);

        camera = PerspectiveCamera::create();
        addRefCP(camera);
        beginEditCP(camera);
        camera->setBeacon(beacon);
        camera->setFov(deg2rad(60.0f));
        camera->setNear(1.0f);
        camera->setFar(10.0f);
        endEditCP(camera);

        background = SolidBackground::create();
        addRefCP(background);
        beginEditCP(background);
        background->setColor(Color3f(0.2f, 0.4f, 0.6f));
        background->setAlpha(0.0f);
        endEditCP(background);

        viewport = createViewport();
        addRefCP(viewport);
        beginEditCP(viewport);
        viewport->setCamera(camera);
        viewport->setBackground(background);
        viewport->setRoot(root);
        viewport->setSize(0, 0, 1, 1);
        endEditCP(viewport);
        beginEditCP(window, Window::PortFieldMask);
        window->addPort(viewport);
        endEditCP(window, Window::PortFieldMask);

        action = RenderAction::create();
    }

    void TearDown() override
    {
        delete action;
        beginEditCP(window, Window::PortFieldMask);
        window->subPort(viewport);
        endEditCP(window, Window::PortFieldMask);
        subRefCP(viewport);
        subRefCP(background);
        subRefCP(camera);
        subRefCP(root);
        subRefCP(window);
        GLTest::TearDown();
    }

    void addToScene(NodePtr node)
    {
        beginEditCP(root, Node::ChildrenFieldMask);
        root->addChild(node);
        endEditCP(root, Node::ChildrenFieldMask);
    }

    RGBAf gbufferTexel(int index, int x, int y)
    {
        TextureChunkPtr texture = viewport->getGBufferTarget().getTargetTexture(index);
        glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
        RGBAf texel = testsupport::readTexelFloat(x, y);
        glBindTexture(GL_TEXTURE_2D, 0);
        return texel;
    }

    float gbufferDepth(int x, int y)
    {
        TextureChunkPtr texture = viewport->getGBufferTarget().getTargetTexture(4);
        std::vector<float> depth(Size * Size);
        glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
        glBindTexture(GL_TEXTURE_2D, 0);
        return depth[y * Size + x];
    }

    PassiveWindowPtr             window;
    NodePtr                      root;
    PerspectiveCameraPtr         camera;
    SolidBackgroundPtr           background;
    DeferredRenderingViewportPtr viewport;
    RenderAction                *action;
};

// Window depth of an eye-space distance d in front of a perspective camera.
float windowDepth(float d, float n, float f)
{
    float ndc = (f + n) / (f - n) - 2.0f * f * n / ((f - n) * d);
    return ndc * 0.5f + 0.5f;
}

} // namespace

TEST(DeferredViewportType, FactoryViewportIsPopulatedButNotInitialised)
{
    DeferredRenderingViewportPtr viewport = createViewport();
    ASSERT_NE(viewport, NullFC);
    addRefCP(viewport);

    EXPECT_NE(viewport->getLightRoot(), NullFC);
    ASSERT_NE(viewport->getLightRenderAction(), nullptr);
    EXPECT_FALSE(viewport->getLightRenderAction()->getFrustumCulling());
    EXPECT_FALSE(viewport->getGBufferTarget().isInitialized());
    EXPECT_FALSE(viewport->getLightTarget().isInitialized());
    EXPECT_EQ(viewport->getLastWidth(), -1);
    EXPECT_EQ(viewport->getLastHeight(), -1);
    EXPECT_TRUE(viewport->getType().isDerivedFrom(Viewport::getClassType()));
    EXPECT_EQ(SFDeferredRenderingViewportPtr::getClassType().getName(),
              "SFDeferredRenderingViewportPtr");

    testsupport::LogCapture log(LOG_WARNING);
    viewport->dump();
    EXPECT_TRUE(log.contains("Dump DeferredRenderingViewport NI\n")) << log.text();
    EXPECT_EQ(log.count("\n"), 1u);

    subRefCP(viewport);
}

TEST(DeferredViewportType, PrototypeOwnsNothing)
{
    DeferredRenderingViewportPtr prototype = DeferredRenderingViewportPtr::dcast(
        DeferredRenderingViewport::getClassType().getPrototype());
    ASSERT_NE(prototype, NullFC);
    EXPECT_EQ(prototype->getLightRoot(), NullFC);
    EXPECT_EQ(prototype->getLightRenderAction(), nullptr);
}

TEST_F(DeferredViewportTest, PrepareSceneConvertsASharedMaterialOnce)
{
    SimpleMaterialPtr shared = createMaterial(Color3f(0.8f, 0.4f, 0.2f));
    NodePtr a = createPlane(1, 0, shared);
    NodePtr b = createPlane(1, 1, shared);
    addToScene(a);
    addToScene(b);

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
    NodePtr transparent = createPlane(1, 0, glass);
    NodePtr masked      = createPlane(1, 0, hidden);
    addToScene(transparent);
    addToScene(masked);
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

TEST_F(DeferredViewportTest, PrepareSceneSilencesOwnShadersAndBlending)
{
    SimpleMaterialPtr material = createMaterial(Color3f(0.8f, 0.4f, 0.2f));
    BlendChunkPtr     blend    = BlendChunk::create();   // ONE/ZERO: still opaque
    SHLChunkPtr       shader   = SHLChunk::create();
    TextureChunkPtr   texture  = TextureChunk::create(); // no image
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(blend);
    material->addChunk(shader);
    material->addChunk(texture);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    addToScene(createPlane(1, 0, material));

    viewport->prepareScene(root);

    EXPECT_TRUE(blend->getIgnore());
    EXPECT_TRUE(shader->getIgnore());
    EXPECT_FALSE(viewport->getGBufferShader()->getIgnore());

    SHLParameterChunkPtr parameters;
    for(UInt32 i = 0; i < material->getChunks().size(); ++i)
        if(SHLParameterChunkPtr::dcast(material->getChunks()[i]) != NullFC)
            parameters = SHLParameterChunkPtr::dcast(material->getChunks()[i]);
    ASSERT_NE(parameters, NullFC);
    bool useTexture = true;
    EXPECT_TRUE(parameters->getUniformParameter("bUseDiffuseTexture", useTexture));
    EXPECT_FALSE(useTexture);
}

TEST_F(DeferredViewportTest, MissingContainersWarnAndDrawNothing)
{
    struct Case { const char *message; int missing; };
    const Case cases[] = {
        { "DeferredRenderingViewport::render: no camera!",     0 },
        { "DeferredRenderingViewport::render: no Background!", 1 },
        { "DeferredRenderingViewport::render: no Root!",       2 },
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
        testsupport::LogCapture log(LOG_WARNING);
        viewport->render(action);

        EXPECT_TRUE(log.contains(c.message)) << log.text();
        EXPECT_EQ(log.count("DeferredRenderingViewport::render"), 1u);
        // The clear colour untouched; 0.5 may round either way.
        testsupport::RGBA8 pixel = testsupport::readPixelRGBA8(32, 32);
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
    testsupport::LogCapture log(LOG_WARNING);
    viewport->render(action);
    EXPECT_TRUE(log.text().empty());
    EXPECT_EQ(viewport->getLastWidth(), -1);
}

TEST_F(DeferredViewportTest, GBufferHoldsEncodedSurfaceAndBackground)
{
    addToScene(createPlane(2, 0, createMaterial(Color3f(0.8f, 0.4f, 0.2f))));
    viewport->prepareScene(root);
    window->render(action);

    // 8-bit channels: half a step of 1/255; normals 10 bits.
    const float tol = 1.0f / 255.0f;
    RGBAf normal   = gbufferTexel(0, 32, 32);
    RGBAf diffuse  = gbufferTexel(1, 32, 32);
    RGBAf specular = gbufferTexel(2, 32, 32);
    RGBAf emission = gbufferTexel(3, 32, 32);

    EXPECT_NEAR(normal[0], 0.5f, 1.0f / 1023.0f);
    EXPECT_NEAR(normal[1], 0.5f, 1.0f / 1023.0f);
    EXPECT_NEAR(normal[2], 1.0f, 1.0f / 1023.0f);
    EXPECT_NEAR(normal[3], 1.0f, tol);
    EXPECT_NEAR(diffuse[0], 0.8f, tol);
    EXPECT_NEAR(diffuse[1], 0.4f, tol);
    EXPECT_NEAR(diffuse[2], 0.2f, tol);
    EXPECT_NEAR(specular[0], 0.5f, tol);
    EXPECT_NEAR(specular[1], 0.25f, tol);
    EXPECT_NEAR(specular[2], 0.1f, tol);
    EXPECT_NEAR(std::pow(2.0f, specular[3] * 8.0f), 16.0f, 16.0f * 8.0f * std::log(2.0f) * tol);
    EXPECT_NEAR(emission[0], 0.1f, tol);
    EXPECT_NEAR(emission[1], 0.2f, tol);
    EXPECT_NEAR(emission[2], 0.3f, tol);
    EXPECT_NEAR(gbufferDepth(32, 32), windowDepth(5.0f, 1.0f, 10.0f), 1e-4f);

    // The plane covers about a third of the view; the corner is background.
    const RGBAf corner[] = { gbufferTexel(0, 1, 1), gbufferTexel(1, 1, 1),
                             gbufferTexel(2, 1, 1), gbufferTexel(3, 1, 1) };
    for(const RGBAf &texel : corner)
    {
        EXPECT_NEAR(texel[0], 0.2f, 1.0f / 255.0f);
        EXPECT_NEAR(texel[1], 0.4f, 1.0f / 255.0f);
        EXPECT_NEAR(texel[2], 0.6f, 1.0f / 255.0f);
        EXPECT_NEAR(texel[3], 0.0f, 1.0f / 255.0f);
    }
    EXPECT_FLOAT_EQ(gbufferDepth(1, 1), 1.0f);
}

TEST_F(DeferredViewportTest, TransparentGeometryIsDrawnForwardOverTheLitImage)
{
    NodePtr opaque      = createPlane(4, 0, createMaterial(Color3f(0.8f, 0.8f, 0.8f)));
    NodePtr transparent = createPlane(0.5f, 1, createMaterial(Color3f(1, 0, 0), 0.5f));
    addToScene(opaque);
    addToScene(transparent);
    viewport->prepareScene(root);

    Real32 farBefore = camera->getFar();
    window->render(action);

    // No registered light: the lit image is the emissive term, the plane's
    // emission under the glass and the background's colour (which the
    // background wrote into every G-buffer texture) around the plane.
    const Color3f emission(0.1f, 0.2f, 0.3f);
    const Color3f glass(1, 0, 0);
    testsupport::RGBA8 centre = testsupport::readPixelRGBA8(32, 32);
    EXPECT_NEAR(centre.r, 255 * (0.5f * glass[0] + 0.5f * emission[0]), 2);
    EXPECT_NEAR(centre.g, 255 * (0.5f * glass[1] + 0.5f * emission[1]), 2);
    EXPECT_NEAR(centre.b, 255 * (0.5f * glass[2] + 0.5f * emission[2]), 2);
    testsupport::RGBA8 corner = testsupport::readPixelRGBA8(4, 4);
    EXPECT_NEAR(corner.r, 255 * 0.2f, 1);
    EXPECT_NEAR(corner.g, 255 * 0.4f, 1);
    EXPECT_NEAR(corner.b, 255 * 0.6f, 1);

    // The glass is absent from the G-buffer: the opaque plane's diffuse there.
    EXPECT_NEAR(gbufferTexel(1, 32, 32)[0], 0.8f, 1.0f / 255.0f);

    EXPECT_EQ(camera->getFar(), farBefore);
    EXPECT_EQ(opaque->getChild(0)->getTravMask(), 0xFFFFFFFFu);
    EXPECT_EQ(transparent->getChild(0)->getTravMask(), 0xFFFFFFFFu);
}

TEST_F(DeferredViewportTest, OnePixelResizeRecreatesBothTargets)
{
    addToScene(createPlane(2, 0, createMaterial(Color3f(0.8f, 0.4f, 0.2f))));
    viewport->prepareScene(root);
    window->render(action);

    RenderTarget &gbuffer = viewport->getGBufferTarget();
    RenderTarget &light   = viewport->getLightTarget();
    ImagePtr before = light.getTargetTexture(0)->getImage();

    window->resize(Size + 1, Size);
    window->render(action);

    EXPECT_EQ(viewport->getLastWidth(), Size + 1);
    for(UInt8 i = 0; i < 5; ++i)
        EXPECT_EQ(gbuffer.getTargetTexture(i)->getImage()->getWidth(), Size + 1);
    EXPECT_NE(light.getTargetTexture(0)->getImage(), before);
    EXPECT_EQ(light.getTargetTexture(0)->getImage()->getWidth(), Size + 1);
    EXPECT_EQ(light.getTargetTexture(1), gbuffer.getTargetTexture(4));
    EXPECT_EQ(light.getTargetTexture(0)->getImage()->getDataType(),
              Int32(Image::OSG_FLOAT16_IMAGEDATA));
}
