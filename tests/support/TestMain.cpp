#include "support/GLTest.h"

#include <OpenSG/OSGBaseFunctions.h>

#include <gtest/gtest.h>

#include <iostream>

int main(int argc, char **argv)
{
    ::testing::InitGoogleTest(&argc, argv);

    if(!osg::osgInit(0, NULL))
    {
        std::cerr << "osgInit failed" << std::endl;
        return 1;
    }
    const int result = RUN_ALL_TESTS();

    // GL objects the runtime still holds go before the context does.
    osg::osgExit();
    testsupport::GLTest::releaseContext();
    return result;
}
