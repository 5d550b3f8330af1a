#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSpotLight.h>

#include <algorithm>
#include <cmath>

using namespace osg;
using testsupport::SceneSetup;

namespace
{

// The material every case lights.
const Color3f s_ambient (0.2f, 0.1f, 0.1f);
const Color3f s_diffuse (0.6f, 0.5f, 0.2f);
const Color3f s_specular(0.4f, 0.4f, 0.4f);
const Real32  s_shininess = 16.f;

// GL's default light model ambient.
const Real32  s_globalAmbient = 0.2f;

enum LightKind { Directional, Point, Spot };

// vector: the direction towards the light, or its position; beaconAngle: the
// beacon's rotation about X in degrees; attenuation: constant, linear and
// quadratic; (px, py): the probed pixel.
struct LightCase { const char *name; LightKind kind; Vec3f vector; Real32 beaconAngle;
                   Vec3f spotDirection; Real32 spotCutOffDeg; Vec3f attenuation; int px, py; };

const LightCase s_cases[] = {
    { "directional head-on",         Directional, Vec3f(0, 0, 1),   0.f, Vec3f(), 0.f,  Vec3f(1, 0, 0),   128, 128 },
    { "directional via beacon 60°",  Directional, Vec3f(0, 0, 1),  60.f, Vec3f(), 0.f,  Vec3f(1, 0, 0),    40, 200 },
    { "directional from behind",     Directional, Vec3f(0, 0, -1),  0.f, Vec3f(), 0.f,  Vec3f(1, 0, 0),   128, 128 },
    { "point with attenuation",      Point,       Vec3f(0, 0, 1),   0.f, Vec3f(), 0.f,  Vec3f(1, 0.5f, 0.25f), 128, 128 },
    // The spot probes lie 14 and 39 degrees off its axis.
    { "spot inside the cone",        Spot,        Vec3f(0, 0, 1),   0.f, Vec3f(0, 0, -1), 30.f, Vec3f(1, 0, 0), 160, 128 },
    { "spot outside the cone",       Spot,        Vec3f(0, 0, 1),   0.f, Vec3f(0, 0, -1), 30.f, Vec3f(1, 0, 0), 230, 128 },
};

Vec3f rotateX(const Vec3f &v, Real32 deg)
{
    Real32 a = deg * Pi / 180.f;
    return Vec3f(v[0], std::cos(a) * v[1] - std::sin(a) * v[2],
                       std::sin(a) * v[1] + std::cos(a) * v[2]);
}

// Fixed-function lighting of the plane z = 0 (normal +Z) at point p with
// the viewer at infinity (GL_LIGHT_MODEL_LOCAL_VIEWER off), white light.
Vec3f expectedColor(const LightCase &c, const Pnt3f &p)
{
    Vec3f normal(0.f, 0.f, 1.f);
    Vec3f toLight;
    Real32 atten = 1.f;
    Real32 spot  = 1.f;

    if(c.kind == Directional)
    {
        toLight = rotateX(c.vector, c.beaconAngle);
    }
    else
    {
        Pnt3f lightPos(c.vector[0], c.vector[1], c.vector[2]);
        toLight = lightPos - p;
        Real32 d = toLight.length();
        atten = 1.f / (c.attenuation[0] + c.attenuation[1] * d + c.attenuation[2] * d * d);
        if(c.kind == Spot)
        {
            Vec3f dir = c.spotDirection;
            dir.normalize();
            Vec3f fromLight = -toLight;
            fromLight.normalize();
            Real32 cosAngle = fromLight.dot(dir);
            spot = cosAngle >= std::cos(c.spotCutOffDeg * Pi / 180.f) ? 1.f : 0.f;
        }
    }
    toLight.normalize();

    Real32 nl = std::max(normal.dot(toLight), 0.f);
    Vec3f half = toLight + Vec3f(0.f, 0.f, 1.f);
    half.normalize();
    Real32 nh   = std::max(normal.dot(half), 0.f);
    Real32 specularTerm = nl > 0.f ? std::pow(nh, s_shininess) : 0.f;

    Vec3f result;
    for(int i = 0; i < 3; ++i)
    {
        // The light's own ambient is black.
        Real32 light = nl * s_diffuse[i] + specularTerm * s_specular[i];
        result[i] = std::min(1.f, s_globalAmbient * s_ambient[i] + atten * spot * light);
    }
    return result;
}

LightPtr makeLight(const LightCase &c, NodePtr beacon)
{
    LightPtr light;
    if(c.kind == Directional)
    {
        DirectionalLightPtr l = DirectionalLight::create();
        testsupport::editCP(l, [&] { l->setDirection(c.vector); });
        light = l;
    }
    else if(c.kind == Point)
    {
        PointLightPtr l = PointLight::create();
        testsupport::editCP(l,
                            [&] { l->setPosition(Pnt3f(c.vector[0], c.vector[1], c.vector[2])); });
        light = l;
    }
    else
    {
        SpotLightPtr l = SpotLight::create();
        beginEditCP(l);
        l->setPosition(Pnt3f(c.vector[0], c.vector[1], c.vector[2]));
        l->setDirection(c.spotDirection);
        l->setSpotCutOffDeg(c.spotCutOffDeg);
        endEditCP(l);
        light = l;
    }
    beginEditCP(light);
    light->setAmbient(0.f, 0.f, 0.f, 1.f);
    light->setDiffuse(1.f, 1.f, 1.f, 1.f);
    light->setSpecular(1.f, 1.f, 1.f, 1.f);
    light->setConstantAttenuation (c.attenuation[0]);
    light->setLinearAttenuation   (c.attenuation[1]);
    light->setQuadraticAttenuation(c.attenuation[2]);
    light->setBeacon(beacon);
    endEditCP(light);
    return light;
}

using LightingTest = testsupport::GLTest;

// Lighting is per vertex: the plane is fine enough, and the probes lie where
// the light varies slowly, for the interpolation to stay below one step.
TEST_F(LightingTest, LitPlaneMatchesTheFixedFunctionFormula)
{
    for(const LightCase &c : s_cases)
    {
        SCOPED_TRACE(c.name);
        SceneSetup setup(256, 256);

        Matrix beaconMatrix;
        beaconMatrix.setRotate(Quaternion(Vec3f(1.f, 0.f, 0.f), c.beaconAngle * Pi / 180.f));
        NodePtr beacon = testsupport::makeTransformNode(beaconMatrix);
        testsupport::addChild(setup.root, beacon);

        SimpleMaterialPtr mat = SimpleMaterial::create();
        beginEditCP(mat);
        mat->setAmbient(s_ambient);
        mat->setDiffuse(s_diffuse);
        mat->setSpecular(s_specular);
        mat->setShininess(s_shininess);
        endEditCP(mat);

        GeometryPtr plane = makePlaneGeo(2.f, 2.f, 32, 32);
        testsupport::editCP(plane, Geometry::MaterialFieldMask, [&] { plane->setMaterial(mat); });

        NodePtr lightNode = makeNodeFor(makeLight(c, beacon));
        testsupport::addChild(lightNode, makeNodeFor(plane));
        testsupport::addChild(setup.root, lightNode);

        setup.render();

        Pnt3f p(setup.worldX(c.px), setup.worldY(c.py), 0.f);
        Vec3f expected = expectedColor(c, p);
        testsupport::RGBAf pixel = testsupport::readPixelFloat(c.px, c.py);
        // 8-bit framebuffer plus per-vertex interpolation: two steps.
        const float tol = 2.f / 255.f;
        EXPECT_NEAR(pixel[0], expected[0], tol);
        EXPECT_NEAR(pixel[1], expected[1], tol);
        EXPECT_NEAR(pixel[2], expected[2], tol);
    }
}

TEST_F(LightingTest, LightsAreOffAgainAfterTheFrame)
{
    SceneSetup setup(32, 32);
    NodePtr lightNode = makeNodeFor(makeLight(s_cases[0], setup.root));
    testsupport::addChild(setup.root, lightNode);

    setup.render();

    EXPECT_FALSE(glIsEnabled(GL_LIGHT0));
    EXPECT_EQ(setup.action->getActiveLightsMask(), 0u);
}

// Two quads, the light core above only the left one: with LocalLights the
// right one keeps just the global ambient term, without it both are lit; a
// switched-off light lights neither.
TEST_F(LightingTest, LocalLightsLightOnlyTheSubtreeBelowThem)
{
    const struct { const char *name; bool local, on; } cases[] = {
        { "global", false, true }, { "local", true, true }, { "off", false, false } };
    for(const auto &c : cases)
    {
        SCOPED_TRACE(c.name);
        SceneSetup setup(64, 64);
        setup.action->setLocalLights(c.local);

        SimpleMaterialPtr mat = SimpleMaterial::create();
        beginEditCP(mat);
        mat->setAmbient(s_ambient);
        mat->setDiffuse(s_diffuse);
        endEditCP(mat);

        LightPtr light = makeLight(s_cases[0], setup.root);
        testsupport::editCP(light, [&] { light->setOn(c.on); });
        NodePtr lightNode = makeNodeFor(light);
        testsupport::addChild(lightNode, testsupport::makeRect(-1.f, -1.f, 0.f, 1.f, 0.f, mat));
        testsupport::addChild(setup.root, lightNode);
        testsupport::addChild(setup.root, testsupport::makeRect(0.f, -1.f, 1.f, 1.f, 0.f, mat));

        setup.render();

        // Head-on white light: ambient term plus the full diffuse colour.
        const Real32 unlit = s_globalAmbient * s_ambient[0];
        const Real32 lit   = c.on ? unlit + s_diffuse[0] : unlit;
        EXPECT_NEAR(testsupport::readPixelFloat(16, 32)[0], lit, 1.5f / 255.f);
        EXPECT_NEAR(testsupport::readPixelFloat(48, 32)[0], c.local ? unlit : lit, 1.5f / 255.f);
    }
}

} // namespace
