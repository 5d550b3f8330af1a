#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <Lumora/DeferredDirectionalLight.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace osg;
using namespace testsupport;

namespace
{

const Pnt3f Eye(0, 0, 5);

typedef SurfaceParams Surface;

Vec3f unit(Vec3f v)
{
    v.normalize();
    return v;
}

class DeferredDirectionalLightTest : public DeferredSceneTest
{
  protected:
    DirectionalLightPtr createDirectional(const Vec3f &direction, const Color3f &diffuse,
                                          const Color3f &specular = Color3f(0, 0, 0))
    {
        return makeLight(DirectionalLightParams{direction, diffuse, specular});
    }

    void addSurface(const Surface &s)
    {
        // Larger than the view at z = 0, so that every pixel sees it.
        addPlane(8.0f, 0.0f, material(s.diffuse, s.specular, s.shininess));
    }

    // Every pixel of the plane at z = 0 against the equation.
    void expectPlane(const Vec3f &towardsLight, const Surface &surface,
                     const Color3f &lightDiffuse, const Color3f &lightSpecular)
    {
        PixelMismatches mismatches;
        checkPlane(LitImage(viewport), *scene,
                   onPlane(DirectionalLightParams{towardsLight, lightDiffuse, lightSpecular},
                           surface, Eye),
                   mismatches);
        EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    }

    Vec3f uniformVec3(IDeferredLight *light, const char *name)
    {
        Vec3f value(-100, -100, -100);
        EXPECT_TRUE(light->getParameterChunk()->getUniformParameter(name, value)) << name;
        return value;
    }
};

} // namespace

TEST_F(DeferredDirectionalLightTest, PlaneIsLitByNDotLEverywhere)
{
    const Surface surface = {Color3f(0.8f, 0.6f, 0.4f), Color3f(0, 0, 0), 1.0f};
    const Color3f diffuse(1.0f, 0.9f, 0.8f);
    addSurface(surface);

    DirectionalLightPtr light = createDirectional(Vec3f(0, 0, 1), diffuse);
    viewport->addLight(light);

    // Unnormalised on purpose; the last comes from behind the plane.
    const Vec3f directions[] =
    {
        Vec3f(0, 0, 1), Vec3f(1, 2, 3), Vec3f(-2, 0.5f, 1), Vec3f(0, -3, 0.5f), Vec3f(0.3f, 0, -1)
    };
    for(const Vec3f &direction : directions)
    {
        SCOPED_TRACE(testing::Message() << "direction " << direction);
        beginEditCP(light, DirectionalLight::DirectionFieldMask);
        light->setDirection(direction);
        endEditCP(light, DirectionalLight::DirectionFieldMask);
        renderFrame();
        expectPlane(direction, surface, diffuse, Color3f(0, 0, 0));
    }
    subRefCP(light);
}

TEST_F(DeferredDirectionalLightTest, SphereShadingFollowsItsNormal)
{
    const Real32  radius = 1.5f;
    const Color3f kd(0.9f, 0.7f, 0.5f);
    const Color3f ld(1.0f, 1.0f, 0.8f);

    GeometryPtr sphere = makeSphereGeo(5, radius);
    beginEditCP(sphere, Geometry::MaterialFieldMask);
    sphere->setMaterial(material(kd));
    endEditCP(sphere, Geometry::MaterialFieldMask);
    beginEditCP(root, Node::ChildrenFieldMask);
    root->addChild(makeNodeFor(sphere));
    endEditCP(root, Node::ChildrenFieldMask);

    const Vec3f towardsLight = unit(Vec3f(-1, 1, 1));
    DirectionalLightPtr light = createDirectional(Vec3f(-1, 1, 1), ld);
    viewport->addLight(light);
    renderFrame();

    LitImage                   image(viewport);
    testsupport::PixelMismatches mismatches(0.02f);
    int lit = 0, unlit = 0, background = 0;
    for(int y = 0; y < Size; ++y)
    {
        for(int x = 0; x < Size; ++x)
        {
            // The ray through the pixel centre against the ideal sphere.
            Vec3f  D       = unit(pixelOnPlane(x, y, 0.0f) - Eye);
            Vec3f  EC      = Eye - Pnt3f(0, 0, 0);
            Real32 b       = D.dot(EC);
            Real32 closest = std::sqrt(std::max(0.0f, EC.dot(EC) - b * b));

            Vec3f expected(0, 0, 0);
            if(closest > radius * 1.03f)
            {
                ++background;
            }
            else if(closest < radius)
            {
                Real32 t = -b - std::sqrt(radius * radius - closest * closest);
                Pnt3f  P = Eye + D * t;
                Vec3f  N = unit(P - Pnt3f(0, 0, 0));
                // Near the outline the facets stray too far from the sphere.
                if(N.dot(-D) < 0.35f)
                    continue;
                Real32 nDotL = std::max(0.0f, N.dot(towardsLight));
                ++(nDotL > 0.0f ? lit : unlit);
                for(int c = 0; c < 3; ++c)
                    expected[c] = nDotL * kd[c] * ld[c];
            }
            else
            {
                continue;
            }
            for(int c = 0; c < 3; ++c)
                mismatches.check(x, y, c, image.at(x, y, c), expected[c], expected[c]);
        }
    }
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    EXPECT_GT(lit,        200);
    EXPECT_GT(unlit,      50);
    EXPECT_GT(background, 1000);
    subRefCP(light);
}

