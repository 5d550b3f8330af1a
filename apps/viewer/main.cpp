// Shows the demo courtyard or a model file in a GLUT window through a
// DeferredRenderingViewport, with the mouse navigation of the
// SimpleSceneManager and keys for shadows, effects and G-buffer views.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDrawable.h>
#include <OpenSG/OSGGrabForeground.h>
#include <OpenSG/OSGGLUT.h>
#include <OpenSG/OSGGLUTWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSimpleSceneManager.h>
#include <OpenSG/OSGSimpleStatisticsForeground.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>

#include <Lumora/DeferredRenderingViewport.h>

#include "common/DebugView.h"
#include "common/CommandLine.h"
#include "common/DemoScene.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace osg;
using namespace demo;

namespace
{

typedef DeferredRenderingViewport DRV;

// Scripted run (frames above 0): render this many frames, press the keys
// one a frame, drag once before the first, write the last frame, quit.
struct Options : SceneOptions
{
    Options(void) { width = 800; height = 450; }

    std::string keys;
    int         dragX   = 0;
    int         dragY   = 0;
    std::string screenshot;
};

struct Parameter
{
    const char *name;
    void   (DRV::*set)(Real32);
    Real32 (DRV::*get)(void) const;
};

struct Effect
{
    const char *name;
    void      (DRV::*on)(bool);
    Parameter   parameters[2];
};

const Effect Effects[DRV::NumPostProcessors] =
{
    {"anti-aliasing", &DRV::setAAPostProcessOn, {{NULL, NULL, NULL}, {NULL, NULL, NULL}}},
    {"ambient occlusion", &DRV::setSSAOPostProcessOn,
     {{"scale", &DRV::setSSAOScale, &DRV::getSSAOScale},
      {"attenuation", &DRV::setSSAOAttenuation, &DRV::getSSAOAttenuation}}},
    {"HDR + bloom", &DRV::setHDRPostProcessOn,
     {{"exposure", &DRV::setHDRExposure, &DRV::getHDRExposure},
      {"bright-pass threshold", &DRV::setHDRBrightPassThreshold,
       &DRV::getHDRBrightPassThreshold}}},
    {"depth of field", &DRV::setDoFPostProcessOn,
     {{"focal depth", &DRV::setDoFFocalDepth, &DRV::getDoFFocalDepth},
      {"blur cutoff", &DRV::setDoFBlurCutoff, &DRV::getDoFBlurCutoff}}},
    {"motion blur", &DRV::setCMBPostProcessOn,
     {{"blur scale", &DRV::setCMBBlurScale, &DRV::getCMBBlurScale}, {NULL, NULL, NULL}}},
};

const char *const ShortEffectNames[DRV::NumPostProcessors] = {"aa", "ssao", "hdr", "dof", "cmb"};

// The whole frame, from the first pass to the last foreground.
StatElemDesc<StatTimeElem> s_statFrameTime("viewerFrameTime", "time to render one frame");

const char *const NavigatorModeNames[] = {"trackball", "fly", "walk"};

void printKeys(std::ostream &os)
{
    os << "lumora-viewer keys:\n"
          "  mouse      left drag turns, middle drag pans, right drag and wheel zoom;\n"
          "             flying or walking: a drag looks around, left held moves\n"
          "             forwards, right held back\n"
          "  w s a d    move forwards, back, left, right; q e turn\n"
          "  m          navigation: trackball, fly, walk (on the ground), in turn\n"
          "  i          frame statistics on/off: frame rate, pass times, triangles\n"
          "  r          look at the whole scene again\n"
          "  x          shadows on/off\n"
          "  b          light batching on/off\n"
          "  u          shadow-map reuse on/off (maps redrawn only when\n"
          "             something they show moved)\n"
          "  1 .. 5     anti-aliasing, ambient occlusion, HDR + bloom, depth of field,\n"
          "             motion blur on/off; the last one pressed is the selected effect\n"
          "  p          next parameter of the selected effect\n"
          "  + -        raise or lower that parameter by a quarter\n"
          "  v V        next or previous G-buffer view (normals, diffuse, specular,\n"
          "             shininess, emissive, depth, light accumulation); 0 back to the image\n"
          "  h          this list\n"
          "  Esc        quit\n";
}

void printUsage(std::ostream &os)
{
    os << "usage: lumora-viewer [options] [MODEL]\n"
          "Shows a courtyard (or MODEL, any file the scene file handler reads, lit\n"
          "by lights placed around it) in a window with deferred shading. The frame\n"
          "time of each pass is in the window title.\n"
          "\n"
          "  --width N              window width (default 800)\n"
          "  --height N             window height (default 450)\n"
          "  --point-lights N       number of point lights (default 24)\n"
          "  --spot-lights N        number of spot lights (default 8)\n"
          "  --no-shadows           start with shadows off\n"
          "  --frames N             render N frames, then quit (for scripts)\n"
          "  --keys KEYS            with --frames: press these keys, one before each\n"
          "                         frame, starting with the first\n"
          "  --drag DX,DY           with --frames: a left drag from the window centre\n"
          "                         by DX,DY pixels before the first frame\n"
          "  --screenshot FILE      with --frames: write the last frame to this PNG\n"
          "  --help                 show this text\n"
          "\n";
    printKeys(os);
    os << "Exit status: 0 done, 1 the model or the screenshot could not be read or\n"
          "written, 2 bad arguments.\n";
}

// 0: parsed, 1: help shown, 2: bad arguments (message written).
int parseArgs(int argc, char **argv, Options &opt)
{
    CommandLine line("lumora-viewer", printUsage);
    line.addSceneOptions(opt, SceneLimits{16, 16384, 1024, 256, 1000000});
    line.addValue("--keys", [&](const std::string &keys) {
        opt.keys = keys;
        return true;
    });
    line.addValue("--drag", [&](const std::string &text) {
        const size_t comma = text.find(',');
        return comma != std::string::npos &&
               parseInt(text.substr(0, comma).c_str(), -4096, 4096, opt.dragX) &&
               parseInt(text.substr(comma + 1).c_str(), -4096, 4096, opt.dragY);
    });
    line.addValue("--screenshot", [&](const std::string &file) {
        opt.screenshot = file;
        return true;
    });
    const int parsed = line.parse(argc, argv);
    if(parsed != 0)
        return parsed;

    const bool scripted = !opt.keys.empty() || opt.dragX != 0 || opt.dragY != 0 ||
                          !opt.screenshot.empty();
    if(scripted && opt.frames == 0)
    {
        std::cerr << "lumora-viewer: --keys, --drag and --screenshot need --frames\n";
        return 2;
    }
    if(opt.frames > 0 && int(opt.keys.size()) > opt.frames)
    {
        std::cerr << "lumora-viewer: " << opt.keys.size() << " keys do not fit in "
                  << opt.frames << " frames\n";
        return 2;
    }
    return 0;
}

struct Viewer
{
    Options                      opt;
    SimpleSceneManager          *manager  = NULL;
    GLUTWindowPtr                window;
    DeferredRenderingViewportPtr viewport;
    RenderAction                *action   = NULL;
    NodePtr                      root;
    std::vector<LightPtr>        lights;   // one reference held on each
    std::vector<Real32>          shadowIntensities;
    bool                         shadows  = true;
    int                          selected = DRV::HDRPostProcess;
    int                          parameter = 0;
    DebugView                    view     = NoDebugView;
    SimpleStatisticsForegroundPtr statistics;
    // The action counts a frame here; the foreground shows the last
    // complete one, as its own collector is drawn before the frame ends.
    StatCollector                counting;
    bool                         statisticsOn = false;
    GrabForegroundPtr            grab;
    int                          frame    = 0;
    int                          status   = 0;
};

Viewer *s_viewer = NULL;

void setShadows(Viewer &v, bool on)
{
    v.shadows = on;
    for(size_t i = 0; i < v.lights.size(); ++i)
    {
        beginEditCP(v.lights[i], Light::ShadowIntensityFieldMask);
        v.lights[i]->setShadowIntensity(on ? v.shadowIntensities[i] : 1.f);
        endEditCP(v.lights[i], Light::ShadowIntensityFieldMask);
    }
}

const Parameter *selectedParameter(const Viewer &v)
{
    const Parameter &p = Effects[v.selected].parameters[v.parameter];
    return p.name != NULL ? &p : NULL;
}

void report(const Viewer &v, const std::string &what)
{
    if(v.opt.frames == 0)
        std::cout << what << std::endl;
}

std::string makeTitle(const Viewer &v)
{
    const DRV::PassTimes &t = v.viewport->getPassTimes();
    std::ostringstream title;
    title.setf(std::ios::fixed);
    title.precision(1);
    title << "lumora-viewer  g-buffer " << t.geometry << "  shadows " << t.shadows
          << "  lights " << t.lights << "  forward " << t.forward;
    for(int slot = 0; slot < DRV::NumPostProcessors; ++slot)
    {
        if(v.viewport->isPostProcessOn(slot))
            title << "  " << ShortEffectNames[slot] << " " << t.effects[slot];
    }
    title << "  final " << t.final << " ms";
    if(v.view != NoDebugView)
        title << "  [" << debugViewName(v.view) << "]";
    return title.str();
}

// The manager made no viewport, so it shows no statistics: the viewer
// puts its own foreground over the deferred viewport.
void setStatistics(Viewer &v, bool on)
{
    v.statisticsOn = on;
    beginEditCP(v.viewport, Viewport::ForegroundsFieldMask);
    MFForegroundPtr &fgs = v.viewport->getForegrounds();
    MFForegroundPtr::iterator it = fgs.find(v.statistics);
    if(on && it == fgs.end())
        v.viewport->addForeground(v.statistics);
    else if(!on && it != fgs.end())
    {
        fgs.erase(it);
        subRefCP(v.statistics);
    }
    endEditCP(v.viewport, Viewport::ForegroundsFieldMask);
    v.action->setStatistics(on ? &v.counting : NULL);
}

// Each mode keeps its own placement; the new one starts where the old one
// looked from.
void nextNavigatorMode(Viewer &v)
{
    Navigator   *nav  = v.manager->getNavigator();
    const Pnt3f  from = nav->getFrom(), at = nav->getAt();
    const Vec3f  up   = nav->getUp();
    const Navigator::Mode mode = Navigator::Mode((nav->getMode() + 1) % Navigator::NONE);
    nav->setMode(mode);
    nav->set(from, at, up);
    report(v, std::string("navigation: ") + NavigatorModeNames[mode]);
}

void keyboard(unsigned char key, int x, int y)
{
    Viewer &v = *s_viewer;
    switch(key)
    {
        case 27:
            std::exit(0);
        case 'h':
            printKeys(std::cout);
            break;
        case 'r':
            v.manager->getNavigator()->setMode(Navigator::TRACKBALL);
            v.manager->showAll();
            break;
        case 'm':
            nextNavigatorMode(v);
            break;
        case 'i':
            setStatistics(v, !v.statisticsOn);
            report(v, std::string("statistics ") + (v.statisticsOn ? "on" : "off"));
            break;
        case 'b':
            v.viewport->setLightBatching(!v.viewport->getLightBatching());
            report(v, std::string("light batching ") +
                      (v.viewport->getLightBatching() ? "on" : "off"));
            break;
        case 'u':
            v.viewport->setShadowMapReuse(!v.viewport->getShadowMapReuse());
            report(v, std::string("shadow-map reuse ") +
                      (v.viewport->getShadowMapReuse() ? "on" : "off"));
            break;
        case 'x':
            setShadows(v, !v.shadows);
            report(v, std::string("shadows ") + (v.shadows ? "on" : "off"));
            break;
        case '1': case '2': case '3': case '4': case '5':
        {
            const int  slot = key - '1';
            const bool on   = !v.viewport->isPostProcessOn(slot);
            (v.viewport.getCPtr()->*Effects[slot].on)(on);
            v.selected  = slot;
            v.parameter = 0;
            report(v, std::string(Effects[slot].name) + (on ? " on" : " off"));
            break;
        }
        case 'p':
            v.parameter = 1 - v.parameter;
            if(selectedParameter(v) == NULL)
                v.parameter = 0;
            if(const Parameter *p = selectedParameter(v))
                report(v, std::string(Effects[v.selected].name) + ": " + p->name);
            break;
        case '+': case '=': case '-':
        {
            const Parameter *p = selectedParameter(v);
            if(p == NULL)
            {
                report(v, std::string(Effects[v.selected].name) + " has no parameter");
                break;
            }
            DRV         *drv   = v.viewport.getCPtr();
            const Real32 value = (drv->*p->get)() * (key == '-' ? 0.8f : 1.25f);
            (drv->*p->set)(value);
            std::ostringstream text;
            text << Effects[v.selected].name << " " << p->name << " " << value;
            report(v, text.str());
            break;
        }
        case 'v':
            v.view = DebugView((v.view + 1) % NumDebugViews);
            report(v, std::string("view: ") + debugViewName(v.view));
            break;
        case 'V':
            v.view = DebugView((v.view + NumDebugViews - 1) % NumDebugViews);
            report(v, std::string("view: ") + debugViewName(v.view));
            break;
        case '0':
            v.view = NoDebugView;
            break;
        default:
            v.manager->key(key, Int16(x), Int16(y));
            break;
    }
    glutPostRedisplay();
}

// The chosen G-buffer view replaces the image, pixel for pixel.
void drawDebugView(Viewer &v)
{
    std::vector<UInt8> rgb;
    int                width = 0, height = 0;
    if(!readDebugView(v.viewport, v.view, rgb, width, height))
        return;
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_SCISSOR_TEST);
    glViewport(0, 0, v.window->getWidth(), v.window->getHeight());
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glRasterPos2f(-1.f, -1.f);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glDrawPixels(width, height, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}

// Drawn by hand after the frame rather than as the viewport's last
// foreground, so that a G-buffer view drawn over the image is grabbed too.
void finishScript(Viewer &v)
{
    if(v.opt.screenshot.empty())
        return;
    ImagePtr image = Image::create();
    addRefCP(image);
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, 1, 1);
    endEditCP(image);
    beginEditCP(v.grab, GrabForeground::ImageFieldMask);
    v.grab->setImage(image);
    endEditCP(v.grab, GrabForeground::ImageFieldMask);
    v.grab->draw(v.action, v.viewport.getCPtr());
    const bool written = image->write(v.opt.screenshot.c_str());
    beginEditCP(v.grab, GrabForeground::ImageFieldMask);
    v.grab->setImage(NullFC);
    endEditCP(v.grab, GrabForeground::ImageFieldMask);
    subRefCP(image);
    if(!written)
    {
        std::cerr << "lumora-viewer: cannot write '" << v.opt.screenshot << "'\n";
        v.status = 1;
    }
}

