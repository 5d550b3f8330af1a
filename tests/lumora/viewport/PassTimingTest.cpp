#include "support/DeferredScene.h"

#include <cmath>

using namespace osg;
using testsupport::editCP;
using testsupport::DeferredSceneTest;

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
// has gone, in its own context: no GL error, and the viewport that stays
// goes on timing.
TEST_F(PassTimingTest, QueriesOutliveNoViewport)
{
    DeferredRenderingViewportPtr second = scene->makeViewport(0.5f, 0.5f, 1.0f, 1.0f);
    second->prepareScene(root);
    second->setPassTiming(true);
    editCP(window, Window::PortFieldMask, [&] { window->addPort(second); });
    window->render(action);
    window->render(action);

    editCP(window, Window::PortFieldMask, [&] { window->subPort(second); });
    subRefCP(second);
    for(int frame = 0; frame < 3; ++frame)
        window->render(action);
    EXPECT_TRUE(viewport->getPassTimes().measured);
}
