#include "lumora/lights/DeferredSceneTest.h"

#include <cmath>

using namespace osg;
using lighttest::DeferredSceneTest;

namespace
{

typedef DeferredRenderingViewport DRV;

class PassTimingTest : public DeferredSceneTest
{
  protected:
    void SetUp() override
    {
        DeferredSceneTest::SetUp();
        addPlane(4.0f, 0.0f, material(Color3f(0.8f, 0.8f, 0.8f)));
        viewport->prepareScene(root);
        viewport->setPassTiming(true);
    }

    static std::vector<Real64> passes(const DRV::PassTimes &t)
    {
        std::vector<Real64> all = {t.geometry, t.shadows, t.lights, t.forward, t.final};
        all.insert(all.end(), std::begin(t.effects), std::end(t.effects));
        return all;
    }
};

} // namespace

// llvmpipe has timer queries, so the GPU times come frames later and the
// CPU times of the frame itself.
TEST_F(PassTimingTest, GpuTimesArriveFramesLaterBesideTheCpuTimes)
{
    EXPECT_FALSE(viewport->getPassTimes().measured);
    window->render(action);
    EXPECT_TRUE(viewport->getPassCpuTimes().measured);

    int frames = 1;
    for(; frames <= PassTimer::FramesInFlight + 1 && !viewport->getPassTimes().measured; ++frames)
        window->render(action);
    ASSERT_TRUE(viewport->getPassTimes().measured) << "after " << frames << " frames";
    EXPECT_GE(viewport->getPassTimesAge(), 1u);
    EXPECT_LE(viewport->getPassTimesAge(), UInt32(PassTimer::FramesInFlight));

    for(const DRV::PassTimes *t : {&viewport->getPassTimes(), &viewport->getPassCpuTimes()})
        for(Real64 ms : passes(*t))
            EXPECT_TRUE(std::isfinite(ms) && ms >= 0.0 && ms < 60000.0) << ms;

    // Effects that are off take no time on either clock.
    for(UInt32 slot = 0; slot < DRV::NumPostProcessors; ++slot)
        EXPECT_EQ(viewport->getPassCpuTimes().effects[slot], 0.0) << slot;
    EXPECT_GT(viewport->getPassCpuTimes().geometry, 0.0);
}

// The queries belong to the window, which deletes them after the viewport
// has gone, in its own context: no GL error, and a new viewport times again.
TEST_F(PassTimingTest, QueriesOutliveNoViewport)
{
    window->render(action);
    window->render(action);

    beginEditCP(window, Window::PortFieldMask);
    window->subPort(viewport);
    endEditCP(window, Window::PortFieldMask);
    subRefCP(viewport);
    window->render(action);

    viewport = DRV::create();
    addRefCP(viewport);
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(background);
    viewport->setRoot(root);
    viewport->setSize(0, 0, 1, 1);
    endEditCP(viewport);
    beginEditCP(window, Window::PortFieldMask);
    window->addPort(viewport);
    endEditCP(window, Window::PortFieldMask);
    viewport->prepareScene(root);
    viewport->setPassTiming(true);
    for(int frame = 0; frame < 3; ++frame)
        window->render(action);
    EXPECT_TRUE(viewport->getPassTimes().measured);
}
