// Renders the demo scene headlessly through a DeferredRenderingViewport into
// a PNG and prints how long each pass of the frame took.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/DemoScene.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

using namespace osg;
using namespace demo;

namespace
{

typedef DeferredRenderingViewport DRV;

struct Options
{
    int         width   = 640;
    int         height  = 360;
    int         frames  = 10;
    int         points  = 24;
    int         spots   = 8;
    bool        sun     = true;
    bool        shadows = true;
    Real32      orbit   = 0.0f;  // degrees the camera turns per frame
    bool        effects[DRV::NumPostProcessors] = {false, false, false, false, false};
    std::string out     = "demo.png";

    // Viewport settings given on the command line, applied in order.
    std::vector<std::function<void(DRV *)>> settings;
};

struct Switch
{
    const char *name;
    int         slot;
    const char *help;
};

const Switch Effects[] =
{
    {"--aa",   DRV::AAPostProcess,   "edge anti-aliasing"},
    {"--ssao", DRV::SSAOPostProcess, "screen-space ambient occlusion"},
    {"--hdr",  DRV::HDRPostProcess,  "HDR tone mapping with bloom"},
    {"--dof",  DRV::DoFPostProcess,  "depth of field"},
    {"--cmb",  DRV::CMBPostProcess,  "camera motion blur (try with --orbit)"},
};

struct Parameter
{
    const char *name;
    void (DRV::*set)(Real32);
    const char *help;
};

const Parameter Parameters[] =
{
    {"--hdr-exposure",     &DRV::setHDRExposure,            "HDR exposure (default 1.64)"},
    {"--hdr-threshold",    &DRV::setHDRBrightPassThreshold, "bloom bright-pass threshold (default 1)"},
    {"--dof-focal-depth",  &DRV::setDoFFocalDepth,          "depth in focus (default 10)"},
    {"--dof-cutoff",       &DRV::setDoFBlurCutoff,          "largest far blur, 0..1 (default 0.7)"},
    {"--cmb-scale",        &DRV::setCMBBlurScale,           "motion blur scale (default 0.03)"},
    {"--ssao-scale",       &DRV::setSSAOScale,              "ambient occlusion radius scale (default 0.001)"},
    {"--ssao-attenuation", &DRV::setSSAOAttenuation,        "ambient occlusion attenuation (default 0.0025)"},
};

void printUsage(std::ostream &os)
{
    os << "usage: lumora-render [options]\n"
          "Renders spheres, a box and a glass pane on a floor with deferred\n"
          "shading, lit by coloured point and spot lights and a sun, into a PNG\n"
          "and prints the time of each pass (min, median, max over the frames).\n"
          "\n"
          "  --width N              image width in pixels (default 640)\n"
          "  --height N             image height in pixels (default 360)\n"
          "  --frames N             frames to render and time (default 10)\n"
          "  --point-lights N       number of point lights (default 24)\n"
          "  --spot-lights N        number of spot lights (default 8)\n"
          "  --no-sun               leave out the directional light\n"
          "  --no-shadows           no light casts shadows (by default the sun, one\n"
          "                         point light and one spot light do)\n"
          "  --shadow-intensity X   global shadow intensity; below 1 every light\n"
          "                         casts shadows this dark (slow on software GL)\n"
          "  --orbit DEGREES        turn the camera around the scene by this much\n"
          "                         each frame (default 0)\n";
    for(const Switch &s : Effects)
    {
        std::string name = s.name;
        os << "  " << name << std::string(23 - name.size(), ' ') << s.help << "\n";
    }
    os << "  --all-effects          all five effects\n";
    for(const Parameter &p : Parameters)
    {
        std::string name = std::string(p.name) + " X";
        os << "  " << name << std::string(23 - name.size(), ' ') << p.help << "\n";
    }
    os << "  --out FILE             output PNG (default demo.png)\n"
          "  --help                 show this text\n";
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parseArgs(int argc, char **argv, Options &opt)
{
    for(int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        if(arg == "--help" || arg == "-h")
        {
            printUsage(std::cout);
            return 1;
        }
        if(arg == "--no-sun" || arg == "--no-shadows" || arg == "--all-effects")
        {
            opt.sun     = opt.sun     && arg != "--no-sun";
            opt.shadows = opt.shadows && arg != "--no-shadows";
            if(arg == "--all-effects")
                std::fill(std::begin(opt.effects), std::end(opt.effects), true);
            continue;
        }
        const Switch *effect = std::find_if(std::begin(Effects), std::end(Effects),
                                            [&](const Switch &s) { return arg == s.name; });
        if(effect != std::end(Effects))
        {
            opt.effects[effect->slot] = true;
            continue;
        }

        const Parameter *parameter =
            std::find_if(std::begin(Parameters), std::end(Parameters),
                         [&](const Parameter &p) { return arg == p.name; });
        const bool known = parameter != std::end(Parameters) ||
            arg == "--width" || arg == "--height" || arg == "--frames" || arg == "--out" ||
            arg == "--point-lights" || arg == "--spot-lights" || arg == "--orbit" ||
            arg == "--shadow-intensity";
        if(!known)
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
        bool   ok     = true;
        Real32 number = 0.0f;
        if(parameter != std::end(Parameters) || arg == "--orbit" || arg == "--shadow-intensity")
        {
            ok = parseReal(value, number);
            if(ok && parameter != std::end(Parameters))
            {
                void (DRV::*set)(Real32) = parameter->set;
                opt.settings.push_back([set, number](DRV *viewport) { (viewport->*set)(number); });
            }
            else if(ok && arg == "--orbit")
                opt.orbit = number;
            else if(ok)
                opt.settings.push_back([number](DRV *viewport) {
                    viewport->setGlobalShadowIntensity(number);
                });
        }
        else if(arg == "--width")
            ok = parseInt(value, 1, 16384, opt.width);
        else if(arg == "--height")
            ok = parseInt(value, 1, 16384, opt.height);
        else if(arg == "--frames")
            ok = parseInt(value, 1, 100000, opt.frames);
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

// One row of the timing table: min, median and max over the frames.
void printRow(const char *name, std::vector<Real64> times)
{
    if(times.empty())
        return;
    std::sort(times.begin(), times.end());
    std::printf("  %-16s %9.3f %9.3f %9.3f\n", name, times.front(), times[times.size() / 2],
                times.back());
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
    GLint maxSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize);
    if(opt.width > maxSize || opt.height > maxSize)
    {
        std::cerr << "lumora-render: " << opt.width << "x" << opt.height
                  << " exceeds the OpenGL limit of " << maxSize << " pixels\n";
        return 2;
    }

    osgInit(0, NULL);
    initLumora();

    NodePtr root = makeGroupNode();
    addChild(root, buildObjects(true));
    PerspectiveCameraPtr camera = makeCamera(root);
    TransformPtr cameraPlacement = TransformPtr::dcast(camera->getBeacon()->getCore());
    const Matrix cameraStart = cameraPlacement->getMatrix();

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
    for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
    {
        if(opt.effects[slot])
        {
            void (DRV::*on[])(bool) = {&DRV::setAAPostProcessOn, &DRV::setSSAOPostProcessOn,
                                       &DRV::setHDRPostProcessOn, &DRV::setDoFPostProcessOn,
                                       &DRV::setCMBPostProcessOn};
            (viewport.getCPtr()->*on[slot])(true);
        }
    }
    for(const std::function<void(DRV *)> &setting : opt.settings)
        setting(viewport.getCPtr());

    std::vector<LightPtr> lights = makeDemoLights(root, opt.points, opt.spots, opt.sun,
                                                  opt.shadows);
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

    const char *effectNames[DRV::NumPostProcessors] =
        {"anti-aliasing", "ambient occl.", "HDR + bloom", "depth of field", "motion blur"};
    std::vector<Real64> geometry, shadows, lightPass, forward, final, total;
    std::vector<Real64> effects[DRV::NumPostProcessors];
    for(int frame = 0; frame < opt.frames; ++frame)
    {
        if(opt.orbit != 0.0f)
        {
            Matrix turn;
            turn.setRotate(Quaternion(Vec3f(0, 1, 0), osgdegree2rad(opt.orbit * (frame + 1))));
            turn.mult(cameraStart);
            beginEditCP(cameraPlacement, Transform::MatrixFieldMask);
            cameraPlacement->setMatrix(turn);
            endEditCP(cameraPlacement, Transform::MatrixFieldMask);
        }

        window->render(action);
        // Nothing consumes the changes; as in any single-threaded program.
        Thread::getCurrentChangeList()->clearAll();

        const DRV::PassTimes &t = viewport->getPassTimes();
        geometry .push_back(t.geometry);
        shadows  .push_back(t.shadows);
        lightPass.push_back(t.lights);
        forward  .push_back(t.forward);
        final    .push_back(t.final);
        Real64 sum = t.geometry + t.shadows + t.lights + t.forward + t.final;
        for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
        {
            effects[slot].push_back(t.effects[slot]);
            sum += t.effects[slot];
        }
        total.push_back(sum);
        std::cerr << "\rframe " << frame + 1 << "/" << opt.frames << std::flush;
    }
    std::cerr << "\n";

    bool written = writeFramebufferPng(opt.out, opt.width, opt.height);

    std::printf("deferred frame %dx%d, %d point, %d spot, %d directional lights, "
                "%d frames (ms):\n", opt.width, opt.height, opt.points, opt.spots,
                opt.sun ? 1 : 0, opt.frames);
    std::printf("  %-16s %9s %9s %9s\n", "pass", "min", "median", "max");
    printRow("geometry pass", geometry);
    printRow("shadow maps", shadows);
    printRow("lights", lightPass);
    printRow("forward pass", forward);
    for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
    {
        if(opt.effects[slot])
            printRow(effectNames[slot], effects[slot]);
    }
    printRow("final quad", final);
    printRow("total", total);

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
