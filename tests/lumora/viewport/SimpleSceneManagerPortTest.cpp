#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGNavigator.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleSceneManager.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/DeferredScene.h"


using namespace osg;
using testsupport::editCP;

namespace
{

class SimpleSceneManagerPortTest : public testsupport::GLTest {};

enum PortKind { NoPort, PlainPort, DeferredPort };

struct PortCase { const char *name; PortKind kind; };

const PortCase s_portCases[] = {
    {"no port",       NoPort},
    {"plain port",    PlainPort},
    {"deferred port", DeferredPort},
};

// Only a window without ports gets the manager's own viewport; a port the
// application added stays, gets the manager's camera and moves with the
// mouse.
TEST_F(SimpleSceneManagerPortTest, KeepsTheApplicationsPortAndDrivesIt)
{
    for(const PortCase &c : s_portCases)
    {
        SCOPED_TRACE(c.name);
        testsupport::WindowAndAction windowAndAction(ContextWidth, ContextHeight);
        PassiveWindowPtr             window = windowAndAction.window;

        ViewportPtr        added = NullFC;
        SolidBackgroundPtr grey  = testsupport::held(SolidBackground::create());
        editCP(grey, [&] { grey->setColor(Color3f(0.5f, 0.5f, 0.5f)); });
        if(c.kind != NoPort)
        {
            added = c.kind == PlainPort ? Viewport::create()
                                        : ViewportPtr(DeferredRenderingViewport::create());
            addRefCP(added);
            beginEditCP(added);
            added->setBackground(grey);
            added->setSize(0.f, 0.f, 1.f, 1.f);
            endEditCP(added);
            windowAndAction.addPort(added);
        }

        {
            SimpleSceneManager manager;
            manager.setWindow(window);
            EXPECT_EQ(window->getPort().size(), c.kind == NoPort ? 0u : 1u)
                << "setWindow only stores the window";
            EXPECT_EQ(manager.getCamera(), NullFC);

            NodePtr box = makeBox(1.f, 1.f, 1.f, 1, 1, 1);
            manager.setRoot(box);
            ASSERT_EQ(window->getPort().size(), 1u);
            ViewportPtr port = window->getPort(0);
            ASSERT_NE(manager.getCamera(), NullFC);
            EXPECT_EQ(manager.getNavigator()->getViewport(), port);
            EXPECT_EQ(port->getCamera(), manager.getCamera());
            EXPECT_EQ(manager.getRoot(), box);
            if(c.kind == NoPort)
            {
                EXPECT_EQ(port->getType(), Viewport::getClassType());
                SolidBackgroundPtr black = SolidBackgroundPtr::dcast(port->getBackground());
                ASSERT_NE(black, NullFC);
                EXPECT_EQ(black->getColor(), Color3f(0.f, 0.f, 0.f));
                EXPECT_TRUE(port->isFullWindow());
            }
            else
            {
                EXPECT_EQ(port, added);
                EXPECT_EQ(port->getBackground(), grey);
            }

            // The drag turns the camera the port draws with; the trackball's
            // own geometry is the runtime's navigation tests'.
            manager.showAll();
            Navigator  *navigator = manager.getNavigator();
            const Pnt3f before    = navigator->getFrom();
            manager.mouseButtonPress(SimpleSceneManager::MouseLeft, 128, 128);
            manager.mouseMove(160, 128);
            manager.mouseButtonRelease(SimpleSceneManager::MouseLeft, 160, 128);
            EXPECT_GT((navigator->getFrom() - before).length(), 0.1f);
            EXPECT_TRUE(manager.getCamera()->getBeacon()->getToWorld().equals(
                navigator->getMatrix(), 1e-5f));

            manager.redraw();
            DeferredRenderingViewportPtr deferred =
                DeferredRenderingViewportPtr::dcast(port);
            if(c.kind == DeferredPort)
            {
                ASSERT_NE(deferred, NullFC);
                EXPECT_EQ(deferred->getLastWidth(),  Int32(ContextWidth));
                EXPECT_EQ(deferred->getLastHeight(), Int32(ContextHeight));
            }
            else
                EXPECT_EQ(deferred, NullFC);
        }
        // The manager takes back only its own viewport.
        EXPECT_EQ(window->getPort().size(), c.kind == NoPort ? 0u : 1u);
        if(added != NullFC)
        {
            windowAndAction.subPort(added);
            subRefCP(added);
        }
        subRefCP(grey);
    }
}

} // namespace
