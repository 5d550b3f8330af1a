// Links the two translation units that include the system GL headers around
// the runtime's; exits 0 only if both see the runtime work.
#include <OpenSG/OSGBaseFunctions.h>

#include <iostream>

bool textureChunkKeepsSystemEnums(void);
bool solidBackgroundKeepsItsColour(void);

int main(int argc, char **argv)
{
    osg::osgInit(argc, argv);
    const bool texture    = textureChunkKeepsSystemEnums();
    const bool background = solidBackgroundKeepsItsColour();
    std::cout << "texture chunk " << texture << ", background " << background << std::endl;
    osg::osgExit();
    return texture && background ? 0 : 1;
}
