#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "lumora/shadows/ShadowTestGeometry.h"

#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGTransform.h>

#include "support/SceneSetup.h"

#include <cmath>

using namespace osg;
using namespace testsupport;
using namespace shadowtest;

namespace
{

const Color3f Floor(0.8f, 0.8f, 0.8f);

class DirectionalShadowTest : public DeferredSceneTest {};

// A long floor seen at a low angle, with an occluder in each third of the
// depth the viewer sees, under a sun from behind the viewer.
TEST_F(DirectionalShadowTest, SunShadowsFallInEachOfItsThreeSplits)
{
    const Vec3f eye(0.0f, -14.0f, 2.0f);
    const Vec3f target(0.0f, -2.0f, 0.0f);
    Matrix toWorld;
    MatrixLookAt(toWorld, Pnt3f(eye), Pnt3f(target), Vec3f(0, 0, 1));
    TransformPtr eyeCore = TransformPtr::dcast(cameraBeacon->getCore());
    editCP(eyeCore, Transform::MatrixFieldMask, [&] { eyeCore->setMatrix(toWorld); });
    editCP(camera, Camera::FarFieldMask, [&] { camera->setFar(100.0f); });

    addPlane(40.0f, 0.0f, material(Floor));
    const std::vector<Rect> occluders =
    {
        {-1.5f, -10.0f, 1.5f, -9.4f, 0.6f},
        {-3.0f,  -6.0f, 3.0f, -3.0f, 0.8f},
        {-6.0f,   4.0f, 6.0f, 10.0f, 1.0f},
    };
    for(const Rect &r : occluders)
        testsupport::addChild(root, testsupport::makeRect(r.x0, r.y0, r.x1, r.y1, r.z,
                                                          material(Color3f(0.4f, 0.4f, 0.4f))));

    // From in front of the viewer, so that the shadows fall towards it and
    // are not hidden behind their occluders.
    const Vec3f  toSun(0.0f, 1.5f, 1.0f);
    const Real32 intensity = 0.3f;
    DirectionalLightPtr sun = makeLight(DirectionalLightParams{toSun, Color3f(1, 1, 1),
                                                               Color3f(0, 0, 0), intensity});
    viewport->addLight(sun);
    renderFrame();

    // The viewer's matrices, for pixel rays and depths.
    Matrix viewing;
    toWorld.inverse(viewing);
    const Matrix projection = perspective(deg2rad(60.0f), 1.0f, 1.0f, 100.0f);
    Matrix clipToWorld = projection;
    clipToWorld.mult(viewing);
    clipToWorld.invert();

    // Splits over the depth range of the scene's box.
    Real32 nearest = 1e30f, farthest = -1e30f;
    for(int i = 0; i < 8; ++i)
    {
        const Pnt3f corner((i & 1) ? 20.0f : -20.0f, (i & 2) ? 20.0f : -20.0f,
                           (i & 4) ? 1.0f : 0.0f);
        const Real32 depth = -transformed(viewing, corner)[2];
        nearest  = std::min(nearest, depth);
        farthest = std::max(farthest, depth);
    }
    const std::vector<Real32> splits = cascadeSplits(std::max(nearest, 1.0f), farthest);

    Vec3f L = toSun;
    L.normalize();
    const Real32 unshadowed = L[2] * Floor[0];

    LitImage        image(viewport);
    PixelMismatches mismatches;
    int shadowedIn[3] = {0, 0, 0}, litIn[3] = {0, 0, 0};
    for(int y = 0; y < Size; ++y)
        for(int x = 0; x < Size; ++x)
        {
            const Real32 ndcX = 2.0f * (x + 0.5f) / Size - 1.0f;
            const Real32 ndcY = 2.0f * (y + 0.5f) / Size - 1.0f;
            const Pnt3f  a = transformed(clipToWorld, Pnt3f(ndcX, ndcY, -1.0f));
            const Pnt3f  b = transformed(clipToWorld, Pnt3f(ndcX, ndcY,  1.0f));
            if(a[2] * b[2] > 0.0f)
                continue;  // the sky
            const Real32 t = a[2] / (a[2] - b[2]);
            const Pnt3f  P = a + (b - a) * t;
            if(std::fabs(P[0]) > 19.0f || std::fabs(P[1]) > 19.0f)
                continue;
            if(segmentCover(Pnt3f(eye), P, occluders, 0.3f) != Cover::Outside)
                continue;

            const Real32 depth = -transformed(viewing, P)[2];
            int split = 0;
            while(split < 3 && depth > splits[split + 1])
                ++split;
            // Away from the split borders, where the map changes.
            if(split == 3 || std::fabs(depth - splits[split]) < 0.3f ||
               std::fabs(depth - splits[split + 1]) < 0.3f)
                continue;

            // Soft edges grow with the split's texel size.
            const Cover cover = segmentCover(P, P + L * 100.0f, occluders, 0.15f * (split + 1));
            if(cover == Cover::Edge)
                continue;
            const Real32 expected = cover == Cover::Inside ? unshadowed * intensity : unshadowed;
            (cover == Cover::Inside ? shadowedIn : litIn)[split] += 1;
            mismatches.check(x, y, 0, image.at(x, y, 0), expected, expected);
        }
    EXPECT_EQ(mismatches.count(), 0) << mismatches.text();
    for(int split = 0; split < 3; ++split)
    {
        EXPECT_GT(shadowedIn[split], 3) << "split " << split << ", lit " << litIn[split];
        EXPECT_GT(litIn[split], 100) << "split " << split;
    }
    subRefCP(sun);
}

} // namespace