void display(void)
{
    Viewer &v = *s_viewer;
    if(v.opt.frames > 0 && v.frame < int(v.opt.keys.size()))
        keyboard(v.opt.keys[v.frame], 0, 0);

    // Rendered here rather than by the manager's redraw so that a G-buffer
    // view and a screenshot come between the frame and the swap.
    v.manager->idle();
    v.window->activate();
    v.window->frameInit();
    // The action applies several times a frame, so its counts add up
    // over the frame rather than start again with each pass.
    v.counting.getElem(s_statFrameTime)->start();
    v.window->renderAllViewports(v.action);
    v.counting.getElem(s_statFrameTime)->stop();
    v.statistics->editCollector() = v.counting;
    v.counting.reset();
    if(v.view != NoDebugView)
        drawDebugView(v);
    Thread::getCurrentChangeList()->clearAll();
    ++v.frame;
    const bool last = v.opt.frames > 0 && v.frame >= v.opt.frames;
    if(last)
        finishScript(v);
    v.window->swap();
    v.window->frameExit();
    const std::string title = makeTitle(v);
    glutSetWindowTitle(title.c_str());

    if(last)
    {
        std::cout << "rendered " << v.frame << " frames; last: " << title << "\n";
        std::exit(v.status);
    }
}

void reshape(int width, int height)
{
    s_viewer->manager->resize(UInt16(width), UInt16(height));
    glutPostRedisplay();
}

