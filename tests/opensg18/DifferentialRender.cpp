// Renders a fixed set of deferred frames with nothing but OpenSG 1.8's API
// and the library, so that the same source built against the runtime and
// against a genuine OpenSG 1.8 can be compared image by image:
//
//     differential_render render OUTDIR     writes OUTDIR/<case>.ppm, lists GL errors
//     differential_render compare DIR1 DIR2 fails where a channel differs by more than 1
//
// Kept to C++11 and to what both builds provide.

#include <OpenSG/OSGConfig.h>
#include <OpenSG/OSGBaseFunctions.h>
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
#include <OpenSG/OSGSimpleTexturedMaterial.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include <Lumora/DeferredCMBPostProcessor.h>
#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/HeadlessContext.h>
#include <Lumora/LumoraInit.h>

#include "../../apps/common/DemoScene.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

OSG_USING_NAMESPACE

namespace
{

const int Width  = 160;
const int Height = 120;

int         glErrors = 0;
std::string outDir;

// --- scene ------------------------------------------------------------------

NodePtr transformed(const Matrix &m, NodePtr child)
{
    NodePtr node = demo::makeTransformNode(m);
    if(child != NullFC)
        demo::addChild(node, child);
    return node;
}

NodePtr withMaterial(GeometryPtr geometry, MaterialPtr material)
{
    beginEditCP(geometry, Geometry::MaterialFieldMask);
    geometry->setMaterial(material);
    endEditCP(geometry, Geometry::MaterialFieldMask);
    return makeNodeFor(geometry);
}

MaterialPtr colour(Real32 r, Real32 g, Real32 b, Real32 shininess = 20.0f)
{
    SimpleMaterialPtr material = SimpleMaterial::create();
    beginEditCP(material);
    material->setDiffuse  (Color3f(r, g, b));
    material->setAmbient  (Color3f(0.1f, 0.1f, 0.1f));
    material->setSpecular (Color3f(0.4f, 0.4f, 0.4f));
    material->setShininess(shininess);
    endEditCP(material);
    return material;
}

// A checker texture made in code: no image file is read.
MaterialPtr checker(void)
{
    std::vector<UInt8> pixels(16 * 16 * 3);
    for(int y = 0; y < 16; ++y)
    {
        for(int x = 0; x < 16; ++x)
        {
            const bool dark = ((x / 4) + (y / 4)) % 2 != 0;
            UInt8 *p = &pixels[(y * 16 + x) * 3];
            p[0] = dark ? 40 : 230;
            p[1] = dark ? 90 : 200;
            p[2] = dark ? 160 : 60;
        }
    }
    ImagePtr image = Image::create();
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, 16, 16, 1, 1, 1, 0.0, &pixels[0]);
    endEditCP(image);

    SimpleTexturedMaterialPtr material = SimpleTexturedMaterial::create();
    beginEditCP(material);
    material->setDiffuse  (Color3f(1, 1, 1));
    material->setSpecular (Color3f(0.2f, 0.2f, 0.2f));
    material->setShininess(10.0f);
    material->setImage    (image);
    material->setMinFilter(GL_NEAREST);
    material->setMagFilter(GL_NEAREST);
    endEditCP(material);
    return material;
}

struct Scene
{
    NodePtr              root;
    TransformPtr         cameraPlacement;
    PerspectiveCameraPtr camera;
    SolidBackgroundPtr   background;
};

void placeCamera(Scene &scene, const Pnt3f &from, const Pnt3f &at)
{
    Matrix m;
    MatrixLookAt(m, from, at, Vec3f(0, 1, 0));
    beginEditCP(scene.cameraPlacement, Transform::MatrixFieldMask);
    scene.cameraPlacement->setMatrix(m);
    endEditCP(scene.cameraPlacement, Transform::MatrixFieldMask);
}