TEST_F(DeferredDirectionalLightTest, SpecularHighlightSitsAtTheMirrorPoint)
{
    const Surface surface = {Color3f(0, 0, 0), Color3f(1, 1, 1), 32.0f};
    const Color3f specular(1.0f, 0.8f, 0.6f);
    addSurface(surface);

    const Vec3f direction(0.3f, 0.2f, 1.0f);
    DirectionalLightPtr light = createDirectional(direction, Color3f(1, 1, 1), specular);
    viewport->addLight(light);
    renderFrame();

    expectPlane(direction, surface, Color3f(1, 1, 1), specular);

    // The reflected light meets the eye where the plane mirrors it: from
    // (0, 0, 5) back along (-Lx, -Ly, Lz) to z = 0.
    const Vec3f  L       = unit(direction);
    const Real32 mirrorX = 5.0f * L[0] / L[2];
    const Real32 mirrorY = 5.0f * L[1] / L[2];
    const Real32 extent  = 5.0f * std::tan(deg2rad(30.0f));
    const Real32 pixelX  = (mirrorX / extent + 1.0f) * Size / 2 - 0.5f;
    const Real32 pixelY  = (mirrorY / extent + 1.0f) * Size / 2 - 0.5f;

    LitImage image(viewport);
    int   brightestX = -1, brightestY = -1;
    float brightest  = -1.0f;
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
            if(image.at(x, y, 0) > brightest)
            {
                brightest  = image.at(x, y, 0);
                brightestX = x;
                brightestY = y;
            }
    EXPECT_LE(std::fabs(brightestX - pixelX), 1.0f) << "brightest at x " << brightestX;
    EXPECT_LE(std::fabs(brightestY - pixelY), 1.0f) << "brightest at y " << brightestY;
    EXPECT_GT(brightest, 0.9f);
    subRefCP(light);
}

TEST_F(DeferredDirectionalLightTest, BeaconTurnsTheDirection)
{
    const Surface surface = {Color3f(0.9f, 0.8f, 0.7f), Color3f(0, 0, 0), 1.0f};
    const Color3f diffuse(1, 1, 1);
    addSurface(surface);

    // Two nested rotations about X, 30 then 20 degrees, with translations
    // that must not matter for a direction.
    TransformPtr parentCore = Transform::create();
    beginEditCP(parentCore, Transform::MatrixFieldMask);
    parentCore->setMatrix(testsupport::rotateXThenTranslate(deg2rad(30.0f), Vec3f(3, -2, 1)));
    endEditCP(parentCore, Transform::MatrixFieldMask);
    TransformPtr beaconCore = Transform::create();
    beginEditCP(beaconCore, Transform::MatrixFieldMask);
    beaconCore->setMatrix(testsupport::rotateXThenTranslate(deg2rad(20.0f), Vec3f(0, 4, 0)));
    endEditCP(beaconCore, Transform::MatrixFieldMask);

    NodePtr parent = makeNodeFor(parentCore);
    NodePtr beacon = makeNodeFor(beaconCore);
    beginEditCP(parent, Node::ChildrenFieldMask);
    parent->addChild(beacon);
    endEditCP(parent, Node::ChildrenFieldMask);
    beginEditCP(root, Node::ChildrenFieldMask);
    root->addChild(parent);
    endEditCP(root, Node::ChildrenFieldMask);

    DirectionalLightPtr light = createDirectional(Vec3f(0, 0, 1), diffuse);
    beginEditCP(light, Light::BeaconFieldMask);
    light->setBeacon(beacon);
    endEditCP(light, Light::BeaconFieldMask);
    viewport->addLight(light);
    renderFrame();

    // +Z turned by 50 degrees about X: (0, -sin, cos).
    const Real32 angle = deg2rad(50.0f);
    const Vec3f  world(0, -std::sin(angle), std::cos(angle));

    IDeferredLight *deferred = viewport->getLights().at(light);
    ASSERT_NE(deferred, nullptr);
    const Vec3f eyeDirection = uniformVec3(deferred, "vLightDirection");
    for(int i = 0; i < 3; ++i)
        EXPECT_NEAR(eyeDirection[i], world[i], 1e-5f) << "component " << i;

    expectPlane(world, surface, diffuse, Color3f(0, 0, 0));
    subRefCP(light);
}
