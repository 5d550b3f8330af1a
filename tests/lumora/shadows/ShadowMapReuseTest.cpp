#include "support/DeferredScene.h"
#include "support/Lighting.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <cmath>
#include <functional>
#include <vector>

using namespace osg;
using namespace testsupport;

namespace
{

enum Kind { Spot, Sun };

class ShadowMapReuseTest : public DeferredSceneTest
{
  protected:
    void SetUp() override
    {
        DeferredSceneTest::SetUp();
        addPlane(8.0f, 0.0f, material(Color3f(0.8f, 0.8f, 0.8f)));
        occluderMaterial = material(Color3f(0.5f, 0.5f, 0.5f));
        occluder = addPlane(1.0f, 1.5f, occluderMaterial);
        // Out of the light's way but as high as the occluder: hiding the
        // occluder leaves the scene's bounds, and so the light cameras, as
        // they were.
        NodePtr keeper = addPlane(0.2f, 1.5f, occluderMaterial);
        moveTransform(keeper, Vec3f(3.8f, 3.8f, 0.0f));
    }

    void TearDown() override
    {
        if(light != NullFC)
            subRefCP(light);
        if(beacon != NullFC)
            subRefCP(beacon);
        light  = NullFC;
        beacon = NullFC;
        DeferredSceneTest::TearDown();
    }

    void addLight(Kind kind)
    {
        const Color3f white(1, 1, 1), black(0, 0, 0);
        if(kind == Spot)
            light = makeLight(SpotLightParams{Pnt3f(1.2f, 0.0f, 4.0f), Vec3f(-1.5f, 0.0f, -4.0f),
                                              deg2rad(86.0f), 1.0f, Vec3f(1, 0, 0), white, black,
                                              0.2f});
        else
            light = makeLight(DirectionalLightParams{Vec3f(0.5f, 0.3f, 1.0f), white, black, 0.2f});
        viewport->addLight(light);
    }

    std::vector<float> frame()
    {
        window->render(action);
        testsupport::TextureImage image(viewport->getLightTarget().getTargetTexture(0));
        std::vector<float> texels;
        for(int y = 0; y < image.height(); ++y)
            for(int x = 0; x < image.width(); ++x)
                for(int c = 0; c < 3; ++c)
                    texels.push_back(image.at(x, y, c));
        return texels;
    }

    UInt32 drawnMaps() const { return viewport->getShadowMapper().getRenderCount(); }

    void moveTransform(NodePtr node, const Vec3f &by)
    {
        TransformPtr core = TransformPtr::dcast(node->getCore());
        Matrix m = core->getMatrix();
        m[3][0] += by[0];
        m[3][1] += by[1];
        m[3][2] += by[2];
        editCP(core, Transform::MatrixFieldMask, [&] { core->setMatrix(m); });
    }

    NodePtr           occluder;
    SimpleMaterialPtr occluderMaterial;
    LightPtr          light;
    NodePtr           beacon;
};

float largestDifference(const std::vector<float> &a, const std::vector<float> &b)
{
    float largest = 0.0f;
    for(std::size_t i = 0; i < a.size() && i < b.size(); ++i)
        largest = std::max(largest, std::fabs(a[i] - b[i]));
    return a.size() == b.size() ? largest : 1e30f;
}

struct Change { const char *name; Kind kind; std::function<void()> apply; };

} // namespace

// Each change must draw the maps it touches again, so that the frame equals
// one drawn with every map redrawn; a frame after no change draws none.
TEST_F(ShadowMapReuseTest, FramesEqualRedrawingAfterEachChange)
{
    const std::vector<Change> changes =
    {
        {"occluder moved", Spot, [this] {
            moveTransform(occluder,
                                                   Vec3f(0.4f, 0.3f, 0.0f));
        }},
        {"occluder's vertices edited", Sun, [this] {
            GeometryPtr geometry = GeometryPtr::dcast(
                occluder->getChild(0)->getCore());
            GeoPositionsPtr positions = geometry->getPositions();
            beginEditCP(positions);
            for(UInt32 i = 0; i < positions->getSize(); ++i)
                positions->setValue(positions->getValue(i) * 1.5f, i);
            endEditCP(positions);
        }},
        {"occluder hidden", Spot, [this] {
            NodePtr node = occluder;
            editCP(node, Node::TravMaskFieldMask, [&] { node->setTravMask(0); });
        }},
        {"occluder made transparent", Sun, [this] {
            editCP(occluderMaterial, SimpleMaterial::TransparencyFieldMask,
                   [&] { occluderMaterial->setTransparency(0.5f); });
            viewport->prepareScene(root);
        }},
        {"spot moved", Spot, [this] {
            SpotLightPtr spot = SpotLightPtr::dcast(light);
            editCP(spot, SpotLight::PositionFieldMask,
                   [&] { spot->setPosition(Pnt3f(0.6f, 0.5f, 4.0f)); });
        }},
        // A beacon outside the root: only the light cameras see the move.
        {"camera moved under the sun", Sun, [this] {
            Matrix m;
            m.setTranslate(0.5f, 0.0f, 7.0f);
            TransformPtr core = Transform::create();
            editCP(core, Transform::MatrixFieldMask, [&] { core->setMatrix(m); });
            beacon = makeNodeFor(core);
            addRefCP(beacon);
            editCP(camera, Camera::BeaconFieldMask, [&] { camera->setBeacon(beacon); });
        }},
    };

    for(const Change &change : changes)
    {
        SCOPED_TRACE(change.name);
        TearDown();
        SetUp();
        addLight(change.kind);
        viewport->setShadowMapReuse(true);
        viewport->prepareScene(root);

        // A directional light snaps its splits to texels from its maps'
        // second frame on; the maps settle after it.
        const UInt32 maps = change.kind == Spot ? 1 : 3;
        frame();
        ASSERT_EQ(drawnMaps(), maps);
        const std::vector<float> settling = frame();
        const UInt32 settled = drawnMaps();
        const std::vector<float> before = frame();
        EXPECT_EQ(drawnMaps(), settled) << "a still frame drew maps";
        EXPECT_EQ(largestDifference(before, settling), 0.0f);

        change.apply();
        const std::vector<float> reused = frame();
        EXPECT_GT(drawnMaps(), settled);
        EXPECT_GT(largestDifference(reused, before), 0.05f) << "the change shows nowhere";

        viewport->setShadowMapReuse(false);
        const std::vector<float> redrawn = frame();
        EXPECT_EQ(largestDifference(reused, redrawn), 0.0f);
    }
}

TEST_F(ShadowMapReuseTest, InvalidatingDrawsEveryMapOnce)
{
    addLight(Sun);
    viewport->setShadowMapReuse(true);
    viewport->prepareScene(root);
    frame();
    const UInt32 drawn = drawnMaps();
    viewport->invalidateShadowMaps();
    frame();
    frame();
    EXPECT_EQ(drawnMaps(), drawn + 3);
}

TEST_F(ShadowMapReuseTest, OffByDefaultAndEveryFrameDrawsEveryMap)
{
    addLight(Spot);
    EXPECT_FALSE(viewport->getShadowMapReuse());
    viewport->prepareScene(root);
    frame();
    frame();
    EXPECT_EQ(drawnMaps(), 2u);
}