// A floor, a box, a torus, a cone, a cylinder, a textured box and a sphere.
Scene buildScene(void)
{
    Scene scene;
    scene.root = demo::makeGroupNode();

    Matrix m;
    std::vector<NodePtr> children;
    m.setRotate(Quaternion(Vec3f(1, 0, 0), -Pi / 2));
    children.push_back(transformed(m, withMaterial(makePlaneGeo(12, 12, 4, 4),
                                                   colour(0.7f, 0.7f, 0.65f))));
    m.setIdentity(); m.setTranslate(-1.5f, 0.75f, 0.0f);
    children.push_back(transformed(m, withMaterial(makeBoxGeo(1.5f, 1.5f, 1.5f, 1, 1, 1),
                                                   colour(0.8f, 0.3f, 0.2f))));
    m.setIdentity(); m.setTranslate(1.5f, 0.9f, 0.5f);
    children.push_back(transformed(m, withMaterial(makeTorusGeo(0.25f, 0.6f, 12, 24),
                                                   colour(0.2f, 0.6f, 0.8f, 60.0f))));
    m.setIdentity(); m.setTranslate(0.2f, 0.6f, -1.8f);
    children.push_back(transformed(m, withMaterial(makeConeGeo(1.2f, 0.6f, 24, true, true),
                                                   colour(0.9f, 0.8f, 0.2f))));
    m.setIdentity(); m.setTranslate(-2.8f, 0.5f, -1.5f);
    children.push_back(transformed(m, withMaterial(makeCylinderGeo(1.0f, 0.4f, 24,
                                                                   true, true, true),
                                                   colour(0.3f, 0.8f, 0.3f))));
    m.setIdentity(); m.setTranslate(2.6f, 0.5f, -1.2f);
    children.push_back(transformed(m, withMaterial(makeBoxGeo(1, 1, 1, 2, 2, 2), checker())));
    m.setIdentity(); m.setTranslate(0.0f, 0.7f, 1.6f);
    children.push_back(transformed(m, withMaterial(makeLatLongSphereGeo(16, 24, 0.7f),
                                                   colour(0.9f, 0.9f, 0.9f, 90.0f))));

    scene.cameraPlacement = Transform::create();
    NodePtr beacon = makeNodeFor(scene.cameraPlacement);
    children.push_back(beacon);
    for(size_t i = 0; i < children.size(); ++i)
        demo::addChild(scene.root, children[i]);

    scene.camera = PerspectiveCamera::create();
    beginEditCP(scene.camera);
    scene.camera->setBeacon(beacon);
    scene.camera->setFov(deg2rad(50));
    scene.camera->setNear(0.5f);
    scene.camera->setFar(40.0f);
    endEditCP(scene.camera);
    placeCamera(scene, Pnt3f(0.0f, 4.5f, 8.0f), Pnt3f(0.0f, 0.5f, 0.0f));

    scene.background = SolidBackground::create();
    beginEditCP(scene.background);
    scene.background->setColor(Color3f(0.1f, 0.12f, 0.2f));
    endEditCP(scene.background);
    return scene;
}

// Light cores with beacons under root; shadowIntensity 1 casts none.
LightPtr addLight(Scene &scene, LightPtr light, const Matrix &beaconPlace,
                  Real32 shadowIntensity, const Color4f &diffuse)
{
    NodePtr beacon = transformed(beaconPlace, NullFC);
    demo::addChild(scene.root, beacon);

    beginEditCP(light);
    light->setBeacon(beacon);
    light->setDiffuse(diffuse);
    light->setSpecular(Color4f(0.6f, 0.6f, 0.6f, 1));
    light->setShadowIntensity(shadowIntensity);
    endEditCP(light);
    addRefCP(light);
    return light;
}

LightPtr pointLight(Scene &scene, Real32 shadowIntensity)
{
    PointLightPtr light = PointLight::create();
    beginEditCP(light);
    light->setPosition(Pnt3f(0, 0, 0));
    light->setAttenuation(1.0f, 0.1f, 0.05f);
    endEditCP(light);
    Matrix m;
    m.setTranslate(1.0f, 3.0f, 2.0f);
    return addLight(scene, light, m, shadowIntensity, Color4f(1.0f, 0.9f, 0.7f, 1));
}

LightPtr spotLight(Scene &scene, Real32 shadowIntensity)
{
    SpotLightPtr light = SpotLight::create();
    beginEditCP(light);
    light->setPosition(Pnt3f(0, 0, 0));
    light->setDirection(Vec3f(0.3f, -1.0f, -0.4f));
    light->setSpotCutOff(deg2rad(35));
    light->setSpotExponent(4.0f);
    light->setAttenuation(1.0f, 0.05f, 0.02f);
    endEditCP(light);
    Matrix m;
    m.setTranslate(-1.0f, 5.0f, 2.0f);
    return addLight(scene, light, m, shadowIntensity, Color4f(0.6f, 0.8f, 1.0f, 1));
}

