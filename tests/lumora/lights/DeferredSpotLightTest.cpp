#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <Lumora/DeferredSpotLight.h>

#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace osg;
using namespace testsupport;

namespace
{

typedef SpotLightParams SpotParams;
typedef SurfaceParams   Surface;

class DeferredSpotLightTest : public DeferredSceneTest
{
  protected:
    void addSurface(const Surface &s)
    {
        // Larger than the view at z = 0, so that every pixel sees it.
        addPlane(8.0f, 0.0f, material(s.diffuse, s.specular, s.shininess));
    }

    // Compares every pixel with the equation for the light, leaving out the
    // pixels within margin (radians) of the cut-off. Counts the pixels
    // compared inside and outside the cone.
    void expectImage(const SpotParams &light, const Surface &surface, Real32 margin,
                     int &inside, int &outside)
    {
        PixelMismatches mismatches;
        inside = outside = 0;
        checkPlane(LitImage(viewport), *scene, onPlane(light, surface, scene->eye()), mismatches,
                   [&](const Pnt3f &P) {
                       const Real32 angle = angleFromAxis(light, P);
                       if(std::fabs(angle - light.cutOff) < margin)
                           return false;
                       ++(angle < light.cutOff ? inside : outside);
                       return true;
                   });
        EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    }
};

const Real32 OneDegree = deg2rad(1.0f);

struct ConeCase { const char *name; SpotParams light; Surface surface; };

void PrintTo(const ConeCase &test, std::ostream *os) { *os << test.name; }

class SpotLightConeTest : public DeferredSpotLightTest,
                          public testing::WithParamInterface<ConeCase> {};

} // namespace

TEST_P(SpotLightConeTest, InsideFollowsTheEquationAndOutsideIsBlack)
{
    const ConeCase &test = GetParam();
    addSurface(test.surface);
    SpotLightPtr light = makeLight(test.light);
    viewport->addLight(light);
    renderFrame();

    int inside = 0, outside = 0;
    expectImage(test.light, test.surface, OneDegree, inside, outside);
    // Each set-up shows a good part of both sides of the cone.
    EXPECT_GT(inside,  100);
    EXPECT_GT(outside, 100);
    subRefCP(light);
}

INSTANTIATE_TEST_SUITE_P(
    DeferredSpotLight, SpotLightConeTest,
    testing::Values(
        ConeCase{"StraightDownDiffuseOnly",
                 {Pnt3f(0, 0, 2), Vec3f(0, 0, -1), deg2rad(30.0f), 0.0f, Vec3f(1, 0, 0.1f),
                  Color3f(1, 0.9f, 0.8f), Color3f(0, 0, 0)},
                 {Color3f(0.8f, 0.6f, 0.4f), Color3f(0, 0, 0), 1.0f}},
        ConeCase{"TiltedShinyAllAttenuationTerms",
                 {Pnt3f(0.3f, -0.2f, 2.0f), Vec3f(0.2f, 0.1f, -1.0f), deg2rad(35.0f), 4.0f,
                  Vec3f(0.8f, 0.2f, 0.1f), Color3f(1, 0.9f, 0.7f), Color3f(0.8f, 0.8f, 1.0f)},
                 {Color3f(0.7f, 0.5f, 0.3f), Color3f(0.5f, 0.5f, 0.5f), 16.0f}},
        // The default attenuation: a cone a million units long.
        ConeCase{"ConstantAttenuationOnly",
                 {Pnt3f(0.2f, 0.1f, 2.5f), Vec3f(-0.1f, 0, -1), deg2rad(30.0f), 1.0f,
                  Vec3f(1, 0, 0), Color3f(0.5f, 0.5f, 0.5f), Color3f(0, 0, 0)},
                 {Color3f(1, 0.8f, 0.6f), Color3f(0, 0, 0), 1.0f}},
        // Behind the camera, which sits inside the cone.
        ConeCase{"CameraInsideTheCone",
                 {Pnt3f(0, 0, 6), Vec3f(0, 0, -1), deg2rad(20.0f), 1.0f,
                  Vec3f(1, 0, 0.02f), Color3f(1, 1, 1), Color3f(1, 1, 1)},
                 {Color3f(0.8f, 0.8f, 0.8f), Color3f(0.5f, 0.5f, 0.5f), 16.0f}},
        // Exactly along +Y the cone has no axis to turn about; a mirrored
        // cone would flip its winding, and culling would leave a camera
        // inside it seeing nothing.
        ConeCase{"StraightUpCameraInside",
                 {Pnt3f(0, -2, 4), Vec3f(0, 1, 0), deg2rad(60.0f), 1.0f,
                  Vec3f(1, 0, 0.05f), Color3f(1, 1, 1), Color3f(0, 0, 0)},
                 {Color3f(0.8f, 0.8f, 0.8f), Color3f(0, 0, 0), 1.0f}},
        // Just off +Y, with the camera inside the cone.
        ConeCase{"NearlyStraightUpCameraInside",
                 {Pnt3f(0, -2, 4), Vec3f(0, 1, 0.001f), deg2rad(60.0f), 1.0f,
                  Vec3f(1, 0, 0.05f), Color3f(1, 1, 1), Color3f(0, 0, 0)},
                 {Color3f(0.8f, 0.8f, 0.8f), Color3f(0, 0, 0), 1.0f}},
        ConeCase{"StraightDownFromBehindTheCamera",
                 {Pnt3f(0, 2, 6), Vec3f(0, -1, 0), deg2rad(70.0f), 1.0f,
                  Vec3f(1, 0, 0.05f), Color3f(1, 1, 1), Color3f(0, 0, 0)},
                 {Color3f(0.8f, 0.8f, 0.8f), Color3f(0, 0, 0), 1.0f}},
        ConeCase{"LowWideUnnormalisedDirection",
                 {Pnt3f(-0.5f, 0.4f, 1.2f), Vec3f(0.5f, -0.5f, -2.0f), deg2rad(50.0f), 2.0f,
                  Vec3f(1, 0.3f, 0.05f), Color3f(0.6f, 1.0f, 0.5f), Color3f(1, 1, 1)},
                 {Color3f(0.9f, 0.9f, 0.9f), Color3f(0.3f, 0.2f, 0.1f), 32.0f}}),
    [](const testing::TestParamInfo<ConeCase> &info) { return std::string(info.param.name); });

