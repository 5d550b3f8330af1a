// The batched light pass against the volume path it replaces: the same
// scene drawn both ways must give the same lit image.

#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/SceneSetup.h"

#include <Lumora/DeferredLightBatch.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGTransform.h>

#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_real_distribution.hpp>

#include <cmath>
#include <string>
#include <vector>

using namespace osg;
using namespace testsupport;

namespace
{

struct BatchCase
{
    const char *name;
    int         points;
    int         spots;
    Real32      spread;        // lights in a box of +-spread around the view's centre
    Real32      range;         // of each light, from its attenuation
    Real32      constant;      // constant attenuation term
    bool        lightAtCamera; // one more light whose range holds the camera
    Int32       tileSize;      // the batch's tiles for these lights
};

void PrintTo(const BatchCase &c, std::ostream *out)
{
    *out << c.name;
}

class DeferredLightBatchTest : public DeferredSceneTest
{
  protected:
    void TearDown() override
    {
        for(LightPtr light : lights)
            subRefCP(light);
        DeferredSceneTest::TearDown();
    }

    // A floor, a tilted shiny box in front of it and a glowing sphere, so
    // that depth, normals, specular and emission all vary over the image.
    void buildScene()
    {
        addPlane(8.0f, 0.0f, material(Color3f(0.8f, 0.7f, 0.6f), Color3f(0.5f, 0.5f, 0.5f), 20.0f));

        addObject(makeBoxGeo(1.5f, 1.5f, 1.5f, 1, 1, 1), Vec3f(-0.8f, 0.3f, 1.0f), 0.6f,
                  material(Color3f(0.2f, 0.6f, 0.9f), Color3f(0.9f, 0.9f, 0.9f), 60.0f));
        addObject(makeSphereGeo(2, 0.6f), Vec3f(1.0f, -0.6f, 1.5f), 0.0f,
                  material(Color3f(0.9f, 0.3f, 0.2f), Color3f(0, 0, 0), 1.0f,
                           Color3f(0.2f, 0.1f, 0.0f)));
    }

    void addObject(GeometryPtr geometry, const Vec3f &at, Real32 turn, MaterialPtr mat)
    {
        editCP(geometry, Geometry::MaterialFieldMask, [&] { geometry->setMaterial(mat); });
        NodePtr node = scene->addToRoot(makeTransformNode(rotateXThenTranslate(turn, at)));
        addChild(node, makeNodeFor(geometry));
    }

    // Quadratic attenuation whose reach is range; colours kept dim so that
    // hundreds of lights stay within the half-float buffer's fine steps.
    void addLight(LightPtr light, const Pnt3f &position, Real32 range, Real32 brightness,
                  boost::random::mt19937 &random, Real32 constant = 1.0f)
    {
        boost::random::uniform_real_distribution<Real32> colour(0.3f, 1.0f);
        beginEditCP(light);
        light->setDiffuse (Color4f(brightness * colour(random), brightness * colour(random),
                                   brightness * colour(random), 1));
        light->setSpecular(Color4f(brightness, brightness, brightness, 1));
        light->setConstantAttenuation (constant);
        light->setLinearAttenuation   (0.0f);
        light->setQuadraticAttenuation(1.0f / (0.001f * range * range));
        light->setShadowIntensity(1.0f);
        endEditCP(light);
        if(PointLightPtr point = PointLightPtr::dcast(light))
        {
            editCP(point, PointLight::PositionFieldMask, [&] { point->setPosition(position); });
        }
        addRefCP(light);
        lights.push_back(light);
        viewport->addLight(light);
    }

    void addLights(const BatchCase &c)
    {
        boost::random::mt19937 random(1234);
        boost::random::uniform_real_distribution<Real32> across(-c.spread, c.spread);
        boost::random::uniform_real_distribution<Real32> height(0.3f, 3.0f);
        boost::random::uniform_real_distribution<Real32> angle(0.3f, 0.9f);
        const Real32 brightness = 1.5f / std::sqrt(Real32(c.points + c.spots));

        for(int i = 0; i < c.points; ++i)
            addLight(PointLight::create(), Pnt3f(across(random), across(random), height(random)),
                     c.range, brightness, random, c.constant);
        for(int i = 0; i < c.spots; ++i)
        {
            SpotLightPtr spot = SpotLight::create();
            beginEditCP(spot);
            Vec3f direction(across(random) * 0.2f, across(random) * 0.2f, -1.0f);
            direction.normalize();
            spot->setDirection(direction);
            spot->setSpotCutOff(angle(random));
            spot->setSpotExponent(angle(random) * 10.0f);
            endEditCP(spot);
            addLight(spot, Pnt3f(across(random), across(random), 1.5f + 0.5f * height(random)),
                     c.range * 1.5f, brightness, random, c.constant);
        }
        if(c.lightAtCamera)
        {
            addLight(PointLight::create(), Pnt3f(0.3f, -0.2f, 4.2f), 6.0f, 0.5f, random);
            // In front of the camera, its sphere reaching behind it.
            addLight(PointLight::create(), Pnt3f(-0.4f, 0.3f, 3.5f), 2.5f, 0.5f, random);
        }
    }

