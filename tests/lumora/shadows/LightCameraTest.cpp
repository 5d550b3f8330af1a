#include "lumora/shadows/ShadowTestGeometry.h"

#include <Lumora/DeferredDirectionalLight.h>
#include <Lumora/DeferredSpotLight.h>

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGSpotLight.h>

#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <cmath>

using namespace osg;
using namespace shadowtest;

namespace
{

void expectMatrixNear(const Matrix &got, const Matrix &expected, Real32 tolerance)
{
    for(int row = 0; row < 4; ++row)
        for(int column = 0; column < 4; ++column)
            EXPECT_NEAR(got[column][row], expected[column][row],
                        tolerance * (1.0f + std::fabs(expected[column][row])))
                << "row " << row << ", column " << column;
}

// The viewer: at (1, 3, 8) looking at the origin, 60 degrees, square.
struct Viewer
{
    Matrix        viewing;
    Matrix        projection;
    Vec2f         nearFar = Vec2f(0.5f, 50.0f);
    FrustumVolume frustum;

    Viewer()
    {
        viewing    = viewMatrix(Vec3f(1, 3, 8), Vec3f(-1, -3, -8), Vec3f(0, 1, 0));
        projection = perspective(deg2rad(60.0f), 1.0f, nearFar[0], nearFar[1]);
        Matrix clip = projection;
        clip.mult(viewing);
        frustum.setPlanes(clip);
    }
};

DynamicVolume sceneBox(const Pnt3f &low, const Pnt3f &high)
{
    DynamicVolume volume(DynamicVolume::BOX_VOLUME);
    volume.extendBy(low);
    volume.extendBy(high);
    return volume;
}

// Depth range of a box seen along -Z of a view.
Vec2f depthRange(const Matrix &view, const Pnt3f &low, const Pnt3f &high)
{
    Vec2f range(1e30f, -1e30f);
    for(int i = 0; i < 8; ++i)
    {
        Pnt3f corner((i & 1) ? high[0] : low[0], (i & 2) ? high[1] : low[1],
                     (i & 4) ? high[2] : low[2]);
        Real32 depth = -transformed(view, corner)[2];
        range[0] = std::min(range[0], depth);
        range[1] = std::max(range[1], depth);
    }
    return range;
}

// The light's range encloses the scene's, padded by less than 1 %.
void expectEnclosingRange(const Vec2f &got, const Vec2f &scene)
{
    const Real32 slack = 0.01f * (scene[1] - scene[0]);
    EXPECT_LE(got[0], scene[0]);
    EXPECT_GT(got[0], scene[0] - slack);
    EXPECT_GE(got[1], scene[1]);
    EXPECT_LT(got[1], scene[1] + slack);
}

class LightCameraTest : public testsupport::WindowTest
{
  protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        camera = MatrixCamera::create();
        addRefCP(camera);
    }

    void TearDown() override
    {
        subRefCP(camera);
        WindowTest::TearDown();
    }

    MatrixCameraPtr camera;
    Viewer          viewer;
};

// alternativeUp: the direction lies near +-(1, 1, 1) / sqrt(3).
struct SpotCase { const char *name; Vec3f direction; bool alternativeUp; };

class SpotLightCameraTest : public LightCameraTest, public testing::WithParamInterface<SpotCase> {};

