// Only the frustum header: the free volume functions must come with it.
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGMatrixUtility.h>

#include <gtest/gtest.h>

using namespace osg;

TEST(FrustumVolumeHeader, BringsTheFreeIntersectFunctions)
{
    Matrix proj, view;
    MatrixOrthogonal(proj, -1.f, 1.f, -1.f, 1.f, 1.f, 10.f);
    view.setIdentity();
    proj.mult(view);
    FrustumVolume frustum;
    frustum.setPlanes(proj);

    const BoxVolume inside (-0.5f, -0.5f, -5.f, 0.5f, 0.5f, -4.f);
    const BoxVolume outside( 2.0f,  2.0f, -5.f, 3.0f, 3.0f, -4.f);
    EXPECT_TRUE (intersect(frustum, inside));
    EXPECT_FALSE(intersect(frustum, outside));
    EXPECT_FALSE(intersect(outside, frustum));
}
