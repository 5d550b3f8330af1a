// Whole frames of a scene drawn forward in raw OpenGL against the library's
// deferred viewport, volume path and batched path, in one process: the
// demo courtyard, whose lights reach across it, and a street whose lights
// reach a tenth of its width.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/CommandLine.h"
#include "common/DemoScene.h"
#include "ForwardRenderer.h"
#include "RawGL.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

using namespace osg;

namespace
{

struct Options
{
    std::vector<std::string> scenes      = {"demo", "street"};
    std::vector<int>         heights     = {360, 720};
    std::vector<int>         lightCounts = {1, 8, 64, 256};
    int                      frames      = 3;
};

struct Row
{
    double                      forwardMs = 0.0;
    double                      volumeMs  = 0.0;
    double                      batchedMs = 0.0;
    double                      gbufferMs = 0.0;  // of a batched frame, waited for
    double                      lightsMs  = 0.0;
    int                         lights    = 0;
    ForwardRenderer::FrameStats stats;
};

void usage(FILE *out)
{
    std::fprintf(out,
        "usage: lumora_forward_table [--scenes demo,street] [--sizes 360,720]\n"
        "                            [--lights 1,8,64,256] [--frames N]\n"
        "Prints whole-frame times of a scene drawn forward in raw OpenGL, eight\n"
        "lights a pass, against the deferred viewport's volume and batched light\n"
        "paths, at 16:9 sizes given by their heights.\n"
        "  --scenes   demo (the courtyard) and/or street (local lights)\n"
        "  --sizes    image heights, width 16/9 of each (default 360,720)\n"
        "  --lights   light counts (default 1,8,64,256)\n"
        "  --frames   measured frames per figure after one warm-up, median (default 3)\n");
}

bool parseScenes(const char *text, std::vector<std::string> &out)
{
    out.clear();
    std::stringstream stream(text);
    std::string item;
    while(std::getline(stream, item, ','))
    {
        if(item != "demo" && item != "street")
            return false;
        out.push_back(item);
    }
    return !out.empty();
}

// The median, so that a stall of the virtual machine in one frame does not
// move a figure.
double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    const size_t n = times.size();
    return n % 2 ? times[n / 2] : 0.5 * (times[n / 2 - 1] + times[n / 2]);
}

// One warm-up frame, then the median of frames whole frames, each waited for.
double measureDeferred(PassiveWindowPtr window, RenderAction *action, int frames)
{
    std::vector<double> times;
    for(int frame = -1; frame < frames; ++frame)
    {
        glFinish();
        const double start = rawgl::nowMilliseconds();
        window->render(action);
        glFinish();
        const double ms = rawgl::nowMilliseconds() - start;
        Thread::getCurrentChangeList()->clearAll();
        if(frame >= 0)
            times.push_back(ms);
    }
    return median(times);
}

Row measureRow(const std::string &scene, ForwardRenderer &forward, int width, int height,
               int count, int frames)
{
    NodePtr root = demo::makeGroupNode();
    std::vector<LightPtr> lights;
    PerspectiveCameraPtr camera;
    if(scene == "demo")
    {
        demo::addChild(root, demo::buildObjects(false));
        lights = demo::makeDemoLights(root, count, 0, false);
        camera = demo::makeCamera(root);
    }
    else
    {
        demo::addChild(root, demo::buildStreet());
        lights = demo::makeStreetLights(root, count);
        camera = demo::makeStreetCamera(root);
    }

    Row row;
    row.lights = int(lights.size());
    forward.prepare(root);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(SolidBackground::create());
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);

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

    RenderAction *action = RenderAction::create();
    viewport->setLightBatching(false);
    row.volumeMs = measureDeferred(window, action, frames);
    viewport->setLightBatching(true);
    row.batchedMs = measureDeferred(window, action, frames);
    // Where a batched frame's time goes: one more frame, each pass waited for.
    viewport->setPassTiming(true);
    measureDeferred(window, action, 1);
    row.gbufferMs = viewport->getPassTimes().geometry;
    row.lightsMs  = viewport->getPassTimes().shadows + viewport->getPassTimes().lights;

    std::vector<double> forwardTimes;
    for(int frame = -1; frame < frames; ++frame)
    {
        const double ms = forward.render(camera, lights);
        if(frame >= 0)
            forwardTimes.push_back(ms);
    }
    row.forwardMs = median(forwardTimes);
    row.stats = forward.getLastStats();

    delete action;
    subRefCP(window);
    for(LightPtr light : lights)
        subRefCP(light);
    return row;
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    demo::CommandLine line("lumora_forward_table", [](std::ostream &) { usage(stdout); });
    line.addValue("--scenes", [&](const std::string &text) {
        return parseScenes(text.c_str(), options.scenes);
    });
    line.addList("--sizes", 9, 2160, options.heights);
    line.addList("--lights", 1, 4096, options.lightCounts);
    line.addInt ("--frames", 1, 1000, options.frames);
    const int parsed = line.parse(argc, argv);
    if(parsed != 0)
        return parsed == 1 ? 0 : parsed;

    const std::unique_ptr<lumora::HeadlessContext> context =
        rawgl::openTableContext("lumora_forward_table", options.heights);
    if(!context)
        return 1;

    std::printf("%-7s %-9s %6s | %10s %10s %10s | %7s %7s | %7s %7s | %7s %6s %6s\n",
                "scene", "size", "lights", "fwd ms", "volume ms", "batch ms",
                "f/vol", "f/bat", "g-buf", "lights", "objects", "extra", "max/o");
    std::fflush(stdout);
    int    status  = 0;
    double lastRow = 0.0;
    for(const std::string &scene : options.scenes)
    {
        for(int height : options.heights)
        {
            const int width = height * 16 / 9;
            ForwardRenderer forward;
            std::string error;
            if(!forward.initialize(width, height, error))
            {
                std::fprintf(stderr, "lumora_forward_table: forward: %s\n", error.c_str());
                status = 1;
                break;
            }
            for(int count : options.lightCounts)
            {
                // The previous row foretells this one's wait.
                if(lastRow > 2000.0)
                    std::fprintf(stderr, "lumora_forward_table: %s %dx%d, %d lights...\n",
                                 scene.c_str(), width, height, count);
                const double start = rawgl::nowMilliseconds();
                const Row row = measureRow(scene, forward, width, height, count,
                                           options.frames);
                lastRow = rawgl::nowMilliseconds() - start;

                char size[32];
                std::snprintf(size, sizeof(size), "%dx%d", width, height);
                std::printf("%-7s %-9s %6d | %10.2f %10.2f %10.2f | %7.2f %7.2f |"
                            " %7.2f %7.2f | %7d %6d %6d\n",
                            scene.c_str(), size, row.lights, row.forwardMs, row.volumeMs,
                            row.batchedMs, row.forwardMs / row.volumeMs,
                            row.forwardMs / row.batchedMs, row.gbufferMs, row.lightsMs,
                            row.stats.objects,
                            row.stats.extraPasses, row.stats.maxLights);
                std::fflush(stdout);
            }
        }
    }
    osgExit();
    return status;
}
