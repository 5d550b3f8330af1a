#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/LogCapture.h"
#include "support/SceneSetup.h"

#include <Lumora/DeferredDirectionalLight.h>
#include <Lumora/DeferredPointLight.h>
#include <Lumora/DeferredSpotLight.h>

#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGTransform.h>

#include <cmath>
#include <memory>
#include <string>

using namespace osg;
using namespace testsupport;

namespace
{

const Color3f Black(0, 0, 0);
const Color3f White(1, 1, 1);

class DeferredPointLightTest : public DeferredSceneTest
{
  protected:
    DeferredPointLight *deferred(LightPtr light)
    {
        DeferredRenderingViewport::LightMap::const_iterator it =
            viewport->getLights().find(light);
        return it == viewport->getLights().end()
                   ? NULL : dynamic_cast<DeferredPointLight *>(it->second);
    }
};

// The light's position is in the beacon's frame; a zero offset means no beacon.
struct EquationCase { const char *name; PointLightParams light; SurfaceParams surface;
                      Vec3f beaconOffset; };

class PointLightEquationTest : public DeferredPointLightTest,
                               public testing::WithParamInterface<EquationCase> {};

} // namespace

TEST_P(PointLightEquationTest, PlaneFollowsPhongAndAttenuation)
{
    const EquationCase &test = GetParam();
    addPlane(8.0f, 0.0f, material(test.surface.diffuse, test.surface.specular,
                                  test.surface.shininess));
    PointLightPtr light = makeLight(test.light);
    if(test.beaconOffset != Vec3f(0, 0, 0))
    {
        Matrix m;
        m.setTranslate(test.beaconOffset);
        NodePtr beacon = scene->addToRoot(makeTransformNode(m));
        editCP(light, Light::BeaconFieldMask, [&] { light->setBeacon(beacon); });
    }
    viewport->addLight(light);
    renderFrame();

    PointLightParams world = test.light;
    world.position += test.beaconOffset;
    ASSERT_NE(deferred(light), nullptr);
    const Pnt3f &placed = deferred(light)->getLightPosition();
    for(int i = 0; i < 3; ++i)
        EXPECT_NEAR(placed[i], world.position[i], 1e-5f);

    // Every pixel within the light's range; the rest is the volume tests'.
    const Real32    range = deferred(light)->getLightRange();
    PixelMismatches mismatches;
    const int compared = checkPlane(LitImage(viewport), *scene,
                                    onPlane(world, test.surface, scene->eye()), mismatches,
                                    [&](const Pnt3f &P) {
                                        return (P - world.position).length() <= 0.9f * range;
                                    });
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    EXPECT_GT(compared, Size * Size / 4);
    subRefCP(light);
}

INSTANTIATE_TEST_SUITE_P(
    DeferredPointLight, PointLightEquationTest,
    testing::Values(
        EquationCase{"DiffuseAllAttenuationTerms",
                     {Pnt3f(0.5f, -0.25f, 1.0f), Color3f(1.0f, 0.9f, 0.8f), Black,
                      Vec3f(1.0f, 0.1f, 0.5f)},
                     {Color3f(0.8f, 0.6f, 0.4f)}, Vec3f(0, 0, 0)},
        // The camera's mirror point in the plane lies under the light.
        EquationCase{"SpecularHighlight",
                     {Pnt3f(0.0f, 0.0f, 1.5f), Color3f(0.5f, 0.5f, 0.5f), White,
                      Vec3f(1, 0, 0)},
                     {Color3f(0.2f, 0.2f, 0.2f), Color3f(0.9f, 0.8f, 0.7f), 16.0f},
                     Vec3f(0, 0, 0)},
        // Range 10 around z = 3: the camera at z = 5 is inside the sphere.
        EquationCase{"CameraInsideTheVolume",
                     {Pnt3f(-0.5f, 0.5f, 3.0f), White, Black, Vec3f(0, 0, 10)},
                     {Color3f(0.5f, 1.0f, 0.25f)}, Vec3f(0, 0, 0)},
        EquationCase{"PlacedByItsBeacon",
                     {Pnt3f(0.25f, 0, 0.5f), White, Black, Vec3f(1, 0, 1)},
                     {Color3f(0.7f, 0.7f, 0.7f)}, Vec3f(0.0f, -0.5f, 0.5f)}),
    [](const testing::TestParamInfo<EquationCase> &info) { return std::string(info.param.name); });

