// Renders the demo scene or a model file headlessly through a
// DeferredRenderingViewport into a PNG, optionally with pictures of the
// G-buffer, and prints how long each pass of the frame took.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGCameraAttachment.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/DebugView.h"
#include "common/CommandLine.h"
#include "common/DemoScene.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
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

struct Options : SceneOptions
{
    Options(void) { frames = 10; }

    bool        sun     = true;
    Real32      orbit   = 0.0f;  // degrees the camera turns per frame
    bool        effects[DRV::NumPostProcessors] = {false, false, false, false, false};
    std::string out     = "demo.png";
    int         camera  = 0;        // which of the file's cameras
    bool        fit     = false;    // frame the model even if it has cameras
    std::string debugPrefix;        // empty: no debug views
    // The renderer's own defaults, not the library's: lights without
    // shadows batched, shadow maps reused while the camera stands still.
    bool        batching = true;
    int         reuse    = -1;      // -1: on unless the camera orbits
    bool        compare  = false;   // also time the library's defaults

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
    os << "usage: lumora-render [options] [MODEL]\n"
          "Renders a courtyard (or MODEL, any file the scene file handler reads:\n"
          "OBJ, glTF, PLY, 3DS, Collada, FBX, ...) with deferred shading, lit by\n"
          "coloured point and spot lights and a sun, into a PNG and prints the time\n"
          "of each pass (min, median, max over the frames). A model keeps its own\n"
          "lights and gets the generated ones around its bounding sphere.\n"
          "\n"
          "  --width N              image width in pixels (default 640)\n"
          "  --height N             image height in pixels (default 360)\n"
          "  --frames N             frames to render and time (default 10)\n"
          "  --point-lights N       number of point lights (default 24)\n"
          "  --spot-lights N        number of spot lights (default 8)\n"
          "  --no-sun               leave out the directional light\n"
          "  --no-shadows           no light casts shadows (by default the sun, one\n"
          "                         point light and one spot light do; with a\n"
          "                         model, the sun and one spot light, not the\n"
          "                         file's own lights)\n"
          "  --shadow-intensity X   global shadow intensity; below 1 every light\n"
          "                         casts shadows this dark (slow on software GL)\n"
          "  --no-light-batching    draw every light as a volume (the library's\n"
          "                         default) instead of the point and spot lights\n"
          "                         without shadows in one tiled screen pass\n"
          "  --shadow-reuse         keep shadow maps while nothing they show moved\n"
          "                         (the default unless --orbit is given)\n"
          "  --no-shadow-reuse      redraw every shadow map every frame\n"
          "  --compare-defaults     also time the frames with the library's\n"
          "                         defaults (no reuse, light volumes) and print\n"
          "                         both totals and their ratio\n"
          "  --orbit DEGREES        turn the camera around the scene by this much\n"
          "                         each frame (default 0)\n"
          "  --camera N             with a model: view through its N-th camera\n"
          "                         (default 0, the first, if the file has any)\n"
          "  --fit-camera           with a model: ignore its cameras and frame it\n";
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
          "  --debug-views PREFIX   also write the last frame's PREFIX-normals.png,\n"
          "                         -diffuse, -specular, -shininess, -emissive,\n"
          "                         -depth (linear, near black) and -light (lit\n"
          "                         image before the effects)\n"
          "  --help                 show this text\n"
          "\n"
          "Exit status: 0 done, 1 the model or the output could not be read or\n"
          "written or OpenGL failed, 2 bad arguments or a size beyond OpenGL's limits.\n";
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parseArgs(int argc, char **argv, Options &opt)
{
    CommandLine line("lumora-render", printUsage);
    line.addSceneOptions(opt, SceneLimits{1, 1 << 20, 4096, 4096, 100000});
    line.addFlag("--no-sun",       [&]() { opt.sun = false; });
    line.addFlag("--all-effects",  [&]() {
        std::fill(std::begin(opt.effects), std::end(opt.effects), true);
    });
    line.addFlag("--fit-camera",        [&]() { opt.fit = true; });
    line.addFlag("--light-batching",    [&]() { opt.batching = true; });
    line.addFlag("--no-light-batching", [&]() { opt.batching = false; });
    line.addFlag("--shadow-reuse",      [&]() { opt.reuse = 1; });
    line.addFlag("--no-shadow-reuse",   [&]() { opt.reuse = 0; });
    line.addFlag("--compare-defaults",  [&]() { opt.compare = true; });
    for(const Switch &effect : Effects)
    {
        const int slot = effect.slot;
        line.addFlag(effect.name, [&opt, slot]() { opt.effects[slot] = true; });
    }
    for(const Parameter &parameter : Parameters)
    {
        void (DRV::*set)(Real32) = parameter.set;
        line.addReal(parameter.name, [&opt, set](Real32 value) {
            opt.settings.push_back([set, value](DRV *viewport) { (viewport->*set)(value); });
        });
    }
    line.addReal("--shadow-intensity", [&](Real32 value) {
        opt.settings.push_back([value](DRV *viewport) {
            viewport->setGlobalShadowIntensity(value);
        });
    });
    line.addReal("--orbit", [&](Real32 value) { opt.orbit = value; });
    line.addInt ("--camera", 0, 1 << 20, opt.camera);
    line.addText("--out", opt.out);
    line.addText("--debug-views", opt.debugPrefix);
    return line.parse(argc, argv);
}

Real64 median(std::vector<Real64> times)
{
    if(times.empty())
        return 0.0;
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// One row of the timing table: min, median and max over the frames, and
// the median CPU time.
void printRow(const char *name, std::vector<Real64> times, const std::vector<Real64> &cpu)
{
    if(times.empty())
        return;
    std::sort(times.begin(), times.end());
    std::printf("  %-16s %9.3f %9.3f %9.3f", name, times.front(), times[times.size() / 2],
                times.back());
    if(!cpu.empty())
        std::printf(" %9.3f", median(cpu));
    std::printf("\n");
}

// The largest image this GL renders to: textures, renderbuffers and the
// viewport all have to hold it. Asked of a context of its own, since the
// real one is made at the image's size.
int maxImageSize(std::string &error)
{
    lumora::HeadlessContext probe(16, 16);
    if(!probe.isValid())
    {
        error = probe.errorString();
        return 0;
    }
    GLint texture = 0, renderbuffer = 0, viewport[2] = {0, 0};
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &texture);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &renderbuffer);
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport);
    return std::min(std::min(texture, renderbuffer), std::min(viewport[0], viewport[1]));
}

