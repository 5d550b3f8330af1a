// Runs a deferred viewport for many frames while a seeded random sequence
// adds, removes, switches and moves lights, toggles shadows and effects,
// changes their parameters, resizes the window, replaces the viewport and
// loads and drops a model. At the end everything is torn down and the live
// GL objects and field containers must be back where they were; no GL
// error and no warning may have appeared on the way.

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGThread.h>

#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>
#include <Lumora/LumoraInit.h>

#include "../../apps/common/DemoScene.h"
#include "support/Builders.h"
#include "support/EffectSetters.h"
#include "support/LiveObjects.h"
#include "support/LogCapture.h"

#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_int_distribution.hpp>
#include <boost/random/uniform_real_distribution.hpp>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace osg;
using testsupport::editCP;

namespace
{

typedef DeferredRenderingViewport DRV;

struct Options
{
    unsigned seed        = 1;
    int      frames      = 3000;
    double   seconds     = 0;      // 0: no time limit
    int      maxSize     = 128;    // largest window edge
    int      maxLights   = 24;
    double   rssLimitMB  = 48;     // allowed growth after the warm-up
};

const char *s_usage =
    "usage: lumora-soak [options]\n"
    "Renders a deferred viewport for many frames under a seeded random\n"
    "sequence of light, effect, window, viewport and model changes, then\n"
    "checks that GL objects and field containers are back where they\n"
    "started, that no GL error and no warning appeared, and that resident\n"
    "memory stayed flat. Exits 1 if any check fails.\n"
    "\n"
    "  --seed N          random seed (default 1)\n"
    "  --frames N        frames to render (default 3000)\n"
    "  --seconds S       stop after S seconds even if frames remain\n"
    "  --max-size N      largest window width or height (default 128)\n"
    "  --max-lights N    most lights at once (default 24)\n"
    "  --rss-limit MB    allowed resident memory growth (default 48)\n"
    "  --help            this text\n";

// 0: run; 1: help shown; 2: bad arguments.
int parseArgs(int argc, char **argv, Options &opt)
{
    for(int i = 1; i < argc; ++i)
    {
        const std::string arg = argv[i];
        if(arg == "--help" || arg == "-h")
        {
            std::cout << s_usage;
            return 1;
        }
        struct Numeric { const char *name; double lo, hi; double value; };
        Numeric numerics[] = {
            {"--seed",       0, 4294967295.0, double(opt.seed)},
            {"--frames",     1, 1e9,          double(opt.frames)},
            {"--seconds",    0, 1e7,          opt.seconds},
            {"--max-size",   2, 4096,         double(opt.maxSize)},
            {"--max-lights", 1, 1000,         double(opt.maxLights)},
            {"--rss-limit",  0, 1e6,          opt.rssLimitMB},
        };
        Numeric *n = std::find_if(std::begin(numerics), std::end(numerics),
                                  [&arg](const Numeric &x) { return arg == x.name; });
        if(n == std::end(numerics))
        {
            std::cerr << "lumora-soak: unknown option '" << arg << "'\n" << s_usage;
            return 2;
        }
        char *end = nullptr;
        n->value = ++i < argc ? std::strtod(argv[i], &end) : 0;
        if(end == nullptr || end == argv[i] || *end != '\0' ||
           !(n->value >= n->lo && n->value <= n->hi))
        {
            std::cerr << "lumora-soak: " << n->name << " needs a number from "
                      << n->lo << " to " << n->hi << "\n";
            return 2;
        }
        opt.seed       = unsigned(numerics[0].value);
        opt.frames     = int(numerics[1].value);
        opt.seconds    = numerics[2].value;
        opt.maxSize    = int(numerics[3].value);
        opt.maxLights  = int(numerics[4].value);
        opt.rssLimitMB = numerics[5].value;
    }
    return 0;
}

// Free heap pages are handed back first: the allocator keeps freed
// texture-sized blocks otherwise, which would read as growth.
double residentMB()
{
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    long size = 0, resident = 0;
    statm >> size >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

// What the program holds from malloc: flat while resident memory grows
// means the growth is mapped outside the heap (the driver's).
double heapMB()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd) / (1024.0 * 1024.0);
}