    std::vector<LightPtr> lights;
};

// Texels differing by more than a tolerance in any colour channel: how
// many, the largest difference anywhere and where the first one is.
struct Differences { int count = 0; float largest = 0.0f; std::string first; };

Differences compare(const LitImage &a, const LitImage &b, float tolerance)
{
    Differences result;
    for(int y = 0; y < a.height(); ++y)
        for(int x = 0; x < a.width(); ++x)
            for(int c = 0; c < 3; ++c)
            {
                const float d = std::fabs(a.at(x, y, c) - b.at(x, y, c));
                result.largest = std::max(result.largest, d);
                if(d <= tolerance)
                    continue;
                if(result.count++ == 0)
                    result.first = "pixel " + std::to_string(x) + "," + std::to_string(y) +
                                   " channel " + std::to_string(c) + ": " +
                                   std::to_string(a.at(x, y, c)) + " against " +
                                   std::to_string(b.at(x, y, c));
            }
    return result;
}

// The volume path's image, then the batched one; both must agree within one
// eight-bit step. Returns the volume path's image.
LitImage expectBatchedMatchesVolumes(DeferredScene &scene)
{
    scene.renderFrame();
    const LitImage volumes(scene.viewport);
    scene.viewport->setLightBatching(true);
    scene.renderFrame();
    const LitImage batched(scene.viewport);

    EXPECT_GT(volumes.maxValue(), 0.1f);
    const Differences off = compare(volumes, batched, 1.0f / 255.0f);
    EXPECT_EQ(off.count, 0) << off.first << "; largest " << off.largest;
    return volumes;
}

const BatchCase s_cases[] =
{
    // Many lights in so small a view share larger tiles. The volume path
    // adds each light into half floats, whose rounding grows with the
    // number of lights on a pixel: a hundred overlapping ones stay dim.
    // name                points spots spread range constant camera tiles
    {"OneLight",              1,    0,  1.0f,  4.0f,  1.0f,   false,  32},
    {"SeventeenMixed",       12,    5,  3.0f, 30.0f,  0.0f,   false,  32},
    {"ThreeHundredLocal",   260,   40,  4.0f,  1.2f,  1.0f,   false, 128},
    {"HundredWide",          90,   10,  3.0f,  7.0f,  1.0f,   false,  64},
    {"PartlyOffScreen",      20,    4,  7.0f,  2.0f,  0.5f,   false,  32},
    {"CameraInsideARange",    8,    2,  2.0f,  2.0f,  1.0f,   true,   32},
};

class DeferredLightBatchCaseTest : public DeferredLightBatchTest,
                                   public ::testing::WithParamInterface<BatchCase> {};

TEST_P(DeferredLightBatchCaseTest, MatchesTheVolumePathWithinOneStep)
{
    const BatchCase &c = GetParam();
    buildScene();
    addLights(c);

    const LitImage volumes = expectBatchedMatchesVolumes(*scene);
    for(const auto &entry : viewport->getLights())
    {
        EXPECT_TRUE(entry.second->isBatched());
    }
    EXPECT_GT(viewport->getLightBatch()->getNumTileEntries(), 0u);
    EXPECT_EQ(viewport->getLightBatch()->getTileSize(), c.tileSize);

    // Switching back restores every volume and the emissive pass.
    viewport->setLightBatching(false);
    renderFrame();
    const Differences restoredOff = compare(volumes, LitImage(viewport), 1e-6f);
    EXPECT_EQ(restoredOff.count, 0) << restoredOff.first;
}

INSTANTIATE_TEST_SUITE_P(Scenes, DeferredLightBatchCaseTest, ::testing::ValuesIn(s_cases),
                         [](const ::testing::TestParamInfo<BatchCase> &info)
                         { return std::string(info.param.name); });

struct ShapeCase
{
    const char *name;
    int         width, height;      // of the window for the compared frames
    Real32      left, bottom;       // of the viewport, which reaches the top right
    bool        batchedBeforeResize;
    int         points, spots;
    Real32      range;              // of each light
};

class DeferredLightBatchShapeTest : public DeferredLightBatchTest,
                                    public ::testing::WithParamInterface<ShapeCase> {};

// The tiles follow the viewport's own pixels wherever it sits and after
// every resize.
TEST_P(DeferredLightBatchShapeTest, MatchesTheVolumePath)
{
    const ShapeCase &c = GetParam();
    buildScene();
    addLights({c.name, c.points, c.spots, 2.0f, c.range, 1.0f, false, 32});
    editCP(viewport, [&] { viewport->setSize(c.left, c.bottom, 1, 1); });
    if(c.batchedBeforeResize)
    {
        // Smaller first: what the batch keeps per tile must grow with it.
        window->resize(24, 20);
        viewport->setLightBatching(true);
        renderFrame();
        viewport->setLightBatching(false);
    }
    window->resize(c.width, c.height);

    expectBatchedMatchesVolumes(*scene);
    const LitImage batched(viewport);
    EXPECT_EQ(batched.width(),  int(std::lround((1 - c.left)   * c.width)));
    EXPECT_EQ(batched.height(), int(std::lround((1 - c.bottom) * c.height)));
    // Tiles cover the viewport of this frame, not of an earlier one.
    const Int32 tile = viewport->getLightBatch()->getTileSize();
    EXPECT_EQ(viewport->getLightBatch()->getTilesX(), (batched.width()  + tile - 1) / tile);
    EXPECT_EQ(viewport->getLightBatch()->getTilesY(), (batched.height() + tile - 1) / tile);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, DeferredLightBatchShapeTest,
    // Short ranges where each tile's depth decides which lights it lists.
    ::testing::Values(ShapeCase{"LowerThanATile",    64, 20, 0.0f,  0.0f,   false, 10, 3, 20.0f},
                      ShapeCase{"AwayFromTheCorner", 64, 64, 0.25f, 0.375f, false, 24, 6, 1.5f},
                      ShapeCase{"AfterAResize",      56, 48, 0.0f,  0.0f,   true,  24, 6, 1.5f}),
    [](const ::testing::TestParamInfo<ShapeCase> &info) { return std::string(info.param.name); });

// A light's pixel rectangle holds every pixel its sphere's part before the
// near plane projects to, at any angle of view, and not much more.
TEST(DeferredLightBatchBounds, HoldTheVisibleSphereTightly)
{
    const Int32 width = 64, height = 48;
    const Real32 zNear = 0.1f;
    // halfWidth at the near plane: 0.1 is 90 degrees across, 0.2 about 127.
    const struct { const char *what; Real32 halfWidth; Vec3f center; Real32 radius; } cases[] = {
        { "ahead",                             0.1f, Vec3f(0, 0, -10),     1.0f },
        { "off to the side",                   0.1f, Vec3f(3, -1, -8),     1.5f },
        { "partly out of view",                0.1f, Vec3f(12, 0, -10),    3.0f },
        { "behind the near plane",             0.1f, Vec3f(0, 0, 1),       0.5f },
        { "through the near plane, wide view", 0.2f, Vec3f(0.9f, 0, -0.5f), 1.0f },
    };
    for(const auto &c : cases)
    {
        Matrix projection;
        MatrixFrustum(projection, -c.halfWidth, c.halfWidth, -c.halfWidth * height / width,
                      c.halfWidth * height / width, zNear, 100.f);
        Int32 x0 = 0, y0 = 0, x1 = 0, y1 = 0;
        const bool seen = DeferredLightBatch::screenBounds(c.center, c.radius, projection, zNear,
                                                           width, height, x0, y0, x1, y1);
        // Where the sphere's visible surface lands on screen, and on the
        // plane of the screen beyond it.
        Real32 lo[2] = { 1e9f, 1e9f }, hi[2] = { -1e9f, -1e9f }, span[2] = { 1e9f, -1e9f };
        for(int i = 0; i <= 180; ++i)
            for(int j = 0; j < 360; ++j)
            {
                const Real32 theta = Pi * i / 180, phi = 2 * Pi * j / 360;
                Vec4f p(c.center[0] + c.radius * std::sin(theta) * std::cos(phi),
                        c.center[1] + c.radius * std::sin(theta) * std::sin(phi),
                        c.center[2] + c.radius * std::cos(theta), 1);
                if(p[2] >= -zNear)
                    continue;
                projection.multMatrixVec(p);
                const Real32 px[2] = { (p[0] / p[3] * 0.5f + 0.5f) * width,
                                       (p[1] / p[3] * 0.5f + 0.5f) * height };
                span[0] = osgMin(span[0], px[0]);
                span[1] = osgMax(span[1], px[0]);
                if(px[0] < 0 || px[0] > width || px[1] < 0 || px[1] > height)
                    continue;
                for(int k = 0; k < 2; ++k)
                {
                    lo[k] = osgMin(lo[k], px[k]);
                    hi[k] = osgMax(hi[k], px[k]);
                }
            }
        SCOPED_TRACE(c.what);
        ASSERT_EQ(seen, lo[0] <= hi[0]);
        if(!seen)
            continue;
        EXPECT_LE(x0, lo[0]);
        EXPECT_LE(y0, lo[1]);
        EXPECT_GE(x1, hi[0]);
        EXPECT_GE(y1, hi[1]);
        if(c.center[2] + c.radius >= -zNear)
        {
            EXPECT_TRUE(x0 == 0 && y0 == 0 && x1 == width && y1 == height) << "the whole viewport";
            continue;
        }
        // Bounding the sphere's box instead of its outline costs a little.
        const Real32 slack = 2 + 0.3f * (span[1] - span[0]);
        EXPECT_GE(x0, lo[0] - slack);
        EXPECT_GE(y0, lo[1] - slack);
        EXPECT_LE(x1, hi[0] + slack);
        EXPECT_LE(y1, hi[1] + slack);
    }
}

// More point records than a row of the record texture holds (426): those
// past the row's end count once each, as the first ones do.
TEST_F(DeferredLightBatchTest, RecordsPastARowsEndCountOnce)
{
    addPlane(8.0f, 0.0f, material(Color3f(1, 1, 1), Color3f(0, 0, 0), 1.0f));
    viewport->setLightBatching(true);
    auto litBy = [&](int count)
    {
        const Real32 each = 0.9f / Real32(count);
        for(int i = 0; i < count; ++i)
        {
            lights.push_back(makeLight(PointLightParams{Pnt3f(0, 0, 2), Color3f(each, each, each),
                                                        Color3f(0, 0, 0), Vec3f(1, 0, 0.1f), 1.0f}));
            viewport->addLight(lights.back());
        }
        renderFrame();
        const LitImage image(viewport);
        for(LightPtr light : lights)
        {
            viewport->subLight(light);
            subRefCP(light);
        }
        lights.clear();
        return image;
    };
    const LitImage one = litBy(1), many = litBy(430);
    // One light of the 430 is 0.0015 under the light; a half-float step there is 0.0005.
    EXPECT_GT(one.maxValue(), 0.6f);
    const Differences off = compare(one, many, 0.001f);
    EXPECT_EQ(off.count, 0) << off.first << "; largest " << off.largest;
}

TEST_F(DeferredLightBatchTest, ShadowedAndDirectionalLightsStayVolumes)
{
    buildScene();
    boost::random::mt19937 random(7);
    addLight(PointLight::create(), Pnt3f(0.5f, 0.5f, 2.0f), 3.0f, 0.6f, random);

    SpotLightPtr shadowed = SpotLight::create();
    beginEditCP(shadowed);
    shadowed->setDirection(Vec3f(0, 0, -1));
    shadowed->setSpotCutOff(0.6f);
    endEditCP(shadowed);
    addLight(shadowed, Pnt3f(-0.5f, 0.0f, 3.0f), 5.0f, 0.6f, random);
    editCP(shadowed, Light::ShadowIntensityFieldMask, [&] { shadowed->setShadowIntensity(0.3f); });

    lights.push_back(makeLight(DirectionalLightParams{Vec3f(0.3f, 0.2f, 1.0f),
                                                      Color3f(0.3f, 0.3f, 0.3f)}));
    viewport->addLight(lights.back());

    expectBatchedMatchesVolumes(*scene);
    int batchedLights = 0;
    for(const auto &entry : viewport->getLights())
        batchedLights += entry.second->isBatched() ? 1 : 0;
    EXPECT_EQ(batchedLights, 1);
}

TEST_F(DeferredLightBatchTest, LightsOffOrOutOfViewListNowhere)
{
    buildScene();
    boost::random::mt19937 random(3);
    // Behind the camera, far to the side, in view but short of every
    // tile's depths, and one that is off.
    addLight(PointLight::create(), Pnt3f(0.0f, 0.0f, 9.0f), 1.0f, 0.5f, random);
    addLight(PointLight::create(), Pnt3f(30.0f, 0.0f, 0.0f), 1.0f, 0.5f, random);
    addLight(PointLight::create(), Pnt3f(0.0f, 0.0f, 3.0f), 0.3f, 0.5f, random);
    addLight(PointLight::create(), Pnt3f(0.0f, 0.0f, 1.0f), 1.0f, 0.5f, random);
    beginEditCP(lights.back(), Light::OnFieldMask);
    lights.back()->setOn(false);
    endEditCP(lights.back(), Light::OnFieldMask);

    viewport->setLightBatching(true);
    renderFrame();
    EXPECT_EQ(viewport->getLightBatch()->getNumTileEntries(), 0u);

    // Only emission is left.
    LitImage image(viewport);
    EXPECT_NEAR(image.at(2, 2, 0), 0.0f, 1e-6f);
    EXPECT_GT(image.maxValue(), 0.1f);
}

} // namespace
