#include <Lumora/DeferredAAPostProcessor.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>
#include "support/DeferredScene.h"
#include "support/FloatTexture.h"

#include <cmath>
#include <functional>
#include <vector>

using namespace osg;
using testsupport::TextureImage;

namespace
{

const int Size = 64;

TextureChunkPtr floatTexture(const std::function<Vec4f(int, int)> &f)
{
    return testsupport::makeFloatTexture(Size, Size, f);
}

Vec4f encode(Vec3f n)
{
    n.normalize();
    return Vec4f(n[0] * 0.5f + 0.5f, n[1] * 0.5f + 0.5f, n[2] * 0.5f + 0.5f, 1.0f);
}

// Columns and rows cycle through three colours each, added, so that any
// averaging along x or y, and any lopsided one, shows; the alpha is not 1
// so that the output's alpha is the pass's own.
Vec4f columns(int x)
{
    const Vec4f cycle[3] = {Vec4f(0.5f, 0.25f, 0.0f, 0.125f), Vec4f(0.0f, 0.125f, 0.5f, 0.125f),
                            Vec4f(0.25f, 0.5f, 0.25f, 0.125f)};
    return cycle[x % 3];
}
Vec4f rows(int y)
{
    const Vec4f cycle[3] = {Vec4f(0.25f, 0.0f, 0.25f, 0.125f), Vec4f(0.0f, 0.5f, 0.125f, 0.125f),
                            Vec4f(0.5f, 0.125f, 0.0f, 0.125f)};
    return cycle[y % 3];
}
Vec4f stripes(int x, int y) { return columns(x) + rows(y); }

struct Case
{
    const char                    *name;
    std::function<Real32(int, int)> depth;
    std::function<Vec3f(int, int)>  normal;
    std::vector<int>               edgeColumns;  // weight 0.75 there, 0 elsewhere
};

class DeferredAAPostProcessorTest : public testsupport::WindowTest,
                                    public testing::WithParamInterface<Case> {};

TEST_P(DeferredAAPostProcessorTest, BlendsOnlyAcrossCreasesAndSilhouettes)
{
    const Case &c = GetParam();

    // A G-buffer of two textures: normals first, depth last.
    RenderTarget gbuffer;
    gbuffer.initialize(window, 0, 0, Size - 1, Size - 1);
    TextureChunkPtr normals = floatTexture([&](int x, int y) { return encode(c.normal(x, y)); });
    TextureChunkPtr depths  = floatTexture([&](int x, int y) { return Vec4f(c.depth(x, y), 0, 0, 1); });
    gbuffer.addTargetTexture(normals);
    gbuffer.addTargetTexture(depths);
    subRefCP(normals);
    subRefCP(depths);
    TextureChunkPtr scene = floatTexture(stripes);

    {
        DeferredAAPostProcessor aa;
        aa.initialize(window, 0, 0, Size - 1, Size - 1, gbuffer, 2);
        ASSERT_TRUE(aa.initialized);
        aa.update(Matrix(), Matrix(), Vec2f(1, 10));
        TextureImage result(aa.perform(scene));
        ASSERT_EQ(result.width(), Size);

        for(int y = 2; y < Size - 2; ++y)
            for(int x = 1; x < Size - 1; ++x)
            {
                const bool edge = std::find(c.edgeColumns.begin(), c.edgeColumns.end(), x) !=
                                  c.edgeColumns.end();
                // Three lines cross a vertical border: weight 0.75, so the
                // samples sit 0.375 pixels off diagonally, which linear
                // filtering turns into 5/8 of the pixel and 3/16 of each
                // neighbour along each axis.
                for(int ch = 0; ch < 3; ++ch)
                {
                    // The pattern is a sum of a column and a row part, and
                    // each filters on its own axis.
                    const Real32 alongX = 0.625f * columns(x)[ch] +
                                          0.1875f * (columns(x - 1)[ch] + columns(x + 1)[ch]);
                    const Real32 alongY = 0.625f * rows(y)[ch] +
                                          0.1875f * (rows(y - 1)[ch] + rows(y + 1)[ch]);
                    const Real32 expected = edge ? alongX + alongY : stripes(x, y)[ch];
                    // Half-float output.
                    ASSERT_NEAR(result.at(x, y, ch), expected, 2e-3f)
                        << x << "," << y << " channel " << ch;
                }
            }
        // The material gives the scene back after the pass.
        EXPECT_EQ(aa.getFinalMaterial()->find(scene), -1);
    }
    subRefCP(scene);
}

Vec3f up(int, int) { return Vec3f(0, 0, 1); }

INSTANTIATE_TEST_SUITE_P(DeferredAAPostProcessor, DeferredAAPostProcessorTest, testing::Values(
    // Constant depth: both differences 0, and the floor keeps it quiet.
    Case{"ConstantDepth", [](int, int) { return 0.7f; }, up, {}},
    // A slope changes depth equally on both sides of every pixel.
    Case{"DepthSlope", [](int x, int y) { return 0.3f + 0.004f * x + 0.002f * y; }, up, {}},
    // A silhouette against the background at depth 1.
    Case{"Silhouette", [](int x, int) { return x < 32 ? 0.5f : 1.0f; }, up, {31, 32}},
    // A step too small to matter on a slope still is one where the slope
    // is flat on the other side.
    Case{"Crease", [](int x, int) { return x < 32 ? 0.5f : 0.5f + 0.01f * (x - 31); }, up, {31}},
    // A fold in the normals at constant depth.
    Case{"NormalFold", [](int, int) { return 0.6f; },
         [](int x, int) { return x < 32 ? Vec3f(0, 0, 1) : Vec3f(1, 0, 0); }, {31, 32}}),
    [](const testing::TestParamInfo<Case> &info) { return std::string(info.param.name); });

} // namespace
