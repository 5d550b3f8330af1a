#include <Lumora/DeferredHDRPostProcessor.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>
#include "support/DeferredScene.h"
#include "support/FloatTexture.h"

#include <algorithm>
#include <cmath>
#include <memory>

using namespace osg;
using testsupport::TextureImage;

namespace
{

const int Size = 64;

// The exposure curve.
double toneMapped(double value, double exposure) { return 1.0 - std::exp(-exposure * value); }

// The bloom over a constant image: the bright pass at an adapted luminance
// of 0.1 (plus 0.0001) and an offset of 100, then two blurs whose two
// passes each scale by 1.25 and preserve a constant otherwise.
double bloomOfConstant(double value, double exposure, double threshold)
{
    double bright = std::max(value * exposure / 0.1001 - threshold, 0.0);
    bright /= 100.0 + bright;
    return bright * std::pow(1.25, 4);
}

class DeferredHDRPostProcessorTest : public testsupport::WindowTest
{
  protected:
    void TearDown() override
    {
        hdr.reset();
        for(TextureChunkPtr texture : inputs)
            subRefCP(texture);
        WindowTest::TearDown();
    }

    TextureChunkPtr input(const std::function<Vec4f(int, int)> &f)
    {
        inputs.push_back(testsupport::makeFloatTexture(Size, Size, f));
        return inputs.back();
    }

    TextureChunkPtr constant(Real32 value)
    {
        return input([=](int, int) { return Vec4f(value, value, value, 1.0f); });
    }

    // One frame of the chain: initialise on first use, update, perform.
    TextureImage frame(TextureChunkPtr image)
    {
        if(!hdr->initialized)
            hdr->initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 5);
        hdr->update(Matrix(), Matrix(), Vec2f(1.0f, 10.0f));
        return TextureImage(hdr->perform(image));
    }

    RenderTarget                              gbuffer;
    std::unique_ptr<DeferredHDRPostProcessor> hdr{new DeferredHDRPostProcessor()};
    std::vector<TextureChunkPtr>              inputs;
};

// Half-float targets hold about three decimal digits; the bloom's blur
// reaches the border of a 64-pixel image, where the targets clamp to black,
// which costs the centre a few percent of its bloom.
double tolerance(double bloom) { return 2e-3 + 0.03 * bloom; }

// The exposure curve plus the bloom of what exceeds the threshold: with
// the defaults a reduced-image value blooms only above 1.0 * 0.1001 / 1.64,
// about 0.061; with the threshold out of reach the curve stands alone.
TEST_F(DeferredHDRPostProcessorTest, ExposureCurveAndBloomOfWhatExceedsTheThreshold)
{
    struct Case { Real32 value; Real32 exposure; Real32 threshold; };
    const Real32 noBloom = 1e9f;
    const Case cases[] =
    {
        {0.0f, 1.64f, noBloom}, {0.05f, 1.64f, noBloom}, {0.5f, 1.64f, noBloom},
        {1.0f, 1.64f, noBloom}, {4.0f, 1.64f, noBloom},  {1000.0f, 1.64f, noBloom},
        {0.5f, 0.5f, noBloom},  {2.0f, 3.0f, noBloom},
        {0.05f, 1.64f, 1.0f}, {0.06f, 1.64f, 1.0f}, {0.07f, 1.64f, 1.0f},
        {0.1f, 1.64f, 1.0f},  {0.2f, 1.64f, 1.0f},  {0.3f, 0.5f, 1.0f},
        {0.3f, 1.64f, 5.0f},  {0.4f, 1.64f, 5.0f},
    };
    for(const Case &c : cases)
    {
        hdr->exposure            = c.exposure;
        hdr->brightPassThreshold = c.threshold;
        const TextureImage out   = frame(constant(c.value));
        const double bloom    = bloomOfConstant(c.value, c.exposure, c.threshold);
        const double expected = std::min(toneMapped(c.value, c.exposure) + bloom, 1.0);
        for(int ch = 0; ch < 3; ++ch)
            EXPECT_NEAR(out.at(Size / 2, Size / 2, ch), expected, tolerance(bloom))
                << "value " << c.value << ", exposure " << c.exposure
                << ", threshold " << c.threshold << ", channel " << ch;
    }
}

TEST_F(DeferredHDRPostProcessorTest, OutputStaysInTheUnitRangeWithOpaqueAlpha)
{
    // From black through dim to beyond what half floats hold, and negative.
    TextureChunkPtr image = input([](int x, int y) {
        const Real32 v = std::pow(10.0f, (x - 32) / 6.0f) * (y % 2 == 0 ? 1.0f : -1.0f);
        return Vec4f(v, 0.5f * v, y < 32 ? 0.0f : 60000.0f, 1.0f);
    });
    frame(image);

    // The output target stores no alpha; draw the final pass, with the
    // inputs the frame left, into one that does.
    RenderTarget withAlpha;
    withAlpha.initialize(window, 0, 0, Size - 1, Size - 1);
    withAlpha.addTargetTexture(GL_RGBA32F_ARB, GL_RGBA, GL_LINEAR, Image::OSG_RGBA_PF,
                               Image::OSG_FLOAT32_IMAGEDATA, 1.0f, 1);
    ChunkMaterialPtr material = hdr->getFinalPassMaterial();
    testsupport::editCP(material, ChunkMaterial::ChunksFieldMask,
                        [&] { material->addChunk(image, State::AutoSlotReplace); });
    withAlpha.renderFullscreenPass(material, hdr->getRenderAction());
    testsupport::editCP(material, ChunkMaterial::ChunksFieldMask,
                        [&] { material->subChunk(image, State::AutoSlotReplace); });

    const TextureImage full(withAlpha.getTargetTexture(0));
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            ASSERT_EQ(full.at(x, y, 3), 1.0f) << x << "," << y;
            for(int ch = 0; ch < 3; ++ch)
            {
                ASSERT_GE(full.at(x, y, ch), 0.0f) << x << "," << y << " ch " << ch;
                ASSERT_LE(full.at(x, y, ch), 1.0f) << x << "," << y << " ch " << ch;
            }
        }
}

} // namespace
