#include "support/Builders.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGNavigator.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGViewport.h>

#include <gtest/gtest.h>

using namespace osg;

namespace
{

void expectNear(const Pnt3f &got, const Pnt3f &expected, const char *what)
{
    for(int i = 0; i < 3; ++i)
        EXPECT_NEAR(got[i], expected[i], 1e-5f) << what << " [" << i << "]";
}

// Motion factors along the view direction and along view x up (to the right).
struct FlyCase { Navigator::Key key; Real32 along, aside; };

TEST(NavigatorFly, KeysMoveFromAndAtByTheMotionFactor)
{
    const FlyCase cases[] = {
        {Navigator::FORWARDS,   1.f,  0.f},
        {Navigator::BACKWARDS, -1.f,  0.f},
        {Navigator::LEFT,       0.f, -1.f},
        {Navigator::RIGHT,      0.f,  1.f},
    };
    const Pnt3f  from(1.f, 2.f, 3.f);
    const Vec3f  view(0.6f, 0.f, -0.8f);   // unit length
    const Vec3f  right = view.cross(Vec3f(0.f, 1.f, 0.f));
    const Real32 factor = 0.5f;
    for(const FlyCase &c : cases)
    {
        SCOPED_TRACE(int(c.key));
        Navigator nav;
        nav.setMode(Navigator::FLY);
        nav.set(from, from + view * 10.f, Vec3f(0.f, 1.f, 0.f));
        nav.setMotionFactor(factor);
        nav.keyPress(c.key, 0, 0);

        const Vec3f shift = view * (c.along * factor) + right * (c.aside * factor);
        expectNear(nav.getFrom(), from + shift, "from");
        expectNear(nav.getAt(), from + view * 10.f + shift, "at");
        // The camera's own position is the matrix's translation.
        const Matrix &m = nav.getMatrix();
        expectNear(Pnt3f(m[3][0], m[3][1], m[3][2]), from + shift, "matrix");
    }
}

TEST(NavigatorFly, ModesKeepTheirOwnPlacement)
{
    Navigator nav;
    nav.set(Pnt3f(0.f, 0.f, 5.f), Pnt3f(0.f, 0.f, 0.f), Vec3f(0.f, 1.f, 0.f));
    nav.setMode(Navigator::FLY);
    nav.set(Pnt3f(7.f, 0.f, 0.f), Pnt3f(7.f, 0.f, -1.f), Vec3f(0.f, 1.f, 0.f));
    nav.keyPress(Navigator::FORWARDS, 0, 0);
    nav.setMode(Navigator::TRACKBALL);
    expectNear(nav.getFrom(), Pnt3f(0.f, 0.f, 5.f), "trackball from");
}

// A floor with its top at y = 0 for z > -3.5 and a step with its top at
// y = 0.5 beyond.
NodePtr makeFloorWithStep(void)
{
    NodePtr root = testsupport::makeGroupNode();
    Matrix  low, high;
    low.setTranslate(0.f, -0.5f, 3.25f);
    high.setTranslate(0.f, 0.f, -3.5f - 5.f);
    NodePtr lowNode  = testsupport::makeTransformNode(low);
    NodePtr highNode = testsupport::makeTransformNode(high);
    testsupport::addChild(lowNode,  makeBox(20.f, 1.f, 13.5f, 1, 1, 1));   // z from -3.5 to 10
    testsupport::addChild(highNode, makeBox(20.f, 1.f, 10.f,  1, 1, 1));   // z from -13.5 to -3.5
    testsupport::addChild(root, lowNode);
    testsupport::addChild(root, highNode);
    return root;
}

TEST(NavigatorWalk, EyeStaysTheSetHeightAboveTheFloorAndTheStep)
{
    NodePtr root = makeFloorWithStep();
    addRefCP(root);
    ViewportPtr port = testsupport::held(Viewport::create());
    testsupport::editCP(port, [&] { port->setRoot(root); });

    const Real32 groundDistance = 1.f, height = 0.4f;
    Navigator nav;
    nav.setViewport(port);
    nav.setMode(Navigator::WALK);
    nav.getWalkNavigator()->setGroundDistance(groundDistance);
    nav.getWalkNavigator()->setPersonDimensions(height, 0.5f, 0.5f);
    nav.setMotionFactor(1.f);
    const Real32 eye = groundDistance + height;
    nav.set(Pnt3f(0.f, eye, -0.25f), Pnt3f(0.f, eye, -1.25f), Vec3f(0.f, 1.f, 0.f));

    struct Step { Navigator::Key key; Real32 z, floor; };
    const Step steps[] = {
        {Navigator::FORWARDS,  -1.25f, 0.f},
        {Navigator::FORWARDS,  -2.25f, 0.f},
        {Navigator::FORWARDS,  -3.25f, 0.f},
        {Navigator::FORWARDS,  -4.25f, 0.5f},   // up the step
        {Navigator::FORWARDS,  -5.25f, 0.5f},
        {Navigator::BACKWARDS, -4.25f, 0.5f},
        {Navigator::BACKWARDS, -3.25f, 0.f},    // down again
    };
    for(const Step &s : steps)
    {
        nav.keyPress(s.key, 0, 0);
        SCOPED_TRACE(testing::Message() << "z " << s.z);
        expectNear(nav.getFrom(), Pnt3f(0.f, s.floor + eye, s.z), "from");
        expectNear(nav.getAt(), Pnt3f(0.f, s.floor + eye, s.z - 1.f), "at");
    }

    subRefCP(port);
    subRefCP(root);
}

struct HitCase { const char *name; Matrix place; Int32 choice; bool hit; Real32 t; };

// A unit box under a Transform under a Switch; the ray comes down from
// y = 5 at x = 0.2.
TEST(IntersectAction, HitsTheNearestTriangleInWorldUnits)
{
    Matrix identity, scaled, shifted;
    scaled.setScale(2.f);
    shifted.setTranslate(0.f, 1.f, 0.f);
    const HitCase cases[] = {
        {"plain",         identity, Switch::ALL,  true,  5.f - 0.5f},
        {"scaled by 2",   scaled,   Switch::ALL,  true,  5.f - 1.f},
        {"raised by 1",   shifted,  0,            true,  5.f - 1.5f},
        {"switched off",  identity, Switch::NONE, false, 0.f},
    };
    for(const HitCase &c : cases)
    {
        SCOPED_TRACE(c.name);
        SwitchPtr sw = Switch::create();
        testsupport::editCP(sw, [&] { sw->setChoice(c.choice); });
        NodePtr root = testsupport::held(Node::create());
        testsupport::editCP(root, [&] { root->setCore(sw); });
        NodePtr placed = testsupport::makeTransformNode(c.place);
        testsupport::addChild(placed, makeBox(1.f, 1.f, 1.f, 1, 1, 1));
        testsupport::addChild(root, placed);

        IntersectAction *ia = IntersectAction::create(
            Line(Pnt3f(0.2f, 5.f, 0.f), Vec3f(0.f, -1.f, 0.f)));
        ia->apply(root);
        EXPECT_EQ(ia->didHit(), c.hit);
        if(c.hit)
        {
            EXPECT_NEAR(ia->getHitT(), c.t, 1e-5f);
            expectNear(ia->getHitPoint(), Pnt3f(0.2f, 5.f - c.t, 0.f), "hit point");
        }
        delete ia;
        subRefCP(root);
    }
}

} // namespace
