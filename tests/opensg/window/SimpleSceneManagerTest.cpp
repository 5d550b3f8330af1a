#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/PixelProbe.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSimpleSceneManager.h>

#include <cmath>
#include <memory>
#include <string>

using namespace osg;
using testsupport::readPixelRGBA8;
using testsupport::RGBA8;

namespace
{

// A box of the given size centred on center, white unless told otherwise.
NodePtr makeBoxAt(const Pnt3f &center, const Vec3f &size)
{
    NodePtr box = makeBox(size[0], size[1], size[2], 1, 1, 1);
    Matrix  m;
    m.setTranslate(center);
    NodePtr placed = testsupport::makeTransformNode(m);
    testsupport::addChild(placed, box);
    return placed;
}

// A manager over a window of the given size with a box scene, framed.
struct Managed
{
    Managed(int width, int height, const Pnt3f &center = Pnt3f(0.f, 0.f, 0.f),
            const Vec3f &size = Vec3f(2.f, 2.f, 2.f))
    {
        window = PassiveWindow::create();
        addRefCP(window);
        window->resize(width, height);
        manager.reset(new SimpleSceneManager);
        manager->setWindow(window);
        manager->setRoot(makeBoxAt(center, size));
        manager->showAll();
    }
    ~Managed()
    {
        manager.reset();
        subRefCP(window);
    }

    Navigator *nav() { return manager->getNavigator(); }

    // Window pixel (y down, as mouse events give it) of a world point,
    // through the camera's own matrices.
    Vec2f toWindow(const Pnt3f &p)
    {
        const UInt32 w = window->getWidth(), h = window->getHeight();
        Matrix viewing, projection;
        manager->getCamera()->getViewing(viewing, w, h);
        manager->getCamera()->getProjection(projection, w, h);
        projection.mult(viewing);
        Pnt3f ndc;
        projection.multFullMatrixPnt(p, ndc);
        return Vec2f((ndc[0] + 1.f) * 0.5f * w, (1.f - ndc[1]) * 0.5f * h);
    }

    void drag(UInt16 button, Int16 x0, Int16 y0, Int16 x1, Int16 y1)
    {
        manager->mouseButtonPress(button, x0, y0);
        manager->mouseMove(x1, y1);
        manager->mouseButtonRelease(button, x1, y1);
    }