TEST_F(DeferredSpotLightTest, FirstPixelPastTheCutOffIsBlack)
{
    const Surface surface = {Color3f(0.8f, 0.7f, 0.6f), Color3f(0, 0, 0), 1.0f};
    addSurface(surface);

    // Cut-off halfway between the angles of two neighbouring pixels of the
    // middle row, so that one is just inside and the next just outside.
    SpotParams params = {Pnt3f(0, 0, 2), Vec3f(0, 0, -1), 0.0f, 0.0f, Vec3f(1, 0, 0.1f),
                         Color3f(1, 1, 1), Color3f(0, 0, 0)};
    const Real32 innerAngle = angleFromAxis(params, pixelOnPlane(43, 32, 0.0f));
    const Real32 outerAngle = angleFromAxis(params, pixelOnPlane(44, 32, 0.0f));
    ASSERT_LT(innerAngle, outerAngle);
    params.cutOff = 0.5f * (innerAngle + outerAngle);

    SpotLightPtr light = makeLight(params);
    viewport->addLight(light);
    renderFrame();

    LitImage image(viewport);
    int lit = 0, dark = 0;
    // The middle row and column cross the cone's edge on both sides.
    for(int i = 0; i < Size; ++i)
    {
        const int pixels[2][2] = {{i, 32}, {32, i}};
        for(const auto &p : pixels)
        {
            Pnt3f P = pixelOnPlane(p[0], p[1], 0.0f);
            const Vec3f high = lightAt(params, surface, P, Vec3f(0, 0, 1), scene->eye()).high;
            const bool inside = angleFromAxis(params, P) < params.cutOff;
            ++(inside ? lit : dark);
            for(int c = 0; c < 3; ++c)
            {
                if(inside)
                    EXPECT_NEAR(image.at(p[0], p[1], c), high[c], 0.01f + 0.01f * high[c])
                        << "pixel " << p[0] << "," << p[1] << " channel " << c;
                else
                    EXPECT_EQ(image.at(p[0], p[1], c), 0.0f)
                        << "pixel " << p[0] << "," << p[1] << " channel " << c;
            }
        }
    }
    // The pixel just inside is lit at nearly full strength.
    EXPECT_GT(image.at(43, 32, 0), 0.3f);
    EXPECT_EQ(image.at(44, 32, 0), 0.0f);
    EXPECT_GT(lit,  20);
    EXPECT_GT(dark, 20);
    subRefCP(light);
}

TEST_F(DeferredSpotLightTest, BeaconPlacesAndTurnsTheLight)
{
    const Surface surface = {Color3f(0.9f, 0.8f, 0.7f), Color3f(0.5f, 0.5f, 0.5f), 16.0f};
    addSurface(surface);

    // In the beacon's frame: just off its origin, pointing down its -Z.
    SpotParams local = {Pnt3f(0.1f, 0.2f, 0.3f), Vec3f(0, 0, -1), deg2rad(25.0f), 2.0f,
                        Vec3f(1, 0.1f, 0.1f), Color3f(1, 1, 1), Color3f(1, 1, 1)};
    SpotLightPtr light = makeLight(local);

    const Real32 angle = deg2rad(20.0f);
    const Vec3f  offset(0.4f, -0.3f, 1.6f);
    TransformPtr beaconCore = Transform::create();
    editCP(beaconCore, Transform::MatrixFieldMask,
           [&] { beaconCore->setMatrix(testsupport::rotateXThenTranslate(angle, offset)); });
    NodePtr beacon = makeNodeFor(beaconCore);
    editCP(light, Light::BeaconFieldMask, [&] { light->setBeacon(beacon); });

    viewport->addLight(light);
    renderFrame();

    // The same light placed in world space by hand: y' = y cos - z sin,
    // z' = y sin + z cos, then the offset.
    const Real32 c = std::cos(angle), s = std::sin(angle);
    SpotParams world = local;
    world.position  = Pnt3f(0.1f + offset[0],
                            0.2f * c - 0.3f * s + offset[1],
                            0.2f * s + 0.3f * c + offset[2]);
    world.direction = Vec3f(0, s, -c);

    int inside = 0, outside = 0;
    expectImage(world, surface, OneDegree, inside, outside);
    EXPECT_GT(inside,  100);
    EXPECT_GT(outside, 100);
    subRefCP(light);
}
