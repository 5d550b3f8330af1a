#include <Lumora/DeferredSSAOPostProcessor.h>

#include <OpenSG/OSGImage.h>

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

const int    Size  = PostProcessorTest::Size;
const double Near  = PostProcessorTest::Near;
const double Far   = PostProcessorTest::Far;

struct V3 { double x, y, z; };

V3     operator *(const V3 &a, double s)     { return V3{a.x * s, a.y * s, a.z * s}; }
V3     operator -(const V3 &a, const V3 &b)  { return V3{a.x - b.x, a.y - b.y, a.z - b.z}; }
double dot      (const V3 &a, const V3 &b)   { return a.x * b.x + a.y * b.y + a.z * b.z; }
V3     normalize(const V3 &a)                { return a * (1.0 / std::sqrt(dot(a, a))); }

V3 toV3(const Vec3f &v) { return V3{v[0], v[1], v[2]}; }

// The sample kernel and 4 x 4 noise an initialised effect drew. The design
// fixes their distributions, not their values; the kernel test holds them
// to those.
struct Randomness
{
    MFVec3f         samples;
    std::vector<V3> noise;

    explicit Randomness(const DeferredSSAOPostProcessor &ssao)
    {
        ssao.getSSAOShader()->getUniformParameter("Samples", samples);
        const TextureImage texels(ssao.getNoiseTexture());
        for(int y = 0; y < texels.height(); ++y)
            for(int x = 0; x < texels.width(); ++x)
                noise.push_back(V3{texels.at(x, y, 0), texels.at(x, y, 1), texels.at(x, y, 2)});
    }
};

// The occlusion factor the three passes should leave at each pixel, computed
// in double from the occlusion and bilateral-blur equations, with each
// 8-bit target's rounding. Pixels whose samples fall on a texel boundary,
// where float rounding on the GPU may pick either texel, are marked
// uncertain together with every pixel their value is blurred into.
struct ExpectedOcclusion
{
    std::vector<double> factor;
    std::vector<bool>   uncertain;

    ExpectedOcclusion(const Randomness &random, const std::function<Surface(int, int)> &surfaceAt,
                      double scale, double attenuation)
    {
        std::vector<Surface> surfaces;
        std::vector<V3>      normals;
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                surfaces.push_back(surfaceAt(x, y));
                // What a texel without geometry (all zero) decodes to.
                normals.push_back(surfaces.back().geometry ? normalize(toV3(surfaces.back().normal))
                                                           : normalize(V3{-1, -1, -1}));
            }
        auto depthAt = [&](int i) { return surfaces[i].geometry ? double(surfaces[i].depth) : Far; };
        auto clampIndex = [](int i) { return i < 0 ? 0 : (i >= Size ? Size - 1 : i); };

        std::vector<bool>   rawUncertain(Size * Size, false);
        std::vector<double> raw(Size * Size, 0.0);
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                const int i = y * Size + x;
                if(!surfaces[i].geometry)
                    continue;
                const double tx       = (x + 0.5) / Size;
                const double ty       = (y + 0.5) / Size;
                const double currentZ = depthAt(i);
                const V3     n        = normals[i];
                const V3     r        = normalize(random.noise[(y % 4) * 4 + x % 4]);
                const double range    = Far - Near;
                const double radius   = scale * range / currentZ;
                const double bias     = 0.0001 * range;

