// Renders the demo scene headlessly through a DeferredRenderingViewport into
// a PNG and prints how long each pass of the frame took.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/DemoScene.h"

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

using namespace osg;
using namespace demo;

namespace
{

struct Options
{
    int         width  = 640;
    int         height = 360;
    int         frames = 10;
    int         points = 24;
    int         spots  = 8;
    bool        sun    = true;
    bool        shadows = true;
    std::string out    = "demo.png";
};

void printUsage(std::ostream &os)
{
    os << "usage: lumora-render [options]\n"
          "Renders spheres, a box and a glass pane on a floor with deferred\n"
          "shading, lit by coloured point and spot lights and a dim sun, into\n"
          "a PNG and prints the time of each pass.\n"
          "\n"
          "  --width N         image width in pixels (default 640)\n"
          "  --height N        image height in pixels (default 360)\n"
          "  --frames N        frames to render and average over (default 10)\n"
          "  --point-lights N  number of point lights (default 24)\n"
          "  --spot-lights N   number of spot lights (default 8)\n"
          "  --no-sun          leave out the directional light\n"
          "  --no-shadows      no light casts shadows (by default the sun, one\n"
          "                    point light and one spot light do)\n"
          "  --out FILE        output PNG (default demo.png)\n"
          "  --help            show this text\n";
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parseArgs(int argc, char **argv, Options &opt)
{
    for(int i = 1; i < argc; ++i)
    {
        std::string arg = argv[i];
        if(arg == "--help" || arg == "-h")
        {
            printUsage(std::cout);
            return 1;
        }
        if(arg == "--no-sun")
        {
            opt.sun = false;
            continue;
        }
        if(arg == "--no-shadows")
        {
            opt.shadows = false;
            continue;
        }
        if(arg != "--width" && arg != "--height" && arg != "--frames" && arg != "--out" &&
           arg != "--point-lights" && arg != "--spot-lights")
        {
            std::cerr << "lumora-render: unknown option '" << arg << "'\n";
            printUsage(std::cerr);
            return 2;
        }
        if(i + 1 >= argc)
        {
            std::cerr << "lumora-render: " << arg << " needs a value\n";
            return 2;
        }

        const char *value = argv[++i];
        bool ok = true;
        if(arg == "--width")
            ok = parseInt(value, 1, 8192, opt.width);
        else if(arg == "--height")
            ok = parseInt(value, 1, 8192, opt.height);
        else if(arg == "--frames")
            ok = parseInt(value, 1, 10000, opt.frames);
        else if(arg == "--point-lights")
            ok = parseInt(value, 0, 4096, opt.points);
        else if(arg == "--spot-lights")
            ok = parseInt(value, 0, 4096, opt.spots);
        else
        {
            opt.out = value;
            ok      = !opt.out.empty();
        }
        if(!ok)
        {
            std::cerr << "lumora-render: bad value '" << value << "' for " << arg << "\n";
            return 2;
        }
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    Options opt;
    int parsed = parseArgs(argc, argv, opt);
    if(parsed == 1)
        return 0;
    if(parsed != 0)
        return 2;

    lumora::HeadlessContext context(opt.width, opt.height);
    if(!context.isValid())
    {
        std::cerr << "lumora-render: no OpenGL context: " << context.errorString() << "\n";
        return 1;
    }

    osgInit(0, NULL);
    initLumora();

    NodePtr root = makeGroupNode();
    addChild(root, buildObjects(true));
    PerspectiveCameraPtr camera = makeCamera(root);

    SolidBackgroundPtr background = SolidBackground::create();
    beginEditCP(background);
    background->setColor(Color3f(0.15f, 0.15f, 0.2f));
    endEditCP(background);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(background);
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);
    viewport->prepareScene(root);
    viewport->setPassTiming(true);

    std::vector<LightPtr> lights = makeDemoLights(root, opt.points, opt.spots, opt.sun, opt.shadows);
    for(LightPtr light : lights)
        viewport->addLight(light);

    PassiveWindowPtr window = PassiveWindow::create();
    beginEditCP(window);
    window->addPort(viewport);
    endEditCP(window);
    window->init();
    window->resize(opt.width, opt.height);

    RenderAction *action = RenderAction::create();

    // The first frame creates the buffers and compiles the shaders.
    window->render(action);

    DeferredRenderingViewport::PassTimes sum;
    for(int frame = 0; frame < opt.frames; ++frame)
    {
        window->render(action);
        // Nothing consumes the changes; as in any single-threaded program.
        Thread::getCurrentChangeList()->clearAll();
        const DeferredRenderingViewport::PassTimes &t = viewport->getPassTimes();
        sum.geometry += t.geometry;
        sum.shadows  += t.shadows;
        sum.lights   += t.lights;
        sum.forward  += t.forward;
        sum.final    += t.final;
        std::cerr << "\rframe " << frame + 1 << "/" << opt.frames << std::flush;
    }
    std::cerr << "\n";

    bool written = writeFramebufferPng(opt.out, opt.width, opt.height);

    const double n = opt.frames;
    std::printf("deferred frame %dx%d, %d point, %d spot, %d directional lights, "
                "mean of %d frames (ms):\n", opt.width, opt.height, opt.points, opt.spots,
                opt.sun ? 1 : 0, opt.frames);
    std::printf("  geometry pass  %8.3f\n", sum.geometry / n);
    std::printf("  shadow maps    %8.3f\n", sum.shadows / n);
    std::printf("  lights         %8.3f\n", sum.lights / n);
    std::printf("  forward pass   %8.3f\n", sum.forward / n);
    std::printf("  final quad     %8.3f\n", sum.final / n);
    std::printf("  total          %8.3f\n",
                (sum.geometry + sum.shadows + sum.lights + sum.forward + sum.final) / n);

    delete action;
    for(LightPtr light : lights)
        subRefCP(light);
    osgExit();

    if(!written)
    {
        std::cerr << "lumora-render: could not write '" << opt.out << "'\n";
        return 1;
    }
    std::cout << "wrote " << opt.out << "\n";
    return 0;
}
