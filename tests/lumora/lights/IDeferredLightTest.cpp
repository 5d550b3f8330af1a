#include <Lumora/DeferredDirectionalLight.h>
#include <Lumora/DeferredSpotLight.h>
#include <Lumora/IDeferredLight.h>

#include <OpenSG/OSGMatrixUtility.h>

#include "lumora/shadows/ShadowTestGeometry.h"
#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

using namespace osg;

namespace
{

using shadowtest::transformed;

const Real32 Tolerance = 1e-4f;

void expectPoint(const Pnt3f &got, const Pnt3f &expected, Real32 tolerance = Tolerance)
{
    for(int i = 0; i < 3; ++i)
        EXPECT_NEAR(got[i], expected[i], tolerance * std::max(1.0f, std::fabs(expected[i])))
            << "coordinate " << i;
}

void expectBox(const BoxVolume &box, const Pnt3f &min, const Pnt3f &max)
{
    Pnt3f gotMin, gotMax;
    box.getBounds(gotMin, gotMax);
    expectPoint(gotMin, min);
    expectPoint(gotMax, max);
}

// World-space frustum of a camera given by eye, target, up and the full
// vertical opening angle.
FrustumVolume cameraFrustum(const Pnt3f &eye, const Pnt3f &target, const Vec3f &up,
                            Real32 fov, Real32 aspect, Real32 nearDist, Real32 farDist)
{
    Matrix toWorld, viewing, projection;
    MatrixLookAt(toWorld, eye, target, up);
    toWorld.inverse(viewing);
    MatrixPerspective(projection, fov / 2, aspect, nearDist, farDist);
    projection.mult(viewing);

    FrustumVolume frustum;
    frustum.setPlanes(projection);
    return frustum;
}

} // namespace

TEST(IDeferredLightHelpers, MaxLightDistanceCountsOnlyTheHighestTerm)
{
    struct Case { Real32 linear, quadratic, range; };
    const Case cases[] =
    {
        {0.0f,  0.0f,   1000000.0f},
        {0.5f,  0.0f,   2000.0f},
        {0.0f,  0.001f, 1000.0f},
        {1.0f,  0.1f,   100.0f},      // the linear term is ignored
        {-1.0f, -1.0f,  1000000.0f},  // negative terms count as absent
        {-1.0f, 0.004f, 500.0f},
        {2.0f,  -3.0f,  500.0f},
    };
    for(const Case &c : cases)
        EXPECT_NEAR(IDeferredLight::maxLightDistance(c.linear, c.quadratic), c.range,
                    c.range * 1e-5f)
            << "linear " << c.linear << " quadratic " << c.quadratic;
}

// Three planes meet in one point, or the result is left alone.
TEST(IDeferredLightHelpers, IntersectPlanesFindsTheCommonPointOrNone)
{
    const Pnt3f point(-2.5f, 0.75f, 4.0f), untouched(7, 8, 9);
    Vec3f n1(1, 1, 0), n2(0, 1, -1), n3(1, 0, 2);
    for(Vec3f *n : {&n1, &n2, &n3})
        n->normalize();
    struct Case { const char *name; Plane a, b, c; bool meet; Pnt3f expected; };
    const Case cases[] =
    {
        {"axis planes", Plane(Vec3f(1, 0, 0), 1.0f), Plane(Vec3f(0, 1, 0), 2.0f),
         Plane(Vec3f(0, 0, 1), 3.0f), true, Pnt3f(1, 2, 3)},
        {"oblique planes", Plane(n1, point), Plane(n2, point), Plane(n3, point), true, point},
        {"two parallel", Plane(Vec3f(0, 0, 1), 1.0f), Plane(Vec3f(0, 0, 1), 5.0f),
         Plane(Vec3f(1, 0, 0), 0.0f), false, untouched},
        {"through one line", Plane(Vec3f(1, 0, 0), 0.0f), Plane(Vec3f(0, 1, 0), 0.0f),
         Plane(Vec3f(0.6f, 0.8f, 0), 0.0f), false, untouched},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        Pnt3f result = untouched;
        EXPECT_EQ(IDeferredLight::intersectPlanes(c.a, c.b, c.c, result), c.meet);
        expectPoint(result, c.expected);
    }
}

