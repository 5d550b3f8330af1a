#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPerspectiveCamera.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGViewport.h>

#include "support/Builders.h"
#include "support/GLTest.h"
#include "support/LogCapture.h"
#include "support/MatrixRows.h"
#include "support/SceneSetup.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace osg;

namespace
{

using testsupport::expectRowsNear;
using testsupport::frustumRows;
using testsupport::orthoRows;
using testsupport::Rows;

// A beacon at `eye`, turned by `angle` about +Y (so it looks along
// (-sin, 0, -cos)).
NodePtr beaconAt(const Vec3f &eye, Real32 angle = 0)
{
    Matrix m;
    m.setTransform(eye, Quaternion(Vec3f(0, 1, 0), angle));
    TransformPtr t = Transform::create();
    testsupport::editCP(t, [&] { t->setMatrix(m); });
    return makeNodeFor(t);
}

PerspectiveCameraPtr perspective(Real32 fov, UInt32 mode, Real32 aspect, Real32 n, Real32 f)
{
    PerspectiveCameraPtr cam = PerspectiveCamera::create();
    beginEditCP(cam);
    cam->setFov(fov);
    cam->setFovMode(mode);
    cam->setAspect(aspect);
    cam->setNear(n);
    cam->setFar(f);
    endEditCP(cam);
    return cam;
}

} // namespace

TEST(PerspectiveCamera, ProjectionMatchesTheGlFrustumOfTheFovMode)
{
    // x, y: half extents at the near plane, from the definition.
    struct Case { Real32 fov; UInt32 mode, width, height; Real32 aspect; Real64 x, y; };
    const Real64 n = .5, f = 50;
    const Real64 tv = std::tan(Pi / 6);          // half of 60 degrees
    const Case cases[] =
    {
        { Pi / 3, PerspectiveCamera::FOV_vertical,   200, 100, 1, n * tv * 2,     n * tv     },
        { Pi / 3, PerspectiveCamera::FOV_vertical,   200, 100, 2, n * tv * 4,     n * tv     },
        { Pi / 3, PerspectiveCamera::FOV_horizontal, 200, 100, 1, n * tv,         n * tv / 2 },
        { Pi / 3, PerspectiveCamera::FOV_smaller,    200, 100, 1, n * tv * 2,     n * tv     },
        { Pi / 3, PerspectiveCamera::FOV_smaller,    100, 200, 1, n * tv,         n * tv * 2 },
        { 60.f,   PerspectiveCamera::FOV_vertical,   100, 100, 1, n * tv,         n * tv     },
    };

    for(const Case &c : cases)
    {
        SCOPED_TRACE(testing::Message() << "fov " << c.fov << " mode " << c.mode << " "
                                        << c.width << "x" << c.height);
        PerspectiveCameraPtr cam = perspective(c.fov, c.mode, c.aspect, n, f);
        addRefCP(cam);

        Matrix m;
        cam->getProjection(m, c.width, c.height);
        Rows expected;
        frustumRows(expected, -c.x, c.x, -c.y, c.y, n, f);
        expectRowsNear(m, expected);

        cam->getProjectionTranslation(m, c.width, c.height);
        EXPECT_TRUE(m.equals(Matrix::identity(), 0.f));
        subRefCP(cam);
    }
}

TEST(PerspectiveCamera, InvalidSettingsGiveTheIdentity)
{
    testsupport::LogCapture log(LOG_WARNING);
    const struct { Real32 fov, n, f; UInt32 w, h; } cases[] =
    {
        { 0,      1, 10, 10, 10 },
        { -1,     1, 10, 10, 10 },
        { Pi / 2, 10, 1, 10, 10 },
        { Pi / 2, 1,  1, 10, 10 },
        { Pi / 2, 1, 10,  0, 10 },
    };
    for(const auto &c : cases)
    {
        PerspectiveCameraPtr cam = perspective(c.fov, PerspectiveCamera::FOV_vertical, 1, c.n, c.f);
        addRefCP(cam);
        Matrix m(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2);
        cam->getProjection(m, c.w, c.h);
        EXPECT_TRUE(m.equals(Matrix::identity(), 0.f));
        subRefCP(cam);
    }
}

TEST(OrthographicCamera, SizesFollowTheWindowAspect)
{
    struct Case { Real32 v, h; UInt32 width, height; Real64 x, y; };
    const Case cases[] =
    {
        { 2,  -1, 200, 100, 2,  1 },    // width from the height
        { 0,   4, 200, 100, 2,  1 },    // height from the width
        { 2,   2, 200, 100, 2,  1 },    // too narrow: the width grows
        { 2,   8, 200, 100, 4,  2 },    // too wide: the height grows
    };
    for(const Case &c : cases)
    {
        OrthographicCameraPtr cam = OrthographicCamera::create();
        addRefCP(cam);
        beginEditCP(cam);
        cam->setVerticalSize(c.v);
        cam->setHorizontalSize(c.h);
        cam->setNear(1);
        cam->setFar(9);
        endEditCP(cam);

        Matrix m;
        cam->getProjection(m, c.width, c.height);
        Rows expected;
        orthoRows(expected, -c.x, c.x, -c.y, c.y, 1, 9);
        expectRowsNear(m, expected);
        subRefCP(cam);
    }
}

