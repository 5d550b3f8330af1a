#include <Lumora/VSMShadowMapper.h>
#include <Lumora/IDeferredLight.h>

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>

#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/SceneSetup.h"
#include "support/TextureImage.h"

#include <vector>

using namespace osg;
using testsupport::TextureImage;

namespace
{

// A light whose cameras the test chooses: an orthographic camera looking
// down -Z from z = 0 over [-1, 1]^2 with the given near and far, and
// answers per map that the test sets.
class ScriptedLight : public IDeferredLight
{
  public:
    explicit ScriptedLight(UInt16 maps) : targets(maps), accept(maps, true), nullMap(maps, false) {}

    void initialize(RenderTarget &, UInt16) override {}
    void update(const Matrix &, const Matrix &, const Vec2f &, LightPtr, Real32) override {}

    UInt16 getNumShadowmaps(void) override
    {
        ++mapCountQueries;
        return UInt16(targets.size());
    }

    RenderTarget *getShadowmap(UInt16 index) override
    {
        return nullMap[index] ? NULL : &targets[index];
    }

    bool updateLightCamera(UInt16 index, FrustumVolume &, DynamicVolume &,
                           MatrixCameraPtr camera) override
    {
        asked.push_back(index);
        if(!accept[index])
            return false;
        Matrix view, projection;
        MatrixOrthogonal(projection, -1, 1, -1, 1, nearDist, farDist);
        setLightCamera(camera, view, projection, nearDist, farDist);
        return true;
    }

    std::vector<RenderTarget> targets;
    std::vector<bool>         accept;
    std::vector<bool>         nullMap;
    std::vector<UInt16>       asked;
    int                       mapCountQueries = 0;
    Real32                    nearDist        = 1.0f;
    Real32                    farDist         = 5.0f;
};

class VSMShadowMapperTest : public testsupport::GLTest
{
  protected:
    void SetUp() override
    {
        GLTest::SetUp();
        scene.reset(new testsupport::SceneSetup(64, 64));
        root = scene->root;
        mapper.initialize(scene->window, 2048);
    }

    void TearDown() override
    {
        scene.reset();
        GLTest::TearDown();
    }

    // A square over [x0, x1] x [-1, 1] at height z, facing +Z.
    void addStrip(Real32 x0, Real32 x1, Real32 z)
    {
        testsupport::addChild(root, testsupport::makeRect(x0, -1.0f, x1, 1.0f, z,
                                                          testsupport::makeUnlitMaterial(Color3f(1, 1, 1))));
    }

    void renderShadowmaps(ScriptedLight &light)
    {
        mapper.beginShadowmapRendering(root, scene->camera, getCPtr(scene->viewport));
        mapper.updateShadowmap(&light);
        mapper.endShadowmapRendering(root);
    }

