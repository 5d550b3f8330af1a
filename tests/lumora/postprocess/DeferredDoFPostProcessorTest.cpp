#include <Lumora/DeferredDoFPostProcessor.h>

#include "PostProcessorTest.h"
#include "support/TextureImage.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace osg;
using posttest::PostProcessorTest;
using posttest::Surface;
using testsupport::TextureImage;

namespace
{

const int    Size    = PostProcessorTest::Size;
const int    LowSize = Size / 4;
const double Near    = PostProcessorTest::Near;
const double Far     = PostProcessorTest::Far;

const TextureImage::Edge EdgeTexels  = TextureImage::EdgeTexels;
const TextureImage::Edge BlackBorder = TextureImage::BlackBorder;

double linearDepth(double z) { return Near / (Far - z * (Far - Near)) * Far; }

// The blurriness map's value for a linear depth, before 8-bit storage.
double blurriness(double depth, double focal, double cutoff)
{
    double f;
    if(depth < focal)
        f = (depth - focal) / (focal - Near);
    else
        f = std::min(std::max((depth - focal) / (Far - focal), 0.0), cutoff);
    return f * 0.5 + 0.5;
}

// The scene reduced by averaging 4 x 4 blocks, then blurred with the 7-tap
// Gaussian of standard deviation 2 horizontally and vertically, each tap on
// a texel centre of a GL_CLAMP target.
TextureImage blurredQuarter(const TextureImage &scene)
{
    TextureImage reduced(LowSize, LowSize);
    for(int y = 0; y < LowSize; ++y)
        for(int x = 0; x < LowSize; ++x)
            for(int dy = 0; dy < 4; ++dy)
                for(int dx = 0; dx < 4; ++dx)
                    for(int c = 0; c < 4; ++c)
                        reduced.at(x, y, c) += scene.at(4 * x + dx, 4 * y + dy, c) / 16.0f;

    std::vector<double> weights;
    double sum = 0.0;
    for(int k = -3; k <= 3; ++k)
    {
        weights.push_back(std::exp(-k * k / 8.0));
        sum += weights.back();
    }
    auto pass = [&](const TextureImage &in, int dx, int dy) {
        TextureImage out(LowSize, LowSize);
        for(int y = 0; y < LowSize; ++y)
            for(int x = 0; x < LowSize; ++x)
                for(int k = -3; k <= 3; ++k)
                    for(int c = 0; c < 4; ++c)
                        out.at(x, y, c) += float(
                            in.bilinear((x + 0.5f + k * dx) / LowSize,
                                        (y + 0.5f + k * dy) / LowSize, c, BlackBorder) *
                            weights[k + 3] / sum);
        return out;
    };
    return pass(pass(reduced, 1, 0), 0, 1);
}

const double Poisson[12][2] =
{
    {-0.326212, -0.40581 }, {-0.840144, -0.07358 }, {-0.695914,  0.457137},
    {-0.203345,  0.620716}, { 0.96234,  -0.194983}, { 0.473434, -0.480026},
    { 0.519456,  0.767022}, { 0.185461, -0.893124}, { 0.507431,  0.064425},
    { 0.89642,   0.412458}, {-0.32194,  -0.932615}, {-0.791559, -0.59771 },
};

// The gathered colour at pixel (x, y) from the gather equations, given the
// scene, the blurriness map and the blurred quarter-size image. Marks the
// pixel uncertain where a tap's blurriness is within rounding of the
// centre's, so that the GPU may weigh it either way.
Vec3f gather(const TextureImage &scene, const TextureImage &map, const TextureImage &blurred,
             int x, int y, bool &uncertain)
{
    const float  tx     = (x + 0.5f) / Size;
    const float  ty     = (y + 0.5f) / Size;
    const double centre = map.at(x, y, 0);
    const double radius = std::abs(centre * 10.0 - 5.0);
    const double low    = radius * 0.4;

    Vec3f  sum(0, 0, 0);
    double weights = 0.0;
    for(const double *p : Poisson)
    {
        const float  fu = float(tx + p[0] * radius / Size), fv = float(ty + p[1] * radius / Size);
        const float  lu = float(tx + p[0] * low / LowSize), lv = float(ty + p[1] * low / LowSize);
        const double fullAlpha = map.bilinear(fu, fv, 0, BlackBorder);
        const double downAlpha = map.bilinear(lu, lv, 0, BlackBorder);
        const double blend     = std::abs(fullAlpha * 2.0 - 1.0);
        auto mix = [&](double a, double b) { return a + blend * (b - a); };

        const double alpha  = mix(fullAlpha, downAlpha);
        const double weight = alpha >= centre ? 1.0 : std::abs(alpha * 2.0 - 1.0);
        if(alpha != centre && std::abs(alpha - centre) < 1e-3)
            uncertain = true;
        for(int c = 0; c < 3; ++c)
            sum[c] += Real32(mix(scene.bilinear(fu, fv, c, EdgeTexels),
                                 blurred.bilinear(lu, lv, c, BlackBorder)) * weight);
        weights += weight;
    }
    return sum * Real32(1.0 / weights);
}

Vec3f patternColour(int x, int y)
{
    return Vec3f(((x / 2 + y / 2) % 2) ? 0.9f : 0.1f, ((x / 8) % 2) ? 0.8f : 0.2f,
                 Real32(y) / Size);
}

class DeferredDoFPostProcessorTest : public PostProcessorTest
{
  protected:
    // With resizeFrom, the effect is made for that size first and resized.
    TextureChunkPtr render(DeferredDoFPostProcessor &dof, RenderTarget &gbuffer,
                           TextureChunkPtr scene, int left = 0, int bottom = 0,
                           int resizeFrom = 0)
    {
        const int initialSize = resizeFrom > 0 ? resizeFrom : Size;
        dof.initialize(window, left, bottom, left + initialSize - 1, bottom + initialSize - 1,
                       gbuffer, 2);
        if(resizeFrom > 0)
            dof.resize(left, bottom, left + Size - 1, bottom + Size - 1);
        dof.update(Matrix(), Matrix(), Vec2f(Real32(Near), Real32(Far)));
        return dof.perform(scene);
    }
};

TEST_F(DeferredDoFPostProcessorTest, BlurrinessFollowsTheDistanceFromTheFocalPlane)
{
    const Real32 depths[] = {1.0f, 1.5f, 3.0f, 6.0f, 9.5f, 10.0f, 12.0f, 20.0f, 40.0f, 60.0f,
                             80.0f, 99.0f};
    const int    count    = int(sizeof(depths) / sizeof(depths[0]));
    struct Case { Real32 focal, cutoff; };
    const Case cases[] = {{10.0f, 0.7f}, {10.0f, 0.3f}, {10.0f, 0.0f}, {25.0f, 1.0f}};
    for(const Case &c : cases)
    {
        SCOPED_TRACE(testing::Message() << "focal " << c.focal << ", cut-off " << c.cutoff);
        auto depthAt = [&](int x) { return depths[x * count / Size]; };
        RenderTarget &gbuffer = makeGBuffer([&](int x, int) {
            return Surface{true, Vec3f(0, 0, 1), depthAt(x)};
        });
        TextureChunkPtr scene = makeScene(patternColour);

        DeferredDoFPostProcessor dof;
        dof.setFocalDepth(c.focal);
        dof.setBlurCutoff(c.cutoff);
        render(dof, gbuffer, scene);

        TextureImage map(dof.getBlurinessTarget().getTargetTexture(0));
        ASSERT_EQ(map.width(), Size);
        for(int x = 0; x < Size; ++x)
        {
            // The depth as the GPU sees it, after storage as a float.
            const double depth    = linearDepth(storedDepth(depthAt(x)));
            const double expected = blurriness(depth, c.focal, c.cutoff);
            // Stored in 8 bits.
            EXPECT_NEAR(map.at(x, 20, 0), expected, 0.5 / 255.0 + 1e-4)
                << "depth " << depthAt(x);
        }
        // Full blur at the near plane.
        EXPECT_NEAR(map.at(0, 20, 0), 0.0, 1e-6);
    }
}

TEST_F(DeferredDoFPostProcessorTest, QuarterSizeCopyIsTheReducedSceneBlurred)
{
    RenderTarget   &gbuffer = makeGBuffer([](int, int) {
        return Surface{true, Vec3f(0, 0, 1), 10.0f};
    });
    TextureChunkPtr scene   = makeScene(patternColour);

    DeferredDoFPostProcessor dof;
    render(dof, gbuffer, scene, 5, 9);

    // The float input reads back exactly as made.
    const TextureImage expected = blurredQuarter(TextureImage(scene));
    TextureImage blurred(dof.getBlurredTarget().getTargetTexture(0));
    ASSERT_EQ(blurred.width(),  LowSize);
    ASSERT_EQ(blurred.height(), LowSize);
    for(int y = 0; y < LowSize; ++y)
        for(int x = 0; x < LowSize; ++x)
            for(int c = 0; c < 3; ++c)
                // Half floats in three targets on the way.
                ASSERT_NEAR(blurred.at(x, y, c), expected.at(x, y, c), 2e-3)
                    << x << "," << y << " ch " << c;
}

TEST_F(DeferredDoFPostProcessorTest, GatherBlurWithTheDistanceFromFocus)
{
    // Made for resizeFrom first, if not 0; each half keeps the sharp scene or
    // differs from it.
    struct Case { const char *name; Real32 leftDepth, rightDepth, cutoff; int resizeFrom;
                  bool leftSharp, rightSharp; };
    const Case cases[] =
    {
        {"in focus keeps the scene",          10.0f, 10.0f, 0.7f, 0,        true,  true },
        {"near plane is blurred fully",       1.0f,  1.0f,  0.7f, 0,        false, false},
        {"far side stops at the cut-off",     90.0f, 90.0f, 0.7f, 0,        false, false},
        {"no cut-off keeps the far side",     90.0f, 90.0f, 0.0f, 0,        true,  true },
        {"focused object before background",  10.0f, 80.0f, 0.7f, 0,        true,  false},
        {"near object before focus",          2.0f,  10.0f, 0.7f, 0,        false, true },
        // Taps reach by the new size's pixels, not those it was made for.
        {"after a resize",                    1.0f,  10.0f, 0.7f, Size / 2, false, true },
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        auto depthAt = [&](int x) { return x < Size / 2 ? c.leftDepth : c.rightDepth; };
        RenderTarget &gbuffer = makeGBuffer([&](int x, int) {
            return Surface{true, Vec3f(0, 0, 1), depthAt(x)};
        });
        TextureChunkPtr scene = makeScene(patternColour);

        DeferredDoFPostProcessor dof;
        dof.setBlurCutoff(c.cutoff);
        TextureImage out(render(dof, gbuffer, scene, 0, 0, c.resizeFrom));
        ASSERT_EQ(out.width(), Size);

        // The intermediate images as the GPU left them; the two tests above
        // hold them to their own equations.
        const TextureImage sceneImage(scene);
        const TextureImage map(dof.getBlurinessTarget().getTargetTexture(0));
        const TextureImage blurred(dof.getBlurredTarget().getTargetTexture(0));

        int    compared   = 0;
        double largest[2] = {0.0, 0.0};  // from the sharp scene, per half
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                bool        uncertain = false;
                const Vec3f expected  = gather(sceneImage, map, blurred, x, y, uncertain);
                if(uncertain)
                    continue;
                ++compared;
                for(int ch = 0; ch < 3; ++ch)
                {
                    // Bilinear weights on llvmpipe have 8 fractional bits.
                    ASSERT_NEAR(out.at(x, y, ch), expected[ch], 0.01)
                        << x << "," << y << " ch " << ch;
                    double &side = largest[x < Size / 2 ? 0 : 1];
                    side = std::max(side, double(std::abs(out.at(x, y, ch) -
                                                          sceneImage.at(x, y, ch))));
                }
            }
        EXPECT_GT(compared, Size * Size * 9 / 10);
        // A focused pixel's blurriness, 128 / 255 in eight bits, puts its
        // taps 0.02 pixels off its centre: a few hundredths of the 0.8
        // steps of the pattern. A blurred one mixes the stripes.
        const bool sharp[2] = {c.leftSharp, c.rightSharp};
        for(int side = 0; side < 2; ++side)
        {
            if(sharp[side])
                EXPECT_LE(largest[side], 0.03) << "half " << side;
            else
                EXPECT_GE(largest[side], 0.2) << "half " << side;
        }
    }
}

} // namespace
