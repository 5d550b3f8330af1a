#include <OpenSG/OSGBaseFunctions.h>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if(!osg::osgInit(0, NULL))
        return 1;
    const int result = RUN_ALL_TESTS();
    osg::osgExit();
    return result;
}
