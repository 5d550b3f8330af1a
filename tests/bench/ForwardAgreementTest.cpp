#include "common/DemoScene.h"
#include "ForwardRenderer.h"

#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>

#include "support/DeferredScene.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

using namespace osg;

namespace
{

const int Width  = 96;
const int Height = 54;

// RGBA floats, rows from the bottom.
typedef std::vector<float> Pixels;

struct Difference
{
    double meanAbs   = 0.0;  // per colour channel, over the image
    double farShare  = 0.0;  // pixels with a channel off by more than 3/255
    double litShare  = 0.0;  // pixels either image lights above 4/255
};

Difference compare(const Pixels &a, const Pixels &b)
{
    Difference d;
    int far = 0, lit = 0;
    for(std::size_t i = 0; i < a.size(); i += 4)
    {
        float worst = 0.f, brightest = 0.f;
        for(std::size_t c = i; c < i + 3; ++c)
        {
            const float delta = std::fabs(a[c] - b[c]);
            d.meanAbs += delta;
            worst      = std::max(worst, delta);
            brightest  = std::max(brightest, std::max(a[c], b[c]));
        }
        far += worst > 3.f / 255.f;
        lit += brightest > 4.f / 255.f;
    }
    const double pixels = double(a.size() / 4);
    d.meanAbs /= 3.0 * pixels;
    d.farShare = far / pixels;
    d.litShare = lit / pixels;
    return d;
}

PerspectiveCameraPtr lookingAt(NodePtr root, const Pnt3f &from, const Pnt3f &at)
{
    Matrix m;
    MatrixLookAt(m, from, at, Vec3f(0.f, 1.f, 0.f));
    NodePtr beacon = demo::makeTransformNode(m);
    demo::addChild(root, beacon);
    PerspectiveCameraPtr camera = PerspectiveCamera::create();
    beginEditCP(camera);
    camera->setBeacon(beacon);
    camera->setFov(osgdegree2rad(50.f));
    camera->setNear(0.2f);
    camera->setFar(60.f);
    endEditCP(camera);
    return camera;
}

enum SceneKind { Street, Courtyard };

// The scene's own camera, or one from -> at; minLitShare so that agreement
// is not that of black images.
struct View { const char *name; SceneKind scene; bool sceneCamera; Pnt3f from, at;
              double minLitShare; };

} // namespace

class ForwardAgreement : public testsupport::GLTest {};

// Scenes drawn forward and deferred: the light buffer before any effect
// and the forward target agree but for rounding (the G-buffer's eight-bit
// colours, ten-bit normals and log-encoded shininess) and the volumes'
// cut-off. The street has twelve lights, ten of them around the fountain;
// the courtyard twelve point lights reaching across it, four spots and a
// sun.
// The bounds fail a quadratic term taken as linear, a dropped constant
// term, a missing specular term, a spot without its exponent or the
// additive passes left out.
TEST_F(ForwardAgreement, ForwardMatchesDeferredLightBuffer)
{
    const View views[] = {
        {"street overview",      Street,    true,  Pnt3f(), Pnt3f(),                   0.005},
        {"fountain close up",    Street,    false, Pnt3f(1.5f, 2.f, 4.5f),
                                                   Pnt3f(0.f, 0.4f, 0.f),              0.25},
        {"sphere on the square", Street,    false, Pnt3f(6.5f, 2.2f, 4.5f),
                                                   Pnt3f(2.2f, 0.4f, 0.8f),            0.25},
        {"courtyard",            Courtyard, true,  Pnt3f(), Pnt3f(),                   0.5},
    };
    for(const View &view : views)
    {
        SCOPED_TRACE(view.name);
        NodePtr root = demo::makeGroupNode();
        std::vector<LightPtr> lights;
        PerspectiveCameraPtr camera;
        if(view.scene == Street)
        {
            demo::addChild(root, demo::buildStreet());
            lights = demo::makeStreetLights(root, 12);
            if(view.sceneCamera)
                camera = demo::makeStreetCamera(root);
        }
        else
        {
            demo::addChild(root, demo::buildObjects(false));
            lights = demo::makeDemoLights(root, 12, 4, true);
            if(view.sceneCamera)
                camera = demo::makeCamera(root);
        }
        if(!view.sceneCamera)
            camera = lookingAt(root, view.from, view.at);

        ForwardRenderer forward;
        std::string error;
        ASSERT_TRUE(forward.initialize(Width, Height, error)) << error;
        forward.prepare(root);

        DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
        beginEditCP(viewport);
        viewport->setCamera(camera);
        viewport->setBackground(SolidBackground::create());
        viewport->setRoot(root);
        viewport->setSize(0.f, 0.f, 1.f, 1.f);
        endEditCP(viewport);
        testsupport::WindowAndAction windowAndAction(Width, Height);
        windowAndAction.addPort(viewport);
        viewport->prepareScene(root);
        for(LightPtr light : lights)
            viewport->addLight(light);
        windowAndAction.window->render(windowAndAction.action);
        Thread::getCurrentChangeList()->clearAll();
        const Pixels deferred = testsupport::LitImage(viewport).texels();

        forward.render(camera, lights);
        const Pixels forwardImage = forward.readColour();
        const ForwardRenderer::FrameStats stats = forward.getLastStats();

        // More lights reach the fountain than one pass holds.
        EXPECT_GT(stats.maxLights, ForwardRenderer::MaxPassLights);
        EXPECT_GT(stats.extraPasses, 0);

        const Difference d = compare(deferred, forwardImage);
        EXPECT_GE(d.litShare, view.minLitShare);
        EXPECT_LT(d.meanAbs * 255.0, 1.0);
        EXPECT_LT(d.farShare, 0.01);

        for(LightPtr light : lights)
            subRefCP(light);
    }
}