TEST(IDeferredLightHelpers, FrustumCornersComeNearFirstLeftFirstTopFirst)
{
    // Camera at the origin looking down -Z, 90 degrees, square: the corner
    // at distance d is at (+-d, +-d, -d).
    FrustumVolume frustum = cameraFrustum(Pnt3f(0, 0, 0), Pnt3f(0, 0, -1), Vec3f(0, 1, 0),
                                          Pi / 2, 1.0f, 1.0f, 10.0f);
    MFPnt3f corners = IDeferredLight::getFrustumCorners(frustum);
    ASSERT_EQ(corners.size(), 8u);

    const Pnt3f expected[8] =
    {
        Pnt3f(-1, 1, -1),   Pnt3f(-1, -1, -1),   Pnt3f(1, 1, -1),   Pnt3f(1, -1, -1),
        Pnt3f(-10, 10, -10), Pnt3f(-10, -10, -10), Pnt3f(10, 10, -10), Pnt3f(10, -10, -10),
    };
    for(int i = 0; i < 8; ++i)
    {
        SCOPED_TRACE(i);
        expectPoint(corners[i], expected[i], 1e-3f);
    }
}

TEST(IDeferredLightHelpers, BothFrustumBoxesAgreeWithAnIndependentBox)
{
    struct Case { Pnt3f eye; Vec3f direction, up; Real32 fov, aspect, nearDist, farDist;
                  Pnt3f min, max; };
    const Real32 h = 5.0f * std::tan(Pi / 6);  // far half-height at 60 degrees
    const Case cases[] =
    {
        {Pnt3f(0, 0, 0), Vec3f(0, 0, -1), Vec3f(0, 1, 0), Pi / 2, 1.0f, 1.0f, 10.0f,
         Pnt3f(-10, -10, -10), Pnt3f(10, 10, -1)},
        // Looking along +X from (1, 2, 3): far corners span y 2 +- h and
        // z 3 +- 2h; the near ones lie inside that.
        {Pnt3f(1, 2, 3), Vec3f(1, 0, 0), Vec3f(0, 1, 0), Pi / 3, 2.0f, 1.0f, 5.0f,
         Pnt3f(2, 2 - h, 3 - 2 * h), Pnt3f(6, 2 + h, 3 + 2 * h)},
        // A direction of length 2 places the near and far centres twice as
        // far; a frustum volume has no such direction.
        {Pnt3f(0, 0, 0), Vec3f(0, 0, -2), Vec3f(0, 1, 0), Pi / 2, 1.0f, 1.0f, 10.0f,
         Pnt3f(-10, -10, -20), Pnt3f(10, 10, -2)},
    };
    for(const Case &c : cases)
    {
        BoxVolume fromParameters = IDeferredLight::getFrustumAABB(
            Vec3f(c.eye), c.direction, c.up, c.nearDist, c.farDist, c.fov, c.aspect);
        expectBox(fromParameters, c.min, c.max);
        if(c.direction.length() != 1.0f)
            continue;

        FrustumVolume frustum = cameraFrustum(c.eye, c.eye + c.direction, c.up,
                                              c.fov, c.aspect, c.nearDist, c.farDist);
        expectBox(IDeferredLight::getFrustumAABB(frustum), c.min, c.max);
    }
}

TEST(IDeferredLightHelpers, DegenerateFrustumDropsCornersWithAWarning)
{
    // Left and right planes parallel to the near plane: no corner exists.
    Plane planes[6] =
    {
        Plane(Vec3f(0, 0, -1), 1.0f), Plane(Vec3f(0, 0, 1), -10.0f),
        Plane(Vec3f(0, 0, -1), 2.0f), Plane(Vec3f(0, 0, 1), -3.0f),
        Plane(Vec3f(0, -1, 0), -1.0f), Plane(Vec3f(0, 1, 0), -1.0f),
    };
    FrustumVolume frustum;
    frustum.setPlanes(planes[0], planes[1], planes[2], planes[3], planes[4], planes[5]);

    testsupport::LogCapture log(LOG_WARNING);
    MFPnt3f corners = IDeferredLight::getFrustumCorners(frustum);
    EXPECT_EQ(corners.size(), 0u);
    EXPECT_EQ(log.count("IDeferredLight::getFrustumAABB - Invalid frustum!"), 8u);
    EXPECT_TRUE(IDeferredLight::getFrustumAABB(frustum).isEmpty());
}