TEST(Camera, ViewingIsTheInverseOfTheBeaconsToWorld)
{
    NodePtr beacon = beaconAt(Vec3f(1, 2, 3), Pi / 2);
    addRefCP(beacon);
    PerspectiveCameraPtr cam = perspective(Pi / 2, 0, 1, 1, 10);
    addRefCP(cam);
    cam->setBeacon(beacon);

    Matrix viewing;
    cam->getViewing(viewing, 100, 100);

    // The eye sits at the origin; turned by 90 degrees about +Y the beacon
    // looks down world -X, which becomes eye -Z.
    const struct { Pnt3f world, eye; } points[] =
    {
        { Pnt3f(1, 2, 3),  Pnt3f(0, 0, 0)  },
        { Pnt3f(-1, 2, 3), Pnt3f(0, 0, -2) },
        { Pnt3f(1, 3, 3),  Pnt3f(0, 1, 0)  },
        { Pnt3f(1, 2, 2),  Pnt3f(1, 0, 0)  },
    };
    for(const auto &p : points)
    {
        Pnt3f q = p.world;
        viewing.multMatrixPnt(q);
        EXPECT_NEAR((q - p.eye).length(), 0.f, 1e-5f);
    }

    // Without a beacon the result stays as it was.
    cam->setBeacon(NullFC);
    testsupport::LogCapture log(LOG_WARNING);
    Matrix untouched(3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3, 0, 0, 0, 0, 3);
    Matrix kept = untouched;
    cam->getViewing(untouched, 100, 100);
    EXPECT_TRUE(untouched.equals(kept, 0.f));
    EXPECT_TRUE(log.contains("Camera::getViewing"));

    subRefCP(cam);
    subRefCP(beacon);
}

using CameraGLTest = testsupport::GLTest;

// The projection setup loads is checked by every drawing test; the view
// ray is not.
TEST_F(CameraGLTest, SetupLoadsProjectionAndViewingAndViewRaysLeaveTheEye)
{
    testsupport::SceneSetup setup(64, 32);

    NodePtr beacon = beaconAt(Vec3f(0, 0, 5));
    addRefCP(beacon);
    PerspectiveCameraPtr cam = perspective(Pi / 2, 0, 1, 1, 10);
    addRefCP(cam);
    cam->setBeacon(beacon);

    glMatrixMode(GL_TEXTURE);
    cam->setup(NULL, *setup.viewport.getCPtr());
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_MODELVIEW);

    GLfloat proj[16], view[16];
    glGetFloatv(GL_PROJECTION_MATRIX, proj);
    glGetFloatv(GL_MODELVIEW_MATRIX, view);

    // 64 x 32 pixels at 90 degrees vertical: y in [-1, 1], x in [-2, 2] at z = -1.
    Rows expected;
    frustumRows(expected, -2, 2, -1, 1, 1, 10);
    for(UInt32 row = 0; row < 4; ++row)
        for(UInt32 col = 0; col < 4; ++col)
            EXPECT_NEAR(proj[col * 4 + row], expected[row][col], 1e-5);
    const Real32 translateBack[16] = { 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -5, 1 };
    for(UInt32 i = 0; i < 16; ++i)
        EXPECT_NEAR(view[i], translateBack[i], 1e-6f);

    // Pixel (48, 8) from the top left: its centre is at x = 2 * (48.5 / 32 - 1)
    // and y = 1 - 8.5 / 16 on the near plane, one unit in front of the eye.
    Line   ray;
    Real32 t = 0;
    ASSERT_TRUE(cam->calcViewRay(ray, 48, 8, *setup.viewport.getCPtr(), &t));
    const Pnt3f nearPoint(2 * (48.5f / 32 - 1), 1 - 8.5f / 16, 4);
    EXPECT_NEAR((ray.getPosition() - nearPoint).length(), 0.f, 1e-4f);
    Vec3f dir = nearPoint - Pnt3f(0, 0, 5);
    dir.normalize();
    EXPECT_NEAR((ray.getDirection() - dir).length(), 0.f, 1e-4f);
    // From near to far along the ray: 9 units in depth.
    EXPECT_NEAR(t, 9 / -dir[2], 1e-3f);

    subRefCP(cam);
    subRefCP(beacon);
}
