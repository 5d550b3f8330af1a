#include <Lumora/OSGRenderTarget.h>

#include <OpenSG/OSGGroup.h>

#include "support/DeferredScene.h"
#include "support/LogCapture.h"

#include <functional>
#include <string>

using namespace osg;
using testsupport::editCP;
using testsupport::LogCapture;

namespace
{

class RenderTargetTest : public testsupport::WindowTest
{
  protected:
    int windowWidth () const override { return 16; }
    int windowHeight() const override { return 16; }

    void SetUp() override
    {
        WindowTest::SetUp();
        root = makeNodeFor(Group::create());
        addRefCP(root);
        camera = PerspectiveCamera::create();
        addRefCP(camera);
        editCP(camera, Camera::BeaconFieldMask, [&] { camera->setBeacon(root); });
        material = ChunkMaterial::create();
        addRefCP(material);
    }

    void TearDown() override
    {
        subRefCP(material);
        subRefCP(camera);
        subRefCP(root);
        WindowTest::TearDown();
    }

    NodePtr              root;
    PerspectiveCameraPtr camera;
    ChunkMaterialPtr     material;
};

struct MisuseCase { const char *operation; std::function<void(RenderTarget &)> call; };

TEST_F(RenderTargetTest, CallsBeforeInitializeWarnAndChangeNothing)
{
    ChunkMaterialPtr mat = material;
    NodePtr          r   = root;
    CameraPtr        cam = camera;
    RenderAction    *act = action;
    const MisuseCase cases[] = {
        { "resize",               [](RenderTarget &t) { t.resize(0, 0, 7, 7); } },
        { "setBgClear",           [](RenderTarget &t) { t.setBgClear(Color4f(1, 0, 0, 1), 1.f, true, true); } },
        { "setClearDepth",        [](RenderTarget &t) { t.setClearDepth(false); } },
        { "addTargetTexture",     [](RenderTarget &t) {
              EXPECT_EQ(t.addTargetTexture(GL_RGBA8, GL_RGBA, GL_NEAREST, Image::OSG_RGBA_PF,
                                           Image::OSG_UINT8_IMAGEDATA, 1.f, 1), NullFC); } },
        { "getTargetTexture",     [](RenderTarget &t) { EXPECT_EQ(t.getTargetTexture(0), NullFC); } },
        { "renderScene",          [=](RenderTarget &t) { t.renderScene(r, cam, act, NullFC); } },
        { "renderFullscreenPass", [=](RenderTarget &t) { t.renderFullscreenPass(mat, act); } },
    };
    for(const MisuseCase &c : cases)
    {
        SCOPED_TRACE(c.operation);
        RenderTarget target;
        LogCapture   log;
        c.call(target);
        EXPECT_TRUE(log.contains(std::string("RenderTarget::") + c.operation))
            << log.text();
        EXPECT_FALSE(target.isInitialized());
        EXPECT_EQ(target.getFBOViewport(), NullFC);
    }
}

TEST_F(RenderTargetTest, BadArgumentsWarnAndReturn)
{
    RenderTarget target;
    target.initialize(window, 0, 0, 7, 7);
    TextureChunkPtr texture = target.addTargetTexture(GL_RGBA8, GL_RGBA, GL_NEAREST,
                                                      Image::OSG_RGBA_PF,
                                                      Image::OSG_UINT8_IMAGEDATA, 1.f, 1);
    ASSERT_NE(texture, NullFC);
    EXPECT_EQ(target.getTargetTexture(0), texture);

    LogCapture log;
    EXPECT_EQ(target.getTargetTexture(1),   NullFC);
    EXPECT_EQ(target.getTargetTexture(255), NullFC);
    EXPECT_EQ(log.count("RenderTarget::getTargetTexture"), 2u) << log.text();

    log.clear();
    target.renderScene(root, camera, NULL, NullFC);
    target.renderScene(NullFC, camera, action, NullFC);
    target.renderScene(root, NullFC, action, NullFC);
    EXPECT_EQ(log.count("RenderTarget::renderScene"), 3u) << log.text();

    log.clear();
    target.renderFullscreenPass(NullFC, action);
    target.renderFullscreenPass(material, NULL);
    EXPECT_EQ(log.count("RenderTarget::renderFullscreenPass"), 2u) << log.text();

    log.clear();
    target.addTargetTexture(TextureChunkPtr(NullFC));
    EXPECT_EQ(log.count("RenderTarget::addTargetTexture"), 1u) << log.text();
    EXPECT_EQ(target.getFBOViewport()->getTextures().size(), 1u);

    log.clear();
    RenderTarget other;
    other.initialize(NullFC, 0, 0, 7, 7);
    other.initialize(window, 0, 0, -1, 7);
    EXPECT_EQ(log.count("RenderTarget::initialize"), 2u) << log.text();
    EXPECT_FALSE(other.isInitialized());
}

} // namespace