void mouse(int button, int state, int x, int y)
{
    Viewer &v = *s_viewer;
    // The wheel's buttons step on the press alone.
    if(state == GLUT_DOWN)
        v.manager->mouseButtonPress(UInt16(button), Int16(x), Int16(y));
    else if(button < SimpleSceneManager::MouseUp)
        v.manager->mouseButtonRelease(UInt16(button), Int16(x), Int16(y));
    glutPostRedisplay();
}

void motion(int x, int y)
{
    s_viewer->manager->mouseMove(Int16(x), Int16(y));
    glutPostRedisplay();
}

void collectLights(NodePtr node, std::vector<LightPtr> &lights)
{
    LightPtr light = LightPtr::dcast(node->getCore());
    if(light != NullFC)
        lights.push_back(light);
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        collectLights(node->getChild(i), lights);
}

// 0 done, else the exit status, with the message written.
int buildScene(Viewer &v)
{
    const Options &opt = v.opt;
    v.root = makeGroupNode();
    if(opt.model.empty())
    {
        addChild(v.root, buildObjects(true));
        v.lights = makeDemoLights(v.root, opt.points, opt.spots, true, true);
    }
    else
    {
        NodePtr model = SceneFileHandler::the().read(opt.model.c_str());
        if(model == NullFC)
        {
            std::cerr << "lumora-viewer: cannot read '" << opt.model << "'\n";
            return 1;
        }
        addChild(v.root, model);
        Pnt3f  center;
        Real32 radius = 0.f;
        if(!boundingSphere(v.root, center, radius))
        {
            std::cerr << "lumora-viewer: '" << opt.model << "' holds nothing to draw\n";
            return 1;
        }
        collectLights(model, v.lights);
        for(LightPtr light : v.lights)
        {
            addRefCP(light);
            // A file's lights would each get a shadow map otherwise.
            beginEditCP(light, Light::ShadowIntensityFieldMask);
            light->setShadowIntensity(1.f);
            endEditCP(light, Light::ShadowIntensityFieldMask);
        }
        std::vector<LightPtr> around =
            makeLightsAround(v.root, center, radius, opt.points, opt.spots, true, true);
        v.lights.insert(v.lights.end(), around.begin(), around.end());
    }
    for(LightPtr light : v.lights)
        v.shadowIntensities.push_back(light->getShadowIntensity());
    return 0;
}

