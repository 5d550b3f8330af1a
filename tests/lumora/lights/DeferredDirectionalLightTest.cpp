#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/SceneSetup.h"

#include <Lumora/DeferredDirectionalLight.h>

#include <cmath>

using namespace osg;
using namespace testsupport;

namespace
{

class DeferredDirectionalLightTest : public DeferredSceneTest
{
  protected:
    // Every pixel of a plane at z = 0, larger than the view, against the
    // equation.
    void expectPlane(const DirectionalLightParams &light, const SurfaceParams &surface)
    {
        PixelMismatches mismatches;
        checkPlane(LitImage(viewport), *scene, onPlane(light, surface, scene->eye()), mismatches);
        EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    }
};

} // namespace

TEST_F(DeferredDirectionalLightTest, PlaneIsLitByNDotLEverywhere)
{
    const SurfaceParams surface = {Color3f(0.8f, 0.6f, 0.4f)};
    addPlane(8.0f, 0.0f, material(surface.diffuse));
    DirectionalLightParams params = {Vec3f(0, 0, 1), Color3f(1.0f, 0.9f, 0.8f)};
    DirectionalLightPtr    light  = makeLight(params);
    viewport->addLight(light);

    // Unnormalised on purpose; the last comes from behind the plane.
    for(const Vec3f &direction : {Vec3f(0, 0, 1), Vec3f(1, 2, 3), Vec3f(-2, 0.5f, 1),
                                  Vec3f(0, -3, 0.5f), Vec3f(0.3f, 0, -1)})
    {
        SCOPED_TRACE(testing::Message() << "direction " << direction);
        editCP(light, DirectionalLight::DirectionFieldMask,
               [&] { light->setDirection(direction); });
        renderFrame();
        params.direction = direction;
        expectPlane(params, surface);
    }
    subRefCP(light);
}

TEST_F(DeferredDirectionalLightTest, BeaconTurnsTheDirection)
{
    const SurfaceParams surface = {Color3f(0.9f, 0.8f, 0.7f)};
    addPlane(8.0f, 0.0f, material(surface.diffuse));

    // Two nested rotations about X, 30 then 20 degrees, with translations
    // that must not matter for a direction.
    NodePtr parent = makeTransformNode(rotateXThenTranslate(deg2rad(30.0f), Vec3f(3, -2, 1)));
    NodePtr beacon = makeTransformNode(rotateXThenTranslate(deg2rad(20.0f), Vec3f(0, 4, 0)));
    addChild(parent, beacon);
    scene->addToRoot(parent);

    DirectionalLightPtr light = makeLight(DirectionalLightParams{Vec3f(0, 0, 1)});
    editCP(light, Light::BeaconFieldMask, [&] { light->setBeacon(beacon); });
    viewport->addLight(light);
    renderFrame();

    // +Z turned by 50 degrees about X: (0, -sin, cos).
    const Real32 angle = deg2rad(50.0f);
    const Vec3f  world(0, -std::sin(angle), std::cos(angle));

    IDeferredLight *deferred = viewport->getLights().at(light);
    ASSERT_NE(deferred, nullptr);
    Vec3f eyeDirection(-100, -100, -100);
    EXPECT_TRUE(deferred->getParameterChunk()->getUniformParameter("vLightDirection",
                                                                    eyeDirection));
    for(int i = 0; i < 3; ++i)
        EXPECT_NEAR(eyeDirection[i], world[i], 1e-5f) << "component " << i;

    expectPlane(DirectionalLightParams{world}, surface);
    subRefCP(light);
}
