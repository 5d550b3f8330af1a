#include <Lumora/PostProcessingTools.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

#include "support/DeferredScene.h"
#include "support/FloatTexture.h"

#include <cmath>
#include <functional>
#include <memory>
#include <vector>

using namespace osg;
using testsupport::TextureImage;

namespace
{

// The normal density, normalised over the taps, computed here in double.
std::vector<double> gaussianWeights(int taps, double mean, double sigma)
{
    std::vector<double> weights;
    double sum = 0.0;
    for(int i = 0; i < taps; ++i)
    {
        double x = i - (taps - 1) / 2.0;
        weights.push_back(std::exp(-(x - mean) * (x - mean) / (2.0 * sigma * sigma)));
        sum += weights.back();
    }
    for(double &w : weights)
        w /= sum;
    return weights;
}

TEST(PostProcessingToolsKernel, TapsSitAroundTheCentreWithNormalisedGaussianWeights)
{
    struct Case { int taps; Real32 mean; Real32 sigma; };
    const Case cases[] =
    {
        {1, 0.0f, 2.0f}, {1, 0.0f, 0.5f}, {3, 0.0f, 2.0f}, {4, 0.0f, 2.0f},
        {5, 0.0f, 2.0f}, {7, 0.0f, 2.0f}, {13, 0.0f, 2.0f}, {5, 1.0f, 2.0f},
        {7, -0.5f, 1.0f},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.taps << " taps, mean " << c.mean
                                        << ", sigma " << c.sigma);
        MFVec3f kernel = PostProcessingTools::getGaussianBlurKernel(UInt8(c.taps), c.mean,
                                                                    c.sigma);
        std::vector<double> expected = gaussianWeights(c.taps, c.mean, c.sigma);
        ASSERT_EQ(kernel.size(), std::size_t(c.taps));

        double sum = 0.0;
        for(int i = 0; i < c.taps; ++i)
        {
            const Real32 offset = i - (c.taps - 1) * 0.5f;
            EXPECT_FLOAT_EQ(kernel[i][0], offset) << i;
            EXPECT_FLOAT_EQ(kernel[i][1], offset) << i;
            EXPECT_NEAR(kernel[i][2], expected[i], 1e-6) << i;
            sum += kernel[i][2];
        }
        EXPECT_NEAR(sum, 1.0, 1e-6);
    }
}

TEST(PostProcessingToolsKernel, WeightIsTheNormalDensity)
{
    const Real32 xs[] = {-3.0f, 0.0f, 0.5f, 2.0f};
    for(Real32 x : xs)
    {
        const double expected = std::exp(-(x - 0.5) * (x - 0.5) / (2.0 * 1.5 * 1.5)) /
                                std::sqrt(2.0 * 3.14159265358979 * 1.5 * 1.5);
        EXPECT_NEAR(PostProcessingTools::computeGaussianWeight(x, 0.5f, 1.5f), expected, 1e-6)
            << x;
    }
}

// Float targets and sources, so that the passes' arithmetic is seen
// unrounded.
class PostProcessingToolsTest : public testsupport::WindowTest
{
  protected:
    static const int SourceSize = 64;

    void SetUp() override
    {
        WindowTest::SetUp();
        tools = PostProcessingTools::getInstance();
    }

    void TearDown() override
    {
        targets.clear();
        for(TextureChunkPtr texture : sources)
            subRefCP(texture);
        WindowTest::TearDown();
    }

    RenderTarget *target(int width, int height)
    {
        targets.emplace_back(new RenderTarget());
        RenderTarget *t = targets.back().get();
        t->initialize(window, 0, 0, width - 1, height - 1);
        t->addTargetTexture(GL_RGBA32F_ARB, GL_RGBA, GL_LINEAR, Image::OSG_RGBA_PF,
                            Image::OSG_FLOAT32_IMAGEDATA, 1.0f, 1);
        return t;
    }

    // A SourceSize square RGBA float texture with texel (x, y) = f(x, y).
    TextureChunkPtr source(const std::function<Vec4f(int, int)> &f)
    {
        sources.push_back(testsupport::makeFloatTexture(SourceSize, SourceSize, f));
        return sources.back();
    }

