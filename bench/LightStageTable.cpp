// The light stage against its floor, side by side in one process: the
// library's volume path on the demo scene, and the same number of point
// lights in raw OpenGL, drawn one by one and looped in one screen pass.
// Costs compare per light-pixel, the fragments an occlusion query counts.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>

#include "common/CommandLine.h"
#include "common/DemoScene.h"
#include "LightFloor.h"
#include "RawGL.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace osg;

namespace
{

struct Options
{
    std::vector<int> lightCounts = {1, 8, 64, 256};
    std::vector<int> heights     = {360, 720};
    int              frames      = 3;
};

struct LibraryFigures
{
    double stageMs  = 0.0;   // light updates and light pass, waited for
    double cpuMs    = 0.0;   // the same on the rendering thread's clock
    double pixels   = 0.0;
};

void usage(FILE *out)
{
    std::fprintf(out,
        "usage: lumora_light_table [--lights N,N,...] [--sizes 360,720] [--frames N]\n"
        "Prints the library's light stage against a raw OpenGL floor, per\n"
        "light-pixel, at 16:9 sizes given by their heights.\n"
        "  --lights   point light counts (default 1,8,64,256)\n"
        "  --sizes    image heights, width 16/9 of each (default 360,720)\n"
        "  --frames   measured frames per figure after one warm-up (default 3)\n");
}

// Light stage figures of the demo scene with count point lights, drawn as
// volumes or batched; the same lights in eye space, and the camera, go to
// the floor.
LibraryFigures measureLibrary(int width, int height, int count, int frames, bool batched,
                              std::vector<LightFloor::PointLight> &eyeLights,
                              Matrix &projection, Vec2f &nearFar)
{
    NodePtr root = demo::makeGroupNode();
    demo::addChild(root, demo::buildObjects(true));
    std::vector<LightPtr> lights = demo::makeDemoLights(root, count, 0, false);
    PerspectiveCameraPtr camera = demo::makeCamera(root);

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(SolidBackground::create());
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);
    viewport->setPassTiming(true);
    viewport->setLightBatching(batched);

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
    LibraryFigures sum;
    for(int frame = -1; frame < frames; ++frame)
    {
        window->render(action);
        Thread::getCurrentChangeList()->clearAll();
        if(frame < 0)
            continue;
        const DeferredRenderingViewport::PassTimes &t = viewport->getPassTimes();
        sum.stageMs += t.shadows + t.lights;
        sum.cpuMs   += t.lightsCpu;
        sum.pixels  += double(t.lightPixels);
    }
    sum.stageMs /= frames;
    sum.cpuMs   /= frames;
    sum.pixels  /= frames;

    Matrix viewing;
    camera->getViewing   (viewing,    width, height);
    camera->getProjection(projection, width, height);
    nearFar.setValues(camera->getNear(), camera->getFar());
    eyeLights.clear();
    for(LightPtr light : lights)
    {
        PointLightPtr point = PointLightPtr::dcast(light);
        if(point == NullFC || light->getType() != PointLight::getClassType())
            continue;
        Pnt3f position = point->getPosition();
        if(light->getBeacon() != NullFC)
            light->getBeacon()->getToWorld().multFullMatrixPnt(position);
        viewing.multFullMatrixPnt(position);
        LightFloor::PointLight l;
        for(int k = 0; k < 3; ++k)
        {
            l.position[k] = position[k];
            l.diffuse [k] = light->getDiffuse ()[k];
            l.specular[k] = light->getSpecular()[k];
        }
        l.attenuation[0] = light->getConstantAttenuation();
        l.attenuation[1] = light->getLinearAttenuation();
        l.attenuation[2] = light->getQuadraticAttenuation();
        eyeLights.push_back(l);
    }

    delete action;
    subRefCP(window);
    for(LightPtr light : lights)
        subRefCP(light);
    return sum;
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    demo::CommandLine line("lumora_light_table", [](std::ostream &) { usage(stdout); });
    line.addList("--lights", 1, 4096, options.lightCounts);
    line.addList("--sizes", 9, 2160, options.heights);
    line.addInt ("--frames", 1, 1000, options.frames);
    const int parsed = line.parse(argc, argv);
    if(parsed != 0)
        return parsed == 1 ? 0 : parsed;

    const std::unique_ptr<lumora::HeadlessContext> context =
        rawgl::openTableContext("lumora_light_table", options.heights);
    if(!context)
        return 1;

    std::printf("%-9s %6s | %9s %8s %7s | %9s %7s %6s | %8s | %9s %9s %6s | %8s\n",
                "", "", "volumes", "", "", "floor", "", "", "", "batched", "1pass", "", "");
    std::printf("%-9s %6s | %9s %8s %7s | %9s %7s %6s | %8s | %9s %9s %6s | %8s\n",
                "size", "lights", "ms", "Mpixels", "ns/lpx", "ms", "ns/lpx", "ratio",
                "cpu us/l", "ms", "ms", "ratio", "cpu us/l");
    int status = 0;
    for(int height : options.heights)
    {
        const int width = height * 16 / 9;
        LightFloor floor;
        std::string error;
        if(!floor.initialize(width, height, error))
        {
            std::fprintf(stderr, "lumora_light_table: floor: %s\n", error.c_str());
            status = 1;
            break;
        }
        for(int count : options.lightCounts)
        {
            std::vector<LightFloor::PointLight> eyeLights;
            Matrix projection, inverse;
            Vec2f  nearFar;
            LibraryFigures lib = measureLibrary(width, height, count, options.frames, false,
                                                eyeLights, projection, nearFar);
            LibraryFigures batch = measureLibrary(width, height, count, options.frames, true,
                                                  eyeLights, projection, nearFar);
            projection.inverse(inverse);
            floor.setCamera(nearFar[0], nearFar[1], inverse.getValues());

            double volumeMs = 0.0, onePassMs = 0.0, floorPixels = 0.0;
            for(int frame = -1; frame < options.frames; ++frame)
            {
                const double v = floor.renderVolumes(eyeLights);
                const double pixels = double(floor.getLastPixels());
                const double o = floor.renderOnePass(eyeLights);
                if(frame < 0)
                    continue;
                volumeMs += v;
                onePassMs += o;
                floorPixels += pixels;
            }
            volumeMs    /= options.frames;
            onePassMs   /= options.frames;
            floorPixels /= options.frames;

            const double libNs    = lib.stageMs * 1e6 / lib.pixels;
            const double volumeNs = volumeMs * 1e6 / floorPixels;
            const double lights   = double(eyeLights.size());
            char size[32];
            std::snprintf(size, sizeof(size), "%dx%d", width, height);
            std::printf("%-9s %6zu | %9.2f %8.2f %7.2f | %9.2f %7.2f %6.2f | %8.1f |"
                        " %9.2f %9.2f %6.2f | %8.1f\n",
                        size, eyeLights.size(), lib.stageMs, lib.pixels * 1e-6, libNs,
                        volumeMs, volumeNs, libNs / volumeNs, lib.cpuMs * 1000.0 / lights,
                        batch.stageMs, onePassMs, batch.stageMs / onePassMs,
                        batch.cpuMs * 1000.0 / lights);
            std::fflush(stdout);
        }
    }
    osgExit();
    return status;
}
