#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGPolygonForeground.h>

using namespace osg;
using testsupport::readPixelRGBA8;
using testsupport::RGBA8;
using testsupport::SceneSetup;

namespace
{

using ViewportTest = testsupport::GLTest;

struct RectCase { Real32 left, right, bottom, top; Int32 pixLeft, pixRight, pixBottom, pixTop;
                  bool full; };

// Window 200 x 100. Values above 1 are pixels (truncated, inclusive right
// and top); others are fractions: left/bottom size*v, right/top size*v - 1.
const RectCase s_rectCases[] = {
    { 0.f,   1.f,    0.f,   1.f,   0,   199, 0,  99, true  },
    { 0.25f, 0.75f,  0.5f,  1.f,   50,  149, 50, 99, false },
    { 10.f,  109.f,  20.f,  59.f,  10,  109, 20, 59, false },
    { 0.5f,  150.7f, 0.f,   1.f,   100, 150, 0,  99, false },
    { 1.5f,  199.f,  0.f,   99.f,  1,   199, 0,  99, false },
    { 0.f,   199.f,  0.f,   99.f,  0,   199, 0,  99, true  },
};

TEST_F(ViewportTest, PixelRectangleFollowsTheFractionOrPixelRule)
{
    SceneSetup setup(200, 100);

    for(const RectCase &c : s_rectCases)
    {
        SCOPED_TRACE(testing::Message() << c.left << " " << c.right << " "
                                        << c.bottom << " " << c.top);
        testsupport::editCP(setup.viewport,
                            [&] { setup.viewport->setSize(c.left, c.bottom, c.right, c.top); });

        EXPECT_EQ(setup.viewport->getPixelLeft(),   c.pixLeft);
        EXPECT_EQ(setup.viewport->getPixelRight(),  c.pixRight);
        EXPECT_EQ(setup.viewport->getPixelBottom(), c.pixBottom);
        EXPECT_EQ(setup.viewport->getPixelTop(),    c.pixTop);
        EXPECT_EQ(setup.viewport->getPixelWidth(),  c.pixRight - c.pixLeft + 1);
        EXPECT_EQ(setup.viewport->getPixelHeight(), c.pixTop - c.pixBottom + 1);
        EXPECT_EQ(setup.viewport->isFullWindow(),   c.full);
    }
}

TEST_F(ViewportTest, FractionWithoutParentWarnsAndGivesZero)
{
    ViewportPtr port = testsupport::held(Viewport::create());
    testsupport::editCP(port, [&] { port->setSize(0.5f, 0.5f, 1.f, 1.f); });

    EXPECT_EQ(port->getPixelLeft(), 0);
    EXPECT_EQ(port->getPixelTop(),  0);
    EXPECT_TRUE(log().contains("parent")) << log().text();
    subRefCP(port);
}

TEST_F(ViewportTest, TwoViewportsEachClearOnlyTheirRectangle)
{
    SceneSetup setup(64, 64);
    testsupport::editCP(setup.viewport, [&] { setup.viewport->setSize(0.f, 0.f, 0.5f, 1.f); });
    testsupport::setBackgroundColor(setup, Color3f(1.f, 0.f, 0.f));

    SolidBackgroundPtr green = SolidBackground::create();
    testsupport::editCP(green, [&] { green->setColor(Color3f(0.f, 1.f, 0.f)); });
    ViewportPtr right = Viewport::create();
    beginEditCP(right);
    right->setSize(0.5f, 0.f, 1.f, 1.f);
    right->setCamera(setup.camera);
    right->setBackground(green);
    right->setRoot(setup.root);
    endEditCP(right);
    testsupport::editCP(setup.window, Window::PortFieldMask, [&] { setup.window->addPort(right); });

    EXPECT_EQ(right->getParent(), WindowPtr(setup.window));

    setup.render();

    const RGBA8 red   = { 255, 0, 0, 255 };
    const RGBA8 green8 = { 0, 255, 0, 255 };
    EXPECT_EQ(readPixelRGBA8(0,  10), red);
    EXPECT_EQ(readPixelRGBA8(31, 10), red);
    EXPECT_EQ(readPixelRGBA8(32, 10), green8);
    EXPECT_EQ(readPixelRGBA8(63, 50), green8);

    testsupport::editCP(setup.window, Window::PortFieldMask, [&] { setup.window->subPort(right); });
    EXPECT_EQ(right->getParent(), WindowPtr());
    subRefCP(right);
    subRefCP(green);
    glDisable(GL_SCISSOR_TEST);
}

TEST_F(ViewportTest, RenderWithoutCameraWarnsAndDrawsNothing)
{
    SceneSetup setup(64, 64);
    testsupport::setBackgroundColor(setup, Color3f(1.f, 1.f, 1.f));
    testsupport::editCP(setup.viewport, [&] { setup.viewport->setCamera(NullFC); });

    glClearColor(0.f, 0.f, 0.f, 1.f);
    glClear(GL_COLOR_BUFFER_BIT);
    setup.render();

    EXPECT_TRUE(log().contains("no camera")) << log().text();
    const RGBA8 black = { 0, 0, 0, 255 };
    EXPECT_EQ(readPixelRGBA8(32, 32), black);
}

// Pixel mode, negative values measured from the right/top edge: -11 is
// ten pixels in, so the polygon covers pixels 10 .. size-11.
TEST_F(ViewportTest, PolygonForegroundPlacesPixelCoordinatesFromBothEdges)
{
    SceneSetup setup(64, 48);

    PolygonForegroundPtr fg = PolygonForeground::create();
    beginEditCP(fg);
    fg->setMaterial(testsupport::makeUnlitMaterial(Color3f(0.f, 0.f, 1.f)));
    fg->setNormalizedX(false);
    fg->setNormalizedY(false);
    fg->getPositions().push_back(Pnt2f( 10.f,  10.f));
    fg->getPositions().push_back(Pnt2f(-11.f,  10.f));
    fg->getPositions().push_back(Pnt2f(-11.f, -11.f));
    fg->getPositions().push_back(Pnt2f( 10.f, -11.f));
    for(int i = 0; i < 4; ++i)
        fg->getTexCoords().push_back(Vec3f(0.f, 0.f, 0.f));
    endEditCP(fg);
    setup.viewport->addForeground(fg);

    setup.render();

    const RGBA8 blue  = { 0, 0, 255, 255 };
    const RGBA8 black = { 0, 0, 0, 255 };
    EXPECT_EQ(readPixelRGBA8(10, 10), blue);
    EXPECT_EQ(readPixelRGBA8(53, 37), blue);
    EXPECT_EQ(readPixelRGBA8(9,  20), black);
    EXPECT_EQ(readPixelRGBA8(54, 20), black);
    EXPECT_EQ(readPixelRGBA8(20, 38), black);
}

TEST_F(ViewportTest, PolygonForegroundWarnsWhenTexCoordsDoNotMatch)
{
    SceneSetup setup(32, 32);
    PolygonForegroundPtr fg = PolygonForeground::create();
    beginEditCP(fg);
    fg->getPositions().push_back(Pnt2f(0.f, 0.f));
    fg->getPositions().push_back(Pnt2f(1.f, 0.f));
    fg->getPositions().push_back(Pnt2f(1.f, 1.f));
    endEditCP(fg);
    setup.viewport->addForeground(fg);

    setup.render();
    EXPECT_TRUE(log().contains("PolygonForeground::draw")) << log().text();
}

} // namespace
