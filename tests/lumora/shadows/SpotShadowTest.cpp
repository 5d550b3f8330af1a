#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "lumora/shadows/ShadowTestGeometry.h"

#include <Lumora/DeferredSpotLight.h>

#include "support/SceneSetup.h"
#include "support/TextureImage.h"

#include <cmath>

using namespace osg;
using namespace testsupport;
using namespace shadowtest;

namespace
{

const Color3f Floor(0.8f, 0.8f, 0.8f);

class SpotShadowTest : public DeferredSceneTest
{
  protected:
    SpotLightPtr addSpot(Real32 shadowIntensity)
    {
        SpotLightParams params = spot;
        params.shadowIntensity = shadowIntensity;
        SpotLightPtr light = makeLight(params);
        viewport->addLight(light);
        lights.push_back(light);
        return light;
    }

    void TearDown() override
    {
        for(LightPtr light : lights)
            subRefCP(light);
        DeferredSceneTest::TearDown();
    }

    void addOccluder(const Rect &r, Real32 transparency = 0.0f)
    {
        MaterialPtr mat = material(Color3f(0.5f, 0.5f, 0.5f));
        if(transparency > 0.0f)
            mat = testsupport::makeUnlitMaterial(Color3f(0.5f, 0.5f, 0.5f), transparency);
        testsupport::addChild(root, testsupport::makeRect(r.x0, r.y0, r.x1, r.y1, r.z, mat));
        if(transparency == 0.0f)
            occluders.push_back(r);
    }

    // The spot's light on the floor at P without shadow.
    Real32 unshadowed(const Pnt3f &P) const
    {
        return lightAt(spot, SurfaceParams{Floor}, P, Vec3f(0, 0, 1), scene->eye()).high[0];
    }

    // Whether the camera at (0, 0, 5) sees the floor at P past the occluders.
    bool floorVisible(const Pnt3f &P, Real32 margin) const
    {
        return segmentCover(Pnt3f(0, 0, 5), P, occluders, margin) == Cover::Outside;
    }

    // Compares the floor with the lighting equation where the geometry says
    // lit or shadowed for sure; counts both kinds.
    void expectHardShadows(Real32 intensity, int &lit, int &shadowed)
    {
        LitImage        image(viewport);
        PixelMismatches mismatches;
        lit = shadowed = 0;
        const Real32 margin = 0.15f;
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                const Pnt3f P = pixelOnPlane(x, y, 0.0f);
                if(!floorVisible(P, margin))
                    continue;
                const Cover cover = segmentCover(P, spot.position, occluders, margin);
                if(cover == Cover::Edge)
                    continue;
                const Real32 u        = unshadowed(P);
                const Real32 expected = cover == Cover::Inside ? u * intensity : u;
                (cover == Cover::Inside ? shadowed : lit) += u > 0.05f ? 1 : 0;
                mismatches.check(x, y, 0, image.at(x, y, 0), expected, expected);
            }
        EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    }

    // A wide spot above the floor and off the camera's axis, so that the
    // camera sees the shadows beside the occluders that cast them.
    const SpotLightParams spot = {Pnt3f(1.2f, 0.0f, 4.0f), Vec3f(-1.5f, 0.0f, -4.0f),
                                  deg2rad(86.0f), 1.0f, Vec3f(1, 0, 0), Color3f(1, 1, 1),
                                  Color3f(0, 0, 0)};
    std::vector<Rect>     occluders;
    std::vector<LightPtr> lights;
};

