// Frame time of the demo scene, rendered forward through a plain Viewport and
// deferred through a DeferredRenderingViewport, side by side in one process.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGViewport.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/DemoScene.h"

#include <benchmark/benchmark.h>

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
void renderFrames(benchmark::State &state, ViewportPtr viewport, NodePtr root)
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

    RenderAction *action = RenderAction::create();
    window->render(action);
    for(auto _ : state)
    {
        window->render(action);
        glFinish();
    }
    delete action;
    subRefCP(window);
}

void BM_ForwardFrame(benchmark::State &state)
{
    if(!context().isValid())
    {
        state.SkipWithError("no GL context");
        return;
    }
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    renderFrames(state, Viewport::create(), root);
}

void BM_DeferredFrame(benchmark::State &state)
{
    if(!context().isValid())
    {
        state.SkipWithError("no GL context");
        return;
    }
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    viewport->prepareScene(root);
    renderFrames(state, viewport, root);
}

BENCHMARK(BM_ForwardFrame)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DeferredFrame)->Unit(benchmark::kMillisecond);

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
