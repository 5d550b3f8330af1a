// Only the box header: the free volume functions must come with it.
#include <OpenSG/OSGBoxVolume.h>

#include <gtest/gtest.h>

using namespace osg;

TEST(BoxVolumeHeader, BringsTheFreeIntersectAndExtendFunctions)
{
    BoxVolume a(0.f, 0.f, 0.f, 1.f, 1.f, 1.f);
    const BoxVolume b(2.f, 2.f, 2.f, 3.f, 3.f, 3.f);
    EXPECT_FALSE(intersect(a, b));
    extend(a, b);
    EXPECT_TRUE(intersect(a, b));
    EXPECT_EQ(a.getMax(), Pnt3f(3.f, 3.f, 3.f));
}