template <class Map>
int sum(const Map &counts)
{
    int total = 0;
    for(const auto &kind : counts)
        total += kind.second;
    return total;
}

// A small model, read through the loader as a file would be.
const char *s_modelObj =
    "v -0.5 0 -0.5\nv 0.5 0 -0.5\nv 0.5 0 0.5\nv -0.5 0 0.5\nv 0 1 0\n"
    "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvt 0.5 0.5\n"
    "f 1/1 2/2 5/5\nf 2/2 3/3 5/5\nf 3/3 4/4 5/5\nf 4/4 1/1 5/5\nf 1/1 4/4 3/3 2/2\n";

NodePtr placed(NodePtr child, const Vec3f &at)
{
    Matrix m;
    m.setTranslate(at);
    NodePtr node = demo::makeTransformNode(m);
    demo::addChild(node, child);
    return node;
}

NodePtr coloured(GeometryPtr geometry, Real32 r, Real32 g, Real32 b, Real32 transparency = 0)
{
    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse(Color3f(r, g, b));
    material->setSpecular(Color3f(0.5f, 0.5f, 0.5f));
    material->setShininess(32);
    material->setTransparency(transparency);
    endEditCP(material);
    editCP(geometry, Geometry::MaterialFieldMask, [&] { geometry->setMaterial(material); });
    return makeNodeFor(geometry);
}

const auto &s_effectOn   = testsupport::effectOn;
const auto &s_parameters = testsupport::effectParameters;
// The range each parameter above is drawn from.
const Real32 s_parameterRange[][2] = {{0.2f, 4}, {0.2f, 2}, {1, 30}, {0.1f, 1},
                                      {0, 0.1f}, {0.0005f, 0.01f}, {0.001f, 0.01f}};

class Soak
{
  public:
    explicit Soak(const Options &opt) : _opt(opt), _rng(opt.seed) {}

    int run();

  private:
    int    pick (int lo, int hi)       { return boost::random::uniform_int_distribution<int>(lo, hi)(_rng); }
    Real32 value(Real32 lo, Real32 hi) { return boost::random::uniform_real_distribution<Real32>(lo, hi)(_rng); }
    bool   chance(double p)            { return value(0, 1) < p; }
    LightPtr anyLight(void)            { return _lights[size_t(pick(0, int(_lights.size()) - 1))]; }

    void buildScene    (void);
    void createViewport(void);
    void dropViewport  (void);
    void dropModel     (void);
    void addLight      (void);
    void step          (void);
    void render        (void);
    void tearDown      (void);

    Options                       _opt;
    boost::random::mt19937        _rng;
    PassiveWindowPtr              _window;
    RenderAction                 *_action = nullptr;
    NodePtr                       _root;
    NodePtr                       _model;
    PerspectiveCameraPtr          _camera;
    SolidBackgroundPtr            _background;
    DeferredRenderingViewportPtr  _viewport;
    std::vector<LightPtr>         _lights;
    LightPtr                      _shadowed;  // at most one: maps are costly here
    int                           _glErrors = 0;
    int                           _viewports = 0, _resizes = 0, _models = 0;
};

