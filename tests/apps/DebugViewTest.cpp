#include "common/DebugView.h"

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>

#include "support/GLTest.h"
#include "support/SceneSetup.h"

#include <cmath>
#include <cstdlib>
#include <vector>

using namespace osg;

namespace
{

const int Size = 32;

struct Surface
{
    Color3f diffuse;
    Color3f specular;
    Real32  shininess;
    Color3f emission;
};

// Channels all different, so that a view reading the wrong one shows.
const Surface Near = {Color3f(0.8f, 0.4f, 0.2f), Color3f(0.3f, 0.6f, 0.9f), 16.f,
                      Color3f(0.1f, 0.5f, 0.7f)};
const Surface Far  = {Color3f(0.2f, 0.7f, 0.3f), Color3f(0.9f, 0.1f, 0.5f), 64.f,
                      Color3f(0.3f, 0.1f, 0.2f)};

NodePtr makeSquare(Real32 size, Real32 z, const Surface &surface)
{
    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse  (surface.diffuse);
    material->setSpecular (surface.specular);
    material->setShininess(surface.shininess);
    material->setEmission (surface.emission);
    endEditCP(material);

    GeometryPtr geometry = makePlaneGeo(size, size, 1, 1);
    beginEditCP(geometry, Geometry::MaterialFieldMask);
    geometry->setMaterial(material);
    endEditCP(geometry, Geometry::MaterialFieldMask);

    Matrix m;
    m.setTranslate(0.f, 0.f, z);
    NodePtr node = testsupport::makeTransformNode(m);
    testsupport::addChild(node, makeNodeFor(geometry));
    return node;
}

// Looking down -Z from (0, 0, 5): a small square at z = 0 in the middle of
// the view before a large one at z = -2 that fills it; no lights.
class DebugViewTest : public testsupport::GLTest
{
  protected:
    void SetUp() override
    {
        GLTest::SetUp();
        window = PassiveWindow::create();
        addRefCP(window);
        window->init();
        window->resize(Size, Size);

        root = testsupport::makeGroupNode();
        addRefCP(root);
        testsupport::addChild(root, makeSquare(20.f, -2.f, Far));
        testsupport::addChild(root, makeSquare(1.f, 0.f, Near));
        Matrix m;
        m.setTranslate(0.f, 0.f, 5.f);
        NodePtr beacon = testsupport::makeTransformNode(m);
        testsupport::addChild(root, beacon);

        camera = PerspectiveCamera::create();
        addRefCP(camera);
        beginEditCP(camera);
        camera->setBeacon(beacon);
        camera->setFov(deg2rad(60.f));
        camera->setNear(1.f);
        camera->setFar(10.f);
        endEditCP(camera);

        background = SolidBackground::create();
        addRefCP(background);
        viewport = DeferredRenderingViewportPtr::dcast(
            FieldContainerFactory::the()->createFieldContainer("DeferredRenderingViewport"));
        addRefCP(viewport);
        beginEditCP(viewport);
        viewport->setCamera(camera);
        viewport->setBackground(background);
        viewport->setRoot(root);
        viewport->setSize(0, 0, 1, 1);
        endEditCP(viewport);
        viewport->prepareScene(root);
        beginEditCP(window, Window::PortFieldMask);
        window->addPort(viewport);
        endEditCP(window, Window::PortFieldMask);
        action = RenderAction::create();
    }

    void TearDown() override
    {
        delete action;
        beginEditCP(window, Window::PortFieldMask);
        window->subPort(viewport);
        endEditCP(window, Window::PortFieldMask);
        subRefCP(viewport);
        subRefCP(background);
        subRefCP(camera);
        subRefCP(root);
        subRefCP(window);
        GLTest::TearDown();
    }

    PassiveWindowPtr             window;
    NodePtr                      root;
    PerspectiveCameraPtr         camera;
    SolidBackgroundPtr           background;
    DeferredRenderingViewportPtr viewport;
    RenderAction                *action;
};

Color3f grey(Real32 v) { return Color3f(v, v, v); }

} // namespace

// Each view shows its own channel of the surface under the pixel: the near
// square in the middle, the far one in the corner.
TEST_F(DebugViewTest, EachViewShowsItsChannel)
{
    window->render(action);

    struct Case
    {
        demo::DebugView view;
        const char     *name;
        Color3f         middle;
        Color3f         corner;
    };
    const Color3f facingViewer(0.5f, 0.5f, 1.f);  // (0, 0, 1) * 0.5 + 0.5
    const Case cases[] =
    {
        {demo::NormalsView,   "normals",   facingViewer,   facingViewer},
        {demo::DiffuseView,   "diffuse",   Near.diffuse,   Far.diffuse},
        {demo::SpecularView,  "specular",  Near.specular,  Far.specular},
        {demo::ShininessView, "shininess", grey(std::log2(Near.shininess) / 8.f),
                                           grey(std::log2(Far.shininess) / 8.f)},
        {demo::EmissiveView,  "emissive",  Near.emission,  Far.emission},
        // Nearest drawn black, farthest white.
        {demo::DepthView,     "depth",     grey(0.f),      grey(1.f)},
        // Without lights only the emission lights the surfaces.
        {demo::LightView,     "light",     Near.emission,  Far.emission},
    };
    for(const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        EXPECT_STREQ(demo::debugViewName(c.view), c.name);

        std::vector<UInt8> rgb;
        int                width = 0, height = 0;
        ASSERT_TRUE(demo::readDebugView(viewport, c.view, rgb, width, height));
        ASSERT_EQ(width, Size);
        ASSERT_EQ(height, Size);
        ASSERT_EQ(rgb.size(), std::size_t(Size * Size * 3));

        const std::size_t middle = (std::size_t(Size / 2) * Size + Size / 2) * 3;
        const std::size_t corner = (std::size_t(1) * Size + 1) * 3;
        for(int ch = 0; ch < 3; ++ch)
        {
            // One step of 8 bits: the G-buffer stores 8 or 10 bits a channel.
            EXPECT_NEAR(rgb[middle + ch], c.middle[ch] * 255.f, 1.01f) << "channel " << ch;
            EXPECT_NEAR(rgb[corner + ch], c.corner[ch] * 255.f, 1.01f) << "channel " << ch;
        }
    }
}

TEST_F(DebugViewTest, NothingToReadBeforeTheFirstFrameOrForNoView)
{
    std::vector<UInt8> rgb;
    int                width = 0, height = 0;
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NormalsView, rgb, width, height));

    window->render(action);
    EXPECT_TRUE (demo::readDebugView(viewport, demo::NormalsView, rgb, width, height));
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NoDebugView, rgb, width, height));
    EXPECT_FALSE(demo::readDebugView(viewport, demo::NumDebugViews, rgb, width, height));
    EXPECT_EQ(demo::debugViewName(demo::NumDebugViews), nullptr);
}
