// Frame time of the demo scene, rendered forward through a plain Viewport and
// deferred through a DeferredRenderingViewport, side by side in one process,
// over the number of point lights. Fixed-function forward lighting stops at
// eight lights, so the two paths meet at 1 and 8.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGViewport.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/DemoScene.h"

#include <benchmark/benchmark.h>

#include <vector>

using namespace osg;

namespace
{

const int Width  = 640;
const int Height = 360;

lumora::HeadlessContext &context(void)
{
    static lumora::HeadlessContext ctx(Width, Height);
    return ctx;
}

// Renders frames of one viewport kind until the benchmark is satisfied.
void renderFrames(benchmark::State &state, ViewportPtr viewport, NodePtr root,
                  const std::vector<LightPtr> &lights = std::vector<LightPtr>())
{
    SolidBackgroundPtr background = SolidBackground::create();
    beginEditCP(viewport);
    viewport->setCamera(demo::makeCamera(root));
    viewport->setBackground(background);
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);

    PassiveWindowPtr window = PassiveWindow::create();
    addRefCP(window);
    beginEditCP(window);
    window->addPort(viewport);
    endEditCP(window);
    window->init();
    window->resize(Width, Height);

    DeferredRenderingViewportPtr deferred = DeferredRenderingViewportPtr::dcast(viewport);
    if(deferred != NullFC)
    {
        deferred->prepareScene(root);
        for(LightPtr light : lights)
            deferred->addLight(light);
    }

    RenderAction *action = RenderAction::create();
    window->render(action);
    DeferredRenderingViewport::PassTimes sum;
    Real64 frames = 0.0;
    for(auto _ : state)
    {
        window->render(action);
        glFinish();
        // Nothing consumes the changes; as in any single-threaded program.
        Thread::getCurrentChangeList()->clearAll();
        if(deferred != NullFC)
        {
            const DeferredRenderingViewport::PassTimes &t = deferred->getPassTimes();
            sum.shadows += t.shadows;
            sum.geometry += t.geometry + t.lights + t.forward + t.final;
            for(int slot = 0; slot < DeferredRenderingViewport::NumPostProcessors; ++slot)
                sum.effects[0] += t.effects[slot];
            frames += 1.0;
        }
    }
    state.counters["lights"] = Real64(lights.size());
    if(frames > 0.0 && sum.effects[0] > 0.0)
    {
        state.counters["effect_ms"]    = sum.effects[0] / frames;
        state.counters["effect_share"] =
            sum.effects[0] / (sum.effects[0] + sum.shadows + sum.geometry);
    }
    if(frames > 0.0 && sum.shadows > 0.0)
    {
        // Pass times wait for the GPU after each pass; only for shares.
        state.counters["shadow_ms"]    = sum.shadows / frames;
        state.counters["shadow_share"] = sum.shadows / (sum.shadows + sum.geometry);
    }
    delete action;
    subRefCP(window);
    for(LightPtr light : lights)
        subRefCP(light);
}

bool haveContext(benchmark::State &state)
{
    if(context().isValid())
        return true;
    state.SkipWithError("no GL context");
    return false;
}

// Point lights as OpenSG cores above the objects, so that the forward
// renderer switches them on for the subtree.
void BM_ForwardFrame(benchmark::State &state)
{
    if(!haveContext(state))
        return;
    NodePtr root = demo::makeGroupNode();
    std::vector<LightPtr> lights = demo::makeDemoLights(root, int(state.range(0)), 0, false);

    NodePtr lit = root;
    for(LightPtr light : lights)
    {
        NodePtr node = makeNodeFor(light);
        demo::addChild(lit, node);
        lit = node;
    }
    demo::addChild(lit, demo::buildObjects(true));
    renderFrames(state, Viewport::create(), root);
    state.counters["lights"] = Real64(lights.size());
    for(LightPtr light : lights)
        subRefCP(light);
}

void BM_DeferredFrame(benchmark::State &state)
{
    if(!haveContext(state))
        return;
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    std::vector<LightPtr> lights = demo::makeDemoLights(root, int(state.range(0)), 0, false);
    renderFrames(state, DeferredRenderingViewport::create(), root, lights);
}

// One shadow-casting light of each kind (0 sun, 1 spot, 2 point) and no
// other: the shadow stage's share of the frame.
void BM_ShadowedLight(benchmark::State &state)
{
    if(!haveContext(state))
        return;
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    const int kind = int(state.range(0));
    std::vector<LightPtr> lights = demo::makeDemoLights(root, kind == 2 ? 1 : 0,
                                                        kind == 1 ? 1 : 0, kind == 0, true);
    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    viewport->setPassTiming(true);
    renderFrames(state, viewport, root, lights);
    state.SetLabel(kind == 0 ? "sun, 3 maps" : kind == 1 ? "spot, 1 map" : "point, 6 maps");
}

// Each effect alone on the demo scene with eight unshadowed point lights:
// its share of the frame.
void BM_Effect(benchmark::State &state)
{
    if(!haveContext(state))
        return;
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    std::vector<LightPtr> lights = demo::makeDemoLights(root, 8, 0, false);
    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    viewport->setPassTiming(true);
    const char *names[] = {"anti-aliasing", "ambient occlusion", "HDR and bloom",
                           "depth of field", "camera motion blur"};
    void (DeferredRenderingViewport::*on[])(bool) =
    {
        &DeferredRenderingViewport::setAAPostProcessOn,
        &DeferredRenderingViewport::setSSAOPostProcessOn,
        &DeferredRenderingViewport::setHDRPostProcessOn,
        &DeferredRenderingViewport::setDoFPostProcessOn,
        &DeferredRenderingViewport::setCMBPostProcessOn,
    };
    const int slot = int(state.range(0));
    (viewport.getCPtr()->*on[slot])(true);
    renderFrames(state, viewport, root, lights);
    state.SetLabel(names[slot]);
}

BENCHMARK(BM_Effect)->DenseRange(0, 4)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ShadowedLight)->DenseRange(0, 2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ForwardFrame)->Arg(1)->Arg(8)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DeferredFrame)->Arg(1)->Arg(8)->Arg(16)->Arg(64)->Arg(256)
    ->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if(benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    osgInit(0, NULL);
    benchmark::RunSpecifiedBenchmarks();
    osgExit();
    return 0;
}