TEST_P(SpotLightCameraTest, ViewLooksAlongTheSpotAndProjectionOpensToTheCutOff)
{
    const SpotCase &c        = GetParam();
    const Pnt3f     position(0.5f, 6.0f, 1.0f);
    const Real32    cutOff   = deg2rad(25.0f);

    SpotLightPtr spot = testsupport::makeLight(testsupport::SpotLightParams{
        position, c.direction, cutOff, 0.0f, Vec3f(1.0f, 0.0f, 0.01f), Color3f(1, 1, 1),
        Color3f(1, 1, 1)});

    DeferredSpotLight light;
    light.update(viewer.viewing, viewer.projection, viewer.nearFar, spot, 0.5f);
    const Pnt3f   low(-20, -20, -20), high(20, 2, 20);
    DynamicVolume scene = sceneBox(low, high);
    ASSERT_TRUE(light.updateLightCamera(0, viewer.frustum, scene, camera));

    Vec3f d = c.direction;
    d.normalize();
    const bool useAlternative = d[0] * d[1] + d[1] * d[2] + d[0] * d[2] > 0.99f;
    ASSERT_EQ(useAlternative, c.alternativeUp);
    Vec3f up = useAlternative
        ? Vec3f(d[1] * d[2], -d[0] * d[2], 0.0f)
        : Vec3f(d[2] * d[2] - d[0] * d[1], d[0] * d[0] - d[1] * d[2], d[1] * d[1] - d[0] * d[2]);
    up.normalize();
    const Matrix view = viewMatrix(Vec3f(position), d, up);
    expectMatrixNear(camera->getModelviewMatrix(), view, 1e-5f);

    // The range is the scene's in front of the light, cut at the light's
    // reach (1 / 1000 of the quadratic term's light at 316).
    Vec2f scene_ = depthRange(view, low, high);
    scene_[0]    = std::max(scene_[0], 0.01f);
    scene_[1]    = std::min(scene_[1], std::sqrt(1.0f / (0.01f * 0.001f)));
    const Vec2f range(camera->getNear(), camera->getFar());
    expectEnclosingRange(range, scene_);

    // What the shader gets of these the shadow tests see in their images.
    const Matrix projection = perspective(2.0f * cutOff, 1.0f, range[0], range[1]);
    expectMatrixNear(camera->getProjectionMatrix(), projection, 1e-5f);
    subRefCP(spot);
}

INSTANTIATE_TEST_SUITE_P(DeferredSpotLight, SpotLightCameraTest,
    testing::Values(SpotCase{"Slanted",       Vec3f(-0.3f, -1.0f, 0.4f),  false},
                    SpotCase{"StraightDown",  Vec3f(0.0f, -1.0f, 0.0f),   false},
                    SpotCase{"AlongMinusOnes", Vec3f(-1.0f, -1.0f, -1.0f), true},
                    SpotCase{"NearMinusOnes", Vec3f(-1.0f, -1.02f, -0.98f), true}),
    [](const testing::TestParamInfo<SpotCase> &info) { return std::string(info.param.name); });

// direction: towards the light, not unit.
struct SunCase { const char *name; Vec3f direction, up; };

class DirectionalLightCameraTest : public LightCameraTest,
                                   public testing::WithParamInterface<SunCase> {};