void Soak::buildScene(void)
{
    _root = demo::makeGroupNode();
    addRefCP(_root);
    demo::addChild(_root, coloured(makePlaneGeo(20, 20, 4, 4), 0.7f, 0.7f, 0.7f));
    for(int i = 0; i < 6; ++i)
    {
        const Real32 x = Real32(i % 3) * 3 - 3, y = Real32(i / 3) * 3 - 1.5f;
        GeometryPtr shape = i % 2 ? makeSphereGeo(2, 0.8f) : makeBoxGeo(1.2f, 1.2f, 1.2f, 1, 1, 1);
        demo::addChild(_root, placed(coloured(shape, 0.2f * i, 0.5f, 1 - 0.1f * i),
                                     Vec3f(x, y, 0.8f)));
    }
    demo::addChild(_root, placed(coloured(makePlaneGeo(2, 2, 1, 1), 0.3f, 0.6f, 0.9f, 0.5f),
                                 Vec3f(0, 0, 2.5f)));

    Matrix view;
    MatrixLookAt(view, Pnt3f(0, -9, 7), Pnt3f(0, 0, 0), Vec3f(0, 0, 1));
    NodePtr beacon = demo::makeTransformNode(view);
    demo::addChild(_root, beacon);

    _camera = PerspectiveCamera::create();
    addRefCP(_camera);
    beginEditCP(_camera);
    _camera->setBeacon(beacon);
    _camera->setFov(deg2rad(60));
    _camera->setNear(0.5f);
    _camera->setFar(40);
    endEditCP(_camera);

    _background = SolidBackground::create();
    addRefCP(_background);
    editCP(_background, [&] { _background->setColor(Color3f(0.1f, 0.1f, 0.15f)); });
}

void Soak::createViewport(void)
{
    _viewport = DeferredRenderingViewport::create();
    addRefCP(_viewport);
    beginEditCP(_viewport);
    _viewport->setCamera(_camera);
    _viewport->setBackground(_background);
    _viewport->setRoot(_root);
    _viewport->setSize(0, 0, 1, 1);
    endEditCP(_viewport);
    _viewport->prepareScene(_root);
    for(LightPtr light : _lights)
        _viewport->addLight(light);

    editCP(_window, Window::PortFieldMask, [&] { _window->addPort(_viewport); });
    ++_viewports;
}

void Soak::dropViewport(void)
{
    editCP(_window, Window::PortFieldMask, [&] { _window->subPort(_viewport); });
    subRefCP(_viewport);
    _viewport = NullFC;
}

void Soak::dropModel(void)
{
    editCP(_root, Node::ChildrenFieldMask, [&] { _root->subChild(_model); });
    _model = NullFC;
}

void Soak::addLight(void)
{
    const int kind = pick(0, 9);
    const Pnt3f at(value(-5, 5), value(-5, 5), value(0.5f, 4));
    LightPtr light = kind < 6 ? LightPtr(PointLight::create()) :
                     kind < 9 ? LightPtr(SpotLight::create()) :
                                LightPtr(DirectionalLight::create());
    addRefCP(light);
    beginEditCP(light);
    if(kind < 6)
    {
        PointLightPtr point = PointLightPtr::dcast(light);
        point->setPosition(at);
        point->setAttenuation(1, value(0, 0.5f), value(0.05f, 0.5f));
    }
    else if(kind < 9)
    {
        SpotLightPtr spot = SpotLightPtr::dcast(light);
        spot->setPosition(at);
        spot->setDirection(Vec3f(value(-1, 1), value(-1, 1), -1));
        spot->setSpotCutOff(deg2rad(value(10, 60)));
        spot->setSpotExponent(value(0, 20));
        spot->setAttenuation(1, 0, value(0.02f, 0.2f));
    }
    else
        DirectionalLightPtr::dcast(light)->setDirection(Vec3f(value(-1, 1), value(-1, 1), 1));
    const bool shadows = _shadowed == NullFC && chance(0.1);
    light->setDiffuse(Color4f(value(0, 1), value(0, 1), value(0, 1), 1));
    light->setSpecular(Color4f(1, 1, 1, 1));
    light->setShadowIntensity(shadows ? value(0, 0.8f) : 1.0f);
    light->setOn(!chance(0.1));
    endEditCP(light);
    if(shadows)
        _shadowed = light;
    _lights.push_back(light);
    _viewport->addLight(light);
}