// A view from in front and a little above rather than straight along -Z.
void frameScene(Viewer &v)
{
    v.manager->showAll();
    Navigator   *nav  = v.manager->getNavigator();
    const Real32 dist = nav->getDistance();
    // The bounding sphere of a box leaves much room; come closer.
    nav->set(nav->getAt() + Vec3f(0.f, 0.45f, 0.89f) * (0.7f * dist), nav->getAt(),
             Vec3f(0.f, 1.f, 0.f));
}

} // namespace

int main(int argc, char **argv)
{
    Viewer viewer;
    s_viewer = &viewer;
    int parsed = parseArgs(argc, argv, viewer.opt);
    if(parsed == 1)
        return 0;
    if(parsed != 0)
        return 2;
    const Options &opt = viewer.opt;

    // Before any window, so that a wrong path needs no display to be told.
    if(!opt.model.empty() && !std::ifstream(opt.model.c_str(), std::ios::binary))
    {
        std::cerr << "lumora-viewer: cannot open '" << opt.model << "'\n";
        return 1;
    }

    int   glutArgc   = 1;
    char *glutArgv[] = {argv[0], NULL};
    glutInit(&glutArgc, glutArgv);
    glutInitDisplayMode(GLUT_RGBA | GLUT_DEPTH | GLUT_DOUBLE);
    glutInitWindowSize(opt.width, opt.height);
    const int id = glutCreateWindow("lumora-viewer");

    osgInit(0, NULL);
    initLumora();

    if(int status = buildScene(viewer))
    {
        osgExit();
        return status;
    }

    viewer.window = GLUTWindow::create();
    viewer.window->setGlutId(id);
    viewer.window->init();

    SolidBackgroundPtr background = SolidBackground::create();
    beginEditCP(background);
    background->setColor(Color3f(0.1f, 0.12f, 0.2f));
    endEditCP(background);

    // Added before the manager sees the window, so that it drives this
    // viewport rather than making a forward one; the manager's camera
    // comes with its first setRoot.
    viewer.viewport = DeferredRenderingViewport::create();
    beginEditCP(viewer.viewport);
    viewer.viewport->setBackground(background);
    viewer.viewport->setRoot(viewer.root);
    viewer.viewport->setSize(0.f, 0.f, 1.f, 1.f);
    endEditCP(viewer.viewport);
    viewer.viewport->prepareScene(viewer.root);
    viewer.viewport->setPassTiming(true);
    for(LightPtr light : viewer.lights)
        viewer.viewport->addLight(light);
    beginEditCP(viewer.window, Window::PortFieldMask);
    viewer.window->addPort(viewer.viewport);
    endEditCP(viewer.window, Window::PortFieldMask);
    viewer.window->resize(opt.width, opt.height);

    viewer.action  = RenderAction::create();
    viewer.action->setResetStatistics(false);

    viewer.statistics = SimpleStatisticsForeground::create();
    addRefCP(viewer.statistics);
    beginEditCP(viewer.statistics);
    viewer.statistics->setSize(12.f);
    viewer.statistics->setBgColor(Color4f(0.f, 0.f, 0.f, 0.6f));
    viewer.statistics->addElement(s_statFrameTime,                "FPS       %r.1f");
    viewer.statistics->addElement(s_statFrameTime,                "frame     %ms");
    viewer.statistics->addElement(DRV::statGeometryPassTime,      "g-buffer  %.2f ms");
    viewer.statistics->addElement(DRV::statShadowPassTime,        "shadows   %.2f ms");
    viewer.statistics->addElement(DRV::statLightPassTime,         "lights    %.2f ms");
    viewer.statistics->addElement(DRV::statForwardPassTime,       "forward   %.2f ms");
    viewer.statistics->addElement(DRV::statPostProcessTime,       "effects   %.2f ms");
    viewer.statistics->addElement(DRV::statFinalPassTime,         "final     %.2f ms");
    viewer.statistics->addElement(Drawable::statNTriangles,       "triangles %d");
    endEditCP(viewer.statistics);
    for(UInt32 i = 0; i < viewer.statistics->getMFElementIDs()->size(); ++i)
        viewer.counting.getElem(viewer.statistics->getElementIDs(i));

    viewer.grab = GrabForeground::create();
    addRefCP(viewer.grab);
    viewer.manager = new SimpleSceneManager;
    viewer.manager->setAction(viewer.action);
    viewer.manager->setWindow(viewer.window);
    viewer.manager->setRoot(viewer.root);
    // The deferred lights light the scene; the manager's headlight would
    // only add a forward light nothing uses.
    viewer.manager->setHeadlight(false);
    frameScene(viewer);
    setShadows(viewer, opt.shadows);

    if(opt.dragX != 0 || opt.dragY != 0)
    {
        const Int16 cx = Int16(opt.width / 2), cy = Int16(opt.height / 2);
        viewer.manager->mouseButtonPress(SimpleSceneManager::MouseLeft, cx, cy);
        viewer.manager->mouseMove(Int16(cx + opt.dragX), Int16(cy + opt.dragY));
        viewer.manager->mouseButtonRelease(SimpleSceneManager::MouseLeft,
                                           Int16(cx + opt.dragX), Int16(cy + opt.dragY));
    }

    if(opt.frames == 0)
        printKeys(std::cout);

    glutDisplayFunc(display);
    glutReshapeFunc(reshape);
    glutKeyboardFunc(keyboard);
    glutMouseFunc(mouse);
    glutMotionFunc(motion);
    // Redraw continuously so that the title shows current frame times.
    glutIdleFunc(glutPostRedisplay);
    glutMainLoop();
    return 0;
}