                double occlusion = 0.0;
                for(const Vec3f &sample : random.samples)
                {
                    const V3 k = toV3(sample);
                    V3 s = (k - r * (2.0 * dot(r, k))) * radius;
                    if(dot(normalize(s), n) < 0.0)
                        s = s * -1.0;
                    const double px = (tx + s.x) * Size;
                    const double py = (ty + s.y) * Size;
                    auto contribution = [&](int ix, int iy) {
                        const int j = clampIndex(iy) * Size + clampIndex(ix);
                        if(1.0 - dot(normals[j], n) < 0.001)
                            return 0.0;
                        const double gap = (currentZ - s.z) - depthAt(j) - bias;
                        // The GPU's linear depth carries about 1e-5 of error.
                        if(std::abs(gap) < 1e-4)
                            return -1.0;
                        const double d = attenuation * gap;
                        return d >= 0.0 ? 1.0 / (1.0 + d * d) : 0.0;
                    };
                    const int ix = int(std::floor(px));
                    const int iy = int(std::floor(py));
                    const double value = contribution(ix, iy);
                    // Near a texel edge the texel across it may be read instead.
                    const int nx = px - ix < 1e-3 ? ix - 1 : (ix + 1 - px < 1e-3 ? ix + 1 : ix);
                    const int ny = py - iy < 1e-3 ? iy - 1 : (iy + 1 - py < 1e-3 ? iy + 1 : iy);
                    if(value < 0.0 || contribution(nx, iy) != value || contribution(ix, ny) != value ||
                       contribution(nx, ny) != value)
                        rawUncertain[i] = true;
                    occlusion += std::max(value, 0.0);
                }
                raw[i] = std::round((1.0 - occlusion / 32.0) * 255.0) / 255.0;
            }

        std::vector<double> weights;
        double sum = 0.0;
        for(int k = -2; k <= 2; ++k)
        {
            weights.push_back(std::exp(-k * k / 8.0));
            sum += weights.back();
        }
        for(double &w : weights)
            w /= sum;

        // Taps past the image edge read the target's black border.
        auto blur = [&](const std::vector<double> &in, int dx, int dy, bool round) {
            std::vector<double> out(Size * Size, 0.0);
            for(int y = 0; y < Size; ++y)
                for(int x = 0; x < Size; ++x)
                {
                    const int i = y * Size + x;
                    if(!surfaces[i].geometry)
                        continue;
                    double value = 0.0;
                    for(int k = -2; k <= 2; ++k)
                    {
                        const int  tx     = x + k * dx;
                        const int  ty     = y + k * dy;
                        const bool inside = tx >= 0 && tx < Size && ty >= 0 && ty < Size;
                        const int  j      = clampIndex(ty) * Size + clampIndex(tx);
                        double tap = in[i];
                        if(dot(normals[i], normals[j]) > 0.92)
                            tap = inside ? in[j] : 0.0;
                        value += weights[k + 2] * tap;
                    }
                    out[i] = round ? std::round(value * 255.0) / 255.0 : value;
                }
            return out;
        };
        factor = blur(blur(raw, 1, 0, true), 0, 1, false);
        for(int i = 0; i < Size * Size; ++i)
            if(!surfaces[i].geometry)
                factor[i] = 1.0;

        uncertain.assign(Size * Size, false);
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
                for(int dy = -2; dy <= 2; ++dy)
                    for(int dx = -2; dx <= 2; ++dx)
                        if(rawUncertain[clampIndex(y + dy) * Size + clampIndex(x + dx)])
                            uncertain[y * Size + x] = true;
    }
};

// A wall facing the camera at depth 10 on the left half and a side wall
// facing it on the right half, coming nearer by slope a pixel: an inside
// corner along x = 32. The top rows hold no geometry.
Surface corner(int x, int y, Real32 slope)
{
    if(y >= 56)
        return Surface{false, Vec3f(0, 0, 1), Real32(Far)};
    if(x < 32)
        return Surface{true, Vec3f(0, 0, 1), 10.0f};
    return Surface{true, Vec3f(-1, 0, 0), 10.0f - slope * Real32(x - 31)};
}

Surface steepCorner(int x, int y) { return corner(x, y, 0.2f); }

// Values a half float stores exactly, so that untouched pixels compare equal.
Vec3f checkerColour(int x, int y)
{
    return Vec3f((x + y) % 2 ? 0.75f : 0.25f, 0.5f, (x / 8) % 2 ? 1.0f : 0.125f);
}

class DeferredSSAOPostProcessorTest : public PostProcessorTest
{
  protected:
    struct Rectangle { int left, bottom, right, top; };

    TextureChunkPtr render(DeferredSSAOPostProcessor &ssao, RenderTarget &gbuffer,
                           TextureChunkPtr scene, Rectangle initial, const Rectangle *resized)
    {
        ssao.initialize(window, initial.left, initial.bottom, initial.right, initial.top,
                        gbuffer, 2);
        if(resized != nullptr)
            ssao.resize(resized->left, resized->bottom, resized->right, resized->top);
        ssao.update(Matrix(), Matrix(), Vec2f(Real32(Near), Real32(Far)));
        return ssao.perform(scene);
    }
};

TEST_F(DeferredSSAOPostProcessorTest, OpenPlaneKeepsFactorOne)
{
    struct Case { const char *name; Vec3f normal; Real32 depthAtOrigin, depthPerX, depthPerY;
                  Real32 scale, attenuation; };
    const Case cases[] =
    {
        {"facing the camera, defaults", Vec3f(0, 0, 1),          10.0f, 0.0f,  0.0f,  0.001f, 0.0025f},
        {"facing the camera, wide",     Vec3f(0, 0, 1),          10.0f, 0.0f,  0.0f,  0.02f,  0.5f},
        {"tilted, wide",                Vec3f(0.5f, 0.3f, 0.8f), 8.0f,  0.05f, 0.03f, 0.02f,  0.5f},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        RenderTarget &gbuffer = makeGBuffer([&](int x, int y) {
            return Surface{true, c.normal, c.depthAtOrigin + c.depthPerX * x + c.depthPerY * y};
        });
        TextureChunkPtr scene = makeScene(checkerColour);

        DeferredSSAOPostProcessor ssao;
        ssao.scale       = c.scale;
        ssao.attenuation = c.attenuation;
        TextureImage out(render(ssao, gbuffer, scene, {0, 0, Size - 1, Size - 1}, nullptr));
        ASSERT_EQ(out.width(), Size);

        // Two pixels in from the edge, where the blur reads the target's
        // black border; 1e-3 covers the half-float output.
        for(int y = 2; y < Size - 2; ++y)
            for(int x = 2; x < Size - 2; ++x)
                for(int ch = 0; ch < 3; ++ch)
                    ASSERT_NEAR(out.at(x, y, ch), checkerColour(x, y)[ch], 1e-3)
                        << x << "," << y << " ch " << ch;
    }
}

