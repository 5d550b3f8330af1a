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
#include <set>
#include <string>

using namespace osg;
using namespace testsupport;

namespace
{

const Color3f Black(0, 0, 0);
const Color3f White(1, 1, 1);

PointLightPtr createPointLight(const Pnt3f &position, const Color3f &diffuse,
                               const Color3f &specular, const Vec3f &attenuation)
{
    return makeLight(PointLightParams{position, diffuse, specular, attenuation});
}

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

struct EquationCase
{
    const char      *name;
    PointLightParams light;         // position in the beacon's frame
    SurfaceParams    surface;
    Vec3f            beaconOffset;  // none if zero
};

class PointLightEquationTest : public DeferredPointLightTest,
                               public testing::WithParamInterface<EquationCase>
{
};

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
        beginEditCP(light, Light::BeaconFieldMask);
        light->setBeacon(beacon);
        endEditCP(light, Light::BeaconFieldMask);
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
    PointLightPtr light = createPointLight(lightPos, Color3f(1, 1, 1), Black, att);
    viewport->addLight(light);
    renderFrame();

    DeferredPointLight *deferredLight = deferred(light);
    ASSERT_NE(deferredLight, nullptr);
    EXPECT_NEAR(deferredLight->getLightRange(), 1.0f, 1e-5f);

