#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <Lumora/IDeferredPostProcessor.h>

#include "support/PixelProbe.h"
#include "support/TextureImage.h"

#include <cmath>
#include <limits>

using namespace osg;
using namespace testsupport;

namespace
{

// A lit plane, bright enough in its middle for the tone mapping to matter.
class PostProcessChainTest : public DeferredSceneTest
{
  protected:
    void SetUp() override
    {
        DeferredSceneTest::SetUp();
        addPlane(4.0f, 0.0f, material(Color3f(0.8f, 0.6f, 0.4f)));
        light = makeLight(PointLightParams{Pnt3f(0.3f, 0.2f, 1.0f), Color3f(2, 2, 2),
                                           Color3f(0, 0, 0), Vec3f(0.5f, 0.0f, 0.5f), 1.0f});
        viewport->addLight(light);
    }

    void TearDown() override
    {
        subRefCP(light);
        DeferredSceneTest::TearDown();
    }

    bool initialized(DeferredRenderingViewport::PostProcessSlot slot) const
    {
        return viewport->getPostProcessor(slot)->initialized;
    }

    PointLightPtr light;
};

TEST_F(PostProcessChainTest, EveryGetterHasItsDefaultOnANewViewport)
{
    EXPECT_FLOAT_EQ(viewport->getHDRExposure(),            1.64f);
    EXPECT_FLOAT_EQ(viewport->getHDRBrightPassThreshold(), 1.0f);
    EXPECT_FLOAT_EQ(viewport->getDoFFocalDepth(),          10.0f);
    EXPECT_FLOAT_EQ(viewport->getDoFBlurCutoff(),          0.7f);
    EXPECT_FLOAT_EQ(viewport->getCMBBlurScale(),           0.03f);
    EXPECT_FLOAT_EQ(viewport->getSSAOScale(),              0.001f);
    EXPECT_FLOAT_EQ(viewport->getSSAOAttenuation(),        0.0025f);
    EXPECT_FLOAT_EQ(viewport->getGlobalShadowIntensity(),  1.0f);
    for(UInt32 slot = 0; slot < DeferredRenderingViewport::NumPostProcessors; ++slot)
    {
        EXPECT_FALSE(viewport->isPostProcessOn(slot)) << slot;
        ASSERT_NE(viewport->getPostProcessor(slot), nullptr) << slot;
        EXPECT_FALSE(viewport->getPostProcessor(slot)->initialized) << slot;
    }
}

TEST_F(PostProcessChainTest, SettingsReachTheirEffectsWhetherOnOrOff)
{
    struct Setting { void (DeferredRenderingViewport::*set)(Real32);
                     Real32 (DeferredRenderingViewport::*get)(void) const; Real32 value; };
    const Setting settings[] =
    {
        {&DeferredRenderingViewport::setHDRExposure,            &DeferredRenderingViewport::getHDRExposure,            2.0f},
        {&DeferredRenderingViewport::setHDRBrightPassThreshold, &DeferredRenderingViewport::getHDRBrightPassThreshold, 0.5f},
        {&DeferredRenderingViewport::setDoFFocalDepth,          &DeferredRenderingViewport::getDoFFocalDepth,          4.0f},
        {&DeferredRenderingViewport::setDoFBlurCutoff,          &DeferredRenderingViewport::getDoFBlurCutoff,          0.25f},
        {&DeferredRenderingViewport::setCMBBlurScale,           &DeferredRenderingViewport::getCMBBlurScale,           0.0f},
        {&DeferredRenderingViewport::setSSAOScale,              &DeferredRenderingViewport::getSSAOScale,              0.01f},
        {&DeferredRenderingViewport::setSSAOAttenuation,        &DeferredRenderingViewport::getSSAOAttenuation,        0.5f},
    };
    // A NaN or infinity would reach every later frame: refused, with a
    // warning, and the value set before stays.
    const Real32 refused[] = {std::numeric_limits<Real32>::quiet_NaN(),
                              std::numeric_limits<Real32>::infinity(),
                              -std::numeric_limits<Real32>::infinity()};
    for(const Setting &s : settings)
    {
        (viewport.getCPtr()->*s.set)(s.value);
        EXPECT_FLOAT_EQ((viewport.getCPtr()->*s.get)(), s.value);
        for(Real32 bad : refused)
        {
            const std::size_t warnings = log().count("is not a finite value");
            (viewport.getCPtr()->*s.set)(bad);
            EXPECT_FLOAT_EQ((viewport.getCPtr()->*s.get)(), s.value);
            EXPECT_EQ(log().count("is not a finite value"), warnings + 1) << bad;
        }
    }
}

// HDR, then depth of field focused on the plane: the shown image is the
// depth of field's output, which keeps the in-focus plane as HDR left it.
TEST_F(PostProcessChainTest, HDRFeedsDepthOfFieldInChainOrder)
{
    viewport->setHDRPostProcessOn(true);
    viewport->setDoFPostProcessOn(true);
    viewport->setDoFFocalDepth(5.0f);
    renderFrame();

    EXPECT_FALSE(initialized(DeferredRenderingViewport::AAPostProcess));
    EXPECT_FALSE(initialized(DeferredRenderingViewport::SSAOPostProcess));
    EXPECT_TRUE (initialized(DeferredRenderingViewport::HDRPostProcess));
    EXPECT_TRUE (initialized(DeferredRenderingViewport::DoFPostProcess));
    EXPECT_FALSE(initialized(DeferredRenderingViewport::CMBPostProcess));

    LitImage     lit(viewport);
    TextureImage hdr(viewport->getPostProcessor(DeferredRenderingViewport::HDRPostProcess)
                         ->getRenderTarget().getTargetTexture(0));
    TextureImage dof(viewport->getPostProcessor(DeferredRenderingViewport::DoFPostProcess)
                         ->getRenderTarget().getTargetTexture(0));
    int differentFromLit = 0;
    for(int k = 20; k < 44; k += 4)
    {
        // Tone mapped: within [0, 1] and not the lit value.
        EXPECT_LE(hdr.at(k, k, 0), 1.0f);
        differentFromLit += std::fabs(hdr.at(k, k, 0) - lit.at(k, k, 0)) > 0.02f ? 1 : 0;
        EXPECT_NEAR(dof.at(k, k, 0), hdr.at(k, k, 0), 0.02f) << k;
        testsupport::RGBA8 shown = testsupport::readPixelRGBA8(k, k);
        EXPECT_NEAR(shown.r / 255.0f, dof.at(k, k, 0), 1.5f / 255.0f) << k;
    }
    EXPECT_GT(differentFromLit, 3);
}

TEST_F(PostProcessChainTest, ResizeReachesInitialisedEffectsThatAreOff)
{
    viewport->setAAPostProcessOn(true);
    renderFrame();
    ASSERT_TRUE(initialized(DeferredRenderingViewport::AAPostProcess));
    viewport->setAAPostProcessOn(false);

    window->resize(48, 40);
    renderFrame();
    IDeferredPostProcessor *aa =
        viewport->getPostProcessor(DeferredRenderingViewport::AAPostProcess);
    EXPECT_EQ(aa->getRenderTarget().getWidth(),  48);
    EXPECT_EQ(aa->getRenderTarget().getHeight(), 40);
    EXPECT_FALSE(initialized(DeferredRenderingViewport::SSAOPostProcess));

    // Switched on again it renders at the new size, not initialised anew.
    TextureChunkPtr before = aa->getRenderTarget().getTargetTexture(0);
    viewport->setAAPostProcessOn(true);
    renderFrame();
    EXPECT_EQ(aa->getRenderTarget().getTargetTexture(0), before);
    EXPECT_EQ(TextureImage(before).width(), 48);
}

TEST_F(PostProcessChainTest, SwitchingOffAndOnKeepsTheSettings)
{
    viewport->setHDRPostProcessOn(true);
    viewport->setHDRExposure(0.5f);
    renderFrame();
    TextureImage dim(viewport->getPostProcessor(DeferredRenderingViewport::HDRPostProcess)
                         ->getRenderTarget().getTargetTexture(0));
    const Real32 dimCentre = dim.at(32, 32, 0);

    viewport->setHDRPostProcessOn(false);
    renderFrame();
    viewport->setHDRPostProcessOn(true);
    renderFrame();
    EXPECT_FLOAT_EQ(viewport->getHDRExposure(), 0.5f);
    TextureImage again(viewport->getPostProcessor(DeferredRenderingViewport::HDRPostProcess)
                           ->getRenderTarget().getTargetTexture(0));
    EXPECT_NEAR(again.at(32, 32, 0), dimCentre, 1e-3f);

    // And a new exposure shows in the next frame.
    viewport->setHDRExposure(3.0f);
    renderFrame();
    TextureImage bright(viewport->getPostProcessor(DeferredRenderingViewport::HDRPostProcess)
                            ->getRenderTarget().getTargetTexture(0));
    EXPECT_GT(bright.at(32, 32, 0), dimCentre + 0.05f);
}

} // namespace
