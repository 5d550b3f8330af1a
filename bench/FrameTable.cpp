// The post effects against their floors, side by side in one process: the
// demo scene drawn by the deferred viewport with all five effects on, then
// each effect run again on that frame's lit image and G-buffer, waited
// for, beside a raw OpenGL program doing the same work on copies of them.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>
#include <Lumora/IDeferredPostProcessor.h>

#include "common/CommandLine.h"
#include "common/DemoScene.h"
#include "EffectFloor.h"
#include "RawGL.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

using namespace osg;

namespace
{

struct Options
{
    std::vector<int> heights = {360, 720};
    int              frames  = 5;
};

// Per effect, one entry a measured frame.
struct Samples
{
    std::vector<double> viewport[EffectFloor::EffectCount];
    std::vector<double> cpu     [EffectFloor::EffectCount];
    std::vector<double> library [EffectFloor::EffectCount];
    std::vector<double> floor   [EffectFloor::EffectCount];
};

void usage(FILE *out)
{
    std::fprintf(out,
        "usage: lumora_frame_table [--sizes 360,720] [--frames N]\n"
        "Prints each post effect of the deferred viewport on the demo scene\n"
        "against a raw OpenGL floor doing the same work, medians in ms, at\n"
        "16:9 sizes given by their heights.\n"
        "  --sizes    image heights, width 16/9 of each (default 360,720)\n"
        "  --frames   measured frames after one warm-up (default 5)\n");
}

double median(std::vector<double> values)
{
    if(values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : 0.5 * (values[n / 2 - 1] + values[n / 2]);
}

GLuint glName(TextureChunkPtr texture)
{
    return texture->getGLTextureName();
}

// The camera as the floor takes it; no motion between frames, as the
// demo's camera stands still.
EffectFloor::Camera floorCamera(const Matrix &viewing, const Matrix &projection,
                                const Vec2f &nearFar)
{
    EffectFloor::Camera camera;
    camera.nearDist = nearFar[0];
    camera.farDist  = nearFar[1];
    Matrix viewProj = projection, inverse, toWorld;
    viewProj.mult(viewing);
    viewProj.inverse(inverse);
    viewing.inverse(toWorld);
    std::copy(inverse.getValues(),  inverse.getValues()  + 16, camera.invViewProj);
    std::copy(viewProj.getValues(), viewProj.getValues() + 16, camera.prevViewProj);
    for(int k = 0; k < 3; ++k)
        camera.position[k] = toWorld[3][k];
    return camera;
}

Samples measure(int width, int height, int frames, std::string &error)
{
    Samples samples;
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    std::vector<LightPtr> lights = demo::makeDemoLights(root, 8, 2, true);
    PerspectiveCameraPtr camera = demo::makeCamera(root);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(SolidBackground::create());
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);
    viewport->setPassTiming(true);
    viewport->setAAPostProcessOn  (true);
    viewport->setSSAOPostProcessOn(true);
    viewport->setHDRPostProcessOn (true);
    viewport->setDoFPostProcessOn (true);
    viewport->setCMBPostProcessOn (true);

    PassiveWindowPtr window = PassiveWindow::create();
    addRefCP(window);
    beginEditCP(window);
    window->addPort(viewport);
    endEditCP(window);
    window->init();
    window->resize(width, height);
    viewport->prepareScene(root);
    for(LightPtr light : lights)
        viewport->addLight(light);

    Matrix viewing, projection;
    camera->getViewing   (viewing,    width, height);
    camera->getProjection(projection, width, height);
    const Vec2f nearFar(camera->getNear(), camera->getFar());

    EffectFloor floor;
    RenderAction *action = RenderAction::create();
    // Timer-query times arrive frames late: a few extra frames first.
    const int warmUp = 4;
    for(int frame = -warmUp; frame < frames; ++frame)
    {
        window->render(action);
        Thread::getCurrentChangeList()->clearAll();
        if(frame == -warmUp)
        {
            if(!floor.initialize(width, height, error))
                break;
            floor.setCamera(floorCamera(viewing, projection, nearFar));
            RenderTarget &gbuffer = viewport->getGBufferTarget();
            floor.copyInputs(glName(viewport->getLightTarget().getTargetTexture(0)),
                             glName(gbuffer.getTargetTexture(0)),
                             glName(gbuffer.getTargetTexture(4)));
        }
        if(frame < 0)
            continue;
        const DeferredRenderingViewport::PassTimes &times = viewport->getPassTimes();
        const DeferredRenderingViewport::PassTimes &cpu   = viewport->getPassCpuTimes();
        TextureChunkPtr lit = viewport->getLightTarget().getTargetTexture(0);
        for(int e = 0; e < EffectFloor::EffectCount; ++e)
        {
            samples.viewport[e].push_back(times.effects[e]);
            samples.cpu     [e].push_back(cpu.effects[e]);

            IDeferredPostProcessor *effect = viewport->getPostProcessor(UInt32(e));
            glFinish();
            const double start = rawgl::nowMilliseconds();
            effect->update(viewing, projection, nearFar);
            effect->perform(lit);
            glFinish();
            samples.library[e].push_back(rawgl::nowMilliseconds() - start);
            samples.floor  [e].push_back(floor.render(EffectFloor::Effect(e)));
        }
    }

    delete action;
    subRefCP(window);
    for(LightPtr light : lights)
        subRefCP(light);
    return samples;
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    demo::CommandLine line("lumora_frame_table", [](std::ostream &) { usage(stdout); });
    line.addList("--sizes", 9, 2160, options.heights);
    line.addInt ("--frames", 1, 1000, options.frames);
    const int parsed = line.parse(argc, argv);
    if(parsed != 0)
        return parsed == 1 ? 0 : parsed;

    const std::unique_ptr<lumora::HeadlessContext> context =
        rawgl::openTableContext("lumora_frame_table", options.heights);
    if(!context)
        return 1;

    // viewport: the pass as the viewport timed it in the frame (timer
    // queries where the window has them); cpu: the same on the rendering
    // thread's clock; library and floor: the effect alone, waited for.
    std::printf("%-9s %-5s | %9s %9s | %9s %9s %6s\n",
                "size", "pass", "viewport", "cpu", "library", "floor", "ratio");
    int status = 0;
    for(int height : options.heights)
    {
        const int width = height * 16 / 9;
        std::string error;
        const Samples s = measure(width, height, options.frames, error);
        if(!error.empty())
        {
            std::fprintf(stderr, "lumora_frame_table: floor: %s\n", error.c_str());
            status = 1;
            break;
        }
        char size[32];
        std::snprintf(size, sizeof(size), "%dx%d", width, height);
        double libraryTotal = 0.0, floorTotal = 0.0;
        for(int e = 0; e < EffectFloor::EffectCount; ++e)
        {
            const double library = median(s.library[e]);
            const double floor   = median(s.floor[e]);
            libraryTotal += library;
            floorTotal   += floor;
            std::printf("%-9s %-5s | %9.2f %9.2f | %9.2f %9.2f %6.2f\n", size,
                        EffectFloor::getName(EffectFloor::Effect(e)),
                        median(s.viewport[e]), median(s.cpu[e]), library, floor,
                        library / floor);
        }
        std::printf("%-9s %-5s | %9s %9s | %9.2f %9.2f %6.2f\n", size, "all", "", "",
                    libraryTotal, floorTotal, libraryTotal / floorTotal);
        std::fflush(stdout);
    }
    osgExit();
    return status;
}