// A global intensity below 1 overrides the light's own, even one that casts
// no shadow; 1 or more leaves the light's own, and the override does not
// stick once lifted.
TEST_F(SpotShadowTest, GlobalIntensityBelowOneOverridesTheLightsOwn)
{
    addPlane(8.0f, 0.0f, material(Floor));
    addOccluder({-0.6f, -0.5f, 0.2f, 0.5f, 2.0f});
    SpotLightPtr light = addSpot(1.0f);
    struct Case { Real32 own, global, shown; };
    const Case cases[] = {{1.0f, 0.4f, 0.4f}, {1.0f, 2.0f, 1.0f}, {0.3f, 0.1f, 0.1f},
                          {0.3f, 1.0f, 0.3f}};
    for(const Case &c : cases)
    {
        SCOPED_TRACE(testing::Message() << "own " << c.own << ", global " << c.global);
        editCP(light, Light::ShadowIntensityFieldMask, [&] { light->setShadowIntensity(c.own); });
        viewport->setGlobalShadowIntensity(c.global);
        renderFrame();
        int lit = 0, shadowed = 0;
        expectHardShadows(c.shown, lit, shadowed);
        EXPECT_GT(shadowed, 60);
    }
}

TEST_F(SpotShadowTest, TransparentGeometryCastsNoShadow)
{
    addPlane(8.0f, 0.0f, material(Floor));
    addOccluder({-0.6f, -0.5f, 0.2f, 0.5f, 2.0f}, 0.5f);
    addSpot(0.0f);
    renderFrame();

    // Only the unshadowed light; the pane itself is drawn forward over the
    // floor, so look where the camera does not see it.
    const Rect pane = {-0.6f, -0.5f, 0.2f, 0.5f, 2.0f};
    LitImage        image(viewport);
    PixelMismatches mismatches;
    int compared = 0;
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            const Pnt3f P = pixelOnPlane(x, y, 0.0f);
            if(segmentCover(Pnt3f(0, 0, 5), P, {pane}, 0.1f) != Cover::Outside)
                continue;
            const bool behindPane =
                segmentCover(P, spot.position, {pane}, 0.1f) == Cover::Inside;
            compared += behindPane ? 1 : 0;
            mismatches.check(x, y, 0, image.at(x, y, 0), unshadowed(P), unshadowed(P));
        }
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    EXPECT_GT(compared, 60);
}

TEST_F(SpotShadowTest, LightWithoutShadowsNeverGetsAMap)
{
    addPlane(8.0f, 0.0f, material(Floor));
    addOccluder({-0.6f, -0.5f, 0.2f, 0.5f, 2.0f});
    SpotLightPtr light = addSpot(1.0f);
    renderFrame();
    renderFrame();

    IDeferredLight *deferred = viewport->getLights().at(light);
    EXPECT_FALSE(deferred->getCastShadows());
    EXPECT_FALSE(deferred->getShadowmap(0)->isInitialized());
    int lit = 0, shadowed = 0;
    expectHardShadows(1.0f, lit, shadowed);

    // Once it casts shadows, its map exists.
    editCP(light, Light::ShadowIntensityFieldMask, [&] { light->setShadowIntensity(0.5f); });
    renderFrame();
    ASSERT_TRUE(deferred->getShadowmap(0)->isInitialized());
    expectHardShadows(0.5f, lit, shadowed);
    EXPECT_GT(shadowed, 60);
}

