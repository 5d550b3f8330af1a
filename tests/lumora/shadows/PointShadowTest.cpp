#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "lumora/shadows/ShadowTestGeometry.h"

#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGTransform.h>

#include "support/SceneSetup.h"

using namespace osg;
using namespace testsupport;
using namespace shadowtest;

namespace
{

const Color3f Floor(0.8f, 0.8f, 0.8f);
const Pnt3f   LightPosition(0.5f, 0.4f, 1.6f);
const Rect    Occluder = {-0.35f, -0.3f, 0.25f, 0.3f, 0.8f};

struct Turn { const char *face; Vec3f axis; Real32 angle; };  // face: where the light looks

class PointShadowTest : public DeferredSceneTest, public testing::WithParamInterface<Turn> {};

// The same floor, occluder, lamp and camera, turned as one so that the lamp
// sees the occluder's shadow through each face of its cube in turn; the
// image stays the same, and a face that samples another face's map loses
// the shadow or puts it elsewhere.
TEST_P(PointShadowTest, EveryCubeFaceShadowsWhatItSees)
{
    const Turn &turn = GetParam();
    Matrix      rotation;
    rotation.setRotate(Quaternion(turn.axis, turn.angle));

    NodePtr world = testsupport::makeTransformNode(rotation);
    testsupport::addChild(root, world);
    testsupport::addChild(world, testsupport::makeRect(-4, -4, 4, 4, 0, material(Floor)));
    testsupport::addChild(world, testsupport::makeRect(Occluder.x0, Occluder.y0, Occluder.x1,
                                                       Occluder.y1, Occluder.z,
                                                       material(Color3f(0.5f, 0.5f, 0.5f))));

    Matrix eye = rotation;
    Matrix back;
    back.setTranslate(0, 0, 5);
    eye.mult(back);
    TransformPtr eyeCore = TransformPtr::dcast(cameraBeacon->getCore());
    editCP(eyeCore, Transform::MatrixFieldMask, [&] { eyeCore->setMatrix(eye); });

    const Real32  intensity = 0.2f;
    PointLightPtr light     = makeLight(PointLightParams{LightPosition, Color3f(1, 1, 1),
                                                         Color3f(0, 0, 0), Vec3f(1, 0, 0),
                                                         intensity});
    editCP(light, Light::BeaconFieldMask, [&] { light->setBeacon(world); });
    viewport->addLight(light);
    renderFrame();

    LitImage        image(viewport);
    PixelMismatches mismatches;
    int lit = 0, shadowed = 0;
    const std::vector<Rect> occluders = {Occluder};
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            const Pnt3f P = pixelOnPlane(x, y, 0.0f);
            if(segmentCover(Pnt3f(0, 0, 5), P, occluders, 0.1f) != Cover::Outside)
                continue;
            const Cover cover = segmentCover(P, LightPosition, occluders, 0.12f);
            if(cover == Cover::Edge)
                continue;
            Vec3f L = LightPosition - P;
            L.normalize();
            const Real32 u        = L[2] * Floor[0];
            const Real32 expected = cover == Cover::Inside ? u * intensity : u;
            (cover == Cover::Inside ? shadowed : lit) += 1;
            mismatches.check(x, y, 0, image.at(x, y, 0), expected, expected);
        }
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    EXPECT_GT(lit,      1500);
    EXPECT_GT(shadowed, 40);
    subRefCP(light);
}

INSTANTIATE_TEST_SUITE_P(DeferredPointLight, PointShadowTest,
    testing::Values(Turn{"NegZ", Vec3f(1, 0, 0), 0.0f},
                    Turn{"PosZ", Vec3f(1, 0, 0), Pi},
                    Turn{"NegY", Vec3f(1, 0, 0), -Pi / 2},
                    Turn{"PosY", Vec3f(1, 0, 0), Pi / 2},
                    Turn{"NegX", Vec3f(0, 1, 0), Pi / 2},
                    Turn{"PosX", Vec3f(0, 1, 0), -Pi / 2}),
    [](const testing::TestParamInfo<Turn> &info) { return std::string(info.param.face); });

} // namespace