    PassiveWindowPtr                    window;
    std::unique_ptr<SimpleSceneManager> manager;
};

Real32 angleBetween(Vec3f a, Vec3f b)
{
    a.normalize();
    b.normalize();
    return std::acos(std::max(-1.f, std::min(1.f, a.dot(b))));
}

// A drag from the window centre (125, 125) to (x1, y1), ballOffset long in
// normalised window units, turns the camera about the world axis.
struct RotateCase { const char *name; Int16 x1, y1; Real32 ballOffset; Vec3f axis; };

// On a square 250-pixel window a move of 50 pixels is 0.4 normalised units;
// the trackball of radius 0.8 then turns by asin(0.4 / 0.8) = 30 degrees.
// The scene follows the mouse, so the camera turns the other way.
const RotateCase s_rotateCases[] = {
    {"right", 175, 125, 0.4f, Vec3f( 0.f, -1.f, 0.f)},
    {"left",   75, 125, 0.4f, Vec3f( 0.f,  1.f, 0.f)},
    {"up",    125,  75, 0.4f, Vec3f( 1.f,  0.f, 0.f)},
    {"down",  125, 150, 0.2f, Vec3f(-1.f,  0.f, 0.f)},
};

TEST(SimpleSceneManagerNavigation, LeftDragTurnsTheCameraAboutTheSceneCentreLikeATrackball)
{
    for(const RotateCase &c : s_rotateCases)
    {
        SCOPED_TRACE(c.name);
        const Pnt3f center(3.f, -2.f, 1.f);
        Managed     m(250, 250, center);
        const Vec3f before = m.nav()->getFrom() - center;

        m.drag(SimpleSceneManager::MouseLeft, 125, 125, c.x1, c.y1);

        const Vec3f after = m.nav()->getFrom() - center;
        EXPECT_LT((m.nav()->getAt() - center).length(), 1e-4f);
        EXPECT_NEAR(after.length(), before.length(), 1e-3f * before.length());
        EXPECT_NEAR(osgrad2degree(angleBetween(before, after)),
                    osgrad2degree(std::asin(c.ballOffset / 0.8f)), 0.05f);
        // A turn about the axis moves the camera along axis x position.
        Vec3f expected = c.axis.cross(before);
        expected.normalize();
        EXPECT_GT((after - before).dot(expected), 0.f);
        EXPECT_NEAR((after - before).dot(c.axis), 0.f, 1e-3f * before.length());
        // The camera goes on looking at the centre.
        const Vec2f centre = m.toWindow(center);
        EXPECT_NEAR(centre[0], 125.f, 0.01f);
        EXPECT_NEAR(centre[1], 125.f, 0.01f);
    }
}

struct DragCase { Int16 dx, dy; };

const DragCase s_panCases[] = {{30, 0}, {0, -40}, {-25, 17}};

TEST(SimpleSceneManagerNavigation, MiddleDragMovesThePointLookedAtWithTheMouse)
{
    for(const DragCase &c : s_panCases)
    {
        SCOPED_TRACE(testing::Message() << c.dx << "," << c.dy);
        for(const Vec2f &size : {Vec2f(250.f, 250.f), Vec2f(300.f, 150.f)})
        {
            const Pnt3f center(1.f, 2.f, -3.f);
            Managed     m(static_cast<int>(size[0]), static_cast<int>(size[1]), center);
            const Vec3f view = m.nav()->getAt() - m.nav()->getFrom();
            const Vec2f start = m.toWindow(center);

            m.drag(SimpleSceneManager::MouseMiddle, 100, 60, 100 + c.dx, 60 + c.dy);

            const Vec2f moved = m.toWindow(center);
            EXPECT_NEAR(moved[0] - start[0], c.dx, 0.05f);
            EXPECT_NEAR(moved[1] - start[1], c.dy, 0.05f);
            const Vec3f viewAfter = m.nav()->getAt() - m.nav()->getFrom();
            EXPECT_LT((viewAfter - view).length(), 1e-4f * view.length());
        }
    }
}

const DragCase s_zoomCases[] = {{0, -125}, {0, 125}, {40, -50}};

TEST(SimpleSceneManagerNavigation, RightDragAndWheelMoveAlongTheViewOnly)
{
    for(const DragCase &c : s_zoomCases)
    {
        SCOPED_TRACE(c.dy);
        Managed     m(250, 250);
        const Pnt3f at     = m.nav()->getAt();
        const Vec3f before = m.nav()->getFrom() - at;

        m.drag(SimpleSceneManager::MouseRight, 125, 125, 125 + c.dx, 125 + c.dy);

        const Vec3f after = m.nav()->getFrom() - at;
        // A whole window height up brings the camera e^2 times closer.
        EXPECT_NEAR(after.length() / before.length(), std::exp(2.f * c.dy / 250.f), 1e-4f);
        EXPECT_LT(angleBetween(before, after), 1e-3f);
        EXPECT_LT((m.nav()->getAt() - at).length(), 1e-5f);
    }

    Managed      m(250, 250);
    const Real32 start = m.nav()->getDistance();
    const Real32 step  = m.nav()->getMotionFactor();
    ASSERT_GT(step, 0.f);
    m.manager->mouseButtonPress(SimpleSceneManager::MouseUp, 10, 10);
    m.manager->mouseButtonRelease(SimpleSceneManager::MouseUp, 10, 10);
    EXPECT_NEAR(m.nav()->getDistance(), start - step, 1e-4f);
    m.manager->mouseButtonPress(SimpleSceneManager::MouseDown, 10, 10);
    m.manager->mouseButtonRelease(SimpleSceneManager::MouseDown, 10, 10);
    EXPECT_NEAR(m.nav()->getDistance(), start, 1e-4f);
}

// OpenSG 1.8's keys: in trackball mode y and h move along the view by the
// motion factor; the sideways and turning keys (j, g, u, t) and any other
// key leave the camera where it is.
TEST(SimpleSceneManagerNavigation, TrackballKeysAreOpenSG18s)
{
    struct KeyCase { char key; Real32 closer; };  // closer in motion factors
    const KeyCase cases[] = {
        {'y', 1.f}, {'h', -1.f}, {'j', 0.f}, {'g', 0.f}, {'u', 0.f}, {'t', 0.f}, {'w', 0.f},
    };
    for(const KeyCase &c : cases)
    {
        SCOPED_TRACE(std::string(1, c.key));
        Managed      m(250, 250, Pnt3f(1.f, 2.f, -3.f));
        const Real32 step     = 0.25f;
        m.nav()->setMotionFactor(step);
        const Pnt3f  at       = m.nav()->getAt();
        const Pnt3f  from     = m.nav()->getFrom();
        Vec3f        view     = at - from;
        const Real32 distance = view.length();
        view.normalize();

        m.manager->key(c.key, 0, 0);

        const Pnt3f wantFrom = from + view * (c.closer * step);
        EXPECT_LT((m.nav()->getAt()   - at).length(),       1e-4f) << m.nav()->getAt();
        EXPECT_LT((m.nav()->getFrom() - wantFrom).length(), 1e-4f) << m.nav()->getFrom();
        EXPECT_NEAR(m.nav()->getDistance(), distance - c.closer * step, 1e-4f);
    }
}

struct FrameCase { int width, height; Pnt3f center; Vec3f size; };

const FrameCase s_frameCases[] = {
    {250, 250, Pnt3f(0.f, 0.f, 0.f),   Vec3f(2.f, 2.f, 2.f)},
    {400, 200, Pnt3f(3.f, -2.f, 1.f),  Vec3f(2.f, 4.f, 6.f)},
    {200, 400, Pnt3f(-5.f, 7.f, 20.f), Vec3f(10.f, 1.f, 1.f)},
};

// The bounding sphere fills the narrower side of the view, seen along -Z.
TEST(SimpleSceneManagerNavigation, ShowAllFramesTheBoundingSphereAlongMinusZ)
{
    for(const FrameCase &c : s_frameCases)
    {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        Managed      m(c.width, c.height, c.center, c.size);
        const Real32 radius = c.size.length() / 2.f;
        const Pnt3f  from   = m.nav()->getFrom();

        EXPECT_LT((m.nav()->getAt() - c.center).length(), 1e-4f);
        EXPECT_NEAR(from[0], c.center[0], 1e-4f);
        EXPECT_NEAR(from[1], c.center[1], 1e-4f);
        ASSERT_GT(from[2], c.center[2] + radius);

        // The rays touching the sphere above and beside it.
        const Real32 distance = from[2] - c.center[2];
        const Real32 alpha    = std::asin(radius / distance);
        const Real32 reach    = distance * std::cos(alpha);
        const Pnt3f  top  = from + Vec3f(0.f, std::sin(alpha), -std::cos(alpha)) * reach;
        const Pnt3f  side = from + Vec3f(std::sin(alpha), 0.f, -std::cos(alpha)) * reach;
        const Real32 topEdge  = 1.f - 2.f * m.toWindow(top)[1] / c.height;
        const Real32 sideEdge = 2.f * m.toWindow(side)[0] / c.width - 1.f;
        EXPECT_NEAR(std::max(topEdge, sideEdge), 1.f, 1e-3f);
        EXPECT_LE(std::min(topEdge, sideEdge), 1.f + 1e-3f);
        // Near and far keep the sphere.
        EXPECT_LT(m.manager->getCamera()->getNear(), distance - radius);
        EXPECT_GT(m.manager->getCamera()->getFar(),  distance + radius);
    }
}

using SimpleSceneManagerRender = testsupport::GLTest;

// The manager's headlight lights what faces the camera.
TEST_F(SimpleSceneManagerRender, HeadlightLightsTheSceneFromTheCamera)
{
    PassiveWindowPtr window = PassiveWindow::create();
    addRefCP(window);
    window->init();
    window->resize(ContextWidth, ContextHeight);

    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(Color3f(0.f, 1.f, 0.f));
    material->setAmbient(Color3f(0.f, 0.f, 0.f));
    endEditCP(material);
    NodePtr     box  = makeBox(2.f, 2.f, 2.f, 1, 1, 1);
    GeometryPtr core = GeometryPtr::dcast(box->getCore());
    testsupport::editCP(core, Geometry::MaterialFieldMask, [&] { core->setMaterial(material); });
    {
        SimpleSceneManager manager;
        manager.setWindow(window);
        manager.setRoot(box);
        manager.showAll();
        for(bool headlight : {true, false})
        {
            SCOPED_TRACE(headlight);
            manager.setHeadlight(headlight);
            manager.redraw();
            const RGBA8 centre = readPixelRGBA8(ContextWidth / 2, ContextHeight / 2);
            if(headlight)
                EXPECT_GT(centre.g, 200) << centre;
            else
                EXPECT_LT(centre.g, 30) << centre;
            EXPECT_LT(centre.r + centre.b, 10) << centre;
        }
    }
    subRefCP(window);
}

} // namespace
