#include "support/GLTest.h"
#include "support/SceneSetup.h"

#include <OpenSG/OSGPassiveWindow.h>

#include <vector>

using namespace osg;

namespace
{

using WindowTest = testsupport::GLTest;

struct Call { Window *window; UInt32 id; Window::GLObjectStatusE status; };

TEST_F(WindowTest, GLObjectFunctorSeesEachLifecycleStepOnce)
{
    std::vector<Call> calls;
    UInt32 id = Window::registerGLObject(Window::GLObjectFunctor(
        [&calls](Window *win, UInt32 idstatus)
        {
            Call c;
            c.window = win;
            Window::unpackIdStatus(idstatus, c.id, c.status);
            calls.push_back(c);
            if(c.status == Window::initialize)
                win->setGLObjectId(c.id, 42);
        }));
    ASSERT_NE(id, 0u);

    PassiveWindowPtr win = PassiveWindow::create();
    addRefCP(win);
    win->init();

    // action: 0 validate, 1 refresh, 2 reinit, 3 destroy + frameExit.
    struct Step { const char *name; int action; std::vector<Window::GLObjectStatusE> expected; };
    const Step steps[] = {
        { "first validate",        0, { Window::initialize } },
        { "validate again",        0, { } },
        { "refresh",               1, { } },
        { "validate after refresh", 0, { Window::needrefresh } },
        { "reinitialize",          2, { } },
        { "validate after reinit", 0, { Window::reinitialize } },
        { "validate once more",    0, { } },
        { "destroy",               3, { Window::destroy, Window::finaldestroy } },
    };

    for(const Step &step : steps)
    {
        SCOPED_TRACE(step.name);
        calls.clear();
        switch(step.action)
        {
            case 0: win->validateGLObject(id);        break;
            case 1: Window::refreshGLObject(id);      break;
            case 2: Window::reinitializeGLObject(id); break;
            case 3: Window::destroyGLObject(id);
                    EXPECT_TRUE(calls.empty()) << "destruction waits for the frame's end";
                    win->frameExit();
                    break;
        }
        ASSERT_EQ(calls.size(), step.expected.size());
        for(size_t i = 0; i < calls.size(); ++i)
        {
            EXPECT_EQ(calls[i].status, step.expected[i]);
            EXPECT_EQ(calls[i].id, id);
            EXPECT_EQ(calls[i].window, getCPtr(win));
        }
        if(step.action == 0 && !step.expected.empty())
        {
            EXPECT_EQ(win->getGLObjectId(id), 42u);
        }
    }
    EXPECT_EQ(win->getGLObjectId(id), 0u) << "the name is forgotten with the object";
    subRefCP(win);
}

TEST_F(WindowTest, RenderWithoutActionWarns)
{
    testsupport::SceneSetup setup(16, 16);
    setup.window->render(NULL);
    EXPECT_TRUE(log().contains("no action")) << log().text();
}

} // namespace