LightPtr sunLight(Scene &scene, Real32 shadowIntensity)
{
    DirectionalLightPtr light = DirectionalLight::create();
    beginEditCP(light);
    light->setDirection(Vec3f(-0.4f, 1.0f, 0.6f));
    endEditCP(light);
    return addLight(scene, light, Matrix(), shadowIntensity, Color4f(0.5f, 0.5f, 0.45f, 1));
}

// --- frames -------------------------------------------------------------------

// Holds one reference on each light; windows hold their ports without a
// reference, so the frame holds them too.
struct Frame
{
    PassiveWindowPtr             window;
    DeferredRenderingViewportPtr viewport;
    ViewportPtr                  behind;
    RenderAction                *action;
    std::vector<LightPtr>        lights;
};

Frame makeFrame(Scene &scene, const std::vector<LightPtr> &lights, bool part = false)
{
    Frame frame;
    frame.lights = lights;
    frame.viewport = DeferredRenderingViewport::create();
    addRefCP(frame.viewport);
    beginEditCP(frame.viewport);
    frame.viewport->setCamera(scene.camera);
    frame.viewport->setBackground(scene.background);
    frame.viewport->setRoot(scene.root);
    if(part)
        frame.viewport->setSize(0.25f, 0.2f, 0.9f, 0.85f);
    else
        frame.viewport->setSize(0, 0, 1, 1);
    endEditCP(frame.viewport);
    frame.viewport->prepareScene(scene.root);
    for(size_t i = 0; i < lights.size(); ++i)
        frame.viewport->addLight(lights[i]);

    frame.window = PassiveWindow::create();
    addRefCP(frame.window);
    beginEditCP(frame.window);
    if(part)
    {
        // The rest of the window shows a plain viewport's background.
        SolidBackgroundPtr grey = SolidBackground::create();
        beginEditCP(grey);
        grey->setColor(Color3f(0.3f, 0.3f, 0.3f));
        endEditCP(grey);
        NodePtr empty = demo::makeGroupNode();
        frame.behind = Viewport::create();
        addRefCP(frame.behind);
        beginEditCP(frame.behind);
        frame.behind->setCamera(scene.camera);
        frame.behind->setBackground(grey);
        frame.behind->setRoot(empty);
        frame.behind->setSize(0, 0, 1, 1);
        endEditCP(frame.behind);
        frame.window->addPort(frame.behind);
    }
    frame.window->addPort(frame.viewport);
    endEditCP(frame.window);
    frame.window->init();
    frame.window->resize(Width, Height);
    frame.action = RenderAction::create();
    return frame;
}

void render(Frame &frame)
{
    frame.window->render(frame.action);
    Thread::getCurrentChangeList()->clearAll();
    for(GLenum error = glGetError(); error != GL_NO_ERROR; error = glGetError())
    {
        std::cerr << "GL error 0x" << std::hex << error << std::dec << "\n";
        ++glErrors;
    }
}

void dropFrame(Frame &frame)
{
    beginEditCP(frame.window);
    frame.window->subPort(frame.viewport);
    if(frame.behind != NullFC)
        frame.window->subPort(frame.behind);
    endEditCP(frame.window);
    subRefCP(frame.viewport);
    if(frame.behind != NullFC)
        subRefCP(frame.behind);
    subRefCP(frame.window);
    delete frame.action;
    for(size_t i = 0; i < frame.lights.size(); ++i)
        subRefCP(frame.lights[i]);
}

bool writeImage(const std::string &name, int width, int height)
{
    std::vector<UInt8> pixels(width * height * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, &pixels[0]);

    const std::string path = outDir + "/" + name + ".ppm";
    std::ofstream out(path.c_str(), std::ios::binary);
    out << "P6\n" << width << " " << height << "\n255\n";
    for(int y = height - 1; y >= 0; --y)
        out.write(reinterpret_cast<const char *>(&pixels[y * width * 3]), width * 3);
    std::cout << "  " << name << "\n";
    return bool(out);
}

std::vector<LightPtr> lightsOf(LightPtr a, LightPtr b, LightPtr c = NullFC)
{
    std::vector<LightPtr> lights;
    lights.push_back(a);
    lights.push_back(b);
    if(c != NullFC)
        lights.push_back(c);
    return lights;
}

