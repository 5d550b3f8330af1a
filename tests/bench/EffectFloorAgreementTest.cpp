#include "common/DemoScene.h"
#include "EffectFloor.h"

#include <Lumora/DeferredCMBPostProcessor.h>
#include <Lumora/DeferredRenderingViewport.h>
#include <Lumora/IDeferredPostProcessor.h>

#include <OpenSG/OSGChangeList.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGThread.h>
#include <OpenSG/OSGTransform.h>

#include "support/DeferredScene.h"
#include "support/TextureImage.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace osg;
using testsupport::editCP;

namespace
{

const int Width  = 128;
const int Height = 72;

// RGBA floats, rows from the bottom.
typedef std::vector<float> Pixels;

struct Difference
{
    double meanAbs = 0.0;  // per colour channel, over the image
    double offShare = 0.0; // pixels with a channel off by more than the bound
    double maxAbs   = 0.0;
};

Difference compare(const Pixels &a, const Pixels &b, double bound)
{
    Difference d;
    int off = 0;
    for(std::size_t i = 0; i < a.size(); i += 4)
    {
        double worst = 0.0;
        for(std::size_t c = i; c < i + 3; ++c)
        {
            const double delta = std::fabs(double(a[c]) - double(b[c]));
            d.meanAbs += delta;
            worst      = std::max(worst, delta);
        }
        off     += worst > bound;
        d.maxAbs = std::max(d.maxAbs, worst);
    }
    const double pixels = double(a.size() / 4);
    d.meanAbs /= 3.0 * pixels;
    d.offShare = off / pixels;
    return d;
}

Real32 s_clock = 0.0f;

Real32 testClock(void) { return s_clock; }

Matrix lookAt(const Pnt3f &from, const Pnt3f &at)
{
    Matrix m;
    MatrixLookAt(m, from, at, Vec3f(0.f, 1.f, 0.f));
    return m;
}

// The previous frame's view as the motion blur estimates it one interval
// back: this frame's translation and scale, the previous frame's rotation.
Matrix earlierViewing(const Matrix &now, const Matrix &before)
{
    Vec3f translation, scale, unusedVector;
    Quaternion rotation, scaleOrientation, earlier, unusedRotation;
    now.getTransform(translation, rotation, scale, scaleOrientation);
    before.getTransform(unusedVector, earlier, unusedVector, unusedRotation);
    Matrix m;
    m.setTransform(translation, earlier, scale, scaleOrientation);
    return m;
}

// A channel further off than bound counts as off; maxOffShare is of pixels,
// maxMeanAbs per channel, minChanged the share of pixels the effect moves by
// more than 2/255.
struct Case { EffectFloor::Effect effect; double bound, maxOffShare, maxMeanAbs, minChanged; };

} // namespace

class EffectFloorAgreement : public testsupport::GLTest {};