// Splits, their frusta, the light view around the scene, each split's
// box, and the snapping of the world origin to a texel corner, all rebuilt
// here from their definitions.
TEST_P(DirectionalLightCameraTest, SplitCamerasFitTheirSplitsAndSnapToTexels)
{
    const SunCase &c = GetParam();
    DirectionalLightPtr sun =
        testsupport::makeLight(testsupport::DirectionalLightParams{c.direction});

    DeferredDirectionalLight light;
    // Maps of the size the shadow mapper gives them, so that snapping runs.
    for(UInt16 i = 0; i < 3; ++i)
    {
        light.getShadowmap(i)->initialize(window, 0, 0, 1023, 1023);
        light.getShadowmap(i)->addTargetTexture(GL_RGB32F_ARB, GL_RGB, GL_LINEAR,
                                                Image::OSG_RGB_PF,
                                                Image::OSG_FLOAT32_IMAGEDATA, 1.0f, 1);
    }

    light.update(viewer.viewing, viewer.projection, viewer.nearFar, sun, 0.5f);
    const Pnt3f   low(-4, -1, -4), high(4, 2, 4);
    DynamicVolume scene = sceneBox(low, high);

    // Splits: the scene's depth range seen by the viewer, divided.
    Vec2f viewRange = depthRange(viewer.viewing, low, high);
    const std::vector<Real32> splits =
        cascadeSplits(std::max(viewer.nearFar[0], viewRange[0]), viewRange[1]);

    // Light view: from five scene radii out along the light's direction,
    // looking at the scene's centre.
    const Pnt3f  centre(0.0f, 0.5f, 0.0f);
    const Real32 radius = (high - centre).length();
    const Vec3f  eye    = Vec3f(centre) + c.direction * (5.0f * radius);
    const Matrix view   = viewMatrix(eye, Vec3f(centre) - eye, c.up);
    Matrix fromEye;
    viewer.viewing.inverse(fromEye);

    for(UInt16 split = 0; split < 3; ++split)
    {
        SCOPED_TRACE(testing::Message() << "split " << split);
        ASSERT_TRUE(light.updateLightCamera(split, viewer.frustum, scene, camera));
        EXPECT_NEAR(light.getSplitDistance(split),     splits[split],     1e-3f * splits[split]);
        EXPECT_NEAR(light.getSplitDistance(split + 1), splits[split + 1], 1e-3f * splits[split + 1]);
        if(split < 2)
            expectMatrixNear(camera->getModelviewMatrix(), view, 1e-4f);

        // The split's corners: the viewer's frustum cut at the two depths.
        Real32 left = 1e30f, right = -1e30f, bottom = 1e30f, top = -1e30f, deepest = 1e30f;
        const Real32 t = std::tan(deg2rad(30.0f));
        for(int i = 0; i < 8; ++i)
        {
            const Real32 depth = splits[split + (i >> 2)];
            const Pnt3f  inEye(((i & 1) ? 1 : -1) * t * depth, ((i & 2) ? 1 : -1) * t * depth,
                               -depth);
            const Pnt3f  inLight = transformed(view, transformed(fromEye, inEye));
            left    = std::min(left,   inLight[0]);
            right   = std::max(right,  inLight[0]);
            bottom  = std::min(bottom, inLight[1]);
            top     = std::max(top,    inLight[1]);
            deepest = std::min(deepest, inLight[2]);
        }
        // From the scene's nearest point to the split's farthest corner.
        const Vec2f expectedRange(depthRange(view, low, high)[0], -deepest);
        const Vec2f range(camera->getNear(), camera->getFar());
        expectEnclosingRange(range, expectedRange);

        Matrix projection = orthographic(left, right, bottom, top, range[0], range[1]);
        Matrix viewProjection = projection;
        viewProjection.mult(view);
        const Pnt3f  origin = transformed(viewProjection, Pnt3f(0, 0, 0));
        const Real32 x = origin[0] * 512.0f, y = origin[1] * 512.0f;
        Matrix snap;
        snap.setTranslate((std::floor(x + 0.5f) - x) / 512.0f,
                          (std::floor(y + 0.5f) - y) / 512.0f, 0.0f);
        projection.multLeft(snap);
        expectMatrixNear(camera->getProjectionMatrix(), projection, 1e-4f);

        // After snapping the world origin falls on a texel corner.
        Matrix snapped = camera->getProjectionMatrix();
        snapped.mult(camera->getModelviewMatrix());
        const Pnt3f onCorner = transformed(snapped, Pnt3f(0, 0, 0));
        EXPECT_NEAR(onCorner[0] * 512.0f, std::floor(onCorner[0] * 512.0f + 0.5f), 2e-3f);
        EXPECT_NEAR(onCorner[1] * 512.0f, std::floor(onCorner[1] * 512.0f + 0.5f), 2e-3f);
    }
    subRefCP(sun);
}

INSTANTIATE_TEST_SUITE_P(DeferredDirectionalLight, DirectionalLightCameraTest,
    testing::Values(SunCase{"Slanted",     Vec3f(0.3f, 0.9f, 0.2f), Vec3f(0, 1, 0)},
                    SunCase{"Overhead",    Vec3f(0.0f, 1.0f, 0.0f), Vec3f(0, 0, 1)},
                    SunCase{"LowFromSide", Vec3f(1.0f, 0.3f, -0.5f), Vec3f(0, 1, 0)}),
    [](const testing::TestParamInfo<SunCase> &info) { return std::string(info.param.name); });

} // namespace