TEST_F(DeferredSSAOPostProcessorTest, InsideCornerDarkensByTheKernelsPrediction)
{
    struct Case { const char *name; Real32 slope, scale, attenuation; Rectangle initial;
                  bool resize; Rectangle resized; double darkestAtMost; };
    const Case cases[] =
    {
        {"weak fall-off",                    0.2f,  0.01f,  0.0025f, {0, 0, 63, 63},  false, {}, 0.8},
        {"strong fall-off, offset viewport", 0.2f,  0.01f,  0.5f,    {7, 11, 70, 74}, false, {}, 0.8},
        {"resized from 32 x 48",             0.2f,  0.006f, 0.05f,   {0, 0, 31, 47},  true,  {3, 5, 66, 68}, 0.8},
        // Depth gaps as small as the samples' own depth offsets and the bias.
        {"shallow corner",                   0.01f, 0.01f,  0.5f,    {0, 0, 63, 63},  false, {}, 0.95},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        auto surface = [&](int x, int y) { return corner(x, y, c.slope); };
        RenderTarget   &gbuffer = makeGBuffer(surface);
        TextureChunkPtr scene   = makeScene(checkerColour);

        DeferredSSAOPostProcessor ssao;
        ssao.scale       = c.scale;
        ssao.attenuation = c.attenuation;
        TextureImage out(render(ssao, gbuffer, scene, c.initial, c.resize ? &c.resized : nullptr));
        ASSERT_EQ(out.width(), Size);
        ASSERT_EQ(out.height(), Size);

        const ExpectedOcclusion expected(Randomness(ssao), surface, c.scale, c.attenuation);
        int compared = 0;
        double darkest = 1.0;
        for(int y = 2; y < 56; ++y)
            for(int x = 2; x < Size - 2; ++x)
            {
                const int i = y * Size + x;
                if(expected.uncertain[i])
                    continue;
                ++compared;
                darkest = std::min(darkest, expected.factor[i]);
                // Two roundings to 8 bits on the way, plus the half-float
                // output: 3/255 of the colour.
                for(int ch = 0; ch < 3; ++ch)
                {
                    const double colour = checkerColour(x, y)[ch];
                    ASSERT_NEAR(out.at(x, y, ch), expected.factor[i] * colour, 3.0 / 255.0 * colour)
                        << x << "," << y << " ch " << ch << ", expected factor "
                        << expected.factor[i];
                }
            }
        // The corner is really dark and hardly any pixel went unchecked.
        EXPECT_LT(darkest, c.darkestAtMost);
        EXPECT_GT(compared, 60 * 54 * 9 / 10);
        // Pixels without geometry keep the exact scene colour.
        for(int y = 56; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
                for(int ch = 0; ch < 3; ++ch)
                    ASSERT_EQ(out.at(x, y, ch), checkerColour(x, y)[ch]) << x << "," << y;
    }
}

// 16 unit noise vectors and 32 samples spread through the unit ball, the
// same on every initialisation.
TEST_F(DeferredSSAOPostProcessorTest, KernelFillsTheUnitBallAndRepeatsOnEveryInitialisation)
{
    RenderTarget   &gbuffer = makeGBuffer(steepCorner);
    TextureChunkPtr scene   = makeScene(checkerColour);
    DeferredSSAOPostProcessor first, second;
    render(first, gbuffer, scene, {0, 0, Size - 1, Size - 1}, nullptr);
    render(second, gbuffer, scene, {0, 0, Size - 1, Size - 1}, nullptr);
    const Randomness a(first), b(second);

    ASSERT_EQ(a.noise.size(), 16u);
    for(const V3 &n : a.noise)
        EXPECT_NEAR(dot(n, n), 1.0, 1e-5);
    ASSERT_EQ(a.samples.size(), 32u);
    double shortest = 1.0, longest = 0.0;
    V3     sum{0, 0, 0};
    for(const Vec3f &v : a.samples)
    {
        shortest = std::min(shortest, double(v.length()));
        longest  = std::max(longest, double(v.length()));
        sum = V3{sum.x + v[0], sum.y + v[1], sum.z + v[2]};
    }
    EXPECT_LT(longest, 1.0);
    EXPECT_GT(longest, 0.8);
    EXPECT_LT(shortest, 0.5);
    // No direction preferred: the mean lies well inside the ball.
    EXPECT_LT(std::sqrt(dot(sum, sum)) / 32.0, 0.3);

    for(std::size_t i = 0; i < a.noise.size(); ++i)
        EXPECT_EQ(dot(a.noise[i] - b.noise[i], a.noise[i] - b.noise[i]), 0.0) << i;
    ASSERT_EQ(b.samples.size(), 32u);
    for(std::size_t i = 0; i < a.samples.size(); ++i)
        EXPECT_EQ(a.samples[i], b.samples[i]) << i;
}

} // namespace