void Soak::step(void)
{
    const int what = pick(0, 99);
    if(what < 8 && int(_lights.size()) < _opt.maxLights)
        addLight();
    else if(what < 12 && !_lights.empty())
    {
        LightPtr light = anyLight();
        _viewport->subLight(light);
        if(light == _shadowed)
            _shadowed = NullFC;
        _lights.erase(std::find(_lights.begin(), _lights.end(), light));
        subRefCP(light);
    }
    else if(what < 18 && !_lights.empty())
    {
        // Switched on after being added while off: registered only anew.
        LightPtr light = anyLight();
        editCP(light, Light::OnFieldMask, [&] { light->setOn(!light->getOn()); });
        if(light->getOn())
            _viewport->addLight(light);
    }
    else if(what < 40 && !_lights.empty())
    {
        LightPtr light = anyLight();
        beginEditCP(light);
        if(PointLightPtr point = PointLightPtr::dcast(light))
            point->setPosition(point->getPosition() + Vec3f(value(-.5f, .5f), value(-.5f, .5f), 0));
        else if(DirectionalLightPtr sun = DirectionalLightPtr::dcast(light))
            sun->setDirection(Vec3f(value(-1, 1), value(-1, 1), 1));
        endEditCP(light);
    }
    else if(what < 46)
    {
        const int slot = pick(0, DRV::NumPostProcessors);
        if(slot == DRV::NumPostProcessors)
            _viewport->setLightBatching(!_viewport->getLightBatching());
        else
            (_viewport.getCPtr()->*s_effectOn[slot])(!_viewport->isPostProcessOn(UInt32(slot)));
    }
    else if(what < 52)
    {
        const int which = pick(0, 6);
        (_viewport.getCPtr()->*s_parameters[which])(value(s_parameterRange[which][0],
                                                          s_parameterRange[which][1]));
    }
    else if(what < 54 && !_lights.empty())
    {
        LightPtr light = anyLight();
        if(_shadowed == NullFC || _shadowed == light)
        {
            const bool cast = light->getShadowIntensity() >= 1.0f;
            editCP(light, Light::ShadowIntensityFieldMask,
                   [&] { light->setShadowIntensity(cast ? value(0, 0.8f) : 1.0f); });
            _shadowed = cast ? light : LightPtr(NullFC);
        }
    }
    else if(what < 58)
    {
        const bool tiny = chance(0.15);
        _window->resize(UInt16(tiny ? 1 : pick(2, _opt.maxSize)),
                        UInt16(tiny ? 1 : pick(2, _opt.maxSize)));
        ++_resizes;
    }
    else if(what < 59)
    {
        dropViewport();
        createViewport();
    }
    else if(what < 62)
    {
        std::istringstream obj(s_modelObj);
        if(_model != NullFC)
            dropModel();
        else if((_model = SceneFileHandler::the().read(obj, "obj")) != NullFC)
        {
            _model = placed(_model, Vec3f(value(-4, 4), value(-4, 4), 0));
            demo::addChild(_root, _model);
            ++_models;
        }
        _viewport->prepareScene(_root);
    }
}

void Soak::render(void)
{
    _window->render(_action);
    Thread::getCurrentChangeList()->clearAll();
    for(GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError())
    {
        std::cerr << "lumora-soak: GL error 0x" << std::hex << error << std::dec << "\n";
        ++_glErrors;
    }
}

void Soak::tearDown(void)
{
    dropViewport();
    for(LightPtr light : _lights)
        subRefCP(light);
    _lights.clear();
    _shadowed = NullFC;
    if(_model != NullFC)
        dropModel();
    // Destroyed objects' GL names go at the end of the window's frame.
    _window->frameInit();
    _window->frameExit();
    Thread::getCurrentChangeList()->clearAll();
}