TEST_F(DeferredPointLightTest, VolumeCoversOnlyTheLightsRange)
{
    addPlane(4.0f, 0.0f, material(Color3f(1, 1, 1)));

    // Quadratic 1000 gives a range of 1: a sphere of radius 1.1 seen from
    // outside. Inside it the equation holds, outside nothing is added.
    const Pnt3f   lightPos(0.0f, 0.0f, 0.5f);
    const Vec3f   att(0.0f, 0.0f, 1000.0f);
    PointLightPtr light = makeLight(PointLightParams{lightPos, White, Black, att});
    viewport->addLight(light);
    renderFrame();

    DeferredPointLight *deferredLight = deferred(light);
    ASSERT_NE(deferredLight, nullptr);
    EXPECT_NEAR(deferredLight->getLightRange(), 1.0f, 1e-5f);

    // Pixels whose view ray misses the sphere get nothing; the plane points
    // within the range get the full equation.
    const Pnt3f    eye = scene->eye();
    const LitImage image(viewport);
    for(int x = 0; x < Size; x += 3)
    {
        Pnt3f  P      = pixelOnPlane(x, 32, 0.0f);
        Vec3f  ray    = P - eye;
        ray.normalize();
        Vec3f  toLight = lightPos - eye;
        Real32 miss    = (toLight - ray * toLight.dot(ray)).length();
        Real32 got     = image.at(x, 32, 0);
        if(miss > 1.1f)
        {
            EXPECT_EQ(got, 0.0f) << "pixel " << x;
        }
        else if((P - lightPos).length() < 1.0f)
        {
            EXPECT_NEAR(got, lightAt(PointLightParams{lightPos, White, Black, att},
                                     SurfaceParams{White}, P, Vec3f(0, 0, 1), eye).high[0], 1e-4f)
                << "pixel " << x;
        }
    }
    subRefCP(light);
}

// Each kind refuses another kind's light with a warning and keeps what it had.
TEST_F(DeferredPointLightTest, WrongLightTypeWarnsAndChangesNothing)
{
    PointLightPtr       point = makeLight(PointLightParams{Pnt3f(1, 2, 3),
                                                           Color3f(0.2f, 0.4f, 0.6f)});
    SpotLightPtr        spot  = makeLight(SpotLightParams{Pnt3f(1, 2, 3), Vec3f(0, 0, -1),
                                                          0.5f, 1.0f, Vec3f(1, 0, 0),
                                                          Color3f(0.2f, 0.4f, 0.6f), Black});
    DirectionalLightPtr sun   = makeLight(DirectionalLightParams{Vec3f(0, 0, 1),
                                                                 Color3f(0.2f, 0.4f, 0.6f)});
    struct Case { const char *name; std::unique_ptr<IDeferredLight> deferredLight;
                  LightPtr own, wrong; };
    Case cases[] =
    {
        {"DeferredPointLight",       std::unique_ptr<IDeferredLight>(new DeferredPointLight),
         point, spot},
        {"DeferredSpotLight",        std::unique_ptr<IDeferredLight>(new DeferredSpotLight),
         spot, point},
        {"DeferredDirectionalLight", std::unique_ptr<IDeferredLight>(new DeferredDirectionalLight),
         sun, spot},
    };
    Matrix projection;
    MatrixPerspective(projection, deg2rad(60.0f), 1.0f, 1.0f, 10.0f);
    for(Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        c.deferredLight->update(Matrix(), projection, Vec2f(1, 10), c.own, 1.0f);
        auto *volumeLight = dynamic_cast<DeferredPointLight *>(c.deferredLight.get());
        const Matrix before = volumeLight ? volumeLight->getVolumeTransform()->getMatrix()
                                          : Matrix();
        LogCapture log(LOG_WARNING);
        c.deferredLight->update(Matrix(), projection, Vec2f(1, 10), c.wrong, 1.0f);
        c.deferredLight->update(Matrix(), projection, Vec2f(1, 10), NullFC, 1.0f);
        EXPECT_EQ(log.count(std::string(c.name) +
                            "::update - Wrong osg light type for update!"), 2u);
        Vec3f diffuse;
        EXPECT_TRUE(c.deferredLight->getParameterChunk()->getUniformParameter("vLightDiffuse",
                                                                               diffuse));
        EXPECT_EQ(diffuse, Vec3f(0.2f, 0.4f, 0.6f));
        EXPECT_EQ(c.deferredLight->getVolumeRoot()->getTravMask(), 0xFFFFFFFFu);
        if(volumeLight)
        {
            EXPECT_TRUE(volumeLight->getVolumeTransform()->getMatrix().equals(before, 0.0f));
        }
    }
    subRefCP(sun);
    subRefCP(spot);
    subRefCP(point);
}