// Each floor run on the library's own inputs (the lit image, normals and
// depths of the frame just drawn) gives the library effect's image. Both
// write half floats from the same equations in a different order, so a
// channel may differ by a step of the format: 1/1024 below 2, 1/512 below 4
// (2e-3 covers both). The one exception is the depth of field, whose tap
// weights jump where a tap's eight-bit bluriness equals the centre's: the
// library's screen quad gets its texture coordinates through the
// fixed-function transform, a rounding apart from the floor's, and a
// linearly filtered bluriness a rounding apart flips that comparison for a
// few pixels (7 of 9216 here). A wrong pass, target size, kernel or
// constant moves far more pixels further than that.
TEST_F(EffectFloorAgreement, FloorDrawsTheLibraryEffectsImage)
{
    const Case cases[] = {
        {EffectFloor::AA,   2e-3, 0.0,   2e-5, 0.1},
        {EffectFloor::SSAO, 2e-3, 0.0,   2e-4, 0.1},
        {EffectFloor::HDR,  2e-3, 0.0,   2e-5, 0.5},
        {EffectFloor::DoF,  2e-3, 0.002, 2e-5, 0.3},
        {EffectFloor::CMB,  2e-3, 0.0,   2e-5, 0.1},
    };
    DeferredCMBPostProcessor::setClock(testClock);
    for(const Case &c : cases)
    {
        SCOPED_TRACE(EffectFloor::getName(c.effect));
        NodePtr root = demo::makeGroupNode();
        demo::addChild(root, demo::buildObjects(true));
        std::vector<LightPtr> lights = demo::makeDemoLights(root, 8, 2, true);

        const Pnt3f at(0.f, 0.8f, -1.5f);
        const Matrix first = lookAt(Pnt3f(0.f, 5.5f, 13.f), at);
        TransformPtr beaconCore = Transform::create();
        editCP(beaconCore, Transform::MatrixFieldMask, [&] { beaconCore->setMatrix(first); });
        NodePtr beacon = makeNodeFor(beaconCore);
        demo::addChild(root, beacon);
        PerspectiveCameraPtr camera = PerspectiveCamera::create();
        beginEditCP(camera);
        camera->setBeacon(beacon);
        camera->setFov(osgdegree2rad(50.f));
        camera->setNear(0.1f);
        camera->setFar(100.f);
        endEditCP(camera);

        DeferredRenderingViewportPtr viewport = DeferredRenderingViewport::create();
        beginEditCP(viewport);
        viewport->setCamera(camera);
        viewport->setBackground(SolidBackground::create());
        viewport->setRoot(root);
        viewport->setSize(0.f, 0.f, 1.f, 1.f);
        endEditCP(viewport);
        viewport->setAAPostProcessOn  (c.effect == EffectFloor::AA);
        viewport->setSSAOPostProcessOn(c.effect == EffectFloor::SSAO);
        viewport->setHDRPostProcessOn (c.effect == EffectFloor::HDR);
        viewport->setDoFPostProcessOn (c.effect == EffectFloor::DoF);
        viewport->setCMBPostProcessOn (c.effect == EffectFloor::CMB);
        testsupport::WindowAndAction windowAndAction(Width, Height);
        windowAndAction.addPort(viewport);
        PassiveWindowPtr window = windowAndAction.window;
        RenderAction    *action = windowAndAction.action;
        viewport->prepareScene(root);
        for(LightPtr light : lights)
            viewport->addLight(light);

        // Two frames one blur interval apart, the camera turned between
        // them, so that the motion blur has a rotation to show.
        Matrix viewingBefore;
        camera->getViewing(viewingBefore, Width, Height);
        s_clock = 1000.0f;
        window->render(action);
        Thread::getCurrentChangeList()->clearAll();
        beginEditCP(beaconCore, Transform::MatrixFieldMask);
        beaconCore->setMatrix(lookAt(Pnt3f(0.f, 5.5f, 13.f), Pnt3f(0.6f, 1.1f, -1.5f)));
        endEditCP(beaconCore, Transform::MatrixFieldMask);
        s_clock += 40.0f;
        window->render(action);
        Thread::getCurrentChangeList()->clearAll();

        Matrix viewing, projection;
        camera->getViewing   (viewing,    Width, Height);
        camera->getProjection(projection, Width, Height);
        Matrix viewProj = projection, prevViewProj = projection, inverse, toWorld;
        viewProj.mult(viewing);
        prevViewProj.mult(earlierViewing(viewing, viewingBefore));
        viewProj.inverse(inverse);
        viewing.inverse(toWorld);
        EffectFloor::Camera floorCamera;
        floorCamera.nearDist = camera->getNear();
        floorCamera.farDist  = camera->getFar();
        std::copy(inverse.getValues(), inverse.getValues() + 16, floorCamera.invViewProj);
        std::copy(prevViewProj.getValues(), prevViewProj.getValues() + 16,
                  floorCamera.prevViewProj);
        for(int k = 0; k < 3; ++k)
            floorCamera.position[k] = toWorld[3][k];

        TextureChunkPtr lit = viewport->getLightTarget().getTargetTexture(0);
        const Pixels input   = testsupport::TextureImage(lit).texels();
        const Pixels library = testsupport::TextureImage(
            viewport->getPostProcessor(UInt32(c.effect))->getRenderTarget().getTargetTexture(0))
            .texels();

        EffectFloor floor;
        std::string error;
        ASSERT_TRUE(floor.initialize(Width, Height, error)) << error;
        floor.setCamera(floorCamera);
        floor.copyInputs(lit->getGLTextureName(),
                         viewport->getGBufferTarget().getTargetTexture(0)->getGLTextureName(),
                         viewport->getGBufferTarget().getTargetTexture(4)->getGLTextureName());
        floor.render(c.effect);
        const Pixels floorImage = floor.readResult();

        const Difference changed = compare(library, input, 2.0 / 255.0);
        EXPECT_GE(changed.offShare, c.minChanged);
        const Difference d = compare(library, floorImage, c.bound);
        EXPECT_LE(d.offShare, c.maxOffShare) << "largest " << d.maxAbs;
        EXPECT_LE(d.meanAbs, c.maxMeanAbs);
        RecordProperty(EffectFloor::getName(c.effect), std::to_string(d.maxAbs) + " max, " +
                       std::to_string(d.meanAbs) + " mean, " + std::to_string(changed.offShare) +
                       " changed");

        for(LightPtr light : lights)
            subRefCP(light);
    }
    DeferredCMBPostProcessor::setClock(NULL);
}