TEST(DeferredSpotLightCone, MapsApexBaseAndRimForEveryDirection)
{
    struct Case { const char *name; Vec3f direction; };
    const Case cases[] =
    {
        {"down",     Vec3f(0, -1, 0)},
        {"up",       Vec3f(0, 1, 0)},
        {"along x",  Vec3f(3, 0, 0)},
        {"oblique",  Vec3f(1, -2, 0.5f)},
        {"backward", Vec3f(-0.2f, 0.1f, -1)},
    };
    const Vec3f  position(1, 2, 3);
    const Real32 length = 10.0f;
    const Real32 radius = std::tan(Pi / 4) * length * 1.1f;  // 45 degrees

    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        Matrix cone = DeferredSpotLight::getConeTransform(position, c.direction, length, 45.0f);
        Vec3f  d    = c.direction;
        d.normalize();

        // Apex at y = +0.5, base centre at y = -0.5 on the unit cone.
        expectPoint(transformed(cone, Pnt3f(0, 0.5f, 0)), Pnt3f(position));
        const Pnt3f baseCentre = Pnt3f(position + d * length);
        expectPoint(transformed(cone, Pnt3f(0, -0.5f, 0)), baseCentre);

        // Rim points stay on a circle of the base radius around the axis.
        for(int k = 0; k < 4; ++k)
        {
            Real32 a   = k * Pi / 2;
            Vec3f  rim = transformed(cone, Pnt3f(std::cos(a), -0.5f, std::sin(a))) - baseCentre;
            EXPECT_NEAR(rim.length(), radius, 1e-3f);
            EXPECT_NEAR(rim.dot(d), 0.0f, 1e-3f);
        }
    }
}

// The documented figures, which a swapped weight or a uniform-only division
// misses by whole units; the shadow tests' own split helper must meet them
// too.
TEST(DeferredDirectionalLightSplits, BlendLogarithmicAndUniformDivisions)
{
    struct Case { Real32 nearDist, farDist, rounded[4]; };  // rounded to two decimals
    const Case cases[] =
    {
        {1.0f,  100.0f,  {1.0f, 10.51f, 30.64f, 100.0f}},
        {0.1f,  1000.0f, {0.1f, 68.40f, 170.47f, 1000.0f}},
        {5.0f,  5.0f,    {5.0f, 5.0f, 5.0f, 5.0f}},
    };
    for(const Case &c : cases)
    {
        DeferredDirectionalLight light;
        light.updateSplitDistances(c.nearDist, c.farDist);
        const std::vector<Real32> helper = shadowtest::cascadeSplits(c.nearDist, c.farDist);
        for(UInt16 i = 0; i < 4; ++i)
        {
            EXPECT_NEAR(light.getSplitDistance(i), c.rounded[i], 0.005f) << i;
            EXPECT_NEAR(helper[i], c.rounded[i], 0.005f) << i;
        }
    }
}

