#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/SceneSetup.h"

#include <Lumora/DeferredEmissiveLight.h>

#include <OpenSG/OSGTextureChunk.h>

#include <cmath>
#include <vector>

using namespace osg;
using namespace testsupport;

namespace
{

// The emissive colour goes through an eight-bit G-buffer channel.
const float EightBitTolerance = 0.5f / 255.0f + 0.005f;

std::vector<TextureChunkPtr> texturesOf(ChunkMaterialPtr material)
{
    std::vector<TextureChunkPtr> textures;
    for(UInt32 i = 0; i < material->getChunks().size(); ++i)
    {
        TextureChunkPtr texture = TextureChunkPtr::dcast(material->getChunks()[i]);
        if(texture != NullFC)
            textures.push_back(texture);
    }
    return textures;
}

class DeferredEmissiveLightTest : public DeferredSceneTest
{
  protected:
    void setEmission(SimpleMaterialPtr mat, const Color3f &emission)
    {
        beginEditCP(mat, SimpleMaterial::EmissionFieldMask);
        mat->setEmission(emission);
        endEditCP(mat, SimpleMaterial::EmissionFieldMask);
    }
};

} // namespace

TEST_F(DeferredEmissiveLightTest, EmissionShowsFromTheFirstFrame)
{
    const Color3f emission(0.2f, 0.5f, 0.7f);
    // Two units wide: the view at z = 0 is about 5.8 wide, so the plane
    // leaves a black border.
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
                const float expected = inside ? emission[c] : 0.0f;
                ASSERT_NEAR(image.at(x, y, c), expected, EightBitTolerance)
                    << "pixel " << x << "," << y << " channel " << c;
            }
        }
    }
    EXPECT_GT(onPlane,  300);
    EXPECT_GT(offPlane, 1500);
}

TEST_F(DeferredEmissiveLightTest, BackgroundColourShowsThroughTheEmissivePass)
{
    // Without geometry every G-buffer texel holds the background colour,
    // the emissive one included.
    const Color3f colour(0.3f, 0.2f, 0.1f);
    beginEditCP(background);
    background->setColor(colour);
    endEditCP(background);

    renderFrame();

    LitImage image(viewport);
    for(int y = 0; y < Size; y += 7)
        for(int x = 0; x < Size; x += 7)
            for(int c = 0; c < 3; ++c)
                ASSERT_NEAR(image.at(x, y, c), colour[c], EightBitTolerance)
                    << "pixel " << x << "," << y << " channel " << c;
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
    setEmission(mat, emission);
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

TEST_F(DeferredEmissiveLightTest, InitialisedLightSamplesOnlyTheEmissiveTexture)
{
    IDeferredLight *emissive = viewport->getEmissiveLight();
    ASSERT_NE(emissive, nullptr);
    EXPECT_FALSE(emissive->isInitialized());
    EXPECT_EQ(emissive->getNextTextureUnit(), 0);
    EXPECT_TRUE(texturesOf(emissive->getMaterial()).empty());

    addPlane(2.0f, 0.0f, material(Color3f(1, 1, 1)));
    renderFrame();
    renderFrame();

    EXPECT_TRUE(emissive->isInitialized());
    EXPECT_EQ(emissive->getNextTextureUnit(), 1);
    std::vector<TextureChunkPtr> textures = texturesOf(emissive->getMaterial());
    ASSERT_EQ(textures.size(), 1u);
    EXPECT_EQ(textures[0], viewport->getGBufferTarget().getTargetTexture(3));

    Int32 unit = -1;
    EXPECT_TRUE(emissive->getParameterChunk()->getUniformParameter("texGBuffer3", unit));
    EXPECT_EQ(unit, 0);
}

TEST_F(DeferredEmissiveLightTest, ViewportsShareTheStaticChunks)
{
    const Color3f emission(0.4f, 0.3f, 0.2f);
    addPlane(8.0f, 0.0f, material(Color3f(0, 0, 0), Color3f(0, 0, 0), 1.0f, emission));

    const PolygonChunkPtr culling  = DeferredEmissiveLight::s_CullingOptions;
    const BlendChunkPtr   blending = IDeferredLight::s_LightBufferBlending;
    const DepthChunkPtr   depth    = IDeferredLight::s_LightRenderingNoDepthTest;
    ASSERT_NE(culling,  NullFC);
    ASSERT_NE(blending, NullFC);
    ASSERT_NE(depth,    NullFC);

    // The second viewport draws a scene of its own, so that neither
    // prepares the other's materials.
    NodePtr secondRoot = makeGroupNode();
    addRefCP(secondRoot);
    addChild(secondRoot, makeRect(-4, -4, 4, 4, 0,
                                  material(Color3f(0, 0, 0), Color3f(0, 0, 0), 1.0f, emission)));
    DeferredRenderingViewportPtr second = scene->makeViewport();
    beginEditCP(second, Viewport::RootFieldMask);
    second->setRoot(secondRoot);
    endEditCP(second, Viewport::RootFieldMask);
    scene->windowAndAction.addPort(second);

    second->prepareScene(secondRoot);
    renderFrame();

    // A second viewport makes none of its own.
    EXPECT_EQ(DeferredEmissiveLight::s_CullingOptions,      culling);
    EXPECT_EQ(IDeferredLight::s_LightBufferBlending,        blending);
    EXPECT_EQ(IDeferredLight::s_LightRenderingNoDepthTest,  depth);

    IDeferredLight *first  = viewport->getEmissiveLight();
    IDeferredLight *other  = second->getEmissiveLight();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_NE(first, other);
    EXPECT_NE(first->getMaterial(), other->getMaterial());
    for(IDeferredLight *light : {first, other})
    {
        EXPECT_GE(light->getMaterial()->find(culling),  0);
        EXPECT_GE(light->getMaterial()->find(blending), 0);
        EXPECT_GE(light->getMaterial()->find(depth),    0);
    }

    // Both draw the emission.
    for(DeferredRenderingViewportPtr port : {viewport, second})
        for(int c = 0; c < 3; ++c)
            EXPECT_NEAR(LitImage(port).at(32, 32, c), emission[c], EightBitTolerance)
                << (port == viewport ? "first" : "second") << " viewport, channel " << c;

    scene->windowAndAction.subPort(second);
    subRefCP(second);
    subRefCP(secondRoot);

    // The shared chunks outlive the viewport that used them.
    EXPECT_EQ(DeferredEmissiveLight::s_CullingOptions, culling);
    renderFrame();
    for(int c = 0; c < 3; ++c)
        EXPECT_NEAR(LitImage(viewport).at(32, 32, c), emission[c], EightBitTolerance);
}