    std::unique_ptr<testsupport::SceneSetup> scene;
    NodePtr                                  root;
    VSMShadowMapper                          mapper;
};

// Strips at depth 1 (near plane), 3 and 5 (far plane) over the left three
// quarters of the light's view; the right quarter sees nothing.
TEST_F(VSMShadowMapperTest, MomentsAreNormalisedLinearDepthAndItsSquare)
{
    const Real32 epsilon = 1e-3f;
    addStrip(-1.0f, -0.5f, -1.0f - epsilon);
    addStrip(-0.5f,  0.0f, -3.0f);
    addStrip( 0.0f,  0.5f, -5.0f + epsilon);

    ScriptedLight light(1);
    renderShadowmaps(light);

    struct Region { Real32 x, r, g, b; };  // x in the light's [-1, 1] view; rgb the moments
    const Region regions[] =
    {
        {-0.75f, 0.0f, 0.0f,  0.0f},
        {-0.25f, 0.5f, 0.25f, 0.0f},
        { 0.25f, 1.0f, 1.0f,  0.0f},
        { 0.75f, 0.5f, 1.0f,  0.0f},  // uncovered
    };

    TextureImage moments(mapper.getRenderTarget().getTargetTexture(0));
    TextureImage map    (light.targets[0].getTargetTexture(0));
    ASSERT_EQ(moments.width(),  2048);
    ASSERT_EQ(moments.height(), 2048);
    ASSERT_EQ(map.width(),  1024);
    ASSERT_EQ(map.height(), 1024);

    for(const Region &region : regions)
    {
        for(const TextureImage *image : {&moments, &map})
        {
            const int size = image->width();
            // The middle of the region and of the strip in y.
            const int x = int((region.x + 1.0f) * 0.5f * size);
            const int y = size / 2;
            SCOPED_TRACE(testing::Message() << "x " << region.x << " in the " << size
                                            << " map");
            // One part in a thousand from the strips' offset off the planes.
            EXPECT_NEAR(image->at(x, y, 0), region.r, 2.5e-3f);
            EXPECT_NEAR(image->at(x, y, 1), region.g, 2.5e-3f);
            EXPECT_NEAR(image->at(x, y, 2), region.b, 1e-6f);
        }
    }
}

TEST_F(VSMShadowMapperTest, RefusedOrMissingMapsKeepTheirContent)
{
    addStrip(-1.0f, 1.0f, -3.0f);
    ScriptedLight light(3);
    renderShadowmaps(light);
    EXPECT_EQ(light.asked, (std::vector<UInt16>{0, 1, 2}));
    // Asked before every map and once more to end.
    EXPECT_EQ(light.mapCountQueries, 4);

    // Move the strip: only map 0 is rendered again.
    light.asked.clear();
    light.accept[1]  = false;
    light.nullMap[2] = true;
    light.farDist    = 9.0f;
    renderShadowmaps(light);
    EXPECT_EQ(light.asked, (std::vector<UInt16>{0, 1, 2}));

    const Real32 renderedAgain = (3.0f - 1.0f) / (9.0f - 1.0f);
    const Real32 kept          = (3.0f - 1.0f) / (5.0f - 1.0f);
    EXPECT_NEAR(TextureImage(light.targets[0].getTargetTexture(0)).at(512, 512, 0),
                renderedAgain, 1e-4f);
    EXPECT_NEAR(TextureImage(light.targets[1].getTargetTexture(0)).at(512, 512, 0), kept, 1e-4f);
    EXPECT_NEAR(TextureImage(light.targets[2].getTargetTexture(0)).at(512, 512, 0), kept, 1e-4f);
}

// The shadow pass borrows the root: afterwards it is back where it was,
// on as many references as before.
TEST_F(VSMShadowMapperTest, RootReturnsToItsParentAndIndex)
{
    // Without a parent it stays without one.
    const Int32 references = root.getRefCount();
    ScriptedLight light(1);
    renderShadowmaps(light);
    EXPECT_EQ(root->getParent(), NullFC);
    EXPECT_EQ(root.getRefCount(), references);

    // A root nobody references survives on exactly the one reference the
    // mapper leaves it, which the application then owns.
    NodePtr loose = testsupport::makeGroupNode();
    mapper.beginShadowmapRendering(loose, scene->camera, getCPtr(scene->viewport));
    mapper.endShadowmapRendering(loose);
    EXPECT_EQ(loose->getParent(), NullFC);
    EXPECT_EQ(loose.getRefCount(), 1);
    subRefCP(loose);

    // The middle of three children of an application node.
    NodePtr parent = testsupport::makeGroupNode();
    addRefCP(parent);
    NodePtr before = testsupport::makeGroupNode();
    NodePtr after  = testsupport::makeGroupNode();
    testsupport::addChild(parent, before);
    testsupport::addChild(parent, root);
    testsupport::addChild(parent, after);
    const Int32 held = root.getRefCount();

    mapper.beginShadowmapRendering(root, scene->camera, getCPtr(scene->viewport));
    EXPECT_EQ(root->getParent(), mapper.getShadowRoot());
    mapper.updateShadowmap(&light);
    mapper.endShadowmapRendering(root);

    EXPECT_EQ(root->getParent(), parent);
    ASSERT_EQ(parent->getNChildren(), 3u);
    EXPECT_EQ(parent->getChild(0), before);
    EXPECT_EQ(parent->getChild(1), root);
    EXPECT_EQ(parent->getChild(2), after);
    EXPECT_EQ(mapper.getShadowRoot()->getNChildren(), 0u);
    EXPECT_EQ(root.getRefCount(), held);

    testsupport::editCP(parent, Node::ChildrenFieldMask, [&] { parent->subChild(root); });
    subRefCP(parent);
}

} // namespace