// The first frame renders each shadow map once; the second samples them all.
void renderCase(const std::string &name, Scene &scene, const std::vector<LightPtr> &lights,
                void (*configure)(DeferredRenderingViewportPtr), bool part = false)
{
    Frame frame = makeFrame(scene, lights, part);
    if(configure != NULL)
        configure(frame.viewport);
    render(frame);
    render(frame);
    writeImage(name, Width, Height);
    dropFrame(frame);
}

// A clock in steps of 20 ms, the same in both builds.
Real32 fixedClock(void)
{
    static Real32 now = 0.0f;
    now += 20.0f;
    return now;
}

void aa  (DeferredRenderingViewportPtr v) { v->setAAPostProcessOn(true);   }
void ssao(DeferredRenderingViewportPtr v) { v->setSSAOPostProcessOn(true); }
void hdr (DeferredRenderingViewportPtr v) { v->setHDRPostProcessOn(true);  }
void dof (DeferredRenderingViewportPtr v) { v->setDoFPostProcessOn(true); v->setDoFFocalDepth(6.0f); }
void cmb (DeferredRenderingViewportPtr v) { v->setCMBPostProcessOn(true);  }
void all (DeferredRenderingViewportPtr v) { aa(v); ssao(v); hdr(v); dof(v); cmb(v); }

int renderAll(void)
{
    Scene scene = buildScene();
    addRefCP(scene.root);

    // Each light kind, without and with shadows.
    const struct { const char *name; LightPtr (*make)(Scene &, Real32); } kinds[] =
    {
        { "point", &pointLight }, { "spot", &spotLight }, { "sun", &sunLight }
    };
    for(size_t k = 0; k < sizeof(kinds) / sizeof(kinds[0]); ++k)
    {
        renderCase(kinds[k].name, scene, std::vector<LightPtr>(1, kinds[k].make(scene, 1.0f)), NULL);
        renderCase(std::string(kinds[k].name) + "-shadow", scene,
                   std::vector<LightPtr>(1, kinds[k].make(scene, 0.3f)), NULL);
    }

    // Shadows switched on and off between frames, as the viewer's key does.
    {
        Frame frame = makeFrame(scene, lightsOf(pointLight(scene, 1.0f), spotLight(scene, 1.0f),
                                                sunLight(scene, 1.0f)));
        const Real32 intensities[] = { 1.0f, 0.4f, 1.0f, 0.4f };
        for(int step = 0; step < 4; ++step)
        {
            frame.viewport->setGlobalShadowIntensity(intensities[step]);
            render(frame);
            render(frame);
            std::ostringstream name;
            name << "switch-" << step;
            writeImage(name.str(), Width, Height);
        }
        dropFrame(frame);
    }

    // Each effect alone and all five, lit by a point light and the sun.
    DeferredCMBPostProcessor::setClock(&fixedClock);
    const struct { const char *name; void (*configure)(DeferredRenderingViewportPtr); } effects[] =
    {
        { "aa", &aa }, { "ssao", &ssao }, { "hdr", &hdr }, { "dof", &dof }, { "cmb", &cmb },
        { "all", &all }
    };
    for(size_t e = 0; e < sizeof(effects) / sizeof(effects[0]); ++e)
    {
        Frame frame = makeFrame(scene, lightsOf(pointLight(scene, 1.0f), sunLight(scene, 1.0f)));
        effects[e].configure(frame.viewport);
        placeCamera(scene, Pnt3f(0.0f, 4.5f, 8.0f), Pnt3f(0.0f, 0.5f, 0.0f));
        render(frame);
        // The camera turns a little, for the motion blur to show.
        placeCamera(scene, Pnt3f(0.4f, 4.5f, 8.0f), Pnt3f(0.0f, 0.5f, 0.0f));
        render(frame);
        writeImage(std::string("effect-") + effects[e].name, Width, Height);
        dropFrame(frame);
    }
    placeCamera(scene, Pnt3f(0.0f, 4.5f, 8.0f), Pnt3f(0.0f, 0.5f, 0.0f));

    // A viewport covering part of the window, over a plain one.
    renderCase("part", scene, lightsOf(pointLight(scene, 1.0f), spotLight(scene, 0.3f)), &aa, true);

    // A resize between frames.
    {
        Frame frame = makeFrame(scene, lightsOf(pointLight(scene, 0.3f), sunLight(scene, 1.0f)));
        ssao(frame.viewport);
        render(frame);
        frame.window->resize(Width * 3 / 4, Height * 3 / 4);
        render(frame);
        render(frame);
        writeImage("resize", Width * 3 / 4, Height * 3 / 4);
        dropFrame(frame);
    }
    // A near plane beyond 0.5: twice near times the light pass's far distance
    // must stay finite in float.
    {
        beginEditCP(scene.camera, Camera::NearFieldMask);
        scene.camera->setNear(2.0f);
        endEditCP(scene.camera, Camera::NearFieldMask);
        renderCase("near", scene, lightsOf(pointLight(scene, 1.0f), spotLight(scene, 0.3f)), NULL);
        beginEditCP(scene.camera, Camera::NearFieldMask);
        scene.camera->setNear(0.5f);
        endEditCP(scene.camera, Camera::NearFieldMask);
    }
    subRefCP(scene.root);

    // The renderer's courtyard with its default lights and shadows.
    {
        NodePtr root = demo::makeGroupNode();
        addRefCP(root);
        demo::addChild(root, demo::buildObjects(true));
        Scene court;
        court.root   = root;
        court.camera = demo::makeCamera(root);
        court.background = SolidBackground::create();
        beginEditCP(court.background);
        court.background->setColor(Color3f(0.1f, 0.12f, 0.2f));
        endEditCP(court.background);
        renderCase("courtyard", court, demo::makeDemoLights(root, 8, 4, true, true), NULL);
        subRefCP(root);
    }
    return 0;
}

