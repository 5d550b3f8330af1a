#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <Lumora/DeferredEmissiveLight.h>


#include <cmath>

using namespace osg;
using namespace testsupport;

namespace
{

// The emissive colour goes through an eight-bit G-buffer channel.
const float EightBitTolerance = 0.5f / 255.0f + 0.005f;

using DeferredEmissiveLightTest = DeferredSceneTest;

} // namespace

// Where no geometry is, every G-buffer texel holds the background colour,
// the emissive one included, so the background shows through.
TEST_F(DeferredEmissiveLightTest, EmissionAndBackgroundShowFromTheFirstFrame)
{
    const Color3f emission(0.2f, 0.5f, 0.7f), colour(0.3f, 0.2f, 0.1f);
    editCP(background, [&] { background->setColor(colour); });
    // Two units wide: the view at z = 0 is about 5.8 wide, so the plane
    // leaves a border of background.
    addPlane(2.0f, 0.0f, material(Color3f(0.5f, 0.5f, 0.5f), Color3f(0, 0, 0), 1.0f, emission));

    renderFrame();

    LitImage image(viewport);
    int onPlane = 0, offPlane = 0;
    for(int y = 0; y < Size; ++y)
    {
        for(int x = 0; x < Size; ++x)
        {
            Pnt3f  P    = pixelOnPlane(x, y, 0.0f);
            Real32 edge = std::max(std::fabs(P[0]), std::fabs(P[1]));
            if(std::fabs(edge - 1.0f) < 0.1f)
                continue;
            const bool inside = edge < 1.0f;
            ++(inside ? onPlane : offPlane);
            for(int c = 0; c < 3; ++c)
            {
                const float expected = inside ? emission[c] : colour[c];
                ASSERT_NEAR(image.at(x, y, c), expected, EightBitTolerance)
                    << "pixel " << x << "," << y << " channel " << c;
            }
        }
    }
    EXPECT_GT(onPlane,  300);
    EXPECT_GT(offPlane, 1500);
}

TEST_F(DeferredEmissiveLightTest, BlackEmissionAddsNothingOverALitPixel)
{
    const Color3f kd(0.6f, 0.5f, 0.4f);
    SimpleMaterialPtr mat = material(kd);
    addPlane(8.0f, 0.0f, mat);

    DirectionalLightPtr light = makeLight(DirectionalLightParams{Vec3f(1, 1, 2)});
    viewport->addLight(light);

    // With the emissive pass.
    renderFrame();
    LitImage with(viewport);

    // Without it.
    NodePtr emissiveVolume = viewport->getEmissiveLight()->getVolumeRoot();
    emissiveVolume->setTravMask(0);
    renderFrame();
    LitImage without(viewport);
    emissiveVolume->setTravMask(0xFFFFFFFF);

    // A coloured emission adds itself on top.
    const Color3f emission(0.25f, 0.1f, 0.05f);
    editCP(mat, SimpleMaterial::EmissionFieldMask, [&] { mat->setEmission(emission); });
    renderFrame();
    LitImage emissive(viewport);

    const Real32 nDotL = 2.0f / std::sqrt(6.0f);
    const int pixels[][2] = {{32, 32}, {5, 60}, {60, 5}, {20, 44}, {63, 63}, {0, 0}};
    for(const auto &p : pixels)
    {
        for(int c = 0; c < 3; ++c)
        {
            SCOPED_TRACE(testing::Message() << "pixel " << p[0] << "," << p[1]
                                            << " channel " << c);
            const float lit = nDotL * kd[c];
            EXPECT_NEAR(without .at(p[0], p[1], c), lit, 0.01f);
            EXPECT_NEAR(with    .at(p[0], p[1], c), without.at(p[0], p[1], c), 0.001f);
            EXPECT_NEAR(emissive.at(p[0], p[1], c), lit + emission[c], 0.01f + EightBitTolerance);
        }
    }
    subRefCP(light);
}