void collectLights(NodePtr node, std::vector<LightPtr> &lights)
{
    LightPtr light = LightPtr::dcast(node->getCore());
    if(light != NullFC)
        lights.push_back(light);
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        collectLights(node->getChild(i), lights);
}

bool writeRgbPng(const std::string &path, const std::vector<UInt8> &rgb, int width, int height)
{
    ImagePtr image = Image::create();
    addRefCP(image);
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, width, height, 1, 1, 1, 0.0, rgb.data());
    endEditCP(image);
    bool written = image->write(path.c_str());
    subRefCP(image);
    return written;
}

struct Scene
{
    NodePtr               root;
    CameraPtr             camera;
    Pnt3f                 center;    // the orbit turns about this
    std::vector<LightPtr> lights;    // one reference held on each
};

void buildDemo(const Options &opt, Scene &scene)
{
    scene.root = makeGroupNode();
    addChild(scene.root, buildObjects(true));
    scene.camera = makeCamera(scene.root);
    scene.center.setValues(0.f, 0.f, 0.f);
    scene.lights = makeDemoLights(scene.root, opt.points, opt.spots, opt.sun, opt.shadows);
}

// 0 done, else the exit status, with the message written.
int loadModel(const Options &opt, Scene &scene)
{
    // The loader says why a file it opened is no good; say why it cannot
    // open one at all.
    std::ifstream probe(opt.model.c_str(), std::ios::binary);
    if(!probe)
    {
        std::cerr << "lumora-render: cannot open '" << opt.model << "': "
                  << std::strerror(errno) << "\n";
        return 1;
    }
    probe.close();

    NodePtr model = SceneFileHandler::the().read(opt.model.c_str());
    if(model == NullFC)
    {
        std::cerr << "lumora-render: cannot read '" << opt.model << "'\n";
        return 1;
    }
    scene.root = makeGroupNode();
    addChild(scene.root, model);

    Real32 radius = 0.f;
    if(!boundingSphere(scene.root, scene.center, radius))
    {
        std::cerr << "lumora-render: '" << opt.model << "' holds nothing to draw\n";
        return 1;
    }

    std::vector<CameraPtr> cameras = findCameras(model);
    if(opt.camera >= int(cameras.size()) && !opt.fit && (opt.camera > 0 || !cameras.empty()))
    {
        std::cerr << "lumora-render: '" << opt.model << "' has " << cameras.size()
                  << " cameras, no camera " << opt.camera << "\n";
        return 2;
    }

    if(!opt.fit && !cameras.empty())
    {
        // The camera hangs under a beacon of our own, so that the orbit can
        // turn it whatever the file's beacon is.
        Matrix placement;
        scene.camera = cameras[opt.camera];
        scene.camera->getBeacon()->getToWorld(placement);
        NodePtr beacon = makeTransformNode(placement);
        addChild(scene.root, beacon);
        beginEditCP(scene.camera, Camera::BeaconFieldMask);
        scene.camera->setBeacon(beacon);
        endEditCP(scene.camera, Camera::BeaconFieldMask);
    }
    else
        scene.camera = makeFramingCamera(scene.root, scene.center, radius);

    collectLights(model, scene.lights);
    for(LightPtr light : scene.lights)
    {
        addRefCP(light);
        // Files say nothing of shadows; OpenSG's default intensity of 0
        // would give each of their lights a costly shadow map.
        beginEditCP(light, Light::ShadowIntensityFieldMask);
        light->setShadowIntensity(1.f);
        endEditCP(light, Light::ShadowIntensityFieldMask);
    }
    std::vector<LightPtr> around = makeLightsAround(scene.root, scene.center, radius, opt.points,
                                                    opt.spots, opt.sun, opt.shadows);
    scene.lights.insert(scene.lights.end(), around.begin(), around.end());
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

    std::string error;
    const int   maxSize = maxImageSize(error);
    if(maxSize == 0)
    {
        std::cerr << "lumora-render: no OpenGL context: " << error << "\n";
        return 1;
    }
    if(opt.width > maxSize || opt.height > maxSize)
    {
        std::cerr << "lumora-render: " << opt.width << "x" << opt.height
                  << " exceeds the OpenGL limit of " << maxSize << " pixels a side\n";
        return 2;
    }

    lumora::HeadlessContext context(opt.width, opt.height);
    if(!context.isValid())
    {
        std::cerr << "lumora-render: no OpenGL context: " << context.errorString() << "\n";
        return 1;
    }

    osgInit(0, NULL);
    initLumora();

    Scene scene;
    if(opt.model.empty())
        buildDemo(opt, scene);
    else if(int status = loadModel(opt, scene))
    {
        osgExit();
        return status;
    }
    NodePtr      root            = scene.root;
    TransformPtr cameraPlacement = TransformPtr::dcast(scene.camera->getBeacon()->getCore());
    const Matrix cameraStart     = cameraPlacement->getMatrix();

    SolidBackgroundPtr background = SolidBackground::create();
    beginEditCP(background);
    background->setColor(opt.model.empty() ? Color3f(0.1f, 0.12f, 0.2f)
                                           : Color3f(0.15f, 0.15f, 0.2f));
    endEditCP(background);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    beginEditCP(viewport);
    viewport->setCamera(scene.camera);
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
    const bool reuse = opt.reuse < 0 ? opt.orbit == 0.0f : opt.reuse == 1;
    viewport->setLightBatching(opt.batching);
    viewport->setShadowMapReuse(reuse);
    for(const std::function<void(DRV *)> &setting : opt.settings)
        setting(viewport.getCPtr());

    std::vector<LightPtr> &lights = scene.lights;
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
    std::vector<Real64> cpu[5], cpuEffects[DRV::NumPostProcessors];
    typedef std::chrono::steady_clock Clock;
    Clock::time_point lastProgress = Clock::now();
    // Renders the timed frames; returns each frame's total.
    auto renderFrames = [&](const char *label, bool record) {
        std::vector<Real64> totals;
        for(int frame = 0; frame < opt.frames; ++frame)
        {
            if(opt.orbit != 0.0f)
            {
                Matrix turn, rotate, back;
                turn.setTranslate(Vec3f(scene.center));
                rotate.setRotate(Quaternion(Vec3f(0, 1, 0),
                                            osgdegree2rad(opt.orbit * (frame + 1))));
                back.setTranslate(-Vec3f(scene.center));
                turn.mult(rotate);
                turn.mult(back);
                turn.mult(cameraStart);
                beginEditCP(cameraPlacement, Transform::MatrixFieldMask);
                cameraPlacement->setMatrix(turn);
                endEditCP(cameraPlacement, Transform::MatrixFieldMask);
            }

            // The whole frame's wall time needs the GPU finished; the passes
            // are timed without waiting.
            const Clock::time_point start = Clock::now();
            window->render(action);
            glFinish();
            totals.push_back(std::chrono::duration<Real64, std::milli>(Clock::now() - start).count());
            // Nothing consumes the changes; as in any single-threaded program.
            Thread::getCurrentChangeList()->clearAll();

            const DRV::PassTimes &t = viewport->getPassTimes();
            const DRV::PassTimes &c = viewport->getPassCpuTimes();
            cpu[0].push_back(c.geometry);
            cpu[1].push_back(c.shadows);
            cpu[2].push_back(c.lights);
            cpu[3].push_back(c.forward);
            cpu[4].push_back(c.final);
            for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
                cpuEffects[slot].push_back(c.effects[slot]);
            // GPU times arrive frames later: keep those of the timed frames.
            if(record && t.measured && viewport->getPassTimesAge() <= UInt32(frame))
            {
                geometry .push_back(t.geometry);
                shadows  .push_back(t.shadows);
                lightPass.push_back(t.lights);
                forward  .push_back(t.forward);
                final    .push_back(t.final);
                for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
                    effects[slot].push_back(t.effects[slot]);
            }
            // Long runs say how far they are, once a second.
            if(Clock::now() - lastProgress >= std::chrono::seconds(1))
            {
                lastProgress = Clock::now();
                std::cerr << label << "frame " << frame + 1 << "/" << opt.frames << std::endl;
            }
        }
        return totals;
    };
    total = renderFrames("", true);

    bool written = writeFramebufferPng(opt.out, opt.width, opt.height);
    std::vector<std::string> unwritten;
    if(!written)
        unwritten.push_back(opt.out);
    for(int view = NormalsView; view < NumDebugViews && !opt.debugPrefix.empty(); ++view)
    {
        std::vector<UInt8> rgb;
        int                width = 0, height = 0;
        std::string        path  = opt.debugPrefix + "-" +
                                   debugViewName(DebugView(view)) + ".png";
        if(!readDebugView(viewport, DebugView(view), rgb, width, height) ||
           !writeRgbPng(path, rgb, width, height))
            unwritten.push_back(path);
        else
            std::cout << "wrote " << path << "\n";
    }

    std::printf("deferred frame %dx%d, %s, %d lights, %d frames (ms):\n", opt.width,
                opt.height, opt.model.empty() ? "courtyard" : opt.model.c_str(),
                int(lights.size()), opt.frames);
    std::printf("  %-16s %9s %9s %9s %9s\n", "pass", "min", "median", "max", "cpu");
    printRow("geometry pass", geometry, cpu[0]);
    printRow("shadow maps", shadows, cpu[1]);
    printRow("lights", lightPass, cpu[2]);
    printRow("forward pass", forward, cpu[3]);
    for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
    {
        if(opt.effects[slot])
            printRow(effectNames[slot], effects[slot], cpuEffects[slot]);
    }
    printRow("final quad", final, cpu[4]);
    printRow("frame (wall)", total, std::vector<Real64>());
    std::printf("  (passes: %s; cpu: median on the rendering thread)\n",
                viewport->getPassTimesAge() > 0 ? "GPU timer queries, read frames later"
                                                : "wall clock, waiting after each pass");
    std::printf("  (light batching %s, shadow-map reuse %s)\n", opt.batching ? "on" : "off",
                reuse ? "on" : "off");

    if(opt.compare)
    {
        // The same frames again with every map redrawn and every light a
        // volume, as the library draws by default.
        viewport->setShadowMapReuse(false);
        viewport->setLightBatching(false);
        for(const std::function<void(DRV *)> &setting : opt.settings)
            setting(viewport.getCPtr());
        window->render(action);
        std::vector<Real64> defaults = renderFrames("library defaults: ", false);
        const Real64 ours = median(total), theirs = median(defaults);
        std::printf("library defaults: median total %.1f ms; these settings %.1f ms "
                    "(%.2f times faster)\n", theirs, ours, ours > 0.0 ? theirs / ours : 0.0);
    }

    delete action;
    for(LightPtr light : lights)
        subRefCP(light);
    osgExit();

    for(const std::string &path : unwritten)
        std::cerr << "lumora-render: could not write '" << path << "'\n";
    if(!unwritten.empty())
        return 1;
    std::cout << "wrote " << opt.out << "\n";
    return 0;
}