// --- comparison -------------------------------------------------------------

bool readImage(const std::string &path, int &width, int &height, std::vector<UInt8> &pixels)
{
    std::ifstream in(path.c_str(), std::ios::binary);
    std::string magic;
    int maxValue = 0;
    if(!(in >> magic >> width >> height >> maxValue) || magic != "P6" || maxValue != 255)
        return false;
    in.get();
    pixels.resize(size_t(width) * height * 3);
    in.read(reinterpret_cast<char *>(&pixels[0]), pixels.size());
    return bool(in);
}

int compareAll(const std::string &a, const std::string &b, const std::vector<std::string> &names)
{
    int failed = 0;
    for(size_t i = 0; i < names.size(); ++i)
    {
        int wa = 0, ha = 0, wb = 0, hb = 0;
        std::vector<UInt8> pa, pb;
        if(!readImage(a + "/" + names[i] + ".ppm", wa, ha, pa) ||
           !readImage(b + "/" + names[i] + ".ppm", wb, hb, pb))
        {
            std::cout << names[i] << ": missing or unreadable\n";
            ++failed;
            continue;
        }
        if(wa != wb || ha != hb)
        {
            std::cout << names[i] << ": sizes differ\n";
            ++failed;
            continue;
        }
        int worst = 0, over = 0;
        for(size_t p = 0; p < pa.size(); ++p)
        {
            const int d = std::abs(int(pa[p]) - int(pb[p]));
            worst = d > worst ? d : worst;
            over += d > 1 ? 1 : 0;
        }
        std::cout << names[i] << ": largest difference " << worst << "/255"
                  << (over != 0 ? ", FAILED" : "") << "\n";
        if(over != 0)
            ++failed;
    }
    return failed;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if(mode == "--help" || mode == "-h" || (mode != "render" && mode != "compare") ||
       (mode == "render" && argc != 3) || (mode == "compare" && argc < 4))
    {
        std::cout << "usage: " << argv[0] << " render OUTDIR\n"
                  << "       " << argv[0] << " compare DIR1 DIR2 CASE...\n"
                  << "Renders the differential cases into OUTDIR as PPM images, or compares\n"
                  << "the named cases of two such folders within 1/255 a channel.\n";
        return mode == "--help" || mode == "-h" ? 0 : 2;
    }
    if(mode == "compare")
    {
        std::vector<std::string> names(argv + 4, argv + argc);
        return compareAll(argv[2], argv[3], names) == 0 ? 0 : 1;
    }

    outDir = argv[2];
    lumora::HeadlessContext context(Width, Height);
    if(!context.isValid())
    {
        std::cerr << "no OpenGL context: " << context.errorString() << "\n";
        return 1;
    }
    osgInit(0, NULL);
    initLumora();
    renderAll();
    osgExit();
    if(glErrors != 0)
    {
        std::cerr << glErrors << " GL errors\n";
        return 1;
    }
    return 0;
}