namespace
{

using namespace testsupport;

const Color3f White(1, 1, 1), Black(0, 0, 0);

// A light switched off while it is changed, then on again. The camera sits
// at (0, 0, 5) unrotated, so eye space is world space moved by -5 in z.
struct SwitchCase
{
    const char                                  *name;
    std::function<LightPtr()>                    make;
    std::function<void(LightPtr)>                change;
    std::vector<std::pair<const char *, Vec3f>>  whileOff;  // vec3 uniforms, eye space
    PlaneEquation                                changed;   // once on again
    std::function<bool(const Pnt3f &)>           keep;      // where that holds
    bool                                         disables;  // isEnabled() follows the light
};

void PrintTo(const SwitchCase &c, std::ostream *out) { *out << c.name; }

const SpotLightParams MovedSpot = {Pnt3f(1.0f, 0.5f, 2.5f), Vec3f(0, 1, -1), deg2rad(30.0f), 1.0f,
                                   Vec3f(1, 0, 0.1f), White, Black};

// Point and spot lights keep their uniforms current while off; a
// directional light leaves its uniforms as they were.
const SwitchCase s_switchCases[] =
{
    {"Point",
     [] { return makeLight(PointLightParams{Pnt3f(0, 0, 1), White, Black, Vec3f(1, 0, 1)}); },
     [](LightPtr l) { PointLightPtr::dcast(l)->setPosition(Pnt3f(0.5f, 0.5f, 2.0f)); },
     {{"vLightPosition", Vec3f(0.5f, 0.5f, -3.0f)}},
     onPlane(PointLightParams{Pnt3f(0.5f, 0.5f, 2.0f), White, Black, Vec3f(1, 0, 1)},
             SurfaceParams{White}, Pnt3f(0, 0, 5)),
     nullptr, false},
    {"Spot",
     [] { return makeLight(SpotLightParams{Pnt3f(0, 0, 2), Vec3f(0, 0, -1), deg2rad(30.0f), 1.0f,
                                           Vec3f(1, 0, 0.1f), White, Black}); },
     [](LightPtr l) {
         SpotLightPtr spot = SpotLightPtr::dcast(l);
         spot->setPosition(MovedSpot.position);
         spot->setDirection(MovedSpot.direction);
     },
     {{"vLightPosition", Vec3f(1.0f, 0.5f, -2.5f)},
      {"vLightDirection", Vec3f(0, std::sqrt(0.5f), -std::sqrt(0.5f))}},
     onPlane(MovedSpot, SurfaceParams{White}, Pnt3f(0, 0, 5)),
     [](const Pnt3f &P) {
         return std::fabs(angleFromAxis(MovedSpot, P) - MovedSpot.cutOff) > deg2rad(1.0f);
     }, false},
    {"Directional",
     [] { return makeLight(DirectionalLightParams{Vec3f(1, 2, 2), Color3f(0.2f, 0.4f, 0.6f),
                                                  Color3f(0.1f, 0.2f, 0.3f)}); },
     [](LightPtr l) {
         DirectionalLightPtr::dcast(l)->setDirection(Vec3f(0, -1, 1));
         l->setDiffuse(Color4f(1, 1, 1, 1));
         l->setSpecular(Color4f(1, 0, 1, 1));
     },
     {{"vLightDirection", Vec3f(1.0f / 3, 2.0f / 3, 2.0f / 3)},
      {"vLightDiffuse",   Vec3f(0.2f, 0.4f, 0.6f)},
      {"vLightSpecular",  Vec3f(0.1f, 0.2f, 0.3f)}},
     onPlane(DirectionalLightParams{Vec3f(0, -1, 1), White, Color3f(1, 0, 1)},
             SurfaceParams{White}, Pnt3f(0, 0, 5)),
     nullptr, true},
};

class DeferredLightSwitchTest : public DeferredSceneTest,
                                public testing::WithParamInterface<SwitchCase> {};

} // namespace

TEST_P(DeferredLightSwitchTest, OffDrawsNothingAndOnAgainDrawsTheChangedLight)
{
    const SwitchCase &c = GetParam();
    addPlane(8.0f, 0.0f, material(White));
    LightPtr light = c.make();
    viewport->addLight(light);
    renderFrame();
    ASSERT_GT(LitImage(viewport).at(32, 32, 0), 0.1f);
    IDeferredLight *deferred = viewport->getLights().at(light);

    beginEditCP(light);
    light->setOn(false);
    c.change(light);
    endEditCP(light);
    renderFrame();
    EXPECT_EQ(LitImage(viewport).maxValue(), 0.0f);
    EXPECT_EQ(deferred->getVolumeRoot()->getTravMask(), 0u);
    EXPECT_EQ(deferred->isEnabled(), !c.disables);
    for(const auto &uniform : c.whileOff)
    {
        Vec3f value(-100, -100, -100);
        EXPECT_TRUE(deferred->getParameterChunk()->getUniformParameter(uniform.first, value));
        for(int i = 0; i < 3; ++i)
            EXPECT_NEAR(value[i], uniform.second[i], 1e-5f) << uniform.first << " " << i;
    }

    editCP(light, Light::OnFieldMask, [&] { light->setOn(true); });
    renderFrame();
    EXPECT_TRUE(deferred->isEnabled());
    EXPECT_NE(deferred->getVolumeRoot()->getTravMask(), 0u);
    PixelMismatches mismatches;
    EXPECT_GT(checkPlane(LitImage(viewport), *scene, c.changed, mismatches, c.keep),
              Size * Size / 2);
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    subRefCP(light);
}

INSTANTIATE_TEST_SUITE_P(Lights, DeferredLightSwitchTest, testing::ValuesIn(s_switchCases),
    [](const testing::TestParamInfo<SwitchCase> &info) { return std::string(info.param.name); });
