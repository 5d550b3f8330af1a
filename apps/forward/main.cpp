// Renders a small lit scene with OpenSG's fixed-function forward renderer
// into a PNG: the baseline the deferred renderer is measured against.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGBaseMathFunctions.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include <Lumora/HeadlessContext.h>

#include "common/CommandLine.h"
#include "common/DemoScene.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

using namespace osg;
using namespace demo;

namespace
{

// Fixed-function GL has eight lights; one is the directional light.
const int MaxPointLights = 7;

struct Options
{
    int         width  = 640;
    int         height = 480;
    int         lights = 1;
    std::string out    = "forward.png";
};

void printUsage(std::ostream &os)
{
    os << "usage: osg-forward-render [options]\n"
          "Renders spheres and a box on a plane, lit by point lights and one\n"
          "directional light, with OpenSG's forward renderer into a PNG.\n"
          "\n"
          "  --width N    image width in pixels (default 640)\n"
          "  --height N   image height in pixels (default 480)\n"
          "  --lights N   number of point lights, 0.." << MaxPointLights
       << " (default 1)\n"
          "  --out FILE   output PNG (default forward.png)\n"
          "  --help       show this text\n";
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parseArgs(int argc, char **argv, Options &opt)
{
    CommandLine line("osg-forward-render", printUsage);
    line.addInt ("--width",  1, 16384,          opt.width);
    line.addInt ("--height", 1, 16384,          opt.height);
    line.addInt ("--lights", 0, MaxPointLights, opt.lights);
    line.addText("--out",    opt.out);
    return line.parse(argc, argv);
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
        std::cerr << "osg-forward-render: no OpenGL context: " << context.errorString() << "\n";
        return 1;
    }

    osgInit(0, NULL);

    NodePtr root = makeGroupNode();

    // Lights are group cores: the lit scene hangs below them.
    DirectionalLightPtr sun = DirectionalLight::create();
    NodePtr sunBeacon = makeGroupNode();
    addChild(root, sunBeacon);
    beginEditCP(sun);
    sun->setDirection(0.4f, 1.f, 0.3f);
    sun->setDiffuse (Color4f(0.5f, 0.5f, 0.45f, 1.f));
    sun->setSpecular(Color4f(0.3f, 0.3f, 0.3f, 1.f));
    sun->setAmbient (Color4f(0.1f, 0.1f, 0.1f, 1.f));
    sun->setBeacon(sunBeacon);
    endEditCP(sun);
    NodePtr litParent = makeNodeFor(sun);
    addChild(root, litParent);

    for(int i = 0; i < opt.lights; ++i)
    {
        Matrix m;
        m.setTranslate(Vec3f(pointLightPosition(i, opt.lights)));
        NodePtr beacon = makeTransformNode(m);
        addChild(root, beacon);

        PointLightPtr light = PointLight::create();
        beginEditCP(light);
        light->setPosition(0.f, 0.f, 0.f);
        light->setDiffuse (Color4f(0.8f, 0.75f, 0.7f, 1.f));
        light->setSpecular(Color4f(0.8f, 0.8f, 0.8f, 1.f));
        light->setAttenuation(1.f, 0.05f, 0.01f);
        light->setBeacon(beacon);
        endEditCP(light);

        NodePtr lightNode = makeNodeFor(light);
        addChild(litParent, lightNode);
        litParent = lightNode;
    }
    addChild(litParent, buildObjects(false));

    PerspectiveCameraPtr camera = makeCamera(root);

    SolidBackgroundPtr background = SolidBackground::create();
    beginEditCP(background);
    background->setColor(Color3f(0.15f, 0.15f, 0.2f));
    endEditCP(background);

    ViewportPtr viewport = Viewport::create();
    beginEditCP(viewport);
    viewport->setCamera(camera);
    viewport->setBackground(background);
    viewport->setRoot(root);
    viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewport);

    PassiveWindowPtr window = PassiveWindow::create();
    beginEditCP(window);
    window->addPort(viewport);
    endEditCP(window);
    window->init();
    window->resize(opt.width, opt.height);

    RenderAction *action = RenderAction::create();
    window->render(action);

    bool written = writeFramebufferPng(opt.out, opt.width, opt.height);

    delete action;
    osgExit();

    if(!written)
    {
        std::cerr << "osg-forward-render: could not write '" << opt.out << "'\n";
        return 1;
    }
    std::cout << "wrote " << opt.out << " (" << opt.width << "x" << opt.height
              << ", " << opt.lights << " point lights)\n";
    return 0;
}