    // Pixels whose view ray misses the sphere get nothing; the plane points
    // within the range get the full equation.
    const Pnt3f eye = scene->eye();
    for(int x = 0; x < Size; x += 3)
    {
        Pnt3f  P      = pixelOnPlane(x, 32, 0.0f);
        Vec3f  ray    = P - eye;
        ray.normalize();
        Vec3f  toLight = lightPos - eye;
        Real32 miss    = (toLight - ray * toLight.dot(ray)).length();
        Real32 got     = lit(x, 32)[0];
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

TEST_F(DeferredPointLightTest, RangeSetsTheSphereScale)
{
    struct Case
    {
        Vec3f  attenuation;
        Real32 scale;
    };
    const Case cases[] =
    {
        {Vec3f(1, 0, 0),     1100000.0f},
        {Vec3f(0, 0, 0.001f), 1100.0f},
        {Vec3f(1, 0.5f, 0),   2200.0f},
    };
    for(const Case &c : cases)
    {
        const Pnt3f        position(1, -2, 3);
        PointLightPtr      light = createPointLight(position, Color3f(1, 1, 1), Black,
                                                    c.attenuation);
        DeferredPointLight deferredLight;
        deferredLight.update(Matrix(), Matrix(), Vec2f(1, 10), light, 1.0f);

        Matrix m = deferredLight.getVolumeTransform()->getMatrix();
        for(int i = 0; i < 3; ++i)
        {
            EXPECT_NEAR(m[i][i], c.scale, c.scale * 1e-5f);
            EXPECT_NEAR(m[3][i], position[i], 1e-5f);
        }
        // The unit sphere's rim lands scale away from the light.
        Pnt3f rim;
        m.multFullMatrixPnt(Pnt3f(0, 1, 0), rim);
        EXPECT_NEAR((rim - position).length(), c.scale, c.scale * 1e-5f);
        subRefCP(light);
    }
}

// Each kind refuses another kind's light with a warning and keeps what it had.
TEST_F(DeferredPointLightTest, WrongLightTypeWarnsAndChangesNothing)
{
    PointLightPtr       point = createPointLight(Pnt3f(1, 2, 3), Color3f(0.2f, 0.4f, 0.6f),
                                                 Black, Vec3f(1, 0, 0));
    SpotLightPtr        spot  = makeLight(SpotLightParams{Pnt3f(1, 2, 3), Vec3f(0, 0, -1),
                                                          0.5f, 1.0f, Vec3f(1, 0, 0),
                                                          Color3f(0.2f, 0.4f, 0.6f), Black});
    DirectionalLightPtr sun   = makeLight(DirectionalLightParams{Vec3f(0, 0, 1),
                                                                 Color3f(0.2f, 0.4f, 0.6f)});
    struct Case
    {
        const char                     *name;
        std::unique_ptr<IDeferredLight> deferredLight;
        LightPtr                        own, wrong;
    };
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

TEST_F(DeferredPointLightTest, FaceCamerasClipToSceneAndRange)
{
    // Scene: a box below the light along -Z, from z = -5 to z = -3.
    DynamicVolume scene(DynamicVolume::BOX_VOLUME);
    scene.extendBy(Pnt3f(-1, -1, -5));
    scene.extendBy(Pnt3f(1, 1, -3));

    FrustumVolume everything;
    Matrix        toWorld, viewing, projection;
    MatrixLookAt(toWorld, Pnt3f(0, 0, 20), Pnt3f(0, 0, 0), Vec3f(0, 1, 0));
    toWorld.inverse(viewing);
    MatrixPerspective(projection, deg2rad(60.0f), 1.0f, 0.1f, 100.0f);
    projection.mult(viewing);
    everything.setPlanes(projection);

    PointLightPtr light = createPointLight(Pnt3f(0, 0, 0), Color3f(1, 1, 1), Black,
                                           Vec3f(1, 0, 0));
    DeferredPointLight deferredLight;
    deferredLight.update(Matrix(), Matrix(), Vec2f(1, 10), light, 0.5f);

    MatrixCameraPtr camera = MatrixCamera::create();
    addRefCP(camera);

    // -Z faces the box: its depth range is the box's, 3 to 5.
    // Padded by a few thousandths, so that neither end is clipped.
    ASSERT_TRUE(deferredLight.updateLightCamera(0, everything, scene, camera));
    const Vec2f range = deferredLight.getLightNearFars()[0];
    EXPECT_LT(range[0], 3.0f);
    EXPECT_GT(range[0], 2.99f);
    EXPECT_GT(range[1], 5.0f);
    EXPECT_LT(range[1], 5.01f);
    EXPECT_FLOAT_EQ(camera->getNear(), range[0]);
    EXPECT_FLOAT_EQ(camera->getFar(),  range[1]);
    EXPECT_TRUE(camera->getModelviewMatrix().equals(deferredLight.getLightViews()[0], 1e-6f));
    // The face camera sees the box's nearest point straight ahead.
    Pnt3f onAxis;
    camera->getModelviewMatrix().multFullMatrixPnt(Pnt3f(0, 0, -3), onAxis);
    EXPECT_NEAR(onAxis[2], -3.0f, 1e-4f);
    bool uploaded = false;
    EXPECT_TRUE(deferredLight.getParameterChunk()->getUniformParameter("bCastShadows", uploaded));
    EXPECT_TRUE(uploaded);

    // +Z looks away from all of it.
    EXPECT_FALSE(deferredLight.updateLightCamera(1, everything, scene, camera));
    EXPECT_LE(deferredLight.getLightNearFars()[1][1], 0.0f);

    // A light inside a large scene: near clamps to 0.01, far to the range.
    DynamicVolume large(DynamicVolume::BOX_VOLUME);
    large.extendBy(Pnt3f(-100, -100, -100));
    large.extendBy(Pnt3f(100, 100, 100));
    PointLightPtr dim = createPointLight(Pnt3f(0, 0, 0), Color3f(1, 1, 1), Black,
                                         Vec3f(0, 0, 1));
    DeferredPointLight inside;
    inside.update(Matrix(), Matrix(), Vec2f(1, 10), dim, 0.5f);
    for(UInt16 face = 0; face < 6; ++face)
    {
        EXPECT_TRUE(inside.updateLightCamera(face, everything, large, camera)) << face;
        EXPECT_NEAR(inside.getLightNearFars()[face][0], 0.01f, 1e-6f);
        EXPECT_NEAR(inside.getLightNearFars()[face][1], std::sqrt(1000.0f), 1e-3f);
    }
    // A map of its own for each face, and none beyond the sixth.
    std::set<RenderTarget *> maps;
    for(UInt16 face = 0; face < 6; ++face)
        maps.insert(inside.getShadowmap(face));
    EXPECT_EQ(maps.size(), 6u);
    EXPECT_EQ(maps.count(nullptr), 0u);
    EXPECT_EQ(inside.getShadowmap(6), nullptr);

    subRefCP(camera);
    subRefCP(dim);
    subRefCP(light);
}

// Texture k of a light's material sits on unit k, and each sampler names
// the unit of its texture.
TEST_F(DeferredPointLightTest, SamplersGetTheUnitsOfTheirTextures)
{
    addPlane(4.0f, 0.0f, material(Color3f(1, 1, 1)));

    PointLightPtr point = createPointLight(Pnt3f(0, 0, 1), Color3f(1, 1, 1), Black,
                                           Vec3f(1, 0, 0));
    SpotLightPtr spot = SpotLight::create();
    addRefCP(spot);
    DirectionalLightPtr sun = DirectionalLight::create();
    addRefCP(sun);
    // Shadow maps follow these; the shadow tests bind them.
    for(LightPtr light : {LightPtr(point), LightPtr(spot), LightPtr(sun)})
        setShadowIntensity(light, 1.0f);
    viewport->addLight(point);
    viewport->addLight(spot);
    viewport->addLight(sun);
    renderFrame();

    RenderTarget &gbuffer = viewport->getGBufferTarget();
    struct Binding
    {
        const char     *sampler;
        StateChunkPtr   texture;
    };
    const Binding gbufferBindings[] =
    {
        {"texGBuffer0", gbuffer.getTargetTexture(0)},
        {"texGBuffer1", gbuffer.getTargetTexture(1)},
        {"texGBuffer2", gbuffer.getTargetTexture(2)},
        {"texGBuffer4", gbuffer.getTargetTexture(4)},
    };

    const LightPtr lights[] = {point, spot, sun};
    for(LightPtr light : lights)
    {
        IDeferredLight *deferredLight = viewport->getLights().find(light)->second;
        std::vector<Binding> bindings(std::begin(gbufferBindings), std::end(gbufferBindings));
        if(light == point)
            bindings.push_back({"texCubeIndirection", DeferredPointLight::s_IndirectonCubeTex});

        // The material's texture chunks, in unit order.
        StatePtr state = deferredLight->getMaterial()->getState(0);
        ASSERT_NE(state, NullFC);
        std::vector<StateChunkPtr> units;
        for(UInt32 unit = 0; unit < 16; ++unit)
        {
            StateChunkPtr chunk = state->getChunk(TextureChunk::getStaticClassId() + unit);
            if(chunk != NullFC)
                units.push_back(chunk);
        }

        EXPECT_EQ(deferredLight->getNextTextureUnit(), bindings.size());
        ASSERT_EQ(units.size(), bindings.size());
        for(size_t k = 0; k < bindings.size(); ++k)
        {
            Int32 unit = -1;
            EXPECT_TRUE(deferredLight->getParameterChunk()->getUniformParameter(
                bindings[k].sampler, unit));
            ASSERT_GE(unit, 0);
            ASSERT_LT(size_t(unit), units.size());
            EXPECT_EQ(units[unit], bindings[k].texture) << bindings[k].sampler;
        }
        Int32 unused;
        EXPECT_FALSE(deferredLight->getParameterChunk()->getUniformParameter("texGBuffer3",
                                                                              unused));
    }

    // Fewer G-buffer textures bind only those.
    DeferredSpotLight partial;
    partial.attachGBuffer(gbuffer, 3);
    EXPECT_EQ(partial.getNextTextureUnit(), 3);
    Int32 unit = -1;
    EXPECT_TRUE(partial.getParameterChunk()->getUniformParameter("texGBuffer2", unit));
    EXPECT_EQ(unit, 2);
    EXPECT_FALSE(partial.getParameterChunk()->getUniformParameter("texGBuffer4", unit));

    subRefCP(sun);
    subRefCP(spot);
    subRefCP(point);
}

// Lights without shadows draw with one shared program and a shadow caster
// with its own; either way the lights together must add up to each alone,
// which fails if one light's values reach another's volume.
TEST_F(DeferredPointLightTest, LightsSharingAProgramEachAddTheirOwnLight)
{
    const Color3f kd(0.8f, 0.7f, 0.6f), ks(0.5f, 0.5f, 0.5f);
    addPlane(4.0f, 0.0f, material(kd, ks, 8.0f));

    struct Case
    {
        const char *name;
        Real32      middleShadowIntensity;
    };
    const Case cases[] = { {"none casts shadows", 1.0f}, {"the middle one casts shadows", 0.5f} };

    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        const Pnt3f   positions   [3] = {Pnt3f(-1.0f, 0.5f, 1.0f), Pnt3f(0.5f, -0.5f, 1.5f),
                                         Pnt3f(1.0f, 1.0f, 0.8f)};
        const Color3f diffuse     [3] = {Color3f(1, 0, 0), Color3f(0, 1, 0),
                                         Color3f(0.3f, 0.3f, 1)};
        const Color3f specular    [3] = {Color3f(1, 1, 1), Color3f(0, 0, 1), Black};
        const Vec3f   attenuations[3] = {Vec3f(1, 0, 0.3f), Vec3f(1, 0.2f, 0.1f),
                                         Vec3f(1, 0, 0.5f)};
        PointLightPtr lights[3];
        for(int i = 0; i < 3; ++i)
            lights[i] = createPointLight(positions[i], diffuse[i], specular[i], attenuations[i]);
        for(int i = 0; i < 3; ++i)
        {
            setShadowIntensity(lights[i], i == 1 ? c.middleShadowIntensity : 1.0f);
        }

        // Each light alone, summed; without shadows, as the lighting model
        // says, so that no light draws with another's values.
        std::vector<Vec3f> sum(Size * Size, Vec3f(0, 0, 0));
        for(int i = 0; i < 3; ++i)
        {
            PointLightPtr light = lights[i];
            viewport->addLight(light);
            renderFrame();
            // No looser than 0.02 where the plane is lit up to 1.5.
            PixelMismatches mismatches(0.005f);
            if(i != 1 || c.middleShadowIntensity >= 1.0f)
                checkPlane(LitImage(viewport), *scene,
                           onPlane(PointLightParams{positions[i], diffuse[i], specular[i],
                                                    attenuations[i]},
                                   SurfaceParams{kd, ks, 8.0f}, scene->eye()),
                           mismatches, [](const Pnt3f &P) {
                               return std::fabs(P[0]) < 1.9f && std::fabs(P[1]) < 1.9f;
                           });
            EXPECT_EQ(mismatches.count(), 0) << "light " << i << ": " << mismatches.text();
            for(int y = 0; y < Size; ++y)
                for(int x = 0; x < Size; ++x)
                {
                    const testsupport::RGBAf p = lit(x, y);
                    sum[y * Size + x] += Vec3f(p[0], p[1], p[2]);
                }
            viewport->subLight(light);
        }

        for(PointLightPtr light : lights)
            viewport->addLight(light);
        renderFrame();

        SHLChunkPtr programs[3];
        for(int i = 0; i < 3; ++i)
        {
            ASSERT_NE(deferred(lights[i]), nullptr);
            programs[i] = deferred(lights[i])->getActiveParameterChunk()->getSHLChunk();
        }
        EXPECT_EQ(programs[0], programs[2]);
        EXPECT_EQ(programs[0] == programs[1], c.middleShadowIntensity >= 1.0f);

        int wrong = 0;
        Real32 lit0 = 0.0f;
        for(int y = 0; y < Size; ++y)
            for(int x = 0; x < Size; ++x)
            {
                const testsupport::RGBAf p = lit(x, y);
                const Vec3f &s = sum[y * Size + x];
                lit0 += s[0] + s[1] + s[2];
                // Half floats: a step of 1/255 or a part in 500 of the value.
                for(int k = 0; k < 3; ++k)
                {
                    if(std::fabs(p[k] - s[k]) > osgMax(1.0f / 255.0f, s[k] / 500.0f))
                        ++wrong;
                }
            }
        EXPECT_GT(lit0, 1.0f);   // the lights reach the plane
        EXPECT_EQ(wrong, 0);

        for(PointLightPtr light : lights)
        {
            viewport->subLight(light);
            subRefCP(light);
        }
    }
}