    void expectMaterialsEmpty()
    {
        EXPECT_EQ(tools->getDownscaleMaterial()->getChunks().size(), 0u);
        EXPECT_EQ(tools->getBlurMaterial()->getChunks().size(), 0u);
    }

    PostProcessingTools                       *tools  = nullptr;
    std::vector<std::unique_ptr<RenderTarget>> targets;
    std::vector<TextureChunkPtr>               sources;
};

// On a linear ramp every symmetric pattern around the output pixel's
// centre averages to the ramp's value there; a lopsided pattern does not.
TEST_F(PostProcessingToolsTest, DownscaledRampKeepsTheValueAtEachOutputCentre)
{
    TextureChunkPtr ramp = source([](int x, int y) {
        return Vec4f(Real32(x), Real32(y), Real32(x + 2 * y), 1.0f);
    });

    for(int factor : {2, 4})
    {
        const int     size   = SourceSize / factor;
        RenderTarget *result = target(size, size);
        tools->downscaleTexture(ramp, result,
                                factor == 2 ? PostProcessingTools::DOWNSCALE_2X2
                                            : PostProcessingTools::DOWNSCALE_4X4,
                                action);

        TextureImage image(result->getTargetTexture(0));
        // Away from the clamped border, which bends the ramp.
        for(int y = 2; y < size - 2; ++y)
            for(int x = 2; x < size - 2; ++x)
            {
                // Output centre in source texel coordinates; texel k's value
                // sits at k + 0.5.
                const Real32 cx = (x + 0.5f) * factor - 0.5f;
                const Real32 cy = (y + 0.5f) * factor - 0.5f;
                ASSERT_NEAR(image.at(x, y, 0), cx, 1e-3f) << factor << ": " << x << "," << y;
                ASSERT_NEAR(image.at(x, y, 1), cy, 1e-3f) << factor << ": " << x << "," << y;
                ASSERT_NEAR(image.at(x, y, 2), cx + 2 * cy, 2e-3f)
                    << factor << ": " << x << "," << y;
            }
    }
}

// A one-texel-wide bright column spreads, in the horizontal pass, into the
// kernel's weights; the vertical pass leaves a column that is constant
// along y as it is.
TEST_F(PostProcessingToolsTest, BlurSpreadsAColumnIntoTheKernelHorizontallyOnly)
{
    const int column = 30;
    TextureChunkPtr line = source([&](int x, int) {
        return x == column ? Vec4f(1, 1, 1, 1) : Vec4f(0, 0, 0, 0);
    });

    struct Case { PostProcessingTools::BlurType type; int taps; };
    for(Case c : {Case{PostProcessingTools::GAUSSIAN_3, 3}, Case{PostProcessingTools::GAUSSIAN_5, 5},
                  Case{PostProcessingTools::GAUSSIAN_7, 7}, Case{PostProcessingTools::GAUSSIAN_13, 13}})
    {
        const Real32  scale        = 1.1f;
        RenderTarget *intermediate = target(SourceSize, SourceSize);
        RenderTarget *result       = target(SourceSize, SourceSize);
        tools->blurTexture(line, intermediate, result, c.type, action, scale);

        std::vector<double> weights = gaussianWeights(c.taps, 0.0, 2.0);
        TextureImage horizontal(intermediate->getTargetTexture(0));
        TextureImage both      (result->getTargetTexture(0));
        for(int x = column - 10; x <= column + 10; ++x)
        {
            const int    k        = x - column + c.taps / 2;
            const double weight   = (k >= 0 && k < c.taps) ? weights[c.taps - 1 - k] : 0.0;
            for(int y : {8, 32, 55})
            {
                EXPECT_NEAR(horizontal.at(x, y, 0), scale * weight, 1e-5)
                    << c.taps << " taps at " << x << "," << y;
                EXPECT_NEAR(both.at(x, y, 0), scale * scale * weight, 1e-5)
                    << c.taps << " taps at " << x << "," << y;
            }
        }
        expectMaterialsEmpty();
    }
}

} // namespace