// Every floor pixel, penumbrae included, against the moments of the map the
// light sampled, looked up with light matrices built here: a wrong light
// view, projection or bleeding cut shows up as a mismatch. Two stacked
// occluders mix two depths in the filtered map along the upper one's
// shadow edge, where variance shadow maps bleed light.
TEST_F(SpotShadowTest, FloorFollowsTheFilteredMomentsWithBleedingCut)
{
    addPlane(8.0f, 0.0f, material(Floor));
    addOccluder({-0.5f, -0.4f, 0.3f, 0.4f, 2.4f});
    addOccluder({-1.4f, -1.0f, 0.3f, 1.0f, 0.4f});
    const Real32 intensity = 0.0f;
    SpotLightPtr light = addSpot(intensity);
    renderFrame();

    // The light camera from its definition: the spot's direction, the up
    // vector rule, the scene's depth range seen from the light, the cut-off
    // as half of the opening.
    Vec3f d = spot.direction;
    d.normalize();
    Vec3f up(d[2] * d[2] - d[0] * d[1], d[0] * d[0] - d[1] * d[2], d[1] * d[1] - d[0] * d[2]);
    up.normalize();
    const Matrix view = viewMatrix(Vec3f(spot.position), d, up);
    // The depth range is the scene's, padded by the light; its own test
    // checks how much, this one reads what the light used.
    DeferredSpotLight *deferred =
        dynamic_cast<DeferredSpotLight *>(viewport->getLights().at(light));
    ASSERT_NE(deferred, nullptr);
    const Real32 nearDist = deferred->getLightNearFar()[0];
    const Real32 farDist  = deferred->getLightNearFar()[1];
    Real32 sceneNear = 1e30f, sceneFar = -1e30f;
    for(int i = 0; i < 8; ++i)
    {
        // Corners of the scene's box: the floor and the occluders.
        const Pnt3f corner((i & 1) ? 4.0f : -4.0f, (i & 2) ? 4.0f : -4.0f, (i & 4) ? 2.4f : 0.0f);
        const Real32 depth = -transformed(view, corner)[2];
        sceneNear = std::min(sceneNear, depth);
        sceneFar  = std::max(sceneFar, depth);
    }
    EXPECT_LE(nearDist, sceneNear);
    EXPECT_GT(nearDist, sceneNear - 0.01f * (sceneFar - sceneNear));
    EXPECT_GE(farDist,  sceneFar);
    EXPECT_LT(farDist,  sceneFar + 0.01f * (sceneFar - sceneNear));
    const Matrix projection = perspective(2.0f * spot.cutOff, 1.0f, nearDist, farDist);

    TextureImage map(viewport->getLights().at(light)->getShadowmap(0)->getTargetTexture(0));
    ASSERT_EQ(map.width(), 1024);
    LitImage image(viewport);
    // The texture unit cuts filter weights to eight bits; steep penumbrae
    // turn that into a few hundredths of the factor, so each pixel may lie
    // anywhere between the weights rounded down and up, plus half-float
    // rounding.
    PixelMismatches mismatches(0.004f);
    int    bleeding = 0, compared = 0;
    Real32 bias     = 0.0f;
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            const Pnt3f P = pixelOnPlane(x, y, 0.0f);
            const Real32 u = unshadowed(P);
            if(!floorVisible(P, 0.1f) || u < 0.05f)
                continue;
            const Pnt3f  inLight = transformed(view, P);
            const Real32 depth   = (-inLight[2] - nearDist) / (farDist - nearDist);
            const Pnt3f  clip    = transformed(projection, inLight);
            const Real32 s = clip[0] * 0.5f + 0.5f, t = clip[1] * 0.5f + 0.5f;

            Real32 raw = 1.0f, low = 1.0f, high = 0.0f;
            for(int r = 0; r < 5; ++r)
            {
                const WeightRounding rounding = {r < 4 ? 8 : 0, (r & 1) != 0, (r & 2) != 0};
                auto moment = [&](int channel) {
                    return map.bilinear(s, t, channel, TextureImage::EdgeTexels, rounding);
                };
                Real32 f = varianceShadowFactor(moment(0), moment(1), depth,
                                                r == 4 ? &raw : nullptr);
                f    = std::min(1.0f, std::max(intensity, f));
                low  = std::min(low, f);
                high = std::max(high, f);
            }
            const Real32 factor = 0.5f * (low + high);
            ++compared;
            mismatches.check(x, y, 0, image.at(x, y, 0), u * low, u * high);
            // Where the cut decides: a bound the cut moves up or down.
            if(raw > 0.05f && raw < 0.6f)
            {
                ++bleeding;
                bias += (image.at(x, y, 0) - u * factor) / u;
            }
        }
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text() << "of " << compared;
    ASSERT_GT(bleeding, 10);
    // Filtering errors scatter both ways; another cut shifts them all.
    EXPECT_LT(std::fabs(bias / bleeding), 0.02f) << bleeding << " pixels";
}

} // namespace