int Soak::run(void)
{
    testsupport::LogCapture log(LOG_WARNING);

    _window = PassiveWindow::create();
    addRefCP(_window);
    _window->init();
    _window->resize(UInt16(_opt.maxSize), UInt16(_opt.maxSize));
    _action = RenderAction::create();
    buildScene();

    // Warm-up: every light kind with shadows and every effect once, so that
    // what lives for the whole process (shared shaders, tool programs) is
    // there before the first count.
    createViewport();
    for(int i = 0; i < 3; ++i)
    {
        addLight();
        beginEditCP(_lights.back());
        _lights.back()->setOn(true);
        _lights.back()->setShadowIntensity(0.5f);
        endEditCP(_lights.back());
        _viewport->addLight(_lights.back());
    }
    for(auto on : s_effectOn)
        (_viewport.getCPtr()->*on)(true);
    render();
    render();
    _viewport->setLightBatching(true);
    render();
    tearDown();
    _viewports = 0;

    const testsupport::LiveObjects before = testsupport::LiveObjects::count();
    const double rssStart = residentMB();
    const double heapStart = heapMB();
    double rssPeak = rssStart;

    createViewport();
    const auto start = std::chrono::steady_clock::now();
    auto lastProgress = start;
    int frame = 0;
    for(; frame < _opt.frames; ++frame)
    {
        step();
        render();

        const auto now = std::chrono::steady_clock::now();
        const double elapsed = std::chrono::duration<double>(now - start).count();
        if(now - lastProgress > std::chrono::seconds(2))
        {
            lastProgress = now;
            rssPeak = std::max(rssPeak, residentMB());
            std::fprintf(stderr, "frame %d/%d, %zu lights, %.0f s, %.1f MB resident, "
                         "%.1f MB heap\n", frame + 1, _opt.frames, _lights.size(), elapsed,
                         residentMB(), heapMB());
        }
        if(_opt.seconds > 0 && elapsed >= _opt.seconds)
        {
            ++frame;
            break;
        }
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double rssRun = residentMB();
    tearDown();

    const testsupport::LiveObjects after = testsupport::LiveObjects::count();
    const double rssEnd = residentMB();
    const double heapEnd = heapMB();
    rssPeak = std::max(rssPeak, rssRun);
    const std::string changed = testsupport::differences(before, after);

    std::printf("seed %u: %d frames in %.1f s (%.1f ms a frame); %d viewports, %d resizes, "
                "%d model loads\n", _opt.seed, frame, seconds, 1000.0 * seconds / frame,
                _viewports, _resizes, _models);
    std::printf("resident memory: %.1f MB at start, %.1f MB peak, %.1f MB at end; "
                "heap in use: %.1f MB at start, %.1f MB at end\n",
                rssStart, rssPeak, rssEnd, heapStart, heapEnd);
    std::printf("field containers: %d at start, %d at end; GL objects: %d at start, %d at end\n",
                sum(before.containers), sum(after.containers), sum(before.gl), sum(after.gl));

    const bool grew = rssEnd - rssStart > _opt.rssLimitMB;
    if(!changed.empty())
        std::printf("live objects differ:\n%s", changed.c_str());
    if(_glErrors != 0)
        std::printf("%d GL errors\n", _glErrors);
    if(!log.text().empty())
        std::printf("unexpected log output:\n%s\n", log.text().c_str());
    if(grew)
        std::printf("resident memory grew by %.1f MB (limit %.1f MB)\n",
                    rssEnd - rssStart, _opt.rssLimitMB);
    const bool ok = changed.empty() && _glErrors == 0 && log.text().empty() && !grew;

    delete _action;
    subRefCP(_background);
    subRefCP(_camera);
    subRefCP(_root);
    subRefCP(_window);
    std::printf("%s\n", ok ? "soak passed" : "soak FAILED");
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    Options opt;
    const int parsed = parseArgs(argc, argv, opt);
    if(parsed != 0)
        return parsed == 1 ? 0 : 2;

    int glErrors = 0;
    lumora::HeadlessContext context(opt.maxSize, opt.maxSize, true,
        [&glErrors](GLenum type, GLenum, const std::string &message)
        {
            if(type == GL_DEBUG_TYPE_ERROR)
            {
                std::cerr << "lumora-soak: GL: " << message << "\n";
                ++glErrors;
            }
        });
    if(!context.isValid())
    {
        std::cerr << "lumora-soak: no OpenGL context: " << context.errorString() << "\n";
        return 1;
    }

    osgInit(0, NULL);
    initLumora();
    int result = Soak(opt).run();
    if(glErrors != 0)
    {
        std::printf("%d GL debug errors\n", glErrors);
        result = 1;
    }
    osgExit();
    return result;
}
